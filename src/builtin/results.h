// What the structural primitives share in making their results.
#pragma once

#include "builtin/item_copy.h"
#include "model/scdr.h"

namespace vantrel {

// Answers what `make` answers; what it throws becomes ErrorCode and null.
template <typename Make> ScdrPtr ResultOf(EditContext* context, Make make)
{
    try {
        return make();
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

// Throws SystemError.
inline void RequireKnownType(const Scdr& node)
{
    if (!IsValidType(node.Type)) throw VTERROR_CODE::SystemError;
}

// Item `index` of a simple array as a scalar of its own type, without its simplest type. Throws OutOfMemory, SystemError.
inline ScdrPtr MakeScalar(EditContext* context, Scdr* parent, const Scdr& array, std::int64_t index)
{
    ScdrPtr scalar = AllocateScdr(context, parent, array.Type, 0, nullptr, true);
    CopyItems({array.Type, scalar->data, 0}, {array.Type, array.data, index}, 1);
    return scalar;
}

// Copies the children of one nested array into another that has as many: child i goes to `place(i)`. An empty array's prototype stays
// where it is. Throws OutOfMemory.
template <typename Place> void CopyChildrenTo(EditContext* context, const Scdr& from, Scdr& to, Place place)
{
    for (std::int64_t i = 0; i < ChildCount(from); ++i) {
        const std::int64_t index = from.ElementCount > 0 ? place(i) : 0;
        SetChild(to, index, CopyScdrInner(context, &to, *Children(from)[i]));
    }
}

} // namespace vantrel
