#include <windows.h>

#include <imm.h>

#include "editor/win/edit_instance.h"
#include "entry/trace.h"

namespace vantrel {

namespace {

// Null where the system has no input methods.
HWND InputMethodWindow(const EditInstance& instance) noexcept
{
    return GetSystemMetrics(SM_IMMENABLED) != 0 ? ImmGetDefaultIMEWnd(WindowOf(instance)) : nullptr;
}

} // namespace

void GiveFontToInputMethod(const EditInstance& instance, HFONT font) noexcept
{
    const TraceScope trace("edit_ime.cpp", "GiveFontToInputMethod");
    if (GetSystemMetrics(SM_DBCSENABLED) == 0) return;
    const HWND method = InputMethodWindow(instance);
    LOGFONTW logFont{};
    if (method == nullptr || GetObjectW(font, sizeof logFont, &logFont) == 0) return;
    SendMessageW(method, WM_IME_CONTROL, IMC_SETCOMPOSITIONFONT, reinterpret_cast<LPARAM>(&logFont));
}

void PlaceInputMethod(const EditInstance& instance, POINT caret) noexcept
{
    const TraceScope trace("edit_ime.cpp", "PlaceInputMethod");
    const HWND method = InputMethodWindow(instance);
    if (method == nullptr) return;
    COMPOSITIONFORM place{};
    place.dwStyle = CFS_FORCE_POSITION;
    place.ptCurrentPos = caret;
    SendMessageW(method, WM_IME_CONTROL, IMC_SETCOMPOSITIONWINDOW, reinterpret_cast<LPARAM>(&place));
}

LRESULT OnImeNotify(EditInstance& instance, WPARAM wParam, LPARAM lParam)
{
    const TraceScope trace("edit_ime.cpp", "OnImeNotify");
    if (wParam == IMN_OPENSTATUSWINDOW) GiveFontToInputMethod(instance, instance.font);
    return DefaultEditProc(WindowOf(instance), WM_IME_NOTIFY, wParam, lParam);
}

} // namespace vantrel
