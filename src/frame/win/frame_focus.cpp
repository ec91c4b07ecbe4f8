// Going round the parts of the frame by keyboard.
#include <windows.h>

#include "entry/trace.h"
#include "frame/parts.h"
#include "frame/win/frame_window.h"
#include "resources/resource.h"
#include "tools/win/guard.h"

namespace vantrel {
namespace {

FramePart PartWithFocus(const FrameWindow& frame) noexcept
{
    if (IsFocusInFindBar(frame)) return FramePart::FindBar;
    return GetFocus() == frame.nameBox ? FramePart::NameBox : FramePart::Array;
}

void FocusText(HWND box) noexcept
{
    SetFocus(box);
    SendMessageW(box, EM_SETSEL, 0, -1);
}

} // namespace

void FocusNextPart(FrameWindow& frame, bool backwards)
{
    TraceScope trace("frame_focus.cpp", "FocusNextPart");
    const bool findBarShown = (frame.options & FrameFindShown) != 0;
    const bool nameBoxShown = (frame.options & FrameStatusBar) != 0 && frame.pickIndexPart != 0;
    switch (NextFramePart(PartWithFocus(frame), backwards, findBarShown, nameBoxShown)) {
    case FramePart::Array: SetFocus(frame.client); break;
    case FramePart::FindBar: FocusText(GetDlgItem(frame.findBar, IDC_FIND_TEXT)); break;
    case FramePart::NameBox: FocusText(frame.nameBox); break;
    }
    RethrowEscapedException();
}

} // namespace vantrel
