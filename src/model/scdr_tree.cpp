#include <algorithm>
#include <cstring>

#include "entry/trace.h"
#include "model/tree_walk.h"

namespace vantrel {
namespace {

bool IsChildAt(const Scdr& holder, const Scdr& node, std::int64_t index) noexcept
{
    return index >= 0 && index < ChildCount(holder) && Children(holder)[index] == &node;
}

void ZeroNode(Scdr& node) noexcept
{
    FreeRecords(node.records);
    ClearFlags(node, FlagSizeValid | FlagOriginValid);
    if (node.Type == TypeNested) return;
    if (node.Type == TypeCharacter) {
        std::fill_n(static_cast<char16_t*>(node.data), node.ElementCount, u' ');
    } else {
        std::memset(node.data, 0, DataSize(node.Type, node.ElementCount));
    }
}

} // namespace

void SetChild(Scdr& parent, std::int64_t index, ScdrPtr child) noexcept
{
    if (child != nullptr) {
        child->parent = &parent;
        child->indexInParent = index;
    }
    Children(parent)[index] = child.release();
}

std::int64_t IndexInHolder(const Scdr& holder, const Scdr& node, std::int64_t hint) noexcept
{
    if (IsChildAt(holder, node, node.indexInParent)) return node.indexInParent;
    if (IsChildAt(holder, node, hint)) return hint;
    std::int64_t found = -1;
    for (std::int64_t i = 0; i < ChildCount(holder); ++i) {
        Scdr* child = Children(holder)[i];
        if (child == nullptr) continue;
        child->indexInParent = i;
        if (child == &node) found = i;
    }
    return found;
}

std::int64_t IndexInParent(const Scdr& node, std::int64_t hint) noexcept
{
    return node.parent != nullptr ? IndexInHolder(*node.parent, node, hint) : -1;
}

void ZeroScdr(Scdr& node) noexcept
{
    TraceScope trace("scdr_tree.cpp", "ZeroScdr");
    ForEachNode(node, ZeroNode);
}

std::int32_t ScdrDepth(const Scdr& node) noexcept
{
    TraceScope trace("scdr_tree.cpp", "ScdrDepth");
    std::int64_t deepest = 0;
    for (SubtreeWalk walk(node); walk.Node() != nullptr; walk.Next()) {
        if (IsSimple(*walk.Node()))
            deepest = std::max(deepest, walk.Depth() + (walk.Node()->Rank > 0 ? 1 : 0));
    }
    return static_cast<std::int32_t>(deepest);
}

bool IsScdrInsideEmptyAncestor(const Scdr& node) noexcept
{
    TraceScope trace("scdr_tree.cpp", "IsScdrInsideEmptyAncestor");
    for (const Scdr* ancestor = HoldingNode(node); ancestor != nullptr; ancestor = HoldingNode(*ancestor)) {
        if (ancestor->ElementCount == 0) return true;
    }
    return false;
}

void* WritableData(Scdr& node) noexcept
{
    FreeRecords(node.records);
    return node.data;
}

} // namespace vantrel
