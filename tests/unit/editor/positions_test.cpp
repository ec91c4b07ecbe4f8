#include <gtest/gtest.h>

#include "editor_fixture.h"

namespace vantrel::test {
namespace {

// 'W' is 16 pixels wide, every other character 8.
void MeasureWide(void*, char16_t first, char16_t last, std::int32_t* widths)
{
    for (int c = first; c <= last; ++c)
        widths[c - first] = c == u'W' ? 16 : 8;
}

std::u16string ManyLines(int lines, int columns)
{
    std::u16string text;
    for (int line = 0; line < lines; ++line) {
        if (line > 0) text.push_back(u'\n');
        text.append(static_cast<std::size_t>(columns), u'x');
    }
    return text;
}

TEST(EditPositions, WithoutMarginsTheTextStartsTwoPixelsInside)
{
    Editor editor(TypeCharacter, {2}, u"ab");
    editor.view.lineNumbers = editor.view.ruler = false;
    OnUseScdr(editor.window, false);
    const CaretPlace place = CaretToPosition(editor.window, {0, 0});
    EXPECT_EQ(place.point.x, 2);
    EXPECT_EQ(place.point.y, 2);
    EXPECT_EQ(place.charWidth, CharWidth);
}

TEST(EditPositions, SumCharacterWidths)
{
    Editor editor(TypeCharacter, {1, 1}, u"aWb\nWW");
    editor.view.widths.Reset(&MeasureWide, nullptr, 0);
    EXPECT_EQ(CaretToPosition(editor.window, {1, 0}).point.x, 2 + 8);
    EXPECT_EQ(CaretToPosition(editor.window, {1, 0}).charWidth, 16);
    EXPECT_EQ(CaretToPosition(editor.window, {2, 0}).point.x, 2 + 24);
    EXPECT_EQ(CaretToPosition(editor.window, {3, 0}).charWidth, CharWidth)
        << "behind the end: the average width";
    const CaretPlace beyond = CaretToPosition(editor.window, {99, 99});
    EXPECT_EQ(beyond.point.x, 2 + 32);
    EXPECT_EQ(beyond.point.y, 2 + LineHeight);
}

TEST(EditPositions, WithoutRowsTheCaretStandsAtTheOrigin)
{
    Editor editor(TypeCharacter, {0, 3}, u"");
    FreeRecords(editor.node->records);
    const CaretPlace place = CaretToPosition(editor.window, {4, 4});
    EXPECT_EQ(place.point.x, 2);
    EXPECT_EQ(place.point.y, 2);
    EXPECT_EQ(place.charWidth, CharWidth);
    EXPECT_EQ(PositionToCaret(editor.window, {50, 50}), (EditCaret{0, 0}));
}

TEST(EditPositions, APointFindsTheCharacterUnderItNeverTheNearerBoundary)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc\nde");
    EXPECT_EQ(PositionToCaret(editor.window, {2 + 7, 2}), (EditCaret{0, 0}))
        << "right half of the first character";
    EXPECT_EQ(PositionToCaret(editor.window, {2 + 8, 2 + 9}), (EditCaret{1, 0}));
    EXPECT_EQ(PositionToCaret(editor.window, {2 + 500, 2 + 10}), (EditCaret{2, 1}));
    EXPECT_EQ(PositionToCaret(editor.window, {-100, -100}), (EditCaret{0, 0}));
    EXPECT_EQ(PositionToCaret(editor.window, {2, 5000}), (EditCaret{0, 1}));
}

TEST(EditPositions, MarginsShiftTheTextOfAMaximisedNodeOnly)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc\nde");
    EXPECT_EQ(CaretToPosition(editor.window, {0, 0}).point.x, 2);
    editor.node->Flags |= FlagMaximized;
    LayOutEdit(editor.window);
    // "[2]" and the gap of the frame; the test window has none.
    EXPECT_EQ(editor.view.lineNumbersWidth, 3 * CharWidth);
    EXPECT_EQ(editor.view.rulerHeight, LineHeight);
    EXPECT_EQ(CaretToPosition(editor.window, {1, 1}).point.x, 2 + 3 * CharWidth + CharWidth);
    EXPECT_EQ(CaretToPosition(editor.window, {1, 1}).point.y, 2 + 2 * LineHeight);
    EXPECT_EQ(PositionToCaret(editor.window, {2 + 4 * CharWidth, 2 + 2 * LineHeight}), (EditCaret{1, 1}));
    EXPECT_EQ(editor.window.columnsPerPage, 22);
    EXPECT_EQ(editor.window.linesPerPage, 9);
}

TEST(EditPositions, PointAndCaretAgreeAfterScrolling)
{
    Editor editor(TypeCharacter, {1, 1}, ManyLines(200, 200));
    ChangeScrollPositions(editor.State().scroll, 333, 777);
    for (const EditCaret caret : {EditCaret{42, 78}, EditCaret{50, 80}, EditCaret{66, 87}}) {
        const CaretPlace place = CaretToPosition(editor.window, caret);
        EXPECT_EQ(PositionToCaret(editor.window, place.point), caret);
        EXPECT_EQ(
            PositionToCaret(editor.window, {place.point.x + CharWidth - 1, place.point.y + LineHeight - 1}),
            caret);
    }
}

TEST(EditPositions, TheCaretIsScrolledIntoTheWindow)
{
    Editor editor(TypeCharacter, {1, 1}, ManyLines(100, 100));
    const ScrollRecord& scroll = editor.State().scroll;
    MoveCaret(editor.window, 30, 20);
    EXPECT_EQ(scroll.horizontal.position, (30 + 1) * CharWidth - 25 * CharWidth);
    EXPECT_EQ(scroll.vertical.position, (20 + 1) * LineHeight - 10 * LineHeight);
    MoveCaret(editor.window, CaretEnd, CaretEnd);
    EXPECT_EQ(scroll.horizontal.position, 100 * CharWidth - 25 * CharWidth);
    EXPECT_EQ(scroll.vertical.position, 100 * LineHeight - 10 * LineHeight);
    MoveCaret(editor.window, CaretHome, CaretHome);
    EXPECT_EQ(scroll.horizontal.position, 0);
    EXPECT_EQ(scroll.vertical.position, 0);
}

TEST(EditPositions, ACaretThatEndsAtTheFarEdgeIsStillInside)
{
    Editor editor(TypeCharacter, {1, 1}, ManyLines(1, 60));
    MoveCaret(editor.window, 23, 0);
    EXPECT_EQ(editor.State().scroll.horizontal.position, 0);
    const int before = editor.invalidated;
    MoveCaret(editor.window, 1, 0); // the 25th column ends exactly at the edge
    EXPECT_EQ(editor.State().scroll.horizontal.position, 0);
    EXPECT_EQ(editor.invalidated, before);
    MoveCaret(editor.window, 1, 0);
    EXPECT_EQ(editor.State().scroll.horizontal.position, CharWidth);
    EXPECT_GT(editor.invalidated, before);
}

TEST(EditPositions, OnePixelOutsideIsScrolledIn)
{
    Editor editor(TypeCharacter, {1, 1}, ManyLines(30, 60));
    editor.client.right -= 1;
    editor.client.bottom -= 1;
    LayOutEdit(editor.window);
    MoveCaret(editor.window, 24, 9);
    EXPECT_EQ(editor.State().scroll.horizontal.position, 1);
    EXPECT_EQ(editor.State().scroll.vertical.position, 1);
    MoveCaret(editor.window, -24, -9);
    EXPECT_EQ(editor.State().scroll.horizontal.position, 0);
    EXPECT_EQ(editor.State().scroll.vertical.position, 0);
}

TEST(EditPositions, AfterScrollingTheCaretFollowsTheWindow)
{
    Editor editor(TypeCharacter, {1, 1}, ManyLines(100, 100));
    ChangeScrollPositions(editor.State().scroll, 4, 20 * LineHeight); // the first column is cut
    MoveCaretIntoWindow(editor.window);
    EXPECT_EQ(editor.Caret(), (EditCaret{1, 20}));
    EXPECT_TRUE(IsSelectionEmpty(editor.window));
    editor.keys.shift = true;
    ChangeScrollPositions(editor.State().scroll, 0, LineHeight);
    MoveCaretIntoWindow(editor.window);
    EXPECT_EQ(editor.Caret(), (EditCaret{1, 21}));
    EXPECT_FALSE(IsSelectionEmpty(editor.window));
    EXPECT_EQ(editor.State().anchorLine, 20);
}

TEST(EditPositions, ACaretInsideStaysWhenTheWindowScrolls)
{
    Editor editor(TypeCharacter, {1, 1}, ManyLines(100, 100));
    editor.Put(10, 5);
    editor.Select({10, 5}, {12, 5});
    ChangeScrollPositions(editor.State().scroll, 0, 2 * LineHeight);
    MoveCaretIntoWindow(editor.window);
    EXPECT_EQ(editor.Caret(), (EditCaret{12, 5}));
    EXPECT_FALSE(IsSelectionEmpty(editor.window));
}

TEST(EditPositions, ScrollingUpPullsTheCaretToTheLastVisibleLine)
{
    Editor editor(TypeCharacter, {1, 1}, ManyLines(100, 100));
    editor.Put(0, 50);
    ChangeScrollPositions(editor.State().scroll, 0, ScrollToStart);
    MoveCaretIntoWindow(editor.window);
    EXPECT_EQ(editor.Caret(), (EditCaret{0, 9}));
}

TEST(EditPositions, ScrollingBackPullsTheCaretToTheLastVisibleCharacter)
{
    Editor editor(TypeCharacter, {1, 1}, ManyLines(100, 100));
    editor.Put(60, 0);
    ChangeScrollPositions(editor.State().scroll, ScrollToStart, 0);
    MoveCaretIntoWindow(editor.window);
    EXPECT_EQ(editor.Caret(), (EditCaret{24, 0}));
    EXPECT_TRUE(IsSelectionEmpty(editor.window));
    editor.Put(60, 0);
    editor.view.findMatch = true;
    ChangeScrollPositions(editor.State().scroll, 5, 0);
    const int drawn = editor.caretsDrawn;
    MoveCaretIntoWindow(editor.window);
    EXPECT_EQ(editor.Caret(), (EditCaret{60, 0})) << "still in sight";
    EXPECT_TRUE(editor.view.findMatch);
    EXPECT_EQ(editor.caretsDrawn, drawn);
}

} // namespace
} // namespace vantrel::test
