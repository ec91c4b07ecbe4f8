#pragma once

#include <string>
#include <string_view>

// Numbers between files and arrays.
namespace vantrel::workbench {

enum class NumberChange {
    None,      // the same number, or the same as far as it was shown
    Shortened, // the editor stored a whole number of more than 32 bits as its 32-bit overflow value
    Edited,
};

// What became of a number that was loaded. The editor saves floats that are whole as 32-bit integers, and those that do
// not fit all become the smallest one: where a bigger number stood before, that is no edit.
NumberChange CompareNumbers(double loaded, double edited, int precision);

// The shortest text that reads back as the same number, whole numbers without an exponent up to 2 to the 53rd.
// Plain minus. The value is finite.
std::string NumberToText(double value);
// A JSON number and nothing else ("-1.5e3"; no sign plus, no leading zeros, no bare point).
bool IsJsonNumber(std::string_view text);
// The text, which is a JSON number or one without its leading zero, as a double; false where it overflows.
bool ParsePlainNumber(std::string_view text, double& value);
// Whether a double holds a JSON number's every digit, as far as 17 of them.
bool HoldsAllDigits(std::string_view text, double value);

} // namespace vantrel::workbench
