#include "entry/win/resolution_scope.h"

namespace vantrel {
namespace {

// The thread's context before, or null where it cannot be set.
DPI_AWARENESS_CONTEXT SetContext(DPI_AWARENESS_CONTEXT context) noexcept
{
    using Routine = DPI_AWARENESS_CONTEXT(WINAPI*)(DPI_AWARENESS_CONTEXT);
    HMODULE const user = GetModuleHandleW(L"user32.dll");
    if (user == nullptr) return nullptr;
    const auto set = reinterpret_cast<Routine>(
        reinterpret_cast<void*>(GetProcAddress(user, "SetThreadDpiAwarenessContext")));
    return set != nullptr ? set(context) : nullptr;
}

} // namespace

ResolutionScope::ResolutionScope() noexcept : previous_(SetContext(DPI_AWARENESS_CONTEXT_SYSTEM_AWARE)) {}

ResolutionScope::~ResolutionScope()
{
    if (previous_ != nullptr) SetContext(previous_);
}

} // namespace vantrel
