#include <algorithm>

#include "tools/win/window.h"
#include "view/win/painting.h"

namespace vantrel {

namespace {

struct CaptionColors {
    int left; // COLOR_ indices
    int right;
};

CaptionColors CaptionOf(const View& view, const Scdr& node) noexcept
{
    if (&node == Selected(view)) return {COLOR_ACTIVECAPTION, COLOR_GRADIENTACTIVECAPTION};
    return {COLOR_INACTIVECAPTION, COLOR_GRADIENTINACTIVECAPTION};
}

bool HasGradientCaptions() noexcept
{
    BOOL gradient = FALSE;
    return SystemParametersInfoW(SPI_GETGRADIENTCAPTIONS, 0, &gradient, 0) && gradient;
}

// The colour at x of a gradient from left to right, in the system's 16-bit components.
TRIVERTEX GradientVertex(const Rect64& rect, COLORREF left, COLORREF right, LONG x, LONG y) noexcept
{
    const auto width = static_cast<double>(std::max<std::int64_t>(rect.right - rect.left, 1));
    const double part = static_cast<double>(x - rect.left) / width;
    const auto mix = [part](int from, int to) {
        return static_cast<COLOR16>((from + (to - from) * part) * 256);
    };
    return {x,
            y,
            mix(GetRValue(left), GetRValue(right)),
            mix(GetGValue(left), GetGValue(right)),
            mix(GetBValue(left), GetBValue(right)),
            0};
}

// A box may be millions of pixels wide: only the part in sight is filled, with the colours that the whole would have there.
void FillGradient(const PaintTarget& target, const Rect64& rect, CaptionColors colors) noexcept
{
    const RECT whole = DrawableRect(rect);
    RECT part;
    if (!IntersectRect(&part, &whole, &target.client)) return;
    const COLORREF left = GetSysColor(colors.left);
    const COLORREF right = GetSysColor(colors.right);
    TRIVERTEX corners[] = {GradientVertex(rect, left, right, part.left, part.top),
                           GradientVertex(rect, left, right, part.right, part.bottom)};
    GRADIENT_RECT mesh{0, 1};
    GradientFill(target.dc, corners, 2, &mesh, 1, GRADIENT_FILL_RECT_H);
}

void Fill(const PaintTarget& target, const Rect64& rect, int color) noexcept
{
    const RECT drawable = DrawableRect(rect);
    FillRect(target.dc, &drawable, GetSysColorBrush(color));
}

// A frame in caption colours. Each axis beyond the second shows as one more bar at the left.
Rect64 DrawCaptionFrame(const PaintTarget& target, const Scdr& node, Rect64 box)
{
    const Size64 edge = target.view.metrics.edge;
    const CaptionColors colors = CaptionOf(target.view, node);
    if (HasGradientCaptions()) {
        FillGradient(target, box, colors);
    } else {
        Fill(target, box, colors.left);
    }
    for (std::int32_t axis = 2; axis < node.Rank; ++axis) {
        const std::int64_t left = box.left + edge.width;
        Fill(target, {left, box.top + edge.height, left + edge.width, box.bottom - edge.height},
             COLOR_3DFACE);
        box.left += 2 * edge.width;
    }
    const Rect64 content = Shrunk(box, edge.width, edge.height);
    Fill(target, content, COLOR_3DFACE);
    return content;
}

Rect64 DrawScalarFrame(const PaintTarget& target, const Rect64& box)
{
    const Rect64 content = Shrunk(box, target.view.metrics.edge.width, target.view.metrics.edge.height);
    const RECT frame = DrawableRect(Shrunk(content, -1, -1));
    const SelectedObject pen(target.dc, GetStockObject(DC_PEN));
    const SelectedObject brush(target.dc, GetStockObject(NULL_BRUSH));
    SetDCPenColor(target.dc, GetSysColor(COLOR_WINDOWFRAME));
    Rectangle(target.dc, frame.left, frame.top, frame.right, frame.bottom);
    return content;
}

Rect64 DrawSunkenFrames(const PaintTarget& target, const Scdr& node, Rect64 box)
{
    const Size64 edge = target.view.metrics.edge;
    for (std::int32_t axis = 2; axis <= std::max(node.Rank, 2); ++axis) {
        if (axis > 2) box.left += 2 * edge.width;
        RECT rect = DrawableRect(Shrunk(box, 1, 1));
        DrawEdge(target.dc, &rect, EDGE_SUNKEN, BF_RECT);
    }
    return Shrunk(box, edge.width, edge.height);
}

} // namespace

Rect64 DrawBorder(PaintTarget& target, const Scdr& node, const Rect64& box)
{
    if (!IsSimple(node) && !target.view.options.edges3d) return DrawCaptionFrame(target, node, box);
    if (IsSimple(node) && node.Rank == 0) return DrawScalarFrame(target, box);
    return DrawSunkenFrames(target, node, box);
}

} // namespace vantrel
