#include "tools/utf8.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

TEST(Utf8, CharactersTakeOneToFourBytes)
{
    EXPECT_EQ(Utf8Of(u""), "");
    EXPECT_EQ(Utf8Of(u"a\x7F"), "a\x7F");
    EXPECT_EQ(Utf8Of(u"\u0080\u07FF"), "\xC2\x80\xDF\xBF");
    EXPECT_EQ(Utf8Of(u"\u0800⍴\uFFFF"), "\xE0\xA0\x80\xE2\x8D\xB4\xEF\xBF\xBF");
    EXPECT_EQ(Utf8Of(u"\U00010000\U0001F600\U0010FFFF"), "\xF0\x90\x80\x80\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF");
}

TEST(Utf8, HalvesOfPairsStayWhatTheyAre)
{
    const char16_t high[] = {0xD83D, u'a', 0};
    const char16_t low[] = {0xDE00, 0xD83D, 0};
    EXPECT_EQ(Utf8Of(high), "\xED\xA0\xBD"
                            "a");
    EXPECT_EQ(Utf8Of(low), "\xED\xB8\x80\xED\xA0\xBD");
}

} // namespace
} // namespace vantrel
