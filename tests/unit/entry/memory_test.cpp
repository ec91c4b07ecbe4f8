#include "entry/memory.h"

#include <gtest/gtest.h>

#include <limits>

namespace vantrel {
namespace {

bool ThrowsOutOfMemory(void (*allocate)())
{
    try {
        allocate();
    } catch (VTERROR_CODE code) {
        return code == VTERROR_CODE::OutOfMemory;
    }
    return false;
}

void AllocateOne()
{
    FreeBytes(AllocateBytes(8));
}

TEST(Memory, CountsLiveBlocks)
{
    const std::int64_t before = LiveAllocations();
    {
        const auto block = AllocateArray<std::int32_t>(10);
        const Vector<int> vector(100);
        EXPECT_EQ(LiveAllocations(), before + 2);
    }
    EXPECT_EQ(LiveAllocations(), before);
}

TEST(Memory, EmptyBlocksAreRealBlocks)
{
    void* const block = AllocateBytes(0);
    EXPECT_NE(block, nullptr);
    FreeBytes(block);
    FreeBytes(nullptr);
}

TEST(Memory, ZeroedBlocksAreZero)
{
    const auto block = AllocateZeroedArray<std::uint8_t>(1000);
    for (std::size_t i = 0; i < 1000; ++i)
        ASSERT_EQ(block[i], 0);
}

TEST(Memory, SizesThatOverflowAreOutOfMemory)
{
    EXPECT_TRUE(ThrowsOutOfMemory(
        [] { static_cast<void>(CheckedMultiply(std::numeric_limits<std::int64_t>::max(), 2)); }));
    EXPECT_TRUE(ThrowsOutOfMemory([] { static_cast<void>(CheckedMultiply(-1, 1)); }));
    EXPECT_TRUE(
        ThrowsOutOfMemory([] { static_cast<void>(CheckedAdd(std::numeric_limits<std::size_t>::max(), 1)); }));
    EXPECT_EQ(CheckedMultiply(3, 5), 15u);
    EXPECT_EQ(CheckedAdd(3, 5), 8u);
}

TEST(AllocationFault, FailsOnceOrFromThenOn)
{
    ArmAllocationFault(2, false);
    EXPECT_FALSE(ThrowsOutOfMemory(AllocateOne));
    EXPECT_TRUE(ThrowsOutOfMemory(AllocateOne));
    EXPECT_FALSE(ThrowsOutOfMemory(AllocateOne));
    EXPECT_EQ(DisarmAllocationFault(), 1);

    ArmAllocationFault(1, true);
    EXPECT_TRUE(ThrowsOutOfMemory(AllocateOne));
    EXPECT_TRUE(ThrowsOutOfMemory([] { Text text(100, u'x'); }));
    EXPECT_EQ(DisarmAllocationFault(), 2);
    EXPECT_FALSE(ThrowsOutOfMemory(AllocateOne));
}

} // namespace
} // namespace vantrel
