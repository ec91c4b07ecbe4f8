#include "model/ccdr.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string_view>

#include "model/primitives.h"
#include "unit/support/test_context.h"
#include "unit/support/trees.h"

namespace vantrel {
namespace {

using namespace test;

using Bytes = std::vector<std::uint8_t>;

template <typename T> void Put(Bytes& bytes, std::size_t at, T value)
{
    std::memcpy(bytes.data() + at, &value, sizeof value);
}

template <typename T> T Get(const Bytes& bytes, std::size_t at)
{
    T value;
    std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
}

class Ccdr : public ::testing::Test {
protected:
    Bytes Image(const Scdr& node)
    {
        const std::int64_t size = CalcCcdrSize(node);
        std::uint8_t* block = ScdrToCcdr(context, node, nullptr);
        EXPECT_NE(block, nullptr);
        Bytes bytes(block, block + size);
        FreeBytes(block);
        return bytes;
    }
    // Reads from a block of exactly the bytes' size, so that the address sanitizer sees every byte read too far.
    ScdrPtr Read(const Bytes& bytes)
    {
        const auto size = static_cast<std::int64_t>(bytes.size());
        const OwnedArray<std::uint8_t> exact = AllocateArray<std::uint8_t>(size);
        std::copy(bytes.begin(), bytes.end(), exact.get());
        return CcdrToScdr(context, exact.get(), size);
    }
    VTERROR_CODE ErrorOf(const Bytes& bytes)
    {
        const std::int64_t live = LiveAllocations();
        EXPECT_EQ(Read(bytes), nullptr);
        EXPECT_EQ(LiveAllocations(), live);
        return context.TakeError();
    }
    TestContext context;
};

TEST_F(Ccdr, HeaderIsByteForByteAsDocumented)
{
    const Bytes image = Image(*Integers(context, {2, 1}, {7, -1}));
    ASSERT_EQ(image.size(), 48u + 16 + 16);
    EXPECT_EQ(std::string(image.begin(), image.begin() + 4), "CCDR");
    EXPECT_EQ(Get<std::uint32_t>(image, 4), 1u);
    EXPECT_EQ(Get<std::uint64_t>(image, 8), 0u);
    EXPECT_EQ(Get<std::uint64_t>(image, 16), 80u);
    EXPECT_EQ(Get<std::int64_t>(image, 24), 2);
    EXPECT_EQ(Get<std::uint32_t>(image, 32), 22u);
    EXPECT_EQ(Get<std::int32_t>(image, 36), 2);
    EXPECT_EQ(Get<std::uint64_t>(image, 40), 0u);
    EXPECT_EQ(Get<std::int64_t>(image, 48), 2);
    EXPECT_EQ(Get<std::int64_t>(image, 56), 1);
    EXPECT_EQ(Get<std::int64_t>(image, 64), 7);
    EXPECT_EQ(Get<std::int64_t>(image, 72), -1);
}

TEST_F(Ccdr, ChildrenFollowTheTableOfOffsets)
{
    const ScdrPtr tree = Nested(context, {2}, Items(Characters(context, u"ab"), Booleans(context, {}, {1})));
    tree->Flags = FlagStructure | FlagKeptSize;
    Children(*tree)[1]->Flags = FlagKeptSize | FlagMinimized;
    const Bytes image = Image(*tree);
    const std::size_t first = 48 + 8 + 16;
    const std::size_t second = first + 48 + 8 + 4;
    ASSERT_EQ(image.size(), second + 48 + 1);
    EXPECT_EQ(Get<std::uint64_t>(image, 16), image.size());
    EXPECT_EQ(Get<std::uint8_t>(image, 40), 1);
    EXPECT_EQ(Get<std::uint64_t>(image, 56), first);
    EXPECT_EQ(Get<std::uint64_t>(image, 64), second);
    EXPECT_EQ(Get<std::uint32_t>(image, first), 0x52444343u);
    EXPECT_EQ(Get<std::uint64_t>(image, first + 16), 60u);
    EXPECT_EQ(Get<std::uint8_t>(image, first + 40), 0);
    EXPECT_EQ(Get<std::uint8_t>(image, second + 40), 2);
    EXPECT_EQ(Get<char16_t>(image, first + 56), u'a');
    EXPECT_EQ(Get<std::uint8_t>(image, second + 48), 0x80);
}

TEST_F(Ccdr, AxisNamesFollowThePayloadOrTheLastChild)
{
    const Bytes simple = Image(*Booleans(context, {1, 1, 3}, {1, 0, 1}));
    ASSERT_EQ(simple.size(), 48u + 24 + 1 + 3 * 24);
    EXPECT_EQ(Get<char16_t>(simple, 73), u'A');
    const Bytes nested = Image(*Nested(context, {1, 1, 1}, Items(Booleans(context, {}, {1}))));
    ASSERT_EQ(nested.size(), 48u + 24 + 8 + 49 + 3 * 24);
    EXPECT_EQ(Get<char16_t>(nested, 48 + 24 + 8 + 49 + 20), u'1');
}

TEST_F(Ccdr, WritesIntoAGivenBlock)
{
    const ScdrPtr node = Characters(context, u"xy");
    Bytes block(static_cast<std::size_t>(CalcCcdrSize(*node)), 0);
    EXPECT_EQ(ScdrToCcdr(context, *node, block.data()), block.data());
    EXPECT_EQ(block, Image(*node));
}

TEST_F(Ccdr, RandomTreesComeBack)
{
    std::mt19937 random(99);
    std::size_t largest = 0;
    for (int i = 0; i < 400; ++i) {
        RandomTreeLimits limits;
        limits.decimals = false;
        const ScdrPtr tree = RandomTree(context, random, limits);
        // What an image does not carry: the kept-size flag of nested nodes and of the root.
        const Bytes image = Image(*tree);
        ASSERT_EQ(static_cast<std::int64_t>(image.size()), CalcCcdrSize(*tree));
        largest = std::max(largest, image.size());
        const ScdrPtr back = Read(image);
        ASSERT_NE(back, nullptr);
        ASSERT_TRUE(SameTree(*tree, *back));
        ASSERT_TRUE(IsSoundTree(*back));
        ASSERT_EQ(Image(*back), image);
    }
    EXPECT_GT(largest, 2000u);
}

TEST_F(Ccdr, EmptyNestedArrayCarriesItsPrototype)
{
    const ScdrPtr empty = Nested(context, {0, 3}, Items(Characters(context, u"p")));
    const ScdrPtr back = Read(Image(*empty));
    EXPECT_EQ(DumpTree(*back), "General[0 3](Character[1]'p')");
}

TEST_F(Ccdr, DecimalsComeBackWithoutTheirData)
{
    std::mt19937 random(1);
    const ScdrPtr decimals = RandomSimple(context, random, TypeDecimal, {2, 2});
    const Bytes image = Image(*decimals);
    EXPECT_EQ(image.size(), 48u + 16);
    const ScdrPtr back = Read(image);
    EXPECT_EQ(back->Type, TypeDecimal);
    EXPECT_EQ(back->ElementCount, 4);
    EXPECT_EQ(back->Shape[1], 2);
    EXPECT_EQ(back->SimplestType, 25);
}

TEST_F(Ccdr, SimplestTypesAreSet)
{
    const ScdrPtr back = Read(Image(*Nested(context, {1}, Items(Reals(context, {2}, {1, 0})))));
    EXPECT_EQ(Children(*back)[0]->SimplestType, 21);
}

TEST_F(Ccdr, FlagsComeBackWhereTheyBelong)
{
    const ScdrPtr tree =
        Nested(context, {2},
               Items(Characters(context, u"a"), Nested(context, {}, Items(Characters(context, u"b")))));
    tree->Flags = FlagStructure;
    Children(*tree)[0]->Flags = FlagKeptSize;
    Children(*tree)[1]->Flags = FlagStructure | FlagMinimized | FlagSizeValid;
    const ScdrPtr back = Read(Image(*tree));
    EXPECT_EQ(back->Flags, FlagStructure);
    EXPECT_EQ(Children(*back)[0]->Flags, FlagKeptSize);
    EXPECT_EQ(Children(*back)[1]->Flags, FlagStructure);
}

// --- version 0 ---

// Version 1 without the first 8 bytes of every block; offsets and sizes shrink with it.
void AppendOldBlock(Bytes& out, const Scdr& node, bool wide)
{
    const std::size_t start = out.size();
    out.resize(start + 40, 0);
    Put(out, start + 16, node.ElementCount);
    Put(out, start + 24, node.Type);
    Put(out, start + (wide ? 32 : 28), node.Rank);
    if (!IsSimple(node) && (node.Flags & FlagStructure) != 0) out[start + (wide ? 36 : 32)] = 1;
    if (IsSimple(node) && (node.Flags & FlagKeptSize) != 0) out[start + (wide ? 36 : 32)] = 2;
    for (std::int32_t axis = 0; axis < node.Rank; ++axis) {
        out.resize(out.size() + 8);
        Put(out, out.size() - 8, node.Shape[axis]);
    }
    const std::size_t payload = out.size();
    const std::size_t size = DataSize(node.Type, node.ElementCount);
    out.resize(payload + size);
    if (IsSimple(node)) std::memcpy(out.data() + payload, node.data, size);
    for (std::int64_t i = 0; i < ChildCount(node); ++i) {
        Put(out, payload + 8 * static_cast<std::size_t>(i), static_cast<std::uint64_t>(out.size() - start));
        AppendOldBlock(out, *Children(node)[i], wide);
    }
    Put(out, start + 8, static_cast<std::uint64_t>(out.size() - start));
}

TEST_F(Ccdr, Version0ReadsInBothItsForms)
{
    std::mt19937 random(5);
    for (int i = 0; i < 300; ++i) {
        RandomTreeLimits limits;
        limits.decimals = false;
        limits.axisNames = false; // only version 1 carries them
        const ScdrPtr tree = RandomTree(context, random, limits);
        for (const bool wide : {false, true}) {
            Bytes image;
            AppendOldBlock(image, *tree, wide);
            const ScdrPtr back = Read(image);
            ASSERT_NE(back, nullptr) << DumpTree(*tree);
            ASSERT_TRUE(SameTree(*tree, *back));
        }
    }
}

TEST_F(Ccdr, Version0FlagsOfAScalarAreNoRank)
{
    const ScdrPtr scalar = Complexes(context, {}, {1.5, 2});
    scalar->Flags = FlagKeptSize;
    Bytes image;
    AppendOldBlock(image, *scalar, false);
    const ScdrPtr back = Read(image);
    EXPECT_EQ(back->Rank, 0);
    EXPECT_EQ(back->Flags, FlagKeptSize);
}

// --- failures ---

TEST_F(Ccdr, FailedWritingSetsTheError)
{
    const ScdrPtr tree =
        Nested(context, {2},
               Items(Characters(context, u"abc"), Nested(context, {}, Items(Characters(context, u"d")))));
    int failures = 0;
    SweepAllocationFaults([&] {
        std::uint8_t* block = ScdrToCcdr(context, *tree, nullptr);
        if (block == nullptr) {
            ++failures;
            EXPECT_EQ(context.TakeError(), VTERROR_CODE::OutOfMemory);
        }
        FreeBytes(block);
    });
    EXPECT_GE(failures, 4);
}

TEST_F(Ccdr, FailedReadingSetsTheErrorAndFreesTheTree)
{
    const Bytes image = Image(
        *Nested(context, {1, 1, 2},
                Items(Characters(context, u"a text beyond the room in the node"), Reals(context, {}, {1}))));
    int failures = 0;
    SweepAllocationFaults([&] {
        if (CcdrToScdr(context, image.data(), static_cast<std::int64_t>(image.size())) == nullptr) {
            ++failures;
            EXPECT_EQ(context.TakeError(), VTERROR_CODE::OutOfMemory);
        }
    });
    EXPECT_GE(failures, 20);
}

TEST_F(Ccdr, EveryCutIsDamage)
{
    const Bytes image = Image(
        *Nested(context, {1, 1, 2},
                Items(Characters(context, u"ab"), Nested(context, {0}, Items(Reals(context, {}, {1}))))));
    for (std::size_t size = 0; size < image.size(); ++size) {
        ASSERT_EQ(ErrorOf(Bytes(image.begin(), image.begin() + static_cast<std::ptrdiff_t>(size))),
                  VTERROR_CODE::DomainError)
            << size;
    }
}

TEST_F(Ccdr, BytesBehindTheImageAreIgnored)
{
    Bytes image = Image(*Characters(context, u"ab"));
    image.resize(image.size() + 100, 0xEE);
    EXPECT_EQ(DumpTree(*Read(image)), "Character[2]'ab'");
}

TEST_F(Ccdr, DamagedHeadersAreRefused)
{
    const Bytes good = Image(*Integers(context, {2, 2}, {1, 2, 3, 4}));
    const auto damaged = [&](std::size_t at, auto value) {
        Bytes bytes = good;
        Put(bytes, at, value);
        return ErrorOf(bytes);
    };
    EXPECT_EQ(damaged(4, std::uint32_t{0}), VTERROR_CODE::DomainError);
    EXPECT_EQ(damaged(4, std::uint32_t{2}), VTERROR_CODE::DomainError);
    for (const std::int64_t size : {std::int64_t{0}, std::int64_t{47}, std::int64_t{95}, std::int64_t{97},
                                    std::int64_t{-1}, INT64_MAX, INT64_MIN}) {
        EXPECT_EQ(damaged(16, size), VTERROR_CODE::DomainError) << size;
    }
    for (const std::int64_t count :
         {std::int64_t{3}, std::int64_t{5}, std::int64_t{-4}, std::int64_t{0}, INT64_MAX}) {
        EXPECT_EQ(damaged(24, count), VTERROR_CODE::DomainError) << count;
    }
    for (const std::uint32_t type : {1u, 10u, 20u, 26u, 0xFFFFFFFFu})
        EXPECT_EQ(damaged(32, type), VTERROR_CODE::DomainError) << type;
    for (const std::int32_t rank : {-1, 0, 1, 3, 1000, 0x7FFFFFFF})
        EXPECT_EQ(damaged(36, rank), VTERROR_CODE::DomainError) << rank;
    for (const std::int64_t axis :
         {std::int64_t{-2}, std::int64_t{0}, std::int64_t{3}, INT64_MAX, INT64_MIN}) {
        EXPECT_EQ(damaged(48, axis), VTERROR_CODE::DomainError) << axis;
    }
}

TEST_F(Ccdr, ShapesThatOverflowAreRefused)
{
    Bytes image = Image(*Integers(context, {2, 2}, {1, 2, 3, 4}));
    // 2^33 x 2^31 wraps to 0, which an empty array would have.
    Put(image, 48, std::int64_t{1} << 33);
    Put(image, 56, std::int64_t{1} << 31);
    Put(image, 24, std::int64_t{0});
    EXPECT_EQ(ErrorOf(image), VTERROR_CODE::DomainError);
    // An empty array may have long axes, but its planes must be countable.
    image = Image(*Integers(context, {0, 0, 0, 0}, {}));
    for (const std::size_t at : {48u, 56u})
        Put(image, at, std::int64_t{1} << 40);
    EXPECT_EQ(ErrorOf(image), VTERROR_CODE::OutOfMemory);
}

TEST_F(Ccdr, CountsThatWouldNeedMoreMemoryThanTheImageAreRefused)
{
    for (const std::uint32_t type :
         {TypeNested, TypeCharacter, TypeBoolean, TypeInteger, TypeReal, TypeComplex}) {
        Bytes image = Image(*Integers(context, {1}, {1}));
        Put(image, 32, type);
        Put(image, 24, std::int64_t{1} << 45);
        Put(image, 48, std::int64_t{1} << 45);
        EXPECT_EQ(ErrorOf(image), VTERROR_CODE::DomainError) << type;
    }
}

TEST_F(Ccdr, DecimalsHaveAnAllowance)
{
    Bytes image(56);
    std::memcpy(image.data(), "CCDR", 4);
    Put(image, 4, std::uint32_t{1});
    Put(image, 16, std::int64_t{56});
    Put(image, 32, std::uint32_t{TypeDecimal});
    Put(image, 36, std::int32_t{1});
    for (const std::int64_t count : {std::int64_t{1} << 30, std::int64_t{1} << 60, INT64_MAX}) {
        Put(image, 24, count);
        Put(image, 48, count);
        EXPECT_EQ(ErrorOf(image), VTERROR_CODE::SystemLimit);
    }
    Put(image, 24, std::int64_t{100000});
    Put(image, 48, std::int64_t{100000});
    EXPECT_EQ(Read(image)->ElementCount, 100000);
}

class CcdrOffsets : public Ccdr {
protected:
    CcdrOffsets()
    {
        image = Image(*Nested(context, {2}, Items(Characters(context, u"ab"), Characters(context, u"cd"))));
        first = Get<std::int64_t>(image, 56);
        second = Get<std::int64_t>(image, 64);
    }
    VTERROR_CODE With(std::int64_t firstOffset, std::int64_t secondOffset)
    {
        Put(image, 56, firstOffset);
        Put(image, 64, secondOffset);
        return ErrorOf(image);
    }
    Bytes image;
    std::int64_t first;
    std::int64_t second;
};

TEST_F(CcdrOffsets, BackwardAndCyclic)
{
    EXPECT_EQ(With(0, second), VTERROR_CODE::DomainError); // the parent itself
    EXPECT_EQ(With(first, 0), VTERROR_CODE::DomainError);
    EXPECT_EQ(With(second, first), VTERROR_CODE::DomainError);
    EXPECT_EQ(With(-8, second), VTERROR_CODE::DomainError);
    EXPECT_EQ(With(INT64_MIN, second), VTERROR_CODE::DomainError);
}

TEST_F(CcdrOffsets, Overlapping)
{
    EXPECT_EQ(With(first, first), VTERROR_CODE::DomainError);
    EXPECT_EQ(With(first, second - 1), VTERROR_CODE::DomainError);
    EXPECT_EQ(With(56, second), VTERROR_CODE::DomainError); // inside the table
}

TEST_F(CcdrOffsets, ForwardOutOfTheBlock)
{
    EXPECT_EQ(With(first, static_cast<std::int64_t>(image.size())), VTERROR_CODE::DomainError);
    EXPECT_EQ(With(first, static_cast<std::int64_t>(image.size()) + 1), VTERROR_CODE::DomainError);
    EXPECT_EQ(With(first, INT64_MAX), VTERROR_CODE::DomainError);
    EXPECT_EQ(With(first, INT64_MAX - 40), VTERROR_CODE::DomainError);
}

TEST_F(CcdrOffsets, ChildLargerThanItsParent)
{
    Put(image, static_cast<std::size_t>(second) + 16, std::int64_t{61});
    EXPECT_EQ(ErrorOf(image), VTERROR_CODE::DomainError);
}

TEST_F(Ccdr, AxisNamesWithoutTerminatorAreRefused)
{
    Bytes image = Image(*Booleans(context, {1, 1, 3}, {1, 0, 1}));
    Put(image, image.size() - 2, char16_t{u'x'});
    image.insert(image.end(), 10, 0); // a terminator behind the block is none
    EXPECT_EQ(ErrorOf(image), VTERROR_CODE::DomainError);
}

TEST_F(Ccdr, NestingHasALimit)
{
    ScdrPtr tree = Integers(context, {}, {5});
    for (std::int64_t i = 0; i < DeepestNesting; ++i)
        tree = Nested(context, {}, Items(std::move(tree)));
    const ScdrPtr back = Read(Image(*tree));
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(ScdrDepth(*back), DeepestNesting);
    tree = Nested(context, {}, Items(std::move(tree)));
    EXPECT_EQ(ErrorOf(Image(*tree)), VTERROR_CODE::SystemLimit);
}

TEST_F(Ccdr, VeryDeepTreesAreWrittenWithoutStack)
{
    ScdrPtr tree = Integers(context, {}, {5});
    for (int i = 0; i < 200000; ++i)
        tree = Nested(context, {}, Items(std::move(tree)));
    EXPECT_EQ(CalcCcdrSize(*tree), 56 + 200000 * 56);
    EXPECT_EQ(ErrorOf(Image(*tree)), VTERROR_CODE::SystemLimit);
}

TEST_F(Ccdr, FlippedBytesNeverBreakTheReader)
{
    std::mt19937 random(17);
    int survived = 0;
    for (int i = 0; i < 3000; ++i) {
        RandomTreeLimits limits;
        limits.deepest = 3;
        Bytes image = Image(*RandomTree(context, random, limits));
        for (auto flips = random() % 4 + 1; flips > 0; --flips)
            image[random() % image.size()] = static_cast<std::uint8_t>(random());
        const std::int64_t live = LiveAllocations();
        {
            const ScdrPtr back = Read(image);
            if (back != nullptr) {
                ++survived;
                EXPECT_TRUE(IsSoundTree(*back));
            }
        }
        ASSERT_EQ(LiveAllocations(), live);
        (void)context.TakeError();
    }
    EXPECT_GT(survived, 100);
}

} // namespace
} // namespace vantrel
