#include "frame/toolbar.h"

#include "resources/resource.h"

namespace vantrel {
namespace {

// In the order of the strips; see toolbar/make_pictures.py.
enum Picture : std::int32_t {
    PictureRevert,
    PictureSave,
    PicturePrint,
    PictureCut,
    PictureCopy,
    PicturePaste,
    PictureUndo,
    PictureRedo,
    PictureFind,
    PictureMinimize,
    PictureRestore,
    PictureMaximize,
    PictureSortAscending,
    PictureSortDescending,
    PictureRavel,
    PictureEnclose,
    PictureDisclose,
    PictureReverseLast,
    PictureReverseFirst,
    PictureTranspose,
    PictureReorderAxes,
    PictureRowsOfMatrix,
    PictureArrayOfRows,
    PictureItemLeft,
    PictureItemRight,
    PictureColumnLeft,
    PictureColumnRight,
    PictureRowAbove,
    PictureRowBelow,
    PictureHelp,
};

constexpr ToolButton Drawn(std::int32_t command, Picture picture, std::int32_t tip) noexcept
{
    return {command, picture, tip, nullptr};
}

constexpr ToolButton Labelled(std::int32_t command, const char16_t* label, std::int32_t tip) noexcept
{
    return {command, NoPicture, tip, label};
}

constexpr ToolButton Separator{0, NoPicture, 0, nullptr};

constexpr ToolButton Buttons[] = {
    Drawn(ID_FILE_REVERT, PictureRevert, IDS_TIP_REVERT),
    Drawn(ID_FILE_SAVE, PictureSave, IDS_TIP_SAVE),
    Drawn(ID_FILE_PRINT, PicturePrint, IDS_TIP_PRINT),
    Separator,
    Drawn(ID_EDIT_CUT_ARRAY, PictureCut, IDS_TIP_CUT_ARRAY),
    Drawn(ID_EDIT_COPY_ARRAY, PictureCopy, IDS_TIP_COPY_ARRAY),
    Drawn(ID_EDIT_PASTE_ARRAY, PicturePaste, IDS_TIP_PASTE_ARRAY),
    Drawn(ID_EDIT_UNDO_ARRAY, PictureUndo, IDS_TIP_UNDO_ARRAY),
    Drawn(ID_EDIT_REDO_ARRAY, PictureRedo, IDS_TIP_REDO_ARRAY),
    Drawn(ID_EDIT_FIND, PictureFind, IDS_TIP_FIND),
    Separator,
    Drawn(ID_MINIMIZE, PictureMinimize, IDS_TIP_MINIMIZE),
    Drawn(ID_RESTORE, PictureRestore, IDS_TIP_RESTORE),
    Drawn(ID_MAXIMIZE, PictureMaximize, IDS_TIP_MAXIMIZE),
    Separator,
    Labelled(ID_ACTION_CONVERT_TO_CHARACTER, u"ABC", IDS_TIP_CONVERT_TO_CHARACTER),
    Labelled(ID_ACTION_CONVERT_TO_NUMERIC, u"123", IDS_TIP_CONVERT_TO_NUMERIC),
    Drawn(ID_ACTION_SORT_ASCENDING, PictureSortAscending, IDS_TIP_SORT_ASCENDING),
    Drawn(ID_ACTION_SORT_DESCENDING, PictureSortDescending, IDS_TIP_SORT_DESCENDING),
    Separator,
    Labelled(ID_ACTION_EXECUTE, u"eval", IDS_TIP_EXECUTE),
    Drawn(ID_ACTION_RAVEL, PictureRavel, IDS_TIP_RAVEL),
    Labelled(ID_ACTION_ENLIST, u",['']", IDS_TIP_ENLIST),
    Labelled(ID_ACTION_FIRST, u"1st", IDS_TIP_FIRST),
    Drawn(ID_ACTION_ENCLOSE, PictureEnclose, IDS_TIP_ENCLOSE),
    Drawn(ID_ACTION_DISCLOSE, PictureDisclose, IDS_TIP_DISCLOSE),
    Drawn(ID_ACTION_REVERSE, PictureReverseLast, IDS_TIP_REVERSE_LAST_AXIS),
    Drawn(ID_ACTION_REVERSE_FIRST_AXIS, PictureReverseFirst, IDS_TIP_REVERSE_FIRST_AXIS),
    Drawn(ID_ACTION_TRANSPOSE, PictureTranspose, IDS_TIP_TRANSPOSE),
    Drawn(ID_ACTION_REORDER_AXES, PictureReorderAxes, IDS_TIP_REORDER_AXES),
    Drawn(ID_ACTION_MAKE_MATRIX, PictureRowsOfMatrix, IDS_TIP_ROWS_OF_MATRIX),
    Drawn(ID_ACTION_MAKE_ARRAY_OF_ROWS, PictureArrayOfRows, IDS_TIP_ARRAY_OF_ROWS),
    Separator,
    Drawn(ID_INSERT_ITEM_LEFT, PictureItemLeft, IDS_TIP_INSERT_ITEM_LEFT),
    Drawn(ID_INSERT_ITEM_RIGHT, PictureItemRight, IDS_TIP_INSERT_ITEM_RIGHT),
    Drawn(ID_INSERT_COLUMN_LEFT, PictureColumnLeft, IDS_TIP_INSERT_COLUMN_LEFT),
    Drawn(ID_INSERT_COLUMN_RIGHT, PictureColumnRight, IDS_TIP_INSERT_COLUMN_RIGHT),
    Drawn(ID_INSERT_ROW_ABOVE, PictureRowAbove, IDS_TIP_INSERT_ROW_ABOVE),
    Drawn(ID_INSERT_ROW_BELOW, PictureRowBelow, IDS_TIP_INSERT_ROW_BELOW),
    Separator,
    Drawn(ID_HELP_GENERAL, PictureHelp, IDS_TIP_HELP),
};
static_assert(std::size(Buttons) == 41);

constexpr std::int32_t PictureSizes[] = {16, 20, 24, 32, 36, 48};

constexpr std::int32_t SmallSize = 16; // at the usual resolution
constexpr std::int32_t LargeSize = 24;
constexpr std::int32_t UsualDotsPerInch = 96;

} // namespace

std::span<const ToolButton> ToolButtons() noexcept
{
    return Buttons;
}

bool IsToolButtonRemoved(Dialect dialect, std::int32_t command) noexcept
{
    switch (command) {
    // Only the first of the family has a primitive for it; the others have none under this number.
    case ID_ACTION_EXECUTE: return dialect != Dialect::Apl2;
    case ID_ACTION_ENCLOSE:
    case ID_ACTION_DISCLOSE: return dialect == Dialect::Matlab;
    default: return false;
    }
}

std::int32_t ToolPictureSize(bool small, std::int32_t dotsPerInch) noexcept
{
    const std::int64_t wanted = std::int64_t{small ? SmallSize : LargeSize} * dotsPerInch / UsualDotsPerInch;
    std::int32_t best = PictureSizes[0];
    for (const std::int32_t size : PictureSizes) {
        if (size <= wanted) best = size;
    }
    return best;
}

} // namespace vantrel
