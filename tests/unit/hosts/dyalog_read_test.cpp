#include "closing_window.h"
#include "dyalog_fixture.h"

#include <chrono>
#include <cstring>
#include <limits>
#include <thread>

namespace vantrel {
namespace {

using namespace fake::ElementType;

class DyalogRead : public DyalogTest {
protected:
    // The tree is refused with this code and message, and nothing is left behind.
    void ExpectRefusal(const fake::Array& array, VTERROR_CODE code, std::u16string_view message)
    {
        const ScdrPtr tree = bench.Read(array);
        EXPECT_EQ(tree, nullptr);
        EXPECT_EQ(bench.Code(), code);
        EXPECT_EQ(bench.Detail(), message);
    }
    // The same for a block whose header a test has spoilt.
    template <typename Spoil>
    void ExpectRefusedBlock(const fake::Array& array, Spoil spoil, VTERROR_CODE code,
                            std::u16string_view message)
    {
        fake::Localp* localp = bench.interpreter.MakeLocalp(array);
        const fake::Block before = *localp->block;
        spoil(localp->block);
        EXPECT_EQ(bench.ReadLocalp(localp), nullptr);
        EXPECT_EQ(bench.Code(), code);
        EXPECT_EQ(bench.Detail(), message);
        localp->block->typeWord = before.typeWord;
        std::copy(array.shape.begin(), array.shape.end(), fake::ShapeOf(localp->block));
        bench.interpreter.FreeLocalp(localp);
    }
};

FOR_BOTH_EDITIONS(DyalogRead);

TEST_P(DyalogRead, TurnsBitsIntoBooleans)
{
    const ScdrPtr tree = bench.Read(fake::BooleanArray({9}, {1, 0, 1, 1, 0, 0, 0, 1, 1}));
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(tree->Type, TypeBoolean);
    EXPECT_EQ(tree->SimplestType, static_cast<std::int32_t>(TypeBoolean));
    const auto* bytes = static_cast<const std::uint8_t*>(tree->data);
    EXPECT_EQ(bytes[0], 0b10110001);
    EXPECT_EQ(bytes[1], 0b10000000);
}

TEST_P(DyalogRead, DropsWhatStandsBehindTheLastBit)
{
    const ScdrPtr tree = bench.Read(fake::RawArray(Bit, {3}, {0xFF}));
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(*static_cast<const std::uint8_t*>(tree->data), 0xE0);
}

TEST_P(DyalogRead, ExtendsTheSignOfEveryIntegerWidth)
{
    struct Row {
        int type;
        std::int64_t lowest;
        std::int64_t highest;
    };
    for (const Row& row :
         {Row{Int8, -128, 127}, Row{Int16, -32768, 32767}, Row{Int32, -2147483648LL, 2147483647}}) {
        const std::vector<std::int64_t> values = {row.lowest, -1, 0, 1, row.highest};
        const ScdrPtr tree = bench.Read(fake::IntegerArray(row.type, {5}, values));
        ASSERT_NE(tree, nullptr);
        EXPECT_EQ(tree->Type, TypeInteger);
        EXPECT_EQ(tree->SimplestType, static_cast<std::int32_t>(TypeInteger));
        EXPECT_EQ(ItemsOf<std::int64_t>(*tree), values);
    }
}

// Long enough for the blocks of the conversion loops and a remainder.
TEST_P(DyalogRead, ConvertsEveryItemOfALongVector)
{
    std::vector<std::int64_t> values(1000);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<std::int64_t>(i * 7919 % 256) - 128;
    for (const int type : {Int8, Int16, Int32}) {
        const ScdrPtr tree = bench.Read(fake::IntegerArray(type, {1000}, values));
        ASSERT_NE(tree, nullptr);
        EXPECT_EQ(ItemsOf<std::int64_t>(*tree), values);
    }
}

TEST_P(DyalogRead, CopiesFloatsBitForBit)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<double> values = {0.0, -0.0, 1.5, 1e308, -std::numeric_limits<double>::infinity(), nan};
    const ScdrPtr tree = bench.Read(fake::FloatArray({6}, values));
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(tree->Type, TypeReal);
    EXPECT_EQ(std::memcmp(tree->data, values.data(), values.size() * 8), 0);
}

TEST_P(DyalogRead, CopiesComplexAndDecimalItems)
{
    const ScdrPtr complex = bench.Read(fake::ComplexArray({2}, {{1, 2}, {-3.5, 4}}));
    ASSERT_NE(complex, nullptr);
    EXPECT_EQ(complex->Type, TypeComplex);
    EXPECT_EQ(ItemsOf<double>(*complex), (std::vector<double>{1, 2, -3.5, 4}));

    const fake::Array decimals = fake::DecimalArray({2}, {"-12.50", "1E100"});
    const ScdrPtr decimal = bench.Read(decimals);
    ASSERT_NE(decimal, nullptr);
    EXPECT_EQ(decimal->Type, TypeDecimal);
    EXPECT_EQ(std::memcmp(decimal->data, decimals.data.data(), 32), 0);
}

TEST_P(DyalogRead, TurnsEveryCharacterWidthIntoUnits)
{
    const ScdrPtr narrow = bench.Read(fake::CharacterArray(Char8, {3}, std::u32string{U'a', 0xFF, 0}));
    ASSERT_NE(narrow, nullptr);
    EXPECT_EQ(narrow->Type, TypeCharacter);
    EXPECT_EQ(TextIn(*narrow), (std::u16string{u'a', 0xFF, 0}));
    const ScdrPtr wide = bench.Read(fake::CharacterArray(Char16, {3}, U"a⍴\xFFFF"));
    ASSERT_NE(wide, nullptr);
    EXPECT_EQ(TextIn(*wide), u"a⍴\xFFFF");
    const ScdrPtr atomic = bench.Read(AtomicText({4}, U"a⍴ ∆"));
    ASSERT_NE(atomic, nullptr);
    EXPECT_EQ(TextIn(*atomic), u"a⍴ ∆");
}

TEST_P(DyalogRead, AcceptsCodePointsThatAreOneUnit)
{
    const ScdrPtr tree =
        bench.Read(fake::CharacterArray(Char32, {4}, std::u32string{U'a', 0xD7FF, 0xE000, 0xFFFF}));
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(TextIn(*tree), (std::u16string{u'a', 0xD7FF, 0xE000, 0xFFFF}));
}

TEST_P(DyalogRead, RefusesCodePointsThatAreNoSingleUnit)
{
    constexpr std::u16string_view message =
        u"Argument contains a character that cannot be represented using a single UTF-16 code unit.";
    for (const char32_t codePoint : {0xD800u, 0xDFFFu, 0x10000u, 0x10FFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        for (const std::size_t place : {0u, 63u, 64u, 99u}) {
            std::vector<std::uint8_t> data(400, 0);
            std::memcpy(data.data() + place * 4, &codePoint, 4);
            ExpectRefusal(fake::RawArray(Char32, {100}, data), VTERROR_CODE::DomainError, message);
        }
    }
}

TEST_P(DyalogRead, KeepsScalarsEmptyArraysAndHighRanks)
{
    const ScdrPtr scalar = bench.Read(fake::Number(5));
    ASSERT_NE(scalar, nullptr);
    EXPECT_EQ(scalar->Rank, 0);
    EXPECT_EQ(scalar->ElementCount, 1);
    const ScdrPtr empty = bench.Read(fake::FloatArray({3, 0}, {}));
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(empty->ElementCount, 0);
    EXPECT_EQ(empty->Shape[0], 3);
    const fake::Shape ones(15, 1);
    const ScdrPtr high = bench.Read(fake::CharacterArray(CharacterType(), ones, U"x"));
    ASSERT_NE(high, nullptr);
    EXPECT_EQ(high->Rank, 15);
}

TEST_P(DyalogRead, KeepsThePrototypeOfAnEmptyNestedArray)
{
    const ScdrPtr tree = bench.Read(fake::EmptyNestedArray({0, 2}, fake::NumericArray({3}, {1, 2, 3})));
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(tree->ElementCount, 0);
    ASSERT_EQ(ChildCount(*tree), 1);
    EXPECT_EQ(Children(*tree)[0]->ElementCount, 3);
    EXPECT_EQ(Children(*tree)[0]->parent, tree.get());
}

TEST_P(DyalogRead, LinksChildrenToTheirParents)
{
    const fake::Array inner = fake::NestedArray({2}, {fake::Number(1), fake::BooleanArray({2}, {0, 1})});
    const ScdrPtr tree = bench.Read(fake::NestedArray({2}, {inner, fake::Number(7)}));
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(tree->parent, nullptr);
    EXPECT_EQ(tree->SimplestType, static_cast<std::int32_t>(TypeNested));
    const Scdr& first = *Children(*tree)[0];
    EXPECT_EQ(first.parent, tree.get());
    EXPECT_EQ(Children(first)[1]->parent, &first);
    EXPECT_EQ(Children(first)[1]->Type, TypeBoolean);
}

TEST_P(DyalogRead, FindsTheSimplestTypeOfEveryLeaf)
{
    const fake::Array items =
        fake::NestedArray({2}, {fake::FloatArray({2}, {0, 1}), fake::IntegerArray(Int16, {1}, {2})});
    const ScdrPtr tree = bench.Read(items);
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(Children(*tree)[0]->SimplestType, static_cast<std::int32_t>(TypeBoolean));
    EXPECT_EQ(Children(*tree)[1]->SimplestType, static_cast<std::int32_t>(TypeInteger));
}

TEST_P(DyalogRead, LeavesReferenceCountsAlone)
{
    fake::Localp* localp =
        bench.interpreter.MakeLocalp(fake::NestedArray({2}, {fake::Number(1), fake::Number(2)}));
    const fake::Snapshot before = bench.interpreter.TheBooks().Take(localp->block);
    EXPECT_NE(bench.ReadLocalp(localp), nullptr);
    EXPECT_EQ(localp->block->count, 1);
    bench.interpreter.TheBooks().Compare(before);
    bench.interpreter.FreeLocalp(localp);
}

TEST_P(DyalogRead, RefusesRationalAndUnknownTypes)
{
    ExpectRefusal(fake::RawArray(Rational, {1}, std::vector<std::uint8_t>(16)), VTERROR_CODE::DomainError,
                  u"Argument contains a rational number.");
    for (const std::uint32_t type : {13u, 14u, 15u}) {
        ExpectRefusedBlock(
            fake::Number(1),
            [type](fake::Block* block) { block->typeWord = (block->typeWord & ~0xF00u) | type << 8; },
            VTERROR_CODE::DomainError, u"Argument contained an unsupported type of data");
    }
}

TEST_P(DyalogRead, RefusesEveryClassButSimpleAndNested)
{
    for (std::uint32_t arrayClass = 0; arrayClass < 16; ++arrayClass) {
        if (arrayClass == 7 || arrayClass == 15) continue;
        ExpectRefusedBlock(
            fake::Number(1),
            [arrayClass](fake::Block* block) { block->typeWord = (block->typeWord & ~0xFu) | arrayClass; },
            VTERROR_CODE::DomainError, u"Argument contained data that is neither simple or nested.");
    }
}

TEST_P(DyalogRead, IgnoresTheBitsBehindTheElementType)
{
    fake::Localp* localp = bench.interpreter.MakeLocalp(fake::Number(3));
    const std::uint32_t before = localp->block->typeWord;
    localp->block->typeWord = before ^ 0xFFFFF000u;
    EXPECT_NE(bench.ReadLocalp(localp), nullptr);
    localp->block->typeWord = before;
    bench.interpreter.FreeLocalp(localp);
}

TEST_P(DyalogRead, RefusesNegativeAndOverflowingShapes)
{
    const fake::Array matrix = fake::FloatArray({1, 1}, {2.5});
    const auto reshape = [](std::int64_t rows, std::int64_t columns) {
        return [=](fake::Block* block) {
            fake::ShapeOf(block)[0] = rows;
            fake::ShapeOf(block)[1] = columns;
        };
    };
    ExpectRefusedBlock(matrix, reshape(-1, 1), VTERROR_CODE::SystemLimit, u"");
    ExpectRefusedBlock(matrix, reshape(0, -5), VTERROR_CODE::SystemLimit, u"");
    ExpectRefusedBlock(matrix, reshape(std::int64_t{1} << 32, std::int64_t{1} << 32),
                       VTERROR_CODE::OutOfMemory, u"");
    ExpectRefusedBlock(matrix, reshape(std::int64_t{1} << 61, 1), VTERROR_CODE::OutOfMemory, u"");
    ExpectRefusedBlock(matrix, reshape(std::numeric_limits<std::int64_t>::max(), 1),
                       VTERROR_CODE::OutOfMemory, u"");
}

TEST_P(DyalogRead, AcceptsAnEmptyArrayWithHugeOtherAxes)
{
    const ScdrPtr tree = bench.Read(fake::FloatArray({std::int64_t{1} << 61, 0}, {}));
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(tree->ElementCount, 0);
}

TEST_P(DyalogRead, RefusesMissingBlocks)
{
    EXPECT_EQ(ObjectToScdr(&bench.context, nullptr), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::DomainError);
    Localp empty;
    EXPECT_EQ(ObjectToScdr(&bench.context, &empty), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::DomainError);
    EXPECT_EQ(bench.Detail(), u"Argument contained an unsupported type of data");
}

TEST_P(DyalogRead, RefusesANullItemAndFreesTheItemsBeforeIt)
{
    fake::Localp* localp = bench.interpreter.MakeLocalp(
        fake::NestedArray({3}, {fake::Number(1), fake::Number(2), fake::Number(3)}));
    auto** items = reinterpret_cast<fake::Block**>(fake::ShapeOf(localp->block) + 1);
    fake::Block* last = std::exchange(items[2], nullptr);
    EXPECT_EQ(bench.ReadLocalp(localp), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::DomainError);
    EXPECT_EQ(bench.Detail(), u"Argument contained an unsupported type of data");
    items[2] = last;
    bench.interpreter.FreeLocalp(localp);
}

TEST_P(DyalogRead, RefusesAnArrayThatContainsItself)
{
    fake::Localp* localp =
        bench.interpreter.MakeLocalp(fake::NestedArray({2}, {fake::Number(1), fake::Number(2)}));
    auto** items = reinterpret_cast<fake::Block**>(fake::ShapeOf(localp->block) + 1);
    fake::Block* first = std::exchange(items[0], localp->block);
    EXPECT_EQ(bench.ReadLocalp(localp), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::SystemLimit);
    items[0] = first;
    bench.interpreter.FreeLocalp(localp);
}

fake::Array Nest(std::int64_t levels)
{
    fake::Array array = fake::NumericArray({2}, {1, 2});
    for (std::int64_t level = 1; level < levels; ++level) {
        std::vector<fake::Array> items;
        items.push_back(std::move(array));
        array = fake::NestedArray({1}, std::move(items));
    }
    return array;
}

TEST_P(DyalogRead, AcceptsTheDeepestNestingAndRefusesOneMore)
{
    const ScdrPtr tree = bench.Read(Nest(DeepestNesting));
    ASSERT_NE(tree, nullptr);
    EXPECT_TRUE(fake::IdenticalArrays(bench.Write(*tree), bench.RoundTrip(Nest(DeepestNesting))));
    EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
    ExpectRefusal(Nest(DeepestNesting + 1), VTERROR_CODE::SystemLimit, u"");
}

TEST_P(DyalogRead, SurvivesAFailureOfEveryAllocation)
{
    std::vector<fake::Array> items = {fake::NumericArray({300}, std::vector<double>(300, 2.5)),
                                      fake::Number(1)};
    items.push_back(fake::BooleanArray({2, 2, 2}, {1, 0, 1, 0, 1, 1, 0, 0}));
    fake::Localp* localp = bench.interpreter.MakeLocalp(fake::NestedArray({3}, items));
    const std::int64_t live = LiveAllocations();
    for (const bool sticky : {false, true}) {
        for (std::int64_t nth = 1;; ++nth) {
            bench.host.langEnv.ErrorCode = VTERROR_CODE::NoError;
            ArmAllocationFault(nth, sticky);
            ScdrPtr tree = bench.ReadLocalp(localp);
            const std::int64_t fired = DisarmAllocationFault();
            EXPECT_EQ(tree == nullptr, fired > 0);
            EXPECT_EQ(bench.Code(), fired > 0 ? VTERROR_CODE::OutOfMemory : VTERROR_CODE::NoError);
            tree.reset();
            EXPECT_EQ(LiveAllocations(), live);
            if (fired == 0) break;
        }
    }
    bench.interpreter.FreeLocalp(localp);
}

bool g_waited = false;

// Makes the first translation last long enough for the next poll to be due.
void TranslateSlowly(char16_t* units, const std::uint8_t*, std::int64_t count)
{
    if (!std::exchange(g_waited, true)) std::this_thread::sleep_for(std::chrono::milliseconds(150));
    std::fill(units, units + count, u' ');
}

// Many one-character texts whose translation takes longer than the editor may be silent.
class DyalogReadInterrupt : public testing::Test {
protected:
    DyalogReadInterrupt()
    {
        g_waited = false;
        std::copy_n(bench.host.table, 6, table);
        std::copy_n(reinterpret_cast<const std::int64_t*>(table[3]), 9, language);
        language[7] = reinterpret_cast<std::int64_t>(&TranslateSlowly);
        table[3] = reinterpret_cast<std::int64_t>(language);
        bench.host.table = table;
        localp = bench.interpreter.MakeLocalp(fake::NestedArray(
            {5000}, std::vector<fake::Array>(5000, fake::CharacterArray(AtomicCharacter, {1}, U"a"))));
    }
    ~DyalogReadInterrupt() override
    {
        bench.interpreter.FreeLocalp(localp);
        bench.ExpectBalancedBooks();
    }

    DyalogBench bench{false};
    std::int64_t table[6];
    std::int64_t language[9];
    fake::Localp* localp;
};

TEST_F(DyalogReadInterrupt, StopsALongConversion)
{
    bench.interpreter.SetInterrupt(true);
    EXPECT_EQ(bench.ReadLocalp(localp), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::Interrupt);
    EXPECT_NE(bench.host.langEnv.Capabilities & CapabilityInterruptOrClose, 0);
}

TEST_F(DyalogReadInterrupt, TheWindowAnswersMeanwhileAndClosingItIsNoError)
{
    test::CloseTheWindow(bench.context);
    const ScdrPtr tree(bench.ReadLocalp(localp));
    EXPECT_NE(tree, nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
    EXPECT_GE(test::g_closingWindowAsked, 1);
}

} // namespace
} // namespace vantrel
