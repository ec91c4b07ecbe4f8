#include "ui/memory_faults.h"

#include <windows.h>

#include <atomic>
#include <cstring>

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

template <typename T> T* At(HMODULE module, DWORD offset)
{
    return reinterpret_cast<T*>(reinterpret_cast<std::uint8_t*>(module) + offset);
}

void Exchange(IMAGE_THUNK_DATA& slot, void* routine)
{
    DWORD protection = 0;
    VirtualProtect(&slot, sizeof slot, PAGE_READWRITE, &protection);
    slot.u1.Function = reinterpret_cast<std::uintptr_t>(routine);
    VirtualProtect(&slot, sizeof slot, protection, &protection);
}

// The place in the module's table of imported routines that leads to the routine of that name; null where it imports none.
IMAGE_THUNK_DATA* FindImport(HMODULE module, const char* routine)
{
    const auto& headers =
        *At<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(At<IMAGE_DOS_HEADER>(module, 0)->e_lfanew));
    const DWORD imports = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (auto* from = At<IMAGE_IMPORT_DESCRIPTOR>(module, imports); from->Name != 0; ++from) {
        auto* names = At<IMAGE_THUNK_DATA>(module, from->OriginalFirstThunk);
        auto* slots = At<IMAGE_THUNK_DATA>(module, from->FirstThunk);
        for (; names->u1.AddressOfData != 0; ++names, ++slots) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
            const auto* const name =
                At<IMAGE_IMPORT_BY_NAME>(module, static_cast<DWORD>(names->u1.AddressOfData));
            if (std::strcmp(name->Name, routine) == 0) return slots;
        }
    }
    return nullptr;
}

IMAGE_THUNK_DATA* FindLibraryImport(const char* routine)
{
    return FindImport(GetModuleHandleW(L"vantrel.dll"), routine);
}

} // namespace

MemoryFaults::MemoryFaults()
{
    IMAGE_THUNK_DATA& mallocSlot = *FindLibraryImport("malloc");
    IMAGE_THUNK_DATA& callocSlot = *FindLibraryImport("calloc");
    g_malloc = reinterpret_cast<Malloc>(mallocSlot.u1.Function);
    g_calloc = reinterpret_cast<Calloc>(callocSlot.u1.Function);
    Exchange(mallocSlot, reinterpret_cast<void*>(&RefusingMalloc));
    Exchange(callocSlot, reinterpret_cast<void*>(&RefusingCalloc));
}

MemoryFaults::~MemoryFaults()
{
    g_remaining = 0;
    Exchange(*FindLibraryImport("malloc"), reinterpret_cast<void*>(g_malloc));
    Exchange(*FindLibraryImport("calloc"), reinterpret_cast<void*>(g_calloc));
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
