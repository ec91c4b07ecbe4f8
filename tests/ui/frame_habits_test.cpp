// What users are used to from every program: the keys of text boxes, F1, closing a bar by mouse, the end of the session.
#include <windows.h>

#include <gtest/gtest.h>

#include "ui/driver.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr int SaveAndClose = 4104;
constexpr int Exit = 4105;
constexpr int Find = 4206;
constexpr int Font = 4303;
constexpr int ConfirmClose = 4304;
constexpr int PopupCut = 4003;
constexpr int PopupCopy = 4004;
constexpr int PopupPaste = 4005;
constexpr int CopyArray = 4202;
constexpr int PasteArray = 4203;
constexpr int FindText = 108;

class FrameHabits : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
};

Array Words()
{
    return NestedArray({2}, {Text(u"alpha beta"), Text(u"gamma")});
}

HWND FindBar(const User& user)
{
    return FindWindowExW(user.Frame(), nullptr, L"#32770", nullptr);
}

// With the first item selected; the box of the text.
HWND TypeIntoFindBar(User& user, const char16_t* text)
{
    user.Key(VK_TAB);
    user.Command(Find);
    user.Type(text);
    return GetDlgItem(FindBar(user), FindText);
}

std::wstring TextOfWindow(HWND window)
{
    wchar_t text[256] = {};
    SendMessageW(window, WM_GETTEXT, 256, reinterpret_cast<LPARAM>(text));
    return text;
}

// As "first-end".
std::string SelectionOf(HWND box)
{
    DWORD first = 0;
    DWORD end = 0;
    SendMessageW(box, EM_GETSEL, reinterpret_cast<WPARAM>(&first), reinterpret_cast<LPARAM>(&end));
    return std::to_string(first) + "-" + std::to_string(end);
}

TEST_F(FrameHabits, CtrlShiftLeftSelectsAWordInABarsTextAndLeavesTheArrayAlone)
{
    const Outcome outcome = RunEdit(interpreter, Words(), [](User& user) {
        HWND const text = TypeIntoFindBar(user, u"alpha beta");
        user.Key(VK_LEFT, {VK_CONTROL, VK_SHIFT});
        user.ExpectEqual(SelectionOf(text), "6-10", "the last word");
        user.Key(VK_HOME);
        user.Key(VK_RIGHT, {VK_CONTROL, VK_SHIFT});
        user.ExpectEqual(SelectionOf(text), "0-6", "the first, with its blank");
        user.Command(Exit);
    });
    EXPECT_TRUE(outcome.edit.unchanged);
}

TEST_F(FrameHabits, TheMenusCutCopyAndPasteAreThoseOfTheTextThatHasTheKeyboard)
{
    const Outcome outcome = RunEdit(interpreter, Words(), [](User& user) {
        HWND const text = TypeIntoFindBar(user, u"alpha");
        SendMessageW(text, EM_SETSEL, 0, 2);
        user.Command(PopupCopy);
        user.ExpectEqual(user.ClipboardText(), u"al", "copied from the bar");
        user.Command(PopupCut);
        user.Expect(TextOfWindow(text) == L"pha", "cut from the bar");
        SendMessageW(text, EM_SETSEL, 3, 3);
        user.Command(PopupPaste);
        user.Expect(TextOfWindow(text) == L"phaal", "pasted into the bar");
        user.Command(Exit);
    });
    EXPECT_TRUE(outcome.edit.unchanged);
}

TEST_F(FrameHabits, TheFindBarClosesByMouse)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(Find);
        HWND const bar = FindBar(user);
        HWND const close = GetDlgItem(bar, IDCANCEL);
        RECT place{};
        GetWindowRect(close, &place);
        RECT whole{};
        GetWindowRect(bar, &whole);
        user.Expect(place.left > whole.left && place.right <= whole.right && place.bottom <= whole.bottom,
                    "the button lies inside the bar");
        user.Click(close, (place.right - place.left) / 2, (place.bottom - place.top) / 2);
        user.Expect(IsWindowVisible(bar) == 0, "the bar is closed");
        user.Expect(user.Focus() == user.Client() || user.Focus() == user.Editor(),
                    "the array has the keyboard");
    });
}

TEST_F(FrameHabits, F1OpensTheHelpFromAnyPartOfTheWindow)
{
    RunEdit(interpreter, Words(), [](User& user) {
        const auto helpComes = [&](const char* where) {
            INPUT keys[2] = {};
            keys[0].type = keys[1].type = INPUT_KEYBOARD;
            keys[0].ki.wVk = keys[1].ki.wVk = VK_F1;
            keys[1].ki.dwFlags = KEYEVENTF_KEYUP;
            SendInput(2, keys, sizeof keys[0]);
            const std::wstring text = user.AnswerBox(L"Vantrel", IDOK);
            user.Expect(text == L"The help file vantrel.chm is missing.", where);
        };
        helpComes("the array");
        user.Key(VK_TAB);
        helpComes("a cell");
        user.Command(Find);
        helpComes("the find bar");
        user.Key(VK_F6);
        helpComes("the name box");
    });
}

TEST_F(FrameHabits, TheWindowIsSharpInAHostThatKnowsNothingOfResolutionsAndTheHostStaysSo)
{
    const DPI_AWARENESS_CONTEXT usual = SetThreadDpiAwarenessContext(DPI_AWARENESS_CONTEXT_UNAWARE);
    RunEdit(interpreter, Words(), [](User& user) {
        const auto sharp = [](HWND window) {
            return AreDpiAwarenessContextsEqual(GetWindowDpiAwarenessContext(window),
                                                DPI_AWARENESS_CONTEXT_SYSTEM_AWARE) != 0;
        };
        user.Expect(sharp(user.Frame()) && sharp(user.Client()) && sharp(FindBar(user)), "every window is");
    });
    EXPECT_TRUE(AreDpiAwarenessContextsEqual(GetThreadDpiAwarenessContext(), DPI_AWARENESS_CONTEXT_UNAWARE));
    SetThreadDpiAwarenessContext(usual);
}

TEST_F(FrameHabits, TheSessionDoesNotEndOverChanges)
{
    RunEdit(interpreter, Words(), [](User& user) {
        const auto mayEnd = [&] { return SendMessageW(user.Frame(), WM_QUERYENDSESSION, 0, 0) != 0; };
        user.Expect(mayEnd(), "nothing is changed");
        user.Key(VK_TAB);
        user.Type(u"x");
        user.Expect(!mayEnd(), "something is");
        SendMessageW(user.Frame(), WM_ENDSESSION, FALSE, 0);
        user.Expect(user.IsOpen(), "the session goes on");
        user.Command(ConfirmClose);
        user.Expect(mayEnd(), "nobody wants to be asked");
        user.Command(ConfirmClose);
    });
}

TEST_F(FrameHabits, TheWindowStaysUnderItsFontDialog)
{
    RunEdit(interpreter, Words(), [](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, Font, 0);
        HWND const dialog = user.WaitForBox(L"Font");
        PostMessageW(user.Frame(), WM_CLOSE, 0, 0);
        user.Wait();
        user.Expect(IsWindow(dialog) != 0 && user.IsOpen(), "both are there");
        PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
        for (int i = 0; i < 500 && IsWindow(dialog); ++i)
            Sleep(10);
        user.Wait();
        user.Expect(user.IsOpen(), "and the window goes on");
    });
}

TEST_F(FrameHabits, ArraysWaitAMomentForAClipboardThatIsInUse)
{
    const Outcome outcome = RunEdit(interpreter, Words(), [](User& user) {
        const auto whileOpen = [&](int command) {
            while (!OpenClipboard(nullptr))
                Sleep(1);
            PostMessageW(user.Frame(), WM_COMMAND, static_cast<WPARAM>(command), 0);
            Sleep(30);
            CloseClipboard();
            user.Wait();
        };
        user.Key(VK_TAB);
        whileOpen(CopyArray);
        user.ExpectEqual(user.ClipboardText(), u"alpha beta", "copied when it was free again");
        user.Key(VK_TAB);
        whileOpen(PasteArray);
        user.Command(SaveAndClose);
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_TRUE(SameValues(outcome.edit.result, NestedArray({2}, {Text(u"alpha beta"), Text(u"alpha beta")})))
        << "pasted when it was free again";
}

} // namespace
} // namespace vantrel::ui
