// Drawing in 64-bit coordinates, with the widths that layout counts with.
#pragma once

#include <windows.h>

#include "tools/char_widths.h"
#include "tools/geometry.h"

namespace vantrel {

// Cut to what the system can count.
[[nodiscard]] int ToPixel(std::int64_t value) noexcept;
[[nodiscard]] RECT ToRect(const Rect64& rect) noexcept;

struct TextRun {
    const char16_t* text;
    std::int64_t length;
    Point64 at; // top left
};
// Every character stands where the widths say, so that pictures, layout and caret agree. `options` and `area` are those of ExtTextOut; of an
// opaque area each part of the text fills its own width.
void DrawUnits(HDC dc, CharWidths& widths, TextRun run, UINT options, const RECT& area);
// Only the characters that meet the area: a row may be far longer than what is seen.
void DrawUnitsInSight(HDC dc, CharWidths& widths, const TextRun& run, UINT options, const RECT& area);

} // namespace vantrel
