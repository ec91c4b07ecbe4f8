#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "builtin/results.h"
#include "builtin/structural.h"
#include "entry/trace.h"
#include "model/primitives.h"

namespace vantrel {
namespace {

constexpr std::uint64_t TopBit = 0x8000000000000000;

// Keys stand to each other as unsigned numbers as the items do by value.
std::uint64_t KeyOf(char16_t item) noexcept
{
    return item;
}

std::uint64_t KeyOf(std::int64_t item) noexcept
{
    return static_cast<std::uint64_t>(item) ^ TopBit;
}

// Both zeros are one value, and everything that is not a number is one value behind all numbers.
std::uint64_t KeyOf(double item) noexcept
{
    if (std::isnan(item)) return std::numeric_limits<std::uint64_t>::max();
    const auto bits = std::bit_cast<std::uint64_t>(item + 0.0);
    return (bits & TopBit) != 0 ? ~bits : bits | TopBit;
}

template <typename Item> struct ItemKeys {
    const Item* items;
    std::uint64_t operator()(std::int64_t index) const noexcept { return KeyOf(items[index]); }
};

struct BitKeys {
    const void* bits;
    std::uint64_t operator()(std::int64_t index) const noexcept { return GetBit(bits, index) ? 1 : 0; }
};

// A major cell: the key of its first item, which mostly decides and stands beside the number that is moved, and its place.
struct KeyedCell {
    std::uint64_t key;
    std::int64_t place;
};

// Orders equal cells by place, so that the order is the same however the sort works.
template <typename Keys> struct CellLess {
    Keys keys;
    std::int64_t cell;
    bool operator()(const KeyedCell& a, const KeyedCell& b) const noexcept
    {
        if (a.key != b.key) return a.key < b.key;
        for (std::int64_t i = 1; i < cell; ++i) {
            const std::uint64_t left = keys(a.place * cell + i);
            const std::uint64_t right = keys(b.place * cell + i);
            if (left != right) return left < right;
        }
        return a.place < b.place;
    }
};

template <typename Keys>
void GradeCells(Keys keys, std::int64_t count, std::int64_t cell, std::int64_t origin, std::int64_t* grade)
{
    const OwnedArray<KeyedCell> cells = AllocateArray<KeyedCell>(count);
    KeyedCell* const first = cells.get();
    for (std::int64_t i = 0; i < count; ++i)
        first[i] = {keys(i * cell), i};
    const CellLess<Keys> less{keys, cell};
    if (!std::is_sorted(first, first + count, less)) std::sort(first, first + count, less);
    for (std::int64_t i = 0; i < count; ++i)
        grade[i] = first[i].place + origin;
}

void GradeInto(const Scdr& argument, std::int64_t origin, Scdr& result)
{
    auto* const grade = static_cast<std::int64_t*>(result.data);
    const std::int64_t count = result.ElementCount;
    const std::int64_t cell = argument.ElementCount / count;
    const auto gradeItems = [&]<typename Item>(const Item* items) {
        GradeCells(ItemKeys<Item>{items}, count, cell, origin, grade);
    };
    switch (argument.Type) {
    case TypeCharacter: gradeItems(static_cast<const char16_t*>(argument.data)); return;
    case TypeInteger: gradeItems(static_cast<const std::int64_t*>(argument.data)); return;
    case TypeReal: gradeItems(static_cast<const double*>(argument.data)); return;
    default: GradeCells(BitKeys{argument.data}, count, cell, origin, grade); return;
    }
}

// A vector has no axis names, so none are taken over from the first axis.
ScdrPtr GradeArray(EditContext* context, const Scdr& argument)
{
    if (argument.Rank == 0 || argument.ElementCount == 0) return CopyScdrInner(context, nullptr, argument);
    ScdrPtr result = AllocateScdr(context, nullptr, TypeInteger, 1, argument.Shape, false);
    GradeInto(argument, context->indexOrigin, *result);
    SetSimplestType(*result);
    return result;
}

// Null where arrays of the type are sorted or the type is unknown.
const char16_t* SortingRefusal(std::uint32_t type) noexcept
{
    switch (type) {
    case TypeNested: return u"Sorting nested arrays is not supported";
    case TypeComplex: return u"Sorting complex arrays is not supported";
    case TypeDecimal: return u"Sorting decimal arrays is not supported";
    default: return nullptr;
    }
}

} // namespace

ScdrPtr BuiltinGradeUp(EditContext* context, const Scdr& argument)
{
    TraceScope trace("builtin.cpp", "BuiltinGradeUp");
    if (const char16_t* const refusal = SortingRefusal(argument.Type)) {
        context->langEnv->ErrorDetail = refusal;
        SetErrorCode(context, VTERROR_CODE::DomainError);
        return nullptr;
    }
    return ResultOf(context, [&] {
        RequireKnownType(argument);
        return GradeArray(context, argument);
    });
}

ScdrPtr BuiltinGradeDown(EditContext* context, const Scdr& argument)
{
    TraceScope trace("builtin.cpp", "BuiltinGradeDown");
    const ScdrPtr grade = BuiltinGradeUp(context, argument);
    return grade != nullptr ? BuiltinReverse(context, *grade) : nullptr;
}

} // namespace vantrel
