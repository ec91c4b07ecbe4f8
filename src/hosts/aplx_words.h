// Booleans between the tree's bytes and APLX's words of 64 bits, which are stored with their least significant byte first.
#pragma once

#include <cstdint>
#include <cstring>

namespace vantrel::aplx {

// Compilers know this for one instruction.
[[nodiscard]] inline std::uint64_t SwapBytes(std::uint64_t word) noexcept
{
    word = (word & 0x00FF00FF00FF00FFu) << 8 | (word >> 8 & 0x00FF00FF00FF00FFu);
    word = (word & 0x0000FFFF0000FFFFu) << 16 | (word >> 16 & 0x0000FFFF0000FFFFu);
    return word << 32 | word >> 32;
}

// `count` words of 8 bytes with their bytes reversed. The two do not overlap.
inline void SwapWords(const std::uint8_t* __restrict from, std::uint8_t* __restrict to,
                      std::int64_t words) noexcept
{
    for (std::int64_t i = 0; i < words; ++i) {
        std::uint64_t word = 0;
        std::memcpy(&word, from + i * 8, 8);
        word = SwapBytes(word);
        std::memcpy(to + i * 8, &word, 8);
    }
}

// Of a word only the bits in use, the most significant `count` of them.
[[nodiscard]] inline std::uint64_t LeadingBits(std::uint64_t word, std::int64_t count) noexcept
{
    return count > 0 ? word & ~std::uint64_t{0} << (64 - count) : 0;
}

// What stands behind the last item is not taken over.
inline void BitsOfWords(const std::uint8_t* from, std::uint8_t* to, std::int64_t count) noexcept
{
    const std::int64_t whole = count / 64;
    SwapWords(from, to, whole);
    const std::int64_t rest = count % 64;
    if (rest == 0) return;
    std::uint64_t word = 0;
    std::memcpy(&word, from + whole * 8, 8);
    word = SwapBytes(LeadingBits(word, rest));
    std::memcpy(to + whole * 8, &word, static_cast<std::size_t>((rest + 7) / 8));
}

inline void WordsOfBits(const std::uint8_t* from, std::uint8_t* to, std::int64_t count) noexcept
{
    const std::int64_t whole = count / 64;
    SwapWords(from, to, whole);
    const std::int64_t rest = count % 64;
    if (rest == 0) return;
    std::uint64_t word = 0;
    std::memcpy(&word, from + whole * 8, static_cast<std::size_t>((rest + 7) / 8));
    word = LeadingBits(SwapBytes(word), rest);
    std::memcpy(to + whole * 8, &word, 8);
}

} // namespace vantrel::aplx
