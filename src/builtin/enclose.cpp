#include "builtin/results.h"
#include "builtin/structural.h"
#include "entry/trace.h"
#include "model/primitives.h"

namespace vantrel {

ScdrPtr BuiltinEnclose(EditContext* context, const Scdr& argument)
{
    TraceScope trace("builtin.cpp", "BuiltinEnclose");
    if (IsSimple(argument) && argument.Rank == 0) return CopyScdr(context, argument);
    return ResultOf(context, [&] {
        ScdrPtr result = AllocateScdr(context, nullptr, TypeNested, 0, nullptr, false);
        SetChild(*result, 0, CopyScdrInner(context, result.get(), argument));
        return result;
    });
}

} // namespace vantrel
