#include "entry/error.h"

#include <gtest/gtest.h>

#include <string>

namespace vantrel {
namespace {

std::u16string TextOf(std::uint32_t code)
{
    return ErrorText(static_cast<VTERROR_CODE>(code));
}

TEST(ErrorText, EveryCodeHasItsText)
{
    const std::u16string texts[] = {u"NoError",
                                    u"Axis Error",
                                    u"Domain Error",
                                    u"Exception",
                                    u"Index Error",
                                    u"Interrupt",
                                    u"Length Error",
                                    u"Nonce Error",
                                    u"Operating System Error",
                                    u"Out of memory",
                                    u"Implicit Error - ⎕PP",
                                    u"Implicit Error - ⎕IO",
                                    u"Implicit Error - ⎕CT",
                                    u"Implicit Error - ⎕FC",
                                    u"Implicit Error - ⎕RL",
                                    u"Implicit Error - ⎕PR",
                                    u"Rank Error",
                                    u"Syntax Error",
                                    u"System Error",
                                    u"System Limit",
                                    u"Unclassified Error",
                                    u"Unknown Error",
                                    u"Valence Error",
                                    u"Value Error",
                                    u"WS Full"};
    for (std::uint32_t code = 0; code < std::size(texts); ++code)
        EXPECT_EQ(TextOf(code), texts[code]) << code;
}

TEST(ErrorText, CodesOutsideTheTableAreSpelledDifferently)
{
    EXPECT_EQ(TextOf(21), u"Unknown Error");
    EXPECT_EQ(TextOf(25), u"Unknown error");
    EXPECT_EQ(TextOf(0xFFFFFFFF), u"Unknown error");
}

TEST(ErrorCodeText, FillsTheTextOfTheCode)
{
    ErrorMessage message{VTERROR_CODE::RankError};
    ErrorCodeText(message);
    EXPECT_EQ(std::u16string(message.text), u"Rank Error");
    EXPECT_EQ(message.detail, nullptr);
}

TEST(ErrorCodeText, KeepsATextThatIsSet)
{
    ErrorMessage first{VTERROR_CODE::RankError, u"more specific", nullptr};
    ErrorCodeText(first);
    EXPECT_EQ(std::u16string(first.text), u"more specific");

    ErrorMessage second{VTERROR_CODE::RankError, nullptr, u"detail"};
    ErrorCodeText(second);
    EXPECT_EQ(second.text, nullptr);
}

} // namespace
} // namespace vantrel
