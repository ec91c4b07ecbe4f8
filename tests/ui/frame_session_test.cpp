// Whole sessions: one without a mouse, one without a keyboard.
#include <windows.h>

#include <gtest/gtest.h>

#include "ui/driver.h"
#include "ui/menus.h"

namespace vantrel::ui {
namespace {

using namespace fake;

class FrameSession : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
};

Array Household()
{
    return NestedArray({3},
                       {Text(u"apples"), NestedArray({2}, {Text(u"Berlin"), NumericArray({3}, {1, 2.5, 3})}),
                        NumericArray({1, 2, 3}, {1, 2, 3, 4, 5, 6.5})});
}

LONG HeightOfViewFont(const User& user)
{
    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(user.Client(), WM_GETFONT, 0, 0)), sizeof font, &font);
    return std::abs(font.lfHeight);
}

// Opens a menu by its letter and goes down to an item of it.
void ChooseByKeys(User& user, WORD menu, int down)
{
    user.Key(menu, {VK_MENU});
    for (int i = 0; i < down; ++i)
        user.Key(VK_DOWN);
    user.Key(VK_RETURN);
}

void EditTheFirstItemByKeys(User& user)
{
    user.Key(VK_TAB);
    user.ExpectEqual(user.PickIndex(), u"1", "Tab goes in");
    user.Key(VK_END);
    user.Type(u"!");
    user.Key(VK_TAB);
    user.Key(VK_TAB);
    user.ExpectEqual(user.PickIndex(), u"2 1", "and deeper");
}

void FindANumberByKeysAndEditIt(User& user)
{
    user.Key('F', {VK_CONTROL});
    user.Type(u"2.5");
    constexpr int TabsToNumeric = 4;
    for (int i = 0; i < TabsToNumeric; ++i)
        user.Key(VK_TAB);
    user.Key(VK_SPACE);
    user.Key(VK_F3);
    user.ExpectEqual(user.PickIndex(), u"2 2", "the number is found");
    user.Key(VK_ESCAPE);
    user.Expect(user.IsOpen() && user.Editor() != nullptr, "back in the array");
    user.Key(VK_HOME);
    user.Type(u"7");
}

void ReorderAxesByKeys(User& user)
{
    user.Key(VK_F6);
    user.Type(u"3");
    user.Key(VK_RETURN);
    user.ExpectEqual(user.PickIndex(), u"3", "the name box goes there");
    ChooseByKeys(user, 'A', 19); // Reorder axes..., by its place: separators are passed over
    HWND const dialog = user.WaitForBox(L"Reorder Axes");
    user.Key('O', {VK_MENU});
    user.Key(VK_RETURN);
    user.Expect(!IsWindow(dialog), "the axes are reordered");
}

void EnlargeTheFontByKeys(User& user)
{
    const LONG before = HeightOfViewFont(user);
    user.Key('O', {VK_MENU});
    user.Key('F');
    user.WaitForBox(L"Font");
    user.Key('S', {VK_MENU});
    user.Type(u"20");
    user.Key(VK_RETURN);
    user.Expect(HeightOfViewFont(user) > before, "the font is larger");
}

void SaveAndCloseByKeys(User& user)
{
    user.Key('S', {VK_CONTROL});
    user.ExpectEqual(user.StatusText(), u"Data saved", "saved");
    user.Key(VK_ESCAPE);
    user.Expect(!user.IsOpen(), "Escape closes");
}

TEST_F(FrameSession, WithoutAMouse)
{
    const Outcome outcome = RunEdit(interpreter, Household(), [](User& user) {
        EditTheFirstItemByKeys(user);
        FindANumberByKeysAndEditIt(user);
        ReorderAxesByKeys(user);
        EnlargeTheFontByKeys(user);
        SaveAndCloseByKeys(user);
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    const Array expected = NestedArray(
        {3}, {Text(u"apples!"), NestedArray({2}, {Text(u"Berlin"), NumericArray({3}, {71, 2.5, 3})}),
              NumericArray({2, 1, 3}, {1, 2, 3, 4, 5, 6.5})});
    EXPECT_TRUE(SameValues(outcome.edit.result, expected)) << Dump(outcome.edit.result);
}

// --- the mouse alone ---

void ClickScreen(User& user, const RECT& place)
{
    POINT at{(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    ScreenToClient(user.Frame(), &at);
    user.Mouse(user.Frame(), at, MOUSEEVENTF_LEFTDOWN);
    user.Mouse(user.Frame(), at, MOUSEEVENTF_LEFTUP);
}

int PositionOf(HMENU menu, UINT id)
{
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        if (GetMenuItemID(menu, i) == id) return i;
    }
    return -1;
}

void PressButton(User& user, HWND dialog, int id)
{
    RECT place{};
    GetWindowRect(GetDlgItem(dialog, id), &place);
    ClickScreen(user, place);
}

void RestructureByTools(User& user)
{
    user.Click(user.Client(), 24, 24);
    user.ExpectEqual(user.PickIndex(), u"1", "a click selects");
    PressTool(user, 4614); // Reverse
    PressTool(user, 4202); // Copy array
    PressTool(user, 4702); // Item to the right
}

void MinimizeByTheRightButtonAndRestore(User& user)
{
    user.Mouse(user.Client(), {24, 24}, MOUSEEVENTF_RIGHTDOWN);
    user.Mouse(user.Client(), {24, 24}, MOUSEEVENTF_RIGHTUP);
    HMENU const menu = WaitForMenu();
    user.Expect(menu != nullptr, "the right button shows what can be done");
    if (menu == nullptr) return;
    RECT place{};
    GetMenuItemRect(nullptr, menu, static_cast<UINT>(PositionOf(menu, 4605)), &place);
    ClickScreen(user, place); // Minimize
    user.Wait();
    user.Expect(!IsGrayed(GetMenu(user.Frame()), 4604), "it is closed");
    PressTool(user, 4604); // Restore
}

void ShowTheFindBarByItsTool(User& user)
{
    HWND const bar = GetDlgItem(user.Frame(), 32786);
    PressTool(user, 4206);
    user.Expect(IsWindowVisible(bar) != 0, "the find bar is shown");
    PressTool(user, 4206);
    user.Expect(IsWindowVisible(bar) != 0, "and stays when it is asked for again");
}

void ChooseFromTheMenusByMouse(User& user)
{
    user.Expect(ChooseFromMenuBar(user, 4309), "the menu has it"); // Options, Use 3D edges
    user.Expect((GetMenuState(GetMenu(user.Frame()), 4309, MF_BYCOMMAND) & MF_CHECKED) != 0, "checked");
    user.Expect(ChooseFromMenuBar(user, 4503), "the menu has it"); // Help, About
    HWND const about = user.WaitForBox(L"About Vantrel");
    PressButton(user, about, IDOK);
    user.Expect(!IsWindow(about), "a button closes the dialog");
    user.Expect(ChooseFromMenuBar(user, 4104), "the menu has it"); // File, Save and close
    user.Expect(!user.IsOpen(), "saved and closed");
}

TEST_F(FrameSession, WithoutAKeyboard)
{
    const Array argument = NestedArray({2}, {Text(u"abc"), NumericArray({2}, {1.5, 2})});
    const Outcome outcome = RunEdit(interpreter, argument, [](User& user) {
        RestructureByTools(user);
        MinimizeByTheRightButtonAndRestore(user);
        ShowTheFindBarByItsTool(user);
        ChooseFromTheMenusByMouse(user);
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    const Array expected = NestedArray({3}, {Text(u"cba"), Text(u"   "), NumericArray({2}, {1.5, 2})});
    EXPECT_TRUE(SameValues(outcome.edit.result, expected)) << Dump(outcome.edit.result);
}

} // namespace
} // namespace vantrel::ui
