#include "builtin/number_block.h"

#include <algorithm>
#include <array>
#include <limits>
#include <type_traits>

#include "entry/trace.h"

namespace vantrel {
namespace {

constexpr char16_t Blank = u' ';

// One view of the node's items for each type. `Scratch` is kept outside the loops.
struct IntegerItems {
    struct Scratch {};
    const std::int64_t* data;
    NumberStyle style;
    std::int32_t Item(std::int64_t i) const noexcept { return static_cast<std::int32_t>(data[i]); }
    TextSize Measure(std::int64_t i, Scratch&) const noexcept { return {IntegerLength(Item(i)), 0}; }
    // With the end of its integer part at `point`.
    void Place(std::int64_t i, Scratch&, char16_t* point) const noexcept
    {
        EmitIntegerBefore(point, Item(i), style);
    }
    char16_t* Append(std::int64_t i, Scratch&, char16_t* output) const noexcept
    {
        output += IntegerLength(Item(i));
        EmitIntegerBefore(output, Item(i), style);
        return output;
    }
};

template <typename ItemText> struct PreparedItems {
    using Scratch = ItemText;
    const double* data;
    NumberStyle style;
    void Prepare(std::int64_t i, Scratch& text) const noexcept
    {
        if constexpr (std::is_same_v<ItemText, ComplexText>) {
            PrepareText(data[2 * i], data[2 * i + 1], style, text);
        } else {
            PrepareText(data[i], style, text);
        }
    }
    TextSize Measure(std::int64_t i, Scratch& text) const noexcept
    {
        Prepare(i, text);
        return text.size;
    }
    void Place(std::int64_t i, Scratch& text, char16_t* point) const noexcept
    {
        Prepare(i, text);
        EmitText(text, point - text.size.integer);
    }
    char16_t* Append(std::int64_t i, Scratch& text, char16_t* output) const noexcept
    {
        Prepare(i, text);
        return EmitText(text, output);
    }
};
using RealItems = PreparedItems<RealText>;
using ComplexItems = PreparedItems<ComplexText>;

template <typename Work> auto WithItems(const EditContext& context, const Scdr& node, Work work)
{
    const NumberStyle style = MakeNumberStyle(*context.langEnv, context.printPrecision);
    switch (node.Type) {
    case TypeInteger: return work(IntegerItems{static_cast<const std::int64_t*>(node.data), style});
    case TypeReal: return work(RealItems{static_cast<const double*>(node.data), style});
    default: return work(ComplexItems{static_cast<const double*>(node.data), style});
    }
}

// Calls `part(row, firstColumn, endColumn)` for pieces of rows short enough to poll between them.
template <typename Part>
void ForRowParts(std::int64_t rows, std::int64_t columns, std::int64_t rowsDone, BlockPoll& poll, Part part)
{
    if (columns == 0) return; // there may be any number of such rows
    for (std::int64_t row = 0; row < rows; ++row) {
        for (std::int64_t first = 0; first < columns; first += BlockPoll::ItemsBetweenClocks) {
            const std::int64_t end = std::min(columns, first + BlockPoll::ItemsBetweenClocks);
            part(row, first, end);
            poll.Passed(end - first, rowsDone);
        }
    }
}

template <typename Items> std::int64_t MeasureLine(const Items& items, std::int64_t count, BlockPoll& poll)
{
    typename Items::Scratch text;
    std::int64_t length = std::max<std::int64_t>(count - 1, 0);
    ForRowParts(1, count, 0, poll, [&](std::int64_t, std::int64_t first, std::int64_t end) {
        for (std::int64_t i = first; i < end; ++i) {
            const TextSize size = items.Measure(i, text);
            length += size.integer + size.rest;
        }
    });
    return length;
}

template <typename Items>
void WriteLine(const Items& items, std::int64_t count, char16_t* output, BlockPoll& poll)
{
    typename Items::Scratch text;
    ForRowParts(1, count, 0, poll, [&](std::int64_t, std::int64_t first, std::int64_t end) {
        for (std::int64_t i = first; i < end; ++i) {
            if (i > 0) *output++ = Blank;
            output = items.Append(i, text, output);
        }
    });
}

// Leaves the widest rest of each column in `widths`.
template <typename Items> void MeasureColumns(const Items& items, NumberBlock& block, BlockPoll& poll)
{
    typename Items::Scratch text;
    std::int32_t* const integers = block.integers.get();
    std::int32_t* const rests = block.widths.get();
    ForRowParts(block.rows, block.columns, 0, poll,
                [&](std::int64_t row, std::int64_t first, std::int64_t end) {
                    const std::int64_t rowItem = row * block.columns;
                    for (std::int64_t column = first; column < end; ++column) {
                        const TextSize size = items.Measure(rowItem + column, text);
                        integers[column] = std::max(integers[column], size.integer);
                        rests[column] = std::max(rests[column], size.rest);
                    }
                });
}

// The longest text of a column is that of its least or greatest item, so only those two are measured. They
// are kept in the two arrays.
void MeasureColumns(const IntegerItems& items, NumberBlock& block, BlockPoll& poll)
{
    if (block.rows == 0) return;
    std::int32_t* const greatest = block.integers.get();
    std::int32_t* const least = block.widths.get();
    ForRowParts(block.rows, block.columns, 0, poll,
                [&](std::int64_t row, std::int64_t first, std::int64_t end) {
                    const std::int64_t rowItem = row * block.columns;
                    for (std::int64_t column = first; column < end; ++column) {
                        const std::int32_t item = items.Item(rowItem + column);
                        greatest[column] = std::max(greatest[column], item);
                        least[column] = std::min(least[column], item);
                    }
                });
    for (std::int64_t column = 0; column < block.columns; ++column) {
        greatest[column] = std::max(IntegerLength(greatest[column]), IntegerLength(least[column]));
        least[column] = 0; // there is nothing behind the integer part
    }
}

// Blanks come first, for some rows at a time: their memory is then still near when the digits follow.
template <typename Items>
void WriteColumns(const Items& items, const NumberBlock& block, char16_t* text, BlockPoll& poll)
{
    if (block.columns == 0) return;
    typename Items::Scratch scratch;
    const std::int32_t* const widths = block.widths.get();
    const std::int32_t* const integers = block.integers.get();
    const std::int64_t step = std::max<std::int64_t>(1, BlockPoll::ItemsBetweenClocks / block.columns);
    for (std::int64_t done = 0; done < block.rows; done += step) {
        const std::int64_t rows = std::min(step, block.rows - done);
        char16_t* field = text + done * block.length;
        std::fill_n(field, rows * block.length, Blank);
        ForRowParts(rows, block.columns, done, poll,
                    [&](std::int64_t row, std::int64_t first, std::int64_t end) {
                        const std::int64_t rowItem = (done + row) * block.columns;
                        for (std::int64_t column = first; column < end; ++column) {
                            items.Place(rowItem + column, scratch, field + integers[column]);
                            field += widths[column] + 1;
                        }
                        if (end == block.columns) --field; // no blank behind the last column
                    });
    }
}

constexpr std::int64_t BitsAtOnce = 8;
constexpr std::int64_t UnitsPerBit = 2; // the digit and its blank

constexpr auto MakeBitTexts()
{
    std::array<std::array<char16_t, BitsAtOnce * UnitsPerBit>, 256> table = {};
    for (unsigned byte = 0; byte < 256; ++byte) {
        for (unsigned bit = 0; bit < BitsAtOnce; ++bit) {
            table[byte][2 * bit] = (byte >> (7 - bit) & 1) != 0 ? u'1' : u'0';
            table[byte][2 * bit + 1] = Blank;
        }
    }
    return table;
}
constexpr auto BitTexts = MakeBitTexts();

// From any bit position; all eight must lie in the data.
std::uint8_t EightBits(const std::uint8_t* data, std::int64_t first) noexcept
{
    const std::uint8_t* at = data + (first >> 3);
    const auto shift = static_cast<unsigned>(first & 7);
    return static_cast<std::uint8_t>(shift == 0 ? *at : at[0] << shift | at[1] >> (8 - shift));
}

// Writes the texts of some bits of a row; the row's last bit has no blank behind it.
char16_t* WriteBits(const std::uint8_t* data, std::int64_t bit, std::int64_t endBit, bool endsRow,
                    char16_t* output) noexcept
{
    const std::int64_t lastBit = endsRow ? endBit - 1 : endBit;
    for (; lastBit - bit >= BitsAtOnce; bit += BitsAtOnce) {
        output = std::copy_n(BitTexts[EightBits(data, bit)].data(), BitsAtOnce * UnitsPerBit, output);
    }
    for (; bit < endBit; ++bit) {
        *output++ = GetBit(data, bit) ? u'1' : u'0';
        if (bit < lastBit) *output++ = Blank;
    }
    return output;
}

void WriteBooleans(const Scdr& node, const NumberBlock& block, char16_t* output, BlockPoll& poll)
{
    const auto* data = static_cast<const std::uint8_t*>(node.data);
    const std::int64_t columns = block.columns;
    std::int64_t done = 0;
    ForRowParts(block.rows, columns, done, poll, [&](std::int64_t row, std::int64_t first, std::int64_t end) {
        output = WriteBits(data, row * columns + first, row * columns + end, end == columns, output);
    });
}

OwnedArray<std::int32_t> AllocateMeasures(std::int64_t columns, std::int32_t value)
{
    const std::int64_t count = std::max<std::int64_t>(columns, 1);
    auto measures = AllocateArray<std::int32_t>(count);
    std::fill_n(measures.get(), count, value);
    return measures;
}

std::int64_t RowLength(const NumberBlock& block) noexcept
{
    std::int64_t length = std::max<std::int64_t>(block.columns - 1, 0);
    for (std::int64_t column = 0; column < block.columns; ++column)
        length += block.widths[static_cast<std::size_t>(column)];
    return length;
}

// Without rows there may be any number of columns; measures of more than these would only fill the memory.
constexpr std::int64_t MostEmptyColumns = std::int64_t{1} << 20;

void MeasureMatrix(const EditContext& context, const Scdr& node, NumberBlock& block, BlockPoll& poll)
{
    const std::int32_t start = node.Type == TypeBoolean ? 1 : 0;
    if (block.rows == 0 && block.columns > MostEmptyColumns) {
        if (block.columns > std::numeric_limits<std::int64_t>::max() / 2) throw VTERROR_CODE::SystemLimit;
        block.length = block.columns * (1 + start) - 1;
        return;
    }
    block.widths = AllocateMeasures(block.columns, start);
    block.integers = AllocateMeasures(block.columns, start);
    if (node.Type != TypeBoolean) {
        WithItems(context, node, [&](const auto& items) { MeasureColumns(items, block, poll); });
        for (std::int64_t column = 0; column < block.columns; ++column) {
            block.widths[static_cast<std::size_t>(column)] +=
                block.integers[static_cast<std::size_t>(column)];
        }
    }
    block.length = RowLength(block);
}

std::int64_t CountRows(const Scdr& node)
{
    std::size_t rows = 1;
    for (std::int32_t axis = 0; axis + 1 < node.Rank; ++axis)
        rows = CheckedMultiply(node.Shape[axis], rows);
    return static_cast<std::int64_t>(rows);
}

} // namespace

void BlockPoll::AskClock(std::int64_t rowsDone)
{
    items_ = 0;
    if (poll_ == nullptr) return;
    if (!pacer_) pacer_.emplace();
    if (!pacer_->Due()) return;
    if (poll_->interrupted(poll_->state, rowsDone)) throw VTERROR_CODE::Interrupt;
}

NumberBlock MeasureNumbers(const EditContext& context, const Scdr& node, BlockPoll& poll)
{
    TraceScope trace("builtin.cpp", "MeasureNumbers");
    NumberBlock block;
    if (node.Rank >= 2) {
        block.columns = Columns(node);
        block.rows = CountRows(node);
        MeasureMatrix(context, node, block, poll);
        return block;
    }
    block.rows = 1;
    block.columns = node.ElementCount;
    if (node.Type == TypeBoolean) {
        block.length = std::max<std::int64_t>(2 * node.ElementCount - 1, 0);
    } else {
        block.length = WithItems(
            context, node, [&](const auto& items) { return MeasureLine(items, node.ElementCount, poll); });
    }
    return block;
}

void WriteNumbers(const EditContext& context, const Scdr& node, const NumberBlock& block, char16_t* text,
                  BlockPoll& poll)
{
    TraceScope trace("builtin.cpp", "WriteNumbers");
    if (node.Type == TypeBoolean) {
        WriteBooleans(node, block, text, poll);
    } else if (node.Rank >= 2) {
        WithItems(context, node, [&](const auto& items) { WriteColumns(items, block, text, poll); });
    } else {
        WithItems(context, node, [&](const auto& items) { WriteLine(items, node.ElementCount, text, poll); });
    }
}

} // namespace vantrel
