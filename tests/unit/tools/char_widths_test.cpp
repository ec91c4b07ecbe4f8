#include "tools/char_widths.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace vantrel {
namespace {

std::vector<std::pair<char16_t, char16_t>> g_asked;

// A font in which a character is as wide as the last digit of its code.
void MeasureLastDigit(void* device, char16_t first, char16_t last, std::int32_t* widths)
{
    EXPECT_EQ(device, &g_asked);
    g_asked.emplace_back(first, last);
    for (std::uint32_t unit = first; unit <= last; ++unit)
        widths[unit - first] = static_cast<std::int32_t>(unit % 10);
}

class Widths : public ::testing::Test {
protected:
    Widths()
    {
        g_asked.clear();
        widths.Reset(MeasureLastDigit, &g_asked, 0);
    }
    CharWidths widths;
};

TEST_F(Widths, SumTheCharacters)
{
    EXPECT_EQ(widths.TextWidth(u"ABC", 3), 5 + 6 + 7);
    EXPECT_EQ(widths.TextWidth(u"ABC", 0), 0);
    EXPECT_EQ(widths.CharWidth(u'A'), 5);
}

TEST_F(Widths, EachCharacterIsMeasuredOnce)
{
    for (int i = 0; i < 3; ++i)
        (void)widths.TextWidth(u"ABBA", 4);
    EXPECT_EQ(g_asked.size(), 2u);
}

TEST_F(Widths, PreparedRangesAreNotAskedAgain)
{
    widths.Prepare(1, 255);
    (void)widths.TextWidth(u"Hello", 5);
    EXPECT_EQ(g_asked.size(), 1u);
    widths.Prepare(10, 5);
    EXPECT_EQ(g_asked.size(), 1u);
}

TEST_F(Widths, WholeRangeOfCodeUnitsFits)
{
    widths.Prepare(0, 0xFFFF);
    EXPECT_EQ(widths.CharWidth(0xFFFF), 65535 % 10);
    EXPECT_EQ(widths.CharWidth(0), 0);
}

TEST_F(Widths, ResetForgets)
{
    (void)widths.CharWidth(u'A');
    widths.Reset(MeasureLastDigit, &g_asked, 0);
    (void)widths.CharWidth(u'A');
    EXPECT_EQ(g_asked.size(), 2u);
}

TEST_F(Widths, FixedPitchIsAMultiplication)
{
    widths.Reset(MeasureLastDigit, &g_asked, 8);
    EXPECT_EQ(widths.TextWidth(u"ABC", 3), 24);
    EXPECT_EQ(widths.CharWidth(u'A'), 8);
    EXPECT_EQ(widths.FixedPitchWidth(), 8);
    EXPECT_EQ(widths.ColumnAt(u"ABC", 3, 15), 1);
    EXPECT_EQ(widths.ColumnAt(u"ABC", 3, 16), 2);
    EXPECT_EQ(widths.ColumnAt(u"ABC", 3, 1000), 3);
    EXPECT_TRUE(g_asked.empty());
}

TEST_F(Widths, ColumnIsTheNumberOfCharactersLeftOfTheEdge)
{
    // 5, 6 and 7 pixels wide: edges at 5, 11 and 18.
    EXPECT_EQ(widths.ColumnAt(u"ABC", 3, -1), 0);
    EXPECT_EQ(widths.ColumnAt(u"ABC", 3, 0), 0);
    EXPECT_EQ(widths.ColumnAt(u"ABC", 3, 4), 0);
    EXPECT_EQ(widths.ColumnAt(u"ABC", 3, 5), 1);
    EXPECT_EQ(widths.ColumnAt(u"ABC", 3, 10), 1);
    EXPECT_EQ(widths.ColumnAt(u"ABC", 3, 11), 2);
    EXPECT_EQ(widths.ColumnAt(u"ABC", 3, 100), 3);
}

TEST_F(Widths, CharactersThatCannotBeMeasuredHaveNoWidth)
{
    widths.Reset(nullptr, nullptr, 0);
    EXPECT_EQ(widths.TextWidth(u"ABC", 3), 0);
    CharWidths unused;
    EXPECT_EQ(unused.TextWidth(u"ABC", 3), 0);
    EXPECT_EQ(unused.CharWidth(u'A'), 0);
}

TEST(WidthsMemory, FailedResetThrows)
{
    CharWidths widths;
    ArmAllocationFault(1, false);
    EXPECT_THROW(widths.Reset(nullptr, nullptr, 0), VTERROR_CODE);
    EXPECT_EQ(DisarmAllocationFault(), 1);
}

} // namespace
} // namespace vantrel
