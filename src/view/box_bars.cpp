#include "view/box_bars.h"

#include <algorithm>
#include <limits>

#include "entry/trace.h"
#include "model/edit_state.h"
#include "view/box_text.h"
#include "view/hit_test.h"
#include "view/layout.h"
#include "view/selection.h"

namespace vantrel {
namespace {

// The platform's codes of what scroll bars ask for.
constexpr std::int32_t CodeLineBack = 0;
constexpr std::int32_t CodeLineForward = 1;
constexpr std::int32_t CodePageBack = 2;
constexpr std::int32_t CodePageForward = 3;
constexpr std::int32_t CodeThumbTrack = 5;

constexpr std::int64_t TextRim = 4; // beside the text, both sides together

std::int32_t Pixels(std::int64_t length) noexcept
{
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(length, 0, std::numeric_limits<std::int32_t>::max()));
}

BoxBar MakeBar(const ViewMetrics& metrics, const Rect64& rect, ScrollAxis axis,
               const ScrollInformation& information) noexcept
{
    const bool horizontal = axis == ScrollAxis::Horizontal;
    const std::int64_t button = horizontal ? metrics.horizontalArrow : metrics.verticalArrow;
    const std::int64_t shortest = horizontal ? metrics.shortestThumb.width : metrics.shortestThumb.height;
    BoxBar bar{rect, axis, 0, 0, {}};
    bar.length = Pixels(horizontal ? rect.right - rect.left : rect.bottom - rect.top);
    bar.arrow = static_cast<std::int32_t>(std::min<std::int64_t>(button, bar.length / 2));
    bar.thumb = PlaceThumb(bar.length - 2 * bar.arrow, Pixels(shortest), information.dataSize,
                           information.pageSize, information.position);
    return bar;
}

std::int64_t Along(const BoxBar& bar, const Point64& point) noexcept
{
    return bar.axis == ScrollAxis::Horizontal ? point.x - bar.rect.left : point.y - bar.rect.top;
}

// Boxes whose bars are in sight and not covered.
bool ShowsBars(const View& view, const Scdr& node) noexcept
{
    return HasBoxScrollBars(view, node) && (node.Flags & FlagMinimized) == 0 && !IsUnderEditor(view, node);
}

std::int32_t CodeOf(BarPart part) noexcept
{
    switch (part) {
    case BarPart::BackArrow: return CodeLineBack;
    case BarPart::ForwardArrow: return CodeLineForward;
    case BarPart::BackPage: return CodePageBack;
    default: return CodePageForward;
    }
}

// Where the editor left the text; null when it never had it, or has forgotten.
ScrollRecord* EditorScrollOf(const Scdr& node) noexcept
{
    if (node.editState == nullptr || node.editState->scroll.window == nullptr) return nullptr;
    return &node.editState->scroll;
}

std::int64_t RoomFor(std::int64_t low, std::int64_t high) noexcept
{
    return std::max<std::int64_t>(high - low - TextRim, 0);
}

// How the text of a box scrolls between its bars. The record may be the editor's: its bars show another array now, so nothing may reach
// them, and its page may be that of a larger box.
ScrollRecord BoxScrolling(const Scdr& node, const Rect64& text) noexcept
{
    const ScrollRecord* const record = ScrollOf(node);
    if (record == nullptr) return {};
    ScrollRecord scroll = *record;
    scroll.effects = nullptr;
    scroll.horizontal.pageSize = std::min(scroll.horizontal.pageSize, RoomFor(text.left, text.right));
    scroll.vertical.pageSize = std::min(scroll.vertical.pageSize, RoomFor(text.top, text.bottom));
    return scroll;
}

Rect64 TextOfBox(const View& view, const Rect64& content) noexcept
{
    return {content.left, content.top, content.right - view.metrics.verticalBarWidth,
            content.bottom - view.metrics.horizontalBarHeight};
}

void ScrollBox(View& view, Scdr& node, ScrollAxis axis, std::int32_t code, std::int64_t track)
{
    ScrollRecord& record = *ScrollOf(node);
    ScrollRecord moved = BoxScrolling(node, TextOfBox(view, ContentOfBox(view, node)));
    const bool horizontal = axis == ScrollAxis::Horizontal;
    const ScrollInformation& information = horizontal ? record.horizontal : record.vertical;
    const std::int64_t delta = ScrollCodeDelta(code, axis, information.position, track);
    ChangeScrollPositions(moved, horizontal ? delta : 0, horizontal ? 0 : delta);
    if (moved.horizontal.position == record.horizontal.position &&
        moved.vertical.position == record.vertical.position)
        return;
    record.horizontal.position = moved.horizontal.position;
    record.vertical.position = moved.vertical.position;
    if (&record == EditorScrollOf(node)) BringCaretIntoSight(view, node);
    view.effects.invalidate(view);
}

// Keys and commands go on while the button is held: the tree may have changed under the pointer. The pointer to the node is followed only
// when the tree leads to it again.
bool IsStillThere(const View& view, const BarPress& press) noexcept
{
    return press.node != nullptr && view.top != nullptr &&
           HitTestScdr(view, *view.top, press.start, 0, 0) == press.node && ShowsBars(view, *press.node) &&
           ScrollOf(*press.node) != nullptr;
}

BoxBar PressedBar(const View& view, const BarPress& press) noexcept
{
    const BoxBars bars = PlaceBoxBars(view, *press.node, ContentOfBox(view, *press.node));
    return press.axis == ScrollAxis::Horizontal ? bars.horizontal : bars.vertical;
}

} // namespace

Rect64 ContentOfBox(const View& view, const Scdr& node) noexcept
{
    const ViewMetrics& metrics = view.metrics;
    const std::int64_t frames = std::max(node.Rank - 2, 0);
    const Rect64 box = NodeRect(node);
    return {box.left + metrics.margin + metrics.edge.width + frames * 2 * metrics.edge.width,
            box.top + metrics.margin + metrics.edge.height, box.right - metrics.margin - metrics.edge.width,
            box.bottom - metrics.margin - metrics.edge.height};
}

BoxBars PlaceBoxBars(const View& view, const Scdr& node, const Rect64& content) noexcept
{
    TraceScope trace("box_bars.cpp", "PlaceBoxBars");
    const ViewMetrics& metrics = view.metrics;
    BoxBars bars;
    bars.text = TextOfBox(view, content);
    const ScrollRecord scroll = BoxScrolling(node, bars.text);
    bars.corner = {bars.text.right, bars.text.bottom, content.right, content.bottom};
    bars.vertical = MakeBar(metrics, {bars.text.right, content.top, content.right, bars.text.bottom},
                            ScrollAxis::Vertical, scroll.vertical);
    bars.horizontal = MakeBar(metrics, {content.left, bars.text.bottom, bars.text.right, content.bottom},
                              ScrollAxis::Horizontal, scroll.horizontal);
    return bars;
}

ScrollRecord* ScrollOf(const Scdr& node) noexcept
{
    if (ScrollRecord* const scroll = EditorScrollOf(node)) return scroll;
    return node.extra != nullptr ? node.extra->boxScroll : nullptr;
}

bool IsUnderEditor(const View& view, const Scdr& node) noexcept
{
    return &node == Selected(view) && view.editorActive && IsShownInEditor(node);
}

BarPart PartOfBar(const BoxBar& bar, const Point64& point) noexcept
{
    if (!Holds(bar.rect, point) || bar.thumb.length == 0) return BarPart::None;
    const std::int64_t at = Along(bar, point);
    const std::int64_t thumb = std::int64_t{bar.arrow} + bar.thumb.start;
    if (at < bar.arrow) return BarPart::BackArrow;
    if (at >= std::int64_t{bar.length} - bar.arrow) return BarPart::ForwardArrow;
    if (at < thumb) return BarPart::BackPage;
    return at < thumb + bar.thumb.length ? BarPart::Thumb : BarPart::ForwardPage;
}

bool IsOnBoxBars(const View& view, const Scdr& node, const Point64& point) noexcept
{
    TraceScope trace("box_bars.cpp", "IsOnBoxBars");
    if (!ShowsBars(view, node)) return false;
    const Rect64 content = ContentOfBox(view, node);
    return Holds(content, point) && !Holds(PlaceBoxBars(view, node, content).text, point);
}

bool PressBoxBar(View& view, Scdr& hit, const Point64& point, BarPress& press)
{
    TraceScope trace("box_bars.cpp", "PressBoxBar");
    press = BarPress{};
    if (!ShowsBars(view, hit)) return false;
    const BoxBars bars = PlaceBoxBars(view, hit, ContentOfBox(view, hit));
    for (const BoxBar* bar : {&bars.vertical, &bars.horizontal}) {
        const BarPart part = PartOfBar(*bar, point);
        if (part == BarPart::None) continue;
        press = {&hit, bar->axis, part, point, point, Along(*bar, point) - bar->arrow - bar->thumb.start};
        if (part != BarPart::Thumb) ScrollBox(view, hit, bar->axis, CodeOf(part), 0);
        return true;
    }
    return false;
}

void DragBoxBar(View& view, BarPress& press, const Point64& point)
{
    TraceScope trace("box_bars.cpp", "DragBoxBar");
    press.point = point;
    if (press.part != BarPart::Thumb || !IsStillThere(view, press)) return;
    const BoxBar bar = PressedBar(view, press);
    const ScrollRecord scroll = BoxScrolling(*press.node, TextOfBox(view, ContentOfBox(view, *press.node)));
    const ScrollInformation& information =
        press.axis == ScrollAxis::Horizontal ? scroll.horizontal : scroll.vertical;
    const std::int64_t start = Along(bar, point) - bar.arrow - press.grip;
    const std::int64_t track = PositionOfThumb(bar.length - 2 * bar.arrow, bar.thumb.length, start,
                                               information.dataSize, information.pageSize);
    ScrollBox(view, *press.node, press.axis, CodeThumbTrack, track);
}

void RepeatBoxBar(View& view, BarPress& press)
{
    TraceScope trace("box_bars.cpp", "RepeatBoxBar");
    if (press.part == BarPart::Thumb || !IsStillThere(view, press)) return;
    if (PartOfBar(PressedBar(view, press), press.point) != press.part) return;
    ScrollBox(view, *press.node, press.axis, CodeOf(press.part), 0);
}

} // namespace vantrel
