// The fonts that windows have.
#pragma once

#include <windows.h>

#include <cstdint>

namespace vantrel {

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

} // namespace vantrel
