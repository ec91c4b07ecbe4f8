#include <chrono>
#include <cmath>
#include <limits>
#include <thread>
#include <utility>

#include "unit/hosts/closing_window.h"
#include "unit/hosts/matlab_fixture.h"

namespace vantrel::matlab {
namespace {

using test::DumpTree;

class MatlabRead : public MatlabTest {
protected:
    std::string Dumped(const MatlabValue& value)
    {
        const ScdrPtr tree = bench.Read(value);
        if (tree == nullptr) return "refused";
        EXPECT_TRUE(test::IsSoundTree(*tree));
        return DumpTree(*tree);
    }
};

template <typename T> MatlabValue Row(int classId, const std::vector<T>& items)
{
    return NumberValue(classId, {1, items.size()}, items);
}

TEST_F(MatlabRead, TakesEveryClassOfNumbers)
{
    EXPECT_EQ(Dumped(Row<double>(Class::Double, {1.5, -2})), "Real[1 2]1.5 -2");
    EXPECT_EQ(Dumped(Row<float>(Class::Single, {1.5f, -2})), "Real[1 2]1.5 -2");
    EXPECT_EQ(Dumped(Row<std::int8_t>(Class::Int8, {-128, 127})), "Integer[1 2]-128 127");
    EXPECT_EQ(Dumped(Row<std::uint8_t>(Class::Uint8, {0, 255})), "Integer[1 2]0 255");
    EXPECT_EQ(Dumped(Row<std::int16_t>(Class::Int16, {-32768, 32767})), "Integer[1 2]-32768 32767");
    EXPECT_EQ(Dumped(Row<std::uint16_t>(Class::Uint16, {0, 65535})), "Integer[1 2]0 65535");
    EXPECT_EQ(Dumped(Row<std::int32_t>(Class::Int32, {INT32_MIN, INT32_MAX})),
              "Integer[1 2]-2147483648 2147483647");
    EXPECT_EQ(Dumped(Row<std::uint32_t>(Class::Uint32, {0, UINT32_MAX})), "Integer[1 2]0 4294967295");
    EXPECT_EQ(Dumped(Row<std::int64_t>(Class::Int64, {INT64_MIN, INT64_MAX})),
              "Integer[1 2]-9223372036854775808 9223372036854775807");
}

TEST_F(MatlabRead, TakesLogicalsWithAnyByteButZeroAsTrue)
{
    EXPECT_EQ(Dumped(LogicalValue({1, 9}, {1, 0, 2, 255, 0, 0, 1, 0, 128})), "Boolean[1 9]1 0 1 1 0 0 1 0 1");
    EXPECT_EQ(Dumped(LogicalValue({2, 3}, {1, 0, 0, 7, 1, 0})), "Boolean[2 3]1 0 1 0 1 0");
}

TEST_F(MatlabRead, TakesCharactersAsUnits)
{
    const ScdrPtr text = bench.Read(TextValue(u"a⍴\xD83D\xDE00"));
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->Type, TypeCharacter);
    EXPECT_EQ(text->Rank, 2);
    EXPECT_EQ(std::u16string(static_cast<const char16_t*>(text->data), 4), u"a⍴\xD83D\xDE00");
    EXPECT_EQ(Dumped(CharValue({2, 3}, u"adbecf")), "Character[2 3]'abcdef'");
}

TEST_F(MatlabRead, PutsColumnsIntoRows)
{
    EXPECT_EQ(Dumped(DoubleValue({2, 3}, {1, 4, 2, 5, 3, 6})), "Real[2 3]1 2 3 4 5 6");
    EXPECT_EQ(Dumped(DoubleValue({3, 1}, {1, 2, 3})), "Real[3 1]1 2 3");
    EXPECT_EQ(Dumped(NumberValue<std::int16_t>(Class::Int16, {2, 2}, {1, 3, 2, 4})), "Integer[2 2]1 2 3 4");
    EXPECT_EQ(Dumped(ComplexValue({2, 2}, {1, 3, 2, 4}, {5, 7, 6, 8})),
              DumpTree(*test::Complexes(&bench.context, {2, 2}, {1, 5, 2, 6, 3, 7, 4, 8})));
}

TEST_F(MatlabRead, RearrangesEveryRank)
{
    for (const std::vector<std::size_t>& lengths : {std::vector<std::size_t>{2, 3, 4},
                                                    {2, 1, 3},
                                                    {1, 3, 4},
                                                    {3, 4, 1, 2},
                                                    {2, 2, 2, 2, 2},
                                                    {9, 70, 3},
                                                    {70, 9},
                                                    {64, 64},
                                                    {65, 130},
                                                    {1, 1, 5}}) {
        const std::size_t count = fake::CountOf(lengths);
        std::vector<std::int32_t> items(count);
        for (std::size_t i = 0; i < count; ++i)
            items[i] = static_cast<std::int32_t>(i);
        const ScdrPtr tree = bench.Read(NumberValue(Class::Int32, lengths, items));
        ASSERT_NE(tree, nullptr);
        for (std::size_t row = 0; row < count; ++row) {
            std::size_t rest = row;
            std::size_t column = 0;
            std::size_t stride = count;
            for (std::size_t axis = lengths.size(); axis-- > 0; rest /= lengths[axis]) {
                stride /= lengths[axis];
                column += rest % lengths[axis] * stride;
            }
            ASSERT_EQ(static_cast<const std::int64_t*>(tree->data)[row], static_cast<std::int64_t>(column));
        }
        ASSERT_EQ(tree->Rank, static_cast<std::int32_t>(lengths.size()));
        for (std::size_t axis = 0; axis < lengths.size(); ++axis)
            ASSERT_EQ(tree->Shape[axis], static_cast<std::int64_t>(lengths[axis]));
    }
}

TEST_F(MatlabRead, SetsTheSimplestType)
{
    EXPECT_EQ(bench.Read(Row<double>(Class::Double, {0, 1}))->SimplestType, static_cast<int>(TypeBoolean));
    EXPECT_EQ(bench.Read(Row<double>(Class::Double, {0, 2}))->SimplestType, static_cast<int>(TypeInteger));
    EXPECT_EQ(bench.Read(Row<double>(Class::Double, {0.5}))->SimplestType, static_cast<int>(TypeReal));
    EXPECT_EQ(bench.Read(Row<std::int8_t>(Class::Int8, {1}))->SimplestType, static_cast<int>(TypeBoolean));
}

TEST_F(MatlabRead, TakesComplexNumbersOfAnyClassAsTheyAre)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const ScdrPtr special = bench.Read(ComplexValue({1, 2}, {nan, 1}, {1, infinity}));
    ASSERT_NE(special, nullptr);
    EXPECT_TRUE(std::isnan(static_cast<const double*>(special->data)[0]));
    EXPECT_EQ(static_cast<const double*>(special->data)[3], infinity);

    const auto complexOf = [](auto zero, int classId) {
        using Item = decltype(zero);
        MatlabValue value = NumberValue<Item>(classId, {1, 2}, {Item(1), Item(2)});
        value.complex = true;
        value.imaginary = NumberValue<Item>(classId, {1, 2}, {Item(3), Item(4)}).real;
        return value;
    };
    const std::string expected = DumpTree(*test::Complexes(&bench.context, {1, 2}, {1, 3, 2, 4}));
    EXPECT_EQ(Dumped(complexOf(0.0, Class::Double)), expected);
    EXPECT_EQ(Dumped(complexOf(0.0f, Class::Single)), expected);
    EXPECT_EQ(Dumped(complexOf(std::int8_t(), Class::Int8)), expected);
    EXPECT_EQ(Dumped(complexOf(std::uint8_t(), Class::Uint8)), expected);
    EXPECT_EQ(Dumped(complexOf(std::int16_t(), Class::Int16)), expected);
    EXPECT_EQ(Dumped(complexOf(std::uint16_t(), Class::Uint16)), expected);
    EXPECT_EQ(Dumped(complexOf(std::int32_t(), Class::Int32)), expected);
    EXPECT_EQ(Dumped(complexOf(std::uint32_t(), Class::Uint32)), expected);
    EXPECT_EQ(Dumped(complexOf(std::int64_t(), Class::Int64)), expected);
}

TEST_F(MatlabRead, TakesCellsInTheTreesOrder)
{
    const MatlabValue cells =
        CellValue({2, 2}, {TextValue(u"a"), DoubleValue({1, 1}, {2}), CellValue({1, 1}, {TextValue(u"in")}),
                           LogicalValue({0, 3}, {})});
    EXPECT_EQ(Dumped(cells), "General[2 2](Character[1 1]'a' General[1 1](Character[1 2]'in') Real[1 1]2 "
                             "Boolean[0 3])");
}

TEST_F(MatlabRead, AnEmptyCellArrayShowsAnEmptyText)
{
    const ScdrPtr empty = bench.Read(CellValue({0, 0}, {}));
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(empty->ElementCount, 0);
    ASSERT_EQ(ChildCount(*empty), 1);
    EXPECT_EQ(DumpTree(*Children(*empty)[0]), "Character[0]''");
}

TEST_F(MatlabRead, AnUnsetCellOrFieldIsAnEmptyText)
{
    EXPECT_EQ(Dumped(CellValue({1, 2}, {fake::UnsetValue(), TextValue(u"b")})),
              "General[1 2](Character[0]'' Character[1 1]'b')");
    EXPECT_EQ(Dumped(StructValue({1, 1}, {"f"}, {fake::UnsetValue()})),
              "General[1 1 1 2](Character[1]'f' Character[0]'')");
}

TEST_F(MatlabRead, AStructureShowsNamesAndValuesInMatlabsOrder)
{
    const MatlabValue structure =
        StructValue({2, 1}, {"name", "n"},
                    {TextValue(u"x"), DoubleValue({1, 1}, {1}), TextValue(u"yy"), DoubleValue({1, 1}, {2})});
    const ScdrPtr tree = bench.Read(structure);
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(DumpTree(*tree),
              "General[2 1 2 2](Character[4]'name' Character[1 1]'x' Character[1]'n' Real[1 1]1 "
              "Character[4]'name' Character[1 2]'yy' Character[1]'n' Real[1 1]2)");
    EXPECT_EQ(tree->Flags & FlagStructure, FlagStructure);
    for (std::int64_t i = 0; i < ChildCount(*tree); ++i)
        EXPECT_EQ(Children(*tree)[i]->Flags & FlagKeptSize, i % 2 == 0 ? FlagKeptSize : 0) << i;
}

TEST_F(MatlabRead, AStructureMatrixIsNotRearranged)
{
    std::vector<MatlabValue> values;
    for (int i = 0; i < 6; ++i)
        values.push_back(DoubleValue({1, 1}, {static_cast<double>(i)}));
    const ScdrPtr tree = bench.Read(StructValue({2, 3}, {"f"}, values));
    ASSERT_NE(tree, nullptr);
    for (std::int64_t i = 0; i < 6; ++i)
        EXPECT_EQ(*static_cast<const double*>(Children(*tree)[2 * i + 1]->data), static_cast<double>(i));
}

TEST_F(MatlabRead, StructuresWithoutElementsOrFieldsHaveAPrototype)
{
    for (const MatlabValue& value : {StructValue({0, 0}, {"a", "b"}, {}), StructValue({1, 1}, {}, {})}) {
        const ScdrPtr tree = bench.Read(value);
        ASSERT_NE(tree, nullptr);
        EXPECT_EQ(tree->ElementCount, 0);
        EXPECT_EQ(tree->Rank, 4);
        EXPECT_EQ(DumpTree(*Children(*tree)[0]), "Character[0]''");
        EXPECT_NE(tree->Flags & FlagStructure, 0);
    }
}

TEST_F(MatlabRead, BytesOfFieldNamesAreSigned)
{
    const ScdrPtr tree = bench.Read(StructValue({1, 1}, {"a\xE9"}, {TextValue(u"")}));
    ASSERT_NE(tree, nullptr);
    const Scdr& name = *Children(*tree)[0];
    ASSERT_EQ(name.ElementCount, 2);
    EXPECT_EQ(static_cast<const char16_t*>(name.data)[1], u'\xFFE9');
    EXPECT_EQ(name.SimplestType, static_cast<int>(TypeCharacter));
}

TEST_F(MatlabRead, RefusesWhatIsNotFinite)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    constexpr auto domain = VTERROR_CODE::DomainError;
    EXPECT_EQ(bench.Refusal(DoubleValue({1, 2}, {1, nan}), domain), u"Array contains a NAN value");
    EXPECT_EQ(bench.Refusal(DoubleValue({1, 2}, {infinity, 1}), domain), u"Array contains an infinite value");
    EXPECT_EQ(bench.Refusal(DoubleValue({1, 2}, {-infinity, nan}), domain),
              u"Array contains an infinite value");
    EXPECT_EQ(bench.Refusal(DoubleValue({2, 2}, {1, nan, infinity, 1}), domain),
              u"Array contains a NAN value");
    EXPECT_EQ(bench.Refusal(Row<float>(Class::Single, {1, static_cast<float>(nan)}), domain),
              u"Array contains a NAN value");
    EXPECT_EQ(bench.Refusal(Row<float>(Class::Single, {static_cast<float>(-infinity)}), domain),
              u"Array contains an infinite value");
    EXPECT_EQ(bench.Refusal(CellValue({1, 1}, {DoubleValue({1, 1}, {nan})}), domain),
              u"Array contains a NAN value");
}

TEST_F(MatlabRead, FindsTheOneSpecialNumberAnywhereInALargeArray)
{
    for (const std::vector<std::size_t>& lengths : {std::vector<std::size_t>{1, 1000}, {40, 25}, {25, 40}}) {
        for (const std::size_t place : {0u, 1u, 511u, 998u, 999u}) {
            std::vector<double> items(1000, 1e308);
            items[place] = -std::numeric_limits<double>::infinity();
            EXPECT_EQ(bench.Refusal(DoubleValue(lengths, items), VTERROR_CODE::DomainError),
                      u"Array contains an infinite value");
        }
    }
    EXPECT_NE(bench.Read(DoubleValue({1, 2}, {std::numeric_limits<double>::max(), -5e-324})), nullptr);
}

TEST_F(MatlabRead, RefusesClassesWithTheirOwnWords)
{
    const auto refusal = [this](int classId) {
        MatlabValue value = fake::PlainValue(Class::Unknown, {0, 0}, nullptr, 0);
        value.classId = classId;
        return bench.Refusal(value, VTERROR_CODE::DomainError);
    };
    EXPECT_EQ(refusal(Class::Unknown), u"Array contains data of an unknown class");
    EXPECT_EQ(refusal(Class::Void), u"Array contains reserved class");
    EXPECT_EQ(refusal(Class::Uint64), u"Array contains an unsigned 64 bit integer");
    EXPECT_EQ(refusal(Class::FunctionHandle), u"Array contains a function handle");
    EXPECT_EQ(refusal(Class::Opaque), u"Array contains opaque data");
    EXPECT_EQ(refusal(Class::Object), u"Array contains an object");
}

TEST_F(MatlabRead, NamesAClassThatItDoesNotKnow)
{
    MatlabValue value = fake::PlainValue(Class::Unknown, {0, 0}, nullptr, 0);
    value.classId = 42;
    value.className = "string";
    EXPECT_EQ(bench.Refusal(value, VTERROR_CODE::DomainError), u"Array contains data of class string");
    value.className.assign(5000, 'x');
    const std::u16string cut = bench.Refusal(value, VTERROR_CODE::DomainError);
    EXPECT_EQ(cut.size(), 1023u);
    EXPECT_EQ(cut.substr(0, 30), u"Array contains data of class x");
    EXPECT_EQ(cut.back(), u'x');
}

TEST_F(MatlabRead, RefusesSparseArraysBeforeTheirClass)
{
    MatlabValue sparse = DoubleValue({1, 1}, {1});
    sparse.sparse = true;
    EXPECT_EQ(bench.Refusal(sparse, VTERROR_CODE::DomainError), u"Array is sparse");
    MatlabValue sparseLogical = LogicalValue({1, 1}, {1});
    sparseLogical.sparse = true;
    EXPECT_EQ(bench.Refusal(sparseLogical, VTERROR_CODE::DomainError), u"Array is sparse");
}

TEST_F(MatlabRead, RefusesARankAbove256)
{
    MatlabValue deep = DoubleValue(std::vector<std::size_t>(257, 1), {1});
    EXPECT_EQ(bench.Refusal(deep, VTERROR_CODE::RankError), u"");
    deep.sparse = true; // the rank is looked at first
    EXPECT_EQ(bench.Refusal(deep, VTERROR_CODE::RankError), u"");
    const ScdrPtr highest = bench.Read(DoubleValue(std::vector<std::size_t>(256, 1), {1}));
    ASSERT_NE(highest, nullptr);
    EXPECT_EQ(highest->Rank, 256);
    const ScdrPtr structure =
        bench.Read(StructValue(std::vector<std::size_t>(256, 1), {"f"}, {TextValue(u"")}));
    ASSERT_NE(structure, nullptr);
    EXPECT_EQ(structure->Rank, 258);
}

MatlabValue NestedDeep(int depth)
{
    MatlabValue value = TextValue(u"x");
    for (int i = 1; i < depth; ++i) {
        std::vector<MatlabValue> items;
        items.push_back(std::move(value));
        value =
            i % 2 == 0 ? CellValue({1, 1}, std::move(items)) : StructValue({1, 1}, {"f"}, std::move(items));
    }
    return value;
}

TEST_F(MatlabRead, RefusesNestingThatIsTooDeep)
{
    EXPECT_NE(bench.Read(NestedDeep(1000)), nullptr);
    EXPECT_EQ(bench.Refusal(NestedDeep(1001), VTERROR_CODE::SystemLimit), u"");
    EXPECT_EQ(bench.Refusal(NestedDeep(3000), VTERROR_CODE::SystemLimit), u"");
}

TEST_F(MatlabRead, RefusesAFailingChildAndKeepsNothing)
{
    constexpr auto domain = VTERROR_CODE::DomainError;
    MatlabValue handle = fake::PlainValue(Class::Unknown, {0, 0}, nullptr, 0);
    handle.classId = Class::FunctionHandle;
    EXPECT_EQ(bench.Refusal(CellValue({1, 2}, {TextValue(u"a"), handle}), domain),
              u"Array contains a function handle");
    EXPECT_EQ(bench.Refusal(StructValue({1, 1}, {"a", "b"}, {TextValue(u"a"), handle}), domain),
              u"Array contains a function handle");
}

TEST_F(MatlabRead, NoArrayIsAnError)
{
    EXPECT_EQ(ObjectToScdr(&bench.context, nullptr), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::SystemError);
}

TEST_F(MatlabRead, OutOfMemoryLeavesNothingBehind)
{
    const MatlabValue value = CellValue(
        {2, 2}, {TextValue(u"text that is longer than a node holds itself"),
                 DoubleValue({2, 3, 2}, std::vector<double>(12, 1.5)),
                 StructValue({1, 2}, {"one", "two"},
                             {TextValue(u"a"), TextValue(u"b"), TextValue(u"c"), CellValue({0, 0}, {})}),
                 LogicalValue({20, 30}, std::vector<int>(600, 1))});
    mxArray* array = bench.matlab.Make(value);
    const int faults = test::SweepAllocationFaults([&] {
        const ScdrPtr tree(ObjectToScdr(&bench.context, array));
        if (tree == nullptr) {
            EXPECT_EQ(bench.Code(), VTERROR_CODE::OutOfMemory);
        }
    });
    EXPECT_GT(faults, 20);
    bench.matlab.Destroy(array);
}

TEST_F(MatlabRead, NamesTheAxesInTheirOrder)
{
    const ScdrPtr tree = bench.Read(DoubleValue({2, 2, 2}, std::vector<double>(8, 1)));
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(std::u16string(tree->extra->AxisNames[0]), u"Axis name 1");
    EXPECT_EQ(std::u16string(tree->extra->AxisNames[2]), u"Axis name 3");
}

// A first cell that takes longer to be had than the editor may be silent.
MxArray* (*g_getCell)(const MxArray*, std::size_t) = nullptr;

MxArray* GetCellSlowly(const MxArray* array, std::size_t index)
{
    if (index == 0) std::this_thread::sleep_for(std::chrono::milliseconds(150));
    return g_getCell(array, index);
}

TEST_F(MatlabRead, TheWindowAnswersMeanwhileAndClosingItIsNoError)
{
    test::CloseTheWindow(bench.context);
    g_getCell = std::exchange(bench.host.functions.mxGetCell, &GetCellSlowly);
    const ScdrPtr tree = bench.Read(CellValue({1, 5000}, std::vector<MatlabValue>(5000, TextValue(u"a"))));
    EXPECT_NE(tree, nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
    EXPECT_GE(test::g_closingWindowAsked, 1);
}

} // namespace
} // namespace vantrel::matlab
