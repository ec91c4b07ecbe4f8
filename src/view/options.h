// The array view's options: one row each, from which they are read, saved, shown in the menu and changed.
#pragma once

#include "view/messages.h"
#include "view/view.h"

namespace vantrel {

struct ViewOptionRow {
    ViewOption id;
    const char16_t* valueName; // in the registry
    bool defaultValue;
    bool& (*field)(View& view);
};

// All options, in the order in which they are read.
inline constexpr std::int32_t ViewOptionCount = 9;
[[nodiscard]] const ViewOptionRow* ViewOptionTable() noexcept;
// Null for an unknown id.
[[nodiscard]] const ViewOptionRow* FindViewOption(std::int32_t id) noexcept;

// What a change asks of the presentation; several bits may be set.
enum ViewOptionEffect : std::uint32_t {
    OptionEffectNone = 0,
    OptionEffectRepaint = 0x01,
    OptionEffectLayOutAgain = 0x02, // LayOutAgain(view, false)
    OptionEffectDrawCaret = 0x04,   // EditMessageDrawCaret to the active editor
    OptionEffectLineNumbers = 0x08, // EditMessageLineNumbers with the new value
    OptionEffectRuler = 0x10,       // EditMessageRuler with the new value
    OptionEffectScrollbars = 0x20,  // EditMessageScrollbars
    OptionEffectUndoMenu = 0x40,    // bring the undo items of the menu up to date
    OptionEffectEmptyUndo = 0x80,   // empty both undo stacks
};

// False for an unknown id.
[[nodiscard]] bool GetViewOption(View& view, std::int32_t id) noexcept;
// Stores the value and answers what must follow. An unknown id and a value that is there already change nothing.
[[nodiscard]] std::uint32_t SetViewOption(View& view, std::int32_t id, bool value) noexcept;
// Gives the measures that depend on options their values; for use once the options are read.
void ApplyViewOptions(View& view) noexcept;

} // namespace vantrel
