#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

#include "hosts/array.h"
#include "hosts/atomic_vector.h"
#include "hosts/decimal.h"

namespace vantrel::fake {
namespace {

TEST(FakeArray, CountsItemsAndRefusesShapesThatDoNotFit)
{
    EXPECT_EQ(CountOf(Shape{}), 1u);
    EXPECT_EQ(CountOf(Shape{2, 3, 4}), 24u);
    EXPECT_EQ(CountOf(Shape{std::numeric_limits<std::int64_t>::max(), 0, 8}), 0u);
    EXPECT_THROW(CountOf(Shape{std::int64_t{1} << 40, std::int64_t{1} << 40}), std::length_error);
    EXPECT_THROW(CountOf(Shape{-1}), std::length_error);
    EXPECT_THROW(DataBytes(ElementType::Float, std::numeric_limits<std::size_t>::max() / 4),
                 std::length_error);
}

TEST(FakeArray, PacksBitsFromTheMostSignificant)
{
    const Array bits = BooleanArray({10}, {1, 0, 0, 0, 0, 0, 0, 1, 1, 0});
    EXPECT_EQ(bits.data, (std::vector<std::uint8_t>{0x81, 0x80}));
    EXPECT_EQ(RealsOf(bits), (std::vector<double>{1, 0, 0, 0, 0, 0, 0, 1, 1, 0}));
}

TEST(FakeArray, SqueezesNumbersIntoTheSmallestStorage)
{
    EXPECT_EQ(NumericArray({2}, {0, 1}).type, ElementType::Bit);
    EXPECT_EQ(NumericArray({2}, {1, -128}).type, ElementType::Int8);
    EXPECT_EQ(NumericArray({2}, {1, 128}).type, ElementType::Int16);
    EXPECT_EQ(NumericArray({2}, {-32769, 1}).type, ElementType::Int32);
    EXPECT_EQ(NumericArray({1}, {2147483648.0}).type, ElementType::Float);
    EXPECT_EQ(NumericArray({2}, {300, 0.5}).type, ElementType::Float);
    EXPECT_EQ(RealsOf(NumericArray({3}, {-2147483648.0, 2147483647, 0})),
              (std::vector<double>{-2147483648.0, 2147483647, 0}));
}

TEST(FakeArray, BuildersRefuseAnItemCountThatDoesNotFitTheShape)
{
    EXPECT_THROW(BooleanArray({2}, {1}), std::invalid_argument);
    EXPECT_THROW(FloatArray({2, 2}, {1, 2, 3}), std::invalid_argument);
    EXPECT_THROW(IntegerArray(ElementType::Int8, {1}, {200}), std::invalid_argument);
    EXPECT_THROW(NestedArray({0}, {}), std::invalid_argument);
    EXPECT_THROW(EmptyNestedArray({1}, Number(0)), std::invalid_argument);
    EXPECT_THROW(RawArray(ElementType::Float, {1}, {1, 2, 3}), std::invalid_argument);
}

TEST(FakeArray, SameValuesIgnoreTheStorageButNotTheKind)
{
    EXPECT_TRUE(SameValues(Number(1), FloatArray({}, {1})));
    EXPECT_FALSE(IdenticalArrays(Number(1), FloatArray({}, {1})));
    EXPECT_TRUE(SameValues(CharacterArray(ElementType::Char32, {2}, U"ab"), Text(u"ab")));
    EXPECT_TRUE(SameValues(ComplexArray({1}, {{2, 0}}), NumericArray({1}, {2})));
    EXPECT_FALSE(SameValues(Text(u""), EmptyVector()));
    EXPECT_FALSE(SameValues(Number(1), NumericArray({1}, {1})));
    EXPECT_FALSE(SameValues(NestedArray({1}, {Text(u"a")}), NestedArray({1}, {Text(u"b")})));
    EXPECT_TRUE(SameValues(FloatArray({}, {std::numeric_limits<double>::quiet_NaN()}),
                           FloatArray({}, {std::numeric_limits<double>::quiet_NaN()})));
}

TEST(FakeArray, IdenticalArraysIgnoreTheBitsBehindTheLast)
{
    Array padded = BooleanArray({3}, {1, 0, 1});
    padded.data[0] = static_cast<std::uint8_t>(padded.data[0] | 0x1F);
    EXPECT_TRUE(IdenticalArrays(padded, BooleanArray({3}, {1, 0, 1})));
    EXPECT_FALSE(IdenticalArrays(padded, BooleanArray({3}, {1, 1, 1})));
}

TEST(FakeArray, DumpsOneLine)
{
    const Array array =
        NestedArray({1, 2}, {Text(u"a\u2373"), EmptyNestedArray({0}, ComplexArray({}, {{1, -2}}))});
    EXPECT_EQ(Dump(array), "nested[1 2](char16[2]\"a\\{2373}\" nested[0](complex(1J-2)))");
    EXPECT_EQ(Dump(DecimalArray({2}, {"1.50", "-3"})), "decimal[2](1.50 -3)");
    EXPECT_EQ(Dump(FloatArray({}, {2.5})), "float(2.5)");
}

TEST(FakeArray, TranslatesCharactersOfTheClassicEditionBothWays)
{
    Array array = NestedArray({2}, {Text(u"\u2373a\u2190"), Number(3)});
    char32_t missing = 0;
    ASSERT_TRUE(ToAtomicCharacters(array, &missing));
    EXPECT_EQ(array.items[0].type, ElementType::AtomicCharacter);
    EXPECT_EQ(array.items[0].data, (std::vector<std::uint8_t>{178, 17, 245}));
    FromAtomicCharacters(array);
    EXPECT_TRUE(SameValues(array.items[0], Text(u"\u2373a\u2190")));
    Array foreign = Text(u"\u0416");
    EXPECT_FALSE(ToAtomicCharacters(foreign, &missing));
    EXPECT_EQ(missing, U'\u0416');
}

TEST(FakeArray, AtomicVectorHoldsEveryPositionOnce)
{
    for (int position = 0; position < 256; ++position) {
        EXPECT_EQ(ToAtomic(FromAtomic(static_cast<std::uint8_t>(position))), position);
    }
    EXPECT_EQ(ToAtomic(0x10FFFF), -1);
}

TEST(FakeDecimal, TextsComeBack)
{
    for (const char* text :
         {"0", "1", "-12.50", "0.001", "1234567890123456789012345678901234", "1E+30", "-9.99E-20", "0.00"}) {
        DecimalBytes bytes;
        ASSERT_TRUE(DecimalFromText(text, bytes)) << text;
        EXPECT_EQ(DecimalToText(bytes), text);
    }
}

TEST(FakeDecimal, HasTheBitsOfTheStandard)
{
    DecimalBytes one;
    ASSERT_TRUE(DecimalFromText("1", one));
    EXPECT_EQ(one, (DecimalBytes{1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x40, 0x30}));
}

TEST(FakeDecimal, RefusesWhatIsNoNumberOrTooLong)
{
    DecimalBytes bytes;
    for (const char* text :
         {"", "-", ".", "1.2.3", "1E", "abc", "12345678901234567890123456789012345", "1E+999999"}) {
        EXPECT_FALSE(DecimalFromText(text, bytes)) << text;
    }
}

TEST(FakeDecimal, NamesWhatIsNoNumber)
{
    DecimalBytes bytes{};
    bytes[15] = 0x78;
    EXPECT_EQ(DecimalToText(bytes), "Infinity");
    bytes[15] = 0xF8;
    EXPECT_EQ(DecimalToText(bytes), "-Infinity");
    bytes[15] = 0x7C;
    EXPECT_EQ(DecimalToText(bytes), "NaN");
}

} // namespace
} // namespace vantrel::fake
