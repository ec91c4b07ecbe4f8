#include <cstring>

#include "builtin/results.h"
#include "builtin/structural.h"
#include "entry/trace.h"

namespace vantrel {
namespace {

// An array seen along the axis that is reversed: `rows` rows of `length` cells, each a run of `cell` items.
struct AxisView {
    std::int64_t rows;
    std::int64_t length;
    std::int64_t cell;
};

// Four characters at a time: the four units of a word change places.
void ReverseCharacters(char* to, const char* from, std::int64_t count) noexcept
{
    constexpr std::int64_t unit = sizeof(char16_t);
    from += unit * count;
    for (; count >= 4; count -= 4) {
        std::uint64_t word;
        from -= sizeof word;
        std::memcpy(&word, from, sizeof word);
        word = (word << 32) | (word >> 32);
        word = ((word & 0x0000FFFF0000FFFF) << 16) | ((word >> 16) & 0x0000FFFF0000FFFF);
        std::memcpy(to, &word, sizeof word);
        to += sizeof word;
    }
    for (; count > 0; --count) {
        from -= unit;
        std::memcpy(to, from, unit);
        to += unit;
    }
}

template <std::size_t Bytes> void ReverseItems(char* to, const char* from, std::int64_t count) noexcept
{
    from += static_cast<std::int64_t>(Bytes) * count;
    for (std::int64_t i = 0; i < count; ++i) {
        from -= Bytes;
        std::memcpy(to, from, Bytes);
        to += Bytes;
    }
}

// The cells of one row; they are `bytes` long.
void ReverseCells(char* to, const char* from, std::int64_t count, std::size_t bytes) noexcept
{
    switch (bytes) {
    case 2: ReverseCharacters(to, from, count); return;
    case 8: ReverseItems<8>(to, from, count); return;
    case 16: ReverseItems<16>(to, from, count); return;
    default: break;
    }
    from += static_cast<std::size_t>(count) * bytes;
    for (std::int64_t i = 0; i < count; ++i) {
        from -= bytes;
        std::memcpy(to, from, bytes);
        to += bytes;
    }
}

void ReverseBoolean(const Scdr& from, Scdr& to, const AxisView& view) noexcept
{
    const std::int64_t row = view.length * view.cell;
    for (std::int64_t first = 0; first < from.ElementCount; first += row) {
        if (view.cell == 1) {
            ReverseBits(to.data, first, from.data, first, row);
            continue;
        }
        for (std::int64_t at = 0; at < row; at += view.cell)
            CopyBits(to.data, first + row - view.cell - at, from.data, first + at, view.cell);
    }
}

void ReverseSimple(const Scdr& from, Scdr& to, const AxisView& view)
{
    const std::size_t cellBytes = ItemBytes(from.Type) * static_cast<std::size_t>(view.cell);
    const std::size_t rowBytes = cellBytes * static_cast<std::size_t>(view.length);
    auto* target = static_cast<char*>(to.data);
    const auto* source = static_cast<const char*>(from.data);
    for (std::int64_t row = 0; row < view.rows; ++row) {
        ReverseCells(target, source, view.length, cellBytes);
        target += rowBytes;
        source += rowBytes;
    }
}

void ReverseNested(EditContext* context, const Scdr& from, Scdr& to, const AxisView& view)
{
    CopyChildrenTo(context, from, to, [&view](std::int64_t index) {
        const std::int64_t cell = index / view.cell;
        const std::int64_t place = cell % view.length;
        const std::int64_t moved = cell - place + (view.length - 1 - place);
        return moved * view.cell + index % view.cell;
    });
}

ScdrPtr ReverseAlong(EditContext* context, const Scdr& argument, const AxisView& view)
{
    RequireKnownType(argument);
    ScdrPtr result = CopyScdrShell(context, nullptr, argument);
    if (argument.Type == TypeNested) {
        ReverseNested(context, argument, *result, view);
    } else if (argument.ElementCount > 0 && argument.Type == TypeBoolean) {
        ReverseBoolean(argument, *result, view);
    } else if (argument.ElementCount > 0) {
        ReverseSimple(argument, *result, view);
    }
    return result;
}

} // namespace

ScdrPtr BuiltinReverse(EditContext* context, const Scdr& argument)
{
    TraceScope trace("builtin.cpp", "BuiltinReverse");
    if (argument.Rank == 0) return CopyScdr(context, argument);
    return ResultOf(context, [&] {
        const std::int64_t length = Columns(argument);
        return ReverseAlong(context, argument, {length > 0 ? argument.ElementCount / length : 0, length, 1});
    });
}

ScdrPtr BuiltinReverseAxis1(EditContext* context, const Scdr& argument)
{
    TraceScope trace("builtin.cpp", "BuiltinReverseAxis1");
    if (argument.Rank < 2) return BuiltinReverse(context, argument);
    return ResultOf(context, [&] {
        const std::int64_t length = argument.Shape[0];
        return ReverseAlong(context, argument, {1, length, length > 0 ? argument.ElementCount / length : 0});
    });
}

} // namespace vantrel
