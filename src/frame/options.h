// The frame's options: their bits, their commands, their names in the registry and their defaults.
#pragma once

#include <cstdint>
#include <span>

namespace vantrel {

enum FrameOption : std::uint32_t {
    FrameConfirmClose = 1,
    FrameFindShown = 2,
    FrameSizeOnOpen = 4,
    FrameSmallIcons = 8,
    FrameStatusBar = 16,
    FrameToolBar = 32,
    FrameAlwaysOnTop = 64,
};

struct FrameOptionEntry {
    FrameOption bit;
    const char16_t* name; // of the registry value, 4 bytes holding 0 or 1
    bool defaultValue;
    std::int32_t command; // whose menu item carries the check mark; 0 for none
};

// In the order in which they are read and written.
[[nodiscard]] std::span<const FrameOptionEntry> FrameOptions() noexcept;
// Null for a command that is no option of the frame.
[[nodiscard]] const FrameOptionEntry* FindFrameOption(std::int32_t command) noexcept;

} // namespace vantrel
