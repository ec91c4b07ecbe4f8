#include "editor/edit_messages.h"
#include "entry/trace.h"
#include "tools/win/options.h"
#include "view/busy.h"
#include "view/messages.h"
#include "view/options.h"
#include "view/selection.h"
#include "view/undo.h"
#include "view/win/client_window.h"

namespace vantrel {

namespace {

constexpr char16_t ArrowOpacityName[] = u"Rank one arrow opacity";
constexpr char16_t EdgeOpacityName[] = u"Rank one edge opacity";

void ReadOpacity(const char16_t* name, std::int32_t& percent) noexcept
{
    std::int32_t stored = 0;
    if (ReadOption(nullptr, name, &stored, sizeof stored) == 0) percent = stored;
}

void TellEditor(const ClientWindow& client, UINT message, bool value)
{
    if (client.activeEdit != nullptr) SendMessageW(client.activeEdit, message, value, 0);
}

void FollowUndo(ClientWindow& client)
{
    const HMENU menu = GetMenu(client.view.frame);
    if (menu != nullptr) DisableMenuChoices(client, menu);
    NotifyFrame(client.view, ViewNotifyMenu);
}

} // namespace

void ReadViewOptions(ClientWindow& client)
{
    const TraceScope trace("client_options.cpp", "ReadViewOptions");
    for (const ViewOptionRow* row = ViewOptionTable(); row != ViewOptionTable() + ViewOptionCount; ++row) {
        row->field(client.view) = ReadBooleanOption(row->valueName, row->defaultValue);
    }
    ApplyViewOptions(client.view);
    ReadFindOptions(client.view);
    ReadOpacity(ArrowOpacityName, client.view.edit.rankOneArrowOpacity);
    ReadOpacity(EdgeOpacityName, client.view.edit.rankOneEdgeOpacity);
}

void SaveViewOptions(ClientWindow& client)
{
    const TraceScope trace("client_options.cpp", "SaveViewOptions");
    const EditView& edit = client.view.edit;
    SaveOption(nullptr, ArrowOpacityName, &edit.rankOneArrowOpacity, sizeof edit.rankOneArrowOpacity);
    SaveOption(nullptr, EdgeOpacityName, &edit.rankOneEdgeOpacity, sizeof edit.rankOneEdgeOpacity);
    for (const ViewOptionRow* row = ViewOptionTable(); row != ViewOptionTable() + ViewOptionCount; ++row) {
        SaveBooleanOption(row->valueName, row->field(client.view));
    }
    SaveFindOptions(client.view);
}

LRESULT OnSetOption(ClientWindow& client, std::int32_t option, bool value)
{
    const TraceScope trace("client_options.cpp", "OnSetOption");
    View& view = client.view;
    const std::uint32_t effects = SetViewOption(view, option, value);
    if ((effects & OptionEffectDrawCaret) != 0) TellEditor(client, EditMessageDrawCaret, value);
    if ((effects & OptionEffectLineNumbers) != 0) TellEditor(client, EditMessageLineNumbers, value);
    if ((effects & OptionEffectRuler) != 0) TellEditor(client, EditMessageRuler, value);
    if ((effects & OptionEffectScrollbars) != 0) TellEditor(client, EditMessageScrollbars, value);
    if ((effects & OptionEffectLayOutAgain) != 0) {
        const BusyMark busy(view);
        LayOutAgain(view, false);
    }
    if ((effects & OptionEffectRepaint) != 0) view.effects.invalidate(view);
    if ((effects & OptionEffectEmptyUndo) != 0) UndoPurge(view);
    if ((effects & OptionEffectUndoMenu) != 0) FollowUndo(client);
    return 0;
}

} // namespace vantrel
