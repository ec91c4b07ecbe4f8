// Where an array on paper may be cut: between lines, between boxes, between the numbers of a row.
#include <algorithm>

#include "entry/trace.h"
#include "view/layout.h"
#include "view/pages.h"

namespace vantrel {
namespace {

constexpr std::int64_t RowsLookedAt = 2000; // for a gap between columns; further rows are formed like these
constexpr std::int64_t Everything = std::int64_t{1} << 40;

// Arrays side by side may have their lines at different heights: then those of the tallest are spared.
enum LineLevel : std::int32_t { LevelAllLines, LevelTallest, LineLevels };
enum ColumnLevel : std::int32_t { LevelBox, LevelGap, LevelCharacter, ColumnLevels };

constexpr std::int64_t NowhereOnThisPage = -1;

// An array and the length of a page in one direction.
struct PagedArray {
    View& view;
    std::int64_t page;
};

// One question: what lies across a line through the array.
struct Question {
    View& view;
    std::int64_t page;
    std::int32_t level;
    std::int64_t position;
    std::int64_t answer;
    std::int64_t tallest = 0; // rows of the array that gave the answer
};

bool LiesAcross(std::int64_t start, std::int64_t end, std::int64_t position) noexcept
{
    return start < position && position < end;
}

// Neighbours share a margin; paper is cut through its middle, clear of both frames.
struct Extent {
    std::int64_t start;
    std::int64_t end;
};

Extent WidthOf(const View& view, const Scdr& node) noexcept
{
    const Rect64 box = NodeRect(node);
    const std::int64_t margin = view.metrics.margin;
    return {box.left + margin / 2, box.right - (margin - margin / 2)};
}

Extent HeightOf(const View& view, const Scdr& node) noexcept
{
    const Rect64 box = NodeRect(node);
    const std::int64_t margin = view.metrics.margin;
    return {box.top + margin / 2, box.bottom - (margin - margin / 2)};
}

// Items of the shown planes that meet a range of layout space, down to the smallest; `look` answers whether to go on below the node.
template <typename Look> void ForEachNodeMeeting(View& view, const Rect64& range, Look look)
{
    Vector<Scdr*> waiting;
    waiting.push_back(view.top);
    while (!waiting.empty()) {
        Scdr& node = *waiting.back();
        waiting.pop_back();
        if (!look(node) || IsSimple(node)) continue;
        const VisibleItems items = FindVisibleItems(view, node, range);
        for (std::int64_t row = items.firstRow; row < items.endRow; ++row) {
            for (std::int64_t column = items.firstColumn; column < items.endColumn; ++column)
                waiting.push_back(Children(node)[items.planeStart + row * items.columns + column]);
        }
    }
}

bool IsClosed(const Scdr& node) noexcept
{
    return (node.Flags & FlagMinimized) != 0;
}

void TakeLine(Question& question, std::int64_t start, std::int64_t rows) noexcept
{
    if (question.level == LevelAllLines) {
        question.answer = std::min(question.answer, start);
    } else if (rows > question.tallest) {
        question.tallest = rows;
        question.answer = start;
    }
}

void LookAtLine(Question& question, const Scdr& node)
{
    const Extent box = HeightOf(question.view, node);
    const std::int64_t position = question.position;
    if (IsClosed(node)) {
        if (LiesAcross(box.start, box.end, position)) TakeLine(question, box.start, 1);
        return;
    }
    const std::int64_t lineHeight = question.view.edit.lineHeight;
    const std::int64_t rows = IsSimple(node) ? ShownRows(node) : 0;
    if (rows <= 0 || lineHeight <= 0) return;
    const std::int64_t top = TextCorner(question.view, node, NodeRect(node)).y;
    if (!LiesAcross(top, box.end, position)) return;
    // The array's frame should not stay behind alone, neither above its first line nor below its last.
    const std::int64_t line = std::min((position - top) / lineHeight, rows - 1);
    const std::int64_t start = top + line * lineHeight;
    TakeLine(question, line == 0 && start < position ? box.start : start, rows);
}

std::int64_t LineAcross(void* state, std::int32_t level, std::int64_t position)
{
    const PagedArray& array = *static_cast<const PagedArray*>(state);
    Question question{array.view, array.page, level, position, position};
    ForEachNodeMeeting(array.view, {0, position, Everything, position + 1}, [&](const Scdr& node) {
        LookAtLine(question, node);
        return !IsClosed(node);
    });
    return question.answer;
}

// The character of a row that stands at a column counted in pixels from the text's start, and where it begins.
struct CharacterAt {
    bool blank;
    std::int64_t start; // pixels
    std::int64_t end;
};

CharacterAt FindCharacter(CharWidths& widths, const RecordText& row, std::int64_t x)
{
    const std::int64_t column = widths.ColumnAt(row.text, row.length, x);
    if (column >= row.length) return {true, x, x};
    const std::int64_t start = widths.TextWidth(row.text, column);
    return {row.text[column] == u' ', start, start + widths.CharWidth(row.text[column])};
}

// The greatest position at or left of `x` at which no looked-at row has a character across (or, for gaps, next to the left).
std::int64_t FindTextGap(View& view, const Scdr& node, std::int64_t x, bool onlyBlank)
{
    CharWidths& widths = view.edit.widths;
    const std::int64_t first = FirstShownRow(node);
    const std::int64_t rows = std::min(ShownRows(node), RowsLookedAt);
    for (std::int64_t row = 0; row < rows && x > 0;) {
        const RecordText text = GetRecord(node.records, first + row);
        // The character before the cut decides: a cut behind a blank separates numbers.
        const CharacterAt before = FindCharacter(widths, text, x - 1);
        const bool hurts = onlyBlank ? !before.blank : LiesAcross(before.start, before.end, x);
        if (!hurts) {
            ++row;
            continue;
        }
        x = before.start;
        row = 0;
    }
    return x;
}

// Whether what is below the node may be cut as well.
bool LookAtColumn(Question& question, const Scdr& node)
{
    const Extent box = WidthOf(question.view, node);
    const std::int64_t position = question.position;
    if (!LiesAcross(box.start, box.end, position)) return !IsClosed(node);
    const bool fits = box.end - box.start <= question.page;
    if (IsClosed(node) || (question.level == LevelBox && fits)) {
        question.answer = std::min(question.answer, box.start);
        return false;
    }
    if (!IsSimple(node)) return true;
    const std::int64_t left = TextCorner(question.view, node, NodeRect(node)).x;
    if (position <= left) {
        question.answer = std::min(question.answer, box.start);
        return false;
    }
    const std::int64_t gap =
        FindTextGap(question.view, node, position - left, question.level != LevelCharacter);
    // What is longer than a page is cut in any case: there is no use in beginning it on a page of its own.
    const std::int64_t whole = fits ? box.start : NowhereOnThisPage;
    question.answer = std::min(question.answer, gap <= 0 ? whole : left + gap);
    return false;
}

std::int64_t ColumnAcross(void* state, std::int32_t level, std::int64_t position)
{
    const PagedArray& array = *static_cast<const PagedArray*>(state);
    Question question{array.view, array.page, level, position, position};
    ForEachNodeMeeting(array.view, {position, 0, position + 1, Everything},
                       [&](const Scdr& node) { return LookAtColumn(question, node); });
    return question.answer;
}

} // namespace

PageGrid CutArrayIntoPages(View& view, const Size64& page)
{
    TraceScope trace("page_cuts.cpp", "CutArrayIntoPages");
    PageGrid grid;
    PagedArray across{view, page.width};
    PagedArray down{view, page.height};
    grid.columns = CutIntoPages(view.top->width, page.width, {&ColumnAcross, &across, ColumnLevels});
    grid.rows = CutIntoPages(view.top->height, page.height, {&LineAcross, &down, LineLevels});
    return grid;
}

Point64 TextCorner(const View& view, const Scdr& node, const Rect64& box) noexcept
{
    constexpr std::int64_t TextPadding = 2;
    const ViewMetrics& metrics = view.metrics;
    const std::int64_t moreAxes = node.Rank > 2 ? node.Rank - 2 : 0;
    return {box.left + metrics.margin + metrics.edge.width * (1 + 2 * moreAxes) + TextPadding,
            box.top + metrics.margin + metrics.edge.height + TextPadding};
}

} // namespace vantrel
