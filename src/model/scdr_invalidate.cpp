#include "entry/trace.h"
#include "model/tree_walk.h"

namespace vantrel {
namespace {

void ClearChildOrigins(Scdr& parent, std::int64_t first, std::int64_t end) noexcept
{
    for (std::int64_t i = first; i < end; ++i) {
        if (Scdr* child = Children(parent)[i]) ClearFlags(*child, FlagOriginValid);
    }
}

// A wider item pushes the items right of it in every row, a higher one all rows below. The first axis is used as the length of a row,
// even where the rows of the array are longer or shorter.
void ClearEarlierOriginsOfMatrix(Scdr& parent, std::int64_t index) noexcept
{
    if (parent.Rank != 2 || parent.ElementCount == 0) return;
    const std::int64_t stride = parent.Shape[0];
    const std::int64_t place = index % stride;
    for (std::int64_t k = 0; k < index / stride; ++k)
        ClearChildOrigins(parent, k * stride + place, (k + 1) * stride);
}

} // namespace

void InvalidateAncestorsSizesAndLaterSiblingsOrigins(Scdr& node) noexcept
{
    TraceScope trace("scdr_invalidate.cpp", "InvalidateAncestorsSizesAndLaterSiblingsOrigins");
    for (Scdr* present = &node; present->parent != nullptr; present = present->parent) {
        Scdr& parent = *present->parent;
        ClearFlags(parent, FlagSizeValid | FlagOriginValid);
        const std::int64_t index = IndexInParent(*present);
        ClearEarlierOriginsOfMatrix(parent, index);
        ClearChildOrigins(parent, index + 1, ChildCount(parent));
    }
}

void InvalidateDescendentsOriginsAndSizes(Scdr& node) noexcept
{
    TraceScope trace("scdr_invalidate.cpp", "InvalidateDescendentsOriginsAndSizes");
    ForEachNode(node, [](Scdr& visited) {
        ClearFlags(visited, FlagSizeValid | FlagOriginValid);
        // The box is measured anew, so a size that the user gave it is gone.
        visited.records.flags = static_cast<std::uint8_t>(visited.records.flags & ~RecordsResizedByUser);
    });
}

void InvalidateRecordLengths(Scdr& node) noexcept
{
    TraceScope trace("scdr_invalidate.cpp", "InvalidateRecordLengths");
    ForEachNode(node, [](Scdr& visited) { ForgetRecordWidths(visited.records); });
}

void InvalidateScdrAndChildrensOrigins(Scdr& node) noexcept
{
    TraceScope trace("scdr_invalidate.cpp", "InvalidateScdrAndChildrensOrigins");
    ForEachNode(node, [](Scdr& visited) { ClearFlags(visited, FlagOriginValid); });
}

} // namespace vantrel
