#include <gtest/gtest.h>

#include <limits>

#include "editor_fixture.h"

namespace vantrel::test {
namespace {

TEST(EditCaretMove, RightAtTheEndOfTheLastLineDoesNothing)
{
    Editor editor(TypeCharacter, {1, 1}, u"ab\ncd");
    editor.Put(2, 1);
    const int drawn = editor.caretsDrawn;
    const int invalidated = editor.invalidated;
    MoveCaret(editor.window, 1, 0);
    EXPECT_EQ(editor.Caret(), (EditCaret{2, 1}));
    EXPECT_EQ(editor.caretsDrawn, drawn);
    EXPECT_EQ(editor.invalidated, invalidated);
}

TEST(EditCaretMove, RightAtTheEndOfAnotherLineGoesToTheStartOfTheNext)
{
    Editor editor(TypeCharacter, {1, 1}, u"ab\ncd");
    editor.Put(2, 0);
    MoveCaret(editor.window, 1, 0);
    EXPECT_EQ(editor.Caret(), (EditCaret{0, 1}));
}

TEST(EditCaretMove, LeftAtTheVeryStartDoesNothing)
{
    Editor editor(TypeCharacter, {1, 1}, u"ab\ncd");
    MoveCaret(editor.window, -1, 0);
    EXPECT_EQ(editor.Caret(), (EditCaret{0, 0}));
}

TEST(EditCaretMove, LeftAtTheStartOfALineGoesToTheEndOfTheOneBefore)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc\ncd");
    editor.Put(0, 1);
    MoveCaret(editor.window, -1, 0);
    EXPECT_EQ(editor.Caret(), (EditCaret{3, 0}));
}

TEST(EditCaretMove, LargerStepsStayInTheirLine)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc\ncd");
    editor.Put(2, 0);
    MoveCaret(editor.window, 5, 0);
    EXPECT_EQ(editor.Caret(), (EditCaret{3, 0}));
    MoveCaret(editor.window, -50, 0);
    EXPECT_EQ(editor.Caret(), (EditCaret{0, 0}));
}

TEST(EditCaretMove, UpAndDownClampTheColumnToTheNewLine)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcdef\nab\nabcd");
    editor.Put(5, 0);
    MoveCaret(editor.window, 0, 1);
    EXPECT_EQ(editor.Caret(), (EditCaret{2, 1}));
    MoveCaret(editor.window, 0, 100);
    EXPECT_EQ(editor.Caret(), (EditCaret{2, 2}));
    MoveCaret(editor.window, 0, -100);
    EXPECT_EQ(editor.Caret(), (EditCaret{2, 0}));
}

TEST(EditCaretMove, HomeAndEndReachBothAxes)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcdef\nab\nabcd");
    MoveCaret(editor.window, CaretEnd, CaretEnd);
    EXPECT_EQ(editor.Caret(), (EditCaret{4, 2}));
    MoveCaret(editor.window, CaretHome, CaretHome);
    EXPECT_EQ(editor.Caret(), (EditCaret{0, 0}));
    MoveCaret(editor.window, CaretEnd, 0);
    EXPECT_EQ(editor.Caret(), (EditCaret{6, 0}));
}

TEST(EditCaretMove, DeltasAtTheEdgeOfTheNumbersDoNotOverflow)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc\nde");
    editor.Put(1, 1);
    MoveCaret(editor.window, std::numeric_limits<std::int64_t>::max(),
              std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(editor.Caret(), (EditCaret{2, 1}));
    MoveCaret(editor.window, std::numeric_limits<std::int64_t>::min(),
              std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(editor.Caret(), (EditCaret{0, 0}));
}

TEST(EditCaretMove, ClearsTheFindMatchOnlyWhenTheCaretMoved)
{
    Editor editor(TypeCharacter, {2}, u"ab");
    editor.view.findMatch = true;
    MoveCaret(editor.window, -1, 0);
    EXPECT_TRUE(editor.view.findMatch);
    MoveCaret(editor.window, 1, 0);
    EXPECT_FALSE(editor.view.findMatch);
}

TEST(EditCaretMove, WithoutRowsNothingMoves)
{
    Editor editor(TypeCharacter, {0, 3}, u"");
    FreeRecords(editor.node->records);
    MoveCaret(editor.window, CaretEnd, CaretEnd);
    EXPECT_EQ(editor.Caret(), (EditCaret{0, 0}));
}

TEST(EditSelectionRange, OrdersItsPointsByLineThenColumn)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcd\nefgh");
    editor.Select({1, 1}, {3, 0});
    EditSelection selection = NormalisedSelection(editor.window);
    EXPECT_EQ(selection.start, (EditCaret{3, 0}));
    EXPECT_EQ(selection.end, (EditCaret{1, 1}));
    editor.Select({3, 1}, {1, 1});
    selection = NormalisedSelection(editor.window);
    EXPECT_EQ(selection.start, (EditCaret{1, 1}));
    EXPECT_EQ(selection.end, (EditCaret{3, 1}));
}

TEST(EditSelectionRange, SelectAllCoversTheWholeText)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcd\nefg");
    editor.Put(2, 0);
    SelectAll(editor.window);
    const EditSelection selection = NormalisedSelection(editor.window);
    EXPECT_EQ(selection.start, (EditCaret{0, 0}));
    EXPECT_EQ(selection.end, (EditCaret{3, 1}));
    EXPECT_EQ(editor.Caret(), (EditCaret{3, 1}));
}

TEST(EditCaretPicture, IsThinWhenInsertingAndAsWideAsTheCharacterWhenOvertyping)
{
    Editor editor(TypeCharacter, {2}, u"ab");
    editor.Put(1, 0);
    EXPECT_EQ(GetCaretPicture(editor.window).width, 0);
    EXPECT_EQ(GetCaretPicture(editor.window).height, LineHeight);
    EXPECT_EQ(GetCaretPicture(editor.window).point.x, 2 + CharWidth);
    editor.view.overtype = true;
    EXPECT_EQ(GetCaretPicture(editor.window).width, CharWidth);
    editor.keys.insertToggled = true; // the Insert key toggles back
    EXPECT_EQ(GetCaretPicture(editor.window).width, 0);
}

TEST(EditCaretPicture, OfACharacterScalarIsABlockOverTheCharacter)
{
    Editor editor(TypeCharacter, {}, u"a");
    editor.Put(1, 0);
    const CaretPicture picture = GetCaretPicture(editor.window);
    EXPECT_EQ(picture.point.x, 2);
    EXPECT_EQ(picture.width, CharWidth);
}

TEST(EditCaretPicture, IsNotDrawnWhileTheMouseSelects)
{
    Editor editor(TypeCharacter, {2}, u"ab");
    const int drawn = editor.caretsDrawn;
    editor.window.selecting = true;
    DrawCaret(editor.window);
    EXPECT_EQ(editor.caretsDrawn, drawn);
    editor.window.selecting = false;
    DrawCaret(editor.window);
    EXPECT_EQ(editor.caretsDrawn, drawn + 1);
}

} // namespace
} // namespace vantrel::test
