#include "frame/parts.h"

#include <gtest/gtest.h>

#include "frame/contrast.h"

namespace vantrel {
namespace {

TEST(FrameParts, GoRoundInTheOrderInWhichTheyStand)
{
    EXPECT_EQ(NextFramePart(FramePart::Array, false, true, true), FramePart::FindBar);
    EXPECT_EQ(NextFramePart(FramePart::FindBar, false, true, true), FramePart::NameBox);
    EXPECT_EQ(NextFramePart(FramePart::NameBox, false, true, true), FramePart::Array);
    EXPECT_EQ(NextFramePart(FramePart::Array, true, true, true), FramePart::NameBox);
    EXPECT_EQ(NextFramePart(FramePart::NameBox, true, true, true), FramePart::FindBar);
}

TEST(FrameParts, WhatIsNotShownIsLeftOut)
{
    EXPECT_EQ(NextFramePart(FramePart::Array, false, false, true), FramePart::NameBox);
    EXPECT_EQ(NextFramePart(FramePart::NameBox, true, false, true), FramePart::Array);
    EXPECT_EQ(NextFramePart(FramePart::FindBar, false, true, false), FramePart::Array);
    EXPECT_EQ(NextFramePart(FramePart::Array, false, false, false), FramePart::Array);
    EXPECT_EQ(NextFramePart(FramePart::Array, true, false, false), FramePart::Array);
}

TEST(FrameParts, GreenIsBrighterThanRedAndRedThanBlue)
{
    EXPECT_LT(Brightness(0xFF0000), Brightness(0x0000FF));
    EXPECT_LT(Brightness(0x0000FF), Brightness(0x00FF00));
    EXPECT_EQ(Brightness(0x000000), 0);
    EXPECT_EQ(Brightness(0xFFFFFF), 255000);
}

} // namespace
} // namespace vantrel
