// Pick index: the text path of a node from the root, such as "(2 1) 3".
#pragma once

#include "view/view.h"

namespace vantrel {

// A new terminated string (free with FreeBytes); null with ErrorCode 9. `throughMaximize` false: a maximised node's place in the whole tree.
[[nodiscard]] char16_t* GetPickIndex(View& view, bool throughMaximize, const Scdr& node);
// The node that a pick index names, from the root down whatever is displayed. Throws a VTERROR_CODE where it names none.
[[nodiscard]] Scdr* FindPickIndex(View& view, const char16_t* text);
// Writes to the command log that the node of this name is made the selected one. A failed allocation loses the line.
void LogPickIndex(EditContext* context, const char16_t* text) noexcept;

} // namespace vantrel
