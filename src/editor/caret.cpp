#include <algorithm>

#include "editor/edit_model.h"
#include "entry/trace.h"

namespace vantrel {

namespace {

// To within 0 .. last from a place at or behind 0, without overflow for any delta. The place may lie behind `last`: a column counts from where
// the caret stood in the longer line that it leaves.
std::int64_t Moved(std::int64_t from, std::int64_t delta, std::int64_t last) noexcept
{
    if (delta == CaretHome) return 0;
    if (delta == CaretEnd) return last;
    const std::int64_t start = std::max<std::int64_t>(from, 0);
    if (delta < 0) return delta < -start ? 0 : std::min(start + delta, last);
    return start >= last || delta > last - start ? last : start + delta;
}

struct CaretDelta {
    std::int64_t columns;
    std::int64_t lines;
};

// One step to the right of a line's end goes to the next line's start, one step to the left of its start to the end of the line before.
CaretDelta AcrossLineEnds(const EditWindow& window, CaretDelta delta, std::int64_t last) noexcept
{
    const EditState& state = StateOf(window);
    if (delta.lines != 0) return delta;
    const std::int64_t length = EditLine(window, state.caretLine).length;
    if (delta.columns == 1 && state.caretColumn == length && state.caretLine < last) return {CaretHome, 1};
    if (delta.columns == -1 && state.caretColumn == 0 && state.caretLine >= 1) return {CaretEnd, -1};
    return delta;
}

void PlaceCaret(EditWindow& window, EditCaret caret)
{
    if (caret == CaretOf(window)) return;
    PutCaret(window, caret);
    ScrollCaretIntoWindow(window);
    DrawCaret(window);
}

} // namespace

EditCaret CaretOf(const EditWindow& window) noexcept
{
    return {StateOf(window).caretColumn, StateOf(window).caretLine};
}

void MoveCaret(EditWindow& window, std::int64_t columns, std::int64_t lines)
{
    const TraceScope trace("caret.cpp", "MoveCaret");
    const std::int64_t rows = EditRows(window);
    if (rows <= 0) return;
    const EditState& state = StateOf(window);
    const CaretDelta delta = AcrossLineEnds(window, {columns, lines}, rows - 1);
    const std::int64_t line = Moved(state.caretLine, delta.lines, rows - 1);
    const std::int64_t column = Moved(state.caretColumn, delta.columns, EditLine(window, line).length);
    PlaceCaret(window, {column, line});
}

void PutCaret(EditWindow& window, EditCaret caret) noexcept
{
    EditState& state = StateOf(window);
    window.view->findMatch = false;
    state.caretColumn = caret.column;
    state.caretLine = caret.line;
}

void MoveCaretTo(EditWindow& window, EditCaret caret)
{
    const TraceScope trace("caret.cpp", "MoveCaretTo");
    if (EditRows(window) > 0) PlaceCaret(window, ClampToText(window, caret));
}

void SelectionStart(EditWindow& window)
{
    const TraceScope trace("caret.cpp", "SelectionStart");
    EditState& state = StateOf(window);
    state.anchorColumn = state.caretColumn;
    state.anchorLine = state.caretLine;
    window.effects->invalidate(window);
}

void SelectionEnd(EditWindow& window)
{
    const TraceScope trace("caret.cpp", "SelectionEnd");
    EditState& state = StateOf(window);
    state.endColumn = state.caretColumn;
    state.endLine = state.caretLine;
    window.effects->invalidate(window);
}

void SelectionReset(EditWindow& window)
{
    SelectionStart(window);
    SelectionEnd(window);
}

void SelectAll(EditWindow& window)
{
    const TraceScope trace("caret.cpp", "SelectAll");
    MoveCaret(window, CaretHome, CaretHome);
    SelectionStart(window);
    MoveCaret(window, CaretEnd, CaretEnd);
    SelectionEnd(window);
}

bool IsSelectionEmpty(const EditWindow& window) noexcept
{
    const EditState& state = StateOf(window);
    return state.anchorColumn == state.endColumn && state.anchorLine == state.endLine;
}

EditSelection NormalisedSelection(const EditWindow& window) noexcept
{
    const EditState& state = StateOf(window);
    const EditCaret anchor = ClampToText(window, {state.anchorColumn, state.anchorLine});
    const EditCaret end = ClampToText(window, {state.endColumn, state.endLine});
    return Precedes(end, anchor) ? EditSelection{end, anchor} : EditSelection{anchor, end};
}

bool IsOvertyping(EditWindow& window)
{
    return window.view->overtype && !window.effects->keyStates(window).insertToggled;
}

void DrawCaret(EditWindow& window)
{
    const TraceScope trace("caret.cpp", "DrawCaret");
    if (!window.dragText && !window.selecting && !window.resizing) window.effects->drawCaret(window);
}

CaretPicture GetCaretPicture(EditWindow& window)
{
    const TraceScope trace("caret.cpp", "GetCaretPicture");
    const Scdr& node = *window.view->node;
    // The one character of a scalar is replaced by whatever is typed, and the caret says so.
    const bool replacesAll = node.Rank == 0 && node.Type == TypeCharacter;
    return CaretPictureAt(window, replacesAll ? EditCaret{0, 0} : CaretOf(window),
                          replacesAll || IsOvertyping(window));
}

CaretPicture CaretPictureAt(EditWindow& window, EditCaret caret, bool block)
{
    const TraceScope trace("caret.cpp", "CaretPictureAt");
    const CaretPlace place = CaretToPosition(window, caret);
    const Rect64 area = TextArea(window);
    const std::int64_t top = std::max(place.point.y, area.top);
    const std::int64_t bottom = std::min(place.point.y + window.view->lineHeight, area.bottom);
    const std::int64_t width = block ? place.charWidth : 0;
    const bool shown = bottom > top && place.point.x >= area.left && place.point.x < window.client.right;
    return {{place.point.x, top}, width, bottom - top, shown};
}

EditPlace PlaceOf(const EditWindow& window) noexcept
{
    const EditState& state = StateOf(window);
    return {CaretOf(window),
            {state.anchorColumn, state.anchorLine},
            {state.endColumn, state.endLine},
            window.view->findMatch};
}

void PutBack(EditWindow& window, const EditPlace& place)
{
    const TraceScope trace("caret.cpp", "PutBack");
    EditState& state = StateOf(window);
    PlaceCaret(window, place.caret);
    state.anchorColumn = place.anchor.column;
    state.anchorLine = place.anchor.line;
    state.endColumn = place.end.column;
    state.endLine = place.end.line;
    window.view->findMatch = place.findMatch;
    window.effects->invalidate(window);
}

} // namespace vantrel
