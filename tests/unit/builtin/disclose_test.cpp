#include <random>

#include "builtin/structural.h"
#include "unit/builtin/arrays.h"

namespace vantrel::test {
namespace {

class DiscloseTest : public Arrays {
protected:
    std::string Disclose(const Scdr& argument)
    {
        const ScdrPtr result = BuiltinDisclose(&context, argument);
        if (result == nullptr) return "error " + std::to_string(static_cast<std::uint32_t>(TakeError()));
        EXPECT_TRUE(IsSoundTree(*result));
        return DumpTree(*result);
    }
    ScdrPtr Integer(std::int64_t value) { return Integers({}, {value}); }
    ScdrPtr Decimals(std::int64_t count)
    {
        ScdrPtr node = Make(TypeDecimal, {count});
        std::fill_n(static_cast<std::uint8_t*>(WritableData(*node)), 16 * count, std::uint8_t{0x5A});
        return node;
    }
};

TEST_F(DiscloseTest, SimpleArraysAreCopied)
{
    EXPECT_EQ(Disclose(*Integers({2, 2}, {1, 2, 3, 4})), "Integer[2 2]1 2 3 4");
    EXPECT_EQ(Disclose(*Characters(u"")), "Character[0]''");
}

TEST_F(DiscloseTest, ANestedScalarGivesItsItem)
{
    EXPECT_EQ(Disclose(*Nested({}, Characters(u"abc"))), "Character[3]'abc'");
    EXPECT_EQ(Disclose(*Nested({}, NestedVector(Integer(1), Characters(u"a")))),
              "General[2](Integer[]1 Character[1]'a')");
}

TEST_F(DiscloseTest, SimpleScalarsStayNested)
{
    EXPECT_EQ(Disclose(*NestedVector(Integer(1), Integer(2))), "General[2](Integer[]1 Integer[]2)");
    EXPECT_EQ(Disclose(*NestedVector(Integer(1), Characters(Shape{}, u"a"))),
              "General[2](Integer[]1 Character[]'a')");
}

TEST_F(DiscloseTest, ShorterRowsArePaddedWithTheirFill)
{
    EXPECT_EQ(Disclose(*NestedVector(Integers({1, 2}), Integers({3, 4, 5}))), "Integer[2 3]1 2 0 3 4 5");
    EXPECT_EQ(Disclose(*NestedVector(Characters(u"abc"), Characters(u"d"), Characters(u""))),
              "Character[3 3]'abcd     '");
    EXPECT_EQ(Disclose(*NestedVector(Booleans("11"), Booleans("1"), Booleans("011"))),
              "Boolean[3 3]1 1 0 1 0 0 0 1 1");
    EXPECT_EQ(Disclose(*NestedVector(Reals({1.5}), Reals({2.5, 3.5}))), "Real[2 2]1.5 0 2.5 3.5");
}

TEST_F(DiscloseTest, EqualRowsAreLaidOneBehindTheOther)
{
    EXPECT_EQ(Disclose(*NestedVector(Integers({1, 2}), Integers({3, 4}))), "Integer[2 2]1 2 3 4");
    EXPECT_EQ(Disclose(*NestedVector(Booleans("101"), Booleans("110"), Booleans("011"))),
              "Boolean[3 3]1 0 1 1 1 0 0 1 1");
    EXPECT_EQ(Disclose(*Nested({2, 1}, Characters(u"ab"), Characters(u"cd"))), "Character[2 1 2]'abcd'");
}

TEST_F(DiscloseTest, EachAxisIsPaddedToItsLongest)
{
    EXPECT_EQ(Disclose(*NestedVector(Integers({1, 3}, {1, 2, 3}), Integers({2, 2}, {4, 5, 6, 7}))),
              "Integer[2 2 3]1 2 3 0 0 0 4 5 0 6 7 0");
    EXPECT_EQ(Disclose(*NestedVector(Characters({2, 1, 2}, u"abcd"), Characters({1, 2, 2}, u"efgh"))),
              "Character[2 2 2 2]'ab  cd  efgh    '");
    EXPECT_EQ(Disclose(*NestedVector(Integers({1, 2}, {1, 2}), Integers({2, 2}, {3, 4, 5, 6}))),
              "Integer[2 2 2]1 2 0 0 3 4 5 6");
}

// Places every element by its indices, one at a time.
std::vector<std::int64_t> PlacePlainly(const std::vector<Shape>& shapes, const Shape& cell)
{
    std::vector<std::int64_t> result;
    std::int64_t value = 0;
    for (const Shape& shape : shapes) {
        for (std::int64_t i = 0; i < cell[0]; ++i) {
            for (std::int64_t j = 0; j < cell[1]; ++j) {
                for (std::int64_t k = 0; k < cell[2]; ++k)
                    result.push_back(i < shape[0] && j < shape[1] && k < shape[2] ? ++value : 0);
            }
        }
    }
    return result;
}

TEST_F(DiscloseTest, RandomShapesAgreeWithPlainPlacing)
{
    std::mt19937 random(17);
    for (int round = 0; round < 300; ++round) {
        std::vector<Shape> shapes;
        Shape cell(3, 0);
        std::int64_t next = 0;
        ScdrPtr argument = Make(TypeNested, {3});
        for (std::int64_t item = 0; item < 3; ++item) {
            Shape shape;
            for (int axis = 0; axis < 3; ++axis)
                shape.push_back(static_cast<std::int64_t>(random() % 4));
            for (std::size_t axis = 0; axis < 3; ++axis)
                cell[axis] = std::max(cell[axis], shape[axis]);
            std::vector<std::int64_t> items(static_cast<std::size_t>(shape[0] * shape[1] * shape[2]));
            for (std::int64_t& element : items)
                element = ++next;
            SetChild(*argument, item, Integers(shape, items));
            shapes.push_back(shape);
        }
        const ScdrPtr result = BuiltinDisclose(&context, *argument);
        ASSERT_NE(result, nullptr);
        EXPECT_EQ(ShapeOf(*result), (Shape{3, cell[0], cell[1], cell[2]}));
        EXPECT_EQ(ItemsOf<std::int64_t>(*result), PlacePlainly(shapes, cell));
    }
}

TEST_F(DiscloseTest, LesserNumbersAreWidened)
{
    EXPECT_EQ(Disclose(*NestedVector(Booleans("10"), Integers({5, 6}))), "Integer[2 2]1 0 5 6");
    EXPECT_EQ(Disclose(*NestedVector(Integers({5, 6}), Booleans("1"))), "Integer[2 2]5 6 1 0");
    EXPECT_EQ(Disclose(*NestedVector(Integers({5}), Reals({0.5}), Booleans("1"))), "Real[3 1]5 0.5 1");
    EXPECT_EQ(Disclose(*NestedVector(Complexes({1}, {1, 2}), Reals({3}), Integers({4}), Booleans("1"))),
              "Complex[4 1]1J2 3J0 4J0 1J0");
}

TEST_F(DiscloseTest, MixedTypesBecomeNestedScalars)
{
    EXPECT_EQ(Disclose(*NestedVector(Integers({1, 2}), Characters(u"ab"))),
              "General[2 2](Integer[]1 Integer[]2 Character[]'a' Character[]'b')");
    EXPECT_EQ(Disclose(*NestedVector(Characters(u"ab"), Booleans("10"))),
              "General[2 2](Character[]'a' Character[]'b' Boolean[]1 Boolean[]0)");
    EXPECT_EQ(Disclose(*NestedVector(Integers({7}), Integers({8}), Characters(u"c"), Reals({0.5}))),
              "General[4 1](Integer[]7 Integer[]8 Character[]'c' Real[]0.5)");
}

TEST_F(DiscloseTest, NestedPaddingIsEachItemsPrototype)
{
    EXPECT_EQ(Disclose(*NestedVector(Integers({1}), Characters(u"abc"))),
              "General[2 3](Integer[]1 Boolean[]0 Boolean[]0 Character[]'a' Character[]'b' Character[]'c')");
    EXPECT_EQ(Disclose(*NestedVector(Characters(u"a"), Integers({1, 2}))),
              "General[2 2](Character[]'a' Character[]' ' Integer[]1 Integer[]2)");
    EXPECT_EQ(Disclose(*NestedVector(NestedVector(Integers({1, 2})), Integers({1, 2}))),
              "General[2 2](Integer[2]1 2 Boolean[2]0 0 Integer[]1 Integer[]2)");
}

TEST_F(DiscloseTest, NestedItemsGiveTheirChildren)
{
    EXPECT_EQ(Disclose(*NestedVector(NestedVector(Integers({1, 2}), Integer(3)),
                                     NestedVector(Characters(u"x"), Integer(4)))),
              "General[2 2](Integer[2]1 2 Integer[]3 Character[1]'x' Integer[]4)");
    EXPECT_EQ(Disclose(*NestedVector(Integer(1), Nested({}, Characters(u"ab")))),
              "General[2](Integer[]1 Character[2]'ab')");
}

TEST_F(DiscloseTest, ScalarsMixWithItemsOfAnyRank)
{
    EXPECT_EQ(Disclose(*NestedVector(Integer(9), Integers({1, 2}))), "Integer[2 2]9 0 1 2");
    EXPECT_EQ(Disclose(*NestedVector(Integers({1, 2}), Integer(9))), "Integer[2 2]1 2 9 0");
    EXPECT_EQ(Disclose(*NestedVector(Integer(9), Integers({2, 1}, {1, 2}))), "Integer[2 2 1]9 0 1 2");
    EXPECT_EQ(Disclose(*NestedVector(Integers({1}), Integer(9))), "Integer[2 1]1 9");
}

TEST_F(DiscloseTest, AScalarIsNotLostAmongEmptyItems)
{
    EXPECT_EQ(Disclose(*NestedVector(Integer(9), Integers(std::vector<std::int64_t>{}))), "Integer[2 1]9 0");
    EXPECT_EQ(Disclose(*NestedVector(Integers(std::vector<std::int64_t>{}), Integer(9))), "Integer[2 1]0 9");
    EXPECT_EQ(Disclose(*NestedVector(Characters({0, 3}, u""), Characters(Shape{}, u"x"))),
              "Character[2 1 3]'   x  '");
}

TEST_F(DiscloseTest, DifferentRanksAreRefused)
{
    EXPECT_EQ(Disclose(*NestedVector(Integers({1, 2}), Integers({2, 1}, {1, 2}))), "error 16");
    EXPECT_EQ(Disclose(*NestedVector(Integer(1), Integers({1}), Characters({1, 1}, u"a"))), "error 16");
}

TEST_F(DiscloseTest, EmptyArraysDecideByTheirPrototype)
{
    EXPECT_EQ(Disclose(*Nested({0}, Integers({0, 0, 0}))), "Integer[0 3]");
    EXPECT_EQ(Disclose(*Nested({0}, Characters(u"  "))), "Character[0 2]''");
    EXPECT_EQ(Disclose(*Nested({0}, Integer(0))), "General[0](Integer[]0)");
    EXPECT_EQ(Disclose(*Nested({0}, NestedVector(Integers({1, 2}), Characters(u"ab")))),
              "General[0 2](Boolean[2]0 0)");
}

TEST_F(DiscloseTest, ANestedResultWithoutElementsKeepsAPrototype)
{
    EXPECT_EQ(Disclose(*NestedVector(Characters(u""), Integers(std::vector<std::int64_t>{}))),
              "General[2 0](Character[]' ')");
    EXPECT_EQ(Disclose(*NestedVector(Integers(std::vector<std::int64_t>{}), Characters(u""))),
              "General[2 0](Boolean[]0)");
}

TEST_F(DiscloseTest, DecimalsAreCopiedAsBytes)
{
    const ScdrPtr argument = NestedVector(Decimals(2), Decimals(1));
    const ScdrPtr result = BuiltinDisclose(&context, *argument);
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(ShapeOf(*result), (Shape{2, 2}));
    EXPECT_EQ(result->Type, static_cast<std::uint32_t>(TypeDecimal));
    const auto* bytes = static_cast<const std::uint8_t*>(result->data);
    EXPECT_EQ(std::count(bytes, bytes + 48, std::uint8_t{0x5A}), 48);
    EXPECT_EQ(std::count(bytes + 48, bytes + 64, std::uint8_t{0}), 16);
}

TEST_F(DiscloseTest, WideningToDecimalIsLeftToTheHost)
{
    EXPECT_EQ(Disclose(*NestedVector(Decimals(1), Integers({1}))), "error 0");
    EXPECT_EQ(Disclose(*NestedVector(Booleans("1"), Decimals(1))), "error 0");
    EXPECT_EQ(Disclose(*NestedVector(Characters(u"a"), Characters(u"b"), Decimals(1))).substr(0, 13),
              "General[3 1](");
}

TEST_F(DiscloseTest, UnknownTypesAreRefused)
{
    ScdrPtr argument = NestedVector(Integers({1, 2}), Integers({3, 4}));
    Children(*argument)[1]->Type = 12;
    EXPECT_EQ(Disclose(*argument), "error 18");
    Children(*argument)[1]->Type = TypeInteger;
}

TEST_F(DiscloseTest, TheResultHasItsSimplestTypeAndPlanes)
{
    const ScdrPtr zeros = BuiltinDisclose(&context, *NestedVector(Integers({0, 1}), Integers({1, 1})));
    EXPECT_EQ(zeros->SimplestType, TypeBoolean);
    EXPECT_EQ(zeros->parent, nullptr);
    const ScdrPtr planes = BuiltinDisclose(
        &context, *NestedVector(Integers({1, 1}, {1}), Integers({1, 1}, {2}), Integers({1, 1}, {3})));
    EXPECT_EQ(PlaneCount(*planes), 3);
    const ScdrPtr nested = BuiltinDisclose(&context, *NestedVector(Integers({1}), Characters(u"a")));
    EXPECT_EQ(Children(*nested)[0]->SimplestType, TypeBoolean);
}

TEST_F(DiscloseTest, TheArgumentIsUntouched)
{
    const ScdrPtr argument = NestedVector(Integers({1}), Characters(u"abc"), NestedVector(Integer(1)));
    const std::string before = DumpTree(*argument);
    Disclose(*argument);
    EXPECT_EQ(DumpTree(*argument), before);
}

TEST_F(DiscloseTest, ShapesThatDoNotFitAreOutOfMemory)
{
    ScdrPtr argument = Make(TypeNested, {2});
    SetChild(*argument, 0, Integers({std::int64_t{1} << 62, 0}, {}));
    SetChild(*argument, 1, Integers({0, std::int64_t{1} << 62}, {}));
    EXPECT_EQ(Disclose(*argument), "error 9");
}

TEST_F(DiscloseTest, FailedAllocationsLeaveNothingBehind)
{
    const ScdrPtr arguments[] = {
        NestedVector(Integers({1, 2}), Integers({3, 4, 5})),
        NestedVector(Integers({1}), Characters(u"abc"), NestedVector(Integers({1, 2}))),
        Nested({0}, NestedVector(Integers({1, 2}), Characters(u"ab"))),
        NestedVector(Integer(1), Integer(2)),
        Nested({}, Characters(u"a text too long to lie within its node")),
    };
    for (const ScdrPtr& argument : arguments) {
        const int faults = SweepAllocationFaults([&] {
            const ScdrPtr result = BuiltinDisclose(&context, *argument);
            EXPECT_EQ(TakeError(), result ? VTERROR_CODE::NoError : VTERROR_CODE::OutOfMemory);
        });
        EXPECT_GT(faults, 0);
    }
}

} // namespace
} // namespace vantrel::test
