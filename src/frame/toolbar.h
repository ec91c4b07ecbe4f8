// The tool bar's buttons: which, in which order, with what picture or text.
#pragma once

#include <cstdint>
#include <span>

#include "entry/lang_env.h"

namespace vantrel {

inline constexpr std::int32_t NoPicture = -1;

struct ToolButton {
    std::int32_t command;  // 0: a separator
    std::int32_t picture;  // index in the picture strip, NoPicture for a button with a label
    std::int32_t tip;      // string id
    const char16_t* label; // null for a button with a picture
};

// All 41 entries, separators included.
[[nodiscard]] std::span<const ToolButton> ToolButtons() noexcept;
// Buttons of actions that the host cannot compute, or for which it has no name, are taken away again; the menu keeps their commands.
[[nodiscard]] bool IsToolButtonRemoved(Dialect dialect, std::int32_t command) noexcept;

// The largest drawn size that is not above the wanted one at a resolution; the smallest where all are.
[[nodiscard]] std::int32_t ToolPictureSize(bool small, std::int32_t dotsPerInch) noexcept;

} // namespace vantrel
