#include "hosts/aplx_record.h"

#include "entry/memory.h"
#include "entry/trace.h"
#include "model/ccdr_layout.h"
#include "model/scdr.h"

namespace vantrel::aplx {
namespace {

constexpr std::int32_t HighestReadableRank = 256;
constexpr std::int64_t BitsPerWord = 64;

void Require(bool sound)
{
    if (!sound) throw VTERROR_CODE::DomainError;
}

bool IsKnownType(std::uint8_t type) noexcept
{
    switch (type) {
    case RecordBoolean:
    case RecordInteger:
    case RecordFloat:
    case RecordCharacter:
    case RecordNested: return true;
    default: return false;
    }
}

void CheckType(std::uint8_t type)
{
    // The interpreter's own code for what it never hands out.
    if (type == RecordRefused) throw VTERROR_CODE::ImplicitComparisonTolerance;
    Require(IsKnownType(type));
}

// Product of the axis lengths that stand at `shape`.
std::int64_t ReadCount(const std::uint8_t* shape, std::int32_t rank)
{
    bool empty = false;
    bool overflows = false;
    std::int64_t product = 1;
    for (std::int32_t axis = 0; axis < rank; ++axis) {
        const auto length = LoadNumber<std::int64_t>(shape + std::int64_t{axis} * 8);
        Require(length >= 0);
        empty = empty || length == 0;
        overflows = overflows || (length > 0 && product > INT64_MAX / length);
        if (!empty && !overflows) product *= length;
    }
    // An axis of length 0 makes the array empty however long the others are.
    if (empty) return 0;
    Require(!overflows);
    return product;
}

std::int64_t CheckedDataSize(std::uint8_t type, std::int64_t count, std::int64_t room)
{
    // Bits are the smallest items; what passes here does not overflow below.
    Require(count / BitsPerWord <= room);
    const auto size = static_cast<std::int64_t>(RecordDataSize(type, count));
    Require(size <= room);
    return size;
}

struct Validation {
    std::int64_t bytesLeft; // of the whole block, not yet part of any record
};

void Validate(Validation& validation, const RecordPlace& place, std::int32_t depth)
{
    if (depth > DeepestNesting) throw VTERROR_CODE::SystemLimit;
    const RecordHeader header = ReadRecordHeader(place);
    validation.bytesLeft -= header.data - header.start + header.dataSize;
    Require(validation.bytesLeft >= 0);
    const std::int64_t records = ItemRecords(header);
    for (std::int64_t i = 0; i < records; ++i)
        Validate(validation, ItemPlace(header, i), depth + 1);
}

} // namespace

std::size_t RecordDataSize(std::uint8_t type, std::int64_t count)
{
    switch (type) {
    case RecordBoolean: return CheckedMultiply(count / BitsPerWord + (count % BitsPerWord != 0), 8);
    case RecordCharacter: return static_cast<std::size_t>(count);
    default: return CheckedMultiply(count, 8);
    }
}

RecordHeader ReadRecordHeader(const RecordPlace& place)
{
    Require(place.room >= RecordHeaderSize);
    RecordHeader header = {};
    header.start = place.start;
    header.length = LoadNumber<std::int64_t>(place.start + RecordLengthAt);
    Require(header.length >= RecordHeaderSize && header.length <= place.room);
    header.type = place.start[RecordTypeAt];
    CheckType(header.type);
    header.rank = LoadNumber<std::uint16_t>(place.start + RecordRankAt) >> 2;
    if (header.rank > HighestReadableRank) throw VTERROR_CODE::RankError;
    const std::int64_t dataAt = RecordHeaderSize + std::int64_t{header.rank} * 8;
    Require(dataAt <= header.length);
    header.shape = place.start + RecordHeaderSize;
    header.data = place.start + dataAt;
    header.count = ReadCount(header.shape, header.rank);
    header.dataSize = CheckedDataSize(header.type, header.count, header.length - dataAt);
    return header;
}

std::int64_t ItemRecords(const RecordHeader& header) noexcept
{
    if (header.type != RecordNested) return 0;
    return header.count > 0 ? header.count : 1;
}

RecordPlace ItemPlace(const RecordHeader& header, std::int64_t index)
{
    const std::int64_t itemsAt = header.data - header.start + header.dataSize;
    const std::int64_t offset =
        header.count > 0 ? LoadNumber<std::int64_t>(header.data + index * 8) : itemsAt;
    Require(offset >= itemsAt && offset <= header.length);
    return {header.start + offset, header.length - offset};
}

void ValidateRecord(const RecordPlace& place)
{
    TraceScope trace("aplx_record.cpp", "ValidateRecord");
    Validation validation{place.room};
    Validate(validation, place, 1);
}

} // namespace vantrel::aplx
