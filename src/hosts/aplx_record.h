// The APLX array record: a header of 16 bytes, the shape, the items. A nested array's record contains its items' records.
//
// A record comes from another party, in one block of bytes at any alignment. Nothing in it is believed before it was compared with the
// length field of the record that it stands in.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vantrel::aplx {

// Where the fields of the header stand. Bytes 0-3 and 13 are the interpreter's own.
inline constexpr std::int64_t RecordLengthAt = 4; // 64 bits: bytes of the record with all that it contains
inline constexpr std::int64_t RecordTypeAt = 12;  // 8 bits
inline constexpr std::int64_t RecordRankAt = 14;  // 16 bits: four times the rank
inline constexpr std::int64_t RecordHeaderSize = 16;

enum RecordType : std::uint8_t {
    RecordBoolean = 5,    // words of 64 bits, item 0 in the most significant bit
    RecordInteger = 7,    // 64 bits
    RecordFloat = 9,      // 64 bits
    RecordCharacter = 11, // a byte, a position in the interpreter's character table
    RecordRefused = 13,
    RecordNested = 15, // the offset of each item's record, counted from the start of this one
};

// A record's first byte and the bytes from there to the end of what contains it.
struct RecordPlace {
    const std::uint8_t* start;
    std::int64_t room;
};

// The header of a record, taken apart and checked: shape and items lie inside the record, the record inside its room.
struct RecordHeader {
    const std::uint8_t* start;
    std::int64_t length;
    std::int64_t count; // product of the shape
    const std::uint8_t* shape;
    const std::uint8_t* data;
    std::int64_t dataSize; // of a nested array the offsets; an empty one has none
    std::int32_t rank;
    std::uint8_t type;
};

// Throws ImplicitComparisonTolerance for the type that is always refused, RankError for a rank above 256, DomainError for another
// type and for a header that lies.
[[nodiscard]] RecordHeader ReadRecordHeader(const RecordPlace& place);
// Records that a record contains: of an empty nested array its prototype.
[[nodiscard]] std::int64_t ItemRecords(const RecordHeader& header) noexcept;
// Throws DomainError for an offset that points out of the record or into what stands before its items.
[[nodiscard]] RecordPlace ItemPlace(const RecordHeader& header, std::int64_t index);
// The whole of a record, its items in order. Throws as above, SystemLimit for nesting deeper than DeepestNesting, and DomainError
// where records share bytes: a few bytes could otherwise stand for any number of items.
void ValidateRecord(const RecordPlace& place);

// Bytes of that many items. Throws OutOfMemory where they do not fit.
[[nodiscard]] std::size_t RecordDataSize(std::uint8_t type, std::int64_t count);

} // namespace vantrel::aplx
