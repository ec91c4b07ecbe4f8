#include <limits>

#include "unit/builtin/arrays.h"

namespace vantrel::test {
namespace {

class SortTest : public Arrays {
protected:
    std::string Sorted(const Scdr& node, ScdrPtr grade, std::int64_t origin = 1)
    {
        const std::string before = DumpTree(node);
        const std::int64_t live = LiveAllocations();
        std::string answer;
        {
            const ScdrPtr result = Sort(&context, node, std::move(grade), origin);
            if (result == nullptr) {
                answer = "error " + std::to_string(static_cast<std::uint32_t>(TakeError()));
            } else {
                EXPECT_TRUE(IsSoundTree(*result));
                EXPECT_EQ(result->parent, nullptr);
                answer = DumpTree(*result);
            }
        }
        EXPECT_LT(LiveAllocations(), live) << "the grade was not consumed";
        EXPECT_EQ(DumpTree(node), before);
        return answer;
    }
};

TEST_F(SortTest, ItemsComeInTheOrderOfTheGrade)
{
    EXPECT_EQ(Sorted(*Characters(u"bca"), Integers({3, 1, 2})), "Character[3]'abc'");
    EXPECT_EQ(Sorted(*Integers({30, 10, 20}), Integers({1, 2, 0}), 0), "Integer[3]10 20 30");
    EXPECT_EQ(Sorted(*Booleans("1010"), Integers({2, 4, 1, 3})), "Boolean[4]0 0 1 1");
    EXPECT_EQ(Sorted(*Reals({2.5, 0.5}), Integers({2, 1})), "Real[2]0.5 2.5");
    EXPECT_EQ(Sorted(*Complexes({2}, {1, 2, 3, 4}), Integers({2, 1})), "Complex[2]3J4 1J2");
    EXPECT_EQ(Sorted(*NestedVector(Characters(u"b"), Integers({1, 2})), Integers({2, 1})),
              "General[2](Integer[2]1 2 Character[1]'b')");
}

TEST_F(SortTest, MajorCellsMoveWhole)
{
    EXPECT_EQ(Sorted(*Integers({3, 2}, {5, 6, 3, 4, 1, 2}), Integers({3, 2, 1})), "Integer[3 2]1 2 3 4 5 6");
    EXPECT_EQ(Sorted(*Booleans({3, 3}, "111010001"), Integers({3, 2, 1})), "Boolean[3 3]0 0 1 0 1 0 1 1 1");
    EXPECT_EQ(Sorted(*Characters({2, 1, 2}, u"cdab"), Integers({2, 1})), "Character[2 1 2]'abcd'");
    EXPECT_EQ(Sorted(*Integers({2, 1}, {2, 1}), Integers({2, 1})), "Integer[2 1]1 2");
    EXPECT_EQ(Sorted(*Nested({2, 2}, Integers({1, 1}), Integers({2, 2}), Integers({3, 3}), Integers({4, 4})),
                     Integers({2, 1})),
              "General[2 2](Integer[2]3 3 Integer[2]4 4 Integer[2]1 1 Integer[2]2 2)");
}

TEST_F(SortTest, NamesFlagsAndSimplestTypeAreKept)
{
    ScdrPtr node = Integers({2, 1, 1}, {1, 0});
    SetSimplestType(*node);
    node->Flags |= FlagKeptSize;
    node->extra->AxisNames[0][0] = u'X';
    const ScdrPtr result = Sort(&context, *node, Integers({2, 1}), 1);
    EXPECT_EQ(result->SimplestType, TypeBoolean);
    EXPECT_NE(result->Flags & FlagKeptSize, 0);
    EXPECT_EQ(std::u16string(result->extra->AxisNames[0]), u"Xxis name 1");
}

TEST_F(SortTest, AGradeMayBeOfAnyNumericType)
{
    EXPECT_EQ(Sorted(*Characters(u"ba"), Booleans("10"), 0), "Character[2]'ab'");
    EXPECT_EQ(Sorted(*Characters(u"ba"), Reals({2, 1})), "Character[2]'ab'");
    EXPECT_EQ(Sorted(*Characters(u"ba"), Complexes({2}, {2, 0, 1, 0})), "Character[2]'ab'");
}

TEST_F(SortTest, AGradeThatIsNoWholeNumbersIsADomainError)
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const ScdrPtr node = Characters(u"ba");
    EXPECT_EQ(Sorted(*node, Reals({2, 1.5})), "error 2");
    EXPECT_EQ(Sorted(*node, Reals({2, nan})), "error 2");
    EXPECT_EQ(Sorted(*node, Reals({2, 9223372036854775808.0})), "error 2");
    EXPECT_EQ(Sorted(*node, Reals({2, -std::numeric_limits<double>::infinity()})), "error 2");
    EXPECT_EQ(Sorted(*node, Complexes({2}, {2, 0, 1, 1})), "error 2");
    EXPECT_EQ(Sorted(*node, Complexes({2}, {2, 0, 1, nan})), "error 2");
    EXPECT_EQ(Sorted(*node, Complexes({2}, {2.5, 0, 1, 0})), "error 2");
    EXPECT_EQ(Sorted(*node, Characters(u"ab")), "error 2");
    EXPECT_EQ(Sorted(*node, Make(TypeDecimal, {2})), "error 2");
    EXPECT_EQ(Sorted(*node, NestedVector(Integers({1}), Integers({2}))), "error 2");
    EXPECT_EQ(Sorted(*node, Reals({2, 1, 0.5})), "error 2");
}

TEST_F(SortTest, AGradeThatNamesNoCellIsAnIndexError)
{
    const ScdrPtr node = Characters(u"ba");
    EXPECT_EQ(Sorted(*node, Integers({0, 1})), "error 4");
    EXPECT_EQ(Sorted(*node, Integers({1, 3})), "error 4");
    EXPECT_EQ(Sorted(*node, Integers({1, 2}), 0), "error 4");
    EXPECT_EQ(Sorted(*node, Integers({INT64_MIN, INT64_MAX})), "error 4");
}

TEST_F(SortTest, AGradeMayBeLongerButNotShorter)
{
    EXPECT_EQ(Sorted(*Characters(u"ba"), Integers({2, 1, 9})), "Character[2]'ab'");
    EXPECT_EQ(Sorted(*Characters(u"ba"), Integers({1})), "error 6");
}

TEST_F(SortTest, ACellMayBeNamedTwice)
{
    EXPECT_EQ(Sorted(*Characters(u"ba"), Integers({2, 2})), "Character[2]'aa'");
    EXPECT_EQ(Sorted(*NestedVector(Integers({1, 2}), Characters(u"ab")), Integers({2, 2})),
              "General[2](Character[2]'ab' Character[2]'ab')");
}

TEST_F(SortTest, ScalarsAndEmptyArraysAreCopiedWhateverTheGrade)
{
    EXPECT_EQ(Sorted(*Integers({}, {5}), Characters(u"no grade")), "Integer[]5");
    EXPECT_EQ(Sorted(*Characters(u""), Characters(u"")), "Character[0]''");
    EXPECT_EQ(Sorted(*Integers({3, 0}, {}), Reals({0.5})), "Integer[3 0]");
    EXPECT_EQ(Sorted(*Nested({0}, Characters(u"ab")), Integers({7})), "General[0](Character[2]'ab')");
}

TEST_F(SortTest, FailedAllocationsLeaveNothingBehind)
{
    const ScdrPtr nodes[] = {
        Integers({8, 7, 6, 5, 4}),
        Integers({5, 1, 1}, {5, 4, 3, 2, 1}),
        NestedVector(Characters(u"a text too long to lie within its node"), Integers({1, 1, 1}, {1}),
                     NestedVector(Integers({1})), Integers({2}), Integers({3})),
        Characters(u""),
    };
    for (const ScdrPtr& node : nodes) {
        const std::string before = DumpTree(*node);
        const int faults = SweepAllocationFaults([&] {
            const ScdrPtr result = Sort(&context, *node, Integers({5, 4, 3, 2, 1}), 1);
            EXPECT_EQ(TakeError(), result ? VTERROR_CODE::NoError : VTERROR_CODE::OutOfMemory);
        });
        EXPECT_GT(faults, 1);
        EXPECT_EQ(DumpTree(*node), before);
    }
}

} // namespace
} // namespace vantrel::test
