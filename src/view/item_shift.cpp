#include "view/item_shift.h"

#include <algorithm>

#include "entry/trace.h"
#include "model/tree_walk.h"

namespace vantrel {
namespace {

// A row of boxes is a grid of one row and one plane.
struct ItemGrid {
    std::int64_t planes;
    std::int64_t rows;
    std::int64_t columns;
};

ItemGrid GridOf(const Scdr& node) noexcept
{
    if (node.Rank < 2 || node.ElementCount == 0) return {1, 1, ChildCount(node)};
    return {PlaneCount(node), Rows(node), Columns(node)};
}

Point64 ShiftOfItem(const Scdr& node, const ItemShift& shift, std::int64_t index) noexcept
{
    const std::int64_t columns = GridOf(node).columns;
    const std::int64_t rows = GridOf(node).rows;
    Point64 by = shift.all;
    if (index % columns >= shift.column) by.x += shift.wider;
    if (index / columns % rows >= shift.row) by.y += shift.taller;
    return by;
}

// Null when there is no room for one.
ScdrExtra* ExtraOrNull(Scdr& node) noexcept
{
    try {
        return &ExtraOf(node);
    } catch (VTERROR_CODE) {
        return nullptr;
    }
}

void MoveBelow(Scdr& node, const Point64& by) noexcept
{
    if (ScdrExtra* extra = ExtraOrNull(node)) {
        extra->itemShift.all.x += by.x;
        extra->itemShift.all.y += by.y;
        return;
    }
    ForEachNode(node, [&](Scdr& moved) {
        if (&moved == &node) return;
        moved.originX += by.x;
        moved.originY += by.y;
    });
}

void Move(Scdr& node, const Point64& by) noexcept
{
    node.originX += by.x;
    node.originY += by.y;
    if (!IsSimple(node)) MoveBelow(node, by);
}

void MoveColumns(Scdr& node, std::int64_t first, std::int64_t end, std::int64_t by) noexcept
{
    const ItemGrid grid = GridOf(node);
    for (std::int64_t start = 0; start < grid.planes * grid.rows * grid.columns; start += grid.columns) {
        for (std::int64_t column = first; column < end; ++column)
            Move(*Children(node)[start + column], {by, 0});
    }
}

void MoveRows(Scdr& node, std::int64_t first, std::int64_t end, std::int64_t by) noexcept
{
    const ItemGrid grid = GridOf(node);
    const std::int64_t planeSize = grid.rows * grid.columns;
    for (std::int64_t plane = 0; plane < grid.planes; ++plane) {
        for (std::int64_t i = first * grid.columns; i < end * grid.columns; ++i)
            Move(*Children(node)[plane * planeSize + i], {0, by});
    }
}

// Items that leave the noted part take along what they were owed; items that enter it give it back.
template <typename MoveItems>
void MoveNote(std::int64_t& place, std::int64_t owed, std::int64_t to, MoveItems move) noexcept
{
    if (owed != 0 && to > place) move(place, to, owed);
    if (owed != 0 && to < place) move(to, place, -owed);
    place = to;
}

} // namespace

Point64 OriginOf(const Scdr& node) noexcept
{
    Point64 origin{node.originX, node.originY};
    for (const Scdr* item = &node; item->parent != nullptr; item = item->parent) {
        const Scdr& parent = *item->parent;
        if (parent.extra == nullptr) continue;
        const Point64 by = ShiftOfItem(parent, parent.extra->itemShift, IndexInParent(*item));
        origin.x += by.x;
        origin.y += by.y;
    }
    return origin;
}

ItemPlaces PlacesOfItems(const Scdr& node) noexcept
{
    ItemPlaces places{Children(node), {}, {}};
    if (node.extra != nullptr) places.shift = node.extra->itemShift;
    const Point64 origin = OriginOf(node);
    places.all = {origin.x - node.originX + places.shift.all.x, origin.y - node.originY + places.shift.all.y};
    return places;
}

void PushColumns(Scdr& node, std::int64_t column, std::int64_t wider) noexcept
{
    TraceScope trace("item_shift.cpp", "PushColumns");
    const std::int64_t columns = GridOf(node).columns;
    if (wider == 0 || column >= columns) return;
    ScdrExtra* extra = ExtraOrNull(node);
    if (extra == nullptr) {
        MoveColumns(node, column, columns, wider);
        return;
    }
    ItemShift& shift = extra->itemShift;
    MoveNote(shift.column, shift.wider, column,
             [&](auto first, auto end, auto by) { MoveColumns(node, first, end, by); });
    shift.wider += wider;
}

void PushRows(Scdr& node, std::int64_t row, std::int64_t taller) noexcept
{
    TraceScope trace("item_shift.cpp", "PushRows");
    const std::int64_t rows = GridOf(node).rows;
    if (taller == 0 || row >= rows) return;
    ScdrExtra* extra = ExtraOrNull(node);
    if (extra == nullptr) {
        MoveRows(node, row, rows, taller);
        return;
    }
    ItemShift& shift = extra->itemShift;
    MoveNote(shift.row, shift.taller, row,
             [&](auto first, auto end, auto by) { MoveRows(node, first, end, by); });
    shift.taller += taller;
}

void SettleItems(Scdr& node) noexcept
{
    TraceScope trace("item_shift.cpp", "SettleItems");
    if (node.extra == nullptr) return;
    const ItemShift shift = node.extra->itemShift;
    if (shift.all.x == 0 && shift.all.y == 0 && shift.wider == 0 && shift.taller == 0) return;
    node.extra->itemShift = {};
    const std::int64_t count = ChildCount(node);
    for (std::int64_t i = 0; i < count; ++i)
        Move(*Children(node)[i], ShiftOfItem(node, shift, i));
}

} // namespace vantrel
