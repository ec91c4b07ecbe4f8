#include "entry/trace_lines.h"

#include <algorithm>

namespace vantrel {

DebugChunk NextDebugChunk(std::u16string_view rest) noexcept
{
    const std::size_t lineEnd = rest.find(u"\r\n");
    const bool endsLine = lineEnd != std::u16string_view::npos;
    const auto line = static_cast<std::int64_t>(endsLine ? lineEnd : rest.size());
    const std::int64_t length = std::min(line, DebugMessageLimit);
    return {length, length + (endsLine ? 2 : 0)};
}

const char* FileNameOf(const char* path) noexcept
{
    const char* name = path;
    for (const char* at = path; *at != 0; ++at) {
        if (*at == '/' || *at == '\\') name = at + 1;
    }
    return name;
}

} // namespace vantrel
