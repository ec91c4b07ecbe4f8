// What stands in the margins: the ruler above the text and the numbers beside it. Texts are made for the visible part only.
#pragma once

#include <cstdint>

namespace vantrel {

inline constexpr std::int64_t LineNumberCapacity = 24;

// "[n]" without a terminator; answers its length. `out` has room for LineNumberCapacity units.
std::int64_t FormatLineNumber(char16_t* out, std::int64_t number) noexcept;

// The characters first .. first + count - 1 of the ruler: dashes, a plus at every index 4, 14, 24, ... and at every index 9, 19, 29, ... the
// number of the column, beginning there.
void FillRuler(char16_t* out, std::int64_t first, std::int64_t count) noexcept;

} // namespace vantrel
