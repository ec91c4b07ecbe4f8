// One node takes another's place in the shown tree.
#include <utility>

#include "entry/trace.h"
#include "model/tree_walk.h"
#include "view/actions.h"
#include "view/edited.h"
#include "view/layout.h"
#include "view/selection.h"
#include "view/undo.h"

namespace vantrel {
namespace {

// Where a node stands. A node that is put there by hand leaves records, sizes and the selection to others.
struct Place {
    Scdr* parent;
    std::int64_t index;
    bool isTop;
    bool isRoot;
};

Place PlaceOf(const View& view, const Scdr& node) noexcept
{
    return {node.parent, IndexInParent(node), &node == view.top, &node == view.root};
}

void PutInto(View& view, const Place& place, Scdr& node) noexcept
{
    node.parent = nullptr;
    if (place.parent != nullptr) SetChild(*place.parent, place.index, ScdrPtr(&node));
    if (place.isTop) view.top = &node;
    if (place.isRoot) view.root = &node;
    view.edit.node = &node;
}

// An empty array holds what it would be made of, not values.
bool BlankPrototype(View& view, const Scdr& old, Scdr& fresh)
{
    if (!IsScdrInsideEmptyAncestor(old)) return true;
    ZeroScdr(fresh);
    return FormatScdr(view, fresh) == 0;
}

// What is nested too deep to come in from outside is not made here either.
bool FitsBelow(View& view, const Scdr& old, const Scdr& fresh)
{
    std::int64_t depth = ScdrDepth(fresh);
    for (const Scdr* holder = HoldingNode(old); holder != nullptr; holder = HoldingNode(*holder))
        ++depth;
    return depth <= DeepestNesting || SetErrorCode(view.context, VTERROR_CODE::SystemLimit);
}

std::int32_t LayOutAt(View& view, Scdr& node)
{
    InvalidateScdrAndChildrensOrigins(node);
    InvalidateAncestorsSizesAndLaterSiblingsOrigins(node);
    return CalculateScdrSizes(view);
}

// The old node comes back. Its sizes are still known, so this layout asks for no memory. It is quiet: what went wrong stays on show.
void PutBack(View& view, const Place& place, Scdr& old, bool wasMaximized)
{
    PutInto(view, place, old);
    const auto quiet = static_cast<std::uint8_t>(view.flags & ViewQuiet);
    view.flags |= ViewQuiet;
    if (LayOutAt(view, old) == 0) SetScrollBarsDataSizeFromScdr(view);
    if (wasMaximized) MaximizeScdr(view);
    view.flags = static_cast<std::uint8_t>((view.flags & ~ViewQuiet) | quiet);
    EditBegin(view);
    view.effects.invalidate(view);
}

void ShowReplaced(View& view, bool wasMaximized)
{
    SetScrollBarsDataSizeFromScdr(view);
    EditBegin(view);
    view.effects.invalidate(view);
    view.effects.setFocus(view);
    TellFrame(view);
    view.flags |= ViewModified;
    if (view.editorActive) {
        view.effects.setEditorModified(view);
        NoteEdited(view, *Selected(view));
    }
    if (wasMaximized) MaximizeScdr(view);
    if (!IsSimple(*view.top)) {
        MoveScdrIntoWindow(view);
        SetScrollBarsDataSizeFromScdr(view);
    }
    view.effects.sendSize(view);
}

} // namespace

std::int32_t ReplaceSelectedScdr(View& view, ScdrPtr& newNode, bool pushUndo)
{
    TraceScope trace("replace.cpp", "ReplaceSelectedScdr");
    Scdr* old = Selected(view);
    if (!FitsBelow(view, *old, *newNode) || !BlankPrototype(view, *old, *newNode)) return 1;
    const bool wasMaximized = (old->Flags & FlagMaximized) != 0;
    if (wasMaximized && RestoreScdr(view) != 0) return 1;
    const UndoEntry* const below = view.undo;
    if (pushUndo) UndoPush(view);
    const Place place = PlaceOf(view, *old);
    Scdr& fresh = *newNode.release(); // the tree has it
    PutInto(view, place, fresh);
    if (LayOutAt(view, fresh) != 0) {
        if (view.undo != below) UndoDropTop(view);
        PutBack(view, place, *old, wasMaximized);
        newNode.reset(&fresh);
        return 1;
    }
    ForgetEditedBelow(view, *old);
    FreeScdr(&old);
    ShowReplaced(view, wasMaximized);
    return 0;
}

std::int32_t FormatAndReplace(View& view, ScdrPtr newNode)
{
    TraceScope trace("replace.cpp", "FormatAndReplace");
    if (FormatScdr(view, *newNode) != 0) return 1;
    return ReplaceSelectedScdr(view, newNode, true);
}

} // namespace vantrel
