// Sizing: measures every box and gives it its place.
//
// Sizes are found from the leaves up, places from the top down. A row of boxes does both in one visit. A grid needs the sizes of all its
// items before it can place one, so it visits its items twice: a pass that only measures, then one that places.
//
// A nested node carries its valid flags only while everything below it is valid too: they are cleared before its items are visited and set
// after the last one. So a node whose flags stand and which did not move is skipped with all below it, and a layout that was broken
// off leaves nothing that a later one would wrongly skip.
#include "view/layout.h"

#include <algorithm>

#include "entry/trace.h"
#include "view/box_text.h"
#include "view/item_shift.h"
#include "view/layout_change.h"
#include "view/progress.h"
#include "view/report.h"

namespace vantrel {
namespace {

// Large boxes are scrolled in place; none takes more of the screen than this.
constexpr std::int64_t LargestBoxPercent = 35;
constexpr std::int64_t TextPadding = 2; // around the text, on every side
// Single arrays of so many rows report their own progress.
constexpr std::int64_t RowsWorthReporting = 100000;

struct Sizing {
    View& view;
    LayoutProgress progress;
    LayoutProgress widths; // of the one array being measured
    const Scdr* measured;
};

// All answers of this file's routines: true stops.
bool GetScdrCell(Sizing& sizing, Scdr& node, Point64 origin, bool place);

std::int64_t ExtraAxesWidth(const View& view, const Scdr& node) noexcept
{
    // Each axis beyond the second is one more nested frame, drawn on the left side only.
    return node.Rank > 2 ? (node.Rank - std::int64_t{2}) * 2 * view.metrics.edge.width : 0;
}

void SetSize(const View& view, Scdr& node, const Size64& content) noexcept
{
    const ViewMetrics& metrics = view.metrics;
    node.width = content.width + 2 * metrics.edge.width + ExtraAxesWidth(view, node) + 2 * metrics.margin;
    node.height = content.height + 2 * metrics.edge.height + 2 * metrics.margin;
    node.Flags |= FlagSizeValid;
}

bool MeasureStep(void* state, std::int64_t rowsMeasured)
{
    auto& sizing = *static_cast<Sizing*>(state);
    UpdateProgressReport(sizing.view, sizing.progress, *sizing.measured, rowsMeasured);
    if (sizing.widths.total > 0) AddProgress(sizing.view, sizing.widths, rowsMeasured);
    return !IsInterrupted(sizing.view, sizing.progress, rowsMeasured);
}

// The greatest width of the node's records, -1 to stop.
std::int64_t MeasureRecords(Sizing& sizing, Scdr& node)
{
    const std::int64_t rows = node.records.count;
    sizing.measured = &node;
    sizing.widths.total = rows < RowsWorthReporting ? 0 : rows;
    if (sizing.widths.total > 0) {
        sizing.widths.done = 0;
        sizing.widths.lastPercent = 0;
    }
    const MeasureProgress step{MeasureStep, &sizing};
    return GetRecordWidths(node.records, sizing.view.edit.widths, &step);
}

// The room for text inside a box with scroll bars. The height gives way to the edge's width: documents were laid out with it.
Size64 PageOfBox(const ViewMetrics& metrics, const Size64& content) noexcept
{
    const std::int64_t around = 2 * metrics.edge.width + 2 * TextPadding;
    return {content.width - (metrics.verticalBarWidth + around),
            content.height - (metrics.horizontalBarHeight + around)};
}

Size64 ContentOfText(const View& view, const Scdr& node, std::int64_t widest) noexcept
{
    const ViewMetrics& metrics = view.metrics;
    Size64 content{widest + 2 * TextPadding, TextHeight(view, node) + 2 * TextPadding};
    if (HasBoxScrollBars(view, node)) {
        content.width = std::max(2 * metrics.verticalBarWidth, content.width) + metrics.verticalBarWidth + 1;
        content.height =
            std::max(2 * metrics.horizontalBarHeight, content.height) + metrics.horizontalBarHeight + 1;
    }
    content.width =
        std::min(content.width + 2 * metrics.edge.width, metrics.workArea.width * LargestBoxPercent / 100);
    content.height =
        std::min(content.height + 2 * metrics.edge.height, metrics.workArea.height * LargestBoxPercent / 100);
    return content;
}

bool SizeText(Sizing& sizing, Scdr& node)
{
    View& view = sizing.view;
    UpdateProgressReport(view, sizing.progress, node);
    const std::int64_t widest = MeasureRecords(sizing, node);
    if (widest < 0) return true;
    const Size64 content = ContentOfText(view, node, widest);
    if (HasBoxScrollBars(view, node)) StoreBoxScroll(view, node, PageOfBox(view.metrics, content));
    SetSize(view, node, content);
    node.records.flags |= RecordsFormatted;
    node.records.formattedWidth = node.width;
    node.records.formattedHeight = node.height;
    return false;
}

Point64 ContentOrigin(const View& view, const Scdr& node, const Point64& origin) noexcept
{
    const ViewMetrics& metrics = view.metrics;
    return {origin.x + metrics.edge.width + metrics.margin + ExtraAxesWidth(view, node),
            origin.y + metrics.edge.height + metrics.margin};
}

// Scalars, vectors and whatever is empty: one row of boxes; neighbours share a margin.
bool LayOutRow(Sizing& sizing, Scdr& node, const Point64& origin, bool place, Size64& content)
{
    TraceScope trace("layout_sizes.cpp", "LayOutRow");
    const std::int64_t margin = sizing.view.metrics.margin;
    Point64 at = ContentOrigin(sizing.view, node, origin);
    const std::int64_t count = ChildCount(node);
    for (std::int64_t i = 0; i < count; ++i) {
        Scdr& item = *Children(node)[i];
        if (IsInterrupted(sizing.view, sizing.progress, 1)) return true;
        if (GetScdrCell(sizing, item, at, place)) return true;
        at.x += item.width - margin;
        content.width += item.width - margin;
        content.height = std::max(content.height, item.height);
    }
    content.width += margin;
    return false;
}

struct Grid {
    std::int64_t rows;
    std::int64_t columns;
    std::int64_t* rowHeights;
    std::int64_t* columnWidths;
};

Grid GridOf(Scdr& node)
{
    ScdrExtra& extra = ExtraOf(node);
    const std::int64_t rows = std::max<std::int64_t>(Rows(node), 1);
    const std::int64_t columns = std::max<std::int64_t>(Columns(node), 1);
    if (extra.rowHeights == nullptr) extra.rowHeights = AllocateZeroedArray<std::int64_t>(rows).release();
    if (extra.columnWidths == nullptr)
        extra.columnWidths = AllocateZeroedArray<std::int64_t>(columns).release();
    return {rows, columns, extra.rowHeights, extra.columnWidths};
}

bool HasGrid(const Scdr& node) noexcept
{
    return node.extra != nullptr && node.extra->rowHeights != nullptr && node.extra->columnWidths != nullptr;
}

// The widths and heights are the greatest over all planes, so that paging planes never changes the box.
bool MeasureGrid(Sizing& sizing, Scdr& node, const Grid& grid)
{
    std::fill_n(grid.rowHeights, grid.rows, 0);
    std::fill_n(grid.columnWidths, grid.columns, 0);
    Scdr** item = Children(node);
    Scdr** const end = item + node.ElementCount;
    while (item != end) {
        for (std::int64_t row = 0; row < grid.rows; ++row) {
            for (std::int64_t column = 0; column < grid.columns; ++column, ++item) {
                Scdr& box = **item;
                if (IsInterrupted(sizing.view, sizing.progress, 1)) return true;
                if (GetScdrCell(sizing, box, {}, false)) return true;
                grid.rowHeights[row] = std::max(grid.rowHeights[row], box.height);
                grid.columnWidths[column] = std::max(grid.columnWidths[column], box.width);
            }
        }
    }
    return false;
}

bool PlaceGrid(Sizing& sizing, Scdr& node, const Grid& grid, const Point64& start)
{
    const std::int64_t margin = sizing.view.metrics.margin;
    Scdr** item = Children(node);
    Scdr** const end = item + node.ElementCount;
    while (item != end) {
        Point64 at = start;
        for (std::int64_t row = 0; row < grid.rows; ++row) {
            at.x = start.x;
            for (std::int64_t column = 0; column < grid.columns; ++column, ++item) {
                if (IsInterrupted(sizing.view, sizing.progress, 1)) return true;
                if (GetScdrCell(sizing, **item, at, true)) return true;
                at.x += grid.columnWidths[column] - margin;
            }
            at.y += grid.rowHeights[row] - margin;
        }
    }
    return false;
}

std::int64_t SumLessMargins(const std::int64_t* lengths, std::int64_t count, std::int64_t margin) noexcept
{
    std::int64_t sum = margin;
    for (std::int64_t i = 0; i < count; ++i)
        sum += lengths[i] - margin;
    return sum;
}

bool LayOutGrid(Sizing& sizing, Scdr& node, const Point64& origin, bool place, bool sized, Size64& content)
{
    TraceScope trace("layout_sizes.cpp", "LayOutGrid");
    const bool measured = sized && HasGrid(node);
    const Grid grid = GridOf(node);
    if (!measured && MeasureGrid(sizing, node, grid)) return true;
    if (place && PlaceGrid(sizing, node, grid, ContentOrigin(sizing.view, node, origin))) return true;
    const std::int64_t margin = sizing.view.metrics.margin;
    content.width = SumLessMargins(grid.columnWidths, grid.columns, margin);
    content.height = SumLessMargins(grid.rowHeights, grid.rows, margin);
    return false;
}

bool LayOutItems(Sizing& sizing, Scdr& node, const Point64& origin, bool place)
{
    const bool sized = (node.Flags & FlagSizeValid) != 0;
    SettleItems(node); // what they say of their places is compared from here on
    ClearFlags(node, FlagSizeValid | FlagOriginValid);
    Size64 content;
    const bool stopped = node.Rank < 2 || node.ElementCount == 0
                             ? LayOutRow(sizing, node, origin, place, content)
                             : LayOutGrid(sizing, node, origin, place, sized, content);
    if (stopped) return true;
    SetSize(sizing.view, node, content);
    if (place) node.Flags |= FlagOriginValid;
    return false;
}

// Sizes one node and, with `place`, puts it at `origin` with all below it.
bool GetScdrCell(Sizing& sizing, Scdr& node, Point64 origin, bool place)
{
    const bool sized = (node.Flags & FlagSizeValid) != 0;
    const bool stays = !place || ((node.Flags & FlagOriginValid) != 0 && node.originX == origin.x &&
                                  node.originY == origin.y);
    if (sized && stays) return false;
    if (place) {
        node.originX = origin.x;
        node.originY = origin.y;
        node.Flags |= FlagOriginValid;
    }
    if ((node.Flags & FlagMinimized) != 0) {
        const std::int64_t side = MinimisedSize(sizing.view);
        if (!sized) SetSize(sizing.view, node, {side, side});
        return false;
    }
    if (!IsSimple(node)) return LayOutItems(sizing, node, origin, place);
    return !sized && SizeText(sizing, node);
}

bool LayOutTop(View& view, Sizing& sizing)
{
    try {
        return GetScdrCell(sizing, *view.top, {0, 0}, true);
    } catch (VTERROR_CODE code) {
        SetErrorCode(view.context, code);
        return true;
    }
}

} // namespace

std::int32_t SizeBox(View& view, Scdr& node)
{
    TraceScope trace("layout_sizes.cpp", "SizeBox");
    Sizing sizing{view, {}, {}, nullptr};
    ClearFlags(node, FlagSizeValid);
    try {
        return GetScdrCell(sizing, node, {}, false) ? 1 : 0;
    } catch (VTERROR_CODE code) {
        SetErrorCode(view.context, code);
        return 1;
    }
}

std::int32_t CalculateScdrSizes(View& view)
{
    TraceScope trace("layout_sizes.cpp", "CalculateScdrSizes");
    if (view.top == nullptr) return 0;
    view.effects.readPlatform(view);
    const bool quiet = (view.flags & ViewQuiet) != 0;
    if (!quiet) view.effects.showStatus(view, StatusCalculatingSizes, -1, false);
    Sizing sizing{view, {}, {}, nullptr};
    sizing.progress.stringId = StatusCalculatingSizesPercent;
    sizing.widths.stringId = StatusCalculatingWidthsPercent;
    if (!quiet) sizing.progress.total = CountSimpleScdrsAndInvalidRecords(*view.top);
    const bool stopped = LayOutTop(view, sizing);
    if (stopped && !quiet) ShowError(view, StatusUnableToCalculateSizes);
    return stopped ? 1 : 0;
}

} // namespace vantrel
