// Where the thumb of a drawn scroll bar stands.
#pragma once

#include <cstdint>

namespace vantrel {

// Pixels from the start of the track. A thumb of length 0: everything is in sight, or the track has no room for one.
struct Thumb {
    std::int32_t start = 0;
    std::int32_t length = 0;
};

// The thumb is to the track as the page to the data, but at least `shortest` long; at the last position it touches the track's end.
[[nodiscard]] Thumb PlaceThumb(std::int32_t track, std::int32_t shortest, std::int64_t dataSize,
                               std::int64_t pageSize, std::int64_t position) noexcept;
// The position that a thumb dragged to `start` stands for; at the end of the track exactly the last one.
[[nodiscard]] std::int64_t PositionOfThumb(std::int32_t track, std::int32_t length, std::int64_t start,
                                           std::int64_t dataSize, std::int64_t pageSize) noexcept;

} // namespace vantrel
