// What layout needs to know of a font: how high its lines are and how wide its characters.
#pragma once

#include <windows.h>

#include "tools/char_widths.h"

namespace vantrel {

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
