// From a point to a node.
#pragma once

#include "view/view.h"

namespace vantrel {

// The innermost visible box under a window point, the first in item order where boxes overlap; null outside `node`. (dx, dy) is added to layout
// space, usually the negated scroll position.
[[nodiscard]] Scdr* HitTestScdr(const View& view, Scdr& node, Point64 point, std::int64_t dx,
                                std::int64_t dy) noexcept;
// Whether every ancestor of rank >= 3 shows the plane that holds the node.
[[nodiscard]] bool IsNodeInShownPlanes(const Scdr& node) noexcept;

// The text area of a simple node in layout space: its box less the margin, one pixel less for a scalar. The "Calc" variant takes the box size as
// last formatted instead of the present one.
[[nodiscard]] Rect64 GetEditRectangle(std::int64_t margin, const Scdr& node) noexcept;
[[nodiscard]] Rect64 GetEditCalcRectangle(std::int64_t margin, const Scdr& node) noexcept;

} // namespace vantrel
