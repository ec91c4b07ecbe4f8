#include <algorithm>

#include "builtin/results.h"
#include "builtin/structural.h"
#include "entry/trace.h"
#include "model/primitives.h"

namespace vantrel {
namespace {

// What one walk over the items finds out; nodes are scattered in memory, so they are visited as seldom as
// possible.
struct ItemSurvey {
    std::uint32_t type = TypeNested; // of the result
    std::int32_t rank = 0;           // of the items that are not scalars
    OwnedArray<std::int64_t> shape;  // the longest of each axis; `rank` entries
    bool allSimpleScalars = true;
    bool equalShapes = true; // no item needs padding
    bool widensToDecimal = false;
};

std::uint32_t MergeTypes(std::uint32_t type, std::uint32_t itemType, std::uint32_t firstType) noexcept
{
    if (type == TypeNested || itemType == type) return type;
    if (itemType == TypeNested || itemType == TypeCharacter || firstType == TypeCharacter) return TypeNested;
    return std::max(type, itemType);
}

void SurveyShape(const Scdr& item, bool first, ItemSurvey& survey)
{
    if (item.Rank == 0) {
        survey.equalShapes = survey.equalShapes && survey.rank == 0;
        return;
    }
    if (survey.rank == 0) {
        survey.rank = item.Rank;
        survey.shape = AllocateArray<std::int64_t>(item.Rank);
        survey.equalShapes = first;
        std::fill_n(survey.shape.get(), item.Rank, 0);
    }
    if (item.Rank != survey.rank) throw VTERROR_CODE::RankError;
    for (std::int32_t axis = 0; axis < item.Rank; ++axis) {
        std::int64_t& longest = survey.shape[static_cast<std::size_t>(axis)];
        if (first) longest = item.Shape[axis];
        survey.equalShapes = survey.equalShapes && longest == item.Shape[axis];
        longest = std::max(longest, item.Shape[axis]);
    }
}

// A scalar needs room along every axis, also where all other items are empty.
void MakeRoomForScalars(ItemSurvey& survey)
{
    for (std::int32_t axis = 0; axis < survey.rank; ++axis) {
        std::int64_t& longest = survey.shape[static_cast<std::size_t>(axis)];
        longest = std::max<std::int64_t>(longest, 1);
    }
}

ItemSurvey SurveyItems(const Scdr& argument)
{
    ItemSurvey survey;
    const std::uint32_t firstType = Children(argument)[0]->Type;
    survey.type = firstType;
    bool hasScalar = false;
    bool hasLesserNumber = false;
    for (std::int64_t i = 0; i < ChildCount(argument); ++i) {
        const Scdr& item = *Children(argument)[i];
        if (!IsValidType(item.Type)) throw VTERROR_CODE::SystemError;
        survey.allSimpleScalars = survey.allSimpleScalars && IsSimple(item) && item.Rank == 0;
        survey.type = MergeTypes(survey.type, item.Type, firstType);
        hasLesserNumber = hasLesserNumber || (item.Type >= TypeBoolean && item.Type <= TypeComplex);
        hasScalar = hasScalar || item.Rank == 0;
        SurveyShape(item, i == 0, survey);
    }
    if (hasScalar) MakeRoomForScalars(survey);
    survey.widensToDecimal = survey.type == TypeDecimal && hasLesserNumber;
    return survey;
}

// Calls `copy(itemFirst, cellFirst, count)` for each run of the item's elements that lies in one piece in the
// padded cell as well.
template <typename Copy> void ForRuns(const Scdr& item, const ItemSurvey& survey, Copy copy)
{
    if (item.ElementCount == 0) return;
    std::int32_t axis = item.Rank - 1; // the first of the axes that a run covers
    while (axis > 0 && item.Shape[axis] == survey.shape[static_cast<std::size_t>(axis)])
        --axis;
    std::int64_t run = 1;
    std::int64_t cellRun = 1; // units of the cell that the axes of a run take
    for (std::int32_t k = std::max(axis, 0); k < item.Rank; ++k) {
        run *= item.Shape[k];
        cellRun *= survey.shape[static_cast<std::size_t>(k)];
    }
    for (std::int64_t first = 0; first < item.ElementCount; first += run) {
        std::int64_t cellFirst = 0;
        std::int64_t stride = cellRun;
        std::int64_t rest = first / run;
        for (std::int32_t k = axis - 1; k >= 0; --k) {
            cellFirst += rest % item.Shape[k] * stride;
            stride *= survey.shape[static_cast<std::size_t>(k)];
            rest /= item.Shape[k];
        }
        copy(first, cellFirst, run);
    }
}

void FillSimple(const Scdr& argument, const ItemSurvey& survey, std::int64_t cell, Scdr& result)
{
    void* const data = WritableData(result);
    for (std::int64_t k = 0; k < argument.ElementCount; ++k) {
        const Scdr& item = *Children(argument)[k];
        ForRuns(item, survey, [&](std::int64_t first, std::int64_t cellFirst, std::int64_t count) {
            CopyItems({survey.type, data, k * cell + cellFirst}, {item.Type, item.data, first}, count);
        });
    }
}

// Element `index` of an item as a node of its own.
ScdrPtr MakeElement(EditContext* context, Scdr& parent, const Scdr& item, std::int64_t index)
{
    return IsSimple(item) ? MakeScalar(context, &parent, item, index)
                          : CopyScdrInner(context, &parent, *Children(item)[index]);
}

void FillNested(EditContext* context, const Scdr& argument, const ItemSurvey& survey, std::int64_t cell,
                Scdr& result)
{
    if (result.ElementCount == 0) {
        SetChild(result, 0, Prototype(context, &result, *Children(argument)[0]));
        return;
    }
    for (std::int64_t k = 0; k < argument.ElementCount; ++k) {
        const Scdr& item = *Children(argument)[k];
        ForRuns(item, survey, [&](std::int64_t first, std::int64_t cellFirst, std::int64_t count) {
            for (std::int64_t i = 0; i < count; ++i) {
                SetChild(result, k * cell + cellFirst + i, MakeElement(context, result, item, first + i));
            }
        });
        for (std::int64_t i = k * cell; i < (k + 1) * cell; ++i) {
            if (Children(result)[i] == nullptr) SetChild(result, i, Prototype(context, &result, item));
        }
    }
}

ScdrPtr AllocateDisclosed(EditContext* context, const Scdr& argument, const ItemSurvey& survey)
{
    const std::int32_t rank = argument.Rank + survey.rank;
    const auto shape = AllocateArray<std::int64_t>(rank);
    std::copy_n(argument.Shape, argument.Rank, shape.get());
    std::copy_n(survey.shape.get(), survey.rank, shape.get() + argument.Rank);
    // Bits are set within bytes, so those start from zero even where every one is written.
    const bool fill = !survey.equalShapes || survey.type == TypeBoolean;
    return AllocateScdr(context, nullptr, survey.type, rank, shape.get(), fill);
}

ScdrPtr DiscloseItems(EditContext* context, const Scdr& argument)
{
    const ItemSurvey survey = SurveyItems(argument);
    if (survey.allSimpleScalars) return CopyScdrInner(context, nullptr, argument);
    if (survey.widensToDecimal) return nullptr;
    ScdrPtr result = AllocateDisclosed(context, argument, survey);
    const std::int64_t cell = argument.ElementCount > 0 ? result->ElementCount / argument.ElementCount : 0;
    if (survey.type == TypeNested) {
        FillNested(context, argument, survey, cell, *result);
    } else {
        FillSimple(argument, survey, cell, *result);
    }
    SetSimplestType(*result);
    return result;
}

} // namespace

ScdrPtr BuiltinDisclose(EditContext* context, const Scdr& argument)
{
    TraceScope trace("builtin.cpp", "BuiltinDisclose");
    if (IsSimple(argument)) return CopyScdr(context, argument);
    if (argument.Rank == 0) return CopyScdr(context, *Children(argument)[0]);
    return ResultOf(context, [&] { return DiscloseItems(context, argument); });
}

} // namespace vantrel
