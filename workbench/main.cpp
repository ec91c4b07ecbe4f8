#include <windows.h>

#include <shellapi.h>

#include <string>
#include <vector>

#include "hosts/win/matlab_libraries.h"
#include "workbench/formats/utf.h"
#include "workbench/session/session.h"
#include "workbench/win/files.h"

namespace {

using namespace vantrel;

void WriteHandle(DWORD which, std::string_view bytes)
{
    const HANDLE handle = GetStdHandle(which);
    DWORD mode = 0;
    DWORD done = 0;
    if (GetConsoleMode(handle, &mode)) {
        // A console shows bytes in its own code page.
        const std::u16string text = workbench::Utf16FromUtf8(bytes);
        WriteConsoleW(handle, text.data(), static_cast<DWORD>(text.size()), &done, nullptr);
        return;
    }
    WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &done, nullptr);
}

void Print(void*, std::string_view bytes)
{
    WriteHandle(STD_OUTPUT_HANDLE, bytes);
}

void Complain(void*, std::string_view line)
{
    WriteHandle(STD_ERROR_HANDLE, "vantrel-workbench: " + std::string(line) + "\n");
}

bool ReadFileBytes(void*, const std::u16string& name, std::string& bytes, std::string& reason)
{
    return workbench::ReadWholeFile(name, bytes, reason);
}

bool WriteFileBytes(void*, const std::u16string& name, const std::string& bytes, std::string& reason)
{
    return workbench::ReplaceFileContents(name, bytes, reason);
}

std::wstring LibraryPath()
{
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    path.resize(path.find_last_of(L"\\/") + 1);
    return path + L"vantrel.dll";
}

void* FindEntry(void* state, const char* name, std::string& reason)
{
    void* const entry = reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(state), name));
    if (entry == nullptr) reason = std::string("vantrel.dll has no entry ") + name;
    return entry;
}

// The library stays loaded until the process ends: what it left running must not lose its code.
bool LoadEditor(void*, workbench::EditorLibrary& editor, std::string& reason)
{
    const std::wstring path = LibraryPath();
    const HMODULE library = LoadLibraryW(path.c_str());
    if (library == nullptr) {
        reason = "cannot load " + workbench::Utf8FromUtf16(reinterpret_cast<const char16_t*>(path.c_str())) +
                 ": " + workbench::LastErrorText();
        return false;
    }
    editor = {library, FindEntry, fake::LoadMatlabLibraries};
    return true;
}

std::vector<std::u16string> Arguments()
{
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::u16string> arguments;
    for (int i = 1; i < count; ++i)
        arguments.emplace_back(reinterpret_cast<const char16_t*>(words[i]));
    LocalFree(words);
    return arguments;
}

} // namespace

int main()
{
    workbench::Platform platform;
    platform.readFile = ReadFileBytes;
    platform.writeFile = WriteFileBytes;
    platform.loadLibrary = LoadEditor;
    platform.print = Print;
    platform.complain = Complain;
    return workbench::RunWorkbench(Arguments(), platform);
}
