#include "frame/find.h"

#include <gtest/gtest.h>

#include <string>

namespace vantrel {
namespace {

std::int32_t Count(const std::u16string& text)
{
    return CountFindNumbers(text.data(), static_cast<std::int64_t>(text.size()));
}

FindState StateOf(const char16_t* text, bool ignoreCase = false, bool numeric = false)
{
    FindState state;
    SetFindState(state, ignoreCase, numeric, text);
    return state;
}

void ExpectRules(const FindState& state, bool ignoreCase, bool numeric, bool search)
{
    const FindRules rules = GetFindRules(state);
    EXPECT_EQ(rules.ignoreCase, ignoreCase);
    EXPECT_EQ(rules.numeric, numeric);
    EXPECT_EQ(rules.search, search);
}

TEST(FindNumbers, CountsNumbersOfEveryForm)
{
    EXPECT_EQ(Count(u"1.5 ¯2 3E4 1J2"), 4);
    EXPECT_EQ(Count(u"7"), 1);
    EXPECT_EQ(Count(u"  7   8  "), 2);
    EXPECT_EQ(Count(u"¯1.5E¯3J¯2.5E¯4"), 1);
    EXPECT_EQ(Count(u"1e5 2j3"), 2);
}

TEST(FindNumbers, NothingIsNoNumberButValid)
{
    EXPECT_EQ(Count(u""), 0);
    EXPECT_EQ(Count(u"   "), 0);
}

TEST(FindNumbers, APointComesOnceInAMantissaAndNeverInAnExponent)
{
    EXPECT_EQ(Count(u"1..5"), -1);
    EXPECT_EQ(Count(u"1.2.3"), -1);
    EXPECT_EQ(Count(u"1E2.5"), -1);
    EXPECT_EQ(Count(u"1."), 1);
    EXPECT_EQ(Count(u".5"), 1);
    EXPECT_EQ(Count(u"1.5J2.5"), 1);
    EXPECT_EQ(Count(u"."), -1);
    EXPECT_EQ(Count(u"1 ."), -1);
    EXPECT_EQ(Count(u". 1"), -1);
}

TEST(FindNumbers, AnExponentNeedsDigitsBeforeAndBehind)
{
    EXPECT_EQ(Count(u"E4"), -1);
    EXPECT_EQ(Count(u"1E"), -1);
    EXPECT_EQ(Count(u"1E 2"), -1);
    EXPECT_EQ(Count(u"1E2E3"), -1);
    EXPECT_EQ(Count(u"1E2J3E4"), 1);
}

TEST(FindNumbers, AnImaginaryPartNeedsDigitsBeforeAndBehind)
{
    EXPECT_EQ(Count(u"J2"), -1);
    EXPECT_EQ(Count(u"1J"), -1);
    EXPECT_EQ(Count(u"1J 2"), -1);
    EXPECT_EQ(Count(u"1J2J3"), -1);
    EXPECT_EQ(Count(u"1EJ2"), -1);
}

TEST(FindNumbers, TheHighMinusComesOnceInAPartAnywhereInIt)
{
    EXPECT_EQ(Count(u"1¯"), 1);
    EXPECT_EQ(Count(u"1¯5"), 1);
    EXPECT_EQ(Count(u"¯¯1"), -1);
    EXPECT_EQ(Count(u"¯1¯"), -1);
    EXPECT_EQ(Count(u"¯1E¯2J¯3E¯4"), 1);
    EXPECT_EQ(Count(u"¯"), -1);
    EXPECT_EQ(Count(u"¯ 1"), -1);
}

TEST(FindNumbers, OtherCharactersAreInvalid)
{
    EXPECT_EQ(Count(u"1-2"), -1);
    EXPECT_EQ(Count(u"-1"), -1);
    EXPECT_EQ(Count(u"+1"), -1);
    EXPECT_EQ(Count(u"1\t2"), -1);
    EXPECT_EQ(Count(u"x"), -1);
    EXPECT_EQ(Count(u"1,5"), -1);
}

TEST(FindNumbers, ABlankStartsANewNumber)
{
    EXPECT_EQ(Count(u"1E5 .5 2J1 3"), 4);
    EXPECT_EQ(Count(u"1 2 "), 2);
}

TEST(FindRules, AnEmptyTextSearchesNothing)
{
    ExpectRules(StateOf(u""), true, true, false);
    ExpectRules(StateOf(u"", true, true), true, true, false);
}

TEST(FindRules, ATextThatIsNoNumberCannotBeSearchedAsOne)
{
    ExpectRules(StateOf(u"abc"), true, false, true);
    ExpectRules(StateOf(u"   "), true, false, true);
    ExpectRules(StateOf(u"abc", false, true), true, false, true);
}

TEST(FindRules, OnlyANumericSearchHasNoCase)
{
    ExpectRules(StateOf(u"12"), true, true, true);
    ExpectRules(StateOf(u"12", true, true), false, true, true);
}

TEST(FindState, HoldsTheBarsState)
{
    const FindState state = StateOf(u"1 2", true, true);
    EXPECT_EQ(state.options, FindIgnoreCase | FindNumeric);
    EXPECT_EQ(std::u16string(state.text), u"1 2");
    EXPECT_EQ(state.numberCount, 2);
    EXPECT_EQ(StateOf(u"x").numberCount, 0);
    EXPECT_EQ(StateOf(u"x").options, 0);
}

TEST(FindState, CutsATextThatIsTooLong)
{
    const std::u16string text(400, u'7');
    const FindState state = StateOf(text.c_str());
    EXPECT_EQ(std::u16string(state.text), std::u16string(255, u'7'));
    EXPECT_EQ(state.numberCount, 1);
}

TEST(FindState, AShorterTextLeavesNothingOfALongerOne)
{
    FindState state = StateOf(u"abcdef");
    SetFindState(state, false, false, u"x");
    for (std::size_t i = 1; i < FindTextSize; ++i)
        ASSERT_EQ(state.text[i], u'\0');
}

} // namespace
} // namespace vantrel
