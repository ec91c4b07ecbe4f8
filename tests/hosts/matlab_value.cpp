#include "hosts/matlab_value.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace vantrel::fake {
namespace {

const char* const classNames[] = {
    "unknown", "cell",   "struct",          "logical", "char",   "void",  "double",
    "single",  "int8",   "uint8",           "int16",   "uint16", "int32", "uint32",
    "int64",   "uint64", "function_handle", "opaque",  "object"};

void CheckCount(std::size_t found, std::size_t wanted)
{
    if (found != wanted) throw std::invalid_argument("the number of items does not fit the lengths");
}

template <typename T> double NumberIn(const std::vector<std::uint8_t>& data, std::size_t index)
{
    T item;
    std::memcpy(&item, data.data() + index * sizeof(T), sizeof item);
    return static_cast<double>(item);
}

double NumberAt(int classId, const std::vector<std::uint8_t>& data, std::size_t index)
{
    switch (classId) {
    case MatlabClass::Double: return NumberIn<double>(data, index);
    case MatlabClass::Single: return NumberIn<float>(data, index);
    case MatlabClass::Int8: return NumberIn<std::int8_t>(data, index);
    case MatlabClass::Logical:
    case MatlabClass::Uint8: return NumberIn<std::uint8_t>(data, index);
    case MatlabClass::Int16: return NumberIn<std::int16_t>(data, index);
    case MatlabClass::Uint16: return NumberIn<std::uint16_t>(data, index);
    case MatlabClass::Int32: return NumberIn<std::int32_t>(data, index);
    case MatlabClass::Uint32: return NumberIn<std::uint32_t>(data, index);
    case MatlabClass::Int64: return NumberIn<std::int64_t>(data, index);
    case MatlabClass::Uint64: return NumberIn<std::uint64_t>(data, index);
    case MatlabClass::Char: return NumberIn<char16_t>(data, index);
    default: throw std::invalid_argument("a class without numbers");
    }
}

bool IsNumeric(int classId)
{
    return classId == MatlabClass::Logical ||
           (classId >= MatlabClass::Double && classId <= MatlabClass::Uint64);
}

bool SameItem(const MatlabValue& a, const MatlabValue& b, std::size_t index)
{
    const auto imaginary = [index](const MatlabValue& value) {
        return value.complex ? NumberAt(value.classId, value.imaginary, index) : 0.0;
    };
    return NumberAt(a.classId, a.real, index) == NumberAt(b.classId, b.real, index) &&
           imaginary(a) == imaginary(b);
}

template <typename Same> bool SameParts(const MatlabValue& a, const MatlabValue& b, Same same)
{
    return a.fields == b.fields &&
           std::equal(a.items.begin(), a.items.end(), b.items.begin(), b.items.end(), same);
}

void AppendCharacters(std::string& line, const std::u16string& text)
{
    static const char digits[] = "0123456789ABCDEF";
    for (const char16_t unit : text) {
        if (unit >= 32 && unit < 127) {
            line += static_cast<char>(unit);
            continue;
        }
        line += "\\u";
        for (int shift = 12; shift >= 0; shift -= 4)
            line += digits[unit >> shift & 15];
    }
}

void AppendNumbers(std::string& line, const MatlabValue& value)
{
    for (std::size_t i = 0; i < CountOf(value); ++i) {
        char text[80];
        std::snprintf(text, sizeof text, i > 0 ? " %.17g" : "%.17g", NumberAt(value.classId, value.real, i));
        line += text;
        if (!value.complex) continue;
        std::snprintf(text, sizeof text, "%+.17gi", NumberAt(value.classId, value.imaginary, i));
        line += text;
    }
}

// The place in MATLAB's order of the place `index` in the other one, whose last axis is fastest.
std::size_t ColumnMajorIndex(const MatlabLengths& lengths, std::size_t index)
{
    std::size_t result = 0;
    std::size_t stride = CountOf(lengths);
    for (std::size_t axis = lengths.size(); axis-- > 0;) {
        stride /= lengths[axis];
        result += index % lengths[axis] * stride;
        index /= lengths[axis];
    }
    return result;
}

template <typename T> std::vector<T> InColumnOrder(const MatlabLengths& lengths, const std::vector<T>& items)
{
    std::vector<T> result(items.size());
    for (std::size_t i = 0; i < items.size(); ++i)
        result[ColumnMajorIndex(lengths, i)] = items[i];
    return result;
}

template <typename T> std::vector<T> InRowOrder(const MatlabLengths& lengths, const std::vector<T>& items)
{
    std::vector<T> result(items.size());
    for (std::size_t i = 0; i < items.size(); ++i)
        result[i] = items[ColumnMajorIndex(lengths, i)];
    return result;
}

MatlabLengths LengthsOf(const Shape& shape)
{
    MatlabLengths lengths(shape.begin(), shape.end());
    while (lengths.size() < 2)
        lengths.insert(lengths.begin(), 1);
    return lengths;
}

Shape ShapeOf(const MatlabValue& value, const Array* like)
{
    if (like != nullptr && LengthsOf(like->shape) == value.lengths) return like->shape;
    Shape shape(value.lengths.begin(), value.lengths.end());
    if (shape.size() != 2 || shape[0] != 1) return shape;
    if (shape[1] == 1 && value.classId != MatlabClass::Cell) return {};
    return {shape[1]};
}

MatlabValue NumbersFromArray(const Array& array, const MatlabLengths& lengths)
{
    std::vector<double> real;
    std::vector<double> imaginary;
    for (std::size_t i = 0; i < CountOf(array); ++i) {
        const ComplexNumber number = ComplexAt(array, i);
        real.push_back(number.real);
        imaginary.push_back(number.imaginary);
    }
    real = InColumnOrder(lengths, real);
    if (array.type != ElementType::Complex) return DoubleValue(lengths, real);
    return ComplexValue(lengths, real, InColumnOrder(lengths, imaginary));
}

Array NumbersToArray(const MatlabValue& value, const Shape& shape)
{
    std::vector<double> real;
    std::vector<ComplexNumber> pairs;
    for (std::size_t i = 0; i < CountOf(value); ++i) {
        const std::size_t place = ColumnMajorIndex(value.lengths, i);
        real.push_back(NumberAt(value.classId, value.real, place));
        if (value.complex) pairs.push_back({real.back(), NumberAt(value.classId, value.imaginary, place)});
    }
    return value.complex ? ComplexArray(shape, pairs) : NumericArray(shape, real);
}

Array CellsToArray(const MatlabValue& value, const Array* like)
{
    const Shape shape = ShapeOf(value, like);
    const std::vector<MatlabValue> cells = InRowOrder(value.lengths, value.items);
    if (cells.empty()) return EmptyNestedArray(shape, Text(u""));
    const bool alike =
        like != nullptr && like->type == ElementType::Nested && like->items.size() == cells.size();
    std::vector<Array> items;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const Array* item = alike ? &like->items[i] : nullptr;
        items.push_back(cells[i].set ? ArrayFromMatlab(cells[i], item) : Text(u""));
    }
    return NestedArray(shape, std::move(items));
}

bool Refuse(std::string* reason, const char* text)
{
    if (reason != nullptr) *reason = text;
    return false;
}

} // namespace

std::size_t CountOf(const MatlabLengths& lengths)
{
    std::size_t count = 1;
    for (const std::size_t length : lengths)
        count *= length;
    return count;
}

std::size_t CountOf(const MatlabValue& value)
{
    return CountOf(value.lengths);
}

std::size_t MatlabItemBytes(int classId)
{
    switch (classId) {
    case MatlabClass::Logical:
    case MatlabClass::Int8:
    case MatlabClass::Uint8: return 1;
    case MatlabClass::Char:
    case MatlabClass::Int16:
    case MatlabClass::Uint16: return 2;
    case MatlabClass::Single:
    case MatlabClass::Int32:
    case MatlabClass::Uint32: return 4;
    case MatlabClass::Double:
    case MatlabClass::Int64:
    case MatlabClass::Uint64: return 8;
    default: return 0;
    }
}

const char* MatlabClassName(int classId)
{
    return classId >= 0 && classId <= MatlabClass::Object ? classNames[classId] : "unknown";
}

MatlabValue PlainValue(int classId, MatlabLengths lengths, const void* items, std::size_t bytes)
{
    CheckCount(bytes, CountOf(lengths) * MatlabItemBytes(classId));
    MatlabValue value;
    value.classId = classId;
    value.lengths = std::move(lengths);
    const auto* from = static_cast<const std::uint8_t*>(items);
    if (bytes > 0) value.real.assign(from, from + bytes);
    return value;
}

MatlabValue DoubleValue(MatlabLengths lengths, const std::vector<double>& items)
{
    return NumberValue(MatlabClass::Double, std::move(lengths), items);
}

MatlabValue ComplexValue(MatlabLengths lengths, const std::vector<double>& real,
                         const std::vector<double>& imaginary)
{
    MatlabValue value = DoubleValue(lengths, real);
    value.complex = true;
    value.imaginary = DoubleValue(std::move(lengths), imaginary).real;
    return value;
}

MatlabValue LogicalValue(MatlabLengths lengths, const std::vector<int>& items)
{
    return NumberValue(MatlabClass::Logical, std::move(lengths),
                       std::vector<std::uint8_t>(items.begin(), items.end()));
}

MatlabValue CharValue(MatlabLengths lengths, std::u16string_view text)
{
    return PlainValue(MatlabClass::Char, std::move(lengths), text.data(), text.size() * sizeof(char16_t));
}

MatlabValue TextValue(std::u16string_view text)
{
    return CharValue({1, text.size()}, text);
}

MatlabValue CellValue(MatlabLengths lengths, std::vector<MatlabValue> items)
{
    CheckCount(items.size(), CountOf(lengths));
    MatlabValue value;
    value.classId = MatlabClass::Cell;
    value.lengths = std::move(lengths);
    value.items = std::move(items);
    return value;
}

MatlabValue StructValue(MatlabLengths lengths, std::vector<std::string> fields,
                        std::vector<MatlabValue> items)
{
    CheckCount(items.size(), CountOf(lengths) * fields.size());
    MatlabValue value;
    value.classId = MatlabClass::Struct;
    value.lengths = std::move(lengths);
    value.fields = std::move(fields);
    value.items = std::move(items);
    return value;
}

MatlabValue UnsetValue()
{
    MatlabValue value;
    value.set = false;
    return value;
}

std::u16string TextOf(const MatlabValue& value)
{
    const std::vector<char16_t> units = ItemsOf<char16_t>(value);
    return {units.begin(), units.end()};
}

bool Identical(const MatlabValue& a, const MatlabValue& b)
{
    return a.set == b.set && a.classId == b.classId && a.lengths == b.lengths && a.complex == b.complex &&
           a.sparse == b.sparse && a.real == b.real && a.imaginary == b.imaginary &&
           SameParts(a, b, Identical);
}

bool SameValues(const MatlabValue& a, const MatlabValue& b)
{
    if (a.set != b.set || a.lengths != b.lengths || IsNumeric(a.classId) != IsNumeric(b.classId))
        return false;
    if (!IsNumeric(a.classId)) {
        return a.classId == b.classId && a.real == b.real &&
               SameParts(a, b, [](const MatlabValue& x, const MatlabValue& y) { return SameValues(x, y); });
    }
    for (std::size_t i = 0; i < CountOf(a); ++i) {
        if (!SameItem(a, b, i)) return false;
    }
    return true;
}

std::string Dump(const MatlabValue& value)
{
    if (!value.set) return "unset";
    std::string line = value.sparse ? "sparse " : "";
    line += value.className.empty() ? MatlabClassName(value.classId) : value.className.c_str();
    line += '[';
    for (std::size_t axis = 0; axis < value.lengths.size(); ++axis)
        line += (axis > 0 ? "x" : "") + std::to_string(value.lengths[axis]);
    line += "](";
    if (value.classId == MatlabClass::Char)
        AppendCharacters(line, TextOf(value));
    else if (IsNumeric(value.classId) && !value.sparse)
        AppendNumbers(line, value);
    for (std::size_t i = 0; i < value.items.size(); ++i) {
        if (i > 0) line += ' ';
        if (!value.fields.empty()) line += value.fields[i % value.fields.size()] + "=";
        line += Dump(value.items[i]);
    }
    return line + ")";
}

bool MatlabCanHold(const Array& array, std::string* reason)
{
    if (array.type == ElementType::Decimal || array.type == ElementType::Rational)
        return Refuse(reason, "MATLAB has no decimal numbers");
    if (array.type == ElementType::Char32) {
        for (std::size_t i = 0; i < CountOf(array); ++i) {
            if (CharacterAt(array, i) > 0xFFFF)
                return Refuse(reason, "MATLAB has no characters beyond U+FFFF");
        }
    }
    return std::all_of(array.items.begin(), array.items.end(),
                       [reason](const Array& item) { return MatlabCanHold(item, reason); });
}

MatlabValue MatlabFromArray(const Array& array)
{
    const MatlabLengths lengths = LengthsOf(array.shape);
    if (array.type == ElementType::Nested) {
        if (CountOf(array) == 0) return CellValue(lengths, {});
        std::vector<MatlabValue> items;
        for (const Array& item : array.items)
            items.push_back(MatlabFromArray(item));
        return CellValue(lengths, InColumnOrder(lengths, items));
    }
    if (IsCharacterType(array.type)) {
        const std::u16string text = TextOfArray(array);
        const std::vector<char16_t> units =
            InColumnOrder(lengths, std::vector<char16_t>(text.begin(), text.end()));
        return CharValue(lengths, {units.data(), units.size()});
    }
    if (array.type == ElementType::Bit) {
        const std::vector<double> numbers = InColumnOrder(lengths, RealsOf(array));
        return LogicalValue(lengths, {numbers.begin(), numbers.end()});
    }
    return NumbersFromArray(array, lengths);
}

Array ArrayFromMatlab(const MatlabValue& value, const Array* like)
{
    if (value.classId == MatlabClass::Cell) return CellsToArray(value, like);
    if (value.classId == MatlabClass::Char) {
        const std::vector<char16_t> units = InRowOrder(value.lengths, ItemsOf<char16_t>(value));
        return fake::TextOf(ShapeOf(value, like), {units.data(), units.size()});
    }
    if (!IsNumeric(value.classId) || value.sparse) throw std::invalid_argument(Dump(value));
    return NumbersToArray(value, ShapeOf(value, like));
}

} // namespace vantrel::fake
