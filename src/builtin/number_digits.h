// Doubles to rounded decimal digits: the arithmetic under the number texts.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "builtin/powers_of_ten.h"

namespace vantrel {

namespace digits_detail {

constexpr auto MakeDigitPairs()
{
    std::array<char16_t, 200> table = {};
    for (std::size_t i = 0; i < 100; ++i) {
        table[2 * i] = static_cast<char16_t>(u'0' + i / 10);
        table[2 * i + 1] = static_cast<char16_t>(u'0' + i % 10);
    }
    return table;
}

} // namespace digits_detail

inline constexpr auto DigitPairs = digits_detail::MakeDigitPairs();

inline void WriteDigitPair(char16_t* output, std::uint32_t value) noexcept
{
    std::memcpy(output, &DigitPairs[2 * value], 2 * sizeof(char16_t));
}

// The greatest number of digits that RoundToDigits gives; more say nothing new about a double.
inline constexpr std::int32_t MostDigits = 17;

// |value| = 0.d1d2d3... * 10^(exponent + 1), d1 being the first of `count` digits.
struct NumberDigits {
    std::uint64_t digits;
    std::int32_t count;
    std::int32_t exponent; // of the first digit
    bool negative;
};

// The value rounded to `precision` (1 .. MostDigits) significant digits, exact halves to even, without
// trailing zeros behind the decimal point. Zero is the digit 0 with exponent 0. The value must be finite.
[[nodiscard]] NumberDigits RoundToDigits(double value, std::int32_t precision) noexcept;

// Decimal digits of a number, at least 1.
[[nodiscard]] inline std::int32_t CountDigits(std::uint64_t value) noexcept
{
    // floor(bits * log10(2)) is the count or one less.
    const std::int32_t guess = (static_cast<std::int32_t>(std::bit_width(value | 1)) * 1233) >> 12;
    return guess + (guess < 20 && (value | 1) >= IntegerPowerOfTen(guess) ? 1 : 0);
}

// Both write backwards from `end` and return the first unit written: all digits of a number, at least one; or
// exactly `count` digits, leading zeros included.
inline char16_t* WriteDigitsBefore(char16_t* end, std::uint32_t value) noexcept
{
    for (; value >= 100; value /= 100) {
        end -= 2;
        WriteDigitPair(end, value % 100);
    }
    if (value < 10) {
        *--end = static_cast<char16_t>(u'0' + value);
        return end;
    }
    end -= 2;
    WriteDigitPair(end, value);
    return end;
}

inline char16_t* WriteDigitsBefore(char16_t* end, std::uint64_t value, std::int32_t count) noexcept
{
    char16_t* const start = end - count;
    for (; end - start >= 2; value /= 100) {
        end -= 2;
        WriteDigitPair(end, static_cast<std::uint32_t>(value % 100));
    }
    if (end > start) *start = static_cast<char16_t>(u'0' + value);
    return start;
}

} // namespace vantrel
