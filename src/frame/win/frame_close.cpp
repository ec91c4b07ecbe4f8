#include "entry/trace.h"
#include "frame/win/frame_window.h"
#include "resources/resource.h"
#include "tools/win/guard.h"
#include "tools/win/window.h"
#include "view/messages.h"

namespace vantrel {
namespace {

constexpr UINT_PTR CloseTimer = 1;
constexpr UINT CloseRetryMilliseconds = 50;

bool IsModified(const FrameWindow& frame)
{
    return SendMessageW(frame.client, ViewGetModified, 0, 0) != 0;
}

// False when the user wants to go on editing, or when the array could not be saved.
bool MayClose(FrameWindow& frame)
{
    const bool asks = (frame.options & FrameConfirmClose) != 0 && !frame.closeUnasked;
    if (!asks || !IsModified(frame)) return true;
    switch (AskYesNoCancel(frame, frame.window, LoadText(IDS_SAVE_CHANGES).c_str())) {
    case IDYES: return SaveTree(frame);
    case IDNO: return true;
    default: return false;
    }
}

} // namespace

int AskYesNoCancel(FrameWindow& frame, HWND owner, const wchar_t* question)
{
    TraceScope trace("frame_close.cpp", "AskYesNoCancel");
    const AskingScope asking(frame);
    return MessageBoxW(owner, question, LoadText(IDS_VANTREL).c_str(), MB_YESNOCANCEL | MB_ICONQUESTION);
}

bool IsBusy(const FrameWindow& frame)
{
    if ((frame.context->flags & EditContextLoading) != 0) return true;
    return SendMessageW(frame.client, ViewGetBusy, 0, 0) != 0;
}

void OnClose(FrameWindow& frame)
{
    TraceScope trace("frame_close.cpp", "OnClose");
    if (frame.asking) return;
    if (IsBusy(frame)) {
        // Destroying the view now would pull the tree from under the operation that pumps this message.
        frame.closing = true;
        SetTimer(frame.window, CloseTimer, CloseRetryMilliseconds, nullptr);
        return;
    }
    KillTimer(frame.window, CloseTimer);
    frame.closing = false;
    const bool mayClose = MayClose(frame);
    frame.closeUnasked = false;
    if (mayClose && !frame.destroyed) DestroyWindow(frame.window);
}

bool MayEndSession(FrameWindow& frame)
{
    TraceScope trace("frame_close.cpp", "MayEndSession");
    if ((frame.options & FrameConfirmClose) == 0 || !IsModified(frame)) return true;
    ShutdownBlockReasonCreate(frame.window, LoadText(IDS_SAVE_CHANGES).c_str());
    return false;
}

void OnEndSession(const FrameWindow& frame) noexcept
{
    TraceScope trace("frame_close.cpp", "OnEndSession");
    ShutdownBlockReasonDestroy(frame.window);
}

void CloseWithoutQuestion(FrameWindow& frame)
{
    HWND const window = frame.window;
    frame.closeUnasked = true; // beside the option, which must survive the close
    SendMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0);
    if (IsWindow(window) && !frame.closing) frame.closeUnasked = false;
    RethrowEscapedException();
}

void OnCloseTimer(FrameWindow& frame)
{
    if (frame.closing && !IsBusy(frame)) OnClose(frame);
}

} // namespace vantrel
