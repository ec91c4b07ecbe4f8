// Choosing from the real menus and from the tool bar with the mouse.
#pragma once

#include "ui/driver.h"

namespace vantrel::ui {

// False when the menu has no such item, or it is grayed.
bool ChooseFromMenuBar(User& user, int id);
// The array view's context menu, opened at the selection as by the keyboard.
bool ChooseFromContextMenu(User& user, int id);
// The cell editor's, opened at the caret.
bool ChooseFromEditorMenu(User& user, int id);
// A menu that is open, or null when none comes up; and the window that shows it (`menu` null: any).
HMENU WaitForMenu();
HWND WaitForMenuWindow(HMENU menu);
// Escape, and until it is gone.
void CloseMenu(User& user);
// The frame's tool bar, and a press of the button for a command on it.
HWND ToolBarOf(const User& user);
void PressTool(User& user, int command);
// Whether an item of a menu, at any depth, cannot be chosen.
bool IsGrayed(HMENU menu, int id);

} // namespace vantrel::ui
