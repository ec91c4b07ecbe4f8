// Nothing may escape into the host: hardware faults become C++ exceptions, and exceptions inside a window procedure are carried to
// the message loop, because the system swallows or dies of those that leave a procedure which it called itself.
#pragma once

#include <windows.h>

#include <type_traits>

#include "entry/trace.h"

namespace vantrel {

// A hardware fault (access violation, division by zero, ...) that was turned into an exception, and where it happened.
struct HardFault {
    DWORD code;
    void* instruction;
    TraceContext where;
};

// Calls `function(argument)`; a hardware fault inside arrives at the caller as a HardFault exception.
void* GuardedCall(void* (*function)(void*), void* argument);

template <typename Function> void Guarded(Function&& function)
{
    using Body = std::remove_reference_t<Function>;
    GuardedCall(
        [](void* body) -> void* {
            (*static_cast<Body*>(body))();
            return nullptr;
        },
        const_cast<void*>(static_cast<const void*>(&function)));
}

// The whole of an edit: runs `body` guarded. True when it ended by an exception, a fault or a call of std::terminate (an exception met a routine
// that cannot be unwound; what was on the stack is then leaked, but the host lives). `where` receives the place.
[[nodiscard]] bool RunGuardedEdit(void (*body)(void*), void* argument, TraceContext& where) noexcept;

// Remembers the exception in flight (the first one wins) and wakes the message loop. Called from a catch clause.
void NoteEscapedException() noexcept;
// Throws what was noted, once. The modal loop calls it after each message, and whoever sends a message or creates a window calls it after.
void RethrowEscapedException();
void ForgetEscapedException() noexcept;

// Whether the exception in flight says that memory is lacking. Called from a catch clause.
[[nodiscard]] bool IsOutOfMemoryInFlight() noexcept;

// The body of a window, dialog, timer or hook procedure: answers what `body` returns, or `fallback` after noting an exception. A lack of memory
// is not noted: it ends the message that it came to, and the edit, with all that the user has not saved, goes on.
template <typename Result, typename Body> Result Sealed(Result fallback, Body&& body) noexcept
{
    Result result = fallback;
    try {
        Guarded([&] { result = body(); });
    } catch (...) {
        if (!IsOutOfMemoryInFlight()) NoteEscapedException();
        result = fallback;
    }
    return result;
}

} // namespace vantrel
