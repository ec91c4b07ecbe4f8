// Layout of random trees against a slow routine that follows the rules step by step, after every kind of change.
#include <algorithm>
#include <random>

#include "view/commit.h"
#include "view_fixture.h"

namespace vantrel {
namespace {

// The geometry of one node, computed anew each time.
struct Box {
    std::int64_t width = 0;
    std::int64_t height = 0;
};

class LayoutRandom : public ViewTest {
protected:
    std::mt19937 random;

    std::int64_t Pick(std::int64_t low, std::int64_t high)
    {
        return std::uniform_int_distribution<std::int64_t>(low, high)(random);
    }

    std::vector<std::int64_t> RandomShape(int highestRank)
    {
        std::vector<std::int64_t> shape(static_cast<std::size_t>(Pick(0, highestRank)));
        for (std::int64_t& axis : shape)
            axis = Pick(0, 9) == 0 ? 0 : Pick(1, 3);
        return shape;
    }

    ScdrPtr RandomSimple()
    {
        const std::uint32_t types[] = {TypeCharacter, TypeCharacter, TypeInteger, TypeBoolean, TypeReal};
        ScdrPtr node = Allocate(types[Pick(0, 4)], RandomShape(3));
        if (node->Type != TypeCharacter) return node;
        auto* text = static_cast<char16_t*>(node->data);
        for (std::int64_t i = 0; i < node->ElementCount; ++i)
            text[i] = u"abW\n"[Pick(0, 3)];
        return node;
    }

    ScdrPtr RandomTree(int depth)
    {
        if (depth == 0 || Pick(0, 3) == 0) return RandomSimple();
        ScdrPtr node = Allocate(TypeNested, RandomShape(4));
        for (std::int64_t i = 0; i < ChildCount(*node); ++i)
            SetChild(*node, i, RandomTree(depth - 1));
        if (Pick(0, 6) == 0) node->Flags |= FlagMinimized;
        return node;
    }

    Box SimpleBox(const Scdr& node) const
    {
        std::int64_t widest = 0;
        for (std::int64_t row = 0; row < node.records.count; ++row) {
            std::int64_t width = 0;
            for (const char16_t c : RowText(node, row))
                width += c == WideCharacter ? 12 : 8;
            widest = std::max(widest, width);
        }
        Box box{widest + 4, 16 * (node.Rank > 2 ? node.Shape[node.Rank - 2] : node.records.count) + 4};
        if (node.Rank > 1) {
            box.width = std::max<std::int64_t>(34, box.width) + 18;
            box.height = std::max<std::int64_t>(34, box.height) + 18;
        }
        return {std::min<std::int64_t>(box.width + 4, 358), std::min<std::int64_t>(box.height + 4, 268)};
    }

    // The content's size; with `place`, checks the origins below against the given start.
    Box ContentBox(const Scdr& node, std::int64_t x, std::int64_t y, bool place) const
    {
        if ((node.Flags & FlagMinimized) != 0) return {16, 16};
        if (IsSimple(node)) return SimpleBox(node);
        const std::int64_t margin = view.metrics.margin;
        x += 2 + margin + (node.Rank > 2 ? (node.Rank - 2) * 4 : 0);
        y += 2 + margin;
        if (node.Rank < 2 || node.ElementCount == 0) {
            Box content;
            for (std::int64_t i = 0; i < std::max<std::int64_t>(node.ElementCount, 1); ++i) {
                const Box item = CheckBox(Item(node, i), x + content.width, y, place);
                content.width += item.width - margin;
                content.height = std::max(content.height, item.height);
            }
            content.width += margin;
            return content;
        }
        const std::int64_t columns = node.Shape[node.Rank - 1];
        const std::int64_t rows = node.Shape[node.Rank - 2];
        std::vector<std::int64_t> widths(static_cast<std::size_t>(columns));
        std::vector<std::int64_t> heights(static_cast<std::size_t>(rows));
        for (std::int64_t i = 0; i < node.ElementCount; ++i) {
            const Box item = CheckBox(Item(node, i), 0, 0, false);
            auto& width = widths[static_cast<std::size_t>(i % columns)];
            auto& height = heights[static_cast<std::size_t>(i / columns % rows)];
            width = std::max(width, item.width);
            height = std::max(height, item.height);
        }
        Box content{margin, margin};
        std::vector<std::int64_t> lefts, tops;
        for (const std::int64_t width : widths) {
            lefts.push_back(content.width - margin);
            content.width += width - margin;
        }
        for (const std::int64_t height : heights) {
            tops.push_back(content.height - margin);
            content.height += height - margin;
        }
        for (std::int64_t i = 0; place && i < node.ElementCount; ++i) {
            CheckBox(Item(node, i), x + lefts[static_cast<std::size_t>(i % columns)],
                     y + tops[static_cast<std::size_t>(i / columns % rows)], true);
        }
        return content;
    }

    Box CheckBox(const Scdr& node, std::int64_t x, std::int64_t y, bool place) const
    {
        const Box content = ContentBox(node, x, y, place);
        const std::int64_t around = 4 + 2 * view.metrics.margin;
        const Box box{content.width + around + (node.Rank > 2 ? (node.Rank - 2) * 4 : 0),
                      content.height + around};
        EXPECT_EQ(node.width, box.width);
        EXPECT_EQ(node.height, box.height);
        EXPECT_TRUE((node.Flags & FlagSizeValid) != 0);
        if (place) {
            EXPECT_EQ(OriginOf(node).x, x);
            EXPECT_EQ(OriginOf(node).y, y);
            EXPECT_TRUE((node.Flags & FlagOriginValid) != 0);
        }
        return box;
    }

    void CheckLayout() const { CheckBox(*view.top, 0, 0, true); }

    Scdr& RandomNode()
    {
        Scdr* node = view.top;
        while (!IsSimple(*node) && (node->Flags & FlagMinimized) == 0 && Pick(0, 3) != 0) {
            node = Children(*node)[Pick(0, ChildCount(*node) - 1)];
        }
        return *node;
    }

    // Also one that is hidden in a closed box or behind a maximised one.
    Scdr& AnyNode()
    {
        Scdr* node = view.root;
        while (!IsSimple(*node) && Pick(0, 3) != 0)
            node = Children(*node)[Pick(0, ChildCount(*node) - 1)];
        return *node;
    }

    void ChangeSomething()
    {
        const std::int64_t change = Pick(0, 6);
        Scdr& node = change == 3 || change == 4 ? RandomNode() : AnyNode();
        switch (change) {
        case 0:
            EXPECT_EQ(SelectScdr(view, node, false), 0);
            EXPECT_EQ(MinimizeScdr(view), 0);
            break;
        case 1:
            EXPECT_EQ(SelectScdr(view, node, false), 0);
            EXPECT_EQ(RestoreScdr(view), 0);
            break;
        case 2:
            EXPECT_EQ(SelectScdr(view, node, false), 0);
            if (IsSimple(node)) break;
            EXPECT_EQ(MaximizeScdr(view), 0);
            break;
        case 3:
            view.metrics.margin = Pick(0, 1) == 0 ? 5 : 10;
            EXPECT_EQ(LayOutAgain(view, false), 0);
            break;
        case 4:
            // Letters in a matrix of numbers would be refused by the next commit.
            if (node.Type != TypeCharacter || node.records.count == 0 || (node.Flags & FlagMinimized) != 0)
                break;
            Type(node, Pick(0, node.records.count - 1),
                 std::u16string(static_cast<std::size_t>(Pick(0, 12)), u'W'));
            node.Flags = static_cast<std::uint8_t>(node.Flags & ~FlagSizeValid);
            InvalidateAncestorsSizesAndLaterSiblingsOrigins(node);
            EXPECT_EQ(CalculateScdrSizes(view), 0);
            break;
        default: CommitText(node); break;
        }
    }

    // One box changes its size: only what it pushes is laid out again.
    void CommitText(Scdr& node)
    {
        if (node.Type != TypeCharacter || node.records.count == 0 || IsScdrInsideEmptyAncestor(node)) return;
        Type(node, Pick(0, node.records.count - 1),
             std::u16string(static_cast<std::size_t>(Pick(0, 12)), u'W'));
        EXPECT_NE(CheckScdr(view, *view.root), 0);
    }
};

TEST_F(LayoutRandom, FollowsTheRulesThroughEveryChange)
{
    for (unsigned seed = 0; seed < 150 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        random.seed(seed);
        view.metrics.margin = 5;
        Show(NestedOf({}, RandomTree(3)));
        CheckLayout();
        for (int step = 0; step < 12 && !HasFailure(); ++step) {
            SCOPED_TRACE(step);
            ChangeSomething();
            CheckLayout();
        }
    }
}

TEST_F(LayoutRandom, ALayoutBrokenOffIsFinishedByTheNext)
{
    for (unsigned seed = 0; seed < 6; ++seed) {
        SCOPED_TRACE(seed);
        random.seed(seed);
        // Hundreds of boxes, one of which takes so long that the user loses patience.
        std::vector<ScdrPtr> items;
        for (int i = 0; i < 400; ++i)
            items.push_back(RandomTree(2));
        items[static_cast<std::size_t>(Pick(0, 200))] = Characters({}, std::u16string(1, SlowCharacter));
        view.edit.widths.Reset(MeasureForTest, nullptr, 0);
        view.root = view.top = Nested({20, 20}, std::move(items)).release();
        ASSERT_EQ(FormatScdr(view, *view.root), 0);
        log.interrupt = true;
        EXPECT_NE(CalculateScdrSizes(view), 0);
        EXPECT_EQ(log.statuses.back(), (StatusText{134, -1, true}));
        EXPECT_EQ(view.root->Flags & (FlagSizeValid | FlagOriginValid), 0);
        log.interrupt = false;
        EXPECT_EQ(CalculateScdrSizes(view), 0);
        CheckLayout();
        FreeScdr(&view.root);
        view.top = nullptr;
    }
}

} // namespace
} // namespace vantrel
