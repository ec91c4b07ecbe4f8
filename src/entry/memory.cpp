#include "entry/memory.h"

namespace vantrel {
namespace {

struct AllocationGate {
    std::int64_t remaining = 0; // allocations until the fault; 0 = not armed
    std::int64_t fired = 0;
    bool sticky = false;
};

AllocationGate g_gate;
std::int64_t g_liveAllocations = 0;

void* CountAllocation(void* block)
{
    if (block == nullptr) throw VTERROR_CODE::OutOfMemory;
    ++g_liveAllocations;
    return block;
}

} // namespace

void PassAllocationGate()
{
    if (g_gate.remaining == 0) return;
    if (--g_gate.remaining > 0) return;
    if (g_gate.sticky) g_gate.remaining = 1;
    ++g_gate.fired;
    throw VTERROR_CODE::OutOfMemory;
}

void CountPoolPiece(std::int64_t change) noexcept
{
    g_liveAllocations += change;
}

void* AllocateBytes(std::size_t bytes)
{
    PassAllocationGate();
    return CountAllocation(std::malloc(bytes > 0 ? bytes : 1));
}

void* AllocateZeroed(std::size_t bytes)
{
    PassAllocationGate();
    return CountAllocation(std::calloc(bytes > 0 ? bytes : 1, 1));
}

void FreeBytes(void* block) noexcept
{
    if (block == nullptr) return;
    --g_liveAllocations;
    std::free(block);
}

std::size_t CheckedMultiply(std::int64_t count, std::size_t elementBytes)
{
    if (count < 0) throw VTERROR_CODE::OutOfMemory;
    const auto items = static_cast<std::size_t>(count);
    const auto limit = static_cast<std::size_t>(std::numeric_limits<std::int64_t>::max());
    if (elementBytes != 0 && items > limit / elementBytes) throw VTERROR_CODE::OutOfMemory;
    return items * elementBytes;
}

std::size_t CheckedAdd(std::size_t a, std::size_t b)
{
    if (a > std::numeric_limits<std::size_t>::max() - b) throw VTERROR_CODE::OutOfMemory;
    return a + b;
}

void ArmAllocationFault(std::int64_t nth, bool sticky) noexcept
{
    g_gate = {nth, 0, sticky};
}

std::int64_t DisarmAllocationFault() noexcept
{
    const std::int64_t fired = g_gate.fired;
    g_gate = {};
    return fired;
}

std::int64_t LiveAllocations() noexcept
{
    return g_liveAllocations;
}

} // namespace vantrel
