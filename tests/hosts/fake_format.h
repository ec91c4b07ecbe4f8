#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "hosts/array.h"

// Numbers and arrays as the language shows and reads them.
namespace vantrel::fake {

// One number of the language: digits, a decimal point, an exponent after E, a complex part after J; a minus is
// either the high minus or a hyphen. False where the text is none.
bool ParseNumber(std::u16string_view text, ComplexNumber& value);
// A number as the language shows it, with the high minus.
std::u16string FormatNumber(double value, std::int64_t printPrecision);

// Any array as characters: a vector where it fits one line, else a matrix. Items of nested arrays stand side by side with a
// blank between them, numbers in columns to the right.
Array FormatArray(const Array& array, std::int64_t printPrecision);

} // namespace vantrel::fake
