#include <gtest/gtest.h>

#include "editor_fixture.h"

namespace vantrel::test {
namespace {

Point64 At(std::int64_t column, std::int64_t line)
{
    return {2 + column * CharWidth + 1, 2 + line * LineHeight + 1};
}

MousePress Left(Point64 point, bool shift = false)
{
    MousePress press;
    press.left = true;
    press.shift = shift;
    press.point = point;
    return press;
}

TEST(EditMouse, AClickPlacesTheCaretAndBeginsASelection)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcdef\nghijkl");
    editor.Select({0, 0}, {3, 0});
    EXPECT_TRUE(PressMouse(editor.window, Left(At(2, 1))));
    EXPECT_EQ(editor.Caret(), (EditCaret{2, 1}));
    EXPECT_TRUE(IsSelectionEmpty(editor.window));
    EXPECT_TRUE(editor.window.selecting);
    const int drawn = editor.caretsDrawn;
    DragMouse(editor.window, At(4, 0));
    EXPECT_EQ(editor.caretsDrawn, drawn) << "no caret while the mouse selects";
    EXPECT_EQ(NormalisedSelection(editor.window).start, (EditCaret{4, 0}));
    EXPECT_EQ(NormalisedSelection(editor.window).end, (EditCaret{2, 1}));
    EndMouse(editor.window, At(5, 0));
    EXPECT_FALSE(editor.window.selecting);
    EXPECT_EQ(editor.caretsDrawn, drawn + 1);
    EXPECT_EQ(editor.Caret(), (EditCaret{5, 0}));
    DragMouse(editor.window, At(1, 1));
    EXPECT_EQ(editor.Caret(), (EditCaret{5, 0})) << "the capture is over";
}

TEST(EditMouse, ShiftExtendsFromTheCaretOrTheAnchor)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcdef\nghijkl");
    editor.Put(1, 0);
    EXPECT_TRUE(PressMouse(editor.window, Left(At(4, 0), true)));
    EndMouse(editor.window, At(4, 0));
    EXPECT_EQ(NormalisedSelection(editor.window).start, (EditCaret{1, 0}));
    EXPECT_EQ(NormalisedSelection(editor.window).end, (EditCaret{4, 0}));
    EXPECT_TRUE(PressMouse(editor.window, Left(At(2, 1), true)));
    EndMouse(editor.window, At(2, 1));
    EXPECT_EQ(NormalisedSelection(editor.window).start, (EditCaret{1, 0}));
    EXPECT_EQ(NormalisedSelection(editor.window).end, (EditCaret{2, 1}));
}

TEST(EditMouse, OutsideTheTextRectangleNothingHappens)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcdef\nghijkl");
    editor.Put(3, 0);
    EXPECT_FALSE(PressMouse(editor.window, Left({1, 50})));
    EXPECT_FALSE(PressMouse(editor.window, Left({50, editor.client.bottom - 1})));
    EXPECT_EQ(editor.Caret(), (EditCaret{3, 0}));
    EXPECT_FALSE(editor.window.selecting);
}

TEST(EditMouse, TheRightButtonMovesTheCaretAndKeepsTheSelection)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcdef\nghijkl");
    editor.Select({0, 0}, {3, 0});
    MousePress press;
    press.right = true;
    press.point = At(5, 1);
    EXPECT_FALSE(PressMouse(editor.window, press));
    EXPECT_EQ(editor.Caret(), (EditCaret{5, 1}));
    EXPECT_EQ(NormalisedSelection(editor.window).end, (EditCaret{3, 0}));
}

TEST(EditMouse, OtherButtonsAndModifiersAreNotTheEditors)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcdef\nghijkl");
    editor.Select({0, 0}, {3, 0});
    for (const int buttons : {0, 3, 4 + 2, 8 + 2, 8 + 4 + 1}) {
        MousePress press;
        press.left = (buttons & 1) != 0;
        press.right = (buttons & 2) != 0;
        press.shift = (buttons & 4) != 0;
        press.control = (buttons & 8) != 0;
        press.point = At(5, 1);
        EXPECT_FALSE(PressMouse(editor.window, press)) << buttons;
        EXPECT_EQ(editor.Caret(), (EditCaret{3, 0})) << buttons;
        EXPECT_FALSE(IsSelectionEmpty(editor.window));
    }
}

TEST(EditMouse, ControlClicksAreNotTheEditors)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcdef");
    MousePress press = Left(At(3, 0));
    press.control = true;
    EXPECT_FALSE(PressMouse(editor.window, press));
    EXPECT_EQ(editor.Caret(), (EditCaret{0, 0}));
}

TEST(EditMouse, DraggingOutOfTheWindowScrolls)
{
    std::u16string text;
    for (int line = 0; line < 100; ++line)
        text += u"abc\n";
    Editor editor(TypeCharacter, {1, 1}, text);
    ASSERT_TRUE(PressMouse(editor.window, Left(At(0, 5))));
    const Point64 below{10, editor.client.bottom + 25};
    std::int64_t last = 0;
    for (int tick = 0; tick < 5; ++tick) {
        DragMouse(editor.window, below);
        EXPECT_GT(editor.State().scroll.vertical.position, last);
        last = editor.State().scroll.vertical.position;
    }
    EXPECT_EQ(editor.State().anchorLine, 5);
    EXPECT_GT(editor.Caret().line, 20);
}

} // namespace
} // namespace vantrel::test
