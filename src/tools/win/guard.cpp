#include "tools/win/guard.h"

#include <csetjmp>
#include <cstdlib>
#include <exception>
#include <new>
#include <utility>

#include "entry/error.h"

#ifdef __GNUC__
#include "tools/win/guard_gnu.h"
#endif

namespace vantrel {
namespace {

// The editor runs on one thread of its host, so plain statics serve.
HardFault g_fault;
std::exception_ptr g_escaped;
TraceContext g_escapedWhere{"", ""};
std::jmp_buf* g_hatch = nullptr;

// Leaves a frame that cannot be unwound. Outside an edit there is nowhere to go.
[[noreturn]] void LeaveThroughHatch() noexcept
{
    if (g_hatch != nullptr) std::longjmp(*g_hatch, 1);
    std::abort();
}

void RunBody(void (*body)(void*), void* argument)
{
    Guarded([&] { body(argument); });
    RethrowEscapedException();
}

// Split from RunGuardedEdit so that no object with a destructor lives in the frame that longjmp returns to.
bool RunCatching(void (*body)(void*), void* argument, TraceContext& where) noexcept
{
    try {
        RunBody(body, argument);
        return false;
    } catch (const HardFault& fault) {
        where = fault.where;
    } catch (...) {
        where = g_escapedWhere.file[0] != 0 ? g_escapedWhere : g_traceContext;
    }
    return true;
}

} // namespace

bool IsTranslatableFault(const EXCEPTION_RECORD& record) noexcept
{
    constexpr DWORD Unwinding = 0x02 | 0x04;
    if ((record.ExceptionFlags & Unwinding) != 0) return false;
    if ((record.ExceptionFlags & EXCEPTION_NONCONTINUABLE) != 0) return false;
    if (record.ExceptionCode == static_cast<DWORD>(EXCEPTION_BREAKPOINT)) return false; // a debugger's
    if (record.ExceptionCode == static_cast<DWORD>(EXCEPTION_SINGLE_STEP)) return false;
    const DWORD severity = record.ExceptionCode >> 28;
    return severity == 0xC ||
           severity == 0xE; // system errors and software exceptions; the compiler's own begin with 2
}

void NoteHardFault(const EXCEPTION_RECORD& record) noexcept
{
    g_fault = {record.ExceptionCode, record.ExceptionAddress, g_traceContext};
}

#ifdef __GNUC__

void* GuardedCall(void* (*function)(void*), void* argument)
{
    return VantrelGuardedCall(function, argument);
}

#else

namespace {

void TranslateFault(unsigned int, EXCEPTION_POINTERS* pointers)
{
    if (!IsTranslatableFault(*pointers->ExceptionRecord)) return;
    NoteHardFault(*pointers->ExceptionRecord);
    throw g_fault;
}

class FaultTranslator {
public:
    FaultTranslator() noexcept : previous_(_set_se_translator(TranslateFault)) {}
    ~FaultTranslator() { _set_se_translator(previous_); }
    FaultTranslator(const FaultTranslator&) = delete;
    FaultTranslator& operator=(const FaultTranslator&) = delete;

private:
    _se_translator_function previous_;
};

} // namespace

void* GuardedCall(void* (*function)(void*), void* argument)
{
    FaultTranslator translator;
    return function(argument);
}

#endif

bool RunGuardedEdit(void (*body)(void*), void* argument, TraceContext& where) noexcept
{
    std::jmp_buf here;
    std::jmp_buf* const outerHatch = g_hatch;
    const std::terminate_handler outerTerminate = std::set_terminate(LeaveThroughHatch);
    g_hatch = &here;
    volatile bool failed = true;
    if (setjmp(here) == 0) {
        failed = RunCatching(body, argument, where);
    } else {
        where = g_traceContext;
    }
    g_hatch = outerHatch;
    std::set_terminate(outerTerminate);
    ForgetEscapedException();
    return failed;
}

bool IsOutOfMemoryInFlight() noexcept
{
    try {
        throw;
    } catch (VTERROR_CODE code) {
        return code == VTERROR_CODE::OutOfMemory;
    } catch (const std::bad_alloc&) {
        return true;
    } catch (...) {
        return false;
    }
}

void NoteEscapedException() noexcept
{
    if (g_escaped != nullptr) return;
    g_escaped = std::current_exception();
    g_escapedWhere = g_traceContext;
    PostMessageW(nullptr, WM_NULL, 0, 0);
}

void RethrowEscapedException()
{
    if (g_escaped == nullptr) return;
    std::rethrow_exception(std::exchange(g_escaped, nullptr));
}

void ForgetEscapedException() noexcept
{
    g_escaped = nullptr;
    g_escapedWhere = {"", ""};
}

} // namespace vantrel

#ifdef __GNUC__
extern "C" void VantrelGuardThrow()
{
    throw vantrel::g_fault;
}
#endif
