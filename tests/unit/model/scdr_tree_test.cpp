#include <gtest/gtest.h>

#include <limits>
#include <string_view>

#include "model/edit_state.h"
#include "model/primitives.h"
#include "unit/support/test_context.h"
#include "unit/support/trees.h"

namespace vantrel {
namespace {

using namespace test;

class Tree : public ::testing::Test {
protected:
    TestContext context;
};

TEST_F(Tree, DepthCountsNestingAndTheLastVector)
{
    EXPECT_EQ(ScdrDepth(*Integers(context, {}, {1})), 0);
    EXPECT_EQ(ScdrDepth(*Integers(context, {0}, {})), 1);
    EXPECT_EQ(ScdrDepth(*Integers(context, {1, 1}, {1})), 1);
    EXPECT_EQ(ScdrDepth(*Nested(context, {1}, Items(Integers(context, {}, {1})))), 1);
    EXPECT_EQ(
        ScdrDepth(*Nested(context, {2}, Items(Integers(context, {}, {1}), Integers(context, {1}, {1})))), 2);
    EXPECT_EQ(
        ScdrDepth(*Nested(context, {1}, Items(Nested(context, {1}, Items(Integers(context, {}, {1})))))), 2);
}

TEST_F(Tree, DepthCountsThePrototypeOfAnEmptyArray)
{
    const ScdrPtr empty = Nested(context, {0}, Items(Characters(context, u"abc")));
    EXPECT_EQ(empty->ElementCount, 0);
    EXPECT_EQ(ScdrDepth(*empty), 2);
}

TEST_F(Tree, NodesUnderAnEmptyAncestorArePrototypes)
{
    const ScdrPtr root =
        Nested(context, {2},
               Items(Nested(context, {0}, Items(Nested(context, {1}, Items(Characters(context, u"p"))))),
                     Characters(context, u"d")));
    Scdr& empty = *Children(*root)[0];
    Scdr& prototype = *Children(empty)[0];
    EXPECT_FALSE(IsScdrInsideEmptyAncestor(*root));
    EXPECT_FALSE(IsScdrInsideEmptyAncestor(empty));
    EXPECT_TRUE(IsScdrInsideEmptyAncestor(prototype));
    EXPECT_TRUE(IsScdrInsideEmptyAncestor(*Children(prototype)[0]));
    EXPECT_FALSE(IsScdrInsideEmptyAncestor(*Children(*root)[1]));
}

TEST_F(Tree, AnItemMayLeaveWhereTheRestHasAShape)
{
    EXPECT_TRUE(CanLoseItem(*Integers(context, {}, {1})));
    EXPECT_TRUE(CanLoseItem(*Integers(context, {2}, {1, 2})));
    EXPECT_TRUE(CanLoseItem(*Integers(context, {1, 2}, {1, 2})));
    EXPECT_TRUE(CanLoseItem(*Integers(context, {2, 1}, {1, 2})));
    EXPECT_FALSE(CanLoseItem(*Integers(context, {2, 2}, {1, 2, 3, 4})));
    EXPECT_FALSE(CanLoseItem(*Integers(context, {1, 1, 2}, {1, 2})));
    EXPECT_FALSE(CanLoseItem(*Integers(context, {0}, {})));
    EXPECT_FALSE(CanLoseItem(*Integers(context, {0, 1}, {})));
}

TEST_F(Tree, IndexInParentFollowsChildrenThatMovedByHand)
{
    std::vector<ScdrPtr> items;
    for (int i = 0; i < 100; ++i)
        items.push_back(Integers(context, {}, {i}));
    const ScdrPtr root = Nested(context, {100}, std::move(items));
    Scdr** children = Children(*root);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(IndexInParent(*children[i]), i);
    std::swap(children[3], children[90]);
    EXPECT_EQ(IndexInParent(*children[3]), 3);
    EXPECT_EQ(IndexInParent(*children[90]), 90);
    EXPECT_EQ(IndexInParent(*children[50], 50), 50);
    children[50]->indexInParent = 1000;
    EXPECT_EQ(IndexInParent(*children[50], 50), 50);
    children[50]->indexInParent = -5;
    EXPECT_EQ(IndexInParent(*children[50], 1000), 50);
}

TEST_F(Tree, IndexInParentOfAStrangerIsMinusOne)
{
    const ScdrPtr root = Nested(context, {1}, Items(Characters(context, u"a")));
    const ScdrPtr stranger = Characters(context, u"b");
    stranger->parent = root.get();
    EXPECT_EQ(IndexInParent(*stranger), -1);
}

TEST_F(Tree, ZeroBlanksCharactersAndClearsNumbers)
{
    const ScdrPtr root = Nested(context, {5},
                                Items(Characters(context, {2, 3}, u"abcdef"),
                                      Booleans(context, {9}, {1, 1, 1, 1, 1, 1, 1, 1, 1}),
                                      Integers(context, {2}, {5, 6}), Complexes(context, {1}, {1, 2}),
                                      Nested(context, {0}, Items(Reals(context, {2}, {1.5, 2.5})))));
    for (Scdr* node : {root.get(), Children(*root)[0]})
        node->Flags = FlagSizeValid | FlagOriginValid | FlagMinimized;
    SetBulkRecords(Children(*root)[0]->records, static_cast<char16_t*>(Children(*root)[0]->data), 2, 3);
    ZeroScdr(*root);
    EXPECT_EQ(DumpTree(*root),
              "General[5](Character[2 3]'      ' Boolean[9]0 0 0 0 0 0 0 0 0 Integer[2]0 0 Complex[1]0J0 "
              "General[0](Real[2]0 0))");
    EXPECT_EQ(root->Flags, FlagMinimized);
    EXPECT_EQ(Children(*root)[0]->Flags, FlagMinimized);
    EXPECT_EQ(Children(*root)[0]->records.count, 0);
}

TEST_F(Tree, ZeroClearsWholeBytesOfBits)
{
    const ScdrPtr bits = Booleans(context, {9}, {1, 1, 1, 1, 1, 1, 1, 1, 1});
    static_cast<std::uint8_t*>(bits->data)[1] = 0xFF;
    ZeroScdr(*bits);
    EXPECT_EQ(static_cast<std::uint8_t*>(bits->data)[0], 0);
    EXPECT_EQ(static_cast<std::uint8_t*>(bits->data)[1], 0);
}

TEST_F(Tree, WritableDataDropsTheRecords)
{
    const ScdrPtr text = Characters(context, u"abc");
    SetBulkRecords(text->records, static_cast<char16_t*>(text->data), 1, 3);
    EXPECT_EQ(WritableData(*text), text->data);
    EXPECT_EQ(text->records.count, 0);
}

TEST_F(Tree, EditStateIsMadeOnce)
{
    const ScdrPtr text = Characters(context, u"abc");
    EditState& state = EditStateOf(*text);
    state.caretColumn = 2;
    EXPECT_EQ(&EditStateOf(*text), &state);
    FreeEditState(&text->editState);
    EXPECT_EQ(text->editState, nullptr);
    FreeEditState(&text->editState);
    EditUndoRecord* none = nullptr;
    FreeEditUndo(&none);
}

TEST(ScdrTypes, SizesFollowTheTypes)
{
    EXPECT_EQ(DataSize(TypeCharacter, 5), 10u);
    EXPECT_EQ(DataSize(TypeBoolean, 0), 0u);
    EXPECT_EQ(DataSize(TypeBoolean, 8), 1u);
    EXPECT_EQ(DataSize(TypeBoolean, 9), 2u);
    EXPECT_EQ(DataSize(TypeBoolean, INT64_MAX), std::size_t{1} << 60);
    EXPECT_EQ(DataSize(TypeInteger, 3), 24u);
    EXPECT_EQ(DataSize(TypeReal, 3), 24u);
    EXPECT_EQ(DataSize(TypeComplex, 3), 48u);
    EXPECT_EQ(DataSize(TypeDecimal, 3), 48u);
    EXPECT_EQ(DataSize(TypeNested, 0), 8u);
    EXPECT_EQ(DataSize(TypeNested, 3), 24u);
    EXPECT_EQ(DataSize(12, 3), 0u);
    EXPECT_THROW((void)DataSize(TypeComplex, INT64_MAX), VTERROR_CODE);
}

TEST(ScdrTypes, OnlyAssignedCodesAreValid)
{
    for (std::uint32_t type = 0; type < 64; ++type) {
        EXPECT_EQ(IsValidType(type), type == 0 || type == 11 || (type >= 21 && type <= 25)) << type;
    }
    EXPECT_FALSE(IsValidType(0xFFFFFFFF));
}

TEST(ScdrTypes, Names)
{
    const auto name = [](Dialect dialect, std::uint32_t type) {
        return std::u16string_view(TypeName(dialect, type));
    };
    EXPECT_EQ(name(Dialect::Dyalog, TypeNested), u"General");
    EXPECT_EQ(name(Dialect::Aplx, TypeNested), u"General");
    EXPECT_EQ(name(Dialect::Matlab, TypeNested), u"Cells");
    EXPECT_EQ(name(Dialect::Matlab, TypeCharacter), u"Character");
    EXPECT_EQ(name(Dialect::Dyalog, TypeBoolean), u"Boolean");
    EXPECT_EQ(name(Dialect::Dyalog, TypeInteger), u"Integer");
    EXPECT_EQ(name(Dialect::Dyalog, TypeReal), u"Real");
    EXPECT_EQ(name(Dialect::Dyalog, TypeComplex), u"Complex");
    EXPECT_EQ(name(Dialect::Dyalog, TypeDecimal), u"Decimal");
    EXPECT_EQ(name(Dialect::Dyalog, 5), u"");
}

class Simplest : public ::testing::Test {
protected:
    std::int32_t Of(ScdrPtr node)
    {
        SetSimplestType(*node);
        return node->SimplestType;
    }
    std::int32_t OfReals(const std::vector<double>& values)
    {
        return Of(Reals(context, {static_cast<std::int64_t>(values.size())}, values));
    }
    std::int32_t OfComplexes(const std::vector<double>& pairs)
    {
        return Of(Complexes(context, {static_cast<std::int64_t>(pairs.size() / 2)}, pairs));
    }
    TestContext context;
};

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

TEST_F(Simplest, InvalidTypesHaveNone)
{
    for (const std::uint32_t type : {1u, 10u, 12u, 20u, 26u, 0x80000000u}) {
        EXPECT_EQ(Of(AllocateScdr(context, nullptr, type, 0, nullptr, false)), -1);
    }
}

TEST_F(Simplest, TextBitsAndDecimalsAreWhatTheyAre)
{
    EXPECT_EQ(Of(Characters(context, u"1")), 11);
    EXPECT_EQ(Of(Booleans(context, {2}, {0, 1})), 21);
    EXPECT_EQ(Of(AllocateScdr(context, nullptr, TypeDecimal, 0, nullptr, true)), 25);
}

TEST_F(Simplest, Integers)
{
    EXPECT_EQ(Of(Integers(context, {3}, {0, 1, 1})), 21);
    EXPECT_EQ(Of(Integers(context, {0}, {})), 21);
    EXPECT_EQ(Of(Integers(context, {2}, {0, 2})), 22);
    EXPECT_EQ(Of(Integers(context, {}, {-1})), 22);
}

TEST_F(Simplest, Reals)
{
    EXPECT_EQ(OfReals({}), 21);
    EXPECT_EQ(OfReals({0, 1, 1}), 21);
    EXPECT_EQ(OfReals({2, 3}), 22);
    EXPECT_EQ(OfReals({2.5}), 23);
    EXPECT_EQ(OfReals({1, 2, 2.5}), 23);
    EXPECT_EQ(OfReals({NotANumber}), 23);
    EXPECT_EQ(OfReals({Infinity}), 23);
    EXPECT_EQ(OfReals({-Infinity}), 23);
    EXPECT_EQ(OfReals({1e19}), 23);
    EXPECT_EQ(OfReals({-1e19}), 23);
    EXPECT_EQ(OfReals({-0.0}), 21);
    EXPECT_EQ(OfReals({9223372036854775808.0}), 22);
    EXPECT_EQ(OfReals({-9223372036854775808.0}), 22);
    EXPECT_EQ(OfReals({9223372036854777856.0}), 23);
    EXPECT_EQ(OfReals({4503599627370495.5}), 23);
    EXPECT_EQ(OfReals({-0.5}), 23);
}

TEST_F(Simplest, Complexes)
{
    EXPECT_EQ(OfComplexes({}), 21);
    EXPECT_EQ(OfComplexes({1, 0, 0, 0}), 21);
    EXPECT_EQ(OfComplexes({1, 0, 7, 0}), 22);
    EXPECT_EQ(OfComplexes({1, 0, 2.5, 0}), 23);
    EXPECT_EQ(OfComplexes({2.5, 0, 7, 0}), 23);
    EXPECT_EQ(OfComplexes({1, 0, 2.5, 1}), 24);
    EXPECT_EQ(OfComplexes({1, NotANumber}), 24);
    EXPECT_EQ(OfComplexes({NotANumber, 0}), 23);
    EXPECT_EQ(OfComplexes({NotANumber, 0, 1, 1}), 24);
    EXPECT_EQ(OfComplexes({1, 0, 1e20, 0, 3, 1}), 23);
    EXPECT_EQ(OfComplexes({3, 1, 1e20, 0}), 24);
    EXPECT_EQ(OfComplexes({1, -0.0}), 21);
}

TEST_F(Simplest, NestedSetsEveryChildAndThePrototypeAndNeverTheType)
{
    const ScdrPtr tree =
        Nested(context, {2},
               Items(Reals(context, {1}, {1}), Nested(context, {0}, Items(Integers(context, {1}, {3})))));
    tree->SimplestType = 99;
    SetSimplestType(*tree);
    EXPECT_EQ(tree->SimplestType, 0);
    EXPECT_EQ(Children(*tree)[0]->SimplestType, 21);
    EXPECT_EQ(Children(*tree)[0]->Type, TypeReal);
    EXPECT_EQ(Children(*tree)[1]->SimplestType, 0);
    EXPECT_EQ(Children(*Children(*tree)[1])[0]->SimplestType, 22);
}

class Prototypes : public ::testing::Test {
protected:
    std::string Of(const Scdr& source)
    {
        const ScdrPtr prototype = Prototype(context, nullptr, source);
        EXPECT_TRUE(IsSoundTree(*prototype));
        return DumpTree(*prototype);
    }
    TestContext context;
};

TEST_F(Prototypes, OfSimpleArraysAreScalars)
{
    EXPECT_EQ(Of(*Characters(context, u"abc")), "Character[]' '");
    EXPECT_EQ(Of(*Integers(context, {2}, {1, 2})), "Boolean[]0");
    EXPECT_EQ(Of(*Reals(context, {0, 3}, {})), "Boolean[]0");
    EXPECT_EQ(Of(*Complexes(context, {}, {1, 1})), "Boolean[]0");
}

TEST_F(Prototypes, OfNestedArraysFollowTheFirstItem)
{
    EXPECT_EQ(
        Of(*Nested(context, {2}, Items(Characters(context, {2, 2}, u"abcd"), Integers(context, {}, {1})))),
        "Character[2 2]'    '");
    EXPECT_EQ(Of(*Nested(context, {1}, Items(Reals(context, {3}, {1, 2, 3})))), "Boolean[3]0 0 0");
    EXPECT_EQ(Of(*Nested(context, {0}, Items(Characters(context, u"xy")))), "Character[2]'  '");
}

TEST_F(Prototypes, OfNestedItemsKeepTheirChildrenCleared)
{
    const ScdrPtr source =
        Nested(context, {1},
               Items(Nested(context, {2},
                            Items(Integers(context, {2}, {7, 8}),
                                  Nested(context, {0}, Items(Characters(context, u"q")))))));
    EXPECT_EQ(Of(*source), "General[2](Integer[2]0 0 General[0](Character[1]' '))");
    const ScdrPtr prototype = Prototype(context, nullptr, *source);
    EXPECT_EQ(Children(*prototype)[0]->SimplestType, 21);
}

TEST_F(Prototypes, StandUnderTheGivenParent)
{
    const ScdrPtr parent = Nested(context, {0}, Items(Characters(context, u"a")));
    const ScdrPtr prototype = Prototype(context, parent.get(), *parent);
    EXPECT_EQ(prototype->parent, parent.get());
    EXPECT_NE(Children(*parent)[0], prototype.get());
}

TEST_F(Prototypes, FailuresLeaveNothing)
{
    const ScdrPtr source =
        Nested(context, {1}, Items(Nested(context, {1, 1, 1}, Items(Characters(context, u"x")))));
    EXPECT_GE(SweepAllocationFaults([&] { (void)Prototype(context, nullptr, *source); }), 10);
    EXPECT_EQ(DumpTree(*source), "General[1](General[1 1 1](Character[1]'x'))");
}

} // namespace
} // namespace vantrel
