// Where the characters of long lines stand, found without measuring everything before them.
//
// A long line is remembered as blocks of a few thousand units with their widths. Finding a place adds blocks up and measures part of one; a change
// within the line measures the blocks that it touches. Short lines and fonts of one width need none of this and are measured as they are, and so is
// everything while memory is short.
#pragma once

#include <cstdint>

#include "entry/memory.h"
#include "model/records.h"

namespace vantrel {

// A row of a record list with its text of the moment.
struct TextRow {
    std::int64_t row = 0;
    RecordText text;
};

class LineWidths {
public:
    // The width of the row's first `columns` units, all within it.
    [[nodiscard]] std::int64_t WidthUpTo(CharWidths& widths, const TextRow& row, std::int64_t columns);
    // The number of leading characters whose summed widths do not exceed x.
    [[nodiscard]] std::int64_t ColumnAt(CharWidths& widths, const TextRow& row, std::int64_t x);

    // At `column` of a row that was `before`, `removed` units were replaced. Answers the row's new width, or -1 when it is not known.
    std::int64_t Change(CharWidths& widths, const TextRow& before, const RecordText& after,
                        std::int64_t column, std::int64_t removed);
    // Rows came, went or got other texts, or the font changed.
    void Forget() noexcept;

private:
    struct Block {
        std::int64_t units;
        std::int64_t width;
    };
    struct Line {
        TextRow row{-1, {}}; // as it was when last looked at
        Vector<Block> blocks;
    };

    const Line* Find(CharWidths& widths, const TextRow& row);
    Line* Known(const TextRow& row) noexcept;
    static void Measure(CharWidths& widths, const char16_t* text, std::int64_t units, Vector<Block>& blocks);
    static void MeasureAnew(CharWidths& widths, Line& line, const RecordText& after, std::int64_t column,
                            std::int64_t removed);

    Vector<Line> lines_; // row n in place n modulo their number, so that all rows in sight have a place each
};

} // namespace vantrel
