#include "builtin/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <string_view>

#include "builtin/powers_of_ten.h"

namespace vantrel {
namespace {

constexpr std::int64_t DefaultPrecision = 6;    // what %G does with a negative precision
constexpr std::int32_t LeastFixedExponent = -4; // smaller numbers are shown with an exponent
constexpr std::int32_t LimitPrecision = 16;     // from here on the greatest doubles have a text of their own
constexpr double GreatestReal = 1.7976931348623157e308;
constexpr char16_t HighMinus = 175;

void Finish(std::u16string_view text, RealText& result) noexcept
{
    std::copy(text.begin(), text.end(), result.finished);
    const std::size_t integer = std::min(text.find_first_of(u".EJ"), text.size());
    result.form = NumberForm::Finished;
    result.size = {static_cast<std::int32_t>(integer), static_cast<std::int32_t>(text.size() - integer)};
}

// Infinities, and NaN without its sign.
void FinishNonFinite(double value, RealText& result) noexcept
{
    if (std::isnan(value)) {
        Finish(u"NAN", result);
        return;
    }
    const char16_t text[] = {result.minus, u'I', u'N', u'F'};
    Finish(value < 0 ? std::u16string_view(text, 4) : std::u16string_view(text + 1, 3), result);
}

// The library's "1.5e+10" becomes "1.5E10".
void FinishCompact(const char* next, const char* end, RealText& result) noexcept
{
    char16_t text[NumberTextSize];
    char16_t* output = text;
    while (next != end) {
        const char unit = *next++;
        if (unit == '-') {
            *output++ = result.minus;
        } else if (unit != 'e') {
            *output++ = static_cast<char16_t>(unit);
        } else {
            *output++ = u'E';
            if (*next++ == '-') *output++ = result.minus;
            while (next != end && *next == '0')
                ++next;
        }
    }
    Finish({text, static_cast<std::size_t>(output - text)}, result);
}

// More digits than fit into an integer: the library's text.
void FinishLong(double value, std::int32_t precision, RealText& result) noexcept
{
    char text[2 * NumberTextSize];
    const auto end =
        std::to_chars(text, text + sizeof text, value, std::chars_format::general, precision).ptr;
    FinishCompact(text, end, result);
}

void MeasureDigits(std::int32_t precision, RealText& text) noexcept
{
    const NumberDigits& number = text.digits;
    const std::int32_t sign = number.negative ? 1 : 0;
    if (number.exponent < LeastFixedExponent || number.exponent >= precision) {
        const auto exponentDigits = CountDigits(static_cast<std::uint64_t>(std::abs(number.exponent)));
        text.form = NumberForm::Exponent;
        text.size.integer = sign + 1;
        text.size.rest =
            (number.count > 1 ? number.count : 0) + 1 + (number.exponent < 0 ? 1 : 0) + exponentDigits;
        return;
    }
    text.form = NumberForm::Fixed;
    text.size.integer = sign + std::max(number.exponent, 0) + 1;
    const std::int32_t decimals = number.count - number.exponent - 1;
    text.size.rest = decimals > 0 ? decimals + 1 : 0;
}

char16_t* EmitFixed(const NumberDigits& number, char16_t* output) noexcept
{
    if (number.exponent < 0) {
        *output++ = u'0';
        *output++ = u'.';
        for (std::int32_t i = number.exponent + 1; i < 0; ++i)
            *output++ = u'0';
        output += number.count;
        WriteDigitsBefore(output, number.digits, number.count);
        return output;
    }
    const std::int32_t integers = number.exponent + 1;
    if (number.count <= integers) {
        WriteDigitsBefore(output + integers, number.digits * IntegerPowerOfTen(integers - number.count),
                          integers);
        return output + integers;
    }
    WriteDigitsBefore(output + 1 + number.count, number.digits, number.count);
    for (std::int32_t i = 0; i < integers; ++i)
        output[i] = output[i + 1];
    output[integers] = u'.';
    return output + number.count + 1;
}

char16_t* EmitExponent(const RealText& text, char16_t* output) noexcept
{
    const NumberDigits& number = text.digits;
    WriteDigitsBefore(output + 1 + number.count, number.digits, number.count);
    output[0] = output[1];
    ++output;
    if (number.count > 1) {
        *output = u'.';
        output += number.count;
    }
    *output++ = u'E';
    if (number.exponent < 0) *output++ = text.minus;
    const auto exponent = static_cast<std::uint64_t>(std::abs(number.exponent));
    output += CountDigits(exponent);
    WriteDigitsBefore(output, static_cast<std::uint32_t>(exponent));
    return output;
}

} // namespace

NumberStyle MakeNumberStyle(const LangEnv& environment, std::int64_t precision) noexcept
{
    if (precision < 0) precision = DefaultPrecision;
    precision = std::clamp<std::int64_t>(precision, 1, MostPrecision);
    const bool high = (environment.ViewCapabilities & ViewCapabilityHighMinus) != 0;
    return {static_cast<std::int32_t>(precision), high ? HighMinus : u'-'};
}

void PrepareText(double value, const NumberStyle& style, RealText& text) noexcept
{
    text.minus = style.minus;
    if (style.precision >= LimitPrecision && std::abs(value) >= GreatestReal) {
        Finish(value < 0 ? u"-1.7976931348623150E+308" : u"+1.7976931348623150E+308", text);
        return;
    }
    if (!std::isfinite(value)) {
        FinishNonFinite(value, text);
        return;
    }
    if (style.precision > MostDigits) {
        FinishLong(value, style.precision, text);
        return;
    }
    text.digits = RoundToDigits(value, style.precision);
    MeasureDigits(style.precision, text);
}

void PrepareText(double real, double imaginary, const NumberStyle& style, ComplexText& text) noexcept
{
    PrepareText(real, style, text.real);
    text.size = text.real.size;
    text.hasImaginary = imaginary != 0;
    if (!text.hasImaginary) return;
    PrepareText(imaginary, style, text.imaginary);
    text.size.rest += 1 + text.imaginary.size.integer + text.imaginary.size.rest;
}

char16_t* EmitText(const RealText& text, char16_t* output) noexcept
{
    if (text.form == NumberForm::Finished) {
        return std::copy_n(text.finished, text.size.integer + text.size.rest, output);
    }
    if (text.digits.negative) *output++ = text.minus;
    return text.form == NumberForm::Fixed ? EmitFixed(text.digits, output) : EmitExponent(text, output);
}

char16_t* EmitText(const ComplexText& text, char16_t* output) noexcept
{
    output = EmitText(text.real, output);
    if (!text.hasImaginary) return output;
    *output++ = u'J';
    return EmitText(text.imaginary, output);
}

} // namespace vantrel
