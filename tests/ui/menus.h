// Choosing from the real menus with the mouse.
#pragma once

#include "ui/driver.h"

namespace vantrel::ui {

// False when the menu has no such item, or it is grayed.
bool ChooseFromMenuBar(User& user, int id);
// The array view's context menu, opened at the selection as by the keyboard.
bool ChooseFromContextMenu(User& user, int id);
// A menu that is open, or null when none comes up; and the window that shows it (`menu` null: any).
HMENU WaitForMenu();
HWND WaitForMenuWindow(HMENU menu);
// Escape, and until it is gone.
void CloseMenu(User& user);
// Whether an item of a menu, at any depth, cannot be chosen.
bool IsGrayed(HMENU menu, int id);

} // namespace vantrel::ui
