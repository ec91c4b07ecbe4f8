#include <algorithm>
#include <cmath>
#include <cstring>

#include "workbench/formats/align.h"
#include "workbench/formats/ccdr.h"
#include "workbench/formats/ccdr_layout.h"
#include "workbench/formats/numbers.h"

namespace vantrel::workbench {
namespace {

using fake::Array;

// The editor shows more digits of a float than this, so a whole number that still reads the same was not edited.
constexpr int wholeNumberPrecision = 17;

// What stood at this place of the file.
struct Original {
    const CcdrNode* node = nullptr;
    const Array* array = nullptr;
};

bool AllWhole(const Array& array)
{
    const std::size_t count = fake::CountOf(array);
    for (std::size_t i = 0; i < count; ++i) {
        const double value = fake::RealAt(array, i);
        if (!(std::floor(value) == value) || std::abs(value) >= 9223372036854775808.0) return false;
    }
    return true;
}

// The kind a file's node had is kept where the values allow it: an editor stores whole floats as integers, and ones and
// zeros as Booleans.
std::uint32_t ChooseType(const Array& array, const CcdrNode* node)
{
    const std::uint32_t before = node != nullptr ? node->type : 0;
    if (array.type == fake::ElementType::Nested) return CcdrType::Nested;
    if (fake::IsCharacterType(array.type)) return CcdrType::Character;
    if (array.type == fake::ElementType::Decimal) return CcdrType::Decimal;
    if (array.type == fake::ElementType::Complex || before == CcdrType::Complex) return CcdrType::Complex;
    if (before == CcdrType::Real) return CcdrType::Real;
    const bool whole =
        array.type != fake::ElementType::Float || (before == CcdrType::Integer && AllWhole(array));
    if (!whole) return CcdrType::Real;
    return array.type == fake::ElementType::Bit && before != CcdrType::Integer ? CcdrType::Boolean
                                                                               : CcdrType::Integer;
}

class BlockWriter {
public:
    std::string Take() { return std::move(out_); }

    void Write(const Array& array, const Original& original)
    {
        const std::size_t start = out_.size();
        const std::uint32_t type = ChooseType(array, original.node);
        const bool isNested = type == CcdrType::Nested;
        out_ += CcdrLayout::magic;
        Append<std::uint32_t>(1);
        Append<std::uint64_t>(0);
        Append<std::uint64_t>(0); // the size, known at the end
        Append(static_cast<std::int64_t>(fake::CountOf(array)));
        Append(type);
        Append(static_cast<std::int32_t>(array.shape.size()));
        Append<std::uint64_t>(original.node != nullptr ? original.node->flags : 0);
        for (const std::int64_t length : array.shape)
            Append(length);
        if (isNested)
            WriteChildren(array, original, start);
        else
            WriteItems(array, type, original);
        if (array.shape.size() >= 3) WriteAxisNames(array.shape.size(), original.node);
        Patch(start + CcdrLayout::size, out_.size() - start);
    }

private:
    template <typename T> void Append(T value)
    {
        char bytes[sizeof(T)];
        std::memcpy(bytes, &value, sizeof(T));
        out_.append(bytes, sizeof(T));
    }

    void Patch(std::size_t at, std::uint64_t value) { std::memcpy(out_.data() + at, &value, 8); }

    void WriteItems(const Array& array, std::uint32_t type, const Original& original)
    {
        const std::size_t count = fake::CountOf(array);
        if (type == CcdrType::Boolean) {
            out_.append(reinterpret_cast<const char*>(array.data.data()), array.data.size());
        } else if (type == CcdrType::Character) {
            for (const char16_t unit : fake::TextOfArray(array))
                Append(unit);
        } else if (type != CcdrType::Decimal) {
            for (std::size_t i = 0; i < count; ++i)
                WriteNumber(array, i, type, original);
        }
    }

    void WriteNumber(const Array& array, std::size_t index, std::uint32_t type, const Original& original)
    {
        const fake::ComplexNumber value = fake::ComplexAt(array, index);
        if (type == CcdrType::Integer) {
            Append(WholeNumber(array, index, original));
            return;
        }
        Append(value.real);
        if (type == CcdrType::Complex) Append(value.imaginary);
    }

    static std::int64_t WholeNumber(const Array& array, std::size_t index, const Original& original)
    {
        const double value = fake::RealAt(array, index);
        const bool comparable = original.node != nullptr && original.node->type == CcdrType::Integer &&
                                original.array->shape == array.shape;
        if (comparable) {
            const std::int64_t before = original.node->integers[index];
            const NumberChange change =
                CompareNumbers(static_cast<double>(before), value, wholeNumberPrecision);
            if (change != NumberChange::Edited) return before;
        }
        return static_cast<std::int64_t>(value);
    }

    void WriteChildren(const Array& array, const Original& original, std::size_t start)
    {
        const std::size_t children = array.items.size();
        const std::vector<Original> matches = MatchChildren(array, original);
        const std::size_t table = out_.size();
        out_.append(8 * children, '\0');
        for (std::size_t i = 0; i < children; ++i) {
            Patch(table + 8 * i, out_.size() - start);
            Write(array.items[i], matches[i]);
        }
    }

    static std::vector<Original> MatchChildren(const Array& array, const Original& original)
    {
        std::vector<Original> matches(array.items.size());
        if (original.node == nullptr || original.node->type != CcdrType::Nested) return matches;
        const std::vector<Array>& before = original.array->items;
        const auto same = [&](std::size_t now, std::size_t then) {
            return fake::SameValues(array.items[now], before[then]);
        };
        const std::vector<std::size_t> indices = AlignItems(array.items.size(), before.size(), same);
        for (std::size_t i = 0; i < matches.size(); ++i) {
            if (indices[i] != noMatch)
                matches[i] = {&original.node->children[indices[i]], &before[indices[i]]};
        }
        return matches;
    }

    void WriteAxisNames(std::size_t rank, const CcdrNode* node)
    {
        const bool keeps = node != nullptr && node->axisNames.size() == rank;
        for (std::size_t k = 0; k < rank; ++k) {
            const std::string standard = "Axis name " + std::to_string(k + 1);
            const std::u16string name =
                keeps ? node->axisNames[k] : std::u16string(standard.begin(), standard.end());
            for (const char16_t unit : name)
                Append(unit);
            Append(u'\0');
        }
    }

    std::string out_;
};

} // namespace

std::string WriteCcdr(const Array& array, const Document* original)
{
    BlockWriter writer;
    Original root;
    if (original != nullptr) root = {&original->ccdr->root, &original->array};
    writer.Write(array, root);
    return writer.Take();
}

} // namespace vantrel::workbench
