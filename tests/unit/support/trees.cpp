#include "unit/support/trees.h"

#include <algorithm>
#include <cstring>
#include <iomanip>
#include <sstream>

namespace vantrel::test {
namespace {

template <typename T>
ScdrPtr Simple(EditContext* context, std::uint32_t type, const Shape& shape, const T* values,
               std::size_t count)
{
    ScdrPtr node =
        AllocateScdr(context, nullptr, type, static_cast<std::int32_t>(shape.size()), shape.data(), true);
    EXPECT_EQ(DataSize(type, node->ElementCount), count * sizeof(T));
    if (count > 0) std::memcpy(node->data, values, count * sizeof(T));
    return node;
}

void DumpCharacter(std::ostream& out, char16_t unit)
{
    if (unit >= 32 && unit < 127) {
        out << static_cast<char>(unit);
    } else {
        out << "\\u" << std::hex << std::setw(4) << std::setfill('0') << static_cast<unsigned>(unit)
            << std::dec;
    }
}

void DumpItem(std::ostream& out, const Scdr& node, std::int64_t index)
{
    switch (node.Type) {
    case TypeBoolean: out << (GetBit(node.data, index) ? '1' : '0'); break;
    case TypeInteger: out << static_cast<const std::int64_t*>(node.data)[index]; break;
    case TypeReal: out << static_cast<const double*>(node.data)[index]; break;
    case TypeComplex:
        out << static_cast<const double*>(node.data)[2 * index] << 'J'
            << static_cast<const double*>(node.data)[2 * index + 1];
        break;
    case TypeDecimal:
        for (int i = 0; i < 16; ++i) {
            out << std::hex << std::setw(2) << std::setfill('0')
                << static_cast<unsigned>(static_cast<const std::uint8_t*>(node.data)[16 * index + i])
                << std::dec;
        }
        break;
    default: out << '?';
    }
}

void Dump(std::ostream& out, const Scdr& node)
{
    for (const char16_t* name = TypeName(Dialect::Dyalog, node.Type); *name != 0; ++name)
        out << static_cast<char>(*name);
    out << '[';
    for (std::int32_t axis = 0; axis < node.Rank; ++axis)
        out << (axis > 0 ? " " : "") << node.Shape[axis];
    out << ']';
    if (node.Type == TypeCharacter) {
        out << '\'';
        for (std::int64_t i = 0; i < node.ElementCount; ++i)
            DumpCharacter(out, static_cast<const char16_t*>(node.data)[i]);
        out << '\'';
        return;
    }
    const bool nested = node.Type == TypeNested;
    if (nested) out << '(';
    for (std::int64_t i = 0; i < (nested ? ChildCount(node) : node.ElementCount); ++i) {
        if (i > 0) out << ' ';
        if (!nested) {
            DumpItem(out, node, i);
        } else if (Children(node)[i] != nullptr) {
            Dump(out, *Children(node)[i]);
        } else {
            out << "null";
        }
    }
    if (nested) out << ')';
}

bool SameNames(const Scdr& a, const Scdr& b)
{
    for (std::int32_t axis = 0; a.Rank >= 3 && axis < a.Rank; ++axis) {
        if (std::u16string_view(a.extra->AxisNames[axis]) != std::u16string_view(b.extra->AxisNames[axis]))
            return false;
    }
    return true;
}

bool SameData(const Scdr& a, const Scdr& b)
{
    if (a.Type == TypeBoolean) {
        for (std::int64_t i = 0; i < a.ElementCount; ++i) {
            if (GetBit(a.data, i) != GetBit(b.data, i)) return false;
        }
        return true;
    }
    return std::memcmp(a.data, b.data, DataSize(a.Type, a.ElementCount)) == 0;
}

const char* Difference(const Scdr& a, const Scdr& b)
{
    constexpr int adapterFlags = FlagStructure | FlagKeptSize;
    if (a.Type != b.Type) return "types";
    if (a.Rank != b.Rank || (a.Rank > 0 && !std::equal(a.Shape, a.Shape + a.Rank, b.Shape))) return "shapes";
    if (a.ElementCount != b.ElementCount) return "element counts";
    if ((a.Flags & adapterFlags) != (b.Flags & adapterFlags)) return "adapter flags";
    if (!SameNames(a, b)) return "axis names";
    if (IsSimple(a) && !SameData(a, b)) return "data";
    return nullptr;
}

::testing::AssertionResult SameTreeAt(const Scdr& a, const Scdr& b, const std::string& path)
{
    if (const char* what = Difference(a, b)) {
        return ::testing::AssertionFailure()
               << what << " differ at root" << path << ": " << DumpTree(a).substr(0, 400) << " and "
               << DumpTree(b).substr(0, 400);
    }
    for (std::int64_t i = 0; i < ChildCount(a); ++i) {
        auto result = SameTreeAt(*Children(a)[i], *Children(b)[i], path + "." + std::to_string(i));
        if (!result) return result;
    }
    return ::testing::AssertionSuccess();
}

const char* Unsoundness(const Scdr& node)
{
    // The other axes of an empty array may be as long as they like.
    const bool empty =
        node.Rank > 0 && std::find(node.Shape, node.Shape + node.Rank, 0) != node.Shape + node.Rank;
    std::int64_t count = empty ? 0 : 1;
    for (std::int32_t axis = 0; !empty && axis < node.Rank; ++axis)
        count *= node.Shape[axis];
    if (count != node.ElementCount) return "the element count is not the product of the shape";
    if (node.Rank == 0 && node.Shape != nullptr) return "a scalar has a shape";
    if (node.Rank >= 3 &&
        (node.extra == nullptr || node.extra->AxisNames == nullptr || node.extra->PlaneIndex == nullptr)) {
        return "rank 3 without axis names or plane index";
    }
    if (node.data == nullptr) return "no data";
    for (std::int64_t i = 0; i < ChildCount(node); ++i) {
        if (Children(node)[i] == nullptr) return "a child is missing";
        if (Children(node)[i]->parent != &node) return "a child's parent link is wrong";
        if (IndexInParent(*Children(node)[i]) != i) return "a child's index is wrong";
    }
    return nullptr;
}

int Pick(std::mt19937& random, int lowest, int highest)
{
    return std::uniform_int_distribution<int>(lowest, highest)(random);
}

Shape RandomShape(std::mt19937& random, const RandomTreeLimits& limits)
{
    Shape shape(static_cast<std::size_t>(Pick(random, 0, limits.highestRank)));
    // Mostly not empty, and long axes only at low ranks, so that deep trees stay small.
    const int longest = shape.size() > 2 ? std::min(limits.longestAxis, 2) : limits.longestAxis;
    for (std::int64_t& axis : shape)
        axis = Pick(random, 0, 9) == 0 ? 0 : Pick(random, 1, longest);
    return shape;
}

void RandomizeAxisNames(std::mt19937& random, Scdr& node)
{
    for (std::int32_t axis = 0; axis < node.Rank; ++axis) {
        const std::u16string text = RandomText(random, 6);
        OwnedArray<char16_t> name = AllocateArray<char16_t>(static_cast<std::int64_t>(text.size()) + 1);
        std::copy_n(text.c_str(), text.size() + 1, name.get());
        FreeBytes(node.extra->AxisNames[axis]);
        node.extra->AxisNames[axis] = name.release();
    }
}

ScdrPtr RandomTreeOf(EditContext* context, std::mt19937& random, const RandomTreeLimits& limits, int depth)
{
    static constexpr std::uint32_t types[] = {TypeCharacter, TypeBoolean, TypeInteger,
                                              TypeReal,      TypeComplex, TypeDecimal};
    const Shape shape = RandomShape(random, limits);
    ScdrPtr node;
    if (depth < limits.deepest && Pick(random, 0, depth < 2 ? 4 : 2) != 0) {
        std::vector<ScdrPtr> children;
        std::int64_t count = 1;
        for (const std::int64_t axis : shape)
            count *= axis;
        for (std::int64_t i = 0; i < std::max<std::int64_t>(count, 1); ++i) {
            // Wide levels get shallow children: the tree grows with the sum, not the product, of its levels.
            const int childDepth = count > 2 && i > 1 ? limits.deepest : depth + 1;
            children.push_back(RandomTreeOf(context, random, limits, childDepth));
        }
        node = Nested(context, shape, std::move(children));
        if (Pick(random, 0, 3) == 0) node->Flags |= FlagStructure;
    } else {
        node = RandomSimple(context, random, types[Pick(random, 0, limits.decimals ? 5 : 4)], shape);
        if (depth > 0 && Pick(random, 0, 3) == 0) node->Flags |= FlagKeptSize;
    }
    if (limits.axisNames && node->Rank >= 3) RandomizeAxisNames(random, *node);
    return node;
}

} // namespace

ScdrPtr Characters(EditContext* context, std::u16string_view text)
{
    return Characters(context, {static_cast<std::int64_t>(text.size())}, text);
}

ScdrPtr Characters(EditContext* context, const Shape& shape, std::u16string_view text)
{
    return Simple(context, TypeCharacter, shape, text.data(), text.size());
}

ScdrPtr Booleans(EditContext* context, const Shape& shape, const std::vector<int>& bits)
{
    ScdrPtr node = AllocateScdr(context, nullptr, TypeBoolean, static_cast<std::int32_t>(shape.size()),
                                shape.data(), true);
    EXPECT_EQ(static_cast<std::size_t>(node->ElementCount), bits.size());
    for (std::size_t i = 0; i < bits.size(); ++i)
        SetBit(node->data, static_cast<std::int64_t>(i), bits[i] != 0);
    return node;
}

ScdrPtr Integers(EditContext* context, const Shape& shape, const std::vector<std::int64_t>& values)
{
    return Simple(context, TypeInteger, shape, values.data(), values.size());
}

ScdrPtr Reals(EditContext* context, const Shape& shape, const std::vector<double>& values)
{
    return Simple(context, TypeReal, shape, values.data(), values.size());
}

ScdrPtr Complexes(EditContext* context, const Shape& shape, const std::vector<double>& pairs)
{
    return Simple(context, TypeComplex, shape, pairs.data(), pairs.size());
}

ScdrPtr Nested(EditContext* context, const Shape& shape, std::vector<ScdrPtr> children)
{
    ScdrPtr node = AllocateScdr(context, nullptr, TypeNested, static_cast<std::int32_t>(shape.size()),
                                shape.data(), true);
    EXPECT_EQ(static_cast<std::size_t>(ChildCount(*node)), children.size());
    for (std::size_t i = 0; i < children.size(); ++i)
        SetChild(*node, static_cast<std::int64_t>(i), std::move(children[i]));
    return node;
}

std::string DumpTree(const Scdr& node)
{
    std::ostringstream out;
    Dump(out, node);
    return out.str();
}

::testing::AssertionResult SameTree(const Scdr& expected, const Scdr& actual)
{
    return SameTreeAt(expected, actual, "");
}

::testing::AssertionResult IsSoundTree(const Scdr& root)
{
    if (const char* what = Unsoundness(root))
        return ::testing::AssertionFailure() << what << " in " << DumpTree(root).substr(0, 400);
    for (std::int64_t i = 0; i < ChildCount(root); ++i) {
        auto result = IsSoundTree(*Children(root)[i]);
        if (!result) return result;
    }
    return ::testing::AssertionSuccess();
}

ScdrPtr RandomTree(EditContext* context, std::mt19937& random, const RandomTreeLimits& limits)
{
    return RandomTreeOf(context, random, limits, 0);
}

ScdrPtr RandomSimple(EditContext* context, std::mt19937& random, std::uint32_t type, const Shape& shape)
{
    ScdrPtr node =
        AllocateScdr(context, nullptr, type, static_cast<std::int32_t>(shape.size()), shape.data(), true);
    auto* bytes = static_cast<std::uint8_t*>(node->data);
    const std::size_t size = DataSize(type, node->ElementCount);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(Pick(random, 0, 255));
    return node;
}

std::u16string RandomText(std::mt19937& random, int longest)
{
    std::u16string text(static_cast<std::size_t>(Pick(random, 0, longest)), u' ');
    for (char16_t& unit : text)
        unit = static_cast<char16_t>(Pick(random, 0, 5) == 0 ? Pick(random, 0x2300, 0x23FF)
                                                             : Pick(random, 32, 126));
    return text;
}

} // namespace vantrel::test
