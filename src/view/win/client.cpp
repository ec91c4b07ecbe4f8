#include "view/win/client.h"

#include <windowsx.h>

#include "entry/trace.h"
#include "resources/resource.h"
#include "tools/win/guard.h"
#include "tools/win/visual_cues.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"
#include "view/edited.h"
#include "view/messages.h"
#include "view/options.h"
#include "view/selection.h"
#include "view/win/client_window.h"
#include "view/win/painting.h"

namespace vantrel {

namespace {

ATOM g_class = 0; // only a class of our own is used and taken away again

// Arrows, Tab, all keys and characters: none of them is left to a dialog.
constexpr LRESULT WantedKeys = DLGC_WANTARROWS | DLGC_WANTTAB | DLGC_WANTALLKEYS | DLGC_WANTCHARS;
static_assert(WantedKeys == 135);

ClientWindow* ClientOfWindow(HWND window) noexcept
{
    return reinterpret_cast<ClientWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

LRESULT Default(const ClientWindow& client, UINT message, WPARAM wParam, LPARAM lParam) noexcept
{
    return DefWindowProcW(client.window, message, wParam, lParam);
}

bool IsRefusedWhileBusy(UINT message) noexcept
{
    switch (message) {
    case WM_COMMAND:
    case WM_SETFONT:
    case WM_KEYDOWN:
    case WM_CHAR:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_LBUTTONDBLCLK:
    case ViewConvertObject:
    case ViewSetOption:
    case ViewSetPickIndex:
    case ViewSetScdr:
    case ViewPrintScdr:
    case ViewSetObject: return true;
    default: return false;
    }
}

void OnSize(ClientWindow& client, WPARAM kind)
{
    const TraceScope trace("client.cpp", "OnSize");
    if (kind == SIZE_MINIMIZED) return;
    View& view = client.view;
    const RECT area = QmGetClientRectangle(client.window);
    view.metrics.client = {area.right, area.bottom};
    const Scdr* const node = Selected(view);
    if (node != nullptr && IsSimple(*node) && (node->Flags & FlagMaximized) != 0) {
        if (client.activeEdit != nullptr) MoveWindow(client.activeEdit, 0, 0, area.right, area.bottom, FALSE);
    } else {
        SetScrollBarsWindowSize(view.scroll, area.right, area.bottom);
        AdjustScrollPositions(view.scroll);
    }
    EditResize(view);
    view.effects.invalidate(view);
}

// The editor has the keyboard whenever it is there; the view only lends its place in the focus order.
void OnSetFocus(ClientWindow& client)
{
    if (client.activeEdit != nullptr) {
        SetFocus(client.activeEdit);
    } else {
        NotifyFrame(client.view, ViewNotifySetFocus);
    }
}

// Painting covers everything once there is an array; before that nobody paints.
LRESULT OnEraseBkGnd(const ClientWindow& client, HDC dc)
{
    if (client.view.top == nullptr) {
        const RECT area = QmGetClientRectangle(client.window);
        FillRect(dc, &area, GetSysColorBrush(COLOR_3DFACE));
    }
    return 1;
}

LRESULT OnCtlColorEdit(const ClientWindow& client, HDC dc)
{
    const Scdr* const node = Selected(client.view);
    const ArrayColors colors = node != nullptr ? ColorsOf(client.view, *node)
                                               : ArrayColors{COLOR_WINDOW, GetSysColor(COLOR_WINDOWTEXT)};
    SetTextColor(dc, colors.text);
    SetBkColor(dc, GetSysColor(colors.background));
    return reinterpret_cast<LRESULT>(GetSysColorBrush(colors.background));
}

LRESULT OnSetModified(View& view, bool modified) noexcept
{
    view.flags = static_cast<std::uint8_t>(modified ? view.flags | ViewModified : view.flags & ~ViewModified);
    if (!modified) ForgetModified(view);
    return 0;
}

LRESULT OnDisableMenuItems(const ClientWindow& client)
{
    const HMENU menu = GetMenu(client.view.frame);
    if (menu != nullptr) DisableMenuChoices(client, menu);
    return 0;
}

LRESULT Done() noexcept
{
    return 0;
}

LRESULT HandlePrivateMessage(ClientWindow& client, UINT message, WPARAM wParam, LPARAM lParam)
{
    View& view = client.view;
    switch (message) {
    case ViewConvertObject: return OnConvertObject(client, reinterpret_cast<HostObject>(lParam));
    case ViewDisableMenuItems: return OnDisableMenuItems(client);
    case ViewFind: return OnFind(client, static_cast<FindRequest>(wParam));
    case ViewGetFindOptions: return reinterpret_cast<LRESULT>(&view.edit.find);
    case ViewGetModified: return (view.flags & ViewModified) != 0 ? 1 : 0;
    case ViewGetOption: return GetViewOption(view, static_cast<std::int32_t>(wParam)) ? 1 : 0;
    case ViewGetPickIndex: return OnGetPickIndex(client, wParam != 0, reinterpret_cast<const Scdr*>(lParam));
    case ViewGetPreferredSize:
        return lParam != 0 ? OnGetPreferredSize(client, *reinterpret_cast<SIZE*>(lParam)) : 1;
    case ViewGetScdr: return OnGetScdr(client, wParam != 0);
    case ViewGetSelectedScdr: return reinterpret_cast<LRESULT>(Selected(view));
    case ViewSetModified: return OnSetModified(view, wParam != 0);
    case ViewSetOption: return OnSetOption(client, LOWORD(wParam), HIWORD(wParam) != 0);
    case ViewSetPickIndex: return OnSetPickIndex(client, reinterpret_cast<const char16_t*>(lParam));
    case ViewSetScdr: return OnSetScdr(client, reinterpret_cast<Scdr*>(lParam));
    case ViewGetBusy: return (view.flags & ViewBusy) != 0 ? 1 : 0;
    case ViewPrintScdr:
        return OnPrintScdr(client, reinterpret_cast<HDC>(wParam), reinterpret_cast<const RECT*>(lParam));
    case ViewSetObject: return OnSetObject(client, reinterpret_cast<HostObject>(lParam));
    default: return Default(client, message, wParam, lParam);
    }
}

LRESULT HandleMouse(ClientWindow& client, UINT message, WPARAM wParam, LPARAM lParam)
{
    OnMouse(client, message, wParam, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
    return Default(client, message, wParam, lParam);
}

LRESULT HandleMessage(ClientWindow& client, UINT message, WPARAM wParam, LPARAM lParam)
{
    if ((client.view.flags & ViewBusy) != 0 && IsRefusedWhileBusy(message)) {
        StatusMessage(client.window, IDS_EDITOR_IS_BUSY, 0);
        return Default(client, message, wParam, lParam);
    }
    switch (message) {
    case WM_DESTROY: return OnDestroy(client), Done();
    case WM_SIZE: return OnSize(client, wParam), Done();
    case WM_SETTINGCHANGE:
    case WM_DISPLAYCHANGE: return OnSettingChange(client), Done();
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED: return OnLookChange(client, message, wParam, lParam), Done();
    case WM_SETFOCUS: return OnSetFocus(client), Done();
    case WM_PAINT: return OnPaint(client), Done();
    case WM_ERASEBKGND: return OnEraseBkGnd(client, reinterpret_cast<HDC>(wParam));
    case WM_SETCURSOR:
        if (OnSetCursor(client, reinterpret_cast<HWND>(wParam), LOWORD(lParam))) return 1;
        return Default(client, message, wParam, lParam);
    case WM_SETFONT: return OnSetFont(client, reinterpret_cast<HFONT>(wParam)), Done();
    case WM_GETFONT: return reinterpret_cast<LRESULT>(client.font);
    case WM_NOTIFY: return OnNotify(client, *reinterpret_cast<const NMHDR*>(lParam)), Done();
    case WM_GETDLGCODE: return WantedKeys;
    case WM_KEYDOWN: return OnClientKeyDown(client, wParam) ? 0 : Default(client, message, wParam, lParam);
    case WM_CHAR: return OnChar(client, wParam) ? 0 : Default(client, message, wParam, lParam);
    case WM_COMMAND: return OnCommand(client, LOWORD(wParam)), Done();
    case WM_HSCROLL:
    case WM_VSCROLL: return OnScroll(client, message, wParam), Done();
    case WM_MOUSEWHEEL: return OnMouseWheel(client, wParam), Done();
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_LBUTTONDBLCLK: return HandleMouse(client, message, wParam, lParam);
    case WM_TIMER: return OnBarTimer(client, wParam), Done();
    case WM_CAPTURECHANGED: return OnCaptureChanged(client), Done();
    case WM_MOUSELEAVE: return DrawRestoreButtons(client, message, {-1, -1}), Done();
    case WM_CONTEXTMENU: return OnContextMenu(client, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)}), Done();
    case WM_CLIPBOARDUPDATE: return NotifyFrame(client.view, ViewNotifyMenu), Done();
    case WM_CTLCOLOREDIT: return OnCtlColorEdit(client, reinterpret_cast<HDC>(wParam));
    default: return HandlePrivateMessage(client, message, wParam, lParam);
    }
}

LRESULT CALLBACK ClientProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept
{
    if (message == WM_CREATE) {
        return Sealed<LRESULT>(
            -1, [&] { return OnCreate(window, *reinterpret_cast<const CREATESTRUCTW*>(lParam)); });
    }
    ClientWindow* const client = ClientOfWindow(window);
    if (client == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    return Sealed<LRESULT>(0, [&] {
        const HandlerScope running(*client);
        return HandleMessage(*client, message, wParam, lParam);
    });
}

} // namespace

HandlerScope::~HandlerScope()
{
    if (--client_.handlersRunning > 0 || !client_.destroyed) return;
    FreeScdr(&client_.view.root);
    delete &client_;
}

bool RegisterClientClass()
{
    const TraceScope trace("client.cpp", "RegisterClientClass");
    if (g_class != 0) return true;
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.style = CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW;
    windowClass.lpfnWndProc = &ClientProc;
    windowClass.hInstance = ModuleInstance();
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = AsWide(ClientClassName);
    g_class = RegisterClassExW(&windowClass);
    return g_class != 0;
}

void UnregisterClientClass()
{
    const TraceScope trace("client.cpp", "UnregisterClientClass");
    if (g_class == 0 || !UnregisterClassW(AsWide(ClientClassName), ModuleInstance())) return;
    g_class = 0;
    EndVisualCues();
}

} // namespace vantrel
