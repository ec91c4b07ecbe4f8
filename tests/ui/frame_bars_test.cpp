// Status bar, name box and find bar.
#include <windows.h>

#include <gtest/gtest.h>

#include <commctrl.h>

#include "ui/driver.h"
#include "ui/system_colors.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr int NameBox = 32789;
constexpr int FindCommand = 4206;
constexpr int FindNext = 4209;
constexpr int FindPrevious = 4210;
constexpr int FindText = 108;
constexpr int NextButton = 109;
constexpr int PreviousButton = 110;
constexpr int IgnoreCase = 111;
constexpr int Numeric = 112;

class FrameBars : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
};

std::vector<std::u16string> Parts(const User& user)
{
    std::vector<std::u16string> parts;
    const LRESULT count = SendMessageW(user.Status(), SB_GETPARTS, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        wchar_t text[256] = {};
        SendMessageW(user.Status(), SB_GETTEXTW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
        parts.emplace_back(reinterpret_cast<const char16_t*>(text));
    }
    return parts;
}

HWND FindBar(const User& user)
{
    HWND const bar = FindWindowExW(user.Frame(), nullptr, L"#32770", nullptr);
    return bar != nullptr && IsWindowVisible(bar) ? bar : nullptr;
}

bool IsEnabled(const User& user, int control)
{
    return IsWindowEnabled(GetDlgItem(FindBar(user), control)) != 0;
}

bool IsGreyed(const User& user, int id)
{
    return (GetMenuState(GetMenu(user.Frame()), static_cast<UINT>(id), MF_BYCOMMAND) & MF_GRAYED) != 0;
}

std::wstring TextOfWindow(HWND window)
{
    wchar_t text[512] = {};
    SendMessageW(window, WM_GETTEXT, 512, reinterpret_cast<LPARAM>(text));
    return text;
}

Array Words()
{
    return NestedArray({3},
                       {Text(u"alpha beta"), NestedArray({2}, {Text(u"Beta"), NumericArray({3}, {1, 22, 3})}),
                        Text(u"gamma")});
}

TEST_F(FrameBars, TheStatusBarShowsTheSelectedArraysAttributes)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Expect(Parts(user) == std::vector<std::u16string>{u"Type:", u"General", u" ≡:", u"3", u" ×/⍴:",
                                                               u"3", u" ⍴⍴:", u"1", u" ⍴:", u"3", u" ⊃:",
                                                               u" "},
                    "the whole array");
        user.Key(VK_TAB);
        user.Expect(Parts(user) == std::vector<std::u16string>{u"Type:", u"Character", u" ≡:", u"1", u" ×/⍴:",
                                                               u"10", u" ⍴⍴:", u"1", u" ⍴:", u"10", u" ⊃:",
                                                               u"1"},
                    "its first item");
    });
}

TEST_F(FrameBars, AScalarShowsNoShape)
{
    RunEdit(interpreter, NestedArray({1}, {Number(3.5)}), [](User& user) {
        user.Key(VK_TAB);
        user.Expect(Parts(user) == std::vector<std::u16string>{u"Type:", u"Real", u" ≡:", u"0", u" ×/⍴:",
                                                               u"1", u" ⍴⍴:", u"0", u" ⊃:", u"1", u""},
                    "type, depth, count, rank and index");
    });
}

TEST_F(FrameBars, ThePlaneIsShownBehindThePickIndex)
{
    RunEdit(interpreter, NumericArray({2, 3, 4}, std::vector<double>(24, 7)), [](User& user) {
        user.Expect(Parts(user).size() == 13 && Parts(user)[12] == u"[1;;]", "the first plane");
        user.Key(VK_DOWN, {VK_MENU});
        user.Expect(Parts(user)[12] == u"[2;;]", "the second");
    });
}

TEST_F(FrameBars, AMessageTakesTheWholeBarUntilTheNextSelection)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(4102);
        user.Expect(SendMessageW(user.Status(), SB_ISSIMPLE, 0, 0) != 0, "one part");
        user.Expect(user.StatusText() == u"Data saved", "the message");
        user.Expect(!IsWindowVisible(GetDlgItem(user.Frame(), NameBox)), "the name box makes room");
        user.Key(VK_TAB);
        user.Expect(SendMessageW(user.Status(), SB_ISSIMPLE, 0, 0) == 0, "attributes again");
        user.Expect(IsWindowVisible(GetDlgItem(user.Frame(), NameBox)) != 0, "and the name box");
    });
}

TEST_F(FrameBars, TheNameBoxShowsThePickIndexAndSelectsWhatIsTyped)
{
    RunEdit(interpreter, Words(), [](User& user) {
        HWND const box = GetDlgItem(user.Frame(), NameBox);
        user.Key(VK_TAB);
        user.Expect(TextOfWindow(box) == L"1", "the first item's");
        user.Click(box, 3, 3);
        user.Expect(user.Focus() == box, "it has the keyboard");
        user.Key('A', {VK_CONTROL});
        SendMessageW(box, EM_SETSEL, 0, -1);
        user.Type(u"2 1");
        user.Expect(user.PickIndex() == u"2 1", "the named array is selected");
        user.Expect(user.Focus() == box, "typing goes on");
        user.Type(u"9");
        user.Expect(user.PickIndex() == u"2 1", "what names nothing changes nothing");
        user.Key(VK_ESCAPE);
        user.Expect(user.IsOpen() && user.Focus() != box, "Escape goes back to the array");
        user.Expect(TextOfWindow(box) == L"2 1", "and shows its index");
    });
}

TEST_F(FrameBars, FindFindsForwardsAndBackwards)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Key('F', {VK_CONTROL});
        user.Expect(FindBar(user) != nullptr, "the bar is shown");
        user.Expect(user.Focus() == GetDlgItem(FindBar(user), FindText), "the text has the keyboard");
        user.Type(u"eta");
        user.Key(VK_RETURN);
        user.Expect(user.PickIndex() == u"1", "in the first item");
        user.Key(VK_F3);
        user.Expect(user.PickIndex() == u"2 1", "in the second");
        user.Expect(user.Focus() == GetDlgItem(FindBar(user), NextButton), "Next has the keyboard");
        user.Key(VK_F3);
        user.Expect(user.PickIndex() == u"1", "and round");
        user.Key(VK_F3, {VK_SHIFT});
        user.Expect(user.PickIndex() == u"2 1", "and back");
        user.Expect(user.Focus() == GetDlgItem(FindBar(user), PreviousButton), "Previous has the keyboard");
    });
}

TEST_F(FrameBars, NotFoundIsSaid)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(FindCommand);
        user.Type(u"delta");
        user.Key(VK_RETURN);
        user.Expect(user.StatusText() == u"Not found", "the message");
        user.Expect(user.PickIndex() == u" ", "nothing moved");
    });
}

TEST_F(FrameBars, EscapeClosesTheBarAndNothingElse)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(FindCommand);
        user.Key(VK_ESCAPE);
        user.Expect(user.IsOpen() && FindBar(user) == nullptr, "only the bar is gone");
        user.Expect(user.Focus() == user.Client() || user.Focus() == user.Editor(),
                    "the array has the keyboard");
    });
    EXPECT_EQ(StoredOption(L"Find")[0], 0);
}

TEST_F(FrameBars, F3WithoutTheBarDoesNothing)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(FindCommand);
        user.Type(u"eta");
        user.Key(VK_ESCAPE);
        user.Key(VK_F3);
        user.Expect(user.PickIndex() == u" ", "nothing is selected");
        user.Expect(IsGreyed(user, FindNext) && IsGreyed(user, FindPrevious), "the items are greyed");
    });
}

TEST_F(FrameBars, TheBarAllowsWhatItsTextAllows)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(FindCommand);
        user.Expect(IsEnabled(user, IgnoreCase) && IsEnabled(user, Numeric), "empty: both boxes");
        user.Expect(!IsEnabled(user, NextButton) && !IsEnabled(user, PreviousButton), "empty: no search");
        user.Expect(IsGreyed(user, FindNext) && IsGreyed(user, FindPrevious), "nor by the menu");
        user.Type(u"x");
        user.Expect(IsEnabled(user, IgnoreCase) && !IsEnabled(user, Numeric), "text: no numbers");
        user.Expect(IsEnabled(user, NextButton) && !IsGreyed(user, FindNext), "text: a search");
        SetDlgItemTextW(FindBar(user), FindText, L"22");
        user.Wait();
        user.Expect(IsEnabled(user, IgnoreCase) && IsEnabled(user, Numeric), "number: both");
        SendMessageW(GetDlgItem(FindBar(user), Numeric), BM_CLICK, 0, 0);
        user.Expect(!IsEnabled(user, IgnoreCase), "numeric: no case");
    });
}

TEST_F(FrameBars, NumericFindsValues)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(FindCommand);
        user.Type(u"2.2E1");
        SendMessageW(GetDlgItem(FindBar(user), Numeric), BM_CLICK, 0, 0);
        user.Key(VK_F3);
        user.Expect(user.PickIndex() == u"2 2", "22 is found");
    });
}

TEST_F(FrameBars, WhatWasSoughtIsKept)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(FindCommand);
        user.Type(u"bEtA");
        SendMessageW(GetDlgItem(FindBar(user), IgnoreCase), BM_CLICK, 0, 0);
        user.Wait();
    });
    EXPECT_EQ(StoredOption(L"Find")[0], 1);
    EXPECT_EQ(StoredOption(L"Ignore case")[0], 1);
    EXPECT_EQ(StoredOption(L"Find text").size(), 512u);
    RunEdit(interpreter, Words(), [](User& user) {
        user.Expect(FindBar(user) != nullptr, "the bar is shown from the start");
        user.Expect(TextOfWindow(GetDlgItem(FindBar(user), FindText)) == L"bEtA", "the text came back");
        user.Expect(IsEnabled(user, NextButton), "it can be searched at once");
        user.Key(VK_F3);
        user.Key(VK_F3);
        user.Expect(user.PickIndex() == u"2 1", "case is ignored");
    });
}

TEST_F(FrameBars, TabGoesRoundTheFindBar)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(FindCommand);
        user.Type(u"1");
        for (const int control : {NextButton, PreviousButton, IgnoreCase, Numeric, FindText}) {
            user.Key(VK_TAB);
            user.Expect(user.Focus() == GetDlgItem(FindBar(user), control), "the next control");
        }
    });
}

TEST_F(FrameBars, InANarrowWindowTheFindTextMakesRoom)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(FindCommand);
        const auto widthOf = [&](int control) {
            RECT place{};
            GetWindowRect(GetDlgItem(FindBar(user), control), &place);
            return place.right - place.left;
        };
        const auto isInSight = [&](int control) {
            RECT place{};
            RECT bar{};
            GetWindowRect(GetDlgItem(FindBar(user), control), &place);
            GetWindowRect(FindBar(user), &bar);
            return place.right <= bar.right;
        };
        const LONG text = widthOf(FindText);
        const LONG button = widthOf(NextButton);
        MoveWindow(user.Frame(), 0, 0, 440, 400, TRUE);
        user.Wait();
        user.Expect(isInSight(Numeric), "the last control is in sight");
        user.Expect(widthOf(FindText) < text && widthOf(NextButton) == button, "the text box is narrower");
        MoveWindow(user.Frame(), 0, 0, 100, 400, TRUE);
        user.Wait();
        user.Expect(widthOf(FindText) >= text / 3 - 1, "but wide enough to type");
        MoveWindow(user.Frame(), 0, 0, 800, 400, TRUE);
        user.Wait();
        user.Expect(widthOf(FindText) == text, "and as before in a wide window");
    });
}

TEST_F(FrameBars, TheFindBarStandsBetweenToolBarAndView)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Command(FindCommand);
        RECT tools{};
        RECT find{};
        RECT view{};
        RECT status{};
        GetWindowRect(FindWindowExW(user.Frame(), nullptr, TOOLBARCLASSNAMEW, nullptr), &tools);
        GetWindowRect(FindBar(user), &find);
        GetWindowRect(user.Client(), &view);
        GetWindowRect(user.Status(), &status);
        user.Expect(tools.bottom == find.top && find.bottom == view.top && view.bottom == status.top,
                    "one below the other");
    });
}

int TextWidth(HWND window, const std::u16string& text)
{
    HDC const dc = GetDC(window);
    HGDIOBJ const previous =
        SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)));
    SIZE size{};
    GetTextExtentPoint32W(dc, reinterpret_cast<const wchar_t*>(text.c_str()), static_cast<int>(text.size()),
                          &size);
    SelectObject(dc, previous);
    ReleaseDC(window, dc);
    return size.cx;
}

RECT PlaceOf(HWND window)
{
    RECT place{};
    GetWindowRect(window, &place);
    return place;
}

RECT PartOf(const User& user, int part)
{
    RECT place{};
    SendMessageW(user.Status(), SB_GETRECT, static_cast<WPARAM>(part), reinterpret_cast<LPARAM>(&place));
    MapWindowPoints(user.Status(), nullptr, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

Array Cube()
{
    return NumericArray({2, 3, 4}, std::vector<double>(24, 7.5));
}

TEST_F(FrameBars, EachPartIsAsWideAsItsTextTheGapAndItsBorders)
{
    RunEdit(interpreter, Cube(), [](User& user) {
        int borders[3] = {};
        SendMessageW(user.Status(), SB_GETBORDERS, 0, reinterpret_cast<LPARAM>(borders));
        int edges[13] = {};
        SendMessageW(user.Status(), SB_GETPARTS, 13, reinterpret_cast<LPARAM>(edges));
        int edge = 0;
        const std::vector<std::u16string> texts = Parts(user);
        for (std::size_t i = 0; i < texts.size(); ++i) {
            edge += TextWidth(user.Status(), texts[i]) + borders[2] + 2 * borders[0];
            user.ExpectEqual(edges[i], edge, "the edge of a part");
        }
    });
}

TEST_F(FrameBars, LabelsHaveNoBordersAndValuesHave)
{
    RunEdit(interpreter, Cube(), [](User& user) {
        for (int part = 0; part < 12; ++part) {
            wchar_t text[256] = {};
            const LRESULT drawn = SendMessageW(user.Status(), SB_GETTEXTW, static_cast<WPARAM>(part),
                                               reinterpret_cast<LPARAM>(text));
            user.ExpectEqual((HIWORD(drawn) & SBT_NOBORDERS) != 0, part % 2 == 0, "borders");
        }
        wchar_t title[64] = {};
        GetWindowTextW(user.Status(), title, 64);
        user.Expect((GetWindowLongW(user.Status(), GWL_STYLE) & SBARS_SIZEGRIP) != 0, "a grip");
    });
}

TEST_F(FrameBars, TheNameBoxLeavesThePlaneInSight)
{
    RunEdit(interpreter, Cube(), [](User& user) {
        HWND const box = GetDlgItem(user.Frame(), NameBox);
        user.Expect(IsWindowVisible(box) != 0, "it is there");
        user.Expect(PlaceOf(box).right <= PartOf(user, 12).left, "the plane is not covered");
        SetFocus(box);
        user.Click(box, 1, 1);
        user.Expect(PlaceOf(box).right > PartOf(user, 12).left, "who types has room");
        user.Key(VK_ESCAPE);
        user.Expect(PlaceOf(box).right <= PartOf(user, 12).left, "the plane is back");
    });
}

TEST_F(FrameBars, TheNameBoxHoldsItsTextOnTheBarsLine)
{
    RunEdit(interpreter, Words(), [](User& user) {
        for (const char16_t* index : {u"1", u"2 2", u"3"}) {
            SendMessageW(user.Client(), 32981, 0, reinterpret_cast<LPARAM>(index));
            HWND const box = GetDlgItem(user.Frame(), NameBox);
            const DWORD margins = static_cast<DWORD>(SendMessageW(box, EM_GETMARGINS, 0, 0));
            const RECT place = PlaceOf(box);
            const RECT part = PartOf(user, 11);
            user.Expect(place.right - place.left >= TextWidth(box, index) + LOWORD(margins) + HIWORD(margins),
                        "the whole text");
            const LONG offCentre = (place.top + place.bottom) - (part.top + part.bottom);
            user.Expect(offCentre >= -1 && offCentre <= 1, "in the middle of the bar");
        }
    });
}

TEST_F(FrameBars, F6GoesRoundArrayFindBarAndNameBox)
{
    RunEdit(interpreter, Words(), [](User& user) {
        HWND const box = GetDlgItem(user.Frame(), NameBox);
        user.Key(VK_F6);
        user.Expect(user.Focus() == box, "no find bar: the name box");
        user.Key(VK_F6);
        user.Expect(user.Focus() == user.Client(), "the array");
        user.Command(FindCommand);
        user.Key(VK_F6);
        user.Expect(user.Focus() == box, "behind the find bar the name box");
        user.Key(VK_F6, {VK_SHIFT});
        user.Expect(user.Focus() == GetDlgItem(FindBar(user), FindText), "and back");
        user.Key(VK_F6, {VK_SHIFT});
        user.Expect(user.Focus() == user.Client(), "to the array");
        user.Command(4302);
        user.Key(VK_F6);
        user.Key(VK_F6);
        user.Expect(user.Focus() == user.Client(), "no status bar, no name box");
    });
}

TEST_F(FrameBars, EnterInTheNameBoxGoesToTheArrayThatItNames)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Key(VK_F6);
        user.Type(u"2 1");
        user.Key(VK_RETURN);
        user.Expect(user.PickIndex() == u"2 1", "it is selected");
        user.Expect(user.Focus() == user.Editor() && user.Editor() != nullptr, "and has the keyboard");
        user.Key(VK_F6);
        user.Type(u"2");
        user.Key(VK_TAB);
        user.Expect(user.PickIndex() == u"2" && user.Focus() == user.Client(), "Tab goes there, too");
    });
}

HWND Information(const User& user)
{
    HWND const window = GetDlgItem(user.Frame(), 32785);
    return IsWindowVisible(window) ? window : nullptr;
}

TEST_F(FrameBars, AltEnterShowsEverythingAboutTheSelectedArray)
{
    RunEdit(interpreter, Cube(), [](User& user) {
        user.Expect(Information(user) == nullptr, "nothing at first");
        user.Key(VK_RETURN, {VK_MENU});
        user.Expect(Information(user) != nullptr && user.Focus() == Information(user), "it pops up");
        user.Expect(TextOfWindow(Information(user)) ==
                        L"Type: Real\r\n≡: 1\r\n×/⍴: 24\r\n⍴⍴: 3\r\n⍴: 2 3 4\r\n⊃:  \r\n[1;;]\r\n"
                        L"Axis name 1: 2\r\nAxis name 2: 3\r\nAxis name 3: 4",
                    "all attributes and the axes' names");
        user.Expect(PlaceOf(Information(user)).bottom == PlaceOf(user.Client()).bottom, "above the bar");
        user.Key(VK_ESCAPE);
        user.Expect(user.IsOpen() && Information(user) == nullptr, "Escape hides it and nothing else");
        user.Expect(user.Focus() == user.Client() || user.Focus() == user.Editor(), "back to the array");
    });
}

TEST_F(FrameBars, AClickOnTheStatusBarShowsTheInformationAndAnotherHidesIt)
{
    RunEdit(interpreter, Words(), [](User& user) {
        user.Click(user.Status(), 20, 8);
        user.Expect(Information(user) != nullptr, "shown");
        user.Click(user.Status(), 20, 8);
        user.Expect(Information(user) == nullptr, "hidden");
        user.Click(user.Status(), 20, 8);
        user.Expect(Information(user) != nullptr, "shown again");
        user.Key(VK_F6);
        user.Expect(Information(user) == nullptr, "it goes when the keyboard goes elsewhere");
    });
}

TEST_F(FrameBars, WhiteOnBlackIsLegibleInEveryBar)
{
    constexpr COLORREF Black = RGB(0, 0, 0);
    constexpr COLORREF White = RGB(255, 255, 255);
    constexpr COLORREF Line = RGB(0, 255, 0); // what is white is text
    const SystemColors colors{{COLOR_3DFACE, Black},     {COLOR_BTNTEXT, White},    {COLOR_WINDOW, Black},
                              {COLOR_WINDOWTEXT, White}, {COLOR_3DHIGHLIGHT, Line}, {COLOR_3DSHADOW, Line},
                              {COLOR_INFOBK, Black},     {COLOR_INFOTEXT, White}};
    RunEdit(interpreter, Words(), [](User& user) {
        SendMessageW(user.Frame(), WM_SYSCOLORCHANGE, 0,
                     0); // the bars' library has kept the colours of before
        user.Command(FindCommand);
        user.Type(u"alpha");
        HWND const tools = FindWindowExW(user.Frame(), nullptr, TOOLBARCLASSNAMEW, nullptr);
        for (HWND const bar : {user.Status(), tools, FindBar(user), GetDlgItem(FindBar(user), IgnoreCase),
                               GetDlgItem(FindBar(user), NextButton)}) {
            const Picture picture = user.Shot(bar);
            const int all = picture.Width() * picture.Height();
            user.Expect(picture.Count(Black) * 10 > all * 6, "the paper is black");
            user.Expect(picture.Count(White) > 20, "the ink is white");
        }
    });
}

TEST_F(FrameBars, ColoursThatChangeWhileTheWindowIsOpenAreTakenOver)
{
    RunEdit(interpreter, Words(), [](User& user) {
        const SystemColors colors{{COLOR_3DFACE, RGB(0, 0, 0)}, {COLOR_BTNTEXT, RGB(255, 255, 0)}};
        SendMessageW(user.Frame(), WM_SYSCOLORCHANGE, 0, 0);
        user.Wait();
        user.Expect(user.Shot(user.Status()).Count(RGB(255, 255, 0)) > 20, "the status bar's ink");
        HWND const tools = FindWindowExW(user.Frame(), nullptr, TOOLBARCLASSNAMEW, nullptr);
        user.Expect(user.Shot(tools).Count(RGB(255, 255, 0)) > 20, "the tools' ink");
    });
}

} // namespace
} // namespace vantrel::ui
