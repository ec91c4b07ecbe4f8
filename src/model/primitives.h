// Small array routines that the tree itself needs: prototypes, simplest types and sorting by a grade.
#pragma once

#include "model/scdr.h"

namespace vantrel {

// Computes SimplestType for the node and, when nested, for all below it. Never changes Type.
void SetSimplestType(Scdr& node) noexcept;
// The prototype of an array as a new node under `parent`. Throws OutOfMemory.
[[nodiscard]] ScdrPtr Prototype(EditContext* context, Scdr* parent, const Scdr& source);
// A copy of the node with its major cells in the order of a grade: cell i is the node's cell grade[i] - indexOrigin. The grade is
// consumed. It may have any numeric type but Decimal and more entries than are needed. Sets ErrorCode and returns null: 2 for a grade
// that is no whole numbers, 4 where one names no cell, 6 where they are too few, 9. Scalars and empty arrays are copied whatever the
// grade.
[[nodiscard]] ScdrPtr Sort(EditContext* context, const Scdr& node, ScdrPtr grade, std::int64_t indexOrigin);

} // namespace vantrel
