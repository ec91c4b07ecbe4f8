#include "view/pages.h"

#include <algorithm>

#include "entry/trace.h"

namespace vantrel {
namespace {

constexpr std::int64_t LeastBody = 1;

Rect64 Within(const Rect64& rect, const Rect64& area) noexcept
{
    return {std::max(rect.left, area.left), std::max(rect.top, area.top), std::min(rect.right, area.right),
            std::min(rect.bottom, area.bottom)};
}

// Margins that leave nothing are as good as none.
Rect64 UsableArea(const PaperSheet& sheet) noexcept
{
    const Rect64 wanted{sheet.margins.left, sheet.margins.top, sheet.paper.width - sheet.margins.right,
                        sheet.paper.height - sheet.margins.bottom};
    const Rect64 area = Within(wanted, sheet.printable);
    const bool fits = area.right - area.left >= LeastBody &&
                      area.bottom - area.top >= sheet.headerHeight + sheet.footerHeight + LeastBody;
    return fits ? area : sheet.printable;
}

// The cut at or before `limit` that spares most.
std::int64_t FindCut(std::int64_t from, std::int64_t limit, const PageObstacles& obstacles)
{
    for (std::int32_t level = 0; level < obstacles.levels; ++level) {
        std::int64_t cut = limit;
        for (;;) {
            const std::int64_t start = obstacles.start(obstacles.state, level, cut);
            if (start >= cut) return cut;
            if (start <= from) break; // it is longer than a page
            cut = start;
        }
    }
    return limit;
}

} // namespace

PagePlan PlanPage(const PaperSheet& sheet) noexcept
{
    const Rect64 area = UsableArea(sheet);
    const std::int64_t top = area.top + sheet.headerHeight;
    const std::int64_t bottom = std::max(area.bottom - sheet.footerHeight, top + LeastBody);
    return {{area.left, area.top, area.right, top},
            {area.left, top, std::max(area.right, area.left + LeastBody), bottom},
            {area.left, bottom, area.right, bottom + sheet.footerHeight}};
}

std::int64_t MarginPixels(std::int64_t margin, bool metric, std::int64_t dotsPerInch) noexcept
{
    constexpr std::int64_t HundredthsOfMillimetre = 2540; // an inch
    constexpr std::int64_t ThousandthsOfInch = 1000;
    const std::int64_t inch = metric ? HundredthsOfMillimetre : ThousandthsOfInch;
    return (margin * dotsPerInch + inch / 2) / inch;
}

Vector<std::int64_t> CutIntoPages(std::int64_t size, std::int64_t page, const PageObstacles& obstacles)
{
    TraceScope trace("pages.cpp", "CutIntoPages");
    Vector<std::int64_t> cuts;
    cuts.push_back(0);
    const std::int64_t step = std::max(page, LeastBody);
    while (size - cuts.back() > step)
        cuts.push_back(FindCut(cuts.back(), cuts.back() + step, obstacles));
    cuts.push_back(std::max<std::int64_t>(size, 0));
    return cuts;
}

} // namespace vantrel
