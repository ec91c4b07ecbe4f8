// The inside of a record list, shared by the files that make, change, read and measure it.
#pragma once

#include <algorithm>

#include "model/records.h"

namespace vantrel {

[[nodiscard]] inline bool IsBulk(const RecordChunk& chunk) noexcept
{
    return chunk.records == nullptr;
}

[[nodiscard]] inline RecordText RowOfChunk(const RecordChunk& chunk, std::int64_t row) noexcept
{
    if (IsBulk(chunk)) return {chunk.bulkText + row * chunk.longest, chunk.longest};
    return {chunk.records[row].text, chunk.records[row].length};
}

[[nodiscard]] inline std::int64_t ChunkStart(const RecordList& list, std::int32_t chunk) noexcept
{
    return list.starts != nullptr ? list.starts[chunk] : 0;
}

// The chunk that holds a row 0 .. count - 1.
[[nodiscard]] std::int32_t FindChunk(const RecordList& list, std::int64_t row) noexcept;

// Makes room for `more` further chunks. Throws OutOfMemory.
void ReserveChunks(RecordList& list, std::int64_t more);
// Opens a gap of `chunks` entries before chunk `at`; the room must be reserved. The caller fills the gap, then renumbers.
void OpenChunkGap(RecordList& list, std::int32_t at, std::int32_t chunks) noexcept;
// Closes the gap that `chunks` entries from `at` on leave; what they held has moved or is freed.
void CloseChunkGap(RecordList& list, std::int32_t at, std::int32_t chunks) noexcept;
// Counts the starts of all chunks from `first` on, and the rows of the list.
void RenumberChunks(RecordList& list, std::int32_t first) noexcept;

// Turns a chunk into an edited one with room for `more` further records. Throws OutOfMemory.
void MakeEdited(RecordChunk& chunk, std::int32_t more);
// After a change of an edited chunk's records: finds the longest and forgets the widest.
void RefreshChunk(RecordChunk& chunk) noexcept;
// Frees `count` records' own texts, not the array.
void FreeRecordTexts(Record* records, std::int32_t count) noexcept;
void FreeChunk(RecordChunk& chunk) noexcept;

// A block that several owned texts hang on.
struct OwnedTextLink {
    OwnedTextLink* next;
    char16_t* text;
};
void FreeOwnedTexts(RecordList& list) noexcept;

// Calls `visit(chunk, firstRow, endRow)`, rows counted within the chunk, for each chunk's share of `count` rows from `first` on; they
// must exist.
template <typename Visit>
void ForEachRowRun(const RecordList& list, std::int64_t first, std::int64_t count, Visit visit)
{
    if (count <= 0) return;
    std::int32_t chunk = FindChunk(list, first);
    std::int64_t row = first - ChunkStart(list, chunk);
    while (count > 0) {
        const RecordChunk& present = list.chunks[chunk++];
        const std::int64_t end = std::min<std::int64_t>(present.count, row + count);
        visit(present, row, end);
        count -= end - row;
        row = 0;
    }
}

// Calls `visit(RecordText)` for `count` rows from `first` on; they must exist.
template <typename Visit>
void ForEachRecord(const RecordList& list, std::int64_t first, std::int64_t count, Visit visit)
{
    ForEachRowRun(list, first, count, [&](const RecordChunk& chunk, std::int64_t row, std::int64_t end) {
        for (; row < end; ++row)
            visit(RowOfChunk(chunk, row));
    });
}

// The longest of the first `rows` records; they must exist.
[[nodiscard]] std::int64_t LongestOfFirstRecords(const RecordList& list, std::int64_t rows) noexcept;

// The length of all records joined by CR LF, and the joined text itself, not terminated.
[[nodiscard]] std::int64_t AllRecordsLength(const RecordList& records) noexcept;
void WriteAllRecords(const RecordList& records, char16_t* destination) noexcept;

} // namespace vantrel
