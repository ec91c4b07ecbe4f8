// Every allocation fails once, and then with all later ones: nothing leaks, the array and the user's text survive, and the next attempt succeeds.
#include "view/commit.h"
#include "view_fixture.h"

namespace vantrel {
namespace {

class ViewFaults : public ViewTest {
protected:
    ScdrPtr RichTree()
    {
        return Vec(Characters({3, 2}, u"abcdef"), Word(u"two\nlines"), Integers({2, 2}, {1, 2, 3, 4}),
                   Integers({3}, {1, 2, 3}),
                   NestedOf({2, 1, 2}, Word(u"a"), Characters({40, 90}, std::u16string(3600, u'x')),
                            Word(u"b"), Integers({}, {5})));
    }

    std::vector<std::int64_t> Geometry(const Scdr& node) const
    {
        std::vector<std::int64_t> all{OriginOf(node).x, OriginOf(node).y, node.width, node.height};
        for (std::int64_t i = 0; i < ChildCount(node); ++i) {
            const std::vector<std::int64_t> below = Geometry(Item(node, i));
            all.insert(all.end(), below.begin(), below.end());
        }
        return all;
    }

    // Runs the attempt with the nth allocation failing, for every n; `attempt` answers whether it succeeded.
    template <typename Prepare, typename Attempt, typename Verify>
    void Sweep(Prepare prepare, Attempt attempt, Verify verify)
    {
        for (const bool sticky : {false, true}) {
            for (std::int64_t nth = 1;; ++nth) {
                SCOPED_TRACE(std::to_string(nth) + (sticky ? " and all later" : ""));
                const std::int64_t live = LiveAllocations();
                prepare();
                environment.ErrorCode = VTERROR_CODE::NoError;
                ArmAllocationFault(nth, sticky);
                const bool succeeded = attempt();
                const std::int64_t fired = DisarmAllocationFault();
                EXPECT_EQ(environment.ErrorCode,
                          succeeded ? VTERROR_CODE::NoError : VTERROR_CODE::OutOfMemory);
                verify(succeeded);
                environment.ErrorCode = VTERROR_CODE::NoError;
                EXPECT_EQ(ShowTree(view, nullptr), 0);
                EXPECT_EQ(LiveAllocations(), live);
                if (fired == 0) {
                    EXPECT_TRUE(succeeded);
                    break;
                }
                ASSERT_LT(nth, 1000);
            }
        }
    }
};

TEST_F(ViewFaults, LayoutIsRepeatedAfterAFailure)
{
    LayOut(RichTree());
    const std::vector<std::int64_t> expected = Geometry(*view.root);
    EXPECT_EQ(ShowTree(view, nullptr), 0);
    Sweep([&] { view.root = view.top = RichTree().release(); },
          [&] { return FormatScdr(view, *view.root) == 0 && CalculateScdrSizes(view) == 0; },
          [&](bool) {
              EXPECT_EQ(FormatScdr(view, *view.root), 0);
              EXPECT_EQ(CalculateScdrSizes(view), 0);
              EXPECT_EQ(Geometry(*view.root), expected);
          });
}

TEST_F(ViewFaults, ShowingATreeIsAllOrNothing)
{
    ScdrPtr tree;
    Sweep([&] { tree = RichTree(); }, [&] { return ShowTree(view, std::move(tree)) == 0; },
          [&](bool succeeded) {
              EXPECT_EQ(view.root != nullptr, succeeded);
              EXPECT_EQ(Selected(view), view.root);
          });
}

TEST_F(ViewFaults, CommittingNeverLosesText)
{
    const std::u16string texts[] = {u"typed", u"9 8 7", u"66 77"};
    Sweep(
        [&] {
            ASSERT_EQ(
                ShowTree(view, Vec(Word(u"abc"), Integers({3}, {1, 2, 3}), Integers({2, 2}, {1, 2, 3, 4}))),
                0);
            ASSERT_EQ(SelectScdr(view, Item(*view.root, 0), false), 0);
            ASSERT_EQ(MaximizeScdr(view), 0);
            Type(Item(*view.root, 0), 0, texts[0]);
            Type(Item(*view.root, 1), 0, texts[1]);
            Type(Item(*view.root, 2), 1, texts[2]);
        },
        [&] { return CheckScdr(view, *view.root) != 0; },
        [&](bool succeeded) {
            const Scdr& root = *view.root;
            const std::int64_t rows[] = {0, 0, 1};
            for (std::int64_t i = 0; i < 3; ++i) {
                const Scdr& item = Item(root, i);
                const bool edited = (item.records.flags & RecordsEdited) != 0;
                EXPECT_FALSE(succeeded && edited);
                EXPECT_EQ(item.Type, i == 0 ? std::uint32_t{TypeCharacter} : std::uint32_t{TypeInteger});
                EXPECT_EQ(RowText(item, rows[i]), texts[i]);
            }
            EXPECT_EQ(Selected(view), &Item(root, 0));
            // With memory at hand the same text goes through.
            environment.ErrorCode = VTERROR_CODE::NoError;
            EXPECT_NE(CheckScdr(view, *view.root), 0);
            EXPECT_EQ(DataText(Item(root, 0)), texts[0]);
        });
}

TEST_F(ViewFaults, ChangingTheStateOfABoxKeepsTheTreeWhole)
{
    std::vector<std::int64_t> expected;
    Sweep(
        [&] {
            ASSERT_EQ(ShowTree(view, Vec(Word(u"abc"), Vec(Word(u"d"), Word(u"ef")))), 0);
            expected = Geometry(*view.root);
            ASSERT_EQ(SelectScdr(view, Item(*view.root, 0), false), 0);
        },
        [&] {
            if (MinimizeScdr(view) != 0 || SelectScdr(view, Item(*view.root, 1), false) != 0) return false;
            return MaximizeScdr(view) == 0 && RestoreScdr(view) == 0;
        },
        [&](bool) {
            Scdr& root = *view.root;
            EXPECT_EQ(SelectScdr(view, root, false), 0);
            EXPECT_EQ(SelectScdr(view, Item(root, 0), false), 0);
            EXPECT_EQ(RestoreScdr(view), 0);
            EXPECT_EQ(view.top, &root);
            EXPECT_EQ(Geometry(root), expected);
        });
}

} // namespace
} // namespace vantrel
