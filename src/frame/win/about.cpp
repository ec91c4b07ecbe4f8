#include <windows.h>

#include <string>

#include "entry/product.h"
#include "entry/trace.h"
#include "frame/win/frame_window.h"
#include "resources/resource.h"
#include "tools/win/guard.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"

namespace vantrel {
namespace {

std::wstring ProductLine()
{
    const std::string_view version = ProductVersion;
    return AsWide(ProductName) + std::wstring(L" ") + std::wstring(version.begin(), version.end());
}

// FALSE: the keyboard is where it should be, at the button and not in the address that can be copied.
INT_PTR OnAboutInit(HWND dialog)
{
    SetDlgItemTextW(dialog, IDC_ABOUT_NAME, ProductLine().c_str());
    const std::wstring copyright = std::wstring(L"Copyright © 2026 ") + AsWide(VendorName);
    SetDlgItemTextW(dialog, IDC_ABOUT_COPYRIGHT, copyright.c_str());
    SetDlgItemTextW(dialog, IDC_ABOUT_SUPPORT, AsWide(SupportAddress));
    SetFocus(GetDlgItem(dialog, IDOK));
    return FALSE;
}

INT_PTR CALLBACK AboutProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) noexcept
{
    return Sealed<INT_PTR>(FALSE, [&]() -> INT_PTR {
        if (message == WM_INITDIALOG) return OnAboutInit(dialog);
        if (message != WM_COMMAND) return FALSE;
        if (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL) return FALSE;
        return EndDialog(dialog, LOWORD(wParam)), TRUE;
    });
}

} // namespace

void ShowAbout(FrameWindow& frame)
{
    TraceScope trace("about.cpp", "ShowAbout");
    const AskingScope asking(frame);
    DialogBoxParamW(ModuleInstance(), MAKEINTRESOURCEW(IDD_ABOUT), frame.window, AboutProc, 0);
    RethrowEscapedException();
}

} // namespace vantrel
