// A long random walk of changes beside a plain text that is edited the obvious way.

#include <gtest/gtest.h>

#include <random>

#include "editor_fixture.h"

namespace vantrel::test {
namespace {

std::u16string Joined(const TextLines& lines)
{
    std::u16string text;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i > 0) text.push_back(u'\n');
        text += lines[i];
    }
    return text;
}

std::u16string WithoutReturns(std::u16string text)
{
    for (std::size_t at = text.find(u"\r\n"); at != text.npos; at = text.find(u"\r\n"))
        text.erase(at, 1);
    return text;
}

class Walk {
public:
    explicit Walk(std::uint32_t seed)
        : random_(seed), text_(u"first line\nsecond\n\nfourth line of the text"), history_{text_}
    {
    }

    void Step()
    {
        switch (Below(12)) {
        case 0: Place(); break;
        case 1: Select(); break;
        case 2: Undo(); break;
        case 3: Redo(); break;
        case 4: Change(u"\r\n", [&] { OnChar(editor.window, u'\r', false); }); break;
        case 5: DeleteOne(KeyBackspace, -1); break;
        case 6: DeleteOne(KeyDelete, 1); break;
        case 7:
        case 8: PasteSome(); break;
        default: TypeOne(); break;
        }
        ASSERT_EQ(Joined(editor.Lines()), text_);
        ASSERT_EQ(editor.UndoSteps(), static_cast<std::int64_t>(now_));
        ASSERT_EQ(editor.RedoSteps(), static_cast<std::int64_t>(history_.size() - 1 - now_));
        ASSERT_EQ(editor.State().modified, now_ > 0);
        ASSERT_EQ(editor.State().maximumWidth, LongestRecord(editor.node->records) * CharWidth);
        const EditCaret caret = editor.Caret();
        ASSERT_EQ(caret, ClampToText(editor.window, caret));
    }
    void UndoAll()
    {
        while (now_ > 0) {
            Undo();
            ASSERT_EQ(Joined(editor.Lines()), text_);
        }
    }
    void RedoAll()
    {
        while (now_ + 1 < history_.size()) {
            Redo();
            ASSERT_EQ(Joined(editor.Lines()), text_);
        }
    }

    Editor editor{TypeCharacter, {1, 1}, u"first line\nsecond\n\nfourth line of the text"};

private:
    std::int64_t Below(std::int64_t limit)
    {
        return std::uniform_int_distribution<std::int64_t>(0, limit - 1)(random_);
    }
    EditCaret RandomPlace()
    {
        const std::int64_t line = Below(EditRows(editor.window));
        return {Below(EditLine(editor.window, line).length + 1), line};
    }
    std::size_t OffsetOf(EditCaret caret) const
    {
        std::size_t offset = 0;
        for (std::int64_t line = 0; line < caret.line; ++line)
            offset = text_.find(u'\n', offset) + 1;
        return offset + static_cast<std::size_t>(caret.column);
    }
    void Place()
    {
        const EditCaret caret = RandomPlace();
        editor.Put(caret.column, caret.line);
    }
    void Select() { editor.Select(RandomPlace(), RandomPlace()); }
    void Remember(std::size_t from, std::size_t to, const std::u16string& inserted)
    {
        text_.replace(from, to - from, WithoutReturns(inserted));
        history_.resize(now_ + 1);
        history_.push_back(text_);
        ++now_;
    }
    template <typename Action> void Change(const std::u16string& inserted, Action action)
    {
        const EditSelection selection = NormalisedSelection(editor.window);
        const std::size_t from = OffsetOf(IsSelectionEmpty(editor.window) ? editor.Caret() : selection.start);
        const std::size_t to = IsSelectionEmpty(editor.window) ? from : OffsetOf(selection.end);
        action();
        Remember(from, to, inserted);
    }
    void DeleteOne(std::uint32_t key, int direction)
    {
        if (!IsSelectionEmpty(editor.window)) {
            Change(u"", [&] { editor.Press(key); });
            return;
        }
        const std::size_t at = OffsetOf(editor.Caret());
        const std::size_t from = direction < 0 && at > 0 ? at - 1 : at;
        const std::size_t to = direction > 0 && at < text_.size() ? at + 1 : at;
        editor.Press(key);
        Remember(from, to, u"");
    }
    void TypeOne()
    {
        const std::u16string character(1, static_cast<char16_t>(u'a' + Below(26)));
        Change(character, [&] { editor.Type(character); });
    }
    void PasteSome()
    {
        static const std::u16string texts[] = {
            u"", u"\r\n", u"\n\n", u"pasted", u"one\r\ntwo\r\nthree", u"end\r\n", u"\r\nstart", u"x\ny"};
        const std::u16string& text = texts[static_cast<std::size_t>(Below(8))];
        Change(text, [&] { editor.Paste(text); });
    }
    void Undo()
    {
        vantrel::Undo(editor.window);
        if (now_ > 0) text_ = history_[--now_];
    }
    void Redo()
    {
        vantrel::Redo(editor.window);
        if (now_ + 1 < history_.size()) text_ = history_[++now_];
    }

    std::mt19937 random_;
    std::u16string text_;
    std::vector<std::u16string> history_;
    std::size_t now_ = 0;
};

TEST(EditWalk, TenThousandRandomStepsMatchAPlainText)
{
    Walk walk(20240229);
    for (int step = 0; step < 10000; ++step) {
        walk.Step();
        ASSERT_FALSE(testing::Test::HasFatalFailure()) << "step " << step;
    }
    walk.UndoAll();
    ASSERT_FALSE(testing::Test::HasFatalFailure());
    EXPECT_EQ(walk.editor.Lines(), (TextLines{u"first line", u"second", u"", u"fourth line of the text"}));
    EXPECT_FALSE(walk.editor.State().modified);
    walk.RedoAll();
    ASSERT_FALSE(testing::Test::HasFatalFailure());
    EXPECT_FALSE(CanRedo(walk.editor.window));
}

TEST(EditWalk, OtherSeeds)
{
    for (std::uint32_t seed = 1; seed <= 20; ++seed) {
        Walk walk(seed);
        for (int step = 0; step < 300; ++step) {
            walk.Step();
            ASSERT_FALSE(testing::Test::HasFatalFailure()) << "seed " << seed << " step " << step;
        }
        walk.UndoAll();
        walk.RedoAll();
        walk.UndoAll();
    }
}

} // namespace
} // namespace vantrel::test
