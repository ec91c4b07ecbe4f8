#include "view/selection.h"

#include <set>

#include "view/hit_test.h"
#include "view_fixture.h"

namespace vantrel {
namespace {

constexpr std::int32_t Tab = 9;
constexpr std::int32_t Up = 38;
constexpr std::int32_t Shift = 1;
constexpr std::int32_t Control = 2;

class Selection : public ViewTest {
protected:
    std::int64_t X() const { return view.scroll.horizontal.position; }
    std::int64_t Y() const { return view.scroll.vertical.position; }
    void Select(Scdr& node) { EXPECT_EQ(SelectScdr(view, node, false), 0); }
    // Thirty boxes of 46 x 38 in a row, one every 41 pixels from 7 on.
    Scdr& ShowLongVector()
    {
        std::vector<ScdrPtr> items;
        for (int i = 0; i < 30; ++i)
            items.push_back(Word(u"abc"));
        ResizeClient(400, 100);
        return Show(Nested({30}, std::move(items)));
    }
};

TEST_F(Selection, SelectingTellsEverybody)
{
    Scdr& root = Show(Vec(Word(u"abc"), Word(u"d")));
    EXPECT_EQ(SelectScdr(view, Item(root, 1), true), 0);
    EXPECT_EQ(Selected(view), &Item(root, 1));
    EXPECT_EQ(log.calls, (std::vector<std::string>{"begin array", "place 53 12 20 28", "invalidate", "focus",
                                                   "notify 1", "notify 6"}));
}

TEST_F(Selection, SelectingTheSelectedNodeDoesNothing)
{
    Scdr& root = Show(Vec(Word(u"abc")));
    Select(Item(root, 0));
    log.Clear();
    EXPECT_EQ(SelectScdr(view, Item(root, 0), true), 0);
    EXPECT_TRUE(log.calls.empty());
}

TEST_F(Selection, TakesTheFocusOnlyWhenAsked)
{
    Scdr& root = Show(Vec(Word(u"abc")));
    Select(Item(root, 0));
    EXPECT_EQ(log.Count("focus"), 0);
}

TEST_F(Selection, TheEditorFitsTheKindOfArray)
{
    Scdr& root = Show(Vec(Word(u"abc"), Characters({}, u"d"), Vec(Word(u"e")), NestedOf({0}, Word(u"p"))));
    Select(Item(root, 1));
    EXPECT_EQ(log.Count("begin scalar"), 1);
    EXPECT_EQ(log.Count("place 54 13 18 26"), 1);
    Select(Item(root, 2));
    EXPECT_EQ(log.Count("hide"), 1);
    EXPECT_FALSE(view.editorActive);
    Select(Item(root, 0));
    EXPECT_TRUE(view.editorActive);
    Select(Item(Item(root, 3), 0)); // a prototype is shown, not edited
    EXPECT_FALSE(view.editorActive);
}

TEST_F(Selection, TheEditorStaysAwayFromFixedAndClosedBoxes)
{
    ScdrPtr word = Word(u"abc");
    EXPECT_TRUE(IsShownInEditor(*word));
    word->Flags = FlagMinimized;
    EXPECT_FALSE(IsShownInEditor(*word));
    word->Flags = FlagKeptSize;
    EXPECT_FALSE(IsShownInEditor(*word));
    EXPECT_FALSE(IsShownInEditor(*Vec(Word(u"a"))));
}

TEST_F(Selection, HidingWithoutAnEditorDoesNothing)
{
    Show(Vec(Word(u"abc")));
    EditHide(view);
    EditResize(view);
    EXPECT_TRUE(log.calls.empty());
}

TEST_F(Selection, ARestoreThatFailsKeepsTheSelection)
{
    // Four hundred boxes, so that the clock is looked at; the closed one takes its time when it is measured again.
    std::vector<ScdrPtr> items;
    for (int i = 0; i < 400; ++i)
        items.push_back(Word(u"a"));
    items[5] = Vec(Word(u"slow"));
    items[5]->Flags |= FlagMinimized;
    Scdr& root = Show(Nested({400}, std::move(items)));
    Select(Item(root, 3));
    Type(Item(Item(root, 5), 0), 0, std::u16string(1, SlowCharacter));
    log.interrupt = true;
    EXPECT_EQ(SelectScdr(view, Item(Item(root, 5), 0), true), 1);
    EXPECT_EQ(Selected(view), &Item(root, 3));
    EXPECT_TRUE(view.editorActive);
    log.interrupt = false;
    Select(Item(Item(root, 5), 0));
    EXPECT_EQ(Selected(view), &Item(Item(root, 5), 0));
}

TEST_F(Selection, ANodeOfAnotherTreeCannotBeSelected)
{
    Show(Vec(Word(u"abc")));
    ScdrPtr other = Word(u"x");
    EXPECT_EQ(SelectScdr(view, *other, false), 1);
    EXPECT_EQ(Selected(view), view.root);
}

TEST_F(Selection, ScrollsTheSelectionIntoSight)
{
    Scdr& root = ShowLongVector();
    Select(Item(root, 20)); // 827 .. 873
    EXPECT_EQ(X(), 873 - 400);
    Select(Item(root, 19)); // 786 .. 832 is in sight
    EXPECT_EQ(X(), 473);
    Select(Item(root, 2)); // 89 .. 135
    EXPECT_EQ(X(), 89);
    Select(Item(root, 0)); // 7 .. 53
    EXPECT_EQ(X(), 7);
}

TEST_F(Selection, TheEditorFollowsTheScrolling)
{
    Scdr& root = ShowLongVector();
    Select(Item(root, 20));
    EXPECT_EQ(log.Count("place 359 12 36 28"), 1); // 827 + 5 - 473
}

TEST_F(Selection, TheEditorTakesTheNewArrayBeforeItMoves)
{
    Scdr& root = ShowLongVector();
    Select(Item(root, 0));
    log.Clear();
    EXPECT_EQ(SelectScdr(view, Item(root, 20), false), 0);
    ASSERT_FALSE(log.calls.empty());
    EXPECT_EQ(log.calls.front(), "begin array");
    EXPECT_EQ(log.Count("place 359 12 36 28"), 1);
}

TEST_F(Selection, APartlyShownCellIsLeftAloneWhenWholeCellsAreNotAsked)
{
    Scdr& root = ShowLongVector();
    view.options.wholeCell = false;
    Select(Item(root, 9)); // 376 .. 422, its text from 381
    EXPECT_EQ(X(), 0);
    Select(Item(root, 10)); // 417 .. 463: text 422 .. 458
    EXPECT_EQ(X(), 58);
    view.options.wholeCell = true;
    Select(Item(root, 11)); // 458 .. 504
    EXPECT_EQ(X(), 104);
}

TEST_F(Selection, AnEdgeIsNotPartlyInside)
{
    Scdr& root = ShowLongVector();
    view.options.wholeCell = false;
    ResizeClient(381, 100); // the text of item 9 starts exactly at the window's end
    Select(Item(root, 9));
    EXPECT_EQ(X(), 417 - 381);
}

TEST_F(Selection, ALargeBoxIsAlignedAtItsLeftAndTop)
{
    ResizeClient(200, 60);
    Scdr& root = Show(Vec(Word(u"a"), Characters({9, 30}, std::u16string(270, u'x')), Word(u"b")));
    Select(Item(root, 1)); // 32, 7; wider and higher than the window
    EXPECT_EQ(X(), 32);
    EXPECT_EQ(Y(), 7);
    Select(root); // the top is not followed to its right end
    EXPECT_EQ(X(), 0);
    EXPECT_EQ(Y(), 0);
}

TEST_F(Selection, TheTopIsNotFollowedToItsEnd)
{
    Scdr& root = ShowLongVector();
    Select(Item(root, 1));
    Select(root);
    EXPECT_EQ(X(), 0);
}

TEST_F(Selection, AnArrayThatFitsIsNeverScrolled)
{
    Scdr& root = ShowLongVector();
    ResizeClient(root.width, root.height);
    Select(Item(root, 29));
    EXPECT_EQ(X(), 0);
    ResizeClient(root.width - 6, root.height); // the last box ends 7 pixels before the end
    Select(Item(root, 28));
    Select(Item(root, 29));
    EXPECT_EQ(X(), 0);
    ResizeClient(root.width - 8, root.height);
    Select(Item(root, 28));
    Select(Item(root, 29));
    EXPECT_EQ(X(), 1);
}

TEST_F(Selection, ScrollsVerticallyToo)
{
    std::vector<ScdrPtr> items;
    for (int i = 0; i < 30; ++i)
        items.push_back(Word(u"abc"));
    ResizeClient(100, 100);
    Scdr& root = Show(Nested({30, 1}, std::move(items)));
    Select(Item(root, 10)); // top 7 + 10 * 33, height 38
    EXPECT_EQ(Y(), 7 + 330 + 38 - 100);
    Select(Item(root, 0));
    EXPECT_EQ(Y(), 7);
}

TEST_F(Selection, SelectingShowsThePlaneOfTheNode)
{
    Scdr& root = Show(Filled({2, 3, 2, 2}));
    Select(Item(root, 4 * 4 + 1));
    EXPECT_EQ(CurrentPlane(root), 4);
    EXPECT_EQ(root.extra->PlaneIndex[0], 1);
    EXPECT_EQ(root.extra->PlaneIndex[1], 1);
    EXPECT_TRUE(IsNodeInShownPlanes(Item(root, 4 * 4 + 1)));
}

TEST_F(Selection, PlaneCommandsMoveByOneAndTen)
{
    Scdr& root = Show(Characters({25, 2, 1}, std::u16string(50, u'x')));
    const auto plane = [&](std::int32_t command) {
        ChangePlane(view, command);
        return CurrentPlane(root);
    };
    EXPECT_EQ(plane(4627), 10);
    EXPECT_EQ(plane(4627), 20);
    EXPECT_EQ(plane(4627), 24);
    EXPECT_EQ(plane(4623), 24);
    EXPECT_EQ(plane(4622), 23);
    EXPECT_EQ(plane(4626), 13);
    EXPECT_EQ(plane(4624), 0);
    EXPECT_EQ(plane(4622), 0);
    EXPECT_EQ(plane(4626), 0);
    EXPECT_EQ(plane(4625), 24);
    EXPECT_EQ(FirstShownRow(root), 48);
    EXPECT_EQ(plane(4623), 24);
}

TEST_F(Selection, AThousandPlanesStillPageByTen)
{
    Scdr& root = Show(Characters({2000, 1, 1}, std::u16string(2000, u'x')));
    ChangePlane(view, 4627);
    EXPECT_EQ(CurrentPlane(root), 10);
}

TEST_F(Selection, ANewPlaneIsShownInTheEditor)
{
    Show(Characters({3, 1, 1}, u"abc"));
    ChangePlane(view, 4623);
    EXPECT_EQ(log.calls, (std::vector<std::string>{"invalidate", "plane", "notify 1"}));
    log.Clear();
    ChangePlane(view, 4625);
    ChangePlane(view, 4625);
    EXPECT_EQ(log.Count("plane"), 1); // no change, no work
}

TEST_F(Selection, APlaneIsShownOnceAndOnlyWhenThereIsOne)
{
    Scdr& root = Show(Characters({3, 1, 1}, u"abc"));
    ShowPlane(view, 2);
    EXPECT_EQ(CurrentPlane(root), 2);
    EXPECT_EQ(log.calls, (std::vector<std::string>{"invalidate", "plane", "notify 1"}));
    log.Clear();
    for (const std::int64_t plane : {std::int64_t{2}, std::int64_t{3}, std::int64_t{-1}})
        ShowPlane(view, plane);
    EXPECT_EQ(CurrentPlane(root), 2);
    EXPECT_TRUE(log.calls.empty());
}

TEST_F(Selection, PlanesOfLowRanksDoNotExist)
{
    Show(Filled({3, 3}));
    ChangePlane(view, 4623);
    EXPECT_TRUE(log.calls.empty());
}

TEST_F(Selection, TabVisitsEveryNodeAndComesBack)
{
    Scdr& root = Show(Vec(Filled({2, 2, 2}), Word(u"a"), Vec(Vec(Word(u"b")), NestedOf({0}, Word(u"p")))));
    std::set<Scdr*> seen{Selected(view)};
    int steps = 0;
    do {
        ASSERT_TRUE(MoveSelectionByKey(view, 0, Tab));
        seen.insert(Selected(view));
    } while (Selected(view) != &root && ++steps < 100);
    EXPECT_EQ(seen.size(), 1u + 9 + 1 + 1 + 2 + 2);
    EXPECT_EQ(steps + 1, static_cast<int>(seen.size()));
}

TEST_F(Selection, ShiftTabVisitsTheLeavesBackwards)
{
    Scdr& root = Show(Vec(Word(u"a"), Vec(Word(u"b"), Word(u"c"))));
    EXPECT_TRUE(MoveSelectionByKey(view, Shift, Tab));
    EXPECT_EQ(Selected(view), &Item(Item(root, 1), 1));
    EXPECT_TRUE(MoveSelectionByKey(view, Shift, Tab));
    EXPECT_TRUE(MoveSelectionByKey(view, Shift, Tab));
    EXPECT_EQ(Selected(view), &Item(root, 1));
}

TEST_F(Selection, ControlTabGoesRound)
{
    Scdr& root = Show(Vec(Word(u"a"), Word(u"b"), Word(u"c")));
    Select(Item(root, 2));
    EXPECT_TRUE(MoveSelectionByKey(view, Control, Tab));
    EXPECT_EQ(Selected(view), &Item(root, 0));
    EXPECT_TRUE(MoveSelectionByKey(view, Control | Shift, Tab));
    EXPECT_EQ(Selected(view), &Item(root, 2));
    EXPECT_TRUE(MoveSelectionByKey(view, Control, Up));
    EXPECT_EQ(Selected(view), &root);
    EXPECT_FALSE(MoveSelectionByKey(view, Control, Up));
    EXPECT_FALSE(MoveSelectionByKey(view, Control, Tab));
}

TEST_F(Selection, KeysTakeTheFocusAndKeepTheViewBusy)
{
    Show(Vec(Word(u"a")));
    static bool busy;
    busy = false;
    view.effects.invalidate = [](View& seen) { busy = (seen.flags & ViewBusy) != 0 && seen.edit.busy; };
    EXPECT_TRUE(MoveSelectionByKey(view, 0, Tab));
    EXPECT_TRUE(busy);
    EXPECT_EQ(view.flags & ViewBusy, 0);
    EXPECT_FALSE(view.edit.busy);
    EXPECT_EQ(log.Count("focus"), 1);
}

TEST_F(Selection, AMaximisedSimpleArrayKeepsTheSelection)
{
    Scdr& root = Show(Vec(Word(u"a"), Word(u"b")));
    Select(Item(root, 0));
    EXPECT_EQ(MaximizeScdr(view), 0);
    EXPECT_FALSE(MoveSelectionByKey(view, 0, Tab));
    EXPECT_EQ(Selected(view), &Item(root, 0));
}

TEST_F(Selection, KeysWithoutATreeDoNothing)
{
    EXPECT_FALSE(MoveSelectionByKey(view, 0, Tab));
    ChangePlane(view, 4623);
    MoveScdrIntoWindow(view);
    EXPECT_TRUE(log.calls.empty());
}

TEST_F(Selection, ShowingATreeSelectsItsRoot)
{
    ScdrPtr tree = Vec(Word(u"abc"));
    Scdr* const root = tree.get();
    EXPECT_EQ(ShowTree(view, std::move(tree)), 0);
    EXPECT_EQ(Selected(view), root);
    EXPECT_EQ(view.top, root);
    EXPECT_EQ(view.scroll.horizontal.dataSize, root->width);
    EXPECT_FALSE(view.editorActive);
    EXPECT_EQ(log.Count("notify 1"), 1);
    EXPECT_EQ(log.Count("notify 6"), 1);
    EXPECT_EQ(log.Count("size"), 1);
    EXPECT_EQ(view.flags & ViewBusy, 0);
}

TEST_F(Selection, ASimpleRootFillsTheWindow)
{
    Scdr& root = Show(Word(u"abc"));
    EXPECT_EQ(root.Flags & FlagMaximized, FlagMaximized);
    EXPECT_TRUE(view.editorActive);
    EXPECT_EQ(RestoreScdr(view), 0);
    EXPECT_EQ(view.top, &root);
    EXPECT_EQ(root.width, 46);
    EXPECT_EQ(OriginOf(root).x, 0);
}

TEST_F(Selection, ShowingAnotherTreeFreesTheOldOne)
{
    Scdr& root = Show(Vec(Word(u"abc"), Vec(Word(u"d"))));
    Select(Item(root, 1));
    EXPECT_EQ(MaximizeScdr(view), 0);
    Show(Word(u"abc"));
    log.Clear();
    EXPECT_EQ(ShowTree(view, nullptr), 0);
    EXPECT_EQ(view.root, nullptr);
    EXPECT_EQ(view.top, nullptr);
    EXPECT_EQ(Selected(view), nullptr);
    EXPECT_EQ(view.scroll.horizontal.dataSize, 0);
    EXPECT_EQ(log.Count("hide"), 1);
    EXPECT_EQ(log.Count("bars 1"), 1);
    // Only the width table is left.
    EXPECT_EQ(LiveAllocations(), liveBefore + 1);
}

TEST_F(Selection, ATreeThatCannotBeFormattedIsNotShown)
{
    EXPECT_NE(ShowTree(view, Vec(Word(u"a"), Allocate(TypeDecimal, {2}))), 0);
    EXPECT_EQ(view.root, nullptr);
    EXPECT_EQ(view.top, nullptr);
    EXPECT_EQ(Selected(view), nullptr);
    EXPECT_EQ(LiveAllocations(), liveBefore + 1);
}

TEST_F(Selection, LayingOutAgainAfterANewFont)
{
    Scdr& root = Show(Vec(Word(u"abc")));
    view.edit.widths.Reset(
        [](void*, char16_t first, char16_t last, std::int32_t* widths) {
            for (std::int32_t c = first; c <= last; ++c)
                *widths++ = 10;
        },
        nullptr, 0);
    view.edit.lineHeight = 20;
    EXPECT_EQ(LayOutAgain(view, true), 0);
    EXPECT_EQ(Item(root, 0).width, 30 + 22);
    EXPECT_EQ(Item(root, 0).height, 20 + 22);
    EXPECT_EQ(log.Count("notify 2"), 1);
    EXPECT_EQ(log.Count("size"), 1);
    EXPECT_EQ(log.Count("invalidate"), 1);
    EXPECT_EQ(view.scroll.horizontal.dataSize, root.width);
}

TEST_F(Selection, ANewFontStaysAtWhatIsInSightAndAnOptionGoesToTheSelection)
{
    Scdr& root = ShowLongVector();
    Select(Item(root, 29));
    ASSERT_GT(X(), 0);
    ChangeScrollPositions(view.scroll, ScrollToStart, ScrollToStart);
    EXPECT_EQ(LayOutAgain(view, true), 0);
    EXPECT_EQ(X(), 0);
    EXPECT_EQ(LayOutAgain(view, false), 0);
    EXPECT_GT(X(), 0);
}

TEST_F(Selection, LayingOutNothingTellsOnlyAboutTheFont)
{
    EXPECT_EQ(LayOutAgain(view, true), 0);
    EXPECT_EQ(log.calls, (std::vector<std::string>{"notify 2", "invalidate"}));
}

TEST_F(Selection, AShorterArrayIsScrolledBack)
{
    Scdr& root = ShowLongVector();
    Select(Item(root, 29));
    EXPECT_GT(X(), 800);
    for (const std::int64_t i : {27, 28}) {
        Select(Item(root, i));
        EXPECT_EQ(MinimizeScdr(view), 0);
    }
    EXPECT_EQ(X(), root.width - 400);
}

} // namespace
} // namespace vantrel
