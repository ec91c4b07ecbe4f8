#include <cwchar>

#include "editor/edit_messages.h"
#include "entry/trace.h"
#include "model/edit_state.h"
#include "tools/win/scroll_bars.h"
#include "tools/win/window.h"
#include "view/box_text.h"
#include "view/hit_test.h"
#include "view/layout.h"
#include "view/messages.h"
#include "view/win/client_window.h"
#include "view/win/painting.h"

namespace vantrel {

namespace {

void Invalidate(View& view)
{
    InvalidateRect(view.window, nullptr, FALSE);
}

void ShowStatus(View& view, std::int32_t stringId, std::int32_t percent, bool error)
{
    if (percent < 0) {
        StatusMessage(view.window, static_cast<UINT>(stringId), error ? MB_ICONEXCLAMATION : 0U);
        return;
    }
    wchar_t text[LongestStatus] = L"";
    wchar_t filled[LongestStatus] = L"";
    LoadStringW(ModuleInstance(), static_cast<UINT>(stringId), text, LongestStatus);
    std::swprintf(filled, LongestStatus, text, percent);
    StatusProgress(view.window, filled);
}

bool IsInterruptOrClosePending(View& view)
{
    EditContext* const context = view.context;
    return context->isInterruptOrClosePending != nullptr && context->isInterruptOrClosePending(context) != 0;
}

void ShowWindowScrollBars(View& view, bool show)
{
    view.scroll.horizontalShown = show;
    view.scroll.verticalShown = show;
    ShowScrollBar(view.window, SB_BOTH, show);
    if (!show) return;
    // Bars that were hidden missed the updates.
    QmSetScrollInfo(view.window, SB_HORZ, view.scroll.horizontal);
    QmSetScrollInfo(view.window, SB_VERT, view.scroll.vertical);
}

void SendSize(View& view)
{
    SendWmSize(view.window);
}

void HideEditWindow(ClientWindow& client, HWND edit)
{
    if (GetCapture() == edit) ReleaseCapture();
    const HWND focus = GetFocus();
    if (client.activeEdit == edit) client.activeEdit = nullptr;
    if (focus == client.window || focus == edit) SetScdrFocus(client.view);
    ShowWindow(edit, SW_HIDE);
}

// Before it takes a node, for the text is scrolled to the caret in the room that it finds, and its bars are drawn where it stands. A
// maximised node's editor has its size from the window.
void GiveEditorItsPlace(const ClientWindow& client, HWND edit)
{
    const View& view = client.view;
    const Scdr& node = *Selected(view);
    if ((node.Flags & FlagMaximized) != 0) return;
    const Rect64 area = InWindow(view, GetEditRectangle(view.metrics.margin, node));
    SetWindowPos(edit, nullptr, WindowPixel(area.left), WindowPixel(area.top),
                 WindowPixel(area.right - area.left), WindowPixel(area.bottom - area.top),
                 SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOREDRAW | SWP_NOCOPYBITS);
}

// Where an array that is opened was scrolled to without the editor.
struct OpeningPlace {
    Point64 position;
    bool wasOpen = false; // and has a caret of its own
};

OpeningPlace PlaceToOpenAt(const Scdr& node) noexcept
{
    const bool wasOpen = node.editState != nullptr && node.editState->inUse;
    if (wasOpen && node.editState->scroll.window != nullptr) return {{}, true};
    if (node.extra == nullptr || node.extra->boxScroll == nullptr) return {{}, wasOpen};
    const ScrollRecord& scroll = *node.extra->boxScroll;
    return {{scroll.horizontal.position, scroll.vertical.position}, wasOpen};
}

// A caret that the user has put somewhere stays there; the first one goes to the text in sight.
void OpenAt(View& view, Scdr& node, const OpeningPlace& place, HWND edit)
{
    if (node.editState == nullptr || (place.position.x == 0 && place.position.y == 0)) return;
    ChangeScrollPositions(node.editState->scroll, place.position.x, place.position.y);
    if (place.wasOpen) return SendWmSize(edit); // scrolls to the caret
    BringCaretIntoSight(view, node);
    SendMessageW(edit, EditMessageDrawCaret, 0, 0); // the window may have had the keyboard for another array
}

void BeginEditor(View& view, bool scalar, bool readOnly)
{
    const TraceScope trace("view_effects.cpp", "BeginEditor");
    ClientWindow& client = ClientOf(view);
    const HWND edit = scalar ? client.scalarEdit : client.arrayEdit;
    const HWND previous = client.activeEdit;
    if (previous != nullptr && GetCapture() == previous) ReleaseCapture();
    GiveEditorItsPlace(client, edit);
    SendMessageW(edit, EM_SETREADONLY, readOnly, 0);
    const OpeningPlace place = PlaceToOpenAt(*Selected(view));
    SendMessageW(edit, EditMessageUseScdr, 0, 0);
    OpenAt(view, *Selected(view), place, edit);
    client.activeEdit = edit;
    if (previous == nullptr || previous == edit) return;
    const bool hadFocus = GetFocus() == previous;
    ShowWindow(previous, SW_HIDE);
    if (hadFocus) SetFocus(client.window);
}

void PlaceEditor(View& view, const Rect64* windowRect)
{
    const TraceScope trace("view_effects.cpp", "PlaceEditor");
    const HWND edit = ClientOf(view).activeEdit;
    if (edit == nullptr) return;
    if (windowRect != nullptr) {
        const int left = WindowPixel(windowRect->left);
        const int top = WindowPixel(windowRect->top);
        MoveWindow(edit, left, top, WindowPixel(windowRect->right - windowRect->left),
                   WindowPixel(windowRect->bottom - windowRect->top), FALSE);
    }
    // Only now is it where it belongs; shown earlier it would flash at its old place.
    if (!IsWindowVisible(edit)) ShowWindow(edit, SW_SHOWNA);
    RedrawWindow(edit, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_FRAME);
}

void ReloadEditor(View& view)
{
    const HWND edit = ClientOf(view).activeEdit;
    if (edit != nullptr) SendMessageW(edit, EditMessageUseScdr, 1, 0);
}

void ShowEditorPlane(View& view)
{
    const HWND edit = ClientOf(view).activeEdit;
    if (edit == nullptr) return;
    SendMessageW(edit, EditMessageNewPlane, 0, 0);
    InvalidateRect(edit, nullptr, FALSE);
}

void MoveEditorCaret(View& view, std::int64_t column, std::int64_t line)
{
    const HWND edit = ClientOf(view).activeEdit;
    if (edit == nullptr) return;
    const std::int64_t deltas[] = {column, line};
    SendMessageW(edit, EditMessageMoveCaret, reinterpret_cast<WPARAM>(deltas), 0);
}

void HideEditor(View& view)
{
    const TraceScope trace("view_effects.cpp", "HideEditor");
    ClientWindow& client = ClientOf(view);
    if (client.activeEdit != nullptr) HideEditWindow(client, client.activeEdit);
}

void SetEditorModified(View& view)
{
    const HWND edit = ClientOf(view).activeEdit;
    if (edit != nullptr) SendMessageW(edit, EM_SETMODIFY, TRUE, 0);
}

void EnableFrame(View& view, bool enable)
{
    EnableWindow(view.frame, enable);
}

void SizeFrame(View& view)
{
    SendMessageW(view.frame, SizeFrameToDefinition, 0, 0);
}

} // namespace

ViewEffects WindowViewEffects() noexcept
{
    ViewEffects effects{};
    effects.invalidate = &Invalidate;
    effects.showStatus = &ShowStatus;
    effects.notifyFrame = &NotifyFrame;
    effects.isInterruptOrClosePending = &IsInterruptOrClosePending;
    effects.showWindowScrollBars = &ShowWindowScrollBars;
    effects.readPlatform = &ReadPlatform;
    effects.sendSize = &SendSize;
    effects.beginEditor = &BeginEditor;
    effects.placeEditor = &PlaceEditor;
    effects.reloadEditor = &ReloadEditor;
    effects.showEditorPlane = &ShowEditorPlane;
    effects.moveEditorCaret = &MoveEditorCaret;
    effects.hideEditor = &HideEditor;
    effects.setFocus = &SetScdrFocus;
    effects.setEditorModified = &SetEditorModified;
    effects.enableFrame = &EnableFrame;
    effects.sizeFrame = &SizeFrame;
    effects.askAxisOrder = &AskAxisOrder;
    return effects;
}

void NotifyFrame(View& view, std::int32_t code)
{
    const TraceScope trace("view_effects.cpp", "NotifyFrame");
    NMHDR header{};
    header.hwndFrom = view.window;
    header.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID(view.window));
    header.code = static_cast<UINT>(code);
    SendMessageW(view.frame, WM_NOTIFY, header.idFrom, reinterpret_cast<LPARAM>(&header));
}

void SetScdrFocus(View& view)
{
    const TraceScope trace("view_effects.cpp", "SetScdrFocus");
    const HWND edit = ClientOf(view).activeEdit;
    SetFocus(edit != nullptr ? edit : view.window);
    NotifyFrame(view, ViewNotifySetFocus);
}

} // namespace vantrel
