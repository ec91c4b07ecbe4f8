// From the interpreter's records to a tree.
#include <cstring>

#include "entry/trace.h"
#include "hosts/aplx_characters.h"
#include "hosts/aplx_host.h"
#include "hosts/aplx_words.h"
#include "hosts/item_loops.h"
#include "model/ccdr_layout.h"
#include "model/primitives.h"

namespace vantrel::aplx {
namespace {

constexpr std::int64_t NodesPerPoll = 1024;

struct RecordReader {
    EditContext* context;
    std::int64_t nodes = 0;
    Vector<std::int64_t> shape; // of the node being made; in a record it may stand at any alignment
};

std::uint32_t ScdrTypeOf(std::uint8_t type) noexcept
{
    switch (type) {
    case RecordBoolean: return TypeBoolean;
    case RecordInteger: return TypeInteger;
    case RecordFloat: return TypeReal;
    case RecordNested: return TypeNested;
    default: return TypeCharacter;
    }
}

void ReadItems(const RecordHeader& header, void* to) noexcept
{
    switch (header.type) {
    case RecordBoolean: return BitsOfWords(header.data, static_cast<std::uint8_t*>(to), header.count);
    case RecordCharacter:
        return ConvertItems(header.data, static_cast<char16_t*>(to), header.count,
                            [](std::uint8_t position) { return CharacterTable[position]; });
    default: std::memcpy(to, header.data, static_cast<std::size_t>(header.dataSize));
    }
}

void PollInterrupt(RecordReader& reader)
{
    if (++reader.nodes % NodesPerPoll != 0) return;
    if (CheckForInterrupt(reader.context) != 0) throw VTERROR_CODE::Interrupt;
}

ScdrPtr MakeNode(RecordReader& reader, Scdr* parent, const RecordHeader& header)
{
    reader.shape.resize(static_cast<std::size_t>(header.rank));
    if (header.rank > 0) std::memcpy(reader.shape.data(), header.shape, reader.shape.size() * 8);
    return AllocateScdr(reader.context, parent, ScdrTypeOf(header.type), header.rank, reader.shape.data(),
                        false);
}

// Throws, and leaves nothing behind then. The record has been validated.
ScdrPtr ReadRecord(RecordReader& reader, Scdr* parent, const RecordPlace& place)
{
    PollInterrupt(reader);
    const RecordHeader header = ReadRecordHeader(place);
    ScdrPtr node = MakeNode(reader, parent, header);
    const std::int64_t records = ItemRecords(header);
    for (std::int64_t i = 0; i < records; ++i)
        SetChild(*node, i, ReadRecord(reader, node.get(), ItemPlace(header, i)));
    if (header.type != RecordNested) {
        if (header.count > 0) ReadItems(header, WritableData(*node));
        SetSimplestType(*node);
    }
    return node;
}

} // namespace

Scdr* ObjectToScdr(EditContext* context, HostObject record)
{
    TraceScope trace("aplx_read.cpp", "ObjectToScdr");
    try {
        if (record == nullptr) throw VTERROR_CODE::DomainError;
        const auto* start = static_cast<const std::uint8_t*>(record);
        const RecordPlace place{start, LoadNumber<std::int64_t>(start + RecordLengthAt)};
        ValidateRecord(place);
        RecordReader reader{context, 0, {}};
        return ReadRecord(reader, nullptr, place).release();
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

} // namespace vantrel::aplx
