#include "entry/edit_context.h"

#include <chrono>

namespace vantrel {
namespace {

constexpr std::int64_t PollIntervalMilliseconds = 100;

std::int64_t SteadyMilliseconds() noexcept
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace

InterruptPacer::InterruptPacer() noexcept : last_(SteadyMilliseconds()) {}

bool InterruptPacer::Due() noexcept
{
    const std::int64_t now = SteadyMilliseconds();
    if (now - last_ <= PollIntervalMilliseconds) return false;
    last_ = now;
    return true;
}

} // namespace vantrel
