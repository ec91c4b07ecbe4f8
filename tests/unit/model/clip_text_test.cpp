#include "model/clip_text.h"

#include <gtest/gtest.h>

#include "builtin/format.h"
#include "builtin/numeric.h"
#include "model/primitives.h"
#include "model/rebuild.h"
#include "unit/support/test_context.h"
#include "unit/support/trees.h"

namespace vantrel {
namespace {

using namespace test;

class ClipText : public testing::Test {
protected:
    ClipText()
    {
        context.primitive = [](EditContext* edit, std::int32_t action, const Scdr* argument) -> Scdr* {
            if (action == ActionConvertToNumeric) return BuiltinCtn(edit, *argument).release();
            if (action != ActionConvertToCharacter) return nullptr;
            return BuiltinFormat(edit, const_cast<Scdr&>(*argument)).release();
        };
    }

    std::u16string TextOf(const ScdrPtr& tree)
    {
        const std::optional<Text> text = ScdrRecordsToText(context, *tree);
        EXPECT_EQ(context.TakeError(), VTERROR_CODE::NoError);
        return text.has_value() ? std::u16string(text->begin(), text->end()) : u"(none)";
    }
    ScdrPtr ArrayOf(std::u16string_view text)
    {
        ScdrPtr tree = TextToScdr(context, text.data(), static_cast<std::int64_t>(text.size()));
        EXPECT_EQ(context.TakeError(), VTERROR_CODE::NoError);
        EXPECT_TRUE(tree != nullptr && IsSoundTree(*tree));
        return tree;
    }
    std::string Dump(std::u16string_view text) { return DumpTree(*ArrayOf(text)); }

    TestContext context;
};

TEST_F(ClipText, OfACharacterMatrixIsItsRows)
{
    EXPECT_EQ(TextOf(Characters(context, {2, 3}, u"abcdef")), u"abc\r\ndef");
}

TEST_F(ClipText, OfSimpleArraysIsWhatTheyShow)
{
    EXPECT_EQ(TextOf(Characters(context, u"")), u"");
    EXPECT_EQ(TextOf(Characters(context, {}, u"x")), u"x");
    EXPECT_EQ(TextOf(Integers(context, {3}, {1, -2, 30})), u"1 ¯2 30");
    EXPECT_EQ(TextOf(Integers(context, {2, 2}, {1, 20, 3, 4})), u"1 20\r\n3  4");
    EXPECT_EQ(TextOf(Characters(context, u"one\ntwo")), u"one\r\ntwo");
}

TEST_F(ClipText, OfAnArrayOfPlanesIsAllItsRows)
{
    EXPECT_EQ(TextOf(Characters(context, {2, 2, 2}, u"abcdefgh")), u"ab\r\ncd\r\nef\r\ngh");
}

TEST_F(ClipText, OfAVectorOfTextsHasTabsBetweenThem)
{
    EXPECT_EQ(TextOf(Nested(context, {2}, Items(Characters(context, u"ab"), Characters(context, u"c")))),
              u"ab\tc");
    EXPECT_EQ(
        TextOf(Nested(context, {3},
                      Items(Characters(context, u""), Reals(context, {}, {1.5}), Characters(context, u"")))),
        u"\t1.5\t");
}

TEST_F(ClipText, OfAMatrixOfTextsIsATable)
{
    EXPECT_EQ(TextOf(Nested(context, {2, 2},
                            Items(Characters(context, u"a"), Integers(context, {2}, {1, 2}),
                                  Characters(context, u""), Characters(context, u"bc")))),
              u"a\t1 2\r\n\tbc");
}

TEST_F(ClipText, OfANestedScalarIsThatOfItsItem)
{
    EXPECT_EQ(TextOf(Nested(context, {}, Items(Characters(context, {2, 1}, u"ab")))), u"a\r\nb");
    auto vector = Nested(context, {2}, Items(Characters(context, u"a"), Characters(context, u"b")));
    EXPECT_EQ(TextOf(Nested(context, {}, Items(std::move(vector)))), u"a\tb");
}

TEST_F(ClipText, IsMissingWhereCellsHaveNoSingleLine)
{
    EXPECT_EQ(TextOf(Nested(context, {0}, Items(Characters(context, u"")))), u"(none)");
    EXPECT_EQ(TextOf(Nested(context, {0, 2}, Items(Characters(context, u"")))), u"(none)");
    EXPECT_EQ(TextOf(Nested(context, {1, 1, 1}, Items(Characters(context, u"a")))), u"(none)");
    EXPECT_EQ(TextOf(Nested(context, {1}, Items(Characters(context, {1, 1}, u"a")))), u"(none)");
    EXPECT_EQ(TextOf(Nested(context, {1}, Items(Characters(context, u"a\nb")))), u"(none)");
    auto inner = Nested(context, {1}, Items(Characters(context, u"a")));
    EXPECT_EQ(TextOf(Nested(context, {1}, Items(std::move(inner)))), u"(none)");
}

TEST_F(ClipText, TellsWhatAnEditedNodeShows)
{
    const ScdrPtr node = Characters(context, u"old");
    ASSERT_TRUE(StringToRecords(context, u"new\nlines", 9, node->records, true));
    EXPECT_EQ(TextOf(node), u"new\r\nlines");
}

TEST_F(ClipText, WithoutSeparatorsIsACharacterVector)
{
    EXPECT_EQ(Dump(u"plain text"), "Character[10]'plain text'");
    EXPECT_EQ(Dump(u"12"), "Character[2]'12'");
    EXPECT_EQ(Dump(u""), "Character[0]''");
    EXPECT_EQ(ArrayOf(u"a\r")->ElementCount, 2);
}

TEST_F(ClipText, WithLinesIsATableOfNumbersAndTexts)
{
    const std::string numbers = "General[2 2](Integer[1]1 Integer[1]2 Integer[1]3 Integer[1]4)";
    const ScdrPtr table = ArrayOf(u"1\t2\r\n3\t4\r\n");
    EXPECT_EQ(table->Rank, 2);
    EXPECT_EQ(table->Shape[0], 2);
    EXPECT_EQ(table->Shape[1], 2);
    EXPECT_EQ(DumpTree(*table), Dump(u"1\t2\r\n3\t4"));
    for (int i = 0; i < 4; ++i) {
        const Scdr& cell = *Children(*table)[i];
        EXPECT_NE(cell.Type, TypeCharacter);
        EXPECT_EQ(cell.parent, table.get());
    }
    EXPECT_EQ(Dump(u"a\t\r\n\tx1"),
              "General[2 2](Character[1]'a' Character[0]'' Character[0]'' Character[2]'x1')");
}

TEST_F(ClipText, OfOneLineWithItsEndIsOneRow)
{
    EXPECT_EQ(Dump(u"a\tb\r\n"), "General[1 2](Character[1]'a' Character[1]'b')");
    EXPECT_EQ(Dump(u"\n"), "General[1 1](Character[0]'')");
    EXPECT_EQ(Dump(u"\r\nb"), "General[2 1](Character[0]'' Character[1]'b')");
}

TEST_F(ClipText, DropsOnlyTheReturnBeforeALineFeed)
{
    EXPECT_EQ(Dump(u"a\rb\r\r\nc"), "General[2 1](Character[4]'a\\u000db\\u000d' Character[1]'c')");
}

TEST_F(ClipText, WithTabsAloneIsAVectorOfCells)
{
    EXPECT_EQ(Dump(u"a\tb\tc"), "General[3](Character[1]'a' Character[1]'b' Character[1]'c')");
    EXPECT_EQ(Dump(u"\t"), "General[2](Character[0]'' Character[0]'')");
}

TEST_F(ClipText, CountsTheTabsOfLaterRows)
{
    // The first row has one cell, the second two TABs: two columns, filled cell after cell.
    EXPECT_EQ(Dump(u"a\r\nb\tc\td"),
              "General[2 2](Character[1]'a' Character[1]'b' Character[1]'c' Character[1]'d')");
    EXPECT_EQ(Dump(u"a\r\nb\tc"), "General[2 1](Character[1]'a' Character[1]'b')");
}

TEST_F(ClipText, FillsAShortTableWithEmptyTexts)
{
    EXPECT_EQ(Dump(u"a\tb\r\nc"),
              "General[2 2](Character[1]'a' Character[1]'b' Character[1]'c' Character[0]'')");
}

TEST_F(ClipText, KeepsTextThatTheHostRefuses)
{
    context.primitive = [](EditContext* edit, std::int32_t, const Scdr*) -> Scdr* {
        SetErrorCode(edit, VTERROR_CODE::DomainError);
        return nullptr;
    };
    EXPECT_EQ(Dump(u"1\t2"), "General[2](Character[1]'1' Character[1]'2')");
}

TEST_F(ClipText, ForgetsWhatTheHostSaidOfTextThatIsNoNumber)
{
    context.primitive = [](EditContext* edit, std::int32_t, const Scdr*) -> Scdr* {
        edit->langEnv->ErrorDetail = u"DOMAIN ERROR";
        SetErrorCode(edit, VTERROR_CODE::DomainError);
        return nullptr;
    };
    ArrayOf(u"a\tb");
    EXPECT_EQ(context.langEnv.ErrorDetail, nullptr);
    EXPECT_EQ(TextOf(Integers(context, {1}, {5})), u"(none)");
    EXPECT_EQ(context.langEnv.ErrorDetail, nullptr);
}

TEST_F(ClipText, AsksTheHostForEachFilledCellOnce)
{
    ArrayOf(u"1\t\tx");
    ASSERT_EQ(context.calls.size(), 2u);
    EXPECT_EQ(context.calls[0].argument, "Character[1]'1'");
    EXPECT_EQ(context.calls[1].argument, "Character[1]'x'");
}

TEST_F(ClipText, RefusesATableFarLargerThanItsText)
{
    std::u16string text(3000, u'\t');
    text += std::u16string(3000, u'\n');
    EXPECT_EQ(TextToScdr(context, text.data(), static_cast<std::int64_t>(text.size())), nullptr);
    EXPECT_EQ(context.TakeError(), VTERROR_CODE::SystemLimit);
}

TEST_F(ClipText, ComesBackAsTheSameTable)
{
    std::mt19937 random(7);
    for (int i = 0; i < 200; ++i) {
        const std::int64_t rows = 1 + static_cast<std::int64_t>(random() % 4);
        const std::int64_t columns = 2 + static_cast<std::int64_t>(random() % 3);
        std::vector<ScdrPtr> cells;
        for (std::int64_t k = 0; k < rows * columns; ++k) {
            // A letter in front, so that no cell is a number.
            std::u16string cell = u"t";
            for (std::size_t c = random() % 6; c > 0; --c)
                cell += static_cast<char16_t>(0x21 + random() % 0x300);
            cells.push_back(Characters(context, cell));
        }
        const ScdrPtr table =
            Nested(context, rows == 1 ? Shape{columns} : Shape{rows, columns}, std::move(cells));
        SetSimplestType(*table);
        EXPECT_TRUE(SameTree(*table, *ArrayOf(TextOf(table))));
    }
}

TEST_F(ClipText, LeavesNothingBehindWhenMemoryEnds)
{
    const auto table =
        Nested(context, {1, 2}, Items(Characters(context, u"ab"), Integers(context, {2}, {1, 2})));
    EXPECT_GT(SweepAllocationFaults([&] { static_cast<void>(ScdrRecordsToText(context, *table)); }), 0);
    FreeRecords(Children(*table)[1]->records);
    context.TakeError();
    EXPECT_GT(SweepAllocationFaults([&] {
                  const ScdrPtr result = TextToScdr(context, u"1\tb\r\n\t2", 7);
                  if (result == nullptr) {
                      EXPECT_EQ(context.langEnv.ErrorCode, VTERROR_CODE::OutOfMemory);
                  }
                  context.TakeError();
              }),
              0);
}

} // namespace
} // namespace vantrel
