#include "editor/line_widths.h"

#include <algorithm>

namespace vantrel {

namespace {

constexpr std::int64_t BlockUnits = 2048;
constexpr std::int64_t LongLine =
    4 * BlockUnits;                          // a shorter one is measured in the time that a look-up takes
constexpr std::size_t RememberedLines = 128; // more than a window shows

bool IsWorthIt(const CharWidths& widths, const TextRow& row) noexcept
{
    return row.text.length >= LongLine && widths.FixedPitchWidth() == 0;
}

} // namespace

std::int64_t LineWidths::WidthUpTo(CharWidths& widths, const TextRow& row, std::int64_t columns)
{
    const Line* const line = Find(widths, row);
    if (line == nullptr) return widths.TextWidth(row.text.text, columns);
    std::int64_t start = 0;
    std::int64_t width = 0;
    for (const Block& block : line->blocks) {
        if (columns - start <= block.units) break;
        start += block.units;
        width += block.width;
    }
    return width + widths.TextWidth(row.text.text + start, columns - start);
}

std::int64_t LineWidths::ColumnAt(CharWidths& widths, const TextRow& row, std::int64_t x)
{
    const Line* const line = Find(widths, row);
    if (line == nullptr) return widths.ColumnAt(row.text.text, row.text.length, x);
    std::int64_t start = 0;
    for (const Block& block : line->blocks) {
        if (block.width > x) return start + widths.ColumnAt(row.text.text + start, block.units, x);
        start += block.units;
        x -= block.width;
    }
    return start;
}

std::int64_t LineWidths::Change(CharWidths& widths, const TextRow& before, const RecordText& after,
                                std::int64_t column, std::int64_t removed)
{
    Line* const line = Known(before);
    if (line == nullptr) return -1;
    try {
        MeasureAnew(widths, *line, after, column, removed);
    } catch (VTERROR_CODE) {
        line->row.row = -1;
        return -1;
    }
    std::int64_t width = 0;
    for (const Block& block : line->blocks)
        width += block.width;
    return width;
}

void LineWidths::Forget() noexcept
{
    lines_ = Vector<Line>();
}

// Null when the row is to be measured as it is.
const LineWidths::Line* LineWidths::Find(CharWidths& widths, const TextRow& row)
{
    if (!IsWorthIt(widths, row)) return nullptr;
    if (const Line* const known = Known(row)) return known;
    try {
        if (lines_.empty()) lines_.resize(RememberedLines);
        Line& line = lines_[static_cast<std::size_t>(row.row) % RememberedLines];
        line.row.row = -1;
        line.blocks.clear();
        Measure(widths, row.text.text, row.text.length, line.blocks);
        line.row = row;
        return &line;
    } catch (VTERROR_CODE) {
        return nullptr;
    }
}

LineWidths::Line* LineWidths::Known(const TextRow& row) noexcept
{
    if (lines_.empty()) return nullptr;
    Line& line = lines_[static_cast<std::size_t>(row.row) % RememberedLines];
    const bool same = line.row.row == row.row && line.row.text.text == row.text.text &&
                      line.row.text.length == row.text.length;
    return same ? &line : nullptr;
}

// Appends blocks of about equal length: one that has outgrown its size becomes two that may grow for long.
void LineWidths::Measure(CharWidths& widths, const char16_t* text, std::int64_t units, Vector<Block>& blocks)
{
    for (std::int64_t left = (units + BlockUnits - 1) / BlockUnits; left > 0; --left) {
        const std::int64_t count = units / left;
        blocks.push_back({count, widths.TextWidth(text, count)});
        text += count;
        units -= count;
    }
}

// The blocks from the one that the change begins in to the one that it ends in are measured again.
void LineWidths::MeasureAnew(CharWidths& widths, Line& line, const RecordText& after, std::int64_t column,
                             std::int64_t removed)
{
    const auto begin = line.blocks.begin();
    const auto end = line.blocks.end();
    std::int64_t start = 0;
    auto first = begin;
    for (; first != end && start + first->units < column; ++first)
        start += first->units;
    std::int64_t units = after.length - line.row.text.length; // of the new blocks
    auto last = first;
    for (std::int64_t stop = start; last != end && (last == first || stop < column + removed); ++last) {
        stop += last->units;
        units += last->units;
    }
    Vector<Block> fresh;
    Measure(widths, after.text + start, units, fresh);
    const auto place = line.blocks.erase(first, last);
    line.blocks.insert(place, fresh.begin(), fresh.end());
    line.row.text = after;
}

} // namespace vantrel
