#include <algorithm>

#include "entry/trace.h"
#include "view/item_shift.h"
#include "view/layout.h"

namespace vantrel {
namespace {

struct Span {
    std::int64_t first;
    std::int64_t end;
};

// Of boxes 0 .. count - 1 in a line, whose starts and ends both grow, those that meet low .. high.
template <typename Start, typename End>
Span FindSpan(std::int64_t count, std::int64_t low, std::int64_t high, Start start, End end) noexcept
{
    const auto partition = [](std::int64_t first, std::int64_t last, auto before) {
        while (first < last) {
            const std::int64_t middle = first + (last - first) / 2;
            if (before(middle))
                first = middle + 1;
            else
                last = middle;
        }
        return first;
    };
    const std::int64_t first = partition(0, count, [&](std::int64_t i) { return end(i) <= low; });
    return {first, partition(first, count, [&](std::int64_t i) { return start(i) < high; })};
}

VisibleItems FindInRow(const Scdr& node, const Rect64& range) noexcept
{
    const ItemPlaces places = PlacesOfItems(node);
    const std::int64_t count = ChildCount(node);
    const auto left = [&](std::int64_t i) { return ItemLeft(places, i, i); };
    const Span columns = FindSpan(count, range.left, range.right, left,
                                  [&](std::int64_t i) { return left(i) + places.items[i]->width; });
    return {0, count, 0, 1, columns.first, columns.end};
}

VisibleItems FindInGrid(const Scdr& node, const Rect64& range) noexcept
{
    const std::int64_t rows = Rows(node);
    const std::int64_t columns = Columns(node);
    const std::int64_t planeStart =
        std::min(CurrentPlane(node) * rows * columns, node.ElementCount - rows * columns);
    if (node.extra == nullptr || node.extra->rowHeights == nullptr || node.extra->columnWidths == nullptr) {
        return {planeStart, columns, 0, rows, 0, columns}; // not laid out yet: anything may be visible
    }
    const ItemPlaces places = PlacesOfItems(node);
    const std::int64_t* heights = node.extra->rowHeights;
    const std::int64_t* widths = node.extra->columnWidths;
    const auto top = [&](std::int64_t row) { return ItemTop(places, planeStart + row * columns, row); };
    const auto left = [&](std::int64_t column) { return ItemLeft(places, planeStart + column, column); };
    const Span shownRows = FindSpan(rows, range.top, range.bottom, top,
                                    [&](std::int64_t row) { return top(row) + heights[row]; });
    const Span shownColumns = FindSpan(columns, range.left, range.right, left,
                                       [&](std::int64_t column) { return left(column) + widths[column]; });
    return {planeStart, columns, shownRows.first, shownRows.end, shownColumns.first, shownColumns.end};
}

} // namespace

Rect64 NodeRect(const Scdr& node) noexcept
{
    const Point64 origin = OriginOf(node);
    return {origin.x, origin.y, origin.x + node.width, origin.y + node.height};
}

VisibleItems FindVisibleItems(const View&, const Scdr& node, const Rect64& range) noexcept
{
    TraceScope trace("visible_items.cpp", "FindVisibleItems");
    return node.Rank < 2 || node.ElementCount == 0 ? FindInRow(node, range) : FindInGrid(node, range);
}

} // namespace vantrel
