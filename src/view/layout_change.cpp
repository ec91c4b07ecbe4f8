#include "view/layout_change.h"

#include <algorithm>

#include "entry/trace.h"
#include "model/tree_walk.h"

namespace vantrel {
namespace {

constexpr std::uint8_t ValidFlags = FlagSizeValid | FlagOriginValid;

bool IsValid(const Scdr& node) noexcept
{
    return (node.Flags & ValidFlags) == ValidFlags;
}

bool AreAncestorsValid(const Scdr& node) noexcept
{
    for (const Scdr* ancestor = node.parent; ancestor != nullptr; ancestor = ancestor->parent) {
        if (!IsValid(*ancestor)) return false;
        const bool isGrid = ancestor->Rank >= 2 && ancestor->ElementCount > 0;
        if (isGrid && (ancestor->extra == nullptr || ancestor->extra->rowHeights == nullptr ||
                       ancestor->extra->columnWidths == nullptr))
            return false;
        if ((ancestor->Flags & FlagMinimized) != 0) return false;
    }
    return true;
}

void Shift(Scdr& node, std::int64_t dx, std::int64_t dy) noexcept
{
    if (IsSimple(node)) {
        node.originX += dx;
        node.originY += dy;
        return;
    }
    ForEachNode(node, [&](Scdr& moved) {
        moved.originX += dx;
        moved.originY += dy;
    });
}

std::int64_t Tallest(const Scdr& row) noexcept
{
    std::int64_t height = 0;
    for (std::int64_t i = 0; i < ChildCount(row); ++i)
        height = std::max(height, Children(row)[i]->height);
    return height;
}

// What is around the items of a row: edges and margins, above and below.
std::int64_t HeightAround(const View& view) noexcept
{
    return 2 * view.metrics.edge.height + 2 * view.metrics.margin;
}

void FitRow(const View& view, Scdr& row, const Scdr& item, const Size64& before) noexcept
{
    const std::int64_t wider = item.width - before.width;
    if (wider != 0) {
        const std::int64_t count = ChildCount(row);
        for (std::int64_t i = IndexInParent(item) + 1; i < count; ++i)
            Shift(*Children(row)[i], wider, 0);
    }
    row.width += wider;
    const std::int64_t room = row.height - HeightAround(view);
    if (item.height >= room) {
        row.height = item.height + HeightAround(view);
    } else if (before.height == room) {
        row.height = Tallest(row) + HeightAround(view); // the tallest of all has shrunk
    }
}

struct GridPlace {
    std::int64_t rows;
    std::int64_t columns;
    std::int64_t row;
    std::int64_t column;
};

GridPlace PlaceInGrid(const Scdr& grid, const Scdr& item) noexcept
{
    const std::int64_t rows = std::max<std::int64_t>(Rows(grid), 1);
    const std::int64_t columns = std::max<std::int64_t>(Columns(grid), 1);
    const std::int64_t index = IndexInParent(item) % (rows * columns);
    return {rows, columns, index / columns, index % columns};
}

std::int64_t WidestInColumn(const Scdr& grid, const GridPlace& place) noexcept
{
    std::int64_t width = 0;
    for (std::int64_t i = place.column; i < grid.ElementCount; i += place.columns)
        width = std::max(width, Children(grid)[i]->width);
    return width;
}

std::int64_t TallestInRow(const Scdr& grid, const GridPlace& place) noexcept
{
    std::int64_t height = 0;
    for (std::int64_t first = place.row * place.columns; first < grid.ElementCount;
         first += place.rows * place.columns) {
        for (std::int64_t column = 0; column < place.columns; ++column)
            height = std::max(height, Children(grid)[first + column]->height);
    }
    return height;
}

void ShiftColumnsBehind(Scdr& grid, const GridPlace& place, std::int64_t dx) noexcept
{
    for (std::int64_t first = 0; first < grid.ElementCount; first += place.columns) {
        for (std::int64_t column = place.column + 1; column < place.columns; ++column)
            Shift(*Children(grid)[first + column], dx, 0);
    }
}

void ShiftRowsBelow(Scdr& grid, const GridPlace& place, std::int64_t dy) noexcept
{
    const std::int64_t planeSize = place.rows * place.columns;
    for (std::int64_t plane = 0; plane < grid.ElementCount; plane += planeSize) {
        for (std::int64_t i = (place.row + 1) * place.columns; i < planeSize; ++i)
            Shift(*Children(grid)[plane + i], 0, dy);
    }
}

void FitGrid(Scdr& grid, const Scdr& item, const Size64& before) noexcept
{
    const GridPlace place = PlaceInGrid(grid, item);
    std::int64_t& width = grid.extra->columnWidths[place.column];
    std::int64_t& height = grid.extra->rowHeights[place.row];
    const Size64 old{width, height};
    if (item.width >= width) {
        width = item.width;
    } else if (before.width == width) {
        width = WidestInColumn(grid, place);
    }
    if (item.height >= height) {
        height = item.height;
    } else if (before.height == height) {
        height = TallestInRow(grid, place);
    }
    if (width != old.width) ShiftColumnsBehind(grid, place, width - old.width);
    if (height != old.height) ShiftRowsBelow(grid, place, height - old.height);
    grid.width += width - old.width;
    grid.height += height - old.height;
}

} // namespace

BoxGeometry GeometryOf(const Scdr& node) noexcept
{
    return {{node.originX, node.originY}, {node.width, node.height}, IsValid(node)};
}

bool LayOutChangedBox(View& view, Scdr& node, const BoxGeometry& before)
{
    TraceScope trace("layout_change.cpp", "LayOutChangedBox");
    if (!before.valid || !AreAncestorsValid(node)) return false;
    node.originX = before.origin.x;
    node.originY = before.origin.y;
    if (SizeBox(view, node) != 0) return false;
    node.Flags |= FlagOriginValid;
    Size64 size = before.size;
    for (const Scdr* item = &node; item->parent != nullptr; item = item->parent) {
        if (item->width == size.width && item->height == size.height) break;
        Scdr& parent = *item->parent;
        const Size64 parentSize{parent.width, parent.height};
        if (parent.Rank < 2 || parent.ElementCount == 0) {
            FitRow(view, parent, *item, size);
        } else {
            FitGrid(parent, *item, size);
        }
        size = parentSize;
    }
    return true;
}

} // namespace vantrel
