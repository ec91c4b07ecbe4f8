#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

#include "model/edit_state.h"
#include "model/scdr.h"
#include "unit/support/test_context.h"
#include "unit/support/trees.h"

namespace vantrel {
namespace {

using namespace test;

class Allocate : public ::testing::Test {
protected:
    ScdrPtr Make(std::uint32_t type, const Shape& shape, bool fill = true)
    {
        return AllocateScdr(context, nullptr, type, static_cast<std::int32_t>(shape.size()), shape.data(),
                            fill);
    }
    VTERROR_CODE ErrorOf(std::uint32_t type, const Shape& shape)
    {
        const std::int64_t live = LiveAllocations();
        try {
            Make(type, shape);
        } catch (VTERROR_CODE code) {
            EXPECT_EQ(LiveAllocations(), live);
            return code;
        }
        return VTERROR_CODE::NoError;
    }
    TestContext context;
};

TEST_F(Allocate, ScalarHasOneElementAndNoShape)
{
    const ScdrPtr node = Make(TypeInteger, {});
    EXPECT_EQ(node->ElementCount, 1);
    EXPECT_EQ(node->Rank, 0);
    EXPECT_EQ(node->Shape, nullptr);
    EXPECT_EQ(*static_cast<std::int64_t*>(node->data), 0);
    EXPECT_EQ(node->parent, nullptr);
    EXPECT_EQ(node->Flags, 0);
    EXPECT_EQ(Rows(*node), 1);
    EXPECT_EQ(Columns(*node), 1);
    EXPECT_EQ(PlaneCount(*node), 1);
    EXPECT_EQ(IndexInParent(*node), -1);
}

TEST_F(Allocate, ElementCountIsTheProductOfTheShape)
{
    EXPECT_EQ(Make(TypeReal, {7})->ElementCount, 7);
    EXPECT_EQ(Make(TypeReal, {7, 3})->ElementCount, 21);
    EXPECT_EQ(Make(TypeReal, {7, 3, 2, 5})->ElementCount, 210);
    EXPECT_EQ(Make(TypeReal, {7, 0, 2})->ElementCount, 0);
}

TEST_F(Allocate, MissingShapeGivesEmptyAxes)
{
    const ScdrPtr node = AllocateScdr(context, nullptr, TypeReal, 3, nullptr, false);
    EXPECT_EQ(node->ElementCount, 0);
    for (int axis = 0; axis < 3; ++axis)
        EXPECT_EQ(node->Shape[axis], 0);
    EXPECT_EQ(PlaneCount(*node), 1);
}

TEST_F(Allocate, RowsColumnsAndPlanes)
{
    const ScdrPtr matrix = Make(TypeReal, {4, 5});
    EXPECT_EQ(Rows(*matrix), 4);
    EXPECT_EQ(Columns(*matrix), 5);
    EXPECT_EQ(PlaneCount(*matrix), 1);
    const ScdrPtr vector = Make(TypeReal, {5});
    EXPECT_EQ(Rows(*vector), 1);
    EXPECT_EQ(Columns(*vector), 5);
    const ScdrPtr cube = Make(TypeReal, {2, 3, 4, 5});
    EXPECT_EQ(Rows(*cube), 4);
    EXPECT_EQ(Columns(*cube), 5);
    EXPECT_EQ(PlaneCount(*cube), 6);
    EXPECT_EQ(CurrentPlane(*cube), 0);
    EXPECT_EQ(PlaneCount(*Make(TypeReal, {0, 3, 4, 5})), 3);
}

TEST_F(Allocate, AxesAreNamedFromTheIndexOrigin)
{
    const ScdrPtr node = Make(TypeReal, {1, 1, 1});
    EXPECT_EQ(std::u16string_view(node->extra->AxisNames[0]), u"Axis name 1");
    EXPECT_EQ(std::u16string_view(node->extra->AxisNames[2]), u"Axis name 3");
    context.context.indexOrigin = 0;
    const ScdrPtr many = Make(TypeReal, Shape(12, 1));
    EXPECT_EQ(std::u16string_view(many->extra->AxisNames[0]), u"Axis name 0");
    EXPECT_EQ(std::u16string_view(many->extra->AxisNames[11]), u"Axis name 11");
    EXPECT_EQ(many->extra->PlaneIndex[11], 0);
}

TEST_F(Allocate, SmallRanksNeedNothingBesideTheNode)
{
    const std::int64_t before = LiveAllocations();
    const ScdrPtr node = Make(TypeCharacter, {4, 4});
    EXPECT_EQ(LiveAllocations(), before + 1);
    EXPECT_EQ(node->extra, nullptr);
}

TEST_F(Allocate, FillsCharactersWithBlanksAndNumbersWithZeros)
{
    for (const std::int64_t length : {3, 5000}) { // inside the node and beside it
        const ScdrPtr text = Make(TypeCharacter, {length});
        const auto* units = static_cast<char16_t*>(text->data);
        EXPECT_EQ(std::count(units, units + length, u' '), length);
        for (const std::uint32_t type : {TypeBoolean, TypeInteger, TypeReal, TypeComplex, TypeDecimal}) {
            const ScdrPtr node = Make(type, {length});
            const auto* bytes = static_cast<std::uint8_t*>(node->data);
            const std::size_t size = DataSize(type, length);
            EXPECT_EQ(static_cast<std::size_t>(std::count(bytes, bytes + size, 0)), size);
        }
    }
}

TEST_F(Allocate, NestedChildrenStartEmptyAndOneSlotIsAlwaysThere)
{
    const ScdrPtr empty = Make(TypeNested, {0}, false);
    EXPECT_EQ(empty->ElementCount, 0);
    EXPECT_EQ(ChildCount(*empty), 1);
    EXPECT_EQ(Children(*empty)[0], nullptr);
    const ScdrPtr many = Make(TypeNested, {1000}, false);
    EXPECT_EQ(ChildCount(*many), 1000);
    EXPECT_TRUE(
        std::all_of(Children(*many), Children(*many) + 1000, [](Scdr* child) { return child == nullptr; }));
}

TEST_F(Allocate, DataIsAlignedForItsType)
{
    const ScdrPtr node = Make(TypeComplex, {1});
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(node->data) % alignof(double), 0u);
}

TEST_F(Allocate, InvalidTypeHasNoData)
{
    const ScdrPtr node = Make(15, {3});
    EXPECT_EQ(node->ElementCount, 3);
    EXPECT_NE(node->data, nullptr);
    EXPECT_EQ(ChildCount(*node), 0);
}

TEST_F(Allocate, RefusesShapesThatOverflow)
{
    const std::int64_t large = std::int64_t{1} << 40;
    EXPECT_EQ(ErrorOf(TypeBoolean, {large, large}), VTERROR_CODE::OutOfMemory);
    EXPECT_EQ(ErrorOf(TypeReal, {INT64_MAX}), VTERROR_CODE::OutOfMemory);
    EXPECT_EQ(ErrorOf(TypeNested, {INT64_MAX}), VTERROR_CODE::OutOfMemory);
    EXPECT_EQ(ErrorOf(TypeReal, {large, large, 0, 0}), VTERROR_CODE::OutOfMemory); // the planes
    EXPECT_EQ(ErrorOf(TypeReal, {large, large / 2, 0}), VTERROR_CODE::NoError);
    EXPECT_EQ(ErrorOf(TypeReal, {large, 0, large}), VTERROR_CODE::NoError);
}

TEST_F(Allocate, RefusesNegativeAxesAndRanks)
{
    EXPECT_EQ(ErrorOf(TypeReal, {-1}), VTERROR_CODE::SystemLimit);
    EXPECT_EQ(ErrorOf(TypeReal, {0, -1}), VTERROR_CODE::SystemLimit);
    EXPECT_THROW((void)AllocateScdr(context, nullptr, TypeReal, -1, nullptr, false), VTERROR_CODE);
}

TEST_F(Allocate, FailedAllocationsLeaveNothingBehind)
{
    const Shape shape{2, 3, 50};
    EXPECT_GT(SweepAllocationFaults([&] { Make(TypeNested, shape); }), 10);
    EXPECT_GT(SweepAllocationFaults([&] { Make(TypeCharacter, {100}); }), 3);
}

TEST_F(Allocate, FromRecordsJoinsWithLineEnds)
{
    const ScdrPtr source = Characters(context, u"");
    ASSERT_TRUE(StringToRecords(context, u"ab\n\ncd", 6, source->records, false));
    const ScdrPtr joined = AllocateScdrFromRecords(context, source->records);
    EXPECT_EQ(DumpTree(*joined), "Character[8]'ab\\u000d\\u000a\\u000d\\u000acd'");
    EXPECT_EQ(joined->SimplestType, 11);
    const ScdrPtr none = AllocateScdrFromRecords(context, RecordList{});
    EXPECT_EQ(none->ElementCount, 0);
}

TEST_F(Allocate, SetShapeKeepsDataAndMakesAxisNames)
{
    const ScdrPtr node = Integers(context, {6}, {1, 2, 3, 4, 5, 6});
    const std::int64_t cube[] = {1, 2, 3};
    SetShape(context, *node, 3, cube);
    EXPECT_EQ(DumpTree(*node), "Integer[1 2 3]1 2 3 4 5 6");
    EXPECT_EQ(std::u16string_view(node->extra->AxisNames[2]), u"Axis name 3");
    EXPECT_EQ(PlaneCount(*node), 1);
    SetShape(context, *node, 2, node->Shape + 1); // its own shape as the argument
    EXPECT_EQ(DumpTree(*node), "Integer[2 3]1 2 3 4 5 6");
    EXPECT_EQ(node->extra->AxisNames, nullptr);
    SetShape(context, *node, 3, cube);
    EXPECT_TRUE(IsSoundTree(*node));
}

TEST_F(Allocate, SetShapeRefusesAnotherNumberOfElements)
{
    const ScdrPtr node = Integers(context, {2}, {1, 2});
    const std::int64_t three = 3;
    EXPECT_THROW(SetShape(context, *node, 1, &three), VTERROR_CODE);
    EXPECT_THROW(SetShape(context, *node, 0, nullptr), VTERROR_CODE);
    EXPECT_EQ(DumpTree(*node), "Integer[2]1 2");
}

TEST_F(Allocate, FailedSetShapeLeavesTheNodeAsItWas)
{
    const ScdrPtr node = Integers(context, {2, 3}, {1, 2, 3, 4, 5, 6});
    const std::int64_t cube[] = {3, 1, 2};
    ExtraOf(*node);
    const int faults = SweepAllocationFaults([&] {
        EXPECT_EQ(node->Rank, 2);
        const std::int64_t matrix[] = {2, 3};
        SetShape(context, *node, 3, cube);
        SetShape(context, *node, 2, matrix);
    });
    EXPECT_GE(faults, 10);
}

TEST_F(Allocate, FreeIgnoresNullAndClearsThePointer)
{
    Scdr* node = nullptr;
    FreeScdr(&node);
    node = Make(TypeReal, {3}).release();
    FreeScdr(&node);
    EXPECT_EQ(node, nullptr);
}

TEST_F(Allocate, FreeReleasesEverythingThatHangsOnNodes)
{
    const std::int64_t before = LiveAllocations();
    ScdrPtr tree = Nested(context, {2, 1, 1},
                          Items(Characters(context, u"a text that is longer than the node's own room"),
                                Nested(context, {0}, Items(Make(TypeReal, {2, 2, 2, 2})))));
    Scdr& text = *Children(*tree)[0];
    ASSERT_TRUE(StringToRecords(context, u"a\nb", 3, text.records, false));
    EditState& state = EditStateOf(text);
    state.undo = NewEditUndo();
    state.undo->text = u"what was removed and is long enough not to be short";
    state.undo->next = NewEditUndo();
    state.redo = NewEditUndo();
    ScdrExtra& extra = ExtraOf(text);
    extra.recordColumnWidths = AllocateArray<std::int32_t>(3).release();
    extra.recordColumnIntegers = AllocateArray<std::int32_t>(3).release();
    extra.columnWidths = AllocateArray<std::int64_t>(3).release();
    extra.rowHeights = AllocateArray<std::int64_t>(3).release();
    extra.boxScroll = new (AllocateBytes(sizeof(ScrollRecord))) ScrollRecord{};
    tree.reset();
    EXPECT_EQ(LiveAllocations(), before);
}

TEST_F(Allocate, FreeTakesTreesWithHolesAndMaximizedNodes)
{
    const std::int64_t before = LiveAllocations();
    ScdrPtr tree = Make(TypeNested, {3});
    SetChild(*tree, 1, Nested(context, {1}, Items(Characters(context, u"x"))));
    Scdr& maximized = *Children(*tree)[1];
    ExtraOf(maximized).savedParent = tree.get();
    maximized.parent = nullptr;
    tree.reset();
    EXPECT_EQ(LiveAllocations(), before);
}

TEST_F(Allocate, PoolTakesNodesBackAndForthInAnyOrder)
{
    const std::int64_t before = LiveAllocations();
    std::mt19937 random(7);
    std::vector<ScdrPtr> nodes(500);
    for (int i = 0; i < 20000; ++i) {
        ScdrPtr& slot = nodes[random() % nodes.size()];
        if (slot != nullptr) {
            EXPECT_EQ(*static_cast<std::int64_t*>(slot->data), slot->ElementCount);
            slot.reset();
        } else {
            slot = Make(TypeInteger, {static_cast<std::int64_t>(random() % 6 + 1)});
            EXPECT_EQ(slot->records.count, 0);
            *static_cast<std::int64_t*>(slot->data) = slot->ElementCount;
        }
    }
    nodes.clear();
    EXPECT_EQ(LiveAllocations(), before);
}

} // namespace
} // namespace vantrel
