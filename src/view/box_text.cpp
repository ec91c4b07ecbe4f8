#include "view/box_text.h"

#include <algorithm>
#include <new>

#include "entry/trace.h"
#include "model/edit_state.h"
#include "view/box_bars.h"
#include "view/layout.h"

namespace vantrel {
namespace {

// An empty array may claim any number of rows; more than this is never on a screen.
constexpr std::int64_t TallestText = std::int64_t{1} << 60;

bool FillsWindow(const View& view, const Scdr& node) noexcept
{
    return &node == Selected(view) && IsSimple(node) && (node.Flags & FlagMaximized) != 0;
}

// The line nearest to the present one of those that are whole in sight.
std::int64_t LineInSight(const View& view, const Scdr& node, const EditState& state) noexcept
{
    const ScrollInformation& scroll = state.scroll.vertical;
    const std::int64_t height = view.edit.lineHeight;
    const std::int64_t first = (scroll.position + height - 1) / height;
    const std::int64_t last = std::max(first, (scroll.position + scroll.pageSize) / height - 1);
    const std::int64_t line = std::clamp(state.caretLine, first, last);
    return std::clamp<std::int64_t>(line, 0, std::max<std::int64_t>(ShownRows(node) - 1, 0));
}

std::int64_t ColumnInSight(View& view, const RecordText& row, const EditState& state)
{
    const ScrollInformation& scroll = state.scroll.horizontal;
    CharWidths& widths = view.edit.widths;
    const std::int64_t left = scroll.position;
    const std::int64_t right = scroll.position + scroll.pageSize;
    const std::int64_t column = std::min(state.caretColumn, row.length);
    const std::int64_t x = widths.TextWidth(row.text, column);
    if (x < left) {
        const std::int64_t cut = widths.ColumnAt(row.text, row.length, left);
        return widths.TextWidth(row.text, cut) < left ? std::min(cut + 1, row.length) : cut;
    }
    const std::int64_t width =
        column < row.length ? widths.CharWidth(row.text[column]) : view.edit.averageCharWidth;
    if (x + width <= right) return column;
    // The character that the right edge cuts is not whole, the one before it is.
    return std::max<std::int64_t>(widths.ColumnAt(row.text, row.length, right) - 1, 0);
}

ScrollRecord& BoxScrollOf(View& view, Scdr& node)
{
    ScdrExtra& extra = ExtraOf(node);
    if (extra.boxScroll == nullptr) {
        extra.boxScroll = new (AllocateBytes(sizeof(ScrollRecord))) ScrollRecord{};
        extra.boxScroll->kind = ScrollKind::BoxBars;
        extra.boxScroll->window = view.window;
    }
    return *extra.boxScroll;
}

std::int64_t Scaled(std::int64_t position, std::int64_t from, std::int64_t to) noexcept
{
    return position / from * to + position % from * to / from;
}

// The record that the box keeps when its text had another line height; null when there is nothing to keep, or no memory for it.
ScrollRecord* RecordToCarry(View& view, Scdr& node, const ScrollRecord& before) noexcept
{
    const bool scrolled = before.horizontal.position > 0 || before.vertical.position > 0;
    const std::int64_t rows = ShownRows(node);
    if (!scrolled || !HasBoxScrollBars(view, node) || rows <= 0 || before.vertical.dataSize < rows)
        return nullptr;
    try {
        return &BoxScrollOf(view, node);
    } catch (VTERROR_CODE) {
        return nullptr;
    }
}

} // namespace

std::int64_t TextHeight(const View& view, const Scdr& node) noexcept
{
    const std::int64_t rows = node.Rank > 2 ? Rows(node) : node.records.count;
    const std::int64_t line = view.edit.lineHeight;
    return line > 0 && rows > TallestText / line ? TallestText : rows * line;
}

bool HasBoxScrollBars(const View& view, const Scdr& node) noexcept
{
    return IsSimple(node) && (node.Rank > 1 || (node.Rank == 1 && view.edit.rankOneScrollBars));
}

std::int64_t FirstShownRow(const Scdr& node) noexcept
{
    if (node.Rank < 3) return 0;
    // The plane number is below the plane count and the records hold all planes, so only a node without records yet can be passed over.
    const std::int64_t rows = Rows(node);
    const std::int64_t plane = CurrentPlane(node);
    if (rows > 0 && plane > node.records.count / rows) return node.records.count;
    return std::min(plane * rows, node.records.count);
}

std::int64_t ShownRows(const Scdr& node) noexcept
{
    const std::int64_t rows = node.records.count - FirstShownRow(node);
    return node.Rank > 2 ? std::min(Rows(node), rows) : rows;
}

void BringCaretIntoSight(View& view, Scdr& node)
{
    TraceScope trace("box_text.cpp", "BringCaretIntoSight");
    EditState* const state = node.editState;
    if (state == nullptr || view.edit.lineHeight <= 0 || ShownRows(node) <= 0) return;
    const std::int64_t line = LineInSight(view, node, *state);
    const RecordText row = GetRecord(node.records, FirstShownRow(node) + line);
    const std::int64_t column = ColumnInSight(view, row, *state);
    if (line == state->caretLine && column == state->caretColumn) return;
    state->caretLine = state->anchorLine = state->endLine = line;
    state->caretColumn = state->anchorColumn = state->endColumn = column;
}

void CarryScrolling(View& view, Scdr& node) noexcept
{
    const ScrollRecord* const found = ScrollOf(node);
    if (found == nullptr) return;
    const ScrollRecord before = *found;
    if (node.editState != nullptr) node.editState->scroll = ScrollRecord{};
    ScrollRecord* const record = RecordToCarry(view, node, before);
    if (record == nullptr) return;
    const std::int64_t oldLine = before.vertical.dataSize / ShownRows(node);
    record->vertical.position = Scaled(before.vertical.position, oldLine, view.edit.lineHeight);
    record->horizontal.position = Scaled(before.horizontal.position, oldLine, view.edit.lineHeight);
}

void StoreBoxScroll(View& view, Scdr& node, const Size64& page)
{
    if (FillsWindow(view, node)) return;
    const Size64 text{node.records.widest, TextHeight(view, node)};
    const bool fits = text.width <= page.width && text.height <= page.height;
    if (fits && (node.extra == nullptr || node.extra->boxScroll == nullptr)) return;
    ScrollRecord& scroll = BoxScrollOf(view, node);
    SetScrollBarsDataSize(scroll, text.width, text.height);
    SetScrollBarsWindowSize(scroll, page.width, page.height);
    AdjustScrollPositions(scroll);
}

void SetScrollBarsFromRecords(View& view, Scdr& node, const Size64& page)
{
    TraceScope trace("box_text.cpp", "SetScrollBarsFromRecords");
    try {
        StoreBoxScroll(view, node, page);
    } catch (VTERROR_CODE code) {
        SetErrorCode(view.context, code);
    }
}

void SetScrollBarsDataSizeFromScdr(View& view)
{
    TraceScope trace("box_text.cpp", "SetScrollBarsDataSizeFromScdr");
    if (view.top == nullptr) {
        SetScrollBarsDataSize(view.scroll, 0, 0);
        AdjustScrollPositions(view.scroll);
        return;
    }
    // The editor of a maximised simple array fills the window and scrolls by itself.
    if (FillsWindow(view, *view.top)) return;
    SetScrollBarsDataSize(view.scroll, view.top->width, view.top->height);
    AdjustScrollPositions(view.scroll);
}

} // namespace vantrel
