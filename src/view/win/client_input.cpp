#include <windows.h>

#include <commctrl.h>

#include <cstdlib>

#include "editor/edit_messages.h"
#include "editor/win/edit_window.h"
#include "entry/trace.h"
#include "entry/win/debug_channel.h"
#include "model/records.h"
#include "resources/resource.h"
#include "tools/win/fonts.h"
#include "tools/win/guard.h"
#include "tools/win/help.h"
#include "tools/win/scroll_bars.h"
#include "tools/win/window.h"
#include "view/busy.h"
#include "view/commands.h"
#include "view/layout.h"
#include "view/messages.h"
#include "view/open_object.h"
#include "view/selection.h"
#include "view/win/client_window.h"

namespace vantrel {

namespace {

constexpr std::uint32_t KeysTopic = 102; // of the help file
constexpr std::int32_t ShiftModifier = 1;
constexpr std::int32_t CtrlModifier = 2;

std::int32_t Modifiers() noexcept
{
    return (IsKeyDown(VK_SHIFT) ? ShiftModifier : 0) | (IsKeyDown(VK_CONTROL) ? CtrlModifier : 0);
}

void MoveSelection(View& view, std::int32_t modifiers, std::int32_t key)
{
    const BusyMark busy(view);
    MoveSelectionByKey(view, modifiers, key);
}

bool RestoreSelectedBox(View& view)
{
    const Scdr* const node = Selected(view);
    if (node == nullptr || (node->Flags & FlagMinimized) == 0) return false;
    const BusyMark busy(view);
    RestoreScdr(view);
    return true;
}

void ScrollView(View& view, std::int64_t dx, std::int64_t dy)
{
    if (dx == 0 && dy == 0) return;
    ChangeScrollPositions(view.scroll, dx, dy);
    EditResize(view);
}

void OnEditorModified(View& view)
{
    view.flags = static_cast<std::uint8_t>(view.flags | ViewModified);
    NotifyFrame(view, ViewNotifyState);
}

// The user dragged the editor's border: the box takes the size that the window has now.
void OnEditorResized(ClientWindow& client)
{
    View& view = client.view;
    Scdr* const node = Selected(view);
    if (client.activeEdit == nullptr || node == nullptr || !IsSimple(*node)) return;
    RECT rect{};
    GetWindowRect(client.activeEdit, &rect);
    node->width = rect.right - rect.left + 2 * view.metrics.margin;
    node->height = rect.bottom - rect.top + 2 * view.metrics.margin;
    node->records.flags = static_cast<std::uint8_t>(node->records.flags | RecordsResizedByUser);
    InvalidateAncestorsSizesAndLaterSiblingsOrigins(*node);
    FollowBoxSizes(view);
}

// The wheel pages planes as often as it clicked.
void OnMouseWheelScrollPlane(ClientWindow& client, std::uint32_t keys, std::int32_t delta)
{
    const Scdr* const node = Selected(client.view);
    if ((keys & (MK_LBUTTON | MK_RBUTTON | MK_MBUTTON)) != 0 || GetNumScrollLines() == 0) return;
    if (node == nullptr || node->Rank < 3) return;
    const WPARAM command = delta > 0 ? ID_PLANE_UP : ID_PLANE_DOWN;
    for (std::int32_t i = std::abs(delta) / WHEEL_DELTA; i > 0; --i)
        SendMessageW(client.window, WM_COMMAND, command, 0);
}

void SendToEditor(const ClientWindow& client, UINT message)
{
    if (client.activeEdit != nullptr) SendMessageW(client.activeEdit, message, 0, 0);
}

bool IsInput(UINT message) noexcept
{
    switch (message) {
    case WM_KEYDOWN:
    case WM_CHAR:
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN: return true;
    default: return false;
    }
}

// True when the view took the message from the edit window.
bool TakeEditInput(ClientWindow& client, UINT message, WPARAM wParam)
{
    if (!IsInput(message)) return false;
    if ((client.view.flags & ViewBusy) != 0) {
        // The edited text is being laid out or converted right now.
        StatusMessage(client.window, IDS_EDITOR_IS_BUSY, 0);
        return true;
    }
    if (message == WM_KEYDOWN) return OnKeyDown(client, wParam);
    return message == WM_CHAR && OnChar(client, wParam);
}

} // namespace

bool OnKeyDown(ClientWindow& client, WPARAM key)
{
    const TraceScope trace("client_input.cpp", "OnKeyDown");
    const std::int32_t modifiers = Modifiers();
    const bool ctrl = (modifiers & CtrlModifier) != 0;
    if (key == VK_F10 && modifiers == ShiftModifier) {
        OnContextMenu(client, {-1, -1});
        return true;
    }
    if (!ctrl || client.view.root == nullptr || IsKeyDown(VK_MENU)) return false;
    if (key != VK_TAB && (key != VK_UP || modifiers != CtrlModifier)) return false;
    MoveSelection(client.view, modifiers, static_cast<std::int32_t>(key));
    return true;
}

bool OnChar(ClientWindow& client, WPARAM character)
{
    const TraceScope trace("client_input.cpp", "OnChar");
    View& view = client.view;
    if (view.root == nullptr) return false;
    if (character == VK_TAB) {
        // With Ctrl the key press has done it already.
        if (!IsKeyDown(VK_CONTROL)) MoveSelection(view, Modifiers(), VK_TAB);
        return true;
    }
    return (character == VK_RETURN || character == VK_SPACE) && RestoreSelectedBox(view);
}

bool OnClientKeyDown(ClientWindow& client, WPARAM key)
{
    const TraceScope trace("client_input.cpp", "OnClientKeyDown");
    if (OnKeyDown(client, key)) return true;
    View& view = client.view;
    const bool ctrl = IsKeyDown(VK_CONTROL);
    const std::int64_t across = view.edit.averageCharWidth;
    const std::int64_t down = view.edit.lineHeight;
    switch (key) {
    case VK_LEFT: ScrollView(view, -across, 0); return true;
    case VK_RIGHT: ScrollView(view, across, 0); return true;
    case VK_UP: ScrollView(view, 0, -down); return true;
    case VK_DOWN: ScrollView(view, 0, down); return true;
    case VK_PRIOR: ScrollView(view, ctrl ? ScrollPageLeft : 0, ctrl ? 0 : ScrollPageUp); return true;
    case VK_NEXT: ScrollView(view, ctrl ? ScrollPageRight : 0, ctrl ? 0 : ScrollPageDown); return true;
    case VK_HOME: ScrollView(view, ScrollToStart, ctrl ? ScrollToStart : 0); return true;
    case VK_END: ScrollView(view, ScrollToEnd, ctrl ? ScrollToEnd : 0); return true;
    default: return false;
    }
}

void OnCommand(ClientWindow& client, std::int32_t command)
{
    const TraceScope trace("client_input.cpp", "OnCommand");
    if (command == ID_OPTIONS_FONT) return FontDlg(client.window);
    if (command == ID_HELP_GENERAL) return ShowHelpPage(client.window, client.view.context, 0);
    if (command == ID_HELP_KEYS) return ShowHelpPage(client.window, client.view.context, KeysTopic);
    if (client.view.root == nullptr) return;
    const ULONGLONG start = GetTickCount64();
    switch (command) {
    case ID_POPUP_CUT: SendToEditor(client, WM_CUT); break;
    case ID_POPUP_COPY: SendToEditor(client, WM_COPY); break;
    case ID_POPUP_PASTE: SendToEditor(client, WM_PASTE); break;
    case ID_FILE_OPEN_OBJECT: OpenNamedObject(client.view); break;
    default: RunViewCommand(client.view, command); break;
    }
    TraceInteger(__LINE__, static_cast<int>(GetTickCount64() - start));
}

void OnNotify(ClientWindow& client, const NMHDR& header)
{
    const TraceScope trace("client_input.cpp", "OnNotify");
    View& view = client.view;
    switch (static_cast<std::int32_t>(header.code)) {
    case EditNotifyModified: OnEditorModified(view); break;
    case EditNotifyResized: OnEditorResized(client); break;
    case EditNotifyShowPlane:
        ShowPlane(view, reinterpret_cast<const EditPlaneNotification&>(header).plane);
        break;
    case ViewNotifyError: NotifyFrame(view, ViewNotifyError); break; // a save failed; the error says why
    case EditNotifyPlaneLines: StatusMessage(client.window, IDS_NOT_SUPPORTED, 0); break;
    case EditNotifyOutOfMemory: StatusMessage(client.window, IDS_ERROR_ALLOCATING, MB_ICONHAND); break;
    case EditNotifySetFocus: NotifyFrame(view, ViewNotifySetFocus); break;
    default: break;
    }
}

void OnScroll(ClientWindow& client, UINT message, WPARAM wParam)
{
    const TraceScope trace("client_input.cpp", "OnScroll");
    const std::int32_t code = LOWORD(wParam);
    if (message == WM_HSCROLL) {
        OnHscroll(client.view.scroll, code);
    } else {
        OnVscroll(client.view.scroll, code);
    }
    EditResize(client.view);
}

void OnMouseWheel(ClientWindow& client, WPARAM wParam)
{
    const TraceScope trace("client_input.cpp", "OnMouseWheel");
    View& view = client.view;
    const std::uint32_t keys = GET_KEYSTATE_WPARAM(wParam);
    const std::int32_t delta = GET_WHEEL_DELTA_WPARAM(wParam);
    const bool control = (keys & MK_CONTROL) != 0;
    if (control && (view.flags & ViewBusy) != 0) {
        // A busy view takes no new font.
        StatusMessage(client.window, IDS_EDITOR_IS_BUSY, 0);
        return;
    }
    // Ctrl alone zooms; paging at the same time would take away what the user wants to see larger.
    if (keys == MK_CONTROL && !IsKeyDown(VK_MENU)) return ChangeFontSize(client.window, delta);
    OnMouseWheelScrollPlane(client, keys, delta);
    if (OnMouseWheel(view.scroll, keys, delta, view.edit.averageCharWidth, view.edit.lineHeight)) {
        EditResize(view);
    }
}

LRESULT CALLBACK FocusSubclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                               DWORD_PTR data)
{
    ClientWindow& client = *reinterpret_cast<ClientWindow*>(data);
    const bool taken = Sealed(true, [&] {
        const HandlerScope running(client);
        return TakeEditInput(client, message, wParam);
    });
    return taken ? 0 : DefSubclassProc(window, message, wParam, lParam);
}

} // namespace vantrel
