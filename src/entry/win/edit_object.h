// The adapters' single entry into the editor.
#pragma once

#include <windows.h>

#include "entry/edit_context.h"

namespace vantrel {

// Edits a value, or the variable that `object` names, in a modal window. Returns the host object to hand back, or null. An error is
// raised through SignalHostError before it returns; no exception leaves.
HostObject EditObject(EditContext* context, HostObject object, bool byName) noexcept;

// A frame window on a value, or on the variable `name` (null by value); null with ErrorCode 8.
HWND CreateFrame(EditContext* context, const char16_t* title, HostObject name, HostObject value,
                 DWORD extendedStyle);

// A further frame on the variable that `name` names, inside the same modal loop. Takes `name` over: it is freed here on failure and, like
// the variable's value, at the end of the run otherwise, for the frame reverts to the one and saves to the other. 0 when the frame is
// there; else ErrorCode says why, for the caller to show.
std::int32_t OpenVariable(EditContext* context, HostObject name);

} // namespace vantrel
