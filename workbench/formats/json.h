#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "workbench/formats/document.h"

// JSON. What becomes what:
//   rectangular arrays of numbers    numeric vectors, matrices, and so on, up to rank 15; of true and false likewise
//   number, true, false              numeric and Boolean scalars
//   string                           a character vector of UTF-16 units
//   null                             the empty numeric vector
//   []                               an empty nested vector
//   any other array                  a nested vector
//   object                           a nested matrix of two columns, name and value; {} has no rows
// and back:
//   character array                  string; of rank 2 and more, an array of its rows' strings
//   numeric scalar                   number, or true or false where that stood before and the value is 1 or 0
//   empty numeric vector             null, or [] where an array stood before
//   numeric array                    arrays of numbers
//   complex item, NaN, infinity      string ("1J2"), JSON having no such numbers
//   nested matrix of two columns whose first holds only texts    object
//   other nested array               array; of a scalar, its item
// Strings, numbers and names that were not edited keep the very text they had, lists keep the lines they were on.
namespace vantrel::workbench {

struct JsonValue {
    enum class Kind : std::uint8_t { Null, Boolean, Number, String, Array, Object };

    Kind kind = Kind::Null;
    bool boolean = false;
    bool multiline = false; // an array or object with line breaks between its brackets
    double number = 0;
    std::string raw;              // a number's or string's text in the file
    std::u16string text;          // a string's value
    std::vector<JsonValue> items; // of an array, or an object's values
    std::vector<JsonValue> names; // an object's names, as strings
};

struct JsonSource {
    JsonValue root;
    std::string indent; // of one level; empty where the file has none
    bool spaced = true; // blanks after colons and between items on one line
    bool byteOrderMark = false;
    bool finalNewline = true;
    bool crlf = false;
};

Document ReadJson(std::string bytes);
std::string WriteJson(const fake::Array& array, const Document* original, WriteContext& context);

// The array that a value becomes.
fake::Array ArrayOfJson(const JsonValue& value);

} // namespace vantrel::workbench
