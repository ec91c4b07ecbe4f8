#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// An interpreter's array as a plain value: what tests write down, what file readers make and what comes back from
// an edit. Its data are the very bytes of the interpreter's block, so that going in and out is a copy.
namespace vantrel::fake {

// How one item is stored. The numbers are the interpreter's own.
namespace ElementType {
inline constexpr int AtomicCharacter = 0; // 1 byte, a position in the atomic vector (Classic edition)
inline constexpr int Bit = 1;             // packed, item 0 is bit 7 of the first byte
inline constexpr int Int8 = 2;
inline constexpr int Int16 = 3;
inline constexpr int Int32 = 4;
inline constexpr int Float = 5;
inline constexpr int Nested = 6; // a pointer to the item's block
inline constexpr int Char8 = 7;
inline constexpr int Char16 = 8;    // a UTF-16 unit
inline constexpr int Char32 = 9;    // a code point
inline constexpr int Complex = 10;  // two floats
inline constexpr int Rational = 11; // no editor accepts it; 16 opaque bytes here
inline constexpr int Decimal = 12;  // 16 bytes, IEEE 754 decimal128 with a binary coefficient
} // namespace ElementType

using Shape = std::vector<std::int64_t>;

struct Array {
    int type = ElementType::Bit;
    Shape shape;                    // empty for a scalar
    std::vector<std::uint8_t> data; // simple arrays: exactly DataBytes(type, count) bytes
    std::vector<Array> items;       // nested arrays: max(count, 1) items; of an empty one, the prototype
};

struct ComplexNumber {
    double real = 0;
    double imaginary = 0;
};

// Product of the axis lengths, 1 for a scalar. Throws std::length_error where it does not fit or an axis is negative.
std::size_t CountOf(const Shape& shape);
std::size_t CountOf(const Array& array);
// Bytes of `count` items, pointers for nested. Throws std::length_error where they do not fit.
std::size_t DataBytes(int type, std::size_t count);

// --- builders; each throws std::invalid_argument where the number of items does not fit the shape ---
Array RawArray(int type, Shape shape, std::vector<std::uint8_t> data);
Array BooleanArray(Shape shape, const std::vector<int>& bits);
// `type` is Int8, Int16 or Int32; values must fit.
Array IntegerArray(int type, Shape shape, const std::vector<std::int64_t>& values);
Array FloatArray(Shape shape, const std::vector<double>& values);
Array ComplexArray(Shape shape, const std::vector<ComplexNumber>& values);
// Each text is a decimal number such as "-12.50".
Array DecimalArray(Shape shape, const std::vector<std::string>& texts);
// `type` is any character type; AtomicCharacter takes the units' positions in the atomic vector.
Array CharacterArray(int type, Shape shape, std::u32string_view text);
Array NestedArray(Shape shape, std::vector<Array> items);
// An empty nested array (one axis of `shape` is 0) with its prototype.
Array EmptyNestedArray(Shape shape, Array prototype);
// A character vector, Char8 where every unit is below 256, else Char16.
Array Text(std::u16string_view text);
Array TextOf(Shape shape, std::u16string_view text);
// A numeric array in the smallest storage that holds the values exactly, as an interpreter squeezes it.
Array NumericArray(Shape shape, const std::vector<double>& values);
Array Number(double value);
Array EmptyVector(); // an empty numeric vector

// --- looking ---
bool IsCharacterType(int type);
bool IsNumericType(int type); // real or complex or decimal
bool IsRealType(int type);    // Bit, Int8, Int16, Int32, Float
// Item i of a real array (Bit … Float) as a float; of a complex array the real part.
double RealAt(const Array& array, std::size_t index);
ComplexNumber ComplexAt(const Array& array, std::size_t index);
// Item i of a character array as a code point or UTF-16 unit.
char32_t CharacterAt(const Array& array, std::size_t index);
std::string DecimalTextAt(const Array& array, std::size_t index);
// All characters of a character array in row-major order, as UTF-16.
std::u16string TextOfArray(const Array& array);
std::vector<double> RealsOf(const Array& array);
// Item i as an array of its own: the item of a nested array, a scalar of a simple one.
Array ItemAt(const Array& array, std::size_t index);

// Same types, shapes and items, bit for bit (the unused bits behind packed items do not count).
bool IdenticalArrays(const Array& a, const Array& b);
// Same shapes and values, whatever they are stored as: 1 as a bit equals 1 as a float, a Char8 "a" a Char16 "a".
bool SameValues(const Array& a, const Array& b);
// One line, for failure messages: nested[2](bit[3](1 0 1) char8[2]"ab").
std::string Dump(const Array& array);

// --- the two editions ---
// Characters as positions in the atomic vector; false, with the first character that has none, when that fails.
bool ToAtomicCharacters(Array& array, char32_t* missing);
// Positions back into UTF-16 characters.
void FromAtomicCharacters(Array& array);

} // namespace vantrel::fake
