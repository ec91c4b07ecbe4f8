#include <gtest/gtest.h>

#include "editor_fixture.h"

namespace vantrel::test {
namespace {

TEST(EditClipboard, NothingSelectedCopiesNothing)
{
    Editor editor(TypeCharacter, {1}, u"a");
    editor.clipboard.emplace(u"old");
    CopySelection(editor.window);
    CutSelection(editor.window);
    ClearSelection(editor.window);
    EXPECT_EQ(editor.clipboard, u"old");
    EXPECT_EQ(editor.UndoSteps(), 0);
}

TEST(EditClipboard, CopiesLinesOfTheShownPlane)
{
    Editor editor(TypeCharacter, {2, 2, 2}, u"ab\ncd\nef\ngh");
    ExtraOf(*editor.node).CurrentPlane = 1;
    OnNewPlane(editor.window);
    editor.Select({1, 1}, {1, 0});
    CopySelection(editor.window);
    EXPECT_EQ(editor.clipboard, u"f\r\ng");
    EXPECT_FALSE(editor.clipboardOpen);
    EXPECT_TRUE(IsSelectionEmpty(editor.window));
}

TEST(EditClipboard, CutDeletesEvenWhenTheClipboardDoesNotOpen)
{
    Editor editor(TypeCharacter, {3}, u"abc");
    editor.clipboardOpens = false;
    editor.Select({0, 0}, {2, 0});
    CutSelection(editor.window);
    EXPECT_EQ(editor.Lines(), (TextLines{u"c"}));
    EXPECT_FALSE(editor.clipboard.has_value());
    EXPECT_EQ(editor.UndoSteps(), 1);
}

TEST(EditClipboard, ACopyThatFailsCollapsesTheSelectionAndChangesNothing)
{
    Editor editor(TypeCharacter, {3}, u"abc");
    editor.clipboardOpens = false;
    editor.Select({0, 0}, {2, 0});
    EXPECT_EQ(CopyMarked(editor.window), 1);
    EXPECT_FALSE(IsSelectionEmpty(editor.window)) << "that is the command's part";
    CopySelection(editor.window);
    EXPECT_TRUE(IsSelectionEmpty(editor.window));
    EXPECT_TRUE(editor.notifications.empty());
    EXPECT_EQ(editor.Lines(), (TextLines{u"abc"}));
}

TEST(EditClipboard, OfReadOnlyTextWithNothingSelectedOnlyCuttingAndPastingBeep)
{
    Editor editor(TypeCharacter, {3}, u"abc");
    editor.window.readOnly = true;
    CopySelection(editor.window);
    ClearSelection(editor.window);
    EXPECT_TRUE(editor.beeps.empty());
    CutSelection(editor.window);
    PasteClipboard(editor.window);
    EXPECT_EQ(editor.beeps, (std::vector<EditBeep>{EditBeep::Asterisk, EditBeep::Asterisk}));
    editor.Select({0, 0}, {2, 0});
    CopySelection(editor.window);
    EXPECT_EQ(editor.clipboard, u"ab") << "it may be copied";
}

TEST(EditClipboard, ClearDeletesTheSelection)
{
    Editor editor(TypeCharacter, {3}, u"abc");
    editor.Select({0, 0}, {2, 0});
    ClearSelection(editor.window);
    EXPECT_EQ(editor.Lines(), (TextLines{u"c"}));
}

TEST(EditClipboard, PasteWithoutTextDoesNothing)
{
    Editor editor(TypeCharacter, {1}, u"a");
    PasteClipboard(editor.window);
    EXPECT_EQ(editor.UndoSteps(), 0);
    EXPECT_TRUE(editor.beeps.empty());
}

TEST(EditClipboard, PasteOfASurrogateIsRefusedWhole)
{
    Editor editor(TypeCharacter, {1}, u"a");
    editor.clipboard.emplace(u"xyz\U0001D54F");
    PasteClipboard(editor.window);
    EXPECT_EQ(editor.beeps, (std::vector<EditBeep>{EditBeep::Asterisk}));
    EXPECT_EQ(editor.Lines(), (TextLines{u"a"}));
}

TEST(EditClipboard, CopyOutOfMemoryIsReportedAndTheClipboardClosed)
{
    Editor editor(TypeCharacter, {1}, std::u16string(100, u'x'));
    SelectAll(editor.window);
    ArmAllocationFault(1, true);
    const std::int32_t result = CopyMarked(editor.window);
    DisarmAllocationFault();
    EXPECT_EQ(result, 1);
    EXPECT_TRUE(editor.Notified(EditNotifyOutOfMemory));
    EXPECT_FALSE(editor.clipboardOpen);
}

TEST(EditClipboard, ASurrogateIsFoundWhereverItStands)
{
    for (const std::size_t place : {0u, 1u, 62u, 63u, 64u, 65u, 127u, 128u, 199u}) {
        for (const char16_t unit : {char16_t{0xD800}, char16_t{0xDFFF}}) {
            Editor editor(TypeCharacter, {1, 1}, u"ab");
            std::u16string text(200, u'\xE000');
            text[place] = unit;
            editor.clipboard = text;
            PasteClipboard(editor.window);
            EXPECT_EQ(editor.Lines(), (TextLines{u"ab"})) << place;
            EXPECT_EQ(editor.beeps.size(), 1u);
        }
    }
    Editor editor(TypeCharacter, {1, 1}, u"");
    editor.clipboard = std::u16string(200, u'\xD7FF');
    PasteClipboard(editor.window);
    EXPECT_EQ(editor.Lines()[0].size(), 200u);
}

} // namespace
} // namespace vantrel::test
