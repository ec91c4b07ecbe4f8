// Printing, as far as no printer is needed: where a page's text may stand, and where a laid-out array is cut into pages.
#pragma once

#include "view/view.h"

namespace vantrel {

// A sheet of paper as the printer sees it: device pixels, counted from the paper's corner.
struct PaperSheet {
    Size64 paper;
    Rect64 printable;
    Rect64 margins;                // wanted distance from each side of the paper
    std::int64_t headerHeight = 0; // of the line above the array
    std::int64_t footerHeight = 0;
};
struct PagePlan {
    Rect64 header;
    Rect64 body; // the array's part of the page; never empty
    Rect64 footer;
};
[[nodiscard]] PagePlan PlanPage(const PaperSheet& sheet) noexcept;
// A margin in device pixels. `metric`: it is given in hundredths of a millimetre, else in thousandths of an inch.
[[nodiscard]] std::int64_t MarginPixels(std::int64_t margin, bool metric, std::int64_t dotsPerInch) noexcept;

// What may not be cut through. `start` answers where the thing begins that lies across `position`, the position itself when nothing does. Level 0 is
// what should stay whole, further levels what else would hurt, less and less.
struct PageObstacles {
    std::int64_t (*start)(void* state, std::int32_t level, std::int64_t position);
    void* state;
    std::int32_t levels;
};
// Positions from 0 to `size`, both included, no two of them further apart than `page`. Throws OutOfMemory.
[[nodiscard]] Vector<std::int64_t> CutIntoPages(std::int64_t size, std::int64_t page,
                                                const PageObstacles& obstacles);

// Lines and columns of pages for the displayed top node, which is laid out: rows are never cut through a line of text, columns neither through a box nor
// through a number, where that can be helped. Throws OutOfMemory.
struct PageGrid {
    Vector<std::int64_t> columns; // cuts, see CutIntoPages
    Vector<std::int64_t> rows;
    [[nodiscard]] std::int64_t PageCount() const noexcept
    {
        return static_cast<std::int64_t>((columns.size() - 1) * (rows.size() - 1));
    }
};
[[nodiscard]] PageGrid CutArrayIntoPages(View& view, const Size64& page);

// Where the text of a simple array begins in its box, which is given with its margins.
[[nodiscard]] Point64 TextCorner(const View& view, const Scdr& node, const Rect64& box) noexcept;

} // namespace vantrel
