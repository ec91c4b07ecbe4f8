// The name box: an edit box over the status bar's pick index, which selects what is typed into it.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>

#include "entry/trace.h"
#include "frame/messages.h"
#include "frame/win/frame_window.h"
#include "frame/win/pick_index_text.h"
#include "tools/win/fonts.h"
#include "tools/win/guard.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"
#include "view/messages.h"

namespace vantrel {
namespace {

constexpr int NameBoxCharacters = 256;
constexpr int LeastNameBoxDigits = 6;   // of the idle box
constexpr int TypingNameBoxDigits = 24; // while somebody types
constexpr UINT_PTR NameBoxSubclass = 1;

// Somebody is typing; that what is typed selects takes the keyboard away only for a moment.
bool IsTyping(const FrameWindow& frame) noexcept
{
    return frame.nameBoxTyping || GetFocus() == frame.nameBox;
}

struct TextSizes {
    LONG height;
    LONG digit;
    LONG text; // of what stands in the box
};

TextSizes MeasureBox(const FrameWindow& frame) noexcept
{
    wchar_t text[NameBoxCharacters + 1] = {};
    const int length = GetWindowTextW(frame.nameBox, text, NameBoxCharacters + 1);
    const auto font = reinterpret_cast<HFONT>(SendMessageW(frame.nameBox, WM_GETFONT, 0, 0));
    const WindowDc dc(frame.nameBox);
    const SelectedObject selected(dc, font != nullptr ? font : GetStockObject(SYSTEM_FONT));
    SIZE digit{};
    SIZE all{};
    GetTextExtentPoint32W(dc, L"0", 1, &digit);
    GetTextExtentPoint32W(dc, text, length, &all);
    return {digit.cy, digit.cx, all.cx};
}

bool IsLastPart(const FrameWindow& frame) noexcept
{
    return SendMessageW(frame.status, SB_GETPARTS, 0, 0) <= frame.pickIndexPart + 1;
}

// The part's place in the frame, and the text where the bar would write it. Wider while somebody types, for a part is only as wide as its
// present text; an idle box is easy to hit where nothing stands behind it.
RECT NameBoxPlace(const FrameWindow& frame) noexcept
{
    RECT place{};
    SendMessageW(frame.status, SB_GETRECT, static_cast<WPARAM>(frame.pickIndexPart),
                 reinterpret_cast<LPARAM>(&place));
    const int border = GetSystemMetrics(SM_CXBORDER);
    const int margin = StatusTextInset() - border;
    InflateRect(&place, -border, -GetSystemMetrics(SM_CYBORDER));
    const TextSizes sizes = MeasureBox(frame);
    const LONG text = sizes.text + 2 * margin + GetSystemMetrics(SM_CXEDGE);
    if (IsTyping(frame)) {
        place.right =
            std::max({place.right, place.left + text, place.left + TypingNameBoxDigits * sizes.digit});
    } else if (IsLastPart(frame)) {
        place.right =
            std::max({place.right, place.left + text, place.left + LeastNameBoxDigits * sizes.digit});
    }
    // An edit box writes at its top.
    place.top += std::max<LONG>((place.bottom - place.top - sizes.height) / 2, 0);
    place.bottom = place.top + sizes.height;
    SendMessageW(frame.nameBox, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELPARAM(margin, margin));
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

// Keys that end the typing: what was typed is selected by then.
bool IsLeavingKey(WPARAM key) noexcept
{
    return key == VK_RETURN || key == VK_TAB;
}

LRESULT CALLBACK NameBoxProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                             DWORD_PTR frame) noexcept
{
    return Sealed<LRESULT>(0, [&]() -> LRESULT {
        switch (message) {
        case WM_KEYDOWN:
            if (!IsLeavingKey(wParam)) break;
            SetFocus(reinterpret_cast<const FrameWindow*>(frame)->client);
            return 0;
        case WM_CHAR:
            if (IsLeavingKey(wParam)) return 0; // the box would beep
            break;
        case WM_NCDESTROY: RemoveWindowSubclass(window, &NameBoxProc, NameBoxSubclass); break;
        default: break;
        }
        return DefSubclassProc(window, message, wParam, lParam);
    });
}

} // namespace

bool NameBoxCreate(FrameWindow& frame)
{
    TraceScope trace("name_box.cpp", "NameBoxCreate");
    frame.nameBox = CreateWindowExW(0, L"EDIT", nullptr, WS_CHILD | WS_CLIPSIBLINGS | ES_AUTOHSCROLL, 0, 0, 0,
                                    0, frame.window, ChildId(NameBoxId), ModuleInstance(), nullptr);
    if (frame.nameBox == nullptr) return false;
    SendMessageW(frame.nameBox, EM_LIMITTEXT, NameBoxCharacters, 0);
    return SetWindowSubclass(frame.nameBox, &NameBoxProc, NameBoxSubclass,
                             reinterpret_cast<DWORD_PTR>(&frame)) != FALSE;
}

void UpdateNameBox(FrameWindow& frame, const char16_t* pickIndex)
{
    if (IsTyping(frame)) return;
    frame.nameBoxChanging = true;
    SetWindowTextW(frame.nameBox, AsWide(pickIndex));
    frame.nameBoxChanging = false;
}

void OnPositionPickIndex(FrameWindow& frame, std::int32_t part)
{
    TraceScope trace("name_box.cpp", "OnPositionPickIndex");
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
    TraceScope trace("name_box.cpp", "OnNameBox");
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
