#pragma once

#include <string>
#include <string_view>

// Texts between files (UTF-8) and arrays (UTF-16).
namespace vantrel::workbench {

// Throws FormatError, with the offset, where the bytes are no UTF-8.
std::u16string Utf16FromUtf8(std::string_view bytes);
// A surrogate without its partner becomes the three bytes its number would have.
std::string Utf8FromUtf16(std::u16string_view text);
// Appends one code point.
void AppendUtf8(std::string& out, char32_t c);
void AppendUtf16(std::u16string& out, char32_t c);

// The editor puts CR LF between the lines of a text that it has cut at line feeds; a text that used bare line feeds
// gets them back.
std::u16string WithLineEndsOf(std::u16string_view text, std::u16string_view original);

// A surrogate pair at `index`; the second unit is at index + 1.
bool IsPairAt(std::u16string_view text, std::size_t index);
char32_t PairAt(std::u16string_view text, std::size_t index);

} // namespace vantrel::workbench
