#include <cstring>

#include "unit/builtin/structural_fixture.h"

namespace vantrel::test {
namespace {

class Transpose : public Structural {
protected:
    std::string Reordered(const Scdr& argument, const Scdr& order)
    {
        return Run(BuiltinTranspose, argument, &order);
    }
    std::string Reversed(const Scdr& argument)
    {
        return Run(BuiltinTranspose, argument, static_cast<const Scdr*>(nullptr));
    }
};

TEST_F(Transpose, BelowAMatrixNothingChanges)
{
    EXPECT_EQ(Reversed(*Integer(5)), "Integer[]5");
    EXPECT_EQ(Reversed(*Characters(u"abc")), "Character[3]'abc'");
    EXPECT_EQ(Reversed(*NestedVector(Integer(1), Integers({2, 3}))), "General[2](Integer[]1 Integer[2]2 3)");
}

TEST_F(Transpose, MatricesOfEveryType)
{
    EXPECT_EQ(Reversed(*Integers({2, 3}, {1, 2, 3, 4, 5, 6})), "Integer[3 2]1 4 2 5 3 6");
    EXPECT_EQ(Reversed(*Characters({3, 2}, u"abcdef")), "Character[2 3]'acebdf'");
    EXPECT_EQ(Reversed(*Booleans({2, 3}, "110001")), "Boolean[3 2]1 0 1 0 0 1");
    EXPECT_EQ(Reversed(*Reals({2, 2}, {1.5, 2, 3, 4})), "Real[2 2]1.5 3 2 4");
    EXPECT_EQ(Reversed(*Complexes({1, 2}, {1, 2, 3, 4})), "Complex[2 1]1J2 3J4");
    EXPECT_EQ(Reversed(*Complexes({2, 2}, {1, 2, 3, 4, 5, 6, 7, 8})), "Complex[2 2]1J2 5J6 3J4 7J8");
    EXPECT_EQ(Reversed(*Nested({2, 2}, Integer(1), Characters(u"ab"), Integer(3), Integer(4))),
              "General[2 2](Integer[]1 Integer[]3 Character[2]'ab' Integer[]4)");
    const ScdrPtr decimals = BuiltinTranspose(&context, *Decimals({2, 2}));
    const auto* bytes = static_cast<const std::uint8_t*>(decimals->data);
    EXPECT_EQ((std::vector<int>{bytes[0], bytes[16], bytes[32], bytes[48]}), (std::vector<int>{1, 3, 2, 4}));
    EXPECT_EQ(bytes[31], 3);
}

TEST_F(Transpose, AxesOfHigherRanksAreReversed)
{
    EXPECT_EQ(Reversed(*Integers({2, 1, 3}, {1, 2, 3, 4, 5, 6})), "Integer[3 1 2]1 4 2 5 3 6");
    EXPECT_EQ(Reversed(*Characters({2, 2, 2}, u"abcdefgh")), "Character[2 2 2]'aecgbfdh'");
}

// Result axis order[i] is argument axis i.
TEST_F(Transpose, AnOrderSaysWhereEachAxisGoes)
{
    const ScdrPtr argument = Integers({2, 3, 1}, {1, 2, 3, 4, 5, 6});
    EXPECT_EQ(Reordered(*argument, *Integers({2, 3, 1})), "Integer[1 2 3]1 2 3 4 5 6");
    EXPECT_EQ(Reordered(*argument, *Integers({3, 1, 2})), "Integer[3 1 2]1 4 2 5 3 6");
    EXPECT_EQ(Reordered(*argument, *Integers({1, 2, 3})), "Integer[2 3 1]1 2 3 4 5 6");
    EXPECT_EQ(Reordered(*Characters({2, 2, 2}, u"abcdefgh"), *Integers({1, 3, 2})),
              "Character[2 2 2]'acbdegfh'");
    EXPECT_EQ(Reordered(*Characters({2, 2, 2}, u"abcdefgh"), *Integers({2, 1, 3})),
              "Character[2 2 2]'abefcdgh'");
    EXPECT_EQ(Reordered(*Booleans({2, 2, 2}, "11010001"), *Integers({2, 1, 3})),
              "Boolean[2 2 2]1 1 0 0 0 1 0 1");
}

TEST_F(Transpose, OrdersCountFromTheIndexOrigin)
{
    context.indexOrigin = 0;
    EXPECT_EQ(Reordered(*Integers({2, 2}, {1, 2, 3, 4}), *Integers({1, 0})), "Integer[2 2]1 3 2 4");
    EXPECT_EQ(Reordered(*Integers({2, 2}, {1, 2, 3, 4}), *Integers({2, 1})), "error 2");
    EXPECT_EQ(Reversed(*Integers({2, 2}, {1, 2, 3, 4})), "Integer[2 2]1 3 2 4");
}

TEST_F(Transpose, AnOrderOfAScalarOrVector)
{
    EXPECT_EQ(Reordered(*Characters(u"abc"), *Integer(1)), "Character[3]'abc'");
    EXPECT_EQ(Reordered(*Characters(u"abc"), *Integers({1})), "Character[3]'abc'");
    EXPECT_EQ(Reordered(*Integer(5), *Integers(std::vector<std::int64_t>{})), "Integer[]5");
    EXPECT_EQ(Reordered(*Integer(5), *Characters(u"")), "Integer[]5");
    EXPECT_EQ(Reordered(*Integer(5), *Reals(std::vector<double>{})), "Integer[]5");
    EXPECT_EQ(Reordered(*Integer(5), *Booleans("")), "error 2");
}

TEST_F(Transpose, AnOrderOfAnotherRankOrLengthIsRefused)
{
    const ScdrPtr matrix = Integers({2, 2}, {1, 2, 3, 4});
    EXPECT_EQ(Reordered(*matrix, *Integers({1, 2}, {1, 2})), "error 16");
    EXPECT_EQ(Reordered(*matrix, *Integers({1})), "error 6");
    EXPECT_EQ(Reordered(*matrix, *Integers({1, 2, 3})), "error 6");
    EXPECT_EQ(Reordered(*matrix, *Integer(1)), "error 6");
    EXPECT_EQ(Reordered(*Integer(5), *Integer(1)), "error 6");
    EXPECT_EQ(Reordered(*matrix, *Booleans("1")), "error 6");
}

TEST_F(Transpose, AnOrderThatIsNoPermutationIsRefused)
{
    const ScdrPtr matrix = Integers({2, 2}, {1, 2, 3, 4});
    EXPECT_EQ(Reordered(*matrix, *Integers({1, 1})), "error 2");
    EXPECT_EQ(Reordered(*matrix, *Integers({0, 1})), "error 2");
    EXPECT_EQ(Reordered(*matrix, *Integers({2, 3})), "error 2");
    EXPECT_EQ(Reordered(*matrix, *Integers({INT64_MIN, INT64_MAX})), "error 2");
}

TEST_F(Transpose, OtherTypesAreNoOrder)
{
    const ScdrPtr matrix = Integers({2, 2}, {1, 2, 3, 4});
    EXPECT_EQ(Reordered(*matrix, *Reals({1, 2})), "error 2");
    EXPECT_EQ(Reordered(*matrix, *Characters(u"ab")), "error 2");
    EXPECT_EQ(Reordered(*matrix, *NestedVector(Integer(1), Integer(2))), "error 2");
    EXPECT_EQ(Reordered(*Characters(u"ab"), *Reals({1})), "error 2");
}

TEST_F(Transpose, ABooleanOrderOfAMatrixCountsFromZero)
{
    const ScdrPtr matrix = Integers({2, 3}, {1, 2, 3, 4, 5, 6});
    for (const std::int64_t origin : {0, 1}) {
        context.indexOrigin = origin;
        EXPECT_EQ(Reordered(*matrix, *Booleans("10")), "Integer[3 2]1 4 2 5 3 6");
        EXPECT_EQ(Reordered(*matrix, *Booleans("01")), "Integer[2 3]1 2 3 4 5 6");
        EXPECT_EQ(Reordered(*matrix, *Booleans("00")), "error 2");
        EXPECT_EQ(Reordered(*matrix, *Booleans("11")), "error 2");
        EXPECT_EQ(Reordered(*Characters(u"ab"), *Booleans("1")), "error 2");
    }
}

TEST_F(Transpose, EmptyArraysChangeTheirShape)
{
    EXPECT_EQ(Reversed(*Integers({0, 3}, {})), "Integer[3 0]");
    EXPECT_EQ(Reversed(*Nested({0, 2}, Characters(u"ab"))), "General[2 0](Character[2]'ab')");
    EXPECT_EQ(Reordered(*Integers({2, 0, 3}, {}), *Integers({3, 1, 2})), "Integer[0 3 2]");
}

TEST_F(Transpose, PlanesThatDoNotFitAreOutOfMemory)
{
    constexpr std::int64_t huge = std::int64_t{1} << 40;
    EXPECT_EQ(Reordered(*Integers({huge, 1, 0, huge}, {}), *Integers({1, 3, 4, 2})), "error 9");
    EXPECT_EQ(Reversed(*Integers({0, huge, huge}, {})), "Integer[1099511627776 1099511627776 0]");
}

TEST_F(Transpose, AxisNamesMoveWithTheirAxes)
{
    const ScdrPtr argument = Integers({1, 2, 3}, {1, 2, 3, 4, 5, 6});
    NameAxes(*argument, {u"one", u"two", u"three"});
    EXPECT_EQ(AxisNamesOf(*BuiltinTranspose(&context, *argument)),
              (std::vector<std::u16string>{u"three", u"two", u"one"}));
    const ScdrPtr order = Integers({2, 3, 1});
    const ScdrPtr result = BuiltinTranspose(&context, *argument, order.get());
    EXPECT_EQ(AxisNamesOf(*result), (std::vector<std::u16string>{u"three", u"one", u"two"}));
    EXPECT_EQ(ShapeOf(*result), (Shape{3, 1, 2}));
    EXPECT_EQ(PlaneCount(*result), 3);
    EXPECT_EQ(AxisNamesOf(*argument), (std::vector<std::u16string>{u"one", u"two", u"three"}));
}

TEST_F(Transpose, FlagsAndSimplestTypeAreKept)
{
    const ScdrPtr argument = Nested({2, 1}, Characters(u"a"), Characters(u"b"));
    argument->Flags |= FlagStructure;
    Children(*argument)[1]->Flags |= FlagKeptSize;
    const ScdrPtr result = BuiltinTranspose(&context, *argument);
    EXPECT_NE(result->Flags & FlagStructure, 0);
    EXPECT_NE(Children(*result)[1]->Flags & FlagKeptSize, 0);
    const ScdrPtr integers = Integers({1, 2}, {0, 1});
    SetSimplestType(*integers);
    EXPECT_EQ(BuiltinTranspose(&context, *integers)->SimplestType, TypeBoolean);
}

TEST_F(Transpose, UnknownTypesAreRefused)
{
    EXPECT_EQ(Reversed(*Unknown(Integers({1, 2}, {1, 2})).node), "error 18");
}

// Sizes around those of the blocks in which the work is done.
TEST_F(Transpose, MatricesOfAnySize)
{
    std::mt19937 random(3);
    const std::uint32_t types[] = {TypeCharacter, TypeBoolean, TypeInteger, TypeComplex};
    for (const std::int64_t rows : {1, 2, 7, 31, 32, 33, 64, 65, 100}) {
        for (const std::int64_t columns : {1, 3, 8, 32, 33, 70}) {
            for (const std::uint32_t type : types) {
                const ScdrPtr argument = RandomSimple(&context, random, type, {rows, columns});
                const ScdrPtr result = BuiltinTranspose(&context, *argument);
                ASSERT_EQ(ShapeOf(*result), (Shape{columns, rows}));
                for (std::int64_t i = 0; i < rows * columns; ++i) {
                    const std::int64_t from = i % rows * columns + i / rows;
                    if (type == TypeBoolean) {
                        ASSERT_EQ(GetBit(result->data, i), GetBit(argument->data, from));
                    } else {
                        const auto bytes = static_cast<std::int64_t>(DataSize(type, 1));
                        ASSERT_EQ(std::memcmp(static_cast<char*>(result->data) + i * bytes,
                                              static_cast<char*>(argument->data) + from * bytes,
                                              static_cast<std::size_t>(bytes)),
                                  0);
                    }
                }
            }
        }
    }
}

} // namespace
} // namespace vantrel::test
