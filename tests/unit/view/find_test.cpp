#include "view/find.h"

#include "view_fixture.h"

namespace vantrel {
namespace {

class Find : public ViewTest {
protected:
    void Wanted(const std::u16string& text, std::uint16_t options = 0, std::int32_t numbers = 0)
    {
        view.edit.find.options = options;
        std::fill(std::begin(view.edit.find.text), std::end(view.edit.find.text), u'\0');
        std::copy(text.begin(), text.end(), view.edit.find.text);
        view.edit.find.numberCount = numbers;
    }
    void Numbers(const std::u16string& text, std::int32_t numbers) { Wanted(text, FindNumeric, numbers); }

    FindResult Next() { return FindNextMatch(view, true); }
    FindResult Previous() { return FindNextMatch(view, false); }

    // "3@1:2+4": item 3 of the root, record 1, column 2, 4 units.
    std::string Place()
    {
        const Scdr* const node = Selected(view);
        EXPECT_EQ(view.edit.find.node, node);
        EXPECT_TRUE(view.edit.findMatch);
        const std::string item = node == view.root ? "root" : std::to_string(IndexInParent(*node));
        return item + "@" + std::to_string(view.edit.find.record) + ":" +
               std::to_string(view.edit.find.column) + "+" + std::to_string(view.edit.find.length);
    }
    std::string AfterNext()
    {
        EXPECT_EQ(Next(), FindResult::Found);
        return Place();
    }
    std::string AfterPrevious()
    {
        EXPECT_EQ(Previous(), FindResult::Found);
        return Place();
    }
    void Caret(std::int64_t line, std::int64_t column)
    {
        EditState& state = EditStateOf(*Selected(view));
        state.caretLine = line;
        state.caretColumn = column;
        view.edit.findMatch = false;
    }
    void MovingTheCaretMovesIt()
    {
        view.effects.moveEditorCaret = [](View& edited, std::int64_t column, std::int64_t line) {
            EditState& state = EditStateOf(*Selected(edited));
            state.caretColumn += column;
            state.caretLine += line;
            edited.edit.findMatch = false;
            LogOf(edited).calls.push_back("caret " + std::to_string(column) + " " + std::to_string(line));
        };
    }
};

TEST_F(Find, VisitsArraysDepthFirstInItemOrder)
{
    Show(Vec(Word(u"one"), Vec(Word(u"two"), Word(u"one")), Word(u"one")));
    Wanted(u"one");
    EXPECT_EQ(AfterNext(), "0@0:0+3");
    EXPECT_EQ(AfterNext(), "1@0:0+3");
    EXPECT_EQ(Selected(view)->parent, &Item(*view.root, 1));
    EXPECT_EQ(AfterNext(), "2@0:0+3");
    EXPECT_EQ(AfterNext(), "0@0:0+3"); // and round again
}

TEST_F(Find, GoesBackwardsTheSameWay)
{
    Show(Vec(Word(u"one"), Vec(Word(u"two"), Word(u"one")), Word(u"one")));
    Wanted(u"one");
    EXPECT_EQ(AfterPrevious(), "2@0:0+3");
    EXPECT_EQ(AfterPrevious(), "1@0:0+3");
    EXPECT_EQ(AfterPrevious(), "0@0:0+3");
    EXPECT_EQ(AfterPrevious(), "2@0:0+3");
}

TEST_F(Find, ASelectedNestedArrayIsSearchedFromItsOwnItems)
{
    Scdr& root = Show(Vec(Word(u"a"), Vec(Word(u"b"), Word(u"a")), Word(u"a")));
    EXPECT_EQ(SelectScdr(view, Item(root, 1), false), 0);
    Wanted(u"a");
    EXPECT_EQ(Next(), FindResult::Found);
    EXPECT_EQ(Selected(view), &Item(Item(root, 1), 1));
    EXPECT_EQ(SelectScdr(view, Item(root, 1), false), 0);
    EXPECT_EQ(Previous(), FindResult::Found);
    EXPECT_EQ(Selected(view), &Item(root, 0));
}

TEST_F(Find, GoesThroughTheRecordsFromTopToBottom)
{
    Show(Vec(Characters({3, 4}, u"abcaxxxxbabc")));
    Wanted(u"a");
    EXPECT_EQ(AfterNext(), "0@0:0+1");
    EXPECT_EQ(AfterNext(), "0@0:3+1");
    EXPECT_EQ(AfterNext(), "0@2:1+1");
    EXPECT_EQ(AfterNext(), "0@0:0+1");
    EXPECT_EQ(AfterPrevious(), "0@2:1+1");
    EXPECT_EQ(AfterPrevious(), "0@0:3+1");
}

TEST_F(Find, MatchesDoNotOverlapInEitherDirection)
{
    Show(Vec(Word(u"aaaaa")));
    Wanted(u"aa");
    EXPECT_EQ(AfterNext(), "0@0:0+2");
    EXPECT_EQ(AfterNext(), "0@0:2+2");
    EXPECT_EQ(AfterNext(), "0@0:0+2");
    EXPECT_EQ(AfterPrevious(), "0@0:3+2");
    EXPECT_EQ(AfterPrevious(), "0@0:1+2");
}

TEST_F(Find, StartsAtTheCaretWhereNoMatchIsOnShow)
{
    Scdr& root = Show(Vec(Word(u"x.x.x.x")));
    EXPECT_EQ(SelectScdr(view, Item(root, 0), false), 0);
    Wanted(u"x");
    Caret(0, 3);
    EXPECT_EQ(AfterNext(), "0@0:4+1");
    Caret(0, 3);
    EXPECT_EQ(AfterPrevious(), "0@0:2+1");
    Caret(0, 4);
    EXPECT_EQ(AfterNext(), "0@0:4+1");
}

TEST_F(Find, TheOnlyMatchIsFoundAgainAfterAFullTurn)
{
    Show(Vec(Word(u"here"), Word(u"there is")));
    Wanted(u"is");
    EXPECT_EQ(AfterNext(), "1@0:6+2");
    EXPECT_EQ(AfterNext(), "1@0:6+2");
    EXPECT_EQ(AfterPrevious(), "1@0:6+2");
}

TEST_F(Find, WhatIsNowhereIsNotFoundAndMovesNothing)
{
    Scdr& root = Show(Vec(Word(u"here"), Word(u"there")));
    EXPECT_EQ(SelectScdr(view, Item(root, 1), false), 0);
    log.Clear();
    Wanted(u"nowhere");
    EXPECT_EQ(Next(), FindResult::NotFound);
    EXPECT_EQ(Previous(), FindResult::NotFound);
    EXPECT_EQ(Selected(view), &Item(root, 1));
    EXPECT_FALSE(view.edit.findMatch);
    EXPECT_TRUE(log.calls.empty());
}

TEST_F(Find, AnEmptyTextOrAnEmptyViewFindsNothing)
{
    Wanted(u"a");
    EXPECT_EQ(Next(), FindResult::NotFound);
    Show(Vec(Word(u"a")));
    Wanted(u"");
    EXPECT_EQ(Next(), FindResult::NotFound);
}

TEST_F(Find, CaseCountsUnlessItIsIgnored)
{
    Show(Vec(Word(u"ÄRGER"), Word(u"ärger")));
    Wanted(u"ärger");
    EXPECT_EQ(AfterNext(), "1@0:0+5");
    EXPECT_EQ(AfterNext(), "1@0:0+5");
    Wanted(u"äRGer", FindIgnoreCase);
    EXPECT_EQ(AfterNext(), "0@0:0+5");
    EXPECT_EQ(AfterPrevious(), "1@0:0+5");
}

TEST_F(Find, CaseIsIgnoredInOtherAlphabetsToo)
{
    Show(Vec(Word(u"ΑΒΓ"), Word(u"ДОМЁ"), Word(u"Ÿ"), Word(u"Ⓐ"), Word(u"ŐŽ")));
    const std::pair<const char16_t*, const char*> cases[] = {
        {u"αβγ", "0@0:0+3"}, {u"домё", "1@0:0+4"}, {u"ÿ", "2@0:0+1"}, {u"ⓐ", "3@0:0+1"}, {u"őž", "4@0:0+2"}};
    for (const auto& [text, place] : cases) {
        Wanted(text, FindIgnoreCase);
        EXPECT_EQ(AfterNext(), place);
    }
}

TEST_F(Find, TextIsFoundInNumbersAsTheyAreWritten)
{
    Show(Vec(Word(u"x"), Integers({3}, {12, 123, 7})));
    Wanted(u"12");
    EXPECT_EQ(AfterNext(), "1@0:0+2");
    EXPECT_EQ(AfterNext(), "1@0:3+2");
}

TEST_F(Find, PrototypesOfEmptyArraysAreNotSearched)
{
    ScdrPtr empty = Allocate(TypeNested, {0});
    SetChild(*empty, 0, Word(u"aa"));
    Show(Vec(std::move(empty), Word(u"b")));
    Wanted(u"aa");
    EXPECT_EQ(Next(), FindResult::NotFound);
    EXPECT_EQ(Previous(), FindResult::NotFound);
    Wanted(u"b");
    EXPECT_EQ(AfterNext(), "1@0:0+1");
}

TEST_F(Find, AMatchInAnotherPlaneShowsThatPlane)
{
    Show(Vec(Word(u"z"), Characters({3, 2, 2}, u"aaaabbbbcccx")));
    Wanted(u"x");
    EXPECT_EQ(AfterNext(), "1@5:1+1");
    EXPECT_EQ(CurrentPlane(Item(*view.root, 1)), 2);
    EXPECT_EQ(view.edit.find.record, 5);
    EXPECT_EQ(log.Count("plane"), 1); // told to the editor that the selection has brought
    Wanted(u"a");
    log.Clear();
    EXPECT_EQ(AfterNext(), "1@0:0+1");
    EXPECT_EQ(CurrentPlane(Item(*view.root, 1)), 0);
    EXPECT_EQ(log.Count("plane"), 1); // the editor is on that array already
}

TEST_F(Find, AMatchInsideAnItemOfAnotherPlaneShowsThatPlane)
{
    std::vector<ScdrPtr> items;
    for (int i = 0; i < 4; ++i)
        items.push_back(Word(i == 3 ? u"last" : u"no"));
    Scdr& root = Show(Nested({2, 1, 2}, std::move(items)));
    Wanted(u"last");
    EXPECT_EQ(Next(), FindResult::Found);
    EXPECT_EQ(CurrentPlane(root), 1);
}

TEST_F(Find, AMatchInAClosedBoxOpensIt)
{
    Scdr& root = Show(Vec(Word(u"a"), Word(u"secret")));
    EXPECT_EQ(SelectScdr(view, Item(root, 1), false), 0);
    EXPECT_EQ(MinimizeScdr(view), 0);
    EXPECT_EQ(SelectScdr(view, Item(root, 0), false), 0);
    Wanted(u"secret");
    EXPECT_EQ(AfterNext(), "1@0:0+6");
    EXPECT_EQ(Item(root, 1).Flags & FlagMinimized, 0);
}

TEST_F(Find, AMatchOutsideAMaximisedArrayLeavesIt)
{
    Scdr& root = Show(Vec(Vec(Word(u"a")), Word(u"b")));
    EXPECT_EQ(SelectScdr(view, Item(root, 0), false), 0);
    EXPECT_EQ(MaximizeScdr(view), 0);
    Wanted(u"b");
    EXPECT_EQ(Next(), FindResult::Found);
    EXPECT_EQ(view.top, view.root);
    EXPECT_EQ(Selected(view), &Item(*view.root, 1));
}

TEST_F(Find, TheCaretIsPutOnTheMatch)
{
    MovingTheCaretMovesIt();
    Scdr& root = Show(Vec(Characters({2, 5}, u".....abxxc")));
    EXPECT_EQ(SelectScdr(view, Item(root, 0), false), 0);
    EditStateOf(Item(root, 0));
    Caret(0, 4);
    log.Clear();
    Wanted(u"xx");
    EXPECT_EQ(AfterNext(), "0@1:2+2");
    EXPECT_EQ(log.Count("caret -2 1"), 1);
    EXPECT_TRUE(view.edit.findMatch) << "set after the move, which ends every match";
}

TEST_F(Find, TheFrameHearsOfEveryMatch)
{
    Show(Vec(Word(u"aa")));
    Wanted(u"a");
    AfterNext();
    log.Clear();
    AfterNext();
    EXPECT_EQ(log.Count("notify 1"), 1);
}

TEST_F(Find, NumbersAreFoundByValue)
{
    Show(Vec(Word(u"150"), Integers({4}, {15, 150, 1500, -150})));
    Numbers(u"1.5E2", 1);
    EXPECT_EQ(AfterNext(), "1@0:3+3");
    EXPECT_EQ(AfterNext(), "1@0:3+3");
    Numbers(u"¯150", 1);
    EXPECT_EQ(AfterNext(), "1@0:12+4");
}

TEST_F(Find, SeveralNumbersMustStandOneBehindTheOther)
{
    Show(Vec(Integers({2, 3}, {1, 2, 3, 2, 3, 4})));
    Numbers(u"2 3", 2);
    EXPECT_EQ(AfterNext(), "0@0:2+3");
    EXPECT_EQ(AfterNext(), "0@1:0+3");
    EXPECT_EQ(AfterPrevious(), "0@0:2+3");
    Numbers(u"3 2", 2);
    EXPECT_EQ(Next(), FindResult::NotFound);
}

TEST_F(Find, ANumericFindWithoutNumbersLooksForText)
{
    Show(Vec(Word(u"a"), Word(u"xyz")));
    Wanted(u"xyz", FindNumeric, 0);
    EXPECT_FALSE(IsNumericFind(view.edit.find));
    EXPECT_EQ(AfterNext(), "1@0:0+3");
}

TEST_F(Find, AnInterruptStopsALongSearch)
{
    std::vector<ScdrPtr> items;
    for (int i = 0; i < 2000; ++i)
        items.push_back(Word(u"abc"));
    Show(Nested({2000}, std::move(items)));
    Wanted(u"nowhere");
    log.interrupt = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(110));
    const FindResult result = Next();
    EXPECT_TRUE(result == FindResult::Stopped || log.polls == 0);
}

TEST_F(Find, AFailedAllocationIsReportedAndMovesNothing)
{
    Scdr& root = Show(Vec(Word(u"abc"), Word(u"XYZ")));
    EXPECT_EQ(SelectScdr(view, Item(root, 0), false), 0);
    log.Clear();
    Wanted(u"a text that needs memory to be kept, being long", FindIgnoreCase);
    ArmAllocationFault(1, true);
    EXPECT_EQ(Next(), FindResult::Stopped);
    EXPECT_GT(DisarmAllocationFault(), 0);
    EXPECT_EQ(environment.ErrorCode, VTERROR_CODE::OutOfMemory);
    EXPECT_EQ(Selected(view), &Item(root, 0));
    EXPECT_EQ(log.Count("notify 5"), 1);
    environment.ErrorCode = VTERROR_CODE::NoError;
}

// --- case ---

bool IsFoundIgnoringCase(char16_t wanted, char16_t unit)
{
    FindState state;
    state.options = FindIgnoreCase;
    state.text[0] = wanted;
    TextMatcher matcher(state);
    FindPlace place;
    return matcher.First({&unit, 1}, 0, place);
}

TEST(FindCase, EveryCapitalOfTheAlphabetsThatPairThemIsFoundByItsSmallLetter)
{
    const std::pair<std::u16string_view, std::u16string_view> alphabets[] = {
        {u"azàöøþāįĳŉńňŋŷÿźž", u"AZÀÖØÞĀĮĲŉŃŇŊŶŸŹŽ"},
        {u"ǎǜǟǯǹȟȣȳḁẕạỿ", u"ǍǛǞǮǸȞȢȲḀẔẠỾ"},
        {u"άέίόύώαρσϋ", u"ΆΈΊΌΎΏΑΡΣΫ"},
        {u"ѐџаяѡҁҋҿӏӂӎӑԯ", u"ЀЏАЯѠҀҊҾӀӁӍӐԮ"},
        {u"աֆ", u"ԱՖ"},
        {u"ⅰⅿⓐⓩａｚ", u"ⅠⅯⒶⓏＡＺ"},
    };
    for (const auto& [small, capitals] : alphabets) {
        ASSERT_EQ(small.size(), capitals.size());
        for (std::size_t i = 0; i < small.size(); ++i) {
            EXPECT_TRUE(IsFoundIgnoringCase(small[i], capitals[i])) << std::hex << int{capitals[i]};
            EXPECT_TRUE(IsFoundIgnoringCase(small[i], small[i])) << std::hex << int{small[i]};
        }
    }
}

TEST(FindCase, SignsBetweenTheAlphabetsHaveNone)
{
    for (const char16_t sign : std::u16string_view(u"×÷ıſ⍴⍺⍵∇΢ϰ")) {
        for (const int by : {1, -1, 32, -32})
            EXPECT_FALSE(IsFoundIgnoringCase(static_cast<char16_t>(sign + by), sign))
                << std::hex << int{sign} << " " << by;
    }
}

// --- values ---

bool IsFound(const std::u16string& wanted, const std::u16string& record)
{
    FindState state;
    state.options = FindNumeric;
    state.numberCount = 1;
    std::copy(wanted.begin(), wanted.end(), state.text);
    TextMatcher matcher(state);
    FindPlace place;
    return matcher.First({record.data(), static_cast<std::int64_t>(record.size())}, 0, place);
}

TEST(FindValues, SpellingsOfOneValueAreEqual)
{
    for (const char16_t* spelling : {u"150", u"150.0", u"1.5E2", u"15e1", u"0150", u"1500E¯1", u".15E3",
                                     u"150J0", u"0.00150E5", u"150E0"}) {
        EXPECT_TRUE(IsFound(u"150", spelling));
        EXPECT_TRUE(IsFound(spelling, u"150"));
    }
}

TEST(FindValues, OtherValuesAreNot)
{
    for (const char16_t* other :
         {u"151", u"15", u"1500", u"¯150", u"150J1", u"1.5E3", u"0", u"150.0000000001"})
        EXPECT_FALSE(IsFound(u"150", other));
}

TEST(FindValues, DigitsBeyondAnyFloatingPointNumberCount)
{
    EXPECT_TRUE(IsFound(u"9007199254740993", u"9007199254740993"));
    EXPECT_FALSE(IsFound(u"9007199254740993", u"9007199254740992"));
    EXPECT_TRUE(IsFound(u"1234567890123456789012345678901234", u"1234567890123456789012345678901234"));
    EXPECT_FALSE(IsFound(u"1234567890123456789012345678901234", u"1234567890123456789012345678901235"));
}

TEST(FindValues, ZeroHasNoSign)
{
    EXPECT_TRUE(IsFound(u"0", u"¯0"));
    EXPECT_TRUE(IsFound(u"0", u"0.000"));
    EXPECT_TRUE(IsFound(u"0E5", u"0"));
}

TEST(FindValues, BothMinusesAreReadInArrays)
{
    EXPECT_TRUE(IsFound(u"¯5", u"-5"));
    EXPECT_TRUE(IsFound(u"¯5", u"¯5"));
    EXPECT_TRUE(IsFound(u"5E¯3", u"5E-3"));
}

TEST(FindValues, ComplexNumbersCompareInBothParts)
{
    EXPECT_TRUE(IsFound(u"1J2", u"1J2"));
    EXPECT_TRUE(IsFound(u"1J2", u"1.0J20E¯1"));
    EXPECT_FALSE(IsFound(u"1J2", u"1J3"));
    EXPECT_FALSE(IsFound(u"1J2", u"1"));
}

TEST(FindValues, WhatIsNoNumberEqualsNothing)
{
    for (const char16_t* text : {u"∞", u"NaN", u"abc", u"", u"-", u"E", u"1E", u"1J"})
        EXPECT_FALSE(IsFound(u"1", text));
    EXPECT_TRUE(IsFound(u"1", u"∞ 1"));
}

TEST(FindValues, AnEndlessExponentIsOnlyALargeOne)
{
    EXPECT_FALSE(IsFound(u"1", u"1E99999999999999999999999999"));
    EXPECT_TRUE(IsFound(u"1E99999999999999999999", u"1E99999999999999999999"));
}

} // namespace
} // namespace vantrel
