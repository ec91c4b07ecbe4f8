// The variable that the user points at.
#pragma once

#include "view/view.h"

namespace vantrel {

// The text of the selected character array that may be a variable's name: what is selected in it, or else the line of the caret. Blanks
// around it are left out. Empty for other arrays. Throws OutOfMemory.
[[nodiscard]] Text NameAtCaret(const View& view);
// Opens a window on the variable of that name. What is wrong with it is shown.
void OpenNamedObject(View& view);

} // namespace vantrel
