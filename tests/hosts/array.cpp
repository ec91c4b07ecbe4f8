#include "hosts/array.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>

#include "hosts/atomic_vector.h"
#include "hosts/decimal.h"

namespace vantrel::fake {
namespace {

template <typename T> T Load(const Array& array, std::size_t index)
{
    T value;
    std::memcpy(&value, array.data.data() + index * sizeof(T), sizeof(T));
    return value;
}

template <typename T> void Store(Array& array, std::size_t index, T value)
{
    std::memcpy(array.data.data() + index * sizeof(T), &value, sizeof(T));
}

void RequireCount(const Shape& shape, std::size_t given)
{
    if (CountOf(shape) != given) throw std::invalid_argument("the number of items does not fit the shape");
}

Array AllocatedArray(int type, Shape shape)
{
    Array array;
    array.type = type;
    array.shape = std::move(shape);
    array.data.resize(DataBytes(type, CountOf(array.shape)));
    return array;
}

std::int64_t IntegerAt(const Array& array, std::size_t index)
{
    switch (array.type) {
    case ElementType::Bit: return array.data[index / 8] >> (7 - index % 8) & 1;
    case ElementType::Int8: return Load<std::int8_t>(array, index);
    case ElementType::Int16: return Load<std::int16_t>(array, index);
    default: return Load<std::int32_t>(array, index);
    }
}

void StoreInteger(Array& array, std::size_t index, std::int64_t value)
{
    switch (array.type) {
    case ElementType::Bit:
        if (value != 0)
            array.data[index / 8] = static_cast<std::uint8_t>(array.data[index / 8] | 128 >> index % 8);
        break;
    case ElementType::Int8: Store(array, index, static_cast<std::int8_t>(value)); break;
    case ElementType::Int16: Store(array, index, static_cast<std::int16_t>(value)); break;
    default: Store(array, index, static_cast<std::int32_t>(value)); break;
    }
}

bool FitsInteger(int type, double value)
{
    switch (type) {
    case ElementType::Bit: return value == 0 || value == 1;
    case ElementType::Int8: return value >= -128 && value <= 127;
    case ElementType::Int16: return value >= -32768 && value <= 32767;
    default: return value >= -2147483648.0 && value <= 2147483647.0;
    }
}

int SmallestType(const std::vector<double>& values)
{
    int type = ElementType::Bit;
    for (const double value : values) {
        if (!(std::floor(value) == value) || !FitsInteger(ElementType::Int32, value) ||
            (value == 0 && std::signbit(value))) {
            return ElementType::Float;
        }
        while (!FitsInteger(type, value))
            ++type;
    }
    return type;
}

std::string NumberText(double value)
{
    char buffer[40];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    return {buffer, end};
}

std::string Quoted(const std::u16string& text)
{
    std::string out = "\"";
    for (const char16_t unit : text) {
        if (unit >= 32 && unit < 127 && unit != '"' && unit != '\\') {
            out += static_cast<char>(unit);
        } else {
            char buffer[8];
            const auto end =
                std::to_chars(buffer, buffer + sizeof buffer, static_cast<unsigned>(unit), 16).ptr;
            out += "\\{" + std::string(buffer, end) + "}";
        }
    }
    return out + "\"";
}

const char* TypeName(int type)
{
    static const char* const names[] = {"atomic",  "bit",      "int8",   "int16",  "int32",
                                        "float",   "nested",   "char8",  "char16", "char32",
                                        "complex", "rational", "decimal"};
    return type >= 0 && type <= 12 ? names[type] : "unknown";
}

std::string DumpItem(const Array& array, std::size_t index)
{
    if (IsRealType(array.type)) return NumberText(RealAt(array, index));
    if (array.type == ElementType::Complex) {
        const ComplexNumber value = ComplexAt(array, index);
        return NumberText(value.real) + "J" + NumberText(value.imaginary);
    }
    return array.type == ElementType::Decimal ? DecimalTextAt(array, index) : "?";
}

bool SameReal(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool SameSimpleItems(const Array& a, const Array& b)
{
    const std::size_t count = CountOf(a);
    if (IsCharacterType(a.type) != IsCharacterType(b.type)) return false;
    for (std::size_t i = 0; i < count; ++i) {
        if (IsCharacterType(a.type)) {
            if (CharacterAt(a, i) != CharacterAt(b, i)) return false;
        } else if (a.type == ElementType::Decimal || b.type == ElementType::Decimal) {
            if (a.type != b.type || DecimalTextAt(a, i) != DecimalTextAt(b, i)) return false;
        } else {
            const ComplexNumber x = ComplexAt(a, i);
            const ComplexNumber y = ComplexAt(b, i);
            if (!SameReal(x.real, y.real) || !SameReal(x.imaginary, y.imaginary)) return false;
        }
    }
    return true;
}

template <typename Compare> bool SameItems(const Array& a, const Array& b, Compare compare)
{
    return std::equal(a.items.begin(), a.items.end(), b.items.begin(), b.items.end(), compare);
}

} // namespace

std::size_t CountOf(const Shape& shape)
{
    std::size_t count = 1;
    bool empty = false;
    for (const std::int64_t length : shape) {
        if (length < 0) throw std::length_error("an axis has a negative length");
        if (length == 0) empty = true;
    }
    if (empty) return 0;
    for (const std::int64_t length : shape) {
        const auto factor = static_cast<std::size_t>(length);
        if (count > std::numeric_limits<std::size_t>::max() / factor)
            throw std::length_error("the shape is too big");
        count *= factor;
    }
    return count;
}

std::size_t CountOf(const Array& array)
{
    return CountOf(array.shape);
}

std::size_t DataBytes(int type, std::size_t count)
{
    if (type == ElementType::Bit) return count / 8 + (count % 8 != 0);
    std::size_t size = 16;
    switch (type) {
    case ElementType::AtomicCharacter:
    case ElementType::Int8:
    case ElementType::Char8: size = 1; break;
    case ElementType::Int16:
    case ElementType::Char16: size = 2; break;
    case ElementType::Int32:
    case ElementType::Char32: size = 4; break;
    case ElementType::Float: size = 8; break;
    case ElementType::Nested:
        size = 8;
        count = std::max<std::size_t>(count, 1);
        break;
    default: break;
    }
    if (count > std::numeric_limits<std::size_t>::max() / size)
        throw std::length_error("the array is too big");
    return count * size;
}

Array RawArray(int type, Shape shape, std::vector<std::uint8_t> data)
{
    if (data.size() != DataBytes(type, CountOf(shape)))
        throw std::invalid_argument("wrong number of data bytes");
    Array array;
    array.type = type;
    array.shape = std::move(shape);
    array.data = std::move(data);
    return array;
}

Array BooleanArray(Shape shape, const std::vector<int>& bits)
{
    RequireCount(shape, bits.size());
    Array array = AllocatedArray(ElementType::Bit, std::move(shape));
    for (std::size_t i = 0; i < bits.size(); ++i)
        StoreInteger(array, i, bits[i]);
    return array;
}

Array IntegerArray(int type, Shape shape, const std::vector<std::int64_t>& values)
{
    RequireCount(shape, values.size());
    Array array = AllocatedArray(type, std::move(shape));
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!FitsInteger(type, static_cast<double>(values[i])))
            throw std::invalid_argument("the value does not fit");
        StoreInteger(array, i, values[i]);
    }
    return array;
}

Array FloatArray(Shape shape, const std::vector<double>& values)
{
    RequireCount(shape, values.size());
    Array array = AllocatedArray(ElementType::Float, std::move(shape));
    if (!values.empty()) std::memcpy(array.data.data(), values.data(), array.data.size());
    return array;
}

Array ComplexArray(Shape shape, const std::vector<ComplexNumber>& values)
{
    RequireCount(shape, values.size());
    Array array = AllocatedArray(ElementType::Complex, std::move(shape));
    if (!values.empty()) std::memcpy(array.data.data(), values.data(), array.data.size());
    return array;
}

Array DecimalArray(Shape shape, const std::vector<std::string>& texts)
{
    RequireCount(shape, texts.size());
    Array array = AllocatedArray(ElementType::Decimal, std::move(shape));
    for (std::size_t i = 0; i < texts.size(); ++i) {
        DecimalBytes bytes;
        if (!DecimalFromText(texts[i], bytes))
            throw std::invalid_argument("not a decimal number: " + texts[i]);
        Store(array, i, bytes);
    }
    return array;
}

Array CharacterArray(int type, Shape shape, std::u32string_view text)
{
    RequireCount(shape, text.size());
    Array array = AllocatedArray(type, std::move(shape));
    for (std::size_t i = 0; i < text.size(); ++i) {
        switch (type) {
        case ElementType::AtomicCharacter:
        case ElementType::Char8: Store(array, i, static_cast<std::uint8_t>(text[i])); break;
        case ElementType::Char16: Store(array, i, static_cast<char16_t>(text[i])); break;
        default: Store(array, i, text[i]); break;
        }
    }
    return array;
}

Array NestedArray(Shape shape, std::vector<Array> items)
{
    RequireCount(shape, items.size());
    if (items.empty()) throw std::invalid_argument("an empty nested array needs its prototype");
    Array array;
    array.type = ElementType::Nested;
    array.shape = std::move(shape);
    array.items = std::move(items);
    return array;
}

Array EmptyNestedArray(Shape shape, Array prototype)
{
    RequireCount(shape, 0);
    Array array;
    array.type = ElementType::Nested;
    array.shape = std::move(shape);
    array.items.push_back(std::move(prototype));
    return array;
}

Array TextOf(Shape shape, std::u16string_view text)
{
    RequireCount(shape, text.size());
    const bool narrow = std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 256; });
    Array array = AllocatedArray(narrow ? ElementType::Char8 : ElementType::Char16, std::move(shape));
    if (narrow) {
        std::transform(text.begin(), text.end(), array.data.begin(),
                       [](char16_t unit) { return static_cast<std::uint8_t>(unit); });
    } else {
        std::memcpy(array.data.data(), text.data(), array.data.size());
    }
    return array;
}

Array Text(std::u16string_view text)
{
    return TextOf({static_cast<std::int64_t>(text.size())}, text);
}

Array NumericArray(Shape shape, const std::vector<double>& values)
{
    const int type = SmallestType(values);
    if (type == ElementType::Float) return FloatArray(std::move(shape), values);
    RequireCount(shape, values.size());
    Array array = AllocatedArray(type, std::move(shape));
    for (std::size_t i = 0; i < values.size(); ++i)
        StoreInteger(array, i, static_cast<std::int64_t>(values[i]));
    return array;
}

Array Number(double value)
{
    return NumericArray({}, {value});
}

Array EmptyVector()
{
    return NumericArray({0}, {});
}

bool IsCharacterType(int type)
{
    return type == ElementType::AtomicCharacter ||
           (type >= ElementType::Char8 && type <= ElementType::Char32);
}

bool IsRealType(int type)
{
    return type >= ElementType::Bit && type <= ElementType::Float;
}

bool IsNumericType(int type)
{
    return IsRealType(type) || type == ElementType::Complex || type == ElementType::Decimal;
}

double RealAt(const Array& array, std::size_t index)
{
    if (array.type == ElementType::Float) return Load<double>(array, index);
    if (array.type == ElementType::Complex) return Load<double>(array, index * 2);
    return static_cast<double>(IntegerAt(array, index));
}

ComplexNumber ComplexAt(const Array& array, std::size_t index)
{
    if (array.type == ElementType::Complex) return Load<ComplexNumber>(array, index);
    return {RealAt(array, index), 0};
}

char32_t CharacterAt(const Array& array, std::size_t index)
{
    switch (array.type) {
    case ElementType::AtomicCharacter: return FromAtomic(array.data[index]);
    case ElementType::Char8: return array.data[index];
    case ElementType::Char16: return Load<char16_t>(array, index);
    default: return Load<char32_t>(array, index);
    }
}

std::string DecimalTextAt(const Array& array, std::size_t index)
{
    return DecimalToText(Load<DecimalBytes>(array, index));
}

std::u16string TextOfArray(const Array& array)
{
    const std::size_t count = CountOf(array);
    std::u16string text;
    text.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const char32_t c = CharacterAt(array, i);
        if (c < 0x10000) {
            text += static_cast<char16_t>(c);
        } else {
            text += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            text += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
        }
    }
    return text;
}

std::vector<double> RealsOf(const Array& array)
{
    std::vector<double> values(CountOf(array));
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = RealAt(array, i);
    return values;
}

Array ItemAt(const Array& array, std::size_t index)
{
    if (array.type == ElementType::Nested) return array.items[index];
    Array item = AllocatedArray(array.type, {});
    if (array.type == ElementType::Bit) {
        StoreInteger(item, 0, IntegerAt(array, index));
    } else {
        std::memcpy(item.data.data(), array.data.data() + index * item.data.size(), item.data.size());
    }
    return item;
}

bool IdenticalArrays(const Array& a, const Array& b)
{
    if (a.type != b.type || a.shape != b.shape) return false;
    if (a.type == ElementType::Nested) return SameItems(a, b, IdenticalArrays);
    if (a.type != ElementType::Bit) return a.data == b.data;
    const std::size_t count = CountOf(a);
    for (std::size_t i = 0; i < count; ++i) {
        if (IntegerAt(a, i) != IntegerAt(b, i)) return false;
    }
    return true;
}

bool SameValues(const Array& a, const Array& b)
{
    if (a.shape != b.shape) return false;
    if (a.type == ElementType::Nested || b.type == ElementType::Nested) {
        return a.type == b.type && SameItems(a, b, SameValues);
    }
    return SameSimpleItems(a, b);
}

std::string Dump(const Array& array)
{
    std::string out = TypeName(array.type);
    if (!array.shape.empty()) {
        out += "[";
        for (std::size_t i = 0; i < array.shape.size(); ++i) {
            out += (i == 0 ? "" : " ") + std::to_string(array.shape[i]);
        }
        out += "]";
    }
    if (IsCharacterType(array.type)) return out + Quoted(TextOfArray(array));
    out += "(";
    const std::size_t count = array.type == ElementType::Nested ? array.items.size() : CountOf(array);
    for (std::size_t i = 0; i < count; ++i) {
        out += i == 0 ? "" : " ";
        out += array.type == ElementType::Nested ? Dump(array.items[i]) : DumpItem(array, i);
    }
    return out + ")";
}

bool ToAtomicCharacters(Array& array, char32_t* missing)
{
    if (array.type == ElementType::Nested) {
        return std::all_of(array.items.begin(), array.items.end(),
                           [missing](Array& item) { return ToAtomicCharacters(item, missing); });
    }
    if (!IsCharacterType(array.type) || array.type == ElementType::AtomicCharacter) return true;
    std::vector<std::uint8_t> positions(CountOf(array));
    for (std::size_t i = 0; i < positions.size(); ++i) {
        const int position = ToAtomic(CharacterAt(array, i));
        if (position < 0) {
            *missing = CharacterAt(array, i);
            return false;
        }
        positions[i] = static_cast<std::uint8_t>(position);
    }
    array.type = ElementType::AtomicCharacter;
    array.data = std::move(positions);
    return true;
}

void FromAtomicCharacters(Array& array)
{
    for (Array& item : array.items)
        FromAtomicCharacters(item);
    if (array.type == ElementType::AtomicCharacter) array = TextOf(array.shape, TextOfArray(array));
}

} // namespace vantrel::fake
