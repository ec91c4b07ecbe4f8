// Primitive functions: some are computed here, the interpreter computes the others.
#include <algorithm>

#include "builtin/format.h"
#include "builtin/structural.h"
#include "entry/trace.h"
#include "hosts/dyalog_host.h"
#include "hosts/item_loops.h"
#include "model/rebuild.h"

namespace vantrel {
namespace {

constexpr std::int64_t DomainErrorNumber = 11; // the interpreter's

using LocalRoutine = ScdrPtr (*)(EditContext* context, const Scdr& argument);

struct PrimitiveRow {
    std::int32_t command;
    LocalRoutine local; // null: always the interpreter
    std::int32_t interpreterCode;
};

ScdrPtr FormatHere(EditContext* context, const Scdr& argument)
{
    if (argument.Type == TypeNested || argument.Type == TypeDecimal) return nullptr;
    // Formatting caches the columns' measures on the node; every node is made writable.
    return BuiltinFormat(context, const_cast<Scdr&>(argument));
}

constexpr PrimitiveRow Primitives[] = {
    {ActionConvertToCharacter, FormatHere, 48},
    {ActionConvertToNumeric, nullptr, 145},
    {ActionRavel, nullptr, 33},
    {ActionFirst, nullptr, 36},
    {ActionDisclose, BuiltinDisclose, 51},
    {ActionEnclose, nullptr, 50},
    {ActionEnlist, nullptr, 44},
    {ActionReverse, nullptr, 42},
    {ActionReverseFirstAxis, nullptr, 43},
    {ActionTranspose, nullptr, 41},
    {ActionSortAscending, nullptr, 40},
    {ActionSortDescending, nullptr, 39},
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
    HostObject argument = ScdrToObject(context, scdr);
    if (argument == nullptr) return nullptr;
    struct Holder {
        EditContext* context;
        HostObject object;
        ~Holder() { FreeObject(context, object); }
    };
    const Holder argumentHolder{context, argument};
    const Holder resultHolder{context, LocalpAllocate(HostOf(context))};
    return RunPrimitive(context, code, static_cast<Localp*>(argument),
                        static_cast<Localp*>(resultHolder.object));
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

ScdrPtr ComputePrimitive(EditContext* context, const PrimitiveRow& row, const Scdr& argument)
{
    if (row.local != nullptr) {
        ScdrPtr result = row.local(context, argument);
        // Null without an error declines the work.
        if (result != nullptr || HasError(context)) return result;
    }
    ScdrPtr answer = AskInterpreter(context, row.interpreterCode, &argument);
    if (answer == nullptr || row.command != ActionConvertToNumeric) return answer;
    return TakeValidNumbers(context, *answer);
}

} // namespace

Scdr* CallPrimitiveReturningScdr(EditContext* context, std::int32_t primitive, const Scdr* argument,
                                 const Scdr*)
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
        return ComputePrimitive(context, *row, *argument).release();
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

} // namespace vantrel
