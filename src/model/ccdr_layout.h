// Where the fields of an image block stand, counted from the block's first byte, and how numbers are stored.
//
// Version 1 starts with a magic word and its version. Version 0 is the same without these 8 bytes; it is known in two forms, with rank
// and flags directly behind a type of 32 bits or behind one of 64.
#pragma once

#include <bit>
#include <cstring>

#include "model/scdr.h"

namespace vantrel {

static_assert(std::endian::native == std::endian::little,
              "images are little-endian and copied as they stand");

inline constexpr std::uint32_t CcdrMagic = 0x52444343; // "CCDR"
inline constexpr std::uint32_t CcdrVersion = 1;

inline constexpr std::int64_t CcdrHeaderSize = 48; // the shape follows
inline constexpr std::int64_t CcdrOldHeaderSize = 40;
inline constexpr std::int64_t CcdrVersionAt = 4;
// Counted from the end of the header, the same in both versions.
inline constexpr std::int64_t CcdrSizeAt = -32;
inline constexpr std::int64_t CcdrCountAt = -24;
inline constexpr std::int64_t CcdrTypeAt = -16;
inline constexpr std::int64_t CcdrRankAt = -12;
inline constexpr std::int64_t CcdrFlagsAt = -8;
// The old form with a type of 64 bits.
inline constexpr std::int64_t CcdrOldWideRankAt = -8;
inline constexpr std::int64_t CcdrOldWideFlagsAt = -4;

enum CcdrFlag : std::uint8_t {
    CcdrFlagStructure = 0x01,
    CcdrFlagKeptSize = 0x02,
};

// Bytes of the payload: decimal data is never part of an image.
[[nodiscard]] inline std::size_t CcdrPayloadSize(std::uint32_t type, std::int64_t count)
{
    return type == TypeDecimal ? 0 : DataSize(type, count);
}

template <typename T> [[nodiscard]] T LoadNumber(const std::uint8_t* at) noexcept
{
    T value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

template <typename T> void StoreNumber(std::uint8_t* at, T value) noexcept
{
    std::memcpy(at, &value, sizeof value);
}

} // namespace vantrel
