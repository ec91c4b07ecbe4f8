// The record of one array view window and the handlers that its window procedure names. Private to this folder.
//
// Every message runs inside `Sealed`; handlers may throw. The record outlives the window until the outermost handler
// ends, because long work pumps messages and the user may close the window meanwhile.
#pragma once

#include <windows.h>

#include "tools/win/font_metrics.h"
#include "view/box_bars.h"

namespace vantrel {

struct ClientWindow {
    View view;
    HWND window = nullptr;
    HWND scalarEdit = nullptr;
    HWND spareEdit = nullptr;
    HWND arrayEdit = nullptr;
    HWND activeEdit = nullptr; // the edit window that lies over the selected array, or null
    HPEN redPen = nullptr;
    HFONT font = nullptr; // a copy that CopyFontToWindow owns, or the giver's
    FontMeasurer measurer;
    const Scdr* hotButton = nullptr; // the closed box whose button the pointer is on; only compared
    BarPress barPress;               // a small scroll bar that the mouse holds
    bool numericFind = false;        // as the arrays were drawn last
    std::int32_t handlersRunning = 0;
    bool destroyed = false;
};

[[nodiscard]] inline ClientWindow& ClientOf(View& view) noexcept
{
    return *static_cast<ClientWindow*>(view.win);
}
[[nodiscard]] inline const ClientWindow& ClientOf(const View& view) noexcept
{
    return *static_cast<const ClientWindow*>(view.win);
}

// Keeps the record alive while a handler runs; the last one out deletes what OnDestroy left. (client.cpp)
class HandlerScope {
public:
    explicit HandlerScope(ClientWindow& client) noexcept : client_(client) { ++client_.handlersRunning; }
    ~HandlerScope();
    HandlerScope(const HandlerScope&) = delete;
    HandlerScope& operator=(const HandlerScope&) = delete;

private:
    ClientWindow& client_;
};

// view_effects.cpp
[[nodiscard]] ViewEffects WindowViewEffects() noexcept;
void NotifyFrame(View& view, std::int32_t code);
// Gives the keyboard to the active editor, else to the view, and tells the frame.
void SetScdrFocus(View& view);

// client_create.cpp
LRESULT OnCreate(HWND window, const CREATESTRUCTW& create);
void OnDestroy(ClientWindow& client);
// Asks the system for what it may have changed: the work area and the sizes of scroll bars.
void ReadPlatform(View& view);
// The system's settings are others: takes them over and lays out again what they change.
void OnSettingChange(ClientWindow& client);
// The system's colours or theme are others.
void OnLookChange(ClientWindow& client, UINT message, WPARAM wParam, LPARAM lParam);
void OnSetFont(ClientWindow& client, HFONT font);

// client_options.cpp
void ReadViewOptions(ClientWindow& client);
void SaveViewOptions(ClientWindow& client);
LRESULT OnSetOption(ClientWindow& client, std::int32_t option, bool value);

// client_menu.cpp
void DisableMenuChoices(const ClientWindow& client, HMENU menu);
// Shows the context menu; (-1, -1) in screen coordinates stands for the keyboard and means the selection.
void OnContextMenu(ClientWindow& client, POINT screen);

// axes_dialog.cpp
// The "Reorder axes" dialog; see ViewEffects.
bool AskAxisOrder(View& view, const Scdr& node, std::int32_t* axes);

// client_array.cpp: the private messages that carry arrays
LRESULT OnConvertObject(ClientWindow& client, HostObject object);
LRESULT OnSetObject(ClientWindow& client, HostObject object);
LRESULT OnSetScdr(ClientWindow& client, Scdr* root);
LRESULT OnGetScdr(ClientWindow& client, bool selectedOnly);
LRESULT OnGetPickIndex(ClientWindow& client, bool throughMaximize, const Scdr* node);
LRESULT OnSetPickIndex(ClientWindow& client, const char16_t* text);
LRESULT OnGetPreferredSize(ClientWindow& client, SIZE& size);

// client_find.cpp
LRESULT OnFind(ClientWindow& client, FindRequest request);
void ReadFindOptions(View& view);
void SaveFindOptions(const View& view);

// printing.cpp. Prints the displayed top node; takes the printer's device context over. 0 on success.
LRESULT OnPrintScdr(ClientWindow& client, HDC printer, const RECT* margins);

// client_keys.cpp
bool OnKeyDown(ClientWindow& client, WPARAM key);
bool OnChar(ClientWindow& client, WPARAM character);
bool OnClientKeyDown(ClientWindow& client, WPARAM key);
// Lets the view have the keys that work wherever the focus is.
LRESULT CALLBACK FocusSubclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                               DWORD_PTR data);
inline constexpr UINT_PTR FocusSubclassId = 30000;

// client_commands.cpp: what menus ask for, and what the editor tells
void OnCommand(ClientWindow& client, std::int32_t command);
void OnNotify(ClientWindow& client, const NMHDR& header);

// client_scroll.cpp
void OnScroll(ClientWindow& client, UINT message, WPARAM wParam);
void OnMouseWheel(ClientWindow& client, WPARAM wParam);

// client_mouse.cpp
void OnMouse(ClientWindow& client, UINT message, WPARAM keys, POINT point);
void OnBarTimer(ClientWindow& client, UINT_PTR id);
void OnCaptureChanged(ClientWindow& client);
bool OnSetCursor(ClientWindow& client, HWND target, UINT hitTest);

// painting.cpp
void OnPaint(ClientWindow& client);
// Paints the displayed top node and fills the rest. 1 on failure.
std::int32_t PaintScdr(View& view, HDC dc);

} // namespace vantrel
