#include <vssym32.h>

#include "entry/trace.h"
#include "tools/win/window.h"
#include "view/busy.h"
#include "view/selection.h"
#include "view/win/painting.h"

namespace vantrel {

namespace {

Rect64 ButtonRect(const View& view, const Rect64& box) noexcept
{
    const ViewMetrics& metrics = view.metrics;
    const Rect64 visible = Shrunk(box, metrics.margin, metrics.margin);
    return Shrunk(visible, metrics.edge.width + 1, metrics.edge.height + 1);
}

int ThemeState(ButtonLook look) noexcept
{
    switch (look) {
    case ButtonLook::Hot: return RBS_HOT;
    case ButtonLook::Pressed: return RBS_PUSHED;
    case ButtonLook::Normal: break;
    }
    return RBS_NORMAL;
}

// What one mouse message does to the buttons.
struct ButtonEvent {
    PaintTarget& target;
    ClientWindow& client;
    UINT message;
    POINT point;
    Scdr* released = nullptr; // the box whose button was pressed and let go
    bool hot = false;         // the pointer is over a button
};

bool IsPointInside(const View& view, const Rect64& box, POINT point) noexcept
{
    const RECT button = DrawableRect(ButtonRect(view, box));
    return PtInRect(&button, point) != FALSE;
}

void SetPressed(Scdr& node, bool pressed) noexcept
{
    node.Flags = static_cast<std::uint8_t>(pressed ? node.Flags | FlagRestorePressed
                                                   : node.Flags & ~FlagRestorePressed);
}

void OnMessageInside(ButtonEvent& event, Scdr& node, const Rect64& box)
{
    event.hot = true;
    const bool entered = event.client.hotButton != &node;
    event.client.hotButton = &node;
    switch (event.message) {
    case WM_MOUSEMOVE:
        if (entered) DrawRestoreButton(event.target, box, ButtonLook::Hot);
        break;
    case WM_LBUTTONDOWN:
        DrawRestoreButton(event.target, box, ButtonLook::Pressed);
        SetPressed(node, true);
        break;
    case WM_LBUTTONUP:
        if ((node.Flags & FlagRestorePressed) != 0) event.released = &node;
        break;
    default: break;
    }
}

bool UpdateButton(ButtonEvent& event, Scdr& node, const Rect64& box)
{
    if ((node.Flags & FlagMinimized) == 0) return true;
    if (IsPointInside(event.target.view, box, event.point)) {
        OnMessageInside(event, node, box);
        return false;
    }
    // One that looks normal already is left alone: drawing it at every movement would make it flicker.
    if (event.client.hotButton == &node || (node.Flags & FlagRestorePressed) != 0)
        DrawRestoreButton(event.target, box, ButtonLook::Normal);
    if (event.client.hotButton == &node) event.client.hotButton = nullptr;
    SetPressed(node, false);
    return false;
}

// So that a button does not stay hot when the pointer leaves the window.
void AskForLeave(HWND window) noexcept
{
    TRACKMOUSEEVENT track{sizeof track, TME_LEAVE, window, 0};
    TrackMouseEvent(&track);
}

Scdr* UpdateButtons(ClientWindow& client, UINT message, POINT point)
{
    View& view = client.view;
    const WindowDc dc(client.window);
    PaintTarget target{view, dc, QmGetClientRectangle(client.window)};
    HdcSetup(target);
    ButtonEvent event{target, client, message, point};
    ForEachVisibleNode(
        view, target.client,
        [](void* state, Scdr& node, const Rect64& box) {
            return UpdateButton(*static_cast<ButtonEvent*>(state), node, box);
        },
        &event);
    HdcTearDown(target);
    if (event.hot) AskForLeave(client.window);
    return event.released;
}

} // namespace

ButtonLook LookOfButton(const ClientWindow& client, const Scdr& node) noexcept
{
    if (client.hotButton != &node) return ButtonLook::Normal;
    return (node.Flags & FlagRestorePressed) != 0 ? ButtonLook::Pressed : ButtonLook::Hot;
}

void DrawRestoreButton(PaintTarget& target, const Rect64& box, ButtonLook look)
{
    RECT button = DrawableRect(ButtonRect(target.view, box));
    // The classic look has no hot state.
    if (target.windowTheme != nullptr) {
        // Themes draw buttons that one can see through: what was there would show.
        FillRect(target.dc, &button, GetSysColorBrush(COLOR_3DFACE));
        DrawThemeBackground(target.windowTheme, target.dc, WP_RESTOREBUTTON, ThemeState(look), &button,
                            nullptr);
        return;
    }
    const UINT pushed = look == ButtonLook::Pressed ? DFCS_PUSHED : 0;
    DrawFrameControl(target.dc, &button, DFC_CAPTION, DFCS_CAPTIONRESTORE | pushed);
}

void DrawRestoreButtons(ClientWindow& client, UINT message, POINT point)
{
    const TraceScope trace("restore_buttons.cpp", "DrawRestoreButtons");
    Scdr* const released = UpdateButtons(client, message, point);
    if (released == nullptr) return;
    SetPressed(*released, false);
    const BusyMark busy(client.view);
    if (SelectScdr(client.view, *released, true) == 0) SetScdrFocus(client.view);
}

} // namespace vantrel
