#include "entry/win/message_loop.h"

#include <windows.h>

#include <utility>

#include "entry/trace.h"
#include "frame/messages.h"
#include "tools/win/guard.h"

namespace vantrel {
namespace {

constexpr WPARAM DialogClassAtom = 32770;

bool IsDialogWindow(HWND window) noexcept
{
    return GetClassLongPtrW(window, GCW_ATOM) == DialogClassAtom;
}

// The dialog that a window belongs to: the first of the dialog class on the way up through child windows, else the top.
HWND ClimbToDialog(HWND window) noexcept
{
    HWND at = window;
    while (at != nullptr && !IsDialogWindow(at) && (GetWindowLongPtrW(at, GWL_STYLE) & WS_CHILD) != 0)
        at = GetParent(at);
    return at;
}

// One message, by the rules of accelerators, dialogs and dispatch. What escaped a window procedure is thrown here.
void HandleMessage(EditContext* context, MSG& message)
{
    HWND const root = GetAncestor(message.hwnd, GA_ROOT);
    if (root != nullptr && context->accelerators != nullptr &&
        TranslateAcceleratorW(root, context->accelerators, &message) != 0) {
        RethrowEscapedException();
        return;
    }
    HWND const dialog = ClimbToDialog(message.hwnd);
    if (dialog == nullptr || !IsDialogWindow(dialog) || IsDialogMessageW(dialog, &message) == 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    RethrowEscapedException();
}

// The wish of the host's thread to quit is kept for the host's own loop: ending the edit here would lose the user's work.
struct PendingQuit {
    bool wished = false;
    int exitCode = 0;
};
PendingQuit g_quit;

void RememberQuit(const MSG& message) noexcept
{
    g_quit = {true, static_cast<int>(message.wParam)};
}

std::int32_t AskFrameIsClosing(EditContext* context)
{
    if (context->frame == nullptr) return 0;
    const auto answer = static_cast<std::int32_t>(SendMessageW(context->frame, FrameIsClosing, 0, 0));
    RethrowEscapedException();
    return answer;
}

bool IsInterruptSet(const EditContext* context) noexcept
{
    return (context->langEnv->Capabilities & CapabilityInterruptOrClose) != 0;
}

std::int32_t PumpUntilAbandoned(EditContext* context)
{
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        if (message.message == WM_QUIT) {
            RememberQuit(message);
            continue;
        }
        HandleMessage(context, message);
        if (IsInterruptSet(context)) return 1;
        if (const std::int32_t closing = AskFrameIsClosing(context); closing != 0) return closing;
    }
    return 0;
}

} // namespace

void RunModalLoop(EditContext* context)
{
    TraceScope trace("message_loop.cpp", "RunModalLoop");
    MSG message = {};
    while (context->openFrames != 0) {
        const BOOL got = GetMessageW(&message, nullptr, 0, 0);
        if (got == -1) return;
        if (got == 0)
            RememberQuit(message);
        else
            HandleMessage(context, message);
    }
}

void PassQuitToHost() noexcept
{
    if (std::exchange(g_quit.wished, false)) PostQuitMessage(g_quit.exitCode);
}

std::int32_t IsInterruptOrClosePending(EditContext* context)
{
    TraceScope trace("message_loop.cpp", "IsInterruptOrClosePending");
    if (IsInterruptSet(context)) return 1;
    if (GetCapture() != nullptr) return 0;
    if (const std::int32_t closing = AskFrameIsClosing(context); closing != 0) return closing;
    if (WaitForSingleObject(context->timer, 0) != WAIT_OBJECT_0) return 0;
    return PumpUntilAbandoned(context);
}

} // namespace vantrel
