// Boxes whose size a person worked out: edge 2 x 2, margin 5, characters 8 wide, lines 16 high, bars 17, work area 1024 x 768.
#include "view/layout.h"

#include "view/options.h"
#include "view/progress.h"
#include "view_fixture.h"

namespace vantrel {
namespace {

class Layout : public ViewTest {
protected:
    static void ExpectSize(const Scdr& node, std::int64_t width, std::int64_t height)
    {
        EXPECT_EQ(node.width, width);
        EXPECT_EQ(node.height, height);
        EXPECT_TRUE((node.Flags & FlagSizeValid) != 0);
    }
    static void ExpectOrigin(const Scdr& node, std::int64_t x, std::int64_t y)
    {
        EXPECT_EQ(OriginOf(node).x, x);
        EXPECT_EQ(OriginOf(node).y, y);
        EXPECT_TRUE((node.Flags & FlagOriginValid) != 0);
    }
};

TEST_F(Layout, SizesACharacterVector)
{
    // Text 24 x 16, padding 4, edges 4 inside the cap and 4 outside it, margins 10.
    const Scdr& node = LayOut(Word(u"abc"));
    ExpectSize(node, 46, 38);
    ExpectOrigin(node, 0, 0);
    EXPECT_EQ(node.records.formattedWidth, 46);
    EXPECT_EQ(node.records.formattedHeight, 38);
    EXPECT_TRUE((node.records.flags & RecordsFormatted) != 0);
}

TEST_F(Layout, SizesAScalar)
{
    ExpectSize(LayOut(Characters({}, u"a")), 30, 38);
}

TEST_F(Layout, KeepsALineFeedScalarInOneRow)
{
    const Scdr& node = LayOut(Characters({}, u"\n"));
    EXPECT_EQ(node.records.count, 1);
    EXPECT_EQ(RowText(node, 0), u"\n");
}

TEST_F(Layout, TakesTheWidestOfSeveralRows)
{
    ExpectSize(LayOut(Word(u"ab\r\nWWW\nc")), 36 + 4 + 4 + 4 + 10, 48 + 22);
}

TEST_F(Layout, AddsRoomForScrollBarsToEveryMatrix)
{
    // Text 24 x 32 + 4; bars: max(34, 28) + 18, max(34, 36) + 18; edges and margins 4 + 4 + 10.
    ExpectSize(LayOut(Characters({2, 3}, u"abcdef")), 34 + 18 + 18, 36 + 18 + 18);
}

TEST_F(Layout, AddsRoomForScrollBarsToVectorsOnlyWhenAsked)
{
    Scdr& node = LayOut(Word(u"abc"));
    view.edit.rankOneScrollBars = true;
    EXPECT_EQ(LayOutAgain(view, false), 0);
    ExpectSize(node, 34 + 18 + 18, 34 + 18 + 18);
    view.edit.rankOneScrollBars = false;
    EXPECT_EQ(LayOutAgain(view, false), 0);
    ExpectSize(node, 46, 38);
}

TEST_F(Layout, NeverAddsScrollBarsToScalars)
{
    view.edit.rankOneScrollBars = true;
    ExpectSize(LayOut(Characters({}, u"a")), 30, 38);
}

TEST_F(Layout, CapsABoxAtAThirdOfTheScreen)
{
    // 35 percent of 1024 x 768 is 358 x 268; the outer edges and margins come on top.
    const Scdr& node = LayOut(Characters({1000, 200}, std::u16string(200000, u'x')));
    ExpectSize(node, 358 + 14, 268 + 14);
    // The page is what is left inside: less the bar, both edges (the edge's width in both directions) and the padding.
    ASSERT_NE(node.extra->boxScroll, nullptr);
    const ScrollRecord& scroll = *node.extra->boxScroll;
    EXPECT_EQ(scroll.horizontal.dataSize, 1600);
    EXPECT_EQ(scroll.vertical.dataSize, 16000);
    EXPECT_EQ(scroll.horizontal.pageSize, 358 - (17 + 4 + 4));
    EXPECT_EQ(scroll.vertical.pageSize, 268 - (17 + 4 + 4));
}

TEST_F(Layout, DeductsTheEdgeWidthFromThePageHeight)
{
    view.metrics.edge = {3, 9};
    const Scdr& node = LayOut(Characters({1000, 200}, std::u16string(200000, u'x')));
    EXPECT_EQ(node.extra->boxScroll->vertical.pageSize, 268 - (17 + 2 * 3 + 4));
}

TEST_F(Layout, CapsAMatrixOfAMillionRows)
{
    const Scdr& node = LayOut(Characters({1000000, 1}, std::u16string(1000000, u'x')));
    EXPECT_EQ(node.height, 268 + 14);
    EXPECT_EQ(node.extra->boxScroll->vertical.dataSize, 16000000);
}

TEST_F(Layout, GivesNoScrollRecordToABoxWhoseTextFits)
{
    const Scdr& node = LayOut(Characters({2, 3}, u"abcdef"));
    EXPECT_TRUE(node.extra == nullptr || node.extra->boxScroll == nullptr);
}

TEST_F(Layout, ShowsOnePlaneOfASimpleArrayOfRankThree)
{
    // Three rows a plane: 48 + 4 high; one more frame on the left for the third axis.
    const Scdr& node = LayOut(Characters({2, 3, 4}, u"abcdefghijklmnopqrstuvwx"));
    EXPECT_EQ(node.records.count, 6);
    EXPECT_EQ(RowText(node, 4), u"qrst");
    EXPECT_EQ(ShownRows(node), 3);
    ExpectSize(node, (36 + 18 + 4) + 4 + 4 + 10, (52 + 18 + 4) + 4 + 10);
}

TEST_F(Layout, SizesEmptyTexts)
{
    // Without text: padding, edges and margins; the matrices keep room for their bars.
    const Scdr& node = LayOut(Vec(Word(u""), Characters({0, 3}, u""), Characters({3, 0}, u"")));
    ExpectSize(Item(node, 0), 22, 38);
    ExpectSize(Item(node, 1), 34 + 18 + 18, 34 + 18 + 18);
    ExpectSize(Item(node, 2), 34 + 18 + 18, 52 + 18 + 18);
    ExpectSize(node, 17 + 65 + 65 + 5 + 14, 88 + 14);
}

TEST_F(Layout, SurvivesEmptyArraysWithAbsurdAxes)
{
    const std::int64_t huge = std::int64_t{1} << 40;
    const Scdr& node = LayOut(Characters({0, huge, huge}, u""));
    EXPECT_EQ(node.height, 268 + 14);
    EXPECT_EQ(ShownRows(node), 0);
    EXPECT_EQ(FirstShownRow(node), 0);
}

TEST_F(Layout, PutsItemsOfAVectorInARowThatSharesMargins)
{
    const Scdr& node = LayOut(Vec(Word(u"abc"), Word(u"d"), Word(u"ef\ng")));
    ExpectSize(node, (41 + 25 + 33 + 5) + 14, 54 + 14);
    ExpectOrigin(Item(node, 0), 7, 7);
    ExpectOrigin(Item(node, 1), 7 + 41, 7);
    ExpectOrigin(Item(node, 2), 7 + 41 + 25, 7);
    ExpectSize(Item(node, 1), 30, 38);
    ExpectSize(Item(node, 2), 38, 54);
}

TEST_F(Layout, LaysAnEmptyVectorOutAroundItsPrototype)
{
    const Scdr& node = LayOut(NestedOf({0}, Word(u"ab")));
    ExpectSize(node, 38 + 14, 38 + 14);
    ExpectOrigin(Item(node, 0), 7, 7);
}

TEST_F(Layout, LaysAnEmptyArrayOfHighRankOutInOneRow)
{
    // Rank 4: two extra frames of 4 pixels on the left, in the width only.
    const Scdr& node = LayOut(NestedOf({2, 0, 3, 4}, Word(u"ab")));
    ExpectSize(node, 38 + 14 + 8, 38 + 14);
    ExpectOrigin(Item(node, 0), 7 + 8, 7);
}

TEST_F(Layout, EnclosedScalarsNest)
{
    const Scdr& node = LayOut(NestedOf({}, NestedOf({}, Word(u"abc"))));
    ExpectSize(node, 46 + 28, 38 + 28);
    ExpectOrigin(Item(Item(node, 0), 0), 14, 14);
}

TEST_F(Layout, GivesAMatrixOfBoxesAGrid)
{
    const Scdr& node = LayOut(NestedOf({2, 2}, Word(u"abc"), Word(u"d"), Word(u"e"), Word(u"f\ng")));
    EXPECT_EQ(node.extra->columnWidths[0], 46);
    EXPECT_EQ(node.extra->columnWidths[1], 30);
    EXPECT_EQ(node.extra->rowHeights[0], 38);
    EXPECT_EQ(node.extra->rowHeights[1], 54);
    ExpectSize(node, (41 + 25 + 5) + 14, (33 + 49 + 5) + 14);
    ExpectOrigin(Item(node, 0), 7, 7);
    ExpectOrigin(Item(node, 1), 7 + 41, 7);
    ExpectOrigin(Item(node, 2), 7, 7 + 33);
    ExpectOrigin(Item(node, 3), 7 + 41, 7 + 33);
    ExpectSize(Item(node, 2), 30, 38); // keeps its own size in its larger cell
}

TEST_F(Layout, AllPlanesShareOneGrid)
{
    ScdrPtr tree = Filled({2, 3, 4});
    Replace(*tree, 12 + 5, Word(u"abc")); // plane 1, row 1, column 1
    Replace(*tree, 0, Word(u"a\nb"));
    const Scdr& node = LayOut(std::move(tree));
    EXPECT_EQ(node.extra->columnWidths[1], 46);
    EXPECT_EQ(node.extra->rowHeights[0], 54);
    for (std::int64_t i = 0; i < 12; ++i) {
        EXPECT_EQ(OriginOf(Item(node, i)).x, OriginOf(Item(node, i + 12)).x);
        EXPECT_EQ(OriginOf(Item(node, i)).y, OriginOf(Item(node, i + 12)).y);
    }
    ExpectOrigin(Item(node, 0), 7 + 4, 7);
    // Columns 25 + 41 + 25 + 25, rows 49 + 33 + 33; the third axis adds two edges to the width only.
    ExpectSize(node, 116 + 5 + 14 + 4, 115 + 5 + 14);
}

TEST_F(Layout, AMatrixOfTheSameGridIsNarrowerByOneFrame)
{
    LayOut(Filled({3, 4}));
    const std::int64_t matrixWidth = view.root->width;
    const std::int64_t matrixHeight = view.root->height;
    FreeScdr(&view.root);
    const Scdr& cube = LayOut(Filled({2, 3, 4}));
    EXPECT_EQ(cube.width, matrixWidth + 2 * 2);
    EXPECT_EQ(cube.height, matrixHeight);
}

TEST_F(Layout, RowsAndColumnsOfOneItemAreGridsToo)
{
    const Scdr& node = LayOut(NestedOf({1, 1}, NestedOf({1, 1}, Word(u"abc"))));
    ExpectSize(node, 46 + 28, 38 + 28);
    ExpectOrigin(Item(Item(node, 0), 0), 14, 14);
}

TEST_F(Layout, FormatsNumbers)
{
    const Scdr& node =
        LayOut(Vec(Integers({2, 2}, {1, 22, 333, 4}), Integers({}, {7}), Integers({3}, {1, 2, 3})));
    EXPECT_EQ(Item(node, 0).records.count, 2);
    EXPECT_EQ(RowText(Item(node, 1), 0), u"7");
    EXPECT_EQ(RowText(Item(node, 2), 0), u"1 2 3");
}

TEST_F(Layout, BorrowsTheTextOfCharacterArrays)
{
    const Scdr& node = LayOut(Characters({2, 20}, std::u16string(40, u'x')));
    EXPECT_EQ(GetRecord(node.records, 1).text, static_cast<const char16_t*>(node.data) + 20);
}

TEST_F(Layout, DecimalRowsComeFromTheInterpreter)
{
    onFormat = [this](const Scdr&) { return Characters({2, 3}, u"1.52.5"); };
    const Scdr& node = LayOut(Allocate(TypeDecimal, {2, 1}));
    EXPECT_EQ(node.records.count, 2);
    EXPECT_EQ(RowText(node, 1), u"2.5");
}

TEST_F(Layout, ADecimalScalarIsOneRow)
{
    onFormat = [this](const Scdr&) { return Word(u"1.25"); };
    const Scdr& node = LayOut(Allocate(TypeDecimal, {}));
    EXPECT_EQ(node.records.count, 1);
    EXPECT_EQ(RowText(node, 0), u"1.25");
}

TEST_F(Layout, ADecimalTheInterpreterCannotFormatFailsFormatting)
{
    ScdrPtr tree = Vec(Word(u"a"), Allocate(TypeDecimal, {2}));
    EXPECT_NE(FormatScdr(view, *tree), 0);
    EXPECT_EQ(log.statuses.back(), (StatusText{106, -1, true}));
    EXPECT_EQ(log.Count("notify 5"), 0);
    onFormat = [this](const Scdr&) {
        environment.ErrorCode = VTERROR_CODE::WsFull;
        return ScdrPtr();
    };
    log.Clear();
    EXPECT_NE(FormatScdr(view, *tree), 0);
    EXPECT_EQ(log.Count("notify 5"), 1);
    EXPECT_EQ(log.Count("status 106"), 0);
    environment.ErrorCode = VTERROR_CODE::NoError;
    onFormat = [this](const Scdr&) { return Integers({2}, {1, 2}); };
    EXPECT_NE(FormatScdr(view, *tree), 0);
    EXPECT_EQ(environment.ErrorCode, VTERROR_CODE::NonceError);
}

TEST_F(Layout, FormattingTwiceKeepsRecords)
{
    Scdr& node = LayOut(Word(u"abc"));
    Type(node, 0, u"typed");
    EXPECT_EQ(FormatScdr(view, node), 0);
    EXPECT_EQ(RowText(node, 0), u"typed");
}

TEST_F(Layout, TheFormattingFlagIsUpOnlyWhileFormatting)
{
    std::vector<bool> seen;
    log.onStatus = [&](const StatusText&) { seen.push_back((view.flags & ViewFormatting) != 0); };
    ScdrPtr tree = Word(u"abc");
    EXPECT_EQ(FormatScdr(view, *tree), 0);
    ASSERT_FALSE(seen.empty());
    EXPECT_TRUE(seen.front());
    EXPECT_EQ(view.flags & ViewFormatting, 0);
}

TEST_F(Layout, ReportsFormattingWhenThePercentageGrows)
{
    ScdrPtr tree = Filled({250});
    EXPECT_EQ(FormatScdr(view, *tree), 0);
    EXPECT_EQ(log.statuses.front(), (StatusText{129, -1, false}));
    const std::vector<std::int32_t> percents = log.Percents(130);
    ASSERT_EQ(percents.size(), 100u);
    for (std::int32_t i = 0; i < 100; ++i)
        EXPECT_EQ(percents[static_cast<std::size_t>(i)], i + 1);
}

TEST_F(Layout, CountsRowsOfMatricesInTheProgress)
{
    EXPECT_EQ(
        CountSimpleScdrRows(*Vec(Word(u"a"), Characters({2, 3, 1}, u"abcdef"), Characters({0, 5}, u""))), 7);
}

TEST_F(Layout, AQuietViewSaysNothing)
{
    view.flags |= ViewQuiet;
    view.root = view.top = Filled({250}).release();
    EXPECT_EQ(FormatScdr(view, *view.root), 0);
    EXPECT_EQ(CalculateScdrSizes(view), 0);
    EXPECT_TRUE(log.statuses.empty());
}

TEST_F(Layout, SizingAnnouncesItself)
{
    LayOut(Word(u"a"));
    EXPECT_EQ(log.Count("status 131"), 1);
}

TEST_F(Layout, ReportsTheWidthsOfOneLongArray)
{
    LayOut(Characters({200000, 1}, std::u16string(200000, u'x')));
    const std::vector<std::int32_t> percents = log.Percents(135);
    ASSERT_EQ(percents.size(), 100u);
    EXPECT_EQ(percents.back(), 100);
}

TEST_F(Layout, ProgressShowsOnlyGrownPercentages)
{
    LayoutProgress progress;
    progress.total = 1000;
    progress.stringId = 132;
    for (int i = 0; i < 9; ++i)
        AddProgress(view, progress, 1);
    EXPECT_TRUE(log.statuses.empty());
    AddProgress(view, progress, 1);
    AddProgress(view, progress, 9);
    EXPECT_EQ(log.Percents(132), (std::vector<std::int32_t>{1}));
    AddProgress(view, progress, 500);
    EXPECT_EQ(log.Percents(132), (std::vector<std::int32_t>{1, 51}));
}

TEST_F(Layout, AFormattedArrayAddsNothingToTheProgress)
{
    LayoutProgress progress;
    progress.total = 1;
    progress.stringId = 132;
    ScdrPtr node = Word(u"a");
    node->records.flags |= RecordsFormatted;
    UpdateProgressReport(view, progress, *node);
    EXPECT_TRUE(log.statuses.empty());
    node->records.flags = 0;
    UpdateProgressReport(view, progress, *node);
    EXPECT_EQ(log.Percents(132), (std::vector<std::int32_t>{100}));
}

TEST_F(Layout, AnInterruptStopsFormatting)
{
    ScdrPtr tree = Filled({1000});
    log.interrupt = true;
    log.onStatus = [](const StatusText& status) {
        if (status.id == 130 && status.percent == 5)
            std::this_thread::sleep_for(std::chrono::milliseconds(130));
    };
    EXPECT_NE(FormatScdr(view, *tree), 0);
    EXPECT_EQ(log.polls, 1);
    EXPECT_EQ(log.statuses.back(), (StatusText{106, -1, true}));
    EXPECT_EQ(environment.ErrorCode, VTERROR_CODE::NoError);
    EXPECT_GT(Item(*tree, 0).records.count, 0);
    EXPECT_EQ(Item(*tree, 999).records.count, 0);
    // What is there is kept, what is missing is made.
    log.interrupt = false;
    EXPECT_EQ(FormatScdr(view, *tree), 0);
    EXPECT_EQ(Item(*tree, 999).records.count, 1);
}

TEST_F(Layout, AnInterruptStopsANumberArrayInTheMiddle)
{
    // Large enough to take a tenth of a second on any machine, found by trying.
    log.interrupt = true;
    for (std::int64_t rows = 100000; log.polls == 0; rows *= 4) {
        ScdrPtr tree = Allocate(TypeReal, {rows, 4});
        auto* values = static_cast<double*>(WritableData(*tree));
        for (std::int64_t i = 0; i < rows * 4; ++i)
            values[i] = 1.0 / static_cast<double>(i + 3);
        const bool stopped = FormatScdr(view, *tree) != 0;
        EXPECT_EQ(stopped, log.polls > 0);
        EXPECT_EQ(tree->records.count, stopped ? 0 : rows);
    }
    EXPECT_EQ(log.statuses.back(), (StatusText{106, -1, true}));
    EXPECT_EQ(environment.ErrorCode, VTERROR_CODE::NoError);
}

TEST_F(Layout, PollsOnlyEveryTenthOfASecond)
{
    LayOut(Filled({20000}));
    EXPECT_LE(log.polls, 5); // far less than one an item, however slow the machine is
}

TEST_F(Layout, UsesLargerMarginsWhenSmallOnesAreOff)
{
    Scdr& node = LayOut(Vec(Word(u"abc"), Word(u"d")));
    EXPECT_EQ(SetViewOption(view, OptionSmallMargins, false), std::uint32_t{OptionEffectLayOutAgain});
    EXPECT_EQ(view.metrics.margin, 10);
    EXPECT_EQ(LayOutAgain(view, false), 0);
    ExpectSize(Item(node, 0), 46 + 10, 38 + 10);
    ExpectOrigin(Item(node, 1), 12 + 46, 12);
    ExpectSize(node, (46 + 30 + 10) + 24, 48 + 24);
}

TEST_F(Layout, NothingIsDoneWithoutATree)
{
    EXPECT_EQ(CalculateScdrSizes(view), 0);
    EXPECT_TRUE(log.calls.empty());
}

TEST_F(Layout, MeasuresARecordOnlyOnce)
{
    static int measured;
    measured = 0;
    view.edit.widths.Reset(
        [](void*, char16_t first, char16_t last, std::int32_t* widths) {
            ++measured;
            for (std::int32_t c = first; c <= last; ++c)
                *widths++ = 8;
        },
        nullptr, 0);
    Scdr& node = LayOut(Vec(Word(u"a"), Word(u"b")));
    EXPECT_EQ(measured, 2);
    view.edit.widths.Reset(MeasureForTest, nullptr, 0);
    InvalidateDescendentsOriginsAndSizes(node);
    EXPECT_EQ(CalculateScdrSizes(view), 0);
    EXPECT_EQ(measured, 2);
}

TEST_F(Layout, DeepNestingFitsTheStack)
{
    ScdrPtr tree = Word(u"abc");
    for (int depth = 0; depth < 3000; ++depth)
        tree = depth % 2 == 0 ? NestedOf({1}, std::move(tree)) : NestedOf({1, 1}, std::move(tree));
    const Scdr& node = LayOut(std::move(tree));
    EXPECT_EQ(node.width, 46 + 3000 * 14);
    EXPECT_EQ(node.height, 38 + 3000 * 14);
}

} // namespace
} // namespace vantrel
