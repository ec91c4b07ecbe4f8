// The help files, which stand in the folder that the host names, else beside the library.
#pragma once

#include <windows.h>

#include <string>

#include "entry/edit_context.h"

namespace vantrel {

// Where the host's help file should be.
[[nodiscard]] std::wstring HelpPath(EditContext* context);
// Opens the host's help file at a topic (0: at its start). Where the file is missing a message box says which, and the editor goes on.
void ShowHelpPage(HWND owner, EditContext* context, std::uint32_t topic);

} // namespace vantrel
