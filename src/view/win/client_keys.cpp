#include <windows.h>

#include <commctrl.h>

#include "entry/trace.h"
#include "resources/resource.h"
#include "tools/win/guard.h"
#include "tools/win/window.h"
#include "view/busy.h"
#include "view/layout.h"
#include "view/selection.h"
#include "view/win/client_window.h"

namespace vantrel {

namespace {

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
    const TraceScope trace("client_keys.cpp", "OnKeyDown");
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
    const TraceScope trace("client_keys.cpp", "OnChar");
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
    const TraceScope trace("client_keys.cpp", "OnClientKeyDown");
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
