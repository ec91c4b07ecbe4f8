// Real scroll bars for 64-bit scroll records: the window's own bars of the array view and of the cell editor.
#pragma once

#include <windows.h>

#include "tools/scroll.h"

namespace vantrel {

void SetScrollInfo64(HWND window, std::int32_t bar, std::int64_t maximum, std::int64_t position,
                     std::uint32_t page) noexcept;
[[nodiscard]] std::int64_t GetScrollPos64(HWND window, std::int32_t bar, std::uint32_t mask,
                                          std::int64_t maximum) noexcept;
void QmSetScrollInfo(HWND window, std::int32_t bar, ScrollInformation& information) noexcept;
void QmGetScrollInfo(HWND window, std::int32_t bar, ScrollInformation& information) noexcept;

// Makes the record drive the window's own bars.
void InitializeWindowsScrollbars(ScrollRecord& record, HWND window) noexcept;

// WM_HSCROLL / WM_VSCROLL. `code` is SB_...
void OnHscroll(ScrollRecord& record, std::int32_t code) noexcept;
void OnVscroll(ScrollRecord& record, std::int32_t code) noexcept;
// WM_MOUSEWHEEL: scrolls and answers true when it did. With Ctrl alone the window gets a font of another size instead.
bool OnMouseWheel(ScrollRecord& record, std::uint32_t keys, std::int32_t delta, std::int64_t characterWidth,
                  std::int64_t lineHeight) noexcept;
// -1 = a page.
[[nodiscard]] std::int32_t GetNumScrollLines() noexcept;

} // namespace vantrel
