// What the array view looks like and how it answers the mouse: edges, bars of high ranks, restore buttons, small scroll bars, planes,
// cursors.
#include <gtest/gtest.h>

#include <algorithm>

#include "ui/view_support.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr int Edges3dOption = 4309;
constexpr int RestoreCommand = 4604;
constexpr int MinimizeCommand = 4605;
constexpr int MaximizeCommand = 4606;

class Look : public testing::Test {
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

TEST_F(Look, FramesAreCaptionsOrSunkenEdges)
{
    RunEdit(interpreter, Words({2}), [](User& user) {
        constexpr int Y = Margin + 20;
        user.ExpectEqual(user.Shot(user.Client()).At(Margin, Y), GetSysColor(COLOR_ACTIVECAPTION),
                         "a selected frame has the active caption's colour");
        Switch(user, Edges3dOption, true);
        const Picture sunken = user.Shot(user.Client());
        user.ExpectEqual(sunken.At(Margin + 1, Y), GetSysColor(COLOR_3DSHADOW), "the outer dark line");
        user.ExpectEqual(sunken.At(Margin + 2, Y), GetSysColor(COLOR_3DDKSHADOW), "the inner dark line");
        user.ExpectEqual(sunken.Count(GetSysColor(COLOR_3DFACE), {Margin + 3, Y, Margin + 5, Y + 1}), 2,
                         "and the face behind it");
        Switch(user, Edges3dOption, false);
        user.ExpectEqual(user.Shot(user.Client()).At(Margin, Y), GetSysColor(COLOR_ACTIVECAPTION),
                         "and back again");
    });
}

// Whether `count` stripes, each one edge wide, change between caption and face from the box's left side on.
bool AreStripes(const Picture& picture, int count, int y)
{
    const int edge = EdgeWidth();
    const COLORREF face = GetSysColor(COLOR_3DFACE);
    for (int x = 0; x < count * edge; ++x) {
        const bool isFace = picture.At(Margin + x, y) == face;
        if (isFace != (x / edge % 2 == 1)) return false;
    }
    return true;
}

TEST_F(Look, EachAxisBeyondTheSecondIsABarAtTheLeft)
{
    RunEdit(interpreter, Words({2, 2, 1, 2}), [](User& user) {
        const int y = Margin + 20;
        user.Expect(AreStripes(user.Shot(user.Client()), 6, y), "rank 4: two bars and the frame");
        Switch(user, Edges3dOption, true);
        const Picture sunken = user.Shot(user.Client());
        const COLORREF dark = GetSysColor(COLOR_3DSHADOW);
        for (int frame = 0; frame < 3; ++frame) {
            user.ExpectEqual(sunken.At(Margin + 1 + frame * 2 * EdgeWidth(), y), dark,
                             "three sunken edges, one inside the other");
        }
        Switch(user, Edges3dOption, false);
    });
    RunEdit(interpreter, Words({1, 2}), [](User& user) {
        user.Expect(AreStripes(user.Shot(user.Client()), 2, Margin + 20), "a matrix has the frame alone");
    });
}

POINT Middle(const RECT& rect)
{
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

// Closes the first item to its button; the answer is a point on the button.
POINT MinimizeFirst(User& user)
{
    SelectIndex(user, u"1");
    const RECT box = EditorRect(user);
    user.Command(MinimizeCommand);
    return {box.left + 8, box.top + 8};
}

TEST_F(Look, ARestoreButtonOpensItsBox)
{
    RunEdit(interpreter, Words({3}), [](User& user) {
        const POINT button = MinimizeFirst(user);
        user.Expect(user.Editor() == nullptr, "a closed box has no editor");
        SelectIndex(user, u"3");
        user.Click(user.Client(), button.x, button.y);
        user.ExpectEqual(user.PickIndex(), u"1", "the click selects the box");
        user.Expect(user.Editor() != nullptr, "and opens it");
    });
}

TEST_F(Look, ARestoreButtonLetGoElsewhereStaysClosed)
{
    RunEdit(interpreter, Words({3}), [](User& user) {
        const POINT button = MinimizeFirst(user);
        user.Drag(user.Client(), button, {button.x, button.y + 120});
        user.Expect(user.Editor() == nullptr, "the box is still closed");
        user.Key(VK_RETURN);
        user.Expect(user.Editor() != nullptr, "Enter opens it");
        user.Command(MinimizeCommand);
        user.Key(VK_SPACE);
        user.Expect(user.Editor() != nullptr, "Space opens it");
    });
}

TEST_F(Look, ARestoreButtonShowsThatThePointerIsOnIt)
{
    RunEdit(interpreter, Words({3}), [](User& user) {
        const POINT button = MinimizeFirst(user); // selected, so that the press does not move the mark
        const RECT around{button.x - 8, button.y - 8, button.x + 16, button.y + 16};
        const auto colours = [&] {
            const Picture picture = user.Shot(user.Client());
            std::vector<COLORREF> all;
            for (LONG y = std::max(0L, around.top); y < around.bottom; ++y) {
                for (LONG x = std::max(0L, around.left); x < around.right; ++x)
                    all.push_back(picture.At(x, y));
            }
            return all;
        };
        user.Mouse(user.Client(), {200, 200});
        const auto normal = colours();
        user.Mouse(user.Client(), button);
        user.Expect(!IsThemed() || colours() != normal, "themed buttons are hot under the pointer");
        user.Mouse(user.Client(), button, MOUSEEVENTF_LEFTDOWN);
        user.Expect(colours() != normal, "a pressed button looks so");
        user.Mouse(user.Client(), {200, 200});
        user.Expect(colours() == normal, "and normal when the pointer has left it");
        user.Mouse(user.Client(), {200, 200}, MOUSEEVENTF_LEFTUP);
    });
}

// --- small scroll bars ---

constexpr int TallRows = 200;

Array TallMatrix()
{
    std::u16string letters;
    for (int row = 0; row < TallRows; ++row)
        letters += std::u16string(6, static_cast<char16_t>(u'A' + row % 26));
    return TextOf({TallRows, 6}, letters);
}

// Two alike: what is measured on the second tells where the first stands, which is not opened for it.
Array TwoTall()
{
    return NestedArray({2}, {TallMatrix(), TallMatrix()});
}

// The vertical bar of the first matrix, in the view's client area.
struct SmallBar {
    int x;
    int top; // of the first arrow
    int bottom;
};

// Leaves the second matrix selected.
SmallBar FindSmallBar(const User& user)
{
    SelectIndex(user, u"2");
    const RECT second = EditorRect(user);
    const int edge = EdgeWidth();
    const int right = edge + 2 * Margin + second.right - second.left;
    return {right - edge - GetSystemMetrics(SM_CXVSCROLL) / 2, second.top + edge,
            second.bottom - edge - GetSystemMetrics(SM_CYHSCROLL)};
}

// Where the matrix opens when it is selected.
int OpenedAt(const User& user)
{
    SelectIndex(user, u"1");
    HWND const editor = user.Editor();
    return editor == nullptr ? -1 : BarPosition(editor, SB_VERT);
}

class SmallBars : public Look {};

TEST_F(SmallBars, AnArrowScrollsByOnePixel)
{
    RunEdit(interpreter, TwoTall(), [](User& user) {
        const SmallBar bar = FindSmallBar(user);
        for (int i = 0; i < 3; ++i)
            user.Click(user.Client(), bar.x, bar.bottom - 5);
        user.ExpectEqual(user.PickIndex(), u"2", "the selection stays");
        user.Click(user.Client(), bar.x, bar.top + 5);
        user.ExpectEqual(OpenedAt(user), 2, "three down, one up");
    });
}

TEST_F(SmallBars, QuickClicksCountEach)
{
    RunEdit(interpreter, TwoTall(), [](User& user) {
        const SmallBar bar = FindSmallBar(user);
        user.Click(user.Client(), bar.x, bar.bottom - 5, 4);
        user.ExpectEqual(user.PickIndex(), u"2", "no double click reaches the box");
        user.ExpectEqual(OpenedAt(user), 4, "four pixels");
    });
}

TEST_F(SmallBars, APageAreaScrollsByWhatIsInSight)
{
    RunEdit(interpreter, TwoTall(), [](User& user) {
        const SmallBar bar = FindSmallBar(user);
        const Picture before = user.Shot(user.Client());
        user.Click(user.Client(), bar.x, bar.bottom - GetSystemMetrics(SM_CYVSCROLL) - 5);
        const Picture after = user.Shot(user.Client());
        bool changed = false;
        for (int y = bar.top + 10; y < bar.bottom; ++y)
            changed = changed || before.At(bar.x - 40, y) != after.At(bar.x - 40, y);
        user.Expect(changed, "other rows are in sight");
        const int page = OpenedAt(user);
        user.Expect(page > (bar.bottom - bar.top) / 2 && page < bar.bottom - bar.top, "by about a page");
    });
}

TEST_F(SmallBars, TheThumbReachesTheEnd)
{
    RunEdit(interpreter, TwoTall(), [](User& user) {
        const SmallBar bar = FindSmallBar(user);
        const int thumb = bar.top + GetSystemMetrics(SM_CYVSCROLL) + 3;
        user.Drag(user.Client(), {bar.x, thumb}, {bar.x + 200, bar.bottom + 100}); // the mouse is captured
        user.ExpectEqual(user.PickIndex(), u"2", "the selection stays");
        const int end = OpenedAt(user);
        SendMessageW(user.Editor(), WM_VSCROLL, SB_PAGEDOWN, 0);
        const int last = BarPosition(user.Editor(), SB_VERT);
        user.Expect(last - end < 40, "the last rows are in sight");
        user.Expect(end > (TallRows - 40) * 10, "far down");
    });
}

TEST_F(SmallBars, AnArrayThatWasOpenStaysWhereItsBarsScrolledIt)
{
    RunEdit(interpreter, TwoTall(), [](User& user) {
        user.ExpectEqual(OpenedAt(user), 0, "the caret is in the first row");
        const SmallBar bar = FindSmallBar(user);
        user.Click(user.Client(), bar.x, bar.bottom - GetSystemMetrics(SM_CYVSCROLL) - 5);
        user.Click(user.Client(), bar.x, bar.bottom - 5);
        const int position = OpenedAt(user);
        user.Expect(position > (bar.bottom - bar.top) / 2, "a page and a pixel further");
        const User::CaretPlace caret = user.Caret();
        user.Expect(caret.window == user.Editor() && caret.rect.top > 0 && caret.rect.top < 40,
                    "the caret has come along, into the first whole row");
        user.Type(u"!");
        user.ExpectEqual(BarPosition(user.Editor(), SB_VERT), position, "where it is typed");
    });
}

TEST_F(SmallBars, ZoomingKeepsTheLinesInSight)
{
    RunEdit(interpreter, TwoTall(), [](User& user) {
        SelectIndex(user, u"1");
        for (int page = 0; page < 4; ++page)
            SendMessageW(user.Editor(), WM_VSCROLL, SB_PAGEDOWN, 0);
        const auto row = [&] {
            return BarPosition(user.Editor(), SB_VERT) / static_cast<double>(FontOf(user.Client()).line);
        };
        const double before = row();
        user.Expect(before > 20, "far down");
        SelectIndex(user, u"2");
        const LONG line = FontOf(user.Client()).line;
        SendMessageW(user.Client(), WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, 240), 0);
        user.Expect(FontOf(user.Client()).line > line, "a larger font");
        SelectIndex(user, u"1");
        user.Expect(row() > before - 1.5 && row() < before + 1.5, "the same rows");
    });
}

TEST_F(SmallBars, AHeldArrowScrollsOn)
{
    RunEdit(interpreter, TwoTall(), [](User& user) {
        const SmallBar bar = FindSmallBar(user);
        const POINT arrow{bar.x, bar.bottom - 5};
        user.Mouse(user.Client(), arrow, MOUSEEVENTF_LEFTDOWN);
        Sleep(1200);
        user.Mouse(user.Client(), arrow, MOUSEEVENTF_LEFTUP);
        Sleep(300);
        const int position = OpenedAt(user);
        user.Expect(position > 2, "it scrolls while it is held");
        user.Expect(position < 60, "at the pace of a scroll bar, and not after it was let go");
    });
}

// --- planes ---

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
    const int edge = EdgeWidth();
    user.Click(user.Client(), 2 * Margin + 4 * edge + 8, 2 * Margin + edge + 8);
    std::u16string index = user.PickIndex();
    user.Key(VK_UP, {VK_CONTROL});
    return index;
}

TEST_F(Look, PlanesArePagedByKeys)
{
    RunEdit(interpreter, Planes(), [](User& user) {
        const auto press = [&](WORD key, const char16_t* item, const char* what) {
            user.Key(key, {VK_MENU});
            user.ExpectEqual(ShownItem(user), item, what);
        };
        press(VK_NEXT, u"(11 1 1)", "a page down is ten planes");
        press(VK_NEXT, u"(21 1 1)", "and ten more");
        press(VK_NEXT, u"(25 1 1)", "and what is left");
        press(VK_UP, u"(24 1 1)", "one up");
        press(VK_PRIOR, u"(14 1 1)", "a page up");
        press(VK_HOME, u"(1 1 1)", "the first");
        press(VK_UP, u"(1 1 1)", "nothing before it");
        press(VK_DOWN, u"(2 1 1)", "one down");
        press(VK_END, u"(25 1 1)", "the last");
        press(VK_DOWN, u"(25 1 1)", "nothing behind it");
    });
}

TEST_F(Look, PlanesArePagedByTheWheel)
{
    RunEdit(interpreter, Planes(), [](User& user) {
        const POINT place{150, 150};
        user.Mouse(user.Client(), place, MOUSEEVENTF_WHEEL, -240);
        user.ExpectEqual(ShownItem(user), u"(3 1 1)", "two clicks down");
        user.Mouse(user.Client(), place, MOUSEEVENTF_WHEEL, 120);
        user.ExpectEqual(ShownItem(user), u"(2 1 1)", "one up");
        user.Mouse(user.Client(), place, MOUSEEVENTF_WHEEL, -119);
        user.ExpectEqual(ShownItem(user), u"(2 1 1)", "less than a click is nothing");
    });
}

// --- wheel ---

void HoldKey(WORD key, bool down)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
    SendInput(1, &input, sizeof input);
    Sleep(50);
}

void WheelWith(User& user, WORD key, int wheel)
{
    HoldKey(key, true);
    user.Mouse(user.Client(), {150, 150}, MOUSEEVENTF_WHEEL, wheel);
    HoldKey(key, false);
    user.Wait();
}

TEST_F(Look, ControlAndTheWheelChangeTheFontsSize)
{
    RunEdit(interpreter, Words({3}), [](User& user) {
        const LONG before = FontOf(user.Client()).line;
        WheelWith(user, VK_CONTROL, 240);
        const LONG larger = FontOf(user.Client()).line;
        user.Expect(larger > before, "away from the user it grows");
        WheelWith(user, VK_CONTROL, -360);
        user.Expect(FontOf(user.Client()).line < larger, "towards the user it shrinks");
        SelectIndex(user, u"1");
        const LONG shown = FontOf(user.Client()).line;
        WheelWith(user, VK_CONTROL, 240);
        user.Expect(FontOf(user.Client()).line > shown, "from within the editor, too");
        user.ExpectEqual(FontOf(user.Editor()).line, FontOf(user.Client()).line, "which has the same font");
        const RECT box = EditorRect(user);
        user.Expect(box.bottom - box.top > FontOf(user.Client()).line, "and the box has grown");
    });
}

TEST_F(Look, TheWheelScrollsTheWindowAndWithShiftSideways)
{
    RunEdit(interpreter, Words({60, 40}), [](User& user) {
        const POINT place{150, 150};
        user.Mouse(user.Client(), place, MOUSEEVENTF_WHEEL, -240);
        const int two = BarPosition(user.Client(), SB_VERT);
        user.Expect(two > 0, "down");
        user.Mouse(user.Client(), place, MOUSEEVENTF_WHEEL, 120);
        user.ExpectEqual(BarPosition(user.Client(), SB_VERT), two / 2, "one of two clicks back");
        user.ExpectEqual(BarPosition(user.Client(), SB_HORZ), 0, "not sideways");
        WheelWith(user, VK_SHIFT, -120);
        user.Expect(BarPosition(user.Client(), SB_HORZ) > 0, "with Shift sideways");
        user.ExpectEqual(BarPosition(user.Client(), SB_VERT), two / 2, "and only so");
        const int across = BarPosition(user.Client(), SB_HORZ);
        WheelWith(user, VK_MENU, -120);
        user.ExpectEqual(BarPosition(user.Client(), SB_VERT), two / 2, "with Alt not at all");
        user.ExpectEqual(BarPosition(user.Client(), SB_HORZ), across, "in neither direction");
    });
}

// The planes of an array that fills the window or stands in its box.
void ExpectAltWheelPages(User& user)
{
    const auto ink = [&] { return user.Shot(user.Editor()).Count(GetSysColor(COLOR_WINDOWTEXT)); };
    const int first = ink();
    WheelWith(user, VK_MENU, -120);
    user.Key(VK_ESCAPE); // Alt alone had gone to the menu
    const int second = ink();
    user.Expect(second < first / 2, "dots instead of letters");
    WheelWith(user, VK_MENU, 120);
    user.Key(VK_ESCAPE);
    user.Expect(ink() > first * 3 / 4, "and letters again");
}

TEST_F(Look, AltAndTheWheelPageTheArrayThatIsEdited)
{
    const Array planes = TextOf({2, 2, 8}, u"WWWWWWWWMMMMMMMM................");
    RunEdit(interpreter, planes, [](User& user) { ExpectAltWheelPages(user); });
    RunEdit(interpreter, NestedArray({2}, {planes, Text(u"b")}), [](User& user) {
        SelectIndex(user, u"1");
        ExpectAltWheelPages(user);
        user.Command(MaximizeCommand);
        ExpectAltWheelPages(user);
    });
}

TEST_F(Look, ArrowAndPagingKeysScrollTheWindow)
{
    RunEdit(interpreter, Words({60, 40}), [](User& user) {
        const auto down = [&] { return BarPosition(user.Client(), SB_VERT); };
        const auto across = [&] { return BarPosition(user.Client(), SB_HORZ); };
        user.Key(VK_DOWN);
        const int line = down();
        user.Expect(line > 0, "Down scrolls by a line");
        user.Key(VK_RIGHT);
        user.Expect(across() > 0 && across() < line, "Right by a character");
        user.Key(VK_UP);
        user.Key(VK_LEFT);
        user.Expect(down() == 0 && across() == 0, "Up and Left go back");
        user.Key(VK_NEXT);
        RECT client{};
        GetClientRect(user.Client(), &client);
        user.ExpectEqual(down(), static_cast<int>(client.bottom), "Page Down by a window");
        user.Key(VK_PRIOR);
        user.ExpectEqual(down(), 0, "Page Up back");
        user.Key(VK_NEXT, {VK_CONTROL});
        user.ExpectEqual(across(), static_cast<int>(client.right), "with Ctrl sideways");
        user.Key(VK_HOME);
        user.ExpectEqual(across(), 0, "Home to the left end");
        user.Key(VK_END);
        user.Expect(across() > client.right && down() == 0, "End to the right end");
        user.Key(VK_HOME);
        user.Key(VK_END, {VK_CONTROL});
        user.Expect(across() > client.right && down() > client.bottom, "Ctrl+End to both");
        user.Key(VK_HOME, {VK_CONTROL});
        user.Expect(down() == 0 && across() == 0, "Ctrl+Home back");
    });
}

// --- cursors and clicks ---

HCURSOR CursorAt(User& user, POINT point)
{
    user.Mouse(user.Client(), {point.x + 1, point.y});
    user.Mouse(user.Client(), point);
    CURSORINFO info{};
    info.cbSize = sizeof info;
    GetCursorInfo(&info);
    return info.hCursor;
}

TEST_F(Look, TheCursorTellsTextFromFrames)
{
    RunEdit(interpreter, TwoTall(), [](User& user) {
        HCURSOR const beam = LoadCursorW(nullptr, IDC_IBEAM);
        HCURSOR const arrow = LoadCursorW(nullptr, IDC_ARROW);
        SelectIndex(user, u"2");
        const POINT other = Middle(EditorRect(user));
        SelectIndex(user, u"1");
        const RECT box = EditorRect(user);
        user.ExpectEqual(CursorAt(user, other), beam, "over the text of an array");
        user.ExpectEqual(CursorAt(user, {box.left + 20, box.bottom + 30}), arrow, "over a frame's inside");
        const SmallBar bar = FindSmallBar(user);
        user.ExpectEqual(CursorAt(user, {bar.x, bar.bottom - 5}), arrow, "over a small scroll bar");
        user.ExpectEqual(CursorAt(user, {box.left + 20, box.top + 20}), beam, "over its text");
    });
}

TEST_F(Look, ADoubleClickMaximisesAndRestoresANestedBox)
{
    const Array nest = NestedArray({2}, {Words({2}), Text(u"b")});
    RunEdit(interpreter, nest, [](User& user) {
        SelectIndex(user, u"1 2");
        const RECT inner = EditorRect(user);
        const POINT frame{inner.right + Margin + 1, inner.top + 5}; // the edge of the box around
        user.Click(user.Client(), frame.x, frame.y);
        user.ExpectEqual(user.PickIndex(), u"1", "the frame of the nested item");
        const POINT inside{inner.left - 3, inner.top + 5}; // between its two items
        user.Click(user.Client(), inside.x, inside.y, 2);
        SIZE size{};
        SendMessageW(user.Client(), 32976, 0, reinterpret_cast<LPARAM>(&size));
        const Picture picture = user.Shot(user.Client());
        user.Expect(picture.Count(RGB(255, 0, 0)) > 50, "a maximised box is marked in red");
        user.Click(user.Client(), Margin + 1, Margin + 1, 2);
        user.ExpectEqual(user.Shot(user.Client()).Count(RGB(255, 0, 0)), 0, "and restored by another");
    });
}

TEST_F(Look, CommandsMinimiseMaximiseAndRestore)
{
    RunEdit(interpreter, Words({2}), [](User& user) {
        SelectIndex(user, u"1");
        const RECT before = EditorRect(user);
        user.Command(MaximizeCommand);
        RECT client{};
        GetClientRect(user.Client(), &client);
        const RECT filled = EditorRect(user);
        user.Expect(filled.left == 0 && filled.top == 0 && filled.right == client.right &&
                        filled.bottom == client.bottom,
                    "the editor fills the window");
        user.Command(RestoreCommand);
        const RECT after = EditorRect(user);
        user.Expect(EqualRect(&before, &after) != FALSE, "and is back at its place");
        user.Command(MinimizeCommand);
        user.Expect(user.Editor() == nullptr, "closed");
        user.Command(RestoreCommand);
        const RECT open = EditorRect(user);
        user.Expect(EqualRect(&before, &open) != FALSE, "and open as before");
    });
}

TEST_F(Look, AClickSelectsThePrototypeOfAnEmptyArray)
{
    const Array empty = NestedArray({2}, {EmptyNestedArray({0}, Text(u"proto")), Text(u"b")});
    RunEdit(interpreter, empty, [](User& user) {
        SelectIndex(user, u"2");
        const RECT word = EditorRect(user);
        const LRESULT other = SendMessageW(user.Client(), 32978, 0, 0);
        user.Click(user.Client(), word.left / 2, word.top + 12);
        user.Expect(SendMessageW(user.Client(), 32978, 0, 0) != other, "something else is selected");
        user.Expect(user.Editor() == nullptr, "which is not to be edited");
        user.Expect(user.Shot(user.Client()).Count(GetSysColor(COLOR_GRAYTEXT)) > 10, "its text is grey");
    });
}

} // namespace
} // namespace vantrel::ui
