// From the items of MATLAB's simple arrays to those of a node.
#include <bit>
#include <cmath>
#include <cstring>

#include "hosts/item_loops.h"
#include "hosts/matlab_order.h"
#include "hosts/matlab_reader.h"
#include "model/primitives.h"
#include "model/whole_numbers.h"

namespace vantrel::matlab {
namespace {

// Items of one block of MATLAB's, in whichever order the node has. The blocks do not overlap and are believed to be as long as MATLAB says, so
// nothing here throws, which lets compilers make vector code of the loops everywhere.
template <typename From, typename To, typename Convert>
void ReadItems(const Scdr& node, const From* from, To* to, Convert convert) noexcept
{
    if (IsRearranged(node)) {
        MoveItems(ItemOrder(node.Rank, node.Shape), [=](std::int64_t columnMajor, std::int64_t rowMajor) {
            to[rowMajor] = convert(from[columnMajor]);
        });
    } else {
        ConvertItems(from, to, node.ElementCount, convert);
    }
}

template <typename From, typename To> void Widen(Scdr& node, const void* from)
{
    ReadItems(node, static_cast<const From*>(from), static_cast<To*>(WritableData(node)),
              [](From item) { return static_cast<To>(item); });
}

// Has the top bit for an infinity and for what is not a number.
std::uint64_t SpecialBit(double value) noexcept
{
    constexpr std::uint64_t magnitude = 0x7FFFFFFFFFFFFFFF;
    constexpr std::uint64_t carry = 0x8000000000000000 - 0x7FF0000000000000;
    return (std::bit_cast<std::uint64_t>(value) & magnitude) + carry;
}

// Judges doubles in runs: whether all are finite, and what kind of numbers they are.
struct RealJudge {
    const double* items;
    std::uint64_t special = 0;
    NumberKind kind = NumberKind::Bits;

    void operator()(std::int64_t first, std::int64_t count) noexcept
    {
        const double* run = items + first;
        if (kind != NumberKind::Other) {
            kind = std::max(kind, KindOfRun(run, count));
            if (kind != NumberKind::Other) return; // whole numbers are finite
        }
        special |= count == PageTile ? SpecialBits<PageTile>(run, count) : SpecialBits<0>(run, count);
    }

private:
    // A loop of constant length becomes vector code, one of any length need not.
    template <std::int64_t Constant>
    static std::uint64_t SpecialBits(const double* run, std::int64_t count) noexcept
    {
        const std::int64_t length = Constant > 0 ? Constant : count;
        std::uint64_t found = 0;
        for (std::int64_t i = 0; i < length; ++i)
            found |= SpecialBit(run[i]);
        return found;
    }
    static NumberKind KindOfRun(const double* run, std::int64_t count) noexcept
    {
        if (count == PageTile) {
            const NumberKind found = KindOfBlock<PageTile>(run);
            if (found != NumberKind::Other) return found;
        }
        return KindOfReals(run, count); // also looks closer at large whole numbers
    }
};

std::int32_t SimplestTypeOf(NumberKind kind) noexcept
{
    switch (kind) {
    case NumberKind::Bits: return TypeBoolean;
    case NumberKind::Whole: return TypeInteger;
    case NumberKind::Other: break;
    }
    return TypeReal;
}

// The first that is not finite decides.
template <typename From>
[[noreturn]] void RefuseSpecial(ArrayReader& reader, const From* items, std::int64_t count)
{
    const From* special = std::find_if(items, items + count, [](From item) { return !std::isfinite(item); });
    Refuse(reader, VTERROR_CODE::DomainError, std::isnan(*special) ? MessageNan : MessageInfinite);
}

template <typename From>
void MoveReals(const Scdr& node, const From* from, RealJudge& judge, double* to) noexcept
{
    if (IsRearranged(node)) {
        MoveItems(
            ItemOrder(node.Rank, node.Shape),
            [=](std::int64_t columnMajor, std::int64_t rowMajor) { to[rowMajor] = from[columnMajor]; },
            judge);
        return;
    }
    for (std::int64_t i = 0; i < node.ElementCount; i += PageTile) {
        const std::int64_t count = std::min(PageTile, node.ElementCount - i);
        std::copy_n(from + i, count, to + i);
        judge(i, count);
    }
}

// One pass over the memory reads, stores and judges; only what is refused is looked at again.
template <typename From> void ReadReals(ArrayReader& reader, Scdr& node, const void* data)
{
    const auto* items = static_cast<const From*>(data);
    auto* to = static_cast<double*>(WritableData(node));
    RealJudge judge{to};
    MoveReals(node, items, judge, to);
    if ((judge.special >> 63) != 0) RefuseSpecial(reader, items, node.ElementCount);
    node.SimplestType = SimplestTypeOf(judge.kind);
}

template <typename From> void ReadPairs(ArrayReader& reader, Scdr& node, const MxArray* array)
{
    const auto* real = reinterpret_cast<const From*>(reader.mx.mxGetPr(array));
    const auto* imaginary = reinterpret_cast<const From*>(reader.mx.mxGetPi(array));
    if (real == nullptr || imaginary == nullptr) throw VTERROR_CODE::SystemError;
    auto* to = static_cast<double*>(WritableData(node));
    const auto move = [=](std::int64_t columnMajor, std::int64_t rowMajor) {
        to[2 * rowMajor] = static_cast<double>(real[columnMajor]);
        to[2 * rowMajor + 1] = static_cast<double>(imaginary[columnMajor]);
    };
    if (IsRearranged(node)) {
        MoveItems(ItemOrder(node.Rank, node.Shape), move);
        return;
    }
    for (std::int64_t i = 0; i < node.ElementCount; ++i)
        move(i, i);
}

void ReadComplex(ArrayReader& reader, Scdr& node, const MxArray* array)
{
    switch (reader.mx.mxGetClassID(array)) {
    case MxSingle: return ReadPairs<float>(reader, node, array);
    case MxInt8: return ReadPairs<std::int8_t>(reader, node, array);
    case MxUint8: return ReadPairs<std::uint8_t>(reader, node, array);
    case MxInt16: return ReadPairs<std::int16_t>(reader, node, array);
    case MxUint16: return ReadPairs<std::uint16_t>(reader, node, array);
    case MxInt32: return ReadPairs<std::int32_t>(reader, node, array);
    case MxUint32: return ReadPairs<std::uint32_t>(reader, node, array);
    case MxInt64: return ReadPairs<std::int64_t>(reader, node, array);
    default: return ReadPairs<double>(reader, node, array);
    }
}

// Any byte but 0 is true; MATLAB's own are 0 and 1.
void ReadLogicals(ArrayReader& reader, Scdr& node, const MxArray* array)
{
    const auto* items = reinterpret_cast<const std::uint8_t*>(reader.mx.mxGetLogicals(array));
    if (items == nullptr) throw VTERROR_CODE::SystemError;
    auto* bytes = static_cast<std::uint8_t*>(WritableData(node));
    if (!IsRearranged(node)) {
        PackBits(items, bytes, node.ElementCount, [](std::uint8_t item) { return item != 0; });
        return;
    }
    MoveItems(ItemOrder(node.Rank, node.Shape), [=](std::int64_t columnMajor, std::int64_t rowMajor) {
        const unsigned bit = items[columnMajor] != 0 ? 1u : 0u;
        bytes[rowMajor >> 3] = static_cast<std::uint8_t>(bytes[rowMajor >> 3] | bit << (7 - (rowMajor & 7)));
    });
}

void ReadFloats(ArrayReader& reader, Scdr& node, const MxArray* array)
{
    const void* data = reader.mx.mxGetData(array);
    if (data == nullptr) throw VTERROR_CODE::SystemError;
    if (reader.mx.mxGetClassID(array) == MxSingle) return ReadReals<float>(reader, node, data);
    ReadReals<double>(reader, node, data);
}

void ReadNumbers(ArrayReader& reader, Scdr& node, const MxArray* array)
{
    const void* data = reader.mx.mxGetData(array);
    if (data == nullptr) throw VTERROR_CODE::SystemError;
    switch (reader.mx.mxGetClassID(array)) {
    case MxChar: return Widen<char16_t, char16_t>(node, data);
    case MxInt8: return Widen<std::int8_t, std::int64_t>(node, data);
    case MxUint8: return Widen<std::uint8_t, std::int64_t>(node, data);
    case MxInt16: return Widen<std::int16_t, std::int64_t>(node, data);
    case MxUint16: return Widen<std::uint16_t, std::int64_t>(node, data);
    case MxInt32: return Widen<std::int32_t, std::int64_t>(node, data);
    case MxUint32: return Widen<std::uint32_t, std::int64_t>(node, data);
    default: return Widen<std::int64_t, std::int64_t>(node, data);
    }
}

} // namespace

void ReadSimple(ArrayReader& reader, Scdr& node, const MxArray* array)
{
    if (node.ElementCount > 0) {
        switch (node.Type) {
        case TypeBoolean: ReadLogicals(reader, node, array); break;
        case TypeComplex: ReadComplex(reader, node, array); break;
        case TypeReal: return ReadFloats(reader, node, array); // finds the simplest type itself
        default: ReadNumbers(reader, node, array); break;
        }
    }
    SetSimplestType(node);
}

} // namespace vantrel::matlab
