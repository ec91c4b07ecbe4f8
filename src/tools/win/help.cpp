#include "tools/win/help.h"

#include <windows.h>

#include <htmlhelp.h>

#include <string>

#include "entry/product.h"
#include "entry/trace.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"

namespace vantrel {

namespace {

constexpr char16_t DefaultHelpFile[] = u"vantrel.chm";

std::wstring FolderOfLibrary()
{
    std::wstring path(MAX_PATH, L'\0');
    DWORD length = 0;
    while ((length = GetModuleFileNameW(ModuleInstance(), path.data(), static_cast<DWORD>(path.size()))) ==
           path.size()) {
        path.resize(2 * path.size());
    }
    path.resize(length);
    return path.substr(0, path.find_last_of(L'\\') + 1);
}

void SayMissing(HWND owner, const std::wstring& file)
{
    const std::wstring text = L"The help file " + file + L" is missing.";
    MessageBoxW(owner, text.c_str(), AsWide(ProductName), MB_OK | MB_ICONINFORMATION);
}

} // namespace

void ShowHelpPage(HWND owner, const EditContext* context, std::uint32_t topic)
{
    const TraceScope trace("help.cpp", "ShowHelpPage");
    const char16_t* const file = context->langEnv->HelpFile;
    const std::wstring name = AsWide(file != nullptr ? file : DefaultHelpFile);
    const std::wstring path = FolderOfLibrary() + name;
    const HWND frame = GetTopWindowOf(owner);
    const UINT command = topic != 0 ? HH_HELP_CONTEXT : HH_DISPLAY_TOPIC;
    const bool there = GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    if (!there || HtmlHelpW(frame, path.c_str(), command, topic) == nullptr) SayMissing(frame, name);
}

} // namespace vantrel
