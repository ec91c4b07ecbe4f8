#include <cmath>
#include <cstring>

#include "entry/trace.h"
#include "model/primitives.h"

namespace vantrel {
namespace {

// The major cells of an array.
struct Cells {
    std::int64_t count;
    std::int64_t items; // in each
};

std::int64_t WholeNumber(double value)
{
    constexpr double limit = 9223372036854775808.0;
    const bool whole = value >= -limit && value < limit && std::floor(value) == value;
    if (!whole) throw VTERROR_CODE::DomainError;
    return static_cast<std::int64_t>(value);
}

std::int64_t GradeNumber(const Scdr& grade, std::int64_t index)
{
    const auto* reals = static_cast<const double*>(grade.data);
    switch (grade.Type) {
    case TypeBoolean: return GetBit(grade.data, index) ? 1 : 0;
    case TypeInteger: return static_cast<const std::int64_t*>(grade.data)[index];
    case TypeReal: return WholeNumber(reals[index]);
    default:                                                              // Complex
        if (reals[2 * index + 1] != 0.0) throw VTERROR_CODE::DomainError; // also true for NaN
        return WholeNumber(reals[2 * index]);
    }
}

bool IsNumeric(const Scdr& grade) noexcept
{
    return grade.Type >= TypeBoolean && grade.Type <= TypeComplex;
}

// The numbers of the major cells, counted from 0 and all within the array. The whole grade has to be numbers, also where it is longer
// than needed.
OwnedArray<std::int64_t> PlacesOf(const Scdr& grade, std::int64_t cells, std::int64_t indexOrigin)
{
    if (!IsNumeric(grade)) throw VTERROR_CODE::DomainError;
    if (grade.ElementCount < cells) throw VTERROR_CODE::LengthError;
    auto places = AllocateArray<std::int64_t>(grade.ElementCount);
    for (std::int64_t i = 0; i < grade.ElementCount; ++i)
        places.get()[i] = GradeNumber(grade, i);
    for (std::int64_t i = 0; i < cells; ++i) {
        std::int64_t& place = places.get()[i];
        if (place < indexOrigin || place - indexOrigin >= cells) throw VTERROR_CODE::IndexError;
        place -= indexOrigin;
    }
    return places;
}

// Cells of `bytes` bytes.
void GatherBytes(void* to, const void* from, const std::int64_t* places, std::int64_t count,
                 std::size_t bytes) noexcept
{
    auto* target = static_cast<std::byte*>(to);
    const auto* const source = static_cast<const std::byte*>(from);
    if (bytes == sizeof(std::uint64_t)) { // a copy of known size costs no call
        for (std::int64_t i = 0; i < count; ++i)
            std::memcpy(target + 8 * i, source + 8 * places[i], 8);
        return;
    }
    for (std::int64_t i = 0; i < count; ++i, target += bytes)
        std::memcpy(target, source + static_cast<std::size_t>(places[i]) * bytes, bytes);
}

// Children are copied one by one, so that a grade that names a cell twice is no harm.
void GatherChildren(EditContext* context, const Scdr& node, Scdr& result, const std::int64_t* places,
                    std::int64_t cell)
{
    for (std::int64_t i = 0; i < result.ElementCount; ++i) {
        const Scdr& child = *Children(node)[places[i / cell] * cell + i % cell];
        SetChild(result, i, CopyScdrInner(context, &result, child));
    }
}

ScdrPtr SortCells(EditContext* context, const Scdr& node, const Scdr& grade, std::int64_t indexOrigin)
{
    const Cells cells = {node.Shape[0], node.ElementCount / node.Shape[0]};
    const auto places = PlacesOf(grade, cells.count, indexOrigin);
    ScdrPtr result = CopyScdrShell(context, nullptr, node);
    if (node.Type == TypeNested) {
        GatherChildren(context, node, *result, places.get(), cells.items);
    } else if (node.Type == TypeBoolean) {
        for (std::int64_t i = 0; i < cells.count; ++i)
            CopyBits(result->data, i * cells.items, node.data, places.get()[i] * cells.items, cells.items);
    } else {
        GatherBytes(result->data, node.data, places.get(), cells.count, DataSize(node.Type, cells.items));
    }
    return result;
}

} // namespace

ScdrPtr Sort(EditContext* context, const Scdr& node, ScdrPtr grade, std::int64_t indexOrigin)
{
    TraceScope trace("sort.cpp", "Sort");
    try {
        if (node.Rank == 0 || node.ElementCount == 0) return CopyScdrInner(context, nullptr, node);
        return SortCells(context, node, *grade, indexOrigin);
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

} // namespace vantrel
