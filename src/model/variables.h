// Variables of the interpreter, by name, through the language environment.
#pragma once

#include "entry/names.h"
#include "model/scdr.h"

namespace vantrel {

// 1 when the name object holds a name that the host allows; a failed conversion makes it invalid.
[[nodiscard]] std::int32_t IsObjectValidName(EditContext* context, HostObject name) noexcept;
// The variable's value and the window's title, or null: ErrorCode 23 for an undefined name, 2 for anything but an uncoupled variable. The caller
// frees the value with the host's FreeObject.
[[nodiscard]] HostObject GetVariableValue(EditContext* context, HostObject name,
                                          char16_t (&title)[TitleSize]) noexcept;
// Assigns a tree to a variable. 1 when the host reported an error, ErrorCode 2 when the host cannot hold the array.
std::int32_t SaveVariable(EditContext* context, HostObject name, const Scdr& value) noexcept;
std::int32_t SaveVariableName(EditContext* context, const Scdr& value, const char16_t* name) noexcept;

} // namespace vantrel
