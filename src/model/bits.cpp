#include <algorithm>

#include "model/bit_words.h"
#include "model/scdr.h"

namespace vantrel {
namespace {

// Items in front of the next whole byte of the target, at most `count`.
std::int64_t HeadOf(std::int64_t toIndex, std::int64_t count) noexcept
{
    return std::min(count, (8 - (toIndex & 7)) & 7);
}

void CopyRun(std::uint8_t* to, std::int64_t toIndex, const std::uint8_t* from, std::int64_t fromIndex,
             std::int64_t count) noexcept
{
    if (count > 0) StoreRun(to, toIndex, LoadRun(from, fromIndex, count), count);
}

// The items in front of `fromEnd`.
void ReverseRun(std::uint8_t* to, std::int64_t toIndex, const std::uint8_t* from, std::int64_t fromEnd,
                std::int64_t count) noexcept
{
    if (count == 0) return;
    const std::uint64_t word = ReverseWord(LoadRun(from, fromEnd - count, count));
    StoreRun(to, toIndex, word << (BitsPerWord - count), count);
}

// In each of the two, the first item of the first word stands behind `shift` items that belong to no word.

// Bytes shift with their right neighbours, eight at a time and without turning them into words.
void CopyWords(std::uint8_t* to, const std::uint8_t* from, unsigned shift, std::int64_t words) noexcept
{
    constexpr std::uint64_t everyByte = 0x0101010101010101;
    const std::uint64_t fromRight = everyByte * (0xFFU >> (8 - shift));
    for (std::int64_t i = 0; i < words; ++i) {
        std::uint64_t bytes;
        std::uint64_t rightBytes;
        std::memcpy(&bytes, from + 8 * i, sizeof bytes);
        std::memcpy(&rightBytes, from + 8 * i + 1, sizeof rightBytes);
        bytes = ((bytes << shift) & ~fromRight) | ((rightBytes >> (8 - shift)) & fromRight);
        std::memcpy(to + 8 * i, &bytes, sizeof bytes);
    }
}

// Words go through a short block of constant length, so that compilers make vector code of the second loop.
void ReverseWords(std::uint8_t* to, const std::uint8_t* from, unsigned shift, std::int64_t words) noexcept
{
    constexpr std::int64_t blockWords = 64;
    std::uint64_t block[blockWords +
                        1]; // from the last word to the first; in front the one that the last shifts in from
    block[0] = shift > 0 ? std::uint64_t{from[8 * words]} << (BitsPerWord - 8) : 0;
    for (; words >= blockWords; words -= blockWords) {
        for (std::int64_t i = 1; i <= blockWords; ++i)
            block[i] = LoadShifted(from + 8 * (words - i), 0);
        for (std::int64_t i = 0; i < blockWords; ++i) {
            const std::uint64_t word =
                (block[i + 1] << shift) | ((block[i] >> 1) >> (BitsPerWord - 1 - shift));
            const std::uint64_t bytes = ReverseBitsInBytes(word);
            std::memcpy(to + 8 * i, &bytes, sizeof bytes);
        }
        block[0] = block[blockWords];
        to += 8 * blockWords;
    }
    for (; words > 0; --words, to += 8)
        StoreWord(to, ReverseWord(LoadShifted(from + 8 * (words - 1), shift)));
}

} // namespace

void SetBit(void* data, std::int64_t index, bool value) noexcept
{
    auto& byte = static_cast<std::uint8_t*>(data)[index >> 3];
    const auto mask = static_cast<std::uint8_t>(0x80 >> (index & 7));
    byte = static_cast<std::uint8_t>(value ? byte | mask : byte & ~mask);
}

// Both write whole words before the bits around them: a new page of memory that is read first is given out twice by the system.

void CopyBits(void* to, std::int64_t toIndex, const void* from, std::int64_t fromIndex,
              std::int64_t count) noexcept
{
    auto* const target = static_cast<std::uint8_t*>(to);
    const auto* const source = static_cast<const std::uint8_t*>(from);
    const std::int64_t first = HeadOf(toIndex, count);
    const auto shift = static_cast<unsigned>((fromIndex + first) & 7);
    const std::int64_t words = (count - first) / BitsPerWord;
    std::uint8_t* const toWords = target + ((toIndex + first) >> 3);
    const std::uint8_t* const fromWords = source + ((fromIndex + first) >> 3);
    if (shift != 0) {
        CopyWords(toWords, fromWords, shift, words);
    } else if (words > 0) {
        std::memcpy(toWords, fromWords, 8 * static_cast<std::size_t>(words));
    }
    const std::int64_t done = first + words * BitsPerWord;
    CopyRun(target, toIndex, source, fromIndex, first);
    CopyRun(target, toIndex + done, source, fromIndex + done, count - done);
}

void ReverseBits(void* to, std::int64_t toIndex, const void* from, std::int64_t fromIndex,
                 std::int64_t count) noexcept
{
    auto* const target = static_cast<std::uint8_t*>(to);
    const auto* const source = static_cast<const std::uint8_t*>(from);
    const std::int64_t fromEnd = fromIndex + count;
    const std::int64_t first = HeadOf(toIndex, count);
    const std::int64_t words = (count - first) / BitsPerWord;
    const std::int64_t done = first + words * BitsPerWord;
    const auto shift = static_cast<unsigned>((fromEnd - done) & 7);
    if (words > 0)
        ReverseWords(target + ((toIndex + first) >> 3), source + ((fromEnd - done) >> 3), shift, words);
    ReverseRun(target, toIndex, source, fromEnd, first);
    ReverseRun(target, toIndex + done, source, fromEnd - done, count - done);
}

} // namespace vantrel
