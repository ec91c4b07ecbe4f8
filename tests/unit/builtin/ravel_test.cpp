#include "unit/builtin/structural_fixture.h"

namespace vantrel::test {
namespace {

using Ravel = Structural;

TEST_F(Ravel, AScalarBecomesAVectorOfOneItem)
{
    EXPECT_EQ(Run(BuiltinRavel, *Integer(5)), "Integer[1]5");
    EXPECT_EQ(Run(BuiltinRavel, *Characters(Shape{}, u"x")), "Character[1]'x'");
    EXPECT_EQ(Run(BuiltinRavel, *Booleans(Shape{}, "1")), "Boolean[1]1");
    EXPECT_EQ(Run(BuiltinRavel, *Nested({}, Characters(u"abc"))), "General[1](Character[3]'abc')");
}

TEST_F(Ravel, AVectorStaysAsItIs)
{
    EXPECT_EQ(Run(BuiltinRavel, *Characters(u"abc")), "Character[3]'abc'");
    EXPECT_EQ(Run(BuiltinRavel, *Characters(u"")), "Character[0]''");
    EXPECT_EQ(Run(BuiltinRavel, *NestedVector(Integer(1), Characters(u"ab"))),
              "General[2](Integer[]1 Character[2]'ab')");
}

TEST_F(Ravel, AMatrixIsReadRowByRow)
{
    EXPECT_EQ(Run(BuiltinRavel, *Integers({2, 3}, {1, 2, 3, 4, 5, 6})), "Integer[6]1 2 3 4 5 6");
    EXPECT_EQ(Run(BuiltinRavel, *Booleans({3, 3}, "101110011")), "Boolean[9]1 0 1 1 1 0 0 1 1");
    EXPECT_EQ(Run(BuiltinRavel, *Complexes({1, 2}, {1, 2, 3, 4})), "Complex[2]1J2 3J4");
    EXPECT_EQ(Run(BuiltinRavel, *Nested({2, 2}, Integer(1), Integer(2), Integer(3), Integer(4))),
              "General[4](Integer[]1 Integer[]2 Integer[]3 Integer[]4)");
}

TEST_F(Ravel, HigherRanksLoseTheirPlanesAndNames)
{
    const ScdrPtr result = BuiltinRavel(&context, *Integers({2, 1, 2}, {1, 2, 3, 4}));
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(DumpTree(*result), "Integer[4]1 2 3 4");
    EXPECT_EQ(result->extra->AxisNames, nullptr);
    EXPECT_EQ(result->extra->PlaneIndex, nullptr);
    EXPECT_EQ(PlaneCount(*result), 1);
}

TEST_F(Ravel, EmptyArraysKeepTheirPrototype)
{
    EXPECT_EQ(Run(BuiltinRavel, *Integers({0, 3}, {})), "Integer[0]");
    EXPECT_EQ(Run(BuiltinRavel, *Nested({2, 0}, Characters(u"  "))), "General[0](Character[2]'  ')");
}

TEST_F(Ravel, AMatrixIsNoStructureAnyMore)
{
    const ScdrPtr argument = Nested({1, 2}, Characters(u"name"), Integer(5));
    argument->Flags |= FlagStructure;
    Children(*argument)[0]->Flags |= FlagKeptSize;
    const ScdrPtr result = BuiltinRavel(&context, *argument);
    EXPECT_EQ(result->Flags & FlagStructure, 0);
    EXPECT_EQ(Children(*result)[0]->Flags & FlagKeptSize, 0);
    EXPECT_NE(argument->Flags & FlagStructure, 0);
    EXPECT_NE(Children(*argument)[0]->Flags & FlagKeptSize, 0);
}

TEST_F(Ravel, FieldNamesOfAVectorBecomeOrdinaryItems)
{
    const ScdrPtr argument = NestedVector(Characters(u"name"), Integer(5));
    argument->Flags |= FlagStructure;
    Children(*argument)[0]->Flags |= FlagKeptSize;
    const ScdrPtr result = BuiltinRavel(&context, *argument);
    EXPECT_NE(result->Flags & FlagStructure, 0);
    EXPECT_EQ(Children(*result)[0]->Flags & FlagKeptSize, 0);
}

TEST_F(Ravel, LayoutIsNotCarriedOver)
{
    const ScdrPtr argument = Integers({2, 2}, {1, 2, 3, 4});
    ExtraOf(*argument).recordColumnWidths = AllocateArray<std::int32_t>(2).release();
    ExtraOf(*argument).CurrentPlane = 1;
    const ScdrPtr result = BuiltinRavel(&context, *argument);
    EXPECT_TRUE(result->extra == nullptr || result->extra->recordColumnWidths == nullptr);
    EXPECT_EQ(CurrentPlane(*result), 0);
}

} // namespace
} // namespace vantrel::test
