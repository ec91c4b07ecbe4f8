#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "model/scdr.h"

namespace vantrel::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes RandomBytes(std::mt19937& random, std::size_t size)
{
    Bytes bytes(size);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    return bytes;
}

std::string Text(const Bytes& bytes)
{
    std::string text;
    for (std::size_t i = 0; i < 8 * bytes.size(); ++i)
        text += GetBit(bytes.data(), static_cast<std::int64_t>(i)) ? '1' : '0';
    return text;
}

// Calls `check(from, to, toIndex, fromIndex, count)` with blocks that end where the last bit ends, so that a sanitizer sees every byte
// touched behind them.
template <typename Check> void ForManyRuns(Check check)
{
    std::mt19937 random(9);
    for (const int count : {0,  1,  3,  7,  8,   9,   15,  16,  31,  56,   57,   63,
                            64, 65, 71, 72, 127, 128, 129, 200, 517, 2047, 2113, 4500}) {
        for (int toIndex = 0; toIndex < 9; ++toIndex) {
            for (int fromIndex = 0; fromIndex < 9; ++fromIndex) {
                const Bytes from = RandomBytes(random, static_cast<std::size_t>(fromIndex + count + 7) / 8);
                const Bytes to = RandomBytes(random, static_cast<std::size_t>(toIndex + count + 7) / 8);
                check(from, to, toIndex, fromIndex, count);
            }
        }
    }
}

TEST(Bits, CopiesRunsOfAnyLengthBetweenAnyPlaces)
{
    ForManyRuns([](const Bytes& from, Bytes to, int toIndex, int fromIndex, int count) {
        const auto place = static_cast<std::size_t>(toIndex);
        const auto size = static_cast<std::size_t>(count);
        std::string expected = Text(to);
        expected.replace(place, size, Text(from), static_cast<std::size_t>(fromIndex), size);
        CopyBits(to.data(), toIndex, from.data(), fromIndex, count);
        ASSERT_EQ(Text(to), expected) << toIndex << ' ' << fromIndex << ' ' << count;
    });
}

TEST(Bits, ReversesRunsOfAnyLengthBetweenAnyPlaces)
{
    ForManyRuns([](const Bytes& from, Bytes to, int toIndex, int fromIndex, int count) {
        const auto size = static_cast<std::size_t>(count);
        const std::string taken = Text(from).substr(static_cast<std::size_t>(fromIndex), size);
        std::string expected = Text(to);
        expected.replace(static_cast<std::size_t>(toIndex), size, std::string(taken.rbegin(), taken.rend()));
        ReverseBits(to.data(), toIndex, from.data(), fromIndex, count);
        ASSERT_EQ(Text(to), expected) << toIndex << ' ' << fromIndex << ' ' << count;
    });
}

} // namespace
} // namespace vantrel::test
