#include "hosts/decimal.h"

#include <charconv>
#include <cstring>

namespace vantrel::fake {
namespace {

constexpr int exponentBias = 6176;
constexpr int maxDigits = 34;

struct Coefficient {
    std::uint64_t high = 0;
    std::uint64_t low = 0;
};

// 128-bit arithmetic in four 32-bit limbs: a built-in wide type is not portable.
using Limbs = std::array<std::uint32_t, 4>; // most significant first

Limbs ToLimbs(const Coefficient& c)
{
    return {static_cast<std::uint32_t>(c.high >> 32), static_cast<std::uint32_t>(c.high),
            static_cast<std::uint32_t>(c.low >> 32), static_cast<std::uint32_t>(c.low)};
}

unsigned DivideByTen(Limbs& limbs)
{
    std::uint64_t rest = 0;
    for (std::uint32_t& limb : limbs) {
        const std::uint64_t value = rest << 32 | limb;
        limb = static_cast<std::uint32_t>(value / 10);
        rest = value % 10;
    }
    return static_cast<unsigned>(rest);
}

void MultiplyByTenAndAdd(Limbs& limbs, unsigned digit)
{
    std::uint64_t carry = digit;
    for (auto limb = limbs.rbegin(); limb != limbs.rend(); ++limb) {
        const std::uint64_t value = std::uint64_t{*limb} * 10 + carry;
        *limb = static_cast<std::uint32_t>(value);
        carry = value >> 32;
    }
}

std::string CoefficientDigits(const Coefficient& coefficient)
{
    Limbs limbs = ToLimbs(coefficient);
    std::string reversed;
    while (limbs != Limbs{})
        reversed += static_cast<char>('0' + DivideByTen(limbs));
    if (reversed.empty()) reversed = "0";
    return {reversed.rbegin(), reversed.rend()};
}

std::string PlaceDecimalPoint(std::string digits, int exponent)
{
    const int pointAt = static_cast<int>(digits.size()) + exponent;
    if (exponent > 0 || pointAt < -5) {
        const int scientific = pointAt - 1;
        if (digits.size() > 1) digits.insert(1, ".");
        return digits + (scientific < 0 ? "E-" : "E+") +
               std::to_string(scientific < 0 ? -scientific : scientific);
    }
    if (exponent == 0) return digits;
    if (pointAt <= 0) digits.insert(0, static_cast<std::size_t>(1 - pointAt), '0');
    digits.insert(digits.size() - static_cast<std::size_t>(-exponent), ".");
    return digits;
}

struct ScannedNumber {
    bool negative = false;
    std::string digits; // without leading zeros
    int exponent = 0;
};

bool ScanExponent(std::string_view text, int& exponent)
{
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value > 100000 || value < -100000)
        return false;
    exponent += value;
    return true;
}

bool ScanNumber(std::string_view text, ScannedNumber& number)
{
    std::size_t i = 0;
    if (i < text.size() && text[i] == '-') {
        number.negative = true;
        ++i;
    }
    bool seenDigit = false;
    bool seenPoint = false;
    for (; i < text.size() && text[i] != 'E' && text[i] != 'e'; ++i) {
        if (text[i] == '.' && !seenPoint) {
            seenPoint = true;
        } else if (text[i] >= '0' && text[i] <= '9') {
            seenDigit = true;
            if (!number.digits.empty() || text[i] != '0') number.digits += text[i];
            if (seenPoint) --number.exponent;
        } else {
            return false;
        }
    }
    return seenDigit && (i == text.size() || ScanExponent(text.substr(i + 1), number.exponent));
}

} // namespace

std::string DecimalToText(const DecimalBytes& bytes)
{
    Coefficient coefficient;
    std::memcpy(&coefficient.low, bytes.data(), 8);
    std::memcpy(&coefficient.high, bytes.data() + 8, 8);
    const std::string sign = coefficient.high >> 63 ? "-" : "";
    const unsigned combination = static_cast<unsigned>(coefficient.high >> 58 & 31);
    if (combination == 31) return "NaN";
    if (combination == 30) return sign + "Infinity";
    // The long form of the exponent belongs to coefficients above the largest one: such a value counts as zero.
    if (combination >= 24) return sign + "0";
    const int exponent = static_cast<int>(coefficient.high >> 49 & 0x3FFF) - exponentBias;
    coefficient.high &= (std::uint64_t{1} << 49) - 1;
    return sign + PlaceDecimalPoint(CoefficientDigits(coefficient), exponent);
}

bool DecimalFromText(std::string_view text, DecimalBytes& bytes)
{
    ScannedNumber number;
    if (!ScanNumber(text, number)) return false;
    while (number.digits.size() > maxDigits && number.digits.back() == '0') {
        number.digits.pop_back();
        ++number.exponent;
    }
    if (number.digits.size() > maxDigits) return false;
    const int biased = number.exponent + exponentBias;
    if (biased < 0 || biased > 12287) return false;
    Limbs limbs{};
    for (const char digit : number.digits)
        MultiplyByTenAndAdd(limbs, static_cast<unsigned>(digit - '0'));
    const std::uint64_t low = std::uint64_t{limbs[2]} << 32 | limbs[3];
    const std::uint64_t high = (std::uint64_t{limbs[0]} << 32 | limbs[1]) |
                               static_cast<std::uint64_t>(biased) << 49 |
                               static_cast<std::uint64_t>(number.negative) << 63;
    std::memcpy(bytes.data(), &low, 8);
    std::memcpy(bytes.data() + 8, &high, 8);
    return true;
}

} // namespace vantrel::fake
