#include "view/options.h"

#include <set>

#include "view_fixture.h"

namespace vantrel {
namespace {

class ViewOptionsTest : public ViewTest {};

TEST_F(ViewOptionsTest, TheTableHoldsEveryOptionOnce)
{
    std::set<std::int32_t> ids;
    std::set<std::u16string> names;
    for (std::int32_t i = 0; i < ViewOptionCount; ++i) {
        const ViewOptionRow& row = ViewOptionTable()[i];
        ids.insert(row.id);
        names.insert(row.valueName);
        EXPECT_EQ(row.id, 4308 + i);
        EXPECT_EQ(FindViewOption(row.id), &row);
    }
    EXPECT_EQ(ids.size(), 9u);
    EXPECT_EQ(names.size(), 9u);
}

TEST_F(ViewOptionsTest, AFreshViewHasTheDefaults)
{
    View fresh;
    for (std::int32_t i = 0; i < ViewOptionCount; ++i) {
        const ViewOptionRow& row = ViewOptionTable()[i];
        EXPECT_EQ(row.field(fresh), row.defaultValue) << row.id;
    }
}

TEST_F(ViewOptionsTest, EachOptionHasItsOwnField)
{
    for (std::int32_t i = 0; i < ViewOptionCount; ++i) {
        View changed;
        const std::int32_t id = ViewOptionTable()[i].id;
        (void)SetViewOption(changed, id, !ViewOptionTable()[i].defaultValue);
        for (std::int32_t k = 0; k < ViewOptionCount; ++k) {
            const ViewOptionRow& row = ViewOptionTable()[k];
            EXPECT_EQ(GetViewOption(changed, row.id), row.defaultValue != (row.id == id))
                << id << " " << row.id;
        }
    }
}

TEST_F(ViewOptionsTest, AChangeSaysWhatMustFollow)
{
    const struct {
        std::int32_t id;
        std::uint32_t on;
        std::uint32_t off;
    } rows[] = {
        {4308, OptionEffectLayOutAgain, OptionEffectLayOutAgain},
        {4309, OptionEffectRepaint, OptionEffectRepaint},
        {4310, OptionEffectNone, OptionEffectNone},
        {4311, OptionEffectDrawCaret, OptionEffectDrawCaret},
        {4312, OptionEffectNone, OptionEffectNone},
        {4313, OptionEffectLineNumbers, OptionEffectLineNumbers},
        {4314, OptionEffectRuler, OptionEffectRuler},
        {4315, OptionEffectScrollbars | OptionEffectLayOutAgain,
         OptionEffectScrollbars | OptionEffectLayOutAgain},
        {4316, OptionEffectUndoMenu, OptionEffectUndoMenu | OptionEffectEmptyUndo},
    };
    for (const auto& row : rows) {
        (void)SetViewOption(view, row.id, false);
        EXPECT_EQ(SetViewOption(view, row.id, true), row.on) << row.id;
        EXPECT_EQ(SetViewOption(view, row.id, true), std::uint32_t{OptionEffectNone}) << row.id;
        EXPECT_TRUE(GetViewOption(view, row.id));
        EXPECT_EQ(SetViewOption(view, row.id, false), row.off) << row.id;
        EXPECT_EQ(SetViewOption(view, row.id, false), std::uint32_t{OptionEffectNone}) << row.id;
        EXPECT_FALSE(GetViewOption(view, row.id));
    }
}

TEST_F(ViewOptionsTest, UnknownIdsChangeNothing)
{
    for (const std::int32_t id : {0, 4307, 4317, -1}) {
        EXPECT_FALSE(GetViewOption(view, id));
        EXPECT_EQ(SetViewOption(view, id, true), std::uint32_t{OptionEffectNone});
        EXPECT_FALSE(GetViewOption(view, id));
        EXPECT_EQ(FindViewOption(id), nullptr);
    }
}

TEST_F(ViewOptionsTest, TheMarginFollowsItsOption)
{
    (void)SetViewOption(view, OptionSmallMargins, false);
    EXPECT_EQ(view.metrics.margin, 10);
    (void)SetViewOption(view, OptionSmallMargins, true);
    EXPECT_EQ(view.metrics.margin, 5);
    view.options.smallMargins = false; // as read from the registry
    ApplyViewOptions(view);
    EXPECT_EQ(view.metrics.margin, 10);
}

} // namespace
} // namespace vantrel
