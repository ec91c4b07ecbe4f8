// Numbers by which the cell edit window is driven from outside. Fixed: other programs of the family use them.
#pragma once

#include <cstdint>

namespace vantrel {

inline constexpr char16_t EditClassName[] = u"quillmoor Vantrel edit control class";

// Private messages.
inline constexpr std::uint32_t EditMessageDrawCaret = 33069;
inline constexpr std::uint32_t EditMessageFreeRedo = 33070;
inline constexpr std::uint32_t EditMessageMoveCaret =
    33071; // wParam: address of two int64 deltas (column, line)
inline constexpr std::uint32_t EditMessageSelectAll = 33072;
inline constexpr std::uint32_t EditMessageNewPlane = 33073;
inline constexpr std::uint32_t EditMessageUseScdr = 33074; // wParam: nonzero forces re-initialisation
inline constexpr std::uint32_t EditMessageLineNumbers = 33075;
inline constexpr std::uint32_t EditMessageRuler = 33076;
inline constexpr std::uint32_t EditMessageScrollbars = 33077;

// WM_NOTIFY codes to the array view.
inline constexpr std::int32_t EditNotifyModified = 1;
inline constexpr std::int32_t EditNotifyResized = 2;
inline constexpr std::int32_t EditNotifyShowPlane = 3;  // an EditPlaneNotification: its plane is to be shown
inline constexpr std::int32_t EditNotifyPlaneLines = 7; // the line count of one plane may not change
inline constexpr std::int32_t EditNotifyOutOfMemory = -1;
inline constexpr std::int32_t EditNotifySetFocus = -7;

} // namespace vantrel
