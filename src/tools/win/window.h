// Small helpers over windows, menus, keys, strings and device contexts.
#pragma once

#include <windows.h>

#include <string>

namespace vantrel {

// The library's own module, for classes and resources.
[[nodiscard]] HINSTANCE ModuleInstance() noexcept;
// A string resource; empty when missing.
[[nodiscard]] std::wstring LoadText(UINT id);

// Other programs look into the clipboard whenever it changes, and it is theirs for that moment: a cut right after a copy would else lose its
// data. Tries for a tenth of a second.
[[nodiscard]] bool OpenClipboardPatiently(HWND owner) noexcept;

// Child windows of a frame that show messages: the status bar, and the box over one of its parts.
inline constexpr int StatusBarControl = 32788;
inline constexpr int NameBoxControl = 32789;

// Writes one part of a status bar; a failure is traced.
void SetStatusText(HWND bar, WPARAM part, const wchar_t* text) noexcept;
inline constexpr int LongestStatus = 384; // characters
// Shows a message in the status bar of the frame above `window`; `beep` is a MessageBeep kind or 0 for silence. The bar is updated at once,
// since messages announce long work. Returns 1.
std::int32_t StatusMessage(HWND window, const wchar_t* text, UINT beep) noexcept;
std::int32_t StatusMessage(HWND window, UINT stringId, UINT beep) noexcept;
// A message that grows with the work. All of them are written, but the bar is drawn only as often as the eye follows: drawing a hundred percents
// would take longer than most arrays.
void StatusProgress(HWND window, const wchar_t* text) noexcept;

// Has the window handle WM_SIZE again with its present client size.
void SendWmSize(HWND window) noexcept;
// The client rectangle without scroll bars, never negative.
[[nodiscard]] RECT QmGetClientRectangle(HWND window) noexcept;
// The first window above (or at) `window` that is not a child window.
[[nodiscard]] HWND GetTopWindowOf(HWND window) noexcept;
void SetForegroundWindowForce(HWND window) noexcept;
[[nodiscard]] bool IsMenuItemDisabled(HMENU menu, UINT id) noexcept;
// As of the message that is being handled.
[[nodiscard]] inline bool IsKeyDown(int key) noexcept
{
    return GetKeyState(key) < 0;
}

// A menu of the resources that pops up, destroyed at the end.
class PopUpMenu {
public:
    explicit PopUpMenu(UINT id) noexcept : bar_(LoadMenuW(ModuleInstance(), MAKEINTRESOURCEW(id))) {}
    ~PopUpMenu()
    {
        if (bar_ != nullptr) DestroyMenu(bar_);
    }
    PopUpMenu(const PopUpMenu&) = delete;
    PopUpMenu& operator=(const PopUpMenu&) = delete;
    // The menu that pops up is the first one of the bar in the resource.
    [[nodiscard]] HMENU Get() const noexcept { return GetSubMenu(bar_, 0); }

private:
    HMENU bar_;
};

// Selects an object for as long as the guard lives.
class SelectedObject {
public:
    SelectedObject(HDC dc, HGDIOBJ object) noexcept : dc_(dc), previous_(SelectObject(dc, object)) {}
    ~SelectedObject() { SelectObject(dc_, previous_); }
    SelectedObject(const SelectedObject&) = delete;
    SelectedObject& operator=(const SelectedObject&) = delete;

private:
    HDC dc_;
    HGDIOBJ previous_;
};

// A pen that lives as long as the guard.
class OwnPen {
public:
    OwnPen(int width, COLORREF color) noexcept : pen_(CreatePen(PS_SOLID, width, color)) {}
    ~OwnPen() { DeleteObject(pen_); }
    OwnPen(const OwnPen&) = delete;
    OwnPen& operator=(const OwnPen&) = delete;
    [[nodiscard]] HPEN Get() const noexcept { return pen_; }

private:
    HPEN pen_;
};

// A window's device context, released at the end.
class WindowDc {
public:
    explicit WindowDc(HWND window) noexcept : window_(window), dc_(GetDC(window)) {}
    ~WindowDc() { ReleaseDC(window_, dc_); }
    WindowDc(const WindowDc&) = delete;
    WindowDc& operator=(const WindowDc&) = delete;
    operator HDC() const noexcept { return dc_; }

private:
    HWND window_;
    HDC dc_;
};

// Between BeginPaint and EndPaint. The region becomes valid even when nothing is painted, or the message would come again at once.
class PaintScope {
public:
    explicit PaintScope(HWND window) noexcept : window_(window), dc_(BeginPaint(window, &paint_)) {}
    ~PaintScope() { EndPaint(window_, &paint_); }
    PaintScope(const PaintScope&) = delete;
    PaintScope& operator=(const PaintScope&) = delete;
    [[nodiscard]] HDC Dc() const noexcept { return dc_; }
    [[nodiscard]] const RECT& Part() const noexcept { return paint_.rcPaint; }

private:
    HWND window_;
    PAINTSTRUCT paint_{};
    HDC dc_;
};

// An off-screen bitmap of a client area; `Present` copies it to the screen in one piece.
class PaintBuffer {
public:
    PaintBuffer(HDC target, std::int32_t width, std::int32_t height) noexcept;
    ~PaintBuffer();
    PaintBuffer(const PaintBuffer&) = delete;
    PaintBuffer& operator=(const PaintBuffer&) = delete;
    [[nodiscard]] HDC Dc() const noexcept { return dc_; }
    void Present(const RECT& part) noexcept;

private:
    HDC target_;
    HDC dc_;
    HBITMAP bitmap_;
    HGDIOBJ previous_;
};

} // namespace vantrel
