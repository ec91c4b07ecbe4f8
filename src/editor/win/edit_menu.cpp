#include <windowsx.h>

#include <algorithm>

#include "editor/win/edit_instance.h"
#include "entry/command_log.h"
#include "entry/trace.h"
#include "resources/resource.h"
#include "tools/win/help.h"
#include "tools/win/window.h"

namespace vantrel {

namespace {

constexpr std::uint32_t EditingTextTopic = 103; // of the help file

bool CanPasteArray(const EditWindow& edit)
{
    EditContext* const context = edit.view->context;
    return context->langEnv->Operations.ClipboardCanPaste(context) != 0;
}

void DisableMenuChoices(const EditWindow& edit, HMENU popup)
{
    const TraceScope trace("edit_menu.cpp", "DisableMenuChoices");
    const EditMenu menu =
        GetEditMenu(edit, {IsClipboardFormatAvailable(CF_UNICODETEXT) != FALSE, CanPasteArray(edit)});
    const struct {
        UINT id;
        bool enabled;
    } choices[] = {
        {ID_POPUP_UNDO, menu.undo},         {ID_POPUP_REDO, menu.redo},
        {ID_POPUP_CUT, menu.cut},           {ID_POPUP_COPY, menu.copy},
        {ID_POPUP_PASTE, menu.paste},       {ID_POPUP_DELETE, menu.remove},
        {ID_EDIT_CUT_ARRAY, menu.cutArray}, {ID_EDIT_PASTE_ARRAY, menu.pasteArray},
        {ID_RESTORE, menu.restore},         {ID_MINIMIZE, menu.minimize},
        {ID_MAXIMIZE, menu.maximize},
    };
    for (const auto& choice : choices) {
        EnableMenuItem(popup, choice.id,
                       MF_BYCOMMAND | (choice.enabled ? MF_ENABLED : MF_GRAYED | MF_DISABLED));
    }
}

void RunCommand(EditInstance& instance, UINT command)
{
    EditWindow& edit = instance.edit;
    switch (command) {
    case ID_POPUP_UNDO: Undo(edit); break;
    case ID_POPUP_REDO: Redo(edit); break;
    case ID_POPUP_CUT: CutSelection(edit); break;
    case ID_POPUP_COPY: CopySelection(edit); break;
    case ID_POPUP_PASTE: PasteClipboard(edit); break;
    case ID_POPUP_DELETE: DeleteForward(edit); break;
    case ID_POPUP_SELECT_ALL: SelectAll(edit); break;
    case ID_POPUP_HELP: ShowHelpPage(WindowOf(instance), edit.view->context, EditingTextTopic); break;
    default: SendMessageW(GetParent(WindowOf(instance)), WM_COMMAND, command, 0); break;
    }
}

// The caret on the screen, or the nearest place in the window where it has been scrolled out of sight.
POINT CaretOnScreen(EditInstance& instance)
{
    const Point64 caret = CaretToPosition(instance.edit, CaretOf(instance.edit)).point;
    const Rect64& client = instance.edit.client;
    POINT point{static_cast<LONG>(std::clamp(caret.x, client.left, client.right)),
                static_cast<LONG>(std::clamp(caret.y, client.top, client.bottom))};
    ClientToScreen(WindowOf(instance), &point);
    return point;
}

void ShowMenuAt(EditInstance& instance, POINT point)
{
    const PopUpMenu menu(IDM_EDIT_POPUP);
    DisableMenuChoices(instance.edit, menu.Get());
    const HWND window = WindowOf(instance);
    const BOOL command = TrackPopupMenu(menu.Get(), TPM_RIGHTBUTTON | TPM_NONOTIFY | TPM_RETURNCMD, point.x,
                                        point.y, 0, window, nullptr);
    // The window may have been closed while the menu was open.
    if (command == 0 || GetEditInstance(window) != &instance || !HasEditedNode(instance.edit)) return;
    LogCommand(instance.edit.view->context, WM_COMMAND, command);
    RunCommand(instance, static_cast<UINT>(command));
}

} // namespace

LRESULT OnContextMenu(EditInstance& instance, LPARAM screen)
{
    const TraceScope trace("edit_menu.cpp", "OnContextMenu");
    if (instance.edit.view->busy) return 0; // the text is being laid out or converted right now
    const POINT point{GET_X_LPARAM(screen), GET_Y_LPARAM(screen)};
    const bool byKeyboard = point.x == -1 && point.y == -1;
    ShowMenuAt(instance, byKeyboard ? CaretOnScreen(instance) : point);
    return 0;
}

void ShowContextMenuAtCaret(EditWindow& window)
{
    EditInstance* const instance = GetEditInstance(window.window);
    if (instance != nullptr) OnContextMenu(*instance, MAKELPARAM(-1, -1));
}

} // namespace vantrel
