#include "entry/trace.h"
#include "model/scdr.h"

namespace vantrel {
namespace {

constexpr std::int32_t ModifierShift = 1;
constexpr std::int32_t ModifierControl = 2;
constexpr std::int32_t KeyTab = 9;
constexpr std::int32_t KeyUp = 38;

Scdr* ChildAt(const Scdr& node, std::int64_t index) noexcept
{
    return Children(node)[index];
}

Scdr* NextByTab(Scdr& node) noexcept
{
    if (!IsSimple(node) && (node.Flags & FlagMinimized) == 0) return ChildAt(node, 0);
    Scdr* present = &node;
    while (present->parent != nullptr) {
        const std::int64_t next = IndexInParent(*present) + 1;
        if (next < ChildCount(*present->parent)) return ChildAt(*present->parent, next);
        present = present->parent;
    }
    return present;
}

Scdr* LastLeaf(Scdr* node) noexcept
{
    while (!IsSimple(*node))
        node = ChildAt(*node, ChildCount(*node) - 1);
    return node;
}

// What is selected in the node's place: the innermost minimised array around it, the root excluded.
Scdr* ClosedBoxAround(Scdr* node) noexcept
{
    for (Scdr* ancestor = node; ancestor->parent != nullptr; ancestor = ancestor->parent) {
        if ((ancestor->Flags & FlagMinimized) != 0) return ancestor;
    }
    return node;
}

Scdr* PreviousByTab(Scdr& node) noexcept
{
    if (node.parent == nullptr) return ClosedBoxAround(LastLeaf(&node));
    const std::int64_t index = IndexInParent(node);
    if (index <= 0) return ClosedBoxAround(node.parent);
    return ClosedBoxAround(LastLeaf(ChildAt(*node.parent, index - 1)));
}

Scdr* Sibling(Scdr& node, bool backward) noexcept
{
    if (node.parent == nullptr) return nullptr;
    const std::int64_t count = ChildCount(*node.parent);
    const std::int64_t index = IndexInParent(node);
    return ChildAt(*node.parent, (index + (backward ? count - 1 : 1)) % count);
}

Scdr* MoveByTab(Scdr& node, std::int32_t modifiers) noexcept
{
    switch (modifiers) {
    case 0: return NextByTab(node);
    case ModifierShift: return PreviousByTab(node);
    case ModifierControl: return Sibling(node, false);
    case ModifierControl | ModifierShift: return Sibling(node, true);
    default: return nullptr;
    }
}

} // namespace

Scdr* TabToNextScdr(Scdr& node, std::int32_t modifiers, std::int32_t key) noexcept
{
    TraceScope trace("scdr_walk.cpp", "TabToNextScdr");
    if (IsSimple(node) && (node.Flags & FlagMaximized) != 0) return nullptr;
    switch (key) {
    case KeyTab: return MoveByTab(node, modifiers);
    case KeyUp: return node.parent;
    default: return nullptr;
    }
}

} // namespace vantrel
