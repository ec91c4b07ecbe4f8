// The commands that the array view carries out, and the one road to all of them.
#pragma once

#include "view/view.h"

namespace vantrel {

// Command ids, fixed: menus, keys, the command log and the host's primitives use the same numbers.
enum ViewCommand : std::int32_t {
    CommandCutArray = 4201,
    CommandCopyArray = 4202,
    CommandPasteArray = 4203,
    CommandUndoArray = 4204,
    CommandRedoArray = 4205,
    CommandCheckAndAlign = 4207,
    CommandEmptyUndoBuffer = 4208,
    CommandSizeToDefinition = 4601,
    CommandResetSize = 4602,
    CommandResetAllSizes = 4603,
    CommandRestore = 4604,
    CommandMinimize = 4605,
    CommandMaximize = 4606,
    CommandConvertToCharacter = 4607,
    CommandConvertToNumeric = 4608,
    CommandRavel = 4609,
    CommandFirst = 4610,
    CommandDisclose = 4611,
    CommandEnclose = 4612,
    CommandEnlist = 4613,
    CommandReverse = 4614,
    CommandReverseFirstAxis = 4615,
    CommandTranspose = 4616,
    CommandSortAscending = 4617,
    CommandSortDescending = 4618,
    CommandMakeMatrix = 4619,
    CommandMakeArrayOfRows = 4621,
    CommandPlaneUp = 4622,
    CommandPlaneDown = 4623,
    CommandPlaneFirst = 4624,
    CommandPlaneLast = 4625,
    CommandPlanePageUp = 4626,
    CommandPlanePageDown = 4627,
    CommandReorderAxes = 4628,
    CommandExecute = 4629,
    CommandInsertItemLeft = 4701,
    CommandInsertItemRight = 4702,
    CommandInsertColumnLeft = 4703,
    CommandInsertColumnRight = 4704,
    CommandInsertRowAbove = 4705,
    CommandInsertRowBelow = 4706,
    CommandGraphicsArea = 4901,
    CommandGraphicsBar = 4902,
    CommandGraphicsContour = 4903,
    CommandGraphicsHistogram = 4904,
    CommandGraphicsMesh = 4905,
    CommandGraphicsPie = 4906,
    CommandGraphicsPlot = 4907,
    CommandGraphicsSurface = 4908,
};

[[nodiscard]] constexpr bool IsBetween(std::int32_t command, ViewCommand first, ViewCommand last) noexcept
{
    return command >= first && command <= last;
}
[[nodiscard]] constexpr bool IsInsertCommand(std::int32_t command) noexcept
{
    return IsBetween(command, CommandInsertItemLeft, CommandInsertRowBelow);
}
[[nodiscard]] constexpr bool IsGraphicsCommand(std::int32_t command) noexcept
{
    return IsBetween(command, CommandGraphicsArea, CommandGraphicsSurface);
}

// Carries out one command on the shown tree; a view without a tree and ids that are none of the view's change nothing. What goes wrong
// has been shown to the user when it returns, and no error is left for the interpreter. The view is busy meanwhile.
void RunViewCommand(View& view, std::int32_t command);

// New places for everything after boxes changed their sizes. 0 on success.
std::int32_t FollowBoxSizes(View& view);

} // namespace vantrel
