#include "tools/decimal.h"

#include <gtest/gtest.h>

#include <limits>

namespace vantrel {
namespace {

Text Decimal(std::int64_t number)
{
    Text text(u"n=");
    AppendDecimal(text, number);
    return text.substr(2);
}

TEST(Decimal, IsAppendedWithItsSign)
{
    EXPECT_EQ(Decimal(0), u"0");
    EXPECT_EQ(Decimal(-7), u"-7");
    EXPECT_EQ(Decimal(1002003), u"1002003");
}

TEST(Decimal, HasRoomForTheOutermostNumbers)
{
    EXPECT_EQ(Decimal(std::numeric_limits<std::int64_t>::max()), u"9223372036854775807");
    EXPECT_EQ(Decimal(std::numeric_limits<std::int64_t>::min()), u"-9223372036854775808");
}

} // namespace
} // namespace vantrel
