// What the array view paints, pixel by pixel: frames, marks, panels, restore buttons, arrows at vectors that go on.
#include <gtest/gtest.h>

#include <windows.h>

#include <uxtheme.h>

#include <algorithm>

#include "hosts/fake_matlab.h"
#include "hosts/win/matlab_libraries.h"
#include "ui/view_support.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr UINT GetPreferredSize = 32976;
constexpr int FindCommand = 4206;
constexpr int Edges3dOption = 4309;
constexpr int RankOneBarsOption = 4315;
constexpr int MinimizeCommand = 4605;
constexpr int MaximizeCommand = 4606;

class Painting : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
};

// What is displayed, margins included.
SIZE SizeOfTop(const User& user)
{
    SIZE size{};
    SendMessageW(user.Client(), GetPreferredSize, 0, reinterpret_cast<LPARAM>(&size));
    return {size.cx - GetSystemMetrics(SM_CXVSCROLL), size.cy - GetSystemMetrics(SM_CYHSCROLL)};
}

// The box of an array less its margin, where the editor stands over it. Leaves it selected.
RECT BoxOf(const User& user, const char16_t* index)
{
    SelectIndex(user, index);
    RECT rect{};
    GetWindowRect(user.Editor(), &rect);
    MapWindowPoints(nullptr, user.Client(), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

RECT Shrunk(RECT rect, int by)
{
    InflateRect(&rect, -by, -by);
    return rect;
}

// Whether all four sides of a rectangle are one pixel of a colour.
bool IsOutline(const Picture& picture, const RECT& rect, COLORREF colour)
{
    for (int x = rect.left; x < rect.right; ++x) {
        if (picture.At(x, rect.top) != colour || picture.At(x, rect.bottom - 1) != colour) return false;
    }
    for (int y = rect.top; y < rect.bottom; ++y) {
        if (picture.At(rect.left, y) != colour || picture.At(rect.right - 1, y) != colour) return false;
    }
    return true;
}

// --- frames ---

TEST_F(Painting, AScalarStandsInAThinFrame)
{
    RunEdit(interpreter, NestedArray({2}, {Number(5), Text(u"ab")}), [](User& user) {
        const RECT box = Shrunk(BoxOf(user, u"1"), -1); // the editor of a scalar is a pixel smaller
        SelectIndex(user, u" ");
        const Picture picture = user.Shot(user.Client());
        const RECT content = Shrunk(box, EdgeWidth());
        user.Expect(IsOutline(picture, Shrunk(content, -1), GetSysColor(COLOR_WINDOWFRAME)), "the frame");
        user.Expect(IsOutline(picture, Shrunk(content, -2), GetSysColor(COLOR_3DFACE)), "nothing around it");
        user.Expect(IsOutline(picture, content, GetSysColor(COLOR_WINDOW)), "the panel inside");
    });
}

TEST_F(Painting, AVectorStandsInASunkenEdge)
{
    RunEdit(interpreter, NestedArray({2}, {Text(u"ab"), Text(u"c")}), [](User& user) {
        const RECT box = BoxOf(user, u"1");
        SelectIndex(user, u" ");
        const Picture picture = user.Shot(user.Client());
        const int y = (box.top + box.bottom) / 2;
        const int x = box.right - 6; // behind the text
        user.Expect(IsOutline(picture, box, GetSysColor(COLOR_3DFACE)), "a pixel of face");
        user.ExpectEqual(picture.At(box.left + 1, y), GetSysColor(COLOR_3DSHADOW), "dark at the left");
        user.ExpectEqual(picture.At(x, box.top + 1), GetSysColor(COLOR_3DSHADOW), "and at the top");
        user.ExpectEqual(picture.At(box.right - 2, y), GetSysColor(COLOR_3DHIGHLIGHT), "light at the right");
        user.ExpectEqual(picture.At(x, box.bottom - 2), GetSysColor(COLOR_3DHIGHLIGHT), "and at the bottom");
        user.Expect(IsOutline(picture, Shrunk(box, EdgeWidth()), GetSysColor(COLOR_WINDOW)),
                    "then the panel");
    });
}

TEST_F(Painting, TheSelectionAndAMaximisedBoxAreOutlined)
{
    const Array nest = NestedArray({2}, {NestedArray({2}, {Text(u"a"), Text(u"b")}), Text(u"c")});
    RunEdit(interpreter, nest, [](User& user) {
        Switch(user, Edges3dOption, true); // frames without colours
        const COLORREF active = GetSysColor(COLOR_ACTIVECAPTION);
        const auto outline = [&](int grownBy) {
            const SIZE size = SizeOfTop(user);
            return Shrunk({0, 0, size.cx, size.cy}, Margin - grownBy);
        };
        const Picture whole = user.Shot(user.Client());
        user.Expect(IsOutline(whole, outline(1), active), "the whole array is selected");
        user.Expect(IsOutline(whole, outline(2), GetSysColor(COLOR_3DFACE)), "by one line");
        const RECT inner = BoxOf(user, u"2");
        const Picture item = user.Shot(user.Client());
        user.Expect(IsOutline(item, Shrunk(inner, -1), active), "an item with its editor");
        user.Expect(!IsOutline(item, outline(1), active), "and the whole array no more");
        SelectIndex(user, u"1");
        user.Command(MaximizeCommand);
        const Picture maximised = user.Shot(user.Client());
        user.Expect(IsOutline(maximised, outline(1), active), "a maximised box is marked as selected");
        user.Expect(IsOutline(maximised, outline(2), RGB(255, 0, 0)), "and in red around that");
        SelectIndex(user, u"1 2");
        user.Expect(IsOutline(user.Shot(user.Client()), outline(2), RGB(255, 0, 0)),
                    "which stays while an item is selected");
        Switch(user, Edges3dOption, false);
    });
}

// A system setting that is put back in the end.
class GradientCaptions {
public:
    explicit GradientCaptions(bool on)
    {
        SystemParametersInfoW(SPI_GETGRADIENTCAPTIONS, 0, &before_, 0);
        Set(on);
    }
    ~GradientCaptions() { Set(before_ != FALSE); }
    GradientCaptions(const GradientCaptions&) = delete;
    GradientCaptions& operator=(const GradientCaptions&) = delete;

private:
    static void Set(bool on)
    {
        SystemParametersInfoW(SPI_SETGRADIENTCAPTIONS, 0,
                              reinterpret_cast<void*>(static_cast<INT_PTR>(on ? TRUE : FALSE)), 0);
    }
    BOOL before_ = FALSE;
};

bool IsNear(COLORREF a, COLORREF b)
{
    return std::abs(GetRValue(a) - GetRValue(b)) <= 2 && std::abs(GetGValue(a) - GetGValue(b)) <= 2 &&
           std::abs(GetBValue(a) - GetBValue(b)) <= 2;
}

TEST_F(Painting, FramesAreGradientsWhereCaptionsAre)
{
    RunEdit(interpreter, NestedArray({2}, {NestedArray({1}, {Text(u"wide enough")}), Text(u"c")}),
            [](User& user) {
                const SIZE size = SizeOfTop(user);
                const int left = Margin;
                const int right = size.cx - Margin - 1;
                const int y = size.cy / 2;
                const RECT inner = BoxOf(user, u"1 1");
                SelectIndex(user, u" ");
                const int innerLeft = inner.left - Margin - EdgeWidth();
                const int innerRight = inner.right + Margin + EdgeWidth() - 1;
                {
                    const GradientCaptions gradient(true);
                    const Picture picture = user.Shot(user.Client());
                    user.ExpectEqual(picture.At(left, y), GetSysColor(COLOR_ACTIVECAPTION),
                                     "the selected frame's left");
                    user.Expect(IsNear(picture.At(right, y), GetSysColor(COLOR_GRADIENTACTIVECAPTION)),
                                "and right");
                    user.ExpectEqual(picture.At(innerLeft, y), GetSysColor(COLOR_INACTIVECAPTION),
                                     "another's left");
                    user.Expect(IsNear(picture.At(innerRight, y), GetSysColor(COLOR_GRADIENTINACTIVECAPTION)),
                                "and right");
                }
                const GradientCaptions plain(false);
                const Picture picture = user.Shot(user.Client());
                user.ExpectEqual(picture.At(left, y), GetSysColor(COLOR_ACTIVECAPTION),
                                 "plain: the selected frame");
                user.ExpectEqual(picture.At(right, y), GetSysColor(COLOR_ACTIVECAPTION), "on both sides");
                user.ExpectEqual(picture.At(innerRight, y), GetSysColor(COLOR_INACTIVECAPTION),
                                 "and the other");
            });
}

// --- panels ---

// A system colour that is put back in the end.
class SystemColour {
public:
    SystemColour(int index, COLORREF colour) : index_(index), before_(GetSysColor(index))
    {
        SetSysColors(1, &index_, &colour);
    }
    ~SystemColour() { SetSysColors(1, &index_, &before_); }
    SystemColour(const SystemColour&) = delete;
    SystemColour& operator=(const SystemColour&) = delete;

private:
    int index_;
    COLORREF before_;
};

TEST_F(Painting, NumbersAreTintedModulo255)
{
    RunEdit(interpreter, NestedArray({2}, {FloatArray({2}, {888.5, 8}), Text(u"text")}), [](User& user) {
        const SystemColour colour(COLOR_WINDOWTEXT, RGB(255, 191, 31));
        user.Wait();
        const Picture picture = user.Shot(user.Client());
        user.Expect(picture.Count(RGB(64, 0, 0)) > 20, "numbers: each component is shifted and wraps at 255");
        user.Expect(picture.Count(RGB(255, 191, 31)) > 10, "text has the system's colour");
    });
}

// Where a colour stands in a part of a picture.
std::vector<POINT> PlacesOf(const Picture& picture, COLORREF colour, const RECT& area)
{
    std::vector<POINT> places;
    for (int y = area.top; y < area.bottom; ++y) {
        for (int x = area.left; x < area.right; ++x) {
            if (picture.At(x, y) == colour) places.push_back({x, y});
        }
    }
    return places;
}

TEST_F(Painting, NoCharacterMovesWhenItsArrayIsSelected)
{
    const Array nest = NestedArray({5}, {Text(u"text"), FloatArray({2}, {888.5, 8}), Number(42),
                                         TextOf({2, 3}, u"abcdef"), TextOf({2, 1, 2, 3}, u"ghijklmnopqr")});
    RunEdit(interpreter, nest, [](User& user) {
        for (const char16_t* const index : {u"1", u"2", u"3", u"4", u"5"}) {
            const RECT box = BoxOf(user, index);
            user.Command(FindCommand); // the keyboard and the caret go elsewhere
            const Picture open = user.Shot(user.Client());
            SelectIndex(user, u" ");
            const Picture closed = user.Shot(user.Client());
            const bool isNumber = index[0] == u'2' || index[0] == u'3';
            const COLORREF ink = isNumber ? RGB(64, 64, 224) : GetSysColor(COLOR_WINDOWTEXT);
            // Beside the small bars, whose arrows have the text's colour.
            const bool hasBars = index[0] >= u'4';
            const RECT area{box.left + 2, box.top + 2, box.right - 2 - (hasBars ? 19 : 0),
                            box.bottom - 2 - (hasBars ? 19 : 0)};
            const auto places = PlacesOf(open, ink, area);
            // The frames of a rank above 2 stand where the editor begins.
            const int frames = index[0] == u'5' ? 2 * 2 * EdgeWidth() : 0;
            const auto same = [frames](const POINT& a, const POINT& b) {
                return a.x + frames == b.x && a.y == b.y;
            };
            const auto painted = PlacesOf(closed, ink, area);
            user.Expect(places.size() > 10, "its text shows");
            user.Expect(std::equal(places.begin(), places.end(), painted.begin(), painted.end(), same),
                        "where the view paints it");
        }
    });
}

TEST_F(Painting, AnUnselectedArrayShowsItsCurrentPlane)
{
    const Array planes = TextOf({2, 2, 8}, u"WWWWWWWWMMMMMMMM................");
    RunEdit(interpreter, NestedArray({2}, {planes, Text(u"b")}), [](User& user) {
        const RECT box = BoxOf(user, u"1");
        const auto ink = [&] { return user.Shot(user.Client()).Count(GetSysColor(COLOR_WINDOWTEXT), box); };
        SelectIndex(user, u"2");
        const int letters = ink();
        SelectIndex(user, u"1");
        user.Key(VK_DOWN, {VK_MENU});
        SelectIndex(user, u"2");
        user.Expect(ink() < letters / 2, "dots instead of letters");
    });
}

TEST_F(Painting, ANumericFindGreysText)
{
    const Array nest = NestedArray({3}, {Text(u"text 22"), FloatArray({2}, {22, 8}), Text(u"c")});
    RunEdit(interpreter, nest, [](User& user) {
        const RECT text = Shrunk(BoxOf(user, u"1"), EdgeWidth());
        const RECT numbers = Shrunk(BoxOf(user, u"2"), EdgeWidth());
        SelectIndex(user, u" ");
        const auto panel = [&](const RECT& area) {
            return user.Shot(user.Client()).Count(GetSysColor(COLOR_WINDOW), area);
        };
        user.Expect(panel(text) > 200, "text on the window's colour");
        user.Command(FindCommand);
        user.Type(u"22");
        HWND const bar = FindWindowExW(user.Frame(), nullptr, L"#32770", nullptr);
        SendMessageW(GetDlgItem(bar, 112), BM_CLICK, 0, 0);
        user.Wait();
        user.ExpectEqual(panel(text), 0, "text on the face");
        user.Expect(user.Shot(user.Client()).Count(GetSysColor(COLOR_GRAYTEXT), text) > 20, "is grey");
        user.Expect(panel(numbers) > 100, "numbers are as before");
        SendMessageW(GetDlgItem(bar, 112), BM_CLICK, 0, 0);
        user.Wait();
        user.Expect(panel(text) > 200, "and text again without it");
    });
}

TEST_F(Painting, NamesOfFieldsAreGreyAndNotEdited)
{
    std::string reason;
    ASSERT_TRUE(LoadMatlabLibraries(reason)) << reason;
    const auto mex = reinterpret_cast<MexFunction>(LibraryEntry("mexFunction"));
    ASSERT_NE(mex, nullptr);
    Matlab matlab;
    RunWithUser(
        [&] {
            matlab.Call(mex, 1, {StructValue({1, 1}, {"name"}, {TextValue(u"value")})});
        },
        [](User& user) {
            user.Key(VK_TAB);
            user.Expect(user.Editor() == nullptr, "the field's name has no editor");
            const Picture picture = user.Shot(user.Client());
            user.Expect(picture.Count(GetSysColor(COLOR_GRAYTEXT)) > 20, "and is grey");
            user.Key(VK_TAB);
            user.Expect(user.Editor() != nullptr, "its value has one");
            const RECT value = BoxOf(user, user.PickIndex().c_str());
            user.Expect(picture.Count(GetSysColor(COLOR_WINDOWTEXT), value) > 20, "and is black");
        });
}

// --- the editor's way to another array ---

// Where a window was whenever it painted itself or its border; written by a hook on the thread of the window.
struct PaintedPlaces {
    HWND window = nullptr;
    std::vector<RECT> places;
};

PaintedPlaces g_painted;

LRESULT CALLBACK NotePaint(int code, WPARAM wParam, LPARAM lParam)
{
    const auto& message = *reinterpret_cast<const CWPSTRUCT*>(lParam);
    const bool paints = message.message == WM_PAINT || message.message == WM_NCPAINT;
    if (code >= 0 && paints && message.hwnd == g_painted.window) {
        RECT place{};
        GetWindowRect(message.hwnd, &place);
        g_painted.places.push_back(place);
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

// A vector's editor has no scroll bars, a matrix's has; both are the same window.
TEST_F(Painting, TheEditorPaintsNothingBeforeItIsAtItsPlace)
{
    std::vector<Array> items(40, Text(u"item"));
    items.push_back(TextOf({2, 3}, u"abcdef"));
    RunEdit(interpreter, NestedArray({41, 1}, items), [](User& user) {
        SelectIndex(user, u"(1 1)");
        user.Wait();
        g_painted.window = user.Editor();
        g_painted.places.clear();
        HHOOK const hook = SetWindowsHookExW(WH_CALLWNDPROC, NotePaint, nullptr,
                                             GetWindowThreadProcessId(user.Frame(), nullptr));
        SelectIndex(user, u"(41 1)");
        UnhookWindowsHookEx(hook);
        RECT place{};
        GetWindowRect(user.Editor(), &place);
        user.Expect(user.Editor() == g_painted.window, "one window for both");
        user.Expect(!g_painted.places.empty(), "it is painted at once");
        user.Expect(std::all_of(g_painted.places.begin(), g_painted.places.end(),
                                [&](const RECT& painted) { return EqualRect(&painted, &place) != FALSE; }),
                    "only where it belongs");
    });
}

// --- restore buttons ---

enum class Button { Normal = 1, Hot = 2, Pressed = 3 };

// What the system draws for a restore button.
Picture SystemButton(int side, Button state)
{
    Picture picture(side, side);
    BITMAPINFO format{};
    format.bmiHeader = {sizeof(BITMAPINFOHEADER), side, -side, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    HDC const dc = CreateCompatibleDC(nullptr);
    HBITMAP const bitmap = CreateDIBSection(dc, &format, DIB_RGB_COLORS, &bits, nullptr, 0);
    HGDIOBJ const previous = SelectObject(dc, bitmap);
    RECT area{0, 0, side, side};
    FillRect(dc, &area, GetSysColorBrush(COLOR_3DFACE));
    if (HTHEME const theme = OpenThemeData(nullptr, L"WINDOW")) {
        DrawThemeBackground(theme, dc, 21, static_cast<int>(state), &area, nullptr);
        CloseThemeData(theme);
    } else {
        const UINT pushed = state == Button::Pressed ? DFCS_PUSHED : 0U;
        DrawFrameControl(dc, &area, DFC_CAPTION, DFCS_CAPTIONRESTORE | pushed);
    }
    GdiFlush();
    for (int i = 0; i < side * side; ++i) {
        const std::uint32_t value = static_cast<const std::uint32_t*>(bits)[i];
        picture.Data()[i] = ((value & 0xFF) << 16) | (value & 0xFF00) | ((value >> 16) & 0xFF);
    }
    SelectObject(dc, previous);
    DeleteObject(bitmap);
    DeleteDC(dc);
    return picture;
}

bool ShowsButton(const User& user, POINT corner, int side, Button state)
{
    const Picture picture = user.Shot(user.Client());
    const Picture expected = SystemButton(side, state);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            if (picture.At(corner.x + x, corner.y + y) != expected.At(x, y)) return false;
        }
    }
    return true;
}

TEST_F(Painting, AClosedBoxIsTheSystemsRestoreButton)
{
    RunEdit(interpreter, NestedArray({2}, {Text(u"a"), Text(u"b")}), [](User& user) {
        const RECT box = BoxOf(user, u"1");
        user.Command(MinimizeCommand);
        SelectIndex(user, u"2");
        const int inset = EdgeWidth() + 1;
        const POINT corner{box.left + inset, box.top + inset};
        const int side = FontOf(user.Client()).line - 2;
        user.Mouse(user.Client(), {200, 200});
        user.Expect(ShowsButton(user, corner, side, Button::Normal), "at rest");
        user.Mouse(user.Client(), {corner.x + 3, corner.y + 3});
        user.Expect(ShowsButton(user, corner, side, IsThemed() ? Button::Hot : Button::Normal),
                    "under the pointer");
        user.Mouse(user.Client(), {corner.x + 3, corner.y + 3}, MOUSEEVENTF_LEFTDOWN);
        user.Expect(ShowsButton(user, corner, side, Button::Pressed), "pressed");
        user.Mouse(user.Client(), {200, 200});
        user.Expect(ShowsButton(user, corner, side, Button::Normal), "left while it is pressed");
        user.Mouse(user.Client(), {200, 200}, MOUSEEVENTF_LEFTUP);
        user.ExpectEqual(user.PickIndex(), u"1", "the press has selected the box");
        user.Expect(ShowsButton(user, corner, side, Button::Normal), "and left it closed");
    });
}

// --- arrows at vectors that go on ---

void StoreOpacities(std::uint8_t arrow, std::uint8_t edge)
{
    StoreOption(L"Rank one arrow opacity", {arrow, 0, 0, 0});
    StoreOption(L"Rank one edge opacity", {edge, 0, 0, 0});
}

// Pixels that are neither text nor panel.
int Shaded(const Picture& picture, const RECT& area)
{
    const int all = (area.right - area.left) * (area.bottom - area.top);
    return all - picture.Count(GetSysColor(COLOR_WINDOW), area) -
           picture.Count(GetSysColor(COLOR_WINDOWTEXT), area);
}

// The view's picture of a vector of many lines, which are wider and more than its box holds.
struct VectorPicture {
    int left, top, right, bottom; // shaded pixels at the sides
};

VectorPicture LookAtVector(User& user)
{
    const RECT content = Shrunk(BoxOf(user, u"(1 1)"), EdgeWidth());
    SelectIndex(user, u" ");
    const Picture picture = user.Shot(user.Client());
    constexpr int Deep = 12;
    const int middleX = (content.left + content.right) / 2;
    const int middleY = (content.top + content.bottom) / 2;
    const auto shaded = [&](int left, int top, int right, int bottom) {
        return Shaded(picture, {left, top, right, bottom});
    };
    return {shaded(content.left, middleY - 20, content.left + Deep, middleY + 20),
            shaded(middleX - 20, content.top, middleX + 20, content.top + Deep),
            shaded(content.right - Deep, middleY - 20, content.right, middleY + 20),
            shaded(middleX - 20, content.bottom - Deep, middleX + 20, content.bottom)};
}

Array LongVector()
{
    std::u16string text;
    for (int line = 0; line < 60; ++line)
        text += std::u16string(200, u'-') + u"\r\n";
    return NestedArray({2, 1}, {Text(text), Text(u"b")});
}

TEST_F(Painting, AVectorThatGoesOnShowsArrowsThere)
{
    RunEdit(interpreter, LongVector(), [](User& user) {
        const VectorPicture start = LookAtVector(user);
        user.Expect(start.right > 100 && start.bottom > 100, "more to the right and below");
        user.Expect(start.left == 0 && start.top == 0, "nothing to the left and above");
        SelectIndex(user, u"(1 1)");
        user.Key(VK_END);
        user.Key(VK_END, {VK_CONTROL});
        user.Key(VK_UP);
        user.Key(VK_END);
        const VectorPicture end = LookAtVector(user);
        user.Expect(end.left > 100 && end.top > 100, "more to the left and above");
        user.Expect(end.right == 0, "nothing to the right");
        Switch(user, RankOneBarsOption, true);
        const VectorPicture bars = LookAtVector(user);
        user.Expect(bars.left == 0 && bars.top == 0, "scroll bars tell it by themselves");
    });
}

TEST_F(Painting, TheArrowsHaveTheirOpacities)
{
    const auto look = [&](std::uint8_t arrow, std::uint8_t edge) {
        VectorPicture picture{};
        StoreOpacities(arrow, edge);
        RunEdit(interpreter, LongVector(), [&](User& user) { picture = LookAtVector(user); });
        return picture.right;
    };
    const int edges = look(0, 30);
    const int arrows = look(50, 0);
    EXPECT_EQ(look(0, 0), 0);
    EXPECT_GT(arrows, 20);
    EXPECT_GT(edges, arrows);
}

} // namespace
} // namespace vantrel::ui
