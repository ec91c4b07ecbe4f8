#include <cmath>
#include <numeric>

#include "builtin/structural.h"
#include "model/ccdr.h"
#include "unit/properties/plain_primitives.h"

namespace vantrel::test {
namespace {

constexpr int Trees = 400;

// What must hold for every array, tried on random trees of all types, of ranks 0 to 5, empty and nested.
class Properties : public Arrays {
protected:
    template <typename Check> void ForRandomTrees(unsigned seed, Check check)
    {
        std::mt19937 random(seed);
        for (int round = 0; round < Trees; ++round) {
            const ScdrPtr tree = RandomTree(&context, random);
            SetSimplestType(*tree);
            const ScdrPtr before = CopyScdr(&context, *tree);
            check(*tree, random);
            ASSERT_TRUE(SameTree(*before, *tree)) << "the argument was changed in round " << round;
            ASSERT_EQ(TakeError(), VTERROR_CODE::NoError);
            ASSERT_FALSE(HasFailure()) << "round " << round << ": " << DumpTree(*tree).substr(0, 1000);
        }
    }
    ScdrPtr Sound(ScdrPtr result)
    {
        EXPECT_NE(result, nullptr);
        EXPECT_TRUE(result == nullptr || IsSoundTree(*result));
        EXPECT_TRUE(result == nullptr || HasSimplestTypes(*result));
        return result;
    }
    // As SetSimplestType would leave it.
    bool HasSimplestTypes(const Scdr& tree)
    {
        const ScdrPtr copy = CopyScdr(&context, tree);
        SetSimplestType(*copy);
        return SameSimplestTypes(*copy, tree);
    }
    static bool SameSimplestTypes(const Scdr& a, const Scdr& b)
    {
        if (a.SimplestType != b.SimplestType) return false;
        for (std::int64_t i = 0; i < ChildCount(a); ++i) {
            if (!SameSimplestTypes(*Children(a)[i], *Children(b)[i])) return false;
        }
        return true;
    }
    ScdrPtr OrderNode(const std::vector<std::int32_t>& order)
    {
        std::vector<std::int64_t> numbers;
        for (const std::int32_t axis : order)
            numbers.push_back(axis + context.indexOrigin);
        return Integers(numbers);
    }
    static std::vector<std::int32_t> RandomOrder(std::mt19937& random, std::int32_t rank)
    {
        std::vector<std::int32_t> order(static_cast<std::size_t>(rank));
        std::iota(order.begin(), order.end(), 0);
        std::shuffle(order.begin(), order.end(), random);
        return order;
    }
};

TEST_F(Properties, ReversingTwiceChangesNothing)
{
    ForRandomTrees(101, [&](const Scdr& tree, std::mt19937&) {
        for (const auto reverse : {BuiltinReverse, BuiltinReverseAxis1}) {
            const ScdrPtr once = Sound(reverse(&context, tree));
            const ScdrPtr twice = Sound(reverse(&context, *once));
            EXPECT_TRUE(SameTree(tree, *twice));
        }
    });
}

TEST_F(Properties, ReversingAgreesWithPlainIndexing)
{
    ForRandomTrees(102, [&](const Scdr& tree, std::mt19937&) {
        if (tree.Rank == 0) {
            EXPECT_TRUE(SameTree(tree, *BuiltinReverse(&context, tree)));
            EXPECT_TRUE(SameTree(tree, *BuiltinReverseAxis1(&context, tree)));
            return;
        }
        EXPECT_TRUE(SameTree(*PlainReverse(&context, tree, tree.Rank - 1), *BuiltinReverse(&context, tree)));
        EXPECT_TRUE(SameTree(*PlainReverse(&context, tree, 0), *BuiltinReverseAxis1(&context, tree)));
    });
}

TEST_F(Properties, TransposingTwiceChangesNothing)
{
    ForRandomTrees(103, [&](const Scdr& tree, std::mt19937&) {
        const ScdrPtr once = Sound(BuiltinTranspose(&context, tree));
        const ScdrPtr twice = Sound(BuiltinTranspose(&context, *once));
        EXPECT_TRUE(SameTree(tree, *twice));
    });
}

TEST_F(Properties, AnOrderAndItsInverseChangeNothing)
{
    ForRandomTrees(104, [&](const Scdr& tree, std::mt19937& random) {
        context.indexOrigin = static_cast<std::int64_t>(random() % 2);
        const std::vector<std::int32_t> order = RandomOrder(random, tree.Rank);
        std::vector<std::int32_t> inverse(order.size());
        for (std::size_t axis = 0; axis < order.size(); ++axis)
            inverse[static_cast<std::size_t>(order[axis])] = static_cast<std::int32_t>(axis);
        const ScdrPtr moved = Sound(BuiltinTranspose(&context, tree, OrderNode(order).get()));
        EXPECT_TRUE(SameTree(tree, *BuiltinTranspose(&context, *moved, OrderNode(inverse).get())));
    });
}

TEST_F(Properties, TransposingAgreesWithPlainIndexing)
{
    ForRandomTrees(105, [&](const Scdr& tree, std::mt19937& random) {
        std::vector<std::int32_t> order = RandomOrder(random, tree.Rank);
        EXPECT_TRUE(SameTree(*PlainTranspose(&context, tree, order),
                             *BuiltinTranspose(&context, tree, OrderNode(order).get())));
        std::sort(order.rbegin(), order.rend());
        EXPECT_TRUE(SameTree(*PlainTranspose(&context, tree, order), *BuiltinTranspose(&context, tree)));
    });
}

// Bigger simple arrays than random trees have, so that the blocks in which the work is done are full ones.
TEST_F(Properties, TransposingBigArraysAgreesWithPlainIndexing)
{
    std::mt19937 random(106);
    for (const std::uint32_t type :
         {TypeCharacter, TypeBoolean, TypeInteger, TypeReal, TypeComplex, TypeDecimal}) {
        for (int round = 0; round < 12; ++round) {
            Shape shape;
            for (std::size_t axis = 0; axis < 1 + random() % 5; ++axis)
                shape.push_back(1 + static_cast<std::int64_t>(random() % (axis < 2 ? 40 : 3)));
            std::shuffle(shape.begin(), shape.end(), random);
            const ScdrPtr tree = RandomSimple(&context, random, type, shape);
            const std::vector<std::int32_t> order = RandomOrder(random, tree->Rank);
            ASSERT_TRUE(SameTree(*PlainTranspose(&context, *tree, order),
                                 *BuiltinTranspose(&context, *tree, OrderNode(order).get())));
        }
    }
}

TEST_F(Properties, EnclosingAndTakingTheFirstChangesNothing)
{
    ForRandomTrees(107, [&](const Scdr& tree, std::mt19937&) {
        const ScdrPtr enclosed = Sound(BuiltinEnclose(&context, tree));
        EXPECT_EQ(ScdrDepth(*enclosed), ScdrDepth(tree) + (IsSimple(tree) && tree.Rank == 0 ? 0 : 1));
        const ScdrPtr first = Sound(BuiltinFirst(&context, *enclosed));
        ScdrPtr expected = CopyScdr(&context, tree);
        if (tree.Rank == 0 && IsSimple(tree)) expected->Flags = 0;
        EXPECT_TRUE(SameTree(*expected, *first));
        EXPECT_TRUE(SameTree(*first, *Sound(BuiltinDisclose(&context, *enclosed))));
    });
}

TEST_F(Properties, EnlistIsTheSameOfAnEnclosedArray)
{
    ForRandomTrees(108, [&](const Scdr& tree, std::mt19937&) {
        const ScdrPtr enlisted = Sound(BuiltinEnlist(&context, tree));
        const ScdrPtr enclosed = Sound(BuiltinEnlist(&context, *BuiltinEnclose(&context, tree)));
        enlisted->Flags = 0; // a simple array keeps what the adapter knows of it
        enclosed->Flags = 0;
        EXPECT_TRUE(SameTree(*enlisted, *enclosed));
    });
}

// A number of any type as a complex one; nothing else.
bool NumberOf(const Scdr& scalar, double& real, double& imaginary)
{
    const auto* reals = static_cast<const double*>(scalar.data);
    imaginary = 0;
    switch (scalar.Type) {
    case TypeBoolean: real = GetBit(scalar.data, 0) ? 1 : 0; return true;
    case TypeInteger: real = static_cast<double>(*static_cast<const std::int64_t*>(scalar.data)); return true;
    case TypeReal: real = reals[0]; return true;
    case TypeComplex:
        real = reals[0];
        imaginary = reals[1];
        return true;
    default: return false;
    }
}

bool SameNumber(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool SameItem(const Scdr& a, const Scdr& b)
{
    double realA;
    double imaginaryA;
    double realB;
    double imaginaryB;
    if (NumberOf(a, realA, imaginaryA) != NumberOf(b, realB, imaginaryB)) return false;
    if (a.Type == b.Type && a.Type != TypeBoolean)
        return std::memcmp(a.data, b.data, DataSize(a.Type, 1)) == 0;
    if (!NumberOf(a, realA, imaginaryA)) return false;
    return SameNumber(realA, realB) && SameNumber(imaginaryA, imaginaryB);
}

TEST_F(Properties, EnlistGivesEveryItemInOrder)
{
    ForRandomTrees(109, [&](const Scdr& tree, std::mt19937&) {
        const ScdrPtr enlisted = Sound(BuiltinEnlist(&context, tree));
        std::vector<ScdrPtr> leaves;
        PlainLeaves(&context, tree, leaves);
        ASSERT_EQ(enlisted->ElementCount, std::ssize(leaves));
        EXPECT_EQ(enlisted->Rank, 1);
        for (std::int64_t i = 0; i < enlisted->ElementCount; ++i) {
            const ScdrPtr item = PlainItem(&context, *enlisted, i);
            EXPECT_TRUE(SameItem(*item, *leaves[static_cast<std::size_t>(i)]))
                << DumpTree(*item) << " for " << DumpTree(*leaves[static_cast<std::size_t>(i)]);
            EXPECT_TRUE(IsSimple(*enlisted) || item->Type == leaves[static_cast<std::size_t>(i)]->Type);
        }
    });
}

TEST_F(Properties, RavelKeepsTheOrder)
{
    ForRandomTrees(110, [&](const Scdr& tree, std::mt19937&) {
        const ScdrPtr raveled = Sound(BuiltinRavel(&context, tree));
        ASSERT_EQ(ShapeOf(*raveled), (Shape{tree.ElementCount}));
        EXPECT_EQ(raveled->Type, tree.Type);
        const std::int64_t items = std::max<std::int64_t>(tree.ElementCount, IsSimple(tree) ? 0 : 1);
        for (std::int64_t i = 0; i < items; ++i) {
            const ScdrPtr expected = PlainItem(&context, tree, i);
            expected->Flags = 0;
            const ScdrPtr item = PlainItem(&context, *raveled, i);
            item->Flags = static_cast<std::uint8_t>(item->Flags & FlagKeptSize);
            if (!IsSimple(*item)) expected->Flags = item->Flags;
            EXPECT_TRUE(SameTree(*expected, *item));
        }
    });
}

// A matrix as a vector of its rows.
ScdrPtr RowsOf(EditContext* context, const Scdr& matrix)
{
    const std::int64_t rows = matrix.Shape[0];
    const std::int64_t columns = matrix.Shape[1];
    std::vector<ScdrPtr> made;
    for (std::int64_t row = 0; row < std::max<std::int64_t>(rows, 1); ++row) {
        made.push_back(PlainArray(
            context, matrix, {columns},
            [&](const Shape& indices) { return rows > 0 ? row * columns + indices[0] : 0; },
            [](std::int32_t) { return 0; }));
        made.back()->Flags = 0;
    }
    return Nested(context, {rows}, std::move(made));
}

TEST_F(Properties, DisclosingTheRowsOfAMatrixGivesTheMatrix)
{
    std::mt19937 random(111);
    for (int round = 0; round < Trees; ++round) {
        const std::uint32_t types[] = {TypeCharacter, TypeBoolean, TypeInteger,
                                       TypeReal,      TypeComplex, TypeDecimal};
        const Shape shape = {1 + static_cast<std::int64_t>(random() % 12),
                             static_cast<std::int64_t>(random() % 80)};
        const ScdrPtr matrix = RandomSimple(&context, random, types[round % 6], shape);
        const ScdrPtr result = Sound(BuiltinDisclose(&context, *RowsOf(&context, *matrix)));
        ASSERT_TRUE(SameTree(*matrix, *result)) << round;
    }
}

TEST_F(Properties, DisclosingTheRowsOfANestedMatrixGivesTheMatrix)
{
    std::mt19937 random(112);
    RandomTreeLimits limits;
    limits.deepest = 2;
    limits.longestAxis = 2;
    for (int round = 0; round < Trees; ++round) {
        const std::int64_t rows = 1 + static_cast<std::int64_t>(random() % 3);
        const std::int64_t columns = 1 + static_cast<std::int64_t>(random() % 3);
        std::vector<ScdrPtr> items;
        for (std::int64_t i = 0; i < rows * columns; ++i)
            items.push_back(RandomTree(&context, random, limits));
        const ScdrPtr matrix = test::Nested(&context, {rows, columns}, std::move(items));
        const ScdrPtr result = Sound(BuiltinDisclose(&context, *RowsOf(&context, *matrix)));
        ASSERT_TRUE(SameTree(*matrix, *result)) << round;
    }
}

// Cells of an array, compared as plain values.
bool CellsInOrder(const Scdr& array, std::int64_t first, std::int64_t second, std::int64_t cell)
{
    for (std::int64_t i = 0; i < cell; ++i) {
        const std::int64_t a = first * cell + i;
        const std::int64_t b = second * cell + i;
        double left = 0;
        double right = 0;
        switch (array.Type) {
        case TypeCharacter:
            left = static_cast<const char16_t*>(array.data)[a];
            right = static_cast<const char16_t*>(array.data)[b];
            break;
        case TypeBoolean:
            left = GetBit(array.data, a) ? 1 : 0;
            right = GetBit(array.data, b) ? 1 : 0;
            break;
        case TypeInteger: {
            const auto* items = static_cast<const std::int64_t*>(array.data);
            left = items[a] < items[b] ? -1 : 0;
            right = items[a] > items[b] ? -1 : 0;
            break;
        }
        default:
            left = static_cast<const double*>(array.data)[a];
            right = static_cast<const double*>(array.data)[b];
            if (std::isnan(left) || std::isnan(right)) {
                if (std::isnan(left) && std::isnan(right)) continue;
                return std::isnan(right);
            }
        }
        if (left != right) return left < right;
    }
    return true;
}

TEST_F(Properties, SortingByTheGradeGivesAnOrderedArray)
{
    std::mt19937 random(113);
    const std::uint32_t types[] = {TypeCharacter, TypeBoolean, TypeInteger, TypeReal};
    for (int round = 0; round < Trees; ++round) {
        context.indexOrigin = round % 2;
        Shape shape = {1 + static_cast<std::int64_t>(random() % 50)};
        for (std::size_t axis = 0; axis < random() % 4; ++axis)
            shape.push_back(1 + static_cast<std::int64_t>(random() % 3));
        const ScdrPtr array = RandomSimple(&context, random, types[round % 4], shape);
        const std::int64_t cell = array->ElementCount / shape[0];
        ScdrPtr grade = Sound(BuiltinGradeUp(&context, *array));
        std::vector<std::int64_t> places = ItemsOf<std::int64_t>(*grade);
        const ScdrPtr sorted = Sort(&context, *array, std::move(grade), context.indexOrigin);
        ASSERT_NE(sorted, nullptr);
        for (std::int64_t i = 1; i < shape[0]; ++i)
            ASSERT_TRUE(CellsInOrder(*sorted, i - 1, i, cell)) << round << ": " << DumpTree(*sorted);
        // Nothing is lost and nothing doubled.
        std::sort(places.begin(), places.end());
        for (std::int64_t i = 0; i < shape[0]; ++i)
            ASSERT_EQ(places[static_cast<std::size_t>(i)], i + context.indexOrigin);
        const ScdrPtr descending =
            Sort(&context, *array, BuiltinGradeDown(&context, *array), context.indexOrigin);
        ASSERT_TRUE(SameTree(*BuiltinReverseAxis1(&context, *sorted), *descending));
    }
}

TEST_F(Properties, AnImageGivesTheTreeBack)
{
    std::mt19937 random(114);
    RandomTreeLimits limits;
    limits.decimals = false; // an image carries no decimal data
    for (int round = 0; round < Trees; ++round) {
        const ScdrPtr tree = RandomTree(&context, random, limits);
        tree->Flags = static_cast<std::uint8_t>(tree->Flags & FlagStructure);
        const std::int64_t size = CalcCcdrSize(*tree);
        const OwnedArray<std::uint8_t> image(ScdrToCcdr(&context, *tree, nullptr));
        const ScdrPtr back = CcdrToScdr(&context, image.get(), size);
        ASSERT_NE(back, nullptr);
        ASSERT_TRUE(IsSoundTree(*back));
        ASSERT_TRUE(SameTree(*tree, *back)) << round;
    }
}

} // namespace
} // namespace vantrel::test
