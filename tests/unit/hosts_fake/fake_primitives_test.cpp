#include <gtest/gtest.h>

#include "hosts/fake_dyalog.h"
#include "hosts/fake_format.h"
#include "hosts/fake_primitives.h"

namespace vantrel::fake {
namespace {

// The result's dump, or the error number.
std::string Compute(std::int64_t code, const Array& argument, const LanguageSettings& settings = {})
{
    Array result;
    const std::int64_t status = ComputePrimitive(code, argument, settings, result);
    return status == 0 ? Dump(result) : "error " + std::to_string(status);
}

Array Matrix23()
{
    return NumericArray({2, 3}, {1, 2, 3, 4, 5, 6});
}

TEST(FakePrimitives, VerifyAndFixMarksWhatIsNoNumber)
{
    EXPECT_EQ(Compute(PrimitiveCode::VerifyAndFix, Text(u"1 \u00AF2.5 x -3 1E\u00AF2 1+2 --4")),
              "nested[2](bit[7](1 1 0 1 1 0 0) float[7](1 -2.5 0 -3 0.01 0 0))");
    EXPECT_EQ(Compute(PrimitiveCode::VerifyAndFix, Text(u"3J4 1j\u00AF1 2")),
              "nested[2](bit[3](1 1 1) complex[3](3J4 1J-1 2J0))");
    EXPECT_EQ(Compute(PrimitiveCode::VerifyAndFix, Text(u"12\r\n13")),
              "nested[2](bit[2](1 1) int8[2](12 13))");
    EXPECT_EQ(Compute(PrimitiveCode::VerifyAndFix, Text(u"  ")), "nested[2](bit[0]() bit[0]())");
    EXPECT_EQ(Compute(PrimitiveCode::VerifyAndFix, Text(u"1J 1E 5e2 .5 1E999")),
              "nested[2](bit[5](0 0 1 1 0) float[5](0 0 500 0.5 0))");
    EXPECT_EQ(Compute(PrimitiveCode::VerifyAndFix, Number(3)), "error 11");
    EXPECT_EQ(Compute(PrimitiveCode::VerifyAndFix, TextOf({1, 1}, u"1")), "error 4");
}

TEST(FakePrimitives, FormatsNestedArraysLineByLine)
{
    const Array array = NestedArray({2}, {Text(u"ab"), Matrix23()});
    EXPECT_EQ(Compute(PrimitiveCode::Format, array), "char8[2 8]\"ab 1 2 3   4 5 6\"");
    EXPECT_EQ(Compute(PrimitiveCode::Format, NestedArray({2}, {Text(u"ab"), Number(-2)})),
              "char8[5]\"ab \\{af}2\"");
}

TEST(FakePrimitives, FormatsDecimals)
{
    EXPECT_EQ(Compute(PrimitiveCode::Format, DecimalArray({2}, {"1.50", "-2"})), "char8[7]\"1.50 \\{af}2\"");
    EXPECT_EQ(Compute(PrimitiveCode::Format, DecimalArray({2, 2}, {"1", "22", "333", "4"})),
              "char8[2 6]\"  1 22333  4\"");
}

TEST(FakePrimitives, FormatsNumbersAtThePrintPrecision)
{
    EXPECT_EQ(FormatNumber(0.1, 10), u"0.1");
    EXPECT_EQ(FormatNumber(1e10, 10), u"1E10");
    EXPECT_EQ(FormatNumber(-0.00001, 10), u"\u00AF1E\u00AF5");
    EXPECT_EQ(FormatNumber(1.0 / 3, 4), u"0.3333");
}

TEST(FakePrimitives, PicksAndEncloses)
{
    EXPECT_EQ(Compute(PrimitiveCode::Ravel, Matrix23()), "int8[6](1 2 3 4 5 6)");
    EXPECT_EQ(Compute(PrimitiveCode::First, NestedArray({2}, {Text(u"ab"), Number(1)})), "char8[2]\"ab\"");
    EXPECT_EQ(Compute(PrimitiveCode::First, EmptyNestedArray({0}, Text(u"p"))), "char8[1]\"p\"");
    EXPECT_EQ(Compute(PrimitiveCode::First, Text(u"")), "char8\" \"");
    EXPECT_EQ(Compute(PrimitiveCode::Enclose, Number(5)), "int8(5)");
    EXPECT_EQ(Compute(PrimitiveCode::Enclose, Text(u"ab")), "nested(char8[2]\"ab\")");
}

TEST(FakePrimitives, Enlists)
{
    const Array numbers =
        NestedArray({2}, {NumericArray({2}, {1, 2}), NestedArray({1}, {FloatArray({}, {4.5})})});
    EXPECT_EQ(Compute(PrimitiveCode::Enlist, numbers), "float[3](1 2 4.5)");
    EXPECT_EQ(Compute(PrimitiveCode::Enlist, NestedArray({2}, {Number(1), Text(u"a")})),
              "nested[2](bit(1) char8\"a\")");
    EXPECT_EQ(Compute(PrimitiveCode::Enlist, EmptyNestedArray({0}, Text(u"x"))), "bit[0]()");
}

TEST(FakePrimitives, ReversesAndTransposes)
{
    EXPECT_EQ(Compute(PrimitiveCode::Reverse, Matrix23()), "int8[2 3](3 2 1 6 5 4)");
    EXPECT_EQ(Compute(PrimitiveCode::ReverseFirst, Matrix23()), "int8[2 3](4 5 6 1 2 3)");
    EXPECT_EQ(Compute(PrimitiveCode::Transpose, Matrix23()), "int8[3 2](1 4 2 5 3 6)");
    EXPECT_EQ(Compute(PrimitiveCode::Transpose, BooleanArray({1, 2, 2}, {1, 0, 0, 0})),
              "bit[2 2 1](1 0 0 0)");
    EXPECT_EQ(Compute(PrimitiveCode::Transpose, NumericArray({2, 1, 3}, {1, 2, 3, 4, 5, 6})),
              "int8[3 1 2](1 4 2 5 3 6)");
    EXPECT_EQ(Compute(PrimitiveCode::Reverse, Text(u"abc")), "char8[3]\"cba\"");
    EXPECT_EQ(Compute(PrimitiveCode::Reverse, Number(4)), "int8(4)");
}

TEST(FakePrimitives, Mixes)
{
    EXPECT_EQ(Compute(PrimitiveCode::Mix,
                      NestedArray({2}, {NumericArray({2}, {1, 2}), NumericArray({3}, {3, 4, 5})})),
              "int8[2 3](1 2 0 3 4 5)");
    EXPECT_EQ(Compute(PrimitiveCode::Mix, NestedArray({2}, {Text(u"ab"), Text(u"c")})), "char8[2 2]\"abc \"");
    EXPECT_EQ(Compute(PrimitiveCode::Mix, NestedArray({2}, {NumericArray({2}, {1, 2}), Matrix23()})),
              "error 4");
    EXPECT_EQ(Compute(PrimitiveCode::Mix, EmptyNestedArray({0}, Text(u"ab"))), "char8[0 2]\"\"");
}

TEST(FakePrimitives, GradesMajorCellsStably)
{
    EXPECT_EQ(Compute(PrimitiveCode::GradeUp, Text(u"bca")), "int8[3](3 1 2)");
    EXPECT_EQ(Compute(PrimitiveCode::GradeDown, NumericArray({4}, {1, 3, 1, 3}), {0, 10}),
              "int8[4](1 3 0 2)");
    EXPECT_EQ(Compute(PrimitiveCode::GradeUp, NumericArray({2, 2}, {1, 5, 1, 2})), "int8[2](2 1)");
    EXPECT_EQ(Compute(PrimitiveCode::GradeUp, ComplexArray({1}, {{1, 1}})), "error 11");
    EXPECT_EQ(Compute(PrimitiveCode::GradeUp, Number(1)), "error 4");
}

TEST(FakePrimitives, AnswersNonceForOtherCodes)
{
    EXPECT_EQ(Compute(200, Number(1)), "error 16");
}

} // namespace
} // namespace vantrel::fake
