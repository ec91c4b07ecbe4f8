#include "tools/win/scroll_bars.h"

#include <algorithm>
#include <limits>

#include "entry/trace.h"
#include "tools/win/fonts.h"
#include "tools/win/window.h"

namespace vantrel {

namespace {

std::uint32_t PageOf(const ScrollInformation& information) noexcept
{
    constexpr std::int64_t Most = std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(std::clamp<std::int64_t>(information.pageSize, 0, Most));
}

int BarOf(ScrollAxis axis) noexcept
{
    return axis == ScrollAxis::Horizontal ? SB_HORZ : SB_VERT;
}

void UpdateWindowBar(ScrollRecord& record, ScrollAxis axis)
{
    QmSetScrollInfo(record.window, BarOf(axis),
                    axis == ScrollAxis::Horizontal ? record.horizontal : record.vertical);
}

void InvalidateWindow(ScrollRecord& record)
{
    InvalidateRect(record.window, nullptr, FALSE);
}

constexpr ScrollEffects WindowEffects = {&UpdateWindowBar, &InvalidateWindow};

// The system keeps no page larger than the data and no position behind the last page.
bool ShowsAlready(HWND window, std::int32_t bar, const BarPicture& picture) noexcept
{
    SCROLLINFO present{};
    present.cbSize = sizeof present;
    present.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    if (!GetScrollInfo(window, bar, &present)) return false;
    const std::int64_t page = std::min<std::int64_t>(picture.page, std::int64_t{picture.maximum} + 1);
    const std::int64_t last = picture.maximum - std::max<std::int64_t>(page - 1, 0);
    return present.nMin == 0 && present.nMax == picture.maximum && present.nPage == page &&
           present.nPos == std::min<std::int64_t>(picture.position, last);
}

std::int64_t DeltaOfCode(const ScrollRecord& record, ScrollAxis axis, std::int32_t code) noexcept
{
    const ScrollInformation& information =
        axis == ScrollAxis::Horizontal ? record.horizontal : record.vertical;
    const std::int64_t track = GetScrollPos64(record.window, BarOf(axis), SIF_TRACKPOS, information.dataSize);
    return ScrollCodeDelta(code, axis, information.position, track);
}

} // namespace

void SetScrollInfo64(HWND window, std::int32_t bar, std::int64_t maximum, std::int64_t position,
                     std::uint32_t page) noexcept
{
    const BarPicture picture = PictureOfScroll(maximum, position, page);
    // Setting draws the bar at once, also where nothing moves: typing would draw both for each key.
    if (ShowsAlready(window, bar, picture)) return;
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL | SIF_DISABLENOSCROLL;
    info.nMax = picture.maximum;
    info.nPage = picture.page;
    info.nPos = picture.position;
    SetScrollInfo(window, bar, &info, TRUE);
}

std::int64_t GetScrollPos64(HWND window, std::int32_t bar, std::uint32_t mask, std::int64_t maximum) noexcept
{
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = mask | SIF_PAGE;
    if (!GetScrollInfo(window, bar, &info)) return 0;
    const std::int32_t value = (mask & SIF_TRACKPOS) != 0 ? info.nTrackPos : info.nPos;
    return PositionFromBar(value, maximum, info.nPage);
}

void QmSetScrollInfo(HWND window, std::int32_t bar, ScrollInformation& information) noexcept
{
    const TraceScope trace("scroll_bars.cpp", "QmSetScrollInfo");
    SetScrollInfo64(window, bar, information.dataSize, information.position, PageOf(information));
}

void QmGetScrollInfo(HWND window, std::int32_t bar, ScrollInformation& information) noexcept
{
    const TraceScope trace("scroll_bars.cpp", "QmGetScrollInfo");
    information.position = GetScrollPos64(window, bar, SIF_POS, information.dataSize);
    information.trackPosition = GetScrollPos64(window, bar, SIF_TRACKPOS, information.dataSize);
}

void InitializeWindowsScrollbars(ScrollRecord& record, HWND window) noexcept
{
    record = ScrollRecord{};
    record.window = window;
    record.effects = &WindowEffects;
}

void OnHscroll(ScrollRecord& record, std::int32_t code) noexcept
{
    const TraceScope trace("scroll_bars.cpp", "OnHscroll");
    ChangeScrollPositions(record, DeltaOfCode(record, ScrollAxis::Horizontal, code), 0);
}

void OnVscroll(ScrollRecord& record, std::int32_t code) noexcept
{
    const TraceScope trace("scroll_bars.cpp", "OnVscroll");
    ChangeScrollPositions(record, 0, DeltaOfCode(record, ScrollAxis::Vertical, code));
}

bool OnMouseWheel(ScrollRecord& record, std::uint32_t keys, std::int32_t delta, std::int64_t characterWidth,
                  std::int64_t lineHeight) noexcept
{
    const TraceScope trace("scroll_bars.cpp", "OnMouseWheel");
    if ((keys & (MK_LBUTTON | MK_RBUTTON | MK_MBUTTON)) != 0 || IsKeyDown(VK_MENU)) return false;
    if ((keys & MK_CONTROL) != 0) {
        if ((keys & MK_SHIFT) == 0) ChangeFontSize(record.window, delta);
        return false;
    }
    const WheelScroll distance =
        WheelDistance(record, delta, (keys & MK_SHIFT) != 0, GetNumScrollLines(), characterWidth, lineHeight);
    if (distance.dx == 0 && distance.dy == 0) return false;
    ChangeScrollPositions(record, distance.dx, distance.dy);
    return true;
}

std::int32_t GetNumScrollLines() noexcept
{
    // Early wheel mice came with a helper window of their own that knows better than the system.
    const HWND helper = FindWindowW(L"MouseZ", L"Magellan MSWHEEL");
    if (helper != nullptr) {
        const UINT message = RegisterWindowMessageW(L"MSH_SCROLL_LINES_MSG");
        if (message != 0) return static_cast<std::int32_t>(SendMessageW(helper, message, 0, 0));
    }
    UINT lines = 3;
    if (!SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0)) lines = 3;
    return static_cast<std::int32_t>(lines);
}

} // namespace vantrel
