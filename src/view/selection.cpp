#include "view/selection.h"

#include <algorithm>

#include "entry/trace.h"
#include "view/busy.h"
#include "view/edited.h"
#include "view/hit_test.h"
#include "view/layout.h"
#include "view/messages.h"

namespace vantrel {
namespace {

bool IsInside(const Rect64& inner, const Rect64& outer) noexcept
{
    return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom;
}

// The way that brings low .. high into clientLow .. clientHigh; the low end wins when both do not fit.
std::int64_t ScrollDistance(std::int64_t low, std::int64_t high, std::int64_t clientLow,
                            std::int64_t clientHigh, bool followHigh) noexcept
{
    if (low < clientLow) return low - clientLow;
    if (followHigh && high > clientHigh) return std::min(high - clientHigh, low - clientLow);
    return 0;
}

// The selected node's rectangle where it must be scrolled into sight; false when it stands well.
bool FindHiddenSelection(const View& view, const Rect64& client, Rect64& selection) noexcept
{
    selection = InWindow(view, NodeRect(*Selected(view)));
    if (!view.options.wholeCell) {
        selection = Shrunk(selection, view.metrics.margin, view.metrics.margin);
        if (DoMeet(selection, client)) return false;
    }
    return !IsInside(selection, client);
}

bool IsMaximized(const Scdr& node) noexcept
{
    return (node.Flags & FlagMaximized) != 0;
}

// True when the view scrolled towards the selection, which the editor then has to follow.
bool ScrollSelectionIntoSight(View& view)
{
    Scdr* const node = Selected(view);
    if (node == nullptr) return false;
    SelectPlane(view, *node);
    if (IsMaximized(*node)) return false;
    const Rect64 client{0, 0, view.metrics.client.width, view.metrics.client.height};
    if (IsInside(InWindow(view, NodeRect(*view.top)), client)) {
        ChangeScrollPositions(view.scroll, ScrollToStart, ScrollToStart);
        return false;
    }
    Rect64 selection;
    if (!FindHiddenSelection(view, client, selection)) return false;
    const bool followEnd = node != view.top;
    const std::int64_t dx =
        ScrollDistance(selection.left, selection.right, client.left, client.right, followEnd);
    const std::int64_t dy =
        ScrollDistance(selection.top, selection.bottom, client.top, client.bottom, followEnd);
    ChangeScrollPositions(view.scroll, dx, dy);
    return true;
}

} // namespace

bool IsShownInEditor(const Scdr& node) noexcept
{
    return IsSimple(node) && (node.Flags & (FlagMinimized | FlagKeptSize)) == 0 &&
           !IsScdrInsideEmptyAncestor(node);
}

std::int32_t SelectScdr(View& view, Scdr& node, bool setFocus)
{
    TraceScope trace("selection.cpp", "SelectScdr");
    if (&node == Selected(view)) return 0;
    Scdr* const previous = Selected(view);
    if (RestoreAncestors(view, node) != 0) {
        MakeSelected(view, previous);
        EditBegin(view);
        return 1;
    }
    MakeSelected(view, &node);
    // The editor that is there still shows the array left behind: it must not travel to the new place before it has taken the new one.
    ScrollSelectionIntoSight(view);
    EditBegin(view);
    view.effects.invalidate(view);
    if (setFocus) view.effects.setFocus(view);
    TellFrame(view);
    return 0;
}

void TellFrame(View& view)
{
    view.effects.notifyFrame(view, ViewNotifyState);
    view.effects.notifyFrame(view, ViewNotifyMenu);
}

void MoveScdrIntoWindow(View& view)
{
    TraceScope trace("selection.cpp", "MoveScdrIntoWindow");
    if (ScrollSelectionIntoSight(view)) EditResize(view);
}

void EditBegin(View& view)
{
    TraceScope trace("selection.cpp", "EditBegin");
    const Scdr* node = Selected(view);
    if (node == nullptr || !IsShownInEditor(*node)) {
        EditHide(view);
        return;
    }
    view.editorActive = true;
    view.effects.beginEditor(view, node->Rank == 0, IsScdrInsideEmptyAncestor(*node));
    EditResize(view);
}

void EditHide(View& view)
{
    TraceScope trace("selection.cpp", "EditHide");
    if (!view.editorActive) return;
    view.editorActive = false;
    view.effects.hideEditor(view);
}

void EditResize(View& view)
{
    TraceScope trace("selection.cpp", "EditResize");
    const Scdr* node = Selected(view);
    if (node == nullptr || !view.editorActive || !IsShownInEditor(*node)) return;
    if (IsMaximized(*node)) {
        view.effects.placeEditor(view, nullptr);
        return;
    }
    const Rect64 place = InWindow(view, GetEditRectangle(view.metrics.margin, *node));
    view.effects.placeEditor(view, &place);
}

bool MoveSelectionByKey(View& view, std::int32_t modifiers, std::int32_t key)
{
    TraceScope trace("selection.cpp", "MoveSelectionByKey");
    Scdr* const from = Selected(view) != nullptr ? Selected(view) : view.top;
    if (from == nullptr) return false;
    Scdr* const target = TabToNextScdr(*from, modifiers, key);
    if (target == nullptr || target == Selected(view)) return false;
    const BusyMark busy(view);
    return SelectScdr(view, *target, true) == 0;
}

} // namespace vantrel
