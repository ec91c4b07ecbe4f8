#pragma once

#include <cstdint>

// The interpreter's atomic vector: 256 characters that the Classic edition stores as positions.
namespace vantrel::fake {

// The UTF-16 unit at a position.
char16_t FromAtomic(std::uint8_t position);
// The position of a unit, -1 where the vector lacks it.
int ToAtomic(char32_t unit);

} // namespace vantrel::fake
