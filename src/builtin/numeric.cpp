#include "builtin/numeric.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "entry/trace.h"
#include "model/primitives.h"

namespace vantrel {
namespace {

constexpr char16_t Blank = u' ';
constexpr char16_t HighMinus = 175;

bool IsDigit(char16_t unit) noexcept
{
    return unit >= u'0' && unit <= u'9';
}

bool IsImaginaryMark(char16_t unit) noexcept
{
    return unit == u'J' || unit == u'j';
}

const char16_t* SkipBlanks(const char16_t* text) noexcept
{
    while (*text == Blank)
        ++text;
    return text;
}

const char16_t* SkipDigits(const char16_t* text) noexcept
{
    while (IsDigit(*text))
        ++text;
    return text;
}

const char16_t* ParseInteger(const char16_t* text, std::int64_t& value)
{
    const bool negative = *text == u'-';
    if (negative) ++text;
    if (!IsDigit(*text)) throw VTERROR_CODE::SyntaxError;
    const std::uint64_t limit =
        static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) + (negative ? 1 : 0);
    std::uint64_t magnitude = 0;
    for (; IsDigit(*text); ++text) {
        const auto digit = static_cast<std::uint64_t>(*text - u'0');
        if (magnitude > (limit - digit) / 10) throw VTERROR_CODE::SyntaxError;
        magnitude = magnitude * 10 + digit;
    }
    value = static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
    return text;
}

// The end of "-12.5E-3" and its parts; equal to the start where no digit stands. An "E" without digits is not
// part of the number.
const char16_t* FindRealEnd(const char16_t* text) noexcept
{
    const char16_t* next = *text == u'-' ? text + 1 : text;
    const char16_t* const integer = next;
    next = SkipDigits(next);
    std::int64_t digits = next - integer;
    if (*next == u'.') {
        const char16_t* const fraction = next + 1;
        next = SkipDigits(fraction);
        digits += next - fraction;
    }
    if (digits == 0) return text;
    if (*next != u'E' && *next != u'e') return next;
    const char16_t* const exponent = next[1] == u'-' ? next + 2 : next + 1;
    return IsDigit(*exponent) ? SkipDigits(exponent) : next;
}

// Whether an out-of-range number is too great; else it is too small. Decided by the place of its first digit
// that is not 0.
bool IsTooGreat(const char* text, const char* end) noexcept
{
    const char* const mark = std::find_if(text, end, [](char unit) { return unit == 'E' || unit == 'e'; });
    const char* const point = std::find(text, mark, '.');
    const char* const first = std::find_if(text, mark, [](char unit) { return unit >= '1' && unit <= '9'; });
    std::int64_t exponent = 0;
    if (mark != end && std::from_chars(mark + 1, end, exponent).ec != std::errc()) return mark[1] != '-';
    return exponent > first - point; // no text is long enough to make up for an exponent that does not fit
}

double ConvertReal(const char* text, const char* end)
{
    double value = 0;
    if (std::from_chars(text, end, value).ec == std::errc()) return value;
    if (IsTooGreat(text, end)) throw VTERROR_CODE::SyntaxError;
    return *text == '-' ? -0.0 : 0.0;
}

const char16_t* ParseReal(const char16_t* text, double& value)
{
    constexpr std::int64_t UsualLength = 64;
    const char16_t* const end = FindRealEnd(text);
    const std::int64_t length = end - text;
    if (length == 0) throw VTERROR_CODE::SyntaxError;
    char usual[UsualLength];
    OwnedArray<char> longer;
    if (length > UsualLength) longer = AllocateArray<char>(length);
    char* const narrow = longer ? longer.get() : usual;
    std::transform(text, end, narrow, [](char16_t unit) { return static_cast<char>(unit); });
    value = ConvertReal(narrow, narrow + length);
    return end;
}

const char16_t* ParseComplex(const char16_t* text, double* pair)
{
    text = ParseReal(text, pair[0]);
    pair[1] = 0;
    return IsImaginaryMark(*text) ? ParseReal(text + 1, pair[1]) : text;
}

template <typename Number, typename Parse>
void ParseNumbers(const char16_t* text, Number* output, std::int64_t count, std::int64_t step, Parse parse)
{
    text = SkipBlanks(text);
    for (std::int64_t i = 0; i < count; ++i) {
        text = SkipBlanks(parse(text, output + i * step));
        if (*text == 0) return;
    }
}

struct ScannedText {
    OwnedArray<char16_t> units; // terminated, every minus a hyphen
    std::uint32_t type = TypeInteger;
    std::int64_t words = 0;
};

ScannedText ScanText(const char16_t* text, std::int64_t length)
{
    ScannedText result;
    result.units = AllocateArray<char16_t>(length + 1);
    char16_t* output = result.units.get();
    bool inWord = false;
    for (std::int64_t i = 0; i < length; ++i) {
        char16_t unit = text[i];
        if (unit == HighMinus) unit = u'-';
        if (unit == u'.' || unit == u'E' || unit == u'e') {
            result.type = std::max<std::uint32_t>(result.type, TypeReal);
        } else if (IsImaginaryMark(unit)) {
            result.type = TypeComplex;
        } else if (unit != Blank && unit != u'-' && !IsDigit(unit)) {
            throw VTERROR_CODE::DomainError;
        }
        result.words += unit != Blank && !inWord ? 1 : 0;
        inWord = unit != Blank;
        *output++ = unit;
    }
    *output = 0;
    return result;
}

ScdrPtr ConvertText(EditContext* context, const Scdr& argument)
{
    if (argument.Type != TypeCharacter) throw VTERROR_CODE::DomainError;
    if (argument.Rank >= 2) throw VTERROR_CODE::RankError;
    if (argument.ElementCount == 0) return AllocateScdr(context, nullptr, TypeBoolean, 0, nullptr, true);
    const ScannedText text = ScanText(static_cast<const char16_t*>(argument.data), argument.ElementCount);
    ScdrPtr result = AllocateScdr(context, nullptr, text.type, 1, &text.words, true);
    void* const data = WritableData(*result);
    switch (text.type) {
    case TypeInteger: UnicodeToI8s(text.units.get(), static_cast<std::int64_t*>(data), text.words); break;
    case TypeReal: UnicodeToF8s(text.units.get(), static_cast<double*>(data), text.words); break;
    default: UnicodeToJ16s(text.units.get(), static_cast<double*>(data), text.words); break;
    }
    return result;
}

} // namespace

ScdrPtr BuiltinCtn(EditContext* context, const Scdr& argument)
{
    TraceScope trace("builtin.cpp", "BuiltinCtn");
    try {
        ScdrPtr result = ConvertText(context, argument);
        SetSimplestType(*result);
        return result;
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

void UnicodeToI8s(const char16_t* text, std::int64_t* output, std::int64_t count)
{
    TraceScope trace("builtin.cpp", "UnicodeToI8s");
    ParseNumbers(text, output, count, 1,
                 [](const char16_t* at, std::int64_t* value) { return ParseInteger(at, *value); });
}

void UnicodeToF8s(const char16_t* text, double* output, std::int64_t count)
{
    TraceScope trace("builtin.cpp", "UnicodeToF8s");
    ParseNumbers(text, output, count, 1,
                 [](const char16_t* at, double* value) { return ParseReal(at, *value); });
}

void UnicodeToJ16s(const char16_t* text, double* outputPairs, std::int64_t count)
{
    TraceScope trace("builtin.cpp", "UnicodeToJ16s");
    ParseNumbers(text, outputPairs, count, 2, ParseComplex);
}

} // namespace vantrel
