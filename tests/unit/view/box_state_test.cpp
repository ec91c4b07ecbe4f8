#include "view_fixture.h"

namespace vantrel {
namespace {

class BoxState : public ViewTest {
protected:
    Scdr& Select(Scdr& node)
    {
        EXPECT_EQ(SelectScdr(view, node, false), 0);
        log.Clear();
        return node;
    }
};

TEST_F(BoxState, AMinimisedBoxIsASquareOfOneLine)
{
    Scdr& root = Show(Vec(Word(u"a long text that fills its box"),
                          Characters({9, 9}, std::u16string(81, u'x')), Filled({2, 2})));
    for (std::int64_t i = 0; i < 3; ++i) {
        Select(Item(root, i));
        EXPECT_EQ(MinimizeScdr(view), 0);
        EXPECT_EQ(Item(root, i).width, 16 + 4 + 10);
        EXPECT_EQ(Item(root, i).height, 16 + 4 + 10);
    }
    EXPECT_EQ(root.width, 3 * 25 + 5 + 14);
    EXPECT_EQ(OriginOf(Item(root, 2)).x, 7 + 2 * 25);
}

TEST_F(BoxState, MinimisingHidesTheEditorAndTellsTheFrame)
{
    Scdr& root = Show(Vec(Word(u"abc"), Word(u"d")));
    Select(Item(root, 0));
    EXPECT_TRUE(view.editorActive);
    EXPECT_EQ(MinimizeScdr(view), 0);
    EXPECT_FALSE(view.editorActive);
    EXPECT_EQ(log.Count("hide"), 1);
    EXPECT_EQ(log.Count("invalidate"), 1);
    EXPECT_EQ(log.Count("notify 1"), 1);
    EXPECT_EQ(view.scroll.horizontal.dataSize, root.width);
}

TEST_F(BoxState, MinimisingTwiceDoesNothing)
{
    Scdr& root = Show(Vec(Word(u"abc")));
    Select(Item(root, 0));
    EXPECT_EQ(MinimizeScdr(view), 0);
    log.Clear();
    EXPECT_EQ(MinimizeScdr(view), 0);
    EXPECT_TRUE(log.calls.empty());
}

TEST_F(BoxState, TheRootIsNotMinimised)
{
    Scdr& root = Show(Vec(Word(u"abc")));
    EXPECT_EQ(MinimizeScdr(view), 0);
    EXPECT_EQ(root.Flags & FlagMinimized, 0);
}

TEST_F(BoxState, RestoringGivesASimpleBoxItsFormerSizeWithoutMeasuring)
{
    Scdr& root = Show(Vec(Word(u"abc"), Word(u"d")));
    Scdr& item = Select(Item(root, 0));
    item.width = 77; // as if the user had pulled at its border
    item.height = 55;
    item.records.flags |= RecordsResizedByUser;
    EXPECT_EQ(MinimizeScdr(view), 0);
    EXPECT_EQ(RestoreScdr(view), 0);
    EXPECT_EQ(item.width, 77);
    EXPECT_EQ(item.height, 55);
    EXPECT_EQ(OriginOf(Item(root, 1)).x, 7 + 77 - 5);
    EXPECT_EQ(item.Flags & FlagMinimized, 0);
    EXPECT_EQ(item.records.formattedWidth, 46); // for "Reset size"
}

TEST_F(BoxState, RestoringBeginsTheEditorAgain)
{
    Scdr& root = Show(Vec(Word(u"abc")));
    Select(Item(root, 0));
    EXPECT_EQ(MinimizeScdr(view), 0);
    log.Clear();
    EXPECT_EQ(RestoreScdr(view), 0);
    EXPECT_EQ(log.Count("begin array"), 1);
    EXPECT_EQ(log.Count("focus"), 1);
    EXPECT_EQ(log.Count("notify 1"), 1);
    EXPECT_TRUE(view.editorActive);
}

TEST_F(BoxState, RestoringANestedBoxLaysItsItemsOutAgain)
{
    Scdr& root = Show(Vec(Word(u"abc"), Vec(Word(u"d"), Word(u"ef"))));
    Scdr& item = Select(Item(root, 1));
    const std::int64_t width = item.width;
    EXPECT_EQ(MinimizeScdr(view), 0);
    Select(Item(root, 0));
    EXPECT_EQ(MinimizeScdr(view), 0);
    Select(item);
    EXPECT_EQ(RestoreScdr(view), 0);
    EXPECT_EQ(item.width, width);
    EXPECT_EQ(OriginOf(item).x, 7 + 25);
    EXPECT_EQ(OriginOf(Item(item, 0)).x, OriginOf(item).x + 7);
}

TEST_F(BoxState, ASizeKeptWithAnotherFontIsMeasuredAnew)
{
    Scdr& root = Show(Vec(Word(u"abc")));
    Scdr& item = Select(Item(root, 0));
    EXPECT_EQ(MinimizeScdr(view), 0);
    view.metrics.margin = 10;
    EXPECT_EQ(LayOutAgain(view, false), 0);
    EXPECT_EQ(item.width, 16 + 4 + 20);
    EXPECT_EQ(RestoreScdr(view), 0);
    EXPECT_EQ(item.width, 24 + 4 + 4 + 4 + 20);
}

TEST_F(BoxState, ABoxWithAFixedSizeKeepsNoSavedSize)
{
    Scdr& root = Show(Vec(Word(u"name"), Word(u"d")));
    Scdr& item = Select(Item(root, 0));
    item.Flags |= FlagKeptSize;
    const std::int64_t width = item.width;
    item.width = 99;
    EXPECT_EQ(MinimizeScdr(view), 0);
    EXPECT_TRUE(item.extra == nullptr || item.extra->savedWidth == 0);
    EXPECT_EQ(RestoreScdr(view), 0);
    EXPECT_EQ(item.width, width);
}

TEST_F(BoxState, APrototypeIsMeasuredAnew)
{
    Scdr& root = Show(Vec(NestedOf({0}, Word(u"abc"))));
    Scdr& item = Select(Item(Item(root, 0), 0));
    EXPECT_EQ(MinimizeScdr(view), 0);
    EXPECT_EQ(item.width, 30);
    EXPECT_EQ(RestoreScdr(view), 0);
    EXPECT_EQ(item.width, 46);
    EXPECT_FALSE(view.editorActive);
}

TEST_F(BoxState, AMaximisedNestedBoxBecomesTheTop)
{
    Scdr& root = Show(Vec(Word(u"abc"), Vec(Word(u"d"), Word(u"ef"))));
    view.scroll.horizontal.dataSize = 5000;
    view.scroll.horizontal.position = 300;
    Scdr& item = Select(Item(root, 1));
    EXPECT_EQ(MaximizeScdr(view), 0);
    EXPECT_EQ(view.top, &item);
    EXPECT_EQ(item.parent, nullptr);
    EXPECT_EQ(item.extra->savedParent, &root);
    EXPECT_EQ(OriginOf(item).x, 0);
    EXPECT_EQ(OriginOf(Item(item, 1)).x, 7 + 25);
    EXPECT_EQ(view.scroll.horizontal.position, 0);
    EXPECT_EQ(view.scroll.horizontal.dataSize, item.width);
    EXPECT_EQ(log.Count("size"), 1);
    EXPECT_EQ(log.Count("notify 1"), 1);
    EXPECT_EQ(RestoreScdr(view), 0);
    EXPECT_EQ(view.top, &root);
    EXPECT_EQ(item.parent, &root);
    EXPECT_EQ(item.extra->savedParent, nullptr);
    EXPECT_EQ(OriginOf(item).x, 7 + 41);
    EXPECT_EQ(view.scroll.horizontal.dataSize, root.width);
}

TEST_F(BoxState, AMaximisedSimpleBoxFillsTheWindow)
{
    Scdr& root = Show(Vec(Word(u"abc"), Word(u"d")));
    Scdr& item = Select(Item(root, 1));
    const std::int64_t width = item.width;
    EXPECT_EQ(MaximizeScdr(view), 0);
    EXPECT_EQ(log.Count("bars 0"), 1);
    EXPECT_EQ(log.Count("size"), 1);
    log.Clear();
    EditResize(view);
    EXPECT_EQ(log.calls, (std::vector<std::string>{"place window"}));
    EXPECT_EQ(RestoreScdr(view), 0);
    EXPECT_EQ(log.Count("bars 1"), 1);
    EXPECT_EQ(item.width, width);
    EXPECT_EQ(OriginOf(item).x, 7 + 41);
    EXPECT_EQ(log.Count("place 53 12 20 28"), 1);
}

TEST_F(BoxState, ANestedRootIsNotMaximised)
{
    Scdr& root = Show(Vec(Word(u"abc")));
    EXPECT_EQ(MaximizeScdr(view), 0);
    EXPECT_EQ(root.Flags & FlagMaximized, 0);
}

TEST_F(BoxState, MaximisingAMinimisedBoxRestoresItFirst)
{
    Scdr& root = Show(Vec(Word(u"abc"), Vec(Word(u"d"))));
    Scdr& item = Select(Item(root, 1));
    EXPECT_EQ(MinimizeScdr(view), 0);
    EXPECT_EQ(MaximizeScdr(view), 0);
    EXPECT_EQ(item.Flags & (FlagMinimized | FlagMaximized), FlagMaximized);
    EXPECT_EQ(view.top, &item);
}

TEST_F(BoxState, SelectingBehindAMaximisedBoxRestoresIt)
{
    Scdr& root = Show(Vec(Word(u"abc"), Vec(Vec(Word(u"d")), Word(u"ef"))));
    Scdr& outer = Select(Item(root, 1));
    EXPECT_EQ(MaximizeScdr(view), 0);
    Scdr& inner = Select(Item(outer, 0));
    EXPECT_EQ(MaximizeScdr(view), 0);
    EXPECT_EQ(view.top, &inner);
    Select(Item(root, 0));
    EXPECT_EQ(view.top, &root);
    EXPECT_EQ((outer.Flags | inner.Flags) & FlagMaximized, 0);
    EXPECT_EQ(inner.parent, &outer);
    EXPECT_EQ(outer.parent, &root);
}

TEST_F(BoxState, SelectingInsideClosedBoxesOpensAllOfThem)
{
    Scdr& root = Show(Vec(Vec(Vec(Word(u"d"), Word(u"ef"))), Word(u"abc")));
    Scdr& outer = Item(root, 0);
    Scdr& inner = Item(outer, 0);
    Scdr& leaf = Item(inner, 1);
    const std::int64_t x = OriginOf(leaf).x;
    for (Scdr* box : {&inner, &outer}) {
        Select(*box);
        EXPECT_EQ(MinimizeScdr(view), 0);
    }
    Select(leaf);
    EXPECT_EQ((outer.Flags | inner.Flags) & FlagMinimized, 0);
    EXPECT_EQ(Selected(view), &leaf);
    EXPECT_EQ(OriginOf(leaf).x, x);
}

TEST_F(BoxState, ResetSizeGivesResizedBoxesTheirFormattedSizeBack)
{
    Scdr& root = Show(Vec(Word(u"abc"), Vec(Word(u"d"), Word(u"ef"))));
    const std::int64_t width = root.width;
    for (Scdr* leaf : {&Item(root, 0), &Item(Item(root, 1), 1)}) {
        leaf->width += 100;
        leaf->height += 50;
        leaf->records.flags |= RecordsResizedByUser;
        InvalidateAncestorsSizesAndLaterSiblingsOrigins(*leaf);
    }
    EXPECT_EQ(CalculateScdrSizes(view), 0);
    EXPECT_EQ(root.width, width + 200);
    ResetSize(view, Item(root, 1));
    EXPECT_EQ(CalculateScdrSizes(view), 0);
    EXPECT_EQ(root.width, width + 100);
    ResetSize(view, root);
    EXPECT_EQ(CalculateScdrSizes(view), 0);
    EXPECT_EQ(root.width, width);
    EXPECT_EQ(Item(root, 0).records.flags & RecordsResizedByUser, 0);
}

TEST_F(BoxState, ResetSizeOfAClosedBoxIsSeenWhenItOpens)
{
    Scdr& root = Show(Vec(Word(u"abc"), Word(u"d")));
    Scdr& leaf = Item(root, 0);
    const std::int64_t width = leaf.width;
    leaf.width += 100;
    leaf.records.flags |= RecordsResizedByUser;
    InvalidateAncestorsSizesAndLaterSiblingsOrigins(leaf);
    EXPECT_EQ(CalculateScdrSizes(view), 0);
    EXPECT_EQ(SelectScdr(view, leaf, false), 0);
    EXPECT_EQ(MinimizeScdr(view), 0);
    const std::int64_t closed = leaf.width;
    ResetSize(view, root);
    EXPECT_EQ(CalculateScdrSizes(view), 0);
    EXPECT_EQ(leaf.width, closed);
    EXPECT_EQ(RestoreScdr(view), 0);
    EXPECT_EQ(leaf.width, width);
}

TEST_F(BoxState, ResetSizeLeavesOtherBoxesAlone)
{
    Scdr& root = Show(Vec(Word(u"abc")));
    Item(root, 0).width = 99; // not marked
    ResetSize(view, root);
    EXPECT_EQ(Item(root, 0).width, 99);
}

} // namespace
} // namespace vantrel
