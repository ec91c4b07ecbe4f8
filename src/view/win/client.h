// The array view's window.
#pragma once

#include <windows.h>

namespace vantrel {

bool RegisterClientClass();
void UnregisterClientClass(); // ends GDI+ as well

} // namespace vantrel
