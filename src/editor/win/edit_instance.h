// The presentation's record of one edit window, and the handlers that its procedure calls.
#pragma once

#include <windows.h>

#include "editor/edit_model.h"

namespace vantrel {

struct EditInstance {
    EditWindow edit; // the model's part; effects lead from it to the window
    HFONT font = nullptr;
    bool mouseTimer = false;
    bool barsThemed = false;
    bool ownsCaret = false; // the thread's one caret was made by this window
    Point64 lastMousePoint; // where the pointer was seen last, in client coordinates
};

// Null for a window that is being created or destroyed.
[[nodiscard]] EditInstance* GetEditInstance(HWND window) noexcept;
[[nodiscard]] inline HWND WindowOf(const EditInstance& instance) noexcept
{
    return instance.edit.window;
}

extern const EditEffects g_editEffects;

// The default procedure, Unicode or ANSI as the window is.
LRESULT DefaultEditProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

// edit_paint.cpp
void PaintEditWindow(EditInstance& instance);
// edit_caret.cpp
void ShowEditCaret(EditWindow& window);
void HideEditCaret(EditInstance& instance) noexcept;

// edit_ime.cpp: an input method composes in the text's font, at the caret
void GiveFontToInputMethod(const EditInstance& instance, HFONT font) noexcept;
void PlaceInputMethod(const EditInstance& instance, POINT caret) noexcept;
LRESULT OnImeNotify(EditInstance& instance, WPARAM wParam, LPARAM lParam);

// edit_border.cpp
LRESULT OnNcHitTest(EditInstance& instance, LPARAM screen);
LRESULT OnNcButtonDown(EditInstance& instance, WPARAM hitCode, LPARAM screen);
void ResizeToMouse(EditInstance& instance);
LRESULT OnSetCursor(EditInstance& instance, WORD hitCode);

// edit_menu.cpp: the pop-up menu
LRESULT OnContextMenu(EditInstance& instance, LPARAM screen);
void ShowContextMenuAtCaret(EditWindow& window);

// edit_mouse.cpp
LRESULT OnButtonDown(EditInstance& instance, UINT message, WPARAM keys, LPARAM point);
LRESULT OnMouseMove(EditInstance& instance, LPARAM point);
LRESULT OnButtonUp(EditInstance& instance, LPARAM point);
LRESULT OnCaptureChanged(EditInstance& instance);
LRESULT OnWheel(EditInstance& instance, WPARAM wParam, LPARAM lParam);

} // namespace vantrel
