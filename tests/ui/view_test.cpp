// The array view: where boxes and the editor stand, what is selected, what is painted, what long loads allow.
#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <atomic>
#include <thread>

#include "ui/message_watch.h"
#include "ui/view_support.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr int LargeMargin = 10;
constexpr UINT GetModified = 32973;
constexpr UINT GetOption = 32974;
constexpr UINT GetPreferredSize = 32976;
constexpr UINT GetSelected = 32978;
constexpr UINT SetObject = 32987;
constexpr int SmallMarginsOption = 4308;
constexpr int RankOneBarsOption = 4315;
constexpr COLORREF NumberColour = RGB(64, 64, 224);

class View : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
};

Array TwoTexts()
{
    return NestedArray({2}, {Text(u"ab"), Text(u"cde")});
}

bool SameRect(const RECT& a, const RECT& b)
{
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

// The text area of a vector's item: `before` is the width of the boxes to its left, each less one margin.
RECT TextArea(const User& user, int before, int characters, int margin)
{
    const int edge = EdgeWidth();
    const FontSize font = FontOf(user.Client());
    const int left = edge + margin + before + margin;
    const int top = edge + margin + margin;
    const int around = 4 + 4 * edge; // two pixels of air on each side, and the edge twice
    return {left, top, left + characters * font.character + around, top + font.line + around};
}

int BoxWidthLessMargin(const User& user, int characters, int margin)
{
    const RECT area = TextArea(user, 0, characters, margin);
    return area.right - area.left + margin;
}

TEST_F(View, TheEditorStandsExactlyOverTheItemsText)
{
    RunEdit(interpreter, TwoTexts(), [](User& user) {
        user.Key(VK_TAB);
        user.Expect(SameRect(EditorRect(user), TextArea(user, 0, 2, Margin)), "over the first item");
        user.Key(VK_TAB);
        const int before = BoxWidthLessMargin(user, 2, Margin);
        user.Expect(SameRect(EditorRect(user), TextArea(user, before, 3, Margin)), "over the second item");
    });
}

TEST_F(View, LargeMarginsMoveEveryBox)
{
    StoreFlag(L"Use small margins", 0);
    RunEdit(interpreter, TwoTexts(), [](User& user) {
        user.Key(VK_TAB);
        user.Expect(SameRect(EditorRect(user), TextArea(user, 0, 2, LargeMargin)), "over the first item");
        SendMessageW(user.Client(), SetOption, MAKEWPARAM(SmallMarginsOption, 1), 0);
        user.Wait();
        user.Expect(SameRect(EditorRect(user), TextArea(user, 0, 2, Margin)),
                    "the option lays the array out again");
    });
}

TEST_F(View, RankOneBarsMakeRoomInVectorsOnly)
{
    RunEdit(interpreter, TwoTexts(), [](User& user) {
        user.Key(VK_TAB);
        const RECT before = EditorRect(user);
        SendMessageW(user.Client(), SetOption, MAKEWPARAM(RankOneBarsOption, 1), 0);
        user.Wait();
        const RECT after = EditorRect(user);
        user.Expect(after.bottom - after.top > before.bottom - before.top,
                    "the box grows by its scroll bars");
        user.ExpectEqual(SendMessageW(user.Client(), GetOption, RankOneBarsOption, 0), 1, "the option is on");
        const auto bars = [&] {
            return GetWindowLongW(user.Editor(), GWL_STYLE) & (WS_HSCROLL | WS_VSCROLL);
        };
        user.ExpectEqual(bars(), WS_HSCROLL | WS_VSCROLL, "the editor shows them");
        SendMessageW(user.Client(), SetOption, MAKEWPARAM(RankOneBarsOption, 0), 0);
        user.Wait();
        user.ExpectEqual(bars(), 0, "and hides them again");
        user.Expect(SameRect(EditorRect(user), before), "in a box as large as before");
    });
}

TEST_F(View, AClickSelectsTheInnermostBoxAndAMarginItsFrame)
{
    RunEdit(interpreter, TwoTexts(), [](User& user) {
        const RECT first = TextArea(user, 0, 2, Margin);
        const RECT second = TextArea(user, BoxWidthLessMargin(user, 2, Margin), 3, Margin);
        user.Click(user.Client(), second.left + 3, second.top + 3);
        user.ExpectEqual(user.PickIndex(), u"2", "the second item");
        user.Click(user.Client(), first.right + 2, first.top + 3); // between the two
        user.ExpectEqual(user.PickIndex(), u" ", "the whole array");
        user.Click(user.Client(), first.left + 3, first.top + 3);
        user.ExpectEqual(user.PickIndex(), u"1", "the first item");
    });
}

TEST_F(View, TabWalksInItemOrderAndWrapsAround)
{
    const Array nest = NestedArray({2}, {Text(u"a"), NestedArray({2, 1}, {Text(u"b"), Text(u"c")})});
    RunEdit(interpreter, nest, [](User& user) {
        const std::u16string forward[] = {u"1", u"2", u"2 (1 1)", u"2 (2 1)", u" ", u"1"};
        for (const std::u16string& index : forward) {
            user.Key(VK_TAB);
            user.ExpectEqual(user.PickIndex(), index, "Tab");
        }
        user.Key(VK_TAB, {VK_SHIFT});
        user.ExpectEqual(user.PickIndex(), u" ", "Shift+Tab goes to the parent");
        user.Key(VK_TAB, {VK_SHIFT});
        user.ExpectEqual(user.PickIndex(), u"2 (2 1)", "and from the root to the last leaf");
        user.Key(VK_UP, {VK_CONTROL});
        user.ExpectEqual(user.PickIndex(), u"2", "Ctrl+Up goes to the parent");
        user.Key(VK_TAB, {VK_CONTROL});
        user.ExpectEqual(user.PickIndex(), u"1", "Ctrl+Tab goes round the siblings");
    });
}

TEST_F(View, APickIndexSelectsItsNode)
{
    RunEdit(interpreter, TwoTexts(), [](User& user) {
        SendMessageW(user.Client(), SetPickIndex, 0, reinterpret_cast<LPARAM>(u"2"));
        user.ExpectEqual(user.PickIndex(), u"2", "a good index selects");
        SendMessageW(user.Client(), SetPickIndex, 0, reinterpret_cast<LPARAM>(u"7"));
        user.ExpectEqual(user.PickIndex(), u"2", "a bad one changes nothing");
    });
}

TEST_F(View, CheckAndAlignFitsTheBoxToItsNewText)
{
    RunEdit(interpreter, TwoTexts(), [](User& user) {
        user.Key(VK_TAB);
        user.Type(u"wide");
        user.Key(VK_F5);
        user.Expect(SameRect(EditorRect(user), TextArea(user, 0, 6, Margin)), "the box holds the whole text");
        user.Type(u"r"); // the caret is where it was
        user.Command(4102);
        user.ExpectEqual(user.PickIndex(), u"1", "the item is still selected");
    });
}

TEST_F(View, TheFirstChangeMarksTheArrayModified)
{
    RunEdit(interpreter, Text(u"ab"), [](User& user) {
        user.ExpectEqual(SendMessageW(user.Client(), GetModified, 0, 0), 0, "unchanged");
        user.Type(u"x");
        user.ExpectEqual(SendMessageW(user.Client(), GetModified, 0, 0), 1, "changed");
        user.Command(4102);
        user.ExpectEqual(SendMessageW(user.Client(), GetModified, 0, 0), 0, "saved");
    });
}

TEST_F(View, TheSelectedFrameHasTheActiveCaptionsColour)
{
    RunEdit(interpreter, TwoTexts(), [](User& user) {
        const COLORREF active = GetSysColor(COLOR_ACTIVECAPTION);
        const COLORREF inactive = GetSysColor(COLOR_INACTIVECAPTION);
        user.ExpectEqual(user.Shot(user.Client()).At(Margin, Margin + 10), active,
                         "the whole array is selected");
        user.Key(VK_TAB);
        user.ExpectEqual(user.Shot(user.Client()).At(Margin, Margin + 10), inactive,
                         "its first item is selected");
    });
}

TEST_F(View, NumbersAreTintedAndPrototypesAreGrey)
{
    const Array nest =
        NestedArray({3}, {Text(u"text"), FloatArray({2}, {888.5, 8}), EmptyNestedArray({0}, Text(u"proto"))});
    RunEdit(interpreter, nest, [](User& user) {
        const Picture picture = user.Shot(user.Client());
        user.Expect(picture.Count(NumberColour) > 20, "numbers are drawn in their own colour");
        user.Expect(picture.Count(GetSysColor(COLOR_WINDOWTEXT)) > 20, "text is drawn in the text colour");
        user.Expect(picture.Count(GetSysColor(COLOR_WINDOW)) > 200,
                    "real items stand on the window's colour");
    });
    const Array onlyPrototype = EmptyNestedArray({0}, FloatArray({2}, {88, 88}));
    RunEdit(interpreter, onlyPrototype, [](User& user) {
        const Picture picture = user.Shot(user.Client());
        user.Expect(picture.Count(GetSysColor(COLOR_GRAYTEXT)) > 5, "a prototype's text is grey");
        user.ExpectEqual(picture.Count(NumberColour), 0, "and not tinted");
        // The edge has light lines, but the panel itself would be many times as much.
        user.Expect(picture.Count(GetSysColor(COLOR_WINDOW)) < 300, "on the colour of a face");
    });
}

TEST_F(View, TheWindowScrollsWithoutASelectionLeavingIt)
{
    std::vector<Array> many;
    for (int i = 0; i < 60; ++i)
        many.push_back(Text(u"item"));
    RunEdit(interpreter, NestedArray({60, 1}, many), [](User& user) {
        user.Key(VK_TAB, {VK_SHIFT}); // the last item
        RECT client{};
        GetClientRect(user.Client(), &client);
        const RECT editor = EditorRect(user);
        user.Expect(editor.top >= 0 && editor.bottom <= client.bottom,
                    "the last item is scrolled into sight");
    });
}

TEST_F(View, PreferredSizeHoldsTheWholeArray)
{
    RunEdit(interpreter, TwoTexts(), [](User& user) {
        SIZE size{};
        user.ExpectEqual(SendMessageW(user.Client(), GetPreferredSize, 0, reinterpret_cast<LPARAM>(&size)), 0,
                         "it answers");
        const RECT second = TextArea(user, BoxWidthLessMargin(user, 2, Margin), 3, Margin);
        const int edge = EdgeWidth();
        user.ExpectEqual(size.cx, second.right + 2 * Margin + edge + GetSystemMetrics(SM_CXVSCROLL),
                         "its width");
        user.ExpectEqual(size.cy, second.bottom + 2 * Margin + edge + GetSystemMetrics(SM_CYHSCROLL),
                         "its height");
    });
}

TEST_F(View, ANumericMatrixTakesNoLetters)
{
    const Array matrix = IntegerArray(ElementType::Int32, {2, 2}, {1, 2, 3, 4});
    const Outcome outcome = RunEdit(interpreter, matrix, [](User& user) {
        user.Type(u"xyz");
        user.Command(4104);
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_TRUE(SameValues(outcome.edit.result, matrix)) << Dump(outcome.edit.result);
}

Array MuchToFormat()
{
    std::vector<double> values(3000000);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<double>(i) * 1.37 + 0.5;
    return FloatArray({300000, 10}, values);
}

// Closes the window as soon as there is one, before it is ready.
class Closer {
public:
    Closer() : thread_([this] { Watch(); }) {}
    ~Closer()
    {
        ended_ = true;
        thread_.join();
    }
    Closer(const Closer&) = delete;
    Closer& operator=(const Closer&) = delete;

private:
    void Watch() const
    {
        while (!ended_) {
            HWND const frame = FindWindowW(L"quillmoor vantrel frame class", nullptr);
            if (frame != nullptr && IsWindowVisible(frame)) {
                PostMessageW(frame, WM_CLOSE, 0, 0);
                return;
            }
            Sleep(1);
        }
    }

    std::atomic<bool> ended_{false};
    std::thread thread_;
};

// What the view said of the array that it was given, and what it showed then.
struct Loaded {
    int times = 0;
    LRESULT refused = 0;
    LRESULT selected = 0;
};

TEST_F(View, ClosingWhileItLoadsGivesTheArgumentBack)
{
    EditOptions options;
    options.checkArgument = false;
    Loaded loaded;
    const MessageWatch watch([&](const CWPRETSTRUCT& message) {
        if (message.message != SetObject || !HasClass(message.hwnd, L"quillmoor vantrel client class"))
            return;
        loaded = {loaded.times + 1, message.lResult, SendMessageW(message.hwnd, GetSelected, 0, 0)};
    });
    EditResult edit;
    {
        const Closer closer;
        edit = interpreter.Edit(Library(), MuchToFormat(), options);
    }
    EXPECT_EQ(loaded.times, 1);
    EXPECT_NE(loaded.refused, 0) << "the load came to its end";
    EXPECT_EQ(loaded.selected, 0) << "an array is on show";
    EXPECT_TRUE(edit.unchanged);
    EXPECT_FALSE(edit.error.signalled);
    for (const std::string& complaint : edit.complaints)
        ADD_FAILURE() << complaint;
}

// The bar is not drawn for each of them.
TEST_F(View, EveryPercentOfFormattingIsWritten)
{
    std::vector<std::wstring> texts;
    const MessageWatch watch([&](const CWPRETSTRUCT& message) {
        if (message.message != SB_SETTEXTW || !HasClass(message.hwnd, STATUSCLASSNAMEW)) return;
        const std::wstring text = reinterpret_cast<const wchar_t*>(message.lParam);
        if (text.rfind(L"Formatting array. Percent done: ", 0) == 0) texts.push_back(text);
    });
    RunEdit(interpreter, NestedArray({4}, {Text(u"a"), Text(u"b"), Text(u"c"), Text(u"d")}), [](User&) {});
    EXPECT_EQ(texts, (std::vector<std::wstring>{
                         L"Formatting array. Percent done: 25", L"Formatting array. Percent done: 50",
                         L"Formatting array. Percent done: 75", L"Formatting array. Percent done: 100"}));
}

TEST_F(View, TheUsersInterruptEndsALongLoadWithItsError)
{
    interpreter.SetInterrupt(true);
    EditOptions options;
    options.checkArgument = false;
    const Outcome outcome = RunEdit(
        interpreter, MuchToFormat(), [](User&) {}, options);
    EXPECT_TRUE(outcome.edit.error.signalled);
    EXPECT_EQ(outcome.edit.error.number, 1003u);
    EXPECT_EQ(outcome.edit.error.message, u"User signaled interrupt");
    EXPECT_FALSE(outcome.edit.hasResult);
}

} // namespace
} // namespace vantrel::ui
