#include <algorithm>
#include <cstring>
#include <limits>

#include "entry/trace.h"
#include "model/record_chunks.h"

namespace vantrel {
namespace {

// Rows of no length need no text, but a chunk needs a place to point to.
constexpr char16_t NoText[1] = {};

std::size_t BlockBytes(std::uint8_t capacityBits)
{
    const std::int64_t capacity = std::int64_t{1} << capacityBits;
    return CheckedMultiply(capacity, sizeof(RecordChunk) + sizeof(std::int64_t));
}

bool HasBlock(const RecordList& list) noexcept
{
    return list.starts != nullptr;
}

// An empty array may claim any number of rows, and nobody has text for them: so many go into one chunk that a list of them stays small.
constexpr std::int64_t EmptyRecordsPerChunk = std::int64_t{1} << 30;
// Row numbers are multiplied by line heights, and so many chunks are still few.
constexpr std::int64_t MostEmptyRecords = std::int64_t{1} << 46;

void FillBulkChunks(RecordList& list, const char16_t* text, std::int64_t rows, std::int64_t length,
                    std::int64_t rowsPerChunk) noexcept
{
    for (std::int32_t i = 0; i < list.chunkCount; ++i) {
        const auto count = static_cast<std::int32_t>(std::min(rows, rowsPerChunk));
        list.chunks[i] = {text, length, nullptr, count, 0, -1};
        text += count * length;
        rows -= count;
    }
    RenumberChunks(list, 0);
}

} // namespace

std::int32_t FindChunk(const RecordList& list, std::int64_t row) noexcept
{
    if (!HasBlock(list)) return 0;
    const std::int64_t* starts = list.starts;
    return static_cast<std::int32_t>(std::upper_bound(starts, starts + list.chunkCount, row) - starts) - 1;
}

void ReserveChunks(RecordList& list, std::int64_t more)
{
    const std::int64_t needed = list.chunkCount + more;
    if (needed > std::numeric_limits<std::int32_t>::max()) throw VTERROR_CODE::OutOfMemory;
    if (!HasBlock(list) && needed <= 1) {
        list.chunks = &list.single;
        return;
    }
    std::uint8_t bits = 2;
    while ((std::int64_t{1} << bits) < needed)
        ++bits;
    if (HasBlock(list) && bits <= list.capacityBits) return;
    auto* chunks = static_cast<RecordChunk*>(AllocateBytes(BlockBytes(bits)));
    auto* starts = reinterpret_cast<std::int64_t*>(chunks + (std::int64_t{1} << bits));
    std::copy_n(list.chunks, list.chunkCount, chunks);
    for (std::int32_t i = 0; i < list.chunkCount; ++i)
        starts[i] = ChunkStart(list, i);
    if (HasBlock(list)) FreeBytes(list.chunks);
    list.chunks = chunks;
    list.starts = starts;
    list.capacityBits = bits;
}

void OpenChunkGap(RecordList& list, std::int32_t at, std::int32_t chunks) noexcept
{
    std::copy_backward(list.chunks + at, list.chunks + list.chunkCount,
                       list.chunks + list.chunkCount + chunks);
    list.chunkCount += chunks;
}

void CloseChunkGap(RecordList& list, std::int32_t at, std::int32_t chunks) noexcept
{
    std::copy(list.chunks + at + chunks, list.chunks + list.chunkCount, list.chunks + at);
    list.chunkCount -= chunks;
}

void RenumberChunks(RecordList& list, std::int32_t first) noexcept
{
    std::int64_t row = first > 0 ? ChunkStart(list, first - 1) + list.chunks[first - 1].count : 0;
    for (std::int32_t i = first; i < list.chunkCount; ++i) {
        if (HasBlock(list)) list.starts[i] = row;
        row += list.chunks[i].count;
    }
    list.count = row;
}

void FreeRecordTexts(Record* records, std::int32_t count) noexcept
{
    for (std::int32_t i = 0; i < count; ++i) {
        // A record's own buffer came writable from AllocateBytes.
        if (records[i].capacity > 0) FreeBytes(const_cast<char16_t*>(records[i].text));
    }
}

void FreeChunk(RecordChunk& chunk) noexcept
{
    if (IsBulk(chunk)) return;
    FreeRecordTexts(chunk.records, chunk.count);
    FreeBytes(chunk.records);
}

void FreeOwnedTexts(RecordList& list) noexcept
{
    if ((list.flags & RecordsTextChain) == 0) {
        FreeBytes(list.ownedText);
        return;
    }
    for (auto* link = static_cast<OwnedTextLink*>(list.ownedText); link != nullptr;) {
        OwnedTextLink* next = link->next;
        FreeBytes(link->text);
        FreeBytes(link);
        link = next;
    }
}

void FreeRecords(RecordList& list) noexcept
{
    for (std::int32_t i = 0; i < list.chunkCount; ++i)
        FreeChunk(list.chunks[i]);
    if (HasBlock(list)) FreeBytes(list.chunks);
    FreeOwnedTexts(list);
    list = RecordList{};
}

void SetBulkRecords(RecordList& list, const char16_t* text, std::int64_t rows, std::int64_t length)
{
    TraceScope trace("record_list.cpp", "SetBulkRecords");
    if (rows <= 0) return;
    if (length == 0 && rows > MostEmptyRecords) throw VTERROR_CODE::SystemLimit;
    const std::int64_t rowsPerChunk = length > 0 ? RecordsPerChunk : EmptyRecordsPerChunk;
    const std::int64_t chunks = rows / rowsPerChunk + (rows % rowsPerChunk != 0 ? 1 : 0);
    ReserveChunks(list, chunks);
    list.chunkCount = static_cast<std::int32_t>(chunks);
    FillBulkChunks(list, length > 0 ? text : NoText, rows, length, rowsPerChunk);
}

void SetBulkRecordsOwning(RecordList& list, OwnedArray<char16_t> text, std::int64_t rows, std::int64_t length)
{
    TraceScope trace("record_list.cpp", "SetBulkRecordsOwning");
    SetBulkRecords(list, text.get(), rows, length);
    // A list without rows is filled again whenever somebody asks for its text; it must not own what nothing reads.
    if (rows > 0) list.ownedText = text.release();
}

RecordText GetRecord(const RecordList& list, std::int64_t row) noexcept
{
    const std::int32_t chunk = FindChunk(list, row);
    return RowOfChunk(list.chunks[chunk], row - ChunkStart(list, chunk));
}

std::int64_t LongestOfFirstRecords(const RecordList& list, std::int64_t rows) noexcept
{
    TraceScope trace("record_list.cpp", "LongestOfFirstRecords");
    std::int64_t longest = 0;
    ForEachRowRun(list, 0, rows, [&](const RecordChunk& chunk, std::int64_t first, std::int64_t end) {
        if (IsBulk(chunk)) longest = std::max(longest, chunk.longest);
        for (std::int64_t row = first; !IsBulk(chunk) && row < end; ++row)
            longest = std::max(longest, chunk.records[row].length);
    });
    return longest;
}

std::int64_t LongestRecord(const RecordList& list) noexcept
{
    TraceScope trace("record_list.cpp", "LongestRecord");
    std::int64_t longest = 0;
    for (std::int32_t i = 0; i < list.chunkCount; ++i)
        longest = std::max(longest, list.chunks[i].longest);
    return longest;
}

} // namespace vantrel
