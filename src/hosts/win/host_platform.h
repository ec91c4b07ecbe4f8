// What the adapters need of Windows and of the editor itself; one table for every host.
#pragma once

#include "hosts/host.h"

namespace vantrel {

[[nodiscard]] const HostPlatform& WindowsHostPlatform() noexcept;

} // namespace vantrel
