// Items pushed aside without being visited.
//
// When one box of a million grows, all behind it move. Their parent notes how far, from which column and from which row on, and what
// they say of their own places stays as it was until the next layout. The noted place moves along with the changes, as the gap of a gap
// buffer does: only the items between one change and the next are visited.
#pragma once

#include "model/scdr.h"

namespace vantrel {

// Where the node stands in the space of the displayed top node.
[[nodiscard]] Point64 OriginOf(const Scdr& node) noexcept;

// The places of one node's items, found without climbing to the top for each.
struct ItemPlaces {
    Scdr* const* items;
    Point64 all;
    ItemShift shift; // zero where nothing is noted
};
[[nodiscard]] ItemPlaces PlacesOfItems(const Scdr& node) noexcept;
// `column` and `row` are those of item `index` in its plane; one row of boxes has a column for each.
[[nodiscard]] inline std::int64_t ItemLeft(const ItemPlaces& places, std::int64_t index,
                                           std::int64_t column) noexcept
{
    return places.items[index]->originX + places.all.x +
           (column >= places.shift.column ? places.shift.wider : 0);
}
[[nodiscard]] inline std::int64_t ItemTop(const ItemPlaces& places, std::int64_t index,
                                          std::int64_t row) noexcept
{
    return places.items[index]->originY + places.all.y + (row >= places.shift.row ? places.shift.taller : 0);
}

// Moves the items of a nested node from a column or row on, in all planes.
void PushColumns(Scdr& node, std::int64_t column, std::int64_t wider) noexcept;
void PushRows(Scdr& node, std::int64_t row, std::int64_t taller) noexcept;

// Tells every item where it stands.
void SettleItems(Scdr& node) noexcept;

} // namespace vantrel
