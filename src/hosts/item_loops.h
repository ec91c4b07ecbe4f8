// Loops over packed items, written so that compilers turn them into vector code: constant-length blocks, no aliasing, no
// early exit inside a block.
#pragma once

#include <cstdint>

namespace vantrel {

inline constexpr std::int64_t ItemsPerBlock = 64;

// to[i] = convert(from[i]). The two do not overlap.
template <typename From, typename To, typename Convert>
void ConvertItems(const From* __restrict from, To* __restrict to, std::int64_t count, Convert convert)
{
    std::int64_t i = 0;
    for (; i + ItemsPerBlock <= count; i += ItemsPerBlock) {
        for (std::int64_t k = 0; k < ItemsPerBlock; ++k)
            to[i + k] = convert(from[i + k]);
    }
    for (; i < count; ++i)
        to[i] = convert(from[i]);
}

// Whether `bits(item)` is 0 for every item; stops at the first block where it is not. `Bits` is an unsigned type.
template <typename Bits, typename Item, typename ToBits>
[[nodiscard]] bool NoItemHasBits(const Item* items, std::int64_t count, ToBits bits)
{
    std::int64_t i = 0;
    for (; i + ItemsPerBlock <= count; i += ItemsPerBlock) {
        Bits found = 0;
        for (std::int64_t k = 0; k < ItemsPerBlock; ++k)
            found = static_cast<Bits>(found | bits(items[i + k]));
        if (found != 0) return false;
    }
    Bits found = 0;
    for (; i < count; ++i)
        found = static_cast<Bits>(found | bits(items[i]));
    return found == 0;
}

// Packs `isSet(item)` into bits, item 0 in the most significant one; unused bits of the last byte are 0.
template <typename Item, typename IsSet>
void PackBits(const Item* items, std::uint8_t* bytes, std::int64_t count, IsSet isSet)
{
    const auto pack = [&](const Item* from, std::int64_t length) {
        unsigned byte = 0;
        for (std::int64_t k = 0; k < length; ++k)
            byte |= static_cast<unsigned>(isSet(from[k])) << (7 - k);
        return static_cast<std::uint8_t>(byte);
    };
    const std::int64_t whole = count / 8;
    for (std::int64_t i = 0; i < whole; ++i)
        bytes[i] = pack(items + i * 8, 8);
    if (count % 8 != 0) bytes[whole] = pack(items + whole * 8, count % 8);
}

} // namespace vantrel
