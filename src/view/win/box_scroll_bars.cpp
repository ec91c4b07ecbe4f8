#include <algorithm>

#include <vssym32.h>

#include "entry/trace.h"
#include "tools/thumb.h"
#include "tools/win/window.h"
#include "view/win/painting.h"

namespace vantrel {

namespace {

// What differs between the two bars: parts and states of the theme, and buttons of the classic look.
struct BarLook {
    int upperTrack, lowerTrack, thumb;
    int backArrow, forwardArrow; // theme states
    int backArrowDisabled, forwardArrowDisabled;
    UINT classicBack, classicForward;
};

constexpr BarLook HorizontalLook = {SBP_UPPERTRACKHORZ, SBP_LOWERTRACKHORZ, SBP_THUMBBTNHORZ,
                                    ABS_LEFTNORMAL,     ABS_RIGHTNORMAL,    ABS_LEFTDISABLED,
                                    ABS_RIGHTDISABLED,  DFCS_SCROLLLEFT,    DFCS_SCROLLRIGHT};
constexpr BarLook VerticalLook = {SBP_UPPERTRACKVERT, SBP_LOWERTRACKVERT, SBP_THUMBBTNVERT,
                                  ABS_UPNORMAL,       ABS_DOWNNORMAL,     ABS_UPDISABLED,
                                  ABS_DOWNDISABLED,   DFCS_SCROLLUP,      DFCS_SCROLLDOWN};

struct Bar {
    RECT rect;
    bool horizontal;
    int arrow; // length of an arrow button
    Thumb thumb;
};

int LengthOf(const Bar& bar) noexcept
{
    return bar.horizontal ? bar.rect.right - bar.rect.left : bar.rect.bottom - bar.rect.top;
}

// The piece of a bar from one place along it to another.
RECT PieceOf(const Bar& bar, int from, int to) noexcept
{
    const RECT& rect = bar.rect;
    if (bar.horizontal) return {rect.left + from, rect.top, rect.left + to, rect.bottom};
    return {rect.left, rect.top + from, rect.right, rect.top + to};
}

Bar MakeBar(const RECT& rect, bool horizontal, const ScrollInformation& information) noexcept
{
    Bar bar{rect, horizontal, 0, {}};
    const int button = horizontal ? GetSystemMetrics(SM_CXHSCROLL) : GetSystemMetrics(SM_CYVSCROLL);
    const int shortest = horizontal ? GetSystemMetrics(SM_CXHTHUMB) / 2 : GetSystemMetrics(SM_CYVTHUMB) / 2;
    bar.arrow = std::min(button, LengthOf(bar) / 2);
    bar.thumb = PlaceThumb(LengthOf(bar) - 2 * bar.arrow, shortest, information.dataSize,
                           information.pageSize, information.position);
    return bar;
}

void DrawThemedBar(const PaintTarget& target, const Bar& bar)
{
    const BarLook& look = bar.horizontal ? HorizontalLook : VerticalLook;
    const int length = LengthOf(bar);
    const int thumbStart = bar.arrow + bar.thumb.start;
    const int thumbEnd = thumbStart + bar.thumb.length;
    const bool enabled = bar.thumb.length > 0;
    const int trackState = enabled ? SCRBS_NORMAL : SCRBS_DISABLED;
    const auto draw = [&](int part, int state, int from, int to) {
        if (from >= to) return;
        const RECT piece = PieceOf(bar, from, to);
        DrawThemeBackground(target.scrollBarTheme, target.dc, part, state, &piece, nullptr);
    };
    draw(look.lowerTrack, trackState, bar.arrow, enabled ? thumbStart : length - bar.arrow);
    draw(look.upperTrack, trackState, thumbEnd, enabled ? length - bar.arrow : 0);
    draw(look.thumb, SCRBS_NORMAL, thumbStart, thumbEnd);
    draw(SBP_ARROWBTN, enabled ? look.backArrow : look.backArrowDisabled, 0, bar.arrow);
    draw(SBP_ARROWBTN, enabled ? look.forwardArrow : look.forwardArrowDisabled, length - bar.arrow, length);
}

void DrawClassicBar(const PaintTarget& target, const Bar& bar)
{
    const BarLook& look = bar.horizontal ? HorizontalLook : VerticalLook;
    const int length = LengthOf(bar);
    const UINT inactive = bar.thumb.length > 0 ? 0 : DFCS_INACTIVE;
    FillRect(target.dc, &bar.rect, GetSysColorBrush(COLOR_SCROLLBAR));
    RECT back = PieceOf(bar, 0, bar.arrow);
    RECT forward = PieceOf(bar, length - bar.arrow, length);
    DrawFrameControl(target.dc, &back, DFC_SCROLL, look.classicBack | inactive);
    DrawFrameControl(target.dc, &forward, DFC_SCROLL, look.classicForward | inactive);
    if (bar.thumb.length == 0) return;
    const int start = bar.arrow + bar.thumb.start;
    RECT thumb = PieceOf(bar, start, start + bar.thumb.length);
    FillRect(target.dc, &thumb, GetSysColorBrush(COLOR_3DFACE));
    DrawEdge(target.dc, &thumb, EDGE_RAISED, BF_RECT | BF_MIDDLE);
}

void DrawBar(const PaintTarget& target, const Bar& bar)
{
    if (target.scrollBarTheme != nullptr) {
        DrawThemedBar(target, bar);
    } else {
        DrawClassicBar(target, bar);
    }
}

} // namespace

Rect64 DrawScrollbars(PaintTarget& target, const Scdr& node, const Rect64& content)
{
    const TraceScope trace("box_scroll_bars.cpp", "DrawScrollbars");
    const ViewMetrics& metrics = target.view.metrics;
    const Rect64 text{content.left, content.top, content.right - metrics.verticalBarWidth,
                      content.bottom - metrics.horizontalBarHeight};
    const ScrollRecord* const scroll = ScrollOf(node);
    const ScrollRecord none;
    const ScrollRecord& record = scroll != nullptr ? *scroll : none;
    const RECT right = DrawableRect({text.right, content.top, content.right, text.bottom});
    const RECT bottom = DrawableRect({content.left, text.bottom, text.right, content.bottom});
    const RECT corner = DrawableRect({text.right, text.bottom, content.right, content.bottom});
    DrawBar(target, MakeBar(right, false, record.vertical));
    DrawBar(target, MakeBar(bottom, true, record.horizontal));
    FillRect(target.dc, &corner, GetSysColorBrush(COLOR_3DFACE));
    return text;
}

} // namespace vantrel
