#include <cmath>
#include <limits>
#include <numeric>

#include "unit/builtin/structural_fixture.h"

namespace vantrel::test {
namespace {

using Grade = Structural;

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

TEST_F(Grade, CountsFromTheIndexOrigin)
{
    EXPECT_EQ(Run(BuiltinGradeUp, *Characters(u"bca")), "Integer[3]3 1 2");
    context.indexOrigin = 0;
    EXPECT_EQ(Run(BuiltinGradeUp, *Characters(u"bca")), "Integer[3]2 0 1");
}

TEST_F(Grade, VectorsOfEveryTypeThatIsSorted)
{
    EXPECT_EQ(Run(BuiltinGradeUp, *Integers({3, -1, INT64_MAX, INT64_MIN, 0})), "Integer[5]4 2 5 1 3");
    EXPECT_EQ(Run(BuiltinGradeUp, *Reals({2.5, -1, 0, Infinity, -Infinity})), "Integer[5]5 2 3 1 4");
    EXPECT_EQ(Run(BuiltinGradeUp, *Booleans("1010")), "Integer[4]2 4 1 3");
    EXPECT_EQ(Run(BuiltinGradeUp, *Characters(u"b\u2300a\uFF00A")), "Integer[5]5 3 1 2 4");
}

TEST_F(Grade, EqualItemsKeepTheirOrder)
{
    EXPECT_EQ(Run(BuiltinGradeUp, *Integers({2, 1, 2, 1, 2})), "Integer[5]2 4 1 3 5");
    EXPECT_EQ(Run(BuiltinGradeUp, *Reals({0.0, -0.0, 0.0})), "Integer[3]1 2 3");
    EXPECT_EQ(Run(BuiltinGradeUp, *Reals({-0.0, 0.0, -1})), "Integer[3]3 1 2");
}

TEST_F(Grade, WhatIsNoNumberComesLast)
{
    EXPECT_EQ(Run(BuiltinGradeUp, *Reals({Nan, 1, -Nan, Infinity, -1})), "Integer[5]5 2 4 1 3");
}

TEST_F(Grade, DescendingReversesEqualItemsToo)
{
    EXPECT_EQ(Run(BuiltinGradeDown, *Integers({2, 1, 2, 1, 3})), "Integer[5]5 3 1 4 2");
    EXPECT_EQ(Run(BuiltinGradeDown, *Characters(u"bca")), "Integer[3]2 1 3");
    EXPECT_EQ(Run(BuiltinGradeDown, *Booleans("0101")), "Integer[4]4 2 3 1");
}

TEST_F(Grade, MajorCellsAreComparedItemByItem)
{
    EXPECT_EQ(Run(BuiltinGradeUp, *Characters({4, 2}, u"bbabbaaa")), "Integer[4]4 2 3 1");
    EXPECT_EQ(Run(BuiltinGradeUp, *Integers({3, 2}, {1, 5, 1, -5, 0, 9})), "Integer[3]3 2 1");
    EXPECT_EQ(Run(BuiltinGradeUp, *Booleans({4, 3}, "101100001100")), "Integer[4]3 2 4 1");
    EXPECT_EQ(Run(BuiltinGradeUp, *Reals({3, 1, 2}, {1, 2, 1, Nan, 1, -2})), "Integer[3]3 1 2");
    EXPECT_EQ(Run(BuiltinGradeDown, *Characters({3, 2}, u"ababaa")), "Integer[3]2 1 3");
}

TEST_F(Grade, ScalarsAndEmptyArraysAreCopied)
{
    EXPECT_EQ(Run(BuiltinGradeUp, *Integer(7)), "Integer[]7");
    EXPECT_EQ(Run(BuiltinGradeUp, *Characters(u"")), "Character[0]''");
    EXPECT_EQ(Run(BuiltinGradeUp, *Reals({3, 0}, {})), "Real[3 0]");
    EXPECT_EQ(Run(BuiltinGradeDown, *Integer(7)), "Integer[]7");
    EXPECT_EQ(Run(BuiltinGradeDown, *Booleans({0, 3}, "")), "Boolean[0 3]");
}

TEST_F(Grade, TheResultHasItsSimplestType)
{
    EXPECT_EQ(BuiltinGradeUp(&context, *Integers({1, 0}))->SimplestType, TypeInteger);
    context.indexOrigin = 0;
    EXPECT_EQ(BuiltinGradeUp(&context, *Integers({1, 0}))->SimplestType, TypeBoolean);
    EXPECT_EQ(BuiltinGradeDown(&context, *Integers({1, 0}))->SimplestType, TypeBoolean);
}

TEST_F(Grade, RefusesWithAMessage)
{
    for (const auto primitive : {BuiltinGradeUp, BuiltinGradeDown}) {
        EXPECT_EQ(Run(primitive, *NestedVector(Integer(1), Integer(2))), "error 2");
        EXPECT_EQ(Message(), u"Sorting nested arrays is not supported");
        EXPECT_EQ(Run(primitive, *Complexes({2}, {1, 0, 2, 0})), "error 2");
        EXPECT_EQ(Message(), u"Sorting complex arrays is not supported");
        EXPECT_EQ(Run(primitive, *Decimals({2})), "error 2");
        EXPECT_EQ(Message(), u"Sorting decimal arrays is not supported");
        EXPECT_EQ(Run(primitive, *Complexes({0}, {})), "error 2");
        EXPECT_EQ(Message(), u"Sorting complex arrays is not supported");
        EXPECT_EQ(Run(primitive, *Unknown(Integers({1, 2})).node), "error 18");
        EXPECT_EQ(Message(), u"");
        EXPECT_EQ(Run(primitive, *Unknown(Integers({1, 2}), 12).node), "error 18");
    }
}

// A plain stable sort of the rows, told apart by plain values.
TEST_F(Grade, RandomRowsAgreeWithAPlainSort)
{
    std::mt19937 random(11);
    for (int round = 0; round < 60; ++round) {
        const std::int64_t rows = 1 + static_cast<std::int64_t>(random() % 200);
        const std::int64_t columns = 1 + static_cast<std::int64_t>(random() % 3);
        std::vector<double> items;
        for (std::int64_t i = 0; i < rows * columns; ++i)
            items.push_back(static_cast<double>(random() % 5) - 2);
        std::vector<std::int64_t> expected(static_cast<std::size_t>(rows));
        std::iota(expected.begin(), expected.end(), 1);
        std::stable_sort(expected.begin(), expected.end(), [&](std::int64_t a, std::int64_t b) {
            const double* left = items.data() + (a - 1) * columns;
            const double* right = items.data() + (b - 1) * columns;
            return std::lexicographical_compare(left, left + columns, right, right + columns);
        });
        const ScdrPtr argument = Reals({rows, columns}, items);
        EXPECT_EQ(ItemsOf<std::int64_t>(*BuiltinGradeUp(&context, *argument)), expected);
        std::reverse(expected.begin(), expected.end());
        EXPECT_EQ(ItemsOf<std::int64_t>(*BuiltinGradeDown(&context, *argument)), expected);
    }
}

} // namespace
} // namespace vantrel::test
