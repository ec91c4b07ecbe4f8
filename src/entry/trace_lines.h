// The texts of the debug channel: how trace lines look and how a long text is cut into messages.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vantrel {

inline constexpr std::int64_t DebugMessageLimit = 128000; // UTF-16 units in one message

// The next message of a text and how far to go on after it. A line longer than the limit loses the two characters after the cut: the viewer has
// always been fed so.
struct DebugChunk {
    std::int64_t length;
    std::int64_t advance;
};
[[nodiscard]] DebugChunk NextDebugChunk(std::u16string_view rest) noexcept;

// The file name without its folder.
[[nodiscard]] const char* FileNameOf(const char* path) noexcept;

} // namespace vantrel
