#include <gtest/gtest.h>

#include "editor_fixture.h"

namespace vantrel::test {
namespace {

constexpr std::int64_t Bar = 17;
// A window with a border of one pixel and both scroll bars around the fixture's client area of 204 x 104.
constexpr EditFrame Frame{{204 + 2 + Bar, 104 + 2 + Bar}, {Bar, Bar}};
constexpr std::int64_t Right = 204 + 2 + Bar - 1;
constexpr std::int64_t Bottom = 104 + 2 + Bar - 1;

std::int32_t Hit(const Editor& editor, Point64 point, std::int32_t code = HitBorder)
{
    return HitBorderOf(editor.window, Frame, point, code);
}

TEST(EditBorder, OfMatricesAndHigherMoves)
{
    for (const std::vector<std::int64_t>& shape :
         {std::vector<std::int64_t>{1, 1}, std::vector<std::int64_t>{1, 1, 1}}) {
        const Editor editor(TypeCharacter, shape, u"a");
        EXPECT_EQ(Hit(editor, {Right, 50}), HitRight);
        EXPECT_EQ(Hit(editor, {50, Bottom}), HitBottom);
        EXPECT_EQ(Hit(editor, {Right, Bottom}), HitCorner);
        EXPECT_EQ(Hit(editor, {Right - Bar + 5, Bottom - Bar + 5}), HitGrow);
    }
}

TEST(EditBorder, LeftAndTopMoveNothing)
{
    const Editor editor(TypeCharacter, {1, 1}, u"a");
    EXPECT_EQ(Hit(editor, {0, 50}), HitBorder);
    EXPECT_EQ(Hit(editor, {50, 0}), HitBorder);
    EXPECT_EQ(Hit(editor, {50, 50}, HitClient), HitClient);
    EXPECT_EQ(Hit(editor, {Right + 1, 50}, 0), 0) << "outside";
    EXPECT_EQ(Hit(editor, {-1, Bottom}, 0), 0);
}

TEST(EditBorder, CanBeTakenHoldOfWithAnUnsteadyHand)
{
    const Editor editor(TypeCharacter, {1, 1}, u"a");
    EXPECT_EQ(Hit(editor, {Right - 2, 50}, HitClient), HitRight);
    EXPECT_EQ(Hit(editor, {Right - 3, 50}, HitClient), HitClient);
    EXPECT_EQ(Hit(editor, {Right, Bottom - 7}), HitCorner);
    EXPECT_EQ(Hit(editor, {Right, Bottom - 8}), HitRight);
    EXPECT_EQ(Hit(editor, {Right - 7, Bottom}), HitCorner);
    EXPECT_EQ(Hit(editor, {Right - 8, Bottom}), HitBottom);
}

TEST(EditBorder, OfScalarsAndVectorsWithoutBarsIsFixed)
{
    for (const std::vector<std::int64_t>& shape :
         {std::vector<std::int64_t>{}, std::vector<std::int64_t>{1}}) {
        Editor editor(TypeCharacter, shape, u"a");
        EXPECT_EQ(Hit(editor, {Right, Bottom}), HitBorder);
        EXPECT_FALSE(BeginResize(editor.window, Frame, HitCorner, {0, 0}));
        EXPECT_FALSE(editor.window.resizing);
    }
    Editor vector(TypeCharacter, {1}, u"a");
    vector.view.rankOneScrollBars = true;
    EXPECT_EQ(Hit(vector, {Right, 50}), HitRight);
    EXPECT_TRUE(BeginResize(vector.window, Frame, HitRight, {0, 0}));
}

TEST(EditBorder, OfAMaximisedNodeIsFixedAndHasNoGrip)
{
    Editor editor(TypeCharacter, {1, 1}, u"a");
    editor.node->Flags |= FlagMaximized;
    EXPECT_EQ(Hit(editor, {Right, 50}), HitBorder);
    EXPECT_EQ(Hit(editor, {Right - Bar + 5, Bottom - Bar + 5}, HitGrow), HitBorder);
    EXPECT_FALSE(BeginResize(editor.window, Frame, HitRight, {0, 0}));
    EXPECT_TRUE(HasSizeOfItsOwn(editor.window));
}

TEST(EditBorder, OtherPlacesDoNotBeginAResize)
{
    Editor editor(TypeCharacter, {1, 1}, u"a");
    for (const std::int32_t code : {1, 18, 6, 7, 10, 12, 13, 14, 16})
        EXPECT_FALSE(BeginResize(editor.window, Frame, code, {0, 0})) << code;
}

Size64 Dragged(std::int32_t border, std::int64_t dx, std::int64_t dy)
{
    Editor editor(TypeCharacter, {1, 1}, u"a");
    EXPECT_TRUE(BeginResize(editor.window, Frame, border, {1000, 500}));
    return ResizedTo(editor.window, {1000 + dx, 500 + dy});
}

TEST(EditBorder, MovesTheSidesThatItNames)
{
    const Size64 start = Frame.window;
    const struct {
        std::int32_t border;
        std::int64_t dx, dy;
    } moves[] = {{HitGrow, 30, -20}, {HitRight, 30, 0}, {HitBottom, 0, -20}, {HitCorner, 30, -20}};
    for (const auto& move : moves) {
        const Size64 size = Dragged(move.border, 30, -20);
        EXPECT_EQ(size.width, start.width + move.dx) << move.border;
        EXPECT_EQ(size.height, start.height + move.dy) << move.border;
    }
}

TEST(EditBorder, LeavesACharacterInSight)
{
    const Size64 size = Dragged(HitCorner, -5000, -5000);
    EXPECT_GE(size.width, 2 + Bar + 4 + CharWidth);
    EXPECT_GE(size.height, 2 + Bar + 4 + LineHeight);
    EXPECT_LE(size.width, 2 + Bar + 4 + 2 * CharWidth);
    EXPECT_LE(size.height, 2 + Bar + 4 + 2 * LineHeight);
    EXPECT_LE(Dragged(HitCorner, 500000, 0).width, 32767);
}

TEST(EditBorder, TheCaretIsNotDrawnUntilItIsLetGo)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc");
    ASSERT_TRUE(BeginResize(editor.window, Frame, HitCorner, {0, 0}));
    const int drawn = editor.caretsDrawn;
    LayOutEdit(editor.window);
    EXPECT_EQ(editor.caretsDrawn, drawn);
    EndMouse(editor.window, {0, 0});
    EXPECT_FALSE(editor.window.resizing);
    EXPECT_EQ(editor.caretsDrawn, drawn + 1);
    EXPECT_EQ(editor.Caret(), (EditCaret{0, 0}));
}

} // namespace
} // namespace vantrel::test
