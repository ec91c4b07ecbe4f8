#include "hosts/dyalog_block.h"

#include "entry/memory.h"
#include "entry/trace.h"

namespace vantrel {

BlockHeader ReadBlockHeader(const DyalogBlock& block) noexcept
{
    const std::uint32_t word = block.typeWord;
    const auto rank = static_cast<std::int32_t>((word >> 4) & 15);
    const auto* shape = reinterpret_cast<const std::int64_t*>(&block + 1);
    return {word & 15, (word >> 8) & 15, rank, shape, shape + rank};
}

std::int64_t CountItems(std::int32_t rank, const std::int64_t* shape)
{
    TraceScope trace("dyalog_block.cpp", "CountItems");
    bool empty = false;
    for (std::int32_t axis = 0; axis < rank; ++axis) {
        if (shape[axis] < 0) throw VTERROR_CODE::SystemLimit;
        empty = empty || shape[axis] == 0;
    }
    // An axis of length 0 makes the array empty however long the others are.
    if (empty) return 0;
    std::int64_t count = 1;
    for (std::int32_t axis = 0; axis < rank; ++axis) {
        count = static_cast<std::int64_t>(CheckedMultiply(count, static_cast<std::size_t>(shape[axis])));
    }
    return count;
}

std::size_t BlockDataSize(std::uint32_t elementType, std::int64_t itemCount)
{
    TraceScope trace("dyalog_block.cpp", "BlockDataSize");
    switch (elementType) {
    case DyalogBoolean: return static_cast<std::size_t>(itemCount / 8 + (itemCount % 8 != 0));
    case DyalogAtomic:
    case DyalogInteger8:
    case DyalogCharacter8: return static_cast<std::size_t>(itemCount);
    case DyalogInteger16:
    case DyalogCharacter16: return CheckedMultiply(itemCount, 2);
    case DyalogInteger32:
    case DyalogCharacter32: return CheckedMultiply(itemCount, 4);
    case DyalogFloat: return CheckedMultiply(itemCount, 8);
    case DyalogPointer: return CheckedMultiply(itemCount > 0 ? itemCount : 1, 8);
    case DyalogComplex:
    case DyalogDecimal: return CheckedMultiply(itemCount, 16);
    default: throw VTERROR_CODE::DomainError;
    }
}

} // namespace vantrel
