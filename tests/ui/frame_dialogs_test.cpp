// Every dialog by keyboard alone, and what they leave behind.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstring>

#include "hosts/fake_matlab.h"
#include "hosts/win/matlab_libraries.h"
#include "ui/driver.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr int NameEdit = 106;
constexpr int SelectedOnly = 107;
constexpr int ExitForce = 4110;
constexpr int AxesList = 1001;
constexpr int AxesUp = 1002;
constexpr int AxesDown = 1003;
constexpr wchar_t Program[] = L"Vantrel";

class FrameDialogs : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
};

// Tab goes through the controls in this order and round, Shift+Tab back.
void ExpectTabOrder(User& user, HWND dialog, std::initializer_list<int> controls)
{
    for (const int control : controls) {
        user.Expect(user.Focus() == GetDlgItem(dialog, control), "Tab goes to the next control");
        user.Key(VK_TAB);
    }
    user.Expect(user.Focus() == GetDlgItem(dialog, *controls.begin()), "and round");
    user.Key(VK_TAB, {VK_SHIFT});
    user.Expect(user.Focus() == GetDlgItem(dialog, *(controls.end() - 1)), "Shift+Tab goes back");
    user.Key(VK_TAB);
}

void OpenByMenu(User& user, WORD menu, WORD item)
{
    user.Key(menu, {VK_MENU});
    user.Key(item);
}

TEST_F(FrameDialogs, AboutOpensByItsLettersAndClosesByEnter)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        OpenByMenu(user, 'H', 'A');
        HWND const dialog = user.WaitForBox(L"About Vantrel");
        user.Expect(user.Focus() == GetDlgItem(dialog, IDOK), "the button has the keyboard");
        user.Key(VK_RETURN);
        user.Expect(!IsWindow(dialog) && user.IsOpen(), "Enter closes it");
    });
}

TEST_F(FrameDialogs, OpenIsDoneByKeys)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.Key('O', {VK_CONTROL});
        HWND dialog = user.WaitForBox(L"Open");
        ExpectTabOrder(user, dialog, {NameEdit, IDOK, IDCANCEL});
        user.Key(VK_TAB);
        user.Key('N', {VK_MENU});
        user.Expect(user.Focus() == GetDlgItem(dialog, NameEdit), "Alt+N goes to the name");
        user.Key(VK_ESCAPE);
        user.Expect(!IsWindow(dialog) && user.IsOpen(), "Escape leaves it");
        OpenByMenu(user, 'F', 'O');
        dialog = user.WaitForBox(L"Open");
        user.Type(u"abc");
        user.Key(VK_RETURN);
        user.Expect(!IsWindow(dialog), "Enter is OK");
    });
}

TEST_F(FrameDialogs, SaveAsIsDoneByKeys)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        OpenByMenu(user, 'F', 'A');
        HWND const dialog = user.WaitForBox(L"Save As");
        ExpectTabOrder(user, dialog, {NameEdit, SelectedOnly, IDOK, IDCANCEL});
        user.Expect(IsDlgButtonChecked(dialog, SelectedOnly) == BST_UNCHECKED, "the whole array at first");
        wchar_t label[64] = {};
        GetDlgItemTextW(dialog, SelectedOnly, label, 64);
        user.Expect(std::wstring(label) == L"Save selected array", "what the box says");
        user.Key(VK_TAB);
        user.Key(VK_SPACE);
        user.Expect(IsDlgButtonChecked(dialog, SelectedOnly) == BST_CHECKED, "the space bar checks the box");
        user.Key(VK_SPACE);
        user.Expect(IsDlgButtonChecked(dialog, SelectedOnly) == BST_UNCHECKED, "and takes it back");
        user.Key('N', {VK_MENU});
        user.Expect(user.Focus() == GetDlgItem(dialog, NameEdit), "Alt+N goes to the name");
        user.Key(VK_ESCAPE);
        user.Expect(!IsWindow(dialog) && user.IsOpen(), "Escape leaves it");
    });
}

TEST_F(FrameDialogs, AxesAreReorderedByKeys)
{
    const Outcome outcome = RunEdit(interpreter, NumericArray({1, 2, 3}, {1, 2, 3, 4, 5, 6}), [](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, 4628, 0);
        HWND dialog = user.WaitForBox(L"Reorder Axes");
        ExpectTabOrder(user, dialog, {AxesList, AxesUp, AxesDown, IDOK, IDCANCEL});
        user.Key('O', {VK_MENU});
        user.ExpectEqual(SendDlgItemMessageW(dialog, AxesList, LB_GETCURSEL, 0, 0), 1,
                         "Alt+O moves the axis down");
        user.Key(VK_ESCAPE);
        user.Expect(!IsWindow(dialog) && user.IsOpen(), "Escape leaves it");
        PostMessageW(user.Frame(), WM_COMMAND, 4628, 0);
        dialog = user.WaitForBox(L"Reorder Axes");
        user.Key('O', {VK_MENU});
        user.Key('O', {VK_MENU});
        user.Key('U', {VK_MENU});
        user.Key(VK_RETURN);
        user.Expect(!IsWindow(dialog), "Enter is OK");
        user.Command(4102);
    });
    EXPECT_TRUE(SameValues(outcome.edit.result, NumericArray({2, 1, 3}, {1, 2, 3, 4, 5, 6})))
        << Dump(outcome.edit.result);
}

TEST_F(FrameDialogs, TheQuestionAboutChangesTakesLettersAndEscape)
{
    const Outcome outcome = RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.Type(u"x");
        user.Key(VK_F4, {VK_MENU});
        HWND question = user.WaitForBox(Program);
        user.Key(VK_ESCAPE);
        user.Expect(!IsWindow(question) && user.IsOpen(), "Escape goes back");
        user.Key(VK_F4, {VK_MENU});
        question = user.WaitForBox(Program);
        user.Key('Y');
        user.Expect(!IsWindow(question) && !user.IsOpen(), "Y saves and closes");
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_EQ(TextOfArray(outcome.edit.result), u"xabc");
}

TEST_F(FrameDialogs, NToTheQuestionClosesWithoutSaving)
{
    const Outcome outcome = RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.Type(u"x");
        OpenByMenu(user, 'F', 'X');
        user.WaitForBox(Program);
        user.Key('N');
        user.Expect(!user.IsOpen(), "closed");
    });
    EXPECT_TRUE(outcome.edit.unchanged);
}

TEST_F(FrameDialogs, TheQuestionAboutAnExistingVariableTakesLetters)
{
    std::string reason;
    ASSERT_TRUE(LoadMatlabLibraries(reason)) << reason;
    Matlab matlab;
    matlab.SetVariable("taken", TextValue(u"old"));
    const auto mex = reinterpret_cast<MexFunction>(LibraryEntry("mexFunction"));
    RunWithUser([&] { static_cast<void>(matlab.Call(mex, 1, {TextValue(u"new")})); },
                [](User& user) {
                    OpenByMenu(user, 'F', 'A');
                    HWND const dialog = user.WaitForBox(L"Save As");
                    user.Type(u"taken");
                    user.Key(VK_RETURN);
                    user.WaitForBox(Program);
                    user.Key('N');
                    user.Expect(user.Focus() == GetDlgItem(dialog, NameEdit), "N asks for another name");
                    user.Key(VK_RETURN);
                    user.WaitForBox(Program);
                    user.Key('Y');
                    user.Expect(!IsWindow(dialog) && user.StatusText() == u"Data saved", "Y replaces it");
                    user.Command(ExitForce);
                });
    ASSERT_TRUE(matlab.Variable("taken"));
    EXPECT_EQ(TextOf(*matlab.Variable("taken")), u"new");
}

LOGFONTA StoredFont()
{
    LOGFONTA font{};
    const std::vector<std::uint8_t> stored = StoredOption(L"Font");
    if (stored.size() == sizeof font) std::memcpy(&font, stored.data(), sizeof font);
    return font;
}

LONG HeightOfViewFont(const User& user)
{
    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(user.Client(), WM_GETFONT, 0, 0)), sizeof font, &font);
    return std::abs(font.lfHeight);
}

TEST_F(FrameDialogs, AFontChosenByKeysIsKeptForTheNextRun)
{
    LONG chosen = 0;
    RunEdit(interpreter, Text(u"abc"), [&](User& user) {
        const LONG before = HeightOfViewFont(user);
        OpenByMenu(user, 'O', 'F');
        HWND dialog = user.WaitForBox(L"Font");
        user.Key(VK_ESCAPE);
        user.Expect(!IsWindow(dialog) && HeightOfViewFont(user) == before, "Escape changes nothing");
        OpenByMenu(user, 'O', 'F');
        dialog = user.WaitForBox(L"Font");
        user.Key('S', {VK_MENU});
        user.Type(u"24");
        user.Key(VK_RETURN);
        chosen = HeightOfViewFont(user);
        user.Expect(!IsWindow(dialog) && chosen > before, "a larger font");
    });
    EXPECT_EQ(std::abs(StoredFont().lfHeight), chosen);
    RunEdit(interpreter, Text(u"abc"),
            [&](User& user) { user.Expect(HeightOfViewFont(user) == chosen, "the same font again"); });
}

} // namespace
} // namespace vantrel::ui
