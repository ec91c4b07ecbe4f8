// The text of a simple array: its formatted display, one record per row.
//
// A record is a line of UTF-16 text without a terminator; line ends exist only between records. Rows are reached by
// row number and only through these routines. Behind them stands a list of chunks of at most `RecordsPerChunk` rows
// (rows without text, of which an empty array may claim any number, are many more to a chunk):
// a *bulk* chunk is rows of one length lying one behind the other in a text block (the array's own data or a formatted
// block shared by all chunks), an *edited* chunk holds single records that may own their text. So a matrix of a
// million rows costs a thousand chunks, row n is found at once, and an edit touches one chunk.
//
// Units: lengths in UTF-16 units, widths in pixels, rows counted from 0. Routines throw VTERROR_CODE::OutOfMemory unless
// said otherwise, and change nothing when they throw.
#pragma once

#include <cstdint>

#include "entry/edit_context.h"
#include "entry/memory.h"
#include "tools/char_widths.h"

namespace vantrel {

inline constexpr std::int64_t RecordsPerChunk = 512;

struct RecordText {
    const char16_t* text = nullptr; // not terminated; valid until the list changes
    std::int64_t length = 0;
};

// One edited line. Everything in these three structures is private to the record routines, except where marked.
struct Record {
    const char16_t* text;
    std::int64_t length;
    std::int64_t width;    // -1 = not known
    std::int64_t capacity; // units of the record's own buffer; 0 = the text is borrowed
};

struct RecordChunk {
    const char16_t* bulkText; // bulk: first row's text, the others follow without a gap
    std::int64_t longest;     // length of the longest row; in a bulk chunk that of every row
    Record* records;          // edited: `capacity` entries, the first `count` in use; null in a bulk chunk
    std::int32_t count;
    std::int32_t capacity;
    std::int64_t widest; // -1 = some row's width is not known
};

// Owned by its node; plain so that a node can hold it. A zero-filled list has no records and is valid. A list that holds records must not
// be moved or copied: `chunks` may point into it.
struct RecordList {
    RecordChunk* chunks;  // `&single`, or a block of chunks and starts
    std::int64_t* starts; // first row of each chunk; null with `single`
    RecordChunk single;   // a list of one chunk needs no block of its own
    void*
        ownedText; // the text block that bulk chunks and borrowed records point into, or null; see RecordsTextChain
    std::int64_t count;          // public: rows in all
    std::int64_t formattedWidth; // public: box size as last computed, margins and edges included
    std::int64_t formattedHeight;
    std::int64_t widest; // public: greatest record width, as GetRecordWidths found it last
    std::int32_t chunkCount;
    std::uint8_t capacityBits; // the block has room for 1 << capacityBits chunks
    std::uint8_t flags;        // public: RecordListFlag
};

enum RecordListFlag : std::uint8_t {
    RecordsResizedByUser = 0x02,
    RecordsFormatted = 0x08, // formatted and measured
    RecordsEdited = 0x10,    // the text differs from the node's data
    RecordsTextChain = 0x20, // private: several text blocks are owned
};

// Frees every record and the list's own text. The list is then zero-filled.
void FreeRecords(RecordList& list) noexcept;

// A list of its own, for records on their way into a node's list.
struct OwnedRecords {
    RecordList list{};
    OwnedRecords() = default;
    ~OwnedRecords() { FreeRecords(list); }
    OwnedRecords(const OwnedRecords&) = delete;
    OwnedRecords& operator=(const OwnedRecords&) = delete;
};

// Fills an empty list with `rows` rows of `length` units each, one behind the other in `text`. Borrowed: `text` must outlive
// the list (it is the node's data). Owned: `text` came from AllocateBytes and the list frees it. More than 2 to the 46th rows without
// text throw SystemLimit.
void SetBulkRecords(RecordList& list, const char16_t* text, std::int64_t rows, std::int64_t length);
void SetBulkRecordsOwning(RecordList& list, OwnedArray<char16_t> text, std::int64_t rows,
                          std::int64_t length);

// Splits a text at line feeds into an empty list: a carriage return directly before a line feed is left out (unless it is
// the text's first character); the remainder after the last line feed is always a record. `borrow` points into `text`
// instead of copying; the text must then outlive the list. An allocation failure is stored in ErrorCode, the list is left empty and the
// result is false.
[[nodiscard]] bool StringToRecords(EditContext* context, const char16_t* text, std::int64_t length,
                                   RecordList& list, bool borrow);

struct RecordRange {
    std::int64_t startColumn;
    std::int64_t startRecord;
    std::int64_t endColumn; // exclusive
    std::int64_t endRecord;
};
// The text of a range, records joined by CR LF. `firstRow` is added to both record numbers (the shown plane's first row). Columns and rows beyond
// the end stand for the end.
[[nodiscard]] Text RecordsToString(const RecordList& list, std::int64_t firstRow, const RecordRange& range);
// The length of that text in units, without making it.
[[nodiscard]] std::int64_t RecordsToStringLength(const RecordList& list, std::int64_t firstRow,
                                                 const RecordRange& range) noexcept;
// Writes that text, not terminated, into room for as many units.
void WriteRecords(const RecordList& list, std::int64_t firstRow, const RecordRange& range,
                  char16_t* destination) noexcept;
// All records joined by CR LF.
[[nodiscard]] Text AllRecordsText(const RecordList& list);

// Row must be 0 .. count - 1.
[[nodiscard]] RecordText GetRecord(const RecordList& list, std::int64_t row) noexcept;
// The longest record's length in units.
[[nodiscard]] std::int64_t LongestRecord(const RecordList& list) noexcept;

// Replaces `removed` units at `column` of one row by `length` units of `text` (which may be part of the list). The row becomes an edited
// record. Column and `removed` lie within the row.
void SpliceRecord(RecordList& list, std::int64_t row, std::int64_t column, std::int64_t removed,
                  const char16_t* text, std::int64_t length);
// Takes rows out. What reaches beyond the last row is ignored.
void EraseRecords(RecordList& list, std::int64_t first, std::int64_t count);
// Puts the rows of `from` (left empty) before row `at`, 0 .. count. Chunks move, texts stay: what `from` borrowed must outlive `list`, too.
void InsertRecords(RecordList& list, std::int64_t at, RecordList& from);

// Measuring. GetRecordWidths measures every row whose width is not known and returns the greatest width of all; `progress` (may be
// null) is called after each chunk that had to be measured with the number of rows measured in it, and stops the work by answering
// false; the result is then -1.
struct MeasureProgress {
    bool (*step)(void* state, std::int64_t rowsMeasured);
    void* state;
};
[[nodiscard]] std::int64_t GetRecordWidths(RecordList& list, CharWidths& widths,
                                           const MeasureProgress* progress);
// Rows whose width is not known.
[[nodiscard]] std::int64_t CountUnmeasuredRecords(const RecordList& list) noexcept;
// Forgets all widths (the font changed).
void ForgetRecordWidths(RecordList& list) noexcept;

} // namespace vantrel
