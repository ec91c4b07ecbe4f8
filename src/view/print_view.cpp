#include "view/print_view.h"

#include "entry/trace.h"
#include "model/tree_walk.h"
#include "view/layout.h"

namespace vantrel {
namespace {

constexpr std::int64_t Unlimited = std::int64_t{1} << 40; // paper goes on over the next page

// The copy's nodes correspond to the shown ones, one to one.
void CopyShownState(const Scdr& from, Scdr& to) noexcept
{
    SubtreeWalk source(from);
    SubtreeWalk target(to);
    for (; source.Node() != nullptr && target.Node() != nullptr; source.Next(), target.Next()) {
        Scdr& copy = const_cast<Scdr&>(*target.Node());
        const bool closed = (source.Node()->Flags & FlagMinimized) != 0;
        if (closed && source.Node() != &from) copy.Flags |= FlagMinimized;
        if (copy.Rank >= 3) SetCurrentPlane(copy, CurrentPlane(*source.Node()));
    }
}

bool NeverInterrupted(View&) noexcept
{
    return false;
}

ViewEffects SilentEffects(const View& shown) noexcept
{
    ViewEffects effects{};
    effects.invalidate = [](View&) {};
    effects.showStatus = shown.effects.showStatus;
    effects.notifyFrame = [](View&, std::int32_t) {};
    effects.isInterruptOrClosePending = shown.effects.isInterruptOrClosePending != nullptr
                                            ? shown.effects.isInterruptOrClosePending
                                            : &NeverInterrupted;
    effects.showWindowScrollBars = [](View&, bool) {};
    effects.readPlatform = [](View&) {};
    effects.sendSize = [](View&) {};
    effects.beginEditor = [](View&, bool, bool) {};
    effects.placeEditor = [](View&, const Rect64*) {};
    effects.reloadEditor = [](View&) {};
    effects.showEditorPlane = [](View&) {};
    effects.moveEditorCaret = [](View&, std::int64_t, std::int64_t) {};
    effects.hideEditor = [](View&) {};
    effects.setFocus = [](View&) {};
    effects.setEditorModified = [](View&) {};
    effects.enableFrame = [](View&, bool) {};
    effects.sizeFrame = [](View&) {};
    effects.askAxisOrder = [](View&, const Scdr&, std::int32_t*) { return false; };
    return effects;
}

} // namespace

bool CopyForPrinting(const View& shown, PrintView& print)
{
    TraceScope trace("print_view.cpp", "CopyForPrinting");
    print.tree = CopyScdr(shown.context, *shown.top);
    if (print.tree == nullptr) return false;
    CopyShownState(*shown.top, *print.tree);
    View& view = print.view;
    view.context = shown.context;
    view.window = shown.window;
    view.win = shown.win;
    view.effects = SilentEffects(shown);
    view.options = shown.options;
    view.edit.context = shown.context;
    view.edit.rankOneScrollBars = false;
    view.metrics.workArea = {Unlimited, Unlimited};
    view.root = view.top = print.tree.get();
    return true;
}

} // namespace vantrel
