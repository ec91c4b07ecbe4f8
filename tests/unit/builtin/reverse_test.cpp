#include <numeric>

#include "unit/builtin/structural_fixture.h"

namespace vantrel::test {
namespace {

using Reverse = Structural;
using ReverseAxis1 = Structural;

TEST_F(Reverse, AScalarIsCopied)
{
    EXPECT_EQ(Run(BuiltinReverse, *Integer(5)), "Integer[]5");
    EXPECT_EQ(Run(BuiltinReverse, *Nested({}, Integers({1, 2}))), "General[](Integer[2]1 2)");
}

TEST_F(Reverse, VectorsOfEveryType)
{
    EXPECT_EQ(Run(BuiltinReverse, *Integers({1, 2, 3})), "Integer[3]3 2 1");
    EXPECT_EQ(Run(BuiltinReverse, *Characters(u"abcdefghijk")), "Character[11]'kjihgfedcba'");
    EXPECT_EQ(Run(BuiltinReverse, *Booleans("1101")), "Boolean[4]1 0 1 1");
    EXPECT_EQ(Run(BuiltinReverse, *Reals({0.5, 2})), "Real[2]2 0.5");
    EXPECT_EQ(Run(BuiltinReverse, *Complexes({2}, {1, 2, 3, 4})), "Complex[2]3J4 1J2");
    EXPECT_EQ(Run(BuiltinReverse, *Decimals({2})),
              "Decimal[2]02020202020202020202020202020202 01010101010101010101010101010101");
    EXPECT_EQ(Run(BuiltinReverse, *NestedVector(Integer(1), Characters(u"ab"))),
              "General[2](Character[2]'ab' Integer[]1)");
}

TEST_F(Reverse, EachRowOfHigherRanks)
{
    EXPECT_EQ(Run(BuiltinReverse, *Integers({2, 3}, {1, 2, 3, 4, 5, 6})), "Integer[2 3]3 2 1 6 5 4");
    EXPECT_EQ(Run(BuiltinReverse, *Booleans({3, 3}, "100110010")), "Boolean[3 3]0 0 1 0 1 1 0 1 0");
    EXPECT_EQ(Run(BuiltinReverse, *Characters({2, 1, 2}, u"abcd")), "Character[2 1 2]'badc'");
    EXPECT_EQ(Run(BuiltinReverse, *Nested({2, 2}, Integer(1), Integer(2), Integer(3), Integer(4))),
              "General[2 2](Integer[]2 Integer[]1 Integer[]4 Integer[]3)");
}

TEST_F(Reverse, EmptyArraysStayAsTheyAre)
{
    EXPECT_EQ(Run(BuiltinReverse, *Integers({3, 0}, {})), "Integer[3 0]");
    EXPECT_EQ(Run(BuiltinReverse, *Characters(u"")), "Character[0]''");
    EXPECT_EQ(Run(BuiltinReverse, *Nested({0}, Characters(u"ab"))), "General[0](Character[2]'ab')");
    EXPECT_EQ(Run(BuiltinReverse, *Nested({0, 3}, Characters(u"ab"))), "General[0 3](Character[2]'ab')");
}

TEST_F(Reverse, NamesFlagsAndSimplestTypeAreKept)
{
    const ScdrPtr argument = Nested({1, 1, 2}, Characters(u"a"), Characters(u"b"));
    NameAxes(*argument, {u"x", u"y", u"z"});
    argument->Flags |= FlagStructure;
    Children(*argument)[0]->Flags |= FlagKeptSize;
    const ScdrPtr result = BuiltinReverse(&context, *argument);
    EXPECT_EQ(AxisNamesOf(*result), (std::vector<std::u16string>{u"x", u"y", u"z"}));
    EXPECT_NE(result->Flags & FlagStructure, 0);
    EXPECT_NE(Children(*result)[1]->Flags & FlagKeptSize, 0);
    const ScdrPtr integers = Integers({0, 1});
    SetSimplestType(*integers);
    EXPECT_EQ(BuiltinReverse(&context, *integers)->SimplestType, TypeBoolean);
}

TEST_F(Reverse, UnknownTypesAreRefused)
{
    EXPECT_EQ(Run(BuiltinReverse, *Unknown(Integers({1, 2})).node), "error 18");
    EXPECT_EQ(Run(BuiltinReverse, *Unknown(Integers({1, 2}), 12).node), "error 18");
    EXPECT_EQ(Run(BuiltinReverseAxis1, *Unknown(Integers({2, 1}, {1, 2})).node), "error 18");
}

// Every length around the size of a word and every place of the rows within it.
TEST_F(Reverse, BitsOfAnyLengthAtAnyPlace)
{
    std::mt19937 random(5);
    for (std::int64_t columns = 1; columns < 150; ++columns) {
        const std::int64_t rows = columns < 20 ? 9 : 3;
        const ScdrPtr argument = RandomSimple(&context, random, TypeBoolean, {rows, columns});
        const ScdrPtr result = BuiltinReverse(&context, *argument);
        const ScdrPtr flipped = BuiltinReverseAxis1(&context, *argument);
        std::string expected;
        std::string expectedFlipped;
        for (std::int64_t row = 0; row < rows; ++row) {
            for (std::int64_t column = 0; column < columns; ++column) {
                expected += GetBit(argument->data, row * columns + columns - 1 - column) ? '1' : '0';
                expectedFlipped += GetBit(argument->data, (rows - 1 - row) * columns + column) ? '1' : '0';
            }
        }
        EXPECT_EQ(BitsOf(*result), expected) << columns;
        EXPECT_EQ(BitsOf(*flipped), expectedFlipped) << columns;
    }
}

TEST_F(Reverse, TextsOfAnyLength)
{
    for (int length = 0; length < 20; ++length) {
        std::u16string text(static_cast<std::size_t>(length), u' ');
        std::iota(text.begin(), text.end(), u'\u2300');
        const ScdrPtr result = BuiltinReverse(&context, *Characters(text));
        EXPECT_EQ(TextOf(*result), std::u16string(text.rbegin(), text.rend()));
    }
}

TEST_F(ReverseAxis1, BelowAMatrixItIsReverse)
{
    EXPECT_EQ(Run(BuiltinReverseAxis1, *Integers({1, 2, 3})), "Integer[3]3 2 1");
    EXPECT_EQ(Run(BuiltinReverseAxis1, *Integer(5)), "Integer[]5");
}

TEST_F(ReverseAxis1, MajorCellsChangePlaces)
{
    EXPECT_EQ(Run(BuiltinReverseAxis1, *Integers({3, 2}, {1, 2, 3, 4, 5, 6})), "Integer[3 2]5 6 3 4 1 2");
    EXPECT_EQ(Run(BuiltinReverseAxis1, *Characters({3, 1}, u"abc")), "Character[3 1]'cba'");
    EXPECT_EQ(Run(BuiltinReverseAxis1, *Characters({2, 2, 2}, u"abcdefgh")), "Character[2 2 2]'efghabcd'");
    EXPECT_EQ(Run(BuiltinReverseAxis1, *Booleans({3, 3}, "100110010")), "Boolean[3 3]0 1 0 1 1 0 1 0 0");
    EXPECT_EQ(Run(BuiltinReverseAxis1, *Complexes({2, 1}, {1, 2, 3, 4})), "Complex[2 1]3J4 1J2");
    EXPECT_EQ(Run(BuiltinReverseAxis1, *Decimals({2, 1})),
              "Decimal[2 1]02020202020202020202020202020202 01010101010101010101010101010101");
    EXPECT_EQ(Run(BuiltinReverseAxis1, *Nested({2, 2}, Integer(1), Integer(2), Integer(3), Integer(4))),
              "General[2 2](Integer[]3 Integer[]4 Integer[]1 Integer[]2)");
}

TEST_F(ReverseAxis1, EmptyArraysStayAsTheyAre)
{
    EXPECT_EQ(Run(BuiltinReverseAxis1, *Integers({0, 3}, {})), "Integer[0 3]");
    EXPECT_EQ(Run(BuiltinReverseAxis1, *Integers({3, 0}, {})), "Integer[3 0]");
    EXPECT_EQ(Run(BuiltinReverseAxis1, *Nested({0, 2}, Characters(u"ab"))), "General[0 2](Character[2]'ab')");
}

} // namespace
} // namespace vantrel::test
