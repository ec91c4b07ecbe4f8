#include "editor/paint_rows.h"

#include <algorithm>

#include "entry/trace.h"

namespace vantrel {

namespace {

struct ColumnSpan {
    std::int64_t first;
    std::int64_t end; // exclusive
};

// A line on its way to the screen: its visible columns and the place of the first of them.
struct VisibleLine {
    RecordText record;
    ColumnSpan columns;
    Point64 point;
};

VisibleLine FindVisibleColumns(EditWindow& window, const TextRow& row, const Rect64& area, std::int64_t y)
{
    CharWidths& widths = window.view->widths;
    const RecordText& record = row.text;
    const std::int64_t scrolled = StateOf(window).scroll.horizontal.position;
    const std::int64_t first = window.lineWidths.ColumnAt(widths, row, scrolled);
    const std::int64_t x = area.left + window.lineWidths.WidthUpTo(widths, row, first) - scrolled;
    const std::int64_t count =
        widths.ColumnAt(record.text + first, record.length - first, area.right - x) + 1;
    return {record, {first, std::min(first + count, record.length)}, {x, y}};
}

// What is marked in the text, in one way.
struct MarkedText {
    EditSelection range;
    PieceKind kind;
};

MarkedText FindMarkedText(const EditWindow& window, bool focused) noexcept
{
    const EditView& view = *window.view;
    if (!IsSelectionEmpty(window)) return {NormalisedSelection(window), PieceKind::Selected};
    const FindState& find = view.find;
    const std::int64_t line = find.record - FirstEditRow(window);
    const bool here = find.node == view.node && line >= 0 && line < EditRows(window);
    if (!view.findMatch || !here || focused) return {{}, PieceKind::Plain};
    const EditCaret start{find.column, line};
    const EditCaret end{find.column + find.length, line};
    return {{ClampToText(window, start), ClampToText(window, end)}, PieceKind::FindMatch};
}

// The marked columns of a line; empty where nothing is marked.
ColumnSpan MarkedColumns(const EditSelection& range, std::int64_t line, std::int64_t length) noexcept
{
    if (line < range.start.line || line > range.end.line) return {0, 0};
    return {line == range.start.line ? range.start.column : 0,
            line == range.end.line ? range.end.column : length};
}

class PieceWriter {
public:
    PieceWriter(CharWidths& widths, DrawPiece draw, void* state) noexcept
        : widths_(widths), draw_(draw), state_(state)
    {
    }

    // Draws the line's columns up to `end`, from where the last piece ended.
    void WriteUpTo(VisibleLine& line, std::int64_t end, PieceKind kind)
    {
        end = std::min(end, line.columns.end);
        const std::int64_t length = end - line.columns.first;
        if (length <= 0) return;
        const char16_t* text = line.record.text + line.columns.first;
        const std::int64_t width = widths_.TextWidth(text, length);
        draw_(state_, {line.point, width, text, length, kind});
        line.columns.first = end;
        line.point.x += width;
    }

private:
    CharWidths& widths_;
    DrawPiece draw_;
    void* state_;
};

} // namespace

VisibleEditLines FindVisibleLines(const EditWindow& window) noexcept
{
    const Rect64 area = TextArea(window);
    const std::int64_t lineHeight = std::max(window.view->lineHeight, 1);
    const std::int64_t scrolled = StateOf(window).scroll.vertical.position;
    const std::int64_t rows = EditRows(window);
    const std::int64_t first = std::clamp<std::int64_t>(scrolled / lineHeight, 0, rows);
    const std::int64_t top = area.top + first * lineHeight - scrolled;
    const std::int64_t count = std::max<std::int64_t>((area.bottom - top + lineHeight - 1) / lineHeight, 0);
    return {first, std::min(rows, first + count), top};
}

void ForEachVisiblePiece(EditWindow& window, bool focused, DrawPiece draw, void* state)
{
    const TraceScope trace("paint_rows.cpp", "ForEachVisiblePiece");
    const Rect64 area = TextArea(window);
    const VisibleEditLines lines = FindVisibleLines(window);
    const MarkedText marked = FindMarkedText(window, focused);
    PieceWriter writer(window.view->widths, draw, state);
    std::int64_t y = lines.top;
    for (std::int64_t line = lines.first; line < lines.end; ++line, y += window.view->lineHeight) {
        VisibleLine visible = FindVisibleColumns(window, EditRow(window, line), area, y);
        const ColumnSpan columns = MarkedColumns(marked.range, line, visible.record.length);
        writer.WriteUpTo(visible, columns.first, PieceKind::Plain);
        writer.WriteUpTo(visible, columns.end, marked.kind);
        writer.WriteUpTo(visible, visible.record.length, PieceKind::Plain);
    }
}

HiddenSides FindHiddenSides(const EditWindow& window) noexcept
{
    const EditState& state = StateOf(window);
    const Rect64 area = TextArea(window);
    const std::int64_t scrolledX = state.scroll.horizontal.position;
    const std::int64_t scrolledY = state.scroll.vertical.position;
    const std::int64_t height = EditRows(window) * window.view->lineHeight;
    return {scrolledX > 0, scrolledY > 0, state.maximumWidth - scrolledX > area.right - area.left,
            height - scrolledY > area.bottom - area.top};
}

VisibleRuler FindVisibleRuler(EditWindow& window)
{
    const TraceScope trace("paint_rows.cpp", "FindVisibleRuler");
    const Rect64 area = TextArea(window);
    // The ruler's dashes, signs and digits are as wide as a digit in every font that lines up columns.
    const std::int64_t width = std::max<std::int64_t>(window.view->widths.CharWidth(u'0'), 1);
    const std::int64_t scrolled = StateOf(window).scroll.horizontal.position;
    const std::int64_t first = scrolled / width;
    const std::int64_t end = (scrolled + std::max<std::int64_t>(area.right - area.left, 0)) / width + 1;
    return {first, std::clamp(end, first, std::max(first, LongestRecord(window.view->node->records))),
            area.left + first * width - scrolled};
}

} // namespace vantrel
