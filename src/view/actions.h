// The structural actions: a new subtree is built beside the tree and takes the selected node's place in one step, so that the tree is
// never half-changed. A failure frees the new subtree only.
//
// Results: 0 on success, 1 when nothing was done; the user has then been told why. Nothing here throws. The view should be busy.
#pragma once

#include "view/view.h"

namespace vantrel {

// Puts a formatted node in the selected node's place, lays out and selects it; the old node is freed. Where the new layout fails or is
// broken off the old node stands where it stood and the caller keeps the new one. (replace.cpp)
std::int32_t ReplaceSelectedScdr(View& view, ScdrPtr& newNode, bool pushUndo);
// Formats a node and replaces the selection with it, with undo. (replace.cpp)
std::int32_t FormatAndReplace(View& view, ScdrPtr newNode);

// 4701, 4702: a new item beside the selected item of a vector, which stays selected. (insert.cpp)
std::int32_t InsertItem(View& view, std::int32_t command);
// 4703 .. 4706: a row or column beside the selected item of a matrix, which stays selected. (insert.cpp)
std::int32_t InsertRowOrColumn(View& view, std::int32_t command);
// Takes the selected item out of its array, which is then selected. (delete_array.cpp)
std::int32_t DeleteArray(View& view);
// 4619: the selected vector as a matrix of one column. (rows.cpp)
std::int32_t MakeMatrix(View& view);
// 4621: the selected array of rank >= 2 as an array of its rows. (rows.cpp)
std::int32_t MakeArrayOfRows(View& view);
// Nested arrays of simple scalars of one kind become simple, in the whole subtree. Each replacement is undone together with what was
// done before. The selection stays where its node stays. (coalesce.cpp)
std::int32_t CoalesceScdr(View& view, Scdr& node);

std::int32_t ClipboardCopy(View& view); // (clipboard_actions.cpp)
std::int32_t ClipboardCut(View& view);
std::int32_t ClipboardPaste(View& view);

// 4607 .. 4618, 4628, 4629. (apl_actions.cpp)
std::int32_t PerformAplAction(View& view, std::int32_t command);
// 4201 .. 4205. (perform.cpp)
std::int32_t PerformClipboardAction(View& view, std::int32_t command);
// 4604 .. 4606. (perform.cpp)
std::int32_t PerformSystemAction(View& view, std::int32_t command);
// 4619, 4621, 4701 .. 4706, after committing what was typed. (perform.cpp)
std::int32_t PerformAction(View& view, std::int32_t command);

} // namespace vantrel
