// The text of one number: prepared once, then placed where its column wants it.
#pragma once

#include "builtin/format.h"
#include "builtin/number_digits.h"

namespace vantrel {

// More digits than this would not fit into NumberTextSize with sign, point, leading zeros and exponent; greater precisions are cut to it.
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

struct IntegerText {
    TextSize size;
    char16_t minus;
    bool negative;
    std::uint32_t magnitude;
};

struct ComplexText {
    TextSize size;
    bool hasImaginary;
    RealText real;
    RealText imaginary;
};

void PrepareText(double value, const NumberStyle& style, RealText& text) noexcept;
void PrepareText(std::int64_t value, const NumberStyle& style, IntegerText& text) noexcept; // the low 32 bits
void PrepareText(double real, double imaginary, const NumberStyle& style, ComplexText& text) noexcept;

// Writes size.integer + size.rest units and nothing behind them; returns the end.
char16_t* EmitText(const RealText& text, char16_t* output) noexcept;
char16_t* EmitText(const IntegerText& text, char16_t* output) noexcept;
char16_t* EmitText(const ComplexText& text, char16_t* output) noexcept;

} // namespace vantrel
