#include <gtest/gtest.h>

#include "editor_fixture.h"

namespace vantrel::test {
namespace {

TEST(EditUndo, OfEverythingClearsTheModifiedFlag)
{
    Editor editor(TypeCharacter, {2}, u"ab");
    editor.Type(u"XY");
    const std::size_t notified = editor.notifications.size();
    EXPECT_EQ(Undo(editor.window), 1);
    EXPECT_EQ(editor.Lines(), (TextLines{u"Xab"}));
    EXPECT_TRUE(editor.State().modified);
    EXPECT_EQ(Undo(editor.window), 1);
    EXPECT_EQ(editor.Lines(), (TextLines{u"ab"}));
    EXPECT_FALSE(editor.State().modified);
    EXPECT_EQ(editor.notifications.size(), notified);
    EXPECT_EQ(editor.Caret(), (EditCaret{0, 0}));
}

bool IsEdited(const Editor& editor)
{
    return (editor.node->records.flags & RecordsEdited) != 0;
}

TEST(EditUndo, OfEverythingMakesTheTextTheNodesOwnAgain)
{
    Editor editor(TypeReal, {2}, u"3.14 2");
    editor.Type(u"12");
    EXPECT_TRUE(IsEdited(editor));
    Undo(editor.window);
    EXPECT_TRUE(IsEdited(editor)) << "one change is left";
    Undo(editor.window);
    EXPECT_FALSE(IsEdited(editor));
    Redo(editor.window);
    EXPECT_TRUE(IsEdited(editor));
}

TEST(EditUndo, OfAReplacedSelectionMakesTheTextTheNodesOwnAgain)
{
    Editor editor(TypeCharacter, {4}, u"abcd");
    editor.Select({1, 0}, {3, 0});
    editor.Type(u"X");
    Undo(editor.window);
    EXPECT_EQ(editor.Lines(), (TextLines{u"abcd"}));
    EXPECT_FALSE(IsEdited(editor));
}

TEST(EditUndo, OfTheStepsSinceTheBufferWasEmptiedLeavesTheTextEdited)
{
    Editor editor(TypeCharacter, {2}, u"ab");
    editor.Type(u"X");
    EmptyUndo(editor.window);
    editor.Type(u"Y");
    Undo(editor.window);
    EXPECT_EQ(editor.Lines(), (TextLines{u"Xab"}));
    EXPECT_FALSE(editor.State().modified);
    EXPECT_TRUE(IsEdited(editor));
}

TEST(EditUndo, RedoBringsEverythingBack)
{
    Editor editor(TypeCharacter, {2}, u"ab");
    editor.Type(u"XY");
    Undo(editor.window);
    Undo(editor.window);
    EXPECT_EQ(editor.RedoSteps(), 2);
    EXPECT_EQ(Redo(editor.window), 1);
    EXPECT_EQ(editor.Lines(), (TextLines{u"Xab"}));
    EXPECT_EQ(Redo(editor.window), 1);
    EXPECT_EQ(editor.Lines(), (TextLines{u"XYab"}));
    EXPECT_EQ(Redo(editor.window), 0);
    EXPECT_TRUE(editor.State().modified);
    EXPECT_TRUE(CanUndo(editor.window));
    EXPECT_FALSE(CanRedo(editor.window));
}

TEST(EditUndo, ANewChangeEmptiesTheRedoStack)
{
    Editor editor(TypeCharacter, {2}, u"ab");
    editor.Type(u"XY");
    Undo(editor.window);
    EXPECT_TRUE(CanRedo(editor.window));
    editor.Type(u"Z");
    EXPECT_FALSE(CanRedo(editor.window));
    EXPECT_EQ(editor.UndoSteps(), 2);
}

TEST(EditUndo, WithNothingToUndoAnswersByRank)
{
    Editor scalar(TypeCharacter, {}, u"a");
    EXPECT_EQ(Undo(scalar.window), 1);
    Editor vector(TypeCharacter, {1}, u"a");
    EXPECT_EQ(Undo(vector.window), 1);
    Editor matrix(TypeCharacter, {1, 1}, u"a");
    EXPECT_EQ(Undo(matrix.window), 0);
    Editor planes(TypeCharacter, {1, 1, 1}, u"a");
    EXPECT_EQ(Undo(planes.window), 0);
}

// Moves "cd" before "a" as one group of two records, as a drag does.
void MoveTextToTheStart(Editor& editor)
{
    editor.Select({2, 0}, {4, 0});
    ASSERT_EQ(DeleteMarked(editor.window, true), 0);
    editor.Put(0, 0);
    ASSERT_EQ(editor.Paste(u"cd", false), 0);
}

TEST(EditUndo, AGroupIsUndoneAsAWhole)
{
    Editor editor(TypeCharacter, {4}, u"abcd");
    MoveTextToTheStart(editor);
    EXPECT_EQ(editor.Lines(), (TextLines{u"cdab"}));
    EXPECT_EQ(editor.UndoSteps(), 2);
    Undo(editor.window);
    EXPECT_EQ(editor.Lines(), (TextLines{u"abcd"}));
    EXPECT_EQ(editor.UndoSteps(), 0);
    EXPECT_FALSE(editor.State().modified);
    EXPECT_FALSE(IsEdited(editor));
}

TEST(EditUndo, AfterAGroupTheNextOlderStepGoesToTheRedoStackUnapplied)
{
    Editor editor(TypeCharacter, {3}, u"abc");
    editor.Put(3, 0);
    editor.Type(u"d");
    MoveTextToTheStart(editor);
    ASSERT_EQ(editor.UndoSteps(), 3);
    Undo(editor.window);
    EXPECT_EQ(editor.Lines(), (TextLines{u"abcd"})) << "the older step is not applied";
    EXPECT_EQ(editor.UndoSteps(), 0);
    EXPECT_EQ(editor.RedoSteps(), 3);
    EXPECT_FALSE(editor.State().modified);
    EXPECT_TRUE(IsEdited(editor)) << "the text still is another";
}

TEST(EditUndo, TakesAChangeBackInThePlaneWhereItWasMade)
{
    const TextLines before{u"ab", u"cd", u"ef"};
    Editor editor(TypeCharacter, {3, 1, 2}, u"ab\ncd\nef");
    editor.Type(u"X");
    editor.ShowPlane(2);
    editor.Put(1, 0);
    editor.Type(u"Y");
    editor.ShowPlane(1);
    const TextLines after{u"Xab", u"cd", u"eYf"};
    EXPECT_EQ(editor.Lines(), after);
    EXPECT_EQ(Undo(editor.window), 1);
    EXPECT_EQ(editor.Lines(), (TextLines{u"Xab", u"cd", u"ef"}));
    EXPECT_EQ(CurrentPlane(*editor.node), 2) << "the user sees it";
    EXPECT_EQ(Undo(editor.window), 1);
    EXPECT_EQ(editor.Lines(), before);
    EXPECT_EQ(CurrentPlane(*editor.node), 0);
    EXPECT_FALSE(editor.State().modified);
    editor.ShowPlane(1);
    while (CanRedo(editor.window))
        EXPECT_EQ(Redo(editor.window), 1);
    EXPECT_EQ(editor.Lines(), after);
    EXPECT_EQ(CurrentPlane(*editor.node), 2);
}

TEST(EditUndo, EmptyingFreesBothStacks)
{
    Editor editor(TypeCharacter, {2}, u"ab");
    editor.Type(u"XY");
    Undo(editor.window);
    EmptyUndo(editor.window);
    EXPECT_FALSE(CanUndo(editor.window));
    EXPECT_FALSE(CanRedo(editor.window));
    EXPECT_TRUE(IsEdited(editor));
}

TEST(EditUndo, FreeingTheRedoStackKeepsTheUndoStack)
{
    Editor editor(TypeCharacter, {2}, u"ab");
    editor.Type(u"XY");
    Undo(editor.window);
    FreeRedo(editor.window);
    EXPECT_TRUE(CanUndo(editor.window));
    EXPECT_FALSE(CanRedo(editor.window));
}

TEST(EditUndo, AStepThatTheNodeRefusesIsLost)
{
    Editor editor(TypeInteger, {3}, u"1⍳2"); // as text that a host formats its own way
    editor.Select({1, 0}, {2, 0});
    ASSERT_EQ(editor.Paste(u""), 0);
    EXPECT_EQ(editor.Lines(), (TextLines{u"12"}));
    Undo(editor.window);
    EXPECT_EQ(editor.Lines(), (TextLines{u"12"}));
    EXPECT_EQ(editor.beeps, (std::vector<EditBeep>{EditBeep::Exclamation}));
    EXPECT_TRUE(IsSelectionEmpty(editor.window));
    EXPECT_FALSE(CanUndo(editor.window));
    EXPECT_FALSE(CanRedo(editor.window));
}

TEST(EditUndo, SurvivesAVisitToAnotherNode)
{
    Editor editor(TypeCharacter, {2}, u"ab");
    editor.Type(u"X");
    const std::int64_t shape = 1;
    ScdrPtr other = AllocateScdr(&editor.context, nullptr, TypeCharacter, 1, &shape, true);
    ASSERT_TRUE(StringToRecords(&editor.context, u"q", 1, other->records, false));
    editor.view.node = other.get();
    OnUseScdr(editor.window, false);
    EXPECT_FALSE(CanUndo(editor.window));
    EXPECT_EQ(editor.Caret(), (EditCaret{0, 0}));
    editor.view.node = editor.node.get();
    OnUseScdr(editor.window, false);
    EXPECT_EQ(editor.Caret(), (EditCaret{1, 0}));
    Undo(editor.window);
    EXPECT_EQ(editor.Lines(), (TextLines{u"ab"}));
}

} // namespace
} // namespace vantrel::test
