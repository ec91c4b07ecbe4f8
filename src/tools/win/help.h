// The help files, which stand beside the library.
#pragma once

#include <windows.h>

#include "entry/edit_context.h"

namespace vantrel {

// Opens the host's help file at a topic (0: at its start). Where the file is missing a message box says which, and the editor goes on.
void ShowHelpPage(HWND owner, const EditContext* context, std::uint32_t topic);

} // namespace vantrel
