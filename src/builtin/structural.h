// Structural primitives computed here. Arguments are never changed; a result is new; null with ErrorCode 0
// declines the work.
#pragma once

#include "model/scdr.h"

namespace vantrel {

// Disclose (4611): a vector of rows becomes a matrix and so on; shorter items are padded with their fill. A
// scalar among items of a greater rank counts as one item long along each axis. Null with ErrorCode 9, 16 or
// 18. Declined: decimal items together with lesser numbers, since only an interpreter that has decimals knows
// how to widen to them.
[[nodiscard]] ScdrPtr BuiltinDisclose(EditContext* context, const Scdr& argument);

} // namespace vantrel
