#include "editor/ruler.h"

#include <gtest/gtest.h>

#include <string>

namespace vantrel {
namespace {

std::u16string Ruler(std::int64_t first, std::int64_t count)
{
    std::u16string text(static_cast<std::size_t>(count), u'?');
    FillRuler(text.data(), first, count);
    return text;
}

TEST(Ruler, HasAPlusAtFivesAndTheNumberAtTens)
{
    EXPECT_EQ(Ruler(0, 25), u"----+----10---+----20---+");
}

TEST(Ruler, OfNineCharactersHasNoNumberAndOfTenOneDigit)
{
    EXPECT_EQ(Ruler(0, 9), u"----+----");
    EXPECT_EQ(Ruler(0, 10), u"----+----1");
    EXPECT_EQ(Ruler(0, 0), u"");
}

TEST(Ruler, LongNumbersRunOn)
{
    EXPECT_EQ(Ruler(95, 20), u"----100--+----110--+");
    EXPECT_EQ(Ruler(999995, 10), u"----100000");
    EXPECT_EQ(Ruler(999998, 10), u"-1000000--") << "a number hides the plus it reaches";
}

TEST(Ruler, APartIsCutOutOfTheWhole)
{
    const std::u16string whole = Ruler(0, 1500);
    for (std::int64_t first = 0; first < 1400; first += 7) {
        EXPECT_EQ(Ruler(first, 60), whole.substr(static_cast<std::size_t>(first), 60)) << first;
    }
}

TEST(LineNumbers, StandInBrackets)
{
    char16_t text[LineNumberCapacity];
    EXPECT_EQ(std::u16string(text, static_cast<std::size_t>(FormatLineNumber(text, 0))), u"[0]");
    EXPECT_EQ(std::u16string(text, static_cast<std::size_t>(FormatLineNumber(text, 9223372036854775807))),
              u"[9223372036854775807]");
}

} // namespace
} // namespace vantrel
