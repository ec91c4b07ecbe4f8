#include "tools/win/fonts.h"

#include <commdlg.h>

#include <algorithm>
#include <cstdlib>

#include "entry/trace.h"
#include "tools/win/window.h"

namespace vantrel {

namespace {

constexpr LONG SmallestHeight = 6; // pixels
constexpr LONG LargestHeight = 400;
constexpr wchar_t FontCopyProperty[] = L"quillmoor vantrel font";

bool GetWindowLogFont(HWND window, LOGFONTW& logFont) noexcept
{
    const auto font = reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0));
    return font != nullptr && GetObjectW(font, sizeof logFont, &logFont) != 0;
}

void GiveFont(HWND window, const LOGFONTW& logFont) noexcept
{
    const HFONT font = CreateFontIndirectW(&logFont);
    if (font == nullptr) return;
    CopyFontToWindow(window, font);
    DeleteObject(font);
}

} // namespace

void FontDlg(HWND window)
{
    const TraceScope trace("fonts.cpp", "FontDlg");
    LOGFONTW logFont{};
    if (!GetWindowLogFont(window, logFont)) return;
    CHOOSEFONTW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = GetTopWindowOf(window);
    dialog.lpLogFont = &logFont;
    dialog.Flags = CF_SCREENFONTS | CF_INITTOLOGFONTSTRUCT | CF_NOVERTFONTS | CF_FORCEFONTEXIST;
    if (ChooseFontW(&dialog)) GiveFont(window, logFont);
}

void ChangeFontSize(HWND window, std::int32_t delta)
{
    const TraceScope trace("fonts.cpp", "ChangeFontSize");
    LOGFONTW logFont{};
    const LONG steps = delta / WHEEL_DELTA;
    if (steps == 0 || !GetWindowLogFont(window, logFont)) return;
    const LONG height = std::abs(logFont.lfHeight);
    const LONG changed = std::clamp(height + steps * std::max(height / 8, 1L), SmallestHeight, LargestHeight);
    if (changed == height) return;
    // Negative heights count without the font's leading; they stay of their kind.
    logFont.lfHeight = logFont.lfHeight < 0 ? -changed : changed;
    logFont.lfWidth = 0;
    GiveFont(window, logFont);
}

void CopyFontToWindow(HWND window, HFONT font) noexcept
{
    const TraceScope trace("fonts.cpp", "CopyFontToWindow");
    const HANDLE previous = RemovePropW(window, FontCopyProperty);
    LOGFONTW logFont{};
    if (font != nullptr && GetObjectW(font, sizeof logFont, &logFont) != 0) {
        const HFONT copy = CreateFontIndirectW(&logFont);
        SetPropW(window, FontCopyProperty, copy);
        SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(copy), TRUE);
    }
    // Only now: until the message arrived the window still used it.
    if (previous != nullptr) DeleteObject(previous);
}

} // namespace vantrel
