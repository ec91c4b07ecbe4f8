// White on black, as users with weak eyes have it: what is written in the array view and in the cell editor stands out from its paper.
#include <algorithm>
#include <cmath>

#include "ui/editor_support.h"
#include "ui/system_colors.h"

namespace vantrel::ui {
namespace {

constexpr COLORREF Black = RGB(0, 0, 0);
constexpr COLORREF White = RGB(255, 255, 255);
constexpr COLORREF Green = RGB(63, 242, 63);  // what cannot be changed
constexpr COLORREF Cyan = RGB(26, 235, 255);  // what is selected
constexpr COLORREF Purple = RGB(128, 0, 128); // frames

// The least that large text needs to be read by weak eyes.
constexpr double LeastContrast = 3.0;

double Linear(int component)
{
    const double part = component / 255.0;
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double Luminance(COLORREF color)
{
    return 0.2126 * Linear(GetRValue(color)) + 0.7152 * Linear(GetGValue(color)) +
           0.0722 * Linear(GetBValue(color));
}

double ContrastOf(COLORREF a, COLORREF b)
{
    const auto [dark, light] = std::minmax(Luminance(a), Luminance(b));
    return (light + 0.05) / (dark + 0.05);
}

// Pixels that can be told from the paper, or -1 when something other than the paper cannot, or when most is not paper.
int LegiblePixels(const Picture& picture, const RECT& part, COLORREF paper)
{
    int ink = 0;
    for (int y = part.top; y < part.bottom; ++y) {
        for (int x = part.left; x < part.right; ++x) {
            const COLORREF color = picture.At(x, y);
            if (color == paper) continue;
            if (ContrastOf(color, paper) < LeastContrast) return -1;
            ++ink;
        }
    }
    return 2 * ink < (part.right - part.left) * (part.bottom - part.top) ? ink : -1;
}

constexpr std::pair<int, COLORREF> Theme[] = {{COLOR_WINDOW, Black},
                                              {COLOR_WINDOWTEXT, White},
                                              {COLOR_3DFACE, Black},
                                              {COLOR_BTNTEXT, White},
                                              {COLOR_GRAYTEXT, Green},
                                              {COLOR_HIGHLIGHT, Cyan},
                                              {COLOR_HIGHLIGHTTEXT, Black},
                                              {COLOR_MENUBAR, Black},
                                              {COLOR_MENUTEXT, White},
                                              {COLOR_3DSHADOW, White},
                                              {COLOR_3DHIGHLIGHT, White},
                                              {COLOR_ACTIVECAPTION, Purple},
                                              {COLOR_INACTIVECAPTION, Black},
                                              {COLOR_GRADIENTACTIVECAPTION, Purple},
                                              {COLOR_GRADIENTINACTIVECAPTION, Black}};

class Contrast : public EditorTest {
protected:
    SystemColors colors{Theme};
};

// The text of the item, where the editor stands when it is selected.
RECT TextOfItem(User& user, const char16_t* index)
{
    SelectIndex(user, index);
    user.Wait();
    RECT area = EditorRect(user);
    InflateRect(&area, -(EdgeWidth() + 1), -(EdgeWidth() + 1));
    return area;
}

TEST_F(Contrast, TheViewsTextsNumbersAndPrototypesAreLegibleOnBlack)
{
    const Array argument = NestedArray({3}, {Text(u"WORDS WORDS"), NumericArray({3}, {888, 888, 888}),
                                             EmptyNestedArray({0}, Text(u"PROTOTYPE"))});
    RunEdit(interpreter, argument, [](User& user) {
        const RECT words = TextOfItem(user, u"1");
        const RECT numbers = TextOfItem(user, u"2");
        SelectIndex(user, u"");
        user.Wait();
        const Picture picture = user.Shot(user.Client());
        user.Expect(LegiblePixels(picture, words, Black) > 50, "texts");
        user.Expect(picture.Count(White, words) > 50, "are white");
        user.Expect(LegiblePixels(picture, numbers, Black) > 50, "numbers");
        user.Expect(picture.Count(White, numbers) == 0, "in their own colour");
        user.Expect(picture.Count(Green) > 50, "what is not there is green");
        user.Expect(ContrastOf(Green, Black) > LeastContrast, "on black");
    });
}

TEST_F(Contrast, FramesStandOutFromThePaper)
{
    RunEdit(interpreter, NestedArray({2}, {Text(u"ab"), Text(u"cd")}), [](User& user) {
        const Picture inner = user.Shot(user.Client());
        user.Expect(inner.Count(White) > 100, "edges are white");
        user.Expect(inner.Count(Purple) > 100, "the selected frame has its colour");
        SelectIndex(user, u"1");
        user.Wait();
        user.Expect(user.Shot(user.Client()).Count(Purple) < inner.Count(Purple),
                    "which goes with the selection");
    });
}

TEST_F(Contrast, TheEditorsTextSelectionAndRulerAreLegibleOnBlack)
{
    StoreFlag(L"Line numbers", 0); // their colour is no theme's
    RunEdit(interpreter, Matrix(Letters()), [](User& user) {
        HWND const editor = user.Editor();
        const FontSize font = FontOf(editor);
        const RECT text{Rim, Rim + font.line, Rim + 10 * font.character, Rim + 5 * font.line};
        const RECT ruler{Rim, Rim, Rim + 10 * font.character, Rim + font.line};
        user.Key(VK_END, {VK_CONTROL}); // the caret leaves the letters
        const Picture plain = user.Shot(editor);
        user.Expect(LegiblePixels(plain, text, Black) > 200 && plain.Count(White, text) > 200, "letters");
        user.Expect(LegiblePixels(plain, ruler, Black) > 10, "the ruler");
        SendMessageW(editor, SelectAllMessage, 0, 0);
        const Picture selected = user.Shot(editor);
        user.Expect(LegiblePixels(selected, text, Cyan) > 200, "the selection");
        user.ExpectEqual(selected.Count(White, text), 0, "has no letter of the usual colour");
        user.Key(VK_END, {VK_CONTROL});
        SendMessageW(editor, EM_SETREADONLY, TRUE, 0);
        const Picture readOnly = user.Shot(editor);
        user.Expect(LegiblePixels(readOnly, text, Black) > 200 && readOnly.Count(Green, text) > 200,
                    "text that may not change");
    });
}

} // namespace
} // namespace vantrel::ui
