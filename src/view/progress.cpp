#include "view/progress.h"

#include <algorithm>
#include <limits>

#include "entry/trace.h"

namespace vantrel {
namespace {

constexpr std::int64_t Most = std::numeric_limits<std::int64_t>::max();

// The share is found by multiplying and dividing; no array that fits into memory comes near this bound.
constexpr std::int64_t MostCounted = Most / 128;

std::int64_t AddCounts(std::int64_t a, std::int64_t b) noexcept
{
    return a > MostCounted - b ? MostCounted : a + b;
}

template <typename CountSimple> std::int64_t CountLeaves(const Scdr& node, CountSimple countSimple) noexcept
{
    if (IsSimple(node)) return countSimple(node);
    std::int64_t total = 0;
    const std::int64_t count = ChildCount(node);
    for (std::int64_t i = 0; i < count; ++i)
        total = AddCounts(total, CountLeaves(*Children(node)[i], countSimple));
    return total;
}

} // namespace

void AddProgress(View& view, LayoutProgress& progress, std::int64_t amount)
{
    if ((view.flags & ViewQuiet) != 0) return;
    progress.done = AddCounts(progress.done, amount);
    // A product instead of a quotient: this runs once a leaf.
    if (progress.done * 100 < progress.total * (progress.lastPercent + std::int64_t{1}) ||
        progress.total <= 0)
        return;
    if (progress.lastPercent >= 100) return;
    progress.lastPercent =
        static_cast<std::int32_t>(std::min<std::int64_t>(progress.done * 100 / progress.total, 100));
    view.effects.showStatus(view, progress.stringId, progress.lastPercent, false);
}

void UpdateProgressReport(View& view, LayoutProgress& progress, const Scdr& node, std::int64_t amount)
{
    if (IsSimple(node) && (node.records.flags & RecordsFormatted) != 0) return;
    AddProgress(view, progress, amount);
}

bool IsInterrupted(View& view, LayoutProgress& progress, std::int64_t work)
{
    progress.workUntilClock -= work;
    if (progress.workUntilClock > 0) return false;
    progress.workUntilClock = WorkPerClockLook;
    return progress.pacer.Due() && view.effects.isInterruptOrClosePending(view);
}

std::int64_t CountSimpleScdrRows(const Scdr& node) noexcept
{
    TraceScope trace("progress.cpp", "CountSimpleScdrRows");
    return CountLeaves(node, [](const Scdr& simple) noexcept -> std::int64_t {
        if (simple.Rank < 2) return 1;
        const std::int64_t rows = RowsOfAllPlanes(simple);
        return rows < 0 || rows > MostCounted ? MostCounted : rows;
    });
}

std::int64_t CountSimpleScdrsAndInvalidRecords(const Scdr& node) noexcept
{
    TraceScope trace("progress.cpp", "CountSimpleScdrsAndInvalidRecords");
    return CountLeaves(node, [](const Scdr& simple) noexcept -> std::int64_t {
        return 1 + CountUnmeasuredRecords(simple.records);
    });
}

} // namespace vantrel
