#include "view/busy.h"

#include "entry/trace.h"

namespace vantrel {

void ForgetInterrupt(View& view) noexcept
{
    TraceScope trace("busy.cpp", "ForgetInterrupt");
    std::uint8_t& capabilities = view.context->langEnv->Capabilities;
    if ((capabilities & CapabilityInterruptOrClose) == 0) return;
    capabilities = static_cast<std::uint8_t>(capabilities & ~CapabilityInterruptOrClose);
    view.effects.invalidate(view);
}

} // namespace vantrel
