// User options: small binary values in the current user's registry hive. Failures are silent: reading falls back to the default, writing
// loses the value.
#pragma once

#include <windows.h>

#include "entry/edit_context.h"

namespace vantrel {

// Registry text is kept as terminated UTF-16. An empty or null sub-key means the global options.
// 0 on success; 1 when the value is missing or its size differs from `size`.
std::int32_t ReadOption(const char16_t* subKey, const char16_t* name, void* buffer, DWORD size) noexcept;
void SaveOption(const char16_t* subKey, const char16_t* name, const void* data, DWORD size) noexcept;
bool ReadBooleanOption(const char16_t* name, bool defaultValue) noexcept;
void SaveBooleanOption(const char16_t* name, bool value) noexcept;

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
