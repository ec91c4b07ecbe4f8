// The 256 characters of APLX and their places.
#pragma once

#include <cstdint>

namespace vantrel::aplx {

// Position to UTF-16; every character stands there once.
extern const char16_t CharacterTable[256];

// The way back, made from the table when first needed.
struct CharacterPositions {
    std::uint8_t position[0x10000]; // 0 where the table has no such character
};
[[nodiscard]] const CharacterPositions& Positions() noexcept;
[[nodiscard]] inline bool HasPosition(const CharacterPositions& positions, char16_t unit) noexcept
{
    return CharacterTable[positions.position[unit]] == unit;
}

} // namespace vantrel::aplx
