// The states of a box: minimised to a button, maximised to the window, restored.
#include "entry/trace.h"
#include "model/tree_walk.h"
#include "view/edited.h"
#include "view/layout.h"
#include "view/selection.h"

namespace vantrel {
namespace {

// Whether the box keeps its size while it is closed. Boxes whose size an adapter fixes and prototypes are measured anew.
bool KeepsSize(const Scdr& node) noexcept
{
    return IsSimple(node) && (node.Flags & FlagKeptSize) == 0 && !IsScdrInsideEmptyAncestor(node);
}

bool SaveSize(View& view, Scdr& node)
{
    try {
        ScdrExtra& extra = ExtraOf(node);
        const bool valid = (node.Flags & FlagSizeValid) != 0;
        extra.savedWidth = valid ? node.width : 0;
        extra.savedHeight = valid ? node.height : 0;
        return true;
    } catch (VTERROR_CODE code) {
        return SetErrorCode(view.context, code);
    }
}

// Gives back the size kept by SaveSize; without one the box is measured anew.
void TakeSavedSize(Scdr& node) noexcept
{
    if (!KeepsSize(node) || node.extra == nullptr || node.extra->savedWidth <= 0) {
        ClearFlags(node, FlagSizeValid);
        return;
    }
    node.width = node.extra->savedWidth;
    node.height = node.extra->savedHeight;
    node.Flags |= FlagSizeValid;
}

std::int32_t LayOutMoved(View& view, Scdr& node)
{
    InvalidateAncestorsSizesAndLaterSiblingsOrigins(node);
    if (CalculateScdrSizes(view) != 0) return 1;
    SetScrollBarsDataSizeFromScdr(view);
    return 0;
}

std::int32_t RestoreMinimized(View& view, Scdr& node)
{
    ClearFlags(node, FlagMinimized);
    TakeSavedSize(node);
    InvalidateScdrAndChildrensOrigins(node);
    if (LayOutMoved(view, node) != 0) return 1;
    EditBegin(view);
    view.effects.invalidate(view);
    view.effects.setFocus(view);
    TellFrame(view);
    return 0;
}

void AttachAgain(View& view, Scdr& node) noexcept
{
    ClearFlags(node, FlagMaximized);
    view.top = node.extra->savedTop;
    node.parent = node.extra->savedParent;
    node.extra->savedTop = nullptr;
    node.extra->savedParent = nullptr;
}

std::int32_t RestoreMaximized(View& view, Scdr& node)
{
    AttachAgain(view, node);
    if (KeepsSize(node) && (node.Flags & FlagMinimized) == 0) {
        ClearFlags(node, FlagOriginValid);
    } else {
        ClearFlags(node, FlagSizeValid);
        InvalidateScdrAndChildrensOrigins(node);
    }
    if (IsSimple(node)) view.effects.showWindowScrollBars(view, true);
    if (LayOutMoved(view, node) != 0) return 1;
    EditResize(view);
    view.effects.invalidate(view);
    view.effects.setFocus(view);
    TellFrame(view);
    return 0;
}

// False when there is no memory to remember the node's place.
bool Detach(View& view, Scdr& node)
{
    try {
        ScdrExtra& extra = ExtraOf(node);
        extra.savedTop = view.top;
        extra.savedParent = node.parent;
    } catch (VTERROR_CODE code) {
        return SetErrorCode(view.context, code);
    }
    node.Flags |= FlagMaximized;
    node.parent = nullptr;
    view.top = &node;
    return true;
}

std::int32_t LayOutMaximizedNested(View& view, Scdr& node)
{
    ClearFlags(node, FlagSizeValid);
    InvalidateScdrAndChildrensOrigins(node);
    if (CalculateScdrSizes(view) != 0) return 1;
    SetScrollBarsDataSizeFromScdr(view);
    ChangeScrollPositions(view.scroll, ScrollToStart, ScrollToStart);
    return 0;
}

bool Contains(const Scdr& ancestor, const Scdr& node) noexcept
{
    for (const Scdr* item = &node; item != nullptr; item = item->parent) {
        if (item == &ancestor) return true;
    }
    return false;
}

std::int32_t SelectAndRestore(View& view, Scdr& node)
{
    MakeSelected(view, &node);
    return RestoreScdr(view);
}

// The innermost minimised array around the node, or null.
Scdr* MinimizedAncestor(const Scdr& node) noexcept
{
    Scdr* ancestor = node.parent;
    while (ancestor != nullptr && (ancestor->Flags & FlagMinimized) == 0)
        ancestor = ancestor->parent;
    return ancestor;
}

void ResetNodeSize(Scdr& node) noexcept
{
    if (!IsSimple(node) || (node.records.flags & RecordsResizedByUser) == 0) return;
    node.records.flags = static_cast<std::uint8_t>(node.records.flags & ~RecordsResizedByUser);
    if ((node.Flags & FlagMinimized) !=
        0) { // a closed box stays as it is and opens with the size of its text
        if (node.extra != nullptr) node.extra->savedWidth = node.extra->savedHeight = 0;
        return;
    }
    node.width = node.records.formattedWidth;
    node.height = node.records.formattedHeight;
    InvalidateAncestorsSizesAndLaterSiblingsOrigins(node);
}

} // namespace

std::int32_t MinimizeScdr(View& view)
{
    TraceScope trace("box_state.cpp", "MinimizeScdr");
    Scdr* node = Selected(view);
    if (node == nullptr || node->parent == nullptr || (node->Flags & FlagMinimized) != 0) return 0;
    if (KeepsSize(*node) && !SaveSize(view, *node)) return 1;
    if (RestoreScdr(view) != 0) return 1;
    EditHide(view);
    node->Flags |= FlagMinimized;
    ClearFlags(*node, FlagSizeValid);
    if (LayOutMoved(view, *node) != 0) return 1;
    view.effects.invalidate(view);
    TellFrame(view);
    return 0;
}

std::int32_t MaximizeScdr(View& view)
{
    TraceScope trace("box_state.cpp", "MaximizeScdr");
    Scdr* node = Selected(view);
    if (node == nullptr || (node->Flags & FlagMaximized) != 0) return 0;
    if (!IsSimple(*node) && node->parent == nullptr) return 0;
    if (RestoreScdr(view) != 0 || !Detach(view, *node)) return 1;
    if (IsSimple(*node)) {
        view.effects.showWindowScrollBars(view, false);
    } else if (LayOutMaximizedNested(view, *node) != 0) {
        return 1;
    }
    TellFrame(view);
    view.effects.sendSize(view);
    return 0;
}

std::int32_t RestoreScdr(View& view)
{
    TraceScope trace("box_state.cpp", "RestoreScdr");
    Scdr* node = Selected(view);
    if (node == nullptr) return 0;
    if ((node->Flags & FlagMinimized) != 0) return RestoreMinimized(view, *node);
    if ((node->Flags & FlagMaximized) != 0) return RestoreMaximized(view, *node);
    return 0;
}

std::int32_t RestoreAncestors(View& view, Scdr& node)
{
    TraceScope trace("box_state.cpp", "RestoreAncestors");
    while (!Contains(*view.top, node)) {
        // Only a maximised top hides other nodes; a node of another tree cannot be reached at all.
        if ((view.top->Flags & FlagMaximized) == 0 || SelectAndRestore(view, *view.top) != 0) return 1;
    }
    for (Scdr* closed = MinimizedAncestor(node); closed != nullptr; closed = MinimizedAncestor(*closed)) {
        if (SelectAndRestore(view, *closed) != 0) return 1;
    }
    return 0;
}

void ResetSize(View&, Scdr& node)
{
    TraceScope trace("box_state.cpp", "ResetSize");
    ForEachNode(node, ResetNodeSize);
}

} // namespace vantrel
