// Looking over the shoulder of the interpreter's thread, where the library's windows live.
#pragma once

#include <windows.h>

#include <functional>

namespace vantrel::ui {

// Sees every message that is sent to a window of the thread on which it was made, once the window has dealt with it, for as long as it
// lives. One at a time.
class MessageWatch {
public:
    using Look = std::function<void(const CWPRETSTRUCT&)>;

    explicit MessageWatch(Look look);
    ~MessageWatch();
    MessageWatch(const MessageWatch&) = delete;
    MessageWatch& operator=(const MessageWatch&) = delete;

private:
    HHOOK hook_;
};

// Whether a window is of that class.
[[nodiscard]] bool HasClass(HWND window, const wchar_t* name);

} // namespace vantrel::ui
