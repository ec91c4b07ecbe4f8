#include "builtin/format.h"
#include "builtin/numeric.h"
#include "unit/builtin/structural_fixture.h"

namespace vantrel::test {
namespace {

// Every allocation of every primitive fails once; then code 9 arrives, nothing is left behind and the argument is as it was.
class PrimitiveFaults : public Structural {
protected:
    // `least` is how many runs must have met a fault: too few would mean that the sweep looks past the work.
    template <typename Operation> void Sweep(const Scdr& argument, Operation operation, int least = 1)
    {
        const ScdrPtr before = CopyScdr(&context, argument);
        const int faults = SweepAllocationFaults([&] {
            const ScdrPtr result = operation(argument);
            EXPECT_EQ(TakeError(), result ? VTERROR_CODE::NoError : VTERROR_CODE::OutOfMemory);
        });
        EXPECT_GE(faults, least);
        EXPECT_TRUE(SameTree(*before, argument));
    }
    void SweepAll(const Scdr& argument)
    {
        for (const auto primitive : {BuiltinRavel, BuiltinFirst, BuiltinDisclose, BuiltinEnclose,
                                     BuiltinEnlist, BuiltinReverse, BuiltinReverseAxis1}) {
            Sweep(argument, [&](const Scdr& tree) { return primitive(&context, tree); });
        }
        Sweep(argument, [&](const Scdr& tree) { return BuiltinTranspose(&context, tree); });
        if (argument.Type != TypeNested && argument.Type != TypeComplex && argument.Type != TypeDecimal) {
            Sweep(argument, [&](const Scdr& tree) { return BuiltinGradeUp(&context, tree); });
            Sweep(argument, [&](const Scdr& tree) { return BuiltinGradeDown(&context, tree); });
        }
    }
};

TEST_F(PrimitiveFaults, SimpleArraysOfEveryTypeAndRank)
{
    std::mt19937 random(21);
    for (const std::uint32_t type :
         {TypeCharacter, TypeBoolean, TypeInteger, TypeReal, TypeComplex, TypeDecimal}) {
        for (const Shape& shape :
             {Shape{}, Shape{3}, Shape{40}, Shape{7, 60}, Shape{2, 3, 5}, Shape{2, 2, 2, 2}, Shape{0, 3, 2}})
            SweepAll(*RandomSimple(&context, random, type, shape));
    }
}

TEST_F(PrimitiveFaults, NestedArrays)
{
    SweepAll(*NestedVector(Integers({1, 2}), Integers({3, 4, 5})));
    SweepAll(*Nested({2, 1, 2}, Integers({1, 2, 3}), Characters(u"a text too long to lie in its node"),
                     Nested({0}, NestedVector(Integer(1), Characters(u"ab"))), Integer(7)));
    SweepAll(*NestedVector(Integers({1, 1, 1}, {1}), Characters({1, 2, 3}, u"abcdef")));
    SweepAll(*Nested({0, 2}, NestedVector(Integers({1, 2}), Characters(u"ab"))));
    SweepAll(*Nested({}, Characters(u"a text too long to lie within its node")));
}

TEST_F(PrimitiveFaults, RandomTrees)
{
    std::mt19937 random(22);
    RandomTreeLimits limits;
    limits.deepest = 2;
    limits.longestAxis = 2;
    for (int round = 0; round < 12; ++round) {
        const ScdrPtr tree = RandomTree(&context, random, limits);
        for (const auto primitive :
             {BuiltinRavel, BuiltinFirst, BuiltinEnclose, BuiltinEnlist, BuiltinReverse, BuiltinReverseAxis1})
            Sweep(*tree, [&](const Scdr& argument) { return primitive(&context, argument); });
        Sweep(*tree, [&](const Scdr& argument) { return BuiltinTranspose(&context, argument); });
    }
}

TEST_F(PrimitiveFaults, AnAxisOrder)
{
    const ScdrPtr order = Integers({3, 1, 2});
    const ScdrPtr planes = Integers({2, 3, 2}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    Sweep(
        *planes, [&](const Scdr& tree) { return BuiltinTranspose(&context, tree, order.get()); }, 20);
    const ScdrPtr nested = Nested({1, 2, 1}, Integers({1, 2}), Characters(u"abc"));
    Sweep(
        *nested, [&](const Scdr& tree) { return BuiltinTranspose(&context, tree, order.get()); }, 20);
}

TEST_F(PrimitiveFaults, NumbersAndTexts)
{
    Sweep(*Characters(u"1 2.5 3J4"), [&](const Scdr& tree) { return BuiltinCtn(&context, tree); });
    const ScdrPtr matrix = Reals({2, 2}, {1.5, 10, 2, 3.25});
    // The columns' measures stay with the argument; here they are there already.
    ASSERT_NE(BuiltinFormat(&context, *matrix), nullptr);
    Sweep(*matrix, [&](const Scdr&) { return BuiltinFormat(&context, *matrix); });
}

} // namespace
} // namespace vantrel::test
