// Which class each node will be written as: the narrowest that holds its values.
#include <cmath>

#include "entry/trace.h"
#include "hosts/item_loops.h"
#include "hosts/matlab_host.h"
#include "hosts/matlab_order.h"
#include "model/whole_numbers.h"

namespace vantrel::matlab {
namespace {

constexpr std::int64_t LeastInt32 = -2147483648;
constexpr std::int64_t GreatestInt32 = 2147483647;

MatlabType IntegerType(const Scdr& scdr) noexcept
{
    const auto* items = static_cast<const std::int64_t*>(scdr.data);
    const auto beyondInt32 = [](std::int64_t item) {
        return (static_cast<std::uint64_t>(item) + 0x80000000u) & ~std::uint64_t{0xFFFFFFFF};
    };
    if (!NoItemHasBits<std::uint64_t>(items, scdr.ElementCount, beyondInt32)) return MatlabInt64;
    const auto beyondBit = [](std::int64_t item) {
        return static_cast<std::uint64_t>(item) & ~std::uint64_t{1};
    };
    return NoItemHasBits<std::uint64_t>(items, scdr.ElementCount, beyondBit) ? MatlabLogical : MatlabInt32;
}

bool IsBeyondInt32(double value) noexcept
{
    return value < static_cast<double>(LeastInt32) || value > static_cast<double>(GreatestInt32);
}

MatlabType RealType(const Scdr& scdr) noexcept
{
    const auto* items = static_cast<const double*>(scdr.data);
    switch (KindOfReals(items, scdr.ElementCount)) {
    case NumberKind::Bits: return MatlabLogical;
    case NumberKind::Other: return MatlabDouble;
    case NumberKind::Whole: break;
    }
    const auto beyond = [](double item) { return static_cast<std::uint64_t>(IsBeyondInt32(item)); };
    return NoItemHasBits<std::uint64_t>(items, scdr.ElementCount, beyond) ? MatlabInt32 : MatlabInt64;
}

MatlabType TypeOfRealPart(double value) noexcept
{
    switch (KindOfItem(value)) {
    case NumberKind::Bits: return MatlabLogical;
    case NumberKind::Whole: return IsBeyondInt32(value) ? MatlabInt64 : MatlabInt32;
    case NumberKind::Other: break;
    }
    return MatlabDouble;
}

// Real parts decide only where no item has an imaginary one: a number never loses it.
MatlabType ComplexType(const Scdr& scdr) noexcept
{
    const auto* pairs = static_cast<const double*>(scdr.data);
    for (std::int64_t i = 0; i < scdr.ElementCount; ++i) {
        if (pairs[2 * i + 1] != 0.0) return MatlabComplex; // also when it is not a number
    }
    MatlabType type = MatlabLogical;
    for (std::int64_t i = 0; i < scdr.ElementCount; ++i) {
        const MatlabType found = TypeOfRealPart(pairs[2 * i]);
        if (found == MatlabDouble) return found;
        if (found > type) type = found;
    }
    return type;
}

MatlabType TypeOf(const Scdr& scdr) noexcept
{
    switch (scdr.Type) {
    case TypeNested: return MatlabCells;
    case TypeCharacter: return MatlabChar;
    case TypeBoolean: return MatlabLogical;
    case TypeInteger: return IntegerType(scdr);
    case TypeReal: return RealType(scdr);
    case TypeComplex: return ComplexType(scdr);
    default: return MatlabNothing;
    }
}

// A name goes to MATLAB as bytes and ends at the first 0.
bool HasName(const Scdr& name) noexcept
{
    return name.ElementCount > 0 && (static_cast<const char16_t*>(name.data)[0] & 0xFF) != 0;
}

// Children in the order in which they are written; a prototype never is.
void CollectTypes(const Scdr& scdr, DialectTypes& types, std::int32_t depth)
{
    if (depth > DeepestNesting) throw VTERROR_CODE::SystemLimit;
    types.push_back(TypeOf(scdr));
    if (IsSimple(scdr)) return;
    ColumnMajorWalk walk(scdr, IsRearranged(scdr) && !IsStructure(scdr));
    for (std::int64_t i = 0; i < scdr.ElementCount; ++i, walk.Next())
        CollectTypes(*Children(scdr)[walk.Index()], types, depth + 1);
}

} // namespace

FieldName FieldNameOf(const Scdr& name)
{
    const auto* units = static_cast<const char16_t*>(name.data);
    FieldName bytes;
    for (std::int64_t i = 0; i < name.ElementCount && (units[i] & 0xFF) != 0; ++i)
        bytes.push_back(static_cast<char>(units[i] & 0xFF));
    return bytes;
}

bool IsStructure(const Scdr& scdr) noexcept
{
    if ((scdr.Flags & FlagStructure) == 0 || scdr.Type != TypeNested || scdr.Rank < 2) return false;
    if (scdr.Shape[scdr.Rank - 1] != 2) return false;
    const std::int64_t fieldCount = scdr.Shape[scdr.Rank - 2];
    for (std::int64_t i = 0; i < scdr.ElementCount / 2; ++i) {
        const Scdr& name = *Children(scdr)[2 * i];
        if (name.Type != TypeCharacter) return false;
        if (i < fieldCount && !HasName(name)) return false;
    }
    return true;
}

bool SetDialectType(EditContext* context, const Scdr* scdr, DialectTypes& types)
{
    TraceScope trace("matlab_types.cpp", "SetDialectType");
    try {
        CollectTypes(*scdr, types, 1);
        return true;
    } catch (VTERROR_CODE code) {
        return SetErrorCode(context, code);
    }
}

} // namespace vantrel::matlab
