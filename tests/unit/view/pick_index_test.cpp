#include "view/pick_index.h"

#include "view_fixture.h"

namespace vantrel {
namespace {

class PickIndex : public ViewTest {
protected:
    std::u16string Of(const Scdr& node, bool throughMaximize = false)
    {
        char16_t* text = GetPickIndex(view, throughMaximize, node);
        EXPECT_NE(text, nullptr);
        std::u16string result(text);
        FreeBytes(text);
        return result;
    }

    void ExpectThrow(const char16_t* text, VTERROR_CODE expected)
    {
        Scdr* const selected = Selected(view);
        try {
            (void)FindPickIndex(view, text);
            ADD_FAILURE() << "nothing thrown";
        } catch (VTERROR_CODE code) {
            EXPECT_EQ(static_cast<int>(code), static_cast<int>(expected));
        }
        EXPECT_EQ(Selected(view), selected);
    }

    // Each node's text leads back to the node.
    void ExpectRoundTrip(Scdr& node)
    {
        EXPECT_EQ(FindPickIndex(view, Of(node).c_str()), &node);
        if (node.ElementCount == 0) return;
        for (std::int64_t i = 0; i < ChildCount(node); ++i)
            ExpectRoundTrip(Item(node, i));
    }
};

TEST_F(PickIndex, TheWholeArrayIsABlank)
{
    EXPECT_EQ(Of(LayOut(Vec(Word(u"a")))), u" ");
    EXPECT_EQ(FindPickIndex(view, u" "), view.top);
    EXPECT_EQ(FindPickIndex(view, u""), view.top);
}

TEST_F(PickIndex, NamesVectorsMatricesAndScalars)
{
    ScdrPtr matrix = Filled({2, 2});
    Replace(*matrix, 2, Vec(Word(u"a"), Word(u"b"), NestedOf({}, Word(u"c"))));
    const Scdr& root = LayOut(std::move(matrix));
    const Scdr& vector = Item(root, 2);
    EXPECT_EQ(Of(vector), u"(2 1)");
    EXPECT_EQ(Of(Item(vector, 2)), u"(2 1) 3");
    EXPECT_EQ(Of(Item(Item(vector, 2), 0)), u"(2 1) 3 '' ");
}

TEST_F(PickIndex, TheItemOfAScalarInAVector)
{
    const Scdr& root = LayOut(Vec(Word(u"a"), Word(u"b"), NestedOf({}, Word(u"c"))));
    EXPECT_EQ(Of(Item(Item(root, 2), 0)), u"3 '' ");
}

TEST_F(PickIndex, CountsFromTheIndexOrigin)
{
    const Scdr& root = LayOut(Vec(Filled({2, 3})));
    context.indexOrigin = 0;
    EXPECT_EQ(Of(Item(Item(root, 0), 5)), u"0 (1 2)");
    EXPECT_EQ(FindPickIndex(view, u"0 (1 2)"), &Item(Item(root, 0), 5));
    ExpectThrow(u"1", VTERROR_CODE::IndexError);
}

TEST_F(PickIndex, WritesEveryAxisOfHighRanks)
{
    const Scdr& root = LayOut(Filled({2, 3, 2, 2}));
    EXPECT_EQ(Of(Item(root, 0)), u"(1 1 1 1)");
    EXPECT_EQ(Of(Item(root, (1 * 3 + 2) * 4 + 1)), u"(2 3 1 2)");
}

TEST_F(PickIndex, ReadsBackWhatItWrites)
{
    Scdr& root = LayOut(Vec(Filled({2, 3, 2}), NestedOf({}, NestedOf({}, Filled({4}))), Filled({1, 1}),
                            NestedOf({0}, Word(u"p"))));
    ExpectRoundTrip(root);
}

TEST_F(PickIndex, APrototypeHasNoPlaceAmongItems)
{
    const Scdr& root = LayOut(Vec(NestedOf({0}, Vec(Word(u"p")))));
    const Scdr& prototype = Item(Item(root, 0), 0);
    EXPECT_EQ(Of(prototype), u"");
    EXPECT_EQ(Of(Item(prototype, 0)), u"1");
    ExpectThrow(u"1 1", VTERROR_CODE::IndexError);
}

TEST_F(PickIndex, SeesThroughMaximisedBoxesOnlyWhenAsked)
{
    Scdr& root = Show(Vec(Word(u"a"), Vec(Word(u"b"), Word(u"c"))));
    Scdr& box = Item(root, 1);
    EXPECT_EQ(SelectScdr(view, box, false), 0);
    EXPECT_EQ(MaximizeScdr(view), 0);
    EXPECT_EQ(Of(Item(box, 1), false), u"2 2");
    EXPECT_EQ(Of(Item(box, 1), true), u"2");
    EXPECT_EQ(Of(box, false), u"2");
    EXPECT_EQ(Of(box, true), u" ");
}

// What was written without regard to the maximised box is found again while it is maximised.
TEST_F(PickIndex, ReadsFromTheWholeArrayWhateverIsDisplayed)
{
    Scdr& root = Show(Vec(Word(u"a"), Vec(Word(u"b"), Word(u"c"))));
    Scdr& box = Item(root, 1);
    EXPECT_EQ(SelectScdr(view, box, false), 0);
    EXPECT_EQ(MaximizeScdr(view), 0);
    EXPECT_EQ(FindPickIndex(view, u"2"), &box);
    EXPECT_EQ(FindPickIndex(view, u"2 1"), &Item(box, 0));
    EXPECT_EQ(FindPickIndex(view, u" "), &root);
    Scdr* const outside = FindPickIndex(view, u"1");
    EXPECT_EQ(outside, &Item(root, 0));
    EXPECT_EQ(SelectScdr(view, *outside, false), 0);
    EXPECT_EQ(view.top, &root); // selecting it undoes the maximise
}

TEST_F(PickIndex, ReadsFreely)
{
    const Scdr& root = LayOut(Vec(Filled({2, 2}), NestedOf({}, Filled({3}))));
    EXPECT_EQ(FindPickIndex(view, u"  1(2 1) "), &Item(Item(root, 0), 2));
    EXPECT_EQ(FindPickIndex(view, u"1 ( 2   1 )"), &Item(Item(root, 0), 2));
    EXPECT_EQ(FindPickIndex(view, u"2''3"), &Item(Item(Item(root, 1), 0), 2));
    EXPECT_EQ(FindPickIndex(view, u"(1) (1 1)"), &Item(Item(root, 0), 0));
}

TEST_F(PickIndex, RefusesWhatNamesNothing)
{
    const std::int64_t huge = std::int64_t{1} << 40;
    LayOut(Vec(Filled({2, 2}), NestedOf({}, Filled({3})), NestedOf({huge, huge, 0}, Word(u"p"))));
    const struct {
        const char16_t* text;
        VTERROR_CODE code;
    } rows[] = {
        {u"0", VTERROR_CODE::IndexError},
        {u"4", VTERROR_CODE::IndexError},
        {u"99999999999999999999", VTERROR_CODE::IndexError},
        {u"9223372036854775807", VTERROR_CODE::IndexError},
        {u"-1", VTERROR_CODE::SyntaxError},
        {u"x", VTERROR_CODE::SyntaxError},
        {u"1x", VTERROR_CODE::SyntaxError},
        {u"1 1", VTERROR_CODE::RankError},
        {u"1 (1)", VTERROR_CODE::RankError},
        {u"1 (1 1 1)", VTERROR_CODE::RankError},
        {u"1 (1 3)", VTERROR_CODE::IndexError},
        {u"1 (1 1", VTERROR_CODE::SyntaxError},
        {u"1 (", VTERROR_CODE::SyntaxError},
        {u"1 (1,1)", VTERROR_CODE::SyntaxError},
        {u"1 (1 1)x", VTERROR_CODE::RankError}, // what is named holds no items
        {u"''", VTERROR_CODE::RankError},
        {u"2 '", VTERROR_CODE::SyntaxError},
        {u"2 ''''", VTERROR_CODE::RankError},
        {u"3 (1099511627776 1099511627776 1)", VTERROR_CODE::IndexError},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.text, row.text + std::char_traits<char16_t>::length(row.text)));
        ExpectThrow(row.text, row.code);
    }
}

TEST_F(PickIndex, NeedsATree)
{
    ExpectThrow(u"1", VTERROR_CODE::ValueError);
}

TEST_F(PickIndex, AFailedAllocationIsAnErrorCode)
{
    const Scdr& root = LayOut(Vec(Vec(Vec(Word(u"a")))));
    const Scdr& leaf = Item(Item(Item(root, 0), 0), 0);
    for (std::int64_t nth = 1;; ++nth) {
        const std::int64_t live = LiveAllocations();
        environment.ErrorCode = VTERROR_CODE::NoError;
        ArmAllocationFault(nth, false);
        char16_t* text = GetPickIndex(view, false, leaf);
        const std::int64_t fired = DisarmAllocationFault();
        EXPECT_EQ(text == nullptr, fired > 0);
        EXPECT_EQ(environment.ErrorCode, fired > 0 ? VTERROR_CODE::OutOfMemory : VTERROR_CODE::NoError);
        FreeBytes(text);
        EXPECT_EQ(LiveAllocations(), live);
        if (fired == 0) break;
    }
}

} // namespace
} // namespace vantrel
