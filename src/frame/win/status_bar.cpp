#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cwchar>

#include "entry/memory.h"
#include "entry/trace.h"
#include "frame/messages.h"
#include "frame/status.h"
#include "frame/win/frame_window.h"
#include "tools/win/fonts.h"
#include "tools/win/guard.h"
#include "tools/win/options.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"
#include "view/messages.h"

namespace vantrel {
namespace {

constexpr char16_t ClientFontName[] = u"Use client font in statusbar";
constexpr int NameBoxCharacters = 256;
constexpr int LeastNameBoxDigits = 6;   // of the idle box
constexpr int TypingNameBoxDigits = 24; // while somebody types

HMENU ChildId(std::int32_t id) noexcept
{
    return reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)); // NOLINT: a child's id travels as its menu
}

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

// A font that lives as long as the guard.
class OwnFont {
public:
    explicit OwnFont(const LOGFONTW& logFont) noexcept : font_(CreateFontIndirectW(&logFont)) {}
    ~OwnFont() { DeleteObject(font_); }
    OwnFont(const OwnFont&) = delete;
    OwnFont& operator=(const OwnFont&) = delete;
    [[nodiscard]] HFONT Get() const noexcept { return font_; }

private:
    HFONT font_;
};

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
    // The bar begins to write a little right of a part's edge.
    const int inset = GetSystemMetrics(SM_CXEDGE) + GetSystemMetrics(SM_CXBORDER);
    StatusEdges({widths, static_cast<std::size_t>(parts.count)}, {borders[0] + inset, borders[2]}, edges);
    SendMessageW(frame.status, SB_SETPARTS, static_cast<WPARAM>(parts.count),
                 reinterpret_cast<LPARAM>(edges));
    SendMessageW(frame.status, SB_SETUNICODEFORMAT, TRUE, 0);
    for (std::int32_t part = 0; part < parts.count; ++part) {
        const WPARAM drawn = static_cast<WPARAM>(part) | (part % 2 == 0 ? SBT_NOBORDERS : 0u);
        const Text& text = parts.texts[static_cast<std::size_t>(part)];
        SendMessageW(frame.status, SB_SETTEXTW, drawn, reinterpret_cast<LPARAM>(text.c_str()));
    }
    SendMessageW(frame.status, SB_SIMPLE, FALSE, 0);
}

// Somebody is typing; that what is typed selects takes the keyboard away only for a moment.
bool IsTyping(const FrameWindow& frame) noexcept
{
    return frame.nameBoxTyping || GetFocus() == frame.nameBox;
}

// Text that somebody is typing is left alone.
void UpdateNameBox(FrameWindow& frame, const char16_t* pickIndex)
{
    if (IsTyping(frame)) return;
    frame.nameBoxChanging = true;
    SetWindowTextW(frame.nameBox, AsWide(pickIndex));
    frame.nameBoxChanging = false;
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

// A text of the view's, freed at the end.
class PickIndexText {
public:
    PickIndexText(const FrameWindow& frame, const Scdr& node) noexcept
        : text_(reinterpret_cast<char16_t*>(
              SendMessageW(frame.client, ViewGetPickIndex, 1, reinterpret_cast<LPARAM>(&node))))
    {
    }
    ~PickIndexText() { FreeBytes(text_); }
    PickIndexText(const PickIndexText&) = delete;
    PickIndexText& operator=(const PickIndexText&) = delete;
    [[nodiscard]] const char16_t* Get() const noexcept { return text_; }

private:
    char16_t* text_;
};

int DigitsWide(const FrameWindow& frame, int digits) noexcept
{
    const auto font = reinterpret_cast<HFONT>(SendMessageW(frame.nameBox, WM_GETFONT, 0, 0));
    const WindowDc dc(frame.nameBox);
    const SelectedObject selected(dc, font != nullptr ? font : GetStockObject(SYSTEM_FONT));
    SIZE size{};
    GetTextExtentPoint32W(dc, L"0", 1, &size);
    return size.cx * digits;
}

// The part's place in the frame; wider while somebody types, for a part is only as wide as its present text.
RECT NameBoxPlace(const FrameWindow& frame) noexcept
{
    RECT place{};
    SendMessageW(frame.status, SB_GETRECT, static_cast<WPARAM>(frame.pickIndexPart),
                 reinterpret_cast<LPARAM>(&place));
    InflateRect(&place, -GetSystemMetrics(SM_CXBORDER), -GetSystemMetrics(SM_CYBORDER));
    const int digits = IsTyping(frame) ? TypingNameBoxDigits : LeastNameBoxDigits;
    place.right = std::max<LONG>(place.right, place.left + DigitsWide(frame, digits));
    MapWindowPoints(frame.status, frame.window, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

void SendNameBoxText(FrameWindow& frame)
{
    wchar_t text[NameBoxCharacters + 1] = {};
    GetWindowTextW(frame.nameBox, text, NameBoxCharacters + 1);
    frame.nameBoxTyping = GetFocus() == frame.nameBox;
    SendMessageW(frame.client, ViewSetPickIndex, 0, reinterpret_cast<LPARAM>(text));
    // A selection takes the keyboard with it; who is typing a longer index wants it back.
    if (frame.nameBoxTyping) SetFocus(frame.nameBox);
    frame.nameBoxTyping = false;
    RethrowEscapedException();
}

void ShowSelectedPickIndex(FrameWindow& frame)
{
    const auto* const node =
        reinterpret_cast<const Scdr*>(SendMessageW(frame.client, ViewGetSelectedScdr, 0, 0));
    if (node == nullptr) return;
    const PickIndexText pickIndex(frame, *node);
    if (pickIndex.Get() != nullptr) UpdateNameBox(frame, pickIndex.Get());
}

} // namespace

bool StatusBarCreate(FrameWindow& frame)
{
    TraceScope trace("status_bar.cpp", "StatusBarCreate");
    const DWORD shown = (frame.options & FrameStatusBar) != 0 ? WS_VISIBLE : 0;
    frame.status =
        CreateWindowExW(0, STATUSCLASSNAMEW, L"Status", WS_CHILD | WS_CLIPSIBLINGS | SBARS_SIZEGRIP | shown,
                        0, 0, 0, 0, frame.window, ChildId(StatusBarId), ModuleInstance(), nullptr);
    frame.nameBox = CreateWindowExW(0, L"EDIT", nullptr, WS_CHILD | WS_CLIPSIBLINGS | ES_AUTOHSCROLL, 0, 0, 0,
                                    0, frame.window, ChildId(NameBoxId), ModuleInstance(), nullptr);
    if (frame.status == nullptr || frame.nameBox == nullptr) return false;
    SendMessageW(frame.nameBox, EM_LIMITTEXT, NameBoxCharacters, 0);
    return true;
}

void DisplayScdrAttributes(FrameWindow& frame, const Scdr* node)
{
    TraceScope trace("status_bar.cpp", "DisplayScdrAttributes");
    if (node == nullptr) return;
    const PickIndexText pickIndex(frame, *node);
    const Text shape = ShapeText(*node);
    const Text plane = node->Rank >= 3 ? PlaneText(*node, frame.context->indexOrigin) : Text();
    ScdrAttributes attributes;
    attributes.type = node->Type;
    attributes.depth = ScdrDepth(*node);
    attributes.count = node->ElementCount;
    attributes.rank = node->Rank;
    attributes.shape = node->Rank > 0 ? shape.c_str() : nullptr;
    attributes.pickIndex = pickIndex.Get();
    attributes.plane = node->Rank >= 3 ? plane.c_str() : nullptr;
    StatusScdr(frame, attributes);
}

void OnPositionPickIndex(FrameWindow& frame, std::int32_t part)
{
    TraceScope trace("status_bar.cpp", "OnPositionPickIndex");
    frame.pickIndexPart = part;
    const bool covered = SendMessageW(frame.status, SB_ISSIMPLE, 0, 0) != 0 && !IsTyping(frame);
    if (part == 0 || covered || (frame.options & FrameStatusBar) == 0) {
        ShowWindow(frame.nameBox, SW_HIDE);
        return;
    }
    const RECT place = NameBoxPlace(frame);
    SetWindowPos(frame.nameBox, HWND_TOP, place.left, place.top, place.right - place.left,
                 place.bottom - place.top, SWP_NOACTIVATE | SWP_SHOWWINDOW);
}

void OnNameBox(FrameWindow& frame, int notification)
{
    TraceScope trace("status_bar.cpp", "OnNameBox");
    switch (notification) {
    case EN_CHANGE:
        if (!frame.nameBoxChanging) SendNameBoxText(frame);
        break;
    case EN_SETFOCUS: OnPositionPickIndex(frame, frame.pickIndexPart); break;
    case EN_KILLFOCUS:
        ShowSelectedPickIndex(frame);
        OnPositionPickIndex(frame, frame.pickIndexPart);
        break;
    default: break;
    }
}

} // namespace vantrel
