// The frame's instance record and its handlers, shared by the files of this room.
#pragma once

#include <windows.h>

#include "entry/edit_context.h"
#include "frame/options.h"

namespace vantrel {

struct FrameWindow {
    EditContext* context = nullptr;
    HWND window = nullptr;
    HWND client = nullptr;
    HWND status = nullptr;
    HostObject value = nullptr; // the array as handed over, for Revert; the interpreter's
    HostObject name = nullptr;  // the variable's name; null by value
    std::uint32_t options = 0;  // FrameOption bits
    bool counted = false;       // this frame is among the open frames and windows
    bool closing = false;       // a close waits until the view is no longer busy
    bool closeUnasked = false;  // the close on its way asks nothing, whatever the option says
    bool asking = false;        // the question before closing is on show
    bool destroyed = false;     // the window has gone; the record goes when its outermost message returns
    std::int32_t depth = 0;     // messages being handled, one inside the other
};

// frame_commands
LRESULT OnCommand(FrameWindow& frame, WPARAM wParam, LPARAM lParam);
// Saves the tree as the call's result or the variable's value. True on success; the user has been told either way.
bool SaveTree(FrameWindow& frame);
// Shows the language environment's pending error in the status bar and clears it, since the user now knows.
void ShowHostError(FrameWindow& frame);

// frame_close
// A long operation of the view is running: it must not lose the tree that it works on.
[[nodiscard]] bool IsBusy(const FrameWindow& frame);
// Asks, saves and destroys as the user wishes. While the view is busy the close is only noted, for the long operation to end first.
void OnClose(FrameWindow& frame);
void CloseWithoutQuestion(FrameWindow& frame);
void OnCloseTimer(FrameWindow& frame);

// frame_layout
void OnSize(FrameWindow& frame);
// Gives the frame the size at which the view shows the whole array, as far as the screen allows.
void OnSizeFrameToDefinition(FrameWindow& frame);

} // namespace vantrel
