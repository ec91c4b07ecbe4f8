// Menu state and the context menu of the real window.
#include <gtest/gtest.h>

#include "ui/menus.h"
#include "ui/view_support.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr UINT DisableMenuItems = 32970;
constexpr int Save = 4102;

class MenuStates : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
};

std::vector<int> Grayed(const User& user, int first, int last)
{
    SendMessageW(user.Client(), DisableMenuItems, 0, 0);
    std::vector<int> grayed;
    HMENU const menu = GetMenu(user.Frame());
    for (int id = first; id <= last; ++id) {
        const UINT state = GetMenuState(menu, static_cast<UINT>(id), MF_BYCOMMAND);
        if (state != 0xFFFFFFFF && (state & (MF_GRAYED | MF_DISABLED)) != 0) grayed.push_back(id);
    }
    return grayed;
}

using Ids = std::vector<int>;

TEST_F(MenuStates, FollowTheSelection)
{
    const Array argument = NestedArray(
        {3}, {Text(u"ab"), NumericArray({2, 2}, {1, 2, 3, 4}), EmptyNestedArray({0}, Text(u"p"))});
    RunEdit(interpreter, argument, [](User& user) {
        user.ExpectEqual(Grayed(user, 4201, 4201), Ids{4201}, "the whole array is not cut");
        user.ExpectEqual(Grayed(user, 4604, 4606), (Ids{4604, 4605, 4606}), "nor closed");
        user.ExpectEqual(Grayed(user, 4701, 4706), (Ids{4701, 4702, 4703, 4704, 4705, 4706}),
                         "nothing is inserted beside it");
        SelectIndex(user, u"1");
        user.ExpectEqual(Grayed(user, 4201, 4201), Ids{}, "an item of a vector is cut");
        user.ExpectEqual(Grayed(user, 4607, 4629), (Ids{4607, 4609, 4611, 4613, 4616, 4621, 4628}),
                         "a text's actions");
        user.ExpectEqual(Grayed(user, 4701, 4706), (Ids{4703, 4704, 4705, 4706}), "items go beside it");
        SelectIndex(user, u"2");
        user.ExpectEqual(Grayed(user, 4607, 4629), (Ids{4611, 4619, 4628, 4629}), "a matrix' actions");
    });
}

TEST_F(MenuStates, FollowTheUndoStacks)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.ExpectEqual(Grayed(user, 4204, 4208), (Ids{4204, 4205, 4208}), "nothing done");
        SendMessageW(user.Client(), WM_COMMAND, 4614, 0);
        user.ExpectEqual(Grayed(user, 4204, 4208), Ids{4205}, "something to undo");
        SendMessageW(user.Client(), WM_COMMAND, 4204, 0);
        user.ExpectEqual(Grayed(user, 4204, 4208), Ids{4204}, "something to redo");
        SendMessageW(user.Client(), 32980, MAKEWPARAM(4316, 0), 0);
        HMENU const menu = GetMenu(user.Frame());
        for (const UINT id : {4204U, 4205U, 4208U})
            user.Expect((GetMenuState(menu, id, MF_BYCOMMAND) & MF_GRAYED) != 0,
                        "switching undo off brings the menu up to date");
    });
}

TEST_F(MenuStates, PasteFollowsTheClipboard)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        OpenClipboard(nullptr);
        EmptyClipboard();
        CloseClipboard();
        user.ExpectEqual(Grayed(user, 4203, 4203), Ids{4203}, "nothing to paste");
        SendMessageW(user.Client(), WM_COMMAND, 4202, 0);
        user.ExpectEqual(Grayed(user, 4203, 4203), Ids{}, "something to paste");
    });
}

TEST_F(MenuStates, TheContextMenuWorksOnTheSelection)
{
    const Outcome outcome =
        RunEdit(interpreter, NestedArray({2}, {Text(u"ab"), Text(u"cd")}), [](User& user) {
            PostMessageW(user.Client(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(user.Client()), -1);
            HMENU const menu = WaitForMenu();
            user.Expect(menu != nullptr, "the menu comes up");
            if (menu == nullptr) return;
            user.Expect(IsGrayed(menu, 4201), "the root is not cut");
            user.Expect(!IsGrayed(menu, 4202), "but copied");
            user.Key('C');
            user.Wait();
            user.Key(VK_TAB);
            user.Command(4203);
            user.Command(Save);
        });
    const Array whole = NestedArray({2}, {Text(u"ab"), Text(u"cd")});
    EXPECT_TRUE(SameValues(outcome.edit.result, NestedArray({2}, {whole, Text(u"cd")})))
        << Dump(outcome.edit.result);
}

TEST_F(MenuStates, AMenuOverABoxSpeaksOfThatBox)
{
    RunEdit(interpreter, NestedArray({2}, {NestedArray({1}, {Text(u"ab")}), Text(u"cd")}), [](User& user) {
        SelectIndex(user, u"2");
        POINT point{12, 12}; // inside the first item's frame
        ClientToScreen(user.Client(), &point);
        PostMessageW(user.Client(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(user.Client()),
                     MAKELPARAM(point.x, point.y));
        HMENU const menu = WaitForMenu();
        user.Expect(menu != nullptr, "the menu comes up");
        user.Key(VK_ESCAPE);
        user.Wait();
        user.Expect(user.PickIndex().rfind(u"1", 0) == 0, "the box is selected");
    });
}

} // namespace
} // namespace vantrel::ui
