#include <gtest/gtest.h>

#include <utility>

#include "editor_fixture.h"

namespace vantrel::test {
namespace {

TEST(EditSetup, ScrollBarsFollowTheRank)
{
    for (const auto& [shape, bars] :
         {std::pair{std::vector<std::int64_t>{}, false}, std::pair{std::vector<std::int64_t>{1}, false},
          std::pair{std::vector<std::int64_t>{1, 1}, true},
          std::pair{std::vector<std::int64_t>{1, 1, 1}, true}}) {
        Editor editor(TypeCharacter, shape, u"a");
        EXPECT_EQ(editor.horizontalBar, bars) << shape.size();
        EXPECT_EQ(editor.verticalBar, bars) << shape.size();
        EXPECT_EQ(editor.State().scroll.horizontalShown, bars) << shape.size();
    }
    Editor editor(TypeCharacter, {1}, u"a");
    editor.view.rankOneScrollBars = true;
    OnSetScrollbars(editor.window);
    EXPECT_TRUE(editor.horizontalBar);
    EXPECT_TRUE(editor.verticalBar);
    EXPECT_EQ(editor.State().scroll.vertical.mask, 13u); // range, position, never disabled away
}

TEST(EditSetup, OptionsSetTheMargins)
{
    Editor editor(TypeCharacter, {1, 1}, u"a\nb\nc\nd\ne\nf\ng\nh\ni\nj");
    editor.window.frameWidth = 4;
    OnSetLineNumbers(editor.window);
    EXPECT_EQ(editor.view.lineNumbersWidth, 4 * CharWidth + 4); // "[10]"
    editor.view.lineNumbers = false;
    OnSetLineNumbers(editor.window);
    EXPECT_EQ(editor.view.lineNumbersWidth, 0);
    editor.view.ruler = false;
    OnSetRuler(editor.window);
    EXPECT_EQ(editor.view.rulerHeight, 0);
}

TEST(EditSetup, LineNumbersOfPlanesCountTheRowsOfOne)
{
    Editor editor(TypeCharacter, {6, 2, 1}, u"a\nb\nc\nd\ne\nf\ng\nh\ni\nj\nk\nl");
    EXPECT_EQ(editor.view.lineNumbersWidth, 3 * CharWidth); // "[2]"
    EXPECT_EQ(editor.State().scroll.vertical.dataSize, 2 * LineHeight);
}

TEST(EditSetup, LineNumbersGrowWithTheText)
{
    Editor editor(TypeCharacter, {1, 1}, u"a\nb\nc\nd\ne\nf\ng\nh\ni");
    EXPECT_EQ(editor.view.lineNumbersWidth, 3 * CharWidth);
    editor.Type(u"\r");
    EXPECT_EQ(editor.view.lineNumbersWidth, 4 * CharWidth);
    Undo(editor.window);
    EXPECT_EQ(editor.view.lineNumbersWidth, 3 * CharWidth);
}

TEST(EditSetup, ForcingStartsTheNodeAnew)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc\ndef");
    editor.Select({1, 0}, {2, 1});
    OnUseScdr(editor.window, false);
    EXPECT_EQ(editor.Caret(), (EditCaret{2, 1}));
    OnUseScdr(editor.window, true);
    EXPECT_EQ(editor.Caret(), (EditCaret{0, 0}));
    EXPECT_TRUE(IsSelectionEmpty(editor.window));
}

TEST(EditSetup, RecordsMadeAnewPullTheCaretBackIn)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc\ndef");
    editor.Select({1, 0}, {3, 1});
    FreeRecords(editor.node->records);
    ASSERT_TRUE(StringToRecords(&editor.context, u"xy", 2, editor.node->records, false));
    OnUseScdr(editor.window, false);
    EXPECT_EQ(editor.Caret(), (EditCaret{2, 0}));
    editor.Type(u"z");
    EXPECT_EQ(editor.Lines(), (TextLines{u"xz"})) << "the rest of the selection is replaced";
}

TEST(EditSetup, NestedNodesAndNoNodeAreLeftAlone)
{
    Editor editor(TypeCharacter, {1}, u"a");
    const std::int64_t shape = 1;
    const ScdrPtr nested = AllocateScdr(&editor.context, nullptr, TypeNested, 1, &shape, true);
    editor.view.node = nested.get();
    OnUseScdr(editor.window, true);
    EXPECT_EQ(nested->editState, nullptr);
    EXPECT_FALSE(HasEditedNode(editor.window));
    editor.view.node = nullptr;
    OnUseScdr(editor.window, true);
    EXPECT_FALSE(HasEditedNode(editor.window));
    editor.view.node = editor.node.get();
}

TEST(EditSetup, WithoutMemoryTheNodeStaysOutOfUse)
{
    Editor editor(TypeCharacter, {1}, u"a");
    FreeEditState(&editor.node->editState);
    ArmAllocationFault(1, true);
    OnUseScdr(editor.window, false);
    DisarmAllocationFault();
    EXPECT_FALSE(HasEditedNode(editor.window));
    EXPECT_EQ(editor.notifications, (std::vector<std::int32_t>{EditNotifyOutOfMemory}));
}

TEST(EditSetup, ANewFontMeasuresAgainAndKeepsTheCaret)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc\ndefgh");
    editor.Put(4, 1);
    editor.view.widths.Reset(nullptr, nullptr, 11);
    editor.view.lineHeight = 20;
    OnFontChanged(editor.window);
    EXPECT_EQ(editor.State().maximumWidth, 55);
    EXPECT_EQ(editor.Caret(), (EditCaret{4, 1}));
    EXPECT_EQ(editor.State().scroll.vertical.dataSize, 40);
    EXPECT_EQ(editor.window.linesPerPage, 5);
    EXPECT_EQ(editor.view.rulerHeight, 20);
}

TEST(EditSetup, AKeyDrawsTheCaretOnce)
{
    Editor editor(TypeCharacter, {1, 1}, u"a long line of text\nb");
    editor.Put(0, 1);
    for (const char16_t* const text : {u"c", u"\r"}) {
        const int drawn = editor.caretsDrawn;
        editor.Type(text);
        EXPECT_EQ(editor.caretsDrawn, drawn + 1);
    }
    editor.Select({0, 0}, {1, 0});
    const int drawn = editor.caretsDrawn;
    editor.Press(KeyDelete);
    EXPECT_EQ(editor.caretsDrawn, drawn + 1);
}

TEST(EditSetup, AGrowingWindowLeavesNoGapBehindTheText)
{
    std::u16string text;
    for (int line = 0; line < 50; ++line)
        text += u"a\n";
    Editor editor(TypeCharacter, {1, 1}, text);
    MoveCaret(editor.window, CaretEnd, CaretEnd);
    EXPECT_EQ(editor.State().scroll.vertical.position, 51 * LineHeight - 10 * LineHeight);
    editor.client.bottom += 20 * LineHeight;
    LayOutEdit(editor.window);
    EXPECT_EQ(editor.State().scroll.vertical.position, 51 * LineHeight - 30 * LineHeight);
    EXPECT_EQ(editor.window.linesPerPage, 30);
}

TEST(EditSetup, AHiddenWindowDoesNotScrollTheShownOnesText)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc\ndef");
    EditWindow hidden = editor.window;
    hidden.window = reinterpret_cast<WindowHandle>(&hidden);
    editor.client.bottom = 20;
    LayOutEdit(hidden);
    EXPECT_EQ(editor.State().scroll.vertical.pageSize, 10 * LineHeight);
    LayOutEdit(editor.window);
    EXPECT_EQ(editor.State().scroll.vertical.pageSize, 16);
}

TEST(EditSetup, AWindowSmallerThanItsRimHasNoPages)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc\ndef");
    editor.client = {0, 0, 1, 1};
    LayOutEdit(editor.window);
    EXPECT_EQ(editor.window.columnsPerPage, 0);
    EXPECT_EQ(editor.window.linesPerPage, 0);
    editor.Press(KeyPageDown);
    editor.Press(KeyEnd, false, true);
    EXPECT_EQ(editor.Caret(), (EditCaret{3, 1}));
}

TEST(EditSetup, BeforeAFontIsSetNothingDividesByZero)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc\ndef");
    editor.view.lineHeight = 0;
    editor.view.averageCharWidth = 0;
    LayOutEdit(editor.window);
    EXPECT_EQ(PositionToCaret(editor.window, {5, 5}).line, 1);
}

TEST(EditSetup, AForgottenScrollRecordStartsAnewAndTheCaretStays)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc\ndef");
    editor.Type(u"x");
    editor.Select({1, 0}, {2, 1});
    WindowHandle const own = reinterpret_cast<WindowHandle>(&editor);
    editor.window.window = own; // the record's window is another one now
    OnUseScdr(editor.window, false);
    EXPECT_EQ(editor.State().scroll.window, own);
    EXPECT_EQ(editor.Caret(), (EditCaret{2, 1}));
    EXPECT_EQ(NormalisedSelection(editor.window).start, (EditCaret{1, 0}));
    EXPECT_EQ(editor.UndoSteps(), 1);
}

} // namespace
} // namespace vantrel::test
