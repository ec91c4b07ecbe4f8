// Primitive functions: some are computed here, the interpreter computes the others.
#include <algorithm>

#include "entry/trace.h"
#include "hosts/dyalog_host.h"
#include "hosts/item_loops.h"
#include "hosts/local_primitives.h"
#include "model/rebuild.h"

namespace vantrel {
namespace {

constexpr std::int64_t DomainErrorNumber = 11; // the interpreter's

struct PrimitiveRow {
    std::int32_t command;
    std::int32_t interpreterCode;
};

constexpr PrimitiveRow Primitives[] = {
    {ActionConvertToCharacter, 48},
    {ActionConvertToNumeric, 145},
    {ActionRavel, 33},
    {ActionFirst, 36},
    {ActionDisclose, 51},
    {ActionEnclose, 50},
    {ActionEnlist, 44},
    {ActionReverse, 42},
    {ActionReverseFirstAxis, 43},
    {ActionTranspose, 41},
    {ActionSortAscending, 40},
    {ActionSortDescending, 39},
};

const PrimitiveRow* FindPrimitive(std::int32_t command) noexcept
{
    const auto* row =
        std::find_if(std::begin(Primitives), std::end(Primitives),
                     [command](const PrimitiveRow& candidate) { return candidate.command == command; });
    return row != std::end(Primitives) ? row : nullptr;
}

ScdrPtr RunPrimitive(EditContext* context, std::int32_t code, Localp* argument, Localp* result)
{
    const std::int64_t status =
        ServiceOf(HostOf(context), dyalog::CallPrimitive)(code, 3, 0, argument, 0, result, 1);
    if (!CheckDyalogCallbackResult(context, status)) return nullptr;
    return ScdrPtr(ObjectToScdr(context, result));
}

// Throws OutOfMemory.
ScdrPtr AskInterpreter(EditContext* context, std::int32_t code, const Scdr* scdr)
{
    const OwnedLocalp argument(context, ScdrToObject(context, scdr));
    if (argument.get() == nullptr) return nullptr;
    const OwnedLocalp result(context, LocalpAllocate(HostOf(context)));
    return RunPrimitive(context, code, argument.get(), result.get());
}

bool IsNonzeroItem(const Scdr& scdr, std::int64_t index) noexcept
{
    switch (scdr.Type) {
    case TypeBoolean: return GetBit(scdr.data, index);
    case TypeInteger: return static_cast<const std::int64_t*>(scdr.data)[index] != 0;
    case TypeReal: return static_cast<const double*>(scdr.data)[index] != 0.0;
    default: return false;
    }
}

bool SaysAllValid(const Scdr& validity) noexcept
{
    for (std::int64_t i = 0; i < validity.ElementCount; ++i) {
        if (!IsNonzeroItem(validity, i)) return false;
    }
    return true;
}

// The interpreter answers with the validity of each number beside the numbers.
ScdrPtr TakeValidNumbers(EditContext* context, const Scdr& answer)
{
    if (answer.Type != TypeNested || answer.ElementCount != 2) {
        SetErrorCode(context, VTERROR_CODE::SystemError);
        return nullptr;
    }
    if (SaysAllValid(*Children(answer)[0])) return CopyScdr(context, *Children(answer)[1]);
    // Leaves the code and the interpreter's own words for a number that is none.
    CheckDyalogCallbackResult(context, DomainErrorNumber);
    return nullptr;
}

// The interpreter knows best what it reads as a number, and how it shows what we have no format for.
bool IsComputedHere(std::int32_t command, const Scdr& argument) noexcept
{
    if (command == ActionConvertToNumeric) return false;
    return command != ActionConvertToCharacter ||
           (argument.Type != TypeNested && argument.Type != TypeDecimal);
}

ScdrPtr ComputePrimitive(EditContext* context, const PrimitiveRow& row, const Scdr& argument,
                         const Scdr* leftArgument)
{
    if (IsComputedHere(row.command, argument)) {
        ScdrPtr result = FindLocalRoutine(row.command)(context, argument, leftArgument);
        // Null without an error declines the work.
        if (result != nullptr || HasError(context)) return result;
    }
    ScdrPtr answer = AskInterpreter(context, row.interpreterCode, &argument);
    if (answer == nullptr || row.command != ActionConvertToNumeric) return answer;
    return TakeValidNumbers(context, *answer);
}

} // namespace

Scdr* CallPrimitiveReturningScdr(EditContext* context, std::int32_t primitive, const Scdr* argument,
                                 const Scdr* leftArgument)
{
    TraceScope trace("dyalog_primitives.cpp", "CallPrimitiveReturningScdr");
    ClearDyalogMessage(HostOf(context));
    SetErrorCode(context, VTERROR_CODE::NoError);
    const PrimitiveRow* row = FindPrimitive(primitive);
    if (row == nullptr || argument == nullptr) {
        SetErrorCode(context, VTERROR_CODE::SystemError);
        return nullptr;
    }
    try {
        return ComputePrimitive(context, *row, *argument, leftArgument).release();
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

} // namespace vantrel
