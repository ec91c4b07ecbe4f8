// From a command's id to what it does, and what every command has in common.
#include "entry/trace.h"
#include "view/actions.h"
#include "view/busy.h"
#include "view/commands.h"
#include "view/commit.h"
#include "view/item_edit.h"
#include "view/layout.h"
#include "view/menu_state.h"
#include "view/messages.h"
#include "view/progress.h"
#include "view/report.h"
#include "view/selection.h"
#include "view/undo.h"

namespace vantrel {
namespace {

bool IsPlaneCommand(std::int32_t command) noexcept
{
    return IsBetween(command, CommandPlaneUp, CommandPlanePageDown);
}

bool IsClipboardCommand(std::int32_t command) noexcept
{
    return IsBetween(command, CommandCutArray, CommandRedoArray);
}

bool IsAplCommand(std::int32_t command) noexcept
{
    return IsBetween(command, CommandConvertToCharacter, CommandSortDescending) ||
           command == CommandReorderAxes || command == CommandExecute;
}

bool IsStructuralCommand(std::int32_t command) noexcept
{
    return command == CommandMakeMatrix || command == CommandMakeArrayOfRows || IsInsertCommand(command);
}

bool IsSystemCommand(std::int32_t command) noexcept
{
    return IsBetween(command, CommandRestore, CommandMaximize);
}

bool IsOfView(std::int32_t command) noexcept
{
    return IsClipboardCommand(command) || IsAplCommand(command) || IsStructuralCommand(command) ||
           IsSystemCommand(command) || IsGraphicsCommand(command) || command == CommandCheckAndAlign ||
           command == CommandEmptyUndoBuffer ||
           IsBetween(command, CommandSizeToDefinition, CommandResetAllSizes);
}

// Commands that have dialogs or words of their own, or change nothing.
bool IsAnnounced(std::int32_t command) noexcept
{
    return command != CommandCopyArray && command != CommandReorderAxes && !IsGraphicsCommand(command);
}

bool IsCoalescedAfter(std::int32_t command) noexcept
{
    switch (command) {
    case CommandCutArray:
    case CommandPasteArray:
    case CommandConvertToCharacter:
    case CommandConvertToNumeric:
    case CommandFirst:
    case CommandEnlist:
    case CommandExecute: return true;
    default: return false;
    }
}

// What a command copies or puts back must say what the user typed there: the whole array that an item comes from or goes to, and for undo
// any place of the tree.
Scdr& PartToCommit(const View& view, std::int32_t command) noexcept
{
    if (command == CommandUndoArray || command == CommandRedoArray) return *view.root;
    Scdr* const holder = PlaceOfSelected(view).holder;
    const bool changesHolder = command == CommandCutArray || IsInsertCommand(command);
    return changesHolder && holder != nullptr ? *holder : *Selected(view);
}

bool CommitFor(View& view, std::int32_t command)
{
    return CheckScdr(view, PartToCommit(view, command)) != 0;
}

std::int32_t ResetSelectedSize(View& view)
{
    Scdr& node = *Selected(view);
    if (!IsSimple(node) || (node.records.flags & RecordsResizedByUser) == 0) return 0;
    ResetSize(view, node);
    return FollowBoxSizes(view);
}

std::int32_t PerformSizeCommand(View& view, std::int32_t command)
{
    switch (command) {
    case CommandResetSize: return ResetSelectedSize(view);
    case CommandResetAllSizes: ResetSize(view, *view.root); return FollowBoxSizes(view);
    default: view.effects.sizeFrame(view); return 0;
    }
}

std::int32_t PerformGraphics(View& view, std::int32_t command)
{
    const auto draw = view.context->langEnv->Operations.Graphics;
    if (draw == nullptr) return Refuse(view, MessageNotSupported);
    if (!CommitFor(view, command)) return 1;
    draw(view.context, Selected(view), command);
    return 0;
}

std::int32_t EmptyUndoBuffer(View& view)
{
    UndoPurge(view);
    view.effects.notifyFrame(view, ViewNotifyMenu);
    return 0;
}

std::int32_t RefuseChange(View& view, std::int32_t command)
{
    const Scdr* const holder = PlaceOfSelected(view).holder;
    const bool cutsPrototype = command == CommandCutArray && holder != nullptr && holder->ElementCount == 0;
    return Refuse(view, cutsPrototype ? MessageParentIsEmpty : MessageNotSupported);
}

std::int32_t Perform(View& view, std::int32_t command)
{
    if (!IsChangeAllowed(view, command)) return RefuseChange(view, command);
    if (IsSystemCommand(command)) return PerformSystemAction(view, command);
    if (IsStructuralCommand(command)) return PerformAction(view, command);
    if (IsGraphicsCommand(command)) return PerformGraphics(view, command);
    if (command == CommandCheckAndAlign) return CheckAndAlignScdr(view) != 0 ? 0 : 1;
    if (command == CommandEmptyUndoBuffer) return EmptyUndoBuffer(view);
    if (!IsClipboardCommand(command) && !IsAplCommand(command)) return PerformSizeCommand(view, command);
    if (!CommitFor(view, command)) return 1;
    return IsAplCommand(command) ? PerformAplAction(view, command) : PerformClipboardAction(view, command);
}

void ForgetError(View& view) noexcept
{
    view.context->langEnv->ErrorCode = VTERROR_CODE::NoError;
    view.context->langEnv->ErrorDetail = nullptr;
}

// What was announced is over, unless something stands there that the user has to read. The user went on after an error, so it is not the
// interpreter's any more.
void FinishCommand(View& view)
{
    const LangEnv& environment = *view.context->langEnv;
    const bool pending = HasError(view.context) || environment.ErrorDetail != nullptr;
    if (pending && !view.errorShown) {
        ReportHostError(view);
    } else if (environment.ErrorCode == VTERROR_CODE::OutOfMemory) {
        ShowError(view, MessageErrorAllocating); // the cause of what was shown
    }
    ForgetError(view);
    if (!view.errorShown) view.effects.notifyFrame(view, ViewNotifyState);
}

} // namespace

std::int32_t FollowBoxSizes(View& view)
{
    TraceScope trace("perform.cpp", "FollowBoxSizes");
    if (CalculateScdrSizes(view) != 0) return 1;
    SetScrollBarsDataSizeFromScdr(view);
    AdjustScrollPositions(view.scroll);
    EditResize(view);
    view.effects.invalidate(view);
    view.effects.notifyFrame(view, ViewNotifyState);
    return 0;
}

std::int32_t PerformClipboardAction(View& view, std::int32_t command)
{
    TraceScope trace("perform.cpp", "PerformClipboardAction");
    switch (command) {
    case CommandCutArray: return ClipboardCut(view);
    case CommandCopyArray: return ClipboardCopy(view);
    case CommandPasteArray: return ClipboardPaste(view);
    case CommandUndoArray: Undo(view); return 0;
    case CommandRedoArray: Redo(view); return 0;
    default: return 1;
    }
}

std::int32_t PerformSystemAction(View& view, std::int32_t command)
{
    TraceScope trace("perform.cpp", "PerformSystemAction");
    switch (command) {
    case CommandRestore: return RestoreScdr(view);
    case CommandMinimize: return MinimizeScdr(view);
    case CommandMaximize: return MaximizeScdr(view);
    default: return 1;
    }
}

std::int32_t PerformAction(View& view, std::int32_t command)
{
    TraceScope trace("perform.cpp", "PerformAction");
    if (!CommitFor(view, command)) return 1;
    switch (command) {
    case CommandMakeMatrix: return MakeMatrix(view);
    case CommandMakeArrayOfRows: return MakeArrayOfRows(view);
    case CommandInsertItemLeft:
    case CommandInsertItemRight: return InsertItem(view, command);
    default: return IsInsertCommand(command) ? InsertRowOrColumn(view, command) : 1;
    }
}

void RunViewCommand(View& view, std::int32_t command)
{
    TraceScope trace("perform.cpp", "RunViewCommand");
    if (view.root == nullptr || Selected(view) == nullptr) return;
    if (IsPlaneCommand(command)) {
        ChangePlane(view, command);
        return;
    }
    if (!IsOfView(command)) return;
    const BusyMark busy(view);
    ForgetError(view);
    view.errorShown = false;
    if (IsAnnounced(command)) {
        view.flags |= ViewFormatting;
        view.effects.showStatus(view, StatusFormatting, -1, false);
    }
    const bool done = Perform(view, command) == 0 && !view.errorShown;
    if (done && IsCoalescedAfter(command)) CoalesceScdr(view, *view.root);
    view.flags = static_cast<std::uint8_t>(view.flags & ~ViewFormatting);
    FinishCommand(view);
}

} // namespace vantrel
