// What the array view does with keys, the mouse, the wheel and scroll messages.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "ui/menus.h"
#include "ui/view_support.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr UINT GetPickIndex = 32975;
constexpr UINT GetSelected = 32978;
constexpr UINT GetBusy = 32986;
constexpr int FindCommand = 4206;
constexpr int RestoreCommand = 4604;
constexpr int MinimizeCommand = 4605;
constexpr int MaximizeCommand = 4606;
constexpr int ScalarEditor = 32791;
constexpr int ArrayEditor = 32793;

class Input : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
};

Array Words(Shape shape)
{
    std::vector<Array> items;
    for (std::size_t i = 0; i < CountOf(shape); ++i)
        items.push_back(Text(u"item"));
    return NestedArray(std::move(shape), std::move(items));
}

void HoldKey(WORD key, bool down)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
    SendInput(1, &input, sizeof input);
    Sleep(50);
}

// --- keys that move the selection ---

TEST_F(Input, ControlTabAndItsReverseGoRoundTheSiblings)
{
    RunEdit(interpreter, Words({3}), [](User& user) {
        SelectIndex(user, u"3");
        user.Key(VK_TAB, {VK_CONTROL});
        user.ExpectEqual(user.PickIndex(), u"1", "from the last to the first");
        user.Key(VK_TAB, {VK_CONTROL, VK_SHIFT});
        user.ExpectEqual(user.PickIndex(), u"3", "and from the first to the last");
        user.Key(VK_TAB, {VK_CONTROL, VK_SHIFT});
        user.ExpectEqual(user.PickIndex(), u"2", "one back");
        user.Expect(user.Focus() == user.Editor() && user.Editor() != nullptr, "with the keyboard");
        user.Key(VK_UP, {VK_CONTROL});
        user.ExpectEqual(user.PickIndex(), u" ", "the parent");
        user.Expect(user.Focus() == user.Client(), "which has no editor");
        user.Key(VK_UP, {VK_CONTROL});
        user.Key(VK_TAB, {VK_CONTROL});
        user.ExpectEqual(user.PickIndex(), u" ", "the whole array has neither parent nor siblings");
        user.ExpectEqual(BarPosition(user.Client(), SB_VERT), 0, "and Ctrl+Up does not scroll");
    });
}

TEST_F(Input, TabPassesClosedBoxesAndEnterAndSpaceOpenThem)
{
    const Array nest = NestedArray({3}, {Text(u"a"), Words({2}), Text(u"c")});
    RunEdit(interpreter, nest, [](User& user) {
        SelectIndex(user, u"2");
        user.Command(MinimizeCommand);
        user.Key(VK_TAB);
        user.ExpectEqual(user.PickIndex(), u"3", "forwards over the box");
        user.Key(VK_TAB, {VK_SHIFT});
        user.ExpectEqual(user.PickIndex(), u"2", "backwards onto the box, not into it");
        user.Key(VK_RETURN);
        user.Key(VK_TAB);
        user.ExpectEqual(user.PickIndex(), u"2 1", "Enter has opened it");
        SelectIndex(user, u"2");
        user.Command(MinimizeCommand);
        user.Key(VK_SPACE);
        user.Key(VK_TAB);
        user.ExpectEqual(user.PickIndex(), u"2 1", "and so does Space");
    });
}

TEST_F(Input, AMaximisedSimpleArrayKeepsTheSelection)
{
    RunEdit(interpreter, Words({3}), [](User& user) {
        SelectIndex(user, u"2");
        user.Command(MaximizeCommand);
        const LRESULT node = SendMessageW(user.Client(), GetSelected, 0, 0);
        user.Key(VK_TAB, {VK_SHIFT});
        user.Key(VK_TAB, {VK_CONTROL});
        user.Key(VK_UP, {VK_CONTROL});
        user.ExpectEqual(SendMessageW(user.Client(), GetSelected, 0, 0), node, "no key leaves it");
    });
}

// Opens the view's menu by a key; where it stands in the view's client area.
POINT PlaceOfMenu(User& user, WORD key, std::initializer_list<WORD> modifiers)
{
    user.Key(key, modifiers);
    HWND const menu = WaitForMenuWindow(nullptr);
    user.Expect(menu != nullptr, "the menu comes up");
    if (menu == nullptr) return {};
    const auto handle = reinterpret_cast<HMENU>(SendMessageW(menu, MN_GETHMENU, 0, 0));
    user.Expect(GetMenuState(handle, 4615, MF_BYCOMMAND) != ~0U, "with the array commands");
    RECT rect{};
    GetWindowRect(menu, &rect);
    POINT place{rect.left, rect.top};
    ScreenToClient(user.Client(), &place);
    user.Key(VK_ESCAPE);
    return place;
}

TEST_F(Input, ShiftF10AndTheMenuKeyOpenTheMenuAtTheSelection)
{
    RunEdit(interpreter, NestedArray({2}, {Text(u"a"), Words({2})}), [](User& user) {
        SelectIndex(user, u"2 1");
        const RECT inner = EditorRect(user);
        SelectIndex(user, u"2");
        user.Mouse(user.Client(), {300, 200}); // not where the pointer is
        for (const POINT place : {PlaceOfMenu(user, VK_F10, {VK_SHIFT}), PlaceOfMenu(user, VK_APPS, {})}) {
            user.Expect(place.x < inner.left && place.x >= inner.left - 2 * Margin, "at the box's left side");
            user.Expect(place.y < inner.top && place.y >= inner.top - 2 * Margin, "and top");
        }
        user.ExpectEqual(user.PickIndex(), u"2", "the selection stays");
        user.Key(VK_TAB);
        user.ExpectEqual(user.PickIndex(), u"2 1", "the keyboard is back");
    });
}

// --- mouse ---

TEST_F(Input, AClickWithAModifierSelectsNothing)
{
    RunEdit(interpreter, Words({2}), [](User& user) {
        SelectIndex(user, u"2");
        const RECT second = EditorRect(user);
        SelectIndex(user, u"1");
        user.Click(user.Client(), second.left + 8, second.top + 8);
        user.ExpectEqual(user.PickIndex(), u"2", "without any it does");
        SelectIndex(user, u"1");
        for (const int modifier : {VK_SHIFT, VK_CONTROL, VK_MENU}) {
            const auto key = static_cast<WORD>(modifier);
            HoldKey(key, true);
            user.Click(user.Client(), second.left + 8, second.top + 8);
            HoldKey(key, false);
            user.Wait();
            user.ExpectEqual(user.PickIndex(), u"1", "Shift, Ctrl or Alt is held");
        }
        for (const WPARAM key : {MK_SHIFT, MK_CONTROL}) {
            SendMessageW(user.Client(), WM_LBUTTONDOWN, MK_LBUTTON | key,
                         MAKELPARAM(second.left + 8, second.top + 8));
            user.ExpectEqual(user.PickIndex(), u"1", "the press itself says so");
        }
    });
}

TEST_F(Input, AClickBesideEverythingSelectsTheWholeArray)
{
    RunEdit(interpreter, Words({2}), [](User& user) {
        SelectIndex(user, u"2");
        RECT client{};
        GetClientRect(user.Client(), &client);
        user.Click(user.Client(), client.right - 5, client.bottom - 5);
        user.ExpectEqual(user.PickIndex(), u" ", "what is displayed");
        user.Expect(user.Focus() == user.Client(), "with the keyboard");
    });
}

// A click that reaches the view over the selected array belongs to the editor.
TEST_F(Input, AClickOnTheSelectedArrayIsPassedToItsEditor)
{
    RunEdit(interpreter, Words({2}), [](User& user) {
        SelectIndex(user, u"1");
        const RECT box = EditorRect(user);
        const FontSize font = FontOf(user.Client());
        const int before = user.Caret().rect.left;
        const POINT point{box.left + 4 + 2 * font.character, box.top + 8};
        user.Mouse(user.Client(), point);
        SendMessageW(user.Client(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(point.x, point.y));
        user.Mouse(user.Client(), point, MOUSEEVENTF_LEFTUP);
        user.ExpectEqual(user.PickIndex(), u"1", "the selection stays");
        user.ExpectEqual(static_cast<int>(user.Caret().rect.left), before + 2 * font.character,
                         "and the caret goes to the click");
    });
}

TEST_F(Input, ADoubleClickOpensNoClosedBoxAndNeedsTheKeyboardInTheView)
{
    RunEdit(interpreter, NestedArray({2}, {Words({2}), Text(u"b")}), [](User& user) {
        SelectIndex(user, u"1 1");
        const RECT inner = EditorRect(user);
        SelectIndex(user, u"1");
        const LPARAM frame = MAKELPARAM(inner.left - 2, inner.top + 5);
        const auto preferredWidth = [&] {
            SIZE size{};
            SendMessageW(user.Client(), 32976, 0, reinterpret_cast<LPARAM>(&size));
            return size.cx;
        };
        const LONG whole = preferredWidth();
        user.Command(FindCommand); // the keyboard is in the find bar
        SendMessageW(user.Client(), WM_LBUTTONDBLCLK, MK_LBUTTON, frame);
        user.ExpectEqual(preferredWidth(), whole, "nothing is maximised");
        user.Key(VK_ESCAPE);
        SendMessageW(user.Client(), WM_LBUTTONDBLCLK, MK_LBUTTON, frame);
        user.Expect(preferredWidth() < whole, "with the keyboard here it is");
        user.Command(RestoreCommand);
        user.Command(MinimizeCommand);
        const LONG closed = preferredWidth();
        SendMessageW(user.Client(), WM_LBUTTONDBLCLK, MK_LBUTTON, frame);
        user.ExpectEqual(preferredWidth(), closed, "a closed box stays closed");
    });
}

TEST_F(Input, TheEditorFitsTheKindOfArray)
{
    const Array nest = NestedArray({3}, {Number(5), Text(u"ab"), TextOf({1, 2}, u"cd")});
    RunEdit(interpreter, nest, [](User& user) {
        const auto style = [&] { return GetWindowLongPtrW(user.Editor(), GWL_STYLE); };
        SelectIndex(user, u"1");
        user.ExpectEqual(GetDlgCtrlID(user.Editor()), ScalarEditor, "a scalar's");
        user.Expect((style() & (WS_HSCROLL | WS_VSCROLL)) == 0, "without scroll bars");
        const RECT scalar = EditorRect(user);
        SelectIndex(user, u"2");
        user.ExpectEqual(GetDlgCtrlID(user.Editor()), ArrayEditor, "a vector's");
        const RECT vector = EditorRect(user);
        user.ExpectEqual(scalar.top, vector.top + 1, "a scalar's is a pixel smaller");
        user.ExpectEqual(scalar.bottom, vector.bottom - 1, "on each side");
        user.ExpectEqual(vector.left, scalar.right + 1 + Margin, "and a margin apart");
        SelectIndex(user, u"3");
        user.ExpectEqual(GetDlgCtrlID(user.Editor()), ArrayEditor, "a matrix's");
        user.Expect((style() & (WS_HSCROLL | WS_VSCROLL)) == (WS_HSCROLL | WS_VSCROLL), "with both bars");
        SelectIndex(user, u" ");
        user.Expect(user.Editor() == nullptr, "a nested array has none");
        user.Expect(user.Focus() == user.Client(), "and the view has the keyboard");
    });
}

// --- wheel ---

Array Planes()
{
    std::vector<Array> items;
    for (int plane = 0; plane < 25; ++plane)
        items.push_back(Text(u"plane"));
    return NestedArray({25, 1, 1}, items);
}

// Which item the shown plane holds, found by a click; the whole array is selected again.
std::u16string ShownItem(User& user)
{
    SelectIndex(user, u" ");
    const int at = 2 * Margin + 20;
    user.Click(user.Client(), at, at);
    std::u16string index = user.PickIndex();
    SelectIndex(user, u" ");
    return index;
}

void Wheel(const User& user, WORD keys, int delta)
{
    SendMessageW(user.Client(), WM_MOUSEWHEEL, MAKEWPARAM(keys, delta), 0);
}

// The system's number of lines for each click of the wheel, put back in the end.
class WheelLines {
public:
    explicit WheelLines(UINT lines)
    {
        SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &before_, 0);
        SystemParametersInfoW(SPI_SETWHEELSCROLLLINES, lines, nullptr, 0);
    }
    ~WheelLines() { SystemParametersInfoW(SPI_SETWHEELSCROLLLINES, before_, nullptr, 0); }
    WheelLines(const WheelLines&) = delete;
    WheelLines& operator=(const WheelLines&) = delete;

private:
    UINT before_ = 3;
};

TEST_F(Input, TheWheelScrollsByTheSystemsLines)
{
    RunEdit(interpreter, Words({60, 40}), [](User& user) {
        const FontSize font = FontOf(user.Client());
        const auto down = [&] { return BarPosition(user.Client(), SB_VERT); };
        const auto across = [&] { return BarPosition(user.Client(), SB_HORZ); };
        const auto end = [&] {
            SCROLLINFO info{};
            info.cbSize = sizeof info;
            info.fMask = SIF_ALL;
            GetScrollInfo(user.Client(), SB_VERT, &info);
            return info.nMax - static_cast<int>(info.nPage);
        };
        {
            const WheelLines lines(5);
            Wheel(user, 0, -120);
            user.ExpectEqual(down(), 5 * font.line, "one click: five lines");
            Wheel(user, 0, -240);
            user.ExpectEqual(down(), 15 * font.line, "two clicks: ten more");
            Wheel(user, 0, -60);
            user.ExpectEqual(down(), 15 * font.line, "half a click: none");
            Wheel(user, 0, 600);
            user.ExpectEqual(down(), 0, "not before the start");
            Wheel(user, MK_SHIFT, -120);
            user.ExpectEqual(across(), 5 * font.character, "with Shift five characters");
            user.ExpectEqual(down(), 0, "and only sideways");
            for (const int button : {MK_LBUTTON, MK_RBUTTON, MK_MBUTTON})
                Wheel(user, static_cast<WORD>(button), -120);
            user.ExpectEqual(down(), 0, "not with a button down");
        }
        {
            const WheelLines none(0);
            Wheel(user, 0, -120);
            user.ExpectEqual(down(), 0, "no lines, no scrolling");
        }
        const WheelLines page(WHEEL_PAGESCROLL);
        Wheel(user, 0, -120);
        user.ExpectEqual(down(), end(), "by pages, and not beyond the end");
    });
}

TEST_F(Input, AHeldButtonOrNoLinesKeepTheWheelFromPaging)
{
    RunEdit(interpreter, Planes(), [](User& user) {
        for (const int button : {MK_LBUTTON, MK_RBUTTON, MK_MBUTTON})
            Wheel(user, static_cast<WORD>(button), -120);
        user.ExpectEqual(ShownItem(user), u"(1 1 1)", "a button is down");
        Wheel(user, 0, -119);
        Wheel(user, 0, 119);
        user.ExpectEqual(ShownItem(user), u"(1 1 1)", "less than a click");
        {
            const WheelLines none(0);
            Wheel(user, 0, -120);
        }
        user.ExpectEqual(ShownItem(user), u"(1 1 1)", "the wheel is switched off");
        Wheel(user, 0, -600);
        user.ExpectEqual(ShownItem(user), u"(6 1 1)", "five clicks");
    });
}

TEST_F(Input, ControlAndTheWheelZoomAndLeaveThePlaneAlone)
{
    RunEdit(interpreter, Planes(), [](User& user) {
        const int line = FontOf(user.Client()).line;
        Wheel(user, MK_CONTROL, 119);
        user.ExpectEqual(FontOf(user.Client()).line, line, "less than a click is nothing");
        Wheel(user, MK_CONTROL, 120);
        user.Expect(FontOf(user.Client()).line > line, "the font grows");
        Wheel(user, MK_CONTROL, -120);
        user.ExpectEqual(ShownItem(user), u"(1 1 1)", "and the plane stays");
        const int present = FontOf(user.Client()).line;
        for (const int button : {MK_LBUTTON, MK_RBUTTON, MK_MBUTTON, MK_SHIFT})
            Wheel(user, static_cast<WORD>(MK_CONTROL | button), 120);
        user.ExpectEqual(FontOf(user.Client()).line, present, "nor with anything else held");
    });
}

Array MuchToFormat()
{
    std::vector<double> values(3000000);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<double>(i) * 1.37 + 0.5;
    return FloatArray({300000, 10}, values);
}

// What a user does while an array is being loaded. `loading` is called as soon as the view works.
Outcome EditWhileLoading(Interpreter& interpreter, const std::function<void(HWND)>& loading,
                         const Script& script)
{
    EditOptions options;
    options.checkArgument = false;
    std::atomic<bool> ended{false};
    std::atomic<bool> wasBusy{false};
    std::thread watcher([&] {
        for (; !ended && !wasBusy; Sleep(1)) {
            HWND const frame = FindWindowW(L"quillmoor vantrel frame class", nullptr);
            HWND const client = frame == nullptr ? nullptr : GetDlgItem(frame, 0x8008);
            if (client == nullptr || SendMessageW(client, GetBusy, 0, 0) == 0) continue;
            wasBusy = true;
            loading(client);
        }
    });
    Outcome outcome = RunEdit(interpreter, MuchToFormat(), script, options);
    ended = true;
    watcher.join();
    EXPECT_TRUE(wasBusy);
    return outcome;
}

TEST_F(Input, ABusyViewShowsTheWaitCursorAndTakesNoFont)
{
    std::atomic<bool> waits{false};
    std::atomic<bool> fontKept{false};
    EditWhileLoading(
        interpreter,
        [&](HWND client) {
            const int line = FontOf(client).line;
            SendMessageW(client, WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, 120), 0);
            SendMessageW(client, WM_SETCURSOR, reinterpret_cast<WPARAM>(client), HTCLIENT);
            CURSORINFO info{};
            info.cbSize = sizeof info;
            GetCursorInfo(&info);
            waits = info.hCursor == LoadCursorW(nullptr, IDC_WAIT);
            fontKept = FontOf(client).line == line;
        },
        [](User& user) {
            const int line = FontOf(user.Client()).line;
            Wheel(user, MK_CONTROL, 120);
            user.Expect(FontOf(user.Client()).line > line, "now there is one");
        });
    EXPECT_TRUE(waits);
    EXPECT_TRUE(fontKept);
}

// --- scrolling ---

TEST_F(Input, ScrollBarCodesMoveByPixelsPagesAndToTheThumb)
{
    RunEdit(interpreter, Words({60, 40}), [](User& user) {
        HWND const view = user.Client();
        RECT client{};
        GetClientRect(view, &client);
        const struct {
            UINT message;
            int bar;
            int page;
        } directions[] = {{WM_VSCROLL, SB_VERT, client.bottom}, {WM_HSCROLL, SB_HORZ, client.right}};
        SelectIndex(user, u"(1 1)");
        for (const auto& direction : directions) {
            const auto send = [&](WORD code, WORD track = 0) {
                SendMessageW(view, direction.message, MAKEWPARAM(code, track), 0);
                return BarPosition(view, direction.bar);
            };
            const RECT before = EditorRect(user);
            user.ExpectEqual(send(SB_LINEDOWN), 1, "a line is a pixel");
            const RECT after = EditorRect(user);
            user.ExpectEqual(before.left + before.top - 1, after.left + after.top, "the editor goes along");
            user.ExpectEqual(send(SB_PAGEDOWN), 1 + direction.page, "a page is what is in sight");
            user.ExpectEqual(send(SB_LINEUP), direction.page, "a pixel back");
            user.ExpectEqual(send(SB_ENDSCROLL), direction.page, "the end of scrolling is nothing");
            user.ExpectEqual(send(SB_BOTTOM), direction.page, "nor are the other codes");
            user.ExpectEqual(send(SB_TOP), direction.page, "in either direction");
            user.ExpectEqual(send(SB_PAGEUP), 0, "a page back");
            user.ExpectEqual(send(SB_PAGEUP), 0, "not before the start");
        }
    });
}

TEST_F(Input, TheThumbOfTheWindowIsFollowedToTheEnd)
{
    RunEdit(interpreter, Words({60, 2}), [](User& user) {
        SCROLLBARINFO bar{};
        bar.cbSize = sizeof bar;
        GetScrollBarInfo(user.Client(), OBJID_VSCROLL, &bar);
        POINT thumb{(bar.rcScrollBar.left + bar.rcScrollBar.right) / 2,
                    bar.rcScrollBar.top + (bar.xyThumbTop + bar.xyThumbBottom) / 2};
        ScreenToClient(user.Client(), &thumb);
        user.Drag(user.Client(), thumb, {thumb.x, thumb.y + 40});
        const int middle = BarPosition(user.Client(), SB_VERT);
        user.Expect(middle > 40, "it moves");
        RECT client{};
        GetClientRect(user.Client(), &client);
        user.Drag(user.Client(), {thumb.x, thumb.y + 40}, {thumb.x, client.bottom});
        SCROLLINFO info{};
        info.cbSize = sizeof info;
        info.fMask = SIF_ALL;
        GetScrollInfo(user.Client(), SB_VERT, &info);
        user.ExpectEqual(info.nPos, info.nMax - static_cast<int>(info.nPage), "the last page");
        user.Expect(info.nPos > middle, "is further down");
    });
}

TEST_F(Input, KeysScrollByCharacterLineAndPage)
{
    RunEdit(interpreter, Words({60, 40}), [](User& user) {
        const FontSize font = FontOf(user.Client());
        const auto down = [&] { return BarPosition(user.Client(), SB_VERT); };
        const auto across = [&] { return BarPosition(user.Client(), SB_HORZ); };
        user.Key(VK_DOWN);
        user.ExpectEqual(down(), font.line, "Down by the line height");
        user.Key(VK_RIGHT);
        user.ExpectEqual(across(), font.character, "Right by a character's width");
        user.Key(VK_DOWN);
        user.Key(VK_UP);
        user.ExpectEqual(down(), font.line, "Up back");
        user.Key(VK_NEXT, {VK_CONTROL});
        user.ExpectEqual(down(), font.line, "a page with Ctrl is sideways only");
        user.Key(VK_PRIOR, {VK_CONTROL});
        user.ExpectEqual(across(), font.character, "and back");
        user.Key(VK_END);
        const int end = across();
        user.ExpectEqual(down(), font.line, "End is sideways only");
        user.Key(VK_HOME);
        user.ExpectEqual(across(), 0, "Home as well");
        user.ExpectEqual(down(), font.line, "without Ctrl");
        user.Key(VK_END, {VK_CONTROL});
        user.ExpectEqual(across(), end, "Ctrl+End to the right end");
        user.Expect(down() > font.line, "and to the bottom");
    });
}

// --- pick index ---

std::u16string PickIndexOf(const User& user, bool throughMaximize)
{
    const LRESULT node = SendMessageW(user.Client(), GetSelected, 0, 0);
    const LRESULT text = SendMessageW(user.Client(), GetPickIndex, throughMaximize ? 1 : 0, node);
    return text == 0 ? u"none" : reinterpret_cast<const char16_t*>(text);
}

TEST_F(Input, APickIndexNamesThePathAndLeadsBack)
{
    const Array nest = NestedArray(
        {3}, {Text(u"a"), Words({2, 3}), NestedArray({}, {NestedArray({2}, {Text(u"b"), Text(u"c")})})});
    RunEdit(interpreter, nest, [](User& user) {
        user.ExpectEqual(PickIndexOf(user, false), u" ", "the whole array");
        for (const char16_t* const index : {u"3 ''  2", u"2 (2 1)", u"3 '' ", u"2", u" "}) {
            user.ExpectEqual(SelectIndex(user, index), 0, "a good index");
            user.ExpectEqual(PickIndexOf(user, false), index, "names what it selected");
        }
        SelectIndex(user, u"2 (1 2)");
        for (const char16_t* const index :
             {u"2 (1 2 1)", u"2 1", u"2 (3 1)", u"0", u"4", u"1 1", u"2 ''", u"x"}) {
            user.Expect(SelectIndex(user, index) != 0, "a bad index is refused");
            user.ExpectEqual(PickIndexOf(user, false), u"2 (1 2)", "and changes nothing");
        }
        user.Expect(user.Focus() == user.Editor(), "the keyboard went along");
    });
}

TEST_F(Input, APickIndexCountsFromTheInterpretersOrigin)
{
    InterpreterOptions options;
    options.indexOrigin = 0;
    Interpreter fromZero(options);
    RunEdit(fromZero, NestedArray({2}, {Text(u"a"), Words({2, 3})}), [](User& user) {
        user.ExpectEqual(SelectIndex(user, u"1 (1 2)"), 0, "the last item");
        user.ExpectEqual(PickIndexOf(user, false), u"1 (1 2)", "names itself so");
        user.Expect(SelectIndex(user, u"2") != 0, "there is nothing behind it");
    });
}

TEST_F(Input, APickIndexSeesThroughAMaximisedBoxOrStopsAtIt)
{
    RunEdit(interpreter, NestedArray({2}, {Text(u"a"), Words({2})}), [](User& user) {
        SelectIndex(user, u"2");
        user.Command(MaximizeCommand);
        user.ExpectEqual(PickIndexOf(user, false), u"2", "its place in the whole array");
        user.ExpectEqual(PickIndexOf(user, true), u" ", "it is what is displayed");
        user.Key(VK_TAB);
        user.ExpectEqual(PickIndexOf(user, false), u"2 1", "an item's place in the whole array");
        user.ExpectEqual(PickIndexOf(user, true), u"1", "and in what is displayed");
        SelectIndex(user, u"1");
        user.ExpectEqual(PickIndexOf(user, true), u"1", "another place leaves the box");
    });
}

// --- find ---

HWND FindText(const User& user)
{
    HWND const bar = FindWindowExW(user.Frame(), nullptr, L"#32770", nullptr);
    return bar == nullptr ? nullptr : GetDlgItem(bar, 108);
}

TEST_F(Input, FindingInAClosedBoxLeavesTheKeyboardInTheFindBar)
{
    RunEdit(interpreter, NestedArray({2}, {Text(u"a"), Words({2})}), [](User& user) {
        SelectIndex(user, u"2 1");
        user.Command(MinimizeCommand);
        SelectIndex(user, u"2");
        user.Command(MinimizeCommand);
        SelectIndex(user, u"1");
        user.Command(FindCommand);
        user.Type(u"tem");
        user.Key(VK_RETURN);
        user.ExpectEqual(user.PickIndex(), u"2 1", "the boxes open");
        user.Expect(user.Editor() != nullptr, "and show the array");
        HWND const bar = GetParent(FindText(user));
        user.Expect(IsChild(bar, user.Focus()) != 0, "Enter would find the next, not break a line");
        SelectIndex(user, u"1");
        user.Command(MaximizeCommand);
        user.Key(VK_F3);
        user.Expect(user.PickIndex().rfind(u"2", 0) == 0, "out of a maximised array");
        user.Expect(IsChild(bar, user.Focus()) != 0, "the same");
    });
}

} // namespace
} // namespace vantrel::ui
