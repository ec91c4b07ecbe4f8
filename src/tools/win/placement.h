// Where the editor's windows stood: each open one of the machine has a number, and under it a stored place.
#pragma once

#include <windows.h>

#include "entry/edit_context.h"

namespace vantrel {

// Counts a window among the open ones of the machine; its number names its placement until it is uncounted.
void CountOpenWindow(HWND window) noexcept;
void UncountOpenWindow(HWND window) noexcept;

// For counted windows.
void WindowPlacementSave(EditContext* context, HWND window) noexcept;
// Shows the window where it was, never hidden or minimised; shows it normally when nothing is stored.
void WindowPlacementRestore(EditContext* context, HWND window) noexcept;

// The number of open editor windows on the machine, shared by every process that loads the library; it numbers the stored placements.
extern volatile LONG g_openWindowCount;

} // namespace vantrel
