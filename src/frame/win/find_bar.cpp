#include <windows.h>

#include <algorithm>

#include "entry/trace.h"
#include "frame/find.h"
#include "frame/messages.h"
#include "frame/win/frame_window.h"
#include "resources/resource.h"
#include "tools/win/guard.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"
#include "view/messages.h"

namespace vantrel {
namespace {

bool IsShown(const FrameWindow& frame) noexcept
{
    return (frame.options & FrameFindShown) != 0;
}

FindState* StateOf(const FrameWindow& frame)
{
    return reinterpret_cast<FindState*>(SendMessageW(frame.client, ViewGetFindOptions, 0, 0));
}

void Enable(const FrameWindow& frame, int control, bool enabled) noexcept
{
    EnableWindow(GetDlgItem(frame.findBar, control), enabled);
}

// A greyed button cannot keep the keyboard.
void LeaveIfDisabled(const FrameWindow& frame) noexcept
{
    HWND const focus = GetFocus();
    if (focus != nullptr && IsChild(frame.findBar, focus) && !IsWindowEnabled(focus))
        SetFocus(GetDlgItem(frame.findBar, IDC_FIND_TEXT));
}

void EnableSearch(const FrameWindow& frame, bool enabled) noexcept
{
    Enable(frame, IDC_FIND_NEXT, enabled);
    Enable(frame, IDC_FIND_PREVIOUS, enabled);
    const UINT state = enabled ? MF_ENABLED : MF_GRAYED | MF_DISABLED;
    EnableMenuItem(GetMenu(frame.window), ID_EDIT_FIND_NEXT, state);
    EnableMenuItem(GetMenu(frame.window), ID_EDIT_FIND_PREVIOUS, state);
}

bool IsChecked(const FrameWindow& frame, int control) noexcept
{
    return IsDlgButtonChecked(frame.findBar, control) == BST_CHECKED;
}

void TellView(const FrameWindow& frame, FindRequest request)
{
    SendMessageW(frame.client, ViewFind, static_cast<WPARAM>(request), 0);
    RethrowEscapedException();
}

void FillBar(const FrameWindow& frame)
{
    SendDlgItemMessageW(frame.findBar, IDC_FIND_TEXT, EM_LIMITTEXT, FindTextSize - 1, 0);
    const FindState* const state = StateOf(frame);
    if (state == nullptr) return;
    CheckDlgButton(frame.findBar, IDC_FIND_IGNORE_CASE,
                   (state->options & FindIgnoreCase) != 0 ? BST_CHECKED : BST_UNCHECKED);
    CheckDlgButton(frame.findBar, IDC_FIND_NUMERIC,
                   (state->options & FindNumeric) != 0 ? BST_CHECKED : BST_UNCHECKED);
    SetDlgItemTextW(frame.findBar, IDC_FIND_TEXT, AsWide(state->text));
}

// In the bar's client area.
RECT PlaceOf(const FrameWindow& frame, int control) noexcept
{
    RECT place{};
    GetWindowRect(GetDlgItem(frame.findBar, control), &place);
    MapWindowPoints(nullptr, frame.findBar, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

void Place(const FrameWindow& frame, int control, const RECT& place) noexcept
{
    MoveWindow(GetDlgItem(frame.findBar, control), place.left, place.top, place.right - place.left,
               place.bottom - place.top, TRUE);
}

INT_PTR OnBarCommand(FrameWindow& frame, int control, int notification)
{
    switch (control) {
    case IDC_FIND_TEXT:
        if (notification == EN_CHANGE) CheckFindText(frame);
        return TRUE;
    case IDC_FIND_IGNORE_CASE:
    case IDC_FIND_NUMERIC: return CheckFindText(frame), TRUE;
    case IDOK: // Enter where no button has the keyboard
    case IDC_FIND_NEXT: return TellView(frame, FindRequest::Next), TRUE;
    case IDC_FIND_PREVIOUS: return TellView(frame, FindRequest::Previous), TRUE;
    case IDCANCEL: return FindBarHide(frame), TRUE;
    default: return FALSE;
    }
}

INT_PTR CALLBACK FindBarProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept
{
    return Sealed<INT_PTR>(FALSE, [&]() -> INT_PTR {
        if (message == WM_INITDIALOG) {
            SetWindowLongPtrW(dialog, DWLP_USER, lParam);
            return FALSE; // the keyboard stays where it is
        }
        auto* const frame = reinterpret_cast<FrameWindow*>(GetWindowLongPtrW(dialog, DWLP_USER));
        // While the bar is being filled the frame does not know it yet.
        if (message != WM_COMMAND || frame == nullptr || frame->findBar != dialog) return FALSE;
        return OnBarCommand(*frame, LOWORD(wParam), HIWORD(wParam));
    });
}

} // namespace

bool FindBarCreate(FrameWindow& frame)
{
    TraceScope trace("find_bar.cpp", "FindBarCreate");
    HWND const bar = CreateDialogParamW(ModuleInstance(), MAKEINTRESOURCEW(IDD_FIND_BAR), frame.window,
                                        FindBarProc, reinterpret_cast<LPARAM>(&frame));
    if (bar == nullptr) return false;
    SetWindowLongPtrW(bar, GWLP_ID, FindBarId);
    frame.findBar = bar;
    frame.findBarWidth = PlaceOf(frame, IDCANCEL).right + PlaceOf(frame, IDC_FIND_LABEL).left;
    FillBar(frame);
    EnableSearch(frame, false);
    CheckFindText(frame);
    if (IsShown(frame)) ShowWindow(bar, SW_SHOWNA);
    return true;
}

void FindBarFit(FrameWindow& frame, int width)
{
    TraceScope trace("find_bar.cpp", "FindBarFit");
    RECT text = PlaceOf(frame, IDC_FIND_TEXT);
    const int made = text.right - text.left - frame.findBarShift;
    const int shift = std::clamp(width - frame.findBarWidth, -made * 2 / 3, 0);
    const int change = shift - frame.findBarShift;
    if (change == 0) return;
    frame.findBarShift = shift;
    text.right += change;
    Place(frame, IDC_FIND_TEXT, text);
    for (const int control :
         {IDC_FIND_NEXT, IDC_FIND_PREVIOUS, IDC_FIND_IGNORE_CASE, IDC_FIND_NUMERIC, IDCANCEL}) {
        RECT place = PlaceOf(frame, control);
        OffsetRect(&place, change, 0);
        Place(frame, control, place);
    }
}

void FindBarShow(FrameWindow& frame)
{
    TraceScope trace("find_bar.cpp", "FindBarShow");
    frame.options |= FrameFindShown;
    InvalidateRect(frame.client, nullptr, FALSE);
    ShowWindow(frame.findBar, SW_SHOWNA);
    CheckFindText(frame);
    HWND const text = GetDlgItem(frame.findBar, IDC_FIND_TEXT);
    SetFocus(text);
    SendMessageW(text, EM_SETSEL, 0, -1);
    SendWmSize(frame.window);
    RethrowEscapedException();
}

void FindBarHide(FrameWindow& frame)
{
    TraceScope trace("find_bar.cpp", "FindBarHide");
    if (!IsShown(frame)) return;
    frame.options &= ~FrameFindShown;
    if (FindState* const state = StateOf(frame)) state->numberCount = 0; // nothing is searched for any more
    EnableSearch(frame, false);
    SetFocus(frame.client);
    ShowWindow(frame.findBar, SW_HIDE);
    SendWmSize(frame.window);
    TellView(frame, FindRequest::OptionsChanged);
}

void FindBarPress(FrameWindow& frame, int button)
{
    TraceScope trace("find_bar.cpp", "FindBarPress");
    if (!IsShown(frame) || GetWindowTextLengthW(GetDlgItem(frame.findBar, IDC_FIND_TEXT)) == 0) return;
    HWND const pressed = GetDlgItem(frame.findBar, button);
    SetFocus(pressed);
    SendMessageW(pressed, BM_CLICK, 0, 0);
    RethrowEscapedException();
}

void CheckFindText(FrameWindow& frame)
{
    TraceScope trace("find_bar.cpp", "CheckFindText");
    FindState* const state = IsShown(frame) ? StateOf(frame) : nullptr;
    if (state == nullptr) return;
    char16_t text[FindTextSize] = {};
    GetDlgItemTextW(frame.findBar, IDC_FIND_TEXT, AsWide(text), FindTextSize);
    SetFindState(*state, IsChecked(frame, IDC_FIND_IGNORE_CASE), IsChecked(frame, IDC_FIND_NUMERIC), text);
    const FindRules rules = GetFindRules(*state);
    Enable(frame, IDC_FIND_IGNORE_CASE, rules.ignoreCase);
    Enable(frame, IDC_FIND_NUMERIC, rules.numeric);
    EnableSearch(frame, rules.search);
    LeaveIfDisabled(frame);
    TellView(frame, FindRequest::OptionsChanged);
}

bool IsFocusInFindBar(const FrameWindow& frame) noexcept
{
    HWND const focus = GetFocus();
    return focus != nullptr && IsChild(frame.findBar, focus);
}

} // namespace vantrel
