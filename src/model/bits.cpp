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

} // namespace

void SetBit(void* data, std::int64_t index, bool value) noexcept
{
    auto& byte = static_cast<std::uint8_t*>(data)[index >> 3];
    const auto mask = static_cast<std::uint8_t>(0x80 >> (index & 7));
    byte = static_cast<std::uint8_t>(value ? byte | mask : byte & ~mask);
}

void CopyBits(void* to, std::int64_t toIndex, const void* from, std::int64_t fromIndex,
              std::int64_t count) noexcept
{
    auto* const target = static_cast<std::uint8_t*>(to);
    const auto* const source = static_cast<const std::uint8_t*>(from);
    const auto copyRun = [&](std::int64_t items) {
        if (items > 0) StoreRun(target, toIndex, LoadRun(source, fromIndex, items), items);
        toIndex += items;
        fromIndex += items;
        count -= items;
    };
    copyRun(HeadOf(toIndex, count));
    if ((fromIndex & 7) == 0) {
        const std::int64_t bytes = count / 8;
        if (bytes > 0)
            std::memcpy(target + (toIndex >> 3), source + (fromIndex >> 3), static_cast<std::size_t>(bytes));
        toIndex += 8 * bytes;
        fromIndex += 8 * bytes;
        count -= 8 * bytes;
    }
    for (; count >= BitsPerWord; count -= BitsPerWord) {
        StoreWord(target + (toIndex >> 3), LoadWord(source, fromIndex));
        toIndex += BitsPerWord;
        fromIndex += BitsPerWord;
    }
    copyRun(count);
}

void ReverseBits(void* to, std::int64_t toIndex, const void* from, std::int64_t fromIndex,
                 std::int64_t count) noexcept
{
    auto* const target = static_cast<std::uint8_t*>(to);
    const auto* const source = static_cast<const std::uint8_t*>(from);
    std::int64_t fromEnd = fromIndex + count;
    const auto reverseRun = [&](std::int64_t items) {
        fromEnd -= items;
        if (items > 0) {
            const std::uint64_t word = ReverseWord(LoadRun(source, fromEnd, items));
            StoreRun(target, toIndex, word << (BitsPerWord - items), items);
        }
        toIndex += items;
        count -= items;
    };
    reverseRun(HeadOf(toIndex, count));
    for (; count >= BitsPerWord; count -= BitsPerWord) {
        fromEnd -= BitsPerWord;
        StoreWord(target + (toIndex >> 3), ReverseWord(LoadWord(source, fromEnd)));
        toIndex += BitsPerWord;
    }
    reverseRun(count);
}

} // namespace vantrel
