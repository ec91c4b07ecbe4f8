#include "tools/win/font_metrics.h"

#include <algorithm>
#include <iterator>

#include "entry/trace.h"
#include "tools/win/window.h"

namespace vantrel {

namespace {

// The array-language symbols beyond Latin-1 that interpreters write.
constexpr char16_t ArraySymbols[] = u"⌶⌷⌸⌹⌺⌻⌼⌽⌾⌿⍀⍃⍄⍅⍆⍇⍈⍉⍊⍋⍌⍍⍎⍏⍐⍑⍒⍓⍔⍕⍖⍗⍙⍚⍛⍝⍞⍟⍠⍡⍢⍣⍤⍥⍦⍧⍨⍪⍫⍬⍭⍯⍱⍲⍳⍴⍵⍷⍸⍺"
                                    u"⎕⌈⌊∆∇∊∘∣∧∨∩∪∼≠≡≢≤≥⊂⊃⊆⊣⊢⊤⊥⋄⋆←↑→↓○";
static_assert(std::size(ArraySymbols) - 1 == 92);

// Faces with half-width and full-width characters call themselves fixed, too; these two would be wider there.
constexpr char16_t FullWidthProbes[] = u"一あ";

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

} // namespace

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
    const TraceScope trace("font_metrics.cpp", "FontMeasurer::Open");
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
