// Text to records and back.
#include <algorithm>
#include <limits>

#include "entry/trace.h"
#include "model/record_chunks.h"

namespace vantrel {
namespace {

constexpr char16_t LineFeed = 10;
constexpr char16_t CarriageReturn = 13;
constexpr char16_t LineEnd[2] = {CarriageReturn, LineFeed};

// Cuts one line off the front of what is left of a text.
class LineCutter {
public:
    LineCutter(const char16_t* text, std::int64_t length) noexcept
        : text_(text), next_(text), end_(text + length)
    {
    }

    RecordText Next() noexcept
    {
        const char16_t* start = next_;
        const char16_t* feed = std::find(start, end_, LineFeed);
        next_ = feed != end_ ? feed + 1 : end_;
        std::int64_t length = feed - start;
        // A carriage return that is the text's first character stays: it ends no line that anybody wrote.
        if (feed != end_ && length > 0 && feed[-1] == CarriageReturn && feed - 1 != text_) --length;
        return {start, length};
    }

private:
    const char16_t* text_;
    const char16_t* next_;
    const char16_t* end_;
};

void AppendLines(RecordList& list, LineCutter& lines, std::int32_t count)
{
    RecordChunk chunk{};
    chunk.records = AllocateArray<Record>(count).release();
    chunk.count = chunk.capacity = count;
    for (std::int32_t i = 0; i < count; ++i) {
        const RecordText line = lines.Next();
        chunk.records[i] = {line.text, line.length, -1, 0};
    }
    RefreshChunk(chunk);
    list.chunks[list.chunkCount++] = chunk;
}

void SplitIntoRecords(const char16_t* text, std::int64_t length, RecordList& list)
{
    std::int64_t rows = std::count(text, text + length, LineFeed) + 1;
    if (rows == 1) {
        SetBulkRecords(list, text, 1, length);
        return;
    }
    ReserveChunks(list, (rows + RecordsPerChunk - 1) / RecordsPerChunk);
    LineCutter lines(text, length);
    for (; rows > 0; rows -= RecordsPerChunk) {
        AppendLines(list, lines, static_cast<std::int32_t>(std::min(rows, RecordsPerChunk)));
    }
    RenumberChunks(list, 0);
}

// A range brought inside the list: rows first .. last, from column `start` of the first to column `end` of the last.
struct RowSpan {
    std::int64_t first = 0;
    std::int64_t last = -1; // below `first`: nothing
    std::int64_t start = 0;
    std::int64_t end = 0;
};

RowSpan SpanOfRange(const RecordList& list, std::int64_t firstRow, const RecordRange& range) noexcept
{
    RowSpan span;
    span.first = firstRow + range.startRecord;
    std::int64_t last = firstRow + range.endRecord;
    if (span.first < 0 || span.first >= list.count || last < span.first) return span;
    std::int64_t endColumn = range.endColumn;
    if (last >= list.count) {
        last = list.count - 1;
        endColumn = std::numeric_limits<std::int64_t>::max();
    }
    span.last = last;
    span.start = std::clamp<std::int64_t>(range.startColumn, 0, GetRecord(list, span.first).length);
    span.end = std::clamp<std::int64_t>(endColumn, 0, GetRecord(list, last).length);
    if (span.first == span.last) span.end = std::max(span.start, span.end);
    return span;
}

// The part of row `row` that lies in the span.
RecordText PartOfRow(const RowSpan& span, std::int64_t row, RecordText record) noexcept
{
    const std::int64_t start = row == span.first ? span.start : 0;
    const std::int64_t end = row == span.last ? span.end : record.length;
    return {record.text + start, end - start};
}

std::int64_t UnitsOfRows(const RecordList& list, std::int64_t first, std::int64_t count) noexcept
{
    std::int64_t units = 0;
    ForEachRowRun(list, first, count, [&](const RecordChunk& chunk, std::int64_t row, std::int64_t end) {
        if (IsBulk(chunk)) units += (end - row) * chunk.longest;
        for (; !IsBulk(chunk) && row < end; ++row)
            units += chunk.records[row].length;
    });
    return units;
}

std::int64_t SpanLength(const RecordList& list, const RowSpan& span) noexcept
{
    if (span.last < span.first) return 0;
    const std::int64_t lineEnds = 2 * (span.last - span.first);
    const std::int64_t behindEnd = GetRecord(list, span.last).length - span.end;
    return UnitsOfRows(list, span.first, span.last - span.first + 1) + lineEnds - span.start - behindEnd;
}

template <typename Append> void WriteSpan(const RecordList& list, const RowSpan& span, Append append)
{
    if (span.last < span.first) return;
    std::int64_t row = span.first;
    ForEachRecord(list, span.first, span.last - span.first + 1, [&](RecordText record) {
        if (row != span.first) append(RecordText{LineEnd, 2});
        append(PartOfRow(span, row++, record));
    });
}

Text TextOfSpan(const RecordList& list, const RowSpan& span)
{
    Text text;
    text.reserve(static_cast<std::size_t>(SpanLength(list, span)));
    WriteSpan(list, span,
              [&](RecordText part) { text.append(part.text, static_cast<std::size_t>(part.length)); });
    return text;
}

RowSpan WholeList(const RecordList& list) noexcept
{
    if (list.count == 0) return {};
    return {0, list.count - 1, 0, GetRecord(list, list.count - 1).length};
}

} // namespace

bool StringToRecords(EditContext* context, const char16_t* text, std::int64_t length, RecordList& list,
                     bool borrow)
{
    TraceScope trace("record_text.cpp", "StringToRecords");
    try {
        if (!borrow && length > 0) {
            char16_t* copy = AllocateArray<char16_t>(length).release();
            list.ownedText = copy;
            std::copy_n(text, length, copy);
            text = copy;
        }
        SplitIntoRecords(text, length, list);
        return true;
    } catch (VTERROR_CODE code) {
        FreeRecords(list);
        return SetErrorCode(context, code);
    }
}

Text RecordsToString(const RecordList& list, std::int64_t firstRow, const RecordRange& range)
{
    TraceScope trace("record_text.cpp", "RecordsToString");
    return TextOfSpan(list, SpanOfRange(list, firstRow, range));
}

std::int64_t RecordsToStringLength(const RecordList& list, std::int64_t firstRow,
                                   const RecordRange& range) noexcept
{
    TraceScope trace("record_text.cpp", "RecordsToStringLength");
    return SpanLength(list, SpanOfRange(list, firstRow, range));
}

void WriteRecords(const RecordList& list, std::int64_t firstRow, const RecordRange& range,
                  char16_t* destination) noexcept
{
    TraceScope trace("record_text.cpp", "WriteRecords");
    WriteSpan(list, SpanOfRange(list, firstRow, range),
              [&](RecordText part) { destination = std::copy_n(part.text, part.length, destination); });
}

Text AllRecordsText(const RecordList& list)
{
    TraceScope trace("record_text.cpp", "AllRecordsText");
    return TextOfSpan(list, WholeList(list));
}

std::int64_t AllRecordsLength(const RecordList& records) noexcept
{
    return SpanLength(records, WholeList(records));
}

void WriteAllRecords(const RecordList& records, char16_t* destination) noexcept
{
    WriteSpan(records, WholeList(records),
              [&](RecordText part) { destination = std::copy_n(part.text, part.length, destination); });
}

} // namespace vantrel
