// What the tests of the array view and of the cell editor ask of a window.
#pragma once

#include "ui/driver.h"

namespace vantrel::ui {

inline constexpr int Margin = 5; // with small margins, the default
inline constexpr UINT SetOption = 32980;
inline constexpr UINT SetPickIndex = 32981;

// Selects the array that a pick index names; what the view answers.
LRESULT SelectIndex(const User& user, const char16_t* index);
void Switch(User& user, int option, bool on);

// The thickness of a sunken edge, measured as the view measures it.
int EdgeWidth();
// The window of the cell editor in the view's client area: the selected box less its margin.
RECT EditorRect(const User& user);
int BarPosition(HWND window, int bar);

// The font of a window: the average character and a line, in pixels.
struct FontSize {
    int character;
    int line;
};
FontSize FontOf(HWND window);

} // namespace vantrel::ui
