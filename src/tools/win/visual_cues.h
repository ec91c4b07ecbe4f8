// The translucent arrows and edges that show where text of a vector goes on out of sight.
#pragma once

#include <windows.h>

#include <cstdint>

namespace vantrel {

enum CueSide : std::uint32_t {
    CueLeft = 0x1,
    CueTop = 0x2,
    CueRight = 0x4,
    CueBottom = 0x8,
};

// Draws an arrow and a darkened edge inside `area` on each of `sides`. Opacities are percents. GDI+ is started when first needed; without it nothing
// is drawn.
void DrawRankOneVisualCues(HDC dc, const RECT& area, std::uint32_t sides, std::int32_t arrowOpacity,
                           std::int32_t edgeOpacity);
// Frees the pictures and ends GDI+, if it was started.
void EndVisualCues() noexcept;

} // namespace vantrel
