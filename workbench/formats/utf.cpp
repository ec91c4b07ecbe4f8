#include "workbench/formats/utf.h"

#include "workbench/formats/document.h"

namespace vantrel::workbench {
namespace {

struct Lead {
    int following;
    char32_t bits;
    char32_t least; // below it the form is needlessly long
};

// following < 0: no lead byte.
Lead ClassifyLead(unsigned char byte)
{
    if (byte < 0x80) return {0, byte, 0};
    if (byte >= 0xC2 && byte < 0xE0) return {1, byte & 31u, 0x80};
    if (byte >= 0xE0 && byte < 0xF0) return {2, byte & 15u, 0x800};
    if (byte >= 0xF0 && byte < 0xF5) return {3, byte & 7u, 0x10000};
    return {-1, 0, 0};
}

// The code point at `index`, which moves behind it; false where there is none.
bool DecodeAt(std::string_view bytes, std::size_t& index, char32_t& c)
{
    const Lead lead = ClassifyLead(static_cast<unsigned char>(bytes[index]));
    if (lead.following < 0 || bytes.size() - index <= static_cast<std::size_t>(lead.following)) return false;
    c = lead.bits;
    for (int k = 1; k <= lead.following; ++k) {
        const auto byte = static_cast<unsigned char>(bytes[index + static_cast<std::size_t>(k)]);
        if ((byte & 0xC0) != 0x80) return false;
        c = c << 6 | (byte & 63u);
    }
    if (c < lead.least || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000)) return false;
    index += static_cast<std::size_t>(lead.following) + 1;
    return true;
}

} // namespace

std::u16string Utf16FromUtf8(std::string_view bytes)
{
    std::u16string text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        char32_t c = 0;
        const std::size_t at = i;
        if (!DecodeAt(bytes, i, c)) throw FormatError("byte " + std::to_string(at) + " is not UTF-8");
        AppendUtf16(text, c);
    }
    return text;
}

void AppendUtf16(std::u16string& out, char32_t c)
{
    if (c < 0x10000) {
        out += static_cast<char16_t>(c);
    } else {
        out += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
        out += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
    }
}

void AppendUtf8(std::string& out, char32_t c)
{
    const auto put = [&out](char32_t byte) { out += static_cast<char>(byte); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0 | c >> 6);
        put(0x80 | (c & 63));
    } else if (c < 0x10000) {
        put(0xE0 | c >> 12);
        put(0x80 | (c >> 6 & 63));
        put(0x80 | (c & 63));
    } else {
        put(0xF0 | c >> 18);
        put(0x80 | (c >> 12 & 63));
        put(0x80 | (c >> 6 & 63));
        put(0x80 | (c & 63));
    }
}

std::u16string WithLineEndsOf(std::u16string_view text, std::u16string_view original)
{
    if (original.find(u"\r\n") != std::u16string_view::npos) return std::u16string(text);
    std::u16string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') continue;
        out += text[i];
    }
    return out;
}

bool IsPairAt(std::u16string_view text, std::size_t index)
{
    return index + 1 < text.size() && text[index] >= 0xD800 && text[index] < 0xDC00 &&
           text[index + 1] >= 0xDC00 && text[index + 1] < 0xE000;
}

char32_t PairAt(std::u16string_view text, std::size_t index)
{
    return 0x10000 + ((text[index] - 0xD800u) << 10 | (text[index + 1] - 0xDC00u));
}

std::string Utf8FromUtf16(std::u16string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsPairAt(text, i))
            AppendUtf8(out, PairAt(text, i++));
        else
            AppendUtf8(out, text[i]);
    }
    return out;
}

} // namespace vantrel::workbench
