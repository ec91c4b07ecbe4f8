#include "aplx_fixture.h"

#include <algorithm>
#include <limits>

namespace vantrel {
namespace {

using fake::AplxRecord;
using fake::RawAplxRecord;
using fake::AplxType::Boolean;
using fake::AplxType::Character;
using fake::AplxType::Integer;
using fake::AplxType::Nested;
using fake::AplxType::Refused;

class AplxRead : public AplxTest {
protected:
    std::string Dump(const AplxRecord& record)
    {
        const ScdrPtr tree = bench.Read(record);
        if (tree == nullptr) return "refused";
        EXPECT_TRUE(test::IsSoundTree(*tree));
        return test::DumpTree(*tree);
    }
    std::string Dump(const fake::Array& array) { return Dump(fake::MakeAplxRecord(array)); }
};

AplxRecord Scalar()
{
    return RawAplxRecord(Integer, {}, BytesOf({7}));
}
AplxRecord Joined(AplxRecord first, const AplxRecord& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}
// A nested vector around item records; the offsets are those of items back to back unless given.
AplxRecord NestedRecord(const std::vector<AplxRecord>& items, std::vector<std::int64_t> offsets = {})
{
    const auto count = static_cast<std::int64_t>(offsets.empty() ? items.size() : offsets.size());
    std::vector<std::uint8_t> bytes;
    std::vector<std::int64_t> own;
    for (const AplxRecord& item : items) {
        own.push_back(24 + 8 * count + static_cast<std::int64_t>(bytes.size()));
        bytes.insert(bytes.end(), item.begin(), item.end());
    }
    return RawAplxRecord(Nested, {count}, Joined(BytesOf(offsets.empty() ? own : offsets), bytes));
}
AplxRecord Deep(int levels)
{
    AplxRecord record = Scalar();
    for (int level = 1; level < levels; ++level)
        record = NestedRecord({record});
    return record;
}

TEST_F(AplxRead, ReadsEveryType)
{
    EXPECT_EQ(Dump(fake::BooleanArray({3}, {1, 0, 1})), "Boolean[3]1 0 1");
    EXPECT_EQ(Dump(fake::IntegerArray(fake::ElementType::Int32, {2, 2}, {1, -2, 3, 4})),
              "Integer[2 2]1 -2 3 4");
    EXPECT_EQ(Dump(fake::FloatArray({2}, {1.5, -2})), "Real[2]1.5 -2");
    EXPECT_EQ(Dump(fake::TextOf({3}, u"abc")), "Character[3]'abc'");
    EXPECT_EQ(Dump(fake::NestedArray({2}, {fake::Text(u"ab"), fake::IntegerArray(4, {}, {5})})),
              "General[2](Character[2]'ab' Integer[]5)");
}

TEST_F(AplxRead, KeepsEveryBitOfANumber)
{
    const std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(Dump(RawAplxRecord(Integer, {2}, BytesOf({lowest, 9007199254740993}))),
              "Integer[2]-9223372036854775808 9007199254740993");
}

TEST_F(AplxRead, TakesBitsFromTheTopOfEachWord)
{
    for (const std::size_t count : {1u, 7u, 8u, 9u, 63u, 64u, 65u, 127u, 128u, 200u}) {
        std::vector<int> bits(count);
        for (std::size_t i = 0; i < count; ++i)
            bits[i] = i % 3 == 0 || i == count - 1;
        const ScdrPtr tree = bench.Read(fake::BooleanArray({static_cast<std::int64_t>(count)}, bits));
        ASSERT_NE(tree, nullptr);
        for (std::size_t i = 0; i < count; ++i)
            EXPECT_EQ(GetBit(tree->data, static_cast<std::int64_t>(i)), bits[i] != 0) << i << " of " << count;
    }
}

TEST_F(AplxRead, DropsBitsBehindTheLastItem)
{
    const ScdrPtr tree = bench.Read(RawAplxRecord(Boolean, {9}, BytesOf({-1})));
    ASSERT_NE(tree, nullptr);
    const auto* bytes = static_cast<const std::uint8_t*>(tree->data);
    EXPECT_EQ(bytes[0], 0xFF);
    EXPECT_EQ(bytes[1], 0x80);
}

TEST_F(AplxRead, TranslatesEveryCharacter)
{
    std::vector<std::uint8_t> all(256);
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i] = static_cast<std::uint8_t>(i);
    const ScdrPtr tree = bench.Read(RawAplxRecord(Character, {256}, all));
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(std::u16string_view(static_cast<const char16_t*>(tree->data), 256), fake::AplxCharacters());
    EXPECT_TRUE(std::equal(fake::AplxCharacters().begin(), fake::AplxCharacters().end(),
                           bench.host.langEnv.CharacterTable));
}

TEST_F(AplxRead, ReadsScalarsAndEmptyArrays)
{
    EXPECT_EQ(Dump(fake::IntegerArray(4, {}, {5})), "Integer[]5");
    EXPECT_EQ(Dump(fake::TextOf({}, u"z")), "Character[]'z'");
    for (const int type : {Boolean, Integer, fake::AplxType::Float, Character})
        EXPECT_EQ(bench.CodeOf(RawAplxRecord(type, {0}, {})), VTERROR_CODE::NoError) << type;
    EXPECT_EQ(Dump(RawAplxRecord(Character, {0, 3}, {})), "Character[0 3]''");
}

TEST_F(AplxRead, GivesAnEmptyNestedArrayItsPrototype)
{
    const fake::Array prototype = fake::NestedArray({2}, {fake::IntegerArray(4, {}, {0}), fake::Text(u"  ")});
    const ScdrPtr tree = bench.Read(fake::EmptyNestedArray({0}, prototype));
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(tree->ElementCount, 0);
    EXPECT_EQ(test::DumpTree(*Children(*tree)[0]), "General[2](Integer[]0 Character[2]'  ')");
    EXPECT_EQ(Children(*tree)[0]->parent, tree.get());
}

TEST_F(AplxRead, SetsTheSimplestType)
{
    EXPECT_EQ(bench.Read(fake::FloatArray({2}, {1, 0}))->SimplestType,
              static_cast<std::int32_t>(TypeBoolean));
    EXPECT_EQ(bench.Read(fake::FloatArray({1}, {2.5}))->SimplestType, static_cast<std::int32_t>(TypeReal));
    const ScdrPtr nested = bench.Read(fake::NestedArray({1}, {fake::FloatArray({1}, {7})}));
    EXPECT_EQ(Children(*nested)[0]->SimplestType, static_cast<std::int32_t>(TypeInteger));
}

TEST_F(AplxRead, IgnoresTheInterpretersOwnBytes)
{
    const AplxRecord record = Scalar();
    EXPECT_EQ(Dump(With(With(record, 0, std::uint32_t{0xFFFFFFFF}), 13, std::uint8_t{0xFF})), "Integer[]7");
    EXPECT_EQ(Dump(With(record, 14, std::uint16_t{3})), "Integer[]7"); // below one axis
}

TEST_F(AplxRead, ReadsItemsInAnyOrderAtAnyAlignmentWithGaps)
{
    const AplxRecord text = RawAplxRecord(Character, {3}, {'a', 'b', 'c'});
    EXPECT_EQ(Dump(NestedRecord({text, Scalar()})), "General[2](Character[3]'abc' Integer[]7)");
    EXPECT_EQ(Dump(NestedRecord({text, Scalar()}, {40 + 27, 40})),
              "General[2](Integer[]7 Character[3]'abc')");
    EXPECT_EQ(Dump(Joined(WithLength(Scalar(), 24 + 5), {1, 2, 3, 4, 5})), "Integer[]7");
}

TEST_F(AplxRead, RefusesTheRefusedTypeBeforeAnythingIsMade)
{
    const AplxRecord refused = RawAplxRecord(Refused, {}, BytesOf({1}));
    for (const AplxRecord& record : {refused, NestedRecord({Scalar(), refused}), NestedRecord({refused})}) {
        AplxRecord bytes = record;
        ArmAllocationFault(1, true);
        EXPECT_EQ(aplx::ObjectToScdr(&bench.context, bytes.data()), nullptr);
        EXPECT_EQ(DisarmAllocationFault(), 0);
        EXPECT_EQ(bench.TakeError(), VTERROR_CODE::ImplicitComparisonTolerance);
    }
}

TEST_F(AplxRead, RefusesARankAbove256WhateverStandsBehindIt)
{
    EXPECT_EQ(bench.CodeOf(With(Scalar(), 14, std::uint16_t{257 * 4})), VTERROR_CODE::RankError);
    EXPECT_EQ(bench.CodeOf(With(Scalar(), 14, std::uint16_t{0xFFFF})), VTERROR_CODE::RankError);
    EXPECT_EQ(bench.CodeOf(RawAplxRecord(Integer, fake::Shape(257, 1), BytesOf({1}))),
              VTERROR_CODE::RankError);
    const ScdrPtr highest = bench.Read(RawAplxRecord(Integer, fake::Shape(256, 1), BytesOf({1})));
    ASSERT_NE(highest, nullptr);
    EXPECT_EQ(highest->Rank, 256);
}

TEST_F(AplxRead, GivesTheFirstRefusalInItemOrder)
{
    const AplxRecord refused = RawAplxRecord(Refused, {}, {});
    const AplxRecord tooHigh = With(Scalar(), 14, std::uint16_t{257 * 4});
    EXPECT_EQ(bench.CodeOf(NestedRecord({Scalar(), refused, tooHigh})),
              VTERROR_CODE::ImplicitComparisonTolerance);
    EXPECT_EQ(bench.CodeOf(NestedRecord({tooHigh, refused})), VTERROR_CODE::RankError);
    EXPECT_EQ(bench.CodeOf(NestedRecord({NestedRecord({Scalar(), refused}), tooHigh})),
              VTERROR_CODE::ImplicitComparisonTolerance);
}

TEST_F(AplxRead, RefusesUnknownTypes)
{
    for (int type = 0; type < 256; ++type) {
        const bool known = type == 5 || type == 7 || type == 9 || type == 11 || type == 15;
        if (known || type == Refused) continue;
        EXPECT_EQ(bench.CodeOf(RawAplxRecord(type, {}, BytesOf({1}))), VTERROR_CODE::DomainError) << type;
    }
    EXPECT_EQ(aplx::ObjectToScdr(&bench.context, nullptr), nullptr);
    EXPECT_EQ(bench.TakeError(), VTERROR_CODE::DomainError);
}

TEST_F(AplxRead, RefusesALengthThatIsNotTheRecords)
{
    for (const std::int64_t length : {std::int64_t{0}, std::int64_t{15}, std::int64_t{16}, std::int64_t{23},
                                      std::int64_t{-1}, std::numeric_limits<std::int64_t>::min()})
        EXPECT_EQ(bench.CodeOf(WithLength(Scalar(), length)), VTERROR_CODE::DomainError) << length;
    const AplxRecord vector = RawAplxRecord(Integer, {2}, BytesOf({1, 2}));
    for (std::int64_t length = 0; length < static_cast<std::int64_t>(vector.size()); ++length)
        EXPECT_EQ(bench.CodeOf(WithLength(vector, length)), VTERROR_CODE::DomainError) << length;
}

TEST_F(AplxRead, RefusesShapesThatDoNotFitTheItems)
{
    const std::int64_t most = std::numeric_limits<std::int64_t>::max();
    for (const int type : {Boolean, Integer, fake::AplxType::Float, Character, Nested}) {
        const std::vector<std::uint8_t> data = BytesOf({0, 0});
        for (const fake::Shape& shape : {fake::Shape{-1}, fake::Shape{most}, fake::Shape{most, most},
                                         fake::Shape{most, most, most, most}, fake::Shape{129},
                                         fake::Shape{std::int64_t{1} << 61}, fake::Shape{3, most}})
            EXPECT_EQ(bench.CodeOf(RawAplxRecord(type, shape, data)), VTERROR_CODE::DomainError)
                << type << " " << shape[0];
    }
    EXPECT_EQ(bench.CodeOf(RawAplxRecord(Integer, {0, -1}, {})), VTERROR_CODE::DomainError);
    EXPECT_EQ(bench.CodeOf(With(Scalar(), 14, std::uint16_t{2 * 4})), VTERROR_CODE::DomainError);
}

TEST_F(AplxRead, RefusesOffsetsThatLeadOutOfTheItems)
{
    const std::int64_t most = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t offset : {std::int64_t{0}, std::int64_t{8}, std::int64_t{16}, std::int64_t{31},
                                      std::int64_t{33}, std::int64_t{56}, std::int64_t{57}, std::int64_t{-24},
                                      most, std::numeric_limits<std::int64_t>::min()})
        EXPECT_EQ(bench.CodeOf(NestedRecord({Scalar()}, {offset})), VTERROR_CODE::DomainError) << offset;
    EXPECT_EQ(bench.CodeOf(NestedRecord({Scalar()}, {32})), VTERROR_CODE::NoError);
}

TEST_F(AplxRead, RefusesItemsThatReachOverTheirArray)
{
    EXPECT_EQ(bench.CodeOf(NestedRecord({WithLength(Scalar(), 25)})), VTERROR_CODE::DomainError);
    // Inside the outer array but over the end of the inner one.
    const AplxRecord inner = WithLength(NestedRecord({Scalar()}), 32 + 20);
    EXPECT_EQ(bench.CodeOf(NestedRecord({inner, Scalar()})), VTERROR_CODE::DomainError);
}

TEST_F(AplxRead, RefusesItemsThatShareBytes)
{
    EXPECT_EQ(bench.CodeOf(NestedRecord({Scalar()}, {40, 40})), VTERROR_CODE::DomainError);
    // Each level twice the one below: 2 to the 40th items in 2 kilobytes.
    AplxRecord doubled = Scalar();
    for (int level = 0; level < 40; ++level)
        doubled = NestedRecord({doubled}, {40, 40});
    EXPECT_EQ(bench.CodeOf(doubled), VTERROR_CODE::DomainError);
}

TEST_F(AplxRead, RefusesAMissingPrototype)
{
    EXPECT_EQ(bench.CodeOf(RawAplxRecord(Nested, {0}, {})), VTERROR_CODE::DomainError);
    EXPECT_EQ(bench.CodeOf(RawAplxRecord(Nested, {0}, std::vector<std::uint8_t>(15))),
              VTERROR_CODE::DomainError);
}

TEST_F(AplxRead, RefusesNestingBeyondTheLimit)
{
    EXPECT_EQ(bench.CodeOf(Deep(1000)), VTERROR_CODE::NoError);
    EXPECT_EQ(bench.CodeOf(Deep(1001)), VTERROR_CODE::SystemLimit);
    EXPECT_EQ(bench.CodeOf(Deep(5000)), VTERROR_CODE::SystemLimit);
}

TEST_F(AplxRead, RefusesEveryTruncationOfANestedRecord)
{
    const AplxRecord whole = fake::MakeAplxRecord(fake::NestedArray(
        {2}, {fake::NestedArray({1}, {fake::Text(u"abc")}), fake::EmptyNestedArray({0}, fake::Text(u"x"))}));
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_NE(bench.CodeOf(WithLength(whole, static_cast<std::int64_t>(length))), VTERROR_CODE::NoError);
}

TEST_F(AplxRead, GivesUpWhenTheUserInterrupts)
{
    const fake::Array items = fake::NestedArray({2000}, std::vector<fake::Array>(2000, fake::Text(u"x")));
    bench.context.isInterruptOrClosePending = [](EditContext*) { return 1; };
    EXPECT_EQ(bench.CodeOf(fake::MakeAplxRecord(items)), VTERROR_CODE::Interrupt);
    bench.context.isInterruptOrClosePending = [](EditContext*) { return 0; };
    EXPECT_EQ(bench.CodeOf(fake::MakeAplxRecord(items)), VTERROR_CODE::NoError);
}

TEST_F(AplxRead, LeavesNothingBehindWhenMemoryFails)
{
    const fake::Array nested = fake::NestedArray(
        {2, 2}, {fake::Text(u"a long text that does not fit into a node itself"),
                 fake::EmptyNestedArray({0}, fake::FloatArray({1}, {0})), fake::BooleanArray({3}, {1, 1, 0}),
                 fake::IntegerArray(4, {1, 2, 2}, {1, 2, 3, 4})});
    AplxRecord record = fake::MakeAplxRecord(nested);
    const int faults = test::SweepAllocationFaults([&] {
        const ScdrPtr tree(aplx::ObjectToScdr(&bench.context, record.data()));
        const VTERROR_CODE code = bench.TakeError();
        EXPECT_EQ(tree == nullptr, code == VTERROR_CODE::OutOfMemory);
    });
    EXPECT_GT(faults, 4);
}

} // namespace
} // namespace vantrel
