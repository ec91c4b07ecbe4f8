#include <gtest/gtest.h>

#include "workbench/formats/csv.h"

namespace vantrel::workbench {
namespace {

using namespace fake;

std::string DumpOf(const std::string& csv)
{
    return Dump(ReadCsv(csv, ',').array);
}

template <typename Edit> std::string Edited(const std::string& csv, Edit edit)
{
    const Document document = ReadCsv(csv, ',');
    Array array = document.array;
    edit(array);
    WriteContext context;
    return WriteCsv(array, &document, ',', context);
}

std::string Fresh(const Array& array)
{
    WriteContext context;
    return WriteCsv(array, nullptr, ',', context);
}

std::string ErrorOf(const std::string& csv)
{
    try {
        ReadCsv(csv, ',');
    } catch (const FormatError& error) {
        return error.what();
    }
    return "read";
}

TEST(WorkbenchCsv, CellsAreTextsOrNumbers)
{
    EXPECT_EQ(DumpOf("name,x\r\nab,1.5\r\n"),
              "nested[2 2](char8[4]\"name\" char8[1]\"x\" char8[2]\"ab\" float(1.5))");
    EXPECT_EQ(DumpOf("-3,.097,1e2,5."), "nested[1 4](int8(-3) float(0.097) int8(100) char8[2]\"5.\")");
}

TEST(WorkbenchCsv, WhatOnlyLooksLikeANumberStaysText)
{
    for (const char* cell :
         {"007", "\"1\"", "+5", "1 2", "NaN", "0x10", "3000000000", "1234567890.123456", "1e400", "-"}) {
        EXPECT_EQ(ReadCsv(cell, ',').array.items[0].shape.size(), 1u) << cell;
    }
}

TEST(WorkbenchCsv, ReadsQuotesNewlinesAndShortRows)
{
    EXPECT_EQ(DumpOf("a,\"b,\"\"c\"\"\"\n\"d\ne\"\n"),
              "nested[2 2](char8[1]\"a\" char8[5]\"b,\\{22}c\\{22}\" char8[3]\"d\\{a}e\" char8[0]\"\")");
    EXPECT_EQ(DumpOf(""), "nested[0 0](char8[0]\"\")");
    EXPECT_EQ(DumpOf("\xEF\xBB\xBF\xC3\xA9"), "nested[1 1](char8[1]\"\\{e9}\")");
}

TEST(WorkbenchCsv, UneditedFilesComeBackByteForByte)
{
    for (const char* csv : {
             "a,b\r\n1.50,007\r\n",
             "a,b\n1,2",
             "\"a\",\"b\"\n\"1\",\"x\ny\"\n",
             "\xEF\xBB\xBFh\r\n.097\r\n",
             "a,b,c\n1\n\n2,3,4\n",
             "a,b\r\n\"\",\r\n",
             "old\rmac\r",
             "",
         }) {
        EXPECT_EQ(Edited(csv, [](Array&) {}), csv);
    }
}

TEST(WorkbenchCsv, EditedCellsAreQuotedWhereNeeded)
{
    const std::string csv = "a,\"b\"\n1.50,2\n";
    EXPECT_EQ(Edited(csv, [](Array& array) { array.items[0] = Text(u"x,y"); }), "\"x,y\",\"b\"\n1.50,2\n");
    EXPECT_EQ(Edited(csv, [](Array& array) { array.items[1] = Text(u"c"); }), "a,\"c\"\n1.50,2\n");
    EXPECT_EQ(Edited(csv, [](Array& array) { array.items[3] = Number(-2.5); }), "a,\"b\"\n1.50,-2.5\n");
    EXPECT_EQ(Edited(csv, [](Array& array) { array.items[0] = Text(u"say \"hi\"\r\nthere"); }),
              "\"say \"\"hi\"\"\nthere\",\"b\"\n1.50,2\n");
    EXPECT_EQ(Edited(csv,
                     [](Array& array) {
                         array.items[2] = NumericArray({2}, {1, 2});
                     }),
              "a,\"b\"\n1 2,2\n");
}

TEST(WorkbenchCsv, RowsAndColumnsPutInOrTakenOutLeaveTheOthersAlone)
{
    const std::string csv = "h,k\n1.0,x\n2.0,y\n";
    EXPECT_EQ(Edited(csv,
                     [](Array& array) {
                         array.items.erase(array.items.begin() + 2, array.items.begin() + 4);
                         array.shape = {2, 2};
                     }),
              "h,k\n2.0,y\n");
    EXPECT_EQ(Edited(csv,
                     [](Array& array) {
                         array.items.insert(array.items.begin() + 2, {Number(9), Text(u"n")});
                         array.shape = {4, 2};
                     }),
              "h,k\n9,n\n1.0,x\n2.0,y\n");
    EXPECT_EQ(Edited(csv,
                     [](Array& array) {
                         array.items = {array.items[0], array.items[2], array.items[4]};
                         array.shape = {3, 1};
                     }),
              "h\n1.0\n2.0\n");
}

TEST(WorkbenchCsv, FilledUpCellsAreWrittenOnceTheyHoldSomething)
{
    EXPECT_EQ(Edited("a,b,c\n1\n", [](Array& array) { array.items[4] = Number(5); }), "a,b,c\n1,5\n");
}

TEST(WorkbenchCsv, WritesArraysThatCameFromNowhere)
{
    EXPECT_EQ(Fresh(NumericArray({2, 2}, {1, 2.5, -3, 4})), "1,2.5\r\n-3,4\r\n");
    EXPECT_EQ(Fresh(TextOf({2, 2}, u"abcd")), "ab\r\ncd\r\n");
    EXPECT_EQ(Fresh(NestedArray({2}, {Text(u"a"), TextOf({2, 1}, u"bc")})), "a,\"b\nc\"\r\n");
    EXPECT_EQ(Fresh(ComplexArray({1}, {{1, 2}})), "1J2\r\n");
    EXPECT_EQ(Fresh(NestedArray({1, 1}, {Text(u"")})), "\"\"\r\n");
    EXPECT_EQ(Fresh(EmptyNestedArray({0, 3}, Text(u""))), "");
}

TEST(WorkbenchCsv, RefusesWhatDoesNotFitATable)
{
    EXPECT_THROW(Fresh(NumericArray({1, 1, 1}, {1})), FormatError);
    EXPECT_THROW(Fresh(NestedArray({1}, {NestedArray({}, {Text(u"x")})})), FormatError);
    EXPECT_THROW(Fresh(NestedArray({1}, {NumericArray({1, 1}, {1})})), FormatError);
}

TEST(WorkbenchCsv, NamesTheLineOfAnError)
{
    EXPECT_NE(ErrorOf("a\nb,\"c\nd").find("line 2"), std::string::npos) << ErrorOf("a\nb,\"c\nd");
    EXPECT_NE(ErrorOf("\"a\nb\"c").find("line 2"), std::string::npos);
    EXPECT_NE(ErrorOf("a\n\xFF").find("line 2"), std::string::npos);
}

TEST(WorkbenchCsv, TabsSeparateInTsv)
{
    const Document document = ReadCsv("a,b\tc\n", '\t');
    EXPECT_EQ(Dump(document.array), "nested[1 2](char8[3]\"a,b\" char8[1]\"c\")");
    WriteContext context;
    EXPECT_EQ(WriteCsv(document.array, nullptr, '\t', context), "a,b\tc\r\n");
}

} // namespace
} // namespace vantrel::workbench
