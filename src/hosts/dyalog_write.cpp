// From a tree to the interpreter's blocks.
#include <algorithm>
#include <cstring>
#include <limits>

#include "entry/trace.h"
#include "hosts/dyalog_host.h"
#include "hosts/item_loops.h"

namespace vantrel {
namespace {

struct BlockWriter {
    EditContext* context;
    const DyalogHost& host;
    const std::uint8_t* types; // of the next node
};

// A localp for the time of a block. Items of nested arrays are so many that theirs stand on the stack.
class ScopedLocalp {
public:
    explicit ScopedLocalp(const DyalogHost& host) : host_(host)
    {
        ServiceOf(host_, dyalog::RegisterLocalp)(&localp_);
    }
    ~ScopedLocalp() { ServiceOf(host_, dyalog::UnregisterLocalp)(&localp_); }
    ScopedLocalp(const ScopedLocalp&) = delete;
    ScopedLocalp& operator=(const ScopedLocalp&) = delete;
    [[nodiscard]] Localp& Get() noexcept { return localp_; }

private:
    const DyalogHost& host_;
    Localp localp_;
};

// The interpreter's integers are narrower than ours, and a tree's wider numbers are cut off, as they always were.
std::int32_t LowWord(std::int64_t value) noexcept
{
    return static_cast<std::int32_t>(static_cast<std::uint64_t>(value) & 0xFFFFFFFFu);
}

std::int32_t TowardZero(double value) noexcept
{
    const bool fits = value > -2147483649.0 && value < 2147483648.0;
    return fits ? static_cast<std::int32_t>(value) : std::numeric_limits<std::int32_t>::min();
}

// Where any load may throw (the Windows builds), compilers make vector code only of a loop that is let out of it. Both blocks are sound
// here: the tree's own and one that the interpreter has just made.
template <typename From, typename To, typename Convert>
void ConvertOwnItems(const Scdr& scdr, void* to, Convert convert) noexcept
{
    ConvertItems(static_cast<const From*>(scdr.data), static_cast<To*>(to), scdr.ElementCount, convert);
}

// Real parts lie at even places.
template <typename To, typename Convert> void ConvertRealParts(const Scdr& scdr, To* to, Convert convert)
{
    const auto* pairs = static_cast<const double*>(scdr.data);
    for (std::int64_t i = 0; i < scdr.ElementCount; ++i)
        to[i] = convert(pairs[2 * i]);
}

void PackRealParts(const Scdr& scdr, std::uint8_t* bytes)
{
    struct Pair {
        double real;
        double imaginary;
    };
    PackBits(static_cast<const Pair*>(scdr.data), bytes, scdr.ElementCount,
             [](const Pair& pair) { return pair.real != 0.0; });
}

bool WriteBits(const Scdr& scdr, std::uint8_t* to)
{
    switch (scdr.Type) {
    case TypeBoolean:
        std::memcpy(to, scdr.data, BlockDataSize(DyalogBoolean, scdr.ElementCount));
        return true;
    case TypeInteger:
        PackBits(static_cast<const std::int64_t*>(scdr.data), to, scdr.ElementCount,
                 [](std::int64_t item) { return item != 0; });
        return true;
    case TypeReal:
        PackBits(static_cast<const double*>(scdr.data), to, scdr.ElementCount,
                 [](double item) { return item != 0.0; });
        return true;
    case TypeComplex: PackRealParts(scdr, to); return true;
    default: return false;
    }
}

bool WriteIntegers(const Scdr& scdr, std::int32_t* to)
{
    switch (scdr.Type) {
    case TypeInteger: ConvertOwnItems<std::int64_t, std::int32_t>(scdr, to, LowWord); return true;
    case TypeReal: ConvertOwnItems<double, std::int32_t>(scdr, to, TowardZero); return true;
    case TypeComplex: ConvertRealParts(scdr, to, TowardZero); return true;
    default: return false;
    }
}

bool WriteFloats(const Scdr& scdr, double* to)
{
    switch (scdr.Type) {
    case TypeBoolean:
        for (std::int64_t i = 0; i < scdr.ElementCount; ++i)
            to[i] = GetBit(scdr.data, i) ? 1.0 : 0.0;
        return true;
    case TypeInteger:
        ConvertOwnItems<std::int64_t, double>(scdr, to,
                                              [](std::int64_t item) { return static_cast<double>(item); });
        return true;
    case TypeReal: std::memcpy(to, scdr.data, BlockDataSize(DyalogFloat, scdr.ElementCount)); return true;
    case TypeComplex: ConvertRealParts(scdr, to, [](double real) { return real; }); return true;
    default: return false;
    }
}

bool WriteCharacters(const DyalogHost& host, const Scdr& scdr, std::uint32_t dialectType, void* to)
{
    if (scdr.Type != TypeCharacter) return false;
    const auto* units = static_cast<const char16_t*>(scdr.data);
    if (dialectType == DyalogAtomic) {
        ServiceOf(host, dyalog::ToAtomic)(static_cast<std::uint8_t*>(to), units, scdr.ElementCount);
    } else if (dialectType == DyalogCharacter8) {
        ConvertOwnItems<char16_t, std::uint8_t>(
            scdr, to, [](char16_t unit) { return static_cast<std::uint8_t>(unit); });
    } else {
        std::memcpy(to, units, BlockDataSize(DyalogCharacter16, scdr.ElementCount));
    }
    return true;
}

// Items that are stored as the tree holds them.
bool CopyItems(const Scdr& scdr, std::uint32_t type, std::uint32_t dialectType, void* to)
{
    if (scdr.Type != type) return false;
    std::memcpy(to, scdr.data, BlockDataSize(dialectType, scdr.ElementCount));
    return true;
}

bool StoreItems(const DyalogHost& host, const Scdr& scdr, std::uint32_t dialectType, void* to)
{
    switch (dialectType) {
    case DyalogAtomic:
    case DyalogCharacter8:
    case DyalogCharacter16: return WriteCharacters(host, scdr, dialectType, to);
    case DyalogBoolean: return WriteBits(scdr, static_cast<std::uint8_t*>(to));
    case DyalogInteger32: return WriteIntegers(scdr, static_cast<std::int32_t*>(to));
    case DyalogFloat: return WriteFloats(scdr, static_cast<double*>(to));
    case DyalogComplex: return CopyItems(scdr, TypeComplex, dialectType, to);
    case DyalogDecimal: return CopyItems(scdr, TypeDecimal, dialectType, to);
    default: return false;
    }
}

bool WriteBlock(BlockWriter& writer, const Scdr& scdr, Localp& holder);

// Stores one item's block in its array, which then holds it in place of the item's localp.
bool WriteChild(BlockWriter& writer, const Scdr& child, DyalogBlock** place)
{
    ScopedLocalp item(writer.host);
    if (!WriteBlock(writer, child, item.Get())) return false;
    *place = item.Get().block;
    ++(*place)->referenceCount;
    return true;
}

bool WriteChildren(BlockWriter& writer, const Scdr& scdr, DyalogBlock** places)
{
    const std::int64_t count = ChildCount(scdr);
    for (std::int64_t i = 0; i < count; ++i) {
        if (WriteChild(writer, *Children(scdr)[i], places + i)) continue;
        // The array is about to be released with what its places hold.
        std::fill(places + i, places + count, nullptr);
        return false;
    }
    return true;
}

bool WriteBlock(BlockWriter& writer, const Scdr& scdr, Localp& holder)
{
    const std::uint32_t dialectType = *writer.types++;
    DyalogBlock* block = ArraySpace(writer.context, dialectType, scdr.Rank, scdr.Shape, &holder);
    if (block == nullptr) return false;
    void* items = BlockData(*block, scdr.Rank);
    const bool written = dialectType == DyalogPointer
                             ? WriteChildren(writer, scdr, static_cast<DyalogBlock**>(items))
                             : WriteItems(writer.context, scdr, dialectType, items);
    if (!written) return false;
    ServiceOf(writer.host, dyalog::FinishArray)(block);
    return true;
}

} // namespace

bool WriteItems(EditContext* context, const Scdr& scdr, std::uint32_t dialectType, void* items)
{
    TraceScope trace("dyalog_write.cpp", "WriteItems");
    if (scdr.ElementCount == 0) return true;
    if (StoreItems(HostOf(context), scdr, dialectType, items)) return true;
    return SetErrorCode(context, VTERROR_CODE::DomainError);
}

Localp* ScdrToObjectTypeSet(EditContext* context, const Scdr* scdr, const DialectTypes& types)
{
    TraceScope trace("dyalog_write.cpp", "ScdrToObjectTypeSet");
    BlockWriter writer{context, HostOf(context), types.data()};
    try {
        Localp* localp = LocalpAllocate(writer.host);
        if (WriteBlock(writer, *scdr, *localp)) return localp;
        FreeObject(context, localp);
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
    }
    return nullptr;
}

HostObject ScdrToObject(EditContext* context, const Scdr* scdr)
{
    TraceScope trace("dyalog_write.cpp", "ScdrToObject");
    if (scdr == nullptr) {
        SetErrorCode(context, VTERROR_CODE::SystemError);
        return nullptr;
    }
    DialectTypes types;
    return SetDialectType(context, scdr, types) ? ScdrToObjectTypeSet(context, scdr, types) : nullptr;
}

HostObject UnicodeToObject(EditContext* context, const char16_t* text, std::int64_t length)
{
    TraceScope trace("dyalog_write.cpp", "UnicodeToObject");
    try {
        const std::size_t bytes = CheckedMultiply(length, sizeof(char16_t));
        Localp* localp = LocalpAllocate(HostOf(context));
        if (DyalogBlock* block = ArraySpace(context, DyalogCharacter16, 1, &length, localp)) {
            if (bytes > 0) std::memcpy(BlockData(*block, 1), text, bytes);
            return localp;
        }
        FreeObject(context, localp);
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
    }
    return nullptr;
}

} // namespace vantrel
