// From a tree to MATLAB's arrays.
#include <algorithm>
#include <limits>

#include "entry/trace.h"
#include "hosts/item_loops.h"
#include "hosts/matlab_host.h"
#include "hosts/matlab_order.h"
#include "model/primitives.h"

namespace vantrel::matlab {
namespace {

constexpr std::uint64_t ArrayOverhead = 128; // bytes that an array takes besides its items

struct ArrayWriter {
    const MatlabFunctions& mx;
    const std::uint8_t* types; // of the next node
    std::uint64_t& budget;
    Vector<std::size_t> lengths; // of the array that is made next
};

// An array of ours until it is handed over.
class OwnedMxArray {
public:
    OwnedMxArray(const MatlabFunctions& mx, MxArray* array) noexcept : mx_(mx), array_(array) {}
    ~OwnedMxArray()
    {
        if (array_ != nullptr) mx_.mxDestroyArray(array_);
    }
    OwnedMxArray(const OwnedMxArray&) = delete;
    OwnedMxArray& operator=(const OwnedMxArray&) = delete;
    [[nodiscard]] MxArray* Get() const noexcept { return array_; }
    [[nodiscard]] MxArray* Release() noexcept { return std::exchange(array_, nullptr); }

private:
    const MatlabFunctions& mx_;
    MxArray* array_;
};

std::uint64_t BytesPerItem(std::uint8_t type) noexcept
{
    switch (type) {
    case MatlabChar: return 2;
    case MatlabLogical: return 1;
    case MatlabInt32: return 4;
    case MatlabComplex: return 16;
    default: return 8;
    }
}

// Stores the lengths for MATLAB, which has no rank below 2, and answers the number of items.
std::uint64_t SetLengths(ArrayWriter& writer, const Scdr& scdr, std::int32_t rank)
{
    writer.lengths.assign(rank < 2 ? 2 : static_cast<std::size_t>(rank), 1);
    const auto first = writer.lengths.end() - rank;
    std::transform(scdr.Shape, scdr.Shape + rank, first,
                   [](std::int64_t length) { return static_cast<std::size_t>(length); });
    std::uint64_t count = 1;
    for (const std::size_t length : writer.lengths)
        count *= length;
    return count;
}

// Takes what an array needs from what is left for the whole conversion.
void TakeBudget(ArrayWriter& writer, std::uint64_t count, std::uint8_t type)
{
    const std::uint64_t itemBytes = BytesPerItem(type);
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max() - ArrayOverhead;
    const std::uint64_t need = count > most / itemBytes ? most : count * itemBytes + ArrayOverhead;
    if (need > writer.budget) throw VTERROR_CODE::WsFull;
    writer.budget -= need;
}

MxArray* NotNull(MxArray* array)
{
    if (array == nullptr) throw VTERROR_CODE::OutOfMemory;
    return array;
}

// --- simple arrays ---

// The block was just made for these items, so that nothing here throws.
template <typename To, typename Load> void StoreItems(const Scdr& scdr, To* __restrict to, Load load) noexcept
{
    if (IsRearranged(scdr)) {
        MoveItems(ItemOrder(scdr.Rank, scdr.Shape),
                  [=](std::int64_t columnMajor, std::int64_t rowMajor) { to[columnMajor] = load(rowMajor); });
        return;
    }
    for (std::int64_t i = 0; i < scdr.ElementCount; ++i)
        to[i] = load(i);
}

// The one double that is whole and in range but one too many becomes the greatest integer, as MATLAB's own conversions have it.
std::int64_t ToInteger(double value) noexcept
{
    return value < 9223372036854775808.0 ? static_cast<std::int64_t>(value)
                                         : std::numeric_limits<std::int64_t>::max();
}

template <typename To, typename From> To ConvertItem(From item) noexcept
{
    if constexpr (std::is_same_v<To, bool>) {
        return item != From{};
    } else if constexpr (std::is_same_v<From, double> && !std::is_same_v<To, double>) {
        return static_cast<To>(ToInteger(item));
    } else {
        return static_cast<To>(item);
    }
}

// Numbers of any type as MATLAB's; of complex ones the real parts.
template <typename To> void StoreNumbers(const Scdr& scdr, To* to)
{
    const void* const data = scdr.data;
    switch (scdr.Type) {
    case TypeBoolean:
        return StoreItems(scdr, to, [data](std::int64_t i) { return static_cast<To>(GetBit(data, i)); });
    case TypeInteger:
        return StoreItems(scdr, to, [items = static_cast<const std::int64_t*>(data)](std::int64_t i) {
            return ConvertItem<To>(items[i]);
        });
    case TypeReal:
        return StoreItems(scdr, to, [items = static_cast<const double*>(data)](std::int64_t i) {
            return ConvertItem<To>(items[i]);
        });
    case TypeComplex:
        return StoreItems(scdr, to, [pairs = static_cast<const double*>(data)](std::int64_t i) {
            return ConvertItem<To>(pairs[2 * i]);
        });
    default: throw VTERROR_CODE::DomainError;
    }
}

void StorePairs(const Scdr& scdr, double* real, double* imaginary)
{
    const auto* pairs = static_cast<const double*>(scdr.data);
    StoreItems(scdr, real, [pairs](std::int64_t i) { return pairs[2 * i]; });
    StoreItems(scdr, imaginary, [pairs](std::int64_t i) { return pairs[2 * i + 1]; });
}

void StoreCharacters(const Scdr& scdr, char16_t* to)
{
    if (scdr.Type != TypeCharacter) throw VTERROR_CODE::DomainError;
    const auto* units = static_cast<const char16_t*>(scdr.data);
    StoreItems(scdr, to, [units](std::int64_t i) { return units[i]; });
}

MxArray* CreateSimple(const ArrayWriter& writer, std::uint8_t type)
{
    const std::size_t rank = writer.lengths.size();
    const std::size_t* lengths = writer.lengths.data();
    switch (type) {
    case MatlabChar: return writer.mx.mxCreateCharArray(rank, lengths);
    case MatlabLogical: return writer.mx.mxCreateLogicalArray(rank, lengths);
    case MatlabDouble: return writer.mx.mxCreateNumericArray(rank, lengths, MxDouble, MxReal);
    case MatlabInt32: return writer.mx.mxCreateNumericArray(rank, lengths, MxInt32, MxReal);
    case MatlabInt64: return writer.mx.mxCreateNumericArray(rank, lengths, MxInt64, MxReal);
    case MatlabComplex: return writer.mx.mxCreateNumericArray(rank, lengths, MxDouble, MxComplex);
    default: throw VTERROR_CODE::DomainError;
    }
}

void StoreSimple(const ArrayWriter& writer, const Scdr& scdr, std::uint8_t type, const MxArray* array)
{
    const MatlabFunctions& mx = writer.mx;
    switch (type) {
    case MatlabChar: return StoreCharacters(scdr, static_cast<char16_t*>(mx.mxGetData(array)));
    case MatlabLogical: return StoreNumbers(scdr, mx.mxGetLogicals(array));
    case MatlabDouble: return StoreNumbers(scdr, mx.mxGetPr(array));
    case MatlabInt32: return StoreNumbers(scdr, static_cast<std::int32_t*>(mx.mxGetData(array)));
    case MatlabInt64: return StoreNumbers(scdr, static_cast<std::int64_t*>(mx.mxGetData(array)));
    default: return StorePairs(scdr, mx.mxGetPr(array), mx.mxGetPi(array));
    }
}

MxArray* WriteSimple(ArrayWriter& writer, const Scdr& scdr, std::uint8_t type)
{
    TakeBudget(writer, SetLengths(writer, scdr, scdr.Rank), type);
    OwnedMxArray array(writer.mx, NotNull(CreateSimple(writer, type)));
    if (scdr.ElementCount > 0) StoreSimple(writer, scdr, type, array.Get());
    return array.Release();
}

// --- cells and structures ---

MxArray* WriteArray(ArrayWriter& writer, const Scdr& scdr);

MxArray* WriteCells(ArrayWriter& writer, const Scdr& scdr)
{
    TakeBudget(writer, SetLengths(writer, scdr, scdr.Rank), MatlabCells);
    OwnedMxArray array(writer.mx,
                       NotNull(writer.mx.mxCreateCellArray(writer.lengths.size(), writer.lengths.data())));
    ColumnMajorWalk walk(scdr, IsRearranged(scdr));
    for (std::int64_t i = 0; i < scdr.ElementCount; ++i, walk.Next()) {
        MxArray* cell = WriteArray(writer, *Children(scdr)[walk.Index()]);
        writer.mx.mxSetCell(array.Get(), static_cast<std::size_t>(i), cell);
    }
    return array.Release();
}

// The names of the first element's fields. A structure without elements has none to tell.
MxArray* CreateStructure(const ArrayWriter& writer, const Scdr& scdr, std::int64_t fieldCount)
{
    Vector<FieldName> names;
    Vector<const char*> texts;
    for (std::int64_t field = 0; field < fieldCount; ++field)
        names.push_back(FieldNameOf(*Children(scdr)[2 * field]));
    for (const FieldName& name : names)
        texts.push_back(name.c_str());
    return writer.mx.mxCreateStructArray(writer.lengths.size(), writer.lengths.data(),
                                         static_cast<int>(fieldCount), texts.data());
}

MxArray* WriteStructure(ArrayWriter& writer, const Scdr& scdr)
{
    const std::uint64_t count = SetLengths(writer, scdr, scdr.Rank - 2);
    TakeBudget(writer, count, MatlabCells);
    const std::int64_t fieldCount = scdr.ElementCount > 0 ? scdr.Shape[scdr.Rank - 2] : 0;
    OwnedMxArray array(writer.mx, NotNull(CreateStructure(writer, scdr, fieldCount)));
    for (std::int64_t child = 0; child < scdr.ElementCount; child += 2) {
        ++writer.types; // the name's
        MxArray* value = WriteArray(writer, *Children(scdr)[child + 1]);
        writer.mx.mxSetFieldByNumber(array.Get(), static_cast<std::size_t>(child / 2 / fieldCount),
                                     static_cast<int>(child / 2 % fieldCount), value);
    }
    return array.Release();
}

// Throws; nothing of MATLAB's is left behind then.
MxArray* WriteArray(ArrayWriter& writer, const Scdr& scdr)
{
    const std::uint8_t type = *writer.types++;
    if (type != MatlabCells) return WriteSimple(writer, scdr, type);
    return IsStructure(scdr) ? WriteStructure(writer, scdr) : WriteCells(writer, scdr);
}

} // namespace

MxArray* ScdrToObjectTypeSet(EditContext* context, const Scdr* scdr, const DialectTypes& types,
                             std::uint64_t& budget)
{
    TraceScope trace("matlab_write.cpp", "ScdrToObjectTypeSet");
    ArrayWriter writer{HostOf(context).functions, types.data(), budget, {}};
    try {
        return WriteArray(writer, *scdr);
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

HostObject ScdrToObject(EditContext* context, const Scdr* scdr)
{
    TraceScope trace("matlab_write.cpp", "ScdrToObject");
    if (scdr == nullptr) {
        SetErrorCode(context, VTERROR_CODE::SystemError);
        return nullptr;
    }
    std::uint64_t budget = GetAvailableMemory(context);
    DialectTypes types;
    return SetDialectType(context, scdr, types) ? ScdrToObjectTypeSet(context, scdr, types, budget) : nullptr;
}

HostObject UnicodeToObject(EditContext* context, const char16_t* text, std::int64_t length)
{
    TraceScope trace("matlab_write.cpp", "UnicodeToObject");
    try {
        const ScdrPtr node = AllocateScdr(context, nullptr, TypeCharacter, 1, &length, false);
        std::copy_n(text, length, static_cast<char16_t*>(WritableData(*node)));
        SetSimplestType(*node);
        return ScdrToObject(context, node.get());
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

} // namespace vantrel::matlab
