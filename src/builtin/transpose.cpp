#include <algorithm>
#include <cstring>

#include "builtin/results.h"
#include "builtin/structural.h"
#include "entry/trace.h"
#include "model/bit_words.h"

namespace vantrel {
namespace {

// An axis of the result, outermost first: its length and how far one step along it goes, in items, on either side.
struct Step {
    std::int64_t length;
    std::int64_t from;
    std::int64_t to;
};
using Steps = Vector<Step>;
using Order = Vector<std::int32_t>; // argument axis i is result axis order[i], counted from 0

// --- the order ---

Order ReversedOrder(std::int32_t rank)
{
    Order order(static_cast<std::size_t>(rank));
    for (std::int32_t axis = 0; axis < rank; ++axis)
        order[static_cast<std::size_t>(axis)] = rank - 1 - axis;
    return order;
}

// Axis numbers counted from 0 must be a permutation.
Order OrderOfNumbers(const std::int64_t* numbers, std::int32_t rank, std::int64_t origin)
{
    Order order(static_cast<std::size_t>(rank), 0);
    Vector<bool> taken(static_cast<std::size_t>(rank), false);
    for (std::size_t axis = 0; axis < order.size(); ++axis) {
        const std::int64_t number = numbers[axis];
        if (number < origin || number - origin >= rank) throw VTERROR_CODE::DomainError;
        const auto place = static_cast<std::size_t>(number - origin);
        if (taken[place]) throw VTERROR_CODE::DomainError;
        taken[place] = true;
        order[axis] = static_cast<std::int32_t>(place);
    }
    return order;
}

// Bits cannot count from 1, so they count from 0 under every index origin.
Order OrderOfBits(const Scdr& axisOrder, std::int32_t rank)
{
    if (rank != 2) throw VTERROR_CODE::DomainError;
    const std::int64_t numbers[] = {GetBit(axisOrder.data, 0), GetBit(axisOrder.data, 1)};
    return OrderOfNumbers(numbers, rank, 0);
}

Order AxisOrder(const EditContext& context, const Scdr& argument, const Scdr* axisOrder)
{
    if (axisOrder == nullptr) return ReversedOrder(argument.Rank);
    if (axisOrder->Rank > 1) throw VTERROR_CODE::RankError;
    if (axisOrder->ElementCount != argument.Rank) throw VTERROR_CODE::LengthError;
    if (axisOrder->Type == TypeInteger) {
        return OrderOfNumbers(static_cast<const std::int64_t*>(axisOrder->data), argument.Rank,
                              context.indexOrigin);
    }
    if (axisOrder->Type == TypeBoolean) return OrderOfBits(*axisOrder, argument.Rank);
    if (argument.Rank != 0) throw VTERROR_CODE::DomainError;
    return {};
}

// --- the axes ---

bool KeepsOrder(const Order& order)
{
    return std::is_sorted(order.begin(), order.end());
}

Steps StepsOf(const Scdr& argument, const Order& order)
{
    Steps steps(order.size());
    std::int64_t stride = 1;
    for (std::size_t axis = order.size(); axis-- > 0;) {
        const std::int64_t length = argument.Shape[axis];
        steps[static_cast<std::size_t>(order[axis])] = {length, stride, 0};
        if (argument.ElementCount > 0)
            stride *= length; // the axes of an empty array may be as long as they like
    }
    return steps;
}

// Axes of one item go, and axes that stay neighbours become one, so that the loops that remain are long.
Steps MergedSteps(const Steps& all)
{
    Steps merged;
    for (const Step& step : all) {
        if (step.length == 1) continue;
        if (!merged.empty() && merged.back().from == step.from * step.length) {
            merged.back() = {merged.back().length * step.length, step.from, 0};
        } else {
            merged.push_back(step);
        }
    }
    std::int64_t stride = 1;
    for (std::size_t i = merged.size(); i-- > 0;) {
        merged[i].to = stride;
        stride *= merged[i].length;
    }
    return merged;
}

// Calls `visit(from, to)` with the first item of every combination of the steps.
template <typename Visit> void ForEachPlace(const Steps& steps, Visit visit)
{
    Vector<std::int64_t> index(steps.size(), 0);
    std::int64_t from = 0;
    std::int64_t to = 0;
    for (;;) {
        visit(from, to);
        std::size_t k = steps.size();
        for (; k > 0; --k) {
            const Step& step = steps[k - 1];
            from += step.from;
            to += step.to;
            if (++index[k - 1] < step.length) break;
            from -= step.from * step.length;
            to -= step.to * step.length;
            index[k - 1] = 0;
        }
        if (k == 0) return;
    }
}

// --- the data ---

constexpr std::int64_t Tile = 32;

// Rows of one side become columns of the other. The tile passes through a small block, so that reading and writing are both runs of
// neighbours; a length that is a power of two would otherwise throw each line out of the cache before its next item is due.
template <std::size_t Bytes>
void TransposeTile(const char* from, std::size_t fromRow, std::int64_t rows, char* to, std::size_t toRow,
                   std::int64_t columns) noexcept
{
    char tile[static_cast<std::size_t>(Tile * Tile) * Bytes];
    constexpr std::size_t tileRow = static_cast<std::size_t>(Tile) * Bytes;
    for (std::int64_t row = 0; row < rows; ++row) {
        char* place = tile + static_cast<std::size_t>(row) * Bytes;
        const char* item = from;
        for (std::int64_t column = 0; column < columns; ++column) {
            std::memcpy(place, item, Bytes);
            place += tileRow;
            item += Bytes;
        }
        from += fromRow;
    }
    for (std::int64_t column = 0; column < columns; ++column) {
        std::memcpy(to, tile + static_cast<std::size_t>(column) * tileRow,
                    static_cast<std::size_t>(rows) * Bytes);
        to += toRow;
    }
}

// `across` is the axis whose items are neighbours in the argument, `down` the one of the result.
template <std::size_t Bytes>
void TransposePlane(const char* from, char* to, const Step& down, const Step& across) noexcept
{
    const std::size_t fromRow = static_cast<std::size_t>(down.from) * Bytes;
    const std::size_t toRow = static_cast<std::size_t>(across.to) * Bytes;
    for (std::int64_t column = 0; column < across.length; column += Tile) {
        for (std::int64_t row = 0; row < down.length; row += Tile) {
            TransposeTile<Bytes>(
                from + static_cast<std::size_t>(row) * fromRow + static_cast<std::size_t>(column) * Bytes,
                fromRow, std::min(Tile, down.length - row),
                to + static_cast<std::size_t>(column) * toRow + static_cast<std::size_t>(row) * Bytes, toRow,
                std::min(Tile, across.length - column));
        }
    }
}

template <std::size_t Bytes> void TransposeItems(const Scdr& argument, Scdr& result, Steps steps)
{
    const auto* from = static_cast<const char*>(argument.data);
    auto* to = static_cast<char*>(result.data);
    const auto bytes = [](std::int64_t items) { return static_cast<std::size_t>(items) * Bytes; };
    const auto neighbours =
        std::find_if(steps.begin(), steps.end(), [](const Step& step) { return step.from == 1; });
    const Step across = *neighbours;
    const Step down = steps.back();
    steps.erase(neighbours);
    if (across.to == 1) {
        ForEachPlace(steps, [&](std::int64_t source, std::int64_t target) {
            std::memcpy(to + bytes(target), from + bytes(source), bytes(across.length));
        });
        return;
    }
    steps.pop_back();
    ForEachPlace(steps, [&](std::int64_t source, std::int64_t target) {
        TransposePlane<Bytes>(from + bytes(source), to + bytes(target), down, across);
    });
}

// `count` bits that stand `stride` apart.
void GatherBits(void* to, std::int64_t toIndex, const void* from, std::int64_t fromIndex, std::int64_t stride,
                std::int64_t count) noexcept
{
    for (std::int64_t done = 0; done < count; done += BitsPerWord) {
        const std::int64_t run = std::min(count - done, BitsPerWord);
        std::uint64_t word = 0;
        for (std::int64_t i = 0; i < run; ++i, fromIndex += stride)
            word = (word << 1) | (GetBit(from, fromIndex) ? 1U : 0U);
        StoreRun(static_cast<std::uint8_t*>(to), toIndex + done, word << (BitsPerWord - run), run);
    }
}

void TransposeBits(const Scdr& argument, Scdr& result, Steps steps)
{
    const Step last = steps.back();
    steps.pop_back();
    if (last.from == 1) {
        ForEachPlace(steps, [&](std::int64_t from, std::int64_t to) {
            CopyBits(result.data, to, argument.data, from, last.length);
        });
        return;
    }
    ForEachPlace(steps, [&](std::int64_t from, std::int64_t to) {
        GatherBits(result.data, to, argument.data, from, last.from, last.length);
    });
}

void TransposeSimple(const Scdr& argument, Scdr& result, const Steps& steps)
{
    switch (ItemBytes(argument.Type)) {
    case 2: TransposeItems<2>(argument, result, steps); return;
    case 8: TransposeItems<8>(argument, result, steps); return;
    case 16: TransposeItems<16>(argument, result, steps); return;
    default: TransposeBits(argument, result, steps); return;
    }
}

void TransposeNested(EditContext* context, const Scdr& argument, Scdr& result, const Steps& steps)
{
    ForEachPlace(steps, [&](std::int64_t from, std::int64_t to) {
        SetChild(result, to, CopyScdrInner(context, &result, *Children(argument)[from]));
    });
}

// --- the result ---

// The argument's node with its axes and their names in their new places; no data.
ScdrPtr PermutedShell(EditContext* context, const Scdr& argument, const Order& order, const Steps& steps)
{
    ScdrPtr result = CopyScdrShell(context, nullptr, argument);
    Vector<std::int64_t> shape;
    for (const Step& step : steps)
        shape.push_back(step.length);
    SetShape(context, *result, argument.Rank, shape.data());
    if (argument.Rank < 3) return result;
    if (!CopyAxesNames(context, argument, *result)) throw VTERROR_CODE::OutOfMemory;
    Vector<char16_t*> names(order.size());
    for (std::size_t axis = 0; axis < order.size(); ++axis)
        names[static_cast<std::size_t>(order[axis])] = result->extra->AxisNames[axis];
    std::copy(names.begin(), names.end(), result->extra->AxisNames);
    return result;
}

ScdrPtr TransposeAxes(EditContext* context, const Scdr& argument, const Order& order)
{
    RequireKnownType(argument);
    if (KeepsOrder(order)) return CopyScdrInner(context, nullptr, argument);
    const Steps steps = StepsOf(argument, order);
    ScdrPtr result = PermutedShell(context, argument, order, steps);
    if (argument.ElementCount == 0) {
        if (!IsSimple(argument)) CopyChildrenTo(context, argument, *result, [](std::int64_t) { return 0; });
        return result;
    }
    const Steps merged = MergedSteps(steps);
    if (argument.Type == TypeNested) {
        TransposeNested(context, argument, *result, merged);
    } else if (merged.empty()) {
        std::memcpy(result->data, argument.data, DataSize(argument.Type, argument.ElementCount));
    } else {
        TransposeSimple(argument, *result, merged);
    }
    return result;
}

} // namespace

ScdrPtr BuiltinTranspose(EditContext* context, const Scdr& argument, const Scdr* axisOrder)
{
    TraceScope trace("builtin.cpp", "BuiltinTranspose");
    return ResultOf(
        context, [&] { return TransposeAxes(context, argument, AxisOrder(*context, argument, axisOrder)); });
}

} // namespace vantrel
