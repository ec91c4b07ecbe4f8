// Layout: from the tree to boxes. Formats simple arrays into records, measures and places every box.
//
// Results: 0 on success, nonzero when interrupted or failed (an error is then on show or in ErrorCode); the tree keeps what was made so far
// and its flags tell what is valid. Nothing here throws.
//
// Whoever changes a node runs the matching invalidation of model/scdr.h, then CalculateScdrSizes:
//   InvalidateAncestorsSizesAndLaterSiblingsOrigins   after the node's own size may have changed
//   InvalidateScdrAndChildrensOrigins                 after the node moved
//   InvalidateDescendentsOriginsAndSizes              after a change of margins; with InvalidateRecordLengths after a change of font
#pragma once

#include "view/view.h"

namespace vantrel {

// Gives every simple array under `root` its records.
std::int32_t FormatScdr(View& view, Scdr& root);
// Sizes and places the displayed top node and everything under it.
std::int32_t CalculateScdrSizes(View& view);

// Minimise, maximise and restore act on the selected node.
std::int32_t MinimizeScdr(View& view);
std::int32_t MaximizeScdr(View& view);
std::int32_t RestoreScdr(View& view);
// Makes a node reachable for selection: undoes a maximise that hides it and minimised ancestors.
std::int32_t RestoreAncestors(View& view, Scdr& node);
// Gives boxes that the user resized their formatted size back, in the whole subtree.
void ResetSize(View& view, Scdr& node);
// Makes every plane that contains the node the current one of its array.
void SelectPlane(View& view, Scdr& node);
// Makes a plane of a node of rank >= 3 the shown one. 0 <= plane < PlaneCount(node).
void SetCurrentPlane(Scdr& node, std::int64_t plane) noexcept;

void SetScrollBarsDataSizeFromScdr(View& view);
// `page` is the room for text inside the box. A box whose text fits gets no scroll record of its own (`boxScroll` stays null, which reads as
// position 0): a million small boxes must not carry one each.
void SetScrollBarsFromRecords(View& view, Scdr& node, const Size64& page);

// Whether room for small scroll bars is kept in the node's box.
[[nodiscard]] bool HasBoxScrollBars(const View& view, const Scdr& node) noexcept;

// Records of the shown plane of a simple node, and the first of them. Never beyond the records that exist.
[[nodiscard]] std::int64_t ShownRows(const Scdr& node) noexcept;
[[nodiscard]] std::int64_t FirstShownRow(const Scdr& node) noexcept;

// A box in layout space, margins included.
[[nodiscard]] Rect64 NodeRect(const Scdr& node) noexcept;

// The children of the current plane that may meet a range of layout space, in item order: first .. last (exclusive) of rows and columns. Origins grow
// monotonically, so the search is binary and painting and hit testing touch only what is visible. For one row of boxes `rows` is 1.
struct VisibleItems {
    std::int64_t planeStart; // index of the plane's first child
    std::int64_t columns;    // children per row
    std::int64_t firstRow, endRow;
    std::int64_t firstColumn, endColumn;
};
[[nodiscard]] VisibleItems FindVisibleItems(const View& view, const Scdr& node, const Rect64& range) noexcept;

} // namespace vantrel
