#include <windows.h>

#include "editor/edit_messages.h"
#include "editor/win/edit_window.h"
#include "entry/trace.h"
#include "entry/win/debug_channel.h"
#include "model/records.h"
#include "resources/resource.h"
#include "tools/win/fonts.h"
#include "tools/win/help.h"
#include "tools/win/window.h"
#include "view/commands.h"
#include "view/messages.h"
#include "view/open_object.h"
#include "view/selection.h"
#include "view/win/client_window.h"

namespace vantrel {

namespace {

constexpr std::uint32_t KeysTopic = 102; // of the help file

void OnEditorModified(View& view)
{
    view.flags = static_cast<std::uint8_t>(view.flags | ViewModified);
    NotifyFrame(view, ViewNotifyState);
}

// The user dragged the editor's border: the box takes the size that the window has now.
void OnEditorResized(ClientWindow& client)
{
    View& view = client.view;
    Scdr* const node = Selected(view);
    if (client.activeEdit == nullptr || node == nullptr || !IsSimple(*node)) return;
    RECT rect{};
    GetWindowRect(client.activeEdit, &rect);
    node->width = rect.right - rect.left + 2 * view.metrics.margin;
    node->height = rect.bottom - rect.top + 2 * view.metrics.margin;
    node->records.flags = static_cast<std::uint8_t>(node->records.flags | RecordsResizedByUser);
    InvalidateAncestorsSizesAndLaterSiblingsOrigins(*node);
    FollowBoxSizes(view);
}

void SendToEditor(const ClientWindow& client, UINT message)
{
    if (client.activeEdit != nullptr) SendMessageW(client.activeEdit, message, 0, 0);
}

} // namespace

void OnCommand(ClientWindow& client, std::int32_t command)
{
    const TraceScope trace("client_commands.cpp", "OnCommand");
    if (command == ID_OPTIONS_FONT) return FontDlg(client.window);
    if (command == ID_HELP_GENERAL) return ShowHelpPage(client.window, client.view.context, 0);
    if (command == ID_HELP_KEYS) return ShowHelpPage(client.window, client.view.context, KeysTopic);
    if (client.view.root == nullptr) return;
    const ULONGLONG start = GetTickCount64();
    switch (command) {
    case ID_POPUP_CUT: SendToEditor(client, WM_CUT); break;
    case ID_POPUP_COPY: SendToEditor(client, WM_COPY); break;
    case ID_POPUP_PASTE: SendToEditor(client, WM_PASTE); break;
    case ID_FILE_OPEN_OBJECT: OpenNamedObject(client.view); break;
    default: RunViewCommand(client.view, command); break;
    }
    TraceInteger(__LINE__, static_cast<int>(GetTickCount64() - start));
}

void OnNotify(ClientWindow& client, const NMHDR& header)
{
    const TraceScope trace("client_commands.cpp", "OnNotify");
    View& view = client.view;
    switch (static_cast<std::int32_t>(header.code)) {
    case EditNotifyModified: OnEditorModified(view); break;
    case EditNotifyResized: OnEditorResized(client); break;
    case EditNotifyShowPlane:
        ShowPlane(view, reinterpret_cast<const EditPlaneNotification&>(header).plane);
        break;
    case ViewNotifyError: NotifyFrame(view, ViewNotifyError); break; // a save failed; the error says why
    case EditNotifyPlaneLines: StatusMessage(client.window, IDS_NOT_SUPPORTED, 0); break;
    case EditNotifyOutOfMemory: StatusMessage(client.window, IDS_ERROR_ALLOCATING, MB_ICONHAND); break;
    case EditNotifySetFocus: NotifyFrame(view, ViewNotifySetFocus); break;
    default: break;
    }
}

} // namespace vantrel
