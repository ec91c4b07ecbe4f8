#include <gtest/gtest.h>

#include <cstring>

#include "workbench/formats/ccdr.h"

namespace vantrel::workbench {
namespace {

using namespace fake;

template <typename T> void Put(std::string& out, T value)
{
    char bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    out.append(bytes, sizeof(T));
}

template <typename T> T At(const std::string& bytes, std::size_t offset)
{
    T value;
    std::memcpy(&value, bytes.data() + offset, sizeof(T));
    return value;
}

// A block as the format's description has it; `rest` is all behind the shape.
std::string BlockOf(int version, std::uint32_t type, const Shape& shape, const std::string& rest,
                    std::uint8_t flags = 0)
{
    std::string out;
    if (version == 1) {
        out = "CCDR";
        Put<std::uint32_t>(out, 1);
    }
    Put<std::uint64_t>(out, 0);
    Put<std::uint64_t>(out, (version == 1 ? 48 : 40) + 8 * shape.size() + rest.size());
    Put<std::int64_t>(out, static_cast<std::int64_t>(CountOf(shape)));
    Put<std::uint32_t>(out, type);
    Put<std::int32_t>(out, static_cast<std::int32_t>(shape.size()));
    Put<std::uint64_t>(out, flags);
    for (const std::int64_t length : shape)
        Put(out, length);
    return out + rest;
}

std::string NestedBlock(int version, const Shape& shape, const std::vector<std::string>& children,
                        std::uint8_t flags = 0)
{
    std::string table;
    std::string blocks;
    const std::size_t first = (version == 1 ? 48 : 40) + 8 * shape.size() + 8 * children.size();
    for (const std::string& child : children) {
        Put<std::uint64_t>(table, first + blocks.size());
        blocks += child;
    }
    return BlockOf(version, 0, shape, table + blocks, flags);
}

std::string Units(std::u16string_view text)
{
    return {reinterpret_cast<const char*>(text.data()), 2 * text.size()};
}

std::string Words(std::initializer_list<std::int64_t> values)
{
    std::string out;
    for (const std::int64_t value : values)
        Put(out, value);
    return out;
}

std::string DumpOf(const std::string& bytes)
{
    return Dump(ReadCcdr(bytes).array);
}

std::string ErrorOf(const std::string& bytes)
{
    try {
        ReadCcdr(bytes);
    } catch (const FormatError& error) {
        return error.what();
    }
    return "read";
}

template <typename Edit> std::string Edited(const std::string& bytes, Edit edit)
{
    const Document document = ReadCcdr(bytes);
    Array array = document.array;
    edit(array);
    return WriteCcdr(array, &document);
}

std::string Sample(int version)
{
    return NestedBlock(version, {3},
                       {BlockOf(version, 11, {2}, Units(u"a\u2373")), BlockOf(version, 21, {9}, "\xFF\x80"),
                        NestedBlock(version, {0}, {BlockOf(version, 22, {}, Words({-5}))}, 1)});
}

TEST(WorkbenchCcdr, ReadsBothVersions)
{
    for (const int version : {0, 1}) {
        EXPECT_EQ(DumpOf(Sample(version)),
                  "nested[3](char16[2]\"a\\{2373}\" bit[9](1 1 1 1 1 1 1 1 1) nested[0](int8(-5)))");
        EXPECT_EQ(DumpOf(BlockOf(version, 23, {1}, std::string(6, '\0') + "\xF8\x3F")), "float[1](1.5)");
        EXPECT_EQ(DumpOf(BlockOf(version, 24, {0}, "")), "complex[0]()");
    }
}

TEST(WorkbenchCcdr, DecimalsComeWithoutDigits)
{
    const Document document = ReadCcdr(BlockOf(1, 25, {2}, ""));
    EXPECT_EQ(Dump(document.array), "decimal[2](0 0)");
    EXPECT_EQ(document.notes.size(), 1u);
    EXPECT_EQ(WriteCcdr(document.array, &document), document.bytes);
}

TEST(WorkbenchCcdr, UneditedImagesComeBackByteForByte)
{
    const std::string names = Units(std::u16string(u"row\0column\0\0", 12));
    const std::string images[] = {
        Sample(1),
        BlockOf(1, 22, {2}, Words({9007199254740993, -1})),
        BlockOf(1, 22, {2}, Words({0, 1})),
        BlockOf(1, 23, {1}, Words({0})),
        BlockOf(1, 11, {1, 1, 1}, Units(u"x") + names, 2),
        NestedBlock(1, {1, 1, 1}, {BlockOf(1, 11, {0}, "", 2)}, 1),
    };
    for (std::size_t i = 0; i + 1 < std::size(images); ++i)
        EXPECT_EQ(Edited(images[i], [](Array&) {}), images[i]) << i;
    EXPECT_NE(ErrorOf(images[5]), "read") << "axis names are missing";
}

TEST(WorkbenchCcdr, ReadsAxisNamesBehindTheChildren)
{
    std::string image =
        NestedBlock(1, {1, 1, 1}, {BlockOf(1, 11, {0}, "")}) + Units(std::u16string(u"a\0b\0c\0", 6));
    const std::uint64_t size = image.size();
    std::memcpy(image.data() + 16, &size, 8);
    const Document document = ReadCcdr(image);
    EXPECT_EQ(document.ccdr->root.axisNames, (std::vector<std::u16string>{u"a", u"b", u"c"}));
    EXPECT_EQ(WriteCcdr(document.array, &document), image);
}

TEST(WorkbenchCcdr, EditedNumbersKeepTheirTypeWhereTheyFit)
{
    const std::string image = BlockOf(1, 22, {2}, Words({std::int64_t{1} << 62, 7}));
    const std::string out = Edited(image, [](Array& array) {
        array = NumericArray({2}, {-2147483648.0, 1});
    });
    EXPECT_EQ(out, BlockOf(1, 22, {2}, Words({std::int64_t{1} << 62, 1})));
    EXPECT_EQ(At<std::uint32_t>(Edited(image,
                                       [](Array& array) {
                                           array = FloatArray({2}, {0.5, 1});
                                       }),
                                32),
              23u);
}

TEST(WorkbenchCcdr, WritesArraysThatCameFromNowhere)
{
    EXPECT_EQ(WriteCcdr(Text(u"ab"), nullptr), BlockOf(1, 11, {2}, Units(u"ab")));
    EXPECT_EQ(WriteCcdr(BooleanArray({}, {1}), nullptr), BlockOf(1, 21, {}, "\x80"));
    EXPECT_EQ(WriteCcdr(Number(7), nullptr), BlockOf(1, 22, {}, Words({7})));
    EXPECT_EQ(WriteCcdr(ComplexArray({}, {{0, 0}}), nullptr), BlockOf(1, 24, {}, Words({0, 0})));
    const std::string cube = WriteCcdr(NumericArray({1, 1, 1}, {5}), nullptr);
    EXPECT_EQ(cube.substr(48 + 24 + 8),
              Units(std::u16string(u"Axis name 1\0Axis name 2\0Axis name 3\0", 36)));
}

TEST(WorkbenchCcdr, RefusesDamagedImages)
{
    const auto spoiled = [](std::size_t offset, auto value) {
        std::string image = Sample(1);
        std::memcpy(image.data() + offset, &value, sizeof value);
        return ErrorOf(image);
    };
    EXPECT_NE(spoiled(4, std::uint32_t{2}).find("version 2"), std::string::npos);
    EXPECT_NE(spoiled(16, std::uint64_t{1} << 60).find("more bytes"), std::string::npos);
    EXPECT_NE(spoiled(16, std::uint64_t{10}).find("fewer bytes"), std::string::npos);
    EXPECT_NE(spoiled(24, std::int64_t{4}).find("element count"), std::string::npos);
    EXPECT_NE(spoiled(32, std::uint32_t{5}).find("type code 5"), std::string::npos);
    EXPECT_NE(spoiled(36, std::int32_t{-1}).find("rank"), std::string::npos);
    EXPECT_NE(spoiled(36, std::int32_t{16}).find("rank"), std::string::npos);
    EXPECT_NE(spoiled(48, std::int64_t{-3}).find("negative"), std::string::npos);
    EXPECT_NE(spoiled(56, std::uint64_t{0}).find("offset"), std::string::npos);
    EXPECT_NE(spoiled(64, At<std::uint64_t>(Sample(1), 56)).find("offset"), std::string::npos);
    EXPECT_NE(ErrorOf(BlockOf(1, 23, {std::int64_t{1} << 61}, "")).find("too small"), std::string::npos);
    EXPECT_NE(ErrorOf(BlockOf(1, 25, {std::int64_t{1} << 61}, "")).find("decimal"), std::string::npos);
    EXPECT_NE(ErrorOf(BlockOf(1, 11, {1, 1, 1}, Units(u"xa"))).find("ends too early"), std::string::npos);
    for (std::size_t length = 0; length < Sample(1).size(); ++length) {
        EXPECT_NE(ErrorOf(Sample(1).substr(0, length)), "read") << length;
    }
}

TEST(WorkbenchCcdr, RefusesDeepNesting)
{
    std::string image = BlockOf(1, 11, {0}, "");
    for (int depth = 0; depth < 600; ++depth)
        image = NestedBlock(1, {}, {image});
    EXPECT_NE(ErrorOf(image).find("deeper than 500"), std::string::npos);
}

} // namespace
} // namespace vantrel::workbench
