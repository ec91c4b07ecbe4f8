#include "builtin/results.h"
#include "builtin/structural.h"
#include "entry/trace.h"

namespace vantrel {

ScdrPtr BuiltinRavel(EditContext* context, const Scdr& argument)
{
    TraceScope trace("builtin.cpp", "BuiltinRavel");
    return ResultOf(context, [&] {
        ScdrPtr result = CopyScdrInner(context, nullptr, argument);
        if (argument.Rank != 1) SetShape(context, *result, 1, &argument.ElementCount);
        if (argument.Rank >= 2) ClearFlags(*result, FlagStructure);
        for (std::int64_t i = 0; i < ChildCount(*result); ++i)
            ClearFlags(*Children(*result)[i], FlagKeptSize);
        return result;
    });
}

} // namespace vantrel
