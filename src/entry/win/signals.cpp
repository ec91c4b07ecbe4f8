#include "entry/win/signals.h"

#include <cfloat>
#include <csignal>

#include "entry/trace.h"

namespace vantrel {
namespace {

constexpr int SignalBreak = 21;
constexpr unsigned int ExceptionMask = 0x8001F; // which floating-point exceptions are masked

} // namespace

void SignalHandlersSave(SignalState& state) noexcept
{
    TraceScope trace("signals.cpp", "SignalHandlersSave");
    state.interrupt = std::signal(SIGINT, SIG_DFL);
    state.segmentation = std::signal(SIGSEGV, SIG_DFL);
    state.terminate = std::signal(SIGTERM, SIG_DFL);
    state.breakSignal = std::signal(SignalBreak, SIG_DFL);
    state.floatingPointControl = _control87(0, 0);
    _control87(ExceptionMask, ExceptionMask); // no floating-point exception stops the editor
}

void SignalHandlersRestore(const SignalState& state) noexcept
{
    TraceScope trace("signals.cpp", "SignalHandlersRestore");
    std::signal(SIGINT, state.interrupt);
    std::signal(SIGSEGV, state.segmentation);
    std::signal(SIGTERM, state.terminate);
    std::signal(SignalBreak, state.breakSignal);
    _control87(state.floatingPointControl, ExceptionMask);
    _clearfp();
}

} // namespace vantrel
