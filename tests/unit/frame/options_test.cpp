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

TEST(FrameOptions, AreFoundByTheirCommands)
{
    EXPECT_EQ(FindFrameOption(4301)->bit, FrameToolBar);
    EXPECT_EQ(FindFrameOption(4302)->bit, FrameStatusBar);
    EXPECT_EQ(FindFrameOption(4304)->bit, FrameConfirmClose);
    EXPECT_EQ(FindFrameOption(4305)->bit, FrameSizeOnOpen);
    EXPECT_EQ(FindFrameOption(4306)->bit, FrameAlwaysOnTop);
    EXPECT_EQ(FindFrameOption(4307)->bit, FrameSmallIcons);
    for (const std::int32_t command : {0, 4303, 4308, 4316, 4206})
        EXPECT_EQ(FindFrameOption(command), nullptr);
}

} // namespace
} // namespace vantrel
