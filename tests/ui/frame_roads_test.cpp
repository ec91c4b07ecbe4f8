// Every command does the same by whichever road it comes: from the menu, by its key, by its tool.
#include <windows.h>

#include <gtest/gtest.h>

#include <commctrl.h>

#include "ui/menus.h"
#include "ui/tree_image.h"
#include "ui/view_support.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr UINT DisableMenuItems = 32970;
constexpr int Revert = 4101;
constexpr int CopyArray = 4202;
constexpr int Find = 4206;
constexpr int FindBarId = 32786;
constexpr WORD C = VK_CONTROL;
constexpr WORD S = VK_SHIFT;
constexpr WORD A = VK_MENU;

struct Road {
    const char* name;
    int command;
    const char16_t* index;         // of the array that is selected then
    bool hasTool = false;          // stands on the tool bar
    WORD key = 0;                  // 0: has none
    std::vector<WORD> modifiers{}; // in the order in which they are pressed
    // What is done before, to the array with an index of its own.
    const char16_t* firstIndex = u"";
    std::vector<int> first{};
    const char16_t* typed = u""; // after all that
};

Array Items()
{
    std::vector<double> planes;
    for (int i = 0; i < 24; ++i)
        planes.push_back(i + 0.5);
    return NestedArray({5}, {Text(u"cab"), NumericArray({2, 2}, {4.5, 3, 2, 1}),
                             NestedArray({2}, {Text(u"pp"), Text(u"qq")}), NumericArray({12, 1, 2}, planes),
                             Text(u"10 2")});
}

Array Grid()
{
    return NestedArray({2, 2}, {Text(u"aa"), Text(u"bb"), Text(u"cc"), Text(u"dd")});
}

HWND FindBar(const User& user)
{
    return GetDlgItem(user.Frame(), FindBarId);
}

void EmptyTheClipboard()
{
    while (!OpenClipboard(nullptr))
        Sleep(10);
    EmptyClipboard();
    CloseClipboard();
}

std::string Narrow(std::u16string_view text)
{
    std::string narrow;
    for (const char16_t unit : text) {
        if (unit < 0x7F)
            narrow += static_cast<char>(unit);
        else
            narrow += "<" + std::to_string(static_cast<int>(unit)) + ">";
    }
    return narrow;
}

void AppendMenu(std::string& seen, HMENU menu)
{
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        HMENU const popup = GetSubMenu(menu, i);
        if (popup != nullptr) {
            AppendMenu(seen, popup);
            continue;
        }
        const UINT state = GetMenuState(menu, static_cast<UINT>(i), MF_BYPOSITION);
        seen += (state & MF_GRAYED) != 0 ? 'g' : (state & MF_CHECKED) != 0 ? 'c' : '-';
    }
}

void AppendStatus(std::string& seen, const User& user)
{
    if (SendMessageW(user.Status(), SB_ISSIMPLE, 0, 0) != 0) seen += Narrow(user.StatusText());
    const LRESULT count = SendMessageW(user.Status(), SB_GETPARTS, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        wchar_t text[256] = {};
        SendMessageW(user.Status(), SB_GETTEXTW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
        seen += "|" + Narrow(reinterpret_cast<const char16_t*>(text));
    }
}

// Dialogs are told and closed.
void AppendDialogs(std::string& seen, User& user)
{
    for (int i = 0; i < 3; ++i) {
        HWND const dialog = GetLastActivePopup(user.Frame());
        if (dialog == user.Frame() || !IsWindowVisible(dialog)) return;
        wchar_t title[64] = {};
        GetWindowTextW(dialog, title, 64);
        seen += " dialog " + Narrow(reinterpret_cast<const char16_t*>(title));
        PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
        user.Wait();
    }
}

// The whole array with everything in it.
void AppendArray(std::string& seen, const User& user)
{
    constexpr char Digits[] = "0123456789abcdef";
    seen += " array ";
    for (const std::uint8_t byte : TreeImage(user)) {
        seen += Digits[byte >> 4];
        seen += Digits[byte & 15];
    }
}

// What an outsider can tell of the window and of its array.
std::string Seen(User& user)
{
    std::string seen;
    AppendDialogs(seen, user);
    SendMessageW(user.Client(), DisableMenuItems, 0, 0);
    seen += " at " + Narrow(user.PickIndex()) + " menu ";
    AppendMenu(seen, GetMenu(user.Frame()));
    AppendStatus(seen, user);
    RECT client{};
    GetClientRect(user.Frame(), &client);
    seen += " size " + std::to_string(client.right) + "x" + std::to_string(client.bottom);
    if (IsWindowVisible(FindBar(user))) seen += " find bar";
    if (IsClipboardFormatAvailable(CF_UNICODETEXT)) seen += " copied " + Narrow(user.ClipboardText());
    AppendArray(seen, user);
    return seen;
}

void Prepare(User& user, const Road& road)
{
    if (IsWindowVisible(FindBar(user))) SendMessageW(FindBar(user), WM_COMMAND, IDCANCEL, 0);
    EmptyTheClipboard();
    SendMessageW(user.Frame(), WM_COMMAND, Revert, 0);
    SelectIndex(user, *road.firstIndex != 0 ? road.firstIndex : road.index);
    for (const int command : road.first)
        SendMessageW(user.Frame(), WM_COMMAND, static_cast<WPARAM>(command), 0);
    if (*road.firstIndex != 0) SelectIndex(user, road.index);
    if (*road.typed != 0) user.Type(road.typed);
}

void PressKey(User& user, const Road& road)
{
    switch (road.modifiers.size()) {
    case 0: user.Key(road.key); break;
    case 1: user.Key(road.key, {road.modifiers[0]}); break;
    default: user.Key(road.key, {road.modifiers[0], road.modifiers[1]}); break;
    }
}

void ExpectSame(User& user, const std::string& seen, const std::string& byMenu, const std::string& what)
{
    user.Expect(seen == byMenu, (what + ": " + seen + " instead of " + byMenu).c_str());
}

class FrameRoads : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    void Walk(const Array& argument, const std::vector<Road>& roads)
    {
        RunEdit(interpreter, argument, [&](User& user) {
            for (const Road& road : roads)
                Compare(user, road);
        });
    }

    Interpreter interpreter;

private:
    static void Compare(User& user, const Road& road)
    {
        Prepare(user, road);
        const std::string before = Seen(user);
        Prepare(user, road);
        user.Command(road.command);
        const std::string byMenu = Seen(user);
        user.Expect(byMenu != before, (road.name + std::string(" does something")).c_str());
        if (road.key != 0) {
            Prepare(user, road);
            PressKey(user, road);
            ExpectSame(user, Seen(user), byMenu, road.name + std::string(" by its key"));
        }
        if (road.hasTool) {
            Prepare(user, road);
            PressTool(user, road.command);
            ExpectSame(user, Seen(user), byMenu, road.name + std::string(" by its tool"));
        }
    }
};

constexpr bool Tool = true;
constexpr bool NoTool = false;

TEST_F(FrameRoads, FileAndHelp)
{
    Walk(Items(), {{"Revert", Revert, u"1", Tool, 0, {}, u"", {4614}},
                   {"Save", 4102, u"1", Tool, 'S', {C}, u"", {4614}},
                   {"Save As", 4103, u"1"},
                   {"Open", 4106, u"1", NoTool, 'O', {C}},
                   {"Open Object", 4109, u"1", NoTool, 'O', {C, S}},
                   {"General Help", 4501, u"1", Tool},
                   {"Keys Help", 4502, u"1"},
                   {"About", 4503, u"1"},
                   {"Font", 4303, u"1"}});
}

TEST_F(FrameRoads, Edit)
{
    Walk(Items(), {{"Check and align", 4207, u"1", NoTool, VK_F5, {}, u"", {}, u"new"},
                   {"Cut array", 4201, u"1", Tool, 'X', {C, S}},
                   {"Copy array", CopyArray, u"1", Tool, 'C', {C, S}},
                   {"Paste array", 4203, u"3", Tool, 'V', {C, S}, u"1", {CopyArray}},
                   {"Undo array", 4204, u"1", Tool, 'Z', {C, S}, u"", {4614}},
                   {"Redo array", 4205, u"1", Tool, 'Y', {C, S}, u"", {4614, 4204}},
                   {"Empty undo buffer", 4208, u"1", NoTool, 0, {}, u"", {4614}}});
}

TEST_F(FrameRoads, FindInTheArray)
{
    Walk(Items(), {{"Find", Find, u"1", Tool, 'F', {C}},
                   {"Find Next", 4209, u"1", NoTool, VK_F3, {}, u"", {Find}, u"qq"},
                   {"Find Previous", 4210, u"1", NoTool, VK_F3, {S}, u"", {Find}, u"qq"}});
}

TEST_F(FrameRoads, SizesAndTypes)
{
    Walk(Items(), {{"Size to definition", 4601, u"1"},
                   {"Minimize", 4605, u"1", Tool},
                   {"Restore", 4604, u"1", Tool, 0, {}, u"", {4605}},
                   {"Maximize", 4606, u"3", Tool},
                   {"Convert to character", 4607, u"2", Tool},
                   {"Convert to numeric", 4608, u"5", Tool},
                   {"Sort ascending", 4617, u"1", Tool},
                   {"Sort descending", 4618, u"1", Tool}});
}

TEST_F(FrameRoads, Structure)
{
    Walk(Items(), {{"Ravel", 4609, u"2", Tool},
                   {"First", 4610, u"3", Tool},
                   {"Disclose", 4611, u"3", Tool},
                   {"Enclose", 4612, u"1", Tool},
                   {"Enlist", 4613, u"3", Tool}});
}

TEST_F(FrameRoads, OrderAndShape)
{
    Walk(Items(), {{"Reverse", 4614, u"1", Tool},
                   {"Reverse along first axis", 4615, u"2", Tool},
                   {"Transpose", 4616, u"2", Tool},
                   {"Reorder axes", 4628, u"4", Tool},
                   {"Make matrix", 4619, u"1", Tool},
                   {"Make array of rows", 4621, u"2", Tool},
                   {"Execute", 4629, u"1"}});
}

TEST_F(FrameRoads, Planes)
{
    Walk(Items(), {{"Plane down", 4623, u"4", NoTool, VK_DOWN, {A}},
                   {"Plane up", 4622, u"4", NoTool, VK_UP, {A}, u"", {4623, 4623}},
                   {"Last plane", 4625, u"4", NoTool, VK_END, {A}},
                   {"First plane", 4624, u"4", NoTool, VK_HOME, {A}, u"", {4625}},
                   {"Page down", 4627, u"4", NoTool, VK_NEXT, {A}},
                   {"Page up", 4626, u"4", NoTool, VK_PRIOR, {A}, u"", {4625}}});
}

TEST_F(FrameRoads, InsertItems)
{
    Walk(Items(), {{"Item to the left", 4701, u"1", Tool, VK_LEFT, {C, S}},
                   {"Item to the right", 4702, u"1", Tool, VK_RIGHT, {C, S}}});
}

TEST_F(FrameRoads, InsertRowsAndColumns)
{
    Walk(Grid(), {{"Column to the left", 4703, u"(1 1)", Tool, VK_LEFT, {A, S}},
                  {"Column to the right", 4704, u"(1 1)", Tool, VK_RIGHT, {A, S}},
                  {"Row above", 4705, u"(1 1)", Tool, VK_UP, {A, S}},
                  {"Row below", 4706, u"(1 1)", Tool, VK_DOWN, {A, S}}});
}

TEST_F(FrameRoads, TheEditMenuCutsCopiesAndPastesText)
{
    const Outcome outcome = RunEdit(interpreter, Items(), [](User& user) {
        SelectIndex(user, u"1");
        user.Key('A', {VK_CONTROL});
        user.Command(4004);
        user.ExpectEqual(user.ClipboardText(), u"cab", "copied");
        user.Key('A', {VK_CONTROL});
        user.Command(4003);
        user.Command(4005);
        user.Command(4005);
        user.Command(4102);
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_EQ(TextOfArray(outcome.edit.result.items[0]), u"cabcab");
}

} // namespace
} // namespace vantrel::ui
