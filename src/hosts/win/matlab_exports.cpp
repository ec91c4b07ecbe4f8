// The library's door for MATLAB. What happens behind it is portable.
#include <windows.h>

#include "hosts/matlab_host.h"
#include "hosts/win/host_platform.h"

namespace vantrel::matlab {
namespace {

// MATLAB's libraries where they are loaded; programs that play MATLAB may offer the functions themselves.
void* FindLoaded(void*, const char* name)
{
    const HMODULE modules[] = {GetModuleHandleW(L"libmx.dll"), GetModuleHandleW(L"libmex.dll"),
                               GetModuleHandleW(nullptr)};
    for (HMODULE const module : modules) {
        const FARPROC found = module != nullptr ? GetProcAddress(module, name) : nullptr;
        if (found != nullptr) return reinterpret_cast<void*>(found);
    }
    return nullptr;
}

} // namespace
} // namespace vantrel::matlab

// An error of MATLAB's leaves through here.
extern "C" void mexFunction(int nlhs, vantrel::matlab::MxArray** plhs, int nrhs,
                            const vantrel::matlab::MxArray** prhs)
{
    using namespace vantrel;
    matlab::MatlabHost& host = matlab::TheMatlabHost();
    host.platform = &WindowsHostPlatform();
    matlab::MatLabEditArray(host, matlab::FindLoaded, nullptr, nlhs, plhs, nrhs, prhs);
}
