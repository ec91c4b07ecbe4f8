// Boolean data up to 64 items at a time. In a word the first item is the most significant bit, as it is in a byte.
#pragma once

#include <cstdint>
#include <cstring>

namespace vantrel {

inline constexpr std::int64_t BitsPerWord = 64;

// Compilers make one instruction of this.
[[nodiscard]] inline std::uint64_t SwapBytes(std::uint64_t word) noexcept
{
    word = ((word >> 8) & 0x00FF00FF00FF00FF) | ((word & 0x00FF00FF00FF00FF) << 8);
    word = ((word >> 16) & 0x0000FFFF0000FFFF) | ((word & 0x0000FFFF0000FFFF) << 16);
    return (word >> 32) | (word << 32);
}

[[nodiscard]] inline std::uint64_t ReverseBitsInBytes(std::uint64_t word) noexcept
{
    word = ((word >> 4) & 0x0F0F0F0F0F0F0F0F) | ((word & 0x0F0F0F0F0F0F0F0F) << 4);
    word = ((word >> 2) & 0x3333333333333333) | ((word & 0x3333333333333333) << 2);
    return ((word >> 1) & 0x5555555555555555) | ((word & 0x5555555555555555) << 1);
}

[[nodiscard]] inline std::uint64_t ReverseWord(std::uint64_t word) noexcept
{
    return SwapBytes(ReverseBitsInBytes(word));
}

// 64 items, of which the first stands behind `shift` (0 to 7) others in the first byte.
[[nodiscard]] inline std::uint64_t LoadShifted(const std::uint8_t* at, unsigned shift) noexcept
{
    std::uint64_t word;
    std::memcpy(&word, at, sizeof word);
    word = SwapBytes(word);
    if (shift == 0) return word;
    return (word << shift) | (at[sizeof word] >> (8 - shift));
}

inline void StoreWord(std::uint8_t* at, std::uint64_t word) noexcept
{
    word = SwapBytes(word);
    std::memcpy(at, &word, sizeof word);
}

// 1 to 64 items from `index` on, in the upper bits of the word; the others are 0. Touches only bytes in which they stand.
[[nodiscard]] inline std::uint64_t LoadRun(const std::uint8_t* data, std::int64_t index,
                                           std::int64_t count) noexcept
{
    const std::uint8_t* at = data + (index >> 3);
    const std::uint8_t* const end = data + ((index + count + 7) >> 3);
    std::uint64_t word = 0;
    // The first byte may hold earlier items, which leave the word at its upper end.
    for (auto shift = static_cast<int>(BitsPerWord - 8 + (index & 7)); at != end; shift -= 8, ++at)
        word |= shift >= 0 ? std::uint64_t{*at} << shift : std::uint64_t{*at} >> -shift;
    return word & (~std::uint64_t{0} << (BitsPerWord - count));
}

// Stores the upper `count` (1 to 64) bits of the word; items around them are kept.
inline void StoreRun(std::uint8_t* data, std::int64_t index, std::uint64_t word, std::int64_t count) noexcept
{
    while (count > 0) {
        const std::int64_t offset = index & 7;
        const std::int64_t taken = count < 8 - offset ? count : 8 - offset;
        const auto mask = static_cast<std::uint8_t>((0xFF >> offset) & (0xFF << (8 - offset - taken)));
        const auto bits = static_cast<std::uint8_t>((word >> (BitsPerWord - 8)) >> offset);
        std::uint8_t& byte = data[index >> 3];
        byte = static_cast<std::uint8_t>((byte & ~mask) | (bits & mask));
        word <<= taken;
        index += taken;
        count -= taken;
    }
}

} // namespace vantrel
