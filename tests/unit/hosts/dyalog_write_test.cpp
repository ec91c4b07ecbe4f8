#include "dyalog_fixture.h"

#include <cmath>
#include <cstring>
#include <limits>

#include "hosts/atomic_vector.h"

namespace vantrel {
namespace {

using namespace fake::ElementType;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double twoTo63 = 9223372036854775808.0;

class DyalogWrite : public DyalogTest {
protected:
    std::vector<int> TypesOf(const Scdr& tree)
    {
        DialectTypes types;
        EXPECT_TRUE(SetDialectType(&bench.context, &tree, types));
        return {types.begin(), types.end()};
    }
    void ExpectArray(const Scdr& tree, const fake::Array& expected)
    {
        const fake::Array written = bench.Write(tree);
        EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
        EXPECT_TRUE(fake::IdenticalArrays(written, expected))
            << fake::Dump(written) << " instead of " << fake::Dump(expected);
    }
    ScdrPtr Reals(const std::vector<double>& values) { return MakeVector(bench, TypeReal, values); }
    ScdrPtr Integers(const std::vector<std::int64_t>& values)
    {
        return MakeVector(bench, TypeInteger, values);
    }
    ScdrPtr Complexes(const std::vector<double>& pairs) { return MakeVector(bench, TypeComplex, pairs); }
};

FOR_BOTH_EDITIONS(DyalogWrite);

TEST_P(DyalogWrite, ChoosesTheTypeOfFloats)
{
    struct Row {
        std::vector<double> values;
        int type;
    };
    const Row rows[] = {
        {{}, Bit},
        {{1, 0, 1}, Bit},
        {{-0.0}, Bit},
        {{0, 1, 2}, Int32},
        {{-1}, Int32},
        {{3000000000.0}, Int32},
        {{1, 2.5}, Float},
        {{0.5, 3}, Float},
        {{twoTo63}, Int32},
        {{-twoTo63}, Int32},
        {{std::nextafter(twoTo63, infinity)}, Float},
        {{std::nextafter(-twoTo63, -infinity)}, Float},
        {{1, nan}, Float},
        {{infinity}, Float},
        {{-infinity, 1}, Float},
        {{1e300}, Float},
    };
    for (const Row& row : rows)
        EXPECT_EQ(TypesOf(*Reals(row.values)), std::vector<int>{row.type});
}

// Long enough for the blocks of the scan and a remainder; the odd number stands at every kind of place.
TEST_P(DyalogWrite, ChoosesTheTypeOfLongFloatVectors)
{
    struct Row {
        double odd;
        int type;
    };
    const Row rows[] = {{1, Bit},         {-0.0, Bit},       {2, Int32},
                        {-1, Int32},      {1e15, Int32},     {4e15, Int32},
                        {twoTo63, Int32}, {-twoTo63, Int32}, {1125899906842623.5, Float},
                        {0.5, Float},     {-1e-300, Float},  {1e19, Float},
                        {nan, Float},     {-infinity, Float}};
    for (const Row& row : rows) {
        for (const std::size_t place : {0u, 255u, 256u, 511u, 512u, 520u}) {
            std::vector<double> values(521, 1);
            values[place] = row.odd;
            EXPECT_EQ(TypesOf(*Reals(values)), std::vector<int>{row.type}) << row.odd << " at " << place;
        }
    }
}

TEST_P(DyalogWrite, ChoosesTheTypeOfComplexNumbers)
{
    struct Row {
        std::vector<double> pairs;
        int type;
    };
    const Row rows[] = {
        {{}, Bit},
        {{1, 0, 0, 0}, Bit},
        {{1, 0, 7, 0}, Int32},
        {{7, 0, 1, 0}, Int32},
        {{2.5, 0, 7, 0}, Float},
        {{7, -0.0, 2.5, 0}, Float},
        {{1, 0, 3, 1}, Complex},
        {{1, nan}, Complex},
        // A number out of range decides, even before a truly complex one.
        {{1, 0, 1e20, 0, 3, 1}, Float},
        {{3, 1, 1e20, 0}, Complex},
        // What is not a number is not out of range.
        {{nan, 0, 3, 1}, Complex},
        {{nan, 0, 3, 0}, Float},
    };
    for (const Row& row : rows)
        EXPECT_EQ(TypesOf(*Complexes(row.pairs)), std::vector<int>{row.type});
}

TEST_P(DyalogWrite, ChoosesTheTypeOfIntegers)
{
    EXPECT_EQ(TypesOf(*Integers({})), std::vector<int>{Bit});
    EXPECT_EQ(TypesOf(*Integers({0, 1, 1})), std::vector<int>{Bit});
    EXPECT_EQ(TypesOf(*Integers({0, 1, 2})), std::vector<int>{Int32});
    EXPECT_EQ(TypesOf(*Integers({-1})), std::vector<int>{Int32});
    std::vector<std::int64_t> late(200, 1);
    late.back() = 5;
    EXPECT_EQ(TypesOf(*Integers(late)), std::vector<int>{Int32});
    late[0] = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(TypesOf(*Integers(late)), std::vector<int>{Int32});
}

TEST_P(DyalogWrite, ChoosesTheTypeOfCharacters)
{
    if (!Unicode()) {
        EXPECT_EQ(TypesOf(*MakeText(bench, u"abc⍴")), std::vector<int>{AtomicCharacter});
        EXPECT_EQ(TypesOf(*MakeText(bench, u"")), std::vector<int>{AtomicCharacter});
        return;
    }
    EXPECT_EQ(TypesOf(*MakeText(bench, u"")), std::vector<int>{Char8});
    EXPECT_EQ(TypesOf(*MakeText(bench, u"abcÿ")), std::vector<int>{Char8});
    EXPECT_EQ(TypesOf(*MakeText(bench, u"abcĀ")), std::vector<int>{Char16});
    EXPECT_EQ(TypesOf(*MakeText(bench, std::u16string(300, u'a') + u"⍴")), std::vector<int>{Char16});
}

TEST_P(DyalogWrite, ListsTheTypesOfANestedArrayBeforeItsItems)
{
    ScdrPtr inner = MakeNode(bench, TypeNested, {0});
    SetChild(*inner, 0, Reals({2.5}));
    ScdrPtr tree = MakeNode(bench, TypeNested, {2});
    SetChild(*tree, 0, std::move(inner));
    SetChild(*tree, 1, MakeNode(bench, TypeDecimal, {1}));
    EXPECT_EQ(TypesOf(*tree), (std::vector<int>{Nested, Nested, Float, Decimal}));
}

TEST_P(DyalogWrite, TakesNothingForNoNode)
{
    DialectTypes types;
    EXPECT_TRUE(SetDialectType(&bench.context, nullptr, types));
    EXPECT_TRUE(types.empty());
    EXPECT_EQ(ScdrToObject(&bench.context, nullptr), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::SystemError);
}

TEST_P(DyalogWrite, NeverStoresAnUnknownType)
{
    for (const std::uint32_t type : {1u, 10u, 12u, 20u, 26u, 1000u}) {
        ScdrPtr tree = MakeNode(bench, TypeReal, {3});
        tree->Type = type;
        EXPECT_EQ(TypesOf(*tree), std::vector<int>{AtomicCharacter});
        EXPECT_EQ(ScdrToObject(&bench.context, tree.get()), nullptr);
        EXPECT_EQ(bench.Code(), VTERROR_CODE::DomainError);
        tree->Type = TypeReal;
    }
}

TEST_P(DyalogWrite, PacksNumbersIntoBits)
{
    const fake::Array expected = fake::BooleanArray({10}, {1, 0, 1, 1, 0, 0, 0, 0, 1, 0});
    const std::vector<double> reals = {1, 0, 1, 1, -0.0, 0, 0, 0, 1, 0};
    ExpectArray(*Reals(reals), expected);
    ExpectArray(*Integers({1, 0, 1, 1, 0, 0, 0, 0, 1, 0}), expected);
    std::vector<double> pairs;
    for (const double real : reals)
        pairs.insert(pairs.end(), {real, 0.0});
    ExpectArray(*Complexes(pairs), expected);
    ScdrPtr bits = MakeNode(bench, TypeBoolean, {10});
    for (const int index : {0, 2, 3, 8})
        SetBit(WritableData(*bits), index, true);
    ExpectArray(*bits, expected);
}

TEST_P(DyalogWrite, CutsIntegersToThirtyTwoBits)
{
    const ScdrPtr tree =
        Integers({2, -2, 2147483647, -2147483648LL, 4294967298, std::numeric_limits<std::int64_t>::min()});
    ExpectArray(*tree, fake::IntegerArray(Int32, {6}, {2, -2, 2147483647, -2147483648LL, 2, 0}));
}

TEST_P(DyalogWrite, ConvertsFloatsTowardZeroAndMarksWhatDoesNotFit)
{
    const std::int64_t lowest = -2147483648LL;
    ExpectArray(*Reals({3000000000.0}), fake::IntegerArray(Int32, {1}, {lowest}));
    ExpectArray(*Reals({2147483647, -2147483648.0, 2147483648.0, -2147483649.0, twoTo63, -7}),
                fake::IntegerArray(Int32, {6}, {2147483647, lowest, lowest, lowest, lowest, -7}));
    ExpectArray(*Complexes({5, 0, -3000000000.0, 0}), fake::IntegerArray(Int32, {2}, {5, lowest}));
}

TEST_P(DyalogWrite, WritesFloatsComplexAndDecimalNumbers)
{
    ExpectArray(*Reals({1, 2.5}), fake::FloatArray({2}, {1, 2.5}));
    ExpectArray(*Complexes({1, 0, 2.5, 0}), fake::FloatArray({2}, {1, 2.5}));
    ExpectArray(*Complexes({1, 0, 2.5, -1}), fake::ComplexArray({2}, {{1, 0}, {2.5, -1}}));
    const fake::Array decimals = fake::DecimalArray({2, 1}, {"0.1", "-7"});
    ScdrPtr tree = MakeNode(bench, TypeDecimal, {2, 1});
    std::memcpy(WritableData(*tree), decimals.data.data(), decimals.data.size());
    ExpectArray(*tree, decimals);
}

TEST_P(DyalogWrite, WritesAnyNumberAsAFloatWhereAsked)
{
    double out[3] = {};
    ScdrPtr bits = MakeNode(bench, TypeBoolean, {3});
    SetBit(WritableData(*bits), 1, true);
    ASSERT_TRUE(WriteItems(&bench.context, *bits, DyalogFloat, out));
    EXPECT_EQ((std::vector<double>(out, out + 3)), (std::vector<double>{0, 1, 0}));
    ASSERT_TRUE(WriteItems(&bench.context, *Integers({-5, 0, 1LL << 40}), DyalogFloat, out));
    EXPECT_EQ((std::vector<double>(out, out + 3)), (std::vector<double>{-5, 0, 1099511627776.0}));
}

TEST_P(DyalogWrite, RefusesItemsThatTheTypeCannotHold)
{
    std::int64_t out[8] = {};
    const ScdrPtr text = MakeText(bench, u"ab");
    for (const std::uint32_t type : {1u, 4u, 5u, 6u, 9u, 10u, 12u, 15u}) {
        bench.host.langEnv.ErrorCode = VTERROR_CODE::NoError;
        EXPECT_FALSE(WriteItems(&bench.context, *text, type, out));
        EXPECT_EQ(bench.Code(), VTERROR_CODE::DomainError);
    }
    EXPECT_FALSE(WriteItems(&bench.context, *Reals({1}), DyalogCharacter8, out));
}

TEST_P(DyalogWrite, WritesCharactersForTheEdition)
{
    if (Unicode()) {
        ExpectArray(*MakeText(bench, u"aÿ\n"), fake::CharacterArray(Char8, {3}, U"aÿ\n"));
        ExpectArray(*MakeText(bench, u"aĀ"), fake::CharacterArray(Char16, {2}, U"aĀ"));
        ExpectArray(*MakeText(bench, u""), fake::CharacterArray(Char8, {0}, U""));
    } else {
        ExpectArray(*MakeText(bench, u"a⍴¯"), AtomicText({3}, U"a⍴¯"));
        ExpectArray(*MakeText(bench, u""), fake::CharacterArray(AtomicCharacter, {0}, U""));
    }
}

TEST_P(DyalogWrite, NarrowsEveryUnitOfALongText)
{
    std::u16string text;
    for (int i = 0; i < 1000; ++i)
        text += static_cast<char16_t>(i * 7 % 96 + 32);
    const fake::Array written = bench.Write(*MakeText(bench, text));
    EXPECT_EQ(written.type, CharacterType());
    EXPECT_EQ(fake::TextOfArray(written), text);
}

TEST_P(DyalogWrite, RefusesAClassicCharacterBeforeTheInterpreterIsAskedForMemory)
{
    if (Unicode()) return;
    ScdrPtr tree = MakeNode(bench, TypeNested, {2});
    SetChild(*tree, 0, MakeText(bench, u"fine"));
    SetChild(*tree, 1, MakeText(bench, u"aĀ"));
    EXPECT_EQ(ScdrToObject(&bench.context, tree.get()), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::DomainError);
    EXPECT_EQ(bench.interpreter.Calls(fake::Service::AllocateArray), 0);
    EXPECT_EQ(bench.interpreter.Calls(fake::Service::RegisterLocalp), 0);
}

TEST_P(DyalogWrite, WritesOnePointerForAnEmptyNestedArray)
{
    const fake::Array empty = fake::EmptyNestedArray({0}, fake::BooleanArray({2}, {0, 0}));
    EXPECT_TRUE(fake::IdenticalArrays(bench.RoundTrip(empty), empty));
}

TEST_P(DyalogWrite, CountsEachItemOnceAndFinishesItemsFirst)
{
    ScdrPtr tree = MakeNode(bench, TypeNested, {2});
    SetChild(*tree, 0, Reals({2.5}));
    SetChild(*tree, 1, MakeText(bench, u"xy"));
    auto* localp = static_cast<fake::Localp*>(ScdrToObject(&bench.context, tree.get()));
    ASSERT_NE(localp, nullptr);
    auto** items = reinterpret_cast<fake::Block**>(fake::ShapeOf(localp->block) + 1);
    EXPECT_EQ(localp->block->count, 1);
    EXPECT_EQ(items[0]->count, 1);
    EXPECT_EQ(items[1]->count, 1);
    EXPECT_EQ(bench.interpreter.TheBooks().LiveLocalps(), 1u);
    EXPECT_EQ(bench.interpreter.Calls(fake::Service::FinishArray), 3);
    FreeObject(&bench.context, localp);
}

TEST_P(DyalogWrite, RefusesATreeThatIsNestedTooDeep)
{
    ScdrPtr tree = Reals({2.5});
    for (std::int64_t level = 0; level < DeepestNesting; ++level) {
        ScdrPtr outer = MakeNode(bench, TypeNested, {1});
        SetChild(*outer, 0, std::move(tree));
        tree = std::move(outer);
    }
    EXPECT_EQ(ScdrToObject(&bench.context, tree.get()), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::SystemLimit);
    EXPECT_EQ(bench.interpreter.Calls(fake::Service::AllocateArray), 0);
}

TEST_P(DyalogWrite, BringsEveryKindOfArrayBack)
{
    std::vector<fake::Array> items = {
        fake::BooleanArray({3, 3}, {1, 0, 0, 0, 1, 0, 0, 0, 1}),
        fake::IntegerArray(Int32, {2}, {100000, -5}),
        fake::FloatArray({}, {3.25}),
        fake::CharacterArray(CharacterType(), {2, 2}, U"abcd"),
        fake::ComplexArray({1}, {{1, 1}}),
        fake::DecimalArray({}, {"12.5"}),
        fake::EmptyNestedArray({0}, fake::NestedArray({1}, {fake::BooleanArray({0}, {})})),
        fake::FloatArray({1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, {0.5}),
    };
    const fake::Array array = fake::NestedArray({2, 4}, items);
    const fake::Array back = bench.RoundTrip(array);
    EXPECT_TRUE(fake::IdenticalArrays(back, array)) << fake::Dump(back);
}

TEST_P(DyalogWrite, SurvivesAFailureOfEveryAllocationOfTheInterpreter)
{
    std::vector<fake::Array> items = {
        fake::Number(1), fake::NestedArray({2}, {fake::Number(2), fake::Number(300)}), fake::Number(4)};
    const ScdrPtr tree = bench.Read(fake::NestedArray({3}, items));
    ASSERT_NE(tree, nullptr);
    for (const bool sticky : {false, true}) {
        for (std::int64_t nth = 1;; ++nth) {
            bench.host.langEnv.ErrorCode = VTERROR_CODE::NoError;
            bench.interpreter.FailAllocation(nth, fake::ErrorNumber::WsFull, sticky);
            HostObject object = ScdrToObject(&bench.context, tree.get());
            const std::int64_t failed = bench.interpreter.FailedAllocations();
            bench.interpreter.FailAllocation(0);
            EXPECT_EQ(object == nullptr, failed > 0);
            EXPECT_EQ(bench.Code(), failed > 0 ? VTERROR_CODE::WsFull : VTERROR_CODE::NoError);
            EXPECT_EQ(bench.Detail(), failed > 0 ? bench.interpreter.Message(1) : std::u16string());
            FreeObject(&bench.context, object);
            bench.ExpectBalancedBooks();
            if (failed == 0) break;
            ClearHostMessage(bench.host);
        }
    }
}

TEST_P(DyalogWrite, SurvivesAFailureOfEveryAllocationOfItsOwn)
{
    const ScdrPtr tree =
        bench.Read(fake::NestedArray({2}, {fake::Number(1), fake::NumericArray({3}, {1, 2, 3})}));
    ASSERT_NE(tree, nullptr);
    for (std::int64_t nth = 1;; ++nth) {
        bench.host.langEnv.ErrorCode = VTERROR_CODE::NoError;
        ArmAllocationFault(nth, true);
        HostObject object = ScdrToObject(&bench.context, tree.get());
        const std::int64_t fired = DisarmAllocationFault();
        EXPECT_EQ(object == nullptr, fired > 0);
        EXPECT_EQ(bench.Code(), fired > 0 ? VTERROR_CODE::OutOfMemory : VTERROR_CODE::NoError);
        FreeObject(&bench.context, object);
        bench.ExpectBalancedBooks();
        if (fired == 0) break;
    }
}

TEST_P(DyalogWrite, MakesATextOfUnits)
{
    auto* localp = static_cast<fake::Localp*>(UnicodeToObject(&bench.context, u"a⍴b", 3));
    ASSERT_NE(localp, nullptr);
    EXPECT_EQ(std::memcmp(fake::ShapeOf(localp->block) + 1, u"a⍴b", 6), 0);
    EXPECT_EQ((localp->block->typeWord >> 8) & 15, 8u);
    FreeObject(&bench.context, localp);
    FreeObject(&bench.context, UnicodeToObject(&bench.context, u"", 0));
    EXPECT_EQ(UnicodeToObject(&bench.context, u"a", -1), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::OutOfMemory);
    bench.interpreter.FailAllocation(1, fake::ErrorNumber::WsFull);
    EXPECT_EQ(UnicodeToObject(&bench.context, u"a", 1), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::WsFull);
}

TEST_P(DyalogWrite, LeavesTheTrapWordAsItWas)
{
    const std::uint64_t* word = ServiceOf(bench.host, dyalog::ErrorTrap)();
    const std::uint64_t before = *word;
    FreeObject(&bench.context, UnicodeToObject(&bench.context, u"a", 1));
    EXPECT_EQ(*word, before);
    bench.interpreter.FailAllocation(1, 1234);
    EXPECT_EQ(UnicodeToObject(&bench.context, u"a", 1), nullptr);
    EXPECT_EQ(*word, before);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::UnknownError);
}

TEST_P(DyalogWrite, TakesATrapWithoutANumberForAFailure)
{
    bench.interpreter.FailAllocation(1, 0);
    EXPECT_EQ(UnicodeToObject(&bench.context, u"a", 1), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::UnknownError);
}

TEST_P(DyalogWrite, KnowsTheAtomicVector)
{
    for (int position = 0; position < 256; ++position) {
        EXPECT_EQ(bench.host.atomicVector[position], fake::FromAtomic(static_cast<std::uint8_t>(position)))
            << position;
    }
    int members = 0;
    for (std::uint32_t unit = 0; unit < 65536; ++unit) {
        const bool isMember = bench.host.atomicMembers[unit] != 0;
        members += isMember ? 1 : 0;
        EXPECT_EQ(isMember, fake::ToAtomic(unit) >= 0) << unit;
    }
    EXPECT_EQ(members, 256);
}

} // namespace
} // namespace vantrel
