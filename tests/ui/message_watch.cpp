#include "ui/message_watch.h"

#include <cwchar>

namespace vantrel::ui {
namespace {

MessageWatch::Look g_look;

LRESULT CALLBACK LookAtMessage(int code, WPARAM wParam, LPARAM lParam)
{
    if (code == HC_ACTION) g_look(*reinterpret_cast<const CWPRETSTRUCT*>(lParam));
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

} // namespace

MessageWatch::MessageWatch(Look look)
{
    g_look = std::move(look);
    hook_ = SetWindowsHookExW(WH_CALLWNDPROCRET, &LookAtMessage, nullptr, GetCurrentThreadId());
}

MessageWatch::~MessageWatch()
{
    UnhookWindowsHookEx(hook_);
    g_look = nullptr;
}

bool HasClass(HWND window, const wchar_t* name)
{
    wchar_t found[128] = {};
    GetClassNameW(window, found, 128);
    return std::wcscmp(found, name) == 0;
}

} // namespace vantrel::ui
