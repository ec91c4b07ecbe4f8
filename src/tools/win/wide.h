// The one border between UTF-16 text of the logic half and the platform's wide text.
#pragma once

#include <string>

namespace vantrel {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "Windows wide text is UTF-16");

inline const wchar_t* AsWide(const char16_t* text) noexcept
{
    return reinterpret_cast<const wchar_t*>(text);
}
inline wchar_t* AsWide(char16_t* text) noexcept
{
    return reinterpret_cast<wchar_t*>(text);
}
inline const char16_t* AsUtf16(const wchar_t* text) noexcept
{
    return reinterpret_cast<const char16_t*>(text);
}
inline char16_t* AsUtf16(wchar_t* text) noexcept
{
    return reinterpret_cast<char16_t*>(text);
}

} // namespace vantrel
