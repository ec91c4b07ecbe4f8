#include "tools/win/drawing.h"

#include <algorithm>

#include "tools/win/wide.h"

namespace vantrel {

namespace {

constexpr int PieceUnits = 512; // characters handed to the system at a time

} // namespace

int ToPixel(std::int64_t value) noexcept
{
    return static_cast<int>(std::clamp<std::int64_t>(value, -0x8000000, 0x8000000));
}

RECT ToRect(const Rect64& rect) noexcept
{
    return {ToPixel(rect.left), ToPixel(rect.top), ToPixel(rect.right), ToPixel(rect.bottom)};
}

void DrawUnits(HDC dc, CharWidths& widths, TextRun run, UINT options, const RECT& area)
{
    int advances[PieceUnits];
    RECT piece = area;
    while (run.length > 0) {
        const int count = static_cast<int>(std::min<std::int64_t>(run.length, PieceUnits));
        std::int64_t width = 0;
        for (int i = 0; i < count; ++i)
            width += advances[i] = widths.CharWidth(run.text[i]);
        if ((options & ETO_OPAQUE) != 0) {
            piece.left = ToPixel(run.at.x);
            piece.right = ToPixel(run.at.x + width);
        }
        ExtTextOutW(dc, ToPixel(run.at.x), ToPixel(run.at.y), options, options != 0 ? &piece : nullptr,
                    AsWide(run.text), static_cast<UINT>(count), advances);
        run.at.x += width;
        run.text += count;
        run.length -= count;
    }
}

void DrawUnitsInSight(HDC dc, CharWidths& widths, const TextRun& run, UINT options, const RECT& area)
{
    const std::int64_t hidden = std::max<std::int64_t>(area.left - run.at.x, 0);
    const std::int64_t first = widths.ColumnAt(run.text, run.length, hidden);
    const std::int64_t x = run.at.x + widths.TextWidth(run.text, first);
    const char16_t* const text = run.text + first;
    const std::int64_t rest = run.length - first;
    const std::int64_t count = std::min(widths.ColumnAt(text, rest, area.right - x) + 1, rest);
    DrawUnits(dc, widths, {text, count, {x, run.at.y}}, options, area);
}

} // namespace vantrel
