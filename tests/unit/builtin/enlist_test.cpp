#include "unit/builtin/structural_fixture.h"

namespace vantrel::test {
namespace {

using Enlist = Structural;

const std::vector<std::int64_t> None;

TEST_F(Enlist, ASimpleArrayIsRaveled)
{
    EXPECT_EQ(Run(BuiltinEnlist, *Integers({2, 2}, {1, 2, 3, 4})), "Integer[4]1 2 3 4");
    EXPECT_EQ(Run(BuiltinEnlist, *Integer(4)), "Integer[1]4");
}

TEST_F(Enlist, ItemsOfOneTypeAreJoined)
{
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Integers({1, 2}), Integers({2, 1}, {3, 4}), Integer(5))),
              "Integer[5]1 2 3 4 5");
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Characters(u"ab"), Characters(u""), Characters(u"c"))),
              "Character[3]'abc'");
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Complexes({1}, {1, 2}), Complexes({1}, {3, 4}))),
              "Complex[2]1J2 3J4");
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Decimals({1}), Decimals({1}))),
              "Decimal[2]01010101010101010101010101010101 01010101010101010101010101010101");
}

TEST_F(Enlist, BitsArePackedAnew)
{
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Booleans("101"), Booleans("1"), Booleans("0110011"))),
              "Boolean[11]1 0 1 1 0 1 1 0 0 1 1");
}

TEST_F(Enlist, LeavesAreFoundDepthFirst)
{
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(NestedVector(Integers({1, 2}), NestedVector(Integer(3))),
                                               Integer(4), Nested({}, Integers({5, 6})))),
              "Integer[6]1 2 3 4 5 6");
}

TEST_F(Enlist, NumbersAreWidened)
{
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Integers({1, 2}), Reals({3, 4.5}))), "Real[4]1 2 3 4.5");
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Reals({3, 4.5}), Integers({1, 2}))), "Real[4]3 4.5 1 2");
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Reals({1, 2}), Reals({3, 4.5}))), "Real[4]1 2 3 4.5");
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Booleans("10"), Integers({7}))), "Integer[3]1 0 7");
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Booleans("1"), Complexes({1}, {2, 3}), Reals({0.5}))),
              "Complex[3]1J0 2J3 0.5J0");
}

TEST_F(Enlist, NoNumberIsChangedByWidening)
{
    constexpr std::int64_t exact = std::int64_t{1} << 53;
    EXPECT_EQ(BuiltinEnlist(&context, *NestedVector(Integers({exact, -exact}), Reals({0.5})))->Type,
              static_cast<std::uint32_t>(TypeReal));
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Integers({exact + 1}), Reals({0.5}))),
              "General[2](Integer[]9007199254740993 Real[]0.5)");
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Reals({0.5}), NestedVector(Integers({1, -exact - 1})))),
              "General[3](Real[]0.5 Integer[]1 Integer[]-9007199254740993)");
}

TEST_F(Enlist, OtherTypesTogetherBecomeScalars)
{
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Integers({1, 2}), Characters(u"ab"))),
              "General[4](Integer[]1 Integer[]2 Character[]'a' Character[]'b')");
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Characters(u"a"), Booleans("10"), Reals({0.5}))),
              "General[4](Character[]'a' Boolean[]1 Boolean[]0 Real[]0.5)");
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Decimals({1}), Integer(2))),
              "General[2](Decimal[]01010101010101010101010101010101 Integer[]2)");
}

TEST_F(Enlist, TheFirstLeafDecidesEvenWhenItIsEmpty)
{
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Characters(u""), Integers({1, 2}))),
              "General[2](Integer[]1 Integer[]2)");
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Integers({1, 2}), Characters(u""))), "Integer[2]1 2");
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Characters(u""), Integers(None))), "Character[0]''");
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Integers(None), Characters(u""))), "Integer[0]");
}

TEST_F(Enlist, PrototypesAddNoItems)
{
    EXPECT_EQ(Run(BuiltinEnlist, *Nested({0}, Characters(u"  "))), "Character[0]''");
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Integers({1, 2}), Nested({0}, Characters(u"ab")), Integer(3))),
              "Integer[3]1 2 3");
    EXPECT_EQ(Run(BuiltinEnlist, *NestedVector(Nested({0}, NestedVector(Integers({0, 0}), Integer(0))),
                                               Nested({0}, Nested({0}, Integer(0))), Integers({4, 5}))),
              "Integer[2]4 5");
    EXPECT_EQ(Run(BuiltinEnlist, *Nested({0}, NestedVector(Integer(0), Characters(u"a")))), "Integer[0]");
}

TEST_F(Enlist, TheResultHasItsSimplestType)
{
    EXPECT_EQ(BuiltinEnlist(&context, *NestedVector(Reals({1}), Reals({2})))->SimplestType, TypeInteger);
    EXPECT_EQ(BuiltinEnlist(&context, *NestedVector(Integers({1, 2}), Reals({3, 4.5})))->SimplestType,
              TypeReal);
    const ScdrPtr mixed = BuiltinEnlist(&context, *NestedVector(Integers({1}), Characters(u"a")));
    EXPECT_EQ(Children(*mixed)[0]->SimplestType, TypeBoolean);
    EXPECT_EQ(Children(*mixed)[1]->SimplestType, TypeCharacter);
}

TEST_F(Enlist, UnknownTypesAreRefused)
{
    const ScdrPtr argument = NestedVector(Integers({1}), Integers({2}));
    Children(*argument)[1]->Type = 26;
    const ScdrPtr result = BuiltinEnlist(&context, *argument);
    Children(*argument)[1]->Type = TypeInteger;
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(TakeError(), VTERROR_CODE::SystemError);
}

TEST_F(Enlist, SumsThatDoNotFitAreOutOfMemory)
{
    const ScdrPtr argument = NestedVector(Integers({1}), Integers({2}));
    // Longer than any memory: only the counts are looked at before the result is made.
    Children(*argument)[0]->ElementCount = INT64_MAX;
    const ScdrPtr result = BuiltinEnlist(&context, *argument);
    Children(*argument)[0]->ElementCount = 1;
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(TakeError(), VTERROR_CODE::OutOfMemory);
}

TEST_F(Enlist, AnyDepthOfNesting)
{
    ScdrPtr deep = Integers({1, 2});
    for (int level = 0; level < 100000; ++level)
        deep = Nested({}, std::move(deep));
    const ScdrPtr result = BuiltinEnlist(&context, *deep);
    EXPECT_EQ(DumpTree(*result), "Integer[2]1 2");
}

} // namespace
} // namespace vantrel::test
