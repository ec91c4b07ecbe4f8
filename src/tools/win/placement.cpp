#include "tools/win/placement.h"

#include <cwchar>

#include "entry/names.h"
#include "entry/trace.h"
#include "tools/win/options.h"
#include "tools/win/shared_section.h"
#include "tools/win/wide.h"

namespace vantrel {

VANTREL_SHARED_BEGIN
VANTREL_SHARED volatile LONG g_openWindowCount = 0;
VANTREL_SHARED_END

namespace {

constexpr int KeyLength = 255;
constexpr char16_t PlacementName[] = u"Window placement";
constexpr wchar_t NumberProperty[] = L"quillmoor vantrel window number";

static_assert(sizeof(WINDOWPLACEMENT) == 44, "the size is part of the stored value");

// The number of the window when it was opened: until it closes others come and go, and it must find its own place again.
long NumberOf(HWND window) noexcept
{
    return static_cast<long>(reinterpret_cast<INT_PTR>(GetPropW(window, NumberProperty)));
}

// Windows that are open at once keep places of their own, so they do not all open on top of each other.
void MakePlacementKey(const EditContext* context, HWND window, wchar_t (&key)[KeyLength]) noexcept
{
    std::swprintf(key, KeyLength, L"%ls Vantrel window %li",
                  AsWide(DialectName(context->langEnv->DialectKind)), NumberOf(window));
}

// A window must never come back hidden or minimised: the interpreter waits for it, so the user has to see it.
UINT VisibleShowCommand(UINT stored) noexcept
{
    switch (stored) {
    case SW_HIDE:
    case SW_SHOWMINIMIZED:
    case SW_MINIMIZE:
    case SW_SHOWMINNOACTIVE: return SW_RESTORE;
    case SW_SHOWMAXIMIZED: return SW_SHOWMAXIMIZED;
    default: return SW_SHOWNORMAL;
    }
}

} // namespace

void CountOpenWindow(HWND window) noexcept
{
    g_openWindowCount = g_openWindowCount + 1;
    SetPropW(window, NumberProperty, reinterpret_cast<HANDLE>(static_cast<INT_PTR>(g_openWindowCount)));
}

void UncountOpenWindow(HWND window) noexcept
{
    RemovePropW(window, NumberProperty);
    g_openWindowCount = g_openWindowCount - 1;
}

void WindowPlacementSave(EditContext* context, HWND window) noexcept
{
    const TraceScope trace("placement.cpp", "WindowPlacementSave");
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    if (!GetWindowPlacement(window, &placement)) return;
    wchar_t key[KeyLength];
    MakePlacementKey(context, window, key);
    SaveOption(AsUtf16(key), PlacementName, &placement, sizeof placement);
}

void WindowPlacementRestore(EditContext* context, HWND window) noexcept
{
    const TraceScope trace("placement.cpp", "WindowPlacementRestore");
    WINDOWPLACEMENT placement{};
    wchar_t key[KeyLength];
    MakePlacementKey(context, window, key);
    if (ReadOption(AsUtf16(key), PlacementName, &placement, sizeof placement) != 0) {
        ShowWindow(window, SW_SHOWNORMAL);
        return;
    }
    placement.length = sizeof placement;
    placement.showCmd = VisibleShowCommand(placement.showCmd);
    SetWindowPlacement(window, &placement);
}

} // namespace vantrel
