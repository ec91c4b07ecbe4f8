// The cell editor in a window that it fills.
#include <gtest/gtest.h>

#include <richedit.h>

#include "samples.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr std::int64_t Home = 0x7FFFFFFFFFFFFFFD;
constexpr std::int64_t End = 0x7FFFFFFFFFFFFFFE;
constexpr UINT MoveCaretMessage = 33071;
constexpr UINT SelectAllMessage = 33072;

void MoveCaret(HWND editor, std::int64_t columns, std::int64_t lines)
{
    const std::int64_t deltas[] = {columns, lines};
    SendMessageW(editor, MoveCaretMessage, reinterpret_cast<WPARAM>(deltas), 0);
}

void Paint(HWND editor)
{
    InvalidateRect(editor, nullptr, FALSE);
}

// Keys, wheel and frame at one place of the text.
void MeasureAt(User& user, const std::string& place, std::int64_t column, std::int64_t line)
{
    HWND const editor = user.Editor();
    const auto goThere = [=] {
        MoveCaret(editor, Home, Home);
        MoveCaret(editor, column, line);
    };
    const auto key = [=](WPARAM code) { SendMessageW(editor, WM_KEYDOWN, code, 1); };
    const auto character = [=](WPARAM code) { SendMessageW(editor, WM_CHAR, code, 1); };
    const auto at = [&](const char* what) { return std::string(what) + ", " + place; };
    goThere();
    Measure(user, at("paint a frame"), [=](int) { Paint(editor); });
    Measure(user, at("type a character"), [=](int) { character('x'); });
    Measure(user, at("backspace"), [=](int) { key(VK_BACK); });
    Measure(user, at("enter"), [=](int) { character('\r'); });
    Measure(user, at("join lines"), [=](int) { key(VK_BACK); });
    goThere();
    Measure(user, at("page down and up"), [=](int round) { key(round % 2 == 0 ? VK_NEXT : VK_PRIOR); });
    Measure(user, at("wheel"), [=](int round) {
        SendMessageW(editor, WM_MOUSEWHEEL, MAKEWPARAM(0, round % 2 == 0 ? -WHEEL_DELTA : WHEEL_DELTA), 0);
    });
    Measure(user, at("scroll bar page"), [=](int round) {
        SendMessageW(editor, WM_VSCROLL, round % 2 == 0 ? SB_PAGEDOWN : SB_PAGEUP, 0);
    });
    SendMessageW(editor, EM_EMPTYUNDOBUFFER, 0, 0);
}

void MeasureEverywhere(User& user, std::int64_t rows)
{
    MeasureAt(user, "at the start", 0, 0);
    MeasureAt(user, "in the middle", 5, rows / 2);
    MeasureAt(user, "at the end", 5, rows - 1);
    HWND const editor = user.Editor();
    Measure(user, "Ctrl+Home and Ctrl+End",
            [=](int round) { MoveCaret(editor, round % 2 == 0 ? End : Home, round % 2 == 0 ? End : Home); });
}

TEST(CellEditorSpeed, MatrixOfAMillionRows)
{
    constexpr int Rows = 1000000;
    const Array matrix = TextOf({Rows, 20}, std::u16string(std::size_t{Rows} * 20, u'x'));
    OpenAndMeasure("character matrix, 1,000,000 rows of 20", matrix, [](User& user) {
        MeasureEverywhere(user, Rows);
        HWND const editor = user.Editor();
        Measure(user, "select all and copy a million lines", [=](int) {
            SendMessageW(editor, SelectAllMessage, 0, 0);
            SendMessageW(editor, WM_COPY, 0, 0);
        });
        MoveCaret(editor, Home, Home);
        Measure(user, "paste them", [=](int round) {
            SendMessageW(editor, WM_PASTE, 0, 0);
            if (round < 2) SendMessageW(editor, EM_UNDO, 0, 0);
        });
        Measure(user, "undo and redo that", [=](int round) {
            SendMessageW(editor, round % 2 == 0 ? static_cast<UINT>(EM_UNDO) : static_cast<UINT>(EM_REDO), 0,
                         0);
        });
    });
}

TEST(CellEditorSpeed, VectorOfManyLines)
{
    constexpr int Lines = 100000;
    std::u16string text;
    for (int line = 0; line < Lines; ++line)
        text += u"a line of the text of a vector\r\n";
    OpenAndMeasure("character vector, 100,000 lines", fake::Text(text),
                   [](User& user) { MeasureEverywhere(user, Lines); });
}

TEST(CellEditorSpeed, OneEndlessLine)
{
    constexpr int Columns = 4000000;
    OpenAndMeasure("character vector, one line of 4,000,000", fake::Text(std::u16string(Columns, u'x')),
                   [](User& user) {
                       MeasureAt(user, "at its start", 0, 0);
                       MeasureAt(user, "at its end", Columns, 0);
                   });
}

} // namespace
} // namespace vantrel::ui
