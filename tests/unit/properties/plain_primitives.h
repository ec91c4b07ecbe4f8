// The structural primitives once more, slowly and plainly, one item at a time by its indices: what the fast ones are compared with.
#pragma once

#include <cstring>

#include "unit/builtin/arrays.h"

namespace vantrel::test {

// Items of an array by their position, whatever its type: "1" bits, numbers and texts all become nodes.
ScdrPtr PlainItem(EditContext* context, const Scdr& array, std::int64_t position);

// An array of `shape` with the type, flags and names of `like`; item k is item `source(indices of k)` of it. Names go by
// `sourceAxis(axis)`.
template <typename Source, typename SourceAxis>
ScdrPtr PlainArray(EditContext* context, const Scdr& like, const Shape& shape, Source source,
                   SourceAxis sourceAxis)
{
    ScdrPtr made = AllocateScdr(context, nullptr, like.Type, static_cast<std::int32_t>(shape.size()),
                                shape.data(), true);
    made->Flags = static_cast<std::uint8_t>(like.Flags & (FlagStructure | FlagKeptSize));
    for (std::int32_t axis = 0; made->Rank >= 3 && axis < made->Rank; ++axis) {
        const std::u16string name = like.extra->AxisNames[sourceAxis(axis)];
        auto copy = AllocateArray<char16_t>(std::ssize(name) + 1);
        std::copy_n(name.c_str(), name.size() + 1, copy.get());
        FreeBytes(made->extra->AxisNames[axis]);
        made->extra->AxisNames[axis] = copy.release();
    }
    Shape indices(shape.size(), 0);
    for (std::int64_t k = 0; k < std::max<std::int64_t>(made->ElementCount, IsSimple(like) ? 0 : 1); ++k) {
        std::int64_t rest = k;
        for (std::size_t axis = shape.size(); axis-- > 0 && made->ElementCount > 0;) {
            indices[axis] = rest % shape[axis];
            rest /= shape[axis];
        }
        const std::int64_t from = made->ElementCount > 0 ? source(indices) : 0;
        if (IsSimple(like)) {
            const ScdrPtr item = PlainItem(context, like, from);
            if (like.Type == TypeBoolean) {
                SetBit(made->data, k, GetBit(item->data, 0));
            } else {
                const std::size_t bytes = DataSize(like.Type, 1);
                std::memcpy(static_cast<char*>(made->data) + static_cast<std::size_t>(k) * bytes, item->data,
                            bytes);
            }
        } else {
            SetChild(*made, k, PlainItem(context, like, from));
        }
    }
    return made;
}

// The position of the item with these indices.
std::int64_t PositionOf(const Scdr& array, const Shape& indices);

ScdrPtr PlainReverse(EditContext* context, const Scdr& argument, std::int32_t axis);
// Argument axis i becomes result axis order[i], counted from 0.
ScdrPtr PlainTranspose(EditContext* context, const Scdr& argument, const std::vector<std::int32_t>& order);
// All simple scalars inside, in order, each as a node of its own.
void PlainLeaves(EditContext* context, const Scdr& tree, std::vector<ScdrPtr>& leaves);

} // namespace vantrel::test
