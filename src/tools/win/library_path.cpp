#include "tools/win/library_path.h"

#include <windows.h>

#include <shlwapi.h>

#include "entry/trace.h"
#include "tools/win/wide.h"

namespace vantrel {
namespace {

struct Folder {
    wchar_t text[MAX_PATH] = {};
};

// An address inside the library stands for it, whatever it is called; its reference count stays as it is.
Folder FindFolder() noexcept
{
    Folder folder;
    HMODULE module = nullptr;
    const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (GetModuleHandleExA(flags, reinterpret_cast<const char*>(&FindFolder), &module) == 0) return folder;
    const DWORD length = GetModuleFileNameW(module, folder.text, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return Folder{}; // a path cut off names another folder
    PathRemoveFileSpecW(folder.text);
    return folder;
}

} // namespace

const char16_t* BuiltinGetLibraryPath()
{
    TraceScope trace("builtin.cpp", "BuiltinGetLibraryPath");
    static const Folder folder = FindFolder();
    return AsUtf16(folder.text);
}

} // namespace vantrel
