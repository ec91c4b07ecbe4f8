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
        CheckParents(*result);
        return Picture(*result);
    }
    static void CheckParents(const Scdr& node)
    {
        for (std::int64_t i = 0; i < ChildCount(node); ++i) {
            ASSERT_NE(Children(node)[i], nullptr);
            EXPECT_EQ(Children(node)[i]->parent, &node);
            CheckParents(*Children(node)[i]);
        }
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
    EXPECT_EQ(Disclose(*Integers({2, 2}, {1, 2, 3, 4})), "2 2 I,1,2,3,4");
    EXPECT_EQ(Disclose(*Characters(u"")), "0 C''");
}

TEST_F(DiscloseTest, ANestedScalarGivesItsItem)
{
    EXPECT_EQ(Disclose(*Nested({}, Characters(u"abc"))), "3 C'abc'");
    EXPECT_EQ(Disclose(*Nested({}, NestedVector(Integer(1), Characters(u"a")))), "2 N(I,1 | 1 C'a')");
}

TEST_F(DiscloseTest, SimpleScalarsStayNested)
{
    EXPECT_EQ(Disclose(*NestedVector(Integer(1), Integer(2))), "2 N(I,1 | I,2)");
    EXPECT_EQ(Disclose(*NestedVector(Integer(1), Characters(Shape{}, u"a"))), "2 N(I,1 | C'a')");
}

TEST_F(DiscloseTest, ShorterRowsArePaddedWithTheirFill)
{
    EXPECT_EQ(Disclose(*NestedVector(Integers({1, 2}), Integers({3, 4, 5}))), "2 3 I,1,2,0,3,4,5");
    EXPECT_EQ(Disclose(*NestedVector(Characters(u"abc"), Characters(u"d"), Characters(u""))), "3 3 C'abcd     '");
    EXPECT_EQ(Disclose(*NestedVector(Booleans("11"), Booleans("1"), Booleans("011"))), "3 3 B110100011");
    EXPECT_EQ(Disclose(*NestedVector(Reals({1.5}), Reals({2.5, 3.5}))), "2 2 R,1.500000,0.000000,2.500000,3.500000");
}

TEST_F(DiscloseTest, EqualRowsAreLaidOneBehindTheOther)
{
    EXPECT_EQ(Disclose(*NestedVector(Integers({1, 2}), Integers({3, 4}))), "2 2 I,1,2,3,4");
    EXPECT_EQ(Disclose(*NestedVector(Booleans("101"), Booleans("110"), Booleans("011"))), "3 3 B101110011");
    EXPECT_EQ(Disclose(*Nested({2, 1}, Characters(u"ab"), Characters(u"cd"))), "2 1 2 C'abcd'");
}

TEST_F(DiscloseTest, EachAxisIsPaddedToItsLongest)
{
    EXPECT_EQ(Disclose(*NestedVector(Integers({1, 3}, {1, 2, 3}), Integers({2, 2}, {4, 5, 6, 7}))), "2 2 3 I,1,2,3,0,0,0,4,5,0,6,7,0");
    EXPECT_EQ(Disclose(*NestedVector(Characters({2, 1, 2}, u"abcd"), Characters({1, 2, 2}, u"efgh"))), "2 2 2 2 C'ab  cd  efgh    '");
    EXPECT_EQ(Disclose(*NestedVector(Integers({1, 2}, {1, 2}), Integers({2, 2}, {3, 4, 5, 6}))), "2 2 2 I,1,2,0,0,3,4,5,6");
}

// Places every element by its indices, one at a time.
std::vector<std::int64_t> PlacePlainly(const std::vector<Shape>& shapes, const Shape& cell)
{
    std::vector<std::int64_t> result;
    std::int64_t value = 0;
    for (const Shape& shape : shapes) {
        for (std::int64_t i = 0; i < cell[0]; ++i) {
            for (std::int64_t j = 0; j < cell[1]; ++j) {
                for (std::int64_t k = 0; k < cell[2]; ++k) result.push_back(i < shape[0] && j < shape[1] && k < shape[2] ? ++value : 0);
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
            for (int axis = 0; axis < 3; ++axis) shape.push_back(static_cast<std::int64_t>(random() % 4));
            for (std::size_t axis = 0; axis < 3; ++axis) cell[axis] = std::max(cell[axis], shape[axis]);
            std::vector<std::int64_t> items(static_cast<std::size_t>(shape[0] * shape[1] * shape[2]));
            for (std::int64_t& element : items) element = ++next;
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
    EXPECT_EQ(Disclose(*NestedVector(Booleans("10"), Integers({5, 6}))), "2 2 I,1,0,5,6");
    EXPECT_EQ(Disclose(*NestedVector(Integers({5, 6}), Booleans("1"))), "2 2 I,5,6,1,0");
    EXPECT_EQ(Disclose(*NestedVector(Integers({5}), Reals({0.5}), Booleans("1"))), "3 1 R,5.000000,0.500000,1.000000");
    EXPECT_EQ(Disclose(*NestedVector(Complexes({1}, {1, 2}), Reals({3}), Integers({4}), Booleans("1"))),
              "4 1 J,1.000000,2.000000,3.000000,0.000000,4.000000,0.000000,1.000000,0.000000");
}

TEST_F(DiscloseTest, MixedTypesBecomeNestedScalars)
{
    EXPECT_EQ(Disclose(*NestedVector(Integers({1, 2}), Characters(u"ab"))), "2 2 N(I,1 | I,2 | C'a' | C'b')");
    EXPECT_EQ(Disclose(*NestedVector(Characters(u"ab"), Booleans("10"))), "2 2 N(C'a' | C'b' | B1 | B0)");
    EXPECT_EQ(Disclose(*NestedVector(Integers({7}), Integers({8}), Characters(u"c"), Reals({0.5}))), "4 1 N(I,7 | I,8 | C'c' | R,0.500000)");
}

TEST_F(DiscloseTest, NestedPaddingIsEachItemsPrototype)
{
    EXPECT_EQ(Disclose(*NestedVector(Integers({1}), Characters(u"abc"))), "2 3 N(I,1 | B0 | B0 | C'a' | C'b' | C'c')");
    EXPECT_EQ(Disclose(*NestedVector(Characters(u"a"), Integers({1, 2}))), "2 2 N(C'a' | C' ' | I,1 | I,2)");
    EXPECT_EQ(Disclose(*NestedVector(NestedVector(Integers({1, 2})), Integers({1, 2}))), "2 2 N(2 I,1,2 | 2 B00 | I,1 | I,2)");
}

TEST_F(DiscloseTest, NestedItemsGiveTheirChildren)
{
    EXPECT_EQ(Disclose(*NestedVector(NestedVector(Integers({1, 2}), Integer(3)), NestedVector(Characters(u"x"), Integer(4)))),
              "2 2 N(2 I,1,2 | I,3 | 1 C'x' | I,4)");
    EXPECT_EQ(Disclose(*NestedVector(Integer(1), Nested({}, Characters(u"ab")))), "2 N(I,1 | 2 C'ab')");
}

TEST_F(DiscloseTest, ScalarsMixWithItemsOfAnyRank)
{
    EXPECT_EQ(Disclose(*NestedVector(Integer(9), Integers({1, 2}))), "2 2 I,9,0,1,2");
    EXPECT_EQ(Disclose(*NestedVector(Integers({1, 2}), Integer(9))), "2 2 I,1,2,9,0");
    EXPECT_EQ(Disclose(*NestedVector(Integer(9), Integers({2, 1}, {1, 2}))), "2 2 1 I,9,0,1,2");
    EXPECT_EQ(Disclose(*NestedVector(Integers({1}), Integer(9))), "2 1 I,1,9");
}

TEST_F(DiscloseTest, AScalarIsNotLostAmongEmptyItems)
{
    EXPECT_EQ(Disclose(*NestedVector(Integer(9), Integers(std::vector<std::int64_t>{}))), "2 1 I,9,0");
    EXPECT_EQ(Disclose(*NestedVector(Integers(std::vector<std::int64_t>{}), Integer(9))), "2 1 I,0,9");
    EXPECT_EQ(Disclose(*NestedVector(Characters({0, 3}, u""), Characters(Shape{}, u"x"))), "2 1 3 C'   x  '");
}

TEST_F(DiscloseTest, DifferentRanksAreRefused)
{
    EXPECT_EQ(Disclose(*NestedVector(Integers({1, 2}), Integers({2, 1}, {1, 2}))), "error 16");
    EXPECT_EQ(Disclose(*NestedVector(Integer(1), Integers({1}), Characters({1, 1}, u"a"))), "error 16");
}

TEST_F(DiscloseTest, EmptyArraysDecideByTheirPrototype)
{
    EXPECT_EQ(Disclose(*Nested({0}, Integers({0, 0, 0}))), "0 3 I");
    EXPECT_EQ(Disclose(*Nested({0}, Characters(u"  "))), "0 2 C''");
    EXPECT_EQ(Disclose(*Nested({0}, Integer(0))), "0 N(I,0)");
    EXPECT_EQ(Disclose(*Nested({0}, NestedVector(Integers({1, 2}), Characters(u"ab")))), "0 2 N(2 B00)");
}

TEST_F(DiscloseTest, ANestedResultWithoutElementsKeepsAPrototype)
{
    EXPECT_EQ(Disclose(*NestedVector(Characters(u""), Integers(std::vector<std::int64_t>{}))), "2 0 N(C' ')");
    EXPECT_EQ(Disclose(*NestedVector(Integers(std::vector<std::int64_t>{}), Characters(u""))), "2 0 N(B0)");
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
    EXPECT_EQ(Disclose(*NestedVector(Characters(u"a"), Characters(u"b"), Decimals(1))).substr(0, 6), "3 1 N(");
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
    const ScdrPtr planes = BuiltinDisclose(&context, *NestedVector(Integers({1, 1}, {1}), Integers({1, 1}, {2}), Integers({1, 1}, {3})));
    EXPECT_EQ(PlaneCount(*planes), 3);
    const ScdrPtr nested = BuiltinDisclose(&context, *NestedVector(Integers({1}), Characters(u"a")));
    EXPECT_EQ(Children(*nested)[0]->SimplestType, TypeBoolean);
}

TEST_F(DiscloseTest, TheArgumentIsUntouched)
{
    const ScdrPtr argument = NestedVector(Integers({1}), Characters(u"abc"), NestedVector(Integer(1)));
    const std::string before = Picture(*argument);
    Disclose(*argument);
    EXPECT_EQ(Picture(*argument), before);
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
        SweepAllocationFaults([&] {
            const ScdrPtr result = BuiltinDisclose(&context, *argument);
            EXPECT_EQ(TakeError(), result ? VTERROR_CODE::NoError : VTERROR_CODE::OutOfMemory);
            return result != nullptr;
        });
    }
}

} // namespace
} // namespace vantrel::test
