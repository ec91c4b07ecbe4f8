#include "tools/win/window.h"

#include <commctrl.h>

#include <algorithm>

#include "entry/trace.h"
#include "entry/win/debug_channel.h"

namespace vantrel {

namespace {

constexpr ULONGLONG ProgressPause = 50; // milliseconds

// A message takes the whole bar, so the box over one of its parts makes room, unless somebody is typing in it.
void HideNameBox(HWND frame) noexcept
{
    const HWND box = GetDlgItem(frame, NameBoxControl);
    if (box != nullptr && GetFocus() != box) ShowWindow(box, SW_HIDE);
}

// One message takes the whole bar.
void MakeSimple(HWND frame, HWND bar) noexcept
{
    HideNameBox(frame);
    SendMessageW(bar, SB_SIMPLE, TRUE, 0);
}

} // namespace

HINSTANCE ModuleInstance() noexcept
{
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const wchar_t*>(&ModuleInstance), &module);
    return module;
}

std::wstring LoadText(UINT id)
{
    // With a length of 0 the system answers the address of the text itself, which is not terminated.
    const wchar_t* text = nullptr;
    const int length = LoadStringW(ModuleInstance(), id, reinterpret_cast<wchar_t*>(&text), 0);
    return length > 0 ? std::wstring(text, static_cast<std::size_t>(length)) : std::wstring();
}

bool OpenClipboardPatiently(HWND owner) noexcept
{
    constexpr int Tries = 10;
    constexpr DWORD Pause = 10; // milliseconds
    for (int left = Tries; left > 0; --left) {
        if (OpenClipboard(owner)) return true;
        if (left > 1) Sleep(Pause);
    }
    return false;
}

void SetStatusText(HWND bar, WPARAM part, const wchar_t* text) noexcept
{
    if (SendMessageW(bar, SB_SETTEXTW, part, reinterpret_cast<LPARAM>(text)) != 0) return;
    TraceLastError(__LINE__, "SB_SETTEXTW failed.  Last error:", GetLastError());
    TraceMessage(__LINE__, text);
}

std::int32_t StatusMessage(HWND window, const wchar_t* text, UINT beep) noexcept
{
    const TraceScope trace("window.cpp", "StatusMessage");
    const HWND frame = GetTopWindowOf(window);
    const HWND bar = GetDlgItem(frame, StatusBarControl);
    if (bar != nullptr) {
        MakeSimple(frame, bar);
        SetStatusText(bar, SB_SIMPLEID, text);
        InvalidateRect(bar, nullptr, TRUE);
    }
    if (beep != 0) MessageBeep(beep);
    if (bar != nullptr) UpdateWindow(bar);
    return 1;
}

void StatusProgress(HWND window, const wchar_t* text) noexcept
{
    const TraceScope trace("window.cpp", "StatusProgress");
    static ULONGLONG drawn = 0;
    const HWND frame = GetTopWindowOf(window);
    const HWND bar = GetDlgItem(frame, StatusBarControl);
    if (bar == nullptr) return;
    if (SendMessageW(bar, SB_ISSIMPLE, 0, 0) == 0) MakeSimple(frame, bar);
    SetStatusText(bar, SB_SIMPLEID, text); // which has it drawn some time
    const ULONGLONG now = GetTickCount64();
    if (now - drawn < ProgressPause) return;
    drawn = now;
    UpdateWindow(bar);
}

std::int32_t StatusMessage(HWND window, UINT stringId, UINT beep) noexcept
{
    // Needs no memory, for a lack of it may be what has to be said.
    wchar_t text[LongestStatus] = L"";
    LoadStringW(ModuleInstance(), stringId, text, LongestStatus);
    return StatusMessage(window, text, beep);
}

void SendWmSize(HWND window) noexcept
{
    const RECT client = QmGetClientRectangle(window);
    SendMessageW(window, WM_SIZE, IsZoomed(window) ? SIZE_MAXIMIZED : SIZE_RESTORED,
                 MAKELPARAM(client.right, client.bottom));
}

RECT QmGetClientRectangle(HWND window) noexcept
{
    RECT client{};
    GetClientRect(window, &client);
    client.right = std::max(client.right, client.left);
    client.bottom = std::max(client.bottom, client.top);
    return client;
}

HWND GetTopWindowOf(HWND window) noexcept
{
    while (window != nullptr && (GetWindowLongPtrW(window, GWL_STYLE) & WS_CHILD) != 0)
        window = GetParent(window);
    return window;
}

void SetForegroundWindowForce(HWND window) noexcept
{
    const TraceScope trace("window.cpp", "SetForegroundWindowForce");
    // The system grants the foreground only to the thread that has the input; for a moment this thread shares it.
    const DWORD own = GetCurrentThreadId();
    const HWND foreground = GetForegroundWindow();
    const DWORD other = foreground != nullptr ? GetWindowThreadProcessId(foreground, nullptr) : own;
    const bool attached = other != own && AttachThreadInput(own, other, TRUE);
    BringWindowToTop(window);
    SetForegroundWindow(window);
    if (attached) AttachThreadInput(own, other, FALSE);
}

bool IsMenuItemDisabled(HMENU menu, UINT id) noexcept
{
    const UINT state = GetMenuState(menu, id, MF_BYCOMMAND);
    return state != static_cast<UINT>(-1) && (state & (MF_GRAYED | MF_DISABLED)) != 0;
}

PaintBuffer::PaintBuffer(HDC target, std::int32_t width, std::int32_t height) noexcept
    : target_(target), dc_(CreateCompatibleDC(target)),
      bitmap_(CreateCompatibleBitmap(target, std::max(width, 1), std::max(height, 1))),
      previous_(SelectObject(dc_, bitmap_))
{
}

PaintBuffer::~PaintBuffer()
{
    SelectObject(dc_, previous_);
    DeleteObject(bitmap_);
    DeleteDC(dc_);
}

void PaintBuffer::Present(const RECT& part) noexcept
{
    BitBlt(target_, part.left, part.top, part.right - part.left, part.bottom - part.top, dc_, part.left,
           part.top, SRCCOPY);
}

} // namespace vantrel
