#include "tools/utf8.h"

namespace vantrel {
namespace {

bool IsPair(const char16_t* text) noexcept
{
    return (text[0] & 0xFC00) == 0xD800 && (text[1] & 0xFC00) == 0xDC00;
}

void AppendUtf8(std::string& line, char32_t c)
{
    const auto tail = [&](int shift) { line += static_cast<char>(0x80 | ((c >> shift) & 0x3F)); };
    if (c < 0x80) {
        line += static_cast<char>(c);
        return;
    }
    if (c < 0x800) {
        line += static_cast<char>(0xC0 | (c >> 6));
    } else {
        if (c < 0x10000) {
            line += static_cast<char>(0xE0 | (c >> 12));
        } else {
            line += static_cast<char>(0xF0 | (c >> 18));
            tail(12);
        }
        tail(6);
    }
    tail(0);
}

} // namespace

std::string Utf8Of(const char16_t* text)
{
    std::string line;
    for (; *text != u'\0'; ++text) {
        if (IsPair(text)) {
            AppendUtf8(line, 0x10000 + ((char32_t{text[0]} & 0x3FF) << 10) + (char32_t{text[1]} & 0x3FF));
            ++text;
        } else {
            AppendUtf8(line, *text);
        }
    }
    return line;
}

} // namespace vantrel
