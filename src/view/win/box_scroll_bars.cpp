#include <vssym32.h>

#include "entry/trace.h"
#include "tools/win/window.h"
#include "view/box_bars.h"
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

// A bar that is drawn, with the part of it that the mouse holds.
struct Bar {
    RECT rect;
    bool horizontal;
    int length;
    int arrow; // length of an arrow button
    Thumb thumb;
    BarPart pressed;
};

// The piece of a bar from one place along it to another.
RECT PieceOf(const Bar& bar, int from, int to) noexcept
{
    const RECT& rect = bar.rect;
    if (bar.horizontal) return {rect.left + from, rect.top, rect.left + to, rect.bottom};
    return {rect.left, rect.top + from, rect.right, rect.top + to};
}

Bar BarToDraw(const PaintTarget& target, const Scdr& node, const BoxBar& place) noexcept
{
    const BarPress& press = ClientOf(target.view).barPress;
    const bool pressed = press.node == &node && press.axis == place.axis;
    return {DrawableRect(place.rect),
            place.axis == ScrollAxis::Horizontal,
            place.length,
            place.arrow,
            place.thumb,
            pressed ? press.part : BarPart::None};
}

void DrawThemedBar(const PaintTarget& target, const Bar& bar)
{
    const BarLook& look = bar.horizontal ? HorizontalLook : VerticalLook;
    const int length = bar.length;
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
    // The states of each arrow and of the thumb stand in the same order.
    constexpr int Pressed = SCRBS_PRESSED - SCRBS_NORMAL;
    const auto pressed = [&](BarPart part) { return bar.pressed == part ? Pressed : 0; };
    draw(look.thumb, SCRBS_NORMAL + pressed(BarPart::Thumb), thumbStart, thumbEnd);
    draw(SBP_ARROWBTN, enabled ? look.backArrow + pressed(BarPart::BackArrow) : look.backArrowDisabled, 0,
         bar.arrow);
    draw(SBP_ARROWBTN,
         enabled ? look.forwardArrow + pressed(BarPart::ForwardArrow) : look.forwardArrowDisabled,
         length - bar.arrow, length);
}

void DrawClassicBar(const PaintTarget& target, const Bar& bar)
{
    const BarLook& look = bar.horizontal ? HorizontalLook : VerticalLook;
    const int length = bar.length;
    const UINT inactive = bar.thumb.length > 0 ? 0 : DFCS_INACTIVE;
    const auto pushed = [&](BarPart part) -> UINT { return bar.pressed == part ? DFCS_PUSHED : 0; };
    FillRect(target.dc, &bar.rect, GetSysColorBrush(COLOR_SCROLLBAR));
    RECT back = PieceOf(bar, 0, bar.arrow);
    RECT forward = PieceOf(bar, length - bar.arrow, length);
    DrawFrameControl(target.dc, &back, DFC_SCROLL, look.classicBack | inactive | pushed(BarPart::BackArrow));
    DrawFrameControl(target.dc, &forward, DFC_SCROLL,
                     look.classicForward | inactive | pushed(BarPart::ForwardArrow));
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
    const BoxBars bars = PlaceBoxBars(target.view, node, content);
    const RECT corner = DrawableRect(bars.corner);
    DrawBar(target, BarToDraw(target, node, bars.vertical));
    DrawBar(target, BarToDraw(target, node, bars.horizontal));
    FillRect(target.dc, &corner, GetSysColorBrush(COLOR_3DFACE));
    return bars.text;
}

} // namespace vantrel
