// From MATLAB's arrays to a tree.
#include <algorithm>
#include <cstring>

#include "entry/trace.h"
#include "hosts/matlab_order.h"
#include "hosts/matlab_reader.h"
#include "model/primitives.h"

namespace vantrel::matlab {
namespace {

// The text for a class that no version of MATLAB documents.
const char16_t* UnknownClassMessage(ArrayReader& reader, const MxArray* array)
{
    constexpr std::u16string_view prefix = u"Array contains data of class ";
    char16_t* const text = reader.host.classMessage;
    char16_t* const end = text + ClassMessageSize - 1;
    char16_t* to = std::copy(prefix.begin(), prefix.end(), text);
    const char* name = reader.mx.mxGetClassName(array);
    for (; name != nullptr && *name != 0 && to < end; ++name)
        *to++ = static_cast<unsigned char>(*name);
    *to = 0;
    return text;
}

std::uint32_t ScdrTypeOf(ArrayReader& reader, const MxArray* array)
{
    switch (reader.mx.mxGetClassID(array)) {
    case MxCell:
    case MxStruct: return TypeNested;
    case MxLogical: return TypeBoolean;
    case MxChar: return TypeCharacter;
    case MxDouble:
    case MxSingle: return reader.mx.mxIsComplex(array) ? TypeComplex : TypeReal;
    case MxInt8:
    case MxUint8:
    case MxInt16:
    case MxUint16:
    case MxInt32:
    case MxUint32:
    case MxInt64: return reader.mx.mxIsComplex(array) ? TypeComplex : TypeInteger;
    case MxUnknown: Refuse(reader, VTERROR_CODE::DomainError, MessageUnknownClass);
    case MxVoid: Refuse(reader, VTERROR_CODE::DomainError, MessageReservedClass);
    case MxUint64: Refuse(reader, VTERROR_CODE::DomainError, MessageUnsigned64);
    case MxFunctionHandle: Refuse(reader, VTERROR_CODE::DomainError, MessageFunctionHandle);
    case MxOpaque: Refuse(reader, VTERROR_CODE::DomainError, MessageOpaque);
    case MxObject: Refuse(reader, VTERROR_CODE::DomainError, MessageObject);
    default: Refuse(reader, VTERROR_CODE::DomainError, UnknownClassMessage(reader, array));
    }
}

// A node of the array's type and shape, its items not set. Throws.
ScdrPtr MakeNode(ArrayReader& reader, Scdr* parent, const MxArray* array)
{
    const std::size_t rank = reader.mx.mxGetNumberOfDimensions(array);
    if (rank > HighestReadableRank) throw VTERROR_CODE::RankError;
    if (reader.mx.mxIsSparse(array)) Refuse(reader, VTERROR_CODE::DomainError, MessageSparse);
    const std::uint32_t type = ScdrTypeOf(reader, array);
    const std::size_t* lengths = reader.mx.mxGetDimensions(array);
    std::transform(lengths, lengths + rank, reader.shape,
                   [](std::size_t length) { return static_cast<std::int64_t>(length); });
    auto axes = static_cast<std::int32_t>(rank);
    const bool structure = reader.mx.mxGetClassID(array) == MxStruct;
    if (structure) {
        reader.shape[axes++] = reader.mx.mxGetNumberOfFields(array);
        reader.shape[axes++] = 2;
    }
    ScdrPtr node = AllocateScdr(reader.context, parent, type, axes, reader.shape, type == TypeBoolean);
    if (structure) node->Flags |= FlagStructure;
    return node;
}

ScdrPtr EmptyText(ArrayReader& reader, Scdr* parent)
{
    constexpr std::int64_t length = 0;
    ScdrPtr text = AllocateScdr(reader.context, parent, TypeCharacter, 1, &length, true);
    SetSimplestType(*text);
    return text;
}

// --- cells and structures ---

ScdrPtr ReadArray(ArrayReader& reader, Scdr* parent, const MxArray* array, std::int32_t depth);

// A cell or field that was never set holds nothing.
ScdrPtr ReadItem(ArrayReader& reader, Scdr& parent, const MxArray* item, std::int32_t depth)
{
    return item != nullptr ? ReadArray(reader, &parent, item, depth + 1) : EmptyText(reader, &parent);
}

void ReadCells(ArrayReader& reader, Scdr& node, const MxArray* array, std::int32_t depth)
{
    ColumnMajorWalk walk(node, IsRearranged(node));
    for (std::int64_t i = 0; i < node.ElementCount; ++i, walk.Next()) {
        const MxArray* cell = reader.mx.mxGetCell(array, static_cast<std::size_t>(i));
        SetChild(node, walk.Index(), ReadItem(reader, node, cell, depth));
    }
}

// Elements stay in MATLAB's order, each with its fields' names and values.
void ReadFields(ArrayReader& reader, Scdr& node, const MxArray* array, std::int32_t depth)
{
    const auto fieldCount = static_cast<int>(node.Shape[node.Rank - StructureAxes]);
    for (std::int64_t child = 0; child < node.ElementCount; child += 2) {
        const char* name = reader.mx.mxGetFieldNameByNumber(array, static_cast<int>(child / 2 % fieldCount));
        if (name == nullptr) throw VTERROR_CODE::SystemError;
        SetChild(node, child, FieldNameToScdr(reader.context, &node, name));
        const auto element = static_cast<std::size_t>(child / 2 / fieldCount);
        const MxArray* value = reader.mx.mxGetField(array, element, name);
        SetChild(node, child + 1, ReadItem(reader, node, value, depth));
    }
}

// Throws, and leaves nothing behind then.
ScdrPtr ReadArray(ArrayReader& reader, Scdr* parent, const MxArray* array, std::int32_t depth)
{
    if (depth > DeepestNesting) throw VTERROR_CODE::SystemLimit;
    if (reader.poll.Due()) AnswerMessages(reader.context);
    ScdrPtr node = MakeNode(reader, parent, array);
    if (IsSimple(*node)) {
        ReadSimple(reader, *node, array);
    } else if (node->ElementCount == 0) {
        SetChild(*node, 0, EmptyText(reader, node.get()));
    } else if ((node->Flags & FlagStructure) != 0) {
        ReadFields(reader, *node, array, depth);
    } else {
        ReadCells(reader, *node, array, depth);
    }
    return node;
}

} // namespace

ScdrPtr FieldNameToScdr(EditContext* context, Scdr* parent, const char* name)
{
    TraceScope trace("matlab_read.cpp", "FieldNameToScdr");
    const auto length = static_cast<std::int64_t>(std::strlen(name));
    ScdrPtr node = AllocateScdr(context, parent, TypeCharacter, 1, &length, false);
    auto* units = static_cast<char16_t*>(WritableData(*node));
    // Signed, as the bytes of a name always were.
    std::transform(name, name + length, units,
                   [](char byte) { return static_cast<char16_t>(static_cast<signed char>(byte)); });
    node->Flags |= FlagKeptSize;
    SetSimplestType(*node);
    return node;
}

Scdr* ObjectToScdr(EditContext* context, HostObject object)
{
    TraceScope trace("matlab_read.cpp", "ObjectToScdr");
    MatlabHost& host = HostOf(context);
    ArrayReader reader{context, host, host.functions, {}, {}};
    try {
        if (object == nullptr) throw VTERROR_CODE::SystemError;
        return ReadArray(reader, nullptr, static_cast<const MxArray*>(object), 1).release();
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

} // namespace vantrel::matlab
