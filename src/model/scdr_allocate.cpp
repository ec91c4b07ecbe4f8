#include <algorithm>
#include <charconv>
#include <cstring>
#include <iterator>

#include "entry/trace.h"
#include "model/node_pool.h"
#include "model/node_storage.h"
#include "model/record_chunks.h"
#include "model/scdr.h"

namespace vantrel {
namespace {

struct AxisNamesDeleter {
    std::int32_t rank = 0;
    void operator()(char16_t** names) const noexcept { FreeAxisNames(names, rank); }
};
using AxisNameList = std::unique_ptr<char16_t*[], AxisNamesDeleter>;

// What a rank of 3 or more needs beside the node.
struct LongShape {
    OwnedArray<std::int64_t> shape;
    OwnedArray<std::int64_t> planeIndex;
    AxisNameList axisNames;
};

void CheckAxes(std::int32_t rank, const std::int64_t* shape)
{
    if (rank < 0) throw VTERROR_CODE::SystemLimit;
    if (shape != nullptr && std::any_of(shape, shape + rank, [](std::int64_t axis) { return axis < 0; })) {
        throw VTERROR_CODE::SystemLimit;
    }
}

std::int64_t MultiplyAxis(std::int64_t product, std::int64_t axis)
{
    return static_cast<std::int64_t>(CheckedMultiply(product, static_cast<std::size_t>(axis)));
}

std::int64_t ElementProduct(std::int32_t rank, const std::int64_t* shape)
{
    if (rank == 0) return 1;
    // A zero makes the array empty even where the other axes overflow.
    if (shape == nullptr || std::find(shape, shape + rank, 0) != shape + rank) return 0;
    std::int64_t product = 1;
    for (std::int32_t axis = 0; axis < rank; ++axis)
        product = MultiplyAxis(product, shape[axis]);
    return product;
}

std::int64_t PlaneProduct(std::int32_t rank, const std::int64_t* shape)
{
    std::int64_t product = 1;
    for (std::int32_t axis = 0; axis < rank - 2; ++axis) {
        product = MultiplyAxis(product, shape == nullptr ? 1 : std::max<std::int64_t>(shape[axis], 1));
    }
    return product;
}

OwnedArray<char16_t> DefaultAxisName(std::int64_t number)
{
    static constexpr char16_t prefix[] = u"Axis name ";
    constexpr std::size_t prefixLength = std::size(prefix) - 1;
    char digits[24];
    const char* end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    OwnedArray<char16_t> name =
        AllocateArray<char16_t>(static_cast<std::int64_t>(prefixLength) + (end - digits) + 1);
    char16_t* terminator =
        std::copy(static_cast<const char*>(digits), end, std::copy_n(prefix, prefixLength, name.get()));
    *terminator = 0;
    return name;
}

LongShape MakeLongShape(EditContext* context, std::int32_t rank, const std::int64_t* shape)
{
    LongShape made;
    made.shape = AllocateZeroedArray<std::int64_t>(rank);
    if (shape != nullptr) std::copy_n(shape, rank, made.shape.get());
    made.planeIndex = AllocateZeroedArray<std::int64_t>(rank);
    made.axisNames = AxisNameList(AllocateZeroedArray<char16_t*>(rank).release(), AxisNamesDeleter{rank});
    const std::int64_t origin = context != nullptr ? context->indexOrigin : 0;
    for (std::int32_t axis = 0; axis < rank; ++axis)
        made.axisNames.get()[axis] = DefaultAxisName(origin + axis).release();
    return made;
}

void FreeShape(Scdr& node) noexcept
{
    if ((node.storage & StorageOwnsShape) != 0) FreeBytes(node.Shape);
    node.storage = static_cast<std::uint8_t>(node.storage & ~StorageOwnsShape);
    if (node.extra == nullptr) return;
    FreeAxisNames(node.extra->AxisNames, node.Rank);
    FreeBytes(node.extra->PlaneIndex);
    node.extra->AxisNames = nullptr;
    node.extra->PlaneIndex = nullptr;
}

// Measures of the old columns mean nothing for the new shape.
void FreeShapeCaches(ScdrExtra& extra) noexcept
{
    FreeBytes(extra.columnWidths);
    FreeBytes(extra.rowHeights);
    FreeBytes(extra.recordColumnWidths);
    FreeBytes(extra.recordColumnIntegers);
    extra.columnWidths = nullptr;
    extra.rowHeights = nullptr;
    extra.recordColumnWidths = nullptr;
    extra.recordColumnIntegers = nullptr;
}

void StoreShape(EditContext* context, Scdr& node, std::int32_t rank, const std::int64_t* shape)
{
    const std::int64_t planes = PlaneProduct(rank, shape);
    LongShape longShape;
    if (rank >= 3) {
        longShape = MakeLongShape(context, rank, shape);
        ExtraOf(node);
    }
    std::int64_t lengths[2] = {0, 0}; // `shape` may be the node's own
    if (rank <= 2 && shape != nullptr) std::copy_n(shape, rank, lengths);
    FreeShape(node);
    node.Rank = rank;
    if (rank <= 2) {
        std::copy_n(lengths, 2, node.shortShape);
        node.Shape = rank > 0 ? node.shortShape : nullptr;
    } else {
        node.Shape = longShape.shape.release();
        node.storage |= StorageOwnsShape;
        node.extra->PlaneIndex = longShape.planeIndex.release();
        node.extra->AxisNames = longShape.axisNames.release();
    }
    if (node.extra == nullptr) return;
    node.extra->CurrentPlane = 0;
    node.extra->PlaneCount = planes;
    FreeShapeCaches(*node.extra);
}

void StoreData(Scdr& node, std::size_t bytes, bool fill)
{
    if (bytes <= sizeof node.shortData) {
        node.data = node.shortData;
    } else {
        const bool zero = node.Type == TypeNested || (fill && node.Type != TypeCharacter);
        node.data = zero ? AllocateZeroed(bytes) : AllocateBytes(bytes);
        node.storage |= StorageOwnsData;
    }
    if (fill && node.Type == TypeCharacter)
        std::fill_n(static_cast<char16_t*>(node.data), node.ElementCount, u' ');
}

} // namespace

ScdrPtr AllocateScdr(EditContext* context, Scdr* parent, std::uint32_t type, std::int32_t rank,
                     const std::int64_t* shape, bool fill)
{
    TraceScope trace("scdr_allocate.cpp", "AllocateScdr");
    CheckAxes(rank, shape);
    const std::int64_t count = ElementProduct(rank, shape);
    const std::size_t bytes = DataSize(type, count);
    ScdrPtr node(TakeNode());
    node->parent = parent;
    node->ElementCount = count;
    node->Type = type;
    StoreShape(context, *node, rank, shape);
    StoreData(*node, bytes, fill);
    return node;
}

ScdrPtr AllocateScdrFromRecords(EditContext* context, const RecordList& records)
{
    TraceScope trace("scdr_allocate.cpp", "AllocateScdrFromRecords");
    const std::int64_t length = AllRecordsLength(records);
    ScdrPtr vector = AllocateScdr(context, nullptr, TypeCharacter, 1, &length, false);
    WriteAllRecords(records, static_cast<char16_t*>(vector->data));
    vector->SimplestType = TypeCharacter;
    return vector;
}

void SetShape(EditContext* context, Scdr& node, std::int32_t rank, const std::int64_t* shape)
{
    TraceScope trace("scdr_allocate.cpp", "SetShape");
    CheckAxes(rank, shape);
    if (ElementProduct(rank, shape) != node.ElementCount) throw VTERROR_CODE::LengthError;
    StoreShape(context, node, rank, shape);
    FreeRecords(node.records);
}

ScdrExtra& ExtraOf(Scdr& node)
{
    TraceScope trace("scdr_allocate.cpp", "ExtraOf");
    if (node.extra == nullptr) node.extra = new (AllocateBytes(sizeof(ScdrExtra))) ScdrExtra{};
    return *node.extra;
}

OwnedArray<char16_t> CopyTerminated(const char16_t* text)
{
    const std::size_t length = text != nullptr ? std::char_traits<char16_t>::length(text) : 0;
    OwnedArray<char16_t> copy = AllocateArray<char16_t>(static_cast<std::int64_t>(length) + 1);
    if (length > 0) std::copy_n(text, length, copy.get());
    copy[length] = 0;
    return copy;
}

} // namespace vantrel
