#include "tools/win/help.h"

#include <windows.h>

#include <htmlhelp.h>

#include <string>

#include "entry/product.h"
#include "entry/trace.h"
#include "tools/win/library_path.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"

namespace vantrel {

namespace {

constexpr char16_t DefaultHelpFile[] = u"vantrel.chm";

void SayMissing(HWND owner, const std::wstring& file)
{
    const std::wstring text = L"The help file " + file + L" is missing.";
    MessageBoxW(owner, text.c_str(), AsWide(ProductName), MB_OK | MB_ICONINFORMATION);
}

} // namespace

std::wstring HelpPath(EditContext* context)
{
    const char16_t* const file = context->langEnv->HelpFile;
    const auto ask = context->langEnv->Operations.GetLibraryPath;
    std::wstring folder = ask != nullptr ? AsWide(ask(context)) : L"";
    if (folder.empty()) folder = AsWide(BuiltinGetLibraryPath());
    if (!folder.empty() && folder.back() != L'\\') folder += L'\\';
    return folder + AsWide(file != nullptr ? file : DefaultHelpFile);
}

void ShowHelpPage(HWND owner, EditContext* context, std::uint32_t topic)
{
    const TraceScope trace("help.cpp", "ShowHelpPage");
    const std::wstring path = HelpPath(context);
    const HWND frame = GetTopWindowOf(owner);
    const UINT command = topic != 0 ? HH_HELP_CONTEXT : HH_DISPLAY_TOPIC;
    const bool there = GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    if (!there || HtmlHelpW(frame, path.c_str(), command, topic) == nullptr)
        SayMissing(frame, path.substr(path.find_last_of(L'\\') + 1));
}

} // namespace vantrel
