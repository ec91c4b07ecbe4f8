// The twelve primitive functions that the library computes itself, for hosts without an interpreter's help and those that have it.
#pragma once

#include "hosts/host.h"
#include "model/scdr.h"

namespace vantrel {

// `leftArgument` is the axis order of a transposition, or null.
using LocalRoutine = ScdrPtr (*)(EditContext* context, const Scdr& argument, const Scdr* leftArgument);

// Null for a command that is none of the twelve.
[[nodiscard]] LocalRoutine FindLocalRoutine(std::int32_t command) noexcept;

// The operation of a host that asks nobody else: clears ErrorCode and the message; another command, or no argument, is SystemError.
[[nodiscard]] Scdr* CallLocalPrimitive(EditContext* context, std::int32_t command, const Scdr* argument,
                                       const Scdr* leftArgument);

} // namespace vantrel
