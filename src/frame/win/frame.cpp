#include "frame/win/frame.h"

#include <commctrl.h>

#include <memory>
#include <new>

#include "entry/trace.h"
#include "frame/messages.h"
#include "frame/win/frame_window.h"
#include "resources/resource.h"
#include "tools/win/default_font.h"
#include "tools/win/fonts.h"
#include "tools/win/guard.h"
#include "tools/win/placement.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"
#include "view/messages.h"

namespace vantrel {
namespace {

ATOM g_class = 0; // only a class of our own is used and taken away again

FrameWindow* FrameOf(HWND window) noexcept
{
    return reinterpret_cast<FrameWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

bool ClientCreate(FrameWindow& frame)
{
    frame.client =
        CreateWindowExW(0, AsWide(ClientClassName), nullptr,
                        WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS | WS_HSCROLL | WS_VSCROLL,
                        0, 0, 0, 0, frame.window, ChildId(ClientId), ModuleInstance(), frame.context);
    RethrowEscapedException();
    return frame.client != nullptr;
}

LRESULT OnCreate(HWND window, const CREATESTRUCTW& parameters)
{
    TraceScope trace("frame.cpp", "OnCreate");
    auto record = std::make_unique<FrameWindow>();
    FrameWindow& frame = *record;
    frame.context = static_cast<EditContext*>(parameters.lpCreateParams);
    frame.window = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(record.release()));
    ReadOptions(frame);
    CountFrame(frame);
    SetMenu(window, LoadMenuW(ModuleInstance(), MAKEINTRESOURCEW(IDM_FRAME)));
    // The view first: it has the font that the tool bar writes with, and the text that the find bar starts with.
    if (!StatusBarCreate(frame) || !ClientCreate(frame) || !ToolbarCreate(frame) ||
        !InformationCreate(frame) || !FindBarCreate(frame))
        return -1;
    GiveBarsTheirLook(frame);
    ShowOptionsInMenu(frame);
    return 0;
}

void OnDestroy(FrameWindow& frame)
{
    TraceScope trace("frame.cpp", "OnDestroy");
    if (frame.findBar != nullptr) { // a frame that never came up has nothing worth remembering
        SaveOptions(frame);
        WindowPlacementSave(frame.context, frame.window);
    }
    ToolbarDestroy(frame);
    if (frame.status != nullptr) CopyFontToWindow(frame.status, nullptr);
    if (frame.nameBox != nullptr) CopyFontToWindow(frame.nameBox, nullptr);
    if (frame.information != nullptr) CopyFontToWindow(frame.information, nullptr);
    UncountFrame(frame);
}

LRESULT OnSetName(FrameWindow& frame, std::uint32_t kind, HostObject object) noexcept
{
    switch (kind) {
    case FrameNameValue: frame.value = object; break;
    case FrameNameVariable: frame.name = object; break;
    default: break;
    }
    return 0;
}

void ShowSelectedAttributes(FrameWindow& frame)
{
    const LRESULT node = SendMessageW(frame.client, ViewGetSelectedScdr, 0, 0);
    DisplayScdrAttributes(frame, reinterpret_cast<const Scdr*>(node));
}

void UpdateCommands(const FrameWindow& frame)
{
    SendMessageW(frame.client, ViewDisableMenuItems, 0, 0);
    ToolbarFollowMenu(frame);
}

void OnViewNotify(FrameWindow& frame, std::int32_t code)
{
    switch (code) {
    case ViewNotifyState:
        ShowSelectedAttributes(frame);
        UpdateCommands(frame);
        break;
    case ViewNotifyFont:
        ToolbarSetFont(frame);
        ShowSelectedAttributes(frame);
        SendWmSize(frame.window);
        break;
    case ViewNotifyError: ShowHostError(frame); break;
    case ViewNotifyMenu: UpdateCommands(frame); break;
    default: break;
    }
}

LRESULT OnNotify(FrameWindow& frame, NMHDR& notification)
{
    if (notification.code == TTN_GETDISPINFOW) {
        OnToolTip(reinterpret_cast<NMTTDISPINFOW&>(notification));
    } else if (notification.code == TBN_GETINFOTIPW) {
        OnToolInfo(reinterpret_cast<NMTBGETINFOTIPW&>(notification));
    } else if (notification.code == NM_CUSTOMDRAW && notification.hwndFrom == frame.toolBar) {
        return OnDrawTool(reinterpret_cast<const NMTBCUSTOMDRAW&>(notification));
    } else if (notification.code == NM_CLICK && notification.hwndFrom == frame.status) {
        InformationToggle(frame);
    } else if (notification.hwndFrom == frame.client && frame.client != nullptr) {
        OnViewNotify(frame, static_cast<std::int32_t>(notification.code));
    }
    RethrowEscapedException();
    return 0;
}

void OnActivate(FrameWindow& frame, bool active, bool minimized)
{
    if (!active) {
        HWND const focus = GetFocus();
        if (focus != nullptr && IsChild(frame.window, focus)) frame.focus = focus;
        return;
    }
    if (minimized) return;
    const bool canReturn = frame.focus != nullptr && IsChild(frame.window, frame.focus) &&
                           IsWindowVisible(frame.focus) && IsWindowEnabled(frame.focus);
    SetFocus(canReturn ? frame.focus : frame.client);
}

void OnSystemChange(FrameWindow& frame, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (frame.findBar == nullptr) return;
    if (message == WM_SYSCOLORCHANGE || message == WM_THEMECHANGED) ToolbarCreateAgain(frame);
    for (HWND const child : {frame.status, frame.toolBar, frame.client})
        SendMessageW(child, message, wParam, lParam);
    SendWmSize(frame.window);
    InvalidateRect(frame.window, nullptr, TRUE);
}

void OnInitMenu(const FrameWindow& frame)
{
    SendMessageW(frame.client, ViewDisableMenuItems, 0, 0);
    RethrowEscapedException();
}

// F1, wherever the keyboard is. A box that says what is missing sends it, too.
void OnHelpKey(const FrameWindow& frame)
{
    if (!frame.asking) SendMessageW(frame.window, WM_COMMAND, ID_HELP_GENERAL, 0);
}

LRESULT Done() noexcept
{
    return 0;
}

LRESULT HandleMessage(FrameWindow& frame, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_DESTROY: return OnDestroy(frame), Done();
    case WM_CLOSE: return OnClose(frame), Done();
    case WM_QUERYENDSESSION: return MayEndSession(frame) ? TRUE : FALSE;
    case WM_ENDSESSION: return OnEndSession(frame), Done();
    case WM_HELP: return OnHelpKey(frame), TRUE;
    case WM_SIZE: return OnSize(frame), Done();
    case WM_ACTIVATE: return OnActivate(frame, LOWORD(wParam) != WA_INACTIVE, HIWORD(wParam) != 0), Done();
    case WM_SETFOCUS: return SetFocus(frame.client), Done();
    case WM_COMMAND: return OnCommand(frame, wParam, lParam);
    case WM_INITMENU: return OnInitMenu(frame), Done();
    case WM_NOTIFY: return OnNotify(frame, *reinterpret_cast<NMHDR*>(lParam));
    case WM_CTLCOLORSTATIC:
        if (reinterpret_cast<HWND>(lParam) == frame.information)
            return OnColorInformation(reinterpret_cast<HDC>(wParam));
        break;
    case WM_TIMER: return OnCloseTimer(frame), Done();
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED:
    case WM_SETTINGCHANGE:
    case WM_DISPLAYCHANGE: return OnSystemChange(frame, message, wParam, lParam), Done();
    case FrameGetSizeOnOpen: return (frame.options & FrameSizeOnOpen) != 0 ? 1 : 0;
    case FramePlaceNameBox: return OnPositionPickIndex(frame, static_cast<std::int32_t>(wParam)), Done();
    case FrameSetName:
        return OnSetName(frame, static_cast<std::uint32_t>(wParam), reinterpret_cast<HostObject>(lParam));
    case FrameSizeToDefinition: return OnSizeFrameToDefinition(frame), Done();
    case FrameIsClosing: return IsAnyFrameClosing(frame.context) ? 1 : 0;
    default: break;
    }
    return DefWindowProcW(frame.window, message, wParam, lParam);
}

// A handler may destroy this very window: the record waits for the outermost message to return.
class RecordScope {
public:
    explicit RecordScope(FrameWindow& frame) noexcept : frame_(frame) { ++frame_.depth; }
    ~RecordScope()
    {
        if (--frame_.depth == 0 && frame_.destroyed) delete &frame_;
    }
    RecordScope(const RecordScope&) = delete;
    RecordScope& operator=(const RecordScope&) = delete;

private:
    FrameWindow& frame_;
};

LRESULT OnNcDestroy(FrameWindow& frame)
{
    SetWindowLongPtrW(frame.window, GWLP_USERDATA, 0);
    frame.destroyed = true;
    return DefWindowProcW(frame.window, WM_NCDESTROY, 0, 0);
}

LRESULT CALLBACK FrameProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept
{
    FrameWindow* const frame = FrameOf(window);
    if (message == WM_CREATE) {
        return Sealed<LRESULT>(
            -1, [&] { return OnCreate(window, *reinterpret_cast<const CREATESTRUCTW*>(lParam)); });
    }
    if (frame == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    return Sealed<LRESULT>(0, [&] {
        const RecordScope scope(*frame);
        return message == WM_NCDESTROY ? OnNcDestroy(*frame) : HandleMessage(*frame, message, wParam, lParam);
    });
}

} // namespace

bool RegisterFrameClass()
{
    TraceScope trace("frame.cpp", "RegisterFrameClass");
    if (g_class != 0) return true;
    DefaultFontLoad();
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_BAR_CLASSES};
    InitCommonControlsEx(&controls);
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = FrameProc;
    windowClass.hInstance = ModuleInstance();
    windowClass.hIcon = LoadIconW(ModuleInstance(), MAKEINTRESOURCEW(IDI_VANTREL));
    windowClass.hIconSm = static_cast<HICON>(LoadImageW(ModuleInstance(), MAKEINTRESOURCEW(IDI_VANTREL),
                                                        IMAGE_ICON, GetSystemMetrics(SM_CXSMICON),
                                                        GetSystemMetrics(SM_CYSMICON), LR_SHARED));
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = GetSysColorBrush(COLOR_3DFACE);
    windowClass.lpszClassName = AsWide(FrameClassName);
    g_class = RegisterClassExW(&windowClass);
    return g_class != 0;
}

void UnregisterFrameClass()
{
    TraceScope trace("frame.cpp", "UnregisterFrameClass");
    if (g_class == 0 || !UnregisterClassW(AsWide(FrameClassName), ModuleInstance())) return;
    g_class = 0;
    DefaultFontRelease();
}

} // namespace vantrel
