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

} // namespace vantrel
