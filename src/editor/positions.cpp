#include <algorithm>

#include "editor/edit_model.h"
#include "entry/trace.h"

namespace vantrel {

namespace {

// How far the text must move to bring a caret between the edges.
std::int64_t DistanceOutside(std::int64_t start, std::int64_t size, std::int64_t low,
                             std::int64_t high) noexcept
{
    if (start < low) return start - low;
    return start + size >= high ? start + size - high : 0;
}

std::int64_t PulledInside(std::int64_t start, std::int64_t size, std::int64_t low, std::int64_t high) noexcept
{
    if (start < low) return low;
    return start + size > high ? high - 1 : start;
}

} // namespace

bool ShowsMargins(const EditWindow& window) noexcept
{
    return (window.view->node->Flags & FlagMaximized) != 0;
}

Point64 Margins(const EditWindow& window) noexcept
{
    if (!ShowsMargins(window)) return {};
    return {window.view->lineNumbersWidth, window.view->rulerHeight};
}

Rect64 TextArea(const EditWindow& window) noexcept
{
    const Point64 margins = Margins(window);
    Rect64 area = window.text;
    area.left += margins.x;
    area.top += margins.y;
    return area;
}

CaretPlace CaretToPosition(EditWindow& window, EditCaret caret)
{
    const TraceScope trace("positions.cpp", "CaretToPosition");
    const Rect64 area = TextArea(window);
    const std::int64_t rows = EditRows(window);
    CaretPlace place{{area.left, area.top}, window.view->averageCharWidth};
    if (rows <= 0) return place;
    const std::int64_t line = std::clamp<std::int64_t>(caret.line, 0, rows - 1);
    const TextRow row = EditRow(window, line);
    const std::int64_t column = std::clamp<std::int64_t>(caret.column, 0, row.text.length);
    const EditState& state = StateOf(window);
    CharWidths& widths = window.view->widths;
    place.point.x += window.lineWidths.WidthUpTo(widths, row, column) - state.scroll.horizontal.position;
    place.point.y += line * window.view->lineHeight - state.scroll.vertical.position;
    if (column < row.text.length) place.charWidth = widths.CharWidth(row.text.text[column]);
    return place;
}

EditCaret PositionToCaret(EditWindow& window, Point64 point)
{
    const TraceScope trace("positions.cpp", "PositionToCaret");
    const std::int64_t rows = EditRows(window);
    if (rows <= 0) return {};
    const Rect64 area = TextArea(window);
    const EditState& state = StateOf(window);
    const std::int64_t x = point.x - area.left + state.scroll.horizontal.position;
    const std::int64_t y = point.y - area.top + state.scroll.vertical.position;
    const std::int64_t lineHeight = std::max(window.view->lineHeight, 1);
    const std::int64_t line = std::clamp<std::int64_t>(y / lineHeight, 0, rows - 1);
    return {window.lineWidths.ColumnAt(window.view->widths, EditRow(window, line), x), line};
}

void ScrollCaretIntoWindow(EditWindow& window)
{
    const TraceScope trace("positions.cpp", "ScrollCaretIntoWindow");
    const Rect64 area = TextArea(window);
    const CaretPlace place = CaretToPosition(window, CaretOf(window));
    const std::int64_t dx = DistanceOutside(place.point.x, place.charWidth, area.left, area.right);
    const std::int64_t dy = DistanceOutside(place.point.y, window.view->lineHeight, area.top, area.bottom);
    if (dx == 0 && dy == 0) return;
    ChangeScrollPositions(StateOf(window).scroll, dx, dy);
    window.effects->invalidate(window);
}

void MoveCaretIntoWindow(EditWindow& window)
{
    const TraceScope trace("positions.cpp", "MoveCaretIntoWindow");
    const Rect64 area = TextArea(window);
    const CaretPlace place = CaretToPosition(window, CaretOf(window));
    const std::int64_t x = PulledInside(place.point.x, place.charWidth, area.left, area.right);
    const std::int64_t y = PulledInside(place.point.y, window.view->lineHeight, area.top, area.bottom);
    if (x == place.point.x && y == place.point.y) return;
    EditCaret caret = PositionToCaret(window, {x, y});
    const CaretPlace found = CaretToPosition(window, caret);
    // A character cut by the left edge is no place for the caret; its right neighbour is.
    if (found.point.x < area.left) caret = PositionToCaret(window, {x + found.charWidth, y});
    if (caret == CaretOf(window)) return;
    PutCaret(window, caret);
    const bool extend = (GetShiftState(window.effects->keyStates(window)) & EditModifierShift) != 0;
    if (extend) {
        SelectionEnd(window);
    } else {
        SelectionReset(window);
    }
    DrawCaret(window);
}

} // namespace vantrel
