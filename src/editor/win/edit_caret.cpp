// The system's caret, of which there is one for all windows: it exists only while this window has the focus.

#include <algorithm>

#include "editor/win/edit_instance.h"
#include "entry/trace.h"

namespace vantrel {

namespace {

// A caret scrolled far away stays far away.
int ToScreenRange(std::int64_t value) noexcept
{
    return static_cast<int>(std::clamp<std::int64_t>(value, -32000, 32000));
}

} // namespace

void HideEditCaret(EditInstance& instance) noexcept
{
    const TraceScope trace("edit_caret.cpp", "HideEditCaret");
    // Another window's caret, the find bar's say, is left alone.
    if (!instance.ownsCaret) return;
    instance.ownsCaret = false;
    HideCaret(WindowOf(instance));
    DestroyCaret();
}

void ShowEditCaret(EditWindow& window)
{
    const TraceScope trace("edit_caret.cpp", "ShowEditCaret");
    EditInstance* instance = GetEditInstance(window.window);
    if (instance == nullptr) return;
    if (GetFocus() != window.window) {
        HideEditCaret(*instance);
        return;
    }
    const CaretPicture picture = GetCaretPicture(window);
    if (!picture.shown) {
        HideEditCaret(*instance);
        return;
    }
    instance->ownsCaret = CreateCaret(window.window, nullptr, ToScreenRange(picture.width),
                                      ToScreenRange(picture.height)) != FALSE;
    const POINT point{ToScreenRange(picture.point.x), ToScreenRange(picture.point.y)};
    SetCaretPos(point.x, point.y);
    ShowCaret(window.window);
    PlaceInputMethod(*instance, point);
}

} // namespace vantrel
