// What the pop-up menu offers.
#include "editor/edit_model.h"
#include "entry/trace.h"
#include "model/tree_walk.h"

namespace vantrel {

namespace {

// The root fills the view by itself and may be closed; any other box that does must be restored first.
bool IsMaximizedItem(const Scdr& node) noexcept
{
    return (node.Flags & FlagMaximized) != 0 && node.extra != nullptr && node.extra->savedParent != nullptr;
}

} // namespace

EditMenu GetEditMenu(const EditWindow& window, const EditClipboard& clipboard) noexcept
{
    const TraceScope trace("menu.cpp", "GetEditMenu");
    const Scdr& node = *window.view->node;
    const Scdr* const holder = HoldingNode(node);
    const bool changeable = !window.readOnly && !IsLocked(window);
    const bool selected = !IsSelectionEmpty(window);
    const bool maximized = (node.Flags & FlagMaximized) != 0;
    const bool minimized = (node.Flags & FlagMinimized) != 0;
    EditMenu menu{};
    menu.undo = changeable && CanUndo(window);
    menu.redo = changeable && CanRedo(window);
    menu.cut = changeable && selected;
    menu.copy = selected;
    menu.paste = changeable && clipboard.text;
    menu.remove = changeable;
    menu.cutArray = holder != nullptr && CanLoseItem(*holder);
    menu.pasteArray = clipboard.array && (node.Flags & FlagKeptSize) == 0;
    menu.restore = maximized || minimized;
    menu.minimize = !minimized && !IsMaximizedItem(node);
    menu.maximize = !maximized;
    return menu;
}

} // namespace vantrel
