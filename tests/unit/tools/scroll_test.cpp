#include "tools/scroll.h"

#include <gtest/gtest.h>

#include <vector>

namespace vantrel {
namespace {

struct Recorder {
    std::vector<ScrollAxis> updates;
    std::vector<std::uint32_t> masks;
    int invalidations = 0;
};
Recorder g_recorder;

const ScrollEffects recordingEffects = {
    [](ScrollRecord& record, ScrollAxis axis) {
        g_recorder.updates.push_back(axis);
        g_recorder.masks.push_back(axis == ScrollAxis::Horizontal ? record.horizontal.mask
                                                                  : record.vertical.mask);
    },
    [](ScrollRecord&) { ++g_recorder.invalidations; },
};

class Scroll : public ::testing::Test {
protected:
    Scroll()
    {
        g_recorder = {};
        record.effects = &recordingEffects;
        record.horizontalShown = record.verticalShown = true;
        record.horizontal.dataSize = 1000;
        record.horizontal.pageSize = 100;
        record.vertical.dataSize = 2000;
        record.vertical.pageSize = 300;
    }
    ScrollRecord record;
};

TEST_F(Scroll, MovesByDeltas)
{
    ChangeScrollPositions(record, 7, 11);
    EXPECT_EQ(record.horizontal.position, 7);
    EXPECT_EQ(record.vertical.position, 11);
    ChangeScrollPositions(record, -3, -1);
    EXPECT_EQ(record.horizontal.position, 4);
    EXPECT_EQ(record.vertical.position, 10);
}

TEST_F(Scroll, StopsAtDataSizeMinusPage)
{
    ChangeScrollPositions(record, 100000, 100000);
    EXPECT_EQ(record.horizontal.position, 900);
    EXPECT_EQ(record.vertical.position, 1700);
}

TEST_F(Scroll, StopsAtMinimum)
{
    record.vertical.minimum = 5;
    ChangeScrollPositions(record, -1, -1);
    EXPECT_EQ(record.horizontal.position, 0);
    EXPECT_EQ(record.vertical.position, 5);
}

TEST_F(Scroll, StaysAtMinimumWhenThePageIsLargerThanTheData)
{
    record.horizontal.pageSize = 5000;
    ChangeScrollPositions(record, 10, 0);
    EXPECT_EQ(record.horizontal.position, 0);
}

TEST_F(Scroll, SpecialDeltasScrollPagesAndToTheEnds)
{
    ChangeScrollPositions(record, ScrollPageRight, ScrollPageDown);
    EXPECT_EQ(record.horizontal.position, 100);
    EXPECT_EQ(record.vertical.position, 300);
    ChangeScrollPositions(record, ScrollPageLeft, ScrollPageUp);
    EXPECT_EQ(record.horizontal.position, 0);
    EXPECT_EQ(record.vertical.position, 0);
    ChangeScrollPositions(record, ScrollToEnd, ScrollToEnd);
    EXPECT_EQ(record.horizontal.position, 900);
    EXPECT_EQ(record.vertical.position, 1700);
    ChangeScrollPositions(record, ScrollToStart, ScrollToStart);
    EXPECT_EQ(record.horizontal.position, 0);
    EXPECT_EQ(record.vertical.position, 0);
}

TEST_F(Scroll, HugePositionsDoNotOverflow)
{
    record.vertical.dataSize = INT64_MAX;
    record.vertical.pageSize = 10;
    ChangeScrollPositions(record, 0, ScrollToEnd);
    EXPECT_EQ(record.vertical.position, INT64_MAX - 10);
    ChangeScrollPositions(record, 0, INT64_MAX / 2);
    EXPECT_EQ(record.vertical.position, INT64_MAX - 10);
    ChangeScrollPositions(record, 0, INT64_MIN);
    EXPECT_EQ(record.vertical.position, 0);
}

TEST_F(Scroll, UpdatesOnlyBarsWhosePositionChanged)
{
    ChangeScrollPositions(record, 0, 5);
    EXPECT_EQ(g_recorder.updates, std::vector<ScrollAxis>{ScrollAxis::Vertical});
    EXPECT_EQ(g_recorder.masks, std::vector<std::uint32_t>{0x04});
    EXPECT_EQ(g_recorder.invalidations, 1);
    ChangeScrollPositions(record, -1, 0);
    EXPECT_EQ(g_recorder.updates.size(), 1u);
    EXPECT_EQ(g_recorder.invalidations, 1);
}

TEST_F(Scroll, HiddenWindowBarIsNotUpdatedButTheWindowIsRepainted)
{
    record.horizontalShown = false;
    ChangeScrollPositions(record, 5, 0);
    EXPECT_TRUE(g_recorder.updates.empty());
    EXPECT_EQ(g_recorder.invalidations, 1);
}

TEST_F(Scroll, BoxBarsAreUpdatedThoughNotShown)
{
    record.kind = ScrollKind::BoxBars;
    record.horizontalShown = record.verticalShown = false;
    ChangeScrollPositions(record, 5, 5);
    EXPECT_EQ(g_recorder.updates.size(), 2u);
}

TEST_F(Scroll, WorksWithoutEffects)
{
    record.effects = nullptr;
    ChangeScrollPositions(record, 5, 5);
    SetScrollBarsDataSize(record, 1, 1);
    EXPECT_EQ(record.horizontal.position, 5);
    const ScrollEffects none = {};
    record.effects = &none;
    ChangeScrollPositions(record, -1, -1);
    SetScrollBarsWindowSize(record, 1, 1);
    EXPECT_EQ(record.horizontal.position, 0);
}

TEST_F(Scroll, AdjustBringsTheLastPageToTheEnd)
{
    ChangeScrollPositions(record, 900, 1700);
    SetScrollBarsWindowSize(record, 400, 300);
    AdjustScrollPositions(record);
    EXPECT_EQ(record.horizontal.position, 600);
    EXPECT_EQ(record.vertical.position, 1700);
}

TEST_F(Scroll, AdjustNeverGoesBelowZero)
{
    ChangeScrollPositions(record, 500, 0);
    SetScrollBarsWindowSize(record, 3000, 300);
    AdjustScrollPositions(record);
    EXPECT_EQ(record.horizontal.position, 0);
}

TEST_F(Scroll, SettingSizesKeepsPositionsAndUpdatesShownBars)
{
    ChangeScrollPositions(record, 900, 0);
    g_recorder = {};
    record.verticalShown = false;
    SetScrollBarsDataSize(record, 50, 60);
    EXPECT_EQ(record.horizontal.dataSize, 50);
    EXPECT_EQ(record.vertical.dataSize, 60);
    EXPECT_EQ(record.horizontal.position, 900);
    SetScrollBarsWindowSize(record, 20, 30);
    EXPECT_EQ(record.horizontal.pageSize, 20);
    EXPECT_EQ(record.vertical.pageSize, 30);
    EXPECT_EQ(g_recorder.updates, (std::vector<ScrollAxis>{ScrollAxis::Horizontal, ScrollAxis::Horizontal}));
    EXPECT_EQ(g_recorder.masks, (std::vector<std::uint32_t>{0x01, 0x02}));
}

TEST_F(Scroll, CodesScrollLinesPagesAndToTheTrackPosition)
{
    EXPECT_EQ(ScrollCodeDelta(0, ScrollAxis::Vertical, 10, 99), -1);
    EXPECT_EQ(ScrollCodeDelta(1, ScrollAxis::Vertical, 10, 99), 1);
    EXPECT_EQ(ScrollCodeDelta(2, ScrollAxis::Horizontal, 10, 99), ScrollPageLeft);
    EXPECT_EQ(ScrollCodeDelta(2, ScrollAxis::Vertical, 10, 99), ScrollPageUp);
    EXPECT_EQ(ScrollCodeDelta(3, ScrollAxis::Horizontal, 10, 99), ScrollPageRight);
    EXPECT_EQ(ScrollCodeDelta(3, ScrollAxis::Vertical, 10, 99), ScrollPageDown);
    EXPECT_EQ(ScrollCodeDelta(4, ScrollAxis::Vertical, 10, 99), 89);
    EXPECT_EQ(ScrollCodeDelta(5, ScrollAxis::Vertical, 100, 99), -1);
    for (const std::int32_t code : {6, 7, 8, -1, 100})
        EXPECT_EQ(ScrollCodeDelta(code, ScrollAxis::Vertical, 10, 99), 0);
}

TEST(ScrollPicture, SmallNumbersGoOverAsTheyAre)
{
    const BarPicture picture = PictureOfScroll(0x7FFFFFFF, 123456789, 400);
    EXPECT_EQ(picture.maximum, 0x7FFFFFFF);
    EXPECT_EQ(picture.position, 123456789);
    EXPECT_EQ(picture.page, 400u);
    EXPECT_EQ(PositionFromBar(123456789, 0x7FFFFFFF, 400), 123456789);
}

TEST(ScrollPicture, LargeNumbersAreScaledTo32767)
{
    constexpr std::int64_t size = std::int64_t{1} << 40;
    const BarPicture picture = PictureOfScroll(size, size / 2, 1000);
    EXPECT_EQ(picture.maximum, 32767);
    EXPECT_EQ(picture.position, size / 2 / (size / 32767));
    EXPECT_EQ(picture.page, 1000u);
    EXPECT_EQ(PositionFromBar(100, size, 1000), 100 * (size / 32767));
    EXPECT_EQ(PictureOfScroll(std::int64_t{0x80000000}, 0, 1).maximum, 32767);
}

TEST(ScrollPicture, ThumbAtTheEndReachesExactlyTheEnd)
{
    constexpr std::int64_t size = std::int64_t{1} << 40;
    EXPECT_EQ(PositionFromBar(32768 - 1000, size, 1000), size - 1000 + 1);
    EXPECT_EQ(PositionFromBar(32768 - 100, 32767, 100), 32767 - 100 + 1);
}

TEST(ScrollPicture, LargestNumbersFit)
{
    const BarPicture picture = PictureOfScroll(INT64_MAX, INT64_MAX, INT64_MAX);
    EXPECT_EQ(picture.maximum, 32767);
    EXPECT_LE(picture.position, 32768);
    EXPECT_EQ(picture.page, 0xFFFFFFFFu);
    EXPECT_EQ(PictureOfScroll(10, -5, -1).page, 0u);
}

class Wheel : public ::testing::Test {
protected:
    Wheel() { record.vertical.pageSize = 50; }
    ScrollRecord record;
};

TEST_F(Wheel, ScrollsLinesPerNotch)
{
    EXPECT_EQ(WheelDistance(record, 120, false, 3, 8, 16).dy, -48);
    EXPECT_EQ(WheelDistance(record, 240, false, 3, 8, 16).dy, -96);
    EXPECT_EQ(WheelDistance(record, -120, false, 3, 8, 16).dy, 48);
    EXPECT_EQ(WheelDistance(record, 120, false, 3, 8, 16).dx, 0);
}

TEST_F(Wheel, SmallMovementsDoNothing)
{
    for (const std::int32_t delta : {60, 119, 0, -119}) {
        EXPECT_EQ(WheelDistance(record, delta, false, 3, 8, 16).dy, 0);
        EXPECT_EQ(WheelDistance(record, delta, true, 3, 8, 16).dx, 0);
    }
}

TEST_F(Wheel, ShiftScrollsSidewaysByCharacters)
{
    const WheelScroll distance = WheelDistance(record, -120, true, 3, 8, 16);
    EXPECT_EQ(distance.dx, 24);
    EXPECT_EQ(distance.dy, 0);
}

TEST_F(Wheel, NoLinesMeansNoScrolling)
{
    EXPECT_EQ(WheelDistance(record, 120, false, 0, 8, 16).dy, 0);
}

TEST_F(Wheel, PageScrollAndManyLinesAreLimitedByTheVerticalPage)
{
    EXPECT_EQ(WheelDistance(record, 120, false, -1, 8, 16).dy, -50 * 16);
    EXPECT_EQ(WheelDistance(record, 120, false, 1000, 8, 16).dy, -50 * 16);
    EXPECT_EQ(WheelDistance(record, 120, true, 1000, 8, 16).dx, -50 * 8);
}

TEST_F(Wheel, HugePagesDoNotOverflow)
{
    record.vertical.pageSize = INT64_MAX;
    EXPECT_LT(WheelDistance(record, 1200, false, -1, 8, 16).dy, 0);
    EXPECT_GT(WheelDistance(record, -1200, false, -1, 8, 16).dy, 0);
}

} // namespace
} // namespace vantrel
