#include <gtest/gtest.h>

#include "editor_fixture.h"

namespace vantrel::test {
namespace {

TEST(EditPaste, SplitsALineAndOneUndoRestoresIt)
{
    Editor editor(TypeCharacter, {1, 3}, u"xyz");
    editor.Put(1, 0);
    ASSERT_EQ(editor.Paste(u"a\r\nb"), 0);
    EXPECT_EQ(editor.Lines(), (TextLines{u"xa", u"byz"}));
    EXPECT_EQ(editor.Caret(), (EditCaret{1, 1}));
    Undo(editor.window);
    EXPECT_EQ(editor.Lines(), (TextLines{u"xyz"}));
    EXPECT_FALSE(editor.State().modified);
}

TEST(EditPaste, KeepsALoneCarriageReturnAsACharacter)
{
    Editor editor(TypeCharacter, {1, 3}, u"xyz");
    editor.Put(1, 0);
    ASSERT_EQ(editor.Paste(u"a\rb"), 0);
    EXPECT_EQ(editor.Lines(), (TextLines{u"xa\rbyz"}));
}

TEST(EditPaste, SeveralLinesKeepTheTailAfterTheLast)
{
    Editor editor(TypeCharacter, {1, 1}, u"head|tail\nnext");
    editor.Put(5, 0);
    ASSERT_EQ(editor.Paste(u"one\ntwo\r\n\nlast"), 0);
    EXPECT_EQ(editor.Lines(), (TextLines{u"head|one", u"two", u"", u"lasttail", u"next"}));
    EXPECT_EQ(editor.Caret(), (EditCaret{4, 3}));
    Undo(editor.window);
    EXPECT_EQ(editor.Lines(), (TextLines{u"head|tail", u"next"}));
    Redo(editor.window);
    EXPECT_EQ(editor.Lines(), (TextLines{u"head|one", u"two", u"", u"lasttail", u"next"}));
}

TEST(EditPaste, ATextEndingInALineEndLeavesTheCaretOnTheTail)
{
    Editor editor(TypeCharacter, {1, 1}, u"ab");
    editor.Put(1, 0);
    ASSERT_EQ(editor.Paste(u"X\r\n"), 0);
    EXPECT_EQ(editor.Lines(), (TextLines{u"aX", u"b"}));
    EXPECT_EQ(editor.Caret(), (EditCaret{0, 1}));
}

TEST(EditPaste, IntoBulkRowsTouchesOnlyItsOwn)
{
    Editor editor(TypeCharacter, {3, 4}, u"");
    FreeRecords(editor.node->records);
    SetBulkRecords(editor.node->records, u"aaaabbbbcccc", 3, 4);
    editor.Put(2, 1);
    ASSERT_EQ(editor.Paste(u"1\n2"), 0);
    EXPECT_EQ(editor.Lines(), (TextLines{u"aaaa", u"bb1", u"2bb", u"cccc"}));
}

TEST(EditPaste, NumericVectorsTakeBlanksAndNoLineEnds)
{
    Editor editor(TypeInteger, {1}, u"0");
    EXPECT_EQ(editor.Paste(u"1 2"), 0);
    EXPECT_EQ(editor.Lines(), (TextLines{u"1 20"}));
    EXPECT_EQ(editor.Paste(u"1\r\n2"), 1);
    EXPECT_EQ(editor.Lines(), (TextLines{u"1 20"}));
    EXPECT_EQ(editor.beeps, (std::vector<EditBeep>{EditBeep::Exclamation}));
}

TEST(EditPaste, NumericScalarsTakeNoBlank)
{
    Editor editor(TypeReal, {}, u"1");
    EXPECT_EQ(editor.Paste(u" "), 1);
    EXPECT_EQ(editor.beeps, (std::vector<EditBeep>{EditBeep::Exclamation}));
    EXPECT_EQ(editor.Paste(u"2.5E¯3"), 0);
    EXPECT_EQ(editor.Lines(), (TextLines{u"2.5E¯31"}));
}

TEST(EditPaste, EveryNumericTypeTakesNumbersOnly)
{
    for (const std::uint32_t type : {TypeBoolean, TypeInteger, TypeReal, TypeComplex, TypeDecimal}) {
        Editor editor(type, {1, 1}, u"0");
        EXPECT_EQ(editor.Paste(u".eEjJ¯1234567890 \r\n5"), 0) << type;
        EXPECT_EQ(editor.Lines(), (TextLines{u".eEjJ¯1234567890 ", u"50"})) << type;
        for (const char16_t* refused : {u"a", u"+", u",", u"\t", u"1x", u"⍳", u"\u00A0"}) {
            EXPECT_EQ(editor.Paste(refused), 1) << type;
        }
        EXPECT_EQ(editor.beeps, std::vector<EditBeep>(7, EditBeep::Exclamation)) << type;
    }
}

TEST(EditPaste, TheHyphenIsANumbersSignWhereTheHighMinusIsNot)
{
    Editor apl(TypeInteger, {1}, u"0");
    EXPECT_EQ(apl.Paste(u"-1"), 1);
    Editor other(TypeInteger, {1}, u"0");
    other.langEnv.ViewCapabilities = 0;
    EXPECT_EQ(other.Paste(u"-1"), 0);
    EXPECT_EQ(other.Lines(), (TextLines{u"-10"}));
}

TEST(EditPaste, CharacterScalarsTakeOneCharacter)
{
    Editor editor(TypeCharacter, {}, u"a");
    EXPECT_EQ(editor.Paste(u"xy"), 1);
    EXPECT_EQ(editor.beeps, (std::vector<EditBeep>{EditBeep::Exclamation}));
    EXPECT_EQ(editor.Lines(), (TextLines{u"a"}));
    EXPECT_EQ(editor.Paste(u"x"), 0);
    EXPECT_EQ(editor.Lines(), (TextLines{u"x"}));
    EXPECT_EQ(editor.UndoSteps(), 1);
    Undo(editor.window);
    EXPECT_EQ(editor.Lines(), (TextLines{u"a"}));
}

TEST(EditPaste, APlaneKeepsItsLineCount)
{
    for (const char16_t* text : {u"x\ny", u"x\r\ny", u"x\ry"}) {
        Editor editor(TypeCharacter, {2, 2, 2}, u"ab\ncd\nef\ngh");
        EXPECT_EQ(editor.Paste(text), 1);
        EXPECT_EQ(editor.notifications, (std::vector<std::int32_t>{EditNotifyPlaneLines}));
        EXPECT_EQ(editor.beeps, (std::vector<EditBeep>{EditBeep::Exclamation}));
        EXPECT_EQ(editor.Lines(), (TextLines{u"ab", u"cd", u"ef", u"gh"}));
    }
}

TEST(EditPaste, EditsTheShownPlane)
{
    Editor editor(TypeCharacter, {2, 2, 2}, u"ab\ncd\nef\ngh");
    ExtraOf(*editor.node).CurrentPlane = 1;
    OnNewPlane(editor.window);
    editor.Put(1, 1);
    EXPECT_EQ(editor.Paste(u"X"), 0);
    EXPECT_EQ(editor.Lines(), (TextLines{u"ab", u"cd", u"ef", u"gXh"}));
    editor.Press(KeyBackspace);
    EXPECT_EQ(editor.Lines(), (TextLines{u"ab", u"cd", u"ef", u"gh"}));
    MoveCaret(editor.window, CaretEnd, CaretEnd);
    EXPECT_EQ(editor.Caret(), (EditCaret{2, 1}));
}

TEST(EditPaste, APlaneOfRankFourIsFoundAmongAllRows)
{
    Editor editor(TypeCharacter, {2, 2, 1, 1}, u"a\nb\nc\nd");
    ExtraOf(*editor.node).CurrentPlane = 2;
    OnNewPlane(editor.window);
    EXPECT_EQ(EditRows(editor.window), 1);
    editor.Type(u"X");
    EXPECT_EQ(editor.Lines(), (TextLines{u"a", u"b", u"Xc", u"d"}));
}

TEST(EditPaste, ANewPlaneWithAShorterLinePullsTheCaretIn)
{
    Editor editor(TypeCharacter, {2, 1, 5}, u"abcde\nab");
    editor.Select({1, 0}, {5, 0});
    ExtraOf(*editor.node).CurrentPlane = 1;
    OnNewPlane(editor.window);
    EXPECT_EQ(editor.Caret(), (EditCaret{2, 0}));
    EXPECT_TRUE(IsSelectionEmpty(editor.window));
    editor.Type(u"X");
    EXPECT_EQ(editor.Lines(), (TextLines{u"abcde", u"abX"}));
}

TEST(EditPaste, OverASelectionIsOneUndoStep)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc\ndef\nghi");
    editor.Select({1, 0}, {2, 2});
    ASSERT_EQ(editor.Paste(u"X\nY"), 0);
    EXPECT_EQ(editor.Lines(), (TextLines{u"aX", u"Yi"}));
    EXPECT_EQ(editor.UndoSteps(), 1);
    EXPECT_EQ(editor.State().undo->text, u"bc\r\ndef\r\ngh");
    Undo(editor.window);
    EXPECT_EQ(editor.Lines(), (TextLines{u"abc", u"def", u"ghi"}));
    EXPECT_EQ(editor.UndoSteps(), 0);
    Redo(editor.window);
    EXPECT_EQ(editor.Lines(), (TextLines{u"aX", u"Yi"}));
}

TEST(EditPaste, WidensTheScrollRange)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc");
    EXPECT_EQ(editor.State().maximumWidth, 3 * CharWidth);
    EXPECT_EQ(editor.State().scroll.vertical.dataSize, LineHeight);
    ASSERT_EQ(editor.Paste(u"0123456789\nx"), 0);
    EXPECT_EQ(editor.State().maximumWidth, 10 * CharWidth);
    EXPECT_EQ(editor.State().scroll.horizontal.dataSize, 10 * CharWidth);
    EXPECT_EQ(editor.State().scroll.vertical.dataSize, 2 * LineHeight);
}

TEST(EditPaste, AFailedSplitLeavesItsErrorAndTheText)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc");
    ArmAllocationFault(1, true);
    const std::int32_t result =
        editor.Paste(u"some longer text that needs memory\nand another line that does too");
    DisarmAllocationFault();
    EXPECT_EQ(result, 1);
    EXPECT_EQ(editor.langEnv.ErrorCode, VTERROR_CODE::OutOfMemory);
    EXPECT_EQ(editor.notifications, (std::vector<std::int32_t>{EditNotifyOutOfMemory}));
    EXPECT_EQ(editor.Lines(), (TextLines{u"abc"}));
    EXPECT_FALSE(editor.State().modified);
}

TEST(EditPaste, ALineFeedIsNoCharacterOfAScalar)
{
    Editor editor(TypeCharacter, {}, u"a");
    EXPECT_EQ(editor.Paste(u"\n"), 1);
    EXPECT_EQ(editor.beeps, (std::vector<EditBeep>{EditBeep::Exclamation}));
    EXPECT_EQ(editor.Lines(), (TextLines{u"a"}));
    EXPECT_EQ(editor.Caret(), (EditCaret{0, 0}));
    EXPECT_EQ(editor.Paste(u"\r"), 0);
    EXPECT_EQ(editor.Lines(), (TextLines{u"\r"}));
}

} // namespace
} // namespace vantrel::test
