// The library's doors for the Dyalog interpreter. What happens behind them is portable.
#include "hosts/dyalog_host.h"
#include "hosts/win/host_platform.h"

namespace vantrel {
namespace {

void RunExternalFunction(Localp* argument, DyalogBlock** resultSlot, const char16_t* title) noexcept
{
    DyalogHost& host = TheDyalogHost();
    host.platform = &WindowsHostPlatform();
    ExternalFunction(host, argument, resultSlot, title);
}

} // namespace
} // namespace vantrel

extern "C" {

std::int64_t DyalogGetInterpreterFunctions(const std::int64_t* table) noexcept
{
    return vantrel::SetInterpreterTable(vantrel::TheDyalogHost(), table);
}

std::int64_t DyalogEditArray(vantrel::Localp* argument, vantrel::DyalogBlock** resultSlot) noexcept
{
    vantrel::RunExternalFunction(argument, resultSlot, nullptr);
    return 0;
}

std::int64_t DyalogEditArrayTitle(vantrel::Localp* argument, vantrel::DyalogBlock** resultSlot,
                                  const char16_t* title) noexcept
{
    vantrel::RunExternalFunction(argument, resultSlot, title);
    return 0;
}

} // extern "C"
