// Structural primitives computed here. Arguments are never changed; a result is new, with its simplest type set and no parent.
//
// All set ErrorCode and return null on failure: 9 for memory and for shapes that do not fit, else as each says. Null with ErrorCode 0
// declines the work. Axis names and the adapter's flags travel with what they belong to. Nothing recurses, however deep the nesting.
#pragma once

#include "model/scdr.h"

namespace vantrel {

// Ravel (4609): all items in row-major order as a vector. A structure stops being one: from rank 2 on the node's FlagStructure is
// cleared, and FlagKeptSize of every child.
[[nodiscard]] ScdrPtr BuiltinRavel(EditContext* context, const Scdr& argument);

// First (4610): the first item; of an empty array its fill (simple: blank or 0) or prototype. ErrorCode 18: unknown type.
[[nodiscard]] ScdrPtr BuiltinFirst(EditContext* context, const Scdr& argument);

// Disclose (4611): a vector of rows becomes a matrix and so on; shorter items are padded with their fill. A
// scalar among items of a greater rank counts as one item long along each axis. ErrorCode 16: items of different ranks, scalars apart;
// 18: unknown type. Declined: decimal items together with lesser numbers, since only an interpreter that has decimals knows
// how to widen to them.
[[nodiscard]] ScdrPtr BuiltinDisclose(EditContext* context, const Scdr& argument);

// Enclose (4612): a nested scalar that holds a copy of the argument; a simple scalar stays what it is.
[[nodiscard]] ScdrPtr BuiltinEnclose(EditContext* context, const Scdr& argument);

// Enlist (4613): the items of all simple arrays inside, depth first, as a vector; prototypes add none. Numbers of different types are
// widened where no value changes by it; otherwise a mixed result is a nested vector of simple scalars. The type of a result without
// items is that of the first simple array. ErrorCode 18: unknown type.
[[nodiscard]] ScdrPtr BuiltinEnlist(EditContext* context, const Scdr& argument);

// Reverse along the last axis (4614) and along the first (4615); of a scalar a copy. ErrorCode 18: unknown type.
[[nodiscard]] ScdrPtr BuiltinReverse(EditContext* context, const Scdr& argument);
[[nodiscard]] ScdrPtr BuiltinReverseAxis1(EditContext* context, const Scdr& argument);

// Transpose (4616): the axes in reverse or, with an order, argument axis i as the result's axis order[i], counted from the index origin.
// An order is a scalar or vector with one entry for each axis (ErrorCode 16, 6) and an Integer permutation of them. For a matrix it
// may be Boolean, two different items that count from 0 whatever the index origin. A scalar argument takes any empty order that is not
// Boolean. Else ErrorCode 2. 18: unknown type.
[[nodiscard]] ScdrPtr BuiltinTranspose(EditContext* context, const Scdr& argument,
                                       const Scdr* axisOrder = nullptr);

// Sort ascending (4617) and descending (4618): the grade, an Integer vector with the places of the major cells in order, counted from
// the index origin; `Sort` in model/primitives.h applies it. Of a scalar or an empty array a copy. Cells are compared item by item;
// characters as unsigned units, NaN behind every number. Equal cells keep their order ascending and have it reversed descending.
// ErrorCode 2 with a message: nested, complex and decimal arrays; 18: unknown type.
[[nodiscard]] ScdrPtr BuiltinGradeUp(EditContext* context, const Scdr& argument);
[[nodiscard]] ScdrPtr BuiltinGradeDown(EditContext* context, const Scdr& argument);

} // namespace vantrel
