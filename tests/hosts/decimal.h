#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

// IEEE 754 decimal128 with a binary integer coefficient, as text and back: what the fake interpreter needs to show
// decimal items and to read them.
namespace vantrel::fake {

using DecimalBytes = std::array<std::uint8_t, 16>;

// Digits with a plain minus, as JSON writes a number ("-12.50", "1E+30"); "NaN", "Infinity" where it is none.
std::string DecimalToText(const DecimalBytes& bytes);
// False where the text is no decimal number or has more than 34 significant digits.
bool DecimalFromText(std::string_view text, DecimalBytes& bytes);

} // namespace vantrel::fake
