// Actions that put another array in the selected one's place.
#include "action_fixture.h"
#include "view/progress.h"

namespace vantrel {
namespace {

class Actions : public ActionTest {
protected:
    // One item that the actions work on, beside one that nothing touches.
    void ShowItem(ScdrPtr item)
    {
        Show(Vec(std::move(item), Word(u"zz")));
        SelectAt({0});
    }
    void ExpectItem(std::int32_t command, const std::string& expected)
    {
        ExpectThereAndBack(command, "General[2](" + expected + " Character[2]'zz')");
        EXPECT_EQ(Selected(view), &At({0}));
    }
};

TEST_F(Actions, EveryPrimitiveReplacesTheSelection)
{
    ShowItem(Integers({2, 2}, {1, 2, 3, 4}));
    ExpectItem(CommandRavel, "Integer[4]1 2 3 4");
    ShowItem(Integers({2, 2}, {1, 2, 3, 4}));
    ExpectItem(CommandFirst, "Integer[]1");
    ShowItem(Integers({2, 2}, {1, 2, 3, 4}));
    ExpectItem(CommandEnclose, "General[](Integer[2 2]1 2 3 4)");
    ShowItem(Integers({2, 2}, {1, 2, 3, 4}));
    ExpectItem(CommandReverse, "Integer[2 2]2 1 4 3");
    ShowItem(Integers({2, 2}, {1, 2, 3, 4}));
    ExpectItem(CommandReverseFirstAxis, "Integer[2 2]3 4 1 2");
    ShowItem(Integers({2, 2}, {1, 2, 3, 4}));
    ExpectItem(CommandTranspose, "Integer[2 2]1 3 2 4");
    ShowItem(Vec(Word(u"ab"), Word(u"c")));
    ExpectItem(CommandDisclose, "Character[2 2]'abc '");
    ShowItem(Vec(Word(u"ab"), Word(u"c")));
    ExpectItem(CommandEnlist, "Character[3]'abc'");
    ShowItem(Integers({2}, {10, 2}));
    ExpectItem(CommandConvertToCharacter, "Character[4]'10 2'");
    ShowItem(Word(u"10 2"));
    ExpectItem(CommandConvertToNumeric, "Integer[2]10 2");
}

TEST_F(Actions, SortingOrdersTheMajorCells)
{
    ShowItem(Integers({4}, {3, 1, 4, 1}));
    ExpectItem(CommandSortAscending, "Integer[4]1 1 3 4");
    ShowItem(Integers({3, 2}, {3, 1, 1, 9, 2, 0}));
    ExpectItem(CommandSortDescending, "Integer[3 2]3 1 2 0 1 9");
    context.indexOrigin = 0;
    ShowItem(Word(u"bca"));
    ExpectItem(CommandSortAscending, "Character[3]'abc'");
}

TEST_F(Actions, TheUserIsToldThatTheInterpreterWorks)
{
    ShowItem(Integers({2, 2}, {1, 2, 3, 4}));
    Run(CommandRavel);
    std::vector<std::int32_t> ids;
    for (const StatusText& status : log.statuses) {
        if (status.percent < 0) ids.push_back(status.id);
    }
    EXPECT_EQ(ids, (std::vector<std::int32_t>{129, 136, 129, 129, 131}));
    EXPECT_EQ(log.calls.back(), "notify 1"); // and the texts go away
    EXPECT_EQ(view.flags & (ViewBusy | ViewFormatting), 0);
}

TEST_F(Actions, AnErrorOfTheInterpreterIsShownAndChangesNothing)
{
    ShowItem(Word(u"abc"));
    primitiveError = VTERROR_CODE::WsFull;
    Run(CommandReverse);
    EXPECT_EQ(Tree(), "General[2](Character[3]'abc' Character[2]'zz')");
    EXPECT_EQ(log.calls.back(), "notify 5");
    EXPECT_EQ(view.undo, nullptr);
    EXPECT_EQ(view.flags & ViewModified, 0);
}

TEST_F(Actions, AResultThatCannotBeFormattedIsDropped)
{
    ShowItem(Word(u"abc"));
    onPrimitive = [&](std::int32_t primitive, const Scdr&) {
        if (primitive == CommandReverse) return Allocate(TypeDecimal, {3});
        SetErrorCode(&context, VTERROR_CODE::NonceError);
        return ScdrPtr();
    };
    const std::int64_t live = LiveAllocations();
    Run(CommandReverse);
    EXPECT_EQ(LiveAllocations(), live);
    EXPECT_EQ(Tree(), "General[2](Character[3]'abc' Character[2]'zz')");
    EXPECT_GE(log.Count("notify 5"), 1);
    EXPECT_EQ(view.undo, nullptr);
}

TEST_F(Actions, WhatReplacesTheSelectionIsShownInOrder)
{
    ShowItem(Word(u"abc"));
    ScdrPtr fresh = Word(u"longer");
    ASSERT_EQ(FormatScdr(view, *fresh), 0);
    log.Clear();
    EXPECT_EQ(ReplaceSelectedScdr(view, fresh, true), 0);
    EXPECT_EQ(log.calls,
              (std::vector<std::string>{"status 131", "begin array", "place 12 12 60 28", "invalidate",
                                        "focus", "notify 1", "notify 6", "editor modified", "size"}));
    EXPECT_EQ(view.flags & ViewModified, ViewModified);
    EXPECT_EQ(Selected(view), &At({0}));
    EXPECT_EQ(view.scroll.horizontal.dataSize, view.root->width);
}

TEST_F(Actions, WhatFillsTheWindowIsRestoredReplacedAndFillsItAgain)
{
    ShowItem(Vec(Word(u"abc")));
    ASSERT_EQ(MaximizeScdr(view), 0);
    ScdrPtr fresh = Vec(Word(u"x"));
    ASSERT_EQ(FormatScdr(view, *fresh), 0);
    EXPECT_EQ(ReplaceSelectedScdr(view, fresh, true), 0);
    EXPECT_EQ(view.top, &At({0}));
    EXPECT_EQ(At({0}).Flags & FlagMaximized, FlagMaximized);
    EXPECT_EQ(view.scroll.horizontal.dataSize, view.top->width);
}

TEST_F(Actions, EachGroupTakesItsOwnCommandsOnly)
{
    ShowItem(Word(u"abc"));
    EXPECT_EQ(PerformAction(view, CommandRavel), 1);
    EXPECT_EQ(PerformAction(view, 4620), 1);
    EXPECT_EQ(PerformAction(view, CommandMakeMatrix), 0);
    EXPECT_EQ(PerformClipboardAction(view, CommandCheckAndAlign), 1);
    EXPECT_EQ(PerformClipboardAction(view, CommandCopyArray), 0);
    EXPECT_EQ(PerformSystemAction(view, CommandResetSize), 1);
    EXPECT_EQ(PerformSystemAction(view, CommandMinimize), 0);
    EXPECT_EQ(Tree(), "General[2](Character[3 1]'abc' Character[2]'zz')");
}

TEST_F(Actions, AResultThatIsNoneIsAValueError)
{
    ShowItem(Word(u"abc"));
    VTERROR_CODE seen = VTERROR_CODE::NoError;
    static VTERROR_CODE* seenByFrame = nullptr;
    seenByFrame = &seen;
    view.effects.notifyFrame = [](View& changed, std::int32_t code) {
        if (code == ViewNotifyError) *seenByFrame = changed.context->langEnv->ErrorCode;
    };
    Run(CommandExecute); // which this interpreter does not have
    EXPECT_EQ(seen, VTERROR_CODE::ValueError);
    EXPECT_EQ(environment.ErrorCode,
              VTERROR_CODE::NoError); // the user has been told, the interpreter need not be
}

TEST_F(Actions, SortingWhatHasNoOrderIsRefused)
{
    ShowItem(Vec(Word(u"b"), Word(u"a")));
    Run(CommandSortAscending);
    EXPECT_EQ(log.calls.back(), "notify 5");
    EXPECT_EQ(Tree(), "General[2](General[2](Character[1]'b' Character[1]'a') Character[2]'zz')");
}

TEST_F(Actions, ConvertingToNumbersShutsTheFrameMeanwhile)
{
    ShowItem(Word(u"1 2"));
    Run(CommandConvertToNumeric);
    EXPECT_EQ(log.Count("disable"), 1);
    EXPECT_EQ(log.Count("enable"), 1);
    EXPECT_EQ(Tree(), "General[2](Integer[2]1 2 Character[2]'zz')");
}

TEST_F(Actions, TextThatIsNoNumberStaysText)
{
    ShowItem(Word(u"one"));
    Run(CommandConvertToNumeric);
    EXPECT_EQ(Tree(), "General[2](Character[3]'one' Character[2]'zz')");
    EXPECT_EQ(view.undo, nullptr);
    EXPECT_EQ(log.calls.back(), "notify 5");
}

TEST_F(Actions, NestedArraysHaveNoTextToConvert)
{
    ShowItem(Vec(Word(u"1")));
    Run(CommandConvertToNumeric);
    EXPECT_EQ(LastStatus(), MessageStringIsNested);
    EXPECT_EQ(view.undo, nullptr);
}

TEST_F(Actions, NumbersThatAreConvertedToNumbersKeepTheirDigits)
{
    ShowItem(Integers({1}, {9007199254740993}));
    ExpectItem(CommandConvertToNumeric, "Integer[1]9007199254740993");
    ShowItem(test::Reals(&context, {2}, {0.1 + 0.2, 1e300}));
    Run(CommandConvertToNumeric);
    EXPECT_EQ(static_cast<const double*>(At({0}).data)[0], 0.1 + 0.2);
    EXPECT_NE(view.undo, nullptr);
}

TEST_F(Actions, AVectorBecomesAMatrixOfOneColumn)
{
    ShowItem(Word(u"abc"));
    ExpectItem(CommandMakeMatrix, "Character[3 1]'abc'");
    EXPECT_EQ(At({0}).records.count, 3);
    ShowItem(Vec(Word(u"a"), Word(u"bc")));
    ExpectItem(CommandMakeMatrix, "General[2 1](Character[1]'a' Character[2]'bc')");
    ShowItem(Word(u""));
    ExpectItem(CommandMakeMatrix, "Character[0 1]''");
    ShowItem(Empty({0}, Word(u"a")));
    ExpectItem(CommandMakeMatrix, "General[0 1](Character[1]'a')");
}

TEST_F(Actions, OnlyAVectorBecomesAMatrix)
{
    ShowItem(Scalar(1));
    Run(CommandMakeMatrix);
    EXPECT_EQ(LastStatus(), MessageNotAVector);
    ShowItem(Integers({1, 1}, {1}));
    Run(CommandMakeMatrix);
    EXPECT_EQ(LastStatus(), MessageNotAVector);
    EXPECT_EQ(view.undo, nullptr);
}

TEST_F(Actions, AnArrayOfItsRows)
{
    ShowItem(Integers({2, 3}, {1, 2, 3, 4, 5, 6}));
    ExpectItem(CommandMakeArrayOfRows, "General[2](Integer[3]1 2 3 Integer[3]4 5 6)");
    ShowItem(Characters({2, 1, 2}, u"abcd"));
    ExpectItem(CommandMakeArrayOfRows, "General[2 1](Character[2]'ab' Character[2]'cd')");
    ShowItem(NestedOf({2, 1}, Word(u"a"), Scalar(3)));
    ExpectItem(CommandMakeArrayOfRows, "General[2](General[1](Character[1]'a') General[1](Integer[]3))");
    ShowItem(test::Booleans(&context, {3, 3}, {1, 0, 1, 0, 1, 0, 1, 1, 0}));
    ExpectItem(CommandMakeArrayOfRows, "General[3](Boolean[3]1 0 1 Boolean[3]0 1 0 Boolean[3]1 1 0)");
}

TEST_F(Actions, RowsOfEmptyArrays)
{
    ShowItem(Characters({0, 2}, u""));
    ExpectItem(CommandMakeArrayOfRows, "General[0](Character[2]'  ')");
    ShowItem(Characters({2, 0}, u""));
    ExpectItem(CommandMakeArrayOfRows, "General[2](Character[0]'' Character[0]'')");
    ShowItem(Empty({0, 2}, Word(u"x")));
    ExpectItem(CommandMakeArrayOfRows, "General[0](General[2](Character[1]'x' Character[1]'x'))");
    ShowItem(Empty({2, 0}, Word(u"x")));
    ExpectItem(CommandMakeArrayOfRows, "General[2](General[0](Character[1]'x') General[0](Character[1]'x'))");
}

TEST_F(Actions, ScalarsAndVectorsHaveNoRows)
{
    ShowItem(Scalar(1));
    Run(CommandMakeArrayOfRows);
    EXPECT_EQ(LastStatus(), MessageArrayIsScalar);
    ShowItem(Word(u"ab"));
    Run(CommandMakeArrayOfRows);
    EXPECT_EQ(LastStatus(), MessageNotSupported);
}

TEST_F(Actions, TheAxesComeInTheOrderOfTheList)
{
    ShowItem(Integers({1, 2, 3}, {1, 2, 3, 4, 5, 6}));
    log.onAxes = [](const Scdr& node, std::int32_t* axes) {
        EXPECT_EQ(node.Rank, 3);
        EXPECT_EQ((std::vector<std::int32_t>(axes, axes + 3)), (std::vector<std::int32_t>{0, 1, 2}));
        const std::int32_t wanted[] = {2, 0, 1};
        std::copy_n(wanted, 3, axes);
        return true;
    };
    ExpectItem(CommandReorderAxes, "Integer[3 1 2]1 4 2 5 3 6");
    EXPECT_EQ(std::u16string(At({0}).extra->AxisNames[0]), u"Axis name 3");
}

TEST_F(Actions, ACancelledOrderChangesNothing)
{
    ShowItem(Integers({1, 2, 3}, {1, 2, 3, 4, 5, 6}));
    log.onAxes = [](const Scdr&, std::int32_t*) { return false; };
    Run(CommandReorderAxes);
    EXPECT_TRUE(log.statuses.empty()); // nothing is announced before the user has decided
    EXPECT_EQ(view.undo, nullptr);
    EXPECT_EQ(view.flags & ViewModified, 0);
}

TEST_F(Actions, AnOrderConfirmedAsItWasIsAnActionLikeAnyOther)
{
    ShowItem(Integers({1, 2, 3}, {1, 2, 3, 4, 5, 6}));
    log.onAxes = [](const Scdr&, std::int32_t*) { return true; };
    Run(CommandReorderAxes);
    EXPECT_NE(view.undo, nullptr);
    EXPECT_NE(view.flags & ViewModified, 0);
}

TEST_F(Actions, LowRanksHaveNoAxesToReorder)
{
    ShowItem(Integers({1, 2}, {1, 2}));
    Run(CommandReorderAxes);
    EXPECT_EQ(log.Count("ask axes"), 0);
    EXPECT_EQ(LastStatus(), MessageNotSupported);
}

TEST_F(Actions, CopyAndPaste)
{
    Show(Vec(Word(u"abc"), Vec(Scalar(1), Word(u"x"))));
    SelectAt({1});
    Run(CommandCopyArray);
    EXPECT_EQ(view.undo, nullptr);
    EXPECT_EQ(log.Count("notify 6"), 1); // now something can be pasted
    EXPECT_EQ(log.Count("status 129"), 0);
    SelectAt({0});
    ExpectThereAndBack(CommandPasteArray,
                       "General[2](General[2](Integer[]1 Character[1]'x') General[2](Integer[]1 "
                       "Character[1]'x'))");
}

TEST_F(Actions, PastingNothingUsableSaysSo)
{
    ShowItem(Word(u"abc"));
    Run(CommandPasteArray);
    EXPECT_EQ(log.statuses.back(), (StatusText{MessageCannotConvertClipboard, -1, true}));
    EXPECT_EQ(Tree(), "General[2](Character[3]'abc' Character[2]'zz')");
    EXPECT_EQ(view.undo, nullptr);
}

TEST_F(Actions, AClipboardThatFailsLosesNothing)
{
    ShowItem(Word(u"abc"));
    copyError = VTERROR_CODE::NonceError;
    Run(CommandCopyArray);
    EXPECT_EQ(log.statuses.back(), (StatusText{MessageNotSupported, -1, true}));
    EXPECT_EQ(environment.ErrorCode, VTERROR_CODE::NoError);
    copyError = VTERROR_CODE::OutOfMemory;
    Run(CommandCutArray);
    EXPECT_EQ(log.statuses.back(), (StatusText{MessageSystemError, -1, true}));
    EXPECT_EQ(Tree(), "General[2](Character[3]'abc' Character[2]'zz')");
}

TEST_F(Actions, CopyingTakesWhatWasTyped)
{
    ShowItem(Word(u"abc"));
    Type(At({0}), 0, u"typed");
    Run(CommandCopyArray);
    EXPECT_EQ(test::DumpTree(*clipboard), "Character[5]'typed'");
}

TEST_F(Actions, ABadNumberStopsTheCommand)
{
    ShowItem(Integers({1, 1}, {1}));
    Type(At({0}), 0, u"x");
    const int calls = primitiveCalls;
    Run(CommandReverse);
    EXPECT_EQ(log.Count("notify 5"), 1);
    EXPECT_EQ(RowText(At({0}), 0), u"x");
    EXPECT_EQ(log.Count("status 136"), 0);
    EXPECT_GT(primitiveCalls, calls);
}

TEST_F(Actions, ScalarsOfOneKindBecomeASimpleArray)
{
    Show(Vec(Vec(Letter(u'a'), Letter(u'b')), Word(u"zz")));
    clipboard = Letter(u'c');
    SelectAt({0, 1});
    ExpectThereAndBack(CommandPasteArray, "General[2](Character[2]'ac' Character[2]'zz')");
    EXPECT_EQ(Selected(view), &At({0}));
}

TEST_F(Actions, NumbersOfAnyKindBecomeComplexAndAreStillWhatTheyWere)
{
    Show(Vec(Vec(Scalar(7), Letter(u'b')), Word(u"zz")));
    clipboard = test::Reals(&context, {}, {2.5});
    SelectAt({0, 1});
    Run(CommandPasteArray);
    EXPECT_EQ(Tree(), "General[2](Complex[2]7J0 2.5J0 Character[2]'zz')");
    EXPECT_EQ(At({0}).SimplestType, TypeReal);
    EXPECT_EQ(RowText(At({0}), 0), u"7 2.5");
}

TEST_F(Actions, WhatWouldChangeInADoubleStaysNested)
{
    Show(Vec(Vec(Scalar(9007199254740993), Letter(u'b')), Word(u"zz")));
    clipboard = Scalar(1);
    SelectAt({0, 1});
    Run(CommandPasteArray);
    EXPECT_EQ(Tree(), "General[2](General[2](Integer[]9007199254740993 Integer[]1) Character[2]'zz')");
}

TEST_F(Actions, DecimalsBecomeADecimalArrayAndMixWithNothing)
{
    onPrimitive = [&](std::int32_t, const Scdr& argument) {
        return Characters({argument.ElementCount},
                          std::u16string(static_cast<std::size_t>(argument.ElementCount), u'd'));
    };
    const auto decimal = [&](std::uint8_t first) {
        ScdrPtr item = Allocate(TypeDecimal, {});
        *static_cast<std::uint8_t*>(item->data) = first;
        SetSimplestType(*item);
        return item;
    };
    Show(Vec(Vec(decimal(7), Letter(u'b')), Vec(decimal(1), Scalar(2)), Word(u"zz")));
    clipboard = decimal(9);
    SelectAt({0, 1});
    Run(CommandPasteArray);
    const Scdr& array = At({0});
    EXPECT_EQ(array.Type, TypeDecimal);
    EXPECT_EQ(array.ElementCount, 2);
    const auto* const data = static_cast<const std::uint8_t*>(array.data);
    EXPECT_EQ(data[0], 7);
    EXPECT_EQ(data[16], 9);
    EXPECT_EQ(At({1}).Type, TypeNested);
}

TEST_F(Actions, OnlySomeCommandsMakeScalarsSimpleAndOnlyWhenTheySucceed)
{
    onPrimitive = [&](std::int32_t primitive, const Scdr& argument) {
        return primitive == CommandExecute ? Word(u"done") : Compute(&context, primitive, argument);
    };
    const auto coalesces = [&](std::int32_t command, const std::vector<std::int64_t>& path) {
        const auto compute = std::exchange(onPrimitive, nullptr);
        Show(Vec(Vec(Word(u"12"), Characters({1, 2}, u"ab")), Vec(Letter(u'x'), Letter(u'y'))));
        if (command == CommandExecute) onPrimitive = compute;
        clipboard = Word(u"new");
        Scdr* node = view.root;
        for (const std::int64_t index : path)
            node = Children(*node)[index];
        Select(*node);
        Run(command);
        onPrimitive = compute;
        return At({1}).Type == TypeCharacter;
    };
    for (const std::int32_t command : {CommandCutArray, CommandPasteArray, CommandConvertToNumeric,
                                       CommandFirst, CommandEnlist, CommandExecute})
        EXPECT_TRUE(coalesces(command, {0, 0})) << command;
    EXPECT_TRUE(coalesces(CommandConvertToCharacter, {0, 1})) << CommandConvertToCharacter;
    for (const std::int32_t command :
         {CommandCopyArray, CommandRavel, CommandEnclose, CommandReverse, CommandReverseFirstAxis,
          CommandTranspose, CommandSortAscending, CommandSortDescending, CommandMakeArrayOfRows,
          CommandCheckAndAlign, CommandMinimize, CommandMaximize, CommandResetAllSizes})
        EXPECT_FALSE(coalesces(command, {0, 1})) << command;
    for (const std::int32_t command : {CommandMakeMatrix, CommandInsertItemLeft, CommandInsertItemRight})
        EXPECT_FALSE(coalesces(command, {0, 0})) << command;
    EXPECT_FALSE(coalesces(CommandDisclose, {0}));
    EXPECT_FALSE(coalesces(CommandConvertToNumeric, {0})); // refused
    copyError = VTERROR_CODE::SystemError;
    EXPECT_FALSE(coalesces(CommandCutArray, {0, 0})); // failed
}

TEST_F(Actions, ItemsOfSeveralKindsStayNested)
{
    Show(Vec(Vec(Scalar(7), Letter(u'b'), Word(u"long")), Vec(Scalar(1), Letter(u'x'))));
    clipboard = Word(u"w");
    SelectAt({0, 2});
    Run(CommandPasteArray);
    EXPECT_EQ(Tree(), "General[2](General[3](Integer[]7 Character[]'b' Character[1]'w') "
                      "General[2](Integer[]1 Character[]'x'))");
}

TEST_F(Actions, TheSelectionStaysWhereOtherArraysBecomeSimple)
{
    Show(Vec(Word(u"abc"), NestedOf({2, 1}, Letter(u'x'), Letter(u'y')), Vec(Letter(u'p'))));
    clipboard = Word(u"new");
    SelectAt({0});
    ExpectThereAndBack(CommandPasteArray, "General[3](Character[3]'new' Character[2 1]'xy' Character[1]'p')");
    EXPECT_EQ(Tree(), "General[3](Character[3]'new' Character[2 1]'xy' Character[1]'p')");
    SelectAt({0});
    Run(CommandPasteArray);
    EXPECT_EQ(Selected(view), &At({0}));
}

TEST_F(Actions, ClosedBoxesStayClosedWhenTheyBecomeSimpleInside)
{
    Show(Vec(Word(u"abc"), Vec(Vec(Letter(u'x')), Word(u"w"))));
    SelectAt({1});
    ASSERT_EQ(MinimizeScdr(view), 0);
    clipboard = Word(u"new");
    ASSERT_EQ(SelectScdr(view, At({0}), false), 0);
    Run(CommandPasteArray);
    EXPECT_EQ(Tree(), "General[2](Character[3]'new' General[2](Character[1]'x' Character[1]'w'))");
    EXPECT_EQ(At({1}).Flags & FlagMinimized, FlagMinimized);
}

TEST_F(Actions, TypedTextIsNotLostToCoalescing)
{
    Show(Vec(Word(u"abc"), Vec(Letter(u'x'), Letter(u'y'))));
    SelectAt({1, 0});
    Type(At({1, 0}), 0, u"Q");
    ASSERT_EQ(SelectScdr(view, At({0}), false), 0);
    clipboard = Word(u"new");
    Run(CommandPasteArray);
    EXPECT_EQ(RowText(At({1, 0}), 0), u"Q");
}

TEST_F(Actions, AStructureIsNeverCoalesced)
{
    ScdrPtr structure = Vec(Letter(u'x'), Letter(u'y'));
    structure->Flags |= FlagStructure;
    Show(Vec(Word(u"abc"), std::move(structure)));
    clipboard = Word(u"new");
    SelectAt({0});
    Run(CommandPasteArray);
    EXPECT_EQ(Tree(), "General[2](Character[3]'new' General[2](Character[]'x' Character[]'y'))");
}

TEST_F(Actions, ThreeCharactersBecomeAVectorAndOneUndoGoesBackBeforeEnlist)
{
    Show(Vec(Vec(Letter(u'a'), Letter(u'b'), Letter(u'c')), Vec(Word(u"q"))));
    SelectAt({1});
    Run(CommandEnlist); // coalesces the first item as well
    EXPECT_EQ(Tree(), "General[2](Character[3]'abc' Character[1]'q')");
    Run(CommandUndoArray);
    EXPECT_EQ(Tree(), "General[2](General[3](Character[]'a' Character[]'b' Character[]'c') "
                      "General[1](Character[1]'q'))");
    Show(Vec(Letter(u'a'), Letter(u'b'), Letter(u'c')));
    ExpectThereAndBack(CommandEnlist, "Character[3]'abc'");
}

TEST_F(Actions, APrototypeIsBlankedWhateverIsPutThere)
{
    Show(Vec(Empty({0}, Integers({2, 2}, {0, 0, 0, 0})), Word(u"x")));
    SelectAt({0, 0});
    ExpectThereAndBack(CommandRavel, "General[2](General[0](Integer[4]0 0 0 0) Character[1]'x')");
    EXPECT_EQ(RowText(At({0, 0}), 0), u"0 0 0 0");
    SelectAt({0, 0});
    ExpectThereAndBack(CommandEnclose,
                       "General[2](General[0](General[](Integer[4]0 0 0 0)) Character[1]'x')");
}

TEST_F(Actions, PrototypesTakeNothingFromTheClipboard)
{
    Show(Vec(Empty({0}, Word(u"x")), Word(u"abc")));
    clipboard = Word(u"new");
    SelectAt({0, 0});
    Run(CommandPasteArray);
    EXPECT_EQ(LastStatus(), MessageNotSupported);
    EXPECT_EQ(Tree(), "General[2](General[0](Character[1]'x') Character[3]'abc')");
}

TEST_F(Actions, ASimpleArrayThatFillsTheWindowKeepsFillingIt)
{
    Show(Word(u"abc"));
    ExpectThereAndBack(CommandReverse, "Character[3]'cba'");
    EXPECT_EQ(view.root->Flags & FlagMaximized, FlagMaximized);
    EXPECT_EQ(view.top, view.root);
    EXPECT_EQ(Selected(view), view.root);
}

TEST_F(Actions, AnItemThatFillsTheWindowKeepsFillingIt)
{
    ShowItem(Word(u"abc"));
    ASSERT_EQ(MaximizeScdr(view), 0);
    Run(CommandReverse);
    EXPECT_EQ(view.top, &At({0}));
    EXPECT_EQ(DataText(*view.top), u"cba");
    EXPECT_EQ(RestoreScdr(view), 0);
    EXPECT_EQ(Tree(), "General[2](Character[3]'cba' Character[2]'zz')");
    EXPECT_TRUE(test::IsSoundTree(*view.root));
}

TEST_F(Actions, EnclosingStopsAtTheDeepestNesting)
{
    Show(Word(u"a"));
    for (int i = 0; i < DeepestNesting + 10; ++i)
        Run(CommandEnclose);
    EXPECT_EQ(ScdrDepth(*view.root), DeepestNesting);
    EXPECT_EQ(log.calls.back(), "notify 5");
    EXPECT_EQ(environment.ErrorCode, VTERROR_CODE::NoError);
}

TEST_F(Actions, RowsStopAtTheDeepestNestingAndSayWhy)
{
    static VTERROR_CODE told = VTERROR_CODE::NoError;
    view.effects.notifyFrame = [](View& changed, std::int32_t code) {
        if (code == ViewNotifyError) told = changed.context->langEnv->ErrorCode;
    };
    ScdrPtr nested = Characters({1, 2}, u"ab");
    for (int depth = 1; depth < DeepestNesting; ++depth)
        nested = Vec(std::move(nested));
    Show(std::move(nested));
    Scdr* deepest = view.root;
    while (!IsSimple(*deepest))
        deepest = Children(*deepest)[0];
    Select(*deepest);
    Run(CommandMakeArrayOfRows);
    EXPECT_EQ(told, VTERROR_CODE::SystemLimit);
    EXPECT_EQ(log.Count("status 108"), 0);
    EXPECT_EQ(view.undo, nullptr);
    EXPECT_EQ(ScdrDepth(*view.root), DeepestNesting);
    Run(CommandMakeMatrix); // refused for its rank
    EXPECT_EQ(LastStatus(), MessageNotAVector);
}

TEST_F(Actions, ALackOfMemoryIsCalledSoWhereverItComesFrom)
{
    ShowItem(Word(u"abc"));
    const auto expectTold = [&] {
        EXPECT_EQ(log.statuses.back(), (StatusText{MessageErrorAllocating, -1, true}));
        EXPECT_EQ(Tree(), "General[2](Character[3]'abc' Character[2]'zz')");
        EXPECT_EQ(view.undo, nullptr);
        EXPECT_EQ(environment.ErrorCode, VTERROR_CODE::NoError);
        log.Clear();
    };
    primitiveError = VTERROR_CODE::OutOfMemory; // of the editor's own
    Run(CommandReverse);
    EXPECT_EQ(log.Count("notify 5"), 1);
    expectTold();
    environment.Operations.ClipboardToScdr = [](EditContext* editContext, WindowHandle) -> Scdr* {
        SetErrorCode(editContext, VTERROR_CODE::OutOfMemory);
        return nullptr;
    };
    Run(CommandPasteArray);
    EXPECT_EQ(log.Count("status 104"), 0);
    expectTold();
    primitiveError = VTERROR_CODE::WsFull; // the interpreter's, which has words of its own
    Run(CommandReverse);
    EXPECT_EQ(log.Count("notify 5"), 1);
    EXPECT_EQ(log.Count("status 108"), 0);
}

TEST_F(Actions, ABrokenOffActionIsNotCalledALackOfMemory)
{
    Show(Filled({1000}));
    SelectAt({0});
    log.interrupt = true;
    log.onStatus = [](const StatusText& status) {
        if (status.id == StatusFormattingPercent && status.percent == 5)
            std::this_thread::sleep_for(std::chrono::milliseconds(130)); // long enough to be asked
    };
    Run(CommandInsertItemLeft);
    EXPECT_EQ(LastStatus(), StatusUnableToFormat);
    EXPECT_EQ(log.Count("status 108"), 0);
    EXPECT_EQ(ChildCount(*view.root), 1000);
    EXPECT_EQ(view.undo, nullptr);
}

TEST_F(Actions, WhatAnAdapterMarksIsRefused)
{
    Show(Vec(Word(u"name"), Integers({2, 2}, {1, 2, 3, 4})));
    At({0}).Flags |= FlagKeptSize;
    SelectAt({0});
    Run(CommandReverse);
    EXPECT_EQ(LastStatus(), MessageNotSupported);
    At({1}).Flags |= FlagStructure;
    SelectAt({1});
    Run(CommandTranspose);
    EXPECT_EQ(LastStatus(), MessageNotSupported);
    EXPECT_EQ(view.undo, nullptr);
}

TEST_F(Actions, SizeCommandsReachTheFrameAndTheBoxes)
{
    ShowItem(Word(u"abc"));
    Run(CommandSizeToDefinition);
    EXPECT_EQ(log.Count("size frame"), 1);
    Scdr& item = At({0});
    const std::int64_t width = item.width;
    item.width += 50;
    item.records.flags |= RecordsResizedByUser;
    InvalidateAncestorsSizesAndLaterSiblingsOrigins(item);
    Run(CommandResetSize);
    EXPECT_EQ(item.width, width);
    EXPECT_EQ(item.records.flags & RecordsResizedByUser, 0);
    item.width += 50;
    item.records.flags |= RecordsResizedByUser;
    Select(*view.root);
    Run(CommandResetAllSizes);
    EXPECT_EQ(item.width, width);
}

TEST_F(Actions, StatesOfBoxesAreCommandsToo)
{
    ShowItem(Vec(Word(u"abc")));
    Run(CommandMinimize);
    EXPECT_EQ(At({0}).Flags & FlagMinimized, FlagMinimized);
    Run(CommandRestore);
    EXPECT_EQ(At({0}).Flags & FlagMinimized, 0);
    Run(CommandMaximize);
    EXPECT_EQ(view.top, &At({0}));
    Run(CommandRestore);
    EXPECT_EQ(view.top, view.root);
    EXPECT_EQ(PerformSystemAction(view, CommandRavel), 1);
}

TEST_F(Actions, PicturesAreDrawnByHostsThatCan)
{
    ShowItem(Word(u"abc"));
    Run(CommandGraphicsArea);
    EXPECT_EQ(LastStatus(), MessageNotSupported);
    static std::int32_t kind = 0;
    environment.Operations.Graphics = [](EditContext*, const Scdr* node, std::int32_t plotKind) {
        kind = node->Type == TypeCharacter ? plotKind : 0;
    };
    Run(CommandGraphicsSurface);
    EXPECT_EQ(kind, CommandGraphicsSurface);
}

TEST_F(Actions, WithoutATreeNothingHappens)
{
    Run(CommandRavel);
    Run(CommandUndoArray);
    EXPECT_TRUE(log.calls.empty());
}

TEST_F(Actions, CommittingThroughF5PushesNothing)
{
    ShowItem(Word(u"abc"));
    Type(At({0}), 0, u"typed");
    Run(CommandCheckAndAlign);
    EXPECT_EQ(DataText(At({0})), u"typed");
    EXPECT_EQ(view.undo, nullptr);
}

TEST_F(Actions, TheViewIsBusyMeanwhile)
{
    ShowItem(Word(u"abc"));
    bool busy = false;
    log.onStatus = [&](const StatusText&) { busy = (view.flags & ViewBusy) != 0; };
    Run(CommandReverse);
    EXPECT_TRUE(busy);
    EXPECT_EQ(view.flags & ViewBusy, 0);
}

} // namespace
} // namespace vantrel
