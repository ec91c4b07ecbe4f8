// Layout after one box has changed: what does not move is not visited, so that typing in one cell of a million costs next to nothing.
#pragma once

#include "view/view.h"

namespace vantrel {

// Where a box stood, as the node itself says, and how large it was.
struct BoxGeometry {
    Point64 origin;
    Size64 size;
    bool valid; // both are what the layout found
};
[[nodiscard]] BoxGeometry GeometryOf(const Scdr& node) noexcept;

// A simple node has taken the place of one that had the geometry `before`. Measures it and moves what it pushes. False where a whole
// layout is needed; the node is then where it was, with no valid size.
[[nodiscard]] bool LayOutChangedBox(View& view, Scdr& node, const BoxGeometry& before);

// Measures a simple node anew, at whatever place it stands. 0 on success. (layout_sizes.cpp)
std::int32_t SizeBox(View& view, Scdr& node);

} // namespace vantrel
