#include "tools/thumb.h"

#include <gtest/gtest.h>

#include <limits>

namespace vantrel {
namespace {

TEST(Thumb, IsToTheTrackAsThePageToTheData)
{
    const Thumb thumb = PlaceThumb(100, 8, 400, 100, 0);
    EXPECT_EQ(thumb.start, 0);
    EXPECT_EQ(thumb.length, 25);
}

TEST(Thumb, TouchesTheEndAtTheLastPosition)
{
    const Thumb thumb = PlaceThumb(100, 8, 400, 100, 300);
    EXPECT_EQ(thumb.start + thumb.length, 100);
}

TEST(Thumb, StandsInTheMiddleHalfWay)
{
    EXPECT_EQ(PlaceThumb(100, 8, 400, 100, 150).start, 38);
}

TEST(Thumb, StaysLongEnoughToBeSeen)
{
    const Thumb thumb = PlaceThumb(100, 8, 1'000'000'000, 100, 1'000'000'000);
    EXPECT_EQ(thumb.length, 8);
    EXPECT_EQ(thumb.start, 92);
}

TEST(Thumb, IsAbsentWhenEverythingIsInSight)
{
    EXPECT_EQ(PlaceThumb(100, 8, 100, 100, 0).length, 0);
    EXPECT_EQ(PlaceThumb(100, 8, 50, 100, 0).length, 0);
    EXPECT_EQ(PlaceThumb(100, 8, 0, 0, 0).length, 0);
}

TEST(Thumb, IsAbsentWhenTheTrackHasNoRoom)
{
    EXPECT_EQ(PlaceThumb(7, 8, 400, 100, 0).length, 0);
    EXPECT_EQ(PlaceThumb(-5, 8, 400, 100, 0).length, 0);
}

TEST(Thumb, NeverLeavesTheTrack)
{
    const Thumb before = PlaceThumb(100, 8, 400, 100, -50);
    EXPECT_EQ(before.start, 0);
    const Thumb behind = PlaceThumb(100, 8, 400, 100, 5000);
    EXPECT_EQ(behind.start + behind.length, 100);
}

TEST(Thumb, HoldsForTheLargestSizes)
{
    constexpr std::int64_t Most = std::numeric_limits<std::int64_t>::max();
    const Thumb thumb = PlaceThumb(200, 8, Most, Most / 2, Most);
    EXPECT_EQ(thumb.length, 100);
    EXPECT_EQ(thumb.start, 100);
}

} // namespace
} // namespace vantrel
