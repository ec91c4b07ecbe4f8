#include <gtest/gtest.h>

#include <string_view>

#include "model/primitives.h"
#include "unit/support/test_context.h"
#include "unit/support/trees.h"

namespace vantrel {
namespace {

using namespace test;

class Copy : public ::testing::Test {
protected:
    TestContext context;
};

// A chain of nested scalars with one simple scalar at its bottom.
ScdrPtr DeepTree(EditContext* context, int depth)
{
    ScdrPtr node = Integers(context, {}, {5});
    for (int i = 0; i < depth; ++i)
        node = Nested(context, {}, Items(std::move(node)));
    return node;
}

TEST_F(Copy, RandomTreesAreCopiedWhole)
{
    std::mt19937 random(1);
    for (int i = 0; i < 300; ++i) {
        const ScdrPtr tree = RandomTree(context, random);
        const ScdrPtr copy = CopyScdr(context, *tree);
        ASSERT_NE(copy, nullptr);
        ASSERT_TRUE(SameTree(*tree, *copy));
        ASSERT_TRUE(IsSoundTree(*copy));
    }
}

TEST_F(Copy, CarriesSimplestTypesAndAdapterFlagsOnly)
{
    const ScdrPtr tree = Nested(context, {1}, Items(Integers(context, {2}, {0, 1})));
    SetSimplestType(*tree);
    tree->Flags = 0xFF;
    Children(*tree)[0]->Flags = 0xFF;
    const ScdrPtr copy = CopyScdr(context, *tree);
    EXPECT_EQ(copy->Flags, FlagStructure | FlagKeptSize);
    EXPECT_EQ(Children(*copy)[0]->Flags, FlagStructure | FlagKeptSize);
    EXPECT_EQ(Children(*copy)[0]->SimplestType, 21);
    EXPECT_EQ(copy->parent, nullptr);
}

TEST_F(Copy, DoesNotCopyRecords)
{
    const ScdrPtr text = Characters(context, u"abc");
    SetBulkRecords(text->records, u"abc", 1, 3);
    const ScdrPtr copy = CopyScdr(context, *text);
    EXPECT_EQ(copy->records.count, 0);
    EXPECT_EQ(DumpTree(*copy), DumpTree(*text));
}

TEST_F(Copy, TreeWithAMaximizedNodeIsCopiedWhole)
{
    const ScdrPtr tree =
        Nested(context, {2},
               Items(Nested(context, {2}, Items(Characters(context, u"a"), Characters(context, u"b"))),
                     Characters(context, u"c")));
    Scdr& inner = *Children(*tree)[0];
    ExtraOf(inner).savedParent = tree.get();
    inner.parent = nullptr;
    const ScdrPtr copy = CopyScdr(context, *tree);
    EXPECT_EQ(DumpTree(*copy), DumpTree(*tree));
    EXPECT_TRUE(IsSoundTree(*copy));
    // And the maximised node alone, as the top of the display.
    EXPECT_EQ(DumpTree(*CopyScdr(context, inner)), "General[2](Character[1]'a' Character[1]'b')");
}

TEST_F(Copy, VeryDeepTreesNeedNoStack)
{
    const std::int64_t before = LiveAllocations();
    constexpr int depth = 300000;
    {
        ScdrPtr tree = DeepTree(context, depth);
        EXPECT_EQ(ScdrDepth(*tree), depth);
        SetSimplestType(*tree);
        ScdrPtr copy = CopyScdr(context, *tree);
        ASSERT_NE(copy, nullptr);
        EXPECT_EQ(ScdrDepth(*copy), depth);
        ZeroScdr(*copy);
        InvalidateDescendentsOriginsAndSizes(*copy);
        InvalidateScdrAndChildrensOrigins(*copy);
        InvalidateRecordLengths(*copy);
        const Scdr* leaf = copy.get();
        while (!IsSimple(*leaf))
            leaf = Children(*leaf)[0];
        EXPECT_EQ(*static_cast<std::int64_t*>(leaf->data), 0);
        EXPECT_FALSE(IsScdrInsideEmptyAncestor(*leaf));
    }
    EXPECT_EQ(LiveAllocations(), before);
}

TEST_F(Copy, FailureSetsTheErrorAndLeavesNothing)
{
    std::mt19937 random(3);
    const ScdrPtr tree = RandomTree(context, random, {3, 3, 3});
    const std::string before = DumpTree(*tree);
    int failures = 0;
    SweepAllocationFaults([&] {
        if (const ScdrPtr copy = CopyScdr(context, *tree)) {
            EXPECT_TRUE(SameTree(*tree, *copy));
            EXPECT_EQ(context.TakeError(), VTERROR_CODE::NoError);
        } else {
            ++failures;
            EXPECT_EQ(context.TakeError(), VTERROR_CODE::OutOfMemory);
        }
    });
    EXPECT_GT(failures, 4);
    EXPECT_EQ(DumpTree(*tree), before);
}

TEST_F(Copy, PlaneIsTheShownMatrix)
{
    ScdrPtr cube = Integers(context, {3, 2, 2}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    SetSimplestType(*cube);
    cube->extra->CurrentPlane = 1;
    const ScdrPtr plane = CopyScdrPlane(context, *cube);
    EXPECT_EQ(DumpTree(*plane), "Integer[2 2]5 6 7 8");
    EXPECT_EQ(plane->SimplestType, 22);
}

TEST_F(Copy, BooleanPlanesNeedNotStartOnAByte)
{
    ScdrPtr cube = Booleans(context, {3, 1, 9}, {1, 0, 1, 0, 1, 0, 1, 0, 1, 1, 1, 1, 0, 0,
                                                 0, 1, 1, 1, 0, 0, 0, 1, 1, 1, 0, 0, 1});
    cube->extra->CurrentPlane = 1;
    EXPECT_EQ(DumpTree(*CopyScdrPlane(context, *cube)), "Boolean[1 9]1 1 1 0 0 0 1 1 1");
    cube->extra->CurrentPlane = 2;
    EXPECT_EQ(DumpTree(*CopyScdrPlane(context, *cube)), "Boolean[1 9]0 0 0 1 1 1 0 0 1");
}

TEST_F(Copy, NestedPlaneCarriesChildrenAndFlags)
{
    ScdrPtr cube =
        Nested(context, {2, 1, 2},
               Items(Characters(context, u"a"), Characters(context, u"b"), Characters(context, u"c"),
                     Nested(context, {1}, Items(Characters(context, u"d")))));
    cube->Flags |= FlagStructure;
    Children(*cube)[2]->Flags |= FlagKeptSize;
    cube->extra->CurrentPlane = 1;
    const ScdrPtr plane = CopyScdrPlane(context, *cube);
    EXPECT_EQ(DumpTree(*plane), "General[1 2](Character[1]'c' General[1](Character[1]'d'))");
    EXPECT_TRUE(IsSoundTree(*plane));
    EXPECT_EQ(plane->Flags, FlagStructure);
    EXPECT_EQ(Children(*plane)[0]->Flags, FlagKeptSize);
}

TEST_F(Copy, PlaneOfAnArrayWithoutPlanesIsItsFill)
{
    ScdrPtr numbers = Integers(context, {0, 1, 2}, {});
    EXPECT_EQ(DumpTree(*CopyScdrPlane(context, *numbers)), "Integer[1 2]0 0");
    ScdrPtr nested = Nested(context, {0, 1, 2}, Items(Characters(context, u"p")));
    EXPECT_EQ(DumpTree(*CopyScdrPlane(context, *nested)), "General[1 2](Character[1]'p' Character[1]'p')");
    ScdrPtr noRows = Nested(context, {2, 0, 2}, Items(Characters(context, u"p")));
    const ScdrPtr plane = CopyScdrPlane(context, *noRows);
    EXPECT_EQ(DumpTree(*plane), "General[0 2](Character[1]'p')");
    EXPECT_TRUE(IsSoundTree(*plane));
}

TEST_F(Copy, PlaneOfAMatrixIsTheMatrix)
{
    EXPECT_EQ(DumpTree(*CopyScdrPlane(context, *Integers(context, {1, 2}, {3, 4}))), "Integer[1 2]3 4");
}

TEST_F(Copy, FailedPlaneLeavesNothing)
{
    const ScdrPtr cube =
        Nested(context, {1, 1, 2},
               Items(Characters(context, u"a text beyond the node's own room"), Characters(context, u"b")));
    int failures = 0;
    SweepAllocationFaults([&] {
        if (CopyScdrPlane(context, *cube) == nullptr) {
            ++failures;
            EXPECT_EQ(context.TakeError(), VTERROR_CODE::OutOfMemory);
        }
    });
    EXPECT_EQ(failures, 8);
}

TEST_F(Copy, AxisNamesAreReplaced)
{
    const ScdrPtr named = Integers(context, {1, 1, 1}, {1}); // with the names of index origin 1
    context.context.indexOrigin = 40;
    const ScdrPtr to = Booleans(context, {2, 1, 1}, {1, 0});
    EXPECT_TRUE(CopyAxesNames(context, *named, *to));
    for (int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(std::u16string_view(to->extra->AxisNames[axis]),
                  std::u16string_view(named->extra->AxisNames[axis]));
        EXPECT_NE(to->extra->AxisNames[axis], named->extra->AxisNames[axis]);
    }
}

TEST_F(Copy, AxisNamesOfOtherRanksAreLeftAlone)
{
    const ScdrPtr named = Integers(context, {1, 1, 1}, {1});
    const ScdrPtr matrix = Integers(context, {1, 1}, {1});
    EXPECT_TRUE(CopyAxesNames(context, *named, *matrix));
    EXPECT_EQ(matrix->extra, nullptr);
    context.context.indexOrigin = 40;
    const ScdrPtr four = Integers(context, {1, 1, 1, 1}, {1});
    EXPECT_TRUE(CopyAxesNames(context, *named, *four));
    EXPECT_EQ(std::u16string_view(four->extra->AxisNames[0]), u"Axis name 40");
}

TEST_F(Copy, FailedAxisNamesSetTheErrorWithoutThrowing)
{
    const ScdrPtr from = Integers(context, {1, 1, 1}, {1});
    const ScdrPtr to = Integers(context, {1, 1, 1}, {1});
    for (int nth = 1; nth <= 3; ++nth) {
        ArmAllocationFault(nth, false);
        EXPECT_FALSE(CopyAxesNames(context, *from, *to));
        EXPECT_EQ(DisarmAllocationFault(), 1);
        EXPECT_EQ(context.TakeError(), VTERROR_CODE::OutOfMemory);
    }
    EXPECT_TRUE(IsSoundTree(*to));
}

TEST(CopyOfBits, MatchesBitByBit)
{
    std::mt19937 random(11);
    std::uint8_t from[40];
    for (std::uint8_t& byte : from)
        byte = static_cast<std::uint8_t>(random());
    for (int trial = 0; trial < 3000; ++trial) {
        const auto count = static_cast<std::int64_t>(random() % 200);
        const auto fromIndex = static_cast<std::int64_t>(random() % 60);
        const auto toIndex = static_cast<std::int64_t>(random() % 60);
        std::uint8_t to[40];
        std::uint8_t expected[40];
        for (int i = 0; i < 40; ++i)
            to[i] = expected[i] = static_cast<std::uint8_t>(random());
        for (std::int64_t i = 0; i < count; ++i)
            SetBit(expected, toIndex + i, GetBit(from, fromIndex + i));
        CopyBits(to, toIndex, from, fromIndex, count);
        ASSERT_TRUE(std::equal(to, to + 40, expected))
            << count << " bits from " << fromIndex << " to " << toIndex;
    }
}

TEST(CopyOfBits, ReadsNothingBehindTheLastBit)
{
    const OwnedArray<std::uint8_t> from = AllocateZeroedArray<std::uint8_t>(2);
    const OwnedArray<std::uint8_t> to = AllocateZeroedArray<std::uint8_t>(2);
    from.get()[1] = 0x01;
    CopyBits(to.get(), 0, from.get(), 3, 13);
    EXPECT_EQ(to.get()[1], 0x08);
}

} // namespace
} // namespace vantrel
