#include "frame/contrast.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

TEST(Contrast, GreenIsBrighterThanRedAndRedThanBlue)
{
    EXPECT_LT(Brightness(0xFF0000), Brightness(0x0000FF));
    EXPECT_LT(Brightness(0x0000FF), Brightness(0x00FF00));
    EXPECT_EQ(Brightness(0x000000), 0);
    EXPECT_EQ(Brightness(0xFFFFFF), 255000);
}

} // namespace
} // namespace vantrel
