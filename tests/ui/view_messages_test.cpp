// The messages by which the frame, the host and printing reach the array view, and what the view does with them while it is busy.
#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <cstring>

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
using fake::Number;
using fake::NumericArray;
using fake::SameValues;
using fake::Text;
using fake::TextOf;

constexpr UINT ConvertObject = 32969;
constexpr UINT DisableMenuItems = 32970;
constexpr UINT GetFindOptions = 32972;
constexpr UINT GetModified = 32973;
constexpr UINT GetOption = 32974;
constexpr UINT GetPickIndex = 32975;
constexpr UINT GetPreferredSize = 32976;
constexpr UINT GetTree = 32977;
constexpr UINT GetSelected = 32978;
constexpr UINT SetModified = 32979;
constexpr UINT SetTree = 32984;
constexpr UINT PrintTree = 32985;
constexpr UINT GetBusy = 32986;
constexpr UINT SetObject = 32987;

constexpr int Revert = 4101;
constexpr int Save = 4102;
constexpr int CopyArray = 4202;
constexpr int PasteArray = 4203;
constexpr int SmallMargins = 4308;
constexpr int RejectBadData = 4312;
constexpr int LineNumbers = 4313;
constexpr int Ruler = 4314;
constexpr int SizeToDefinition = 4601;
constexpr int Maximize = 4606;
constexpr int Enclose = 4612;
constexpr int ReorderAxes = 4628;
constexpr char16_t BusyText[] = u"The editor is busy. Please wait...";

class ViewMessages : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
};

LRESULT Ask(const User& user, UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
{
    return SendMessageW(user.Client(), message, wParam, lParam);
}

const Scdr* NodeOf(LRESULT answer)
{
    return reinterpret_cast<const Scdr*>(answer);
}

std::u16string TextOf(const Scdr& node)
{
    return {static_cast<const char16_t*>(node.data), static_cast<std::size_t>(node.ElementCount)};
}

// Each window has a copy of its own.
bool SameFont(LRESULT a, LRESULT b)
{
    LOGFONTW fonts[2] = {};
    GetObjectW(reinterpret_cast<HFONT>(a), sizeof(LOGFONTW), &fonts[0]);
    GetObjectW(reinterpret_cast<HFONT>(b), sizeof(LOGFONTW), &fonts[1]);
    return fonts[0].lfHeight == fonts[1].lfHeight && wcscmp(fonts[0].lfFaceName, fonts[1].lfFaceName) == 0;
}

void ClearStatus(const User& user)
{
    SendMessageW(user.Status(), SB_SETTEXTW, SB_SIMPLEID, reinterpret_cast<LPARAM>(L""));
}

Array Pair()
{
    return NestedArray({2}, {Text(u"ab"), Text(u"zz")});
}

Array Cube()
{
    return NumericArray({2, 2, 3}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
}

TEST_F(ViewMessages, TheWindowIsAControlThatWantsEveryKey)
{
    RunEdit(interpreter, Pair(), [](User& user) {
        wchar_t name[64] = {};
        GetClassNameW(user.Client(), name, 64);
        user.Expect(std::wstring(name) == L"quillmoor vantrel client class", "the window's class");
        user.ExpectEqual(Ask(user, WM_GETDLGCODE), 135, "arrows, Tab, all keys, characters");
        const struct {
            int id;
            DWORD style;
        } edits[] = {{32791, WS_BORDER}, {32792, 0}, {32793, WS_BORDER | WS_HSCROLL | WS_VSCROLL}};
        for (const auto& edit : edits) {
            HWND const window = GetDlgItem(user.Client(), edit.id);
            user.Expect(window != nullptr, "three edit windows from the start");
            user.Expect(SameFont(SendMessageW(window, WM_GETFONT, 0, 0), Ask(user, WM_GETFONT)),
                        "with the view's font");
            const auto style = static_cast<DWORD>(GetWindowLongW(window, GWL_STYLE));
            user.Expect((style & edit.style & WS_BORDER) == (edit.style & WS_BORDER), "and their borders");
        }
    });
}

TEST_F(ViewMessages, OptionsHaveTheirDefaultsAndAnswer)
{
    RunEdit(interpreter, Pair(), [](User& user) {
        const std::pair<int, bool> defaults[] = {{4308, true},  {4309, false}, {4310, true},
                                                 {4311, false}, {4312, true},  {4313, true},
                                                 {4314, true},  {4315, false}, {4316, true}};
        for (const auto& [id, value] : defaults) {
            const auto option = static_cast<WPARAM>(id);
            user.ExpectEqual(Ask(user, GetOption, option), value ? 1 : 0, "its default");
            user.ExpectEqual(Ask(user, SetOption, MAKEWPARAM(id, value ? 0 : 1)), 0, "it is set");
            user.ExpectEqual(Ask(user, GetOption, option), value ? 0 : 1, "and has its new value");
        }
        for (const int id : {0, 4307, 4317}) {
            user.ExpectEqual(Ask(user, SetOption, MAKEWPARAM(id, 1)), 0, "an unknown one is ignored");
            user.ExpectEqual(Ask(user, GetOption, static_cast<WPARAM>(id)), 0, "and off");
        }
    });
}

TEST_F(ViewMessages, AnOptionThatIsSetToItsValueLaysNothingOut)
{
    RunEdit(interpreter, Pair(), [](User& user) {
        user.Command(Save);
        Ask(user, SetOption, MAKEWPARAM(SmallMargins, 1));
        user.ExpectEqual(user.StatusText(), u"Data saved", "nothing happens");
        Ask(user, SetOption, MAKEWPARAM(SmallMargins, 0));
        user.Expect(user.StatusText() != u"Data saved", "everything is laid out again");
    });
}

TEST_F(ViewMessages, OpacitiesAreReadAndKept)
{
    RunEdit(interpreter, Pair(), [](User&) {});
    EXPECT_EQ(StoredOption(L"Rank one arrow opacity"), (std::vector<std::uint8_t>{50, 0, 0, 0}));
    EXPECT_EQ(StoredOption(L"Rank one edge opacity"), (std::vector<std::uint8_t>{30, 0, 0, 0}));
    StoreFlag(L"Rank one arrow opacity", 70);
    StoreOption(L"Rank one edge opacity", {1, 2}); // of another size
    RunEdit(interpreter, Pair(), [](User&) {});
    EXPECT_EQ(StoredOption(L"Rank one arrow opacity"), (std::vector<std::uint8_t>{70, 0, 0, 0}));
    EXPECT_EQ(StoredOption(L"Rank one edge opacity"), (std::vector<std::uint8_t>{30, 0, 0, 0}));
    EXPECT_EQ(StoredOption(L"Font").size(), sizeof(LOGFONTA));
}

// The dialog of "Reorder axes" stands in the middle of its command.
void WhileBusy(User& user, const std::function<void()>& act)
{
    PostMessageW(user.Frame(), WM_COMMAND, ReorderAxes, 0);
    HWND const dialog = user.WaitForBox(L"Reorder Axes");
    if (dialog == nullptr) return;
    act();
    PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    user.Wait();
}

TEST_F(ViewMessages, ABusyViewRefusesWhatWouldTouchItsArray)
{
    const Outcome outcome = RunEdit(interpreter, Cube(), [](User& user) {
        const auto before = TreeImage(user);
        const LRESULT font = Ask(user, WM_GETFONT);
        WhileBusy(user, [&] {
            const struct {
                UINT message;
                WPARAM wParam;
            } refused[] = {{WM_COMMAND, Enclose},
                           {WM_SETFONT, 0},
                           {WM_KEYDOWN, VK_HOME},
                           {WM_CHAR, VK_TAB},
                           {WM_LBUTTONDOWN, MK_LBUTTON},
                           {WM_LBUTTONUP, 0},
                           {WM_LBUTTONDBLCLK, MK_LBUTTON},
                           {ConvertObject, 0},
                           {SetOption, MAKEWPARAM(SmallMargins, 0)},
                           {SetPickIndex, 0},
                           {SetTree, 0},
                           {PrintTree, 0},
                           {SetObject, 0}};
            for (const auto& message : refused) {
                ClearStatus(user);
                user.ExpectEqual(Ask(user, message.message, message.wParam), 0, "nothing is answered");
                user.ExpectEqual(user.StatusText(), BusyText, "the user is told");
            }
            ClearStatus(user);
            user.ExpectEqual(Ask(user, GetBusy), 1, "it says that it is busy");
            user.ExpectEqual(Ask(user, GetOption, SmallMargins), 1, "options are answered");
            user.ExpectEqual(Ask(user, GetModified), 0, "the modified flag is");
            user.Expect(NodeOf(Ask(user, GetSelected)) != nullptr, "and the selected array");
            user.Expect(Ask(user, GetFindOptions) != 0, "and the find options");
            user.ExpectEqual(Ask(user, DisableMenuItems), 0, "menus are brought up to date");
            user.ExpectEqual(user.StatusText(), u"", "without a word");
        });
        user.ExpectEqual(Ask(user, GetBusy), 0, "it is ready again");
        user.Expect(TreeImage(user) == before, "nothing has changed");
        user.ExpectEqual(Ask(user, WM_GETFONT), font, "nor the font");
        user.Command(Save);
    });
    EXPECT_TRUE(SameValues(outcome.edit.result, Cube())) << Dump(outcome.edit.result);
}

TEST_F(ViewMessages, ABusyViewLetsNothingThroughToItsEditor)
{
    const Outcome outcome = RunEdit(interpreter, Cube(), [](User& user) {
        WhileBusy(user, [&] {
            ClearStatus(user);
            SendMessageW(user.Editor(), WM_CHAR, u'7', 0);
            user.ExpectEqual(user.StatusText(), BusyText, "the user is told");
        });
        user.Command(Save);
    });
    EXPECT_TRUE(SameValues(outcome.edit.result, Cube())) << Dump(outcome.edit.result);
}

TEST_F(ViewMessages, TheTreeIsHandedOverWithWhatWasTyped)
{
    RunEdit(interpreter, Pair(), [](User& user) {
        user.Key(VK_TAB);
        user.Type(u"x");
        const Scdr* const selected = NodeOf(Ask(user, GetTree, 1));
        user.Expect(selected != nullptr && TextOf(*selected) == u"xab", "the selected array alone");
        user.Expect(NodeOf(Ask(user, GetSelected)) == selected, "which is the selected one");
        const Scdr* const root = NodeOf(Ask(user, GetTree, 0));
        user.Expect(root != nullptr && root == selected->parent, "or the whole");
        user.ExpectEqual(Ask(user, GetModified), 1, "it stays modified");
        Ask(user, SetModified, 0);
        user.ExpectEqual(Ask(user, GetModified), 0, "until somebody says that it is saved");
        Ask(user, SetModified, 1);
        user.ExpectEqual(Ask(user, GetModified), 1, "or not");
        Ask(user, SetModified, 0);
    });
}

TEST_F(ViewMessages, TextThatIsNoNumberIsNotHandedOver)
{
    RunEdit(interpreter, NumericArray({2, 2}, {1, 2, 3, 4}), [](User& user) {
        user.Type(u"..");
        ClearStatus(user);
        user.Expect(NodeOf(Ask(user, GetTree, 0)) == nullptr, "no tree");
        user.Expect(!user.StatusText().empty(), "the user is told why");
        user.Key(VK_BACK);
        user.Key(VK_BACK);
        user.Expect(NodeOf(Ask(user, GetTree, 0)) != nullptr, "mended it is handed over");
        Ask(user, SetModified, 0);
    });
}

TEST_F(ViewMessages, AnObjectBecomesATreeThatCanBeShown)
{
    fake::Localp* const good = interpreter.MakeLocalp(NestedArray({2}, {Number(7), Text(u"new")}));
    const Outcome outcome = RunEdit(interpreter, Pair(), [&](User& user) {
        const LRESULT tree = Ask(user, ConvertObject, 0, reinterpret_cast<LPARAM>(good));
        user.Expect(tree != 0 && NodeOf(tree)->Rank == 1, "a tree of its own");
        user.Expect(NodeOf(tree) != NodeOf(Ask(user, GetSelected)), "which is not shown");
        user.ExpectEqual(Ask(user, SetTree, 0, tree), 0, "it is taken over");
        user.Expect(NodeOf(Ask(user, GetSelected)) == NodeOf(tree), "and shown");
        user.Command(Save);
    });
    EXPECT_TRUE(SameValues(outcome.edit.result, NestedArray({2}, {Number(7), Text(u"new")})))
        << Dump(outcome.edit.result);
    interpreter.FreeLocalp(good);
}

TEST_F(ViewMessages, AnObjectThatIsNoTreeIsRefusedOrToldOf)
{
    fake::Localp* const bad = interpreter.MakeLocalp(
        fake::RawArray(fake::ElementType::Rational, {1}, std::vector<std::uint8_t>(16)));
    const LPARAM object = reinterpret_cast<LPARAM>(bad);
    RunEdit(interpreter, Pair(), [&](User& user) {
        Ask(user, SetOption, MAKEWPARAM(RejectBadData, 0));
        user.ExpectEqual(Ask(user, ConvertObject, 0, object), 0, "no tree");
        user.ExpectEqual(user.StatusText(), u"Argument contains a rational number.", "the reason");
        user.Expect(NodeOf(Ask(user, GetSelected)) != nullptr, "what was shown stays");
        user.ExpectEqual(Ask(user, SetObject, 0, object), 1, "it cannot be shown");
        user.Expect(NodeOf(Ask(user, GetSelected)) == nullptr, "and leaves the view empty");
        user.Command(Revert);
        user.Expect(NodeOf(Ask(user, GetSelected)) != nullptr, "until the array comes back");
    });
    interpreter.FreeLocalp(bad);
}

TEST_F(ViewMessages, RequestsWithoutARecordAreRefused)
{
    RunEdit(interpreter, Pair(), [](User& user) {
        user.ExpectEqual(Ask(user, GetPreferredSize, 0, 0), 1, "no room for the size");
        user.ExpectEqual(Ask(user, PrintTree, 0, 0), 1, "no printer and no margins");
        user.Expect(user.IsOpen(), "the window goes on");
    });
}

TEST_F(ViewMessages, AnEmptyViewHasNothingToTell)
{
    RunEdit(interpreter, Pair(), [](User& user) {
        user.ExpectEqual(Ask(user, SetTree, 0, 0), 0, "the tree goes");
        user.Expect(NodeOf(Ask(user, GetSelected)) == nullptr, "nothing is selected");
        user.ExpectEqual(Ask(user, GetTree, 0), 0, "no tree");
        SIZE size{};
        user.ExpectEqual(Ask(user, GetPreferredSize, 0, reinterpret_cast<LPARAM>(&size)), 1, "no size");
        user.Expect(SelectIndex(user, u"1") != 0, "no place");
        Ask(user, DisableMenuItems);
        for (const int id : {CopyArray, Enclose, SizeToDefinition, 4207})
            user.Expect(IsGrayed(GetMenu(user.Frame()), id), "no command");
        Ask(user, WM_COMMAND, Enclose);
        user.Expect(NodeOf(Ask(user, GetSelected)) == nullptr, "none is carried out");
        PostMessageW(user.Client(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(user.Client()), -1);
        user.Wait();
        user.Expect(FindWindowW(L"#32768", nullptr) == nullptr, "there is no menu");
        user.Command(Revert);
    });
}

TEST_F(ViewMessages, APlaceIsNamedThroughWhatFillsTheWindowOrNot)
{
    RunEdit(interpreter, NestedArray({2}, {Text(u"ab"), NestedArray({2}, {Text(u"c"), Text(u"d")})}),
            [](User& user) {
                user.ExpectEqual(SelectIndex(user, u"2"), 0, "a place is found");
                user.Command(Maximize);
                user.Key(VK_TAB);
                const LRESULT item = Ask(user, GetSelected);
                const auto place = [&](WPARAM throughMaximize) {
                    return std::u16string(
                        reinterpret_cast<const char16_t*>(Ask(user, GetPickIndex, throughMaximize, item)));
                };
                user.ExpectEqual(place(0), u"2 1", "in the whole array");
                user.ExpectEqual(place(1), u"1", "in what fills the window");
                for (const char16_t* nowhere : {u"x", u"3", u"(1 1)", u"2 1 1", u"0", u"'' "}) {
                    user.Expect(SelectIndex(user, nowhere) != 0, "no place");
                    user.ExpectEqual(Ask(user, GetSelected), item, "the selection stays");
                }
            });
}

TEST_F(ViewMessages, AnArrayThatFillsTheWindowWantsRoomForItsMargins)
{
    RunEdit(interpreter, Text(u"abcdefghijkl"), [](User& user) {
        const auto size = [&] {
            SIZE wanted{};
            user.ExpectEqual(Ask(user, GetPreferredSize, 0, reinterpret_cast<LPARAM>(&wanted)), 0,
                             "it answers");
            return wanted;
        };
        const SIZE both = size();
        Ask(user, SetOption, MAKEWPARAM(LineNumbers, 0));
        const SIZE rulerOnly = size();
        user.Expect(rulerOnly.cx < both.cx && rulerOnly.cy == both.cy, "line numbers take width");
        Ask(user, SetOption, MAKEWPARAM(Ruler, 0));
        const SIZE none = size();
        user.Expect(none.cx == rulerOnly.cx && none.cy < rulerOnly.cy, "the ruler takes height");
    });
}

TEST_F(ViewMessages, TheMenuFollowsTheClipboardByItself)
{
    RunEdit(interpreter, Pair(), [&](User& user) {
        user.Command(CopyArray);
        user.Expect(!IsGrayed(GetMenu(user.Frame()), PasteArray), "something to paste");
        interpreter.ClearCopyBuffer();
        OpenClipboard(nullptr);
        EmptyClipboard();
        CloseClipboard();
        user.Wait();
        user.Expect(IsGrayed(GetMenu(user.Frame()), PasteArray), "nothing to paste");
    });
}

TEST_F(ViewMessages, ANewFontLaysEverythingOutAgain)
{
    RunEdit(interpreter, Pair(), [](User& user) {
        user.Key(VK_TAB);
        const auto height = [&] {
            RECT rect{};
            GetWindowRect(user.Editor(), &rect);
            return rect.bottom - rect.top;
        };
        const LONG before = height();
        LOGFONTW wanted{};
        GetObjectW(reinterpret_cast<HFONT>(Ask(user, WM_GETFONT)), sizeof wanted, &wanted);
        wanted.lfHeight *= 2;
        HFONT const larger = CreateFontIndirectW(&wanted);
        Ask(user, WM_SETFONT, reinterpret_cast<WPARAM>(larger), 1);
        user.ExpectEqual(reinterpret_cast<HFONT>(Ask(user, WM_GETFONT)), larger, "it has the font");
        user.Expect(height() > before + before / 2, "the box grows with its text");
        LOGFONTW given{};
        GetObjectW(reinterpret_cast<HFONT>(SendMessageW(user.Editor(), WM_GETFONT, 0, 0)), sizeof given,
                   &given);
        user.ExpectEqual(given.lfHeight, wanted.lfHeight, "and so does its editor");
    });
}

} // namespace
} // namespace vantrel::ui
