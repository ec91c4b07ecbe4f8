// Sharp windows whatever the host has declared about the screen's resolution.
#pragma once

#include <windows.h>

namespace vantrel {

// Windows that this thread makes meanwhile are drawn in the system's real dots: those of a host that has declared nothing would be drawn as if
// the screen were coarse, and stretched. Versions of Windows that cannot be told are left alone. The host's own setting comes back.
class ResolutionScope {
public:
    ResolutionScope() noexcept;
    ~ResolutionScope();
    ResolutionScope(const ResolutionScope&) = delete;
    ResolutionScope& operator=(const ResolutionScope&) = delete;

private:
    DPI_AWARENESS_CONTEXT previous_;
};

} // namespace vantrel
