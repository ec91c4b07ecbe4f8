// The cell editor with real keys and a real mouse.
#include <gtest/gtest.h>

#include <algorithm>

#include "ui/editor_support.h"

namespace vantrel::ui {
namespace {

using namespace fake;

class CellEditor : public EditorTest {};

// --- keys and clipboard ---

TEST_F(CellEditor, SelectAllCopiesLinesAndTypingReplacesThem)
{
    const Outcome outcome = RunEdit(interpreter, MatrixItem({U"abc", U"def"}), [](User& user) {
        user.Key(VK_TAB);
        user.Key('A', {VK_CONTROL});
        user.Key('C', {VK_CONTROL});
        user.ExpectEqual(user.ClipboardText(), u"abc\r\ndef", "both lines are on the clipboard");
        user.Key('A', {VK_CONTROL});
        user.Type(u"q");
        user.Key('Z', {VK_CONTROL});
        user.Key('Y', {VK_CONTROL});
        user.Command(SaveAndClose);
    });
    Expect(outcome, Matrix({U"q"}));
}

TEST_F(CellEditor, CutMovesTextAndEnterBreaksALine)
{
    const Outcome outcome = RunEdit(interpreter, MatrixItem({U"abcd", U"efgh"}), [](User& user) {
        user.Key(VK_TAB);
        user.Key(VK_RIGHT, {VK_SHIFT});
        user.Key(VK_RIGHT, {VK_SHIFT});
        user.Key('X', {VK_CONTROL});
        user.Key(VK_END, {VK_CONTROL});
        user.Key('V', {VK_CONTROL});
        user.Key(VK_RETURN);
        user.Type(u"z");
        user.Key(VK_BACK);
        user.Type(u"y");
        user.Command(SaveAndClose);
    });
    Expect(outcome, Matrix({U"cd    ", U"efghab", U"y     "}));
}

TEST_F(CellEditor, ASurrogateOnTheClipboardAndATypedOneAreRefused)
{
    const Outcome outcome = RunEdit(interpreter, MatrixItem({U"abc", U"def"}), [](User& user) {
        user.Key(VK_TAB);
        PutOnClipboard(u"x\xD83D\xDE00");
        user.Key('V', {VK_CONTROL});
        user.Type(u"\xD83D\xDE00!");
        user.Command(SaveAndClose);
    });
    Expect(outcome, Matrix({U"!abc", U"def "}));
}

TEST_F(CellEditor, AltGrIsNoControlAndControlDeletesToTheLinesEnd)
{
    const Outcome outcome = RunEdit(interpreter, MatrixItem({U"abcd", U"efgh"}), [](User& user) {
        user.Key(VK_TAB);
        user.Key('A', {VK_LCONTROL, VK_RMENU}); // what a keyboard with AltGr sends
        user.Key('X', {VK_LCONTROL, VK_RMENU});
        user.Key(VK_DOWN);
        user.Key(VK_RIGHT);
        user.Key(VK_DELETE, {VK_CONTROL});
        user.Command(SaveAndClose);
    });
    Expect(outcome, Matrix({U"abcd", U"e   "}));
}

// --- caret ---

TEST_F(CellEditor, TheCaretIsThinOrAsWideAsTheCharacterItReplaces)
{
    RunEdit(interpreter, MatrixItem({U"abc", U"def"}), [](User& user) {
        user.Key(VK_TAB);
        user.Key(VK_RIGHT);
        const FontSize font = FontOf(user.Editor());
        const User::CaretPlace thin = user.Caret();
        user.Expect(thin.window == user.Editor(), "the editor has the caret");
        user.ExpectEqual(thin.rect.left, Rim + font.character, "at the second character");
        user.ExpectEqual(thin.rect.top, Rim, "in the first line");
        user.ExpectEqual(HeightOf(thin.rect), font.line, "as high as a line");
        user.Expect(WidthOf(thin.rect) <= 2, "thin when inserting");
        SendMessageW(user.Client(), SetOption, MAKEWPARAM(OvertypeOption, 1), 0);
        user.Wait();
        user.ExpectEqual(WidthOf(user.Caret().rect), font.character, "a block when overtyping");
        user.Key(VK_INSERT);
        user.Expect(WidthOf(user.Caret().rect) <= 2, "the Insert key turns it thin");
        user.Key(VK_INSERT);
        SendMessageW(user.Client(), SetOption, MAKEWPARAM(OvertypeOption, 0), 0);
    });
}

TEST_F(CellEditor, TheCaretGoesOutOfSightWithItsLineWhenTheWheelScrolls)
{
    std::vector<std::u32string> rows(300, U"a row of text");
    RunEdit(interpreter, Matrix(rows), [](User& user) {
        HWND const editor = user.Editor();
        RECT client{};
        GetClientRect(editor, &client);
        user.Expect(user.Caret().window == editor, "the caret is there");
        const LONG ruler = user.Caret().rect.top;
        const POINT middle{client.right / 2, client.bottom / 2};
        user.Mouse(editor, middle, MOUSEEVENTF_WHEEL, -120);
        user.Expect(user.Caret().window == nullptr, "scrolled away, it is nowhere");
        user.Mouse(editor, middle, MOUSEEVENTF_WHEEL, 120);
        user.Expect(user.Caret().window == editor, "it is back");
        user.ExpectEqual(user.Caret().rect.top, ruler, "where it was");
        user.Mouse(editor, middle, MOUSEEVENTF_WHEEL, -120);
        user.Key(VK_DOWN);
        user.Expect(user.Caret().window == editor, "a key scrolls to it");
        user.Expect(user.Caret().rect.top >= ruler, "and never onto the ruler");
        SendMessageW(editor, WM_VSCROLL, SB_PAGEDOWN, 0);
        user.Expect(user.Caret().window == editor, "the scroll bar takes the caret along");
        user.Expect(user.Caret().rect.top >= ruler && user.Caret().rect.bottom <= client.bottom,
                    "into the window");
    });
}

// --- mouse ---

TEST_F(CellEditor, DraggingTheMouseSelects)
{
    const Outcome outcome = RunEdit(interpreter, MatrixItem(Letters()), [](User& user) {
        user.Key(VK_TAB);
        HWND const editor = user.Editor();
        user.Drag(editor, At(editor, 2, 0), At(editor, 4, 1));
        user.Key('C', {VK_CONTROL});
        user.ExpectEqual(user.ClipboardText(), u"cdefghij\r\nklmn", "what lies between is selected");
        user.Click(editor, At(editor, 3, 2).x, At(editor, 3, 2).y);
        user.Type(u"!");
        user.Command(SaveAndClose);
    });
    Expect(outcome, Matrix({U"abcdefghij ", U"klmnopqrst ", U"uvw!xyzABCD", U"EFGHIJKLMN "}));
}

TEST_F(CellEditor, DraggedTextMovesAndOneUndoBringsItBack)
{
    const Outcome outcome = RunEdit(interpreter, MatrixItem(Letters()), [](User& user) {
        user.Key(VK_TAB);
        HWND const editor = user.Editor();
        user.Drag(editor, At(editor, 2, 1), At(editor, 5, 1));
        user.Drag(editor, At(editor, 3, 1), At(editor, 1, 0));
        user.Key('A', {VK_CONTROL});
        user.Key('C', {VK_CONTROL});
        user.ExpectEqual(user.ClipboardText(), u"amnobcdefghij\r\nklpqrst\r\nuvwxyzABCD\r\nEFGHIJKLMN",
                         "moved before");
        user.Key('Z', {VK_CONTROL});
        user.Drag(editor, At(editor, 2, 1), At(editor, 5, 1));
        user.Drag(editor, At(editor, 4, 1), At(editor, 1, 3));
        user.Command(SaveAndClose);
    });
    Expect(outcome, Matrix({U"abcdefghij   ", U"klpqrst      ", U"uvwxyzABCD   ", U"EmnoFGHIJKLMN"}));
}

TEST_F(CellEditor, ADoubleClickIsTheViewsAndSelectsNoWord)
{
    RunEdit(interpreter, MatrixItem(Letters()), [](User& user) {
        user.Key(VK_TAB);
        const POINT at = At(user.Editor(), 3, 1);
        user.Click(user.Editor(), at.x, at.y, 2);
        RECT view{};
        GetClientRect(user.Client(), &view);
        user.ExpectEqual(WidthOf(WindowRect(user.Editor())), static_cast<int>(view.right), "maximised");
        ClearClipboard();
        user.Key('C', {VK_CONTROL});
        user.ExpectEqual(user.ClipboardText(), u"", "nothing is selected");
        const POINT inside{view.right / 2, view.bottom / 2};
        user.Click(user.Editor(), inside.x, inside.y, 2);
        user.Expect(WidthOf(WindowRect(user.Editor())) < view.right / 2, "restored");
    });
}

TEST_F(CellEditor, HeldOutsideTheWindowTheMouseGoesOnScrolling)
{
    std::vector<std::u32string> rows(200, U"a row of text");
    RunEdit(interpreter, Matrix(rows), [](User& user) {
        Sleep(GetDoubleClickTime() +
              50); // a press soon after the last one, in whichever window, is a double click
        HWND const editor = user.Editor();
        RECT client{};
        GetClientRect(editor, &client);
        const POINT start{client.right / 2, client.bottom / 2};
        user.Mouse(editor, start, MOUSEEVENTF_LEFTDOWN);
        user.Mouse(editor, {client.right / 2, client.bottom + 8});
        int top = 0;
        int bottom = 0;
        GetScrollRange(editor, SB_VERT, &top, &bottom);
        // Much farther than the one move of the mouse can have scrolled; the end may be reached before anybody looks.
        const int distant = top + (bottom - top) / 4;
        for (int round = 0; round < 200 && GetScrollPos(editor, SB_VERT) < distant; ++round)
            Sleep(20); // the mouse rests
        user.Expect(GetScrollPos(editor, SB_VERT) >= distant, "the text goes on moving");
        user.Mouse(editor, {client.right / 2, client.bottom + 8}, MOUSEEVENTF_LEFTUP);
        user.Expect(GetCapture() == nullptr, "let go");
        const int last = GetScrollPos(editor, SB_VERT);
        Sleep(100);
        user.ExpectEqual(GetScrollPos(editor, SB_VERT), last, "and stops with the button");
    });
}

TEST_F(CellEditor, TheBorderOfAMatrixBoxResizesIt)
{
    RunEdit(interpreter, MatrixItem(Letters()), [](User& user) {
        user.Key(VK_TAB);
        HWND const editor = user.Editor();
        const RECT before = WindowRect(editor);
        const auto hit = [&](int x, int y) {
            return SendMessageW(editor, WM_NCHITTEST, 0, MAKELPARAM(x, y));
        };
        const int middleX = (before.left + before.right) / 2;
        const int middleY = (before.top + before.bottom) / 2;
        user.ExpectEqual(hit(before.right - 1, middleY), HTRIGHT, "the right border");
        user.ExpectEqual(hit(middleX, before.bottom - 1), HTBOTTOM, "the bottom border");
        user.ExpectEqual(hit(before.right - 1, before.bottom - 1), HTBOTTOMRIGHT, "the corner");
        user.ExpectEqual(hit(before.right - 10, before.bottom - 10), HTGROWBOX, "between the bars");
        user.ExpectEqual(hit(before.left, middleY), HTBORDER, "the left border");
        user.ExpectEqual(hit(before.left + 8, before.top + 8), HTCLIENT, "the text");
        // Only the right side moves.
        const POINT origin{before.left, before.top};
        POINT right{before.right - 1, middleY};
        ScreenToClient(user.Client(), &right);
        user.Drag(user.Client(), right, {right.x + 40, right.y + 25});
        RECT after = WindowRect(editor);
        user.ExpectEqual(WidthOf(after), WidthOf(before) + 40, "wider");
        user.ExpectEqual(HeightOf(after), HeightOf(before), "as high as before");
        user.Expect(after.left == origin.x && after.top == origin.y, "in its place");
        // The corner moves both.
        POINT corner{after.right - 10, after.bottom - 10};
        ScreenToClient(user.Client(), &corner);
        user.Drag(user.Client(), corner, {corner.x - 20, corner.y + 30});
        user.ExpectEqual(WidthOf(WindowRect(editor)), WidthOf(after) - 20, "narrower");
        user.ExpectEqual(HeightOf(WindowRect(editor)), HeightOf(after) + 30, "higher");
        user.Key(VK_TAB);
        RECT other = WindowRect(user.Editor());
        user.Expect(other.left >= origin.x + WidthOf(after) - 20, "the next box has made room");
        // A vector without scroll bars is as large as its text.
        POINT fixed{other.right - 1, (other.top + other.bottom) / 2};
        ScreenToClient(user.Client(), &fixed);
        user.Drag(user.Client(), fixed, {fixed.x + 40, fixed.y});
        user.ExpectEqual(WidthOf(WindowRect(user.Editor())), WidthOf(other), "a vector stays");
    });
}

TEST_F(CellEditor, TheBottomBorderMovesTheBottomSideOnly)
{
    RunEdit(interpreter, MatrixItem(Letters()), [](User& user) {
        user.Key(VK_TAB);
        HWND const editor = user.Editor();
        const RECT before = WindowRect(editor);
        const auto drag = [&](int distance) {
            const RECT box = WindowRect(editor);
            POINT bottom{(box.left + box.right) / 2, box.bottom - 1};
            ScreenToClient(user.Client(), &bottom);
            user.Drag(user.Client(), bottom, {bottom.x + 25, bottom.y + distance});
            return WindowRect(editor);
        };
        RECT after = drag(35);
        user.ExpectEqual(HeightOf(after), HeightOf(before) + 35, "higher");
        user.ExpectEqual(WidthOf(after), WidthOf(before), "as wide as before");
        user.Expect(after.left == before.left && after.top == before.top, "in its place");
        after = drag(-50);
        user.ExpectEqual(HeightOf(after), HeightOf(before) - 15, "lower");
        user.ExpectEqual(WidthOf(after), WidthOf(before), "still as wide");
        user.Key(VK_TAB);
        user.Key(VK_TAB, {VK_SHIFT});
        user.ExpectEqual(HeightOf(WindowRect(user.Editor())), HeightOf(before) - 15,
                         "the box keeps its size");
    });
}

TEST_F(CellEditor, TheBoxFollowsWhileTheBorderIsDragged)
{
    RunEdit(interpreter, MatrixItem(Letters()), [](User& user) {
        user.Key(VK_TAB);
        HWND const editor = user.Editor();
        const RECT before = WindowRect(editor);
        POINT at{before.right - 1, before.bottom - 1};
        ScreenToClient(user.Client(), &at);
        user.Mouse(user.Client(), at, MOUSEEVENTF_LEFTDOWN);
        for (int step = 1; step <= 4; ++step) {
            user.Mouse(user.Client(), {at.x + 10 * step, at.y + 5 * step});
            user.ExpectEqual(WidthOf(WindowRect(editor)), WidthOf(before) + 10 * step, "each step is seen");
            user.ExpectEqual(HeightOf(WindowRect(editor)), HeightOf(before) + 5 * step, "in both directions");
        }
        user.Mouse(user.Client(), {at.x - 3000, at.y - 3000});
        const FontSize font = FontOf(editor);
        RECT client{};
        GetClientRect(editor, &client);
        user.Expect(client.right >= font.character + 2 * Rim && client.bottom >= font.line + 2 * Rim,
                    "a character stays in sight");
        user.Mouse(user.Client(), {at.x, at.y}, MOUSEEVENTF_LEFTUP);
        user.Expect(user.Caret().window == editor, "the caret is back");
    });
}

// --- pop-up menu ---

TEST_F(CellEditor, ThePopUpMenuOffersWhatCanBeDone)
{
    RunEdit(interpreter, MatrixItem(Letters()), [](User& user) {
        user.Key(VK_TAB);
        HWND const editor = user.Editor();
        const POINT at = At(editor, 3, 1);
        user.Mouse(editor, at, MOUSEEVENTF_RIGHTDOWN);
        user.Mouse(editor, at, MOUSEEVENTF_RIGHTUP);
        HMENU menu = WaitForMenu();
        user.Expect(menu != nullptr, "the menu opens");
        wchar_t text[64] = {};
        GetMenuStringW(menu, 4003, text, 64, MF_BYCOMMAND);
        user.Expect(std::wstring(text) == L"Cu&t", "cut");
        user.Expect(IsGrayed(menu, 4003) && IsGrayed(menu, 4004), "nothing is selected");
        user.Expect(IsGrayed(menu, 4001) && IsGrayed(menu, 4002), "nothing is done");
        user.Expect(!IsGrayed(menu, 4006) && !IsGrayed(menu, 4007), "delete and select all");
        user.Expect(!IsGrayed(menu, 4201), "an item of a vector can be cut out");
        user.Expect(IsGrayed(menu, 4604) && !IsGrayed(menu, 4605) && !IsGrayed(menu, 4606), "sizes");
        CloseMenu(user);
        user.Type(u"!"); // where the right button put the caret
        SendMessageW(editor, SelectAllMessage, 0, 0);
        user.Key(VK_F10, {VK_SHIFT});
        menu = WaitForMenu();
        user.Expect(menu != nullptr, "Shift+F10 opens it, too");
        user.Expect(!IsGrayed(menu, 4003) && !IsGrayed(menu, 4004) && !IsGrayed(menu, 4001), "now there is");
        user.Key('C');
        user.Expect(user.ClipboardText().find(u"klm!nop") != std::u16string::npos, "Copy copies");
    });
}

// --- painting ---

TEST_F(CellEditor, MarginsAndSelectionHaveTheirColours)
{
    RunEdit(interpreter, Matrix(Letters()), [](User& user) {
        HWND const editor = user.Editor();
        const Picture plain = user.Shot(editor);
        const FontSize font = FontOf(editor);
        const int numbers = 3 * font.character + GetSystemMetrics(SM_CXFRAME);
        const RECT ruler{Rim, Rim, plain.Width() - Rim, Rim + font.line};
        const RECT lines{Rim, Rim + font.line, Rim + numbers, plain.Height() - Rim};
        user.Expect(plain.Count(GetSysColor(COLOR_MENUBAR), ruler) > 500, "the ruler's band");
        user.Expect(plain.Count(RGB(7, 0, 0), lines) > 20, "line numbers in their own colour");
        user.ExpectEqual(plain.Count(RGB(7, 0, 0)), plain.Count(RGB(7, 0, 0), lines), "and nowhere else");
        user.ExpectEqual(plain.Count(GetSysColor(COLOR_HIGHLIGHT)), 0, "nothing is selected");
        SendMessageW(editor, SelectAllMessage, 0, 0);
        const Picture selected = user.Shot(editor);
        user.Expect(selected.Count(GetSysColor(COLOR_HIGHLIGHT)) > 10 * font.character * font.line,
                    "the selection stands out");
    });
}

TEST_F(CellEditor, AVectorThatGoesOnOutOfSightShowsCues)
{
    const Array wide = NestedArray({2}, {Text(std::u16string(400, u'-')), Text(u"b")});
    RunEdit(interpreter, wide, [](User& user) {
        user.Key(VK_TAB);
        HWND const editor = user.Editor();
        const Picture start = user.Shot(editor);
        const auto shaded = [](const Picture& picture, int x) {
            return picture.At(x, 1) != GetSysColor(COLOR_WINDOW);
        };
        user.Expect(shaded(start, start.Width() - 1), "more to the right");
        user.Expect(!shaded(start, 0), "nothing to the left");
        user.Key(VK_END);
        const Picture end = user.Shot(editor);
        user.Expect(shaded(end, 0), "more to the left");
        user.Expect(!shaded(end, end.Width() - 1), "nothing to the right");
        SendMessageW(user.Client(), SetOption, MAKEWPARAM(RankOneBarsOption, 1), 0);
        user.Wait();
        const Picture bars = user.Shot(user.Editor());
        user.Expect(!shaded(bars, 0), "scroll bars tell it by themselves");
    });
}

TEST_F(CellEditor, TheCaretMessageMovesAndForgetsTheSelection)
{
    const Outcome outcome = RunEdit(interpreter, MatrixItem(Letters()), [](User& user) {
        user.Key(VK_TAB);
        HWND const editor = user.Editor();
        SendMessageW(editor, SelectAllMessage, 0, 0);
        const std::int64_t home[] = {0x7FFFFFFFFFFFFFFD, 0x7FFFFFFFFFFFFFFD};
        SendMessageW(editor, MoveCaretMessage, reinterpret_cast<WPARAM>(home), 0);
        const std::int64_t deltas[] = {4, 2};
        SendMessageW(editor, MoveCaretMessage, reinterpret_cast<WPARAM>(deltas), 0);
        user.Type(u"!");
        user.Command(SaveAndClose);
    });
    Expect(outcome, Matrix({U"abcdefghij ", U"klmnopqrst ", U"uvwx!yzABCD", U"EFGHIJKLMN "}));
}

TEST_F(CellEditor, OnceEditedTextStartsAtItsBeginningInANewFont)
{
    const Array wide = NestedArray({2}, {Text(std::u16string(400, u'-')), Text(u"b")});
    RunEdit(interpreter, wide, [](User& user) {
        user.Key(VK_TAB);
        user.Key(VK_END);
        const RECT box = WindowRect(user.Editor());
        user.Key(VK_TAB); // the first box is painted by the view now
        LOGFONTW logFont{};
        GetObjectW(reinterpret_cast<HFONT>(SendMessageW(user.Client(), WM_GETFONT, 0, 0)), sizeof logFont,
                   &logFont);
        logFont.lfHeight = logFont.lfHeight * 3 / 2;
        HFONT const larger = CreateFontIndirectW(&logFont);
        SendMessageW(user.Client(), WM_SETFONT, reinterpret_cast<WPARAM>(larger), 1);
        user.Wait();
        user.Key(VK_TAB, {VK_SHIFT});
        user.Expect(HeightOf(WindowRect(user.Editor())) > HeightOf(box), "the font is larger");
        RECT client{};
        GetClientRect(user.Editor(), &client);
        const User::CaretPlace caret = user.Caret();
        user.Expect(caret.window == user.Editor(), "the caret is in sight");
        user.Expect(caret.rect.left > client.right / 2 && caret.rect.left < client.right,
                    "at the end of the text");
    });
}

} // namespace
} // namespace vantrel::ui
