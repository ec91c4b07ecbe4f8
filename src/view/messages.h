// Numbers by which the array view and the frame talk. Fixed: they are part of the outside interface.
#pragma once

#include <cstdint>

namespace vantrel {

inline constexpr char16_t ClientClassName[] = u"quillmoor vantrel client class";

inline constexpr std::int32_t ClientId = 0x8008;
inline constexpr std::int32_t StatusBarId = 32788;
inline constexpr std::int32_t NameBoxId = 32789;
inline constexpr std::int32_t ScalarEditId = 32791;
inline constexpr std::int32_t SpareEditId = 32792;
inline constexpr std::int32_t ArrayEditId = 32793;

// Private messages of the array view.
inline constexpr std::uint32_t ViewConvertObject = 32969;
inline constexpr std::uint32_t ViewDisableMenuItems = 32970;
inline constexpr std::uint32_t ViewFind = 32971;
inline constexpr std::uint32_t ViewGetFindOptions = 32972;
inline constexpr std::uint32_t ViewGetModified = 32973;
inline constexpr std::uint32_t ViewGetOption = 32974;
inline constexpr std::uint32_t ViewGetPickIndex = 32975;
inline constexpr std::uint32_t ViewGetPreferredSize = 32976; // lParam: address of a SIZE
inline constexpr std::uint32_t ViewGetScdr = 32977;
inline constexpr std::uint32_t ViewGetSelectedScdr = 32978;
inline constexpr std::uint32_t ViewSetModified = 32979;
inline constexpr std::uint32_t ViewSetOption = 32980;
inline constexpr std::uint32_t ViewSetPickIndex = 32981;
inline constexpr std::uint32_t ViewSetScdr = 32984;
inline constexpr std::uint32_t ViewPrintScdr = 32985;
inline constexpr std::uint32_t ViewGetBusy = 32986;
inline constexpr std::uint32_t ViewSetObject = 32987;

// What the view asks of its frame: the size at which the whole array is seen.
inline constexpr std::uint32_t SizeFrameToDefinition = 0x8069;

// WM_NOTIFY codes from the view to the frame.
inline constexpr std::int32_t ViewNotifyState = 1; // selection or state changed
inline constexpr std::int32_t ViewNotifyFont = 2;
inline constexpr std::int32_t ViewNotifyError = 5; // show the language environment's error
inline constexpr std::int32_t ViewNotifyMenu = 6;  // menu and tool-bar state changed
inline constexpr std::int32_t ViewNotifySetFocus = -7;

// Option ids double as menu commands.
enum ViewOption : std::int32_t {
    OptionSmallMargins = 4308,
    Option3dEdges = 4309,
    OptionWholeCell = 4310,
    OptionOvertype = 4311,
    OptionRejectBadData = 4312,
    OptionLineNumbers = 4313,
    OptionRuler = 4314,
    OptionRankOneScrollBars = 4315,
    OptionEnableUndo = 4316,
};

} // namespace vantrel
