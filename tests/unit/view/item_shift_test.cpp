// Boxes pushed aside, against items that are moved one by one.
#include "view/item_shift.h"

#include <random>

#include "view_fixture.h"

namespace vantrel {
namespace {

class ItemShifts : public ViewTest {
protected:
    std::mt19937 random{7};
    ScdrPtr tree;
    std::vector<Point64> expected; // of the items, then of the items' items

    std::int64_t Pick(std::int64_t low, std::int64_t high)
    {
        return std::uniform_int_distribution<std::int64_t>(low, high)(random);
    }

    // A nest of two levels whose boxes stand anywhere.
    void MakeTree(const std::vector<std::int64_t>& shape)
    {
        tree = Allocate(TypeNested, shape);
        expected.clear();
        for (std::int64_t i = 0; i < ChildCount(*tree); ++i) {
            SetChild(*tree, i, NestedOf({2}, Characters({1}, u"a"), Characters({1}, u"b")));
            Place(Item(*tree, i));
            Place(Item(Item(*tree, i), 0));
            Place(Item(Item(*tree, i), 1));
        }
    }

    void Place(Scdr& node)
    {
        node.originX = Pick(0, 1000);
        node.originY = Pick(0, 1000);
        expected.push_back({node.originX, node.originY});
    }

    void Expect(std::int64_t item, std::int64_t dx, std::int64_t dy)
    {
        for (std::size_t i = 0; i < 3; ++i) {
            expected[static_cast<std::size_t>(item) * 3 + i].x += dx;
            expected[static_cast<std::size_t>(item) * 3 + i].y += dy;
        }
    }

    void PushColumn(std::int64_t column, std::int64_t by)
    {
        const bool isRow = tree->Rank < 2;
        for (std::int64_t i = 0; i < ChildCount(*tree); ++i)
            if ((isRow ? i : i % Columns(*tree)) >= column) Expect(i, by, 0);
        PushColumns(*tree, column, by);
    }

    void PushRow(std::int64_t row, std::int64_t by)
    {
        for (std::int64_t i = 0; i < ChildCount(*tree); ++i)
            if (i / Columns(*tree) % Rows(*tree) >= row) Expect(i, 0, by);
        PushRows(*tree, row, by);
    }

    void CheckOrigin(const Scdr& node, std::size_t place)
    {
        EXPECT_EQ(OriginOf(node).x, expected[place].x);
        EXPECT_EQ(OriginOf(node).y, expected[place].y);
    }

    void CheckOrigins()
    {
        for (std::int64_t i = 0; i < ChildCount(*tree); ++i) {
            const std::size_t place = static_cast<std::size_t>(i) * 3;
            CheckOrigin(Item(*tree, i), place);
            CheckOrigin(Item(Item(*tree, i), 0), place + 1);
            CheckOrigin(Item(Item(*tree, i), 1), place + 2);
        }
    }
};

TEST_F(ItemShifts, WhatIsPushedStandsWhereItWasPushedTo)
{
    for (const auto& shape : std::vector<std::vector<std::int64_t>>{{9}, {4, 5}, {2, 3, 4}, {0}}) {
        MakeTree(shape);
        for (int step = 0; step < 60 && !HasFailure(); ++step) {
            PushColumn(Pick(0, 9), Pick(-20, 20));
            if (shape.size() > 1) PushRow(Pick(0, 4), Pick(-20, 20));
            if (Pick(0, 9) == 0) SettleItems(*tree);
            CheckOrigins();
        }
    }
}

TEST_F(ItemShifts, SettledItemsKnowTheirPlaces)
{
    MakeTree({3, 3});
    PushColumn(1, 10);
    PushRow(2, 5);
    SettleItems(*tree);
    const Scdr& last = Item(*tree, 8);
    EXPECT_EQ(last.originX, expected[8 * 3].x);
    EXPECT_EQ(last.originY, expected[8 * 3].y);
    CheckOrigins();
    SettleItems(*tree); // nothing is owed any more
    CheckOrigins();
}

TEST_F(ItemShifts, OnlyWhatLiesBetweenTwoChangesIsVisited)
{
    MakeTree({9});
    PushColumn(3, 10);
    const std::int64_t before = Item(*tree, 8).originX;
    PushColumn(5, 10);
    EXPECT_EQ(Item(*tree, 8).originX, before);
    EXPECT_EQ(Item(*tree, 2).originX, expected[2 * 3].x);
    EXPECT_EQ(Item(*tree, 4).originX, expected[4 * 3].x);
    EXPECT_NE(Item(*tree, 5).originX, expected[5 * 3].x);
    CheckOrigins();
}

TEST_F(ItemShifts, WithoutMemoryTheItemsAreMovedThemselves)
{
    for (const auto& shape : std::vector<std::vector<std::int64_t>>{{9}, {4, 5}}) {
        MakeTree(shape);
        ArmAllocationFault(1, true);
        PushColumn(2, 7);
        if (shape.size() > 1) PushRow(1, 3);
        EXPECT_GT(DisarmAllocationFault(), 0);
        CheckOrigins();
    }
}

TEST_F(ItemShifts, WithoutMemoryTheyAreSettledAllTheSame)
{
    MakeTree({4, 5});
    PushColumn(2, 7);
    ArmAllocationFault(1, true);
    SettleItems(*tree);
    EXPECT_GT(DisarmAllocationFault(), 0);
    CheckOrigins();
    EXPECT_EQ(Item(Item(*tree, 4), 1).originX, expected[4 * 3 + 2].x);
}

} // namespace
} // namespace vantrel
