#include "tools/win/default_font.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>

namespace vantrel {
namespace {

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
