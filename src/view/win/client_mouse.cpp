#include "entry/trace.h"
#include "tools/win/window.h"
#include "view/box_bars.h"
#include "view/busy.h"
#include "view/hit_test.h"
#include "view/layout.h"
#include "view/selection.h"
#include "view/win/client_window.h"
#include "view/win/painting.h"

namespace vantrel {

namespace {

// A button held on a small scroll bar scrolls on, after a pause as the system's own bars make.
constexpr UINT_PTR BarTimer = 1;
constexpr UINT BarPause = 400; // milliseconds
constexpr UINT BarRepeat = 50;

bool IsMinimized(const Scdr& node) noexcept
{
    return (node.Flags & FlagMinimized) != 0;
}

Scdr& NodeAt(const View& view, POINT point) noexcept
{
    Scdr* const hit = HitTestScdr(view, *view.top, {point.x, point.y}, -view.scroll.horizontal.position,
                                  -view.scroll.vertical.position);
    return hit != nullptr ? *hit : *view.top;
}

bool IsFocusHere(const ClientWindow& client) noexcept
{
    const HWND focus = GetFocus();
    return focus == client.window || (focus != nullptr && focus == client.activeEdit);
}

Point64 InLayout(const View& view, POINT point) noexcept
{
    return {point.x + view.scroll.horizontal.position, point.y + view.scroll.vertical.position};
}

// The bars of a box scroll its text without selecting it.
bool PressBar(ClientWindow& client, Scdr& hit, POINT point)
{
    if (!PressBoxBar(client.view, hit, InLayout(client.view, point), client.barPress)) return false;
    SetCapture(client.window);
    SetTimer(client.window, BarTimer, BarPause, nullptr);
    client.view.effects.invalidate(client.view); // pressed parts look so
    return true;
}

// A press that reached the view beside the editor's own window, on the frame of the array that is being edited. Not while busy, since the
// editor's own tracking of the mouse runs until the button is released.
void PassClickToEditor(const ClientWindow& client, POINT point)
{
    POINT cursor{};
    GetCursorPos(&cursor);
    const LPARAM screen = MAKELPARAM(cursor.x, cursor.y);
    const LRESULT hit = SendMessageW(client.activeEdit, WM_NCHITTEST, 0, screen);
    if (hit != HTCLIENT) {
        SendMessageW(client.activeEdit, WM_NCLBUTTONDOWN, static_cast<WPARAM>(hit), screen);
        return;
    }
    MapWindowPoints(client.window, client.activeEdit, &point, 1);
    SendMessageW(client.activeEdit, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(point.x, point.y));
}

// Alt is not among the message's keys; all three are asked for, too, since a press may come without its keys.
bool IsModified(WPARAM keys) noexcept
{
    return (keys & (MK_SHIFT | MK_CONTROL)) != 0 || IsKeyDown(VK_SHIFT) || IsKeyDown(VK_CONTROL) ||
           IsKeyDown(VK_MENU);
}

void OnLeftButtonDown(ClientWindow& client, Scdr& hit, POINT point)
{
    View& view = client.view;
    if (Selected(view) != &hit) {
        const BusyMark busy(view);
        SelectScdr(view, hit, true);
    } else if (client.activeEdit != nullptr) {
        PassClickToEditor(client, point);
    } else {
        SetScdrFocus(view); // the focus may have been elsewhere
    }
}

void OnLeftButtonUp(ClientWindow& client, Scdr& hit)
{
    View& view = client.view;
    if (Selected(view) != &hit || !IsMinimized(hit) || GetFocus() != client.window) return;
    const BusyMark busy(view);
    if (RestoreScdr(view) == 0) SetScdrFocus(view);
}

void OnDoubleClick(ClientWindow& client, Scdr& hit)
{
    View& view = client.view;
    if (Selected(view) != &hit || IsMinimized(hit) || !IsFocusHere(client)) return;
    const BusyMark busy(view);
    const bool maximized = (hit.Flags & FlagMaximized) != 0;
    if ((maximized ? RestoreScdr(view) : MaximizeScdr(view)) == 0) SetScdrFocus(view);
}

bool IsOverText(const View& view, POINT point) noexcept
{
    const Scdr& hit = NodeAt(view, point);
    if (!IsSimple(hit) || IsMinimized(hit)) return false;
    const Point64 place = InLayout(view, point);
    return Holds(GetEditRectangle(view.metrics.margin, hit), place) && !IsOnBoxBars(view, hit, place);
}

const wchar_t* CursorFor(const ClientWindow& client) noexcept
{
    const View& view = client.view;
    if ((view.flags & ViewBusy) != 0) return IDC_WAIT;
    if (view.top == nullptr) return IDC_ARROW;
    POINT point{};
    GetCursorPos(&point);
    ScreenToClient(client.window, &point);
    return IsOverText(view, point) ? IDC_IBEAM : IDC_ARROW;
}

} // namespace

void OnMouse(ClientWindow& client, UINT message, WPARAM keys, POINT point)
{
    const TraceScope trace("client_mouse.cpp", "OnMouse");
    View& view = client.view;
    if (view.top == nullptr || (view.flags & ViewBusy) != 0) return;
    if (client.barPress.node != nullptr) {
        if (message == WM_LBUTTONUP) {
            ReleaseCapture();
        } else {
            DragBoxBar(view, client.barPress, InLayout(view, point));
        }
        return;
    }
    DrawRestoreButtons(client, message, point);
    if (message == WM_MOUSEMOVE || (message == WM_LBUTTONDOWN && IsModified(keys))) return;
    Scdr& hit = NodeAt(view, point);
    // The second of two quick clicks is one more press of the bar.
    if (message != WM_LBUTTONUP && PressBar(client, hit, point)) return;
    switch (message) {
    case WM_LBUTTONDOWN: OnLeftButtonDown(client, hit, point); break;
    case WM_LBUTTONUP: OnLeftButtonUp(client, hit); break;
    case WM_LBUTTONDBLCLK: OnDoubleClick(client, hit); break;
    default: break;
    }
}

void OnBarTimer(ClientWindow& client, UINT_PTR id)
{
    const TraceScope trace("client_mouse.cpp", "OnBarTimer");
    if (id != BarTimer) return;
    if (client.barPress.node == nullptr || GetCapture() != client.window || !IsKeyDown(VK_LBUTTON)) {
        // Let go while the view was busy.
        if (GetCapture() == client.window) ReleaseCapture();
        OnCaptureChanged(client);
        return;
    }
    SetTimer(client.window, BarTimer, BarRepeat, nullptr);
    if ((client.view.flags & ViewBusy) == 0) RepeatBoxBar(client.view, client.barPress);
}

void OnCaptureChanged(ClientWindow& client)
{
    const TraceScope trace("client_mouse.cpp", "OnCaptureChanged");
    if (client.barPress.node == nullptr) return;
    KillTimer(client.window, BarTimer);
    client.barPress = BarPress{};
    client.view.effects.invalidate(client.view);
}

bool OnSetCursor(ClientWindow& client, HWND target, UINT hitTest)
{
    const TraceScope trace("client_mouse.cpp", "OnSetCursor");
    if (target != client.window || hitTest != HTCLIENT) return false;
    SetCursor(LoadCursorW(nullptr, CursorFor(client)));
    return true;
}

} // namespace vantrel
