#include "builtin/numeric.h"

#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "builtin/format.h"
#include "unit/builtin/arrays.h"

namespace vantrel::test {
namespace {

constexpr const char16_t* HighMinusFive = u"\u00AF5";

class BuiltinCtnTest : public Arrays {
protected:
    ScdrPtr Convert(std::u16string_view text) { return BuiltinCtn(&context, *Characters(text)); }
    void ExpectIntegers(std::u16string_view text, const std::vector<std::int64_t>& expected)
    {
        const ScdrPtr result = Convert(text);
        ASSERT_NE(result, nullptr);
        ASSERT_EQ(result->Type, static_cast<std::uint32_t>(TypeInteger));
        EXPECT_EQ(result->Rank, 1);
        EXPECT_EQ(ItemsOf<std::int64_t>(*result), expected);
    }
    void ExpectDoubles(std::u16string_view text, std::uint32_t type, const std::vector<double>& expected)
    {
        const ScdrPtr result = Convert(text);
        ASSERT_NE(result, nullptr);
        ASSERT_EQ(result->Type, type);
        EXPECT_EQ(ItemsOf<double>(*result), expected);
    }
    void ExpectRefused(std::u16string_view text, VTERROR_CODE code)
    {
        EXPECT_EQ(Convert(text), nullptr);
        EXPECT_EQ(TakeError(), code);
    }
};

TEST_F(BuiltinCtnTest, ReadsIntegersSeparatedByBlanks)
{
    ExpectIntegers(u"1 2 3", {1, 2, 3});
    ExpectIntegers(u"   10    -20  007 ", {10, -20, 7});
    ExpectIntegers(u"9223372036854775807 -9223372036854775808",
                   {std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()});
    ExpectIntegers(HighMinusFive, {-5});
}

TEST_F(BuiltinCtnTest, APointOrAnExponentMakesReals)
{
    ExpectDoubles(u"1 2.5", TypeReal, {1, 2.5});
    ExpectDoubles(u".5 5. -.25 1E3 1e-3 1E\u00AF2 -2.5E2", TypeReal,
                  {0.5, 5, -0.25, 1000, 0.001, 0.01, -250});
    ExpectDoubles(u"1.7976931348623157E308", TypeReal, {std::numeric_limits<double>::max()});
}

TEST_F(BuiltinCtnTest, AJMakesComplexNumbers)
{
    ExpectDoubles(u"3J4", TypeComplex, {3, 4});
    ExpectDoubles(u"1 2j-3 \u00AF1.5J2E2", TypeComplex, {1, 0, 2, -3, -1.5, 200});
    ExpectDoubles(u"3J4J5", TypeComplex, {3, 4});
}

TEST_F(BuiltinCtnTest, AnEmptyTextIsTheBooleanScalarZero)
{
    const ScdrPtr result = Convert(u"");
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(result->Type, static_cast<std::uint32_t>(TypeBoolean));
    EXPECT_EQ(result->Rank, 0);
    EXPECT_EQ(BitsOf(*result), "0");
    EXPECT_EQ(result->SimplestType, TypeBoolean);
}

TEST_F(BuiltinCtnTest, BlanksAloneAreNoNumbers)
{
    ExpectIntegers(u"   ", {});
}

TEST_F(BuiltinCtnTest, AScalarCharacterIsATextOfOneUnit)
{
    const ScdrPtr result = BuiltinCtn(&context, *Characters(Shape{}, u"7"));
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(DumpTree(*result), "Integer[1]7");
}

TEST_F(BuiltinCtnTest, TheResultKnowsItsSimplestType)
{
    EXPECT_EQ(Convert(u"0 1 1")->SimplestType, TypeBoolean);
    EXPECT_EQ(Convert(u"2 3")->SimplestType, TypeInteger);
    EXPECT_EQ(Convert(u"2. 3E0")->SimplestType, TypeInteger);
    EXPECT_EQ(Convert(u"2.5")->SimplestType, TypeReal);
    EXPECT_EQ(Convert(u"1J0")->SimplestType, TypeBoolean);
    EXPECT_EQ(Convert(u"1J1")->SimplestType, TypeComplex);
}

TEST_F(BuiltinCtnTest, RefusesUnitsThatNoNumberHas)
{
    for (const std::u16string_view text :
         {u"1+2", u"abc", u"1,2", u"0x10", u"1\t2", u"\u00B0", u"1 \u22952", u"nan", u"1\u00A02", u"1\n2"}) {
        ExpectRefused(text, VTERROR_CODE::DomainError);
    }
    ExpectRefused(std::u16string_view(u"1\0002", 3), VTERROR_CODE::DomainError);
}

TEST_F(BuiltinCtnTest, RefusesOtherTypesBeforeOtherRanks)
{
    EXPECT_EQ(BuiltinCtn(&context, *Integers({1, 2})), nullptr);
    EXPECT_EQ(TakeError(), VTERROR_CODE::DomainError);
    EXPECT_EQ(BuiltinCtn(&context, *Integers({1, 2}, {1, 2})), nullptr);
    EXPECT_EQ(TakeError(), VTERROR_CODE::DomainError);
    EXPECT_EQ(BuiltinCtn(&context, *Characters({1, 2}, u"12")), nullptr);
    EXPECT_EQ(TakeError(), VTERROR_CODE::RankError);
    EXPECT_EQ(BuiltinCtn(&context, *Characters({0, 2}, u"")), nullptr);
    EXPECT_EQ(TakeError(), VTERROR_CODE::RankError);
}

TEST_F(BuiltinCtnTest, RefusesNumbersThatDoNotFit)
{
    for (const std::u16string_view text :
         {u"99999999999999999999", u"9223372036854775808", u"-9223372036854775809", u"1E309", u"-2E400",
          u"1J1E999", u"1E99999999999999999999", u"18446744073709551616", u"0.001E312"}) {
        ExpectRefused(text, VTERROR_CODE::SyntaxError);
    }
    ExpectRefused(std::u16string(400, u'9') + u".5", VTERROR_CODE::SyntaxError);
}

TEST_F(BuiltinCtnTest, NumbersTooSmallForADoubleAreZero)
{
    ExpectDoubles(u"1E-400 -1E-400 0.0001E-323 1E-99999999999999999999", TypeReal, {0, 0, 0, 0});
    EXPECT_TRUE(std::signbit(ItemsOf<double>(*Convert(u"-1E-400"))[0]));
    ExpectDoubles(u"0." + std::u16string(400, u'0') + u"1", TypeReal, {0});
    ExpectDoubles(u"0E99999999999999999999", TypeReal, {0});
    ExpectDoubles(u"5E-324 1E-310", TypeReal, {5e-324, 1e-310});
}

TEST_F(BuiltinCtnTest, LongDigitStringsAndGreatExponentsCancel)
{
    ExpectDoubles(u"0." + std::u16string(400, u'0') + u"1E401", TypeReal, {1});
    ExpectDoubles(u"1" + std::u16string(400, u'0') + u"E-400", TypeReal, {1});
    ExpectIntegers(std::u16string(100000, u'0') + u"5", {5});
}

TEST_F(BuiltinCtnTest, RefusesWordsWithoutDigits)
{
    for (const std::u16string_view text : {u"-", u"1 -", u"--5", u".", u"E5", u"-.E1", u"1 . 2", u"J", u"J4",
                                           u"3J", u"3J ", u"3J-", u"3JJ", u"1J2 E", u"\u00AF", u"1E 2"}) {
        ExpectRefused(text, VTERROR_CODE::SyntaxError);
    }
}

TEST_F(BuiltinCtnTest, TheImaginaryPartStandsRightBehindTheJ)
{
    ExpectRefused(u"3J 4", VTERROR_CODE::SyntaxError);
}

TEST_F(BuiltinCtnTest, ReadsAsManyNumbersAsThereAreWords)
{
    ExpectIntegers(u"1-2", {1});
    ExpectIntegers(u"1-2 3", {1, -2});
    ExpectIntegers(u"1-2-3 4 5", {1, -2, -3});
    ExpectDoubles(u"1.5.25", TypeReal, {1.5});
    ExpectDoubles(u"1E5E6", TypeReal, {1e5});
    ExpectDoubles(u"2E", TypeReal, {2});
    ExpectDoubles(u"2E-", TypeReal, {2});
}

TEST_F(BuiltinCtnTest, LongTextsTakeTimeInProportion)
{
    // Numbers in one long word followed by as many words: quadratic work would never end here.
    constexpr std::size_t Count = 300000;
    std::u16string text;
    for (std::size_t i = 0; i < Count; ++i)
        text += u"1.-";
    text += u'1';
    for (std::size_t i = 1; i < Count; ++i)
        text += u" 1";
    const ScdrPtr result = Convert(text);
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(result->ElementCount, static_cast<std::int64_t>(Count));
    EXPECT_EQ(ItemsOf<double>(*result).back(), -1);
}

TEST_F(BuiltinCtnTest, TheArgumentIsUntouched)
{
    const ScdrPtr argument = Characters(HighMinusFive);
    const ScdrPtr result = BuiltinCtn(&context, *argument);
    EXPECT_EQ(TextOf(*argument), HighMinusFive);
}

TEST_F(BuiltinCtnTest, FailedAllocationsLeaveNothingBehind)
{
    const std::u16string longWord(200, u'7');
    const ScdrPtr argument = Characters(longWord + u".5 2 3J4 5 6 7 8 9 10");
    const int faults = SweepAllocationFaults([&] {
        const ScdrPtr result = BuiltinCtn(&context, *argument);
        EXPECT_EQ(TakeError(), result ? VTERROR_CODE::NoError : VTERROR_CODE::OutOfMemory);
    });
    EXPECT_GT(faults, 4);
}

TEST_F(BuiltinCtnTest, RefusalsLeaveNothingBehind)
{
    const std::int64_t before = LiveAllocations();
    for (const std::u16string_view text : {u"1 x", u"1 99999999999999999999", u"3J"})
        EXPECT_EQ(Convert(text), nullptr);
    EXPECT_EQ(LiveAllocations(), before);
}

TEST_F(BuiltinCtnTest, ReadsBackWhatPrecision17Formats)
{
    std::mt19937_64 random(11);
    context.printPrecision = 17;
    std::vector<double> values;
    while (values.size() < 20000) {
        const auto value = std::bit_cast<double>(random());
        if (std::isfinite(value)) values.push_back(value);
    }
    values.push_back(0.5); // so that the text is never one of integers alone
    for (const std::uint8_t capability : {std::uint8_t{0}, std::uint8_t{ViewCapabilityHighMinus}}) {
        environment.ViewCapabilities = capability;
        const ScdrPtr text = BuiltinFormat(&context, *Reals(values));
        ASSERT_NE(text, nullptr);
        const ScdrPtr numbers = BuiltinCtn(&context, *text);
        ASSERT_NE(numbers, nullptr);
        EXPECT_EQ(ItemsOf<double>(*numbers), values);
    }
}

TEST(UnicodeToNumbers, StopAtTheEndOfTheTextBehindANumber)
{
    std::int64_t integers[3] = {9, 9, 9};
    UnicodeToI8s(u" 4 -5 ", integers, 3);
    EXPECT_EQ(integers[0], 4);
    EXPECT_EQ(integers[1], -5);
    EXPECT_EQ(integers[2], 9);
}

TEST(UnicodeToNumbers, ReadNoMoreThanTheyAreAskedFor)
{
    double reals[3] = {9, 9, 9};
    UnicodeToF8s(u"1.5 2.5 x", reals, 2);
    EXPECT_EQ(reals[1], 2.5);
    EXPECT_EQ(reals[2], 9);
    UnicodeToF8s(u"x", reals, 0);
    double pairs[4] = {9, 9, 9, 9};
    UnicodeToJ16s(u"1J2 3", pairs, 1);
    EXPECT_EQ(pairs[1], 2);
    EXPECT_EQ(pairs[2], 9);
}

TEST(UnicodeToNumbers, ThrowWhereNoNumberStands)
{
    std::int64_t integer = 0;
    double pair[2] = {};
    EXPECT_THROW(UnicodeToI8s(u"", &integer, 1), VTERROR_CODE);
    EXPECT_THROW(UnicodeToI8s(u"1 x", &integer, 2), VTERROR_CODE);
    EXPECT_THROW(UnicodeToF8s(u"   ", pair, 1), VTERROR_CODE);
    EXPECT_THROW(UnicodeToJ16s(u"1J", pair, 1), VTERROR_CODE);
}

} // namespace
} // namespace vantrel::test
