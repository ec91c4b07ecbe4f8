// Which commands the selection allows.
#include "view/menu_state.h"

#include "action_fixture.h"

namespace vantrel {
namespace {

class MenuState : public ActionTest {
protected:
    // Of the commands first .. last, those that are enabled.
    std::vector<std::int32_t> EnabledOf(std::int32_t first, std::int32_t last)
    {
        std::vector<std::int32_t> enabled;
        for (std::int32_t command = first; command <= last; ++command) {
            if (IsKnown(command) && Enabled(command)) enabled.push_back(command);
        }
        return enabled;
    }
    static bool IsKnown(std::int32_t command)
    {
        const CommandList list = CommandsWithState();
        return std::find(list.ids, list.ids + list.count, command) != list.ids + list.count;
    }
    void ShowItem(ScdrPtr item)
    {
        Show(Vec(std::move(item), Word(u"zz")));
        SelectAt({0});
    }
};

using Ids = std::vector<std::int32_t>;

TEST_F(MenuState, EveryCommandHasAState)
{
    const Ids known = {4201, 4202, 4203, 4204, 4205, 4207, 4208, 4601, 4602, 4603, 4604,
                       4605, 4606, 4607, 4608, 4609, 4610, 4611, 4612, 4613, 4614, 4615,
                       4616, 4617, 4618, 4619, 4621, 4628, 4629, 4701, 4702, 4703, 4704,
                       4705, 4706, 4901, 4902, 4903, 4904, 4905, 4906, 4907, 4908};
    const CommandList list = CommandsWithState();
    EXPECT_EQ(Ids(list.ids, list.ids + list.count), known);
}

TEST_F(MenuState, WithoutATreeNothingIsEnabledButWhatIsNotTheViews)
{
    EXPECT_TRUE(EnabledOf(4201, 4908).empty());
    EXPECT_TRUE(Enabled(4105));
    EXPECT_TRUE(Enabled(4308));
}

TEST_F(MenuState, CutNeedsAnArrayThatCanLoseAnItem)
{
    Show(Vec(Word(u"a"), NestedOf({}, Word(u"b")), NestedOf({1, 2}, Word(u"c"), Word(u"d")),
             NestedOf({2, 1}, Word(u"e"), Word(u"f")), Filled({2, 2}), Filled({1, 1, 2}),
             Empty({0}, Word(u"p"))));
    EXPECT_FALSE(Enabled(CommandCutArray)); // the whole array
    EXPECT_TRUE(Enabled(CommandCopyArray));
    SelectAt({0});
    EXPECT_TRUE(Enabled(CommandCutArray));
    SelectAt({1, 0});
    EXPECT_TRUE(Enabled(CommandCutArray));
    SelectAt({2, 1});
    EXPECT_TRUE(Enabled(CommandCutArray));
    SelectAt({3, 0});
    EXPECT_TRUE(Enabled(CommandCutArray));
    SelectAt({4, 0});
    EXPECT_FALSE(Enabled(CommandCutArray));
    SelectAt({5, 0});
    EXPECT_FALSE(Enabled(CommandCutArray));
    SelectAt({6, 0});
    EXPECT_FALSE(Enabled(CommandCutArray));
}

TEST_F(MenuState, PasteNeedsAUsableClipboardAndAPlaceForValues)
{
    Show(Vec(Word(u"a"), Empty({0}, Vec(Word(u"p")))));
    SelectAt({0});
    EXPECT_FALSE(Enabled(CommandPasteArray));
    clipboard = Word(u"x");
    EXPECT_TRUE(Enabled(CommandPasteArray));
    SelectAt({1, 0, 0});
    EXPECT_FALSE(Enabled(CommandPasteArray));
    Select(*view.root);
    EXPECT_TRUE(Enabled(CommandPasteArray));
}

TEST_F(MenuState, UndoAndRedoFollowTheirStacks)
{
    Show(Word(u"abc"));
    EXPECT_EQ(EnabledOf(4204, 4208), (Ids{4207}));
    Run(CommandReverse);
    EXPECT_EQ(EnabledOf(4204, 4208), (Ids{4204, 4207, 4208}));
    Run(CommandUndoArray);
    EXPECT_EQ(EnabledOf(4204, 4208), (Ids{4205, 4207, 4208}));
    Run(CommandEmptyUndoBuffer);
    EXPECT_EQ(EnabledOf(4204, 4208), (Ids{4207}));
}

TEST_F(MenuState, ActionsOnScalars)
{
    ShowItem(Scalar(1));
    EXPECT_EQ(EnabledOf(4607, 4629), (Ids{4607, 4608, 4609, 4610, 4612, 4613, 4629}));
    ShowItem(Letter(u'a'));
    EXPECT_EQ(EnabledOf(4607, 4629), (Ids{4608, 4609, 4610, 4612, 4613, 4629}));
    ShowItem(NestedOf({}, Word(u"ab")));
    EXPECT_EQ(EnabledOf(4607, 4629), (Ids{4607, 4608, 4609, 4610, 4611, 4612, 4613, 4629}));
}

TEST_F(MenuState, ActionsOnVectors)
{
    ShowItem(Integers({2}, {1, 2}));
    EXPECT_EQ(EnabledOf(4607, 4629), (Ids{4607, 4608, 4610, 4612, 4614, 4615, 4617, 4618, 4619, 4629}));
    ShowItem(Word(u"ab"));
    EXPECT_EQ(EnabledOf(4607, 4629), (Ids{4608, 4610, 4612, 4614, 4615, 4617, 4618, 4619, 4629}));
    ShowItem(Vec(Word(u"ab")));
    EXPECT_EQ(EnabledOf(4607, 4629), (Ids{4607, 4608, 4610, 4611, 4612, 4613, 4614, 4615, 4619, 4629}));
    ShowItem(test::Complexes(&context, {1}, {1, 2}));
    EXPECT_EQ(EnabledOf(4617, 4618), Ids{});
}

TEST_F(MenuState, ActionsOnHigherRanks)
{
    ShowItem(Integers({1, 2}, {1, 2}));
    EXPECT_EQ(EnabledOf(4607, 4629),
              (Ids{4607, 4608, 4609, 4610, 4612, 4613, 4614, 4615, 4616, 4617, 4618, 4621}));
    ShowItem(Integers({1, 1, 2}, {1, 2}));
    EXPECT_EQ(EnabledOf(4607, 4629),
              (Ids{4607, 4608, 4609, 4610, 4612, 4613, 4614, 4615, 4616, 4617, 4618, 4621, 4628}));
}

TEST_F(MenuState, InsertsFollowTheArrayAround)
{
    Show(Vec(Word(u"a"), Filled({2, 2}), Filled({1, 1, 2}), NestedOf({}, Word(u"s"))));
    EXPECT_TRUE(EnabledOf(4701, 4706).empty());
    SelectAt({0});
    EXPECT_EQ(EnabledOf(4701, 4706), (Ids{4701, 4702}));
    SelectAt({1, 3});
    EXPECT_EQ(EnabledOf(4701, 4706), (Ids{4703, 4704, 4705, 4706}));
    SelectAt({2, 0});
    EXPECT_TRUE(EnabledOf(4701, 4706).empty());
    SelectAt({3, 0});
    EXPECT_TRUE(EnabledOf(4701, 4706).empty());
}

TEST_F(MenuState, StatesOfBoxes)
{
    Show(Vec(Word(u"a"), Vec(Word(u"b"))));
    EXPECT_TRUE(EnabledOf(4604, 4606).empty()); // the displayed top
    SelectAt({1});
    EXPECT_EQ(EnabledOf(4604, 4606), (Ids{4605, 4606}));
    ASSERT_EQ(MinimizeScdr(view), 0);
    EXPECT_EQ(EnabledOf(4604, 4606), (Ids{4604, 4606}));
    ASSERT_EQ(RestoreScdr(view), 0);
    ASSERT_EQ(MaximizeScdr(view), 0);
    EXPECT_EQ(EnabledOf(4604, 4606), (Ids{4604}));
    SelectAt({1, 0});
    EXPECT_EQ(EnabledOf(4604, 4606), (Ids{4605, 4606}));
}

TEST_F(MenuState, AMaximisedRootAllowsMinimize)
{
    Show(Word(u"a"));
    EXPECT_EQ(EnabledOf(4604, 4606), (Ids{4604, 4605}));
}

TEST_F(MenuState, SizesAreResetWhereTheUserChangedThem)
{
    ShowItem(Word(u"a"));
    EXPECT_EQ(EnabledOf(4601, 4603), (Ids{4601, 4603}));
    At({0}).records.flags |= RecordsResizedByUser;
    EXPECT_EQ(EnabledOf(4601, 4603), (Ids{4601, 4602, 4603}));
}

TEST_F(MenuState, AFieldsNameKeepsItsTextAndShape)
{
    ShowItem(Vec(Word(u"ab")));
    clipboard = Word(u"x");
    At({0}).Flags |= FlagKeptSize;
    EXPECT_EQ(EnabledOf(4607, 4629), (Ids{4607}));
    EXPECT_FALSE(Enabled(CommandPasteArray));
    EXPECT_TRUE(Enabled(CommandCopyArray));
}

TEST_F(MenuState, AStructureKeepsItsFields)
{
    ShowItem(Filled({2, 2}));
    At({0}).Flags |= FlagStructure;
    EXPECT_EQ(EnabledOf(4607, 4629), (Ids{4607, 4608, 4609, 4611, 4612, 4613}));
}

TEST_F(MenuState, PicturesNeedAHostThatDraws)
{
    Show(Word(u"a"));
    EXPECT_TRUE(EnabledOf(4901, 4908).empty());
    environment.Operations.Graphics = [](EditContext*, const Scdr*, std::int32_t) {};
    EXPECT_EQ(EnabledOf(4901, 4908), (Ids{4901, 4902, 4903, 4904, 4905, 4906, 4907, 4908}));
}

} // namespace
} // namespace vantrel
