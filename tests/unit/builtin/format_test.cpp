#include "builtin/format.h"

#include <limits>
#include <random>

#include "unit/builtin/arrays.h"

namespace vantrel::test {
namespace {

using Rows = std::vector<std::u16string>;
using Measures = std::vector<std::int32_t>;

class FormatTest : public Arrays {
protected:
    Rows Format(Scdr& node)
    {
        const FormattedText text = FormatNumbers(&context, node, nullptr);
        Rows rows;
        for (std::int64_t row = 0; row < text.rows; ++row) {
            rows.emplace_back(text.text.get() + row * text.length, static_cast<std::size_t>(text.length));
        }
        return rows;
    }
    static Measures Stored(const std::int32_t* measures, std::int64_t columns)
    {
        return {measures, measures + columns};
    }
};

TEST_F(FormatTest, JoinsVectorItemsWithOneBlank)
{
    EXPECT_EQ(Format(*Integers({1, -20, 300})), Rows{u"1 -20 300"});
    EXPECT_EQ(Format(*Reals({1.5, 2, 1e10})), Rows{u"1.5 2 1E10"});
    EXPECT_EQ(Format(*Booleans("1011")), Rows{u"1 0 1 1"});
    EXPECT_EQ(Format(*Complexes({3}, {1.5, 2, 3, 0, 0, -1})), Rows{u"1.5J2 3 0J-1"});
}

TEST_F(FormatTest, ScalarsAreOneRow)
{
    EXPECT_EQ(Format(*Integers({}, {42})), Rows{u"42"});
    EXPECT_EQ(Format(*Reals({}, {0.25})), Rows{u"0.25"});
    EXPECT_EQ(Format(*Booleans({}, "1")), Rows{u"1"});
    EXPECT_EQ(Format(*Complexes({}, {0, 1})), Rows{u"0J1"});
}

TEST_F(FormatTest, AlignsDecimalPointsInEachColumn)
{
    EXPECT_EQ(Format(*Reals({2, 2}, {1.5, 10, 2, 3.25})), (Rows{u"1.5 10   ", u"2    3.25"}));
    EXPECT_EQ(Format(*Reals({3, 1}, {1000, 0.125, -2})), (Rows{u"1000    ", u"   0.125", u"  -2    "}));
}

TEST_F(FormatTest, AnExponentEndsTheIntegerPart)
{
    EXPECT_EQ(Format(*Reals({3, 1}, {1e20, 12.5, 1.5e-7})), (Rows{u" 1E20  ", u"12.5   ", u" 1.5E-7"}));
}

TEST_F(FormatTest, AJEndsTheIntegerPart)
{
    EXPECT_EQ(Format(*Complexes({3, 1}, {12, 3, 1.5, 0, -7, 0})), (Rows{u"12J3", u" 1.5", u"-7  "}));
    EXPECT_EQ(Format(*Complexes({2, 1}, {1, 1e20, 100, -0.5})), (Rows{u"  1J1E20", u"100J-0.5"}));
}

TEST_F(FormatTest, IntegersAlignAtTheRight)
{
    EXPECT_EQ(Format(*Integers({2, 3}, {1, -200, 3, 1000, 5, 60})), (Rows{u"   1 -200  3", u"1000    5 60"}));
}

TEST_F(FormatTest, BooleanRowsTakeOneUnitABitAndBlanksBetween)
{
    EXPECT_EQ(Format(*Booleans({2, 3}, "101011")), (Rows{u"1 0 1", u"0 1 1"}));
    EXPECT_EQ(Format(*Booleans({3, 1}, "101")), (Rows{u"1", u"0", u"1"}));
}

TEST_F(FormatTest, BooleanRowsOfEveryLengthAgreeWithTheirBits)
{
    std::mt19937 random(5);
    for (std::int64_t columns = 1; columns <= 40; ++columns) {
        std::string bits;
        for (std::int64_t i = 0; i < 3 * columns; ++i)
            bits += random() % 2 != 0 ? '1' : '0';
        Rows expected;
        for (std::int64_t row = 0; row < 3; ++row) {
            std::u16string text;
            for (std::int64_t i = 0; i < columns; ++i) {
                if (i > 0) text += u' ';
                text += static_cast<char16_t>(bits[static_cast<std::size_t>(row * columns + i)]);
            }
            expected.push_back(text);
        }
        EXPECT_EQ(Format(*Booleans({3, columns}, bits)), expected) << columns;
    }
}

TEST_F(FormatTest, RowsOfAllLeadingAxesShareTheColumns)
{
    EXPECT_EQ(Format(*Integers({2, 2, 2}, {1, 2, 3, 4, 500, 6, 7, 80})),
              (Rows{u"  1  2", u"  3  4", u"500  6", u"  7 80"}));
}

TEST_F(FormatTest, UsesTheHighMinusWhereTheHostHasIt)
{
    environment.ViewCapabilities = ViewCapabilityHighMinus;
    EXPECT_EQ(Format(*Integers({-5, 5})), Rows{u"\u00AF5 5"});
    EXPECT_EQ(Format(*Reals({-1e-5})), Rows{u"\u00AF1E\u00AF5"});
    EXPECT_EQ(Format(*Complexes({1}, {-1, -2})), Rows{u"\u00AF1J\u00AF2"});
}

TEST_F(FormatTest, UsesThePrintPrecisionOfTheEdit)
{
    context.printPrecision = 3;
    EXPECT_EQ(Format(*Reals({3.14159, 123456})), Rows{u"3.14 1.23E5"});
    context.printPrecision = 17;
    EXPECT_EQ(Format(*Reals({0.1})), Rows{u"0.10000000000000001"});
    context.printPrecision = 40;
    EXPECT_EQ(Format(*Reals({2, 1}, {0.1, 10})), (Rows{u" 0.1000000000000000055511151231257827021182",
                                                       u"10                                         "}));
}

TEST_F(FormatTest, IntegersShowTheirLowThirtyTwoBits)
{
    EXPECT_EQ(Format(*Integers({2, 1}, {4294967297, 2147483648})), (Rows{u"          1", u"-2147483648"}));
}

TEST_F(FormatTest, NotANumberAndInfinitiesAlignAsIntegers)
{
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Format(*Reals({3, 1}, {infinity, std::numeric_limits<double>::quiet_NaN(), 0.5})),
              (Rows{u"INF  ", u"NAN  ", u"  0.5"}));
}

TEST_F(FormatTest, TheGreatestDoublesAlignAtTheirOwnPoint)
{
    context.printPrecision = 16;
    EXPECT_EQ(Format(*Reals({2, 1}, {std::numeric_limits<double>::max(), 100})),
              (Rows{u" +1.7976931348623150E+308", u"100                      "}));
}

TEST_F(FormatTest, EmptyArraysGiveEmptyShapes)
{
    EXPECT_EQ(Format(*Integers(std::vector<std::int64_t>{})), Rows{u""});
    EXPECT_EQ(Format(*Booleans("")), Rows{u""});
    EXPECT_EQ(Format(*Reals({2, 0}, {})), (Rows{u"", u""}));
    EXPECT_EQ(Format(*Booleans({2, 0}, "")), (Rows{u"", u""}));
    EXPECT_EQ(Format(*Reals({0, 3}, {})), Rows{});
    EXPECT_EQ(FormatNumbers(&context, *Booleans({0, 3}, ""), nullptr).length, 5);
    EXPECT_EQ(FormatNumbers(&context, *Reals({0, 3}, {}), nullptr).length, 2);
}

TEST_F(FormatTest, AnyNumberOfRowsWithoutColumnsIsQuick)
{
    const ScdrPtr node = Reals({std::int64_t{1} << 40, 0}, {});
    const FormattedText text = FormatNumbers(&context, *node, nullptr);
    EXPECT_EQ(text.rows, std::int64_t{1} << 40);
    EXPECT_EQ(text.length, 0);
}

TEST_F(FormatTest, StoresTheColumnMeasures)
{
    const ScdrPtr reals = Reals({2, 2}, {1.5, 10, 2, 3.25});
    Format(*reals);
    EXPECT_EQ(Stored(reals->extra->recordColumnWidths, 2), (Measures{3, 5}));
    EXPECT_EQ(Stored(reals->extra->recordColumnIntegers, 2), (Measures{1, 2}));
    const std::int64_t before = LiveAllocations();
    Format(*reals);
    EXPECT_EQ(LiveAllocations(), before);
    EXPECT_EQ(Stored(reals->extra->recordColumnWidths, 2), (Measures{3, 5}));
    const ScdrPtr bits = Booleans({1, 3}, "101");
    Format(*bits);
    EXPECT_EQ(Stored(bits->extra->recordColumnWidths, 3), (Measures{1, 1, 1}));
    EXPECT_EQ(Stored(bits->extra->recordColumnIntegers, 3), (Measures{1, 1, 1}));
}

TEST_F(FormatTest, VectorsStoreNoColumnMeasures)
{
    const ScdrPtr node = Reals({1, 2});
    Format(*node);
    EXPECT_EQ(node->extra, nullptr);
}

// A plain second opinion: every item with FormatF8, blanks around it.
Rows AlignPlainly(const LangEnv& environment, const std::vector<double>& items, std::size_t columns,
                  std::int64_t precision)
{
    std::vector<std::u16string> texts;
    std::vector<std::size_t> integers(columns), rests(columns);
    const auto integerOf = [](const std::u16string& text) {
        return std::min(text.find_first_of(u".EJ"), text.size());
    };
    for (std::size_t i = 0; i < items.size(); ++i) {
        char16_t buffer[NumberTextSize];
        FormatF8(environment, items[i], buffer, precision);
        texts.emplace_back(buffer);
        integers[i % columns] = std::max(integers[i % columns], integerOf(texts[i]));
        rests[i % columns] = std::max(rests[i % columns], texts[i].size() - integerOf(texts[i]));
    }
    Rows rows;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i % columns == 0)
            rows.emplace_back();
        else
            rows.back() += u' ';
        const std::size_t left = integers[i % columns] - integerOf(texts[i]);
        const std::size_t right = rests[i % columns] + integerOf(texts[i]) - texts[i].size();
        rows.back() += std::u16string(left, u' ') + texts[i] + std::u16string(right, u' ');
    }
    return rows;
}

TEST_F(FormatTest, RandomMatricesAgreeWithAPlainAlignment)
{
    std::mt19937_64 random(3);
    for (const std::size_t columns : {1u, 2u, 7u, 100u, 5000u}) {
        for (const std::int64_t precision : {1, 10, 17, 25}) {
            std::vector<double> items(columns * 5);
            for (double& item : items) {
                item = static_cast<double>(static_cast<std::int64_t>(random() % 2000001) - 1000000) /
                       (random() % 3 == 0 ? 1.0 : 1e7);
            }
            context.printPrecision = precision;
            const ScdrPtr node = Reals({5, static_cast<std::int64_t>(columns)}, items);
            EXPECT_EQ(Format(*node), AlignPlainly(environment, items, columns, precision))
                << columns << " at " << precision;
        }
    }
}

TEST_F(FormatTest, RefusesWhatIsNotANumber)
{
    const ScdrPtr character = Characters(u"abc");
    EXPECT_THROW((void)FormatNumbers(&context, *character, nullptr), VTERROR_CODE);
    const ScdrPtr decimal = Make(TypeDecimal, {1});
    EXPECT_THROW((void)FormatNumbers(&context, *decimal, nullptr), VTERROR_CODE);
}

struct PollRecorder {
    std::int64_t calls = 0;
    std::int64_t lastRows = 0;
    std::int64_t stopAt = 0;
};

bool RecordPoll(void* state, std::int64_t rowsDone)
{
    auto* recorder = static_cast<PollRecorder*>(state);
    EXPECT_GE(rowsDone, recorder->lastRows);
    recorder->lastRows = rowsDone;
    return ++recorder->calls == recorder->stopAt;
}

TEST_F(FormatTest, APollStopsLongWork)
{
    const ScdrPtr node = Make(TypeReal, {4000000, 4}); // long enough for more than one poll on any machine
    auto* items = static_cast<double*>(WritableData(*node));
    for (std::int64_t i = 0; i < node->ElementCount; ++i)
        items[i] = static_cast<double>(i) / 7;
    PollRecorder recorder;
    recorder.stopAt = 2;
    const FormatPoll poll = {RecordPoll, &recorder};
    const std::int64_t before = LiveAllocations();
    try {
        (void)FormatNumbers(&context, *node, &poll);
        FAIL() << "was not stopped";
    } catch (VTERROR_CODE code) {
        EXPECT_EQ(code, VTERROR_CODE::Interrupt);
    }
    EXPECT_EQ(recorder.calls, 2);
    EXPECT_LE(LiveAllocations() - before, 1); // the node may keep the record of its rarer fields
}

TEST_F(FormatTest, FailedAllocationsLeaveNothingBehind)
{
    const int faults = SweepAllocationFaults([&] {
        const ScdrPtr node = Reals({2, 2}, {1.5, 10, 2, 3.25});
        const FormattedText text = FormatNumbers(&context, *node, nullptr);
        EXPECT_EQ(text.rows, 2);
    });
    EXPECT_GT(faults, 4);
}

using BuiltinFormatTest = FormatTest;

TEST_F(BuiltinFormatTest, VectorsAndScalarsBecomeCharacterVectors)
{
    EXPECT_EQ(DumpTree(*BuiltinFormat(&context, *Integers({1, 22, 3}))), "Character[6]'1 22 3'");
    EXPECT_EQ(DumpTree(*BuiltinFormat(&context, *Reals({}, {2.5}))), "Character[3]'2.5'");
    EXPECT_EQ(DumpTree(*BuiltinFormat(&context, *Booleans("10"))), "Character[3]'1 0'");
    EXPECT_EQ(DumpTree(*BuiltinFormat(&context, *Booleans(""))), "Character[0]''");
}

TEST_F(BuiltinFormatTest, ArraysKeepTheirShapeButForTheLastAxis)
{
    EXPECT_EQ(DumpTree(*BuiltinFormat(&context, *Reals({2, 2}, {1.5, 10, 2, 3.25}))),
              "Character[2 9]'1.5 10   2    3.25'");
    EXPECT_EQ(DumpTree(*BuiltinFormat(&context, *Integers({2, 1, 2}, {1, 2, 3, 44}))),
              "Character[2 1 4]'1  23 44'");
    EXPECT_EQ(DumpTree(*BuiltinFormat(&context, *Booleans({2, 2}, "1001"))), "Character[2 3]'1 00 1'");
    EXPECT_EQ(DumpTree(*BuiltinFormat(&context, *Reals({2, 0}, {}))), "Character[2 0]''");
    EXPECT_EQ(PlaneCount(*BuiltinFormat(&context, *Integers({3, 1, 2}, {1, 2, 3, 4, 5, 6}))), 3);
}

TEST_F(BuiltinFormatTest, TheResultHasItsSimplestTypeAndTheArgumentItsColumns)
{
    const ScdrPtr argument = Reals({2, 2}, {1.5, 10, 2, 3.25});
    const ScdrPtr result = BuiltinFormat(&context, *argument);
    EXPECT_EQ(result->SimplestType, TypeCharacter);
    EXPECT_EQ(result->parent, nullptr);
    EXPECT_EQ(Stored(argument->extra->recordColumnWidths, 2), (Measures{3, 5}));
    EXPECT_EQ(ItemsOf<double>(*argument), (std::vector<double>{1.5, 10, 2, 3.25}));
}

TEST_F(BuiltinFormatTest, CharactersAreCopied)
{
    const ScdrPtr argument = Characters({2, 2}, u"abcd");
    const ScdrPtr result = BuiltinFormat(&context, *argument);
    EXPECT_NE(result.get(), argument.get());
    EXPECT_EQ(DumpTree(*result), "Character[2 2]'abcd'");
}

TEST_F(BuiltinFormatTest, NestedAndDecimalArraysAreRefusedWithAMessage)
{
    const ScdrPtr nested = NestedVector(Integers({1, 2}));
    const ScdrPtr decimal = Make(TypeDecimal, {2});
    for (Scdr* argument : {nested.get(), decimal.get()}) {
        environment.ErrorDetail = nullptr;
        EXPECT_EQ(BuiltinFormat(&context, *argument), nullptr);
        EXPECT_EQ(TakeError(), VTERROR_CODE::NonceError);
        ASSERT_NE(environment.ErrorDetail, nullptr);
        EXPECT_EQ(std::u16string(environment.ErrorDetail), u"Formatting of nested arrays is not supported");
    }
}

std::int32_t AlwaysInterrupted(EditContext*)
{
    return 1;
}
std::int32_t NeverInterrupted(EditContext*)
{
    return 0;
}

TEST_F(BuiltinFormatTest, TheHostsInterruptStopsLongWork)
{
    const ScdrPtr node = Make(TypeComplex, {6000000});
    std::fill_n(static_cast<double*>(WritableData(*node)), 12000000, 1.0 / 7);
    environment.Operations.CheckForInterrupt = AlwaysInterrupted;
    EXPECT_EQ(BuiltinFormat(&context, *node), nullptr);
    EXPECT_EQ(TakeError(), VTERROR_CODE::Interrupt);
}

// It is asked between items, so that one alone is formatted in any case.
TEST_F(BuiltinFormatTest, AnInterruptThatWaitsStopsEvenShortWork)
{
    environment.Operations.CheckForInterrupt = AlwaysInterrupted;
    for (const ScdrPtr& argument : {Integers({1, 2}), Booleans("10"), Reals({2, 1}, {1.5, 2})}) {
        EXPECT_EQ(BuiltinFormat(&context, *argument), nullptr);
        EXPECT_EQ(TakeError(), VTERROR_CODE::Interrupt);
    }
    EXPECT_EQ(DumpTree(*BuiltinFormat(&context, *Reals({}, {2.5}))), "Character[3]'2.5'");
    EXPECT_EQ(DumpTree(*BuiltinFormat(&context, *Characters({2}, u"ab"))), "Character[2]'ab'");
}

TEST_F(BuiltinFormatTest, AHostThatDoesNotInterruptIsAskedInVain)
{
    environment.Operations.CheckForInterrupt = NeverInterrupted;
    EXPECT_EQ(DumpTree(*BuiltinFormat(&context, *Integers({1, 2}))), "Character[3]'1 2'");
}

TEST_F(BuiltinFormatTest, FailedAllocationsLeaveNothingBehind)
{
    const int faults = SweepAllocationFaults([&] {
        const ScdrPtr node = Integers({1, 2, 2}, {1, 2, 3, 4});
        const ScdrPtr result = BuiltinFormat(&context, *node);
        EXPECT_EQ(TakeError(), result ? VTERROR_CODE::NoError : VTERROR_CODE::OutOfMemory);
    });
    EXPECT_GT(faults, 4);
}

} // namespace
} // namespace vantrel::test
