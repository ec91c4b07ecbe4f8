#include <gtest/gtest.h>

#include "editor_fixture.h"

namespace vantrel::test {
namespace {

TEST(EditShiftState, CollectsTheModifiers)
{
    KeyStates states;
    EXPECT_EQ(GetShiftState(states), 0u);
    states.shift = true;
    EXPECT_EQ(GetShiftState(states), 1u);
    states.control = true;
    EXPECT_EQ(GetShiftState(states), 3u);
    states.alt = true;
    EXPECT_EQ(GetShiftState(states), 7u);
}

TEST(EditShiftState, AltGrCountsAsAltAlone)
{
    KeyStates states;
    states.alt = states.rightAlt = states.control = true; // left Ctrl comes with it
    EXPECT_EQ(GetShiftState(states), static_cast<std::uint32_t>(EditModifierAlt));
    states.rightControl = true; // and this one the user pressed
    EXPECT_EQ(GetShiftState(states), static_cast<std::uint32_t>(EditModifierAlt | EditModifierControl));
    states.rightAlt = false;
    states.rightControl = false;
    EXPECT_EQ(GetShiftState(states), static_cast<std::uint32_t>(EditModifierAlt | EditModifierControl));
}

struct KeyCase {
    std::uint32_t key;
    bool control;
    EditCaret expected; // from column 5 of line 10
};

TEST(EditKeys, MoveTheCaretAndCollapseOrExtendTheSelection)
{
    std::u16string text;
    for (int line = 0; line < 30; ++line)
        text += line == 29 ? u"0123456789" : u"01234567890123456789012345678901234567890123456789\n";
    const KeyCase cases[] = {
        {KeyLeft, false, {4, 10}},     {KeyRight, false, {6, 10}},    {KeyUp, false, {5, 9}},
        {KeyDown, false, {5, 11}},     {KeyLeft, true, {4, 10}},      {KeyRight, true, {6, 10}},
        {KeyUp, true, {5, 9}},         {KeyDown, true, {5, 11}},      {KeyHome, false, {0, 10}},
        {KeyEnd, false, {50, 10}},     {KeyHome, true, {0, 0}},       {KeyEnd, true, {10, 29}},
        {KeyPageUp, false, {5, 0}},    {KeyPageDown, false, {5, 20}}, {KeyPageUp, true, {0, 10}},
        {KeyPageDown, true, {30, 10}},
    };
    Editor editor(TypeCharacter, {1, 1}, text);
    ASSERT_EQ(editor.window.columnsPerPage, 25);
    ASSERT_EQ(editor.window.linesPerPage, 10);
    for (const KeyCase& c : cases) {
        editor.Put(5, 10);
        editor.Press(c.key, false, c.control);
        EXPECT_TRUE(editor.handled);
        EXPECT_EQ(editor.Caret(), c.expected) << c.key << c.control;
        EXPECT_TRUE(IsSelectionEmpty(editor.window));
        editor.Put(5, 10);
        editor.Press(c.key, true, c.control);
        EXPECT_EQ(editor.Caret(), c.expected) << c.key << c.control;
        EXPECT_EQ(editor.State().anchorColumn, 5);
        EXPECT_EQ(editor.State().anchorLine, 10);
        EXPECT_EQ(editor.State().endColumn, c.expected.column);
        EXPECT_EQ(editor.State().endLine, c.expected.line);
    }
}

TEST(EditKeys, ControlLettersAreCommands)
{
    Editor editor(TypeCharacter, {3}, u"abc");
    editor.Press('A', false, true);
    EXPECT_TRUE(editor.handled);
    EXPECT_FALSE(IsSelectionEmpty(editor.window));
    editor.Press('C', false, true);
    EXPECT_EQ(editor.clipboard, u"abc");
    EXPECT_TRUE(IsSelectionEmpty(editor.window)) << "copying collapses the selection";
    editor.Press('V', false, true);
    EXPECT_EQ(editor.Lines(), (TextLines{u"abcabc"}));
    editor.Press('A', false, true);
    editor.Press('X', false, true);
    EXPECT_EQ(editor.clipboard, u"abcabc");
    EXPECT_EQ(editor.Lines(), (TextLines{u""}));
    editor.Press('Z', false, true);
    EXPECT_EQ(editor.Lines(), (TextLines{u"abcabc"}));
    editor.Press('Y', false, true);
    EXPECT_EQ(editor.Lines(), (TextLines{u""}));
}

TEST(EditKeys, OtherModifiersMakeThemSomebodyElses)
{
    Editor editor(TypeCharacter, {3}, u"abc");
    for (const std::uint32_t key :
         {std::uint32_t('A'), std::uint32_t('C'), std::uint32_t('V'), std::uint32_t('X'), std::uint32_t('Y'),
          std::uint32_t('Z'), std::uint32_t('Q'), std::uint32_t(9)}) {
        editor.Press(key);
        EXPECT_FALSE(editor.handled) << key;
        editor.Press(key, true, true);
        EXPECT_FALSE(editor.handled) << key;
    }
    for (const std::uint32_t key : {KeyBackspace, KeyInsert, KeyDelete}) {
        editor.Press(key, true);
        EXPECT_FALSE(editor.handled) << key;
    }
    editor.Press(KeyBackspace, false, true);
    EXPECT_FALSE(editor.handled);
    editor.Press(KeyInsert, false, true);
    EXPECT_FALSE(editor.handled);
    EXPECT_EQ(editor.Lines(), (TextLines{u"abc"}));
}

TEST(EditKeys, ShiftF10OpensThePopUpMenuAtTheCaret)
{
    constexpr std::uint32_t KeyF10 = 121;
    Editor editor(TypeCharacter, {3}, u"abc");
    editor.Press(KeyF10);
    EXPECT_FALSE(editor.handled) << "alone it is the menu bar's";
    EXPECT_EQ(editor.contextMenus, 0);
    editor.Press(KeyF10, true);
    EXPECT_TRUE(editor.handled);
    EXPECT_EQ(editor.contextMenus, 1);
}

TEST(EditKeys, KeyCode127IsABackspace)
{
    Editor editor(TypeCharacter, {3}, u"abc");
    editor.Put(3, 0);
    editor.Press(127);
    EXPECT_EQ(editor.Lines(), (TextLines{u"ab"}));
}

TEST(EditKeys, InsertRedrawsTheCaret)
{
    Editor editor(TypeCharacter, {3}, u"abc");
    const int drawn = editor.caretsDrawn;
    editor.Press(KeyInsert);
    EXPECT_TRUE(editor.handled);
    EXPECT_EQ(editor.caretsDrawn, drawn + 1);
}

TEST(EditChars, ReleasedControlAndSurrogateCharactersAreNotTyped)
{
    Editor editor(TypeCharacter, {1}, u"a");
    OnChar(editor.window, u'x', true);
    for (char16_t c = 1; c < 32; ++c) {
        if (c != u'\r' && c != u'\n') OnChar(editor.window, c, false);
    }
    EXPECT_TRUE(editor.beeps.empty());
    OnChar(editor.window, static_cast<char16_t>(0xD800), false);
    OnChar(editor.window, static_cast<char16_t>(0xDFFF), false);
    EXPECT_EQ(editor.beeps, (std::vector<EditBeep>{EditBeep::Asterisk, EditBeep::Asterisk}));
    EXPECT_EQ(editor.Lines(), (TextLines{u"a"}));
}

TEST(EditChars, TheIdeographicSpaceBecomesABlank)
{
    Editor editor(TypeCharacter, {1}, u"a");
    editor.Type(u"\u3000\uE000⍳ ");
    EXPECT_EQ(editor.Lines(), (TextLines{u" \uE000⍳ a"}));
}

TEST(EditChars, EnterWithAModifierIsIgnored)
{
    Editor editor(TypeCharacter, {1, 1}, u"ab");
    editor.keys.shift = true;
    editor.Type(u"\r");
    editor.keys.shift = false;
    editor.keys.control = true;
    editor.Type(u"\n");
    EXPECT_EQ(editor.Lines(), (TextLines{u"ab"}));
    EXPECT_TRUE(editor.beeps.empty());
}

} // namespace
} // namespace vantrel::test
