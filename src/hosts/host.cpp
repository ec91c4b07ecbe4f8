#include "hosts/host.h"

#include <utility>

#include "entry/trace.h"

namespace vantrel {

bool AcquireEditor(Host& host)
{
    TraceScope trace("host.cpp", "AcquireEditor");
    return ++host.users > 1 || host.platform->registerWindows();
}

void ReleaseEditor(Host& host) noexcept
{
    TraceScope trace("host.cpp", "ReleaseEditor");
    if (--host.users > 0) return;
    if (host.langEnv.PendingBufferInUse != 0) FreeBytes(std::exchange(host.langEnv.PendingBuffer, nullptr));
    host.langEnv.PendingBufferInUse = 0;
    host.platform->unregisterWindows();
}

void SetHostMessage(Host& host, VTERROR_CODE code, const char16_t* text) noexcept
{
    host.ownedMessage.reset();
    host.messageCode = code;
    host.message = text;
    host.langEnv.ErrorDetail = text;
}

void SetOwnedHostMessage(Host& host, VTERROR_CODE code, OwnedArray<char16_t> text) noexcept
{
    SetHostMessage(host, code, text.get());
    host.ownedMessage = std::move(text);
}

void ClearHostMessage(Host& host) noexcept
{
    SetHostMessage(host, VTERROR_CODE::NoError, nullptr);
}

const char16_t* HostMessageFor(const Host& host, VTERROR_CODE code) noexcept
{
    return host.messageCode == code ? host.message : nullptr;
}

} // namespace vantrel
