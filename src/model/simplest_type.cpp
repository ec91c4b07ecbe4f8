#include <algorithm>
#include <cmath>

#include "entry/trace.h"
#include "model/primitives.h"
#include "model/tree_walk.h"
#include "model/whole_numbers.h"

namespace vantrel {
namespace {

std::int32_t SimplestOfIntegers(const std::int64_t* values, std::int64_t count) noexcept
{
    const auto isBit = [](std::int64_t value) { return value == 0 || value == 1; };
    return std::all_of(values, values + count, isBit) ? TypeBoolean : TypeInteger;
}

std::int32_t SimplestOfReals(const double* values, std::int64_t count) noexcept
{
    switch (KindOfReals(values, count)) {
    case NumberKind::Bits: return TypeBoolean;
    case NumberKind::Whole: return TypeInteger;
    default: return TypeReal;
    }
}

// A real part out of range settles the answer at once, even where a later item is truly complex.
std::int32_t SimplestOfComplexes(const double* pairs, std::int64_t count) noexcept
{
    std::int32_t simplest = TypeBoolean;
    for (std::int64_t i = 0; i < count; ++i) {
        const double real = pairs[2 * i];
        const double imaginary = pairs[2 * i + 1];
        if (imaginary != 0) return TypeComplex; // also true for NaN
        if (!IsInIntegerRange(real) && !std::isnan(real)) return TypeReal;
        const NumberKind kind = KindOfItem(real);
        if (kind == NumberKind::Bits) continue;
        simplest = std::max<std::int32_t>(simplest, kind == NumberKind::Whole ? TypeInteger : TypeReal);
    }
    return simplest;
}

std::int32_t SimplestType(const Scdr& node) noexcept
{
    switch (node.Type) {
    case TypeInteger:
        return SimplestOfIntegers(static_cast<const std::int64_t*>(node.data), node.ElementCount);
    case TypeReal: return SimplestOfReals(static_cast<const double*>(node.data), node.ElementCount);
    case TypeComplex: return SimplestOfComplexes(static_cast<const double*>(node.data), node.ElementCount);
    default: return IsValidType(node.Type) ? static_cast<std::int32_t>(node.Type) : -1;
    }
}

} // namespace

void SetSimplestType(Scdr& node) noexcept
{
    TraceScope trace("simplest_type.cpp", "SetSimplestType");
    ForEachNode(node, [](Scdr& visited) { visited.SimplestType = SimplestType(visited); });
}

} // namespace vantrel
