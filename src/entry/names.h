// Variable names and window titles, by the rules of the host's language environment.
#pragma once

#include "entry/edit_context.h"

namespace vantrel {

inline constexpr std::int64_t TitleSize = 256; // units of a title buffer, terminator included

// 1 when the text, less leading and trailing blanks, is a name that the host allows; else 0. The text is terminated.
[[nodiscard]] std::int32_t IsUnicodeValidName(const char16_t* text, const LangEnv& environment) noexcept;
// The same for `length` units, which may hold no terminator.
[[nodiscard]] std::int32_t IsValidName(const char16_t* text, std::int64_t length,
                                       const LangEnv& environment) noexcept;

// The title of an edit by value: the caller's own as it stands, else one made for the dialect.
void GetArrayTitle(const EditContext* context, char16_t (&title)[TitleSize]) noexcept;
// The title of an edit by name.
void MakeVariableTitle(const EditContext* context, const char16_t* name, std::int64_t length,
                       char16_t (&title)[TitleSize]) noexcept;

// The dialect's name in registry keys: "APL2", "APLX", "Dyalog" or "MATLAB".
[[nodiscard]] const char16_t* DialectName(Dialect dialect) noexcept;

} // namespace vantrel
