// What kind of numbers floats are: bits, whole numbers that have a 64-bit integer, or anything else.
//
// Arrays of ten million floats are asked this on their way in and out, and most are whole. So a block of items is judged without a
// branch, which compilers turn into vector code; only a block with something unusual in it is looked at item by item.
#pragma once

#include <bit>
#include <cstdint>

namespace vantrel {

enum class NumberKind { Bits, Whole, Other };

// Both ends belong to the range; NaN does not.
[[nodiscard]] inline bool IsInIntegerRange(double value) noexcept
{
    constexpr double limit = 9223372036854775808.0;
    return value >= -limit && value <= limit;
}

// For values in range. The upper end itself does not fit into the integer.
[[nodiscard]] inline bool IsIntegral(double value) noexcept
{
    constexpr double limit = 9223372036854775808.0;
    return value == limit || static_cast<double>(static_cast<std::int64_t>(value)) == value;
}

[[nodiscard]] inline bool IsBit(double value) noexcept
{
    return value == 0.0 || value == 1.0;
}

[[nodiscard]] inline NumberKind KindOfItem(double value) noexcept
{
    if (IsBit(value)) return NumberKind::Bits;
    return IsInIntegerRange(value) && IsIntegral(value) ? NumberKind::Whole : NumberKind::Other;
}

inline constexpr std::int64_t NumbersPerBlock = 256;

// Exact for whole numbers below 2 to the 51st; `Other` also stands for "look closer".
template <std::int64_t Count = NumbersPerBlock>
[[nodiscard]] NumberKind KindOfBlock(const double* items) noexcept
{
    // Adding this leaves no room for a fraction, so that what comes back is rounded.
    constexpr double rounder = 6755399441055744.0; // 1.5 * 2 to the 52nd
    constexpr std::uint64_t magnitude = 0x7FFFFFFFFFFFFFFF;
    constexpr std::uint64_t top = 0x8000000000000000;
    // Carries into the top bit from 2 to the 51st on, infinities and NaN included.
    constexpr std::uint64_t carry = top - std::bit_cast<std::uint64_t>(2251799813685248.0);
    std::uint64_t fractions = 0;
    std::uint64_t sizes = 0;
    std::uint64_t others = 0;
    for (std::int64_t i = 0; i < Count; ++i) {
        const double value = items[i];
        fractions |= std::bit_cast<std::uint64_t>((value + rounder) - rounder - value);
        sizes |= (std::bit_cast<std::uint64_t>(value) & magnitude) + carry;
        others |= std::bit_cast<std::uint64_t>(value * value - value);
    }
    if ((sizes & top) != 0 || (fractions & magnitude) != 0) return NumberKind::Other;
    return (others & magnitude) != 0 ? NumberKind::Whole : NumberKind::Bits;
}

// The least kind that holds all items; none: Bits.
[[nodiscard]] inline NumberKind KindOfReals(const double* items, std::int64_t count) noexcept
{
    NumberKind kind = NumberKind::Bits;
    const auto widen = [&kind](NumberKind found) { kind = found > kind ? found : kind; };
    for (std::int64_t i = 0; i < count;) {
        const bool whole = count - i >= NumbersPerBlock;
        const NumberKind block = whole ? KindOfBlock(items + i) : NumberKind::Other;
        const std::int64_t end = whole ? i + NumbersPerBlock : count;
        if (block != NumberKind::Other) {
            widen(block);
            i = end;
        }
        for (; i < end; ++i) {
            widen(KindOfItem(items[i]));
            if (kind == NumberKind::Other) return kind;
        }
    }
    return kind;
}

} // namespace vantrel
