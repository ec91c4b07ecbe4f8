// Arrays for the tests of this room, and the context they live in.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "entry/memory.h"
#include "model/primitives.h"
#include "model/scdr.h"

namespace vantrel::test {

using Shape = std::vector<std::int64_t>;

class Arrays : public ::testing::Test {
protected:
    Arrays()
    {
        context.langEnv = &environment;
        context.printPrecision = 10;
    }

    ScdrPtr Make(std::uint32_t type, const Shape& shape)
    {
        return AllocateScdr(&context, nullptr, type, static_cast<std::int32_t>(shape.size()), shape.data(), true);
    }

    ScdrPtr Characters(std::u16string_view text) { return Characters({static_cast<std::int64_t>(text.size())}, text); }
    ScdrPtr Characters(const Shape& shape, std::u16string_view text) { return Filled<char16_t>(TypeCharacter, shape, text); }
    ScdrPtr Integers(const Shape& shape, const std::vector<std::int64_t>& items)
    {
        return Filled<std::int64_t>(TypeInteger, shape, items);
    }
    ScdrPtr Integers(const std::vector<std::int64_t>& items) { return Integers({Length(items)}, items); }
    ScdrPtr Reals(const Shape& shape, const std::vector<double>& items) { return Filled<double>(TypeReal, shape, items); }
    ScdrPtr Reals(const std::vector<double>& items) { return Reals({Length(items)}, items); }
    // Pairs of real and imaginary parts.
    ScdrPtr Complexes(const Shape& shape, const std::vector<double>& pairs) { return Filled<double>(TypeComplex, shape, pairs); }
    ScdrPtr Booleans(const Shape& shape, std::string_view bits)
    {
        ScdrPtr node = Make(TypeBoolean, shape);
        EXPECT_EQ(node->ElementCount, static_cast<std::int64_t>(bits.size()));
        void* const data = WritableData(*node);
        for (std::size_t i = 0; i < bits.size(); ++i) SetBit(data, static_cast<std::int64_t>(i), bits[i] == '1');
        return node;
    }
    ScdrPtr Booleans(std::string_view bits) { return Booleans({static_cast<std::int64_t>(bits.size())}, bits); }

    template <typename... Items> ScdrPtr Nested(const Shape& shape, Items&&... items)
    {
        ScdrPtr node = Make(TypeNested, shape);
        EXPECT_EQ(ChildCount(*node), static_cast<std::int64_t>(sizeof...(items)));
        std::int64_t index = 0;
        (SetChild(*node, index++, std::forward<Items>(items)), ...);
        return node;
    }
    template <typename... Items> ScdrPtr NestedVector(Items&&... items)
    {
        return Nested({static_cast<std::int64_t>(sizeof...(items))}, std::forward<Items>(items)...);
    }

    VTERROR_CODE TakeError() { return std::exchange(environment.ErrorCode, VTERROR_CODE::NoError); }

    LangEnv environment = {};
    EditContext context;

private:
    template <typename Items> static std::int64_t Length(const Items& items) { return static_cast<std::int64_t>(items.size()); }
    template <typename Item, typename Items> ScdrPtr Filled(std::uint32_t type, const Shape& shape, const Items& items)
    {
        ScdrPtr node = Make(type, shape);
        const std::size_t perElement = type == TypeComplex ? 2 : 1;
        EXPECT_EQ(static_cast<std::size_t>(node->ElementCount) * perElement, items.size());
        std::copy(items.begin(), items.end(), static_cast<Item*>(WritableData(*node)));
        return node;
    }
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
    for (std::int64_t i = 0; i < node.ElementCount; ++i) bits += GetBit(node.data, i) ? '1' : '0';
    return bits;
}

// A readable picture of any array: type letter, shape, items.
inline std::string Picture(const Scdr& node)
{
    std::string text;
    for (const std::int64_t length : ShapeOf(node)) text += std::to_string(length) + ' ';
    switch (node.Type) {
    case TypeNested:
        text += "N(";
        for (std::int64_t i = 0; i < ChildCount(node); ++i) text += (i > 0 ? " | " : "") + Picture(*Children(node)[i]);
        return text + ')';
    case TypeCharacter: text += "C'"; for (const char16_t unit : TextOf(node)) text += static_cast<char>(unit); return text + '\'';
    case TypeBoolean: return text + "B" + BitsOf(node);
    case TypeInteger: text += "I"; for (const auto item : ItemsOf<std::int64_t>(node)) text += ',' + std::to_string(item); return text;
    default: text += node.Type == TypeReal ? "R" : "J"; for (const auto item : ItemsOf<double>(node)) text += ',' + std::to_string(item); return text;
    }
}

// Runs `work` with the first allocation failing, then the second, until a run meets no fault; once with a single failure and once with
// all later ones failing too. `work` answers whether it succeeded and must leave no block behind.
template <typename Work> void SweepAllocationFaults(Work work)
{
    for (const bool sticky : {false, true}) {
        for (std::int64_t nth = 1;; ++nth) {
            const std::int64_t before = LiveAllocations();
            ArmAllocationFault(nth, sticky);
            const bool done = work();
            const bool fired = DisarmAllocationFault() > 0;
            EXPECT_EQ(LiveAllocations(), before) << "fault " << nth;
            EXPECT_EQ(done, !fired) << "fault " << nth;
            if (!fired) break;
        }
    }
}

} // namespace vantrel::test
