// Copying runs of items between simple arrays, widening numbers on the way.
#pragma once

#include "model/scdr.h"

namespace vantrel {

// A place in simple data: its type, block and first item.
struct ItemSource {
    std::uint32_t type;
    const void* data;
    std::int64_t first;
};

struct ItemTarget {
    std::uint32_t type;
    void* data;
    std::int64_t first;
};

// Bytes of one item of simple data; Booleans, which have no bytes of their own, give 0. Throws SystemError for nested and unknown types.
[[nodiscard]] std::size_t ItemBytes(std::uint32_t type);

// Copies `count` items of one type, or numbers to a wider type: Boolean to Integer to Real to Complex.
// Integers beyond 2^53 become the nearest double. Throws SystemError for other pairs of types.
void CopyItems(const ItemTarget& to, const ItemSource& from, std::int64_t count);

} // namespace vantrel
