#include "model/record_widths.h"

#include <algorithm>

#include "entry/trace.h"
#include "model/record_chunks.h"

namespace vantrel {
namespace {

std::int64_t MeasureBulk(const RecordChunk& chunk, CharWidths& widths)
{
    if (widths.FixedPitchWidth() > 0) return chunk.longest * widths.FixedPitchWidth();
    if (chunk.longest == 0) return 0; // there may be any number of such rows
    std::int64_t widest = 0;
    for (std::int64_t row = 0; row < chunk.count; ++row) {
        widest = std::max(widest, widths.TextWidth(chunk.bulkText + row * chunk.longest, chunk.longest));
    }
    return widest;
}

std::int64_t MeasureEdited(const RecordChunk& chunk, CharWidths& widths)
{
    std::int64_t widest = 0;
    for (std::int32_t i = 0; i < chunk.count; ++i) {
        Record& record = chunk.records[i];
        if (record.width < 0) record.width = widths.TextWidth(record.text, record.length);
        widest = std::max(widest, record.width);
    }
    return widest;
}

std::int64_t CountUnmeasured(const RecordChunk& chunk) noexcept
{
    if (chunk.widest >= 0) return 0;
    if (IsBulk(chunk)) return chunk.count;
    return std::count_if(chunk.records, chunk.records + chunk.count,
                         [](const Record& record) { return record.width < 0; });
}

} // namespace

std::int64_t GetRecordWidths(RecordList& list, CharWidths& widths, const MeasureProgress* progress)
{
    TraceScope trace("record_widths.cpp", "GetRecordWidths");
    std::int64_t widest = 0;
    for (std::int32_t i = 0; i < list.chunkCount; ++i) {
        RecordChunk& chunk = list.chunks[i];
        if (chunk.widest < 0) {
            const std::int64_t rows = progress != nullptr ? CountUnmeasured(chunk) : 0;
            chunk.widest = IsBulk(chunk) ? MeasureBulk(chunk, widths) : MeasureEdited(chunk, widths);
            if (progress != nullptr && rows > 0 && !progress->step(progress->state, rows)) return -1;
        }
        widest = std::max(widest, chunk.widest);
    }
    list.widest = widest;
    return widest;
}

std::int64_t CountUnmeasuredRecords(const RecordList& list) noexcept
{
    TraceScope trace("record_widths.cpp", "CountUnmeasuredRecords");
    std::int64_t count = 0;
    for (std::int32_t i = 0; i < list.chunkCount; ++i)
        count += CountUnmeasured(list.chunks[i]);
    return count;
}

void SetRecordWidth(RecordList& list, std::int64_t row, std::int64_t width) noexcept
{
    TraceScope trace("record_widths.cpp", "SetRecordWidth");
    const std::int32_t index = FindChunk(list, row);
    RecordChunk& chunk = list.chunks[index];
    if (!IsBulk(chunk)) chunk.records[row - ChunkStart(list, index)].width = width;
}

void ForgetRecordWidths(RecordList& list) noexcept
{
    TraceScope trace("record_widths.cpp", "ForgetRecordWidths");
    for (std::int32_t i = 0; i < list.chunkCount; ++i) {
        RecordChunk& chunk = list.chunks[i];
        chunk.widest = -1;
        if (IsBulk(chunk)) continue;
        for (std::int32_t row = 0; row < chunk.count; ++row)
            chunk.records[row].width = -1;
    }
}

} // namespace vantrel
