// Giving a box another size by its border.
#include <algorithm>

#include "editor/edit_model.h"
#include "entry/trace.h"

namespace vantrel {

namespace {

// The border is one pixel thick, but people take hold of the rim of the text and of the outside of a scroll bar as well.
constexpr std::int64_t BorderReach = 3;
constexpr std::int64_t CornerReach = 8;
constexpr std::int64_t Rim = 2;            // between the border and the text
constexpr std::int64_t LargestBox = 30000; // the system keeps window sizes in few bits

bool MovesRight(std::int32_t border) noexcept
{
    return border == HitGrow || border == HitRight || border == HitCorner;
}

bool MovesBottom(std::int32_t border) noexcept
{
    return border == HitGrow || border == HitBottom || border == HitCorner;
}

} // namespace

bool HasSizeOfItsOwn(const EditWindow& window) noexcept
{
    const Scdr& node = *window.view->node;
    return IsSimple(node) && (node.Rank >= 2 || (node.Rank == 1 && window.view->rankOneScrollBars));
}

bool IsResizable(const EditWindow& window) noexcept
{
    return HasSizeOfItsOwn(window) && (window.view->node->Flags & FlagMaximized) == 0;
}

std::int32_t HitBorderOf(const EditWindow& window, const EditFrame& frame, Point64 point,
                         std::int32_t code) noexcept
{
    const std::int64_t right = frame.window.width - 1 - point.x;
    const std::int64_t bottom = frame.window.height - 1 - point.y;
    if (point.x < 0 || point.y < 0 || right < 0 || bottom < 0) return code;
    // A box that cannot be resized has no corner to pull at, whatever the platform thinks of its scroll bars.
    if (!IsResizable(window)) return code == HitGrow ? HitBorder : code;
    const bool atRight = right < BorderReach;
    const bool atBottom = bottom < BorderReach;
    if ((atRight && bottom < CornerReach) || (atBottom && right < CornerReach)) return HitCorner;
    if (atRight) return HitRight;
    if (atBottom) return HitBottom;
    return right <= frame.bars.width && bottom <= frame.bars.height ? HitGrow : code;
}

bool BeginResize(EditWindow& window, const EditFrame& frame, std::int32_t code, Point64 screen) noexcept
{
    const TraceScope trace("resize.cpp", "BeginResize");
    if (!IsResizable(window) || !(MovesRight(code) || MovesBottom(code))) return false;
    // One character and one line stay in sight.
    const Size64 around{frame.window.width - window.client.right + 2 * Rim,
                        frame.window.height - window.client.bottom + 2 * Rim};
    const Size64 least{around.width + window.view->averageCharWidth + 1,
                       around.height + window.view->lineHeight + 1};
    window.resize = {code, screen, frame.window, least};
    window.resizing = true;
    window.pressed = window.view->node;
    return true;
}

Size64 ResizedTo(const EditWindow& window, Point64 screen) noexcept
{
    const EditResize& resize = window.resize;
    Size64 size = resize.size;
    const auto moved = [](std::int64_t start, std::int64_t by, std::int64_t least) {
        return std::clamp(start + by, std::min(start, least), LargestBox);
    };
    if (MovesRight(resize.border))
        size.width = moved(size.width, screen.x - resize.from.x, resize.least.width);
    if (MovesBottom(resize.border))
        size.height = moved(size.height, screen.y - resize.from.y, resize.least.height);
    return size;
}

} // namespace vantrel
