#include <algorithm>
#include <functional>

#include "entry/trace.h"
#include "model/record_chunks.h"

namespace vantrel {
namespace {

// --- one record ---

constexpr std::int64_t SmallestSlack = 16;

bool LiesInside(const char16_t* text, std::int64_t length, const Record& record) noexcept
{
    const std::less<const char16_t*> before;
    return length > 0 && before(text, record.text + record.capacity) && before(record.text, text + length);
}

// Writes into the record's own buffer; the new text must fit and come from elsewhere.
void SpliceInPlace(Record& record, std::int64_t column, std::int64_t removed, const char16_t* text,
                   std::int64_t length) noexcept
{
    auto* buffer = const_cast<char16_t*>(record.text);
    char16_t* rest = buffer + column + removed;
    char16_t* end = buffer + record.length;
    if (length < removed) std::copy(rest, end, buffer + column + length);
    if (length > removed) std::copy_backward(rest, end, end + length - removed);
    std::copy_n(text, length, buffer + column);
}

// Room for further typing is taken with the buffer, so that a long line is not copied for every key.
void SpliceIntoNewBuffer(Record& record, std::int64_t column, std::int64_t removed, const char16_t* text,
                         std::int64_t length)
{
    const std::int64_t newLength = record.length - removed + length;
    const std::int64_t capacity = newLength + std::max(SmallestSlack, newLength / 8);
    OwnedArray<char16_t> buffer = AllocateArray<char16_t>(capacity);
    char16_t* end = std::copy_n(record.text, column, buffer.get());
    end = std::copy_n(text, length, end);
    std::copy(record.text + column + removed, record.text + record.length, end);
    FreeRecordTexts(&record, 1);
    record.text = buffer.release();
    record.capacity = capacity;
}

// --- chunks ---

// Parts a chunk so that `offset` rows stay and the others follow in a chunk of their own. The rows of the list are the same afterwards.
void SplitChunk(RecordList& list, std::int32_t index, std::int32_t offset)
{
    ReserveChunks(list, 1);
    RecordChunk& head = list.chunks[index];
    RecordChunk tail = head;
    tail.count = head.count - offset;
    if (IsBulk(head)) {
        tail.bulkText += offset * head.longest;
        tail.widest = -1;
        head.count = offset;
        head.widest = -1;
    } else {
        tail.records = AllocateArray<Record>(tail.count).release();
        tail.capacity = tail.count;
        std::copy_n(head.records + offset, tail.count, tail.records);
        head.count = offset;
        RefreshChunk(head);
        RefreshChunk(tail);
    }
    OpenChunkGap(list, index + 1, 1);
    list.chunks[index + 1] = tail;
    RenumberChunks(list, index);
}

// A bulk chunk of rows without text may hold any number of them, but an edited one has an entry for each: the row's chunk is cut to the
// usual size.
void PartLongChunk(RecordList& list, std::int64_t row)
{
    std::int32_t index = FindChunk(list, row);
    if (list.chunks[index].count <= RecordsPerChunk) return;
    const std::int64_t offset = (row - ChunkStart(list, index)) / RecordsPerChunk * RecordsPerChunk;
    if (offset > 0) SplitChunk(list, index++, static_cast<std::int32_t>(offset));
    if (list.chunks[index].count > RecordsPerChunk) SplitChunk(list, index, RecordsPerChunk);
}

// Takes rows out of one chunk; of a bulk chunk only from an end.
void EraseFromChunk(RecordChunk& chunk, std::int32_t first, std::int32_t count) noexcept
{
    if (count == 0) return;
    if (IsBulk(chunk)) {
        if (first == 0) chunk.bulkText += count * chunk.longest;
        chunk.count -= count;
        chunk.widest = -1;
        return;
    }
    FreeRecordTexts(chunk.records + first, count);
    std::copy(chunk.records + first + count, chunk.records + chunk.count, chunk.records + first);
    chunk.count -= count;
    RefreshChunk(chunk);
}

void RemoveEmptyChunks(RecordList& list, std::int32_t first, std::int32_t last) noexcept
{
    std::int32_t kept = first;
    for (std::int32_t i = first; i <= last; ++i) {
        if (list.chunks[i].count > 0) {
            list.chunks[kept++] = list.chunks[i];
        } else {
            FreeChunk(list.chunks[i]);
        }
    }
    CloseChunkGap(list, kept, last + 1 - kept);
    RenumberChunks(list, first);
}

// --- text blocks ---

// Hangs a list's one text block on a link, so that others can follow it.
void MakeTextChain(RecordList& list)
{
    if (list.ownedText == nullptr || (list.flags & RecordsTextChain) != 0) return;
    auto* link = static_cast<OwnedTextLink*>(AllocateBytes(sizeof(OwnedTextLink)));
    *link = {nullptr, static_cast<char16_t*>(list.ownedText)};
    list.ownedText = link;
    list.flags |= RecordsTextChain;
}

void PrepareTextMove(RecordList& list, RecordList& from)
{
    if (list.ownedText == nullptr || from.ownedText == nullptr) return;
    MakeTextChain(list);
    MakeTextChain(from);
}

void MoveTexts(RecordList& list, RecordList& from) noexcept
{
    if (from.ownedText == nullptr) return;
    if (list.ownedText != nullptr) {
        auto* last = static_cast<OwnedTextLink*>(from.ownedText);
        while (last->next != nullptr)
            last = last->next;
        last->next = static_cast<OwnedTextLink*>(list.ownedText);
    }
    list.ownedText = from.ownedText;
    list.flags = static_cast<std::uint8_t>(list.flags | (from.flags & RecordsTextChain));
    from.ownedText = nullptr;
}

// Forgets a list whose rows and texts have moved.
void ForgetMovedList(RecordList& from) noexcept
{
    if (from.starts != nullptr) FreeBytes(from.chunks);
    from = RecordList{};
}

// --- inserting ---

// Few rows join the records of a chunk that has room for them, so that typing line after line makes no chunk a line.
void InsertIntoChunk(RecordList& list, std::int32_t index, std::int32_t offset, RecordList& from)
{
    const auto rows = static_cast<std::int32_t>(from.count);
    RecordChunk& chunk = list.chunks[index];
    PrepareTextMove(list, from);
    MakeEdited(chunk, rows);
    std::copy_backward(chunk.records + offset, chunk.records + chunk.count,
                       chunk.records + chunk.count + rows);
    Record* place = chunk.records + offset;
    for (std::int32_t i = 0; i < from.chunkCount; ++i) {
        const RecordChunk& source = from.chunks[i];
        for (std::int32_t row = 0; row < source.count; ++row) {
            const RecordText text = RowOfChunk(source, row);
            *place++ = IsBulk(source) ? Record{text.text, text.length, -1, 0} : source.records[row];
        }
        FreeBytes(source.records);
    }
    chunk.count += rows;
    RefreshChunk(chunk);
    MoveTexts(list, from);
    RenumberChunks(list, index);
}

void InsertChunks(RecordList& list, std::int64_t at, RecordList& from)
{
    ReserveChunks(list, from.chunkCount + (list.chunkCount > 0 ? 1 : 0));
    PrepareTextMove(list, from);
    std::int32_t place = list.chunkCount;
    if (at < list.count) {
        place = FindChunk(list, at);
        const auto offset = static_cast<std::int32_t>(at - ChunkStart(list, place));
        if (offset > 0) SplitChunk(list, place++, offset);
    }
    OpenChunkGap(list, place, from.chunkCount);
    std::copy_n(from.chunks, from.chunkCount, list.chunks + place);
    MoveTexts(list, from);
    RenumberChunks(list, place);
}

} // namespace

void MakeEdited(RecordChunk& chunk, std::int32_t more)
{
    const std::int32_t needed = chunk.count + more;
    if (!IsBulk(chunk) && needed <= chunk.capacity) return;
    const std::int32_t capacity =
        std::max(needed, std::min<std::int32_t>(chunk.capacity * 2, RecordsPerChunk));
    OwnedArray<Record> records = AllocateArray<Record>(capacity);
    for (std::int32_t row = 0; row < chunk.count; ++row) {
        const RecordText text = RowOfChunk(chunk, row);
        records.get()[row] = IsBulk(chunk) ? Record{text.text, text.length, -1, 0} : chunk.records[row];
    }
    FreeBytes(chunk.records);
    chunk.records = records.release();
    chunk.capacity = capacity;
}

void RefreshChunk(RecordChunk& chunk) noexcept
{
    chunk.longest = 0;
    for (std::int32_t i = 0; i < chunk.count; ++i)
        chunk.longest = std::max(chunk.longest, chunk.records[i].length);
    chunk.widest = -1;
}

void SpliceRecord(RecordList& list, std::int64_t row, std::int64_t column, std::int64_t removed,
                  const char16_t* text, std::int64_t length)
{
    TraceScope trace("record_edit.cpp", "SpliceRecord");
    PartLongChunk(list, row);
    const std::int32_t index = FindChunk(list, row);
    RecordChunk& chunk = list.chunks[index];
    MakeEdited(chunk, 0);
    Record& record = chunk.records[row - ChunkStart(list, index)];
    const std::int64_t newLength = record.length - removed + length;
    const bool cutsEndOff = length == 0 && column + removed == record.length; // needs no buffer at all
    if (!cutsEndOff) {
        if (newLength <= record.capacity && !LiesInside(text, length, record)) {
            SpliceInPlace(record, column, removed, text, length);
        } else {
            SpliceIntoNewBuffer(record, column, removed, text, length);
        }
    }
    record.length = newLength;
    record.width = -1;
    RefreshChunk(chunk);
}

void EraseRecords(RecordList& list, std::int64_t first, std::int64_t count)
{
    TraceScope trace("record_edit.cpp", "EraseRecords");
    count = std::min(count, list.count - first);
    if (count <= 0) return;
    const std::int32_t head = FindChunk(list, first);
    const auto headOffset = static_cast<std::int32_t>(first - ChunkStart(list, head));
    const bool insideOne = first + count < ChunkStart(list, head) + list.chunks[head].count;
    if (insideOne && headOffset > 0 && IsBulk(list.chunks[head])) SplitChunk(list, head, headOffset);
    const std::int32_t start = FindChunk(list, first);
    const std::int32_t tail = FindChunk(list, first + count - 1);
    for (std::int32_t i = start; i <= tail; ++i) {
        const std::int64_t chunkStart = ChunkStart(list, i);
        const std::int64_t from = std::max<std::int64_t>(first - chunkStart, 0);
        const std::int64_t end = std::min<std::int64_t>(first + count - chunkStart, list.chunks[i].count);
        EraseFromChunk(list.chunks[i], static_cast<std::int32_t>(from),
                       static_cast<std::int32_t>(end - from));
    }
    RemoveEmptyChunks(list, start, tail);
}

void InsertRecords(RecordList& list, std::int64_t at, RecordList& from)
{
    TraceScope trace("record_edit.cpp", "InsertRecords");
    if (from.count == 0) {
        FreeRecords(from);
        return;
    }
    const bool hasRows = list.count > 0;
    const std::int32_t index = !hasRows ? 0 : at < list.count ? FindChunk(list, at) : list.chunkCount - 1;
    if (hasRows && list.chunks[index].count + from.count <= RecordsPerChunk) {
        InsertIntoChunk(list, index, static_cast<std::int32_t>(at - ChunkStart(list, index)), from);
    } else {
        InsertChunks(list, at, from);
    }
    ForgetMovedList(from);
}

} // namespace vantrel
