#include <limits>

#include "entry/trace.h"
#include "model/scdr.h"

namespace vantrel {
namespace {

constexpr std::size_t BytesOfType(std::uint32_t type) noexcept
{
    switch (type) {
    case TypeCharacter: return sizeof(char16_t);
    case TypeInteger: return sizeof(std::int64_t);
    case TypeReal: return sizeof(double);
    case TypeComplex: return 2 * sizeof(double);
    case TypeDecimal: return 16;
    default: return 0;
    }
}

} // namespace

bool IsValidType(std::uint32_t type) noexcept
{
    return type == TypeNested || type == TypeCharacter || (type >= TypeBoolean && type <= TypeDecimal);
}

std::size_t DataSize(std::uint32_t type, std::int64_t elementCount)
{
    TraceScope trace("scdr_types.cpp", "DataSize");
    if (type == TypeNested) return CheckedMultiply(elementCount > 0 ? elementCount : 1, sizeof(void*));
    if (type == TypeBoolean) {
        const std::size_t bits = CheckedMultiply(elementCount, 1);
        return bits / 8 + (bits % 8 != 0 ? 1 : 0);
    }
    return CheckedMultiply(elementCount, BytesOfType(type));
}

const char16_t* TypeName(Dialect dialect, std::uint32_t type) noexcept
{
    TraceScope trace("scdr_types.cpp", "TypeName");
    switch (type) {
    case TypeNested: return dialect == Dialect::Matlab ? u"Cells" : u"General";
    case TypeCharacter: return u"Character";
    case TypeBoolean: return u"Boolean";
    case TypeInteger: return u"Integer";
    case TypeReal: return u"Real";
    case TypeComplex: return u"Complex";
    case TypeDecimal: return u"Decimal";
    default: return u"";
    }
}

std::int64_t Rows(const Scdr& node) noexcept
{
    return node.Rank >= 2 ? node.Shape[node.Rank - 2] : 1;
}

std::int64_t Columns(const Scdr& node) noexcept
{
    return node.Rank >= 1 ? node.Shape[node.Rank - 1] : 1;
}

bool CanLoseItem(const Scdr& array) noexcept
{
    if (array.ElementCount == 0) return false;
    return array.Rank < 2 || (array.Rank == 2 && (Rows(array) < 2 || Columns(array) < 2));
}

std::int64_t RowsOfAllPlanes(const Scdr& node) noexcept
{
    // An axis without length makes the product 0 however long the axes before it are.
    constexpr std::int64_t Most = std::numeric_limits<std::int64_t>::max();
    std::int64_t rows = 1;
    bool overflow = false;
    for (std::int32_t axis = 0; axis < node.Rank - 1; ++axis) {
        const std::int64_t length = node.Shape[axis];
        if (length == 0) return 0;
        overflow = overflow || rows > Most / length;
        if (!overflow) rows *= length;
    }
    return overflow ? -1 : rows;
}

std::int64_t PlaneCount(const Scdr& node) noexcept
{
    return node.Rank >= 3 ? node.extra->PlaneCount : 1;
}

std::int64_t CurrentPlane(const Scdr& node) noexcept
{
    return node.Rank >= 3 ? node.extra->CurrentPlane : 0;
}

} // namespace vantrel
