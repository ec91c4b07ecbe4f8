// Places, sizes and rectangles in 64-bit pixels: arrays outgrow what 32 bits can hold.
#pragma once

#include <cstdint>

namespace vantrel {

struct Size64 {
    std::int64_t width = 0;
    std::int64_t height = 0;
};
struct Point64 {
    std::int64_t x = 0;
    std::int64_t y = 0;
};
struct Rect64 {
    std::int64_t left = 0;
    std::int64_t top = 0;
    std::int64_t right = 0; // exclusive
    std::int64_t bottom = 0;
};

[[nodiscard]] constexpr bool Holds(const Rect64& rect, const Point64& point) noexcept
{
    return point.x >= rect.left && point.x < rect.right && point.y >= rect.top && point.y < rect.bottom;
}
[[nodiscard]] constexpr bool DoMeet(const Rect64& a, const Rect64& b) noexcept
{
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}
[[nodiscard]] constexpr Rect64 Moved(const Rect64& rect, std::int64_t dx, std::int64_t dy) noexcept
{
    return {rect.left + dx, rect.top + dy, rect.right + dx, rect.bottom + dy};
}
// Every side comes nearer to the middle; negative distances make the rectangle larger.
[[nodiscard]] constexpr Rect64 Shrunk(const Rect64& rect, std::int64_t dx, std::int64_t dy) noexcept
{
    return {rect.left + dx, rect.top + dy, rect.right - dx, rect.bottom - dy};
}

} // namespace vantrel
