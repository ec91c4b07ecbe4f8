#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "workbench/formats/npy.h"

namespace vantrel::workbench {
namespace {

using namespace fake;

std::string Bytes(std::initializer_list<int> bytes)
{
    std::string out;
    for (const int byte : bytes)
        out += static_cast<char>(byte);
    return out;
}

// A file with the given header text and data.
std::string File(const std::string& header, const std::string& data, int version = 1)
{
    std::string out = "\x93NUMPY" + Bytes({version, 0});
    for (std::size_t i = 0; i < (version == 1 ? 2u : 4u); ++i)
        out += static_cast<char>(header.size() >> 8 * i & 255);
    return out + header + data;
}

std::string Dictionary(const std::string& type, const std::string& shape, bool fortran = false)
{
    return "{'descr': '" + type + "', 'fortran_order': " + (fortran ? "True" : "False") +
           ", 'shape': " + shape + ", }\n";
}

std::string DumpOf(const std::string& file)
{
    return Dump(ReadNpy(file).array);
}

template <typename Edit>
std::string Edited(const std::string& file, Edit edit, WriteContext* context = nullptr)
{
    const Document document = ReadNpy(file);
    Array array = document.array;
    edit(array);
    WriteContext own;
    return WriteNpy(array, &document, context != nullptr ? *context : own);
}

std::string Fresh(const Array& array)
{
    WriteContext context;
    return WriteNpy(array, nullptr, context);
}

std::string HeaderOf(const std::string& file)
{
    return file.substr(10, file.find('}') + 1 - 10);
}

std::string ErrorOf(const std::string& file)
{
    try {
        ReadNpy(file);
    } catch (const FormatError& error) {
        return error.what();
    }
    return "read";
}

TEST(WorkbenchNpy, ReadsEveryNumberType)
{
    EXPECT_EQ(DumpOf(File(Dictionary("|b1", "(2,)"), Bytes({1, 0}))), "bit[2](1 0)");
    EXPECT_EQ(DumpOf(File(Dictionary("|i1", "(2,)"), Bytes({0xFF, 5}))), "int8[2](-1 5)");
    EXPECT_EQ(DumpOf(File(Dictionary("|u1", "(1,)"), Bytes({0xFF}))), "int16[1](255)");
    EXPECT_EQ(DumpOf(File(Dictionary(">i2", "(1,)"), Bytes({0xFF, 0xFE}))), "int8[1](-2)");
    EXPECT_EQ(DumpOf(File(Dictionary("<u4", "()"), Bytes({0, 0, 0, 0x80}))), "float(2147483648)");
    EXPECT_EQ(DumpOf(File(Dictionary("<i8", "(1,)"), std::string(8, '\xFF'))), "int8[1](-1)");
    EXPECT_EQ(DumpOf(File(Dictionary("<f2", "(3,)"), Bytes({0, 0x3C, 1, 0, 0, 0xFC}))),
              "float[3](1 5.960464477539063e-08 -inf)");
    EXPECT_EQ(DumpOf(File(Dictionary(">f4", "(1,)"), Bytes({0x3F, 0xC0, 0, 0}))), "float[1](1.5)");
    EXPECT_EQ(DumpOf(File(Dictionary("<f8", "(1,)"), Bytes({0, 0, 0, 0, 0, 0, 0, 0x40}))), "float[1](2)");
    EXPECT_EQ(DumpOf(File(Dictionary("<c8", "(1,)"), Bytes({0, 0, 0x80, 0x3F, 0, 0, 0, 0xC0}))),
              "complex[1](1J-2)");
}

TEST(WorkbenchNpy, ReadsStrings)
{
    EXPECT_EQ(DumpOf(File(Dictionary("|S2", "(2,)"), "ab" + Bytes({0xE9, 0}))),
              "nested[2](char8[2]\"ab\" char8[1]\"\\{e9}\")");
    EXPECT_EQ(DumpOf(File(Dictionary("<U1", "(2,)"), Bytes({'a', 0, 0, 0, 0x73, 0x23, 0, 0}))),
              "char16[2]\"a\\{2373}\"");
    EXPECT_EQ(DumpOf(File(Dictionary(">U2", "()"), Bytes({0, 1, 0xF6, 0, 0, 0, 0, 0}))),
              "char16[2]\"\\{d83d}\\{de00}\"");
    EXPECT_EQ(DumpOf(File(Dictionary("<U3", "(0,)"), "")), "nested[0](char8[0]\"\")");
}

TEST(WorkbenchNpy, ReadsFortranOrderAndEveryVersion)
{
    const std::string data = Bytes({1, 4, 2, 5, 3, 6});
    for (const int version : {1, 2, 3}) {
        EXPECT_EQ(DumpOf(File(Dictionary("|i1", "(2, 3)", true), data, version)), "int8[2 3](1 2 3 4 5 6)");
    }
    EXPECT_EQ(DumpOf(File("{'shape':(2L,1),'fortran_order':False,'descr':\"|i1\"}", Bytes({7, 8}))),
              "int8[2 1](7 8)");
}

TEST(WorkbenchNpy, UneditedFilesComeBackByteForByte)
{
    // As NumPy pads it: the data begin at a multiple of 64.
    const std::string header = "{'descr': '>f4', 'fortran_order': True, 'shape': (2, 2), }";
    const std::string file =
        File(header + std::string(128 - 10 - header.size() - 1, ' ') + "\n",
             Bytes({0x3F, 0xC0, 0, 0, 0x40, 0, 0, 0, 0x40, 0x40, 0, 0, 0x40, 0x80, 0, 0}));
    EXPECT_EQ(DumpOf(file), "float[2 2](1.5 3 2 4)");
    EXPECT_EQ(Edited(file, [](Array&) {}), file);
}

TEST(WorkbenchNpy, WritesTheHeaderThatNumPyWrites)
{
    const std::string file = Fresh(FloatArray({3}, {1, 2.5, 3}));
    EXPECT_EQ(file.substr(0, 10), "\x93NUMPY" + Bytes({1, 0, 0x76, 0}));
    EXPECT_EQ(HeaderOf(file), "{'descr': '<f8', 'fortran_order': False, 'shape': (3,), }");
    EXPECT_EQ(file[127], '\n');
    EXPECT_EQ(file.size(), 128u + 24);
}

TEST(WorkbenchNpy, WritesArraysThatCameFromNowhere)
{
    const std::vector<std::pair<Array, std::string>> rows = {
        {BooleanArray({2}, {1, 0}), "|b1"},   {NumericArray({1, 2}, {1, 70000}), "<i8"},
        {ComplexArray({}, {{1, 2}}), "<c16"}, {Text(u"abc"), "<U3"},
        {TextOf({2, 2}, u"abcd"), "<U2"},     {NestedArray({2}, {Text(u"a"), Text(u"\U0001F600bc")}), "<U3"},
    };
    for (const auto& [array, type] : rows) {
        const std::string file = Fresh(array);
        EXPECT_NE(HeaderOf(file).find("'" + type + "'"), std::string::npos) << HeaderOf(file);
    }
    EXPECT_EQ(DumpOf(Fresh(NestedArray({2}, {Text(u"a"), Text(u"\U0001F600bc")}))),
              "nested[2](char8[1]\"a\" char16[4]\"\\{d83d}\\{de00}bc\")");
    EXPECT_EQ(DumpOf(Fresh(NumericArray({1, 2}, {1, 70000}))), "int32[1 2](1 70000)");
    EXPECT_EQ(DumpOf(Fresh(FloatArray({0, 3}, {}))), "float[0 3]()");
}

TEST(WorkbenchNpy, KeepsTheElementTypeWhereTheValuesFit)
{
    const std::string bytes = File(Dictionary("|u1", "(2,)"), Bytes({200, 1}));
    EXPECT_EQ(HeaderOf(Edited(bytes,
                              [](Array& array) {
                                  array = NumericArray({2}, {0, 1});
                              }))
                  .substr(0, 15),
              "{'descr': '|u1'");
    EXPECT_EQ(HeaderOf(Edited(bytes,
                              [](Array& array) {
                                  array = NumericArray({2}, {-1, 1});
                              }))
                  .substr(0, 15),
              "{'descr': '<i8'");
    EXPECT_EQ(HeaderOf(Edited(bytes,
                              [](Array& array) {
                                  array = FloatArray({2}, {0.5, 1});
                              }))
                  .substr(0, 15),
              "{'descr': '<f8'");
    EXPECT_EQ(DumpOf(Edited(bytes,
                            [](Array& array) {
                                array = NumericArray({3}, {1, 2, 3});
                            })),
              "int8[3](1 2 3)");
}

TEST(WorkbenchNpy, UneditedItemsKeepTheirBytes)
{
    const std::string big = Bytes({1, 0, 0, 0, 0, 0, 0x20, 0, 2, 0, 0, 0, 0, 0, 0, 0});
    const std::string file = File(Dictionary("<i8", "(2,)"), big);
    ASSERT_EQ(ReadNpy(file).notes.size(), 1u);
    WriteContext context;
    const std::string out = Edited(
        file,
        [](Array& array) {
            array = NumericArray({2}, {-2147483648.0, 3});
        },
        &context);
    EXPECT_EQ(out.substr(out.size() - 16), Bytes({1, 0, 0, 0, 0, 0, 0x20, 0, 3, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(context.notes.size(), 1u);
}

TEST(WorkbenchNpy, FloatsOfEverySizeComeBack)
{
    for (const std::size_t size : {2u, 4u, 8u}) {
        for (const double value : {0.0, 1.0, -2.5, 65504.0, 0.000060975551605224609375,
                                   5.9604644775390625e-08, std::numeric_limits<double>::infinity()}) {
            const NpyType type{'f', size, size == 4};
            std::string bytes;
            AppendNpyNumber(bytes, type, {value, 0});
            EXPECT_EQ(bytes.size(), size);
            EXPECT_EQ(ReadNpyNumber(type, bytes.data()).real, value) << size;
        }
    }
    std::string bytes;
    AppendNpyNumber(bytes, {'f', 2, false}, {1.0 + 1.0 / 2048, 0});
    AppendNpyNumber(bytes, {'f', 2, false}, {1e6, 0});
    AppendNpyNumber(bytes, {'f', 2, false}, {2047.9999, 0});
    EXPECT_EQ(ReadNpyNumber({'f', 2, false}, bytes.data()).real, 1.0);
    EXPECT_TRUE(std::isinf(ReadNpyNumber({'f', 2, false}, bytes.data() + 2).real));
    EXPECT_EQ(ReadNpyNumber({'f', 2, false}, bytes.data() + 4).real, 2048);
}

TEST(WorkbenchNpy, StringsKeepTheirKindAndGrow)
{
    const std::string file = File(Dictionary("|S2", "(2,)"), "abcd");
    EXPECT_EQ(HeaderOf(Edited(file, [](Array& array) { array.items[0] = Text(u"longer"); })).substr(0, 15),
              "{'descr': '|S6'");
    EXPECT_EQ(HeaderOf(Edited(file, [](Array& array) { array.items[0] = Text(u"\u2373"); })).substr(0, 15),
              "{'descr': '<U2'");
    const std::string single = File(Dictionary("<U1", "(2,)"), Bytes({'a', 0, 0, 0, 'b', 0, 0, 0}));
    EXPECT_EQ(DumpOf(Edited(single, [](Array& array) { array = Text(u"xyz"); })), "char8[3]\"xyz\"");
}

TEST(WorkbenchNpy, RefusesWhatItCannotHold)
{
    EXPECT_THROW(Fresh(NestedArray({1}, {Number(1)})), FormatError);
    EXPECT_THROW(Fresh(DecimalArray({}, {"1"})), FormatError);
}

TEST(WorkbenchNpy, RefusesDamagedFiles)
{
    const std::string good = File(Dictionary("<f8", "(1,)"), std::string(8, '\0'));
    EXPECT_EQ(ErrorOf(good), "read");
    EXPECT_NE(ErrorOf("NUMPY").find("byte 0"), std::string::npos);
    EXPECT_NE(ErrorOf(File("{}", "", 9)).find("version 9"), std::string::npos);
    EXPECT_NE(ErrorOf(good.substr(0, good.size() - 1)).find("ends before its array"), std::string::npos);
    EXPECT_NE(ErrorOf(good + "x").find("more behind the array"), std::string::npos);
    EXPECT_NE(ErrorOf(File(Dictionary("<f8", "(9223372036854775807, 9223372036854775807)"), ""))
                  .find("ends before"),
              std::string::npos);
    EXPECT_NE(ErrorOf(File(Dictionary("<f8", "(1000000000000,)"), "")).find("ends before"),
              std::string::npos);
    EXPECT_NE(ErrorOf(File(Dictionary("|O", "(1,)"), "")).find("not supported"), std::string::npos);
    EXPECT_NE(ErrorOf(File(Dictionary("<f16", "(1,)"), "")).find("not supported"), std::string::npos);
    EXPECT_NE(ErrorOf(File(Dictionary("|S0", "(1,)"), "")).find("not supported"), std::string::npos);
    EXPECT_NE(ErrorOf(File("{'descr': [('a', '<i4')], 'fortran_order': False, 'shape': (1,)}", ""))
                  .find("structured"),
              std::string::npos);
    EXPECT_NE(ErrorOf(File("{'descr': '<f8'}", "")).find("entry is missing"), std::string::npos);
    EXPECT_NE(ErrorOf(File(Dictionary("<f8", "(-1,)"), "")).find("axis length"), std::string::npos);
    EXPECT_NE(ErrorOf(File(Dictionary("<f8", "(1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1)"), std::string(8, '\0')))
                  .find("15 axes"),
              std::string::npos);
    EXPECT_NE(ErrorOf(File(Dictionary("<U1", "(1,)"), std::string(4, '\xFF'))).find("no character"),
              std::string::npos);
    for (std::size_t length = 0; length < good.size(); ++length)
        EXPECT_NE(ErrorOf(good.substr(0, length)), "read") << length;
}

} // namespace
} // namespace vantrel::workbench
