#include "builtin/number_digits.h"

#include <charconv>

namespace vantrel {
namespace {

constexpr std::uint64_t SignBit = std::uint64_t{1} << 63;

// The upper half of a 128-bit product.
std::uint64_t MultiplyHigh(std::uint64_t a, std::uint64_t b) noexcept
{
    const std::uint64_t aLow = a & 0xFFFFFFFF;
    const std::uint64_t aHigh = a >> 32;
    const std::uint64_t bLow = b & 0xFFFFFFFF;
    const std::uint64_t bHigh = b >> 32;
    const std::uint64_t middle = aHigh * bLow + (aLow * bLow >> 32);
    const std::uint64_t other = aLow * bHigh + (middle & 0xFFFFFFFF);
    return aHigh * bHigh + (middle >> 32) + (other >> 32);
}

void StripTrailingZeros(NumberDigits& number) noexcept
{
    if (number.digits % 10 != 0) return;
    while (number.digits % 10000 == 0) {
        number.digits /= 10000;
        number.count -= 4;
    }
    while (number.digits % 10 == 0) {
        number.digits /= 10;
        --number.count;
    }
}

// A value with at most `precision` digits before the point and none behind it.
bool TakeWholeNumber(double magnitude, std::int32_t precision, NumberDigits& number) noexcept
{
    if (!(magnitude < 9007199254740992.0)) return false;
    const auto whole = static_cast<std::uint64_t>(static_cast<std::int64_t>(magnitude));
    if (static_cast<double>(whole) != magnitude || whole >= IntegerPowerOfTen(precision)) return false;
    number.digits = whole;
    number.count = CountDigits(whole);
    number.exponent = number.count - 1;
    return true;
}

// One multiplication by a power of ten whose 64 bits are less than one unit too small. Where that unit could
// change the rounding the answer is false and the library's exact arithmetic decides.
bool ScaleAndRound(std::uint64_t bits, std::int32_t precision, NumberDigits& number) noexcept
{
    const auto biased = static_cast<std::int32_t>(bits >> 52);
    const std::uint64_t fraction = bits & ((std::uint64_t{1} << 52) - 1);
    const std::uint64_t mantissa = biased != 0 ? fraction | std::uint64_t{1} << 52 : fraction;
    const std::int32_t shift = std::countl_zero(mantissa);
    const std::int32_t binaryExponent = (biased != 0 ? biased : 1) - 1075 - shift;
    // floor((binaryExponent + 63) * log10(2)): the decimal exponent, or one less.
    std::int32_t exponent = ((binaryExponent + 63) * 1262611) >> 22;
    const std::int32_t power = precision - 1 - exponent;
    const std::uint64_t scaled = MultiplyHigh(mantissa << shift, PowerOfTenFraction(power));
    const std::int32_t pointBits =
        -(binaryExponent + PowerOfTenExponent(power) + 64); // 2 .. 63 bits of `scaled` are behind the point
    const std::uint64_t limit = IntegerPowerOfTen(precision);

    std::uint64_t digits = scaled >> pointBits;
    std::uint64_t rest = scaled & ((std::uint64_t{1} << pointBits) - 1);
    std::uint64_t half = std::uint64_t{1} << (pointBits - 1);
    if (digits >= limit) { // one digit too many: the exponent was one less
        rest += digits % 10 << pointBits;
        half *= 10;
        digits /= 10;
        ++exponent;
    }
    if (rest <= half && rest + 2 >= half) return false; // the true rest lies above `rest` by less than 3
    if (rest > half && ++digits == limit) {
        digits /= 10;
        ++exponent;
    }
    number.digits = digits;
    number.count = precision;
    number.exponent = exponent;
    StripTrailingZeros(number);
    return true;
}

void RoundExactly(double magnitude, std::int32_t precision, NumberDigits& number) noexcept
{
    char text[32];
    const auto end =
        std::to_chars(text, text + sizeof text, magnitude, std::chars_format::scientific, precision - 1).ptr;
    std::uint64_t digits = 0;
    const char* next = text;
    for (; *next != 'e'; ++next) {
        if (*next != '.') digits = digits * 10 + static_cast<std::uint64_t>(*next - '0');
    }
    ++next;
    if (*next == '+') ++next;
    std::from_chars(next, end, number.exponent);
    number.digits = digits;
    number.count = precision;
    StripTrailingZeros(number);
}

} // namespace

NumberDigits RoundToDigits(double value, std::int32_t precision) noexcept
{
    NumberDigits number = {};
    const auto bits = std::bit_cast<std::uint64_t>(value);
    number.negative = (bits & SignBit) != 0;
    const auto magnitude = std::bit_cast<double>(bits & ~SignBit);
    if (TakeWholeNumber(magnitude, precision, number)) return number;
    if (!ScaleAndRound(bits & ~SignBit, precision, number)) RoundExactly(magnitude, precision, number);
    return number;
}

} // namespace vantrel
