#include "tools/scroll.h"

#include <algorithm>
#include <limits>

#include "entry/trace.h"

namespace vantrel {
namespace {

// The platform's numbers, named here so that this half needs no platform header.
constexpr std::uint32_t MaskRange = 0x01;
constexpr std::uint32_t MaskPage = 0x02;
constexpr std::uint32_t MaskPosition = 0x04;
constexpr std::int32_t CodeLineBack = 0;
constexpr std::int32_t CodeLineForward = 1;
constexpr std::int32_t CodePageBack = 2;
constexpr std::int32_t CodePageForward = 3;
constexpr std::int32_t CodeThumbPosition = 4;
constexpr std::int32_t CodeThumbTrack = 5;

constexpr std::int32_t WheelNotch = 120;
constexpr std::int64_t LargestBarMaximum = 0x7FFFFFFF; // what a bar takes as it stands
constexpr std::int64_t ScaledMaximum = 32767;          // the bar's maximum for anything larger
constexpr std::int64_t Largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t Smallest = std::numeric_limits<std::int64_t>::min();

std::int64_t SaturatingAdd(std::int64_t a, std::int64_t b) noexcept
{
    if (b > 0 && a > Largest - b) return Largest;
    if (b < 0 && a < Smallest - b) return Smallest;
    return a + b;
}

std::uint64_t Magnitude(std::int64_t value) noexcept
{
    return value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
}

std::int64_t SaturatingMultiply(std::int64_t a, std::int64_t b) noexcept
{
    if (a == 0 || b == 0) return 0;
    if (Magnitude(a) <= static_cast<std::uint64_t>(Largest) / Magnitude(b)) return a * b;
    return (a < 0) != (b < 0) ? -Largest : Largest;
}

bool TakesUpdates(const ScrollRecord& record, bool shown) noexcept
{
    return shown || record.kind == ScrollKind::BoxBars;
}

void UpdateBar(ScrollRecord& record, ScrollAxis axis, std::uint32_t mask)
{
    const bool horizontal = axis == ScrollAxis::Horizontal;
    (horizontal ? record.horizontal : record.vertical).mask = mask;
    if (!TakesUpdates(record, horizontal ? record.horizontalShown : record.verticalShown)) return;
    if (record.effects != nullptr && record.effects->updateBar != nullptr)
        record.effects->updateBar(record, axis);
}

std::int64_t ResolveDelta(const ScrollInformation& information, ScrollAxis axis, std::int64_t delta) noexcept
{
    const bool horizontal = axis == ScrollAxis::Horizontal;
    if (delta == (horizontal ? ScrollPageRight : ScrollPageDown)) return information.pageSize;
    if (delta == (horizontal ? ScrollPageLeft : ScrollPageUp)) return -information.pageSize;
    if (delta == ScrollToStart) return -information.position;
    if (delta == ScrollToEnd) return information.dataSize;
    return delta;
}

// True when the position changed.
bool MoveAlongAxis(ScrollRecord& record, ScrollAxis axis, std::int64_t delta)
{
    ScrollInformation& information = axis == ScrollAxis::Horizontal ? record.horizontal : record.vertical;
    std::int64_t position = SaturatingAdd(information.position, ResolveDelta(information, axis, delta));
    position = std::min(position, information.dataSize - information.pageSize);
    position = std::max(position, information.minimum);
    if (position == information.position) return false;
    information.position = position;
    UpdateBar(record, axis, MaskPosition);
    return true;
}

std::int64_t DeltaToLastPage(const ScrollInformation& information) noexcept
{
    if (information.pageSize <= information.dataSize - information.position) return 0;
    return std::max<std::int64_t>(information.dataSize - information.pageSize, 0) - information.position;
}

} // namespace

void ChangeScrollPositions(ScrollRecord& record, std::int64_t dx, std::int64_t dy)
{
    TraceScope trace("scroll.cpp", "ChangeScrollPositions");
    const bool movedHorizontally = MoveAlongAxis(record, ScrollAxis::Horizontal, dx);
    const bool movedVertically = MoveAlongAxis(record, ScrollAxis::Vertical, dy);
    if (!movedHorizontally && !movedVertically) return;
    if (record.effects != nullptr && record.effects->invalidate != nullptr)
        record.effects->invalidate(record);
}

void AdjustScrollPositions(ScrollRecord& record)
{
    TraceScope trace("scroll.cpp", "AdjustScrollPositions");
    ChangeScrollPositions(record, DeltaToLastPage(record.horizontal), DeltaToLastPage(record.vertical));
}

void SetScrollBarsDataSize(ScrollRecord& record, std::int64_t width, std::int64_t height)
{
    TraceScope trace("scroll.cpp", "SetScrollBarsDataSize");
    record.horizontal.dataSize = width;
    record.vertical.dataSize = height;
    UpdateBar(record, ScrollAxis::Horizontal, MaskRange);
    UpdateBar(record, ScrollAxis::Vertical, MaskRange);
}

void SetScrollBarsWindowSize(ScrollRecord& record, std::int64_t width, std::int64_t height)
{
    TraceScope trace("scroll.cpp", "SetScrollBarsWindowSize");
    record.horizontal.pageSize = width;
    record.vertical.pageSize = height;
    UpdateBar(record, ScrollAxis::Horizontal, MaskPage);
    UpdateBar(record, ScrollAxis::Vertical, MaskPage);
}

std::int64_t ScrollCodeDelta(std::int32_t code, ScrollAxis axis, std::int64_t position,
                             std::int64_t trackPosition) noexcept
{
    const bool horizontal = axis == ScrollAxis::Horizontal;
    switch (code) {
    case CodeLineBack: return -1;
    case CodeLineForward: return 1;
    case CodePageBack: return horizontal ? ScrollPageLeft : ScrollPageUp;
    case CodePageForward: return horizontal ? ScrollPageRight : ScrollPageDown;
    case CodeThumbPosition:
    case CodeThumbTrack: return trackPosition - position;
    default: return 0;
    }
}

BarPicture PictureOfScroll(std::int64_t maximum, std::int64_t position, std::int64_t page) noexcept
{
    const auto bits32 = [](std::int64_t value) {
        return static_cast<std::int32_t>(
            std::clamp<std::int64_t>(value, std::numeric_limits<std::int32_t>::min(), LargestBarMaximum));
    };
    const auto pageBits = static_cast<std::uint32_t>(
        std::clamp<std::int64_t>(page, 0, std::numeric_limits<std::uint32_t>::max()));
    if (maximum <= LargestBarMaximum) return {bits32(maximum), bits32(position), pageBits};
    return {static_cast<std::int32_t>(ScaledMaximum), bits32(position / (maximum / ScaledMaximum)), pageBits};
}

std::int64_t PositionFromBar(std::int32_t value, std::int64_t maximum, std::int64_t page) noexcept
{
    // The last place that a thumb of this page can reach stands for exactly the end, whatever the division lost.
    if (value == ScaledMaximum + 1 - page) return maximum - page + 1;
    if (maximum > LargestBarMaximum) return value * (maximum / ScaledMaximum);
    return value;
}

WheelScroll WheelDistance(const ScrollRecord& record, std::int32_t wheelDelta, bool shift, std::int32_t lines,
                          std::int64_t characterWidth, std::int64_t lineHeight) noexcept
{
    const std::int64_t notches = wheelDelta / WheelNotch;
    if (notches == 0 || lines == 0) return {};
    // The vertical page limits sideways scrolling, too: a wheel that jumps a page down jumps no further to the side.
    const std::int64_t page = record.vertical.pageSize;
    const std::int64_t step = lines == -1 ? page : std::min<std::int64_t>(lines, page);
    const std::int64_t amount = SaturatingMultiply(-notches, step);
    if (shift) return {SaturatingMultiply(amount, characterWidth), 0};
    return {0, SaturatingMultiply(amount, lineHeight)};
}

} // namespace vantrel
