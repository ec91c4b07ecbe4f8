#include "editor/line_widths.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "editor_fixture.h"

namespace vantrel::test {
namespace {

constexpr std::size_t LongLength = 100000;

// Widths of 0 to 9 pixels, so that several places may share one x.
void MeasureByCode(void*, char16_t first, char16_t last, std::int32_t* widths)
{
    for (std::int32_t unit = first; unit <= last; ++unit)
        *widths++ = unit % 10;
}

std::u16string LongText(std::size_t length = LongLength)
{
    std::u16string text;
    for (std::size_t i = 0; i < length; ++i)
        text += static_cast<char16_t>(u' ' + i * i % 90);
    return text;
}

TextRow RowOf(const std::u16string& text, std::int64_t row = 0)
{
    return {row, {text.data(), static_cast<std::int64_t>(text.size())}};
}

class LongLines : public testing::Test {
protected:
    LongLines() { widths.Reset(&MeasureByCode, nullptr, 0); }

    void ExpectRight(const std::u16string& text)
    {
        const TextRow row = RowOf(text);
        for (std::int64_t column = 0; column <= row.text.length; column += column < 50 ? 1 : 997) {
            const std::int64_t x = widths.TextWidth(text.data(), column);
            ASSERT_EQ(lines.WidthUpTo(widths, row, column), x) << column;
            for (const std::int64_t near : {x - 1, x, x + 1}) {
                ASSERT_EQ(lines.ColumnAt(widths, row, near),
                          widths.ColumnAt(text.data(), row.text.length, near))
                    << near;
            }
        }
        ASSERT_EQ(lines.WidthUpTo(widths, row, row.text.length),
                  widths.TextWidth(text.data(), row.text.length));
        ASSERT_EQ(lines.ColumnAt(widths, row, 1 << 30), row.text.length);
    }

    CharWidths widths;
    LineWidths lines;
};

TEST_F(LongLines, AnswerAsMeasuringWould)
{
    for (const std::size_t length : {0u, 1u, 8191u, 8192u, 8193u, 100000u})
        ExpectRight(LongText(length));
}

TEST_F(LongLines, AreMeasuredOnce)
{
    std::u16string text = LongText();
    const TextRow row = RowOf(text);
    const std::int64_t x = lines.WidthUpTo(widths, row, row.text.length);
    const std::int64_t middle = lines.ColumnAt(widths, row, x / 2);
    text[10] = u'\x3F'; // nobody is told
    ASSERT_NE(widths.TextWidth(text.data(), row.text.length), x);
    EXPECT_EQ(lines.WidthUpTo(widths, row, row.text.length), x);
    EXPECT_EQ(lines.ColumnAt(widths, row, x / 2), middle);
    lines.Forget();
    EXPECT_NE(lines.WidthUpTo(widths, row, row.text.length), x);
}

TEST_F(LongLines, ShortOnesAndFontsOfOneWidthNeedNoMemory)
{
    const std::int64_t live = LiveAllocations();
    ExpectRight(LongText(8000));
    widths.Reset(nullptr, nullptr, 7);
    const std::u16string text = LongText();
    EXPECT_EQ(lines.WidthUpTo(widths, RowOf(text), 50000), 350000);
    EXPECT_EQ(lines.ColumnAt(widths, RowOf(text), 349999), 49999);
    EXPECT_EQ(LiveAllocations(), live);
}

// Replaces units and lets the lines know; what they answer is the row's width.
void Replace(LineWidths& lines, CharWidths& widths, std::u16string& text, std::size_t column,
             std::size_t removed, const std::u16string& inserted)
{
    const std::u16string old = text;
    const TextRow before = RowOf(text);
    text.replace(column, removed, inserted);
    const std::int64_t width =
        lines.Change(widths, before, RowOf(text).text, static_cast<std::int64_t>(column),
                     static_cast<std::int64_t>(removed));
    ASSERT_EQ(width, widths.TextWidth(text.data(), static_cast<std::int64_t>(text.size())));
}

TEST_F(LongLines, FollowChangesEverywhere)
{
    std::mt19937 random(5);
    const auto below = [&](std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    };
    std::u16string text = LongText(20000);
    text.reserve(200000);
    ExpectRight(text);
    for (int step = 0; step < 400; ++step) {
        SCOPED_TRACE(step);
        const std::size_t column = step % 3 == 0 ? text.size() : below(text.size() + 1);
        const std::size_t most = std::min(text.size() - column, below(10) == 0 ? std::size_t{9000} : 5);
        const std::size_t removed = text.size() > 9000 ? below(most + 1) : 0;
        Replace(lines, widths, text, column, removed, LongText(below(20) == 0 ? 7000 : below(4)));
        ASSERT_FALSE(HasFatalFailure());
        if (step % 20 == 0) ExpectRight(text);
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST_F(LongLines, MeasureOnlyWhatAChangeTouches)
{
    std::u16string text = LongText();
    text.reserve(LongLength + 10);
    const std::int64_t x = lines.WidthUpTo(widths, RowOf(text), LongLength);
    text[10] = u'\x3F'; // nobody is told
    const TextRow before = RowOf(text);
    text += u'7'; // 5 pixels wide
    EXPECT_EQ(lines.Change(widths, before, RowOf(text).text, LongLength, 0), x + 5);
}

TEST_F(LongLines, OfOthersAreNotMistaken)
{
    const std::u16string text = LongText();
    const std::u16string other(LongLength, u'\x31'); // 9 pixels each
    EXPECT_EQ(lines.WidthUpTo(widths, RowOf(text), 100), widths.TextWidth(text.data(), 100));
    EXPECT_EQ(lines.WidthUpTo(widths, RowOf(other), 100), 900) << "the same row with another text";
    EXPECT_EQ(lines.WidthUpTo(widths, RowOf(text, 128), 100), widths.TextWidth(text.data(), 100));
    EXPECT_EQ(lines.WidthUpTo(widths, RowOf(other, 256), 100), 900) << "rows that share a place";
    EXPECT_EQ(lines.Change(widths, RowOf(text, 5), RowOf(text).text, 0, 0), -1) << "never looked at";
}

TEST_F(LongLines, AreMeasuredAsTheyAreWithoutMemory)
{
    std::u16string text = LongText();
    text.reserve(LongLength + 10);
    for (std::int64_t nth = 1; nth < 4; ++nth) {
        ArmAllocationFault(nth, true);
        EXPECT_EQ(lines.WidthUpTo(widths, RowOf(text), 70000), widths.TextWidth(text.data(), 70000));
        EXPECT_EQ(lines.ColumnAt(widths, RowOf(text), 70000), widths.ColumnAt(text.data(), 100000, 70000));
        EXPECT_GT(DisarmAllocationFault(), 0);
    }
    ExpectRight(text);
    const TextRow before = RowOf(text);
    text += u'q';
    ArmAllocationFault(1, true);
    EXPECT_EQ(lines.Change(widths, before, RowOf(text).text, LongLength, 0), -1);
    DisarmAllocationFault();
    ExpectRight(text);
}

// --- in the editor ---

TEST_F(LongLines, AreTypedIntoWithTheCaretInPlace)
{
    Editor editor(TypeCharacter, {1, 1}, u"short\n" + LongText());
    editor.view.widths.Reset(&MeasureByCode, nullptr, 0);
    OnFontChanged(editor.window);
    const auto expectPlace = [&] {
        const EditCaret caret = editor.Caret();
        const RecordText line = EditLine(editor.window, caret.line);
        const std::int64_t scrolled = editor.State().scroll.horizontal.position;
        EXPECT_EQ(CaretToPosition(editor.window, caret).point.x,
                  2 + widths.TextWidth(line.text, caret.column) - scrolled);
        EXPECT_EQ(editor.State().maximumWidth,
                  widths.TextWidth(EditLine(editor.window, 1).text, EditLine(editor.window, 1).length));
        EXPECT_TRUE(GetCaretPicture(editor.window).shown);
    };
    editor.Press(KeyEnd, false, true);
    expectPlace();
    editor.Type(u"typed at the end");
    expectPlace();
    editor.Put(50000, 1);
    editor.Type(u"and in the middle");
    expectPlace();
    editor.Press(KeyBackspace);
    editor.Select({100, 1}, {30000, 1});
    editor.Press(KeyDelete);
    expectPlace();
    Undo(editor.window);
    expectPlace();
    editor.Put(60000, 1);
    editor.Type(u"\r");
    EXPECT_EQ(editor.Caret(), (EditCaret{0, 2}));
    editor.Press(KeyBackspace);
    expectPlace();
    while (CanUndo(editor.window))
        Undo(editor.window);
    EXPECT_EQ(editor.Lines(), (TextLines{u"short", LongText()}));
    expectPlace();
}

TEST_F(LongLines, AreMeasuredAgainInANewFont)
{
    Editor editor(TypeCharacter, {1, 1}, LongText());
    editor.view.widths.Reset(&MeasureByCode, nullptr, 0);
    OnUseScdr(editor.window, true);
    editor.Put(90000, 0);
    editor.view.widths.Reset([](void*, char16_t first, char16_t last,
                                std::int32_t* out) { std::fill_n(out, last - first + 1, 3); },
                             nullptr, 0);
    OnFontChanged(editor.window);
    const std::int64_t scrolled = editor.State().scroll.horizontal.position;
    EXPECT_EQ(CaretToPosition(editor.window, editor.Caret()).point.x, 2 + 270000 - scrolled);
    EXPECT_EQ(editor.State().maximumWidth, 300000);
}

} // namespace
} // namespace vantrel::test
