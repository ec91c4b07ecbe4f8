// The modal message loop of an edit, and the interrupt poll that pumps the same way.
#pragma once

#include "entry/edit_context.h"

namespace vantrel {

// Runs while the context's count of open frames is not 0.
void RunModalLoop(EditContext* context);

// After the edit: hands a WM_QUIT that arrived meanwhile on to the host's own loop.
void PassQuitToHost() noexcept;

// Whether a long operation should be abandoned. Cheap unless the 100-millisecond timer has fired; then it pumps all waiting messages.
std::int32_t IsInterruptOrClosePending(EditContext* context);

} // namespace vantrel
