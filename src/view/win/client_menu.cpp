#include <windows.h>

#include <algorithm>

#include "entry/command_log.h"
#include "entry/trace.h"
#include "resources/resource.h"
#include "tools/win/window.h"
#include "view/busy.h"
#include "view/hit_test.h"
#include "view/layout.h"
#include "view/menu_state.h"
#include "view/selection.h"
#include "view/win/client_window.h"

namespace vantrel {

namespace {

bool IsFromKeyboard(POINT screen) noexcept
{
    return screen.x == -1 && screen.y == -1;
}

// The top left corner of the selected box, as far as it is in sight.
POINT PlaceOfSelection(const ClientWindow& client) noexcept
{
    const View& view = client.view;
    const Rect64 box = NodeRect(*Selected(view));
    const auto place = [](std::int64_t at, std::int64_t scrolled, std::int64_t margin, std::int64_t size) {
        return static_cast<LONG>(
            std::clamp<std::int64_t>(at - scrolled + margin, 0, std::max<std::int64_t>(size - 1, 0)));
    };
    POINT point{
        place(box.left, view.scroll.horizontal.position, view.metrics.margin, view.metrics.client.width),
        place(box.top, view.scroll.vertical.position, view.metrics.margin, view.metrics.client.height)};
    ClientToScreen(client.window, &point);
    return point;
}

// A menu over a box speaks of that box.
void SelectUnder(ClientWindow& client, POINT screen)
{
    View& view = client.view;
    POINT point = screen;
    ScreenToClient(client.window, &point);
    Scdr* const hit = HitTestScdr(view, *view.top, {point.x, point.y}, -view.scroll.horizontal.position,
                                  -view.scroll.vertical.position);
    if (hit == nullptr || hit == Selected(view)) return;
    const BusyMark busy(view);
    SelectScdr(view, *hit, true);
}

} // namespace

void DisableMenuChoices(const ClientWindow& client, HMENU menu)
{
    const TraceScope trace("client_menu.cpp", "DisableMenuChoices");
    const CommandList commands = CommandsWithState();
    for (std::int32_t i = 0; i < commands.count; ++i) {
        const std::int32_t command = commands.ids[i];
        const UINT state = IsCommandEnabled(client.view, command) ? MF_ENABLED : MF_GRAYED | MF_DISABLED;
        EnableMenuItem(menu, static_cast<UINT>(command), MF_BYCOMMAND | state);
    }
}

void OnContextMenu(ClientWindow& client, POINT screen)
{
    const TraceScope trace("client_menu.cpp", "OnContextMenu");
    View& view = client.view;
    if (view.root == nullptr || (view.flags & ViewBusy) != 0) return;
    if (IsFromKeyboard(screen)) {
        screen = PlaceOfSelection(client);
    } else {
        SelectUnder(client, screen);
    }
    const PopUpMenu menu(IDM_VIEW);
    DisableMenuChoices(client, menu.Get());
    const int command = TrackPopupMenu(menu.Get(), TPM_RETURNCMD | TPM_RIGHTBUTTON, screen.x, screen.y, 0,
                                       client.window, nullptr);
    if (command == 0) return;
    LogCommand(view.context, WM_COMMAND, command);
    SendMessageW(client.window, WM_COMMAND, static_cast<WPARAM>(command), 0);
}

} // namespace vantrel
