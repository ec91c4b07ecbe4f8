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

TEST(EditCaretMove, AMoveAlongBothAxesCountsItsColumnsFromTheOldLine)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcdefghij\nabcde\nabcdefghij");
    const auto moved = [&](EditCaret from, std::int64_t columns, std::int64_t lines) {
        editor.Put(from.column, from.line);
        MoveCaret(editor.window, columns, lines);
        return editor.Caret();
    };
    EXPECT_EQ(moved({10, 0}, -3, 1), (EditCaret{5, 1}));
    EXPECT_EQ(moved({10, 0}, -7, 1), (EditCaret{3, 1}));
    EXPECT_EQ(moved({10, 0}, -99, 1), (EditCaret{0, 1}));
    EXPECT_EQ(moved({8, 2}, 1, -1), (EditCaret{5, 1}));
    EXPECT_EQ(moved({2, 2}, 2, -1), (EditCaret{4, 1}));
    EXPECT_EQ(moved({10, 0}, -1, 2), (EditCaret{9, 2}));
    EXPECT_EQ(moved({10, 0}, 1, 1), (EditCaret{5, 1})) << "not the start of the line after";
    EXPECT_EQ(moved({0, 1}, -1, 1), (EditCaret{0, 2}));
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

TEST(EditCaretPicture, OfANumericScalarIsAnyLines)
{
    Editor editor(TypeInteger, {}, u"12");
    editor.Put(1, 0);
    EXPECT_EQ(GetCaretPicture(editor.window).point.x, 2 + CharWidth);
    EXPECT_EQ(GetCaretPicture(editor.window).width, 0);
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

TEST(EditCaretPicture, IsCutToTheTextAreaAndNeverDrawnOverTheRuler)
{
    Editor editor(TypeCharacter, {1, 1}, u"a\nb\nc\nd\ne\nf\ng\nh\ni\nj\nk\nl\nm\nn\no\np");
    editor.node->Flags |= FlagMaximized;
    OnSetRuler(editor.window);
    const std::int64_t top = TextArea(editor.window).top;
    EXPECT_EQ(top, 2 + LineHeight);
    EXPECT_TRUE(GetCaretPicture(editor.window).shown);
    EXPECT_EQ(GetCaretPicture(editor.window).height, LineHeight);
    ChangeScrollPositions(editor.State().scroll, 0, 4); // as a wheel does: the caret stays in its line
    EXPECT_TRUE(GetCaretPicture(editor.window).shown);
    EXPECT_EQ(GetCaretPicture(editor.window).point.y, top);
    EXPECT_EQ(GetCaretPicture(editor.window).height, LineHeight - 4);
    ChangeScrollPositions(editor.State().scroll, 0, LineHeight);
    EXPECT_FALSE(GetCaretPicture(editor.window).shown);
    editor.Press(KeyEnd, false, true);
    EXPECT_TRUE(GetCaretPicture(editor.window).shown);
    ChangeScrollPositions(editor.State().scroll, 0, ScrollToStart);
    EXPECT_FALSE(GetCaretPicture(editor.window).shown) << "below the window";
}

TEST(EditCaretPicture, BehindTheLongestLineStandsInTheRim)
{
    Editor editor(TypeCharacter, {1, 1}, std::u16string(60, u'x'));
    editor.view.overtype = true;
    editor.Press(KeyEnd);
    const CaretPicture picture = GetCaretPicture(editor.window);
    EXPECT_TRUE(picture.shown);
    EXPECT_EQ(picture.point.x, editor.window.text.right);
    EXPECT_EQ(picture.width, CharWidth) << "the window cuts what does not fit into its rim";
    ChangeScrollPositions(editor.State().scroll, ScrollToStart, 0);
    EXPECT_FALSE(GetCaretPicture(editor.window).shown);
    editor.Press(KeyHome);
    ChangeScrollPositions(editor.State().scroll, 20, 0);
    EXPECT_FALSE(GetCaretPicture(editor.window).shown) << "left of the window";
}

} // namespace
} // namespace vantrel::test
