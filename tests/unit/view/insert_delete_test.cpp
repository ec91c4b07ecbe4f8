// New items, rows and columns, and items taken away.
#include "action_fixture.h"

namespace vantrel {
namespace {

class InsertDelete : public ActionTest {
protected:
    ScdrPtr ThreeNumbers() { return Vec(Word(u"ab"), Scalar(2), Word(u"c")); }
    ScdrPtr Matrix() { return NestedOf({2, 2}, Word(u"a"), Word(u"b"), Word(u"c"), Word(u"d")); }
};

TEST_F(InsertDelete, AnItemToTheRightOfTheLastIsAPrototypeAndTheOldOneStaysSelected)
{
    Show(ThreeNumbers());
    SelectAt({2});
    ExpectThereAndBack(CommandInsertItemRight,
                       "General[4](Character[2]'ab' Integer[]2 Character[1]'c' Character[2]'  ')");
    SelectAt({2});
    Run(CommandInsertItemRight);
    EXPECT_EQ(Selected(view), &At({2}));
}

TEST_F(InsertDelete, AnItemToTheLeftMovesTheSelectedOne)
{
    Show(ThreeNumbers());
    SelectAt({0});
    Run(CommandInsertItemLeft);
    EXPECT_EQ(Tree(), "General[4](Character[2]'  ' Character[2]'ab' Integer[]2 Character[1]'c')");
    EXPECT_EQ(Selected(view), &At({1}));
    EXPECT_TRUE(view.editorActive);
    EXPECT_GE(log.Count("editor modified") + log.Count("focus"), 1);
    SelectAt({1});
    ExpectThereAndBack(CommandInsertItemLeft,
                       "General[5](Character[2]'  ' Character[2]'  ' Character[2]'ab' Integer[]2 "
                       "Character[1]'c')");
}

TEST_F(InsertDelete, ANewItemOfNumbersIsZeros)
{
    Show(Vec(Vec(Integers({2}, {1, 2}), Word(u"x")), Scalar(1)));
    SelectAt({1});
    Run(CommandInsertItemRight);
    EXPECT_EQ(Tree(), "General[3](General[2](Integer[2]1 2 Character[1]'x') Integer[]1 "
                      "General[2](Integer[2]0 0 Character[1]' '))");
}

TEST_F(InsertDelete, TheFirstItemOfAnEmptyVectorTakesThePrototypesPlace)
{
    Show(Vec(Empty({0}, Word(u"ab")), Word(u"z")));
    SelectAt({0, 0});
    ExpectThereAndBack(CommandInsertItemRight, "General[2](General[1](Character[2]'  ') Character[1]'z')");
}

TEST_F(InsertDelete, ItemsGoIntoVectorsOnly)
{
    Show(Matrix());
    SelectAt({0});
    Run(CommandInsertItemLeft);
    EXPECT_EQ(LastStatus(), MessageParentIsNotAVector);
    Select(*view.root);
    Run(CommandInsertItemLeft);
    EXPECT_EQ(LastStatus(), MessageNotAChild);
    EXPECT_EQ(view.undo, nullptr);
    EXPECT_EQ(view.flags & ViewModified, 0);
}

TEST_F(InsertDelete, AColumnToTheLeft)
{
    Show(Matrix());
    SelectAt({3});
    ExpectThereAndBack(CommandInsertColumnLeft,
                       "General[2 3](Character[1]'a' Character[1]' ' Character[1]'b' "
                       "Character[1]'c' Character[1]' ' Character[1]'d')");
    SelectAt({5});
    Run(CommandInsertColumnLeft);
    EXPECT_EQ(DataText(*Selected(view)), u"d");
    EXPECT_EQ(PickIndex(), u"(2 4)");
}

TEST_F(InsertDelete, AColumnToTheRight)
{
    Show(Matrix());
    SelectAt({2});
    ExpectThereAndBack(CommandInsertColumnRight,
                       "General[2 3](Character[1]'a' Character[1]' ' Character[1]'b' "
                       "Character[1]'c' Character[1]' ' Character[1]'d')");
    SelectAt({3});
    Run(CommandInsertColumnRight);
    EXPECT_EQ(DataText(*Selected(view)), u"c");
}

TEST_F(InsertDelete, ARowAbove)
{
    Show(Matrix());
    SelectAt({2});
    ExpectThereAndBack(CommandInsertRowAbove, "General[3 2](Character[1]'a' Character[1]'b' Character[1]' ' "
                                              "Character[1]' ' Character[1]'c' Character[1]'d')");
    SelectAt({4});
    Run(CommandInsertRowAbove);
    EXPECT_EQ(DataText(*Selected(view)), u"c");
    EXPECT_EQ(PickIndex(), u"(4 1)");
}

TEST_F(InsertDelete, ARowBelow)
{
    Show(Matrix());
    SelectAt({1});
    ExpectThereAndBack(CommandInsertRowBelow, "General[3 2](Character[1]'a' Character[1]'b' Character[1]' ' "
                                              "Character[1]' ' Character[1]'c' Character[1]'d')");
    SelectAt({1});
    Run(CommandInsertRowBelow);
    EXPECT_EQ(DataText(*Selected(view)), u"b");
}

TEST_F(InsertDelete, TheEndsOfAWideAndATallMatrix)
{
    Show(NestedOf({1, 3}, Word(u"a"), Word(u"b"), Word(u"c")));
    SelectAt({2});
    Run(CommandInsertRowBelow);
    EXPECT_EQ(Tree(), "General[2 3](Character[1]'a' Character[1]'b' Character[1]'c' "
                      "Character[1]' ' Character[1]' ' Character[1]' ')");
    Show(NestedOf({3, 1}, Word(u"a"), Word(u"b"), Word(u"c")));
    SelectAt({2});
    Run(CommandInsertColumnRight);
    EXPECT_EQ(Tree(), "General[3 2](Character[1]'a' Character[1]' ' Character[1]'b' "
                      "Character[1]' ' Character[1]'c' Character[1]' ')");
}

TEST_F(InsertDelete, RowsAndColumnsOfAnEmptyMatrix)
{
    Show(Empty({0, 2}, Word(u"x")));
    SelectAt({0});
    Run(CommandInsertColumnLeft);
    EXPECT_EQ(Tree(), "General[0 3](Character[1]' ')");
    EXPECT_EQ(Selected(view), &At({0}));
    Run(CommandInsertRowBelow);
    EXPECT_EQ(Tree(), "General[1 3](Character[1]' ' Character[1]' ' Character[1]' ')");
    Show(Empty({2, 0}, Word(u"x")));
    SelectAt({0});
    ExpectThereAndBack(CommandInsertColumnRight, "General[2 1](Character[1]' ' Character[1]' ')");
}

TEST_F(InsertDelete, RowsGoIntoMatricesOnly)
{
    Show(ThreeNumbers());
    SelectAt({0});
    Run(CommandInsertRowAbove);
    EXPECT_EQ(LastStatus(), MessageParentIsNotAMatrix);
    EXPECT_EQ(log.statuses.back().error, true);
    EXPECT_EQ(log.Count("notify 1"), 0); // the message stays in sight
    Select(*view.root);
    Run(CommandInsertRowAbove);
    EXPECT_EQ(LastStatus(), MessageNotAChild);
}

TEST_F(InsertDelete, WhatWasTypedBesideTheSelectionIsNotLost)
{
    Show(ThreeNumbers());
    SelectAt({0});
    Type(At({0}), 0, u"typed");
    SelectAt({2});
    Type(At({2}), 0, u"too");
    Run(CommandInsertItemRight);
    EXPECT_EQ(Tree(), "General[4](Character[5]'typed' Integer[]2 Character[3]'too' Character[5]'     ')");
    Run(CommandUndoArray);
    EXPECT_EQ(Tree(), "General[3](Character[5]'typed' Integer[]2 Character[3]'too')");
}

TEST_F(InsertDelete, AnItemThatFillsTheWindowGoesBackToItsPlaceFirst)
{
    Show(ThreeNumbers());
    SelectAt({0});
    ASSERT_EQ(MaximizeScdr(view), 0);
    Run(CommandInsertItemRight);
    EXPECT_EQ(Tree(), "General[4](Character[2]'ab' Character[2]'  ' Integer[]2 Character[1]'c')");
    EXPECT_EQ(view.top, view.root);
    EXPECT_EQ(Selected(view), &At({0}));
    EXPECT_TRUE(test::IsSoundTree(*view.root));
}

TEST_F(InsertDelete, InsideAnArrayThatFillsTheWindow)
{
    Show(Vec(Vec(Word(u"a"), Word(u"b")), Word(u"c")));
    SelectAt({0});
    ASSERT_EQ(MaximizeScdr(view), 0);
    ASSERT_EQ(SelectScdr(view, At({0, 1}), false), 0);
    Run(CommandInsertItemRight);
    EXPECT_EQ(view.top, &At({0}));
    EXPECT_EQ(Selected(view), &At({0, 1}));
    Run(CommandUndoArray);
    EXPECT_EQ(RestoreScdr(view), 0);
    EXPECT_EQ(Tree(), "General[2](General[2](Character[1]'a' Character[1]'b') Character[1]'c')");
}

TEST_F(InsertDelete, AnItemOfAVectorGoes)
{
    Show(Vec(ThreeNumbers(), Word(u"x")));
    SelectAt({0, 1});
    ExpectThereAndBack(CommandCutArray,
                       "General[2](General[2](Character[2]'ab' Character[1]'c') Character[1]'x')");
    ASSERT_NE(clipboard, nullptr);
    EXPECT_EQ(test::DumpTree(*clipboard), "Integer[]2");
}

TEST_F(InsertDelete, TheArrayThatHeldTheItemIsSelected)
{
    Show(Vec(Vec(Word(u"a"), Word(u"b")), Word(u"x")));
    SelectAt({0, 0});
    Run(CommandCutArray);
    EXPECT_EQ(Selected(view), &At({0}));
}

TEST_F(InsertDelete, TheOnlyItemLeavesItsBlankedFormBehind)
{
    Show(Vec(Vec(Word(u"ab")), Word(u"x")));
    SelectAt({0, 0});
    ExpectThereAndBack(CommandCutArray, "General[2](General[0](Character[2]'  ') Character[1]'x')");
}

TEST_F(InsertDelete, TheItemOfAScalarLeavesAnEmptyVector)
{
    Show(Vec(NestedOf({}, Integers({2}, {3, 4})), Word(u"x")));
    SelectAt({0, 0});
    ExpectThereAndBack(CommandCutArray, "General[2](General[0](Integer[2]0 0) Character[1]'x')");
}

TEST_F(InsertDelete, MatricesOfOneRowOrColumnShrinkAlongTheOther)
{
    Show(NestedOf({1, 3}, Word(u"a"), Word(u"b"), Word(u"c")));
    SelectAt({1});
    ExpectThereAndBack(CommandCutArray, "General[1 2](Character[1]'a' Character[1]'c')");
    Show(NestedOf({3, 1}, Word(u"a"), Word(u"b"), Word(u"c")));
    SelectAt({2});
    ExpectThereAndBack(CommandCutArray, "General[2 1](Character[1]'a' Character[1]'b')");
    Show(NestedOf({1, 1}, Word(u"a")));
    SelectAt({0});
    ExpectThereAndBack(CommandCutArray, "General[0 1](Character[1]' ')");
}

TEST_F(InsertDelete, WhatCannotGoStays)
{
    Show(Matrix());
    SelectAt({0});
    Run(CommandCutArray);
    EXPECT_EQ(LastStatus(), MessageNotSupported);
    Select(*view.root);
    Run(CommandCutArray);
    EXPECT_EQ(LastStatus(), MessageCannotDeleteTopLevel);
    clipboard = nullptr;
    EXPECT_EQ(Tree(), "General[2 2](Character[1]'a' Character[1]'b' Character[1]'c' Character[1]'d')");
    Show(Empty({0}, Vec(Word(u"x"))));
    SelectAt({0});
    Run(CommandCutArray);
    EXPECT_EQ(LastStatus(), MessageParentIsEmpty);
    SelectAt({0, 0});
    Run(CommandCutArray);
    EXPECT_EQ(LastStatus(), MessageNotSupported);
    EXPECT_EQ(clipboard, nullptr);
    EXPECT_EQ(view.undo, nullptr);
}

} // namespace
} // namespace vantrel
