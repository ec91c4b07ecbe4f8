#include "unit/properties/plain_primitives.h"

namespace vantrel::test {

ScdrPtr PlainItem(EditContext* context, const Scdr& array, std::int64_t position)
{
    if (!IsSimple(array)) return CopyScdr(context, *Children(array)[position]);
    ScdrPtr item = AllocateScdr(context, nullptr, array.Type, 0, nullptr, true);
    if (array.Type == TypeBoolean) {
        SetBit(item->data, 0, GetBit(array.data, position));
    } else {
        const std::size_t bytes = DataSize(array.Type, 1);
        std::memcpy(item->data,
                    static_cast<const char*>(array.data) + static_cast<std::size_t>(position) * bytes, bytes);
    }
    return item;
}

std::int64_t PositionOf(const Scdr& array, const Shape& indices)
{
    std::int64_t position = 0;
    for (std::size_t axis = 0; axis < indices.size(); ++axis)
        position = position * array.Shape[axis] + indices[axis];
    return position;
}

ScdrPtr PlainReverse(EditContext* context, const Scdr& argument, std::int32_t axis)
{
    return PlainArray(
        context, argument, ShapeOf(argument),
        [&](Shape indices) {
            std::int64_t& index = indices[static_cast<std::size_t>(axis)];
            index = argument.Shape[axis] - 1 - index;
            return PositionOf(argument, indices);
        },
        [](std::int32_t same) { return same; });
}

ScdrPtr PlainTranspose(EditContext* context, const Scdr& argument, const std::vector<std::int32_t>& order)
{
    Shape shape(order.size());
    for (std::size_t axis = 0; axis < order.size(); ++axis)
        shape[static_cast<std::size_t>(order[axis])] = argument.Shape[axis];
    return PlainArray(
        context, argument, shape,
        [&](const Shape& indices) {
            Shape source(order.size());
            for (std::size_t axis = 0; axis < order.size(); ++axis)
                source[axis] = indices[static_cast<std::size_t>(order[axis])];
            return PositionOf(argument, source);
        },
        [&](std::int32_t axis) { return std::find(order.begin(), order.end(), axis) - order.begin(); });
}

void PlainLeaves(EditContext* context, const Scdr& tree, std::vector<ScdrPtr>& leaves)
{
    for (std::int64_t i = 0; i < tree.ElementCount; ++i) {
        if (IsSimple(tree)) {
            leaves.push_back(PlainItem(context, tree, i));
        } else {
            PlainLeaves(context, *Children(tree)[i], leaves);
        }
    }
}

} // namespace vantrel::test
