// Which simple arrays may hold typed text that is not committed yet, so that a commit need not visit every array of the tree.
//
// Text is typed only into the selected array. So an array is noted when the selection leaves it edited, and the selected one is always
// looked at. Whoever frees a part of the tree forgets what is noted in it first.
#pragma once

#include "view/view.h"

namespace vantrel {

[[nodiscard]] inline bool HasTypedText(const Scdr& node) noexcept
{
    return IsSimple(node) && (node.records.flags & RecordsEdited) != 0;
}

// Makes the node (or none) the selected one and remembers the text typed in the one before. Nothing else moves.
void MakeSelected(View& view, Scdr* node) noexcept;
void NoteEdited(View& view, Scdr& node) noexcept;
void ForgetEditedBelow(View& view, const Scdr& root) noexcept;
void ForgetAllEdited(View& view) noexcept;
// The array as it is now is saved: the next change of any cell is the first again.
void ForgetModified(View& view) noexcept;
// The edited arrays of a subtree in item order. Throws OutOfMemory.
[[nodiscard]] Vector<Scdr*> EditedBelow(View& view, Scdr& root);

// Whether `node` is `root` or lies below it, a maximised node at its place in the tree.
[[nodiscard]] bool IsBelow(const Scdr& root, const Scdr& node) noexcept;

} // namespace vantrel
