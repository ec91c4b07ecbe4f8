// The frames of this process: how many there are is what keeps the message loop of an edit running.
#include "frame/win/frame_window.h"
#include "tools/win/placement.h"

namespace vantrel {
namespace {

FrameWindow* g_frames = nullptr;

void Unlink(const FrameWindow& frame) noexcept
{
    for (FrameWindow** link = &g_frames; *link != nullptr; link = &(*link)->next) {
        if (*link != &frame) continue;
        *link = frame.next;
        return;
    }
}

HWND AnyFrameOf(const EditContext* context) noexcept
{
    for (const FrameWindow* frame = g_frames; frame != nullptr; frame = frame->next) {
        if (frame->context == context) return frame->window;
    }
    return nullptr;
}

} // namespace

void CountFrame(FrameWindow& frame)
{
    frame.counted = true;
    frame.next = g_frames;
    g_frames = &frame;
    ++frame.context->openFrames;
    CountOpenWindow(frame.window);
    if (frame.context->frame == nullptr) frame.context->frame = frame.window;
}

void UncountFrame(FrameWindow& frame)
{
    if (!frame.counted) return;
    frame.counted = false;
    Unlink(frame);
    --frame.context->openFrames;
    UncountOpenWindow(frame.window);
    if (frame.context->frame == frame.window) frame.context->frame = AnyFrameOf(frame.context);
    // Who closed the window may have sent the message: then nothing is in the queue, and the loop would not look whether to go on.
    PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
}

bool IsAnyFrameClosing(const EditContext* context) noexcept
{
    for (const FrameWindow* frame = g_frames; frame != nullptr; frame = frame->next) {
        if (frame->context == context && frame->closing) return true;
    }
    return false;
}

} // namespace vantrel
