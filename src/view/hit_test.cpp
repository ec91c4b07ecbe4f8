#include "view/hit_test.h"

#include "entry/trace.h"
#include "view/item_shift.h"
#include "view/layout.h"

namespace vantrel {
namespace {

// Where a box takes the mouse: its margins belong to what lies around it.
bool IsOnBox(const View& view, const Scdr& node, const Point64& point) noexcept
{
    const std::int64_t margin = view.metrics.margin;
    return Holds(Shrunk(NodeRect(node), margin, margin), point);
}

// The first item, in item order, whose box holds the point.
Scdr* HitItem(const View& view, const Scdr& node, const Point64& point) noexcept
{
    const VisibleItems visible = FindVisibleItems(view, node, {point.x, point.y, point.x + 1, point.y + 1});
    for (std::int64_t row = visible.firstRow; row < visible.endRow; ++row) {
        for (std::int64_t column = visible.firstColumn; column < visible.endColumn; ++column) {
            Scdr* item = Children(node)[visible.planeStart + row * visible.columns + column];
            if (IsOnBox(view, *item, point)) return item;
        }
    }
    return nullptr;
}

Rect64 TextRectangle(std::int64_t margin, const Scdr& node, std::int64_t width, std::int64_t height) noexcept
{
    const bool thinFrame = IsSimple(node) && node.Rank == 0;
    const std::int64_t shrink = thinFrame ? margin + 1 : margin;
    const Point64 origin = OriginOf(node);
    return Shrunk({origin.x, origin.y, origin.x + width, origin.y + height}, shrink, shrink);
}

} // namespace

Scdr* HitTestScdr(const View& view, Scdr& node, Point64 point, std::int64_t dx, std::int64_t dy) noexcept
{
    TraceScope trace("hit_test.cpp", "HitTestScdr");
    point.x -= dx;
    point.y -= dy;
    if (!IsOnBox(view, node, point) || !IsNodeInShownPlanes(node)) return nullptr;
    Scdr* hit = &node;
    while (!IsSimple(*hit) && (hit->Flags & FlagMinimized) == 0) {
        Scdr* item = HitItem(view, *hit, point);
        if (item == nullptr) break;
        hit = item;
    }
    return hit;
}

bool IsNodeInShownPlanes(const Scdr& node) noexcept
{
    TraceScope trace("hit_test.cpp", "IsNodeInShownPlanes");
    for (const Scdr* item = &node; item->parent != nullptr; item = item->parent) {
        const Scdr& parent = *item->parent;
        // The prototype of an empty array stands outside its planes and is always shown.
        if (parent.Rank < 3 || parent.ElementCount == 0) continue;
        const std::int64_t planeSize = Rows(parent) * Columns(parent);
        const std::int64_t start = CurrentPlane(parent) * planeSize;
        const std::int64_t index = IndexInParent(*item, start);
        if (index < start || index >= start + planeSize) return false;
    }
    return true;
}

Rect64 GetEditRectangle(std::int64_t margin, const Scdr& node) noexcept
{
    return TextRectangle(margin, node, node.width, node.height);
}

Rect64 GetEditCalcRectangle(std::int64_t margin, const Scdr& node) noexcept
{
    return TextRectangle(margin, node, node.records.formattedWidth, node.records.formattedHeight);
}

} // namespace vantrel
