// The pop-up information window: everything about the selected array, also what the status bar has no room for.
#include <windows.h>

#include <algorithm>

#include "entry/trace.h"
#include "frame/messages.h"
#include "frame/win/frame_window.h"
#include "frame/win/node_attributes.h"
#include "resources/resource.h"
#include "tools/win/fonts.h"
#include "tools/win/guard.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"
#include "view/messages.h"

namespace vantrel {
namespace {

const Scdr* SelectedNode(const FrameWindow& frame) noexcept
{
    return reinterpret_cast<const Scdr*>(SendMessageW(frame.client, ViewGetSelectedScdr, 0, 0));
}

// What the text needs, borders included.
SIZE SizeOfText(const FrameWindow& frame)
{
    wchar_t text[4096] = {};
    const int length = GetWindowTextW(frame.information, text, static_cast<int>(std::size(text)));
    const WindowDc dc(frame.information);
    const SelectedObject font(dc, reinterpret_cast<HFONT>(SendMessageW(frame.information, WM_GETFONT, 0, 0)));
    RECT needed{};
    DrawTextW(dc, text, length, &needed, DT_CALCRECT | DT_NOPREFIX);
    const DWORD margins = static_cast<DWORD>(SendMessageW(frame.information, EM_GETMARGINS, 0, 0));
    const LONG across = LOWORD(margins) + HIWORD(margins) + 4 * GetSystemMetrics(SM_CXEDGE);
    return {needed.right + across, needed.bottom + 4 * GetSystemMetrics(SM_CYEDGE)};
}

// Upon the view, in the corner above the bar that it speaks more of.
void Place(const FrameWindow& frame)
{
    RECT view{};
    GetWindowRect(frame.client, &view);
    MapWindowPoints(nullptr, frame.window, reinterpret_cast<POINT*>(&view), 2);
    const SIZE wanted = SizeOfText(frame);
    const LONG width = std::min(wanted.cx, view.right - view.left);
    const LONG height = std::min(wanted.cy, view.bottom - view.top);
    SetWindowPos(frame.information, HWND_TOP, view.left, view.bottom - height, width, height, SWP_SHOWWINDOW);
}

} // namespace

bool InformationCreate(FrameWindow& frame)
{
    TraceScope trace("information.cpp", "InformationCreate");
    frame.information = CreateWindowExW(
        0, L"EDIT", nullptr,
        WS_CHILD | WS_CLIPSIBLINGS | WS_BORDER | ES_MULTILINE | ES_READONLY | ES_AUTOHSCROLL | ES_AUTOVSCROLL,
        0, 0, 0, 0, frame.window, ChildId(InformationId), ModuleInstance(), nullptr);
    return frame.information != nullptr;
}

void InformationShow(FrameWindow& frame)
{
    TraceScope trace("information.cpp", "InformationShow");
    if (IsBusy(frame)) { // the array is being worked on
        StatusMessage(frame.window, IDS_EDITOR_IS_BUSY, 0);
        return;
    }
    const Scdr* const node = SelectedNode(frame);
    if (node == nullptr) return;
    const NodeAttributes attributes(frame, *node);
    const Text text = InformationText(frame.context->langEnv->DialectKind, attributes.Get(), *node);
    CopyFontToWindow(frame.information,
                     reinterpret_cast<HFONT>(SendMessageW(frame.client, WM_GETFONT, 0, 0)));
    SetWindowTextW(frame.information, AsWide(text.c_str()));
    Place(frame);
    SetFocus(frame.information);
    RethrowEscapedException();
}

void InformationHide(const FrameWindow& frame)
{
    TraceScope trace("information.cpp", "InformationHide");
    if (!IsWindowVisible(frame.information)) return;
    if (GetFocus() == frame.information) SetFocus(frame.client);
    ShowWindow(frame.information, SW_HIDE);
    InvalidateRect(frame.client, nullptr, FALSE);
    RethrowEscapedException();
}

void InformationToggle(FrameWindow& frame)
{
    if (IsWindowVisible(frame.information)) {
        InformationHide(frame);
    } else {
        InformationShow(frame);
    }
}

void InformationPlace(const FrameWindow& frame)
{
    if (IsWindowVisible(frame.information)) Place(frame);
}

LRESULT OnColorInformation(HDC dc) noexcept
{
    SetTextColor(dc, GetSysColor(COLOR_INFOTEXT));
    SetBkColor(dc, GetSysColor(COLOR_INFOBK));
    return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_INFOBK));
}

} // namespace vantrel
