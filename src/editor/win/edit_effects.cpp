// What the model does to the world, done.

#include <windows.h>

#include <uxtheme.h>

#include <string_view>

#include "editor/win/edit_instance.h"
#include "editor/win/edit_window.h"
#include "entry/trace.h"
#include "tools/win/scroll_bars.h"
#include "tools/win/window.h"

namespace vantrel {

namespace {

void Invalidate(EditWindow& window)
{
    InvalidateRect(window.window, nullptr, FALSE);
}

// `header` is the first member of what the notification comes with.
void SendNotification(const EditWindow& window, NMHDR& header, std::int32_t code)
{
    header.hwndFrom = window.window;
    header.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID(window.window));
    header.code = static_cast<UINT>(code);
    SendMessageW(GetParent(window.window), WM_NOTIFY, header.idFrom, reinterpret_cast<LPARAM>(&header));
}

void Notify(EditWindow& window, std::int32_t code)
{
    const TraceScope trace("edit_effects.cpp", "Notify");
    NMHDR header{};
    SendNotification(window, header, code);
}

void ShowPlane(EditWindow& window, std::int64_t plane)
{
    const TraceScope trace("edit_effects.cpp", "ShowPlane");
    EditPlaneNotification notification{{}, plane};
    SendNotification(window, notification.header, EditNotifyShowPlane);
}

void Beep(EditWindow&, EditBeep kind)
{
    MessageBeep(kind == EditBeep::Asterisk ? MB_ICONASTERISK : MB_ICONEXCLAMATION);
}

KeyStates ReadKeyStates(EditWindow&)
{
    KeyStates states;
    states.shift = IsKeyDown(VK_SHIFT);
    states.control = IsKeyDown(VK_CONTROL);
    states.alt = IsKeyDown(VK_MENU);
    states.rightControl = IsKeyDown(VK_RCONTROL);
    states.rightAlt = IsKeyDown(VK_RMENU);
    states.insertToggled = (GetKeyState(VK_INSERT) & 1) != 0;
    return states;
}

// --- clipboard ---

class ClipboardGuard {
public:
    explicit ClipboardGuard(HWND owner) noexcept : open_(OpenClipboardPatiently(owner)) {}
    ~ClipboardGuard()
    {
        if (open_) CloseClipboard();
    }
    ClipboardGuard(const ClipboardGuard&) = delete;
    ClipboardGuard& operator=(const ClipboardGuard&) = delete;
    [[nodiscard]] bool IsOpen() const noexcept { return open_; }

private:
    bool open_;
};

class GlobalView {
public:
    explicit GlobalView(HGLOBAL block) noexcept
        : block_(block), data_(block == nullptr ? nullptr : GlobalLock(block))
    {
    }
    ~GlobalView()
    {
        if (data_ != nullptr) GlobalUnlock(block_);
    }
    GlobalView(const GlobalView&) = delete;
    GlobalView& operator=(const GlobalView&) = delete;
    [[nodiscard]] void* Data() const noexcept { return data_; }
    [[nodiscard]] std::size_t Size() const noexcept { return GlobalSize(block_); }

private:
    HGLOBAL block_;
    void* data_;
};

bool OpenAndEmptyClipboard(EditWindow& window)
{
    const TraceScope trace("edit_effects.cpp", "OpenAndEmptyClipboard");
    if (!OpenClipboardPatiently(window.window)) return false;
    if (EmptyClipboard()) return true;
    CloseClipboard();
    return false;
}

bool PutText(EditWindow&, std::int64_t length, const ClipboardWriter& writer)
{
    const TraceScope trace("edit_effects.cpp", "PutText");
    const HGLOBAL block =
        GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE, CheckedMultiply(length + 1, sizeof(char16_t)));
    if (block == nullptr) throw VTERROR_CODE::OutOfMemory;
    {
        const GlobalView view(block);
        auto* out = static_cast<char16_t*>(view.Data());
        writer.write(writer.state, out);
        out[length] = u'\0';
    }
    if (SetClipboardData(CF_UNICODETEXT, block) != nullptr) return true; // the block is the system's now
    GlobalFree(block);
    return false;
}

void CloseOpenClipboard(EditWindow&)
{
    CloseClipboard();
}

void WithText(EditWindow& window, UseClipboardText use)
{
    const TraceScope trace("edit_effects.cpp", "WithText");
    if (!IsClipboardFormatAvailable(CF_UNICODETEXT)) return;
    const ClipboardGuard clipboard(window.window);
    if (!clipboard.IsOpen()) return;
    const GlobalView view(GetClipboardData(CF_UNICODETEXT));
    if (view.Data() == nullptr) return;
    // Another program made the block: its terminator is believed only inside the block's real size.
    const std::u16string_view whole(static_cast<const char16_t*>(view.Data()),
                                    view.Size() / sizeof(char16_t));
    const std::u16string_view text = whole.substr(0, whole.find(u'\0'));
    use(window, text.data(), static_cast<std::int64_t>(text.size()));
}

// --- window ---

void InitializeScroll(EditWindow& window, ScrollRecord& record)
{
    InitializeWindowsScrollbars(record, window.window);
}

Rect64 ReadClientRectangle(EditWindow& window)
{
    const RECT client = QmGetClientRectangle(window.window);
    return {client.left, client.top, client.right, client.bottom};
}

void ShowBars(EditWindow& window, bool horizontal, bool vertical)
{
    const TraceScope trace("edit_effects.cpp", "ShowBars");
    ShowScrollBar(window.window, SB_HORZ, horizontal);
    ShowScrollBar(window.window, SB_VERT, vertical);
    EditInstance* const instance = GetEditInstance(window.window);
    // Once is enough: each time the whole window would be drawn anew.
    if (instance == nullptr || instance->barsThemed || !IsThemeActive()) return;
    instance->barsThemed = SUCCEEDED(SetWindowTheme(window.window, nullptr, L"Scrollbar"));
}

} // namespace

const EditEffects g_editEffects = {
    &Invalidate,
    &ShowEditCaret,
    &Notify,
    &Beep,
    &ReadKeyStates,
    &OpenAndEmptyClipboard,
    &PutText,
    &CloseOpenClipboard,
    &WithText,
    &InitializeScroll,
    &ReadClientRectangle,
    &ShowBars,
    &ShowContextMenuAtCaret,
    &ShowPlane,
};

} // namespace vantrel
