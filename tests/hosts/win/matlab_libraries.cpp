#include "hosts/win/matlab_libraries.h"

#include <windows.h>

#include "hosts/fake_matlab_api.h"

namespace vantrel::fake {
namespace {

std::wstring OwnFolder()
{
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path.substr(0, path.find_last_of(L"\\/") + 1);
}

bool LoadOne(const wchar_t* file, const char* name, std::string& reason)
{
    const HMODULE library = LoadLibraryW((OwnFolder() + file).c_str());
    const auto attach = library != nullptr ? reinterpret_cast<AttachMatlab>(reinterpret_cast<void*>(
                                                 GetProcAddress(library, "AttachFakeMatlab")))
                                           : nullptr;
    if (attach == nullptr) {
        reason = std::string("cannot load the ") + name + " that plays MATLAB's";
        return false;
    }
    attach(&TheMatlabTable());
    return true;
}

} // namespace

bool LoadMatlabLibraries(std::string& reason)
{
    return LoadOne(L"libmx.dll", "libmx.dll", reason) && LoadOne(L"libmex.dll", "libmex.dll", reason);
}

} // namespace vantrel::fake
