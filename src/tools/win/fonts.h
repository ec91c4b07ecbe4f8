// The array font: the stored choice, the default face and the face that the library carries with it.
#pragma once

#include <windows.h>

#include "tools/char_widths.h"

namespace vantrel {

[[nodiscard]] LOGFONTA GetDefaultLogFont() noexcept;
// The user's stored font, else the default. The caller deletes it. Null on failure.
[[nodiscard]] HFONT GetDefaultFont() noexcept;
// Replaces faces that cannot show the characters by the default font.
void ValidateLogFontA(LOGFONTA& logFont) noexcept;
// Registers the carried font for this process when the machine lacks it; true when the face is there. Called before the face is first asked for.
bool DefaultFontLoad() noexcept;
void DefaultFontRelease() noexcept;

// Lets the user choose the window's font in the system's dialog.
void FontDlg(HWND window);
// A step of the mouse wheel larger or smaller for each click of `delta`.
void ChangeFontSize(HWND window, std::int32_t delta);

// Gives a window a font of its own that is a copy of `font`, redraws, and deletes the copy given before.
void CopyFontToWindow(HWND window, HFONT font) noexcept;

// A font that lives as long as the guard.
class OwnFont {
public:
    explicit OwnFont(const LOGFONTW& logFont) noexcept : font_(CreateFontIndirectW(&logFont)) {}
    ~OwnFont() { DeleteObject(font_); }
    OwnFont(const OwnFont&) = delete;
    OwnFont& operator=(const OwnFont&) = delete;
    [[nodiscard]] HFONT Get() const noexcept { return font_; }

private:
    HFONT font_;
};

// Measures of a font.
struct FontMetrics {
    std::int32_t lineHeight = 0; // tmHeight + tmExternalLeading
    std::int32_t averageCharWidth = 0;
};
[[nodiscard]] FontMetrics GetFontMetrics(HWND window, HFONT font) noexcept;

// Forgets `widths` and prepares it for the font: the Latin-1 characters and the array-language symbols are measured at once, others when
// needed. The device is kept by `device` until it is closed.
class FontMeasurer {
public:
    FontMeasurer() = default;
    ~FontMeasurer() { Close(); }
    FontMeasurer(const FontMeasurer&) = delete;
    FontMeasurer& operator=(const FontMeasurer&) = delete;
    // Throws OutOfMemory.
    void Open(HFONT font, CharWidths& widths);
    void Close() noexcept;

private:
    HDC device_ = nullptr;
    HGDIOBJ previous_ = nullptr;
};

} // namespace vantrel
