#include "frame/parts.h"

#include <gtest/gtest.h>

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

} // namespace
} // namespace vantrel
