#include <windowsx.h>

#include "editor/win/edit_instance.h"
#include "entry/trace.h"
#include "tools/win/guard.h"
#include "tools/win/scroll_bars.h"

namespace vantrel {

namespace {

constexpr UINT_PTR MouseTimer = 4559;

// One for all edit windows: a double click may begin in one and end in another that has just been put in its place.
ULONGLONG g_lastPress = 0;

Point64 PointOf(LPARAM point) noexcept
{
    return {GET_X_LPARAM(point), GET_Y_LPARAM(point)};
}

bool IsDoubleClick() noexcept
{
    const ULONGLONG now = GetTickCount64();
    const bool twice = g_lastPress != 0 && now - g_lastPress < GetDoubleClickTime();
    g_lastPress = now;
    return twice;
}

// What a double click means is the view's to decide; no word is selected.
void PassDoubleClick(EditInstance& instance, WPARAM keys, LPARAM point) noexcept
{
    const HWND view = GetParent(WindowOf(instance));
    POINT place{GET_X_LPARAM(point), GET_Y_LPARAM(point)};
    MapWindowPoints(WindowOf(instance), view, &place, 1);
    SendMessageW(view, WM_LBUTTONDBLCLK, keys, MAKELPARAM(place.x, place.y));
}

// Keeps the selection growing while the mouse is held still outside the window.
void CALLBACK MouseTimerProc(HWND window, UINT, UINT_PTR, DWORD)
{
    Sealed<int>(0, [&] {
        EditInstance* instance = GetEditInstance(window);
        if (instance != nullptr && HasEditedNode(instance->edit))
            DragMouse(instance->edit, instance->lastMousePoint);
        return 0;
    });
}

void BeginCapture(EditInstance& instance) noexcept
{
    SetCapture(WindowOf(instance));
    instance.mouseTimer = SetTimer(WindowOf(instance), MouseTimer, 0, MouseTimerProc) != 0;
}

} // namespace

LRESULT OnButtonDown(EditInstance& instance, UINT message, WPARAM keys, LPARAM point)
{
    const TraceScope trace("edit_mouse.cpp", "OnButtonDown");
    if (GetFocus() != WindowOf(instance)) SetFocus(WindowOf(instance));
    const LRESULT result = DefaultEditProc(WindowOf(instance), message, keys, point);
    if (IsDoubleClick()) {
        PassDoubleClick(instance, keys, point);
        return result;
    }
    instance.lastMousePoint = PointOf(point);
    MousePress press;
    press.left = (keys & MK_LBUTTON) != 0;
    press.right = (keys & MK_RBUTTON) != 0;
    press.shift = (keys & MK_SHIFT) != 0;
    press.control = (keys & MK_CONTROL) != 0;
    press.point = instance.lastMousePoint;
    if (PressMouse(instance.edit, press)) BeginCapture(instance);
    return result;
}

LRESULT OnMouseMove(EditInstance& instance, LPARAM point)
{
    const TraceScope trace("edit_mouse.cpp", "OnMouseMove");
    instance.lastMousePoint = PointOf(point);
    if (instance.edit.resizing) ResizeToMouse(instance);
    DragMouse(instance.edit, instance.lastMousePoint);
    return 0;
}

LRESULT OnButtonUp(EditInstance& instance, LPARAM point)
{
    const TraceScope trace("edit_mouse.cpp", "OnButtonUp");
    instance.lastMousePoint = PointOf(point);
    ReleaseCapture(); // the work happens when the capture has gone, however it goes
    return 0;
}

LRESULT OnCaptureChanged(EditInstance& instance)
{
    const TraceScope trace("edit_mouse.cpp", "OnCaptureChanged");
    if (instance.mouseTimer) KillTimer(WindowOf(instance), MouseTimer);
    instance.mouseTimer = false;
    ClipCursor(nullptr);
    EndMouse(instance.edit, instance.lastMousePoint);
    return 0;
}

LRESULT OnWheel(EditInstance& instance, WPARAM wParam, LPARAM lParam)
{
    const TraceScope trace("edit_mouse.cpp", "OnWheel");
    EditWindow& edit = instance.edit;
    // Of Shift and Ctrl the message knows how they were when the wheel turned.
    const WORD keys = GET_KEYSTATE_WPARAM(wParam);
    const bool shift = (keys & MK_SHIFT) != 0;
    const bool control = (keys & MK_CONTROL) != 0;
    const bool alt = edit.effects->keyStates(edit).alt;
    if (!shift && control != alt) {
        return SendMessageW(GetParent(WindowOf(instance)), WM_MOUSEWHEEL, wParam, lParam);
    }
    if (OnMouseWheel(StateOf(edit).scroll, keys, GET_WHEEL_DELTA_WPARAM(wParam), edit.view->averageCharWidth,
                     edit.view->lineHeight)) {
        DrawCaret(edit); // the text moved under it
    }
    return 0;
}

} // namespace vantrel
