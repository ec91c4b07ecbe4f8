// From the interpreter's blocks to a tree.
#include <cstring>

#include "entry/trace.h"
#include "hosts/dyalog_host.h"
#include "hosts/item_loops.h"
#include "hosts/load_poll.h"
#include "model/primitives.h"

namespace vantrel {
namespace {

// An argument's rank field cannot say more than 15; the limit is the editor's own.
constexpr std::int32_t HighestReadableRank = 256;

struct BlockReader {
    EditContext* context;
    DyalogHost& host;
    LoadPoll poll;
};

[[noreturn]] void Refuse(BlockReader& reader, VTERROR_CODE code, const char16_t* message)
{
    SetHostMessage(reader.host, code, message);
    throw code;
}

std::uint32_t ScdrTypeOf(std::uint32_t elementType) noexcept
{
    switch (elementType) {
    case DyalogBoolean: return TypeBoolean;
    case DyalogInteger8:
    case DyalogInteger16:
    case DyalogInteger32: return TypeInteger;
    case DyalogFloat: return TypeReal;
    case DyalogPointer: return TypeNested;
    case DyalogComplex: return TypeComplex;
    case DyalogDecimal: return TypeDecimal;
    default: return TypeCharacter;
    }
}

void CheckHeader(BlockReader& reader, const BlockHeader& header)
{
    if (header.rank > HighestReadableRank) Refuse(reader, VTERROR_CODE::RankError, MessageRank);
    if (header.arrayClass != ClassNested && header.arrayClass != ClassSimple) {
        Refuse(reader, VTERROR_CODE::DomainError, MessageClass);
    }
    if (header.elementType == DyalogRational) Refuse(reader, VTERROR_CODE::DomainError, MessageRational);
    if (header.elementType > DyalogDecimal) Refuse(reader, VTERROR_CODE::DomainError, MessageType);
}

// One UTF-16 unit holds neither a surrogate nor a code point of another plane.
bool IsOutsideUnit(std::uint32_t codePoint) noexcept
{
    return codePoint - 0xD800u < 0x800u || codePoint > 0xFFFFu;
}

void CheckCodePoints(BlockReader& reader, const BlockHeader& header, std::int64_t count)
{
    if (header.elementType != DyalogCharacter32) return;
    const auto* codePoints = static_cast<const std::uint32_t*>(header.data);
    const auto outside = [](std::uint32_t codePoint) {
        return static_cast<std::uint32_t>(IsOutsideUnit(codePoint));
    };
    if (NoItemHasBits<std::uint32_t>(codePoints, count, outside)) return;
    Refuse(reader, VTERROR_CODE::DomainError, MessageCodePoint);
}

void ReadBits(const std::uint8_t* from, std::uint8_t* to, std::int64_t count)
{
    const std::size_t bytes = BlockDataSize(DyalogBoolean, count);
    std::memcpy(to, from, bytes);
    // What the interpreter leaves behind the last item is not ours to keep.
    if (count % 8 != 0) to[bytes - 1] = static_cast<std::uint8_t>(to[bytes - 1] & (0xFF00 >> (count % 8)));
}

template <typename From, typename To> void Widen(const void* from, void* to, std::int64_t count)
{
    ConvertItems(static_cast<const From*>(from), static_cast<To*>(to), count,
                 [](From item) { return static_cast<To>(item); });
}

void ReadItems(BlockReader& reader, const BlockHeader& header, std::int64_t count, void* to)
{
    switch (header.elementType) {
    case DyalogAtomic:
        return ServiceOf(reader.host, dyalog::FromAtomic)(
            static_cast<char16_t*>(to), static_cast<const std::uint8_t*>(header.data), count);
    case DyalogBoolean:
        return ReadBits(static_cast<const std::uint8_t*>(header.data), static_cast<std::uint8_t*>(to), count);
    case DyalogInteger8: return Widen<std::int8_t, std::int64_t>(header.data, to, count);
    case DyalogInteger16: return Widen<std::int16_t, std::int64_t>(header.data, to, count);
    case DyalogInteger32: return Widen<std::int32_t, std::int64_t>(header.data, to, count);
    case DyalogCharacter8: return Widen<std::uint8_t, char16_t>(header.data, to, count);
    case DyalogCharacter32: return Widen<std::uint32_t, char16_t>(header.data, to, count);
    default: std::memcpy(to, header.data, BlockDataSize(header.elementType, count));
    }
}

void PollInterrupt(BlockReader& reader)
{
    if (!reader.poll.Due()) return;
    if (CheckForInterrupt(reader.context) != 0) throw VTERROR_CODE::Interrupt;
    AnswerMessages(reader.context);
}

ScdrPtr ReadBlock(BlockReader& reader, Scdr* parent, const DyalogBlock* block, std::int32_t depth);

void ReadChildren(BlockReader& reader, Scdr& node, const void* pointers, std::int32_t depth)
{
    const auto* blocks = static_cast<const DyalogBlock* const*>(pointers);
    const std::int64_t count = ChildCount(node);
    for (std::int64_t i = 0; i < count; ++i)
        SetChild(node, i, ReadBlock(reader, &node, blocks[i], depth + 1));
}

// Throws, and leaves nothing behind then.
ScdrPtr ReadBlock(BlockReader& reader, Scdr* parent, const DyalogBlock* block, std::int32_t depth)
{
    if (block == nullptr) Refuse(reader, VTERROR_CODE::DomainError, MessageType);
    if (depth > DeepestNesting) throw VTERROR_CODE::SystemLimit;
    PollInterrupt(reader);
    const BlockHeader header = ReadBlockHeader(*block);
    const std::int64_t count = CountItems(header.rank, header.shape);
    CheckHeader(reader, header);
    // A size that overflows is refused before an item is looked at.
    static_cast<void>(BlockDataSize(header.elementType, count));
    CheckCodePoints(reader, header, count);
    ScdrPtr node = AllocateScdr(reader.context, parent, ScdrTypeOf(header.elementType), header.rank,
                                header.shape, false);
    if (node->Type == TypeNested) {
        ReadChildren(reader, *node, header.data, depth);
    } else {
        if (count > 0) ReadItems(reader, header, count, WritableData(*node));
        SetSimplestType(*node);
    }
    return node;
}

} // namespace

Scdr* ObjectToScdr(EditContext* context, HostObject localp)
{
    TraceScope trace("dyalog_read.cpp", "ObjectToScdr");
    BlockReader reader{context, HostOf(context), {}};
    try {
        const auto* holder = static_cast<const Localp*>(localp);
        return ReadBlock(reader, nullptr, holder != nullptr ? holder->block : nullptr, 1).release();
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

} // namespace vantrel
