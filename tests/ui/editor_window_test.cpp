// The cell edit window as other windows know it: its messages, colours, cursors and pop-up menu, and the oddities of editing with real keys.
#include <gtest/gtest.h>

#include <richedit.h>

#include "ui/editor_support.h"

namespace vantrel::ui {
namespace {

constexpr int FindCommand = 4206;
constexpr int FindTextControl = 108;
constexpr int NumericControl = 112;
constexpr int LineNumbersOption = 4313;
constexpr int RulerOption = 4314;
constexpr int MaximizeCommand = 4606;
constexpr int PlaneDown = 4623;
constexpr UINT SetPickIndex = 32981;
constexpr UINT FreeRedoMessage = 33070;
constexpr UINT NewPlaneMessage = 33073;
constexpr UINT LineNumbersMessage = 33075;
constexpr UINT RulerMessage = 33076;
constexpr UINT ScrollbarsMessage = 33077;

class EditorWindow : public EditorTest {};

Array Numbers(std::initializer_list<double> numbers)
{
    return NumericArray({static_cast<int>(numbers.size())}, numbers);
}

void SetOptionTo(User& user, int option, bool value)
{
    SendMessageW(user.Client(), SetOption, MAKEWPARAM(option, value ? 1 : 0), 0);
    user.Wait();
}

// All of the editor's text, which is not empty, by way of the clipboard. Another program may have that open for a moment.
std::u16string TextIn(User& user)
{
    std::u16string text;
    for (int round = 0; round < 50 && text.empty(); ++round) {
        SendMessageW(user.Editor(), SelectAllMessage, 0, 0);
        ClearClipboard();
        SendMessageW(user.Editor(), WM_COPY, 0, 0);
        text = user.ClipboardText();
        if (text.empty()) Sleep(20);
    }
    return text;
}

// --- messages ---

TEST_F(EditorWindow, AnswersWhatAnEditControlAnswers)
{
    RunEdit(interpreter, MatrixItem(Letters()), [](User& user) {
        user.Key(VK_TAB);
        HWND const editor = user.Editor();
        const auto ask = [&](UINT message) { return SendMessageW(editor, message, 0, 0); };
        wchar_t name[64] = {};
        GetClassNameW(editor, name, 64);
        user.Expect(std::wstring(name) == L"quillmoor Vantrel edit control class", "its class");
        user.ExpectEqual(GetClassLongPtrW(editor, GCL_STYLE) & (CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS),
                         ULONG_PTR{CS_HREDRAW | CS_VREDRAW}, "the class's style");
        user.ExpectEqual(ask(WM_GETDLGCODE), LRESULT{135}, "it wants all keys");
        user.ExpectEqual(ask(WM_ERASEBKGND), LRESULT{1}, "painting erases");
        user.ExpectEqual(ask(EM_CANUNDO) + ask(EM_CANREDO) + ask(EM_UNDO) + ask(EM_REDO), LRESULT{0},
                         "a matrix has nothing to undo");
        user.Type(u"xy");
        user.ExpectEqual(ask(EM_CANUNDO), LRESULT{1}, "now it has");
        ask(WM_UNDO);
        user.ExpectEqual(ask(EM_CANREDO), LRESULT{1}, "and something to redo");
        user.ExpectEqual(ask(FreeRedoMessage), LRESULT{0}, "which can be forgotten");
        user.ExpectEqual(ask(EM_CANREDO), LRESULT{0}, "as it is");
        user.ExpectEqual(ask(EM_CANUNDO), LRESULT{1}, "and nothing else");
        ask(EM_UNDO);
        user.ExpectEqual(ask(EM_REDO), LRESULT{1}, "redone");
        ask(EM_EMPTYUNDOBUFFER);
        user.ExpectEqual(ask(EM_CANUNDO) + ask(EM_CANREDO), LRESULT{0}, "both are empty");
        user.Key(VK_TAB);
        user.ExpectEqual(SendMessageW(user.Editor(), EM_UNDO, 0, 0), LRESULT{1}, "a vector has one line");
    });
    RunEdit(interpreter, NestedArray({1}, {TextOf({}, u"a")}), [](User& user) {
        user.Key(VK_TAB);
        user.ExpectEqual(SendMessageW(user.Editor(), EM_UNDO, 0, 0), LRESULT{1}, "so has a scalar");
    });
}

TEST_F(EditorWindow, CutsCopiesPastesAndClearsByMessage)
{
    const Outcome outcome = RunEdit(interpreter, MatrixItem({U"abcd", U"efgh"}), [](User& user) {
        user.Key(VK_TAB);
        HWND const editor = user.Editor();
        const auto tell = [&](UINT message) {
            user.ExpectEqual(SendMessageW(editor, message, 0, 0), LRESULT{0}, "it is done");
        };
        PutOnClipboard(u"kept");
        for (const UINT message : {WM_COPY, WM_CUT, WM_CLEAR})
            tell(message);
        user.ExpectEqual(user.ClipboardText(), u"kept", "nothing selected, nothing done");
        user.Key(VK_RIGHT, {VK_SHIFT});
        tell(WM_COPY);
        user.ExpectEqual(user.ClipboardText(), u"a", "copied");
        tell(WM_PASTE);
        user.Key(VK_RIGHT, {VK_SHIFT});
        tell(WM_CUT);
        user.ExpectEqual(user.ClipboardText(), u"b", "cut");
        user.Key(VK_RIGHT, {VK_SHIFT});
        tell(WM_CLEAR);
        user.ExpectEqual(user.ClipboardText(), u"b", "cleared");
        ClearClipboard();
        tell(WM_PASTE);
        user.Command(SaveAndClose);
    });
    Expect(outcome, Matrix({U"aad ", U"efgh"}));
}

TEST_F(EditorWindow, WaitsAMomentForAClipboardThatIsInUse)
{
    const Outcome outcome = RunEdit(interpreter, MatrixItem({U"abcd", U"efgh"}), [](User& user) {
        user.Key(VK_TAB);
        HWND const editor = user.Editor();
        const auto whileOpen = [&](UINT message, DWORD milliseconds) {
            while (!OpenClipboard(nullptr))
                Sleep(1);
            PostMessageW(editor, message, 0, 0);
            Sleep(milliseconds);
            CloseClipboard();
            user.Wait();
        };
        PutOnClipboard(u"before");
        user.Key(VK_RIGHT, {VK_SHIFT});
        whileOpen(WM_CUT, 30);
        user.ExpectEqual(user.ClipboardText(), u"a", "cut when it was free again");
        whileOpen(WM_PASTE, 30);
        user.Key(VK_RIGHT, {VK_SHIFT});
        whileOpen(WM_CUT, 600);
        user.ExpectEqual(user.ClipboardText(), u"a", "not for ever: the text goes all the same");
        user.Command(SaveAndClose);
    });
    Expect(outcome, Matrix({U"acd ", U"efgh"}));
}

TEST_F(EditorWindow, TakesItsMarginsFromTheOptions)
{
    RunEdit(interpreter, Matrix(Letters()), [](User& user) {
        const FontSize font = FontOf(user.Editor());
        const auto textStart = [&] { return POINT{user.Caret().rect.left, user.Caret().rect.top}; };
        const LONG numbers = Rim + 3 * font.character + GetSystemMetrics(SM_CXFRAME); // "[4]"
        user.ExpectEqual(textStart().x, numbers, "right of the line numbers");
        user.ExpectEqual(textStart().y, LONG{Rim} + font.line, "below the ruler");
        SetOptionTo(user, RulerOption, false);
        user.ExpectEqual(textStart().y, LONG{Rim}, "without the ruler at the top");
        user.ExpectEqual(textStart().x, numbers, "the numbers stay");
        SetOptionTo(user, LineNumbersOption, false);
        user.ExpectEqual(textStart().x, LONG{Rim}, "with neither two pixels inside");
        const Picture bare = user.Shot(user.Editor());
        user.ExpectEqual(bare.Count(RGB(7, 0, 0)), 0, "no numbers");
        user.ExpectEqual(bare.At(0, 0), RGB(255, 0, 0), "the red frame of a maximised array");
        SetOptionTo(user, LineNumbersOption, true);
        SetOptionTo(user, RulerOption, true);
        user.ExpectEqual(textStart().x, numbers, "and back");
        for (const UINT message : {LineNumbersMessage, RulerMessage, ScrollbarsMessage, NewPlaneMessage})
            user.ExpectEqual(SendMessageW(user.Editor(), message, 0, 0), LRESULT{0}, "by message, too");
        user.ExpectEqual(textStart().y, LONG{Rim} + font.line, "nothing has changed");
    });
}

TEST_F(EditorWindow, CountsItsLinesFromTheIndexOrigin)
{
    const auto numbersOf = [](User& user) {
        const FontSize font = FontOf(user.Editor());
        const Picture picture = user.Shot(user.Editor());
        std::vector<std::vector<COLORREF>> rows;
        for (int row = 0; row < 4; ++row) {
            rows.emplace_back();
            for (int y = 0; y < font.line; ++y) {
                for (int x = 0; x < 3 * font.character; ++x)
                    rows.back().push_back(picture.At(Rim + x, Rim + (row + 1) * font.line + y));
            }
        }
        return rows;
    };
    std::vector<std::vector<COLORREF>> fromOne;
    RunEdit(interpreter, Matrix(Letters()), [&](User& user) { fromOne = numbersOf(user); });
    InterpreterOptions options;
    options.indexOrigin = 0;
    Interpreter zero(options);
    RunEdit(zero, Matrix(Letters()), [&](User& user) {
        const auto fromZero = numbersOf(user);
        user.Expect(fromZero[1] == fromOne[0] && fromZero[3] == fromOne[2], "a row has one number less");
        user.Expect(fromZero[0] != fromOne[0], "and the first is none of theirs");
    });
}

TEST_F(EditorWindow, GreysTextThatMayNotChange)
{
    const Outcome outcome = RunEdit(interpreter, MatrixItem(Letters()), [](User& user) {
        user.Key(VK_TAB);
        HWND const editor = user.Editor();
        const COLORREF grey = GetSysColor(COLOR_GRAYTEXT);
        const auto isGrey = [&] { return user.Shot(editor).Count(grey) > 20; };
        const auto refuses = [&](const char* why) {
            const std::u16string before = TextIn(user);
            user.Type(u"x\r");
            user.Key(VK_BACK);
            user.Key(VK_DELETE);
            user.Key(VK_DELETE, {VK_CONTROL});
            PutOnClipboard(u"p");
            user.Key('V', {VK_CONTROL});
            user.Key('A', {VK_CONTROL});
            user.Key('X', {VK_CONTROL});
            user.Expect(TextIn(user) == before && SendMessageW(editor, EM_CANUNDO, 0, 0) == 0, why);
        };
        user.Expect(!isGrey(), "as any text");
        SendMessageW(editor, EM_SETREADONLY, TRUE, 0);
        user.Expect(isGrey(), "read-only text is grey");
        refuses("and stays");
        SendMessageW(editor, EM_SETREADONLY, FALSE, 0);
        user.Expect(!isGrey(), "no longer");
        const LONG_PTR style = GetWindowLongPtrW(editor, GWL_STYLE);
        SetWindowLongPtrW(editor, GWL_STYLE, style | ES_READONLY);
        user.Expect(isGrey(), "the style does the same");
        refuses("in every way");
        SetWindowLongPtrW(editor, GWL_STYLE, style);
        user.Command(FindCommand);
        HWND const bar = FindWindowExW(user.Frame(), nullptr, L"#32770", nullptr);
        SetDlgItemTextW(bar, FindTextControl, L"22");
        user.Wait();
        HWND const numeric = GetDlgItem(bar, NumericControl);
        SendMessageW(numeric, BM_CLICK, 0, 0);
        user.Wait();
        user.Expect(isGrey(), "a search for numbers locks texts");
        SetFocus(nullptr);
        const POINT at = At(editor, 1, 0);
        user.Click(editor, at.x, at.y);
        refuses("which stay, too");
        SendMessageW(numeric, BM_CLICK, 0, 0);
        user.Wait();
        user.Expect(!isGrey(), "until it is over");
        user.Click(editor, at.x, at.y);
        user.Type(u"!");
        user.Command(SaveAndClose);
    });
    Expect(outcome, Matrix({U"a!bcdefghij", U"klmnopqrst ", U"uvwxyzABCD ", U"EFGHIJKLMN "}));
}

// --- painting ---

COLORREF MatchBackground()
{
    const COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
    return RGB((GetRValue(text) + 128) % 255, (GetGValue(text) + 224) % 255, (GetBValue(text) + 192) % 255);
}

TEST_F(EditorWindow, MarksAFindMatchWhileTheFocusIsElsewhere)
{
    RunEdit(interpreter, MatrixItem(Letters()), [](User& user) {
        const COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
        const COLORREF back = MatchBackground();
        const COLORREF ink =
            RGB((GetRValue(text) + 224) % 255, (GetGValue(text) + 64) % 255, (GetBValue(text) + 64) % 255);
        user.Command(FindCommand);
        user.Type(u"nop");
        user.Key(VK_RETURN);
        HWND const editor = user.Editor();
        const FontSize font = FontOf(editor);
        const RECT match{Rim + 3 * font.character, Rim + font.line, Rim + 6 * font.character,
                         Rim + 2 * font.line};
        const Picture found = user.Shot(editor);
        user.Expect(found.Count(back, match) > font.character * font.line, "on its own background");
        user.Expect(found.Count(ink, match) > 10, "in its own colour");
        user.ExpectEqual(found.Count(back), found.Count(back, match), "and nothing else");
        SetForegroundWindow(user.Frame());
        user.Key(VK_ESCAPE);
        user.Expect(user.Caret().window == editor, "the editor has the focus");
        user.ExpectEqual(user.Shot(editor).Count(back), 0, "where the caret shows it");
    });
}

TEST_F(EditorWindow, MarksAFindMatchOnlyWhereItWasFound)
{
    const COLORREF back = MatchBackground();
    const auto find = [](User& user, const char16_t* wanted) {
        user.Command(FindCommand);
        user.Type(wanted);
        user.Key(VK_RETURN);
    };
    RunEdit(interpreter, NestedArray({2}, {Text(u"abcxyz"), Text(u"defghi")}), [&](User& user) {
        find(user, u"xyz");
        user.Expect(user.Shot(user.Editor()).Count(back) > 0, "the first item");
        SendMessageW(user.Client(), SetPickIndex, 0, reinterpret_cast<LPARAM>(L"2"));
        user.Wait();
        user.Command(FindCommand); // the keyboard goes to the bar again
        user.ExpectEqual(user.PickIndex(), u"2", "the second item is selected");
        user.ExpectEqual(user.Shot(user.Editor()).Count(back), 0, "which has no such text");
    });
    RunEdit(interpreter, TextOf({2, 2, 4}, u"abcdefghijklmnop"), [&](User& user) {
        find(user, u"cd");
        user.Expect(user.Shot(user.Editor()).Count(back) > 0, "the first plane");
        user.Command(PlaneDown);
        user.ExpectEqual(user.Shot(user.Editor()).Count(back), 0, "the next has another text there");
    });
}

TEST_F(EditorWindow, AFindMatchIsDrawnAnewWhenTheKeyboardComesAndGoes)
{
    RunEdit(interpreter, Text(u"abcxyz"), [](User& user) {
        user.Command(FindCommand);
        user.Type(u"xyz");
        user.Key(VK_RETURN);
        HWND const editor = user.Editor();
        // As it stands on the screen: nothing is asked to draw itself.
        const auto marked = [&] {
            user.Wait();
            HDC const screen = GetDC(editor);
            int pixels = 0;
            for (int y = 0; y < 80; ++y) {
                for (int x = 0; x < 120; ++x)
                    pixels += GetPixel(screen, x, y) == MatchBackground() ? 1 : 0;
            }
            ReleaseDC(editor, screen);
            return pixels > 0;
        };
        user.Expect(marked(), "the keyboard is in the bar");
        user.Key(VK_F6, {VK_SHIFT});
        user.Expect(user.Focus() == editor, "the keyboard is in the array");
        user.Expect(!marked(), "where the caret shows the match");
        user.Key(VK_F6);
        user.Expect(marked(), "back in the bar");
    });
}

TEST_F(EditorWindow, PaintsASelectionOverLinesFromItsStartToItsEnd)
{
    RunEdit(interpreter, MatrixItem(Letters()), [](User& user) {
        user.Key(VK_TAB);
        HWND const editor = user.Editor();
        const FontSize font = FontOf(editor);
        user.Key(VK_RIGHT);
        user.Key(VK_RIGHT);
        for (const WORD key : std::initializer_list<WORD>{VK_DOWN, VK_DOWN, VK_RIGHT})
            user.Key(key, {VK_SHIFT});
        const Picture picture = user.Shot(editor);
        const COLORREF colour = GetSysColor(COLOR_HIGHLIGHT);
        const auto highlighted = [&](int column, int line) {
            const int x = Rim + column * font.character;
            const int y = Rim + line * font.line;
            return picture.Count(colour, {x, y, x + font.character, y + font.line}) > font.character;
        };
        const bool expected[4][10] = {{false, false, true, true, true, true, true, true, true, true},
                                      {true, true, true, true, true, true, true, true, true, true},
                                      {true, true, true}};
        for (int line = 0; line < 4; ++line) {
            for (int column = 0; column < 10; ++column)
                user.ExpectEqual(highlighted(column, line), expected[line][column], "each character's back");
        }
    });
}

// --- cursors and wheel ---

TEST_F(EditorWindow, ShowsByItsCursorsWhatABorderMoves)
{
    RunEdit(interpreter, MatrixItem(Letters()), [](User& user) {
        user.Key(VK_TAB);
        const auto cursorAt = [&](int x, int y) {
            POINT point{x, y};
            ScreenToClient(user.Client(), &point);
            user.Mouse(user.Client(), {point.x - 1, point.y - 1});
            user.Mouse(user.Client(), point);
            CURSORINFO info{};
            info.cbSize = sizeof info;
            GetCursorInfo(&info);
            return info.hCursor;
        };
        const auto named = [](const wchar_t* name) { return LoadCursorW(nullptr, name); };
        const RECT box = WindowRect(user.Editor());
        const int middleX = (box.left + box.right) / 2;
        const int middleY = (box.top + box.bottom) / 2;
        user.ExpectEqual(cursorAt(box.left + 12, middleY), named(IDC_IBEAM), "text");
        user.ExpectEqual(cursorAt(box.right - 1, middleY), named(IDC_SIZEWE), "the right border");
        user.ExpectEqual(cursorAt(middleX, box.bottom - 1), named(IDC_SIZENS), "the bottom border");
        user.ExpectEqual(cursorAt(box.right - 1, box.bottom - 1), named(IDC_SIZENWSE), "the corner");
        user.ExpectEqual(cursorAt(box.right - 10, box.bottom - 10), named(IDC_SIZENWSE), "between the bars");
        user.ExpectEqual(cursorAt(box.left, middleY), named(IDC_ARROW), "the left border");
        user.Key(VK_TAB);
        const RECT vector = WindowRect(user.Editor());
        user.ExpectEqual(cursorAt(vector.right - 1, (vector.top + vector.bottom) / 2), named(IDC_ARROW),
                         "a vector has no border that moves");
    });
}

TEST_F(EditorWindow, ScrollsSidewaysByShiftAndTheWheel)
{
    const std::vector<std::u32string> rows(100, std::u32string(400, U'x'));
    RunEdit(interpreter, Matrix(rows), [](User& user) {
        HWND const editor = user.Editor();
        const auto wheel = [&](WORD held, int distance) {
            INPUT key{};
            key.type = INPUT_KEYBOARD;
            key.ki.wVk = held;
            if (held != 0) SendInput(1, &key, sizeof key);
            user.Mouse(editor, {100, 100}, MOUSEEVENTF_WHEEL, distance);
            key.ki.dwFlags = KEYEVENTF_KEYUP;
            if (held != 0) SendInput(1, &key, sizeof key);
            user.Wait();
        };
        const FontSize font = FontOf(editor);
        wheel(0, -240);
        user.ExpectEqual(GetScrollPos(editor, SB_VERT), 6 * font.line, "two clicks of three lines");
        wheel(0, 60);
        user.ExpectEqual(GetScrollPos(editor, SB_VERT), 6 * font.line, "half a click is none");
        wheel(VK_SHIFT, -120);
        user.ExpectEqual(GetScrollPos(editor, SB_HORZ), 3 * font.character, "with Shift three characters");
        user.ExpectEqual(GetScrollPos(editor, SB_VERT), 6 * font.line, "and only so");
        SendMessageW(editor, WM_VSCROLL, SB_LINEDOWN, 0);
        user.ExpectEqual(GetScrollPos(editor, SB_VERT), 6 * font.line + 1, "the bar's arrow by a pixel");
    });
}

// --- the pop-up menu ---

// Opens the menu at the caret and chooses an entry by its letter.
void Choose(User& user, WORD letter)
{
    PostMessageW(user.Editor(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(user.Editor()), -1);
    user.Expect(WaitForMenu() != nullptr, "the menu comes up");
    user.Key(letter);
    for (int round = 0; round < 100 && FindWindowW(L"#32768", nullptr) != nullptr; ++round)
        Sleep(10);
    user.Wait();
}

TEST_F(EditorWindow, DoesWhatItsMenuOffers)
{
    const Outcome outcome = RunEdit(interpreter, MatrixItem({U"abcd", U"efgh"}), [](User& user) {
        user.Key(VK_TAB);
        ClearClipboard();
        Choose(user, 'D');
        user.ExpectEqual(TextIn(user), u"bcd\r\nefgh", "Delete takes the next character");
        Choose(user, 'U');
        user.ExpectEqual(TextIn(user), u"abcd\r\nefgh", "Undo");
        Choose(user, 'R');
        user.ExpectEqual(TextIn(user), u"bcd\r\nefgh", "Redo");
        user.Key(VK_HOME, {VK_CONTROL});
        user.Key(VK_RIGHT, {VK_SHIFT});
        Choose(user, 'T');
        user.ExpectEqual(user.ClipboardText(), u"b", "Cut");
        user.Key(VK_END, {VK_CONTROL});
        Choose(user, 'P');
        user.ExpectEqual(TextIn(user), u"cd\r\nefghb", "Paste");
        Choose(user, 'A');
        user.Type(u"q");
        user.Command(SaveAndClose);
    });
    Expect(outcome, Matrix({U"q"}));
}

TEST_F(EditorWindow, ItsMenuCutsCopiesAndPastesArrays)
{
    const Array three = NestedArray({3}, {Text(u"ab"), NumericArray({2}, {1, 2}), Text(u"ef")});
    const Outcome outcome = RunEdit(interpreter, three, [](User& user) {
        ClearClipboard();
        SelectIndex(user, u"1");
        user.Key(VK_RIGHT, {VK_SHIFT}); // the selected text is no part of it
        user.Expect(ChooseFromEditorMenu(user, 4202), "Copy array is offered");
        user.ExpectEqual(user.ClipboardText(), u"ab", "the whole array is copied");
        SelectIndex(user, u"2");
        user.Expect(ChooseFromEditorMenu(user, 4203), "Paste array is offered");
        user.ExpectEqual(TextIn(user), u"ab", "the array has taken the place of the other");
        ClearClipboard();
        SelectIndex(user, u"3");
        user.Expect(ChooseFromEditorMenu(user, 4201), "Cut array is offered");
        user.ExpectEqual(user.ClipboardText(), u"ef", "cut is copied");
        user.Expect(SelectIndex(user, u"3") != 0, "there is no third item any more");
        user.Command(SaveAndClose);
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    const Array two = NestedArray({2}, {Text(u"ab"), Text(u"ab")});
    EXPECT_TRUE(SameValues(outcome.edit.result, two)) << Dump(outcome.edit.result);
}

TEST_F(EditorWindow, GreysWhatItsMenuCannotDo)
{
    RunEdit(interpreter, MatrixItem(Letters()), [](User& user) {
        user.Key(VK_TAB);
        HWND const editor = user.Editor();
        const auto greyed = [&] {
            std::vector<UINT> ids;
            PostMessageW(editor, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(editor), -1);
            HMENU const menu = WaitForMenu();
            for (const UINT id :
                 {4001, 4002, 4003, 4004, 4005, 4006, 4007, 4008, 4201, 4202, 4203, 4604, 4605, 4606}) {
                if (IsGrayed(menu, id)) ids.push_back(id);
            }
            CloseMenu(user);
            return ids;
        };
        using Ids = std::vector<UINT>;
        ClearClipboard();
        user.ExpectEqual(greyed(), (Ids{4001, 4002, 4003, 4004, 4005, 4203, 4604}), "nothing to paste");
        PutOnClipboard(u"text");
        user.Type(u"xy");
        user.Key('Z', {VK_CONTROL});
        user.Key(VK_RIGHT, {VK_SHIFT});
        user.ExpectEqual(greyed(), Ids{4604}, "everything else can be done");
        SendMessageW(editor, EM_SETREADONLY, TRUE, 0);
        user.ExpectEqual(greyed(), (Ids{4001, 4002, 4003, 4005, 4006, 4604}), "read-only text can be copied");
        SendMessageW(editor, EM_SETREADONLY, FALSE, 0);
        user.Command(MaximizeCommand);
        user.ExpectEqual(greyed(), (Ids{4605, 4606}), "maximised it can be cut and restored");
    });
}

// --- editing with real keys ---

TEST_F(EditorWindow, RightAndLeftGoOverLineEndsAndStopAtTheTextsEnds)
{
    const Outcome outcome = RunEdit(interpreter, MatrixItem({U"ab", U"cd"}), [](User& user) {
        user.Key(VK_TAB);
        user.Key(VK_LEFT);
        user.Type(u"1");
        user.Key(VK_END);
        user.Key(VK_RIGHT);
        user.Type(u"2");
        user.Key(VK_END);
        user.Key(VK_RIGHT);
        user.Type(u"3");
        user.Key(VK_HOME);
        user.Key(VK_LEFT);
        user.Type(u"4");
        user.Command(SaveAndClose);
    });
    Expect(outcome, Matrix({U"1ab4", U"2cd3"}));
}

TEST_F(EditorWindow, OvertypingALinesEndJoinsTheNextLine)
{
    const Outcome outcome = RunEdit(interpreter, MatrixItem({U"ab", U"cd"}), [](User& user) {
        user.Key(VK_TAB);
        SetOptionTo(user, OvertypeOption, true);
        user.Key(VK_END);
        user.Type(u"xy");
        SetOptionTo(user, OvertypeOption, false);
        user.Command(SaveAndClose);
    });
    Expect(outcome, Matrix({U"abxyd"}));
}

TEST_F(EditorWindow, PastedLinesPartALineAndOneUndoMendsIt)
{
    const Outcome outcome = RunEdit(interpreter, MatrixItem({U"xyz", U"..."}), [](User& user) {
        user.Key(VK_TAB);
        user.Key(VK_RIGHT);
        PutOnClipboard(u"a\r\nb");
        user.Key('V', {VK_CONTROL});
        user.Expect(user.Caret().rect.left == Rim + FontOf(user.Editor()).character, "behind the b");
        user.ExpectEqual(TextIn(user), u"xa\r\nbyz\r\n...", "two lines");
        user.Key('Z', {VK_CONTROL});
        user.ExpectEqual(TextIn(user), u"xyz\r\n...", "one again");
        user.Key(VK_HOME, {VK_CONTROL});
        PutOnClipboard(u"a\rb");
        user.Key('V', {VK_CONTROL});
        user.ExpectEqual(TextIn(user), u"a\rbxyz\r\n...", "a lone return is a character");
        user.Key('Z', {VK_CONTROL});
        user.Command(SaveAndClose);
    });
    Expect(outcome, Matrix({U"xyz", U"..."}));
}

TEST_F(EditorWindow, ANumericVectorTakesNumbersOnOneLine)
{
    const Outcome outcome =
        RunEdit(interpreter, NestedArray({2}, {Numbers({7, 8}), Text(u"b")}), [](User& user) {
            user.Key(VK_TAB);
            PutOnClipboard(u"1\r\n2");
            user.Key('V', {VK_CONTROL});
            user.Key(VK_RETURN);
            user.Type(u"a,");
            user.ExpectEqual(TextIn(user), u"7 8", "refused");
            user.Key(VK_HOME);
            PutOnClipboard(u"1 2 ");
            user.Key('V', {VK_CONTROL});
            user.Command(SaveAndClose);
        });
    Expect(outcome, Numbers({1, 2, 7, 8}));
}

TEST_F(EditorWindow, ACharacterScalarHoldsTheLastCharacterUnderABlockCaret)
{
    const Outcome outcome =
        RunEdit(interpreter, NestedArray({2}, {TextOf({}, u"a"), Text(u"b")}), [](User& user) {
            user.Key(VK_TAB);
            const User::CaretPlace before = user.Caret();
            user.ExpectEqual(WidthOf(before.rect), FontOf(user.Editor()).character, "a block");
            user.Type(u"xy");
            user.ExpectEqual(user.Caret().rect.left, before.rect.left, "that stays where it is");
            user.Key(VK_RETURN);
            PutOnClipboard(u"two");
            user.Key('V', {VK_CONTROL});
            user.Command(SaveAndClose);
        });
    Expect(outcome, TextOf({}, u"y"));
}

TEST_F(EditorWindow, APlaneKeepsItsLinesAndAnUndoFindsItsPlane)
{
    const Array planes = TextOf({2, 2, 2}, u"abcdefgh");
    const Outcome outcome = RunEdit(interpreter, NestedArray({2}, {planes, Text(u"b")}), [](User& user) {
        user.Key(VK_TAB);
        user.Key(VK_RETURN);
        user.ExpectEqual(TextIn(user), u"ab\r\ncd", "no new line");
        user.Key(VK_HOME);
        user.Key(VK_BACK);
        user.ExpectEqual(user.StatusText(), u"Not supported", "lines are not joined, and it is said why");
        user.Key(VK_HOME, {VK_CONTROL});
        user.Type(u"x");
        user.Command(PlaneDown);
        user.ExpectEqual(TextIn(user), u"ef\r\ngh", "the second plane");
        user.Key(VK_END, {VK_CONTROL});
        user.Type(u"y");
        user.Command(PlaneDown - 1);
        user.Key('Z', {VK_CONTROL});
        user.ExpectEqual(TextIn(user), u"ef\r\ngh", "undone where it was typed");
        user.Key('Z', {VK_CONTROL});
        user.ExpectEqual(TextIn(user), u"ab\r\ncd", "as is the first");
        user.Key(VK_HOME, {VK_CONTROL});
        user.Type(u"z");
        user.Command(SaveAndClose);
    });
    Expect(outcome, TextOf({2, 2, 3}, u"zabcd ef gh "));
}

TEST_F(EditorWindow, DraggedTextShowsWhereItWouldLand)
{
    RunEdit(interpreter, MatrixItem(Letters()), [](User& user) {
        user.Key(VK_TAB);
        HWND const editor = user.Editor();
        const FontSize font = FontOf(editor);
        const auto marked = [&](int column, int line) {
            const int x = Rim + column * font.character;
            const int y = Rim + line * font.line;
            return user.Shot(editor).Count(GetSysColor(COLOR_WINDOWTEXT), {x, y, x + 2, y + font.line}) ==
                   2 * font.line;
        };
        user.Drag(editor, At(editor, 2, 1), At(editor, 5, 1));
        Sleep(GetDoubleClickTime() + 50);
        user.Mouse(editor, At(editor, 3, 1), MOUSEEVENTF_LEFTDOWN);
        user.Mouse(editor, At(editor, 7, 2));
        user.Expect(marked(7, 2), "before the character under the pointer");
        user.Mouse(editor, At(editor, 1, 3));
        user.Expect(marked(1, 3) && !marked(7, 2), "it follows the pointer");
        user.Mouse(editor, At(editor, 4, 1));
        user.Expect(!marked(1, 3) && !marked(4, 1), "and is nowhere over the text itself");
        user.Mouse(editor, At(editor, 4, 1), MOUSEEVENTF_LEFTUP);
        user.Expect(!marked(4, 1), "nor afterwards");
    });
}

TEST_F(EditorWindow, TextDroppedOnItselfOnlyLosesItsSelection)
{
    const Outcome outcome = RunEdit(interpreter, MatrixItem(Letters()), [](User& user) {
        user.Key(VK_TAB);
        HWND const editor = user.Editor();
        user.Drag(editor, At(editor, 2, 1), At(editor, 5, 1));
        user.Drag(editor, At(editor, 3, 1), At(editor, 5, 1));
        PutOnClipboard(u"kept");
        SendMessageW(editor, WM_COPY, 0, 0);
        user.ExpectEqual(user.ClipboardText(), u"kept", "nothing is selected");
        user.ExpectEqual(SendMessageW(editor, EM_CANUNDO, 0, 0), LRESULT{0}, "nothing has happened");
        user.Type(u"!"); // at the selection's end, where the caret has stayed
        user.Command(SaveAndClose);
    });
    Expect(outcome, Matrix({U"abcdefghij ", U"klmno!pqrst", U"uvwxyzABCD ", U"EFGHIJKLMN "}));
}

} // namespace
} // namespace vantrel::ui
