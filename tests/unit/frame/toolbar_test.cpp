#include "frame/toolbar.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace vantrel {
namespace {

TEST(ToolBar, HasItsButtonsInOrder)
{
    std::vector<std::int32_t> commands;
    for (const ToolButton& button : ToolButtons()) {
        if (button.command != 0) commands.push_back(button.command);
    }
    EXPECT_EQ(commands, (std::vector<std::int32_t>{4101, 4102, 4108, 4201, 4202, 4203, 4204, 4205, 4206,
                                                   4605, 4604, 4606, 4607, 4608, 4617, 4618, 4629, 4609,
                                                   4613, 4610, 4612, 4611, 4614, 4615, 4616, 4628, 4619,
                                                   4621, 4701, 4702, 4703, 4704, 4705, 4706, 4501}));
}

TEST(ToolBar, HasFortyOneEntriesAndNoTwoSeparatorsInARow)
{
    EXPECT_EQ(ToolButtons().size(), 41u);
    bool separator = true;
    for (const ToolButton& button : ToolButtons()) {
        EXPECT_FALSE(separator && button.command == 0);
        separator = button.command == 0;
    }
    EXPECT_FALSE(separator);
}

TEST(ToolBar, EveryButtonHasATipAndEitherAPictureOfItsOwnOrALabel)
{
    std::set<std::int32_t> pictures;
    std::set<std::int32_t> tips;
    std::set<std::u16string> labels;
    for (const ToolButton& button : ToolButtons()) {
        if (button.command == 0) continue;
        EXPECT_TRUE(tips.insert(button.tip).second);
        EXPECT_TRUE(button.tip >= 200 && button.tip <= 236);
        if (button.label != nullptr) {
            EXPECT_EQ(button.picture, NoPicture);
            labels.insert(button.label);
        } else {
            EXPECT_TRUE(pictures.insert(button.picture).second);
        }
    }
    EXPECT_EQ(labels, (std::set<std::u16string>{u"ABC", u"123", u"eval", u"1st", u",['']"}));
    EXPECT_EQ(*pictures.begin(), 0);
    EXPECT_EQ(*pictures.rbegin(), static_cast<std::int32_t>(pictures.size()) - 1);
}

TEST(ToolBar, LacksWhatTheHostCannotDo)
{
    EXPECT_TRUE(IsToolButtonRemoved(Dialect::Dyalog, 4629));
    EXPECT_TRUE(IsToolButtonRemoved(Dialect::Matlab, 4629));
    EXPECT_TRUE(IsToolButtonRemoved(Dialect::Aplx, 4629));
    EXPECT_FALSE(IsToolButtonRemoved(Dialect::Apl2, 4629));
    EXPECT_TRUE(IsToolButtonRemoved(Dialect::Matlab, 4611));
    EXPECT_TRUE(IsToolButtonRemoved(Dialect::Matlab, 4612));
    EXPECT_FALSE(IsToolButtonRemoved(Dialect::Dyalog, 4612));
    EXPECT_FALSE(IsToolButtonRemoved(Dialect::Matlab, 4101));
}

TEST(ToolBar, PicturesFollowTheResolution)
{
    EXPECT_EQ(ToolPictureSize(true, 96), 16);
    EXPECT_EQ(ToolPictureSize(true, 120), 20);
    EXPECT_EQ(ToolPictureSize(true, 144), 24);
    EXPECT_EQ(ToolPictureSize(true, 192), 32);
    EXPECT_EQ(ToolPictureSize(false, 96), 24);
    EXPECT_EQ(ToolPictureSize(false, 144), 36);
    EXPECT_EQ(ToolPictureSize(false, 192), 48);
}

TEST(ToolBar, BetweenTwoDrawnSizesTheSmallerIsTaken)
{
    EXPECT_EQ(ToolPictureSize(true, 168), 24);
    EXPECT_EQ(ToolPictureSize(true, 48), 16);
    EXPECT_EQ(ToolPictureSize(false, 960), 48);
}

} // namespace
} // namespace vantrel
