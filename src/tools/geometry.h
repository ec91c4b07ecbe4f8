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

} // namespace vantrel
