#include "builtin/item_copy.h"

#include <random>

#include "unit/builtin/arrays.h"

namespace vantrel::test {
namespace {

using ItemCopy = Arrays;

TEST_F(ItemCopy, BitsAreCopiedFromAnyPlaceToAnyPlace)
{
    std::mt19937 random(23);
    for (int round = 0; round < 3000; ++round) {
        std::string from, to;
        for (int i = 0; i < 70; ++i)
            from += random() % 2 != 0 ? '1' : '0';
        for (int i = 0; i < 70; ++i)
            to += random() % 2 != 0 ? '1' : '0';
        const auto count = static_cast<std::int64_t>(random() % 50);
        const std::int64_t fromFirst = static_cast<std::int64_t>(random()) % (70 - count + 1);
        const std::int64_t toFirst = static_cast<std::int64_t>(random()) % (70 - count + 1);
        const ScdrPtr source = Booleans(from);
        const ScdrPtr target = Booleans(to);
        CopyItems({TypeBoolean, target->data, toFirst}, {TypeBoolean, source->data, fromFirst}, count);
        to.replace(static_cast<std::size_t>(toFirst), static_cast<std::size_t>(count), from,
                   static_cast<std::size_t>(fromFirst), static_cast<std::size_t>(count));
        ASSERT_EQ(BitsOf(*target), to);
        ASSERT_EQ(BitsOf(*source), from);
    }
}

TEST_F(ItemCopy, RefusesToNarrow)
{
    const ScdrPtr integers = Integers({1, 2});
    const ScdrPtr reals = Reals({1, 2});
    const ScdrPtr characters = Characters(u"ab");
    EXPECT_THROW(CopyItems({TypeInteger, integers->data, 0}, {TypeReal, reals->data, 0}, 2), VTERROR_CODE);
    EXPECT_THROW(CopyItems({TypeInteger, integers->data, 0}, {TypeCharacter, characters->data, 0}, 2),
                 VTERROR_CODE);
    EXPECT_THROW(CopyItems({TypeCharacter, characters->data, 0}, {TypeInteger, integers->data, 0}, 2),
                 VTERROR_CODE);
    EXPECT_THROW(CopyItems({TypeDecimal, integers->data, 0}, {TypeInteger, integers->data, 0}, 1),
                 VTERROR_CODE);
    EXPECT_THROW(CopyItems({12, integers->data, 0}, {12, integers->data, 0}, 1), VTERROR_CODE);
}

TEST_F(ItemCopy, WidensFromAndToTheMiddle)
{
    const ScdrPtr target = Reals({0, 0, 0, 0});
    CopyItems({TypeReal, target->data, 1}, {TypeInteger, Integers({7, 8, 9})->data, 1}, 2);
    EXPECT_EQ(ItemsOf<double>(*target), (std::vector<double>{0, 8, 9, 0}));
    CopyItems({TypeReal, target->data, 3}, {TypeBoolean, Booleans("0001")->data, 3}, 1);
    EXPECT_EQ(ItemsOf<double>(*target), (std::vector<double>{0, 8, 9, 1}));
}

} // namespace
} // namespace vantrel::test
