#include "hosts/local_primitives.h"

#include <algorithm>

#include "builtin/format.h"
#include "builtin/numeric.h"
#include "builtin/structural.h"
#include "entry/trace.h"
#include "model/rebuild.h"

namespace vantrel {
namespace {

struct LocalRow {
    std::int32_t command;
    LocalRoutine routine;
};

template <ScdrPtr (*Routine)(EditContext*, const Scdr&)>
ScdrPtr Monadic(EditContext* context, const Scdr& argument, const Scdr*)
{
    return Routine(context, argument);
}

ScdrPtr Format(EditContext* context, const Scdr& argument, const Scdr*)
{
    // Formatting caches the columns' measures on the node; every node is made writable.
    return BuiltinFormat(context, const_cast<Scdr&>(argument));
}

constexpr LocalRow LocalRows[] = {
    {ActionConvertToCharacter, Format},
    {ActionConvertToNumeric, Monadic<BuiltinCtn>},
    {ActionRavel, Monadic<BuiltinRavel>},
    {ActionFirst, Monadic<BuiltinFirst>},
    {ActionDisclose, Monadic<BuiltinDisclose>},
    {ActionEnclose, Monadic<BuiltinEnclose>},
    {ActionEnlist, Monadic<BuiltinEnlist>},
    {ActionReverse, Monadic<BuiltinReverse>},
    {ActionReverseFirstAxis, Monadic<BuiltinReverseAxis1>},
    {ActionTranspose, BuiltinTranspose},
    {ActionSortAscending, Monadic<BuiltinGradeUp>},
    {ActionSortDescending, Monadic<BuiltinGradeDown>},
};

} // namespace

LocalRoutine FindLocalRoutine(std::int32_t command) noexcept
{
    const auto* row =
        std::find_if(std::begin(LocalRows), std::end(LocalRows),
                     [command](const LocalRow& candidate) { return candidate.command == command; });
    return row != std::end(LocalRows) ? row->routine : nullptr;
}

Scdr* CallLocalPrimitive(EditContext* context, std::int32_t command, const Scdr* argument,
                         const Scdr* leftArgument)
{
    TraceScope trace("local_primitives.cpp", "CallLocalPrimitive");
    ClearHostMessage(AnyHostOf(context));
    SetErrorCode(context, VTERROR_CODE::NoError);
    const LocalRoutine routine = FindLocalRoutine(command);
    if (routine == nullptr || argument == nullptr) {
        SetErrorCode(context, VTERROR_CODE::SystemError);
        return nullptr;
    }
    try {
        return routine(context, *argument, leftArgument).release();
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

} // namespace vantrel
