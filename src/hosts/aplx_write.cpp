// From a tree to the interpreter's records.
#include <algorithm>
#include <cstring>

#include "entry/trace.h"
#include "hosts/aplx_characters.h"
#include "hosts/aplx_host.h"
#include "hosts/aplx_words.h"
#include "hosts/item_loops.h"
#include "model/ccdr_layout.h"
#include "model/whole_numbers.h"

namespace vantrel::aplx {
namespace {

constexpr double LowestInteger = -2147483648.0;
constexpr double HighestInteger = 2147483647.0;

void Require(bool possible)
{
    if (!possible) throw VTERROR_CODE::DomainError;
}

bool HasOnlyKnownCharacters(const Scdr& scdr) noexcept
{
    const auto* units = static_cast<const char16_t*>(scdr.data);
    const CharacterPositions& positions = Positions();
    return std::all_of(units, units + scdr.ElementCount,
                       [&](char16_t unit) { return HasPosition(positions, unit); });
}

// Complex numbers go out as the narrowest real numbers that they are.
std::uint8_t RealTypeOfPairs(const Scdr& scdr)
{
    const auto* pairs = static_cast<const double*>(scdr.data);
    std::uint8_t type = RecordBoolean;
    for (std::int64_t i = 0; i < scdr.ElementCount; ++i) {
        const double real = pairs[2 * i];
        Require(pairs[2 * i + 1] == 0.0); // a NaN is not
        if (IsBit(real)) continue;
        const bool whole = real >= LowestInteger && real <= HighestInteger && IsIntegral(real);
        type = std::max<std::uint8_t>(type, whole ? RecordInteger : RecordFloat);
    }
    return type;
}

// Simple types keep their storage, so that what nobody edited comes back as it was.
std::uint8_t RecordTypeOf(const Scdr& scdr)
{
    switch (scdr.Type) {
    case TypeNested: return RecordNested;
    case TypeCharacter: Require(HasOnlyKnownCharacters(scdr)); return RecordCharacter;
    case TypeBoolean: return RecordBoolean;
    case TypeInteger: return RecordInteger;
    case TypeReal: return RecordFloat;
    case TypeComplex: return RealTypeOfPairs(scdr);
    default: throw VTERROR_CODE::DomainError;
    }
}

// An empty nested array's prototype stands where the offsets would.
std::size_t OwnDataSize(const Scdr& scdr, std::uint8_t type)
{
    return RecordDataSize(type, scdr.ElementCount);
}

void Plan(EditContext* context, const Scdr& scdr, RecordPlan& plan, std::int32_t depth)
{
    if (depth > DeepestNesting) throw VTERROR_CODE::SystemLimit;
    if (scdr.Rank > context->langEnv->HighestRank) throw VTERROR_CODE::RankError;
    const std::uint8_t type = RecordTypeOf(scdr);
    plan.types.push_back(type);
    const auto own = static_cast<std::size_t>(RecordHeaderSize + std::int64_t{scdr.Rank} * 8);
    const std::size_t size = CheckedAdd(own, OwnDataSize(scdr, type));
    plan.size = static_cast<std::int64_t>(CheckedAdd(static_cast<std::size_t>(plan.size), size));
    const std::int64_t count = ChildCount(scdr);
    for (std::int64_t i = 0; i < count; ++i)
        Plan(context, *Children(scdr)[i], plan, depth + 1);
}

template <typename To, typename Convert>
void WriteRealParts(const Scdr& scdr, std::uint8_t* to, Convert convert) noexcept
{
    const auto* pairs = static_cast<const double*>(scdr.data);
    for (std::int64_t i = 0; i < scdr.ElementCount; ++i)
        StoreNumber<To>(to + i * std::int64_t{sizeof(To)}, convert(pairs[2 * i]));
}

void WriteBitsOfPairs(const Scdr& scdr, std::uint8_t* to) noexcept
{
    const auto* pairs = static_cast<const double*>(scdr.data);
    const std::int64_t count = scdr.ElementCount;
    for (std::int64_t start = 0; start < count; start += 64) {
        std::uint64_t word = 0;
        for (std::int64_t i = start; i < std::min(count, start + 64); ++i)
            word |= std::uint64_t{pairs[2 * i] != 0.0} << (63 - (i - start));
        StoreNumber(to + start / 8, word);
    }
}

void WritePairs(const Scdr& scdr, std::uint8_t type, std::uint8_t* to) noexcept
{
    if (type == RecordBoolean) return WriteBitsOfPairs(scdr, to);
    if (type == RecordFloat) return WriteRealParts<double>(scdr, to, [](double real) { return real; });
    WriteRealParts<std::int64_t>(scdr, to, [](double real) { return static_cast<std::int64_t>(real); });
}

void WriteItems(const Scdr& scdr, std::uint8_t type, std::uint8_t* to) noexcept
{
    const CharacterPositions& positions = Positions();
    switch (scdr.Type) {
    case TypeBoolean: return WordsOfBits(static_cast<const std::uint8_t*>(scdr.data), to, scdr.ElementCount);
    case TypeComplex: return WritePairs(scdr, type, to);
    case TypeCharacter:
        return ConvertItems(static_cast<const char16_t*>(scdr.data), to, scdr.ElementCount,
                            [&](char16_t unit) { return positions.position[unit]; });
    default: std::memcpy(to, scdr.data, static_cast<std::size_t>(scdr.ElementCount) * 8);
    }
}

struct RecordWriter {
    const std::uint8_t* types; // of the next node
    std::uint8_t* at;          // where its record goes
};

void WriteHeader(RecordWriter& writer, const Scdr& scdr, std::uint8_t type) noexcept
{
    std::memset(writer.at, 0, RecordHeaderSize);
    writer.at[RecordTypeAt] = type;
    StoreNumber(writer.at + RecordRankAt, static_cast<std::uint16_t>(scdr.Rank * 4));
    writer.at += RecordHeaderSize;
    const std::size_t shapeSize = static_cast<std::size_t>(scdr.Rank) * 8;
    if (shapeSize > 0) std::memcpy(writer.at, scdr.Shape, shapeSize);
    writer.at += shapeSize;
}

void WriteRecord(RecordWriter& writer, const Scdr& scdr)
{
    std::uint8_t* const start = writer.at;
    const std::uint8_t type = *writer.types++;
    WriteHeader(writer, scdr, type);
    std::uint8_t* const data = writer.at;
    writer.at += OwnDataSize(scdr, type);
    if (type != RecordNested && scdr.ElementCount > 0) WriteItems(scdr, type, data);
    const std::int64_t count = ChildCount(scdr);
    for (std::int64_t i = 0; i < count; ++i) {
        if (scdr.ElementCount > 0) StoreNumber<std::int64_t>(data + i * 8, writer.at - start);
        WriteRecord(writer, *Children(scdr)[i]);
    }
    StoreNumber<std::int64_t>(start + RecordLengthAt, writer.at - start);
}

} // namespace

bool SetDialectType(EditContext* context, const Scdr& scdr, RecordPlan& plan)
{
    TraceScope trace("aplx_write.cpp", "SetDialectType");
    try {
        Plan(context, scdr, plan, 1);
        return true;
    } catch (VTERROR_CODE code) {
        return SetErrorCode(context, code);
    }
}

void ScdrToObjectTypeSet(const Scdr& scdr, const RecordPlan& plan, std::uint8_t* destination)
{
    TraceScope trace("aplx_write.cpp", "ScdrToObjectTypeSet");
    RecordWriter writer{plan.types.data(), destination};
    WriteRecord(writer, scdr);
}

HostObject ScdrToObject(EditContext* context, const Scdr* scdr)
{
    TraceScope trace("aplx_write.cpp", "ScdrToObject");
    AplxHost& host = HostOf(context);
    RecordPlan plan;
    if (scdr == nullptr || host.running == nullptr) {
        SetErrorCode(context, VTERROR_CODE::SystemError);
        return nullptr;
    }
    if (!SetDialectType(context, *scdr, plan)) return nullptr;
    try {
        RecordBytes record = AllocateArray<std::uint8_t>(plan.size);
        ScdrToObjectTypeSet(*scdr, plan, record.get());
        host.running->output = std::move(record);
        return host.running->output.get();
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

} // namespace vantrel::aplx
