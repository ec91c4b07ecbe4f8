// Long random walks of changes beside an editor that does everything the obvious way.

#include <gtest/gtest.h>

#include <random>

#include "editor_fixture.h"
#include "plain_editor.h"

namespace vantrel::test {
namespace {

constexpr char16_t StartText[] = u"first line\nsecond\n\nfourth line of the text";

std::u16string WithoutReturns(std::u16string text)
{
    text.erase(std::remove(text.begin(), text.end(), u'\r'), text.end());
    return text;
}

enum class Drags : std::uint8_t { No, Yes };

class Walk {
public:
    Walk(std::uint32_t seed, Drags drags) : random_(seed), drags_(drags), plain_(editor.Lines()) {}

    void Step()
    {
        switch (Below(19)) {
        case 0: Place(); break;
        case 1: Select(); break;
        case 2: Undo(); break;
        case 3: Redo(); break;
        case 4: Change(u"\n", [&] { editor.Type(u"\r"); }); break;
        case 5: DeleteOne(KeyBackspace, -1); break;
        case 6: DeleteOne(KeyDelete, 1); break;
        case 7: DeleteLineEnd(); break;
        case 8: Cut(); break;
        case 9:
        case 10: PasteSome(); break;
        case 11: Drag(); break;
        case 12: Move(); break;
        case 13: Overtype(); break;
        default: TypeOne(); break;
        }
        Compare();
    }
    void UndoAll()
    {
        while (CanUndo(editor.window)) {
            Undo();
            ASSERT_EQ(editor.Lines(), plain_.Lines());
        }
        Compare();
    }
    void RedoAll()
    {
        while (CanRedo(editor.window)) {
            Redo();
            ASSERT_EQ(editor.Lines(), plain_.Lines());
        }
        Compare();
    }

    Editor editor{TypeCharacter, {1, 1}, StartText};

private:
    void Compare()
    {
        ASSERT_EQ(editor.Lines(), plain_.Lines());
        const EditState& state = editor.State();
        ASSERT_EQ(state.modified, plain_.Modified());
        ASSERT_EQ(state.undo != nullptr, plain_.UndoSteps() > 0);
        ASSERT_EQ(state.redo != nullptr, plain_.RedoSteps() > 0);
        ASSERT_EQ(state.maximumWidth, LongestRecord(editor.node->records) * CharWidth);
        const EditCaret caret = editor.Caret();
        ASSERT_EQ(caret, plain_.Clamped(caret));
        ASSERT_TRUE(GetCaretPicture(editor.window).shown);
        ASSERT_TRUE(editor.notifications.empty() || editor.notifications.back() == EditNotifyModified);
    }
    std::int64_t Below(std::int64_t limit)
    {
        return std::uniform_int_distribution<std::int64_t>(0, limit - 1)(random_);
    }
    EditCaret RandomPlace()
    {
        const std::int64_t line = Below(EditRows(editor.window));
        return {Below(EditLine(editor.window, line).length + 1), line};
    }
    void Place()
    {
        const EditCaret caret = RandomPlace();
        editor.Put(caret.column, caret.line);
    }
    void Select() { editor.Select(RandomPlace(), RandomPlace()); }
    void Move()
    {
        static constexpr std::uint32_t keys[] = {KeyLeft, KeyRight, KeyUp,     KeyDown,
                                                 KeyHome, KeyEnd,   KeyPageUp, KeyPageDown};
        editor.Press(keys[Below(8)], Below(3) == 0, Below(4) == 0);
    }
    EditSelection Selected() const
    {
        if (!IsSelectionEmpty(editor.window)) return NormalisedSelection(editor.window);
        return {editor.Caret(), editor.Caret()};
    }
    template <typename Action> void Change(const std::u16string& inserted, Action action)
    {
        const EditSelection range = Selected();
        action();
        plain_.Replace(range.start, range.end, WithoutReturns(inserted));
        ASSERT_EQ(editor.Caret(), plain_.Caret());
    }
    // From one end of the movement to the other, nothing being selected.
    void DeletePassed(std::uint32_t key, EditCaret to, bool control = false)
    {
        const EditCaret from = editor.Caret();
        editor.Press(key, false, control);
        plain_.Replace(from, to, u"");
        ASSERT_EQ(editor.Caret(), plain_.Caret());
    }
    EditCaret Neighbour(int direction)
    {
        const EditCaret at = editor.Caret();
        const std::int64_t length = EditLine(editor.window, at.line).length;
        if (direction > 0) {
            if (at.column < length) return {at.column + 1, at.line};
            return at.line + 1 < EditRows(editor.window) ? EditCaret{0, at.line + 1} : at;
        }
        if (at.column > 0) return {at.column - 1, at.line};
        return at.line > 0 ? EditCaret{EditLine(editor.window, at.line - 1).length, at.line - 1} : at;
    }
    void DeleteOne(std::uint32_t key, int direction)
    {
        if (IsSelectionEmpty(editor.window)) {
            DeletePassed(key, Neighbour(direction));
        } else {
            Change(u"", [&] { editor.Press(key); });
        }
    }
    void DeleteLineEnd()
    {
        const EditCaret at = editor.Caret();
        DeletePassed(KeyDelete, {EditLine(editor.window, at.line).length, at.line}, true);
    }
    void Cut()
    {
        if (IsSelectionEmpty(editor.window)) return;
        Change(u"", [&] { editor.Press('X', false, true); });
    }
    void TypeOne()
    {
        const std::u16string character(1, static_cast<char16_t>(u'a' + Below(26)));
        Change(character, [&] { editor.Type(character); });
    }
    void Overtype()
    {
        if (!IsSelectionEmpty(editor.window)) return;
        const EditCaret from = editor.Caret();
        const EditCaret to = Neighbour(1);
        editor.view.overtype = true;
        editor.Type(u"o");
        editor.view.overtype = false;
        plain_.Replace(from, to, u"o");
    }
    void PasteSome()
    {
        static const std::u16string texts[] = {
            u"", u"\r\n", u"\n\n", u"pasted", u"one\r\ntwo\r\nthree", u"end\r\n", u"\r\nstart", u"x\ny"};
        const std::u16string text = editor.clipboard && Below(3) == 0 && editor.clipboard->size() < 200
                                        ? *editor.clipboard
                                        : texts[static_cast<std::size_t>(Below(8))];
        editor.clipboard = text;
        Change(text, [&] { editor.Press('V', false, true); });
    }
    void Drag()
    {
        if (drags_ == Drags::No) return;
        Select();
        const EditSelection range = Selected();
        const EditCaret target = RandomPlace();
        DropText(editor.window, target);
        if (range.start != range.end) plain_.Drag(range.start, range.end, target);
    }
    void Undo()
    {
        vantrel::Undo(editor.window);
        plain_.Undo();
    }
    void Redo()
    {
        vantrel::Redo(editor.window);
        plain_.Redo();
    }

    std::mt19937 random_;
    Drags drags_;
    PlainEditor plain_;
};

void TakeSteps(Walk& walk, int steps)
{
    for (int step = 0; step < steps; ++step) {
        walk.Step();
        ASSERT_FALSE(testing::Test::HasFatalFailure()) << "step " << step;
    }
    walk.UndoAll();
    ASSERT_FALSE(testing::Test::HasFatalFailure());
}

TEST(EditWalk, AHundredThousandRandomStepsMatchAPlainEditor)
{
    Walk walk(20240229, Drags::No);
    TakeSteps(walk, 100000);
    EXPECT_EQ(walk.editor.Lines(), (TextLines{u"first line", u"second", u"", u"fourth line of the text"}));
    EXPECT_FALSE(walk.editor.State().modified);
    walk.RedoAll();
    ASSERT_FALSE(testing::Test::HasFatalFailure());
    EXPECT_FALSE(CanRedo(walk.editor.window));
    walk.UndoAll();
    EXPECT_EQ(walk.editor.Lines(), (TextLines{u"first line", u"second", u"", u"fourth line of the text"}));
}

// A group that is undone takes an older step along, so the text need not come back as it was; but it is what the plain editor has.
TEST(EditWalk, DraggedTextMatchesAPlainEditor)
{
    Walk walk(7, Drags::Yes);
    TakeSteps(walk, 20000);
    walk.RedoAll();
    ASSERT_FALSE(testing::Test::HasFatalFailure());
}

TEST(EditWalk, OtherSeeds)
{
    for (std::uint32_t seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        Walk walk(seed, seed % 2 == 0 ? Drags::Yes : Drags::No);
        TakeSteps(walk, 300);
        walk.RedoAll();
        walk.UndoAll();
        ASSERT_FALSE(testing::Test::HasFatalFailure());
    }
}

} // namespace
} // namespace vantrel::test
