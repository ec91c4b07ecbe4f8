#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cwchar>

#include "entry/trace.h"
#include "frame/messages.h"
#include "frame/status.h"
#include "frame/win/frame_window.h"
#include "frame/win/node_attributes.h"
#include "tools/win/font_metrics.h"
#include "tools/win/fonts.h"
#include "tools/win/guard.h"
#include "tools/win/options.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"
#include "view/messages.h"

namespace vantrel {
namespace {

constexpr char16_t ClientFontName[] = u"Use client font in statusbar";
constexpr UINT_PTR StatusSubclass = 1;

LOGFONTW FontOf(HWND window) noexcept
{
    LOGFONTW logFont{};
    auto font = reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0));
    if (font == nullptr) font = static_cast<HFONT>(GetStockObject(SYSTEM_FONT));
    GetObjectW(font, sizeof logFont, &logFont);
    return logFont;
}

bool IsSameFace(const LOGFONTW& a, const LOGFONTW& b) noexcept
{
    return std::wcscmp(a.lfFaceName, b.lfFaceName) == 0;
}

LOGFONTW SystemStatusFont() noexcept
{
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    return metrics.lfStatusFont;
}

// The font for both bars, where they cannot show what the array's font can: the symbols among the labels. False: they have it.
bool FindStatusFont(const FrameWindow& frame, LOGFONTW& wanted) noexcept
{
    const LOGFONTW view = FontOf(frame.client);
    const LOGFONTW bar = FontOf(frame.status);
    const LOGFONTW box = FontOf(frame.nameBox);
    const bool sameHeight = ReadBooleanOption(ClientFontName, false);
    const bool faces = IsSameFace(view, bar) && IsSameFace(view, box);
    const bool heights = view.lfHeight == bar.lfHeight && view.lfHeight == box.lfHeight;
    if (faces && (heights || !sameHeight)) return false;
    wanted = SystemStatusFont();
    std::copy(std::begin(view.lfFaceName), std::end(view.lfFaceName), wanted.lfFaceName);
    if (sameHeight) wanted.lfHeight = view.lfHeight;
    return true;
}

void MeasureTexts(const FrameWindow& frame, HFONT font, const StatusParts& parts, std::int32_t* widths)
{
    const WindowDc dc(frame.status);
    const SelectedObject selected(dc, font);
    for (std::int32_t part = 0; part < parts.count; ++part) {
        const Text& text = parts.texts[static_cast<std::size_t>(part)];
        SIZE size{};
        GetTextExtentPoint32W(dc, AsWide(text.c_str()), static_cast<int>(text.size()), &size);
        widths[part] = size.cx;
    }
}

void SetParts(const FrameWindow& frame, HFONT font, const StatusParts& parts)
{
    int borders[3] = {};
    SendMessageW(frame.status, SB_GETBORDERS, 0, reinterpret_cast<LPARAM>(borders));
    std::int32_t widths[MostStatusParts] = {};
    std::int32_t edges[MostStatusParts] = {};
    MeasureTexts(frame, font, parts, widths);
    StatusEdges({widths, static_cast<std::size_t>(parts.count)}, {borders[0], borders[2]}, edges);
    SendMessageW(frame.status, SB_SETPARTS, static_cast<WPARAM>(parts.count),
                 reinterpret_cast<LPARAM>(edges));
    SendMessageW(frame.status, SB_SETUNICODEFORMAT, TRUE, 0);
    for (std::int32_t part = 0; part < parts.count; ++part) {
        const WPARAM drawn = static_cast<WPARAM>(part) | (part % 2 == 0 ? SBT_NOBORDERS : 0u);
        const Text& text = parts.texts[static_cast<std::size_t>(part)];
        SetStatusText(frame.status, drawn, AsWide(text.c_str()));
    }
    SendMessageW(frame.status, SB_SIMPLE, FALSE, 0);
}

void GiveFonts(FrameWindow& frame, HFONT font)
{
    const FontMetrics metrics = GetFontMetrics(frame.status, font);
    SendMessageW(frame.status, SB_SETMINHEIGHT, static_cast<WPARAM>(metrics.lineHeight), 0);
    CopyFontToWindow(frame.status, font);
    CopyFontToWindow(frame.nameBox, font);
    SendWmSize(frame.window);
}

void StatusScdr(FrameWindow& frame, const ScdrAttributes& attributes)
{
    TraceScope trace("status_bar.cpp", "StatusScdr");
    LOGFONTW logFont{};
    const bool changed = FindStatusFont(frame, logFont);
    if (!changed) logFont = FontOf(frame.status);
    const OwnFont font(logFont);
    const StatusParts parts = MakeStatusParts(frame.context->langEnv->DialectKind, attributes);
    SetParts(frame, font.Get(), parts);
    UpdateNameBox(frame, attributes.pickIndex != nullptr ? attributes.pickIndex : u"");
    SendMessageW(frame.window, FramePlaceNameBox, static_cast<WPARAM>(parts.pickIndexPart), 0);
    if (changed) GiveFonts(frame, font.Get());
    UpdateWindow(frame.status);
}

// The bar begins to write a little right of a part's edge and says nothing of it; parts as wide as it says would cut their texts.
LRESULT GetBorders(HWND bar, int* borders) noexcept
{
    const LRESULT result = DefSubclassProc(bar, SB_GETBORDERS, 0, reinterpret_cast<LPARAM>(borders));
    if (borders != nullptr) *borders += StatusTextInset();
    return result;
}

LRESULT CALLBACK StatusProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                            DWORD_PTR) noexcept
{
    switch (message) {
    case SB_GETBORDERS: return GetBorders(window, reinterpret_cast<int*>(lParam));
    case WM_NCDESTROY: RemoveWindowSubclass(window, &StatusProc, StatusSubclass); break;
    default: break;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

} // namespace

int StatusTextInset() noexcept
{
    return 2 * GetSystemMetrics(SM_CXEDGE);
}

bool StatusBarCreate(FrameWindow& frame)
{
    TraceScope trace("status_bar.cpp", "StatusBarCreate");
    const DWORD shown = (frame.options & FrameStatusBar) != 0 ? WS_VISIBLE : 0;
    frame.status =
        CreateWindowExW(0, STATUSCLASSNAMEW, L"Status", WS_CHILD | WS_CLIPSIBLINGS | SBARS_SIZEGRIP | shown,
                        0, 0, 0, 0, frame.window, ChildId(StatusBarId), ModuleInstance(), nullptr);
    if (frame.status == nullptr) return false;
    return SetWindowSubclass(frame.status, &StatusProc, StatusSubclass, 0) != FALSE && NameBoxCreate(frame);
}

void DisplayScdrAttributes(FrameWindow& frame, const Scdr* node)
{
    TraceScope trace("status_bar.cpp", "DisplayScdrAttributes");
    if (node == nullptr) return;
    const NodeAttributes attributes(frame, *node);
    StatusScdr(frame, attributes.Get());
}

} // namespace vantrel
