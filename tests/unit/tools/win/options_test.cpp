#include "tools/win/options.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <shlwapi.h>

#include <string>

namespace vantrel {
namespace {

constexpr wchar_t Key[] = L"Software\\Quillmoor\\Vantrel\\1.1\\Options";

class Options : public testing::Test {
protected:
    void SetUp() override { SHDeleteKeyW(HKEY_CURRENT_USER, L"Software\\Quillmoor"); }
    void TearDown() override { SHDeleteKeyW(HKEY_CURRENT_USER, L"Software\\Quillmoor"); }
};

DWORD TypeOf(const wchar_t* key, const wchar_t* name)
{
    DWORD type = REG_NONE;
    RegGetValueW(HKEY_CURRENT_USER, key, name, RRF_RT_ANY, &type, nullptr, nullptr);
    return type;
}

TEST_F(Options, AreBinaryValuesUnderTheProgramsKey)
{
    SaveBooleanOption(u"Confirm close", true);
    EXPECT_EQ(TypeOf(Key, L"Confirm close"), DWORD{REG_BINARY});
    unsigned char stored[8] = {};
    DWORD size = sizeof stored;
    RegGetValueW(HKEY_CURRENT_USER, Key, L"Confirm close", RRF_RT_REG_BINARY, nullptr, stored, &size);
    EXPECT_EQ(size, 4u);
    EXPECT_EQ(stored[0], 1);
    EXPECT_EQ(stored[1] | stored[2] | stored[3], 0);
}

TEST_F(Options, AMissingValueIsTheDefault)
{
    EXPECT_TRUE(ReadBooleanOption(u"Ruler", true));
    EXPECT_FALSE(ReadBooleanOption(u"Ruler", false));
    std::int32_t value = 77;
    EXPECT_EQ(ReadOption(nullptr, u"Ruler", &value, sizeof value), 1);
    EXPECT_EQ(value, 77);
}

TEST_F(Options, AStoredValueWinsOverTheDefault)
{
    SaveBooleanOption(u"Ruler", false);
    EXPECT_FALSE(ReadBooleanOption(u"Ruler", true));
    SaveBooleanOption(u"Ruler", true);
    EXPECT_TRUE(ReadBooleanOption(u"Ruler", false));
}

TEST_F(Options, AValueOfAnotherSizeIsMissing)
{
    const unsigned char bytes[5] = {1, 2, 3, 4, 5};
    SaveOption(nullptr, u"Ruler", bytes, 5);
    EXPECT_FALSE(ReadBooleanOption(u"Ruler", false));
    std::int64_t larger = 9;
    EXPECT_EQ(ReadOption(nullptr, u"Ruler", &larger, sizeof larger), 1);
    EXPECT_EQ(larger, 9);
    unsigned char exact[5] = {};
    EXPECT_EQ(ReadOption(nullptr, u"Ruler", exact, 5), 0);
    EXPECT_EQ(exact[4], 5);
}

TEST_F(Options, ASubKeyHasValuesOfItsOwn)
{
    const std::int32_t value = 5;
    SaveOption(u"Sub ⍴", u"Value", &value, sizeof value);
    std::int32_t read = 0;
    EXPECT_EQ(ReadOption(nullptr, u"Value", &read, sizeof read), 1);
    EXPECT_EQ(ReadOption(u"", u"Value", &read, sizeof read), 1);
    EXPECT_EQ(ReadOption(u"Sub ⍴", u"Value", &read, sizeof read), 0);
    EXPECT_EQ(read, 5);
    EXPECT_EQ(TypeOf((std::wstring(Key) + L"\\Sub ⍴").c_str(), L"Value"), DWORD{REG_BINARY});
}

TEST_F(Options, AKeyTooLongForItsRoomIsNotCut)
{
    const std::u16string name(300, u'k');
    const std::int32_t value = 5;
    SaveOption(name.c_str(), u"Value", &value, sizeof value);
    std::int32_t read = 0;
    EXPECT_EQ(ReadOption(name.c_str(), u"Value", &read, sizeof read), 1);
    HKEY key = nullptr;
    EXPECT_NE(RegOpenKeyExW(HKEY_CURRENT_USER, Key, 0, KEY_READ, &key), ERROR_SUCCESS);
}

} // namespace
} // namespace vantrel
