#include <windows.h>

#include <cstdlib>

#include "entry/trace.h"
#include "resources/resource.h"
#include "tools/win/fonts.h"
#include "tools/win/scroll_bars.h"
#include "tools/win/window.h"
#include "view/selection.h"
#include "view/win/client_window.h"

namespace vantrel {

namespace {

// The wheel pages planes as often as it clicked.
void OnMouseWheelScrollPlane(ClientWindow& client, std::uint32_t keys, std::int32_t delta)
{
    const Scdr* const node = Selected(client.view);
    if ((keys & (MK_LBUTTON | MK_RBUTTON | MK_MBUTTON)) != 0 || GetNumScrollLines() == 0) return;
    if (node == nullptr || node->Rank < 3) return;
    const WPARAM command = delta > 0 ? ID_PLANE_UP : ID_PLANE_DOWN;
    for (std::int32_t i = std::abs(delta) / WHEEL_DELTA; i > 0; --i)
        SendMessageW(client.window, WM_COMMAND, command, 0);
}

} // namespace

void OnScroll(ClientWindow& client, UINT message, WPARAM wParam)
{
    const TraceScope trace("client_scroll.cpp", "OnScroll");
    const std::int32_t code = LOWORD(wParam);
    if (message == WM_HSCROLL) {
        OnHscroll(client.view.scroll, code);
    } else {
        OnVscroll(client.view.scroll, code);
    }
    EditResize(client.view);
}

void OnMouseWheel(ClientWindow& client, WPARAM wParam)
{
    const TraceScope trace("client_scroll.cpp", "OnMouseWheel");
    View& view = client.view;
    const std::uint32_t keys = GET_KEYSTATE_WPARAM(wParam);
    const std::int32_t delta = GET_WHEEL_DELTA_WPARAM(wParam);
    const bool control = (keys & MK_CONTROL) != 0;
    if (control && (view.flags & ViewBusy) != 0) {
        // A busy view takes no new font.
        StatusMessage(client.window, IDS_EDITOR_IS_BUSY, 0);
        return;
    }
    // Ctrl alone zooms; paging at the same time would take away what the user wants to see larger.
    if (keys == MK_CONTROL && !IsKeyDown(VK_MENU)) return ChangeFontSize(client.window, delta);
    OnMouseWheelScrollPlane(client, keys, delta);
    if (OnMouseWheel(view.scroll, keys, delta, view.edit.averageCharWidth, view.edit.lineHeight)) {
        EditResize(view);
    }
}

} // namespace vantrel
