#include "tools/thumb.h"

#include <algorithm>
#include <cmath>

namespace vantrel {

Thumb PlaceThumb(std::int32_t track, std::int32_t shortest, std::int64_t dataSize, std::int64_t pageSize,
                 std::int64_t position) noexcept
{
    if (pageSize < 0 || pageSize >= dataSize || track < shortest) return {};
    // In floating point, since the products of 64-bit sizes do not fit into integers and a pixel needs no more digits.
    const auto share = [](std::int64_t part, std::int64_t whole) {
        return static_cast<double>(part) / static_cast<double>(whole);
    };
    const auto proportional = static_cast<std::int32_t>(share(pageSize, dataSize) * track);
    const std::int32_t length = std::clamp(proportional, shortest, track);
    const std::int64_t last = dataSize - pageSize;
    const double part = share(std::clamp<std::int64_t>(position, 0, last), last);
    return {static_cast<std::int32_t>(std::lround(part * (track - length))), length};
}

std::int64_t PositionOfThumb(std::int32_t track, std::int32_t length, std::int64_t start,
                             std::int64_t dataSize, std::int64_t pageSize) noexcept
{
    const std::int64_t last = dataSize - pageSize;
    const std::int64_t way = std::int64_t{track} - length;
    if (start <= 0 || last <= 0) return 0;
    if (start >= way) return last;
    // The quotient first, for the product of two large numbers does not fit.
    return last / way * start + last % way * start / way;
}

} // namespace vantrel
