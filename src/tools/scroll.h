// 64-bit scrolling: positions and sizes that outgrow the platform's 32-bit scroll bars.
//
// A `ScrollRecord` holds the truth in signed 64-bit numbers; the platform's bar is only its picture. The arithmetic is
// here; `tools/win/scroll_bars` moves it to and from real bars through the `ScrollEffects` table.
#pragma once

#include <cstdint>

#include "entry/lang_env.h"

namespace vantrel {

// Special deltas of ChangeScrollPositions.
inline constexpr std::int64_t ScrollPageRight = 0x7FFFFFFFFFFFFFF8;
inline constexpr std::int64_t ScrollPageLeft = 0x7FFFFFFFFFFFFFF9;
inline constexpr std::int64_t ScrollPageDown = 0x7FFFFFFFFFFFFFFA;
inline constexpr std::int64_t ScrollPageUp = 0x7FFFFFFFFFFFFFFB;
inline constexpr std::int64_t ScrollToStart = 0x7FFFFFFFFFFFFFFD;
inline constexpr std::int64_t ScrollToEnd = 0x7FFFFFFFFFFFFFFE;

enum class ScrollAxis : std::uint8_t { Horizontal = 0, Vertical = 1 };

struct ScrollInformation {
    std::uint32_t mask = 0; // SIF_ bits for the next update of the bar
    std::int64_t minimum = 0;
    std::int64_t dataSize = 0; // the bar's maximum
    std::int64_t pageSize = 0;
    std::int64_t position = 0;
    std::int64_t trackPosition = 0;
};

enum class ScrollKind : std::uint8_t { WindowBars = 1, BoxBars = 2 };

struct ScrollRecord;

// How a record reaches the screen. Null entries are skipped, so logic tests need none.
struct ScrollEffects {
    void (*updateBar)(ScrollRecord& record, ScrollAxis axis); // put the axis' information on its bar
    void (*invalidate)(ScrollRecord& record);                 // repaint what scrolled
};

struct ScrollRecord {
    ScrollKind kind = ScrollKind::WindowBars;
    WindowHandle window = nullptr; // the window that scrolls; of BoxBars the array view
    ScrollInformation horizontal;
    ScrollInformation vertical;
    bool horizontalShown = false;
    bool verticalShown = false;
    const ScrollEffects* effects = nullptr;
};

// Moves both positions by the deltas, clamped to minimum .. data size - page size.
void ChangeScrollPositions(ScrollRecord& record, std::int64_t dx, std::int64_t dy);
// After a resize: scrolls back so that the last page ends at the end of the data.
void AdjustScrollPositions(ScrollRecord& record);
// Sets the data sizes or the page sizes, updates the shown bars; positions are kept (AdjustScrollPositions clamps).
void SetScrollBarsDataSize(ScrollRecord& record, std::int64_t width, std::int64_t height);
void SetScrollBarsWindowSize(ScrollRecord& record, std::int64_t width, std::int64_t height);
// The delta of a WM_HSCROLL / WM_VSCROLL code (SB_ value) given the track position; 0 for codes that do not scroll.
[[nodiscard]] std::int64_t ScrollCodeDelta(std::int32_t code, ScrollAxis axis, std::int64_t position,
                                           std::int64_t trackPosition) noexcept;

// What a 32-bit bar shows of 64-bit numbers.
struct BarPicture {
    std::int32_t maximum;
    std::int32_t position;
    std::uint32_t page;
};
[[nodiscard]] BarPicture PictureOfScroll(std::int64_t maximum, std::int64_t position,
                                         std::int64_t page) noexcept;
// The 64-bit position that a bar's 32-bit value stands for.
[[nodiscard]] std::int64_t PositionFromBar(std::int32_t value, std::int64_t maximum,
                                           std::int64_t page) noexcept;

struct WheelScroll {
    std::int64_t dx = 0;
    std::int64_t dy = 0;
};
// Pixels that a wheel movement scrolls. `lines` is the system's number of lines, -1 for a page. Deltas under 120 in
// size scroll nothing.
[[nodiscard]] WheelScroll WheelDistance(const ScrollRecord& record, std::int32_t wheelDelta, bool shift,
                                        std::int32_t lines, std::int64_t characterWidth,
                                        std::int64_t lineHeight) noexcept;

} // namespace vantrel
