#include "ui/library_imports.h"

#include <windows.h>

#include <cstdint>
#include <cstring>

namespace vantrel::ui {
namespace {

template <typename T> T* At(HMODULE module, DWORD offset)
{
    return reinterpret_cast<T*>(reinterpret_cast<std::uint8_t*>(module) + offset);
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

void* GetImport(const char* routine)
{
    const IMAGE_THUNK_DATA* const slot = FindLibraryImport(routine);
    return slot == nullptr ? nullptr : reinterpret_cast<void*>(slot->u1.Function);
}

void SetImport(const char* routine, void* replacement)
{
    IMAGE_THUNK_DATA* const slot = FindLibraryImport(routine);
    if (slot == nullptr) return;
    DWORD protection = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
    slot->u1.Function = reinterpret_cast<std::uintptr_t>(replacement);
    VirtualProtect(slot, sizeof *slot, protection, &protection);
}

} // namespace vantrel::ui
