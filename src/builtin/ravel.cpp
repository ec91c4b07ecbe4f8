#include "builtin/results.h"
#include "builtin/structural.h"
#include "entry/trace.h"

namespace vantrel {
namespace {

void ClearFlag(Scdr& node, ScdrFlag flag) noexcept
{
    node.Flags = static_cast<std::uint8_t>(node.Flags & ~flag);
}

} // namespace

ScdrPtr BuiltinRavel(EditContext* context, const Scdr& argument)
{
    TraceScope trace("builtin.cpp", "BuiltinRavel");
    return ResultOf(context, [&] {
        ScdrPtr result = CopyScdrInner(context, nullptr, argument);
        if (argument.Rank != 1) SetShape(context, *result, 1, &argument.ElementCount);
        if (argument.Rank >= 2) ClearFlag(*result, FlagStructure);
        for (std::int64_t i = 0; i < ChildCount(*result); ++i)
            ClearFlag(*Children(*result)[i], FlagKeptSize);
        return result;
    });
}

} // namespace vantrel
