#include <gtest/gtest.h>

#include "editor_fixture.h"

namespace vantrel::test {
namespace {

TEST(EditTyping, InsertsAtTheCaretAndMarksTheRecordsEdited)
{
    Editor editor(TypeCharacter, {2}, u"ac");
    editor.Put(1, 0);
    editor.Type(u"b");
    EXPECT_EQ(editor.Lines(), (TextLines{u"abc"}));
    EXPECT_EQ(editor.Caret(), (EditCaret{2, 0}));
    EXPECT_TRUE(editor.State().modified);
    EXPECT_NE(editor.node->records.flags & RecordsEdited, 0);
}

TEST(EditTyping, ReportsTheFirstChangeOnly)
{
    Editor editor(TypeCharacter, {1}, u"a");
    editor.view.findMatch = true;
    editor.Type(u"bcd");
    EXPECT_EQ(editor.notifications, (std::vector<std::int32_t>{EditNotifyModified}));
    EXPECT_FALSE(editor.view.findMatch);
}

TEST(EditTyping, ReplacesTheSelection)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcd\nefgh");
    editor.Select({2, 0}, {3, 1});
    editor.Type(u"X");
    EXPECT_EQ(editor.Lines(), (TextLines{u"abXh"}));
    EXPECT_EQ(editor.Caret(), (EditCaret{3, 0}));
    EXPECT_TRUE(IsSelectionEmpty(editor.window));
    EXPECT_EQ(editor.UndoSteps(), 1);
}

TEST(EditTyping, OvertypeReplacesTheNextCharacter)
{
    Editor editor(TypeCharacter, {3}, u"abc");
    editor.view.overtype = true;
    editor.Type(u"XY");
    EXPECT_EQ(editor.Lines(), (TextLines{u"XYc"}));
}

TEST(EditTyping, OvertypeAtTheEndOfALineJoinsTheNext)
{
    Editor editor(TypeCharacter, {1, 1}, u"ab\ncd");
    editor.view.overtype = true;
    editor.Put(2, 0);
    editor.Type(u"X");
    EXPECT_EQ(editor.Lines(), (TextLines{u"abXcd"}));
}

TEST(EditTyping, OvertypeAtTheEndOfTheTextAppends)
{
    Editor editor(TypeCharacter, {2}, u"ab");
    editor.view.overtype = true;
    editor.Put(2, 0);
    editor.Type(u"c");
    EXPECT_EQ(editor.Lines(), (TextLines{u"abc"}));
}

TEST(EditTyping, TheInsertKeyTurnsOvertypeOffAndNothingOn)
{
    Editor editor(TypeCharacter, {2}, u"ab");
    editor.keys.insertToggled = true;
    editor.Type(u"X"); // without the option typing always inserts
    EXPECT_EQ(editor.Lines(), (TextLines{u"Xab"}));
    editor.view.overtype = true;
    editor.Type(u"Y");
    EXPECT_EQ(editor.Lines(), (TextLines{u"XYab"}));
    editor.keys.insertToggled = false;
    editor.Type(u"Z");
    EXPECT_EQ(editor.Lines(), (TextLines{u"XYZb"}));
}

TEST(EditTyping, OvertypeReplacesASelectionAsInsertingDoes)
{
    Editor editor(TypeCharacter, {4}, u"abcd");
    editor.view.overtype = true;
    editor.Select({0, 0}, {2, 0});
    editor.Type(u"X");
    EXPECT_EQ(editor.Lines(), (TextLines{u"Xcd"}));
}

TEST(EditTyping, ReadOnlyRefusesEveryChange)
{
    Editor editor(TypeCharacter, {1, 1}, u"ab\ncd");
    editor.window.readOnly = true;
    editor.Select({0, 0}, {1, 0});
    editor.clipboard.emplace(u"x");
    editor.Type(u"X\r");
    editor.Press(KeyBackspace);
    editor.Press(KeyDelete);
    editor.Press(KeyDelete, false, true);
    CutSelection(editor.window);
    PasteClipboard(editor.window);
    ClearSelection(editor.window);
    EXPECT_EQ(DeleteMarked(editor.window, true), 1);
    EXPECT_EQ(editor.Lines(), (TextLines{u"ab", u"cd"}));
    EXPECT_EQ(editor.beeps, std::vector<EditBeep>(9, EditBeep::Asterisk));
    EXPECT_FALSE(editor.State().modified);
    EXPECT_EQ(editor.UndoSteps(), 0);
    EXPECT_EQ(editor.clipboard, u"x");
}

TEST(EditTyping, ANumericFindLocksCharacterArraysOnly)
{
    Editor characters(TypeCharacter, {1}, u"1");
    SearchForNumbers(characters.view, true);
    characters.Type(u"2");
    EXPECT_EQ(characters.Lines(), (TextLines{u"1"}));
    EXPECT_EQ(characters.beeps, (std::vector<EditBeep>{EditBeep::Asterisk}));
    Editor numbers(TypeInteger, {1}, u"1");
    SearchForNumbers(numbers.view, true);
    numbers.Type(u"2");
    EXPECT_EQ(numbers.Lines(), (TextLines{u"21"}));
}

TEST(EditTyping, WithoutRecordsDoesNothing)
{
    Editor editor(TypeCharacter, {0, 3}, u"");
    FreeRecords(editor.node->records);
    editor.Type(u"a\r");
    editor.Press(KeyBackspace);
    EXPECT_EQ(editor.node->records.count, 0);
    EXPECT_EQ(editor.UndoSteps(), 0);
}

TEST(EditTyping, EnterBreaksALineWithoutLeavingACarriageReturn)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcd");
    editor.Put(2, 0);
    editor.Type(u"\r");
    EXPECT_EQ(editor.Lines(), (TextLines{u"ab", u"cd"}));
    EXPECT_EQ(editor.Caret(), (EditCaret{0, 1}));
    editor.Type(u"\n");
    EXPECT_EQ(editor.Lines(), (TextLines{u"ab", u"", u"cd"}));
}

TEST(EditTyping, EnterBreaksACharacterVectorButNoNumericOne)
{
    Editor characters(TypeCharacter, {2}, u"ab");
    characters.Put(1, 0);
    characters.Type(u"\r");
    EXPECT_EQ(characters.Lines(), (TextLines{u"a", u"b"}));
    Editor numbers(TypeReal, {2}, u"1 2");
    numbers.Type(u"\r");
    EXPECT_EQ(numbers.Lines(), (TextLines{u"1 2"}));
    EXPECT_EQ(numbers.beeps, (std::vector<EditBeep>{EditBeep::Asterisk}));
    Editor matrix(TypeReal, {1, 2}, u"1 2");
    matrix.Put(1, 0);
    matrix.Type(u"\r");
    EXPECT_EQ(matrix.Lines(), (TextLines{u"1", u" 2"}));
}

TEST(EditTyping, EnterIsRefusedInScalarsAndPlanes)
{
    Editor scalar(TypeCharacter, {}, u"a");
    scalar.Type(u"\r");
    EXPECT_EQ(scalar.beeps, (std::vector<EditBeep>{EditBeep::Asterisk}));
    EXPECT_EQ(scalar.Lines(), (TextLines{u"a"}));
    Editor planes(TypeCharacter, {2, 1, 2}, u"ab\ncd");
    planes.Type(u"\r");
    EXPECT_EQ(planes.beeps, (std::vector<EditBeep>{EditBeep::Asterisk}));
    EXPECT_TRUE(planes.notifications.empty());
    EXPECT_EQ(planes.Lines(), (TextLines{u"ab", u"cd"}));
}

TEST(EditTyping, AScalarHoldsTheLastCharacterTyped)
{
    Editor editor(TypeCharacter, {}, u"a");
    editor.Type(u"b");
    EXPECT_EQ(editor.Lines(), (TextLines{u"b"}));
    editor.Type(u"c");
    EXPECT_EQ(editor.Lines(), (TextLines{u"c"}));
    editor.Press(KeyBackspace);
    EXPECT_EQ(editor.Lines(), (TextLines{u""}));
    editor.Type(u"d");
    EXPECT_EQ(editor.Lines(), (TextLines{u"d"}));
}

TEST(EditTyping, ARefusedCharacterLeavesCaretAndSelection)
{
    Editor editor(TypeInteger, {3}, u"123");
    editor.view.overtype = true;
    editor.Put(1, 0);
    editor.view.findMatch = true;
    editor.Type(u"x");
    EXPECT_EQ(editor.beeps, (std::vector<EditBeep>{EditBeep::Exclamation}));
    EXPECT_EQ(editor.Lines(), (TextLines{u"123"}));
    EXPECT_EQ(editor.Caret(), (EditCaret{1, 0}));
    EXPECT_TRUE(IsSelectionEmpty(editor.window));
    EXPECT_TRUE(editor.view.findMatch);
    EXPECT_FALSE(editor.State().modified);
    editor.view.overtype = false;
    editor.Select({3, 0}, {1, 0});
    editor.Type(u"x");
    EXPECT_EQ(NormalisedSelection(editor.window).start, (EditCaret{1, 0}));
    EXPECT_EQ(NormalisedSelection(editor.window).end, (EditCaret{3, 0}));
    EXPECT_EQ(editor.UndoSteps(), 0);
}

TEST(EditTyping, ARefusedLineBreakOfAPlaneLeavesTheCaret)
{
    Editor editor(TypeCharacter, {1, 2, 2}, u"ab\ncd");
    editor.Put(0, 1);
    editor.Press(KeyBackspace);
    EXPECT_EQ(editor.Caret(), (EditCaret{0, 1}));
    editor.Put(2, 0);
    editor.Press(KeyDelete);
    EXPECT_EQ(editor.Caret(), (EditCaret{2, 0}));
    EXPECT_TRUE(IsSelectionEmpty(editor.window));
    EXPECT_EQ(editor.notifications, (std::vector<std::int32_t>{EditNotifyPlaneLines, EditNotifyPlaneLines}));
    EXPECT_EQ(editor.UndoSteps(), 0);
}

TEST(EditTyping, UndoAndRedoAreChangesToo)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc");
    editor.Type(u"xy");
    Undo(editor.window);
    editor.window.readOnly = true;
    EXPECT_EQ(Undo(editor.window), 0);
    EXPECT_EQ(Redo(editor.window), 0);
    EXPECT_EQ(editor.beeps, (std::vector<EditBeep>{EditBeep::Asterisk, EditBeep::Asterisk}));
    EXPECT_EQ(editor.Lines(), (TextLines{u"xabc"}));
    EXPECT_EQ(editor.UndoSteps(), 1);
    EXPECT_EQ(editor.RedoSteps(), 1);
}

TEST(EditTyping, ControlCharactersAreNotTypedButTheOneAbove)
{
    Editor editor(TypeCharacter, {1, 1}, u"");
    for (char16_t character = 0; character < 32; ++character) {
        if (character != u'\r' && character != u'\n') editor.Type(std::u16string(1, character));
    }
    EXPECT_EQ(editor.Lines(), (TextLines{u""}));
    EXPECT_TRUE(editor.beeps.empty());
    editor.Type(u"\x7F\xFFFF");
    EXPECT_EQ(editor.Lines(), (TextLines{u"\x7F\xFFFF"}));
}

TEST(EditTyping, AtTheFarEndOfALongLineScrollsByTheCharacter)
{
    Editor editor(TypeCharacter, {1, 1}, std::u16string(1000, u'x'));
    editor.Press(KeyEnd);
    std::int64_t position = editor.State().scroll.horizontal.position;
    for (int i = 0; i < 20; ++i) {
        editor.Type(u"y");
        EXPECT_EQ(editor.State().scroll.horizontal.position, position + CharWidth);
        position += CharWidth;
    }
    for (int i = 0; i < 5; ++i)
        editor.Press(KeyBackspace);
    EXPECT_TRUE(GetCaretPicture(editor.window).shown);
    EXPECT_EQ(editor.State().scroll.horizontal.position, position - 5 * CharWidth);
}

} // namespace
} // namespace vantrel::test
