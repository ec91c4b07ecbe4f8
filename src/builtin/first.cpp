#include "builtin/results.h"
#include "builtin/structural.h"
#include "entry/trace.h"
#include "model/primitives.h"

namespace vantrel {
namespace {

ScdrPtr FirstOfSimple(EditContext* context, const Scdr& argument)
{
    RequireKnownType(argument);
    if (argument.ElementCount > 0) return MakeScalar(context, nullptr, argument, 0);
    return AllocateScdr(context, nullptr, argument.Type, 0, nullptr, true);
}

} // namespace

ScdrPtr BuiltinFirst(EditContext* context, const Scdr& argument)
{
    TraceScope trace("builtin.cpp", "BuiltinFirst");
    return ResultOf(context, [&] {
        ScdrPtr result = IsSimple(argument) ? FirstOfSimple(context, argument)
                                            : CopyScdrInner(context, nullptr, *Children(argument)[0]);
        SetSimplestType(*result);
        return result;
    });
}

} // namespace vantrel
