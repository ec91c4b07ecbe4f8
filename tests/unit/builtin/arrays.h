// What the tests of this room share: a context without the high minus, and arrays made in it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "entry/memory.h"
#include "model/primitives.h"
#include "model/scdr.h"
#include "unit/support/test_context.h"
#include "unit/support/trees.h"

namespace vantrel::test {

class Arrays : public ::testing::Test {
protected:
    Arrays() { environment.ViewCapabilities = 0; }

    // Blanks or zeros; the children of a nested array are still to be set.
    ScdrPtr Make(std::uint32_t type, const Shape& shape)
    {
        return AllocateScdr(&context, nullptr, type, static_cast<std::int32_t>(shape.size()), shape.data(),
                            true);
    }
    ScdrPtr Characters(std::u16string_view text) { return test::Characters(&context, text); }
    ScdrPtr Characters(const Shape& shape, std::u16string_view text)
    {
        return test::Characters(&context, shape, text);
    }
    ScdrPtr Integers(const Shape& shape, const std::vector<std::int64_t>& items)
    {
        return test::Integers(&context, shape, items);
    }
    ScdrPtr Integers(const std::vector<std::int64_t>& items) { return Integers({std::ssize(items)}, items); }
    ScdrPtr Reals(const Shape& shape, const std::vector<double>& items)
    {
        return test::Reals(&context, shape, items);
    }
    ScdrPtr Reals(const std::vector<double>& items) { return Reals({std::ssize(items)}, items); }
    ScdrPtr Complexes(const Shape& shape, const std::vector<double>& pairs)
    {
        return test::Complexes(&context, shape, pairs);
    }
    // Bits as text: "1011".
    ScdrPtr Booleans(const Shape& shape, std::string_view bits)
    {
        std::vector<int> values;
        for (const char bit : bits)
            values.push_back(bit == '1' ? 1 : 0);
        return test::Booleans(&context, shape, values);
    }
    ScdrPtr Booleans(std::string_view bits) { return Booleans({std::ssize(bits)}, bits); }
    template <typename... Children> ScdrPtr Nested(const Shape& shape, Children... children)
    {
        return test::Nested(&context, shape, Items(std::move(children)...));
    }
    template <typename... Children> ScdrPtr NestedVector(Children... children)
    {
        return Nested({static_cast<std::int64_t>(sizeof...(children))}, std::move(children)...);
    }

    VTERROR_CODE TakeError() { return tested.TakeError(); }

    TestContext tested;
    LangEnv& environment = tested.langEnv;
    EditContext& context = tested.context;
};

inline Shape ShapeOf(const Scdr& node)
{
    return {node.Shape, node.Shape + node.Rank};
}

template <typename Item> std::vector<Item> ItemsOf(const Scdr& node)
{
    const auto* data = static_cast<const Item*>(node.data);
    return {data, data + node.ElementCount * (node.Type == TypeComplex ? 2 : 1)};
}

inline std::u16string TextOf(const Scdr& node)
{
    return {static_cast<const char16_t*>(node.data), static_cast<std::size_t>(node.ElementCount)};
}

inline std::string BitsOf(const Scdr& node)
{
    std::string bits;
    for (std::int64_t i = 0; i < node.ElementCount; ++i)
        bits += GetBit(node.data, i) ? '1' : '0';
    return bits;
}

} // namespace vantrel::test
