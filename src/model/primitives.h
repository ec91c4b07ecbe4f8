// Small array routines that the tree itself needs: prototypes, simplest types and sorting by a grade.
#pragma once

#include "model/scdr.h"

namespace vantrel {

// Computes SimplestType for the node and, when nested, for all below it. Never changes Type.
void SetSimplestType(Scdr& node) noexcept;
// The prototype of an array as a new node under `parent`. Throws OutOfMemory.
[[nodiscard]] ScdrPtr Prototype(EditContext* context, Scdr* parent, const Scdr& source);

} // namespace vantrel
