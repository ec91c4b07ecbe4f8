#include "view/pages.h"

#include <algorithm>

#include "unit/support/trees.h"
#include "view_fixture.h"

namespace vantrel {
namespace {

// --- cutting a length ---

// Things that lie along an axis, in two levels.
struct Axis {
    std::vector<std::pair<std::int64_t, std::int64_t>> first;
    std::vector<std::pair<std::int64_t, std::int64_t>> second;
};

std::int64_t StartOfThing(void* state, std::int32_t level, std::int64_t position)
{
    const Axis& axis = *static_cast<const Axis*>(state);
    std::int64_t start = position;
    for (const auto& [from, to] : level == 0 ? axis.first : axis.second) {
        if (from < position && position < to) start = std::min(start, from);
    }
    return start;
}

std::vector<std::int64_t> Cuts(std::int64_t size, std::int64_t page, Axis axis = {})
{
    const Vector<std::int64_t> cuts = CutIntoPages(size, page, {&StartOfThing, &axis, 2});
    return {cuts.begin(), cuts.end()};
}

using Positions = std::vector<std::int64_t>;

TEST(PageCuts, WhatFitsIsOnePage)
{
    EXPECT_EQ(Cuts(70, 100), (Positions{0, 70}));
    EXPECT_EQ(Cuts(100, 100), (Positions{0, 100}));
}

TEST(PageCuts, NothingIsOneEmptyPage)
{
    EXPECT_EQ(Cuts(0, 100), (Positions{0, 0}));
}

TEST(PageCuts, FullPagesWhereNothingStandsInTheWay)
{
    EXPECT_EQ(Cuts(250, 100), (Positions{0, 100, 200, 250}));
    EXPECT_EQ(Cuts(200, 100), (Positions{0, 100, 200}));
}

TEST(PageCuts, AThingThatWouldBeCutGoesToTheNextPage)
{
    EXPECT_EQ(Cuts(250, 100, {{{80, 120}}, {}}), (Positions{0, 80, 180, 250}));
}

TEST(PageCuts, TouchingACutIsNotBeingCut)
{
    EXPECT_EQ(Cuts(200, 100, {{{50, 100}, {100, 150}}, {}}), (Positions{0, 100, 200}));
}

TEST(PageCuts, ThingsThatOverlapGoTogether)
{
    EXPECT_EQ(Cuts(200, 100, {{{90, 130}, {70, 95}}, {}}), (Positions{0, 70, 170, 200}));
}

TEST(PageCuts, AThingLongerThanAPageIsCutWhereItHurtsLess)
{
    EXPECT_EQ(Cuts(300, 100, {{{0, 300}}, {{95, 105}, {190, 196}}}), (Positions{0, 95, 190, 290, 300}));
}

TEST(PageCuts, WhereNothingHelpsThePageIsFull)
{
    EXPECT_EQ(Cuts(250, 100, {{{0, 250}}, {{0, 250}}}), (Positions{0, 100, 200, 250}));
}

TEST(PageCuts, APageWithoutRoomStillGetsOn)
{
    EXPECT_EQ(Cuts(3, 0), (Positions{0, 1, 2, 3}));
    EXPECT_EQ(Cuts(2, -5), (Positions{0, 1, 2}));
}

// --- the sheet ---

PaperSheet A4()
{
    PaperSheet sheet;
    sheet.paper = {4958, 7016};
    sheet.printable = {150, 150, 4808, 6866};
    sheet.margins = {500, 400, 300, 200};
    sheet.headerHeight = 100;
    sheet.footerHeight = 120;
    return sheet;
}

void ExpectRect(const Rect64& rect, const Rect64& expected)
{
    EXPECT_EQ(rect.left, expected.left);
    EXPECT_EQ(rect.top, expected.top);
    EXPECT_EQ(rect.right, expected.right);
    EXPECT_EQ(rect.bottom, expected.bottom);
}

TEST(PagePlan, TitleArrayAndNumberShareWhatTheMarginsLeave)
{
    const PagePlan plan = PlanPage(A4());
    ExpectRect(plan.header, {500, 400, 4658, 500});
    ExpectRect(plan.body, {500, 500, 4658, 6696});
    ExpectRect(plan.footer, {500, 6696, 4658, 6816});
}

TEST(PagePlan, MarginsAreAtLeastWhatThePrinterNeeds)
{
    PaperSheet sheet = A4();
    sheet.margins = {0, 0, 0, 0};
    const PagePlan plan = PlanPage(sheet);
    ExpectRect(plan.body, {150, 250, 4808, 6746});
}

TEST(PagePlan, MarginsThatLeaveNothingAreLeftOut)
{
    PaperSheet sheet = A4();
    sheet.margins = {3000, 0, 3000, 0};
    EXPECT_EQ(PlanPage(sheet).body.left, 150);
    sheet.margins = {0, 4000, 0, 4000};
    EXPECT_EQ(PlanPage(sheet).body.top, 250);
}

TEST(PagePlan, APageIsNeverEmpty)
{
    PaperSheet sheet;
    const PagePlan plan = PlanPage(sheet);
    EXPECT_GE(plan.body.right - plan.body.left, 1);
    EXPECT_GE(plan.body.bottom - plan.body.top, 1);
}

TEST(PagePlan, MarginsAreGivenInTheUnitOfTheCountry)
{
    EXPECT_EQ(MarginPixels(2540, true, 600), 600);
    EXPECT_EQ(MarginPixels(1000, false, 600), 600);
    EXPECT_EQ(MarginPixels(500, true, 300), 59);
    EXPECT_EQ(MarginPixels(0, true, 300), 0);
}

// --- an array ---

class Pages : public ViewTest {
protected:
    Pages() { view.metrics.workArea = {std::int64_t{1} << 40, std::int64_t{1} << 40}; }

    Positions RowCuts(std::int64_t height)
    {
        const PageGrid grid = CutArrayIntoPages(view, {1 << 20, height});
        return {grid.rows.begin(), grid.rows.end()};
    }
    Positions ColumnCuts(std::int64_t width)
    {
        const PageGrid grid = CutArrayIntoPages(view, {width, 1 << 20});
        return {grid.columns.begin(), grid.columns.end()};
    }
    // Whether a cut goes through a line of an array whose text starts at `top`.
    static bool IsThroughLine(std::int64_t cut, std::int64_t top, std::int64_t rows)
    {
        return cut > top && cut < top + rows * 16 && (cut - top) % 16 != 0;
    }
};

TEST_F(Pages, RowsAreCutBetweenLines)
{
    Scdr& root = LayOut(Characters({100, 3}, std::u16string(300, u'x')));
    const std::int64_t top = TextCorner(view, root, NodeRect(root)).y;
    const Positions cuts = RowCuts(200);
    EXPECT_GT(cuts.size(), 8u);
    for (const std::int64_t cut : cuts)
        EXPECT_FALSE(IsThroughLine(cut, top, 100)) << cut;
    for (std::size_t i = 1; i < cuts.size(); ++i) {
        EXPECT_GT(cuts[i], cuts[i - 1]);
        EXPECT_LE(cuts[i] - cuts[i - 1], 200);
    }
    EXPECT_EQ(cuts.back(), root.height);
}

TEST_F(Pages, NoLineOfAnyItemIsCut)
{
    Scdr& root = LayOut(Nested({2}, [&] {
        std::vector<ScdrPtr> items;
        items.push_back(Characters({30, 2}, std::u16string(60, u'a')));
        items.push_back(Vec(Characters({41, 2}, std::u16string(82, u'b')), Word(u"c")));
        return items;
    }()));
    const Scdr& first = Item(root, 0);
    const Scdr& second = Item(Item(root, 1), 0);
    for (const std::int64_t cut : RowCuts(150)) {
        const bool firstCut = IsThroughLine(cut, TextCorner(view, first, NodeRect(first)).y, 30);
        const bool secondCut = IsThroughLine(cut, TextCorner(view, second, NodeRect(second)).y, 41);
        EXPECT_FALSE(firstCut && secondCut) << cut;
    }
}

TEST_F(Pages, ABoxGoesToTheNextPageAsAWhole)
{
    std::vector<ScdrPtr> items;
    for (int i = 0; i < 10; ++i)
        items.push_back(Word(u"abcdef"));
    Scdr& root = LayOut(Nested({10}, std::move(items)));
    for (const std::int64_t cut : ColumnCuts(180)) {
        for (std::int64_t i = 0; i < 10; ++i) {
            const Rect64 box = NodeRect(Item(root, i));
            EXPECT_FALSE(box.left + 5 < cut && cut < box.right - 5) << cut;
        }
    }
}

TEST_F(Pages, ColumnsThatShareAMarginAreCutApartThroughIt)
{
    // Items of different widths in each column, one of them as wide as the column.
    std::vector<ScdrPtr> items;
    for (std::size_t i = 0; i < 54; ++i)
        items.push_back(Word(std::u16string(4 + i * 7 % 9, u'x')));
    Scdr& root = LayOut(Nested({9, 6}, std::move(items)));
    const std::int64_t margin = view.metrics.margin;
    const Positions cuts = ColumnCuts(root.width / 2);
    ASSERT_EQ(cuts.size(), 4u);
    EXPECT_GT(cuts[1], root.width / 4) << "the first page is well filled";
    for (std::size_t cut = 1; cut + 1 < cuts.size(); ++cut) {
        for (std::int64_t i = 0; i < 54; ++i) {
            const Rect64 box = NodeRect(Item(root, i));
            EXPECT_FALSE(box.left + margin <= cuts[cut] && cuts[cut] <= box.right - margin) << i;
        }
    }
}

TEST_F(Pages, ANestedItemThatFitsGoesToTheNextPageWithItsFrame)
{
    std::vector<ScdrPtr> items;
    for (int i = 0; i < 6; ++i)
        items.push_back(Vec(Word(u"inner"), Word(u"box")));
    Scdr& root = LayOut(Nested({6}, std::move(items)));
    const std::int64_t margin = view.metrics.margin;
    const Positions cuts = ColumnCuts(root.width / 2 - 20);
    ASSERT_GT(cuts.size(), 2u);
    for (std::size_t cut = 1; cut + 1 < cuts.size(); ++cut) {
        for (std::int64_t i = 0; i < 6; ++i) {
            const Rect64 box = NodeRect(Item(root, i));
            EXPECT_FALSE(box.left + margin <= cuts[cut] && cuts[cut] <= box.right - margin) << i;
        }
    }
}

TEST_F(Pages, ALongTextInAFrameBeginsOnTheFirstPage)
{
    std::vector<ScdrPtr> items;
    items.push_back(Word(std::u16string(200, u'x')));
    LayOut(Nested({1}, std::move(items)));
    EXPECT_GT(ColumnCuts(400)[1], 380);
}

TEST_F(Pages, TheLastLineKeepsItsFrame)
{
    std::vector<ScdrPtr> items;
    for (int i = 0; i < 6; ++i)
        items.push_back(Characters({3, 2}, u"aabbcc"));
    Scdr& root = LayOut(Nested({6, 1}, std::move(items)));
    const std::int64_t margin = view.metrics.margin;
    for (std::int64_t height = 100; height < 200; ++height) {
        for (const std::int64_t cut : RowCuts(height)) {
            for (std::int64_t i = 0; i < 6; ++i) {
                const Rect64 box = NodeRect(Item(root, i));
                const std::int64_t textEnd = TextCorner(view, Item(root, i), box).y + 3 * 16;
                EXPECT_FALSE(textEnd <= cut && cut < box.bottom - margin) << height << ": " << cut;
            }
        }
    }
}

TEST_F(Pages, AWideMatrixIsCutBetweenItsNumbers)
{
    Scdr& root = LayOut(Integers({2, 30}, std::vector<std::int64_t>(60, 12345)));
    const std::int64_t left = TextCorner(view, root, NodeRect(root)).x;
    const Positions cuts = ColumnCuts(300);
    ASSERT_GT(cuts.size(), 3u);
    for (std::size_t i = 1; i + 1 < cuts.size(); ++i) {
        const std::int64_t column = (cuts[i] - 1 - left) / 8; // what stands before the cut
        const std::u16string row = RowText(root, 0);
        const auto at = static_cast<std::size_t>(column);
        EXPECT_TRUE(at >= row.size() || row[at] == u' ') << column;
    }
}

TEST_F(Pages, TextWithoutAGapIsCutBetweenCharacters)
{
    Scdr& root = LayOut(Word(std::u16string(100, u'x')));
    const std::int64_t left = TextCorner(view, root, NodeRect(root)).x;
    const Positions cuts = ColumnCuts(203);
    ASSERT_GT(cuts.size(), 3u);
    for (std::size_t i = 1; i + 1 < cuts.size(); ++i)
        EXPECT_EQ((cuts[i] - left) % 8, 0);
}

TEST_F(Pages, CountsItsPages)
{
    LayOut(Characters({100, 100}, std::u16string(10000, u'x')));
    const PageGrid grid = CutArrayIntoPages(view, {500, 600});
    EXPECT_EQ(grid.columns.size(), 3u);
    EXPECT_EQ(grid.rows.size(), 4u);
    EXPECT_EQ(grid.PageCount(), 6);
}

TEST_F(Pages, AFailedCutLeavesNothingBehind)
{
    LayOut(Characters({100, 3}, std::u16string(300, u'x')));
    const int faults = test::SweepAllocationFaults([&] {
        static_cast<void>(CutArrayIntoPages(view, {100, 200}));
    });
    EXPECT_GT(faults, 0);
}

} // namespace
} // namespace vantrel
