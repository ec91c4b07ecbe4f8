#include <gtest/gtest.h>

#include "unit/support/test_context.h"
#include "unit/support/trees.h"

namespace vantrel {
namespace {

using namespace test;

constexpr std::int32_t Tab = 9;
constexpr std::int32_t Up = 38;
constexpr std::int32_t Plain = 0;
constexpr std::int32_t Shift = 1;
constexpr std::int32_t Control = 2;

// root( a  b( c  d( e ) )  f ), the innermost array empty with a prototype.
class Walk : public ::testing::Test {
protected:
    Walk()
    {
        root = Nested(context, {3},
                      Items(Characters(context, u"a"),
                            Nested(context, {2},
                                   Items(Characters(context, u"c"),
                                         Nested(context, {0}, Items(Characters(context, u"e"))))),
                            Characters(context, u"f")));
        a = Children(*root)[0];
        b = Children(*root)[1];
        f = Children(*root)[2];
        c = Children(*b)[0];
        d = Children(*b)[1];
        e = Children(*d)[0];
    }
    TestContext context;
    ScdrPtr root;
    Scdr *a, *b, *c, *d, *e, *f;
};

TEST_F(Walk, TabGoesThroughTheWholeTreeAndBackToTheRoot)
{
    Scdr* expected[] = {a, b, c, d, e, f, root.get(), a};
    Scdr* node = root.get();
    for (Scdr* next : expected) {
        node = TabToNextScdr(*node, Plain, Tab);
        ASSERT_EQ(node, next);
    }
}

TEST_F(Walk, TabPassesOverTheInsideOfAMinimizedArray)
{
    b->Flags |= FlagMinimized;
    EXPECT_EQ(TabToNextScdr(*a, Plain, Tab), b);
    EXPECT_EQ(TabToNextScdr(*b, Plain, Tab), f);
}

TEST_F(Walk, ShiftTabGoesBackwardToSimpleArraysAndParents)
{
    EXPECT_EQ(TabToNextScdr(*f, Shift, Tab), e);
    EXPECT_EQ(TabToNextScdr(*e, Shift, Tab), d);
    EXPECT_EQ(TabToNextScdr(*d, Shift, Tab), c);
    EXPECT_EQ(TabToNextScdr(*c, Shift, Tab), b);
    EXPECT_EQ(TabToNextScdr(*b, Shift, Tab), a);
    EXPECT_EQ(TabToNextScdr(*a, Shift, Tab), root.get());
    EXPECT_EQ(TabToNextScdr(*root, Shift, Tab), f);
}

TEST_F(Walk, ShiftTabFromTheRootDescendsIntoAnEmptyLastItem)
{
    const ScdrPtr tree = Nested(context, {1}, Items(Nested(context, {0}, Items(Characters(context, u"p")))));
    EXPECT_EQ(TabToNextScdr(*tree, Shift, Tab), Children(*Children(*tree)[0])[0]);
}

TEST_F(Walk, ShiftTabStopsAtTheMinimizedArrayAroundItsResult)
{
    b->Flags |= FlagMinimized;
    EXPECT_EQ(TabToNextScdr(*f, Shift, Tab), b);
    d->Flags |= FlagMinimized; // inside b: the innermost counts
    EXPECT_EQ(TabToNextScdr(*f, Shift, Tab), d);
    b->Flags = 0;
    EXPECT_EQ(TabToNextScdr(*f, Shift, Tab), d);
    root->Flags |= FlagMinimized;
    EXPECT_EQ(TabToNextScdr(*f, Shift, Tab), d);
}

TEST_F(Walk, ControlTabStaysAmongSiblingsAndWraps)
{
    EXPECT_EQ(TabToNextScdr(*a, Control, Tab), b);
    EXPECT_EQ(TabToNextScdr(*b, Control, Tab), f);
    EXPECT_EQ(TabToNextScdr(*f, Control, Tab), a);
    EXPECT_EQ(TabToNextScdr(*a, Control | Shift, Tab), f);
    EXPECT_EQ(TabToNextScdr(*f, Control | Shift, Tab), b);
    EXPECT_EQ(TabToNextScdr(*e, Control, Tab), e);
    EXPECT_EQ(TabToNextScdr(*e, Control | Shift, Tab), e);
    EXPECT_EQ(TabToNextScdr(*root, Control, Tab), nullptr);
    EXPECT_EQ(TabToNextScdr(*root, Control | Shift, Tab), nullptr);
}

TEST_F(Walk, OtherModifiersAndKeysGoNowhere)
{
    for (const std::int32_t modifiers : {4, 5, 6, 7})
        EXPECT_EQ(TabToNextScdr(*a, modifiers, Tab), nullptr);
    for (const std::int32_t key : {0, 13, 37, 40})
        EXPECT_EQ(TabToNextScdr(*a, Plain, key), nullptr);
}

TEST_F(Walk, UpGoesToTheParent)
{
    EXPECT_EQ(TabToNextScdr(*c, Control, Up), b);
    EXPECT_EQ(TabToNextScdr(*b, Control, Up), root.get());
    EXPECT_EQ(TabToNextScdr(*root, Control, Up), nullptr);
}

TEST_F(Walk, MaximizedSimpleArrayKeepsTheSelection)
{
    c->Flags |= FlagMaximized;
    EXPECT_EQ(TabToNextScdr(*c, Plain, Tab), nullptr);
    EXPECT_EQ(TabToNextScdr(*c, Shift, Tab), nullptr);
    EXPECT_EQ(TabToNextScdr(*c, Control, Up), nullptr);
    b->Flags |= FlagMaximized;
    EXPECT_EQ(TabToNextScdr(*b, Plain, Tab), c);
}

TEST_F(Walk, SimpleRootIsItsOwnNext)
{
    const ScdrPtr simple = Characters(context, u"a");
    EXPECT_EQ(TabToNextScdr(*simple, Plain, Tab), simple.get());
    EXPECT_EQ(TabToNextScdr(*simple, Shift, Tab), simple.get());
}

TEST_F(Walk, ForwardAndBackwardMeetEveryNodeOfRandomTrees)
{
    std::mt19937 random(21);
    for (int i = 0; i < 50; ++i) {
        const ScdrPtr tree = RandomTree(context, random);
        std::vector<Scdr*> simple;
        Scdr* node = tree.get();
        do {
            if (IsSimple(*node)) simple.push_back(node);
            node = TabToNextScdr(*node, Plain, Tab);
        } while (node != tree.get());
        std::vector<Scdr*> backward;
        node = tree.get();
        do {
            node = TabToNextScdr(*node, Shift, Tab);
            if (IsSimple(*node)) backward.push_back(node);
        } while (node != tree.get());
        std::reverse(backward.begin(), backward.end());
        EXPECT_EQ(backward, simple);
    }
}

TEST_F(Walk, TabOverAMillionItemsIsQuick)
{
    constexpr std::int64_t count = 1000000;
    const ScdrPtr wide = AllocateScdr(context, nullptr, TypeNested, 1, &count, false);
    for (std::int64_t i = 0; i < count; ++i)
        SetChild(*wide, i, AllocateScdr(context, nullptr, TypeBoolean, 0, nullptr, true));
    std::int64_t visited = 0;
    for (Scdr* node = TabToNextScdr(*wide, Plain, Tab); node != wide.get();
         node = TabToNextScdr(*node, Plain, Tab))
        ++visited;
    EXPECT_EQ(visited, count);
}

class Invalidate : public ::testing::Test {
protected:
    // A matrix of scalars whose flags are all valid.
    ScdrPtr Matrix(const Shape& shape)
    {
        std::int64_t count = 1;
        for (const std::int64_t axis : shape)
            count *= axis;
        std::vector<ScdrPtr> items;
        for (std::int64_t i = 0; i < std::max<std::int64_t>(count, 1); ++i)
            items.push_back(Integers(context, {}, {i}));
        ScdrPtr matrix = Nested(context, shape, std::move(items));
        Validate(*matrix);
        return matrix;
    }
    static void Validate(Scdr& node)
    {
        node.Flags |= FlagSizeValid | FlagOriginValid | FlagMinimized;
        for (std::int64_t i = 0; i < ChildCount(node); ++i)
            Validate(*Children(node)[i]);
    }
    // One character an item: '.' where the origin was cleared.
    static std::string Origins(const Scdr& node)
    {
        std::string text;
        for (std::int64_t i = 0; i < ChildCount(node); ++i)
            text += (Children(node)[i]->Flags & FlagOriginValid) != 0 ? 'o' : '.';
        return text;
    }
    TestContext context;
};

TEST_F(Invalidate, AncestorsAndLaterSiblingsOfAVector)
{
    const ScdrPtr outer =
        Nested(context, {3}, Items(Integers(context, {}, {1}), Matrix({5}), Integers(context, {}, {1})));
    Validate(*outer);
    Scdr& vector = *Children(*outer)[1];
    InvalidateAncestorsSizesAndLaterSiblingsOrigins(*Children(vector)[2]);
    EXPECT_EQ(Origins(vector), "ooo..");
    EXPECT_EQ(vector.Flags, FlagMinimized);
    EXPECT_EQ(outer->Flags, FlagMinimized);
    EXPECT_EQ(Origins(*outer), "o..");
    EXPECT_EQ(Children(vector)[2]->Flags, FlagMinimized | FlagSizeValid | FlagOriginValid);
    EXPECT_EQ(Children(vector)[3]->Flags, FlagMinimized | FlagSizeValid);
    EXPECT_EQ(Children(*outer)[0]->Flags, FlagMinimized | FlagSizeValid | FlagOriginValid);
}

TEST_F(Invalidate, RootHasNothingAboveIt)
{
    const ScdrPtr root = Matrix({3});
    InvalidateAncestorsSizesAndLaterSiblingsOrigins(*root);
    EXPECT_EQ(Origins(*root), "ooo");
    EXPECT_EQ(root->Flags, FlagMinimized | FlagSizeValid | FlagOriginValid);
}

TEST_F(Invalidate, SquareMatrixClearsWhatStandsRightInEarlierRows)
{
    const ScdrPtr matrix = Matrix({3, 3});
    InvalidateAncestorsSizesAndLaterSiblingsOrigins(*Children(*matrix)[7]);
    EXPECT_EQ(Origins(*matrix), "o..o..oo.");
}

TEST_F(Invalidate, RowCountIsTheStrideEvenWhereRowsAreLonger)
{
    const ScdrPtr wide = Matrix({2, 4});
    InvalidateAncestorsSizesAndLaterSiblingsOrigins(*Children(*wide)[5]); // 5 = 2 x 2 + 1
    EXPECT_EQ(Origins(*wide), "o.o.oo..");
    const ScdrPtr tall = Matrix({4, 2});
    InvalidateAncestorsSizesAndLaterSiblingsOrigins(*Children(*tall)[5]); // 5 = 1 x 4 + 1
    EXPECT_EQ(Origins(*tall), "o...oo..");
}

TEST_F(Invalidate, EmptyMatrixAndHigherRanksClearOnlyWhatFollows)
{
    const ScdrPtr empty = Matrix({0, 4});
    InvalidateAncestorsSizesAndLaterSiblingsOrigins(*Children(*empty)[0]);
    EXPECT_EQ(Origins(*empty), "o");
    EXPECT_EQ(empty->Flags, FlagMinimized);
    const ScdrPtr cube = Matrix({2, 2, 2});
    InvalidateAncestorsSizesAndLaterSiblingsOrigins(*Children(*cube)[5]);
    EXPECT_EQ(Origins(*cube), "oooooo..");
}

TEST_F(Invalidate, DescendentsLoseOriginsSizesAndTheUsersBoxSize)
{
    const ScdrPtr tree =
        Nested(context, {2},
               Items(Characters(context, u"abc"), Nested(context, {0}, Items(Characters(context, u"p")))));
    Validate(*tree);
    RecordList& records = Children(*tree)[0]->records;
    records.flags = RecordsResizedByUser | RecordsFormatted | RecordsEdited;
    InvalidateDescendentsOriginsAndSizes(*tree);
    EXPECT_EQ(tree->Flags, FlagMinimized);
    EXPECT_EQ(Children(*tree)[0]->Flags, FlagMinimized);
    EXPECT_EQ(Children(*Children(*tree)[1])[0]->Flags, FlagMinimized);
    EXPECT_EQ(records.flags, RecordsFormatted | RecordsEdited);
}

TEST_F(Invalidate, OriginsAloneKeepSizes)
{
    const ScdrPtr tree = Nested(context, {1}, Items(Characters(context, u"abc")));
    Validate(*tree);
    InvalidateScdrAndChildrensOrigins(*tree);
    EXPECT_EQ(tree->Flags, FlagMinimized | FlagSizeValid);
    EXPECT_EQ(Children(*tree)[0]->Flags, FlagMinimized | FlagSizeValid);
}

TEST_F(Invalidate, RecordLengthsAreForgottenInTheWholeSubtree)
{
    const ScdrPtr tree =
        Nested(context, {2},
               Items(Characters(context, u"abc"), Nested(context, {0}, Items(Characters(context, u"p")))));
    CharWidths widths;
    widths.Reset(nullptr, nullptr, 8);
    for (Scdr* node : {Children(*tree)[0], Children(*Children(*tree)[1])[0]}) {
        ASSERT_TRUE(StringToRecords(context, u"a\nb", 3, node->records, false));
        EXPECT_EQ(GetRecordWidths(node->records, widths, nullptr), 8);
        EXPECT_EQ(CountUnmeasuredRecords(node->records), 0);
    }
    InvalidateRecordLengths(*tree);
    EXPECT_EQ(CountUnmeasuredRecords(Children(*tree)[0]->records), 2);
    EXPECT_EQ(CountUnmeasuredRecords(Children(*Children(*tree)[1])[0]->records), 2);
}

TEST_F(Invalidate, GoesThroughAMaximizedNode)
{
    const ScdrPtr tree =
        Nested(context, {2},
               Items(Nested(context, {1}, Items(Characters(context, u"abc"))), Characters(context, u"d")));
    Validate(*tree);
    Scdr& maximized = *Children(*tree)[0];
    ExtraOf(maximized).savedParent = tree.get();
    maximized.parent = nullptr;
    InvalidateDescendentsOriginsAndSizes(*tree);
    EXPECT_EQ(Children(*tree)[1]->Flags, FlagMinimized);
    Validate(maximized);
    InvalidateScdrAndChildrensOrigins(maximized);
    EXPECT_EQ(Children(maximized)[0]->Flags, FlagMinimized | FlagSizeValid);
}

} // namespace
} // namespace vantrel
