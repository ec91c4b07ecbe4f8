#include "tools/win/fonts.h"

#include <commdlg.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "entry/trace.h"
#include "resources/resource.h"
#include "tools/win/options.h"
#include "tools/win/window.h"

namespace vantrel {

namespace {

constexpr char DefaultFace[] = "APL385 Unicode";
constexpr LONG SmallestHeight = 6; // pixels
constexpr LONG LargestHeight = 400;
constexpr wchar_t FontCopyProperty[] = L"quillmoor vantrel font";

static_assert(sizeof(LOGFONTA) == 60, "the size is part of the stored value");

// The array-language symbols beyond Latin-1 that interpreters write.
constexpr char16_t ArraySymbols[] = u"⌶⌷⌸⌹⌺⌻⌼⌽⌾⌿⍀⍃⍄⍅⍆⍇⍈⍉⍊⍋⍌⍍⍎⍏⍐⍑⍒⍓⍔⍕⍖⍗⍙⍚⍛⍝⍞⍟⍠⍡⍢⍣⍤⍥⍦⍧⍨⍪⍫⍬⍭⍯⍱⍲⍳⍴⍵⍷⍸⍺"
                                    u"⎕⌈⌊∆∇∊∘∣∧∨∩∪∼≠≡≢≤≥⊂⊃⊆⊣⊢⊤⊥⋄⋆←↑→↓○";
static_assert(std::size(ArraySymbols) - 1 == 92);

// Faces with half-width and full-width characters call themselves fixed, too; these two would be wider there.
constexpr char16_t FullWidthProbes[] = u"一あ";

HANDLE g_carriedFont = nullptr;

void MeasureCharacters(void* device, char16_t first, char16_t last, std::int32_t* widths)
{
    if (!GetCharWidth32W(static_cast<HDC>(device), first, last, widths)) {
        std::fill(widths, widths + (last - first + 1), 0);
    }
}

std::int32_t MeasureCharacter(HDC dc, char16_t character) noexcept
{
    std::int32_t width = 0;
    MeasureCharacters(dc, character, character, &width);
    return width;
}

// Some faces claim one width and keep to it only for Latin text, so the claim is checked on everything that will be measured anyway.
bool IsFixedPitch(HDC dc, const TEXTMETRICW& metrics) noexcept
{
    if ((metrics.tmPitchAndFamily & TMPF_FIXED_PITCH) != 0)
        return false; // the bit means the opposite of its name
    std::int32_t latin[255];
    MeasureCharacters(dc, 1, 255, latin);
    const std::int32_t width = latin[u'0' - 1];
    const auto isOther = [dc, width](char16_t character) { return MeasureCharacter(dc, character) != width; };
    // Control characters are never drawn as such and some faces give them no width.
    if (std::any_of(latin + 31, latin + 126, [width](std::int32_t other) { return other != width; }))
        return false;
    if (std::any_of(latin + 159, latin + 255, [width](std::int32_t other) { return other != width; }))
        return false;
    if (std::any_of(ArraySymbols, std::end(ArraySymbols) - 1, isOther)) return false;
    return std::none_of(FullWidthProbes, std::end(FullWidthProbes) - 1, isOther);
}

LOGFONTA StoredLogFont() noexcept
{
    LOGFONTA logFont{};
    if (ReadOption(nullptr, u"Font", &logFont, sizeof logFont) != 0) logFont = GetDefaultLogFont();
    logFont.lfFaceName[LF_FACESIZE - 1] = '\0';
    ValidateLogFontA(logFont);
    return logFont;
}

bool IsDefaultFaceInstalled() noexcept
{
    // The font that will be used, but of a size that nobody uses: the system remembers the substitute that it chose for a missing face, and would go
    // on using it for that size after the carried font is there.
    LOGFONTA probe = StoredLogFont();
    probe.lfHeight = 997;
    const HFONT font = CreateFontIndirectA(&probe);
    char face[LF_FACESIZE] = "";
    TEXTMETRICA metrics{};
    {
        const WindowDc dc(nullptr);
        const SelectedObject selected(dc, font);
        GetTextFaceA(dc, LF_FACESIZE, face);
        GetTextMetricsA(dc, &metrics);
    }
    DeleteObject(font);
    return std::strcmp(face, DefaultFace) == 0 && metrics.tmWeight == FW_NORMAL && metrics.tmItalic == 0 &&
           metrics.tmUnderlined == 0 && metrics.tmStruckOut == 0;
}

bool GetWindowLogFont(HWND window, LOGFONTW& logFont) noexcept
{
    const auto font = reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0));
    return font != nullptr && GetObjectW(font, sizeof logFont, &logFont) != 0;
}

void GiveFont(HWND window, const LOGFONTW& logFont) noexcept
{
    const HFONT font = CreateFontIndirectW(&logFont);
    if (font == nullptr) return;
    CopyFontToWindow(window, font);
    DeleteObject(font);
}

} // namespace

LOGFONTA GetDefaultLogFont() noexcept
{
    const WindowDc screen(nullptr);
    LOGFONTA logFont{};
    logFont.lfHeight = MulDiv(12, GetDeviceCaps(screen, LOGPIXELSY), 72);
    logFont.lfWeight = FW_NORMAL;
    logFont.lfPitchAndFamily = FIXED_PITCH;
    std::memcpy(logFont.lfFaceName, DefaultFace, sizeof DefaultFace);
    return logFont;
}

HFONT GetDefaultFont() noexcept
{
    const TraceScope trace("fonts.cpp", "GetDefaultFont");
    const LOGFONTA logFont = StoredLogFont();
    return CreateFontIndirectA(&logFont);
}

void ValidateLogFontA(LOGFONTA& logFont) noexcept
{
    // Their glyphs sit at code points of an old host code page, not at Unicode's.
    static constexpr const char* Unusable[] = {"APL2", "APL2 Image", "Courier APL2", "Courier APL2 Bold"};
    const auto isFace = [&logFont](const char* face) { return std::strcmp(logFont.lfFaceName, face) == 0; };
    if (std::any_of(std::begin(Unusable), std::end(Unusable), isFace)) logFont = GetDefaultLogFont();
}

bool DefaultFontLoad() noexcept
{
    const TraceScope trace("fonts.cpp", "DefaultFontLoad");
    if (g_carriedFont != nullptr || IsDefaultFaceInstalled()) return true;
    const HINSTANCE module = ModuleInstance();
    const HRSRC resource =
        FindResourceW(module, MAKEINTRESOURCEW(IDF_DEFAULT_FONT), MAKEINTRESOURCEW(8)); // RT_FONT
    if (resource == nullptr) return false;
    void* bytes = LockResource(LoadResource(module, resource));
    if (bytes == nullptr) return false;
    DWORD fonts = 0;
    g_carriedFont = AddFontMemResourceEx(bytes, SizeofResource(module, resource), nullptr, &fonts);
    return g_carriedFont != nullptr;
}

void DefaultFontRelease() noexcept
{
    if (g_carriedFont == nullptr) return;
    RemoveFontMemResourceEx(g_carriedFont);
    g_carriedFont = nullptr;
}

void FontDlg(HWND window)
{
    const TraceScope trace("fonts.cpp", "FontDlg");
    LOGFONTW logFont{};
    if (!GetWindowLogFont(window, logFont)) return;
    CHOOSEFONTW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = GetTopWindowOf(window);
    dialog.lpLogFont = &logFont;
    dialog.Flags = CF_SCREENFONTS | CF_INITTOLOGFONTSTRUCT | CF_NOVERTFONTS | CF_FORCEFONTEXIST;
    if (ChooseFontW(&dialog)) GiveFont(window, logFont);
}

void ChangeFontSize(HWND window, std::int32_t delta)
{
    const TraceScope trace("fonts.cpp", "ChangeFontSize");
    LOGFONTW logFont{};
    const LONG steps = delta / WHEEL_DELTA;
    if (steps == 0 || !GetWindowLogFont(window, logFont)) return;
    const LONG height = std::abs(logFont.lfHeight);
    const LONG changed = std::clamp(height + steps * std::max(height / 8, 1L), SmallestHeight, LargestHeight);
    if (changed == height) return;
    // Negative heights count without the font's leading; they stay of their kind.
    logFont.lfHeight = logFont.lfHeight < 0 ? -changed : changed;
    logFont.lfWidth = 0;
    GiveFont(window, logFont);
}

void CopyFontToWindow(HWND window, HFONT font) noexcept
{
    const TraceScope trace("fonts.cpp", "CopyFontToWindow");
    const HANDLE previous = RemovePropW(window, FontCopyProperty);
    LOGFONTW logFont{};
    if (font != nullptr && GetObjectW(font, sizeof logFont, &logFont) != 0) {
        const HFONT copy = CreateFontIndirectW(&logFont);
        SetPropW(window, FontCopyProperty, copy);
        SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(copy), TRUE);
    }
    // Only now: until the message arrived the window still used it.
    if (previous != nullptr) DeleteObject(previous);
}

FontMetrics GetFontMetrics(HWND window, HFONT font) noexcept
{
    const WindowDc dc(window);
    const SelectedObject selected(dc, font);
    TEXTMETRICW metrics{};
    GetTextMetricsW(dc, &metrics);
    return {static_cast<std::int32_t>(metrics.tmHeight + metrics.tmExternalLeading),
            static_cast<std::int32_t>(metrics.tmAveCharWidth)};
}

void FontMeasurer::Open(HFONT font, CharWidths& widths)
{
    const TraceScope trace("fonts.cpp", "FontMeasurer::Open");
    Close();
    device_ = CreateCompatibleDC(nullptr);
    previous_ = SelectObject(device_, font);
    TEXTMETRICW metrics{};
    GetTextMetricsW(device_, &metrics);
    if (IsFixedPitch(device_, metrics)) {
        widths.Reset(&MeasureCharacters, device_, MeasureCharacter(device_, u'0'));
        return;
    }
    widths.Reset(&MeasureCharacters, device_, 0);
    widths.Prepare(1, 255);
    for (const char16_t* symbol = ArraySymbols; *symbol != u'\0'; ++symbol)
        widths.Prepare(*symbol, *symbol);
}

void FontMeasurer::Close() noexcept
{
    if (device_ == nullptr) return;
    SelectObject(device_, previous_);
    DeleteDC(device_);
    device_ = nullptr;
}

} // namespace vantrel
