// The cell edit window's class. The creation parameter of a window is the address of its view's EditView.
#pragma once

#include <windows.h>

namespace vantrel {

// Counted: the class goes with its last user. True on success.
bool RegisterEditClass();
void UnregisterEditClass();

} // namespace vantrel
