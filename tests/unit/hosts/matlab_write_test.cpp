#include <cmath>
#include <limits>
#include <random>

#include "unit/hosts/matlab_fixture.h"

namespace vantrel::matlab {
namespace {

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

class MatlabWrite : public MatlabTest {
protected:
    EditContext* context = &bench.context;

    ScdrPtr RealVector(const std::vector<double>& values)
    {
        return test::Reals(context, {static_cast<std::int64_t>(values.size())}, values);
    }
    ScdrPtr IntegerVector(const std::vector<std::int64_t>& values)
    {
        return test::Integers(context, {static_cast<std::int64_t>(values.size())}, values);
    }
    ScdrPtr ComplexVector(const std::vector<double>& pairs)
    {
        return test::Complexes(context, {static_cast<std::int64_t>(pairs.size() / 2)}, pairs);
    }
    int TypeOf(const Scdr& tree)
    {
        DialectTypes types;
        EXPECT_TRUE(SetDialectType(context, &tree, types));
        return types.at(0);
    }
    VTERROR_CODE Failure(const Scdr& tree)
    {
        EXPECT_EQ(bench.Write(tree).classId, Class::Unknown);
        return bench.Code();
    }
};

TEST_F(MatlabWrite, JudgesIntegersByTheirRange)
{
    EXPECT_EQ(TypeOf(*IntegerVector({})), MatlabLogical);
    EXPECT_EQ(TypeOf(*IntegerVector({0, 1, 1})), MatlabLogical);
    EXPECT_EQ(TypeOf(*IntegerVector({0, 2})), MatlabInt32);
    EXPECT_EQ(TypeOf(*IntegerVector({-1})), MatlabInt32);
    EXPECT_EQ(TypeOf(*IntegerVector({-2147483648, 2147483647})), MatlabInt32);
    EXPECT_EQ(TypeOf(*IntegerVector({2147483648})), MatlabInt64);
    EXPECT_EQ(TypeOf(*IntegerVector({0, -2147483649, 1})), MatlabInt64);
    EXPECT_EQ(TypeOf(*IntegerVector({INT64_MIN})), MatlabInt64);
    std::vector<std::int64_t> many(200, 5);
    many[150] = INT64_MAX;
    EXPECT_EQ(TypeOf(*IntegerVector(many)), MatlabInt64);
}

TEST_F(MatlabWrite, JudgesFloatsByTheirValues)
{
    EXPECT_EQ(TypeOf(*RealVector({})), MatlabLogical);
    EXPECT_EQ(TypeOf(*RealVector({0, 1, -0.0})), MatlabLogical);
    EXPECT_EQ(TypeOf(*RealVector({0, 2})), MatlabInt32);
    EXPECT_EQ(TypeOf(*RealVector({-2147483648.0, 2147483647.0})), MatlabInt32);
    EXPECT_EQ(TypeOf(*RealVector({2147483648.0, 1})), MatlabInt64);
    EXPECT_EQ(TypeOf(*RealVector({-2147483649.0})), MatlabInt64);
    EXPECT_EQ(TypeOf(*RealVector({9223372036854775808.0})), MatlabInt64);
    EXPECT_EQ(TypeOf(*RealVector({-9223372036854775808.0})), MatlabInt64);
    EXPECT_EQ(TypeOf(*RealVector({1, 1e19})), MatlabDouble);
    EXPECT_EQ(TypeOf(*RealVector({2147483648.0, 0.5})), MatlabDouble);
    EXPECT_EQ(TypeOf(*RealVector({Nan})), MatlabDouble);
    EXPECT_EQ(TypeOf(*RealVector({-Infinity})), MatlabDouble);
    std::vector<double> many(1000, 3);
    many[700] = 4294967296.0;
    EXPECT_EQ(TypeOf(*RealVector(many)), MatlabInt64);
    many[900] = 0.25;
    EXPECT_EQ(TypeOf(*RealVector(many)), MatlabDouble);
}

TEST_F(MatlabWrite, JudgesComplexNumbersByTheirImaginaryPartsFirst)
{
    EXPECT_EQ(TypeOf(*ComplexVector({})), MatlabLogical);
    EXPECT_EQ(TypeOf(*ComplexVector({1, 0, 0, 0})), MatlabLogical);
    EXPECT_EQ(TypeOf(*ComplexVector({5, 0, 1, -0.0})), MatlabInt32);
    EXPECT_EQ(TypeOf(*ComplexVector({5, 0, 1e10, 0})), MatlabInt64);
    EXPECT_EQ(TypeOf(*ComplexVector({0.5, 0})), MatlabDouble);
    EXPECT_EQ(TypeOf(*ComplexVector({1e10, 0, 0.5, 0})), MatlabDouble);
    EXPECT_EQ(TypeOf(*ComplexVector({1e19, 0})), MatlabDouble);
    EXPECT_EQ(TypeOf(*ComplexVector({Nan, 0})), MatlabDouble);
    EXPECT_EQ(TypeOf(*ComplexVector({1, 2})), MatlabComplex);
    EXPECT_EQ(TypeOf(*ComplexVector({1, Nan})), MatlabComplex);
    EXPECT_EQ(TypeOf(*ComplexVector({0.5, 0, 1, 1})), MatlabComplex); // no imaginary part is ever lost
}

TEST_F(MatlabWrite, JudgesOtherTypesByThemselves)
{
    EXPECT_EQ(TypeOf(*test::Characters(context, u"")), MatlabChar);
    EXPECT_EQ(TypeOf(*test::Booleans(context, {2}, {1, 0})), MatlabLogical);
    EXPECT_EQ(TypeOf(*test::Nested(context, {1}, test::Items(test::Characters(context, u"a")))), MatlabCells);
    const ScdrPtr decimal = AllocateScdr(context, nullptr, TypeDecimal, 0, nullptr, true);
    EXPECT_EQ(TypeOf(*decimal), MatlabNothing);
}

TEST_F(MatlabWrite, WritesTheNarrowestClass)
{
    EXPECT_VALUE(bench.Write(*RealVector({0, 1})), LogicalValue({1, 2}, {0, 1}));
    EXPECT_VALUE(bench.Write(*RealVector({2, -3})), NumberValue<std::int32_t>(Class::Int32, {1, 2}, {2, -3}));
    EXPECT_VALUE(bench.Write(*RealVector({1e10, -3})),
                 NumberValue<std::int64_t>(Class::Int64, {1, 2}, {10000000000, -3}));
    EXPECT_VALUE(bench.Write(*RealVector({0.5, 1})), DoubleValue({1, 2}, {0.5, 1}));
    EXPECT_VALUE(bench.Write(*IntegerVector({0, 1})), LogicalValue({1, 2}, {0, 1}));
    EXPECT_VALUE(bench.Write(*IntegerVector({INT64_MIN, INT64_MAX})),
                 NumberValue<std::int64_t>(Class::Int64, {1, 2}, {INT64_MIN, INT64_MAX}));
    EXPECT_VALUE(bench.Write(*ComplexVector({1, 2, 3, 0})), ComplexValue({1, 2}, {1, 3}, {2, 0}));
    EXPECT_VALUE(bench.Write(*ComplexVector({2.5, 0, 3, 0})), DoubleValue({1, 2}, {2.5, 3}));
    EXPECT_VALUE(bench.Write(*ComplexVector({2, 0, 3, 0})),
                 NumberValue<std::int32_t>(Class::Int32, {1, 2}, {2, 3}));
    EXPECT_VALUE(bench.Write(*ComplexVector({1, 0, 0, 0})), LogicalValue({1, 2}, {1, 0}));
    EXPECT_VALUE(bench.Write(*test::Booleans(context, {9}, {1, 0, 1, 1, 0, 0, 1, 0, 1})),
                 LogicalValue({1, 9}, {1, 0, 1, 1, 0, 0, 1, 0, 1}));
    EXPECT_VALUE(bench.Write(*test::Characters(context, u"a⍴")), TextValue(u"a⍴"));
}

TEST_F(MatlabWrite, TheOneDoubleBeyondTheGreatestIntegerBecomesTheGreatest)
{
    EXPECT_VALUE(bench.Write(*RealVector({9223372036854775808.0, -9223372036854775808.0})),
                 NumberValue<std::int64_t>(Class::Int64, {1, 2}, {INT64_MAX, INT64_MIN}));
}

TEST_F(MatlabWrite, ScalarsAndVectorsBecomeMatrices)
{
    EXPECT_VALUE(bench.Write(*test::Reals(context, {}, {0.5})), DoubleValue({1, 1}, {0.5}));
    EXPECT_VALUE(bench.Write(*RealVector({})), LogicalValue({1, 0}, {}));
    EXPECT_VALUE(bench.Write(*test::Characters(context, u"abc")), TextValue(u"abc"));
    EXPECT_VALUE(bench.Write(*test::Nested(context, {}, test::Items(test::Characters(context, u"a")))),
                 CellValue({1, 1}, {TextValue(u"a")}));
}

TEST_F(MatlabWrite, PutsRowsIntoColumns)
{
    EXPECT_VALUE(bench.Write(*test::Reals(context, {2, 3}, {0.5, 2, 3, 4, 5, 6})),
                 DoubleValue({2, 3}, {0.5, 4, 2, 5, 3, 6}));
    EXPECT_VALUE(bench.Write(*test::Booleans(context, {2, 3}, {1, 1, 0, 0, 1, 0})),
                 LogicalValue({2, 3}, {1, 0, 1, 1, 0, 0}));
    EXPECT_VALUE(bench.Write(*test::Characters(context, {2, 3}, u"abcdef")), CharValue({2, 3}, u"adbecf"));
    EXPECT_VALUE(bench.Write(*test::Complexes(context, {2, 2}, {1, 2, 3, 4, 5, 6, 7, 8})),
                 ComplexValue({2, 2}, {1, 5, 3, 7}, {2, 6, 4, 8}));
    EXPECT_VALUE(bench.Write(*test::Nested(
                     context, {2, 2},
                     test::Items(test::Characters(context, u"a"), test::Characters(context, u"b"),
                                 test::Characters(context, u"c"), test::Characters(context, u"d")))),
                 CellValue({2, 2}, {TextValue(u"a"), TextValue(u"c"), TextValue(u"b"), TextValue(u"d")}));
}

TEST_F(MatlabWrite, EveryClassComesBackNarrowed)
{
    const auto int32 = [](fake::MatlabLengths lengths, const std::vector<std::int32_t>& items) {
        return NumberValue(Class::Int32, std::move(lengths), items);
    };
    EXPECT_VALUE(bench.RoundTrip(DoubleValue({2, 3}, {1, 4, 2, 5, 3, 6})), int32({2, 3}, {1, 4, 2, 5, 3, 6}));
    EXPECT_VALUE(bench.RoundTrip(NumberValue<float>(Class::Single, {1, 2}, {0.1f, 2})),
                 DoubleValue({1, 2}, {static_cast<double>(0.1f), 2}));
    EXPECT_VALUE(bench.RoundTrip(NumberValue<std::uint8_t>(Class::Uint8, {3, 1}, {1, 2, 255})),
                 int32({3, 1}, {1, 2, 255}));
    EXPECT_VALUE(bench.RoundTrip(NumberValue<std::uint32_t>(Class::Uint32, {1, 1}, {UINT32_MAX})),
                 NumberValue<std::int64_t>(Class::Int64, {1, 1}, {UINT32_MAX}));
    EXPECT_VALUE(bench.RoundTrip(LogicalValue({2, 2, 2}, {1, 0, 0, 1, 1, 1, 0, 0})),
                 LogicalValue({2, 2, 2}, {1, 0, 0, 1, 1, 1, 0, 0}));
    EXPECT_VALUE(bench.RoundTrip(DoubleValue({0, 0}, {})), LogicalValue({0, 0}, {}));
    EXPECT_VALUE(bench.RoundTrip(DoubleValue({3, 0, 2}, {})), LogicalValue({3, 0, 2}, {}));
    EXPECT_VALUE(bench.RoundTrip(CharValue({0, 0}, u"")), CharValue({0, 0}, u""));
    EXPECT_VALUE(bench.RoundTrip(CharValue({3, 2}, u"abcdef")), CharValue({3, 2}, u"abcdef"));
    EXPECT_VALUE(bench.RoundTrip(CellValue({0, 3}, {})), CellValue({0, 3}, {}));
}

TEST_F(MatlabWrite, StructuresComeBackWithTheirFields)
{
    const MatlabValue structure =
        StructValue({2, 2}, {"name", "\xE9t\xE9"},
                    {TextValue(u"a"), LogicalValue({1, 1}, {1}), TextValue(u"b"),
                     CellValue({1, 1}, {TextValue(u"in")}), TextValue(u"c"), CellValue({0, 0}, {}),
                     TextValue(u"d"), StructValue({1, 1}, {"x"}, {TextValue(u"y")})});
    EXPECT_VALUE(bench.RoundTrip(structure), structure);
    EXPECT_VALUE(bench.RoundTrip(StructValue({1, 1}, {}, {})), StructValue({1, 1}, {}, {}));
    EXPECT_VALUE(bench.RoundTrip(StructValue({2, 3}, {}, {})), StructValue({2, 3}, {}, {}));
    // Without an element there is nothing that could hold the names.
    EXPECT_VALUE(bench.RoundTrip(StructValue({0, 1}, {"a", "b"}, {})), StructValue({0, 1}, {}, {}));
}

TEST_F(MatlabWrite, UnsetCellsAndFieldsComeBackAsEmptyTexts)
{
    EXPECT_VALUE(bench.RoundTrip(CellValue({1, 1}, {fake::UnsetValue()})),
                 CellValue({1, 1}, {CharValue({1, 0}, u"")}));
}

TEST_F(MatlabWrite, WhatOnlyCarriesAStructuresMarkIsWrittenAsCells)
{
    const auto text = [this](const char16_t* units) { return test::Characters(context, units); };
    // A vector, a last axis that is not 2, a name that is no text, a name without a byte.
    ScdrPtr vector = test::Nested(context, {2}, test::Items(text(u"a"), text(u"b")));
    ScdrPtr three = test::Nested(context, {1, 3}, test::Items(text(u"a"), text(u"b"), text(u"c")));
    ScdrPtr number = test::Nested(context, {1, 2}, test::Items(RealVector({1}), text(u"b")));
    ScdrPtr nameless = test::Nested(context, {1, 2}, test::Items(text(u""), text(u"b")));
    ScdrPtr noByte = test::Nested(context, {1, 2}, test::Items(text(u"\x100"), text(u"b")));
    for (Scdr* tree : {vector.get(), three.get(), number.get(), nameless.get(), noByte.get()}) {
        tree->Flags |= FlagStructure;
        EXPECT_EQ(bench.Write(*tree).classId, Class::Cell);
        EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
    }
    ScdrPtr matrix =
        test::Nested(context, {3, 2},
                     test::Items(text(u"a"), RealVector({2}), text(u"c"), text(u"d"), text(u""), text(u"f")));
    matrix->Flags |= FlagStructure;
    EXPECT_EQ(bench.Write(*matrix).classId, Class::Cell);
}

TEST_F(MatlabWrite, AStructureOfLowRankIsOneElementOrARow)
{
    const auto text = [this](const char16_t* units) { return test::Characters(context, units); };
    ScdrPtr one = test::Nested(context, {1, 2}, test::Items(text(u"f"), text(u"v")));
    one->Flags |= FlagStructure;
    EXPECT_VALUE(bench.Write(*one), StructValue({1, 1}, {"f"}, {TextValue(u"v")}));
    ScdrPtr row =
        test::Nested(context, {2, 1, 2}, test::Items(text(u"f"), text(u"v"), text(u"f"), text(u"w")));
    row->Flags |= FlagStructure;
    EXPECT_VALUE(bench.Write(*row), StructValue({1, 2}, {"f"}, {TextValue(u"v"), TextValue(u"w")}));
}

TEST_F(MatlabWrite, DecimalsCannotBeWritten)
{
    constexpr std::int64_t one = 1;
    const ScdrPtr decimal = AllocateScdr(context, nullptr, TypeDecimal, 1, &one, true);
    EXPECT_EQ(Failure(*decimal), VTERROR_CODE::DomainError);
    const ScdrPtr nested =
        test::Nested(context, {2},
                     test::Items(test::Characters(context, u"a"),
                                 AllocateScdr(context, nullptr, TypeDecimal, 1, &one, true)));
    EXPECT_EQ(Failure(*nested), VTERROR_CODE::DomainError);
}

TEST_F(MatlabWrite, NoTreeIsAnError)
{
    EXPECT_EQ(ScdrToObject(context, nullptr), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::SystemError);
}

TEST_F(MatlabWrite, APrototypeIsNeverWritten)
{
    ScdrPtr empty = test::Nested(
        context, {0}, test::Items(test::Nested(context, {2}, test::Items(RealVector({1}), RealVector({2})))));
    ScdrPtr tree = test::Nested(context, {2}, test::Items(std::move(empty), test::Characters(context, u"z")));
    EXPECT_VALUE(bench.Write(*tree), CellValue({1, 2}, {CellValue({1, 0}, {}), TextValue(u"z")}));
}

TEST_F(MatlabWrite, RefusesNestingThatIsTooDeep)
{
    ScdrPtr tree = test::Characters(context, u"x");
    for (int i = 1; i < 1000; ++i)
        tree = test::Nested(context, {1}, test::Items(std::move(tree)));
    EXPECT_EQ(bench.Write(*tree).classId, Class::Cell);
    tree = test::Nested(context, {1}, test::Items(std::move(tree)));
    EXPECT_EQ(Failure(*tree), VTERROR_CODE::SystemLimit);
}

// --- the memory budget ---

TEST_F(MatlabWrite, AnArrayNeedsItsItemsAnd128Bytes)
{
    struct Case {
        ScdrPtr tree;
        double bytes;
    };
    std::vector<Case> cases;
    cases.push_back({RealVector({0.5, 1, 2}), 3 * 8 + 128});
    cases.push_back({test::Characters(context, u"abc"), 3 * 2 + 128});
    cases.push_back({test::Booleans(context, {9}, std::vector<int>(9, 1)), 9 + 128});
    cases.push_back({IntegerVector({2, 3}), 2 * 4 + 128});
    cases.push_back({IntegerVector({INT64_MAX}), 8 + 128});
    cases.push_back({ComplexVector({1, 2}), 16 + 128});
    cases.push_back({IntegerVector({}), 128});
    cases.push_back(
        {test::Nested(context, {2}, test::Items(test::Characters(context, u"a"), RealVector({0.5}))),
         2 * 8 + 128 + 2 + 128 + 8 + 128});
    cases.push_back(
        {bench.Read(StructValue({1, 2}, {"a", "b"},
                                {TextValue(u""), TextValue(u""), TextValue(u""), TextValue(u"x")})),
         2 * 8 + 128 + 4 * 128 + 2});
    for (const Case& test : cases) {
        bench.matlab.options.memoryBytes = test.bytes;
        EXPECT_NE(bench.Write(*test.tree).classId, Class::Unknown) << test.bytes;
        bench.matlab.options.memoryBytes = test.bytes - 1;
        EXPECT_EQ(Failure(*test.tree), VTERROR_CODE::WsFull) << test.bytes;
    }
}

TEST_F(MatlabWrite, WithoutAnAnswerAboutMemoryNothingIsWritten)
{
    const ScdrPtr tree = RealVector({1.5});
    EXPECT_NE(bench.Write(*tree).classId, Class::Unknown);
    bench.matlab.SetException("memory", u"not here");
    EXPECT_EQ(Failure(*tree), VTERROR_CODE::WsFull);
    bench.matlab.SetException("memory", u"");
    for (const MatlabValue& answer :
         {StructValue({1, 1}, {"Other"}, {DoubleValue({1, 1}, {1e9})}),
          StructValue({1, 1}, {"MaxPossibleArrayBytes"},
                      {NumberValue<std::int64_t>(Class::Int64, {1, 1}, {1000000})}),
          StructValue({1, 1}, {"MaxPossibleArrayBytes"}, {DoubleValue({0, 0}, {})}),
          StructValue({1, 1}, {"MaxPossibleArrayBytes"}, {DoubleValue({1, 1}, {Nan})}),
          StructValue({1, 1}, {"MaxPossibleArrayBytes"}, {DoubleValue({1, 1}, {-5})}),
          StructValue({1, 1}, {"MaxPossibleArrayBytes"}, {fake::UnsetValue()}), DoubleValue({1, 1}, {1e9})}) {
        bench.matlab.SetMemoryAnswer(answer);
        EXPECT_EQ(Failure(*tree), VTERROR_CODE::WsFull) << fake::Dump(answer);
    }
    for (const double bytes : {Infinity, 1e30, 18446744073709551616.0, 1e9}) {
        bench.matlab.SetMemoryAnswer(
            StructValue({1, 1}, {"MaxPossibleArrayBytes"}, {DoubleValue({1, 1}, {bytes})}));
        EXPECT_NE(bench.Write(*tree).classId, Class::Unknown) << bytes;
    }
}

TEST_F(MatlabWrite, TheBudgetIsAskedOnceForAWholeArray)
{
    bench.matlab.ClearCalls();
    bench.Write(*test::Nested(context, {2}, test::Items(RealVector({1.5}), RealVector({2.5}))));
    ASSERT_EQ(bench.matlab.Calls().size(), 1u);
    EXPECT_EQ(bench.matlab.Calls()[0].function, "memory");
    EXPECT_EQ(bench.matlab.Calls()[0].outputs, 1);
}

TEST_F(MatlabWrite, AFailingCreationIsOutOfMemoryAndLeavesNothing)
{
    const ScdrPtr tree = bench.Read(CellValue(
        {2, 2},
        {TextValue(u"a"), StructValue({1, 2}, {"f"}, {TextValue(u"b"), CellValue({1, 1}, {TextValue(u"c")})}),
         ComplexValue({1, 1}, {1}, {2}), LogicalValue({1, 1}, {1})}));
    ASSERT_NE(tree, nullptr);
    for (std::int64_t nth = 1;; ++nth) {
        bench.matlab.FailCreation(nth);
        const MatlabValue written = bench.Write(*tree);
        if (bench.matlab.FailedCreations() == 0) break;
        EXPECT_EQ(written.classId, Class::Unknown);
        EXPECT_EQ(bench.Code(), VTERROR_CODE::OutOfMemory);
        EXPECT_EQ(bench.matlab.LiveArrays(), 0u);
        ASSERT_LT(nth, 100);
    }
}

TEST_F(MatlabWrite, OutOfOurOwnMemoryLeavesNothingBehind)
{
    const ScdrPtr tree = bench.Read(
        CellValue({2, 2}, {TextValue(u"a"),
                           StructValue({1, 1}, {"long field name of this structure"}, {TextValue(u"b")}),
                           DoubleValue({2, 2}, {1, 2, 3, 4}), LogicalValue({1, 1}, {1})}));
    const int faults = test::SweepAllocationFaults([&] {
        SetErrorCode(context, VTERROR_CODE::NoError);
        auto* array = static_cast<mxArray*>(ScdrToObject(context, tree.get()));
        if (array == nullptr) {
            EXPECT_EQ(bench.Code(), VTERROR_CODE::OutOfMemory);
        } else {
            bench.matlab.Destroy(array);
        }
        EXPECT_EQ(bench.matlab.LiveArrays(), 0u);
    });
    EXPECT_GT(faults, 5);
}

// --- text ---

TEST_F(MatlabWrite, TextBecomesACharacterRow)
{
    auto* array = static_cast<mxArray*>(UnicodeToObject(context, u"x⍴y", 2));
    ASSERT_NE(array, nullptr);
    EXPECT_VALUE(bench.matlab.ValueOf(array), TextValue(u"x⍴"));
    FreeObject(context, array);
    array = static_cast<mxArray*>(UnicodeToObject(context, u"", 0));
    ASSERT_NE(array, nullptr);
    EXPECT_VALUE(bench.matlab.ValueOf(array), CharValue({1, 0}, u""));
    FreeObject(context, array);
    bench.matlab.options.memoryBytes.reset();
    EXPECT_EQ(UnicodeToObject(context, u"a", 1), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::WsFull);
}

// --- round trips of arrays nobody thought of ---

class RandomValues {
public:
    explicit RandomValues(unsigned seed) : random_(seed) {}

    // With its narrowed counterpart, which comes back.
    std::pair<MatlabValue, MatlabValue> Next(int depth = 0)
    {
        const int kind = Pick(depth < 3 ? 9 : 7);
        const fake::MatlabLengths lengths = Lengths(kind >= 7 ? 3 : 6);
        const std::size_t count = fake::CountOf(lengths);
        switch (kind) {
        case 0: return Same(LogicalValue(lengths, Numbers<int>(count, 0, 1)));
        case 1: return Same(Text(lengths, count));
        case 2: return Doubles(lengths, count);
        case 3: return Whole<std::int16_t>(Class::Int16, lengths, count);
        case 4: return Whole<double>(Class::Double, lengths, count);
        case 5: return Whole<float>(Class::Single, lengths, count);
        case 6: return Pairs(lengths, count);
        case 7: return Cells(lengths, count, depth);
        default: return Structure(lengths, count, depth);
        }
    }

private:
    using Pair = std::pair<MatlabValue, MatlabValue>;

    int Pick(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }
    static Pair Same(const MatlabValue& value) { return {value, value}; }

    fake::MatlabLengths Lengths(int longest)
    {
        fake::MatlabLengths lengths(static_cast<std::size_t>(2 + Pick(3)));
        for (std::size_t& length : lengths)
            length = static_cast<std::size_t>(Pick(20) == 0 ? 0 : 1 + Pick(longest));
        return lengths;
    }
    template <typename T> std::vector<T> Numbers(std::size_t count, int least, int most)
    {
        std::vector<T> items(count);
        for (T& item : items)
            item = static_cast<T>(least + Pick(most - least + 1));
        return items;
    }
    MatlabValue Text(const fake::MatlabLengths& lengths, std::size_t count)
    {
        const std::vector<char16_t> units = Numbers<char16_t>(count, 32, 0x2400);
        return CharValue(lengths, {units.data(), units.size()});
    }
    Pair Doubles(const fake::MatlabLengths& lengths, std::size_t count)
    {
        std::vector<double> items = Numbers<double>(count, -1000, 1000);
        if (count == 0) return {DoubleValue(lengths, items), LogicalValue(lengths, {})};
        items[static_cast<std::size_t>(Pick(static_cast<int>(count)))] += 0.5;
        return Same(DoubleValue(lengths, items));
    }
    template <typename T> Pair Whole(int classId, const fake::MatlabLengths& lengths, std::size_t count)
    {
        std::vector<T> items = Numbers<T>(count, -1000, 1000);
        if (count == 0) return {NumberValue(classId, lengths, items), LogicalValue(lengths, {})};
        items[0] = 7;
        return {NumberValue(classId, lengths, items),
                NumberValue(Class::Int32, lengths, std::vector<std::int32_t>(items.begin(), items.end()))};
    }
    Pair Pairs(const fake::MatlabLengths& lengths, std::size_t count)
    {
        const std::vector<double> real = Numbers<double>(count, -9, 9);
        std::vector<double> imaginary = Numbers<double>(count, -9, 9);
        if (count == 0) return {ComplexValue(lengths, real, imaginary), LogicalValue(lengths, {})};
        imaginary[static_cast<std::size_t>(Pick(static_cast<int>(count)))] = 3;
        return Same(ComplexValue(lengths, real, imaginary));
    }
    Pair Cells(const fake::MatlabLengths& lengths, std::size_t count, int depth)
    {
        const auto [items, narrowed] = Several(count, depth);
        return {CellValue(lengths, items), CellValue(lengths, narrowed)};
    }
    Pair Structure(const fake::MatlabLengths& lengths, std::size_t count, int depth)
    {
        const std::vector<std::string> fields =
            Pick(2) == 0 ? std::vector<std::string>{"one"} : std::vector<std::string>{"a", "b_2"};
        const auto [items, narrowed] = Several(count * fields.size(), depth);
        return {StructValue(lengths, fields, items),
                StructValue(lengths, count > 0 ? fields : std::vector<std::string>(), narrowed)};
    }
    std::pair<std::vector<MatlabValue>, std::vector<MatlabValue>> Several(std::size_t count, int depth)
    {
        std::pair<std::vector<MatlabValue>, std::vector<MatlabValue>> several;
        for (std::size_t i = 0; i < count; ++i) {
            const Pair pair = Next(depth + 1);
            several.first.push_back(pair.first);
            several.second.push_back(pair.second);
        }
        return several;
    }

    std::mt19937 random_;
};

TEST_F(MatlabWrite, RandomArraysComeBackNarrowed)
{
    for (unsigned seed = 0; seed < 300; ++seed) {
        const auto [value, narrowed] = RandomValues(seed).Next();
        const MatlabValue written = bench.RoundTrip(value);
        ASSERT_TRUE(fake::Identical(written, narrowed)) << seed << "\n"
                                                        << fake::Dump(value) << "\n"
                                                        << fake::Dump(written);
        // Narrowed once, it stays as it is.
        ASSERT_TRUE(fake::Identical(bench.RoundTrip(narrowed), narrowed)) << seed;
    }
}

} // namespace
} // namespace vantrel::matlab
