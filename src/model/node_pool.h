// Where tree nodes live: slabs of equal pieces instead of a heap block for each node.
//
// A node costs its own size and no header, and taking one costs a few loads, where a small heap block costs several times as much on
// some systems. The pool is process-wide; the editor runs on one thread. When no node is live any more every slab goes back.
#pragma once

#include "model/scdr.h"

namespace vantrel {

// A zero-filled node. Counts as one allocation for the fault gate and as one live block. Throws OutOfMemory.
[[nodiscard]] Scdr* TakeNode();
// Null is not allowed.
void ReturnNode(Scdr* node) noexcept;
// Bytes of the slabs now held, for measurements; 0 where nodes are plain blocks.
[[nodiscard]] std::int64_t NodePoolBytes() noexcept;

} // namespace vantrel
