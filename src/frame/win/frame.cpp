#include "frame/win/frame.h"

#include <commctrl.h>

#include <memory>
#include <new>

#include "entry/trace.h"
#include "frame/messages.h"
#include "frame/win/frame_window.h"
#include "resources/resource.h"
#include "tools/win/fonts.h"
#include "tools/win/guard.h"
#include "tools/win/options.h"
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

void ReadOptions(FrameWindow& frame) noexcept
{
    for (const FrameOptionEntry& option : FrameOptions()) {
        if (ReadBooleanOption(option.name, option.defaultValue)) frame.options |= option.bit;
    }
}

void SaveOptions(const FrameWindow& frame) noexcept
{
    for (const FrameOptionEntry& option : FrameOptions()) {
        SaveBooleanOption(option.name, (frame.options & option.bit) != 0);
    }
}

HMENU ChildId(std::int32_t id) noexcept
{
    return reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)); // NOLINT: a child's id travels as its menu
}

HWND CreateStatusBar(const FrameWindow& frame) noexcept
{
    const DWORD shown = (frame.options & FrameStatusBar) != 0 ? WS_VISIBLE : 0;
    return CreateWindowExW(0, STATUSCLASSNAMEW, L"Status", WS_CHILD | SBARS_SIZEGRIP | shown, 0, 0, 0, 0,
                           frame.window, ChildId(StatusBarId), ModuleInstance(), nullptr);
}

HWND CreateClient(const FrameWindow& frame) noexcept
{
    return CreateWindowExW(0, AsWide(ClientClassName), nullptr,
                           WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_HSCROLL | WS_VSCROLL, 0, 0, 0, 0,
                           frame.window, ChildId(ClientId), ModuleInstance(), frame.context);
}

void CountFrame(FrameWindow& frame) noexcept
{
    frame.counted = true;
    ++frame.context->openFrames;
    g_openWindowCount = g_openWindowCount + 1;
    if (frame.context->frame == nullptr) frame.context->frame = frame.window;
}

void UncountFrame(FrameWindow& frame) noexcept
{
    if (!frame.counted) return;
    frame.counted = false;
    --frame.context->openFrames;
    g_openWindowCount = g_openWindowCount - 1;
    if (frame.context->frame == frame.window) frame.context->frame = nullptr;
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
    frame.status = CreateStatusBar(frame);
    frame.client = CreateClient(frame);
    return frame.client != nullptr && frame.status != nullptr ? 0 : -1;
}

void OnDestroy(FrameWindow& frame)
{
    TraceScope trace("frame.cpp", "OnDestroy");
    if (frame.client != nullptr) { // a frame that never came up has nothing worth remembering
        SaveOptions(frame);
        WindowPlacementSave(frame.context, frame.window);
    }
    UncountFrame(frame);
}

LRESULT OnSetName(FrameWindow& frame, bool byName, HostObject object) noexcept
{
    (byName ? frame.name : frame.value) = object;
    return 0;
}

void OnViewNotify(FrameWindow& frame, std::int32_t code)
{
    switch (code) {
    case ViewNotifyState: StatusMessage(frame.window, L"", 0); break; // what was announced is over
    case ViewNotifyError: ShowHostError(frame); break;
    default: break;
    }
}

LRESULT OnNotify(FrameWindow& frame, const NMHDR& notification)
{
    if (notification.hwndFrom == frame.client)
        OnViewNotify(frame, static_cast<std::int32_t>(notification.code));
    return 0;
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
    case WM_SIZE: return OnSize(frame), Done();
    case WM_SETFOCUS: return SetFocus(frame.client), Done();
    case WM_COMMAND: return OnCommand(frame, wParam, lParam);
    case WM_NOTIFY: return OnNotify(frame, *reinterpret_cast<const NMHDR*>(lParam));
    case WM_TIMER: return OnCloseTimer(frame), Done();
    case FrameGetSizeOnOpen: return (frame.options & FrameSizeOnOpen) != 0 ? 1 : 0;
    case FrameSetName: return OnSetName(frame, wParam != 0, reinterpret_cast<HostObject>(lParam));
    case FrameSizeToDefinition: return OnSizeFrameToDefinition(frame), Done();
    case FrameIsClosing: return frame.closing ? 1 : 0;
    default: return DefWindowProcW(frame.window, message, wParam, lParam);
    }
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
    windowClass.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
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
