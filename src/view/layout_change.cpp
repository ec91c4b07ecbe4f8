#include "view/layout_change.h"

#include <algorithm>

#include "entry/trace.h"
#include "view/item_shift.h"

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

// The greatest length of items that are known to be at most so long: the first of that length ends the search.
class Longest {
public:
    explicit Longest(std::int64_t atMost) noexcept : atMost_(atMost) {}
    void Add(std::int64_t length) noexcept { found_ = std::max(found_, length); }
    [[nodiscard]] bool IsFound() const noexcept { return found_ >= atMost_; }
    [[nodiscard]] std::int64_t Length() const noexcept { return found_; }

private:
    std::int64_t atMost_;
    std::int64_t found_ = 0;
};

std::int64_t Tallest(const Scdr& row, std::int64_t atMost) noexcept
{
    Longest height(atMost);
    for (std::int64_t i = 0; i < ChildCount(row) && !height.IsFound(); ++i)
        height.Add(Children(row)[i]->height);
    return height.Length();
}

// What is around the items of a row: edges and margins, above and below.
std::int64_t HeightAround(const View& view) noexcept
{
    return 2 * view.metrics.edge.height + 2 * view.metrics.margin;
}

void FitRow(const View& view, Scdr& row, const Scdr& item, const Size64& before) noexcept
{
    const std::int64_t wider = item.width - before.width;
    PushColumns(row, IndexInParent(item) + 1, wider);
    row.width += wider;
    const std::int64_t room = row.height - HeightAround(view);
    if (item.height >= room) {
        row.height = item.height + HeightAround(view);
    } else if (before.height == room) {
        row.height = Tallest(row, room) + HeightAround(view); // the tallest of all has shrunk
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

std::int64_t WidestInColumn(const Scdr& grid, const GridPlace& place, std::int64_t atMost) noexcept
{
    Longest width(atMost);
    for (std::int64_t i = place.column; i < grid.ElementCount && !width.IsFound(); i += place.columns)
        width.Add(Children(grid)[i]->width);
    return width.Length();
}

std::int64_t TallestInRow(const Scdr& grid, const GridPlace& place, std::int64_t atMost) noexcept
{
    Longest height(atMost);
    for (std::int64_t first = place.row * place.columns; first < grid.ElementCount;
         first += place.rows * place.columns) {
        for (std::int64_t column = 0; column < place.columns && !height.IsFound(); ++column)
            height.Add(Children(grid)[first + column]->height);
    }
    return height.Length();
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
        width = WidestInColumn(grid, place, old.width);
    }
    if (item.height >= height) {
        height = item.height;
    } else if (before.height == height) {
        height = TallestInRow(grid, place, old.height);
    }
    PushColumns(grid, place.column + 1, width - old.width);
    PushRows(grid, place.row + 1, height - old.height);
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
