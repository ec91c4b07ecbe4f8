#include "view/box_text.h"

#include <algorithm>
#include <new>

#include "entry/trace.h"
#include "view/layout.h"

namespace vantrel {
namespace {

// An empty array may claim any number of rows; more than this is never on a screen.
constexpr std::int64_t TallestText = std::int64_t{1} << 60;

bool FillsWindow(const View& view, const Scdr& node) noexcept
{
    return &node == Selected(view) && IsSimple(node) && (node.Flags & FlagMaximized) != 0;
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
