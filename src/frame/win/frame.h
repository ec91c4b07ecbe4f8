// The frame: the top-level window of one edit, with menus, status bar and the array view as its client.
#pragma once

#include <windows.h>

namespace vantrel {

// True on success. Registration also loads the carried font; unregistration releases it.
bool RegisterFrameClass();
void UnregisterFrameClass();

} // namespace vantrel
