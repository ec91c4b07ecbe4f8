// Text to numbers.
#pragma once

#include "model/scdr.h"

namespace vantrel {

// Convert to numeric (4608): a scalar (of an empty text) or a vector with as many numbers as the text has
// words, simplest type set; null with ErrorCode 2 (not character, or a unit that no number has), 9, 16 (rank
// 2 and above) or 17 (what the parsers below refuse).
[[nodiscard]] ScdrPtr BuiltinCtn(EditContext* context, const Scdr& argument);

// Each reads exactly `count` numbers from a terminated text ("-" is the minus), fewer where the text ends
// behind one, and ignores the locale. Only blanks are skipped between numbers; a number ends where its
// grammar ends, so that "1-2" read once is 1. The time taken is in proportion to the text. Throw SyntaxError
// on overflow, where a number was due and no digit stands, and on a "J" without an imaginary part right
// behind it; OutOfMemory. A real that is too small for a double is 0.
void UnicodeToI8s(const char16_t* text, std::int64_t* output, std::int64_t count);
void UnicodeToF8s(const char16_t* text, double* output, std::int64_t count);
void UnicodeToJ16s(const char16_t* text, double* outputPairs, std::int64_t count);

} // namespace vantrel
