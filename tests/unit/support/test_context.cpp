#include "unit/support/test_context.h"

#include <limits>

#include "builtin/numeric.h"
#include "builtin/structural.h"
#include "model/rebuild.h"
#include "unit/support/trees.h"

namespace vantrel::test {
namespace {

TestContext* g_newest = nullptr;

Scdr* AnswerWithBuiltins(EditContext* context, std::int32_t primitive, const Scdr* argument)
{
    switch (primitive) {
    case ActionConvertToNumeric: return BuiltinCtn(context, *argument).release();
    case ActionDisclose: return BuiltinDisclose(context, *argument).release();
    default: return nullptr;
    }
}

Scdr* CallPrimitive(EditContext* context, std::int32_t primitive, const Scdr* argument, const Scdr*)
{
    g_newest->calls.push_back({primitive, DumpTree(*argument)});
    return g_newest->primitive(context, primitive, argument);
}

} // namespace

TestContext::TestContext() : primitive(AnswerWithBuiltins), previous_(g_newest)
{
    g_newest = this;
    langEnv.DialectKind = Dialect::Dyalog;
    langEnv.Operations.CallPrimitiveReturningScdr = CallPrimitive;
    langEnv.LongestAxis = std::numeric_limits<std::int64_t>::max();
    langEnv.HighestRank = 15;
    langEnv.MostElements = std::numeric_limits<std::int64_t>::max();
    langEnv.Capabilities = 0xB6;
    langEnv.ViewCapabilities = ViewCapabilityHighMinus | 0x20;
    context.langEnv = &langEnv;
    context.indexOrigin = 1;
}

TestContext::~TestContext()
{
    g_newest = previous_;
}

} // namespace vantrel::test
