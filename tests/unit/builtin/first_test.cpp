#include "unit/builtin/structural_fixture.h"

namespace vantrel::test {
namespace {

using First = Structural;
using Enclose = Structural;

TEST_F(First, TheFirstItemOfASimpleArrayIsAScalar)
{
    EXPECT_EQ(Run(BuiltinFirst, *Integers({7, 8, 9})), "Integer[]7");
    EXPECT_EQ(Run(BuiltinFirst, *Characters({2, 2}, u"abcd")), "Character[]'a'");
    EXPECT_EQ(Run(BuiltinFirst, *Booleans("10")), "Boolean[]1");
    EXPECT_EQ(Run(BuiltinFirst, *Booleans("01")), "Boolean[]0");
    EXPECT_EQ(Run(BuiltinFirst, *Reals({0.5, 2})), "Real[]0.5");
    EXPECT_EQ(Run(BuiltinFirst, *Complexes({2}, {1, 2, 3, 4})), "Complex[]1J2");
    EXPECT_EQ(Run(BuiltinFirst, *Decimals({2})), "Decimal[]01010101010101010101010101010101");
    EXPECT_EQ(Run(BuiltinFirst, *Integer(3)), "Integer[]3");
}

TEST_F(First, AnEmptySimpleArrayGivesItsFill)
{
    EXPECT_EQ(Run(BuiltinFirst, *Integers(std::vector<std::int64_t>{})), "Integer[]0");
    EXPECT_EQ(Run(BuiltinFirst, *Characters(u"")), "Character[]' '");
    EXPECT_EQ(Run(BuiltinFirst, *Booleans("")), "Boolean[]0");
    EXPECT_EQ(Run(BuiltinFirst, *Complexes({0}, {})), "Complex[]0J0");
    EXPECT_EQ(Run(BuiltinFirst, *Reals({0, 2}, {})), "Real[]0");
}

TEST_F(First, ANestedArrayGivesItsFirstItem)
{
    EXPECT_EQ(Run(BuiltinFirst, *NestedVector(Characters(u"ab"), Integer(5))), "Character[2]'ab'");
    EXPECT_EQ(Run(BuiltinFirst, *Nested({2, 1}, NestedVector(Integer(1)), Integer(5))),
              "General[1](Integer[]1)");
    EXPECT_EQ(Run(BuiltinFirst, *Nested({}, Integers({1, 2}))), "Integer[2]1 2");
}

TEST_F(First, AnEmptyNestedArrayGivesItsPrototype)
{
    EXPECT_EQ(Run(BuiltinFirst, *Nested({0}, Characters(u"  "))), "Character[2]'  '");
}

TEST_F(First, TheResultHasItsSimplestType)
{
    EXPECT_EQ(BuiltinFirst(&context, *Integers({1, 8}))->SimplestType, TypeBoolean);
    EXPECT_EQ(BuiltinFirst(&context, *NestedVector(Reals({2, 3})))->SimplestType, TypeInteger);
}

TEST_F(First, AxisNamesOfTheItemAreKept)
{
    ScdrPtr item = Integers({1, 1, 1}, {5});
    NameAxes(*item, {u"plane", u"row", u"column"});
    const ScdrPtr argument = NestedVector(std::move(item));
    const ScdrPtr result = BuiltinFirst(&context, *argument);
    EXPECT_EQ(AxisNamesOf(*result), (std::vector<std::u16string>{u"plane", u"row", u"column"}));
}

TEST_F(First, UnknownTypesAreRefused)
{
    EXPECT_EQ(Run(BuiltinFirst, *Unknown(Integers({1})).node), "error 18");
    EXPECT_EQ(Run(BuiltinFirst, *Unknown(Integers({1}), 12).node), "error 18");
}

TEST_F(Enclose, ASimpleScalarStaysWhatItIs)
{
    EXPECT_EQ(Run(BuiltinEnclose, *Integer(5)), "Integer[]5");
    EXPECT_EQ(Run(BuiltinEnclose, *Characters(Shape{}, u"x")), "Character[]'x'");
}

TEST_F(Enclose, EverythingElseBecomesTheItemOfANestedScalar)
{
    EXPECT_EQ(Run(BuiltinEnclose, *Integers({1, 2})), "General[](Integer[2]1 2)");
    EXPECT_EQ(Run(BuiltinEnclose, *Characters(u"")), "General[](Character[0]'')");
    EXPECT_EQ(Run(BuiltinEnclose, *NestedVector(Integer(1))), "General[](General[1](Integer[]1))");
    EXPECT_EQ(Run(BuiltinEnclose, *Nested({}, Integers({1, 2}))), "General[](General[](Integer[2]1 2))");
    EXPECT_EQ(BuiltinEnclose(&context, *Integers({0, 1}))->SimplestType, 0);
}

TEST_F(Enclose, AxisNamesOfTheItemAreKept)
{
    const ScdrPtr argument = Integers({1, 1, 1}, {5});
    NameAxes(*argument, {u"a", u"b", u"c"});
    const ScdrPtr result = BuiltinEnclose(&context, *argument);
    EXPECT_TRUE(SameTree(*argument, *Children(*result)[0]));
}

} // namespace
} // namespace vantrel::test
