#include "frame/options.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vantrel {
namespace {

TEST(FrameOptions, StandInTheOrderInWhichTheyAreStored)
{
    std::vector<std::u16string> names;
    for (const FrameOptionEntry& option : FrameOptions())
        names.emplace_back(option.name);
    EXPECT_EQ(names, (std::vector<std::u16string>{u"Confirm close", u"Find", u"Size to definition on open",
                                                  u"Use small icons", u"Status bar", u"Tool bar",
                                                  u"Always on top"}));
}

TEST(FrameOptions, HaveOneBitEachInOrder)
{
    std::uint32_t bit = 1;
    for (const FrameOptionEntry& option : FrameOptions()) {
        EXPECT_EQ(option.bit, bit);
        bit <<= 1;
    }
}

TEST(FrameOptions, DefaultsAreThoseOfAFirstStart)
{
    std::uint32_t defaults = 0;
    for (const FrameOptionEntry& option : FrameOptions()) {
        if (option.defaultValue) defaults |= option.bit;
    }
    EXPECT_EQ(defaults, static_cast<std::uint32_t>(FrameConfirmClose | FrameSmallIcons | FrameStatusBar |
                                                   FrameToolBar));
}

} // namespace
} // namespace vantrel
