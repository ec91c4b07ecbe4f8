// The bars' looks: the theme's, unless the user's colours do not go with it.
#include <windows.h>

#include <uxtheme.h>

#include "entry/trace.h"
#include "frame/contrast.h"
#include "frame/win/frame_window.h"

namespace vantrel {
namespace {

constexpr wchar_t NoTheme[] =
    L" "; // the name of no theme; an empty one is refused by some versions of the system

// Themes paint bars in light colours of their own and leave the texts to the system's colours: bright texts would not be seen.
bool IsThemeLegible() noexcept
{
    return Brightness(GetSysColor(COLOR_BTNTEXT)) <= Brightness(GetSysColor(COLOR_3DFACE));
}

void GiveTheme(HWND window, const wchar_t* theme) noexcept
{
    if (window != nullptr) SetWindowTheme(window, theme, theme);
}

} // namespace

void GiveBarsTheirLook(const FrameWindow& frame)
{
    TraceScope trace("bar_look.cpp", "GiveBarsTheirLook");
    const wchar_t* const theme = IsThemeLegible() ? nullptr : NoTheme;
    GiveTheme(frame.status, theme);
    GiveTheme(frame.toolBar, theme);
    GiveTheme(frame.nameBox, theme);
    if (frame.findBar == nullptr) return;
    for (HWND child = nullptr; (child = FindWindowExW(frame.findBar, child, nullptr, nullptr)) != nullptr;)
        GiveTheme(child, theme);
}

} // namespace vantrel
