// The switchboard: what the frame does itself, and what it passes on.
#include "entry/command_log.h"
#include "entry/trace.h"
#include "frame/messages.h"
#include "frame/win/frame_window.h"
#include "resources/resource.h"
#include "tools/win/guard.h"
#include "tools/win/window.h"
#include "view/messages.h"
#include "view/options.h"

namespace vantrel {
namespace {

constexpr int FromAccelerator = 1;

LRESULT OnSave(FrameWindow& frame)
{
    return SaveTree(frame) ? 0 : 1;
}

LRESULT OnExit(const FrameWindow& frame)
{
    SendMessageW(frame.window, WM_SYSCOMMAND, SC_CLOSE, 0);
    return 0;
}

LRESULT OnSaveAndClose(FrameWindow& frame)
{
    return SaveTree(frame) ? OnExit(frame) : 1;
}

// The text box of a bar that has the keyboard, or null.
HWND BarTextWithFocus(const FrameWindow& frame) noexcept
{
    HWND const focus = GetFocus();
    const bool isText = focus == GetDlgItem(frame.findBar, IDC_FIND_TEXT) || focus == frame.nameBox ||
                        focus == frame.information;
    return focus != nullptr && isText ? focus : nullptr;
}

// What the keys of a command mean in every text box; 0: nothing.
WPARAM TextKeyOf(std::int32_t id) noexcept
{
    switch (id) {
    case ID_INSERT_ITEM_LEFT: return VK_LEFT;
    case ID_INSERT_ITEM_RIGHT: return VK_RIGHT;
    default: return 0;
    }
}

UINT TextMessageOf(std::int32_t id) noexcept
{
    switch (id) {
    case ID_POPUP_CUT: return WM_CUT;
    case ID_POPUP_COPY: return WM_COPY;
    case ID_POPUP_PASTE: return WM_PASTE;
    default: return 0;
    }
}

// Who works in a bar's text box means that text: its words are selected by the keys that insert items into the array, and the menu's Cut,
// Copy and Paste are the box's.
bool IsForBarText(const FrameWindow& frame, int source, std::int32_t id)
{
    HWND const text = BarTextWithFocus(frame);
    if (text == nullptr || source > FromAccelerator) return false;
    const WPARAM key = source == FromAccelerator ? TextKeyOf(id) : 0;
    if (key != 0) SendMessageW(text, WM_KEYDOWN, key, 1);
    const UINT message = TextMessageOf(id);
    if (message != 0) SendMessageW(text, message, 0, 0);
    return key != 0 || message != 0;
}

// Out of the small bars, back to the array.
void OnEscape(FrameWindow& frame)
{
    HWND const focus = GetFocus();
    if (focus == frame.information) {
        InformationHide(frame);
    } else if (IsFocusInFindBar(frame)) {
        SendMessageW(frame.findBar, WM_COMMAND, IDCANCEL, 0);
    } else if (focus == frame.nameBox) {
        SetFocus(frame.client);
    }
}

// Where Escape means something of its own the host's key, which ends the edit, has to wait.
bool IsEscapeFromBar(const FrameWindow& frame, int source, std::int32_t id) noexcept
{
    if (source != FromAccelerator || id != ID_FILE_SAVE_AND_CLOSE) return false;
    HWND const focus = GetFocus();
    return IsFocusInFindBar(frame) || focus == frame.nameBox || focus == frame.information;
}

// Commands that would take the tree from under a long operation which is pumping messages.
bool NeedsWholeTree(std::int32_t id) noexcept
{
    switch (id) {
    case ID_FILE_REVERT:
    case ID_FILE_SAVE:
    case ID_FILE_SAVE_AS:
    case ID_FILE_SAVE_AND_CLOSE:
    case ID_FILE_OPEN:
    case ID_FILE_PRINT:
    case ID_HELP_DEBUG: return true;
    default: return FindViewOption(id) != nullptr;
    }
}

LRESULT OnControl(FrameWindow& frame, WPARAM wParam, LPARAM lParam)
{
    switch (LOWORD(wParam)) {
    case NameBoxId: return OnNameBox(frame, HIWORD(wParam)), 0;
    case InformationId:
        if (HIWORD(wParam) == EN_KILLFOCUS) InformationHide(frame);
        return 0;
    default: return DefWindowProcW(frame.window, WM_COMMAND, wParam, lParam);
    }
}

LRESULT ForwardToView(const FrameWindow& frame, WPARAM wParam, LPARAM lParam)
{
    const LRESULT result = SendMessageW(frame.client, WM_COMMAND, wParam, lParam);
    RethrowEscapedException();
    return result;
}

// Dialogs of the view's own; the window under them stays until they are answered.
LRESULT AskInView(FrameWindow& frame, WPARAM wParam, LPARAM lParam)
{
    const AskingScope asking(frame);
    return ForwardToView(frame, wParam, lParam);
}

LRESULT CarryOut(FrameWindow& frame, std::int32_t id, WPARAM wParam, LPARAM lParam)
{
    switch (id) {
    case ID_FILE_REVERT: return OnRevert(frame);
    case ID_FILE_SAVE: return OnSave(frame);
    case ID_FILE_SAVE_AS: return OnSaveAs(frame), 0;
    case ID_FILE_SAVE_AND_CLOSE: return OnSaveAndClose(frame);
    case ID_FILE_EXIT: return OnExit(frame);
    case ID_FILE_OPEN: return OnOpen(frame), 0;
    case ID_FILE_PAGE_SETUP: return PrinterSetupPage(frame), 0;
    case ID_FILE_PRINT: return Print(frame), 0;
    case ID_FILE_EXIT_FORCE: return CloseWithoutQuestion(frame), 0;
    case ID_EDIT_FIND: return FindBarShow(frame), 0;
    case ID_EDIT_FIND_NEXT: return FindBarPress(frame, IDC_FIND_NEXT), 0;
    case ID_EDIT_FIND_PREVIOUS: return FindBarPress(frame, IDC_FIND_PREVIOUS), 0;
    case ID_OPTIONS_FONT:
    case ID_HELP_GENERAL:
    case ID_HELP_KEYS: return AskInView(frame, wParam, lParam);
    case ID_HELP_ABOUT: return ShowAbout(frame), 0;
    case ID_HELP_DEBUG: return OnDebug(frame), 0;
    case ID_SIZE_TO_DEFINITION: return OnSizeFrameToDefinition(frame), 0;
    case ID_FRAME_ESCAPE: return OnEscape(frame), 0;
    case ID_FRAME_NEXT_PART: return FocusNextPart(frame, false), 0;
    case ID_FRAME_PREVIOUS_PART: return FocusNextPart(frame, true), 0;
    case ID_FRAME_INFORMATION: return InformationToggle(frame), 0;
    default: return ForwardToView(frame, wParam, lParam);
    }
}

} // namespace

LRESULT OnCommand(FrameWindow& frame, WPARAM wParam, LPARAM lParam)
{
    TraceScope trace("frame_commands.cpp", "OnCommand");
    const auto id = static_cast<std::int32_t>(LOWORD(wParam));
    LogCommand(frame.context, WM_COMMAND, id);
    UpdateWindow(frame.toolBar);
    if (IsForBarText(frame, HIWORD(wParam), id)) return 0;
    if (IsMenuItemDisabled(GetMenu(frame.window), static_cast<UINT>(id))) return 0;
    if (HIWORD(wParam) > FromAccelerator) return OnControl(frame, wParam, lParam);
    if (IsEscapeFromBar(frame, HIWORD(wParam), id)) return OnEscape(frame), 0;
    if (NeedsWholeTree(id) && IsBusy(frame)) {
        StatusMessage(frame.window, IDS_EDITOR_IS_BUSY, 0);
        return 0;
    }
    if (IsOptionCommand(id)) return ToggleOption(frame, id), 0;
    return CarryOut(frame, id, wParam, lParam);
}

} // namespace vantrel
