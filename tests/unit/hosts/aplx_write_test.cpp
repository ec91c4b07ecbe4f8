#include "aplx_fixture.h"

#include <cmath>
#include <limits>
#include <random>

namespace vantrel {
namespace {

using fake::AplxRecord;

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

class AplxWrite : public AplxTest {
protected:
    // The code with which a tree is refused; NoError when it is not.
    VTERROR_CODE CodeOf(const ScdrPtr& tree)
    {
        const bool refused = bench.WriteRecord(*tree).empty();
        EXPECT_EQ(refused, HasError(&bench.context));
        return bench.TakeError();
    }
    int TypeOf(const ScdrPtr& tree)
    {
        const AplxRecord record = bench.WriteRecord(*tree);
        return record.empty() ? 0 : record[12];
    }
    ScdrPtr Deep(int levels)
    {
        ScdrPtr tree = test::Integers(&bench.context, {}, {7});
        for (int level = 1; level < levels; ++level)
            tree = test::Nested(&bench.context, {1}, test::Items(std::move(tree)));
        return tree;
    }
    EditContext* Context() { return &bench.context; }
};

AplxRecord Header(int type, const fake::Shape& shape, const std::vector<std::uint8_t>& data)
{
    return With(With(fake::RawAplxRecord(type, shape, data), 0, std::uint32_t{0}), 13, std::uint8_t{0});
}

TEST_F(AplxWrite, WritesTheExactBytesOfEachType)
{
    EXPECT_EQ(bench.WriteRecord(*test::Integers(Context(), {}, {0})), Header(7, {}, BytesOf({0})));
    EXPECT_EQ(bench.WriteRecord(*test::Integers(Context(), {2}, {1, -2})), Header(7, {2}, BytesOf({1, -2})));
    EXPECT_EQ(bench.WriteRecord(*test::Reals(Context(), {1}, {1.0})),
              Header(9, {1}, BytesOf({0x3FF0000000000000})));
    EXPECT_EQ(bench.WriteRecord(*test::Characters(Context(), u"a⍴")), Header(11, {2}, {'a', 0x87}));
    EXPECT_EQ(bench.WriteRecord(*test::Booleans(Context(), {3}, {1, 0, 1})),
              Header(5, {3}, {0, 0, 0, 0, 0, 0, 0, 0xA0}));
    EXPECT_EQ(bench.WriteRecord(*test::Characters(Context(), {0, 3}, u"")), Header(11, {0, 3}, {}));
}

TEST_F(AplxWrite, WritesItemsBehindTheirOffsets)
{
    const AplxRecord text = Header(11, {3}, {'a', 'b', 'c'});
    const AplxRecord number = Header(7, {}, BytesOf({5}));
    std::vector<std::uint8_t> data = BytesOf({40, 40 + static_cast<std::int64_t>(text.size())});
    data.insert(data.end(), text.begin(), text.end());
    data.insert(data.end(), number.begin(), number.end());
    const ScdrPtr nested = test::Nested(
        Context(), {2}, test::Items(test::Characters(Context(), u"abc"), test::Integers(Context(), {}, {5})));
    EXPECT_EQ(bench.WriteRecord(*nested), Header(15, {2}, data));
}

TEST_F(AplxWrite, WritesAPrototypeInPlaceOfTheItems)
{
    const ScdrPtr empty = test::Nested(Context(), {0}, test::Items(test::Characters(Context(), u"  ")));
    EXPECT_EQ(bench.WriteRecord(*empty), Header(15, {0}, Header(11, {2}, {' ', ' '})));
}

TEST_F(AplxWrite, KeepsTheStorageOfEverySimpleType)
{
    EXPECT_EQ(TypeOf(test::Booleans(Context(), {2}, {0, 1})), 5);
    EXPECT_EQ(TypeOf(test::Integers(Context(), {2}, {0, 1})), 7);
    EXPECT_EQ(TypeOf(test::Reals(Context(), {2}, {0, 1})), 9);
    EXPECT_EQ(TypeOf(test::Reals(Context(), {0}, {})), 9);
}

TEST_F(AplxWrite, WritesComplexNumbersWithoutImaginaryPartsAsTheNarrowestRealOnes)
{
    const auto write = [&](const std::vector<double>& pairs) {
        const auto count = static_cast<std::int64_t>(pairs.size() / 2);
        return bench.WriteRecord(*test::Complexes(Context(), {count}, pairs));
    };
    EXPECT_EQ(write({}), Header(5, {0}, {}));
    EXPECT_EQ(write({1, 0, 0, -0.0, 1, 0}), Header(5, {3}, {0, 0, 0, 0, 0, 0, 0, 0xA0}));
    EXPECT_EQ(write({1, 0, -2, 0}), Header(7, {2}, BytesOf({1, -2})));
    EXPECT_EQ(write({2147483647, 0, -2147483648.0, 0}), Header(7, {2}, BytesOf({2147483647, -2147483648})));
    EXPECT_EQ(write({2147483648.0, 0})[12], 9);
    EXPECT_EQ(write({2.5, 0, 3, 0})[12], 9);
    EXPECT_EQ(write({NotANumber, 0})[12], 9);
    EXPECT_EQ(write({2.5, 0}), Header(9, {1}, BytesOf({0x4004000000000000})));
    std::vector<double> many(2 * 130);
    for (std::size_t i = 0; i < 130; ++i)
        many[2 * i] = i % 7 == 0 ? 1 : 0;
    const fake::Array bits = bench.Write(*test::Complexes(Context(), {130}, many));
    for (std::size_t i = 0; i < 130; ++i)
        EXPECT_EQ(fake::RealAt(bits, i), many[2 * i]);
}

TEST_F(AplxWrite, RefusesWhatAplxDoesNotHave)
{
    EXPECT_EQ(CodeOf(test::Complexes(Context(), {2}, {1, 0, 2, 1})), VTERROR_CODE::DomainError);
    EXPECT_EQ(CodeOf(test::Complexes(Context(), {1}, {1, NotANumber})), VTERROR_CODE::DomainError);
    EXPECT_EQ(CodeOf(test::Characters(Context(), u"aЖ")), VTERROR_CODE::DomainError);
    EXPECT_EQ(CodeOf(test::Characters(Context(), u"\xD800")), VTERROR_CODE::DomainError);
    const std::int64_t one = 1;
    EXPECT_EQ(CodeOf(AllocateScdr(Context(), nullptr, TypeDecimal, 1, &one, true)),
              VTERROR_CODE::DomainError);
    EXPECT_EQ(CodeOf(test::Nested(Context(), {1}, test::Items(test::Characters(Context(), u"Ж")))),
              VTERROR_CODE::DomainError);
    EXPECT_EQ(aplx::ScdrToObject(Context(), nullptr), nullptr);
    EXPECT_EQ(bench.TakeError(), VTERROR_CODE::SystemError);
}

TEST_F(AplxWrite, RefusesMoreThan63Axes)
{
    EXPECT_EQ(CodeOf(test::Integers(Context(), test::Shape(63, 1), {1})), VTERROR_CODE::NoError);
    EXPECT_EQ(CodeOf(test::Integers(Context(), test::Shape(64, 1), {1})), VTERROR_CODE::RankError);
}

TEST_F(AplxWrite, RefusesNestingBeyondTheLimit)
{
    EXPECT_EQ(CodeOf(Deep(1000)), VTERROR_CODE::NoError);
    EXPECT_EQ(CodeOf(Deep(1001)), VTERROR_CODE::SystemLimit);
}

TEST_F(AplxWrite, KeepsTheRecordWrittenBeforeWhenOneIsRefused)
{
    ASSERT_NE(aplx::ScdrToObject(Context(), test::Characters(Context(), u"first").get()), nullptr);
    const std::uint8_t* before = bench.host.running->output.get();
    EXPECT_EQ(CodeOf(test::Characters(Context(), u"Ж")), VTERROR_CODE::DomainError);
    EXPECT_EQ(bench.host.running->output.get(), before);
}

// Decimals and characters outside the table have no way through a record.
bool IsWritable(const Scdr& tree)
{
    if (tree.Type == TypeDecimal) return false;
    if (tree.Type == TypeComplex) {
        const auto* pairs = static_cast<const double*>(tree.data);
        for (std::int64_t i = 0; i < tree.ElementCount; ++i) {
            if (!(pairs[2 * i + 1] == 0)) return false;
        }
    }
    if (tree.Type == TypeCharacter) {
        const auto* units = static_cast<const char16_t*>(tree.data);
        for (std::int64_t i = 0; i < tree.ElementCount; ++i) {
            if (fake::AplxCharacters().find(units[i]) == std::u16string_view::npos) return false;
        }
    }
    for (std::int64_t i = 0; i < ChildCount(tree); ++i) {
        if (!IsWritable(*Children(tree)[i])) return false;
    }
    return true;
}

bool HasComplex(const Scdr& tree)
{
    if (tree.Type == TypeComplex) return true;
    for (std::int64_t i = 0; i < ChildCount(tree); ++i) {
        if (HasComplex(*Children(tree)[i])) return true;
    }
    return false;
}

// Structures are another interpreter's.
void ForgetStructure(Scdr& tree)
{
    tree.Flags = static_cast<std::uint8_t>(tree.Flags & ~(FlagStructure | FlagKeptSize));
    for (std::int64_t i = 0; i < ChildCount(tree); ++i)
        ForgetStructure(*Children(tree)[i]);
}

TEST_F(AplxWrite, RandomTreesComeBackAsTheyWere)
{
    std::mt19937 random(11);
    test::RandomTreeLimits limits;
    limits.decimals = false;
    limits.axisNames = false;
    int written = 0;
    int refused = 0;
    for (int round = 0; round < 2000; ++round) {
        limits.deepest = 1 + round % 5;
        const ScdrPtr tree = test::RandomTree(Context(), random, limits);
        const AplxRecord record = bench.WriteRecord(*tree);
        EXPECT_EQ(record.empty(), !IsWritable(*tree)) << test::DumpTree(*tree);
        if (record.empty()) {
            EXPECT_EQ(bench.TakeError(), VTERROR_CODE::DomainError);
            ++refused;
            continue;
        }
        std::vector<std::string> complaints;
        fake::ArrayOfAplxRecord(record, complaints);
        EXPECT_TRUE(complaints.empty()) << complaints.front();
        const ScdrPtr back = bench.Read(record);
        ASSERT_NE(back, nullptr);
        EXPECT_TRUE(test::IsSoundTree(*back));
        if (HasComplex(*tree)) continue;
        ForgetStructure(*tree);
        EXPECT_TRUE(test::SameTree(*tree, *back));
        ++written;
    }
    EXPECT_GT(written, 100);
    EXPECT_GT(refused, 100);
}

TEST_F(AplxWrite, LeavesNothingBehindWhenMemoryFails)
{
    const ScdrPtr tree = test::Nested(
        Context(), {2}, test::Items(test::Characters(Context(), u"abc"), test::Reals(Context(), {1}, {2.5})));
    const int faults = test::SweepAllocationFaults([&] {
        const bool written = aplx::ScdrToObject(Context(), tree.get()) != nullptr;
        bench.host.running->output.reset();
        EXPECT_EQ(bench.TakeError(), written ? VTERROR_CODE::NoError : VTERROR_CODE::OutOfMemory);
    });
    EXPECT_GT(faults, 2);
}

} // namespace
} // namespace vantrel
