// Walking a subtree without recursion and without memory: down through children, up through parent links.
//
// Trees can be nested as deep as memory reaches, so no routine of this room may recurse. Slots whose child is not stored yet are
// passed over.
#pragma once

#include "model/scdr.h"

namespace vantrel {

// The node whose data holds this one. A maximised node has given its parent link away while it is the top of the display.
[[nodiscard]] inline const Scdr* HoldingNode(const Scdr& node) noexcept
{
    if (node.parent != nullptr) return node.parent;
    return node.extra != nullptr ? node.extra->savedParent : nullptr;
}

// The index of `node` among the children of `holder`, -1 where it is not among them.
[[nodiscard]] std::int64_t IndexInHolder(const Scdr& holder, const Scdr& node, std::int64_t hint) noexcept;

// The first stored child at `index` or behind it, or null.
[[nodiscard]] inline const Scdr* StoredChildFrom(const Scdr& node, std::int64_t index) noexcept
{
    Scdr* const* children = static_cast<Scdr* const*>(node.data);
    const std::int64_t count = children != nullptr ? ChildCount(node) : 0;
    for (; index < count; ++index) {
        if (children[index] != nullptr) return children[index];
    }
    return nullptr;
}

// Pre-order: a node comes before its children, children in item order. The present node may be changed, but not its place.
class SubtreeWalk {
public:
    explicit SubtreeWalk(const Scdr& root) noexcept : root_(&root), node_(&root) {}
    // Null behind the last node.
    [[nodiscard]] const Scdr* Node() const noexcept { return node_; }
    [[nodiscard]] std::int64_t Depth() const noexcept { return depth_; } // 0 at the root
    void Next() noexcept
    {
        if (const Scdr* child = StoredChildFrom(*node_, 0)) {
            node_ = child;
            ++depth_;
            return;
        }
        while (node_ != root_) {
            const Scdr* holder = HoldingNode(*node_);
            if (const Scdr* sibling = StoredChildFrom(*holder, IndexInHolder(*holder, *node_, 0) + 1)) {
                node_ = sibling;
                return;
            }
            node_ = holder;
            --depth_;
        }
        node_ = nullptr;
    }

private:
    const Scdr* root_;
    const Scdr* node_;
    std::int64_t depth_ = 0;
};

// Calls `visit` for every node of the subtree, in pre-order.
template <typename Visit> void ForEachNode(Scdr& root, Visit visit)
{
    for (SubtreeWalk walk(root); walk.Node() != nullptr; walk.Next()) {
        // The caller gave the tree to change; the walk itself only looks.
        visit(const_cast<Scdr&>(*walk.Node()));
    }
}

} // namespace vantrel
