// The order of items: MATLAB stores the first axis next to each other, the tree the last one.
//
// Both orders are walked together, block by block, so that a conversion and its rearrangement are one pass over the memory. Indexes count items.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>

#include "entry/memory.h"
#include "model/scdr.h"

namespace vantrel::matlab {

// The axes of an array that has items, without those of length 1, which change nothing. An array of a length that fits into memory has at
// most 62 others.
struct ItemOrder {
    static constexpr std::int32_t MostAxes = 64;
    std::int32_t rank = 0;
    std::int64_t lengths[MostAxes];
    std::int64_t rowStrides[MostAxes];    // of the tree
    std::int64_t columnStrides[MostAxes]; // of MATLAB

    ItemOrder(std::int32_t shapeRank, const std::int64_t* shape) noexcept;
};

// Whether the two orders of a node's items differ.
[[nodiscard]] bool IsRearranged(const Scdr& node) noexcept;

// Walks the places of a nested node's children in MATLAB's order, or in the tree's where they are not rearranged. Throws OutOfMemory when it is made: what it needs does not lie on the
// stack, where arrays may be nested deeply.
class ColumnMajorWalk {
public:
    ColumnMajorWalk(const Scdr& node, bool rearranged);
    // The place in the tree.
    [[nodiscard]] std::int64_t Index() const noexcept { return index_; }
    void Next() noexcept;

private:
    struct Rearranged;
    struct RearrangedDeleter {
        void operator()(Rearranged* rearranged) const noexcept { FreeBytes(rearranged); }
    };
    std::unique_ptr<Rearranged, RearrangedDeleter> rearranged_; // null: both orders are one
    std::int64_t index_ = 0;
};

// One plane of the first and the last axis: the first is next to each other in MATLAB's order, the last in the tree's.
struct ItemPlane {
    std::int64_t columnMajor; // index of the plane's first item, in each order
    std::int64_t rowMajor;
    std::int64_t rows; // along the first axis
    std::int64_t columns;
    std::int64_t rowStride; // in the tree's order
    std::int64_t columnStride;
};

// A cache line of doubles; power-of-two strides that fall on one another in the cache are still harmless.
inline constexpr std::int64_t TileSize = 8;
// Tiles stay within so many rows and columns until the pages that they touch are done with.
inline constexpr std::int64_t PageTile = 64;

// Calls move(columnMajorIndex, rowMajorIndex) for the items of a part of a plane.
template <typename Move>
void MoveTile(const ItemPlane& plane, std::int64_t firstRow, std::int64_t endRow, std::int64_t firstColumn,
              std::int64_t endColumn, Move move)
{
    for (std::int64_t row = firstRow; row < endRow; ++row) {
        const std::int64_t from = plane.columnMajor + row;
        const std::int64_t to = plane.rowMajor + row * plane.rowStride;
        for (std::int64_t column = firstColumn; column < endColumn; ++column)
            move(from + column * plane.columnStride, to + column);
    }
}

template <typename Move, typename Look>
void MovePage(const ItemPlane& plane, std::int64_t firstRow, std::int64_t endRow, std::int64_t firstColumn,
              std::int64_t endColumn, Move move, Look& look)
{
    for (std::int64_t row = firstRow; row < endRow; row += TileSize) {
        const std::int64_t tileEnd = std::min(row + TileSize, endRow);
        std::int64_t column = firstColumn;
        if (tileEnd - row == TileSize) {
            // Constant lengths, so that the compiler lays the loops out flat.
            for (; column + TileSize <= endColumn; column += TileSize)
                MoveTile(plane, row, row + TileSize, column, column + TileSize, move);
        }
        MoveTile(plane, row, tileEnd, column, endColumn, move);
        for (std::int64_t k = row; k < tileEnd; ++k)
            look(plane.rowMajor + k * plane.rowStride + firstColumn, endColumn - firstColumn);
    }
}

template <typename Move, typename Look> void MovePlane(const ItemPlane& plane, Move move, Look& look)
{
    for (std::int64_t row = 0; row < plane.rows; row += PageTile) {
        const std::int64_t endRow = std::min(row + PageTile, plane.rows);
        for (std::int64_t column = 0; column < plane.columns; column += PageTile) {
            MovePage(plane, row, endRow, column, std::min(column + PageTile, plane.columns), move, look);
        }
    }
}

struct LookAtNothing {
    void operator()(std::int64_t, std::int64_t) const noexcept {}
};

// Calls move(columnMajorIndex, rowMajorIndex) once for every item of an array with items whose two orders differ, and look(first, count) for
// short runs of the tree's order, none longer than PageTile, as soon as they are complete and still at hand.
template <typename Move, typename Look> void MoveItems(const ItemOrder& order, Move move, Look& look) noexcept
{
    const std::int32_t last = order.rank - 1;
    ItemPlane plane{
        0, 0, order.lengths[0], order.lengths[last], order.rowStrides[0], order.columnStrides[last]};
    std::int64_t position[ItemOrder::MostAxes] = {};
    for (;;) {
        MovePlane(plane, move, look);
        std::int32_t axis = 1;
        for (; axis < last; ++axis) {
            plane.rowMajor += order.rowStrides[axis];
            plane.columnMajor += order.columnStrides[axis];
            if (++position[axis] < order.lengths[axis]) break;
            plane.rowMajor -= order.rowStrides[axis] * order.lengths[axis];
            plane.columnMajor -= order.columnStrides[axis] * order.lengths[axis];
            position[axis] = 0;
        }
        if (axis >= last) return;
    }
}

template <typename Move> void MoveItems(const ItemOrder& order, Move move) noexcept
{
    LookAtNothing look;
    MoveItems(order, move, look);
}

} // namespace vantrel::matlab
