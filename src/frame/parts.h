// The parts of the frame that can have the keyboard, in the order in which F6 goes round.
#pragma once

#include <cstdint>

namespace vantrel {

enum class FramePart : std::int32_t { Array, FindBar, NameBox };

// The part after (or before) one; those that are not on show are left out. The array is always there.
[[nodiscard]] FramePart NextFramePart(FramePart from, bool backwards, bool findBarShown,
                                      bool nameBoxShown) noexcept;

} // namespace vantrel
