// Which element type each node will be stored as.
#include <cmath>

#include "entry/trace.h"
#include "hosts/dyalog_host.h"
#include "hosts/item_loops.h"
#include "model/whole_numbers.h"

namespace vantrel {
namespace {

bool IsInAtomicVector(const DyalogHost& host, const Scdr& scdr) noexcept
{
    const auto* units = static_cast<const char16_t*>(scdr.data);
    for (std::int64_t i = 0; i < scdr.ElementCount; ++i) {
        if (host.atomicMembers[units[i]] == 0) return false;
    }
    return true;
}

std::uint32_t UnicodeCharacterType(const Scdr& scdr) noexcept
{
    const auto* units = static_cast<const char16_t*>(scdr.data);
    const bool narrow =
        NoItemHasBits<std::uint16_t>(units, scdr.ElementCount, [](char16_t unit) { return unit & 0xFF00; });
    return narrow ? DyalogCharacter8 : DyalogCharacter16;
}

std::uint32_t IntegerType(const Scdr& scdr) noexcept
{
    const auto* items = static_cast<const std::int64_t*>(scdr.data);
    const auto beyondBit = [](std::int64_t item) {
        return static_cast<std::uint64_t>(item) & ~std::uint64_t{1};
    };
    return NoItemHasBits<std::uint64_t>(items, scdr.ElementCount, beyondBit) ? DyalogBoolean
                                                                             : DyalogInteger32;
}

std::uint32_t RealType(const Scdr& scdr) noexcept
{
    switch (KindOfReals(static_cast<const double*>(scdr.data), scdr.ElementCount)) {
    case NumberKind::Bits: return DyalogBoolean;
    case NumberKind::Whole: return DyalogInteger32;
    default: return DyalogFloat;
    }
}

std::uint32_t ComplexType(const Scdr& scdr) noexcept
{
    const auto* pairs = static_cast<const double*>(scdr.data);
    std::uint32_t type = DyalogBoolean;
    for (std::int64_t i = 0; i < scdr.ElementCount; ++i) {
        const double real = pairs[2 * i];
        const double imaginary = pairs[2 * i + 1];
        if (imaginary != 0.0) return DyalogComplex; // also when it is not a number
        // Decides at once, whatever follows: such numbers have always been stored as floats.
        if (!std::isnan(real) && !IsInIntegerRange(real)) return DyalogFloat;
        if (std::isnan(real) || !IsIntegral(real))
            type = DyalogFloat;
        else if (type == DyalogBoolean && !IsBit(real))
            type = DyalogInteger32;
    }
    return type;
}

// The type of one node.
std::uint32_t DialectTypeOf(const DyalogHost& host, const Scdr& scdr) noexcept
{
    switch (scdr.Type) {
    case TypeNested: return DyalogPointer;
    case TypeCharacter: return host.unicode ? UnicodeCharacterType(scdr) : DyalogAtomic;
    case TypeBoolean: return DyalogBoolean;
    case TypeInteger: return IntegerType(scdr);
    case TypeReal: return RealType(scdr);
    case TypeComplex: return ComplexType(scdr);
    case TypeDecimal: return DyalogDecimal;
    default: return DyalogAtomic;
    }
}

// Throws DomainError for a character that the edition lacks.
void CollectTypes(const DyalogHost& host, const Scdr& scdr, DialectTypes& types, std::int32_t depth)
{
    if (depth > DeepestNesting) throw VTERROR_CODE::SystemLimit;
    if (scdr.Type == TypeCharacter && !host.unicode && !IsInAtomicVector(host, scdr))
        throw VTERROR_CODE::DomainError;
    types.push_back(static_cast<std::uint8_t>(DialectTypeOf(host, scdr)));
    const std::int64_t count = ChildCount(scdr);
    for (std::int64_t i = 0; i < count; ++i)
        CollectTypes(host, *Children(scdr)[i], types, depth + 1);
}

} // namespace

bool SetDialectType(EditContext* context, const Scdr* scdr, DialectTypes& types)
{
    TraceScope trace("dyalog_types.cpp", "SetDialectType");
    if (scdr == nullptr) return true;
    try {
        CollectTypes(HostOf(context), *scdr, types, 1);
        return true;
    } catch (VTERROR_CODE code) {
        return SetErrorCode(context, code);
    }
}

} // namespace vantrel
