#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// Where the fields of an image's block stand (version 1; version 0 lacks the first eight bytes).
namespace vantrel::workbench {

namespace CcdrLayout {
inline constexpr std::string_view magic = "CCDR";
inline constexpr std::size_t magicBytes = 8; // magic and version
inline constexpr std::size_t version = 4;
inline constexpr std::size_t size = 16;
inline constexpr std::size_t count = 24;
inline constexpr std::size_t type = 32;
inline constexpr std::size_t rank = 36;
inline constexpr std::size_t flags = 40;
inline constexpr std::size_t shape = 48;
} // namespace CcdrLayout

namespace CcdrType {
inline constexpr std::uint32_t Nested = 0;
inline constexpr std::uint32_t Character = 11;
inline constexpr std::uint32_t Boolean = 21;
inline constexpr std::uint32_t Integer = 22;
inline constexpr std::uint32_t Real = 23;
inline constexpr std::uint32_t Complex = 24;
inline constexpr std::uint32_t Decimal = 25;
} // namespace CcdrType

} // namespace vantrel::workbench
