// Dragging selected text to another place.

#include <gtest/gtest.h>

#include "editor_fixture.h"

namespace vantrel::test {
namespace {

Point64 At(std::int64_t column, std::int64_t line)
{
    return {2 + column * CharWidth + 1, 2 + line * LineHeight + 1};
}

bool Grab(Editor& editor, Point64 point)
{
    MousePress press;
    press.left = true;
    press.point = point;
    return PressMouse(editor.window, press);
}

void DragTo(Editor& editor, Point64 from, Point64 to)
{
    ASSERT_TRUE(Grab(editor, from));
    ASSERT_TRUE(editor.window.dragText);
    DragMouse(editor.window, to);
    EndMouse(editor.window, to);
}

void ExpectOneGroup(Editor& editor, const TextLines& before, const TextLines& after)
{
    EXPECT_EQ(editor.Lines(), after);
    EXPECT_EQ(editor.UndoSteps(), 2);
    EXPECT_FALSE(editor.State().undo->firstOfGroup);
    Undo(editor.window);
    EXPECT_EQ(editor.Lines(), before);
    EXPECT_FALSE(CanUndo(editor.window));
    EXPECT_FALSE(editor.State().modified);
}

TEST(EditDrop, APressInsideTheSelectionKeepsItAndDrawsNoCaret)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcdefgh");
    editor.Select({2, 0}, {5, 0});
    for (const std::int64_t column : {2, 3, 5}) { // both ends count
        EXPECT_TRUE(Grab(editor, At(column, 0)));
        EXPECT_TRUE(editor.window.dragText) << column;
        EXPECT_FALSE(editor.window.selecting);
        EXPECT_EQ(editor.Caret(), (EditCaret{5, 0}));
        EXPECT_FALSE(IsSelectionEmpty(editor.window));
        const int drawn = editor.caretsDrawn;
        DragMouse(editor.window, At(1, 0));
        DrawCaret(editor.window);
        EXPECT_EQ(editor.caretsDrawn, drawn);
        EXPECT_EQ(editor.Caret(), (EditCaret{5, 0})) << "the selection is on its way, not the caret";
    }
    EXPECT_TRUE(Grab(editor, At(6, 0)));
    EXPECT_FALSE(editor.window.dragText);
    EXPECT_TRUE(editor.window.selecting);
}

TEST(EditDrop, AMarkShowsWhereTheTextWouldLand)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcdefgh\nijkl");
    editor.Select({2, 0}, {5, 0});
    EXPECT_FALSE(GetDropMark(editor.window).shown);
    ASSERT_TRUE(Grab(editor, At(3, 0)));
    EXPECT_FALSE(GetDropMark(editor.window).shown) << "on itself it would not move";
    const int before = editor.invalidated;
    DragMouse(editor.window, At(2, 1));
    EXPECT_EQ(editor.invalidated, before + 1);
    CaretPicture mark = GetDropMark(editor.window);
    EXPECT_TRUE(mark.shown);
    EXPECT_EQ(mark.point.x, 2 + 2 * CharWidth);
    EXPECT_EQ(mark.point.y, 2 + LineHeight);
    EXPECT_EQ(mark.height, LineHeight);
    EXPECT_EQ(mark.width, 0) << "thin, also when overtyping";
    DragMouse(editor.window, At(2, 1));
    EXPECT_EQ(editor.invalidated, before + 1) << "painted once";
    for (const std::int64_t column : {2, 3, 5}) {
        DragMouse(editor.window, At(column, 0));
        EXPECT_FALSE(GetDropMark(editor.window).shown) << column;
    }
    DragMouse(editor.window, At(1, 0));
    EXPECT_TRUE(GetDropMark(editor.window).shown);
    editor.window.readOnly = true;
    EXPECT_FALSE(GetDropMark(editor.window).shown);
    EndMouse(editor.window, At(1, 0));
    editor.window.readOnly = false;
    EXPECT_FALSE(GetDropMark(editor.window).shown);
    EXPECT_GT(editor.invalidated, before + 4);
}

TEST(EditDrop, ShiftExtendsASelectionAlsoFromInside)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcdefgh");
    editor.Select({2, 0}, {5, 0});
    MousePress press;
    press.left = press.shift = true;
    press.point = At(3, 0);
    EXPECT_TRUE(PressMouse(editor.window, press));
    EXPECT_TRUE(editor.window.selecting);
    EXPECT_EQ(NormalisedSelection(editor.window).end, (EditCaret{3, 0}));
}

TEST(EditDrop, InsideTheSelectionItOnlyCollapses)
{
    for (const std::int64_t column : {2, 4, 5}) {
        Editor editor(TypeCharacter, {1, 1}, u"abcdefgh");
        editor.Select({2, 0}, {5, 0});
        const int drawn = editor.caretsDrawn;
        DragTo(editor, At(3, 0), At(column, 0));
        EXPECT_EQ(editor.Lines(), (TextLines{u"abcdefgh"}));
        EXPECT_TRUE(IsSelectionEmpty(editor.window));
        EXPECT_EQ(editor.Caret(), (EditCaret{5, 0}));
        EXPECT_EQ(editor.UndoSteps(), 0);
        EXPECT_GT(editor.caretsDrawn, drawn);
        EXPECT_FALSE(editor.window.dragText);
    }
}

TEST(EditDrop, BeforeTheSelectionMovesItInOneGroup)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcdefgh");
    editor.Select({4, 0}, {6, 0});
    DragTo(editor, At(5, 0), At(1, 0));
    EXPECT_EQ(editor.Caret(), (EditCaret{3, 0}));
    ExpectOneGroup(editor, {u"abcdefgh"}, {u"aefbcdgh"});
}

TEST(EditDrop, AfterTheSelectionMovesItInOneGroup)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcdefgh");
    editor.Select({3, 0}, {1, 0}); // selected backwards
    DragTo(editor, At(2, 0), At(6, 0));
    ExpectOneGroup(editor, {u"abcdefgh"}, {u"adefbcgh"});
}

TEST(EditDrop, LinesMoveBothWays)
{
    const TextLines before{u"one", u"two", u"three", u"four"};
    Editor up(TypeCharacter, {1, 1}, u"one\ntwo\nthree\nfour");
    up.Select({1, 2}, {2, 3});
    DragTo(up, At(3, 2), At(2, 0));
    ExpectOneGroup(up, before, {u"onhree", u"foe", u"two", u"tur"});
    Editor down(TypeCharacter, {1, 1}, u"one\ntwo\nthree\nfour");
    down.Select({1, 0}, {2, 1});
    DragTo(down, At(2, 0), At(1, 3));
    ExpectOneGroup(down, before, {u"oo", u"three", u"fne", u"twour"});
}

TEST(EditDrop, IsRedoneStepByStep)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcdefgh");
    editor.Select({4, 0}, {6, 0});
    DragTo(editor, At(5, 0), At(1, 0));
    Undo(editor.window);
    while (CanRedo(editor.window))
        Redo(editor.window);
    EXPECT_EQ(editor.Lines(), (TextLines{u"aefbcdgh"}));
}

TEST(EditDrop, BehindTheTextDropsAtItsEnd)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc\ndef");
    editor.Select({0, 0}, {2, 0});
    DragTo(editor, At(1, 0), {5000, 5000});
    ExpectOneGroup(editor, {u"abc", u"def"}, {u"c", u"defab"});
}

TEST(EditDrop, ReadOnlyAndLockedTextStays)
{
    for (const bool locked : {false, true}) {
        for (const std::int64_t target : {0, 7}) {
            Editor editor(TypeCharacter, {1, 1}, u"abcdefgh");
            editor.window.readOnly = !locked;
            SearchForNumbers(editor.view, locked);
            editor.Select({2, 0}, {5, 0});
            DragTo(editor, At(3, 0), At(target, 0));
            EXPECT_EQ(editor.Lines(), (TextLines{u"abcdefgh"}));
            EXPECT_EQ(editor.beeps, (std::vector<EditBeep>{EditBeep::Asterisk}));
            EXPECT_FALSE(IsSelectionEmpty(editor.window));
            EXPECT_EQ(editor.UndoSteps(), 0);
        }
    }
}

TEST(EditDrop, LinesOfAPlaneStay)
{
    for (const EditCaret target : {EditCaret{0, 0}, EditCaret{2, 2}}) {
        Editor editor(TypeCharacter, {1, 3, 2}, u"ab\ncd\nef");
        editor.Select({1, 0}, {1, 1});
        DropText(editor.window, target);
        EXPECT_EQ(editor.Lines(), (TextLines{u"ab", u"cd", u"ef"}));
        EXPECT_TRUE(editor.Notified(EditNotifyPlaneLines));
        EXPECT_EQ(editor.UndoSteps(), 0);
        EXPECT_EQ(NormalisedSelection(editor.window).end, (EditCaret{1, 1})) << "still selected";
    }
}

TEST(EditDrop, WithinOneLineOfAPlaneItMoves)
{
    Editor editor(TypeCharacter, {2, 2, 4}, u"abcd\nefgh\nijkl\nmnop");
    editor.node->extra->CurrentPlane = 1;
    OnNewPlane(editor.window);
    editor.Select({0, 1}, {2, 1});
    DropText(editor.window, {4, 0});
    EXPECT_EQ(editor.Lines(), (TextLines{u"abcd", u"efgh", u"ijklmn", u"op"}));
}

TEST(EditDrop, WithoutMemoryTheTextStaysWhole)
{
    const TextLines before{u"abcdefghijklmnopqrstuvwxyz", u"second"};
    for (const EditCaret target : {EditCaret{1, 0}, EditCaret{3, 1}}) {
        std::int64_t failures = 1;
        for (std::int64_t nth = 1; failures > 0; ++nth) {
            SCOPED_TRACE(nth);
            const std::int64_t live = LiveAllocations();
            {
                Editor editor(TypeCharacter, {1, 1}, u"abcdefghijklmnopqrstuvwxyz\nsecond");
                editor.Select({4, 0}, {24, 0});
                ArmAllocationFault(nth, true);
                DropText(editor.window, target);
                failures = DisarmAllocationFault();
                EXPECT_EQ(failures > 0, editor.Notified(EditNotifyOutOfMemory));
                while (CanUndo(editor.window))
                    Undo(editor.window);
                EXPECT_EQ(editor.Lines(), before);
            }
            EXPECT_EQ(LiveAllocations(), live);
            ASSERT_LT(nth, 100);
        }
    }
}

TEST(EditDrop, TheNodeMayHaveGoneMeanwhile)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcdefgh");
    editor.Select({2, 0}, {5, 0});
    ASSERT_TRUE(Grab(editor, At(3, 0)));
    editor.view.node = nullptr;
    EndMouse(editor.window, At(0, 0));
    EXPECT_FALSE(editor.window.dragText);
    editor.view.node = editor.node.get();
    EXPECT_EQ(editor.Lines(), (TextLines{u"abcdefgh"}));
}

TEST(EditDrop, AnotherNodeMayHaveComeMeanwhile)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcdefgh");
    Editor other(TypeCharacter, {1, 1}, u"ijklmnop");
    other.Select({1, 0}, {3, 0});
    editor.Select({2, 0}, {5, 0});
    ASSERT_TRUE(Grab(editor, At(3, 0)));
    editor.view.node = other.node.get();
    EndMouse(editor.window, At(7, 0));
    EXPECT_EQ(other.Lines(), (TextLines{u"ijklmnop"}));
    EXPECT_EQ(NormalisedSelection(other.window).end, (EditCaret{3, 0}));
    editor.view.node = editor.node.get();
    ASSERT_TRUE(Grab(editor, At(7, 0)));
    editor.view.node = other.node.get();
    DragMouse(editor.window, At(0, 0));
    EndMouse(editor.window, At(0, 0));
    EXPECT_EQ(other.Caret(), (EditCaret{3, 0}));
}

} // namespace
} // namespace vantrel::test
