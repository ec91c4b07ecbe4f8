#include "view/hit_test.h"

#include <algorithm>
#include <random>

#include "view_fixture.h"

namespace vantrel {
namespace {

class HitTest : public ViewTest {
protected:
    Scdr* Hit(std::int64_t x, std::int64_t y) { return HitTestScdr(view, *view.top, {x, y}, 0, 0); }

    bool IsInBox(const Scdr& node, std::int64_t x, std::int64_t y) const
    {
        const std::int64_t margin = view.metrics.margin;
        return x >= OriginOf(node).x + margin && x < OriginOf(node).x + node.width - margin &&
               y >= OriginOf(node).y + margin && y < OriginOf(node).y + node.height - margin;
    }

    // Every item, in order: the first that is hit wins.
    Scdr* SlowHit(Scdr& node, std::int64_t x, std::int64_t y) const
    {
        if (!IsInBox(node, x, y) || !IsNodeInShownPlanes(node)) return nullptr;
        if (IsSimple(node) || (node.Flags & FlagMinimized) != 0) return &node;
        for (std::int64_t i = 0; i < ChildCount(node); ++i) {
            if (Scdr* hit = SlowHit(Item(node, i), x, y)) return hit;
        }
        return &node;
    }

    // Whether FindVisibleItems leaves out nothing that meets the range.
    void CheckVisible(const Scdr& node, const Rect64& range) const
    {
        const VisibleItems visible = FindVisibleItems(view, node, range);
        const std::int64_t planeSize =
            node.Rank < 2 || node.ElementCount == 0 ? ChildCount(node) : Rows(node) * Columns(node);
        ASSERT_GE(visible.planeStart, 0);
        ASSERT_LE(visible.planeStart + planeSize, ChildCount(node));
        ASSERT_LE(visible.endRow * visible.columns, planeSize);
        ASSERT_LE(visible.endColumn, visible.columns);
        for (std::int64_t i = 0; i < planeSize; ++i) {
            const Rect64 box = NodeRect(Item(node, visible.planeStart + i));
            const bool meets = box.left < range.right && range.left < box.right && box.top < range.bottom &&
                               range.top < box.bottom;
            const std::int64_t row = i / visible.columns;
            const std::int64_t column = i % visible.columns;
            const bool found = row >= visible.firstRow && row < visible.endRow &&
                               column >= visible.firstColumn && column < visible.endColumn;
            EXPECT_TRUE(found || !meets) << "item " << i;
        }
    }
};

TEST_F(HitTest, FindsTheInnermostBox)
{
    Scdr& root = LayOut(Vec(Word(u"abc"), Vec(Word(u"d"), Word(u"ef"))));
    EXPECT_EQ(Hit(20, 20), &Item(root, 0));
    Scdr& inner = Item(Item(root, 1), 1);
    EXPECT_EQ(Hit(OriginOf(inner).x + 10, OriginOf(inner).y + 10), &inner);
}

TEST_F(HitTest, AMarginBelongsToTheEnclosingBox)
{
    Scdr& root = LayOut(Vec(Word(u"abc"), Word(u"d")));
    // The first box ends at 7 + 46 - 5 = 48, the second starts at 48 + 5.
    EXPECT_EQ(Hit(47, 20), &Item(root, 0));
    EXPECT_EQ(Hit(48, 20), &root);
    EXPECT_EQ(Hit(52, 20), &root);
    EXPECT_EQ(Hit(53, 20), &Item(root, 1));
}

TEST_F(HitTest, TheMarginOfTheTopIsNothing)
{
    LayOut(Vec(Word(u"abc")));
    EXPECT_EQ(Hit(4, 20), nullptr);
    EXPECT_EQ(Hit(5, 20), view.top);
    EXPECT_EQ(Hit(view.top->width - 5, 20), nullptr);
    EXPECT_EQ(Hit(20, view.top->height - 6), view.top);
    EXPECT_EQ(Hit(20, view.top->height - 5), nullptr);
}

TEST_F(HitTest, MovesWithTheScrollPosition)
{
    Scdr& root = LayOut(Vec(Word(u"abc"), Word(u"d")));
    EXPECT_EQ(HitTestScdr(view, root, {10, 10}, -50, -5), &Item(root, 1));
    EXPECT_EQ(HitTestScdr(view, root, {-1, 10}, -50, -5), &root);
}

TEST_F(HitTest, FindsThePrototypeOfAnEmptyArray)
{
    Scdr& vector = LayOut(NestedOf({0}, Word(u"ab")));
    EXPECT_EQ(Hit(20, 20), &Item(vector, 0));
    FreeScdr(&view.root);
    Scdr& cube = LayOut(NestedOf({2, 0, 3}, Word(u"ab")));
    EXPECT_EQ(Hit(24, 20), &Item(cube, 0));
    EXPECT_TRUE(IsNodeInShownPlanes(Item(cube, 0)));
}

TEST_F(HitTest, AClosedBoxHidesItsItems)
{
    Scdr& root = Show(Vec(Vec(Word(u"d"))));
    EXPECT_EQ(SelectScdr(view, Item(root, 0), false), 0);
    EXPECT_EQ(MinimizeScdr(view), 0);
    EXPECT_EQ(Hit(20, 20), &Item(root, 0));
}

TEST_F(HitTest, OnlyTheShownPlaneIsHit)
{
    Scdr& root = LayOut(Filled({3, 1, 2}));
    EXPECT_EQ(Hit(24, 20), &Item(root, 0));
    SetCurrentPlane(root, 2);
    EXPECT_EQ(Hit(24, 20), &Item(root, 4));
    EXPECT_EQ(Hit(24 + 25, 20), &Item(root, 5));
    EXPECT_TRUE(IsNodeInShownPlanes(Item(root, 5)));
    EXPECT_FALSE(IsNodeInShownPlanes(Item(root, 3)));
    // A node of a hidden plane is no hit even when it is asked directly.
    EXPECT_EQ(HitTestScdr(view, Item(root, 0), {24, 20}, 0, 0), nullptr);
}

TEST_F(HitTest, HiddenPlanesHideAllBelow)
{
    ScdrPtr tree = Filled({2, 1, 1});
    Replace(*tree, 1, Vec(Word(u"a"), Vec(Word(u"b"))));
    Scdr& root = LayOut(std::move(tree));
    Scdr& deep = Item(Item(Item(root, 1), 1), 0);
    EXPECT_FALSE(IsNodeInShownPlanes(deep));
    SetCurrentPlane(root, 1);
    EXPECT_TRUE(IsNodeInShownPlanes(deep));
}

TEST_F(HitTest, EditRectanglesLeaveTheMargin)
{
    Scdr& root = LayOut(Vec(Word(u"abc"), Characters({}, u"d")));
    const Rect64 text = GetEditRectangle(5, Item(root, 0));
    EXPECT_EQ(text.left, 12);
    EXPECT_EQ(text.top, 12);
    EXPECT_EQ(text.right, 7 + 46 - 5);
    EXPECT_EQ(text.bottom, 7 + 38 - 5);
    const Rect64 scalar = GetEditRectangle(5, Item(root, 1));
    EXPECT_EQ(scalar.left, 48 + 6);
    EXPECT_EQ(scalar.right, 48 + 30 - 6);
    EXPECT_EQ(scalar.bottom, 7 + 38 - 6);
}

TEST_F(HitTest, OnlyASimpleScalarHasTheThinFrame)
{
    Scdr& root = Show(NestedOf({}, Word(u"abc")));
    const Rect64 box = NodeRect(root);
    EXPECT_EQ(GetEditRectangle(5, root).left, box.left + 5);
    EXPECT_EQ(GetEditRectangle(5, root).bottom, box.bottom - 5);
}

TEST_F(HitTest, TheCalculatedRectangleIgnoresWhatTheUserDid)
{
    Scdr& root = LayOut(Vec(Word(u"abc")));
    Item(root, 0).width = 300;
    Item(root, 0).height = 200;
    EXPECT_EQ(GetEditRectangle(5, Item(root, 0)).right, 302);
    EXPECT_EQ(GetEditCalcRectangle(5, Item(root, 0)).right, 48);
    EXPECT_EQ(GetEditCalcRectangle(5, Item(root, 0)).bottom, 40);
}

TEST_F(HitTest, AgreesWithTryingEveryItem)
{
    std::mt19937 random(7);
    const auto pick = [&](std::int64_t low, std::int64_t high) {
        return std::uniform_int_distribution<std::int64_t>(low, high)(random);
    };
    for (int round = 0; round < 60; ++round) {
        std::vector<std::int64_t> shape(static_cast<std::size_t>(pick(0, 4)));
        for (std::int64_t& axis : shape)
            axis = pick(1, 4);
        ScdrPtr tree = Filled(shape);
        for (std::int64_t i = 0; i < ChildCount(*tree); ++i) {
            const auto size = static_cast<std::size_t>(pick(0, 9));
            if (pick(0, 2) == 0) {
                Replace(*tree, i,
                        pick(0, 1) == 0 ? Word(std::u16string(size, u'x'))
                                        : Filled({pick(0, 2), pick(0, 3)}));
            }
        }
        Scdr& root = LayOut(std::move(tree));
        if (root.Rank > 2) SetCurrentPlane(root, pick(0, PlaneCount(root) - 1));
        for (int i = 0; i < 300; ++i) {
            const std::int64_t x = pick(-5, root.width + 5);
            const std::int64_t y = pick(-5, root.height + 5);
            ASSERT_EQ(Hit(x, y), SlowHit(root, x, y)) << "round " << round << " at " << x << " " << y;
            CheckVisible(root, {x, y, x + pick(0, 200), y + pick(0, 200)});
        }
        FreeScdr(&view.root);
        view.top = nullptr;
    }
}

TEST_F(HitTest, FindsItemsAnywhereInALargeVector)
{
    Scdr& root = LayOut(Filled({100000}));
    for (const std::int64_t i : {0, 1, 50000, 99998, 99999}) {
        const Scdr& item = Item(root, i);
        EXPECT_EQ(Hit(OriginOf(item).x + 10, OriginOf(item).y + 10), &item);
        const VisibleItems visible =
            FindVisibleItems(view, root, {OriginOf(item).x + 10, 0, OriginOf(item).x + 11, 10});
        EXPECT_EQ(visible.firstColumn, i);
        EXPECT_EQ(visible.endColumn, i + 1);
    }
}

TEST_F(HitTest, SearchingBeforeTheFirstLayoutStaysInBounds)
{
    ScdrPtr tree = Filled({2, 3});
    CheckVisible(*tree, {0, 0, 10, 10});
    EXPECT_EQ(HitTestScdr(view, *tree, {0, 0}, 0, 0), nullptr);
}

} // namespace
} // namespace vantrel
