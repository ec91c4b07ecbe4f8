#include "editor/paint_rows.h"

#include <gtest/gtest.h>

#include "editor_fixture.h"

namespace vantrel::test {
namespace {

struct Piece {
    std::int64_t x;
    std::int64_t y;
    std::u16string text;
    bool highlighted;
    friend bool operator==(const Piece&, const Piece&) = default;
};

void PrintTo(const Piece& piece, std::ostream* out)
{
    *out << "(" << piece.x << "," << piece.y << " " << std::string(piece.text.begin(), piece.text.end())
         << (piece.highlighted ? " *)" : ")");
}

std::vector<Piece> Pieces(Editor& editor)
{
    std::vector<Piece> pieces;
    ForEachVisiblePiece(
        editor.window, true,
        [](void* state, const TextPiece& piece) {
            static_cast<std::vector<Piece>*>(state)->push_back(
                {piece.point.x, piece.point.y,
                 std::u16string(piece.text, static_cast<std::size_t>(piece.length)),
                 piece.kind != PieceKind::Plain});
            EXPECT_NE(piece.kind, PieceKind::FindMatch);
            EXPECT_EQ(piece.width, piece.length * CharWidth);
        },
        &pieces);
    return pieces;
}

TEST(EditPaintRows, WithoutASelectionEveryLineIsOnePlainPiece)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc\n\nde");
    EXPECT_EQ(Pieces(editor), (std::vector<Piece>{{2, 2, u"abc", false}, {2, 22, u"de", false}}));
}

TEST(EditPaintRows, ASelectionInOneLineMakesThreePieces)
{
    Editor editor(TypeCharacter, {1, 1}, u"abcde\nfg");
    editor.Select({4, 0}, {1, 0});
    EXPECT_EQ(Pieces(editor),
              (std::vector<Piece>{
                  {2, 2, u"a", false}, {10, 2, u"bcd", true}, {34, 2, u"e", false}, {2, 12, u"fg", false}}));
}

TEST(EditPaintRows, ASelectionOverLinesHighlightsWholeLinesBetween)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc\ndef\nghi\njkl\nmno");
    editor.Select({2, 1}, {1, 3});
    EXPECT_EQ(Pieces(editor), (std::vector<Piece>{{2, 2, u"abc", false},
                                                  {2, 12, u"de", false},
                                                  {18, 12, u"f", true},
                                                  {2, 22, u"ghi", true},
                                                  {2, 32, u"j", true},
                                                  {10, 32, u"kl", false},
                                                  {2, 42, u"mno", false}}));
}

TEST(EditPaintRows, OnlyVisibleLinesAndColumnsAreTouched)
{
    std::u16string text;
    for (int line = 0; line < 500; ++line)
        text += std::u16string(10000, static_cast<char16_t>(u'a' + line % 26)) + u"\n";
    Editor editor(TypeCharacter, {1, 1}, text);
    ChangeScrollPositions(editor.State().scroll, 3000 * CharWidth + 3, 200 * LineHeight + 4);
    const std::vector<Piece> pieces = Pieces(editor);
    ASSERT_EQ(pieces.size(), 11u);
    EXPECT_EQ(pieces[0].x, 2 - 3);
    EXPECT_EQ(pieces[0].y, 2 - 4);
    EXPECT_EQ(pieces[0].text[0], u'a' + 200 % 26);
    EXPECT_GE(pieces[0].text.size(), 26u);
    EXPECT_LE(pieces[0].text.size(), 28u);
    EXPECT_LT(pieces.back().y, editor.window.text.bottom);
}

TEST(EditPaintRows, ASelectionBeginningLeftOfTheWindowIsCut)
{
    Editor editor(TypeCharacter, {1, 1}, std::u16string(100, u'x'));
    editor.Select({0, 0}, {60, 0});
    ChangeScrollPositions(editor.State().scroll, ScrollToStart, 0);
    ChangeScrollPositions(editor.State().scroll, 50 * CharWidth, 0);
    const std::vector<Piece> pieces = Pieces(editor);
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pieces[0], (Piece{2, 2, std::u16string(10, u'x'), true}));
    EXPECT_FALSE(pieces[1].highlighted);
    EXPECT_EQ(pieces[1].x, 2 + 10 * CharWidth);
}

TEST(EditPaintRows, TheShownPlaneIsPainted)
{
    Editor editor(TypeCharacter, {2, 1, 2}, u"ab\ncd");
    ExtraOf(*editor.node).CurrentPlane = 1;
    OnNewPlane(editor.window);
    EXPECT_EQ(Pieces(editor), (std::vector<Piece>{{2, 2, u"cd", false}}));
}

TEST(EditPaintRows, NoRowsNoPieces)
{
    Editor editor(TypeCharacter, {0, 3}, u"");
    FreeRecords(editor.node->records);
    EXPECT_TRUE(Pieces(editor).empty());
}

TEST(EditPaintRows, TheRulerIsCutToTheWindowAndTheLongestLine)
{
    Editor editor(TypeCharacter, {1, 1}, u"0123456789\nabc");
    editor.node->Flags |= FlagMaximized;
    LayOutEdit(editor.window);
    VisibleRuler ruler = FindVisibleRuler(editor.window);
    EXPECT_EQ(ruler.first, 0);
    EXPECT_EQ(ruler.end, 10);
    EXPECT_EQ(ruler.x, 2 + 3 * CharWidth);
    Editor wide(TypeCharacter, {1, 1}, std::u16string(100000, u'x'));
    ChangeScrollPositions(wide.State().scroll, 500 * CharWidth + 1, 0);
    ruler = FindVisibleRuler(wide.window);
    EXPECT_EQ(ruler.first, 500);
    EXPECT_LE(ruler.end, 527);
    EXPECT_EQ(ruler.x, 2 - 1);
}

struct Matched {
    std::u16string before;
    std::u16string match;
    std::u16string after;
};

Matched MatchOf(Editor& editor, bool focused)
{
    Matched found;
    ForEachVisiblePiece(
        editor.window, focused,
        [](void* state, const TextPiece& piece) {
            auto& out = *static_cast<Matched*>(state);
            const std::u16string text(piece.text, static_cast<std::size_t>(piece.length));
            if (piece.kind == PieceKind::FindMatch) out.match += text;
            if (piece.kind == PieceKind::Plain) (out.match.empty() ? out.before : out.after) += text;
        },
        &found);
    return found;
}

void Find(Editor& editor, std::int64_t line, std::int64_t column, std::int64_t length)
{
    editor.Put(column, line);
    editor.view.findMatch = true;
    editor.view.find.node = editor.node.get();
    editor.view.find.record = FirstEditRow(editor.window) + line;
    editor.view.find.column = column;
    editor.view.find.length = length;
}

TEST(EditPaintRows, AFindMatchIsMarkedWhileTheFocusIsElsewhere)
{
    Editor editor(TypeCharacter, {1, 1}, u"first\nsecond\nthird");
    Find(editor, 1, 2, 3);
    EXPECT_EQ(MatchOf(editor, false).match, u"con");
    EXPECT_EQ(MatchOf(editor, false).before, u"firstse");
    EXPECT_EQ(MatchOf(editor, false).after, u"dthird");
    EXPECT_EQ(MatchOf(editor, true).match, u"") << "the caret shows it";
    editor.Press(KeyRight);
    EXPECT_EQ(MatchOf(editor, false).match, u"") << "the caret has left";
}

TEST(EditPaintRows, AMatchIsMarkedOnlyInTheArrayThatHoldsIt)
{
    Editor editor(TypeCharacter, {1, 1}, u"first\nsecond");
    const Editor other(TypeCharacter, {1, 1}, u"first\nsecond");
    Find(editor, 1, 2, 3);
    editor.view.find.node = other.node.get();
    EXPECT_EQ(MatchOf(editor, false).match, u"");
}

TEST(EditPaintRows, AMatchIsMarkedOnlyInItsPlane)
{
    Editor editor(TypeCharacter, {3, 2, 2}, u"ab\ncd\nef\ngh\nij\nkl");
    editor.ShowPlane(1);
    Find(editor, 1, 0, 2);
    EXPECT_EQ(MatchOf(editor, false).match, u"gh");
    editor.ShowPlane(2);
    EXPECT_EQ(MatchOf(editor, false).match, u"");
    editor.ShowPlane(0);
    EXPECT_EQ(MatchOf(editor, false).match, u"");
    editor.ShowPlane(1);
    EXPECT_EQ(MatchOf(editor, false).match, u"gh");
}

TEST(EditPaintRows, ASelectionHidesTheFindMatch)
{
    Editor editor(TypeCharacter, {1, 1}, u"first\nsecond");
    editor.Select({0, 0}, {2, 0});
    editor.view.findMatch = true;
    editor.view.find.node = editor.node.get();
    editor.view.find.length = 5;
    EXPECT_EQ(MatchOf(editor, false).match, u"");
}

TEST(EditPaintRows, AMatchThatHasBecomeTooLongIsCut)
{
    Editor editor(TypeCharacter, {1, 1}, u"first\nsecond");
    Find(editor, 1, 4, 100);
    EXPECT_EQ(MatchOf(editor, false).match, u"nd");
}

TEST(EditPaintRows, HiddenSidesAreThoseBehindWhichTheTextGoesOn)
{
    Editor editor(TypeCharacter, {3}, std::u16string(60, u'x'));
    const auto sides = [&] {
        const HiddenSides hidden = FindHiddenSides(editor.window);
        return std::vector<bool>{hidden.left, hidden.top, hidden.right, hidden.bottom};
    };
    EXPECT_EQ(sides(), (std::vector<bool>{false, false, true, false}));
    ChangeScrollPositions(editor.State().scroll, 5 * CharWidth, 0);
    EXPECT_EQ(sides(), (std::vector<bool>{true, false, true, false}));
    ChangeScrollPositions(editor.State().scroll, ScrollToEnd, 0);
    EXPECT_EQ(sides(), (std::vector<bool>{true, false, false, false}));
    Editor tall(TypeCharacter, {3}, u"a\nb\nc\nd\ne\nf\ng\nh\ni\nj\nk\nl");
    const HiddenSides atTop = FindHiddenSides(tall.window);
    EXPECT_TRUE(atTop.bottom && !atTop.top);
    ChangeScrollPositions(tall.State().scroll, 0, ScrollToEnd);
    const HiddenSides atEnd = FindHiddenSides(tall.window);
    EXPECT_TRUE(atEnd.top && !atEnd.bottom);
    EXPECT_FALSE(FindHiddenSides(Editor(TypeCharacter, {3}, u"abc").window).right);
}

} // namespace
} // namespace vantrel::test
