// The cell editor and an input method: its composition stands where the caret is, in the text's own font.
#include <windows.h>

#include <imm.h>

#include <mutex>

#include "ui/editor_support.h"
#include "ui/library_imports.h"

namespace vantrel::ui {
namespace {

constexpr wchar_t MethodClass[] = L"input method of a test";

// What the system says of input methods, and all that the library has asked of one.
struct Method {
    bool imm = true;
    bool doubleByte = true;
    HWND window = nullptr;
    std::mutex mutex;
    std::vector<COMPOSITIONFORM> places;
    std::vector<LOGFONTW> fonts;
    std::vector<HWND> askers;
};
Method* g_method = nullptr;

LRESULT CALLBACK MethodProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != WM_IME_CONTROL || g_method == nullptr)
        return DefWindowProcW(window, message, wParam, lParam);
    const std::lock_guard lock(g_method->mutex);
    if (wParam == IMC_SETCOMPOSITIONWINDOW)
        g_method->places.push_back(*reinterpret_cast<const COMPOSITIONFORM*>(lParam));
    if (wParam == IMC_SETCOMPOSITIONFONT)
        g_method->fonts.push_back(*reinterpret_cast<const LOGFONTW*>(lParam));
    return 0;
}

int WINAPI MetricWithInputMethods(int metric)
{
    switch (metric) {
    case SM_IMMENABLED: return g_method->imm ? 1 : 0;
    case SM_DBCSENABLED: return g_method->doubleByte ? 1 : 0;
    default: return GetSystemMetrics(metric);
    }
}

HWND WINAPI WindowOfTheMethod(HWND asker)
{
    const std::lock_guard lock(g_method->mutex);
    g_method->askers.push_back(asker);
    return g_method->window;
}

// An input method in the interpreter's thread, for as long as the test lives. Wine has none that could be asked.
class EditorIme : public EditorTest {
protected:
    void SetUp() override
    {
        EditorTest::SetUp();
        static_cast<void>(Library());
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = MethodProc;
        windowClass.lpszClassName = MethodClass;
        RegisterClassW(&windowClass);
        method.window =
            CreateWindowExW(0, MethodClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        g_method = &method;
        metric_ = GetImport("GetSystemMetrics");
        methodWindow_ = GetImport("ImmGetDefaultIMEWnd");
        SetImport("GetSystemMetrics", reinterpret_cast<void*>(&MetricWithInputMethods));
        SetImport("ImmGetDefaultIMEWnd", reinterpret_cast<void*>(&WindowOfTheMethod));
    }
    void TearDown() override
    {
        SetImport("GetSystemMetrics", metric_);
        SetImport("ImmGetDefaultIMEWnd", methodWindow_);
        g_method = nullptr;
        DestroyWindow(method.window);
        UnregisterClassW(MethodClass, nullptr);
    }

    // What was asked last; nothing asked is a place that no caret has and a font that no text has.
    COMPOSITIONFORM LastPlace()
    {
        const std::lock_guard lock(method.mutex);
        return method.places.empty() ? COMPOSITIONFORM{} : method.places.back();
    }
    LOGFONTW LastFont()
    {
        const std::lock_guard lock(method.mutex);
        return method.fonts.empty() ? LOGFONTW{} : method.fonts.back();
    }
    void Forget()
    {
        const std::lock_guard lock(method.mutex);
        method.places.clear();
        method.fonts.clear();
        method.askers.clear();
    }
    void ExpectPlaceAtCaret(User& user, const char* what)
    {
        const COMPOSITIONFORM place = LastPlace();
        const User::CaretPlace caret = user.Caret();
        user.Expect(caret.window == user.Editor(), "the caret is in the editor");
        user.Expect(place.dwStyle == CFS_FORCE_POSITION, "exactly there");
        user.Expect(place.ptCurrentPos.x == caret.rect.left && place.ptCurrentPos.y == caret.rect.top, what);
    }

    Method method;

private:
    void* metric_ = nullptr;
    void* methodWindow_ = nullptr;
};

LOGFONTW FontOfText(HWND window)
{
    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)), sizeof font, &font);
    return font;
}

bool SameFont(const LOGFONTW& a, const LOGFONTW& b)
{
    return a.lfHeight == b.lfHeight && a.lfWeight == b.lfWeight &&
           std::wstring(a.lfFaceName) == std::wstring(b.lfFaceName);
}

TEST_F(EditorIme, TheCompositionStandsAtTheCaretAndFollowsIt)
{
    RunEdit(interpreter, MatrixItem(Letters()), [&](User& user) {
        user.Key(VK_TAB);
        ExpectPlaceAtCaret(user, "where the text begins");
        const POINT first = LastPlace().ptCurrentPos;
        const FontSize font = FontOf(user.Editor());
        user.Key(VK_RIGHT);
        user.Key(VK_RIGHT);
        user.Key(VK_DOWN);
        ExpectPlaceAtCaret(user, "after moving by keys");
        user.ExpectEqual(LastPlace().ptCurrentPos.x, first.x + 2 * font.character, "two characters on");
        user.ExpectEqual(LastPlace().ptCurrentPos.y, first.y + font.line, "and a line down");
        user.Type(u"x");
        ExpectPlaceAtCaret(user, "after typing");
        const POINT clicked = At(user.Editor(), 7, 3);
        user.Click(user.Editor(), clicked.x, clicked.y);
        ExpectPlaceAtCaret(user, "after a click");
        for (HWND const asker : method.askers)
            user.Expect(HWND{} != asker && IsChild(user.Client(), asker), "asked for the editor");
    });
}

TEST_F(EditorIme, TheCompositionTakesTheTextsFont)
{
    RunEdit(interpreter, MatrixItem(Letters()), [&](User& user) {
        user.Key(VK_TAB);
        Forget();
        LOGFONTW larger = FontOfText(user.Editor());
        larger.lfHeight = larger.lfHeight * 3 / 2;
        HFONT const font = CreateFontIndirectW(&larger);
        SendMessageW(user.Client(), WM_SETFONT, reinterpret_cast<WPARAM>(font), 1);
        user.Wait();
        user.Expect(SameFont(LastFont(), larger), "a new font is the composition's, too");
        user.Expect(SameFont(LastFont(), FontOfText(user.Editor())), "it is the editor's");
        ExpectPlaceAtCaret(user, "the caret has moved with it");
        Forget();
        SendMessageW(user.Editor(), WM_IME_NOTIFY, IMN_CLOSESTATUSWINDOW, 0);
        user.Expect(method.fonts.empty(), "other news of the method need none");
        SendMessageW(user.Editor(), WM_IME_NOTIFY, IMN_OPENSTATUSWINDOW, 0);
        user.Expect(SameFont(LastFont(), larger), "a method that starts is told the font");
    });
}

TEST_F(EditorIme, WithoutDoubleByteCharactersOnlyThePlaceIsTold)
{
    method.doubleByte = false;
    RunEdit(interpreter, MatrixItem(Letters()), [&](User& user) {
        user.Key(VK_TAB);
        SendMessageW(user.Editor(), WM_IME_NOTIFY, IMN_OPENSTATUSWINDOW, 0);
        ExpectPlaceAtCaret(user, "the place");
    });
    EXPECT_TRUE(method.fonts.empty());
}

TEST_F(EditorIme, WithoutInputMethodsNobodyIsAsked)
{
    method.imm = false;
    const Outcome outcome = RunEdit(interpreter, MatrixItem(Letters()), [&](User& user) {
        user.Key(VK_TAB);
        SendMessageW(user.Editor(), WM_IME_NOTIFY, IMN_OPENSTATUSWINDOW, 0);
        user.Type(u"x");
        user.Command(SaveAndClose);
    });
    EXPECT_TRUE(method.askers.empty());
    EXPECT_TRUE(method.places.empty() && method.fonts.empty());
    Expect(outcome, Matrix({U"xabcdefghij", U"klmnopqrst ", U"uvwxyzABCD ", U"EFGHIJKLMN "}));
}

TEST_F(EditorIme, AMethodThatHasGoneIsNotAsked)
{
    DestroyWindow(method.window);
    method.window = nullptr;
    const Outcome outcome = RunEdit(interpreter, MatrixItem(Letters()), [&](User& user) {
        user.Key(VK_TAB);
        user.Type(u"x");
        user.Command(SaveAndClose);
    });
    EXPECT_FALSE(method.askers.empty());
    Expect(outcome, Matrix({U"xabcdefghij", U"klmnopqrst ", U"uvwxyzABCD ", U"EFGHIJKLMN "}));
}

} // namespace
} // namespace vantrel::ui
