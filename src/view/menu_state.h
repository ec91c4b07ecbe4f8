// Which commands the selection allows: the state of menus, tool bar and context menu.
#pragma once

#include "view/view.h"

namespace vantrel {

// Every command whose state follows the array, for bringing a menu up to date.
struct CommandList {
    const std::int32_t* ids;
    std::int32_t count;
};
[[nodiscard]] CommandList CommandsWithState() noexcept;

// True for commands that are not the view's. Without a tree all of the view's are disabled.
[[nodiscard]] bool IsCommandEnabled(const View& view, std::int32_t command);
// Whether the selection may be changed by the command at all: prototypes and what an adapter marks as its own may not. Weaker than the
// above: what it lets through is refused with a message of its own.
[[nodiscard]] bool IsChangeAllowed(const View& view, std::int32_t command) noexcept;

} // namespace vantrel
