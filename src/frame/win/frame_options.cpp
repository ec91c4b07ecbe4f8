// The options in the menu: what is checked, and what a change does.
#include "entry/trace.h"
#include "frame/win/frame_window.h"
#include "resources/resource.h"
#include "tools/win/guard.h"
#include "tools/win/options.h"
#include "tools/win/window.h"
#include "view/messages.h"
#include "view/options.h"

namespace vantrel {
namespace {

void Check(const FrameWindow& frame, std::int32_t id, bool checked) noexcept
{
    CheckMenuItem(GetMenu(frame.window), static_cast<UINT>(id), checked ? MF_CHECKED : MF_UNCHECKED);
}

// The item's new state: the menu shows what holds, so the other one is wanted.
bool FlipCheck(const FrameWindow& frame, std::int32_t id) noexcept
{
    const UINT state = GetMenuState(GetMenu(frame.window), static_cast<UINT>(id), MF_BYCOMMAND);
    const bool checked = (state & MF_CHECKED) == 0;
    Check(frame, id, checked);
    return checked;
}

void ShowBar(const FrameWindow& frame, HWND bar, bool show)
{
    ShowWindow(bar, show ? SW_SHOWNA : SW_HIDE);
    SendWmSize(frame.window);
    RethrowEscapedException();
}

void PutOnTop(const FrameWindow& frame, bool onTop) noexcept
{
    SetWindowPos(frame.window, onTop ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void FollowFrameOption(FrameWindow& frame, std::int32_t id, bool on)
{
    switch (id) {
    case ID_OPTIONS_TOOL_BAR: ShowBar(frame, frame.toolBar, on); break;
    case ID_OPTIONS_STATUS_BAR: ShowBar(frame, frame.status, on); break;
    case ID_OPTIONS_ALWAYS_ON_TOP: PutOnTop(frame, on); break;
    case ID_OPTIONS_SMALL_ICONS: ToolbarCreateAgain(frame); break;
    default: break;
    }
}

} // namespace

void ReadOptions(FrameWindow& frame)
{
    for (const FrameOptionEntry& option : FrameOptions()) {
        if (ReadBooleanOption(option.name, option.defaultValue)) frame.options |= option.bit;
    }
}

void SaveOptions(const FrameWindow& frame)
{
    for (const FrameOptionEntry& option : FrameOptions()) {
        SaveBooleanOption(option.name, (frame.options & option.bit) != 0);
    }
}

void ShowOptionsInMenu(const FrameWindow& frame)
{
    for (const FrameOptionEntry& option : FrameOptions()) {
        if (option.command != 0) Check(frame, option.command, (frame.options & option.bit) != 0);
    }
    for (const ViewOptionRow* row = ViewOptionTable(); row != ViewOptionTable() + ViewOptionCount; ++row) {
        Check(frame, row->id, SendMessageW(frame.client, ViewGetOption, row->id, 0) != 0);
    }
}

bool IsOptionCommand(std::int32_t id) noexcept
{
    return FindFrameOption(id) != nullptr || FindViewOption(id) != nullptr;
}

void ToggleOption(FrameWindow& frame, std::int32_t id)
{
    TraceScope trace("frame_options.cpp", "ToggleOption");
    const bool on = FlipCheck(frame, id);
    if (const FrameOptionEntry* const option = FindFrameOption(id)) {
        frame.options = on ? frame.options | option->bit : frame.options & ~option->bit;
        FollowFrameOption(frame, id, on);
        return;
    }
    SendMessageW(frame.client, ViewSetOption, MAKEWPARAM(id, on ? 1 : 0), 0);
    RethrowEscapedException();
}

} // namespace vantrel
