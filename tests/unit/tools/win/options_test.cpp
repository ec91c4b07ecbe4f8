#include "tools/win/options.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <shlwapi.h>

#include <cstring>
#include <string>

#include "tools/win/fonts.h"

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

// A window that is counted as long as it lives.
class CountedWindow {
public:
    CountedWindow()
        : window_(CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 10, 20, 300, 200, nullptr, nullptr,
                                  nullptr, nullptr))
    {
        CountOpenWindow(window_);
    }
    ~CountedWindow()
    {
        UncountOpenWindow(window_);
        DestroyWindow(window_);
    }
    CountedWindow(const CountedWindow&) = delete;
    CountedWindow& operator=(const CountedWindow&) = delete;
    [[nodiscard]] HWND Get() const { return window_; }

private:
    HWND window_;
};

class Placements : public Options {
protected:
    Placements() { context.langEnv = &environment; }

    void Store(UINT showCommand)
    {
        WINDOWPLACEMENT placement{};
        placement.length = sizeof placement;
        placement.showCmd = showCommand;
        placement.rcNormalPosition = {40, 50, 440, 350};
        SaveOption(u"MATLAB Vantrel window 1", u"Window placement", &placement, sizeof placement);
    }
    // The show command that brought the window back.
    void Restore(HWND window)
    {
        environment.DialectKind = Dialect::Matlab;
        WindowPlacementRestore(&context, window);
    }

    LangEnv environment{};
    EditContext context;
};

TEST_F(Placements, AreNamedByTheHostAndTheNumberOfTheWindow)
{
    const std::pair<Dialect, const char16_t*> hosts[] = {{Dialect::Apl2, u"APL2"},
                                                         {Dialect::Aplx, u"APLX"},
                                                         {Dialect::Dyalog, u"Dyalog"},
                                                         {Dialect::Matlab, u"MATLAB"}};
    const CountedWindow first;
    const CountedWindow second;
    for (const auto& [dialect, name] : hosts) {
        environment.DialectKind = dialect;
        WindowPlacementSave(&context, first.Get());
        WindowPlacementSave(&context, second.Get());
        WINDOWPLACEMENT read{};
        for (const char16_t* number : {u"1", u"2"}) {
            const std::u16string key = std::u16string(name) + u" Vantrel window " + number;
            EXPECT_EQ(ReadOption(key.c_str(), u"Window placement", &read, 44), 0);
        }
    }
}

TEST_F(Placements, NeverComeBackHiddenOrMinimised)
{
    for (const UINT command : {SW_HIDE, SW_SHOWMINIMIZED, SW_MINIMIZE, SW_SHOWMINNOACTIVE, SW_SHOWNORMAL,
                               SW_SHOWNOACTIVATE, SW_SHOW, SW_SHOWNA, SW_RESTORE, 12345}) {
        const CountedWindow window;
        Store(command);
        Restore(window.Get());
        EXPECT_TRUE(IsWindowVisible(window.Get())) << command;
        EXPECT_FALSE(IsIconic(window.Get())) << command;
        EXPECT_FALSE(IsZoomed(window.Get())) << command;
        RECT place{};
        GetWindowRect(window.Get(), &place);
        EXPECT_EQ(place.left, 40) << command;
        EXPECT_EQ(place.bottom, 350) << command;
    }
}

TEST_F(Placements, MaximisedStaysMaximised)
{
    const CountedWindow window;
    Store(SW_SHOWMAXIMIZED);
    Restore(window.Get());
    EXPECT_TRUE(IsZoomed(window.Get()));
}

TEST_F(Placements, WithoutOneTheWindowOpensNormally)
{
    const CountedWindow window;
    Restore(window.Get());
    EXPECT_TRUE(IsWindowVisible(window.Get()));
    RECT place{};
    GetWindowRect(window.Get(), &place);
    EXPECT_EQ(place.left, 10);
}

TEST_F(Placements, TheCounterFollowsTheOpenWindows)
{
    const long before = g_openWindowCount;
    {
        const CountedWindow first;
        const CountedWindow second;
        EXPECT_EQ(g_openWindowCount, before + 2);
    }
    EXPECT_EQ(g_openWindowCount, before);
}

TEST(DefaultFont, IsTwelvePointsOfTheArrayFace)
{
    const LOGFONTA font = GetDefaultLogFont();
    HDC const screen = GetDC(nullptr);
    EXPECT_EQ(font.lfHeight, MulDiv(12, GetDeviceCaps(screen, LOGPIXELSY), 72));
    ReleaseDC(nullptr, screen);
    EXPECT_EQ(font.lfWeight, 400);
    EXPECT_EQ(font.lfItalic | font.lfUnderline | font.lfStrikeOut | font.lfCharSet, 0);
    EXPECT_EQ(font.lfPitchAndFamily, FIXED_PITCH);
    EXPECT_STREQ(font.lfFaceName, "APL385 Unicode");
}

TEST(DefaultFont, ReplacesFacesOfAnotherCodePage)
{
    for (const char* const face : {"APL2", "APL2 Image", "Courier APL2", "Courier APL2 Bold"}) {
        LOGFONTA font{};
        font.lfHeight = 99;
        font.lfItalic = 1;
        std::strcpy(font.lfFaceName, face);
        ValidateLogFontA(font);
        const LOGFONTA expected = GetDefaultLogFont();
        EXPECT_EQ(std::memcmp(&font, &expected, sizeof font), 0) << face;
    }
}

TEST(DefaultFont, KeepsAnyOtherFace)
{
    for (const char* const face : {"apl2", "APL2 ", "Courier", "Courier New", ""}) {
        LOGFONTA font{};
        font.lfHeight = 99;
        std::strcpy(font.lfFaceName, face);
        ValidateLogFontA(font);
        EXPECT_EQ(font.lfHeight, 99) << face;
        EXPECT_STREQ(font.lfFaceName, face);
    }
}

} // namespace
} // namespace vantrel
