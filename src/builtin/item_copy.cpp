#include "builtin/item_copy.h"

#include <cstring>

namespace vantrel {
namespace {

// Reads with `read(i)`, one loop a type.
template <typename Read> void WidenFrom(const ItemTarget& to, std::int64_t count, Read read)
{
    if (to.type == TypeInteger) {
        auto* data = static_cast<std::int64_t*>(to.data) + to.first;
        for (std::int64_t i = 0; i < count; ++i)
            data[i] = static_cast<std::int64_t>(read(i));
    } else if (to.type == TypeReal) {
        auto* data = static_cast<double*>(to.data) + to.first;
        for (std::int64_t i = 0; i < count; ++i)
            data[i] = static_cast<double>(read(i));
    } else {
        auto* data = static_cast<double*>(to.data) + 2 * to.first;
        for (std::int64_t i = 0; i < count; ++i) {
            data[2 * i] = static_cast<double>(read(i));
            data[2 * i + 1] = 0;
        }
    }
}

void WidenItems(const ItemTarget& to, const ItemSource& from, std::int64_t count)
{
    const bool wider = from.type >= TypeBoolean && from.type < to.type && to.type <= TypeComplex;
    if (!wider) throw VTERROR_CODE::SystemError;
    if (from.type == TypeBoolean) {
        WidenFrom(to, count, [&](std::int64_t i) {
            return static_cast<std::int64_t>(GetBit(from.data, from.first + i));
        });
    } else if (from.type == TypeInteger) {
        const auto* data = static_cast<const std::int64_t*>(from.data) + from.first;
        WidenFrom(to, count, [&](std::int64_t i) { return data[i]; });
    } else {
        const auto* data = static_cast<const double*>(from.data) + from.first;
        WidenFrom(to, count, [&](std::int64_t i) { return data[i]; });
    }
}

} // namespace

std::size_t ItemBytes(std::uint32_t type)
{
    switch (type) {
    case TypeBoolean: return 0;
    case TypeCharacter: return sizeof(char16_t);
    case TypeInteger:
    case TypeReal: return 8;
    case TypeComplex:
    case TypeDecimal: return 16;
    default: throw VTERROR_CODE::SystemError;
    }
}

void CopyItems(const ItemTarget& to, const ItemSource& from, std::int64_t count)
{
    if (to.type != from.type) {
        WidenItems(to, from, count);
        return;
    }
    if (to.type == TypeBoolean) {
        CopyBits(to.data, to.first, from.data, from.first, count);
        return;
    }
    const std::size_t bytes = ItemBytes(to.type);
    std::memcpy(static_cast<char*>(to.data) + static_cast<std::size_t>(to.first) * bytes,
                static_cast<const char*>(from.data) + static_cast<std::size_t>(from.first) * bytes,
                static_cast<std::size_t>(count) * bytes);
}

} // namespace vantrel
