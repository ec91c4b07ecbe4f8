// Commands that change how the array is shown, and those beside the actions: by the menus that offer them.
#include <gtest/gtest.h>

#include <algorithm>

#include "hosts/fake_matlab.h"
#include "hosts/win/matlab_libraries.h"
#include "model/scdr.h"
#include "ui/menus.h"
#include "ui/tree_image.h"
#include "ui/view_support.h"

namespace vantrel::ui {
namespace {

using fake::Array;
using fake::Dump;
using fake::Interpreter;
using fake::NestedArray;
using fake::SameValues;
using fake::Text;
using fake::TextOf;

constexpr UINT GetPreferredSize = 32976;
constexpr UINT GetSelected = 32978;
constexpr int Save = 4102;
constexpr int UndoArray = 4204;
constexpr int RedoArray = 4205;
constexpr int CheckAndAlign = 4207;
constexpr int EmptyUndoBuffer = 4208;
constexpr int SizeToDefinition = 4601;
constexpr int ResetSize = 4602;
constexpr int ResetAllSizes = 4603;
constexpr int Restore = 4604;
constexpr int Minimize = 4605;
constexpr int Maximize = 4606;
constexpr int Reverse = 4614;

using Road = bool (*)(User&, int);
constexpr Road Roads[] = {ChooseFromMenuBar, ChooseFromContextMenu};

class BoxCommands : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
};

unsigned StateOfBox(const User& user)
{
    const auto* const node = reinterpret_cast<const Scdr*>(SendMessageW(user.Client(), GetSelected, 0, 0));
    return node->Flags & (FlagMinimized | FlagMaximized);
}

LONG WidthOf(const RECT& rect)
{
    return rect.right - rect.left;
}

TEST_F(BoxCommands, CloseFillAndRestoreABoxFromEitherMenu)
{
    const Array argument = NestedArray({2}, {Text(u"ab"), NestedArray({1}, {Text(u"cd")})});
    const Outcome outcome = RunEdit(interpreter, argument, [](User& user) {
        const auto before = TreeImage(user);
        for (const Road choose : Roads) {
            for (const char16_t* index : {u"1", u"2"}) {
                SelectIndex(user, index);
                user.Expect(choose(user, Minimize), "minimize is offered");
                user.ExpectEqual(StateOfBox(user), unsigned{FlagMinimized}, "the box is closed");
                user.Expect(choose(user, Restore), "restore is offered");
                user.ExpectEqual(StateOfBox(user), 0u, "the box is open");
                user.Expect(choose(user, Maximize), "maximize is offered");
                user.ExpectEqual(StateOfBox(user), unsigned{FlagMaximized}, "the box fills the window");
                user.Expect(!choose(user, Maximize), "once is enough");
                user.Expect(choose(user, Restore), "restore is offered");
                user.ExpectEqual(StateOfBox(user), 0u, "the box is in its place");
                user.ExpectEqual(user.PickIndex(), std::u16string(index), "and still selected");
            }
        }
        user.Expect(TreeImage(user) == before, "only the look has changed");
        user.Expect(IsGrayed(GetMenu(user.Frame()), UndoArray), "nothing is to be undone");
        user.Command(Save);
    });
    EXPECT_TRUE(SameValues(outcome.edit.result, argument)) << Dump(outcome.edit.result);
}

TEST_F(BoxCommands, GiveABoxTheSizeOfItsTextAgain)
{
    const Array argument = NestedArray({2}, {TextOf({2, 4}, u"abcdefgh"), TextOf({2, 4}, u"ijklmnop")});
    RunEdit(interpreter, argument, [](User& user) {
        const auto widen = [&](const char16_t* index) {
            SelectIndex(user, index);
            const RECT rect = EditorRect(user);
            const POINT side{rect.right - 1, (rect.top + rect.bottom) / 2};
            user.Drag(user.Client(), side, {side.x + 30, side.y});
        };
        SelectIndex(user, u"1");
        const LONG width = WidthOf(EditorRect(user));
        for (const Road choose : Roads) {
            user.Expect(!choose(user, ResetSize), "a box that nobody resized keeps its size");
            widen(u"1");
            user.ExpectEqual(WidthOf(EditorRect(user)), width + 30, "the box is wider");
            user.Expect(choose(user, ResetSize), "reset size is offered");
            user.ExpectEqual(WidthOf(EditorRect(user)), width, "it has its size again");
        }
        widen(u"1");
        widen(u"2");
        SelectIndex(user, u" ");
        user.Expect(ChooseFromMenuBar(user, ResetAllSizes), "reset all sizes is offered");
        for (const char16_t* index : {u"1", u"2"}) {
            SelectIndex(user, index);
            user.ExpectEqual(WidthOf(EditorRect(user)), width, "all boxes have their sizes again");
        }
    });
}

TEST_F(BoxCommands, GiveTheWindowTheSizeOfTheArray)
{
    RunEdit(interpreter, NestedArray({1}, {NestedArray({1}, {Text(std::u16string(60, u'x'))})}),
            [](User& user) {
                SetWindowPos(user.Frame(), nullptr, 0, 0, 700, 500, SWP_NOMOVE | SWP_NOZORDER);
                SIZE wanted{};
                SendMessageW(user.Client(), GetPreferredSize, 0, reinterpret_cast<LPARAM>(&wanted));
                user.Expect(ChooseFromMenuBar(user, SizeToDefinition), "the menu bar offers it");
                RECT window{};
                GetWindowRect(user.Client(), &window);
                user.ExpectEqual(window.right - window.left, wanted.cx, "as wide as the array");
            });
}

TEST_F(BoxCommands, CheckAndAlignTakesWhatWasTyped)
{
    const Outcome outcome = RunEdit(interpreter, NestedArray({2}, {Text(u"ab"), Text(u"c")}), [](User& user) {
        user.Key(VK_TAB);
        user.Type(u"long text ");
        const LONG before = WidthOf(EditorRect(user));
        user.Expect(ChooseFromMenuBar(user, CheckAndAlign), "the menu bar offers it");
        user.Expect(WidthOf(EditorRect(user)) > before, "the box fits its text");
        user.Expect(IsGrayed(GetMenu(user.Frame()), UndoArray), "nothing is to be undone");
        user.Type(u"er");
        user.Key(VK_F5);
        user.Command(Save);
    });
    EXPECT_TRUE(SameValues(outcome.edit.result, NestedArray({2}, {Text(u"long text erab"), Text(u"c")})))
        << Dump(outcome.edit.result);
}

TEST_F(BoxCommands, EmptyingTheUndoBufferTakesUndoAndRedoAway)
{
    RunEdit(interpreter, NestedArray({2}, {Text(u"ab"), Text(u"c")}), [](User& user) {
        HMENU const menu = GetMenu(user.Frame());
        user.Expect(!ChooseFromMenuBar(user, EmptyUndoBuffer), "nothing to empty");
        user.Command(Reverse);
        user.Command(Reverse);
        user.Command(UndoArray);
        user.Expect(!IsGrayed(menu, UndoArray) && !IsGrayed(menu, RedoArray), "both ways are open");
        user.Expect(ChooseFromMenuBar(user, EmptyUndoBuffer), "the menu bar offers it");
        for (const int id : {UndoArray, RedoArray, EmptyUndoBuffer})
            user.Expect(IsGrayed(menu, id), "all are gone");
    });
}

TEST_F(BoxCommands, PicturesAreDrawnByMatlab)
{
    std::string reason;
    ASSERT_TRUE(fake::LoadMatlabLibraries(reason)) << reason;
    fake::Matlab matlab;
    const auto mex = reinterpret_cast<fake::MexFunction>(LibraryEntry("mexFunction"));
    std::vector<std::string> drawn;
    RunWithUser(
        [&] {
            matlab.Call(mex, 1, {fake::DoubleValue({1, 3}, {1, 4, 9})});
        },
        [&](User& user) {
            for (int id = 4901; id <= 4908; ++id) {
                user.Expect(ChooseFromMenuBar(user, id), "the menu bar offers it");
                const auto& calls = matlab.Calls();
                drawn.push_back(calls.size() < 3 ? "" : calls[calls.size() - 3].function);
            }
            user.Expect(IsGrayed(GetMenu(user.Frame()), UndoArray), "nothing is to be undone");
        });
    EXPECT_EQ(drawn,
              (std::vector<std::string>{"area", "bar", "contour", "hist", "mesh", "pie", "plot", "surface"}));
}

} // namespace
} // namespace vantrel::ui
