#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

#include "builtin/format.h"
#include "builtin/number_digits.h"
#include "builtin/number_text.h"
#include "builtin/powers_of_ten.h"

namespace vantrel {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Greatest = std::numeric_limits<double>::max();

LangEnv Environment(bool highMinus)
{
    LangEnv environment = {};
    environment.ViewCapabilities = highMinus ? ViewCapabilityHighMinus : 0;
    return environment;
}

std::u16string F8(double value, std::int64_t precision, bool highMinus = false)
{
    char16_t buffer[NumberTextSize];
    std::fill_n(buffer, NumberTextSize, u'#');
    const std::int64_t length = FormatF8(Environment(highMinus), value, buffer, precision);
    EXPECT_EQ(buffer[length], 0);
    return {buffer, static_cast<std::size_t>(length)};
}

std::u16string I8(std::int64_t value, bool highMinus = false)
{
    char16_t buffer[NumberTextSize];
    const std::int64_t length = FormatI8(Environment(highMinus), value, buffer);
    EXPECT_EQ(buffer[length], 0);
    return {buffer, static_cast<std::size_t>(length)};
}

// The C library's %G with "+" and leading zeros taken out of the exponent.
std::u16string Reference(double value, int precision)
{
    char text[512];
    std::snprintf(text, sizeof text, "%.*G", precision, value);
    std::u16string result;
    for (const char* next = text; *next != 0;) {
        const char unit = *next++;
        result += static_cast<char16_t>(unit);
        if (unit != 'E') continue;
        if (*next == '+') ++next;
        if (*next == '-') result += static_cast<char16_t>(*next++);
        while (*next == '0')
            ++next;
    }
    return result;
}

std::string Narrow(const std::u16string& text)
{
    return {text.begin(), text.end()};
}

TEST(FormatF8, ShowsTheShorterOfFixedAndExponentForm)
{
    EXPECT_EQ(F8(0, 10), u"0");
    EXPECT_EQ(F8(1, 10), u"1");
    EXPECT_EQ(F8(1.5, 10), u"1.5");
    EXPECT_EQ(F8(0.1, 10), u"0.1");
    EXPECT_EQ(F8(100, 10), u"100");
    EXPECT_EQ(F8(9999999999.0, 10), u"9999999999");
    EXPECT_EQ(F8(1e10, 10), u"1E10");
    EXPECT_EQ(F8(1.5e10, 10), u"1.5E10");
    EXPECT_EQ(F8(0.0001, 10), u"0.0001");
    EXPECT_EQ(F8(0.00001, 10), u"1E-5");
    EXPECT_EQ(F8(0.000012345, 10), u"1.2345E-5");
    EXPECT_EQ(F8(1e100, 10), u"1E100");
    EXPECT_EQ(F8(123456.7, 3), u"1.23E5");
    EXPECT_EQ(F8(100000.4, 6), u"100000");
    EXPECT_EQ(F8(5e-324, 17), u"4.9406564584124654E-324");
}

TEST(FormatF8, WritesTheHighMinusForEverySign)
{
    EXPECT_EQ(F8(-2.5, 10, true), u"\u00AF2.5");
    EXPECT_EQ(F8(0.00001, 10, true), u"1E\u00AF5");
    EXPECT_EQ(F8(-1e-300, 10, true), u"\u00AF1E\u00AF300");
    EXPECT_EQ(F8(-0.0, 10, true), u"\u00AF0");
    EXPECT_EQ(F8(-2.5e-7, 20, true), u"\u00AF2.4999999999999998869E\u00AF7");
    EXPECT_EQ(F8(-2.5, 10, false), u"-2.5");
    EXPECT_EQ(F8(0.00001, 10, false), u"1E-5");
}

TEST(FormatF8, RoundingMayCarryIntoANewDigit)
{
    EXPECT_EQ(F8(9.9999, 3), u"10");
    EXPECT_EQ(F8(999.96, 4), u"1000");
    EXPECT_EQ(F8(9999.6, 4), u"1E4");
    EXPECT_EQ(F8(0.000099999, 2), u"0.0001");
    EXPECT_EQ(F8(0.99999999999, 10), u"1");
}

TEST(FormatF8, RoundsExactHalvesToEven)
{
    EXPECT_EQ(F8(2.5, 1), u"2");
    EXPECT_EQ(F8(3.5, 1), u"4");
    EXPECT_EQ(F8(0.125, 2), u"0.12");
    EXPECT_EQ(F8(0.375, 2), u"0.38");
    EXPECT_EQ(F8(1234.125, 6), u"1234.12");
    EXPECT_EQ(F8(8.5e15, 1), u"8E15");
}

TEST(FormatF8, TakesPrecisionZeroAsOneAndNegativeAsSix)
{
    EXPECT_EQ(F8(1234.5, 0), u"1E3");
    EXPECT_EQ(F8(7, 0), u"7");
    EXPECT_EQ(F8(1234.56789, -1), u"1234.57");
    EXPECT_EQ(F8(1234.56789, std::numeric_limits<std::int64_t>::min()), u"1234.57");
}

TEST(FormatF8, GreatPrecisionsStayWithinTheBuffer)
{
    EXPECT_EQ(F8(0.5, 1000000), u"0.5");
    for (const std::int64_t precision :
         {std::int64_t{121}, std::int64_t{122}, std::int64_t{128}, std::int64_t{129},
          std::int64_t{2147483648}, std::numeric_limits<std::int64_t>::max()}) {
        for (const double value :
             {-5e-324, -Greatest / 3, -1.0 / 3, -0.00012345678901234567, 0.1, 1e22 / 3}) {
            EXPECT_LE(F8(value, precision).size(), 128u) << value << " at " << precision;
            EXPECT_EQ(F8(value, precision), F8(value, 121)) << value << " at " << precision;
        }
    }
    EXPECT_EQ(F8(-5e-324, 121).size(), 128u);
}

TEST(FormatF8, GreatestDoublesHaveATextOfTheirOwnFromPrecision16)
{
    EXPECT_EQ(F8(Greatest, 16), u"+1.7976931348623150E+308");
    EXPECT_EQ(F8(-Greatest, 17, true), u"-1.7976931348623150E+308");
    EXPECT_EQ(F8(Infinity, 16), u"+1.7976931348623150E+308");
    EXPECT_EQ(F8(-Infinity, 300, true), u"-1.7976931348623150E+308");
    EXPECT_EQ(F8(std::nextafter(Greatest, 0), 17), u"1.7976931348623155E308");
    EXPECT_EQ(F8(Greatest, 15), u"1.79769313486232E308");
    EXPECT_EQ(F8(-Greatest, 15, true), u"\u00AF1.79769313486232E308");
}

TEST(FormatF8, NamesWhatIsNotFinite)
{
    EXPECT_EQ(F8(Infinity, 15), u"INF");
    EXPECT_EQ(F8(-Infinity, 10), u"-INF");
    EXPECT_EQ(F8(-Infinity, 10, true), u"\u00AFINF");
    EXPECT_EQ(F8(NotANumber, 10), u"NAN");
    EXPECT_EQ(F8(-NotANumber, 10), u"NAN");
    EXPECT_EQ(F8(NotANumber, 17), u"NAN");
    EXPECT_EQ(F8(NotANumber, 40), u"NAN");
}

double RandomValue(std::mt19937_64& random)
{
    switch (random() % 6) {
    case 0: return std::bit_cast<double>(random());
    case 1: return static_cast<double>(random() % 2000000) / 1000.0;
    case 2: return static_cast<double>(random() % 1000) - 500;
    case 3:
        return std::ldexp(static_cast<double>(random() % 4096),
                          -static_cast<int>(random() % 20)); // exact halves
    case 4: {                                                // close to powers of ten
        const double power = std::pow(10.0, static_cast<double>(random() % 640) - 330);
        return std::bit_cast<double>(std::bit_cast<std::uint64_t>(power) + random() % 5 - 2);
    }
    default: return std::ldexp(static_cast<double>(random() >> 11), -53);
    }
}

TEST(FormatF8, AgreesWithTheCLibraryOnRandomValues)
{
    std::mt19937_64 random(20240117);
    for (int i = 0; i < 300000; ++i) {
        const double value = RandomValue(random);
        const int precision = static_cast<int>(random() % (i % 10 == 0 ? 122 : 23));
        if (!std::isfinite(value) || (precision >= 16 && std::abs(value) >= Greatest)) continue;
        const std::u16string text = F8(value, precision);
        ASSERT_EQ(Narrow(text), Narrow(Reference(value, precision)))
            << std::hexfloat << value << " at " << precision;
    }
}

TEST(FormatF8, PreparedSizesAreThoseOfTheText)
{
    std::mt19937_64 random(7);
    const LangEnv environment = Environment(false);
    RealText prepared;
    for (int i = 0; i < 100000; ++i) {
        const double value = RandomValue(random);
        const auto precision = static_cast<std::int64_t>(random() % 25);
        const std::u16string text = F8(value, precision);
        PrepareText(value, MakeNumberStyle(environment, precision), prepared);
        const std::size_t integer = std::min(text.find_first_of(u".EJ"), text.size());
        ASSERT_EQ(static_cast<std::size_t>(prepared.size.integer), integer) << Narrow(text);
        ASSERT_EQ(static_cast<std::size_t>(prepared.size.rest), text.size() - integer) << Narrow(text);
    }
}

TEST(FormatF8, EmittingWritesNothingBehindTheText)
{
    std::mt19937_64 random(8);
    const NumberStyle style = MakeNumberStyle(Environment(true), 12);
    RealText prepared;
    for (int i = 0; i < 50000; ++i) {
        PrepareText(RandomValue(random), style, prepared);
        char16_t buffer[NumberTextSize + 1];
        std::fill_n(buffer, NumberTextSize + 1, u'#');
        const char16_t* const end = EmitText(prepared, buffer);
        ASSERT_EQ(end - buffer, prepared.size.integer + prepared.size.rest);
        ASSERT_EQ(std::count(end, static_cast<const char16_t*>(buffer) + NumberTextSize + 1, u'#'),
                  buffer + NumberTextSize + 1 - end);
    }
}

TEST(FormatI8, ShowsTheLowThirtyTwoBitsAsASignedNumber)
{
    EXPECT_EQ(I8(0), u"0");
    EXPECT_EQ(I8(7), u"7");
    EXPECT_EQ(I8(2147483647), u"2147483647");
    EXPECT_EQ(I8(2147483648), u"-2147483648");
    EXPECT_EQ(I8(4294967295), u"-1");
    EXPECT_EQ(I8(4294967297), u"1");
    EXPECT_EQ(I8(-4294967297), u"-1");
    EXPECT_EQ(I8(-2147483648LL), u"-2147483648");
    EXPECT_EQ(I8(std::numeric_limits<std::int64_t>::min()), u"0");
    EXPECT_EQ(I8(std::numeric_limits<std::int64_t>::max()), u"-1");
}

TEST(FormatI8, WritesTheHighMinusWhereTheHostHasIt)
{
    EXPECT_EQ(I8(-12, true), u"\u00AF12");
    EXPECT_EQ(I8(-12, false), u"-12");
}

TEST(NumberDigits, CountsDecimalDigits)
{
    EXPECT_EQ(CountDigits(0), 1);
    std::uint64_t power = 1;
    for (std::int32_t digits = 1; digits <= 20; ++digits) {
        EXPECT_EQ(CountDigits(power), digits);
        EXPECT_EQ(CountDigits(power - 1), digits == 1 ? 1 : digits - 1);
        power *= 10;
    }
    EXPECT_EQ(CountDigits(std::numeric_limits<std::uint64_t>::max()), 20);
}

TEST(NumberDigits, WritesLeadingZeros)
{
    char16_t text[9] = u"########";
    EXPECT_EQ(WriteDigitsBefore(text + 7, 1205, 6), text + 1);
    EXPECT_EQ(std::u16string(text), u"#001205#");
    EXPECT_EQ(WriteDigitsBefore(text + 2, 7, 1), text + 1);
    EXPECT_EQ(std::u16string(text), u"#701205#");
}

TEST(NumberDigits, WritesAllDigitsWithoutBeingToldTheirCount)
{
    for (const std::uint32_t value : {0u, 9u, 10u, 99u, 100u, 101u, 4294967295u}) {
        char16_t text[12] = u"###########";
        char16_t* const first = WriteDigitsBefore(text + 10, value);
        const std::string expected = std::to_string(value);
        EXPECT_EQ(Narrow(text), std::string(10 - expected.size(), '#') + expected + '#');
        EXPECT_EQ(text + 10 - first, static_cast<std::int64_t>(expected.size()));
    }
}

TEST(PowersOfTen, AreCutTo64Bits)
{
    EXPECT_EQ(PowerOfTenFraction(0), 0x8000000000000000u);
    EXPECT_EQ(PowerOfTenFraction(1), 0xA000000000000000u);
    EXPECT_EQ(PowerOfTenFraction(27), 0xCECB8F27F4200F3Au);
    EXPECT_EQ(PowerOfTenFraction(-1), 0xCCCCCCCCCCCCCCCCu);
    EXPECT_EQ(PowerOfTenFraction(-2), 0xA3D70A3D70A3D70Au);
    // The double nearest to each power agrees with the 53 leading bits, give or take its own rounding.
    for (std::int32_t k = -300; k <= 300; ++k) {
        const double power =
            std::ldexp(static_cast<double>(PowerOfTenFraction(k) >> 11), PowerOfTenExponent(k) + 11);
        const double library = std::stod("1e" + std::to_string(k));
        EXPECT_GE(library, power) << k;
        EXPECT_LE(library, std::nextafter(power, Infinity)) << k;
    }
}

} // namespace
} // namespace vantrel
