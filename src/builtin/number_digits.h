// Doubles to rounded decimal digits: the arithmetic under the number texts.
#pragma once

#include <cstdint>

namespace vantrel {

// The greatest number of digits that RoundToDigits gives; more say nothing new about a double.
inline constexpr std::int32_t MostDigits = 17;

// |value| = 0.d1d2d3... * 10^(exponent + 1), d1 being the first of `count` digits.
struct NumberDigits {
    std::uint64_t digits;
    std::int32_t count;
    std::int32_t exponent; // of the first digit
    bool negative;
};

// The value rounded to `precision` (1 .. MostDigits) significant digits, exact halves to even, without trailing zeros behind the decimal
// point. Zero is the digit 0 with exponent 0. The value must be finite.
[[nodiscard]] NumberDigits RoundToDigits(double value, std::int32_t precision) noexcept;

// Decimal digits of a number, at least 1.
[[nodiscard]] std::int32_t CountDigits(std::uint64_t value) noexcept;

// Writes exactly `count` digits, leading zeros included.
void WriteDigits(std::uint64_t value, std::int32_t count, char16_t* output) noexcept;

} // namespace vantrel
