#include "hosts/matlab_order.h"

#include <new>

namespace vantrel::matlab {

ItemOrder::ItemOrder(std::int32_t shapeRank, const std::int64_t* shape) noexcept
{
    for (std::int32_t axis = 0; axis < shapeRank; ++axis) {
        if (shape[axis] != 1) lengths[rank++] = shape[axis];
    }
    std::int64_t stride = 1;
    for (std::int32_t axis = 0; axis < rank; ++axis) {
        columnStrides[axis] = stride;
        stride *= lengths[axis];
    }
    stride = 1;
    for (std::int32_t axis = rank; axis-- > 0;) {
        rowStrides[axis] = stride;
        stride *= lengths[axis];
    }
}

bool IsRearranged(const Scdr& node) noexcept
{
    if (node.ElementCount < 2) return false;
    const auto isLong = [](std::int64_t length) { return length > 1; };
    return std::count_if(node.Shape, node.Shape + node.Rank, isLong) > 1;
}

struct ColumnMajorWalk::Rearranged {
    explicit Rearranged(const Scdr& node) noexcept : order(node.Rank, node.Shape) {}
    ItemOrder order;
    std::int64_t position[ItemOrder::MostAxes] = {};
};

ColumnMajorWalk::ColumnMajorWalk(const Scdr& node, bool rearranged)
{
    if (rearranged) rearranged_.reset(new (AllocateBytes(sizeof(Rearranged))) Rearranged(node));
}

void ColumnMajorWalk::Next() noexcept
{
    if (rearranged_ == nullptr) {
        ++index_;
        return;
    }
    const ItemOrder& order = rearranged_->order;
    for (std::int32_t axis = 0; axis < order.rank; ++axis) {
        index_ += order.rowStrides[axis];
        if (++rearranged_->position[axis] < order.lengths[axis]) return;
        index_ -= order.rowStrides[axis] * order.lengths[axis];
        rearranged_->position[axis] = 0;
    }
}

} // namespace vantrel::matlab
