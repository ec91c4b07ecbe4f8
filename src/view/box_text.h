// The text inside a simple array's box: how tall it is and how far it is scrolled. Shared by the layout routines.
#pragma once

#include "view/view.h"

namespace vantrel {

// Pixels of the text of one plane; bounded, so that sums with it cannot overflow.
[[nodiscard]] std::int64_t TextHeight(const View& view, const Scdr& node) noexcept;

// The editor scrolls to its caret when it opens. So the caret of an array that has been open follows a text that was scrolled, as it
// follows the editor's own bars; a selection ends where it had to move.
void BringCaretIntoSight(View& view, Scdr& node);

// Keeps the lines of a scrolled box in sight when the font becomes another one: before its text is measured anew. What the editor had
// scrolled, the box takes over; the editor begins there again. A box without bars goes back to its start.
void CarryScrolling(View& view, Scdr& node) noexcept;

// SetScrollBarsFromRecords for callers that handle a failed allocation themselves. Throws OutOfMemory.
void StoreBoxScroll(View& view, Scdr& node, const Size64& page);

} // namespace vantrel
