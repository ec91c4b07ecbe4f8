#include "editor/edit_model.h"
#include "entry/trace.h"

namespace vantrel {

namespace {

bool Contains(const Rect64& area, Point64 point) noexcept
{
    return point.x >= area.left && point.x < area.right && point.y >= area.top && point.y < area.bottom;
}

} // namespace

bool PressMouse(EditWindow& window, const MousePress& press)
{
    const TraceScope trace("mouse.cpp", "PressMouse");
    if (!Contains(window.text, press.point)) return false;
    const EditCaret caret = PositionToCaret(window, press.point);
    window.selecting = false;
    if (press.left && !press.right && !press.control) {
        if (press.shift && IsSelectionEmpty(window)) SelectionStart(window);
        MoveCaretTo(window, caret);
        if (press.shift) {
            SelectionEnd(window);
        } else {
            SelectionReset(window);
        }
        window.selecting = true;
    } else if (press.right && !press.left && !press.shift && !press.control) {
        MoveCaretTo(window, caret);
    }
    return window.selecting;
}

void DragMouse(EditWindow& window, Point64 point)
{
    const TraceScope trace("mouse.cpp", "DragMouse");
    if (!window.selecting) return;
    // The caret may follow the pointer out of the window; that movement scrolls.
    const EditCaret caret = PositionToCaret(window, point);
    if (caret == CaretOf(window)) return;
    MoveCaretTo(window, caret);
    SelectionEnd(window);
}

void EndMouse(EditWindow& window, Point64 point)
{
    const TraceScope trace("mouse.cpp", "EndMouse");
    if (!window.selecting) return;
    if (HasEditedNode(window)) DragMouse(window, point);
    window.selecting = false;
    DrawCaret(window);
}

} // namespace vantrel
