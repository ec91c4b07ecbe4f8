// The commands of the frame itself: by menu, by key and by the tool bar.
#include <windows.h>

#include <gtest/gtest.h>

#include <commctrl.h>

#include "ui/menus.h"
#include "ui/tree_image.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr int Save = 4102;
constexpr int SaveAs = 4103;
constexpr int Open = 4106;
constexpr int ToolBarOption = 4301;
constexpr int StatusBarOption = 4302;
constexpr int About = 4503;
constexpr int NameEdit = 106;
constexpr int NameBox = 32789;

class FrameCommands : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
};

bool IsChecked(const User& user, int id)
{
    return (GetMenuState(GetMenu(user.Frame()), static_cast<UINT>(id), MF_BYCOMMAND) & MF_CHECKED) != 0;
}

std::wstring MenuText(HMENU menu, UINT position)
{
    wchar_t text[128] = {};
    GetMenuStringW(menu, position, text, 128, MF_BYPOSITION);
    return text;
}

std::vector<int> MenuIds(HMENU menu, int position)
{
    std::vector<int> ids;
    HMENU const popup = GetSubMenu(menu, position);
    for (int i = 0; i < GetMenuItemCount(popup); ++i)
        ids.push_back(static_cast<int>(GetMenuItemID(popup, i)));
    return ids;
}

TEST_F(FrameCommands, TheMenuBarHasItsMenusAndItemsInOrder)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        HMENU const menu = GetMenu(user.Frame());
        const wchar_t* const titles[] = {L"&File",    L"&Edit",     L"&Actions", L"&Insert",
                                         L"&Options", L"&Graphics", L"&Help"};
        user.ExpectEqual(GetMenuItemCount(menu), 7, "seven menus");
        for (UINT i = 0; i < 7; ++i)
            user.Expect(MenuText(menu, i) == titles[i], "the menu's title");
        const std::vector<int> expected[] = {
            {4101, 4106, 4109, 4102, 4103, 4104, 0, 4105, 0, 4107, 4108},
            {4207, 0, 4201, 4202, 4203, 4204, 4205, 4208, 0, 4003, 4004, 4005, 0, 4206, 4209, 4210},
            {4601, 4604, 4605, 4606, 4602, 4603, 0,    4607, 4608, 4617, 4618, 0,
             4629, 4609, 4613, 4610, 4612, 4611, 4614, 4615, 4616, 4628, 4619, 4621},
            {4701, 4702, 4703, 4704, 4705, 4706},
            {4301, 4302, 4303, 4306, 4304, 4316, 4313, 4311, 4312, 4314, 4315, 4310, 4305, 4307, 4308, 4309},
            {4901, 4902, 4903, 4904, 4905, 4906, 4907, 4908},
            {4501, 4502, 4503}};
        for (int i = 0; i < 7; ++i)
            user.Expect(MenuIds(menu, i) == expected[i], "the menu's items");
        user.Expect(MenuText(GetSubMenu(menu, 0), 4) == L"Save &As…", "a character beyond ASCII");
        user.Expect(MenuText(GetSubMenu(menu, 0), 1) == L"&Open...\tCtrl+O", "a key beside the text");
    });
}

TEST_F(FrameCommands, TheToolBarHasFortyEntriesForThisHostAndTheirTips)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        HWND const bar = ToolBarOf(user);
        user.Expect(SendMessageW(bar, TB_BUTTONCOUNT, 0, 0) == 40, "41 entries without Execute");
        user.Expect(SendMessageW(bar, TB_COMMANDTOINDEX, 4629, 0) == -1, "the interpreter cannot execute");
        user.Expect(SendMessageW(bar, TB_COMMANDTOINDEX, 4612, 0) > 0, "but it can enclose");
        user.Expect(IsWindow(reinterpret_cast<HWND>(SendMessageW(bar, TB_GETTOOLTIPS, 0, 0))) != 0,
                    "it has tips");
    });
}

TEST_F(FrameCommands, TheToolBarIsAsHighAsItsRowsAndStandsAboveTheView)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        MoveWindow(user.Frame(), 0, 0, 420, 400, TRUE);
        user.Wait();
        RECT last{};
        RECT bar{};
        RECT view{};
        const LRESULT count = SendMessageW(ToolBarOf(user), TB_BUTTONCOUNT, 0, 0);
        SendMessageW(ToolBarOf(user), TB_GETITEMRECT, static_cast<WPARAM>(count - 1),
                     reinterpret_cast<LPARAM>(&last));
        GetWindowRect(ToolBarOf(user), &bar);
        GetWindowRect(user.Client(), &view);
        user.Expect(last.bottom <= bar.bottom - bar.top, "the last button is inside");
        user.Expect(view.top == bar.bottom, "the view begins below");
        user.Expect(last.top > 0, "the buttons take more than one row");
    });
}

TEST_F(FrameCommands, AToolBarButtonCarriesItsCommandOut)
{
    const Outcome outcome = RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.Type(u"x");
        PressTool(user, Save);
        user.Expect(user.StatusText() == u"Data saved", "the array is saved");
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_EQ(TextOfArray(outcome.edit.result), u"xabc");
}

TEST_F(FrameCommands, CtrlSSaves)
{
    const Outcome outcome = RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.Type(u"y");
        user.Key('S', {VK_CONTROL});
        user.Expect(user.StatusText() == u"Data saved", "the array is saved");
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_EQ(TextOfArray(outcome.edit.result), u"yabc");
}

TEST_F(FrameCommands, RevertShowsTheArrayAsHandedOver)
{
    const Outcome outcome = RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.Type(u"zzz");
        user.Command(4101);
        user.Command(4104);
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_EQ(TextOfArray(outcome.edit.result), u"abc");
}

TEST_F(FrameCommands, BarsAreHiddenAndShownAndTheViewTakesTheirPlace)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        RECT before{};
        RECT after{};
        GetClientRect(user.Client(), &before);
        HWND const nameBox = GetDlgItem(user.Frame(), NameBox);
        user.Expect(IsWindowVisible(nameBox) != 0, "the name box lies over the status bar");
        user.Command(ToolBarOption);
        user.Key(VK_F6, {VK_SHIFT});
        user.Expect(user.Focus() == nameBox, "the keyboard is in it");
        user.Command(StatusBarOption);
        user.Expect(IsWindowVisible(nameBox) == 0, "and goes with it");
        user.Expect(user.Focus() != nameBox, "the keyboard, too");
        GetClientRect(user.Client(), &after);
        user.Expect(!IsWindowVisible(ToolBarOf(user)) && !IsWindowVisible(user.Status()), "both are hidden");
        user.Expect(after.bottom > before.bottom, "the view has grown");
        user.Expect(!IsChecked(user, ToolBarOption) && !IsChecked(user, StatusBarOption), "no check marks");
        user.Command(ToolBarOption);
        user.Expect(IsWindowVisible(ToolBarOf(user)) && IsChecked(user, ToolBarOption), "one is back");
    });
    EXPECT_EQ(StoredOption(L"Tool bar")[0], 1);
    EXPECT_EQ(StoredOption(L"Status bar")[0], 0);
}

TEST_F(FrameCommands, EveryOptionIsKeptFromOneRunToTheNext)
{
    const std::pair<int, const wchar_t*> options[] = {{4301, L"Tool bar"},
                                                      {4302, L"Status bar"},
                                                      {4304, L"Confirm close"},
                                                      {4305, L"Size to definition on open"},
                                                      {4306, L"Always on top"},
                                                      {4307, L"Use small icons"},
                                                      {4308, L"Use small margins"},
                                                      {4309, L"Use 3D edges"},
                                                      {4310, L"Show whole cell"},
                                                      {4311, L"Overtype"},
                                                      {4312, L"Reject unsupported data"},
                                                      {4313, L"Line numbers"},
                                                      {4314, L"Ruler"},
                                                      {4315, L"Show rank 1 scrollbars"},
                                                      {4316, L"Enable undo array"}};
    std::vector<bool> flipped;
    RunEdit(interpreter, Text(u"abc"), [&](User& user) {
        for (const auto& [id, name] : options) {
            const bool before = IsChecked(user, id);
            user.Command(id);
            user.Expect(IsChecked(user, id) != before, "the check mark changes");
            flipped.push_back(!before);
        }
    });
    for (std::size_t i = 0; i < std::size(options); ++i)
        EXPECT_EQ(StoredOption(options[i].second), (std::vector<std::uint8_t>{flipped[i], 0, 0, 0}))
            << options[i].first;
    RunEdit(interpreter, Text(u"abc"), [&](User& user) {
        for (std::size_t i = 0; i < std::size(options); ++i)
            user.Expect(IsChecked(user, options[i].first) == flipped[i], "the option came back");
        user.Expect((GetWindowLongW(user.Frame(), GWL_EXSTYLE) & WS_EX_TOPMOST) != 0,
                    "on top from the start");
        user.Expect(!IsWindowVisible(ToolBarOf(user)), "no tool bar from the start");
        user.Command(4306);
        user.Expect((GetWindowLongW(user.Frame(), GWL_EXSTYLE) & WS_EX_TOPMOST) == 0, "on top no more");
    });
}

TEST_F(FrameCommands, LargeIconsMakeALargerBar)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        const LRESULT small = HIWORD(SendMessageW(ToolBarOf(user), TB_GETBUTTONSIZE, 0, 0));
        user.Command(4307);
        const LRESULT large = HIWORD(SendMessageW(ToolBarOf(user), TB_GETBUTTONSIZE, 0, 0));
        user.Expect(large > small, "the buttons have grown");
        user.Expect(SendMessageW(ToolBarOf(user), TB_BUTTONCOUNT, 0, 0) == 40, "the same buttons");
    });
}

TEST_F(FrameCommands, AGreyedCommandDoesNothingByAnyRoad)
{
    const Outcome outcome = RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.Type(u"x");
        EnableMenuItem(GetMenu(user.Frame()), Save, MF_GRAYED);
        user.Command(Save);
        user.Key('S', {VK_CONTROL});
        PressTool(user, Save);
        user.Expect(!ChooseFromMenuBar(user, Save), "nor can it be chosen");
        user.Expect(user.StatusText() != u"Data saved", "nothing was saved");
        EnableMenuItem(GetMenu(user.Frame()), Save, MF_ENABLED);
        PressTool(user, Save);
        user.Expect(user.StatusText() == u"Data saved", "the tool does it when it is offered");
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_EQ(TextOfArray(outcome.edit.result), u"xabc");
}

TEST_F(FrameCommands, AGreyedToolDoesNothing)
{
    constexpr int Transpose = 4616;
    constexpr int UndoArray = 4204;
    RunEdit(interpreter, NestedArray({2}, {Text(u"abc"), Text(u"de")}), [](User& user) {
        const std::vector<std::uint8_t> before = TreeImage(user);
        for (const int id : {Transpose, UndoArray}) {
            user.Expect(SendMessageW(ToolBarOf(user), TB_ISBUTTONENABLED, static_cast<WPARAM>(id), 0) == 0,
                        "the button is grey");
            PressTool(user, id);
        }
        user.Expect(TreeImage(user) == before, "the array is as it was");
        user.Expect(user.PickIndex() == u" ", "and so is the selection");
    });
}

// The commands of the menu bar for which there are tools.
std::vector<int> CommandsWithTools(const User& user)
{
    std::vector<int> commands;
    const LRESULT count = SendMessageW(ToolBarOf(user), TB_BUTTONCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        TBBUTTON button{};
        SendMessageW(ToolBarOf(user), TB_GETBUTTON, static_cast<WPARAM>(i),
                     reinterpret_cast<LPARAM>(&button));
        const auto id = static_cast<UINT>(button.idCommand);
        const bool isSeparator = (button.fsStyle & BTNS_SEP) != 0;
        if (!isSeparator && GetMenuState(GetMenu(user.Frame()), id, MF_BYCOMMAND) != UINT_MAX)
            commands.push_back(button.idCommand);
    }
    return commands;
}

TEST_F(FrameCommands, MenuAndToolBarAgreeOnWhatIsGreyed)
{
    const Array argument = NestedArray(
        {3}, {Text(u"abc"), NumericArray({2, 2}, {1, 2, 3, 4}), NestedArray({2}, {Text(u"b"), Text(u"a")})});
    RunEdit(interpreter, argument, [](User& user) {
        const std::vector<int> commands = CommandsWithTools(user);
        user.Expect(commands.size() == 34, "every tool has its place in the menus");
        std::size_t greyed = 0;
        for (const bool changed : {false, true}) {
            for (int step = 0; step < 6; ++step) {
                for (const int id : commands) {
                    const bool enabled =
                        SendMessageW(ToolBarOf(user), TB_ISBUTTONENABLED, static_cast<WPARAM>(id), 0) != 0;
                    const bool isGreyed = IsGrayed(GetMenu(user.Frame()), id);
                    user.Expect(enabled != isGreyed,
                                ("menu and button agree on " + std::to_string(id)).c_str());
                    if (isGreyed) ++greyed;
                }
                user.Key(VK_TAB);
            }
            user.Expect(greyed > 0, "some things cannot be done");
            if (!changed) user.Command(4614); // now something can be undone
        }
        user.Expect(IsGrayed(GetMenu(user.Frame()), 4628), "nothing here has three axes");
    });
}

TEST_F(FrameCommands, AboutNamesProgramVersionAndSupportAndClosesByEscape)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, About, 0);
        HWND const box = user.WaitForBox(L"About Vantrel");
        wchar_t text[128] = {};
        GetDlgItemTextW(box, 114, text, 128);
        user.Expect(std::wstring(text) == L"Vantrel 1.1.0.92", "the version");
        GetDlgItemTextW(box, 116, text, 128);
        user.Expect(std::wstring(text) == L"support@quillmoor.example", "the address");
        user.Key(VK_ESCAPE);
        user.Expect(!IsWindow(box) && user.IsOpen(), "Escape closes only the dialog");
    });
}

TEST_F(FrameCommands, SaveAsRefusesAnInvalidNameAndKeepsTheDialog)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, SaveAs, 0);
        HWND const dialog = user.WaitForBox(L"Save As");
        user.Type(u"1abc");
        user.Key(VK_RETURN);
        user.Expect(user.AnswerBox(L"Vantrel", IDOK) == L"Name is invalid", "why");
        user.Expect(IsWindow(dialog) != 0, "the dialog is still there");
        user.Key(VK_ESCAPE);
        user.Expect(!IsWindow(dialog), "until it is cancelled");
    });
}

TEST_F(FrameCommands, SaveAsSaysWhenTheHostHasNoVariables)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, SaveAs, 0);
        HWND const dialog = user.WaitForBox(L"Save As");
        user.Type(u"abc");
        user.Key(VK_RETURN);
        user.Expect(!IsWindow(dialog), "the dialog ends");
        user.Expect(user.StatusText() == u"Nonce Error", "the host's answer is shown");
    });
}

TEST_F(FrameCommands, OpenSaysWhenTheHostHasNoVariables)
{
    const Outcome outcome = RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.Key('O', {VK_CONTROL});
        HWND const dialog = user.WaitForBox(L"Open");
        SetDlgItemTextW(dialog, NameEdit, L" abc ");
        user.Key(VK_RETURN);
        user.Expect(!IsWindow(dialog), "the dialog ends");
        user.Expect(user.StatusText() == u"Nonce Error", "the host's answer is shown");
    });
    EXPECT_FALSE(outcome.edit.error.signalled) << "the user knows already";
}

TEST_F(FrameCommands, OpenRefusesAnInvalidName)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, Open, 0);
        HWND const dialog = user.WaitForBox(L"Open");
        user.Key(VK_RETURN);
        user.Expect(user.AnswerBox(L"Vantrel", IDOK) == L"Name is invalid", "an empty name is none");
        PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    });
}

TEST_F(FrameCommands, AWindowClosedByASentMessageEndsTheEditAtOnce)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        SendMessageW(user.Frame(), WM_CLOSE, 0, 0);
        user.Expect(!user.IsOpen(), "the window has gone; the edit ends without a further message");
    });
}

TEST_F(FrameCommands, TheMenusOpenByTheirLetters)
{
    const Outcome outcome = RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.Type(u"x");
        user.Key('F', {VK_MENU});
        user.Key('S');
        user.Expect(user.StatusText() == u"Data saved", "Alt+F, S saves");
    });
    EXPECT_TRUE(outcome.edit.hasResult);
}

} // namespace
} // namespace vantrel::ui
