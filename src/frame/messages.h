// Numbers by which the frame is driven. Fixed: they are part of the outside interface.
#pragma once

#include <cstdint>

#include "view/messages.h"

namespace vantrel {

inline constexpr char16_t FrameClassName[] = u"quillmoor vantrel frame class";

// Children besides those that the view's header names.
inline constexpr std::int32_t ToolBarId = 32787;
inline constexpr std::int32_t FindBarId = 32786;
inline constexpr std::int32_t InformationId = 32785;

// Private messages of the frame.
inline constexpr std::uint32_t FrameGetSizeOnOpen = 0x8065; // is "Size to definition on open" set
inline constexpr std::uint32_t FramePlaceNameBox = 0x8066;  // wParam: the status bar's part to lie over
inline constexpr std::uint32_t FrameSetName = 0x8068;       // wParam: FrameNameKind, lParam: the host object
inline constexpr std::uint32_t FrameSizeToDefinition = SizeFrameToDefinition;
inline constexpr std::uint32_t FrameIsClosing = 0x806B;

enum FrameNameKind : std::uint32_t {
    FrameNameValue = 0,    // the array handed over
    FrameNameVariable = 1, // the variable's name
};

} // namespace vantrel
