// The interpreter's array block: a header of three words, the shape, the items.
//
// The interpreter's own blocks are believed as to their size, since no field of theirs states it; everything that can be
// wrong within the header (class, type, axis lengths, products that overflow) is checked here before an item is touched.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vantrel {

struct DyalogBlock {
    std::uint64_t interpreterWord;
    std::int64_t referenceCount; // one for each pointer stored in a nested array, a localp or a result slot
    std::uint32_t typeWord;      // bits 0-3 class, 4-7 rank, 8-11 element type; the rest means nothing to us
    std::uint32_t ignored;
};
static_assert(sizeof(DyalogBlock) == 24);

enum DyalogClass : std::uint32_t { ClassNested = 7, ClassSimple = 15 };

enum DyalogType : std::uint32_t {
    DyalogAtomic = 0, // 8-bit positions in the atomic vector, Classic editions
    DyalogBoolean = 1,
    DyalogInteger8 = 2,
    DyalogInteger16 = 3,
    DyalogInteger32 = 4,
    DyalogFloat = 5,
    DyalogPointer = 6,
    DyalogCharacter8 = 7,
    DyalogCharacter16 = 8,
    DyalogCharacter32 = 9,
    DyalogComplex = 10,
    DyalogRational = 11,
    DyalogDecimal = 12,
};

// The header of a block, taken apart.
struct BlockHeader {
    std::uint32_t arrayClass;
    std::uint32_t elementType;
    std::int32_t rank;
    const std::int64_t* shape;
    const void* data;
};

[[nodiscard]] BlockHeader ReadBlockHeader(const DyalogBlock& block) noexcept;

[[nodiscard]] inline void* BlockData(DyalogBlock& block, std::int32_t rank) noexcept
{
    return reinterpret_cast<std::int64_t*>(&block + 1) + rank;
}

// Product of the axis lengths, 1 for rank 0. Throws SystemLimit for a negative length, OutOfMemory where it does not fit.
[[nodiscard]] std::int64_t CountItems(std::int32_t rank, const std::int64_t* shape);

// Bytes of the items; for an empty nested array those of its prototype's pointer. Throws OutOfMemory where they do not fit,
// DomainError for an element type without a fixed size.
[[nodiscard]] std::size_t BlockDataSize(std::uint32_t elementType, std::int64_t itemCount);

} // namespace vantrel
