#include "editor/edit_model.h"
#include "entry/trace.h"

namespace vantrel {

namespace {

// Both ends count as inside.
bool LiesInside(const EditSelection& selection, EditCaret caret) noexcept
{
    return !Precedes(caret, selection.start) && !Precedes(selection.end, caret);
}

void SelectTo(EditWindow& window, EditCaret caret)
{
    MoveCaretTo(window, caret);
    SelectionEnd(window);
}

void PressLeft(EditWindow& window, EditCaret caret, bool shift)
{
    if (shift) {
        if (IsSelectionEmpty(window)) SelectionStart(window);
        SelectTo(window, caret);
        window.selecting = true;
    } else if (!IsSelectionEmpty(window) && LiesInside(NormalisedSelection(window), caret)) {
        window.dragText = true;
        window.dropTarget = caret;
    } else {
        MoveCaretTo(window, caret);
        SelectionReset(window);
        window.selecting = true;
    }
}

bool IsSameNode(const EditWindow& window) noexcept
{
    return HasEditedNode(window) && window.view->node == window.pressed;
}

// --- dropping ---

std::int32_t InsertAt(EditWindow& window, EditCaret caret, const Text& text, bool firstOfGroup)
{
    MoveCaretTo(window, caret);
    SelectionReset(window);
    return PasteString(window, text.c_str(), static_cast<std::int64_t>(text.size()), firstOfGroup);
}

std::int32_t DeleteRange(EditWindow& window, const EditSelection& range, bool firstOfGroup)
{
    MoveCaretTo(window, range.start);
    SelectionStart(window);
    SelectTo(window, range.end);
    return DeleteMarked(window, firstOfGroup);
}

// What lies later in the text is changed first, so that places before it stay true.
std::int32_t MoveText(EditWindow& window, const EditSelection& range, EditCaret target, const Text& text)
{
    if (Precedes(target, range.start)) {
        const std::int32_t deleted = DeleteMarked(window, true);
        return deleted != 0 ? deleted : InsertAt(window, target, text, false);
    }
    const std::int32_t inserted = InsertAt(window, target, text, true);
    return inserted != 0 ? inserted : DeleteRange(window, range, false);
}

Text SelectedText(const EditWindow& window, const EditSelection& range)
{
    return RecordsToString(window.view->node->records, FirstEditRow(window),
                           {range.start.column, range.start.line, range.end.column, range.end.line});
}

} // namespace

bool PressMouse(EditWindow& window, const MousePress& press)
{
    const TraceScope trace("mouse.cpp", "PressMouse");
    if (!Holds(window.text, press.point)) return false;
    const EditCaret caret = PositionToCaret(window, press.point);
    window.dragText = window.selecting = false;
    window.pressed = window.view->node;
    if (press.left && !press.right && !press.control) {
        PressLeft(window, caret, press.shift);
    } else if (press.right && !press.left && !press.shift && !press.control) {
        MoveCaretTo(window, caret);
    }
    return window.dragText || window.selecting;
}

void DragMouse(EditWindow& window, Point64 point)
{
    const TraceScope trace("mouse.cpp", "DragMouse");
    if ((!window.selecting && !window.dragText) || !IsSameNode(window)) return;
    // The caret may follow the pointer out of the window; that movement scrolls.
    const EditCaret caret = PositionToCaret(window, point);
    if (window.selecting && caret != CaretOf(window)) SelectTo(window, caret);
    if (window.dragText && caret != window.dropTarget) {
        window.dropTarget = caret;
        window.effects->invalidate(window);
    }
}

CaretPicture GetDropMark(EditWindow& window)
{
    const TraceScope trace("mouse.cpp", "GetDropMark");
    const bool moves = window.dragText && IsSameNode(window) && !window.readOnly && !IsLocked(window) &&
                       !LiesInside(NormalisedSelection(window), window.dropTarget);
    return moves ? CaretPictureAt(window, window.dropTarget, false) : CaretPicture{};
}

void EndMouse(EditWindow& window, Point64 point)
{
    const TraceScope trace("mouse.cpp", "EndMouse");
    if (!window.dragText && !window.selecting && !window.resizing) return;
    const bool drops = window.dragText;
    DragMouse(window, point);
    if (window.selecting && IsSameNode(window)) SelectionEnd(window);
    window.dragText = window.selecting = window.resizing = false;
    if (!HasEditedNode(window)) return;
    if (drops) window.effects->invalidate(window); // the mark goes, whatever becomes of the text
    if (drops && IsSameNode(window)) DropText(window, PositionToCaret(window, point));
    DrawCaret(window);
}

void DropText(EditWindow& window, EditCaret target)
{
    const TraceScope trace("mouse.cpp", "DropText");
    if (IsSelectionEmpty(window)) return;
    const EditSelection range = NormalisedSelection(window);
    if (LiesInside(range, target)) {
        SelectionReset(window);
        return;
    }
    if (RefuseChange(window)) return;
    const EditPlace before = PlaceOf(window);
    const EditUndoRecord* const newest = StateOf(window).undo;
    try {
        const Text text = SelectedText(window, range);
        if (MoveText(window, range, target, text) != 0 && StateOf(window).undo == newest)
            PutBack(window, before);
    } catch (VTERROR_CODE) {
        NotifyOutOfMemory(window);
    }
}

} // namespace vantrel
