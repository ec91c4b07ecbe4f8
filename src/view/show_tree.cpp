// Taking a tree on show, and laying out again what is shown.
#include "entry/trace.h"
#include "model/tree_walk.h"
#include "view/box_text.h"
#include "view/busy.h"
#include "view/edited.h"
#include "view/layout.h"
#include "view/messages.h"
#include "view/selection.h"
#include "view/undo.h"

namespace vantrel {
namespace {

void DropTree(View& view)
{
    EditHide(view);
    UndoPurge(view); // what is saved has no place in another tree
    const bool filled = view.top != nullptr && IsSimple(*view.top) && (view.top->Flags & FlagMaximized) != 0;
    view.edit.node = nullptr;
    ForgetAllEdited(view);
    view.top = nullptr;
    FreeScdr(&view.root);
    if (filled) view.effects.showWindowScrollBars(view, true);
    SetScrollBarsDataSizeFromScdr(view);
    ChangeScrollPositions(view.scroll, ScrollToStart, ScrollToStart);
    view.effects.invalidate(view);
}

void SelectRoot(View& view)
{
    view.edit.node = view.root;
    SetScrollBarsDataSizeFromScdr(view);
    // A simple array on its own needs no box around it: its editor fills the window.
    if (IsSimple(*view.root)) MaximizeScdr(view);
    EditBegin(view);
    view.effects.invalidate(view);
    view.effects.setFocus(view);
    TellFrame(view);
    view.effects.sendSize(view);
}

// Sizes kept of closed boxes were measured with the old font and margins.
void ForgetSavedSizes(Scdr& root) noexcept
{
    ForEachNode(root, [](Scdr& node) {
        if (node.extra != nullptr) node.extra->savedWidth = node.extra->savedHeight = 0;
    });
}

// The selected array's editor takes care of its own.
void CarryAllScrolling(View& view) noexcept
{
    ForEachNode(*view.root, [&](Scdr& node) {
        if (IsSimple(node) && &node != Selected(view)) CarryScrolling(view, node);
    });
}

void FollowLayout(View& view, std::int32_t notification)
{
    SetScrollBarsDataSizeFromScdr(view);
    EditResize(view);
    view.effects.notifyFrame(view, notification);
    // Who changes the font looks at what is in sight, wherever the selection is.
    if (!IsSimple(*view.top) && notification != ViewNotifyFont) {
        MoveScdrIntoWindow(view);
        SetScrollBarsDataSizeFromScdr(view);
    }
    view.effects.sendSize(view);
}

} // namespace

std::int32_t ShowTree(View& view, ScdrPtr root)
{
    TraceScope trace("show_tree.cpp", "ShowTree");
    const BusyMark busy(view);
    DropTree(view);
    if (root == nullptr) {
        TellFrame(view);
        return 0;
    }
    if (FormatScdr(view, *root) != 0) return 1;
    view.root = view.top = root.release();
    if (CalculateScdrSizes(view) != 0) {
        DropTree(view);
        return 1;
    }
    SelectRoot(view);
    return 0;
}

std::int32_t LayOutAgain(View& view, bool fontChanged)
{
    TraceScope trace("show_tree.cpp", "LayOutAgain");
    const std::int32_t notification = fontChanged ? ViewNotifyFont : ViewNotifyState;
    std::int32_t result = 0;
    if (view.root != nullptr) {
        const BusyMark busy(view);
        if (fontChanged) {
            InvalidateRecordLengths(*view.root);
            CarryAllScrolling(view);
        }
        InvalidateDescendentsOriginsAndSizes(*view.root);
        ForgetSavedSizes(*view.root);
        result = CalculateScdrSizes(view);
        if (result == 0) FollowLayout(view, notification);
    }
    // The frame shows the new font in any case.
    if (fontChanged && (view.root == nullptr || result != 0)) view.effects.notifyFrame(view, notification);
    view.effects.invalidate(view);
    return result;
}

} // namespace vantrel
