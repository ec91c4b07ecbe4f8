// Which of two colours is the brighter one to the eye.
#pragma once

#include <cstdint>

namespace vantrel {

// Of a colour 0x00BBGGRR, as the system has them: 0 (black) to 255000 (white).
[[nodiscard]] constexpr std::int32_t Brightness(std::uint32_t color) noexcept
{
    const auto red = static_cast<std::int32_t>(color & 0xFF);
    const auto green = static_cast<std::int32_t>((color >> 8) & 0xFF);
    const auto blue = static_cast<std::int32_t>((color >> 16) & 0xFF);
    return 299 * red + 587 * green + 114 * blue;
}

} // namespace vantrel
