#include "hosts/fake_primitives.h"

#include <algorithm>
#include <cstring>
#include <numeric>

#include "hosts/fake_dyalog.h"
#include "hosts/fake_format.h"

namespace vantrel::fake {
namespace {

// --- picking items ---

Array WithShape(Array array, Shape shape)
{
    array.shape = std::move(shape);
    return array;
}

Shape VectorShape(std::size_t count)
{
    return {static_cast<std::int64_t>(count)};
}

std::size_t ItemBytes(int type)
{
    return DataBytes(type, 1);
}

// An array of the argument's items in another order; the indices count them in row-major order.
Array Pick(const Array& array, Shape shape, const std::vector<std::size_t>& indices)
{
    if (array.type == ElementType::Nested) {
        std::vector<Array> items;
        for (const std::size_t index : indices)
            items.push_back(array.items[index]);
        if (items.empty()) return EmptyNestedArray(std::move(shape), array.items[0]);
        return NestedArray(std::move(shape), std::move(items));
    }
    if (array.type == ElementType::Bit) {
        std::vector<int> bits;
        for (const std::size_t index : indices)
            bits.push_back(RealAt(array, index) != 0);
        return BooleanArray(std::move(shape), bits);
    }
    const std::size_t size = ItemBytes(array.type);
    std::vector<std::uint8_t> data(size * indices.size());
    for (std::size_t i = 0; i < indices.size(); ++i) {
        std::memcpy(data.data() + i * size, array.data.data() + indices[i] * size, size);
    }
    return RawArray(array.type, std::move(shape), std::move(data));
}

// --- joining scalars ---

bool IsSimpleScalar(const Array& array)
{
    return array.type != ElementType::Nested && array.shape.empty();
}

char32_t MaxCharacter(const std::vector<Array>& scalars)
{
    char32_t most = 0;
    for (const Array& scalar : scalars)
        most = std::max(most, CharacterAt(scalar, 0));
    return most;
}

Array JoinCharacters(Shape shape, const std::vector<Array>& scalars)
{
    std::u32string text;
    for (const Array& scalar : scalars)
        text += CharacterAt(scalar, 0);
    const char32_t most = MaxCharacter(scalars);
    const int type = most < 0x100     ? ElementType::Char8
                     : most < 0x10000 ? ElementType::Char16
                                      : ElementType::Char32;
    return CharacterArray(type, std::move(shape), text);
}

Array JoinNumbers(Shape shape, const std::vector<Array>& scalars, int widest)
{
    if (widest == ElementType::Decimal) {
        std::vector<std::string> texts;
        for (const Array& scalar : scalars)
            texts.push_back(DecimalTextAt(scalar, 0));
        return DecimalArray(std::move(shape), texts);
    }
    std::vector<ComplexNumber> values;
    std::vector<double> reals;
    for (const Array& scalar : scalars) {
        values.push_back(ComplexAt(scalar, 0));
        reals.push_back(values.back().real);
    }
    return widest == ElementType::Complex ? ComplexArray(std::move(shape), values)
                                          : NumericArray(std::move(shape), reals);
}

// One array of all the items: simple where they are simple scalars of one kind, else nested. Never called with none.
Array Join(Shape shape, std::vector<Array> items)
{
    const bool simple = std::all_of(items.begin(), items.end(), IsSimpleScalar);
    const auto ofKind = [&items](auto isKind) {
        return std::all_of(items.begin(), items.end(), [&](const Array& item) { return isKind(item.type); });
    };
    if (simple && ofKind(IsCharacterType)) return JoinCharacters(std::move(shape), items);
    if (simple && ofKind(IsNumericType)) {
        int widest = ElementType::Bit;
        bool decimalWithOthers = false;
        for (const Array& item : items) {
            widest = std::max(widest, item.type);
            decimalWithOthers |=
                (item.type == ElementType::Decimal) != (items[0].type == ElementType::Decimal);
        }
        if (!decimalWithOthers) return JoinNumbers(std::move(shape), items, widest);
    }
    return NestedArray(std::move(shape), std::move(items));
}

Array Fill(const Array& like)
{
    if (like.type == ElementType::Nested) return like.items[0];
    return IsCharacterType(like.type) ? TextOf({}, u" ") : Number(0);
}

// --- the structural primitives ---

Array Ravel(const Array& array)
{
    return WithShape(array, VectorShape(CountOf(array)));
}

Array First(const Array& array)
{
    return CountOf(array) == 0 ? Fill(array) : ItemAt(array, 0);
}

Array Enclose(const Array& array)
{
    return IsSimpleScalar(array) ? array : NestedArray({}, {array});
}

void CollectLeaves(const Array& array, std::vector<Array>& leaves)
{
    const std::size_t count = CountOf(array);
    for (std::size_t i = 0; i < count; ++i) {
        if (array.type == ElementType::Nested)
            CollectLeaves(array.items[i], leaves);
        else
            leaves.push_back(ItemAt(array, i));
    }
}

Array Enlist(const Array& array)
{
    if (array.type != ElementType::Nested) return Ravel(array);
    std::vector<Array> leaves;
    CollectLeaves(array, leaves);
    if (leaves.empty()) return EmptyVector();
    const Shape shape = VectorShape(leaves.size());
    return Join(shape, std::move(leaves));
}

Array ReverseAlong(const Array& array, std::size_t axis)
{
    const std::size_t count = CountOf(array);
    if (array.shape.empty() || count == 0) return array;
    const auto length = static_cast<std::size_t>(array.shape[axis]);
    const std::size_t stride =
        CountOf(Shape(array.shape.begin() + static_cast<std::ptrdiff_t>(axis) + 1, array.shape.end()));
    std::vector<std::size_t> indices(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t along = i / stride % length;
        indices[i] = i - along * stride + (length - 1 - along) * stride;
    }
    return Pick(array, array.shape, indices);
}

Array Transpose(const Array& array)
{
    const Shape shape(array.shape.rbegin(), array.shape.rend());
    std::vector<std::size_t> indices(CountOf(array));
    for (std::size_t i = 0; i < indices.size(); ++i) {
        std::size_t rest = i;
        std::size_t from = 0;
        std::size_t stride = 1;
        // The last axis of the result is the argument's first, whose stride is the largest.
        for (std::size_t axis = 0; axis < shape.size(); ++axis) {
            std::size_t block = 1;
            for (std::size_t k = axis + 1; k < shape.size(); ++k)
                block *= static_cast<std::size_t>(shape[k]);
            from += rest / block * stride;
            rest %= block;
            stride *= static_cast<std::size_t>(shape[axis]);
        }
        indices[i] = from;
    }
    return Pick(array, shape, indices);
}

// --- mix ---

// The items' axes, each as long as the longest; false where the ranks differ.
bool MixedShape(const Array& array, Shape& itemShape)
{
    bool seen = false;
    for (const Array& item : array.items) {
        if (item.shape.empty()) continue;
        if (seen && item.shape.size() != itemShape.size()) return false;
        itemShape.resize(item.shape.size());
        seen = true;
        for (std::size_t k = 0; k < itemShape.size(); ++k)
            itemShape[k] = std::max(itemShape[k], item.shape[k]);
    }
    return true;
}

void AppendPadded(const Array& item, const Shape& shape, std::vector<Array>& out)
{
    const std::size_t count = CountOf(shape);
    for (std::size_t i = 0; i < count; ++i) {
        std::size_t rest = i;
        std::size_t from = 0;
        std::size_t stride = 1;
        bool inside = true;
        for (std::size_t k = shape.size(); k-- > 0;) {
            const std::size_t at = rest % static_cast<std::size_t>(shape[k]);
            rest /= static_cast<std::size_t>(shape[k]);
            const std::size_t length = item.shape.empty() ? 1 : static_cast<std::size_t>(item.shape[k]);
            inside = inside && at < length;
            from += at * stride;
            stride *= length;
        }
        out.push_back(inside ? ItemAt(item, from) : Fill(item));
    }
}

std::int64_t Mix(const Array& array, Array& result)
{
    result = array;
    if (array.type != ElementType::Nested ||
        std::all_of(array.items.begin(), array.items.end(), IsSimpleScalar))
        return 0;
    Shape itemShape;
    if (!MixedShape(array, itemShape)) return ErrorNumber::Rank;
    Shape shape = array.shape;
    shape.insert(shape.end(), itemShape.begin(), itemShape.end());
    std::vector<Array> items;
    const std::size_t count = CountOf(array);
    for (std::size_t i = 0; i < count; ++i)
        AppendPadded(array.items[i], itemShape, items);
    result = items.empty() ? EmptyNestedArray(std::move(shape), First(array.items[0]))
                           : Join(std::move(shape), std::move(items));
    // An empty result of simple items is simple.
    if (result.type == ElementType::Nested && CountOf(result) == 0 && IsSimpleScalar(result.items[0])) {
        result = Pick(WithShape(result.items[0], result.shape), result.shape, {});
    }
    return 0;
}

// --- grades ---

int CompareItems(const Array& array, std::size_t a, std::size_t b)
{
    if (IsCharacterType(array.type)) {
        const char32_t x = CharacterAt(array, a);
        const char32_t y = CharacterAt(array, b);
        return x < y ? -1 : x > y;
    }
    const double x = RealAt(array, a);
    const double y = RealAt(array, b);
    return x < y ? -1 : x > y;
}

std::int64_t Grade(const Array& array, std::int64_t indexOrigin, bool down, Array& result)
{
    if (!IsCharacterType(array.type) && !IsRealType(array.type)) return ErrorNumber::Domain;
    if (array.shape.empty()) return ErrorNumber::Rank;
    const auto rows = static_cast<std::size_t>(array.shape[0]);
    const std::size_t cell = rows == 0 ? 0 : CountOf(array) / rows;
    std::vector<std::size_t> order(rows);
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        for (std::size_t i = 0; i < cell; ++i) {
            const int comparison = CompareItems(array, a * cell + i, b * cell + i);
            if (comparison != 0) return down ? comparison > 0 : comparison < 0;
        }
        return false;
    });
    std::vector<double> values;
    for (const std::size_t index : order)
        values.push_back(static_cast<double>(index) + static_cast<double>(indexOrigin));
    result = NumericArray(VectorShape(rows), values);
    return 0;
}

// --- verify and fix ---

bool IsSeparator(char16_t unit)
{
    return unit == u' ' || unit == u'\r' || unit == u'\n' || unit == u'\t';
}

std::vector<std::u16string> SplitWords(const std::u16string& text)
{
    std::vector<std::u16string> words;
    bool open = false;
    for (const char16_t unit : text) {
        if (IsSeparator(unit)) {
            open = false;
        } else {
            if (!open) words.emplace_back();
            words.back() += unit;
            open = true;
        }
    }
    return words;
}

std::int64_t VerifyAndFix(const Array& array, Array& result)
{
    if (!IsCharacterType(array.type)) return ErrorNumber::Domain;
    if (array.shape.size() > 1) return ErrorNumber::Rank;
    std::vector<int> valid;
    std::vector<ComplexNumber> values;
    bool complex = false;
    for (const std::u16string& word : SplitWords(TextOfArray(array))) {
        ComplexNumber value;
        valid.push_back(ParseNumber(word, value));
        values.push_back(valid.back() != 0 ? value : ComplexNumber{});
        complex = complex || values.back().imaginary != 0;
    }
    std::vector<double> reals;
    for (const ComplexNumber& value : values)
        reals.push_back(value.real);
    const Shape shape = VectorShape(values.size());
    result = NestedArray({2}, {BooleanArray(shape, valid),
                               complex ? ComplexArray(shape, values) : NumericArray(shape, reals)});
    return 0;
}

} // namespace

std::int64_t ComputePrimitive(std::int64_t code, const Array& argument, const LanguageSettings& settings,
                              Array& result)
{
    switch (code) {
    case PrimitiveCode::Ravel: result = Ravel(argument); return 0;
    case PrimitiveCode::First: result = First(argument); return 0;
    case PrimitiveCode::Enclose: result = Enclose(argument); return 0;
    case PrimitiveCode::Enlist: result = Enlist(argument); return 0;
    case PrimitiveCode::Reverse:
        result = ReverseAlong(argument, argument.shape.empty() ? 0 : argument.shape.size() - 1);
        return 0;
    case PrimitiveCode::ReverseFirst: result = ReverseAlong(argument, 0); return 0;
    case PrimitiveCode::Transpose: result = Transpose(argument); return 0;
    case PrimitiveCode::Format: result = FormatArray(argument, settings.printPrecision); return 0;
    case PrimitiveCode::Mix: return Mix(argument, result);
    case PrimitiveCode::GradeUp: return Grade(argument, settings.indexOrigin, false, result);
    case PrimitiveCode::GradeDown: return Grade(argument, settings.indexOrigin, true, result);
    case PrimitiveCode::VerifyAndFix: return VerifyAndFix(argument, result);
    default: return ErrorNumber::Nonce;
    }
}

} // namespace vantrel::fake
