// Status bar, name box and find bar.
#include <windows.h>

#include <gtest/gtest.h>

#include <commctrl.h>

#include "ui/driver.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr int NameBox = 32789;
constexpr int FindCommand = 4206;
constexpr int FindNext = 4209;
constexpr int FindPrevious = 4210;
constexpr int FindText = 108;
constexpr int NextButton = 109;
constexpr int PreviousButton = 110;
constexpr int IgnoreCase = 111;
constexpr int Numeric = 112;

class FrameBars : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
};

std::vector<std::u16string> Parts(const User& user)
{
    std::vector<std::u16string> parts;
    const LRESULT count = SendMessageW(user.Status(), SB_GETPARTS, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        wchar_t text[256] = {};
        SendMessageW(user.Status(), SB_GETTEXTW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
        parts.emplace_back(reinterpret_cast<const char16_t*>(text));
    }
    return parts;
}

HWND FindBar(const User& user)
{
    HWND const bar = FindWindowExW(user.Frame(), nullptr, L"#32770", nullptr);
    return bar != nullptr && IsWindowVisible(bar) ? bar : nullptr;
}

bool IsEnabled(const User& user, int control)
{
    return IsWindowEnabled(GetDlgItem(FindBar(user), control)) != 0;
}

bool IsGreyed(const User& user, int id)
{
    return (GetMenuState(GetMenu(user.Frame()), static_cast<UINT>(id), MF_BYCOMMAND) & MF_GRAYED) != 0;
}

HWND FocusOf(const User& user)
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(user.Frame(), nullptr), &info);
    return info.hwndFocus;
}

std::wstring TextOfWindow(HWND window)
{
    wchar_t text[512] = {};
    SendMessageW(window, WM_GETTEXT, 512, reinterpret_cast<LPARAM>(text));
    return text;
}

Array Words()
{
    return NestedArray({3},
                       {Text(u"alpha beta"), NestedArray({2}, {Text(u"Beta"), NumericArray({3}, {1, 22, 3})}),
                        Text(u"gamma")});
}

TEST_F(FrameBars, TheStatusBarShowsTheSelectedArraysAttributes)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Expect(Parts(user) == std::vector<std::u16string>{u"Type:", u"General", u" ≡:", u"3", u" ×/⍴:",
                                                               u"3", u" ⍴⍴:", u"1", u" ⍴:", u"3", u" ⊃:",
                                                               u" "},
                    "the whole array");
        user.Key(VK_TAB);
        user.Expect(Parts(user) == std::vector<std::u16string>{u"Type:", u"Character", u" ≡:", u"1", u" ×/⍴:",
                                                               u"10", u" ⍴⍴:", u"1", u" ⍴:", u"10", u" ⊃:",
                                                               u"1"},
                    "its first item");
    });
}

TEST_F(FrameBars, AScalarShowsNoShape)
{
    RunEdit(interpreter, NestedArray({1}, {Number(3.5)}), [](User& user) {
        user.Key(VK_TAB);
        user.Expect(Parts(user) == std::vector<std::u16string>{u"Type:", u"Real", u" ≡:", u"0", u" ×/⍴:",
                                                               u"1", u" ⍴⍴:", u"0", u" ⊃:", u"1", u""},
                    "type, depth, count, rank and index");
    });
}

TEST_F(FrameBars, ThePlaneIsShownBehindThePickIndex)
{
    RunEdit(interpreter, NumericArray({2, 3, 4}, std::vector<double>(24, 7)), [](User& user) {
        user.Expect(Parts(user).size() == 13 && Parts(user)[12] == u"[1;;]", "the first plane");
        user.Key(VK_DOWN, {VK_MENU});
        user.Expect(Parts(user)[12] == u"[2;;]", "the second");
    });
}

TEST_F(FrameBars, AMessageTakesTheWholeBarUntilTheNextSelection)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(4102);
        user.Expect(SendMessageW(user.Status(), SB_ISSIMPLE, 0, 0) != 0, "one part");
        user.Expect(user.StatusText() == u"Data saved", "the message");
        user.Expect(!IsWindowVisible(GetDlgItem(user.Frame(), NameBox)), "the name box makes room");
        user.Key(VK_TAB);
        user.Expect(SendMessageW(user.Status(), SB_ISSIMPLE, 0, 0) == 0, "attributes again");
        user.Expect(IsWindowVisible(GetDlgItem(user.Frame(), NameBox)) != 0, "and the name box");
    });
}

TEST_F(FrameBars, TheNameBoxShowsThePickIndexAndSelectsWhatIsTyped)
{
    RunEdit(interpreter, Words(), [](User& user) {
        HWND const box = GetDlgItem(user.Frame(), NameBox);
        user.Key(VK_TAB);
        user.Expect(TextOfWindow(box) == L"1", "the first item's");
        user.Click(box, 3, 3);
        user.Expect(FocusOf(user) == box, "it has the keyboard");
        user.Key('A', {VK_CONTROL});
        SendMessageW(box, EM_SETSEL, 0, -1);
        user.Type(u"2 1");
        user.Expect(user.PickIndex() == u"2 1", "the named array is selected");
        user.Expect(FocusOf(user) == box, "typing goes on");
        user.Type(u"9");
        user.Expect(user.PickIndex() == u"2 1", "what names nothing changes nothing");
        user.Key(VK_ESCAPE);
        user.Expect(user.IsOpen() && FocusOf(user) != box, "Escape goes back to the array");
        user.Expect(TextOfWindow(box) == L"2 1", "and shows its index");
    });
}

TEST_F(FrameBars, FindFindsForwardsAndBackwards)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Key('F', {VK_CONTROL});
        user.Expect(FindBar(user) != nullptr, "the bar is shown");
        user.Expect(FocusOf(user) == GetDlgItem(FindBar(user), FindText), "the text has the keyboard");
        user.Type(u"eta");
        user.Key(VK_RETURN);
        user.Expect(user.PickIndex() == u"1", "in the first item");
        user.Key(VK_F3);
        user.Expect(user.PickIndex() == u"2 1", "in the second");
        user.Expect(FocusOf(user) == GetDlgItem(FindBar(user), NextButton), "Next has the keyboard");
        user.Key(VK_F3);
        user.Expect(user.PickIndex() == u"1", "and round");
        user.Key(VK_F3, {VK_SHIFT});
        user.Expect(user.PickIndex() == u"2 1", "and back");
        user.Expect(FocusOf(user) == GetDlgItem(FindBar(user), PreviousButton), "Previous has the keyboard");
    });
}

TEST_F(FrameBars, NotFoundIsSaid)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(FindCommand);
        user.Type(u"delta");
        user.Key(VK_RETURN);
        user.Expect(user.StatusText() == u"Not found", "the message");
        user.Expect(user.PickIndex() == u" ", "nothing moved");
    });
}

TEST_F(FrameBars, EscapeClosesTheBarAndNothingElse)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(FindCommand);
        user.Key(VK_ESCAPE);
        user.Expect(user.IsOpen() && FindBar(user) == nullptr, "only the bar is gone");
        user.Expect(FocusOf(user) == user.Client() || FocusOf(user) == user.Editor(),
                    "the array has the keyboard");
    });
    EXPECT_EQ(StoredOption(L"Find")[0], 0);
}

TEST_F(FrameBars, F3WithoutTheBarDoesNothing)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(FindCommand);
        user.Type(u"eta");
        user.Key(VK_ESCAPE);
        user.Key(VK_F3);
        user.Expect(user.PickIndex() == u" ", "nothing is selected");
        user.Expect(IsGreyed(user, FindNext) && IsGreyed(user, FindPrevious), "the items are greyed");
    });
}

TEST_F(FrameBars, TheBarAllowsWhatItsTextAllows)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(FindCommand);
        user.Expect(IsEnabled(user, IgnoreCase) && IsEnabled(user, Numeric), "empty: both boxes");
        user.Expect(!IsEnabled(user, NextButton) && !IsEnabled(user, PreviousButton), "empty: no search");
        user.Expect(IsGreyed(user, FindNext) && IsGreyed(user, FindPrevious), "nor by the menu");
        user.Type(u"x");
        user.Expect(IsEnabled(user, IgnoreCase) && !IsEnabled(user, Numeric), "text: no numbers");
        user.Expect(IsEnabled(user, NextButton) && !IsGreyed(user, FindNext), "text: a search");
        SetDlgItemTextW(FindBar(user), FindText, L"22");
        user.Wait();
        user.Expect(IsEnabled(user, IgnoreCase) && IsEnabled(user, Numeric), "number: both");
        SendMessageW(GetDlgItem(FindBar(user), Numeric), BM_CLICK, 0, 0);
        user.Expect(!IsEnabled(user, IgnoreCase), "numeric: no case");
    });
}

TEST_F(FrameBars, NumericFindsValues)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(FindCommand);
        user.Type(u"2.2E1");
        SendMessageW(GetDlgItem(FindBar(user), Numeric), BM_CLICK, 0, 0);
        user.Key(VK_F3);
        user.Expect(user.PickIndex() == u"2 2", "22 is found");
    });
}

TEST_F(FrameBars, WhatWasSoughtIsKept)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(FindCommand);
        user.Type(u"bEtA");
        SendMessageW(GetDlgItem(FindBar(user), IgnoreCase), BM_CLICK, 0, 0);
        user.Wait();
    });
    EXPECT_EQ(StoredOption(L"Find")[0], 1);
    EXPECT_EQ(StoredOption(L"Ignore case")[0], 1);
    EXPECT_EQ(StoredOption(L"Find text").size(), 512u);
    RunEdit(interpreter, Words(), [](User& user) {
        user.Expect(FindBar(user) != nullptr, "the bar is shown from the start");
        user.Expect(TextOfWindow(GetDlgItem(FindBar(user), FindText)) == L"bEtA", "the text came back");
        user.Expect(IsEnabled(user, NextButton), "it can be searched at once");
        user.Key(VK_F3);
        user.Key(VK_F3);
        user.Expect(user.PickIndex() == u"2 1", "case is ignored");
    });
}

TEST_F(FrameBars, TabGoesRoundTheFindBar)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(FindCommand);
        user.Type(u"1");
        for (const int control : {NextButton, PreviousButton, IgnoreCase, Numeric, FindText}) {
            user.Key(VK_TAB);
            user.Expect(FocusOf(user) == GetDlgItem(FindBar(user), control), "the next control");
        }
    });
}

TEST_F(FrameBars, TheFindBarStandsBetweenToolBarAndView)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(FindCommand);
        RECT tools{};
        RECT find{};
        RECT view{};
        RECT status{};
        GetWindowRect(FindWindowExW(user.Frame(), nullptr, TOOLBARCLASSNAMEW, nullptr), &tools);
        GetWindowRect(FindBar(user), &find);
        GetWindowRect(user.Client(), &view);
        GetWindowRect(user.Status(), &status);
        user.Expect(tools.bottom == find.top && find.bottom == view.top && view.bottom == status.top,
                    "one below the other");
    });
}

} // namespace
} // namespace vantrel::ui
