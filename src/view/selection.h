// The selection: which node commands act on, where the cell editor stands, and what is scrolled into sight.
#pragma once

#include "view/view.h"

namespace vantrel {

// 0, or 1 when an ancestor could not be restored (the old selection stays).
std::int32_t SelectScdr(View& view, Scdr& node, bool setFocus);
void MoveScdrIntoWindow(View& view);
// Has the frame show what is selected now, and what may be done with it.
void TellFrame(View& view);
// Whether the selected node is shown in the cell editor: simple, not minimised, without kept size, not inside an empty ancestor.
[[nodiscard]] bool IsShownInEditor(const Scdr& node) noexcept;
void EditBegin(View& view);
void EditHide(View& view);
void EditResize(View& view);

// Tab, Shift+Tab, Ctrl+Tab, Ctrl+Shift+Tab, Ctrl+Up. True when the selection moved.
bool MoveSelectionByKey(View& view, std::int32_t modifiers, std::int32_t key);
// Plane commands 4622 .. 4627 on the selected node.
void ChangePlane(View& view, std::int32_t command);
// A plane of the selected node; one that it does not have is not shown.
void ShowPlane(View& view, std::int64_t plane);

// Shows a new tree (owned from now on, may be null): frees the old one, formats, lays out, selects the root. 0 on success.
std::int32_t ShowTree(View& view, ScdrPtr root);
// Lays the whole tree out again after a change of margins, font or scroll-bar room. 0 on success.
std::int32_t LayOutAgain(View& view, bool fontChanged);

} // namespace vantrel
