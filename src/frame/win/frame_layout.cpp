#include <algorithm>

#include "entry/trace.h"
#include "frame/win/frame_window.h"
#include "tools/win/guard.h"
#include "tools/win/window.h"
#include "view/messages.h"

namespace vantrel {
namespace {

int HeightOf(HWND bar) noexcept
{
    RECT rect{};
    GetWindowRect(bar, &rect);
    return rect.bottom - rect.top;
}

int PlaceToolBar(const FrameWindow& frame, int width)
{
    if ((frame.options & FrameToolBar) == 0) return 0;
    const int height = ToolbarWrap(frame, width);
    MoveWindow(frame.toolBar, 0, 0, width, height, TRUE);
    return height;
}

int PlaceFindBar(FrameWindow& frame, int top, int width)
{
    if ((frame.options & FrameFindShown) == 0) return 0;
    const int height = HeightOf(frame.findBar);
    MoveWindow(frame.findBar, 0, top, width, height, TRUE);
    FindBarFit(frame, width);
    return height;
}

int PlaceStatusBar(FrameWindow& frame)
{
    const bool shown = (frame.options & FrameStatusBar) != 0;
    if (shown) SendMessageW(frame.status, WM_SIZE, 0, 0);              // the bar places itself
    if (!shown && GetFocus() == frame.nameBox) SetFocus(frame.client); // the box goes with the bar
    OnPositionPickIndex(frame, frame.pickIndexPart);
    return shown ? HeightOf(frame.status) : 0;
}

RECT WorkAreaOf(HWND window) noexcept
{
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
}

// Moves a window of the given size as little as possible so that it lies inside the work area, cutting what is larger.
RECT FitInto(const RECT& area, POINT at, SIZE size) noexcept
{
    const LONG width = std::min(size.cx, area.right - area.left);
    const LONG height = std::min(size.cy, area.bottom - area.top);
    const LONG left = std::clamp(at.x, area.left, area.right - width);
    const LONG top = std::clamp(at.y, area.top, area.bottom - height);
    return {left, top, left + width, top + height};
}

SIZE SizeOf(HWND window) noexcept
{
    RECT rect{};
    GetWindowRect(window, &rect);
    return {rect.right - rect.left, rect.bottom - rect.top};
}

// What the frame is larger than the view.
SIZE SurroundingsOf(const FrameWindow& frame) noexcept
{
    const SIZE outer = SizeOf(frame.window);
    const SIZE inner = SizeOf(frame.client);
    return {outer.cx - inner.cx, outer.cy - inner.cy};
}

void GiveSize(const FrameWindow& frame, POINT at, SIZE size, UINT flags) noexcept
{
    const RECT place = FitInto(WorkAreaOf(frame.window), at, size);
    SetWindowPos(frame.window, nullptr, place.left, place.top, place.right - place.left,
                 place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE | flags);
}

} // namespace

void OnSize(FrameWindow& frame)
{
    TraceScope trace("frame_layout.cpp", "OnSize");
    if (frame.findBar == nullptr || IsIconic(frame.window)) return;
    RECT client{};
    GetClientRect(frame.window, &client);
    int top = PlaceToolBar(frame, client.right);
    top += PlaceFindBar(frame, top, client.right);
    const int bottom = static_cast<int>(client.bottom) - PlaceStatusBar(frame);
    MoveWindow(frame.client, 0, top, client.right, std::max(0, bottom - top), TRUE);
    InformationPlace(frame);
    RethrowEscapedException();
}

void OnSizeFrameToDefinition(FrameWindow& frame)
{
    TraceScope trace("frame_layout.cpp", "OnSizeFrameToDefinition");
    if (IsZoomed(frame.window)) return;
    SIZE wanted{};
    if (SendMessageW(frame.client, ViewGetPreferredSize, 0, reinterpret_cast<LPARAM>(&wanted)) != 0) return;
    RethrowEscapedException();
    // More than any screen has is as good as everything.
    constexpr LONG Most = 0x7FFF;
    wanted = {std::min(wanted.cx, Most), std::min(wanted.cy, Most)};
    RECT before{};
    GetWindowRect(frame.window, &before);
    const POINT at{before.left, before.top};
    // A narrower frame breaks its menus and tools into more lines; how many is seen in one of that width that has room for all.
    const RECT area = WorkAreaOf(frame.window);
    const LONG width = wanted.cx + SurroundingsOf(frame).cx;
    GiveSize(frame, at, {width, area.bottom - area.top}, SWP_NOREDRAW);
    GiveSize(frame, at, {width, wanted.cy + SurroundingsOf(frame).cy}, 0);
    RedrawWindow(frame.window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
    RethrowEscapedException();
}

} // namespace vantrel
