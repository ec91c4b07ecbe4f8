#include "frame/status.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vantrel {
namespace {

class Status : public testing::Test {
protected:
    Status()
    {
        environment.DialectKind = Dialect::Dyalog;
        context.langEnv = &environment;
        context.indexOrigin = 1;
    }
    ScdrPtr Make(const std::vector<std::int64_t>& shape)
    {
        return AllocateScdr(&context, nullptr, TypeInteger, static_cast<std::int32_t>(shape.size()),
                            shape.data(), true);
    }
    ScdrPtr AtPlane(const std::vector<std::int64_t>& shape, std::int64_t plane)
    {
        ScdrPtr node = Make(shape);
        node->extra->CurrentPlane = plane;
        return node;
    }
    static std::vector<std::u16string> TextsOf(const StatusParts& parts)
    {
        std::vector<std::u16string> texts;
        for (std::int32_t i = 0; i < parts.count; ++i) {
            const Text& text = parts.texts[static_cast<std::size_t>(i)];
            texts.emplace_back(text.begin(), text.end());
        }
        return texts;
    }

    LangEnv environment{};
    EditContext context;
};

ScdrAttributes VectorAttributes()
{
    ScdrAttributes attributes;
    attributes.type = TypeCharacter;
    attributes.depth = 1;
    attributes.count = 3;
    attributes.rank = 1;
    attributes.shape = u"3";
    attributes.pickIndex = u"(2 1) 3";
    return attributes;
}

TEST_F(Status, AVectorShowsAllButAPlane)
{
    const StatusParts parts = MakeStatusParts(Dialect::Dyalog, VectorAttributes());
    EXPECT_EQ(TextsOf(parts),
              (std::vector<std::u16string>{u"Type:", u"Character", u" ≡:", u"1", u" ×/⍴:", u"3", u" ⍴⍴:",
                                           u"1", u" ⍴:", u"3", u" ⊃:", u"(2 1) 3"}));
    EXPECT_EQ(parts.pickIndexPart, 11);
}

TEST_F(Status, MatlabReadsWords)
{
    ScdrAttributes attributes = VectorAttributes();
    attributes.type = TypeNested;
    const StatusParts parts = MakeStatusParts(Dialect::Matlab, attributes);
    EXPECT_EQ(TextsOf(parts),
              (std::vector<std::u16string>{u"Type:", u"Cells", u" Depth:", u"1", u" Nelm:", u"3", u" Rank:",
                                           u"1", u" Shape:", u"3", u" Index:", u"(2 1) 3"}));
}

TEST_F(Status, EveryAplHostReadsSymbols)
{
    for (const Dialect dialect : {Dialect::Apl2, Dialect::Aplx, Dialect::Dyalog}) {
        const StatusParts parts = MakeStatusParts(dialect, VectorAttributes());
        EXPECT_EQ(TextsOf(parts)[2], u" ≡:");
    }
}

TEST_F(Status, AScalarHasNoShapeAndOnePartToFillTheBar)
{
    ScdrAttributes attributes;
    attributes.type = TypeReal;
    attributes.count = 1;
    attributes.pickIndex = u" ";
    const StatusParts parts = MakeStatusParts(Dialect::Dyalog, attributes);
    EXPECT_EQ(TextsOf(parts), (std::vector<std::u16string>{u"Type:", u"Real", u" ≡:", u"0", u" ×/⍴:", u"1",
                                                           u" ⍴⍴:", u"0", u" ⊃:", u" ", u""}));
    EXPECT_EQ(parts.pickIndexPart, 9);
}

TEST_F(Status, APlaneFollowsThePickIndex)
{
    ScdrAttributes attributes = VectorAttributes();
    attributes.rank = 3;
    attributes.shape = u"2 3 4";
    attributes.plane = u"[2;;]";
    const StatusParts parts = MakeStatusParts(Dialect::Dyalog, attributes);
    EXPECT_EQ(parts.count, 13);
    EXPECT_EQ(TextsOf(parts)[12], u"[2;;]");
    EXPECT_EQ(parts.pickIndexPart, 11);
}

TEST_F(Status, WithoutAPickIndexTheDisplayEndsBeforeIt)
{
    ScdrAttributes attributes = VectorAttributes();
    attributes.pickIndex = nullptr;
    EXPECT_EQ(MakeStatusParts(Dialect::Dyalog, attributes).count, 10);
    attributes.plane = u"[1;;]";
    EXPECT_EQ(MakeStatusParts(Dialect::Dyalog, attributes).count, 10);
    attributes.plane = nullptr;
    attributes.shape = nullptr;
    EXPECT_EQ(MakeStatusParts(Dialect::Dyalog, attributes).count, 9);
}

TEST_F(Status, NumbersOfAnySizeAreWrittenOut)
{
    ScdrAttributes attributes = VectorAttributes();
    attributes.count = 9223372036854775807;
    attributes.depth = 1000;
    const StatusParts parts = MakeStatusParts(Dialect::Dyalog, attributes);
    EXPECT_EQ(TextsOf(parts)[5], u"9223372036854775807");
    EXPECT_EQ(TextsOf(parts)[3], u"1000");
}

TEST_F(Status, AShapeIsItsLengthsWithOneBlankBetween)
{
    EXPECT_EQ(ShapeText(*Make({2, 0, 4})), u"2 0 4");
    EXPECT_EQ(ShapeText(*Make({5})), u"5");
    EXPECT_EQ(ShapeText(*Make({})), u"");
}

TEST_F(Status, ThePlaneIsWrittenAsAnIndexOfTheLeadingAxes)
{
    EXPECT_EQ(PlaneText(*AtPlane({2, 3, 4}, 1), 1), u"[2;;]");
    EXPECT_EQ(PlaneText(*AtPlane({2, 3, 4}, 1), 0), u"[1;;]");
}

TEST_F(Status, TheLastLeadingAxisRunsFastest)
{
    EXPECT_EQ(PlaneText(*AtPlane({2, 3, 4, 5}, 4), 1), u"[2;2;;]");
    EXPECT_EQ(PlaneText(*AtPlane({2, 3, 4, 5, 6}, 23), 0), u"[1;2;3;;]");
}

TEST_F(Status, AnEmptyLeadingAxisHasNoIndex)
{
    EXPECT_EQ(PlaneText(*AtPlane({0, 3, 4}, 0), 1), u"[;;]");
    EXPECT_EQ(PlaneText(*AtPlane({2, 0, 3, 4}, 1), 1), u"[2;;;]");
}

TEST_F(Status, EdgesAddUpTextsGapsAndBorders)
{
    const std::int32_t widths[] = {30, 50, 0};
    std::int32_t edges[3] = {};
    StatusEdges(widths, {3, 2}, edges);
    EXPECT_EQ(edges[0], 38);
    EXPECT_EQ(edges[1], 96);
    EXPECT_EQ(edges[2], 104);
}

TEST_F(Status, EdgesDoNotWrap)
{
    const std::int32_t widths[] = {2000000000, 2000000000};
    std::int32_t edges[2] = {};
    StatusEdges(widths, {}, edges);
    EXPECT_EQ(edges[1], 2147483647);
}

TEST_F(Status, TheInformationHasALineForEachAttribute)
{
    const Text text = InformationText(Dialect::Dyalog, VectorAttributes(), *Make({3}));
    EXPECT_EQ(std::u16string(text.begin(), text.end()),
              u"Type: Character\r\n≡: 1\r\n×/⍴: 3\r\n⍴⍴: 1\r\n⍴: 3\r\n⊃: (2 1) 3");
}

TEST_F(Status, TheInformationOfAScalarHasNoShape)
{
    ScdrAttributes attributes = VectorAttributes();
    attributes.rank = 0;
    attributes.shape = nullptr;
    const Text text = InformationText(Dialect::Matlab, attributes, *Make({}));
    EXPECT_EQ(std::u16string(text.begin(), text.end()),
              u"Type: Character\r\nDepth: 1\r\nNelm: 3\r\nRank: 0\r\nIndex: (2 1) 3");
}

TEST_F(Status, TheInformationNamesTheAxesFromRankThreeOn)
{
    ScdrAttributes attributes = VectorAttributes();
    attributes.rank = 3;
    attributes.shape = u"2 3 4";
    attributes.pickIndex = nullptr;
    attributes.plane = u"[2;;]";
    const Text text = InformationText(Dialect::Dyalog, attributes, *Make({2, 3, 4}));
    EXPECT_EQ(std::u16string(text.begin(), text.end()),
              u"Type: Character\r\n≡: 1\r\n×/⍴: 3\r\n⍴⍴: 3\r\n⍴: 2 3 4\r\n[2;;]\r\n"
              u"Axis name 1: 2\r\nAxis name 2: 3\r\nAxis name 3: 4");
}

} // namespace
} // namespace vantrel
