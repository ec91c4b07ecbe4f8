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

constexpr char16_t PlanesText[] =
    u"plane\none\nstays\n\nwhat\nis changed\n\nis plane two\nplane\nthree\nstays\ntoo";

enum class Drags : std::uint8_t { No, Yes };
enum class Shape : std::uint8_t {
    Matrix,
    Plane
}; // of a plane every change to its number of lines is refused

class Walk {
public:
    Walk(std::uint32_t seed, Drags drags, Shape kind = Shape::Matrix)
        : editor(TypeCharacter,
                 kind == Shape::Plane ? std::vector<std::int64_t>{3, 4, 1} : std::vector<std::int64_t>{1, 1},
                 kind == Shape::Plane ? PlanesText : StartText),
          random_(seed), drags_(drags), kind_(kind), plain_({})
    {
        if (kind == Shape::Plane) editor.ShowPlane(1);
        plain_ = PlainEditor(Shown());
    }

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
            ASSERT_EQ(Shown(), plain_.Lines());
        }
        Compare();
    }
    void RedoAll()
    {
        while (CanRedo(editor.window)) {
            Redo();
            ASSERT_EQ(Shown(), plain_.Lines());
        }
        Compare();
    }

    // Both have made the same steps.
    void CompareStacks()
    {
        ASSERT_EQ(editor.UndoSteps(), static_cast<std::int64_t>(plain_.UndoSteps()));
        ASSERT_EQ(editor.RedoSteps(), static_cast<std::int64_t>(plain_.RedoSteps()));
    }

    Editor editor;

private:
    [[nodiscard]] TextLines Shown() const
    {
        const TextLines all = editor.Lines();
        const auto first = static_cast<std::ptrdiff_t>(FirstEditRow(editor.window));
        const auto rows = static_cast<std::ptrdiff_t>(EditRows(editor.window));
        return {all.begin() + first, all.begin() + first + rows};
    }
    void Compare()
    {
        ASSERT_EQ(Shown(), plain_.Lines());
        const EditState& state = editor.State();
        ASSERT_EQ(state.modified, plain_.Modified());
        ASSERT_EQ(state.undo != nullptr, plain_.UndoSteps() > 0);
        ASSERT_EQ(state.redo != nullptr, plain_.RedoSteps() > 0);
        ASSERT_EQ(state.maximumWidth, LongestRecord(editor.node->records) * CharWidth);
        const EditCaret caret = editor.Caret();
        ASSERT_EQ(caret, plain_.Clamped(caret));
        ASSERT_TRUE(GetCaretPicture(editor.window).shown);
        ASSERT_FALSE(editor.Notified(EditNotifyOutOfMemory));
        ASSERT_EQ(editor.Notified(EditNotifyPlaneLines), refusals_ > 0);
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
    EditCaret Moved(EditCaret from, std::uint32_t key, bool control)
    {
        const EditWindow& window = editor.window;
        switch (key) {
        case KeyLeft: return plain_.Left(from);
        case KeyRight: return plain_.Right(from);
        case KeyUp: return plain_.Down(from, -1);
        case KeyDown: return plain_.Down(from, 1);
        case KeyHome: return control ? EditCaret{0, 0} : EditCaret{0, from.line};
        case KeyEnd: return control ? plain_.TextEnd() : plain_.LineEnd(from);
        case KeyPageUp:
            return control ? plain_.Across(from, -window.columnsPerPage)
                           : plain_.Down(from, -window.linesPerPage);
        default:
            return control ? plain_.Across(from, window.columnsPerPage)
                           : plain_.Down(from, window.linesPerPage);
        }
    }
    void Move()
    {
        static constexpr std::uint32_t keys[] = {KeyLeft, KeyRight, KeyUp,     KeyDown,
                                                 KeyHome, KeyEnd,   KeyPageUp, KeyPageDown};
        const std::uint32_t key = keys[Below(8)];
        const bool shift = Below(3) == 0;
        const bool control = Below(4) == 0;
        const EditPlace before = PlaceOf(editor.window);
        const EditCaret expected = Moved(before.caret, key, control);
        editor.Press(key, shift, control);
        const EditPlace after = PlaceOf(editor.window);
        ASSERT_EQ(after.caret, expected) << key << control;
        ASSERT_EQ(after.end, expected);
        ASSERT_EQ(after.anchor, shift ? before.anchor : expected);
    }
    EditSelection Selected() const
    {
        if (!IsSelectionEmpty(editor.window)) return NormalisedSelection(editor.window);
        return {editor.Caret(), editor.Caret()};
    }
    // What both do; a refusal leaves everything as it is.
    template <typename Action>
    void Replace(EditCaret from, EditCaret to, const std::u16string& inserted, Action action)
    {
        const EditPlace before = PlaceOf(editor.window);
        const bool otherLines =
            from.line != to.line || inserted.find_first_of(u"\r\n") != std::u16string::npos;
        action();
        if (kind_ == Shape::Plane && otherLines) {
            refusals_ += editor.Notified(EditNotifyPlaneLines) ? 1 : 0;
            ASSERT_EQ(editor.Caret(), before.caret);
            ASSERT_EQ(PlaceOf(editor.window).anchor, before.anchor);
            ASSERT_EQ(PlaceOf(editor.window).end, before.end);
            return;
        }
        plain_.Replace(from, to, WithoutReturns(inserted));
        ASSERT_EQ(editor.Caret(), plain_.Caret());
        ASSERT_TRUE(IsSelectionEmpty(editor.window));
    }
    template <typename Action> void Change(const std::u16string& inserted, Action action)
    {
        const EditSelection range = Selected();
        Replace(range.start, range.end, inserted, action);
    }
    // From one end of the movement to the other, nothing being selected.
    void DeletePassed(std::uint32_t key, EditCaret to, bool control = false)
    {
        Replace(editor.Caret(), to, u"", [&] { editor.Press(key, false, control); });
    }
    EditCaret Neighbour(int direction) const
    {
        return direction > 0 ? plain_.Right(editor.Caret()) : plain_.Left(editor.Caret());
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
        Replace(editor.Caret(), Neighbour(1), u"o", [&] {
            editor.view.overtype = true;
            editor.Type(u"o");
            editor.view.overtype = false;
        });
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
        const bool refused = kind_ == Shape::Plane && range.start.line != range.end.line;
        if (refused) refusals_ += editor.Notified(EditNotifyPlaneLines) ? 1 : 0;
        if (range.start != range.end && !refused) plain_.Drag(range.start, range.end, target);
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
    Shape kind_;
    PlainEditor plain_;
    int refusals_ = 0; // of other numbers of lines
};

void TakeSteps(Walk& walk, int steps)
{
    for (int step = 0; step < steps; ++step) {
        walk.Step();
        ASSERT_FALSE(testing::Test::HasFatalFailure()) << "step " << step;
    }
    walk.CompareStacks();
    walk.UndoAll();
    walk.CompareStacks();
    ASSERT_FALSE(testing::Test::HasFatalFailure());
}

TEST(EditWalk, AHundredThousandRandomStepsMatchAPlainEditor)
{
    Walk walk(20240229, Drags::No);
    TakeSteps(walk, 100000);
    EXPECT_EQ(walk.editor.Lines(), (TextLines{u"first line", u"second", u"", u"fourth line of the text"}));
    EXPECT_FALSE(walk.editor.State().modified);
    walk.RedoAll();
    walk.CompareStacks();
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

TEST(EditWalk, APlaneMatchesAPlainEditorThatKeepsItsLines)
{
    for (const Drags drags : {Drags::No, Drags::Yes}) {
        Walk walk(11, drags, Shape::Plane);
        const TextLines before = walk.editor.Lines();
        TakeSteps(walk, 10000);
        walk.RedoAll();
        ASSERT_FALSE(testing::Test::HasFatalFailure());
        const TextLines after = walk.editor.Lines();
        for (const std::size_t row : {0u, 1u, 2u, 3u, 8u, 9u, 10u, 11u})
            EXPECT_EQ(after[row], before[row]);
        walk.UndoAll();
        EXPECT_TRUE(drags == Drags::Yes || walk.editor.Lines() == before);
    }
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
