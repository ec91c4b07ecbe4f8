#include "model/rebuild.h"

#include <gtest/gtest.h>

#include <string_view>

#include "unit/support/test_context.h"
#include "unit/support/trees.h"

namespace vantrel {
namespace {

using namespace test;

class Rebuild : public ::testing::Test {
protected:
    // A node whose records are the lines of `text`, whatever its data says.
    ScdrPtr WithText(std::uint32_t type, const Shape& shape, std::u16string_view text)
    {
        ScdrPtr node =
            AllocateScdr(context, nullptr, type, static_cast<std::int32_t>(shape.size()), shape.data(), true);
        EXPECT_TRUE(StringToRecords(context, text.data(), static_cast<std::int64_t>(text.size()),
                                    node->records, false));
        return node;
    }
    std::string Build(const Scdr& node, bool numeric)
    {
        const ScdrPtr built = BuildScdrFromRecords(context, node, numeric);
        if (built == nullptr) return "null";
        EXPECT_TRUE(IsSoundTree(*built));
        EXPECT_EQ(built->parent, nullptr);
        simplest = built->SimplestType;
        return DumpTree(*built);
    }
    std::string Build(std::uint32_t type, const Shape& shape, std::u16string_view text, bool numeric)
    {
        return Build(*WithText(type, shape, text), numeric);
    }
    TestContext context;
    std::int32_t simplest = 0;
};

TEST_F(Rebuild, FromUnicodeIsACharacterVector)
{
    const ScdrPtr vector = ScdrFromUnicode(context, u"abc", 3);
    EXPECT_EQ(DumpTree(*vector), "Character[3]'abc'");
    EXPECT_EQ(vector->SimplestType, 11);
    EXPECT_EQ(DumpTree(*ScdrFromUnicode(context, u"", 0)), "Character[0]''");
}

TEST_F(Rebuild, CharacterScalar)
{
    EXPECT_EQ(Build(TypeCharacter, {}, u"x", false), "Character[]'x'");
    EXPECT_EQ(simplest, 11);
    EXPECT_TRUE(context.calls.empty());
}

TEST_F(Rebuild, EmptyCharacterScalarIsABlank)
{
    EXPECT_EQ(Build(TypeCharacter, {}, u"", false), "Character[]' '");
    EXPECT_EQ(Build(TypeNested, {0}, u"", false), "Character[0]''");
}

TEST_F(Rebuild, EmptyNumericScalarIsZero)
{
    EXPECT_EQ(Build(TypeReal, {}, u"", true), "Integer[]0");
    EXPECT_EQ(simplest, 21);
    ASSERT_EQ(context.calls.size(), 1u);
    EXPECT_EQ(context.calls[0].primitive, 4608);
    EXPECT_EQ(context.calls[0].argument, "Character[1]'0'");
}

TEST_F(Rebuild, NumericScalar)
{
    EXPECT_EQ(Build(TypeInteger, {}, u"12", true), "Integer[]12");
    EXPECT_EQ(Build(TypeInteger, {}, u"2.5", true), "Real[]2.5");
}

TEST_F(Rebuild, SeveralNumbersMakeAVectorOfAScalar)
{
    EXPECT_EQ(Build(TypeInteger, {}, u"1 2", true), "Integer[2]1 2");
}

TEST_F(Rebuild, ConversionWithoutElementsMakesTheScalarZero)
{
    EXPECT_EQ(Build(TypeCharacter, {}, u"", true), "Boolean[]0");
    EXPECT_EQ(simplest, 21);
}

TEST_F(Rebuild, OnlyTheFirstRecordCountsForAScalar)
{
    EXPECT_EQ(Build(TypeInteger, {}, u"7\n8", true), "Integer[]7");
}

TEST_F(Rebuild, TextThatIsNoNumberStaysText)
{
    EXPECT_EQ(Build(TypeInteger, {}, u"abc", true), "Character[3]'abc'");
    EXPECT_EQ(context.TakeError(), VTERROR_CODE::DomainError);
    EXPECT_EQ(Build(TypeInteger, {}, u"x", true), "Character[1]'x'");
    EXPECT_EQ(Build(TypeInteger, {2}, u"1 b", true), "Character[3]'1 b'");
    EXPECT_EQ(simplest, 11);
}

TEST_F(Rebuild, MoreCharactersThanOneMakeNoScalar)
{
    EXPECT_EQ(Build(TypeInteger, {}, u"12", false), "Character[2]'12'");
}

TEST_F(Rebuild, CharacterVectorJoinsItsRecords)
{
    EXPECT_EQ(Build(TypeCharacter, {3}, u"ab\ncd", false), "Character[6]'ab\\u000d\\u000acd'");
    EXPECT_EQ(Build(TypeCharacter, {3}, u"", false), "Character[0]''");
}

TEST_F(Rebuild, NumericVector)
{
    EXPECT_EQ(Build(TypeInteger, {3}, u"1 2 3", true), "Integer[3]1 2 3");
    EXPECT_EQ(simplest, 22);
    EXPECT_EQ(Build(TypeInteger, {3}, u"5", true), "Integer[1]5");
}

TEST_F(Rebuild, EmptyNumericVectorIsAnEmptyIntegerVector)
{
    EXPECT_EQ(Build(TypeReal, {3}, u"", true), "Integer[0]");
    EXPECT_EQ(simplest, 21);
    EXPECT_TRUE(context.calls.empty());
}

TEST_F(Rebuild, CharacterMatrixPadsShorterRows)
{
    EXPECT_EQ(Build(TypeCharacter, {2, 3}, u"abc\nd\nef", false), "Character[3 3]'abcd  ef '");
    EXPECT_EQ(simplest, 11);
    EXPECT_EQ(Build(TypeCharacter, {2, 3}, u"\n", false), "Character[2 0]''");
}

TEST_F(Rebuild, CharacterMatrixIsWhatDisclosingItsRowsGives)
{
    std::mt19937 random(4);
    for (int i = 0; i < 200; ++i) {
        std::u16string text = RandomText(random, 8);
        for (auto line = random() % 6; line > 0; --line)
            text += u"\n" + RandomText(random, 8);
        const ScdrPtr node = WithText(TypeCharacter, {1, 1}, text);
        const ScdrPtr vectrix = ScdrRecordsToScdrVectrix(context, *node);
        const ScdrPtr disclosed(context.primitive(context, ActionDisclose, vectrix.get()));
        const ScdrPtr built = BuildScdrFromRecords(context, *node, false);
        ASSERT_TRUE(SameTree(*disclosed, *built));
        EXPECT_EQ(disclosed->SimplestType, built->SimplestType);
    }
}

TEST_F(Rebuild, MatrixWithoutRowsKeepsItsColumns)
{
    const ScdrPtr text = AllocateScdr(context, nullptr, TypeCharacter, 2, Shape{0, 5}.data(), true);
    EXPECT_EQ(Build(*text, false), "Character[0 5]''");
    EXPECT_EQ(Build(*text, true), "Integer[0 0]");
    const ScdrPtr numbers = AllocateScdr(context, nullptr, TypeReal, 2, Shape{0, 5}.data(), true);
    EXPECT_EQ(Build(*numbers, true), "Integer[0 5]");
}

TEST_F(Rebuild, NumericMatrixConvertsRowByRow)
{
    EXPECT_EQ(Build(TypeInteger, {2, 3}, u"1 2 3\n4 5 6", true), "Integer[2 3]1 2 3 4 5 6");
    ASSERT_EQ(context.calls.size(), 3u);
    EXPECT_EQ(context.calls[0].primitive, ActionConvertToNumeric);
    EXPECT_EQ(context.calls[0].argument, "Character[5]'1 2 3'");
    EXPECT_EQ(context.calls[2].primitive, ActionDisclose);
    EXPECT_EQ(context.calls[2].argument, "General[2](Integer[3]1 2 3 Integer[3]4 5 6)");
}

TEST_F(Rebuild, NumericRowsMayBeShortEmptyOrOfAnotherType)
{
    EXPECT_EQ(Build(TypeInteger, {3, 2}, u"1 2\n\n2.5", true), "Real[3 2]1 2 0 0 2.5 0");
    EXPECT_EQ(context.calls.size(), 3u); // the empty row asks nobody
}

TEST_F(Rebuild, RowThatConvertsToAScalarBecomesAVector)
{
    context.primitive = [&](EditContext* edit, std::int32_t primitive, const Scdr* argument) -> Scdr* {
        if (primitive == ActionConvertToNumeric)
            return Integers(edit, {}, {argument->ElementCount}).release();
        EXPECT_EQ(DumpTree(*argument), "General[2](Integer[1]2 Integer[1]3)");
        return Integers(edit, {2, 1}, {2, 3}).release();
    };
    EXPECT_EQ(Build(TypeInteger, {2, 1}, u"10\n100", true), "Integer[2 1]2 3");
}

TEST_F(Rebuild, RowThatIsNoNumberFailsWithTheHostsError)
{
    const ScdrPtr node = WithText(TypeInteger, {2, 2}, u"1 2\nx");
    EXPECT_EQ(Build(*node, true), "null");
    EXPECT_EQ(context.TakeError(), VTERROR_CODE::DomainError);
    EXPECT_EQ(node->records.count, 2);
}

TEST_F(Rebuild, HigherRanksHoldEveryPlanesRows)
{
    ScdrPtr node = WithText(TypeCharacter, {2, 2, 3}, u"abc\nd\nghi\nj");
    const std::u16string name = u"Planes";
    OwnedArray<char16_t> copy = AllocateArray<char16_t>(7);
    std::copy_n(name.c_str(), 7, copy.get());
    FreeBytes(node->extra->AxisNames[0]);
    node->extra->AxisNames[0] = copy.release();
    const ScdrPtr built = BuildScdrFromRecords(context, *node, false);
    EXPECT_EQ(DumpTree(*built), "Character[2 2 3]'abcd  ghij  '");
    EXPECT_EQ(PlaneCount(*built), 2);
    EXPECT_EQ(std::u16string_view(built->extra->AxisNames[0]), u"Planes");
    EXPECT_EQ(Build(TypeInteger, {2, 2, 2}, u"1 2\n3 4\n5 6 7\n8", true),
              "Integer[2 2 3]1 2 0 3 4 0 5 6 7 8 0 0");
    EXPECT_EQ(Build(TypeInteger, {2, 1, 1, 2}, u"1 2\n3 4", true), "Integer[2 1 1 2]1 2 3 4");
}

TEST_F(Rebuild, ArrayWithoutPlanesStaysWithoutPlanes)
{
    EXPECT_EQ(Build(TypeCharacter, {0, 2, 3}, u"   \n   ", false), "Character[0 2 3]''");
    EXPECT_EQ(Build(TypeReal, {0, 2, 3}, u"", true), "Integer[0 2 3]");
    const std::int64_t large = std::int64_t{1} << 40;
    const ScdrPtr huge =
        AllocateScdr(context, nullptr, TypeCharacter, 3, Shape{large, 0, large}.data(), true);
    EXPECT_EQ(BuildScdrFromRecords(context, *huge, false)->ElementCount, 0);
}

TEST_F(Rebuild, MissingRowsAreAnError)
{
    EXPECT_EQ(Build(TypeCharacter, {2, 2, 3}, u"abc", false), "null");
    EXPECT_EQ(context.TakeError(), VTERROR_CODE::LengthError);
}

TEST_F(Rebuild, VectrixHasAVectorARecord)
{
    EXPECT_EQ(DumpTree(*ScdrRecordsToScdrVectrix(context, *WithText(TypeCharacter, {2, 2}, u"ab\nc\n"))),
              "General[3](Character[2]'ab' Character[1]'c' Character[0]'')");
    EXPECT_EQ(
        DumpTree(*ScdrRecordsToScdrVectrix(context, *WithText(TypeCharacter, {2, 2, 1}, u"a\nb\nc\nd"))),
        "General[2](Character[1]'a' Character[1]'b')");
    EXPECT_TRUE(IsSoundTree(*ScdrRecordsToScdrVectrix(context, *Integers(context, {0, 3}, {}))));
}

TEST_F(Rebuild, FailedAllocationsGiveTheErrorAndLeaveTheNodeAlone)
{
    struct Case {
        std::uint32_t type;
        Shape shape;
        bool numeric;
    };
    const Case cases[] = {{TypeInteger, {}, true},           {TypeInteger, {2}, true},
                          {TypeInteger, {2, 2}, true},       {TypeInteger, {2, 1, 2}, true},
                          {TypeCharacter, {2, 1, 2}, false}, {TypeCharacter, {2}, false}};
    for (const Case& one : cases) {
        const ScdrPtr node = WithText(one.type, one.shape, u"10 20 30 40 50 60 70 80 90\n3 4");
        int failures = 0;
        SweepAllocationFaults([&] {
            context.calls = {};
            const ScdrPtr built = BuildScdrFromRecords(context, *node, one.numeric);
            const VTERROR_CODE error = context.TakeError();
            // A scalar or vector that could not be converted for want of memory stays text.
            if (built == nullptr) {
                ++failures;
                EXPECT_EQ(error, VTERROR_CODE::OutOfMemory);
            }
            EXPECT_EQ(node->records.count, 2);
        });
        EXPECT_GE(failures, 4);
    }
    SweepAllocationFaults([&] {
        if (ScdrFromUnicode(context, u"a text that is longer than the node", 30) == nullptr) {
            EXPECT_EQ(context.TakeError(), VTERROR_CODE::OutOfMemory);
        }
    });
}

class CanSave : public ::testing::Test {
protected:
    bool Ask(const ScdrPtr& node) { return CanSaveScdr(context, *node); }
    TestContext context;
};

TEST_F(CanSave, LimitsOfTheHost)
{
    context.langEnv.MostElements = 6;
    context.langEnv.HighestRank = 2;
    context.langEnv.LongestAxis = 5;
    EXPECT_TRUE(Ask(Integers(context, {2, 3}, {1, 2, 3, 4, 5, 6})));
    EXPECT_FALSE(Ask(Characters(context, {1, 7}, u"abcdefg")));
    EXPECT_FALSE(Ask(Integers(context, {1, 1, 1}, {1})));
    EXPECT_FALSE(Ask(Integers(context, {6}, {1, 2, 3, 4, 5, 6})));
    EXPECT_FALSE(Ask(Integers(context, {0, 6}, {})));
}

TEST_F(CanSave, LimitsHoldForNestedArraysToo)
{
    context.langEnv.LongestAxis = 1;
    EXPECT_FALSE(Ask(Nested(context, {2}, Items(Integers(context, {}, {1}), Integers(context, {}, {1})))));
}

TEST_F(CanSave, InvalidTypesNever)
{
    for (const std::uint32_t type : {1u, 10u, 12u, 20u, 26u})
        EXPECT_FALSE(Ask(AllocateScdr(context, nullptr, type, 0, nullptr, true)));
}

TEST_F(CanSave, BooleansAndRealsAlways)
{
    context.langEnv.Capabilities = 0;
    EXPECT_TRUE(Ask(Booleans(context, {1}, {1})));
    EXPECT_TRUE(Ask(Reals(context, {1}, {1e300})));
}

TEST_F(CanSave, IntegersWithout64BitsMustFit32)
{
    context.langEnv.Capabilities = CapabilityInteger64;
    EXPECT_TRUE(Ask(Integers(context, {}, {INT64_MAX})));
    context.langEnv.Capabilities = 0;
    EXPECT_TRUE(Ask(Integers(context, {2}, {-2147483648LL, 2147483647})));
    EXPECT_FALSE(Ask(Integers(context, {}, {2147483648LL})));
    EXPECT_FALSE(Ask(Integers(context, {2}, {1, -2147483649LL})));
    EXPECT_TRUE(Ask(Integers(context, {0}, {})));
}

TEST_F(CanSave, ComplexNumbersWithoutTheCapabilityMustBeReal)
{
    EXPECT_TRUE(Ask(Complexes(context, {}, {1, 2})));
    context.langEnv.Capabilities = 0;
    EXPECT_TRUE(Ask(Complexes(context, {2}, {1, 0, 2, -0.0})));
    EXPECT_FALSE(Ask(Complexes(context, {2}, {1, 0, 2, 1e-300})));
    EXPECT_FALSE(Ask(Complexes(context, {}, {1, std::numeric_limits<double>::quiet_NaN()})));
}

TEST_F(CanSave, DecimalsNeedTheCapability)
{
    const ScdrPtr decimal = AllocateScdr(context, nullptr, TypeDecimal, 0, nullptr, true);
    EXPECT_TRUE(CanSaveScdr(context, *decimal));
    context.langEnv.Capabilities =
        static_cast<std::uint8_t>(context.langEnv.Capabilities & ~CapabilityDecimal);
    EXPECT_FALSE(CanSaveScdr(context, *decimal));
}

TEST_F(CanSave, CharactersWithoutUnicodeMustStandInTheTable)
{
    EXPECT_TRUE(Ask(Characters(context, u"\u2206")));
    context.langEnv.Capabilities = 0;
    char16_t table[256];
    for (int i = 0; i < 256; ++i)
        table[i] = static_cast<char16_t>(i < 128 ? i : 0x2300 + i);
    context.langEnv.CharacterTable = table;
    EXPECT_TRUE(Ask(Characters(context, u"abc")));
    EXPECT_TRUE(Ask(Characters(context, {2}, std::u16string{static_cast<char16_t>(0x2300 + 200), u'a'})));
    EXPECT_FALSE(Ask(Characters(context, u"ab\u2206")));
    EXPECT_FALSE(Ask(Characters(context, std::u16string{u'\xe9'})));
    EXPECT_TRUE(Ask(Characters(context, u"")));
}

TEST_F(CanSave, AnotherTableIsAskedAnew)
{
    context.langEnv.Capabilities = 0;
    char16_t table[256] = {};
    context.langEnv.CharacterTable = table;
    EXPECT_FALSE(Ask(Characters(context, u"a")));
    table[7] = u'a';
    EXPECT_TRUE(Ask(Characters(context, u"a")));
    context.langEnv.CharacterTable = nullptr;
    EXPECT_FALSE(Ask(Characters(context, u"a")));
    EXPECT_TRUE(Ask(Characters(context, u"")));
}

TEST_F(CanSave, EveryChildIsAskedAndThePrototypeToo)
{
    context.langEnv.Capabilities = 0;
    EXPECT_TRUE(Ask(Nested(context, {1}, Items(Integers(context, {}, {1})))));
    EXPECT_FALSE(
        Ask(Nested(context, {2}, Items(Integers(context, {}, {1}), Integers(context, {}, {1LL << 40})))));
    EXPECT_FALSE(
        Ask(Nested(context, {0}, Items(Nested(context, {1}, Items(Integers(context, {}, {1LL << 40})))))));
}

} // namespace
} // namespace vantrel
