#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hosts/array.h"

// A MATLAB array as a plain value: what tests write down and what comes back from an edit. Items are in MATLAB's order, the first axis fastest.
namespace vantrel::fake {

// MATLAB's own numbers.
namespace MatlabClass {
inline constexpr int Unknown = 0;
inline constexpr int Cell = 1;
inline constexpr int Struct = 2;
inline constexpr int Logical = 3;
inline constexpr int Char = 4;
inline constexpr int Void = 5;
inline constexpr int Double = 6;
inline constexpr int Single = 7;
inline constexpr int Int8 = 8;
inline constexpr int Uint8 = 9;
inline constexpr int Int16 = 10;
inline constexpr int Uint16 = 11;
inline constexpr int Int32 = 12;
inline constexpr int Uint32 = 13;
inline constexpr int Int64 = 14;
inline constexpr int Uint64 = 15;
inline constexpr int FunctionHandle = 16;
inline constexpr int Opaque = 17;
inline constexpr int Object = 18;
} // namespace MatlabClass

using MatlabLengths = std::vector<std::size_t>;

struct MatlabValue {
    int classId = MatlabClass::Double;
    MatlabLengths lengths{0, 0}; // at least two
    std::vector<std::uint8_t> real;
    bool complex = false;
    std::vector<std::uint8_t> imaginary; // complex: as long as `real`
    bool sparse = false;
    bool set = true;                // false: a cell or field that was never given a value
    std::vector<MatlabValue> items; // cells, or for each element its fields
    std::vector<std::string> fields;
    std::string className; // of a class that has no number here
};

std::size_t CountOf(const MatlabLengths& lengths);
std::size_t CountOf(const MatlabValue& value);
// Bytes of an item; 0 for classes without plain data.
std::size_t MatlabItemBytes(int classId);
const char* MatlabClassName(int classId);

// --- builders; items in MATLAB's order; std::invalid_argument where their number does not fit ---
MatlabValue PlainValue(int classId, MatlabLengths lengths, const void* items, std::size_t bytes);
template <typename T> MatlabValue NumberValue(int classId, MatlabLengths lengths, const std::vector<T>& items)
{
    return PlainValue(classId, std::move(lengths), items.data(), items.size() * sizeof(T));
}
MatlabValue DoubleValue(MatlabLengths lengths, const std::vector<double>& items);
MatlabValue ComplexValue(MatlabLengths lengths, const std::vector<double>& real,
                         const std::vector<double>& imaginary);
MatlabValue LogicalValue(MatlabLengths lengths, const std::vector<int>& items);
MatlabValue CharValue(MatlabLengths lengths, std::u16string_view text);
MatlabValue TextValue(std::u16string_view text); // a row
MatlabValue CellValue(MatlabLengths lengths, std::vector<MatlabValue> items);
MatlabValue StructValue(MatlabLengths lengths, std::vector<std::string> fields,
                        std::vector<MatlabValue> items);
MatlabValue UnsetValue();

// --- looking ---
template <typename T> std::vector<T> ItemsOf(const MatlabValue& value)
{
    std::vector<T> items(value.real.size() / sizeof(T));
    if (!items.empty()) std::memcpy(items.data(), value.real.data(), items.size() * sizeof(T));
    return items;
}
std::u16string TextOf(const MatlabValue& value);
// Same classes, shapes, names and items, bit for bit.
bool Identical(const MatlabValue& a, const MatlabValue& b);
// Same shapes and values whatever class the numbers have.
bool SameValues(const MatlabValue& a, const MatlabValue& b);
std::string Dump(const MatlabValue& value);

// --- between the interpreters' arrays ---
// Whether MATLAB has what the array holds; if not, `reason` says what is missing.
bool MatlabCanHold(const Array& array, std::string* reason);
// A scalar becomes 1 by 1 and a vector a row.
MatlabValue MatlabFromArray(const Array& array);
// A simple 1 by 1 array becomes a scalar, another single row a vector; where `like` became an array of these lengths, the shape is its.
// std::invalid_argument for classes without a counterpart.
Array ArrayFromMatlab(const MatlabValue& value, const Array* like = nullptr);

} // namespace vantrel::fake
