#include "entry/trace.h"
#include "model/edit_state.h"
#include "model/node_pool.h"
#include "model/node_storage.h"

namespace vantrel {
namespace {

void FreeExtra(Scdr& node) noexcept
{
    ScdrExtra* extra = node.extra;
    if (extra == nullptr) return;
    FreeAxisNames(extra->AxisNames, node.Rank);
    FreeBytes(extra->PlaneIndex);
    FreeBytes(extra->columnWidths);
    FreeBytes(extra->rowHeights);
    FreeBytes(extra->boxScroll);
    FreeBytes(extra->recordColumnWidths);
    FreeBytes(extra->recordColumnIntegers);
    FreeBytes(extra);
}

// The node itself, without its children.
void FreeNode(Scdr* node) noexcept
{
    FreeRecords(node->records);
    if (node->editState != nullptr) FreeEditState(&node->editState);
    FreeExtra(*node);
    if ((node->storage & StorageOwnsShape) != 0) FreeBytes(node->Shape);
    if ((node->storage & StorageOwnsData) != 0) FreeBytes(node->data);
    ReturnNode(node);
}

// Takes the next child out of a node that is being freed. `originX` counts those already taken: nobody needs the origin any more.
Scdr* TakeChild(Scdr& node) noexcept
{
    if (node.data == nullptr) return nullptr;
    const std::int64_t count = ChildCount(node);
    while (node.originX < count) {
        Scdr* child = Children(node)[node.originX++];
        if (child != nullptr) return child;
    }
    return nullptr;
}

} // namespace

void FreeAxisNames(char16_t** names, std::int32_t rank) noexcept
{
    if (names == nullptr) return;
    for (std::int32_t axis = 0; axis < rank; ++axis)
        FreeBytes(names[axis]);
    FreeBytes(names);
}

void FreeScdr(Scdr** node) noexcept
{
    TraceScope trace("scdr_free.cpp", "FreeScdr");
    Scdr* present = *node;
    *node = nullptr;
    if (present == nullptr) return;
    // Parent links are laid anew on the way down: a maximised node has lost its own, and a tree half built may have none yet.
    present->parent = nullptr;
    present->originX = 0;
    while (present != nullptr) {
        if (Scdr* child = TakeChild(*present)) {
            child->parent = present;
            child->originX = 0;
            present = child;
        } else {
            Scdr* parent = present->parent;
            FreeNode(present);
            present = parent;
        }
    }
}

void ScdrDeleter::operator()(Scdr* node) const noexcept
{
    FreeScdr(&node);
}

} // namespace vantrel
