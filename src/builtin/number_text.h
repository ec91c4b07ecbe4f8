// The text of one number: prepared once, then placed where its column wants it.
#pragma once

#include "builtin/format.h"
#include "builtin/number_digits.h"

namespace vantrel {

// More digits than this would not fit into NumberTextSize with sign, point, leading zeros and exponent;
// greater precisions are cut to it.
inline constexpr std::int32_t MostPrecision = NumberTextSize - 1 - 7;

struct NumberStyle {
    std::int32_t precision; // 1 .. MostPrecision
    char16_t minus;         // 175 or the hyphen
};

// The precision as %G takes it: 0 means 1, a negative one 6.
[[nodiscard]] NumberStyle MakeNumberStyle(const LangEnv& environment, std::int64_t precision) noexcept;

// Units before the first of ".EJ" and from there on.
struct TextSize {
    std::int32_t integer;
    std::int32_t rest;
};

enum class NumberForm : std::uint8_t {
    Fixed,    // 123.45
    Exponent, // 1.2345E20
    Finished, // the text itself
};

// A prepared number. Kept outside loops: `finished` is large and mostly unused.
struct RealText {
    TextSize size;
    NumberForm form;
    char16_t minus;
    NumberDigits digits;
    char16_t finished[NumberTextSize];
};

struct ComplexText {
    TextSize size;
    bool hasImaginary;
    RealText real;
    RealText imaginary;
};

void PrepareText(double value, const NumberStyle& style, RealText& text) noexcept;
void PrepareText(double real, double imaginary, const NumberStyle& style, ComplexText& text) noexcept;

// Writes size.integer + size.rest units and nothing behind them; returns the end.
char16_t* EmitText(const RealText& text, char16_t* output) noexcept;
char16_t* EmitText(const ComplexText& text, char16_t* output) noexcept;

// Integers show their low 32 bits and need no preparation. Their texts are formed in line: a million of them
// cost little more than the memory they fill.
[[nodiscard]] inline std::uint32_t IntegerMagnitude(std::int32_t value) noexcept
{
    return value < 0 ? 0u - static_cast<std::uint32_t>(value) : static_cast<std::uint32_t>(value);
}

[[nodiscard]] inline std::int32_t IntegerLength(std::int32_t value) noexcept
{
    return CountDigits(IntegerMagnitude(value)) + (value < 0 ? 1 : 0);
}

// Writes backwards from `end`; returns the first unit written.
inline char16_t* EmitIntegerBefore(char16_t* end, std::int32_t value, const NumberStyle& style) noexcept
{
    char16_t* first = WriteDigitsBefore(end, IntegerMagnitude(value));
    if (value < 0) *--first = style.minus;
    return first;
}

} // namespace vantrel
