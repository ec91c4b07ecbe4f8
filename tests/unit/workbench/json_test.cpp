#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "workbench/formats/json.h"

namespace vantrel::workbench {
namespace {

using namespace fake;

std::string DumpOf(const std::string& json)
{
    return Dump(ReadJson(json).array);
}

// What the file becomes when `edit` is done to its array.
template <typename Edit>
std::string Edited(const std::string& json, Edit edit, WriteContext* context = nullptr)
{
    const Document document = ReadJson(json);
    Array array = document.array;
    edit(array);
    WriteContext own;
    return WriteJson(array, &document, context != nullptr ? *context : own);
}

std::string Unedited(const std::string& json)
{
    return Edited(json, [](Array&) {});
}

std::string Fresh(const Array& array)
{
    WriteContext context;
    return WriteJson(array, nullptr, context);
}

std::string ErrorOf(const std::string& json)
{
    try {
        ReadJson(json);
    } catch (const FormatError& error) {
        return error.what();
    }
    return "read";
}

// Numbers as the editor hands them back: whole floats as 32-bit numbers, ones and zeros as bits, the rest unchanged.
void Squeeze(Array& array)
{
    for (Array& item : array.items)
        Squeeze(item);
    if (!IsRealType(array.type)) return;
    std::vector<double> values = RealsOf(array);
    bool whole = true;
    for (const double value : values)
        whole = whole && std::abs(value) < 9.2e18 && value == std::trunc(value);
    if (!whole) return;
    for (double& value : values)
        value = value < -2147483648.0 || value > 2147483647.0 ? -2147483648.0 : value + 0.0;
    array = NumericArray(array.shape, values);
}

TEST(WorkbenchJson, RectangularNumbersBecomeArrays)
{
    EXPECT_EQ(DumpOf("[1, 2, 300]"), "int16[3](1 2 300)");
    EXPECT_EQ(DumpOf("[[1, 2.5], [3, 4]]"), "float[2 2](1 2.5 3 4)");
    EXPECT_EQ(DumpOf("[[[1, 0]], [[1, 1]]]"), "bit[2 1 2](1 0 1 1)");
    EXPECT_EQ(DumpOf("[true, false]"), "bit[2](1 0)");
}

TEST(WorkbenchJson, OtherArraysBecomeNestedVectors)
{
    EXPECT_EQ(DumpOf("[[1, 2], [3]]"), "nested[2](int8[2](1 2) int8[1](3))");
    EXPECT_EQ(DumpOf("[1, true]"), "nested[2](bit(1) bit(1))");
    EXPECT_EQ(DumpOf("[[1], []]"), "nested[2](bit[1](1) nested[0](bit[0]()))");
    EXPECT_EQ(DumpOf("[\"ab\", null]"), "nested[2](char8[2]\"ab\" bit[0]())");
    EXPECT_EQ(DumpOf("[[1, 2], 3]"), "nested[2](int8[2](1 2) int8(3))");
    EXPECT_EQ(DumpOf("[1, [2, 3]]"), "nested[2](bit(1) int8[2](2 3))");
}

TEST(WorkbenchJson, ScalarsAndObjects)
{
    EXPECT_EQ(DumpOf("true"), "bit(1)");
    EXPECT_EQ(DumpOf("-7"), "int8(-7)");
    EXPECT_EQ(DumpOf("3000000000"), "float(3e+09)");
    EXPECT_EQ(DumpOf("\"\\u2373\""), "char16[1]\"\\{2373}\"");
    EXPECT_EQ(DumpOf("\"\\ud83d\\ude00\""), "char16[2]\"\\{d83d}\\{de00}\"");
    EXPECT_EQ(DumpOf("[]"), "nested[0](bit[0]())");
    EXPECT_EQ(DumpOf("{}"), "nested[0 2](char8[0]\"\")");
    EXPECT_EQ(DumpOf("{\"a\": 1, \"b\": {\"c\": null}}"),
              "nested[2 2](char8[1]\"a\" bit(1) char8[1]\"b\" nested[1 2](char8[1]\"c\" bit[0]()))");
}

TEST(WorkbenchJson, MoreThanFifteenAxesStayNested)
{
    EXPECT_EQ(DumpOf(std::string(16, '[') + "1" + std::string(16, ']')).substr(0, 14), "nested[1](bit[");
}

TEST(WorkbenchJson, UneditedFilesComeBackByteForByte)
{
    for (const char* json : {
             "null",
             "[]",
             "{}\n",
             "[1.0, 1, 1e2, 0.10, -0, 1E+2]",
             "[true, false, true]",
             "{\"b\":1,\"a\":[true,\"x\",null,[],{}],\"b\":2.50}",
             "{\"one\": \"\\u00e9\\/\", \"two\": [[1, 2], [3, 4]]}",
             "{\n  \"a\": [\n    1,\n    2\n  ],\n  \"b\": {\n    \"c\": [1, 2, 3]\n  },\n  \"d\": []\n}\n",
             "{\n\t\"a\": \"text\"\n}",
             "{\r\n  \"a\": 1\r\n}\r\n",
             "\xEF\xBB\xBF[1, 2]",
             "[12345678901234567890, 9007199254740993, 1.000000000000000005]",
             "[3000000000, -1]",
             "[\"\\ud83d\\ude00\", \"\\u0000\"]",
         }) {
        EXPECT_EQ(Unedited(json), json);
        EXPECT_EQ(Edited(json, Squeeze), json);
    }
}

TEST(WorkbenchJson, EditedValuesChangeAloneAndKeepTheirKind)
{
    const std::string json = "{\"yes\": true, \"n\": 1.0, \"t\": \"\\u0061\", \"list\": [1.50, 2]}";
    EXPECT_EQ(Edited(json, [](Array& array) { array.items[1] = Number(0); }),
              "{\"yes\": false, \"n\": 1.0, \"t\": \"\\u0061\", \"list\": [1.50, 2]}");
    EXPECT_EQ(Edited(json, [](Array& array) { array.items[1] = Number(5); }),
              "{\"yes\": 5, \"n\": 1.0, \"t\": \"\\u0061\", \"list\": [1.50, 2]}");
    EXPECT_EQ(Edited(json, [](Array& array) { array.items[3] = Number(0); }),
              "{\"yes\": true, \"n\": 0, \"t\": \"\\u0061\", \"list\": [1.50, 2]}");
    EXPECT_EQ(Edited(json, [](Array& array) { array.items[5] = Text(u"b\"\n"); }),
              "{\"yes\": true, \"n\": 1.0, \"t\": \"b\\\"\\n\", \"list\": [1.50, 2]}");
    EXPECT_EQ(Edited(json,
                     [](Array& array) {
                         array.items[7] = FloatArray({2}, {1.5, 2.25});
                     }),
              "{\"yes\": true, \"n\": 1.0, \"t\": \"\\u0061\", \"list\": [1.50, 2.25]}");
}

TEST(WorkbenchJson, ItemsPutInOrTakenOutLeaveTheOthersAlone)
{
    const std::string json = "[\"\\u0061\", true, {\"k\": 1.0}]";
    EXPECT_EQ(Edited(json,
                     [](Array& array) {
                         array.items.insert(array.items.begin(), Text(u"new"));
                         array.shape = {4};
                     }),
              "[\"new\", \"\\u0061\", true, {\"k\": 1.0}]");
    EXPECT_EQ(Edited(json,
                     [](Array& array) {
                         array.items.erase(array.items.begin());
                         array.shape = {2};
                     }),
              "[true, {\"k\": 1.0}]");
}

TEST(WorkbenchJson, ObjectsFollowTheirNames)
{
    const std::string json = "{\"a\": 1.0, \"b\": true, \"c\": [2.0]}";
    EXPECT_EQ(Edited(json,
                     [](Array& array) {
                         array.items = {array.items[4], array.items[5], array.items[2], array.items[3]};
                         array.shape = {2, 2};
                     }),
              "{\"c\": [2.0], \"b\": true}");
    EXPECT_EQ(Edited(json, [](Array& array) { array.items[2] = Text(u"B"); }),
              "{\"a\": 1.0, \"B\": true, \"c\": [2.0]}");
}

TEST(WorkbenchJson, RepeatedNamesKeepTheirValues)
{
    EXPECT_EQ(Edited("{\"a\": 1.0, \"a\": true}", [](Array& array) { array.items[1] = Number(7); }),
              "{\"a\": 7, \"a\": true}");
}

TEST(WorkbenchJson, TextsKeepTheirLineEnds)
{
    const auto edit = [](Array& array) { array = Text(u"one\r\ntwo\r\nthree"); };
    EXPECT_EQ(Edited("\"one\\ntwo\"", edit), "\"one\\ntwo\\nthree\"");
    EXPECT_EQ(Edited("\"one\\r\\ntwo\"", edit), "\"one\\r\\ntwo\\r\\nthree\"");
}

TEST(WorkbenchJson, EmptiedListsStayLists)
{
    const auto empty = [](Array& array) { array = EmptyVector(); };
    EXPECT_EQ(Edited("[1, 2]", empty), "[]");
    EXPECT_EQ(Edited("null", empty), "null");
    EXPECT_EQ(Edited("5", empty), "null");
}

TEST(WorkbenchJson, BigWholeNumbersSurviveTheEditor)
{
    WriteContext context;
    const std::string json = "{\"time\": 1545433000000, \"n\": 1}";
    const std::string out = Edited(
        json,
        [](Array& array) {
            array.items[1] = Number(-2147483648.0);
            array.items[3] = Number(2);
        },
        &context);
    EXPECT_EQ(out, "{\"time\": 1545433000000, \"n\": 2}");
    ASSERT_EQ(context.notes.size(), 1u);
    EXPECT_NE(context.notes[0].find("1545433000000"), std::string::npos);
}

TEST(WorkbenchJson, DigitsThatWereNotShownAreNotAnEdit)
{
    WriteContext context;
    context.precision = 10;
    EXPECT_EQ(Edited(
                  "[3.14159265358979, 1]",
                  [](Array& array) {
                      array = FloatArray({2}, {3.141592654, 2});
                  },
                  &context),
              "[3.14159265358979, 2]");
}

TEST(WorkbenchJson, WritesArraysThatCameFromNowhere)
{
    EXPECT_EQ(Fresh(NumericArray({2, 2}, {1, 2, 3, 0.5})), "[\n  [1, 2],\n  [3, 0.5]\n]\n");
    EXPECT_EQ(Fresh(Text(u"a\u2373")), "\"a\xE2\x8D\xB3\"\n");
    EXPECT_EQ(Fresh(TextOf({2, 2}, u"abcd")), "[\n  \"ab\",\n  \"cd\"\n]\n");
    EXPECT_EQ(Fresh(ComplexArray({}, {{1, -2}})), "\"1J-2\"\n");
    EXPECT_EQ(Fresh(DecimalArray({}, {"1.50"})), "1.50\n");
    EXPECT_EQ(Fresh(FloatArray({}, {std::numeric_limits<double>::infinity()})), "\"Infinity\"\n");
    EXPECT_EQ(Fresh(FloatArray({}, {1e23})), "1e+23\n");
    EXPECT_EQ(Fresh(EmptyVector()), "null\n");
    EXPECT_EQ(Fresh(NumericArray({2, 0}, {})), "[\n  [],\n  []\n]\n");
    EXPECT_EQ(Fresh(EmptyNestedArray({0}, Number(0))), "[]\n");
    EXPECT_EQ(Fresh(NestedArray({}, {Text(u"x")})), "\"x\"\n");
    EXPECT_EQ(Fresh(NestedArray({1, 2}, {Text(u"k"), Number(1)})), "{\n  \"k\": 1\n}\n");
    EXPECT_EQ(Fresh(NestedArray({1, 2}, {Number(3), Text(u"k")})), "[\n  [3, \"k\"]\n]\n");
    EXPECT_EQ(Fresh(CharacterArray(ElementType::Char16, {1}, {U"\xD800", 1})), "\"\\ud800\"\n");
}

TEST(WorkbenchJson, NamesTheLineOfAnError)
{
    EXPECT_NE(ErrorOf("[1,\n2,\n}").find("line 3"), std::string::npos) << ErrorOf("[1,\n2,\n}");
    EXPECT_NE(ErrorOf("").find("line 1"), std::string::npos);
    EXPECT_NE(ErrorOf("[1]\n[2]").find("line 2"), std::string::npos);
    EXPECT_NE(ErrorOf("[\n1e400]").find("line 2"), std::string::npos) << ErrorOf("[\n1e400]");
    EXPECT_NE(ErrorOf("\"\xFF\"").find("line 1"), std::string::npos);
    EXPECT_NE(ErrorOf("\"\\ud800\"").find("line 1"), std::string::npos);
    EXPECT_NE(ErrorOf(std::string(100000, '[')).find("deeper than 500"), std::string::npos);
}

TEST(WorkbenchJson, TellsWhichDigitsAreTooMany)
{
    const Document document = ReadJson("[1,\n12345678901234567890]");
    ASSERT_EQ(document.notes.size(), 1u);
    EXPECT_NE(document.notes[0].find("12345678901234567890 in line 2"), std::string::npos)
        << document.notes[0];
    EXPECT_TRUE(ReadJson("[9007199254740992, 0.1]").notes.empty());
}

} // namespace
} // namespace vantrel::workbench
