#include <gtest/gtest.h>

#include "editor_fixture.h"

namespace vantrel::test {
namespace {

TEST(EditDelete, AnEmptySelectionFailsSilently)
{
    Editor editor(TypeCharacter, {2}, u"ab");
    EXPECT_EQ(DeleteMarked(editor.window, true), 1);
    EXPECT_TRUE(editor.beeps.empty());
    EXPECT_TRUE(editor.notifications.empty());
    EXPECT_EQ(editor.UndoSteps(), 0);
}

TEST(EditDelete, WithinOneLine)
{
    Editor editor(TypeCharacter, {5}, u"abcde");
    editor.Select({4, 0}, {1, 0});
    EXPECT_EQ(DeleteMarked(editor.window, true), 0);
    EXPECT_EQ(editor.Lines(), (TextLines{u"ae"}));
    EXPECT_EQ(editor.Caret(), (EditCaret{1, 0}));
    EXPECT_EQ(editor.State().undo->text, u"bcd");
    EXPECT_TRUE(editor.State().modified);
}

TEST(EditDelete, AcrossLinesJoinsTheEnds)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc\ndef\nghi\njkl");
    editor.Select({2, 0}, {1, 2});
    EXPECT_EQ(DeleteMarked(editor.window, true), 0);
    EXPECT_EQ(editor.Lines(), (TextLines{u"abhi", u"jkl"}));
    EXPECT_EQ(editor.Caret(), (EditCaret{2, 0}));
    EXPECT_EQ(editor.State().undo->text, u"c\r\ndef\r\ng");
}

TEST(EditDelete, TheWholeTextLeavesOneEmptyLine)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc\ndef\nghi");
    SelectAll(editor.window);
    editor.Press(KeyDelete);
    EXPECT_EQ(editor.Lines(), (TextLines{u""}));
    Undo(editor.window);
    EXPECT_EQ(editor.Lines(), (TextLines{u"abc", u"def", u"ghi"}));
}

TEST(EditDelete, ManyRowsAtOnce)
{
    Editor editor(TypeCharacter, {1, 1}, u"");
    FreeRecords(editor.node->records);
    const std::u16string block(3000 * 2, u'x');
    SetBulkRecords(editor.node->records, block.data(), 3000, 2);
    editor.Select({1, 100}, {1, 2900});
    EXPECT_EQ(DeleteMarked(editor.window, true), 0);
    EXPECT_EQ(editor.node->records.count, 200);
    Undo(editor.window);
    EXPECT_EQ(editor.node->records.count, 3000);
    EXPECT_EQ(editor.Lines(), TextLines(3000, u"xx"));
}

TEST(EditDelete, BackspaceRemovesTheCharacterBefore)
{
    Editor editor(TypeCharacter, {3}, u"abc");
    editor.Put(2, 0);
    editor.Press(KeyBackspace);
    EXPECT_EQ(editor.Lines(), (TextLines{u"ac"}));
    EXPECT_EQ(editor.Caret(), (EditCaret{1, 0}));
}

TEST(EditDelete, BackspaceAtALinesStartJoinsItOntoTheOneBefore)
{
    Editor editor(TypeCharacter, {1, 1}, u"ab\ncd");
    editor.Put(0, 1);
    editor.Press(KeyBackspace);
    EXPECT_EQ(editor.Lines(), (TextLines{u"abcd"}));
    EXPECT_EQ(editor.Caret(), (EditCaret{2, 0}));
    Undo(editor.window);
    EXPECT_EQ(editor.Lines(), (TextLines{u"ab", u"cd"}));
}

TEST(EditDelete, BackspaceOverALineEndOfAPlaneIsRefused)
{
    Editor editor(TypeCharacter, {2, 2, 2}, u"ab\ncd\nef\ngh");
    editor.Put(0, 1);
    editor.Press(KeyBackspace);
    EXPECT_EQ(editor.notifications, (std::vector<std::int32_t>{EditNotifyPlaneLines}));
    EXPECT_TRUE(editor.beeps.empty()) << "the view says why";
    EXPECT_EQ(editor.Lines(), (TextLines{u"ab", u"cd", u"ef", u"gh"}));
    EXPECT_EQ(editor.UndoSteps(), 0);
    editor.Select({1, 0}, {1, 1});
    EXPECT_EQ(DeleteMarked(editor.window, true), 1);
    EXPECT_EQ(editor.notifications.size(), 2u);
    editor.Select({0, 0}, {1, 0});
    EXPECT_EQ(DeleteMarked(editor.window, true), 0);
    EXPECT_EQ(editor.Lines()[0], u"b");
}

TEST(EditDelete, DeleteRemovesTheNextCharacterOrTheLineBreak)
{
    Editor editor(TypeCharacter, {1, 1}, u"ab\ncd");
    editor.Put(1, 0);
    editor.Press(KeyDelete);
    EXPECT_EQ(editor.Lines(), (TextLines{u"a", u"cd"}));
    editor.Press(KeyDelete);
    EXPECT_EQ(editor.Lines(), (TextLines{u"acd"}));
}

TEST(EditDelete, ControlDeleteRemovesTheRestOfTheLineAndForgetsTheSelection)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcd\nefgh");
    editor.Select({0, 1}, {2, 0});
    editor.Press(KeyDelete, false, true);
    EXPECT_EQ(editor.Lines(), (TextLines{u"ab", u"efgh"}));
    EXPECT_EQ(editor.Caret(), (EditCaret{2, 0}));
}

TEST(EditDelete, WithNothingToDeleteAnEmptyStepIsStillRecorded)
{
    Editor editor(TypeCharacter, {1, 1}, u"ab\ncd");
    editor.Press(KeyBackspace); // at the very start
    EXPECT_EQ(editor.UndoSteps(), 1);
    EXPECT_TRUE(editor.State().modified);
    editor.Put(2, 1);
    editor.Press(KeyDelete);
    EXPECT_EQ(editor.UndoSteps(), 2);
    editor.Press(KeyDelete, false, true);
    EXPECT_EQ(editor.UndoSteps(), 3);
    EXPECT_EQ(editor.Lines(), (TextLines{u"ab", u"cd"}));
}

TEST(EditDelete, ASelectionLeftBehindByAShorterTextIsCut)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcd\nefgh");
    editor.Select({1, 0}, {4, 1});
    FreeRecords(editor.node->records);
    ASSERT_TRUE(StringToRecords(&editor.context, u"xy", 2, editor.node->records, false));
    EXPECT_EQ(DeleteMarked(editor.window, true), 0);
    EXPECT_EQ(editor.Lines(), (TextLines{u"x"}));
}

} // namespace
} // namespace vantrel::test
