// Array undo and redo.
#include "action_fixture.h"

namespace vantrel {
namespace {

class ArrayUndo : public ActionTest {
protected:
    static int Depth(const UndoEntry* stack)
    {
        int depth = 0;
        for (; stack != nullptr; stack = stack->next)
            ++depth;
        return depth;
    }
};

TEST_F(ArrayUndo, StepsAreTakenBackInReverseOrderAndForward)
{
    Show(Vec(Word(u"abc"), Word(u"de")));
    SelectAt({0});
    Run(CommandReverse);
    SelectAt({1});
    Run(CommandEnclose);
    SelectAt({0});
    Run(CommandMakeMatrix);
    const std::string last = Tree();
    EXPECT_EQ(Depth(view.undo), 3);
    Run(CommandUndoArray);
    EXPECT_EQ(Selected(view), &At({0}));
    Run(CommandUndoArray);
    EXPECT_EQ(Selected(view), &At({1}));
    EXPECT_EQ(Tree(), "General[2](Character[3]'cba' Character[2]'de')");
    Run(CommandUndoArray);
    EXPECT_EQ(Tree(), "General[2](Character[3]'abc' Character[2]'de')");
    Run(CommandUndoArray); // nothing is left
    EXPECT_EQ(Depth(view.redo), 3);
    for (int i = 0; i < 4; ++i)
        Run(CommandRedoArray);
    EXPECT_EQ(Tree(), last);
    EXPECT_EQ(Depth(view.undo), 3);
}

TEST_F(ArrayUndo, AnEntryNamesItsPlace)
{
    Show(Vec(Word(u"abc"), Vec(Word(u"x"), Word(u"y"))));
    SelectAt({1, 1});
    Run(CommandEnclose);
    ASSERT_NE(view.undo, nullptr);
    EXPECT_EQ(std::u16string(view.undo->pickIndex), u"2 2");
    EXPECT_EQ(view.undo->copy->parent, nullptr);
    EXPECT_EQ(test::DumpTree(*view.undo->copy), "Character[1]'y'");
    EXPECT_EQ(view.undo->flags, 0);
}

TEST_F(ArrayUndo, ANewActionForgetsWhatCouldBeRedone)
{
    Show(Word(u"abc"));
    Run(CommandReverse);
    Run(CommandUndoArray);
    EXPECT_NE(view.redo, nullptr);
    Run(CommandEnclose);
    EXPECT_EQ(view.redo, nullptr);
    Run(CommandRedoArray);
    EXPECT_EQ(Tree(), "General[](Character[3]'abc')");
}

TEST_F(ArrayUndo, SwitchedOffAnActionStillForgetsWhatCouldBeRedone)
{
    Show(Word(u"abc"));
    Run(CommandReverse);
    Run(CommandUndoArray);
    view.options.enableUndo = false;
    Run(CommandReverse);
    EXPECT_EQ(view.redo, nullptr);
    EXPECT_EQ(view.undo, nullptr);
    Run(CommandUndoArray);
    EXPECT_EQ(Tree(), "Character[3]'cba'");
}

TEST_F(ArrayUndo, LinkedStepsGoTogetherInBothDirections)
{
    Show(Vec(Letter(u'a'), Scalar(1), Letter(u'c')));
    clipboard = Letter(u'b');
    SelectAt({1});
    const std::string before = Tree();
    Run(CommandPasteArray);
    EXPECT_EQ(Tree(), "Character[3]'abc'");
    EXPECT_EQ(Depth(view.undo), 2);
    EXPECT_EQ(view.undo->flags, UndoLinked);
    EXPECT_EQ(view.undo->next->flags, 0);
    for (int i = 0; i < 3; ++i) {
        Run(CommandUndoArray);
        EXPECT_EQ(Tree(), before);
        EXPECT_EQ(Depth(view.undo), 0);
        EXPECT_EQ(Depth(view.redo), 2);
        Run(CommandRedoArray);
        EXPECT_EQ(Tree(), "Character[3]'abc'");
        EXPECT_EQ(Depth(view.undo), 2);
        EXPECT_EQ(Depth(view.redo), 0);
    }
}

TEST_F(ArrayUndo, ManyLinkedStepsAreOneStepToo)
{
    Show(Vec(Word(u"w"), Vec(Letter(u'a')), Vec(Letter(u'b')), Vec(Letter(u'c'))));
    clipboard = Word(u"new");
    SelectAt({0});
    const std::string before = Tree();
    Run(CommandPasteArray);
    const std::string after = Tree();
    EXPECT_EQ(Depth(view.undo), 4);
    for (int i = 0; i < 3; ++i) {
        Run(CommandUndoArray);
        EXPECT_EQ(Tree(), before);
        EXPECT_EQ(Depth(view.undo), 0);
        Run(CommandRedoArray);
        EXPECT_EQ(Tree(), after);
    }
}

TEST_F(ArrayUndo, AnEntrySavedWhileABoxFilledTheWindowFindsItsPlace)
{
    Show(Vec(Word(u"abc"), Vec(Word(u"x"), Word(u"y"))));
    SelectAt({1});
    ASSERT_EQ(MaximizeScdr(view), 0);
    ASSERT_EQ(SelectScdr(view, At({1, 0}), false), 0);
    Run(CommandEnclose);
    EXPECT_EQ(std::u16string(view.undo->pickIndex), u"2 1");
    ASSERT_EQ(SelectScdr(view, At({1}), false), 0);
    ASSERT_EQ(RestoreScdr(view), 0);
    Run(CommandUndoArray);
    EXPECT_EQ(Tree(), "General[2](Character[3]'abc' General[2](Character[1]'x' Character[1]'y'))");
}

TEST_F(ArrayUndo, WhatIsUndoneElsewhereComesIntoSight)
{
    Show(Vec(Word(u"abc"), Vec(Word(u"x"), Word(u"y"))));
    SelectAt({0});
    Run(CommandReverse);
    SelectAt({1});
    ASSERT_EQ(MaximizeScdr(view), 0);
    Run(CommandUndoArray);
    EXPECT_EQ(view.top, view.root);
    EXPECT_EQ(Tree(), "General[2](Character[3]'abc' General[2](Character[1]'x' Character[1]'y'))");
    EXPECT_TRUE(test::IsSoundTree(*view.root));
}

TEST_F(ArrayUndo, TypedTextIsPartOfWhatIsRedone)
{
    Show(Vec(Word(u"abc"), Word(u"x")));
    SelectAt({0});
    Run(CommandReverse);
    Type(At({0}), 0, u"typed");
    Run(CommandUndoArray);
    EXPECT_EQ(DataText(At({0})), u"abc");
    Run(CommandRedoArray);
    EXPECT_EQ(DataText(At({0})), u"typed");
}

TEST_F(ArrayUndo, EmptyingTheBuffer)
{
    Show(Word(u"abc"));
    Run(CommandReverse);
    Run(CommandReverse);
    Run(CommandUndoArray);
    log.Clear();
    Run(CommandEmptyUndoBuffer);
    EXPECT_EQ(view.undo, nullptr);
    EXPECT_EQ(view.redo, nullptr);
    EXPECT_EQ(log.Count("notify 6"), 1);
    EXPECT_EQ(Tree(), "Character[3]'cba'");
}

TEST_F(ArrayUndo, AnotherTreeHasNothingToUndo)
{
    Show(Word(u"abc"));
    Run(CommandReverse);
    Show(Word(u"other"));
    EXPECT_EQ(view.undo, nullptr);
}

TEST_F(ArrayUndo, AnUndoneArrayThatCannotBeFormattedIsDroppedWithWhatCouldBeRedone)
{
    Show(Vec(Word(u"abc"), Word(u"x")));
    SelectAt({1});
    Run(CommandReverse);
    SelectAt({0});
    Run(CommandReverse);
    Run(CommandReverse);
    Run(CommandUndoArray);
    ASSERT_EQ(Depth(view.redo), 1);
    // A type that nobody can format.
    view.undo->copy->Type = TypeDecimal;
    onFormat = nullptr;
    const std::string before = Tree();
    primitiveError = VTERROR_CODE::WsFull;
    Run(CommandUndoArray);
    EXPECT_EQ(Tree(), before);
    EXPECT_EQ(Depth(view.undo), 1);
    EXPECT_EQ(Depth(view.redo), 0);
    EXPECT_EQ(log.Count("notify 5"), 1);
}

TEST_F(ArrayUndo, TheLogSaysWhichArrayWasSet)
{
    CommandLog lines;
    context.commandLog = &lines;
    Show(Vec(Word(u"abc"), Word(u"x")));
    SelectAt({1});
    Run(CommandReverse);
    Run(CommandUndoArray);
    EXPECT_EQ(lines, "Set array\r\n2\r\n");
}

TEST_F(ArrayUndo, LongNamesAreLoggedWhole)
{
    CommandLog lines;
    context.commandLog = &lines;
    const std::u16string name = std::u16string(500, u'1') + u"⍴\U0001F600";
    LogPickIndex(&context, name.c_str());
    EXPECT_EQ(lines, "Set array\r\n" + std::string(500, '1') + "\xE2\x8D\xB4\xF0\x9F\x98\x80\r\n");
}

} // namespace
} // namespace vantrel
