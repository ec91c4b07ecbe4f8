#include "ui/memory_faults.h"

#include <atomic>

#include "ui/library_imports.h"

namespace vantrel::ui {
namespace {

using Malloc = void* (*)(std::size_t);
using Calloc = void* (*)(std::size_t, std::size_t);

Malloc g_malloc = nullptr;
Calloc g_calloc = nullptr;
std::atomic<std::int64_t> g_remaining{0}; // requests until the refusal; 0: none
std::atomic<std::int64_t> g_length{0};    // of the run of refusals that then follows
std::atomic<std::int64_t> g_refused{0};

bool IsRefused()
{
    if (g_remaining == 0 || --g_remaining > 0) return false;
    if (++g_refused < g_length) g_remaining = 1;
    return true;
}

void* RefusingMalloc(std::size_t bytes)
{
    return IsRefused() ? nullptr : g_malloc(bytes);
}

void* RefusingCalloc(std::size_t count, std::size_t bytes)
{
    return IsRefused() ? nullptr : g_calloc(count, bytes);
}

} // namespace

MemoryFaults::MemoryFaults()
{
    g_malloc = reinterpret_cast<Malloc>(GetImport("malloc"));
    g_calloc = reinterpret_cast<Calloc>(GetImport("calloc"));
    SetImport("malloc", reinterpret_cast<void*>(&RefusingMalloc));
    SetImport("calloc", reinterpret_cast<void*>(&RefusingCalloc));
}

MemoryFaults::~MemoryFaults()
{
    g_remaining = 0;
    SetImport("malloc", reinterpret_cast<void*>(g_malloc));
    SetImport("calloc", reinterpret_cast<void*>(g_calloc));
}

void MemoryFaults::Arm(std::int64_t nth, std::int64_t length)
{
    g_refused = 0;
    g_length = length;
    g_remaining = nth;
}

std::int64_t MemoryFaults::Refused() const
{
    return g_refused;
}

void MemoryFaults::Disarm()
{
    g_remaining = 0;
}

} // namespace vantrel::ui
