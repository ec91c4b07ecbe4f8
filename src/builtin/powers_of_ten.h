// Powers of ten as 64-bit fractions, for turning doubles into decimal digits.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace vantrel {

inline constexpr std::int32_t LeastPowerOfTen = -308;
inline constexpr std::int32_t GreatestPowerOfTen = 340;

namespace powers_detail {

// A fraction of 128 bits, highest limb first, top bit set. 128 bits keep the error of 340 steps far below the
// 64 bits that are used.
struct Fraction {
    std::uint32_t limbs[4];
};

constexpr Fraction TimesTen(const Fraction& from)
{
    std::uint32_t wide[5] = {};
    std::uint64_t carry = 0;
    for (int i = 3; i >= 0; --i) {
        carry += std::uint64_t{from.limbs[i]} * 10;
        wide[i + 1] = static_cast<std::uint32_t>(carry);
        carry >>= 32;
    }
    wide[0] = static_cast<std::uint32_t>(carry);
    const int shift = wide[0] > 7 ? 4 : 3; // 5 <= wide[0] <= 9
    Fraction result = {};
    for (int i = 0; i < 4; ++i)
        result.limbs[i] = wide[i] << (32 - shift) | wide[i + 1] >> shift;
    return result;
}

constexpr Fraction OverTen(const Fraction& from)
{
    std::uint32_t wide[5] = {};
    std::uint64_t remainder = 0;
    for (int i = 0; i < 5; ++i) { // divides from * 16
        const std::uint32_t upper = i > 0 ? from.limbs[i - 1] << 4 : 0;
        const std::uint32_t lower = i < 4 ? from.limbs[i] >> 28 : 0;
        remainder = remainder << 32 | upper | lower;
        wide[i] = static_cast<std::uint32_t>(remainder / 10);
        remainder %= 10;
    }
    Fraction result = {};
    for (int i = 0; i < 4; ++i)
        result.limbs[i] = wide[0] != 0 ? wide[i] << 31 | wide[i + 1] >> 1 : wide[i + 1];
    return result;
}

constexpr std::uint64_t TopHalf(const Fraction& fraction)
{
    return std::uint64_t{fraction.limbs[0]} << 32 | fraction.limbs[1];
}

constexpr auto MakePowersOfTen()
{
    std::array<std::uint64_t, GreatestPowerOfTen - LeastPowerOfTen + 1> table = {};
    Fraction power = {{0x80000000, 0, 0, 0}};
    for (int k = 0; k <= GreatestPowerOfTen; ++k) {
        table[static_cast<std::size_t>(k - LeastPowerOfTen)] = TopHalf(power);
        power = TimesTen(power);
    }
    power = {{0x80000000, 0, 0, 0}};
    for (int k = -1; k >= LeastPowerOfTen; --k) {
        power = OverTen(power);
        table[static_cast<std::size_t>(k - LeastPowerOfTen)] = TopHalf(power);
    }
    return table;
}

} // namespace powers_detail

// 10^k = fraction * 2^exponent with 2^63 <= fraction < 2^64. The fraction is cut, not rounded: the true one
// is less than one unit greater.
inline constexpr auto PowersOfTen = powers_detail::MakePowersOfTen();

[[nodiscard]] constexpr std::uint64_t PowerOfTenFraction(std::int32_t k) noexcept
{
    return PowersOfTen[static_cast<std::size_t>(k - LeastPowerOfTen)];
}

[[nodiscard]] constexpr std::int32_t PowerOfTenExponent(std::int32_t k) noexcept
{
    return ((k * 1741647) >> 19) - 63; // floor(k * log2(10)) - 63
}

namespace powers_detail {

constexpr auto MakeIntegerPowers()
{
    std::array<std::uint64_t, 20> table = {};
    std::uint64_t power = 1;
    for (auto& entry : table) {
        entry = power;
        power *= 10;
    }
    return table;
}

} // namespace powers_detail

inline constexpr auto IntegerPowersOfTen = powers_detail::MakeIntegerPowers();

// 10^k for 0 <= k <= 19.
[[nodiscard]] constexpr std::uint64_t IntegerPowerOfTen(std::int32_t k) noexcept
{
    return IntegerPowersOfTen[static_cast<std::size_t>(k)];
}

} // namespace vantrel
