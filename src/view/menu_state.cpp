#include "view/menu_state.h"

#include <algorithm>
#include <iterator>

#include "entry/trace.h"
#include "model/tree_walk.h"
#include "view/commands.h"

namespace vantrel {
namespace {

constexpr std::int32_t commandsWithState[] = {
    CommandCutArray,
    CommandCopyArray,
    CommandPasteArray,
    CommandUndoArray,
    CommandRedoArray,
    CommandCheckAndAlign,
    CommandEmptyUndoBuffer,
    CommandSizeToDefinition,
    CommandResetSize,
    CommandResetAllSizes,
    CommandRestore,
    CommandMinimize,
    CommandMaximize,
    CommandConvertToCharacter,
    CommandConvertToNumeric,
    CommandRavel,
    CommandFirst,
    CommandDisclose,
    CommandEnclose,
    CommandEnlist,
    CommandReverse,
    CommandReverseFirstAxis,
    CommandTranspose,
    CommandSortAscending,
    CommandSortDescending,
    CommandMakeMatrix,
    CommandMakeArrayOfRows,
    CommandReorderAxes,
    CommandExecute,
    CommandInsertItemLeft,
    CommandInsertItemRight,
    CommandInsertColumnLeft,
    CommandInsertColumnRight,
    CommandInsertRowAbove,
    CommandInsertRowBelow,
    CommandGraphicsArea,
    CommandGraphicsBar,
    CommandGraphicsContour,
    CommandGraphicsHistogram,
    CommandGraphicsMesh,
    CommandGraphicsPie,
    CommandGraphicsPlot,
    CommandGraphicsSurface,
};

bool IsMaximized(const Scdr& node) noexcept
{
    return (node.Flags & FlagMaximized) != 0;
}

bool IsMinimized(const Scdr& node) noexcept
{
    return (node.Flags & FlagMinimized) != 0;
}

bool CanMinimize(const View& view, const Scdr& node) noexcept
{
    if (IsMaximized(node)) return &node == view.root;
    return !IsMinimized(node) && &node != view.top;
}

bool CanMaximize(const View& view, const Scdr& node) noexcept
{
    if (IsMaximized(node)) return false;
    return IsMinimized(node) || &node != view.top;
}

// Numbers that are ordered, and text; a scalar has nothing to sort.
bool CanSort(const Scdr& node) noexcept
{
    return IsSimple(node) && node.Type != TypeComplex && node.Type != TypeDecimal && node.Rank > 0;
}

bool WasResized(const Scdr& node) noexcept
{
    return IsSimple(node) && (node.records.flags & RecordsResizedByUser) != 0;
}

bool CanInsert(const Scdr* parent, std::int32_t command) noexcept
{
    const bool item = command == CommandInsertItemLeft || command == CommandInsertItemRight;
    return parent != nullptr && parent->Rank == (item ? 1 : 2);
}

// What the selection's own type and shape leave to be done.
bool HasMeaning(const View& view, const Scdr& node, const Scdr* parent, std::int32_t command) noexcept
{
    switch (command) {
    case CommandCutArray: return parent != nullptr && CanLoseItem(*parent);
    case CommandResetSize: return WasResized(node);
    case CommandRestore: return IsMaximized(node) || IsMinimized(node);
    case CommandMinimize: return CanMinimize(view, node);
    case CommandMaximize: return CanMaximize(view, node);
    case CommandConvertToCharacter: return node.Type != TypeCharacter;
    case CommandRavel: return node.Rank != 1;
    case CommandDisclose: return !IsSimple(node);
    case CommandEnlist: return !IsSimple(node) || node.Rank != 1;
    case CommandReverse:
    case CommandReverseFirstAxis: return node.Rank > 0;
    case CommandTranspose: return node.Rank >= 2;
    case CommandSortAscending:
    case CommandSortDescending: return CanSort(node);
    case CommandMakeMatrix: return node.Rank == 1;
    case CommandMakeArrayOfRows: return node.Rank >= 2;
    case CommandReorderAxes: return node.Rank >= 3;
    case CommandExecute: return node.Rank <= 1;
    default: return !IsInsertCommand(command) || CanInsert(parent, command);
    }
}

bool IsRefusedByKeptSize(std::int32_t command) noexcept
{
    return command == CommandPasteArray || command == CommandConvertToNumeric || command == CommandExecute ||
           IsBetween(command, CommandRavel, CommandMakeMatrix);
}

bool IsRefusedByStructure(std::int32_t command) noexcept
{
    switch (command) {
    case CommandFirst:
    case CommandReverse:
    case CommandReverseFirstAxis:
    case CommandTranspose:
    case CommandMakeArrayOfRows: return true;
    default: return false;
    }
}

bool HasClipboardArray(const View& view)
{
    return view.context->langEnv->Operations.ClipboardCanPaste(view.context) != 0;
}

bool HasGraphics(const View& view) noexcept
{
    return view.context->langEnv->Operations.Graphics != nullptr;
}

} // namespace

CommandList CommandsWithState() noexcept
{
    return {commandsWithState, static_cast<std::int32_t>(std::size(commandsWithState))};
}

bool IsChangeAllowed(const View& view, std::int32_t command) noexcept
{
    const Scdr& node = *Selected(view);
    const bool exchanges = command == CommandCutArray || command == CommandPasteArray;
    if (exchanges && IsScdrInsideEmptyAncestor(node)) return false;
    if ((node.Flags & FlagKeptSize) != 0 && IsRefusedByKeptSize(command)) return false;
    return (node.Flags & FlagStructure) == 0 || !IsRefusedByStructure(command);
}

bool IsCommandEnabled(const View& view, std::int32_t command)
{
    TraceScope trace("menu_state.cpp", "IsCommandEnabled");
    const auto* const end = std::end(commandsWithState);
    if (std::find(std::begin(commandsWithState), end, command) == end) return true;
    if (Selected(view) == nullptr) return false;
    switch (command) {
    case CommandUndoArray: return view.undo != nullptr;
    case CommandRedoArray: return view.redo != nullptr;
    case CommandEmptyUndoBuffer: return view.undo != nullptr || view.redo != nullptr;
    case CommandPasteArray: return IsChangeAllowed(view, command) && HasClipboardArray(view);
    default: break;
    }
    if (IsGraphicsCommand(command)) return HasGraphics(view);
    const Scdr& node = *Selected(view);
    return IsChangeAllowed(view, command) && HasMeaning(view, node, HoldingNode(node), command);
}

} // namespace vantrel
