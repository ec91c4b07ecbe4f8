#include "workbench/formats/numbers.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace vantrel::workbench {
namespace {

constexpr double overflowValue = -2147483648.0;
constexpr double exactWholeLimit = 9007199254740992.0;

double AsShown(double value, int precision)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*G", precision, value);
    return std::strtod(buffer, nullptr);
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

std::size_t SkipDigits(std::string_view text, std::size_t i)
{
    while (i < text.size() && IsDigit(text[i]))
        ++i;
    return i;
}

bool IsWholeText(std::string_view text)
{
    return text.find_first_of(".eE") == std::string_view::npos;
}

std::size_t SignificantDigits(std::string_view text)
{
    std::size_t count = 0;
    for (const char c : text) {
        if (c == 'e' || c == 'E') break;
        if (IsDigit(c) && (count > 0 || c != '0')) ++count;
    }
    return count;
}

} // namespace

NumberChange CompareNumbers(double loaded, double edited, int precision)
{
    if (loaded == edited || (std::isnan(loaded) && std::isnan(edited))) return NumberChange::None;
    if (std::isfinite(loaded) && AsShown(loaded, precision) == edited) return NumberChange::None;
    const bool beyond = loaded < overflowValue || loaded > -overflowValue - 1;
    if (edited == overflowValue && beyond && std::floor(loaded) == loaded) return NumberChange::Shortened;
    return NumberChange::Edited;
}

std::string NumberToText(double value)
{
    char buffer[64];
    const bool whole = std::floor(value) == value && std::abs(value) <= exactWholeLimit;
    const auto result = whole ? std::to_chars(buffer, buffer + sizeof buffer, static_cast<long long>(value))
                              : std::to_chars(buffer, buffer + sizeof buffer, value);
    return {buffer, result.ptr};
}

bool IsJsonNumber(std::string_view text)
{
    std::size_t i = !text.empty() && text[0] == '-' ? 1 : 0;
    const std::size_t whole = i;
    i = SkipDigits(text, i);
    if (i == whole || (text[whole] == '0' && i - whole > 1)) return false;
    if (i < text.size() && text[i] == '.') {
        const std::size_t fraction = ++i;
        i = SkipDigits(text, i);
        if (i == fraction) return false;
    }
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
        const std::size_t exponent = i;
        i = SkipDigits(text, i);
        if (i == exponent) return false;
    }
    return i == text.size();
}

bool ParsePlainNumber(std::string_view text, double& value)
{
    const std::string terminated(text);
    value = std::strtod(terminated.c_str(), nullptr);
    return std::isfinite(value);
}

bool HoldsAllDigits(std::string_view text, double value)
{
    if (!IsWholeText(text)) return SignificantDigits(text) <= 17;
    // Just above the limit two whole numbers share one double, and the smaller of them is the limit itself.
    if (std::abs(value) < exactWholeLimit) return true;
    char exact[400];
    std::snprintf(exact, sizeof exact, "%.0f", value);
    return text == exact;
}

} // namespace vantrel::workbench
