#include <algorithm>
#include <cmath>
#include <limits>

#include "builtin/results.h"
#include "builtin/structural.h"
#include "entry/trace.h"
#include "model/primitives.h"
#include "model/tree_walk.h"

namespace vantrel {
namespace {

// Calls `visit(leaf, count)` for each simple array inside a nested one, in order, with the number of items that it adds: those of a
// prototype are no items.
template <typename Visit> void ForEachLeaf(const Scdr& root, Visit visit)
{
    const Scdr* holder = &root;
    const Scdr* empty =
        root.ElementCount == 0 ? &root : nullptr; // the outermost empty array around the present node
    std::int64_t index = 0;
    for (;;) {
        if (index < ChildCount(*holder)) {
            const Scdr& child = *Children(*holder)[index++];
            if (IsSimple(child)) {
                visit(child, empty == nullptr ? child.ElementCount : 0);
                continue;
            }
            if (empty == nullptr && child.ElementCount == 0) empty = &child;
            holder = &child;
            index = 0;
            continue;
        }
        if (holder == &root) return;
        if (holder == empty) empty = nullptr;
        const Scdr* const outer = HoldingNode(*holder);
        index = IndexInHolder(*outer, *holder, 0) + 1;
        holder = outer;
    }
}

struct EnlistSurvey {
    std::uint32_t type = TypeNested;
    std::int64_t count = 0;
    bool first = true;
    bool hasIntegers = false;
};

bool CanWiden(std::uint32_t type) noexcept
{
    return type >= TypeBoolean && type <= TypeComplex;
}

void SurveyLeaf(const Scdr& leaf, std::int64_t count, EnlistSurvey& survey)
{
    RequireKnownType(leaf);
    if (survey.first) survey.type = leaf.Type;
    survey.first = false;
    if (count == 0) return;
    if (count > std::numeric_limits<std::int64_t>::max() - survey.count) throw VTERROR_CODE::OutOfMemory;
    survey.count += count;
    survey.hasIntegers = survey.hasIntegers || leaf.Type == TypeInteger;
    if (leaf.Type == survey.type) return;
    const bool widens = CanWiden(leaf.Type) && CanWiden(survey.type);
    survey.type = widens ? std::max(leaf.Type, survey.type) : static_cast<std::uint32_t>(TypeNested);
}

// Whether every integer inside is the same number as a double.
bool IntegersFitReals(const Scdr& argument)
{
    bool fit = true;
    ForEachLeaf(argument, [&fit](const Scdr& leaf, std::int64_t count) {
        if (leaf.Type != TypeInteger || !fit) return;
        constexpr std::int64_t limit = std::int64_t{1} << std::numeric_limits<double>::digits;
        const auto* items = static_cast<const std::int64_t*>(leaf.data);
        fit = std::all_of(items, items + count,
                          [](std::int64_t item) { return item >= -limit && item <= limit; });
    });
    return fit;
}

// The type and number of the items.
EnlistSurvey GetEnlistTypeAndNelm(const Scdr& argument)
{
    EnlistSurvey survey;
    ForEachLeaf(argument,
                [&survey](const Scdr& leaf, std::int64_t count) { SurveyLeaf(leaf, count, survey); });
    const bool real = survey.type == TypeReal || survey.type == TypeComplex;
    if (real && survey.hasIntegers && !IntegersFitReals(argument)) survey.type = TypeNested;
    return survey;
}

void BuildEnlistResult(EditContext* context, const Scdr& argument, Scdr& result)
{
    std::int64_t filled = 0;
    ForEachLeaf(argument, [&](const Scdr& leaf, std::int64_t count) {
        if (IsSimple(result)) {
            if (count > 0) CopyItems({result.Type, result.data, filled}, {leaf.Type, leaf.data, 0}, count);
            filled += count;
            return;
        }
        for (std::int64_t i = 0; i < count; ++i)
            SetChild(result, filled++, MakeScalar(context, &result, leaf, i));
    });
}

ScdrPtr EnlistItems(EditContext* context, const Scdr& argument)
{
    const EnlistSurvey survey = GetEnlistTypeAndNelm(argument);
    // Bits are set within bytes, so those start from zero.
    const bool fill = survey.type == TypeBoolean;
    ScdrPtr result = AllocateScdr(context, nullptr, survey.type, 1, &survey.count, fill);
    if (survey.count > 0) BuildEnlistResult(context, argument, *result);
    SetSimplestType(*result);
    return result;
}

} // namespace

ScdrPtr BuiltinEnlist(EditContext* context, const Scdr& argument)
{
    TraceScope trace("builtin.cpp", "BuiltinEnlist");
    if (IsSimple(argument)) return BuiltinRavel(context, argument);
    return ResultOf(context, [&] { return EnlistItems(context, argument); });
}

} // namespace vantrel
