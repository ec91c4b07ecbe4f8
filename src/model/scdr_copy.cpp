#include <algorithm>
#include <cstring>

#include "entry/trace.h"
#include "model/node_storage.h"
#include "model/tree_walk.h"

namespace vantrel {
namespace {

constexpr std::uint8_t AdapterFlags = FlagStructure | FlagKeptSize;

void CopyAxesNamesOrThrow(const Scdr& from, Scdr& to)
{
    if (from.Rank < 3 || from.Rank != to.Rank) return;
    ScdrExtra& extra = ExtraOf(to);
    if (extra.PlaneIndex == nullptr) extra.PlaneIndex = AllocateZeroedArray<std::int64_t>(to.Rank).release();
    if (extra.AxisNames == nullptr) extra.AxisNames = AllocateZeroedArray<char16_t*>(to.Rank).release();
    char16_t** names = from.extra->AxisNames;
    for (std::int32_t axis = 0; axis < to.Rank; ++axis) {
        OwnedArray<char16_t> name = CopyTerminated(names != nullptr ? names[axis] : nullptr);
        FreeBytes(extra.AxisNames[axis]);
        extra.AxisNames[axis] = name.release();
    }
}

// The node with its data; children stay null.
ScdrPtr CopyNode(EditContext* context, Scdr* parent, const Scdr& source)
{
    ScdrPtr copy = CopyScdrShell(context, parent, source);
    if (IsSimple(source)) std::memcpy(copy->data, source.data, DataSize(source.Type, source.ElementCount));
    return copy;
}

Scdr* CopyChild(EditContext* context, Scdr& parent, std::int64_t index, const Scdr& source)
{
    ScdrPtr copy = CopyNode(context, &parent, source);
    Scdr* child = copy.get();
    SetChild(parent, index, std::move(copy));
    return child;
}

// The children of the plane, or for a plane without elements a copy of the one child that stands for them in every place.
void CopyPlaneChildren(EditContext* context, Scdr& plane, const Scdr& source, std::int64_t first)
{
    for (std::int64_t i = 0; i < ChildCount(plane); ++i) {
        const Scdr* child = Children(source)[source.ElementCount > 0 ? first + i : 0];
        if (child != nullptr) SetChild(plane, i, CopyScdrInner(context, &plane, *child));
    }
}

void CopyPlaneData(Scdr& plane, const Scdr& source, std::int64_t first)
{
    if (source.ElementCount == 0) return;
    if (source.Type == TypeBoolean) {
        CopyBits(plane.data, 0, source.data, first, plane.ElementCount);
        return;
    }
    std::memcpy(plane.data, static_cast<const std::byte*>(source.data) + DataSize(source.Type, first),
                DataSize(source.Type, plane.ElementCount));
}

} // namespace

ScdrPtr CopyScdrShell(EditContext* context, Scdr* parent, const Scdr& source)
{
    TraceScope trace("scdr_copy.cpp", "CopyScdrShell");
    ScdrPtr copy = AllocateScdr(context, parent, source.Type, source.Rank, source.Shape, false);
    copy->SimplestType = source.SimplestType;
    copy->Flags = source.Flags & AdapterFlags;
    CopyAxesNamesOrThrow(source, *copy);
    const std::size_t bytes = DataSize(copy->Type, copy->ElementCount);
    if (copy->Type == TypeBoolean && bytes > 0) static_cast<std::uint8_t*>(copy->data)[bytes - 1] = 0;
    return copy;
}

ScdrPtr CopyScdrInner(EditContext* context, Scdr* parent, const Scdr& source)
{
    TraceScope trace("scdr_copy.cpp", "CopyScdrInner");
    ScdrPtr root = CopyNode(context, parent, source);
    const Scdr* from = &source;
    Scdr* to = root.get(); // the copy of `from`
    std::int64_t index = 0;
    for (;;) {
        if (index < ChildCount(*from)) {
            const Scdr* child = Children(*from)[index];
            Scdr* copy = child != nullptr ? CopyChild(context, *to, index, *child) : nullptr;
            ++index;
            if (copy == nullptr || IsSimple(*copy)) continue;
            from = child;
            to = copy;
            index = 0;
        } else if (from != &source) {
            index = to->indexInParent + 1;
            from = HoldingNode(*from);
            to = to->parent;
        } else {
            return root;
        }
    }
}

ScdrPtr CopyScdr(EditContext* context, const Scdr& source)
{
    TraceScope trace("scdr_copy.cpp", "CopyScdr");
    try {
        return CopyScdrInner(context, nullptr, source);
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

ScdrPtr CopyScdrPlaneInner(EditContext* context, const Scdr& source)
{
    TraceScope trace("scdr_copy.cpp", "CopyScdrPlaneInner");
    if (source.Rank < 3) return CopyScdrInner(context, nullptr, source);
    ScdrPtr plane = AllocateScdr(context, nullptr, source.Type, 2, source.Shape + source.Rank - 2,
                                 source.ElementCount == 0);
    plane->SimplestType = source.SimplestType;
    plane->Flags = source.Flags & AdapterFlags;
    const std::int64_t first = plane->ElementCount * CurrentPlane(source);
    if (IsSimple(source)) {
        CopyPlaneData(*plane, source, first);
    } else {
        CopyPlaneChildren(context, *plane, source, first);
    }
    return plane;
}

ScdrPtr CopyScdrPlane(EditContext* context, const Scdr& source)
{
    TraceScope trace("scdr_copy.cpp", "CopyScdrPlane");
    try {
        return CopyScdrPlaneInner(context, source);
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

bool CopyAxesNames(EditContext* context, const Scdr& from, Scdr& to) noexcept
{
    TraceScope trace("scdr_copy.cpp", "CopyAxesNames");
    try {
        CopyAxesNamesOrThrow(from, to);
        return true;
    } catch (VTERROR_CODE code) {
        return SetErrorCode(context, code);
    }
}

} // namespace vantrel
