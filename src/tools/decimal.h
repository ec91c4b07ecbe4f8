// Whole numbers as text.
#pragma once

#include "entry/memory.h"

namespace vantrel {

// Appends the digits of a number, with a leading "-" when it is negative.
void AppendDecimal(Text& text, std::int64_t number);

} // namespace vantrel
