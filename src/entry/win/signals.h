// The host's signal handlers and floating-point state, put aside while the editor runs.
#pragma once

#include "entry/edit_context.h"

namespace vantrel {

// Resets the handlers of signals 2, 11, 15 and 21 to the default and keeps the old ones with the floating-point control word.
void SignalHandlersSave(SignalState& state) noexcept;
void SignalHandlersRestore(const SignalState& state) noexcept;

} // namespace vantrel
