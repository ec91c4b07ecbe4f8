// Numbers that the portable logic shares with the resources, which it cannot include. Each pair is compared here, so that neither changes alone.
#include "model/rebuild.h"
#include "resources/resource.h"
#include "tools/win/window.h"
#include "view/commands.h"
#include "view/messages.h"
#include "view/progress.h"
#include "view/report.h"

namespace vantrel {

static_assert(CommandCutArray == ID_EDIT_CUT_ARRAY);
static_assert(CommandCopyArray == ID_EDIT_COPY_ARRAY);
static_assert(CommandPasteArray == ID_EDIT_PASTE_ARRAY);
static_assert(CommandUndoArray == ID_EDIT_UNDO_ARRAY);
static_assert(CommandRedoArray == ID_EDIT_REDO_ARRAY);
static_assert(CommandCheckAndAlign == ID_EDIT_CHECK_AND_ALIGN);
static_assert(CommandEmptyUndoBuffer == ID_EDIT_EMPTY_UNDO_BUFFER);
static_assert(CommandSizeToDefinition == ID_SIZE_TO_DEFINITION);
static_assert(CommandResetSize == ID_RESET_SIZE);
static_assert(CommandResetAllSizes == ID_RESET_ALL_SIZES);
static_assert(CommandRestore == ID_RESTORE);
static_assert(CommandMinimize == ID_MINIMIZE);
static_assert(CommandMaximize == ID_MAXIMIZE);
static_assert(CommandConvertToCharacter == ID_ACTION_CONVERT_TO_CHARACTER);
static_assert(CommandConvertToNumeric == ID_ACTION_CONVERT_TO_NUMERIC);
static_assert(CommandRavel == ID_ACTION_RAVEL);
static_assert(CommandFirst == ID_ACTION_FIRST);
static_assert(CommandDisclose == ID_ACTION_DISCLOSE);
static_assert(CommandEnclose == ID_ACTION_ENCLOSE);
static_assert(CommandEnlist == ID_ACTION_ENLIST);
static_assert(CommandReverse == ID_ACTION_REVERSE);
static_assert(CommandReverseFirstAxis == ID_ACTION_REVERSE_FIRST_AXIS);
static_assert(CommandTranspose == ID_ACTION_TRANSPOSE);
static_assert(CommandSortAscending == ID_ACTION_SORT_ASCENDING);
static_assert(CommandSortDescending == ID_ACTION_SORT_DESCENDING);
static_assert(CommandMakeMatrix == ID_ACTION_MAKE_MATRIX);
static_assert(CommandMakeArrayOfRows == ID_ACTION_MAKE_ARRAY_OF_ROWS);
static_assert(CommandPlaneUp == ID_PLANE_UP);
static_assert(CommandPlaneDown == ID_PLANE_DOWN);
static_assert(CommandPlaneFirst == ID_PLANE_FIRST);
static_assert(CommandPlaneLast == ID_PLANE_LAST);
static_assert(CommandPlanePageUp == ID_PLANE_PAGE_UP);
static_assert(CommandPlanePageDown == ID_PLANE_PAGE_DOWN);
static_assert(CommandReorderAxes == ID_ACTION_REORDER_AXES);
static_assert(CommandExecute == ID_ACTION_EXECUTE);
static_assert(CommandInsertItemLeft == ID_INSERT_ITEM_LEFT);
static_assert(CommandInsertItemRight == ID_INSERT_ITEM_RIGHT);
static_assert(CommandInsertColumnLeft == ID_INSERT_COLUMN_LEFT);
static_assert(CommandInsertColumnRight == ID_INSERT_COLUMN_RIGHT);
static_assert(CommandInsertRowAbove == ID_INSERT_ROW_ABOVE);
static_assert(CommandInsertRowBelow == ID_INSERT_ROW_BELOW);
static_assert(CommandGraphicsArea == ID_GRAPHICS_AREA);
static_assert(CommandGraphicsBar == ID_GRAPHICS_BAR);
static_assert(CommandGraphicsContour == ID_GRAPHICS_CONTOUR);
static_assert(CommandGraphicsHistogram == ID_GRAPHICS_HISTOGRAM);
static_assert(CommandGraphicsMesh == ID_GRAPHICS_MESH);
static_assert(CommandGraphicsPie == ID_GRAPHICS_PIE);
static_assert(CommandGraphicsPlot == ID_GRAPHICS_PLOT);
static_assert(CommandGraphicsSurface == ID_GRAPHICS_SURFACE);

static_assert(ActionConvertToCharacter == ID_ACTION_CONVERT_TO_CHARACTER);
static_assert(ActionConvertToNumeric == ID_ACTION_CONVERT_TO_NUMERIC);
static_assert(ActionRavel == ID_ACTION_RAVEL);
static_assert(ActionFirst == ID_ACTION_FIRST);
static_assert(ActionDisclose == ID_ACTION_DISCLOSE);
static_assert(ActionEnclose == ID_ACTION_ENCLOSE);
static_assert(ActionEnlist == ID_ACTION_ENLIST);
static_assert(ActionReverse == ID_ACTION_REVERSE);
static_assert(ActionReverseFirstAxis == ID_ACTION_REVERSE_FIRST_AXIS);
static_assert(ActionTranspose == ID_ACTION_TRANSPOSE);
static_assert(ActionSortAscending == ID_ACTION_SORT_ASCENDING);
static_assert(ActionSortDescending == ID_ACTION_SORT_DESCENDING);

static_assert(OptionSmallMargins == ID_OPTIONS_SMALL_MARGINS);
static_assert(Option3dEdges == ID_OPTIONS_3D_EDGES);
static_assert(OptionWholeCell == ID_OPTIONS_WHOLE_CELL);
static_assert(OptionOvertype == ID_OPTIONS_OVERTYPE);
static_assert(OptionRejectBadData == ID_OPTIONS_REJECT_BAD_DATA);
static_assert(OptionLineNumbers == ID_OPTIONS_LINE_NUMBERS);
static_assert(OptionRuler == ID_OPTIONS_RULER);
static_assert(OptionRankOneScrollBars == ID_OPTIONS_RANK_ONE_SCROLLBARS);
static_assert(OptionEnableUndo == ID_OPTIONS_ENABLE_UNDO);

static_assert(MessageStringIsNested == IDS_STRING_IS_NESTED);
static_assert(MessageArrayIsScalar == IDS_ARRAY_IS_SCALAR);
static_assert(MessageNotAVector == IDS_ARRAY_IS_NOT_A_VECTOR);
static_assert(MessageCannotConvertClipboard == IDS_CANNOT_CONVERT_CLIPBOARD);
static_assert(MessageNotSupported == IDS_NOT_SUPPORTED);
static_assert(MessageErrorAllocating == IDS_ERROR_ALLOCATING);
static_assert(MessageSystemError == IDS_SYSTEM_ERROR);
static_assert(MessageNameIsInvalid == IDS_NAME_IS_INVALID);
static_assert(MessageNotAChild == IDS_ARRAY_IS_NOT_A_CHILD);
static_assert(MessageParentIsEmpty == IDS_PARENT_IS_EMPTY);
static_assert(MessageParentIsNotAMatrix == IDS_PARENT_IS_NOT_A_MATRIX);
static_assert(MessageParentIsNotAVector == IDS_PARENT_IS_NOT_A_VECTOR);
static_assert(MessageCannotDeleteTopLevel == IDS_CANNOT_DELETE_TOP_LEVEL);
static_assert(MessageInterpreterIsBusy == IDS_INTERPRETER_IS_BUSY);
static_assert(StatusUnableToFormat == IDS_UNABLE_TO_FORMAT);
static_assert(StatusFormatting == IDS_FORMATTING_ARRAY);
static_assert(StatusFormattingPercent == IDS_FORMATTING_PERCENT);
static_assert(StatusCalculatingSizes == IDS_CALCULATING_SIZES);
static_assert(StatusCalculatingSizesPercent == IDS_CALCULATING_SIZES_PERCENT);
static_assert(StatusUnableToCalculateSizes == IDS_UNABLE_TO_CALCULATE_SIZES);
static_assert(StatusCalculatingWidthsPercent == IDS_CALCULATING_WIDTHS_PERCENT);

static_assert(StatusBarId == StatusBarControl);
static_assert(NameBoxId == NameBoxControl);

} // namespace vantrel
