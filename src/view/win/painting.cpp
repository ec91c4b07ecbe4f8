#include "view/win/painting.h"

#include <algorithm>

#include "entry/trace.h"
#include "tools/win/window.h"
#include "view/box_bars.h"
#include "view/hit_test.h"
#include "view/layout.h"
#include "view/selection.h"

namespace vantrel {

namespace {

class PreparedTarget {
public:
    explicit PreparedTarget(PaintTarget& target) : target_(target) { HdcSetup(target_); }
    ~PreparedTarget() { HdcTearDown(target_); }
    PreparedTarget(const PreparedTarget&) = delete;
    PreparedTarget& operator=(const PreparedTarget&) = delete;

private:
    PaintTarget& target_;
};

// While a large array is being laid out messages are pumped, and boxes without a place would be painted anywhere.
bool IsLaidOut(const Scdr& top) noexcept
{
    constexpr std::uint8_t Both = FlagSizeValid | FlagOriginValid;
    return (top.Flags & Both) == Both;
}

// Only what was noticed already: asking here would pump messages, and with them this one.
bool IsAbandoned(const View& view) noexcept
{
    return (view.context->langEnv->Capabilities & CapabilityInterruptOrClose) != 0;
}

void PaintSimple(PaintTarget& target, Scdr& node, const Rect64& content)
{
    const bool hasBars = HasBoxScrollBars(target.view, node);
    DrawScdrSimple(target, node, hasBars ? DrawScrollbars(target, node, content) : content);
}

// One box of the picture. True when its items are to be painted, too.
bool PaintBox(PaintTarget& target, Scdr& node, const Rect64& box)
{
    const View& view = target.view;
    const Rect64 visible = Shrunk(box, view.metrics.margin, view.metrics.margin);
    if ((node.Flags & FlagMinimized) != 0) {
        DrawRestoreButton(target, box, LookOfButton(ClientOf(view), node));
        return false;
    }
    if (IsUnderEditor(view, node)) return false;
    const Rect64 content = DrawBorder(target, node, visible);
    if (!IsSimple(node)) return true;
    PaintSimple(target, node, content);
    return false;
}

void DrawOutline(HDC dc, const RECT& rect)
{
    const SelectedObject brush(dc, GetStockObject(NULL_BRUSH));
    Rectangle(dc, rect.left, rect.top, rect.right, rect.bottom);
}

// A node's text area in window coordinates, grown by some pixels.
RECT MarkOf(const View& view, const Scdr& node, std::int64_t grownBy) noexcept
{
    const Rect64 area = InWindow(view, GetEditRectangle(view.metrics.margin, node));
    return DrawableRect(Shrunk(area, -grownBy, -grownBy));
}

void MarkMaximized(const ClientWindow& client, HDC dc)
{
    const Scdr& top = *client.view.top;
    if ((top.Flags & FlagMaximized) == 0) return;
    const SelectedObject pen(dc, client.redPen);
    DrawOutline(dc, MarkOf(client.view, top, 2));
}

void MarkSelection(const ClientWindow& client, HDC dc)
{
    const Scdr* const node = Selected(client.view);
    if (node == nullptr || !IsNodeInShownPlanes(*node)) return;
    const SelectedObject pen(dc, GetStockObject(DC_PEN));
    SetDCPenColor(dc, GetSysColor(COLOR_ACTIVECAPTION));
    DrawOutline(dc, MarkOf(client.view, *node, 1));
}

// Where a walk stands among a node's items. The walk keeps its own stack, since arrays may be nested deeper than the interpreter's.
struct WalkLevel {
    Scdr* node;
    VisibleItems items;
    std::int64_t row;
    std::int64_t column;
};

WalkLevel EnterNode(const View& view, Scdr& node, const Rect64& range) noexcept
{
    const VisibleItems items = FindVisibleItems(view, node, range);
    return {&node, items, items.firstRow, items.firstColumn};
}

// The next item of a level in item order, null behind the last.
Scdr* NextItem(WalkLevel& level) noexcept
{
    const VisibleItems& items = level.items;
    if (level.column >= items.endColumn) {
        ++level.row;
        level.column = items.firstColumn;
    }
    if (level.row >= items.endRow || level.column >= items.endColumn) return nullptr;
    return Children(*level.node)[items.planeStart + level.row * items.columns + level.column++];
}

} // namespace

int WindowPixel(std::int64_t value) noexcept
{
    constexpr std::int64_t FarAway = 30000;
    return static_cast<int>(std::clamp(value, -FarAway, FarAway));
}

RECT DrawableRect(const Rect64& rect) noexcept
{
    return {WindowPixel(rect.left), WindowPixel(rect.top), WindowPixel(rect.right), WindowPixel(rect.bottom)};
}

void ForEachVisibleNode(View& view, const RECT& client,
                        bool (*visit)(void* state, Scdr& node, const Rect64& box), void* state)
{
    if (view.top == nullptr || !IsLaidOut(*view.top)) return;
    const Rect64 range = Moved({client.left, client.top, client.right, client.bottom},
                               view.scroll.horizontal.position, view.scroll.vertical.position);
    const auto goesOn = [&](Scdr& node) {
        const Rect64 box = NodeRect(node);
        return DoMeet(box, range) && visit(state, node, InWindow(view, box)) && !IsSimple(node);
    };
    Vector<WalkLevel> levels;
    if (goesOn(*view.top)) levels.push_back(EnterNode(view, *view.top, range));
    while (!levels.empty()) {
        Scdr* const item = NextItem(levels.back());
        if (item == nullptr) {
            levels.pop_back();
        } else if (goesOn(*item)) {
            levels.push_back(EnterNode(view, *item, range));
        }
    }
}

void HdcSetup(PaintTarget& target)
{
    const ClientWindow& client = ClientOf(target.view);
    target.previousMode = SetBkMode(target.dc, OPAQUE);
    target.previousBackground = SetBkColor(target.dc, GetSysColor(COLOR_WINDOW));
    target.previousFont = SelectObject(target.dc, client.font);
    target.previousAlignment = SetTextAlign(target.dc, TA_LEFT | TA_TOP);
    target.windowTheme = OpenThemeData(client.window, L"WINDOW");
    target.scrollBarTheme = OpenThemeData(client.window, L"SCROLLBAR");
}

void HdcTearDown(PaintTarget& target)
{
    if (target.windowTheme != nullptr) CloseThemeData(target.windowTheme);
    if (target.scrollBarTheme != nullptr) CloseThemeData(target.scrollBarTheme);
    target.windowTheme = nullptr;
    target.scrollBarTheme = nullptr;
    SetTextAlign(target.dc, target.previousAlignment);
    SelectObject(target.dc, target.previousFont);
    SetBkColor(target.dc, target.previousBackground);
    SetBkMode(target.dc, target.previousMode);
}

std::int32_t PaintScdr(View& view, HDC dc)
{
    const TraceScope trace("painting.cpp", "PaintScdr");
    const Rect64 area{0, 0, view.metrics.client.width, view.metrics.client.height};
    PaintTarget target{view, dc, DrawableRect(area)};
    const PreparedTarget prepared(target);
    if (FillRect(dc, &target.client, GetSysColorBrush(COLOR_3DFACE)) == 0) return 1;
    ForEachVisibleNode(
        view, target.client,
        [](void* state, Scdr& node, const Rect64& box) {
            return PaintBox(*static_cast<PaintTarget*>(state), node, box);
        },
        &target);
    return 0;
}

void OnPaint(ClientWindow& client)
{
    const TraceScope trace("painting.cpp", "OnPaint");
    View& view = client.view;
    const PaintScope paint(client.window);
    if (view.top == nullptr || IsAbandoned(view)) return;
    PaintBuffer buffer(paint.Dc(), static_cast<std::int32_t>(view.metrics.client.width),
                       static_cast<std::int32_t>(view.metrics.client.height));
    PaintScdr(view, buffer.Dc());
    if (IsLaidOut(*view.top)) {
        MarkMaximized(client, buffer.Dc());
        MarkSelection(client, buffer.Dc());
    }
    buffer.Present(paint.Part());
}

} // namespace vantrel
