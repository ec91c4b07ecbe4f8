#include "hosts/clipboard.h"

#include <gtest/gtest.h>

#include "builtin/numeric.h"
#include "hosts/fake_clipboard.h"
#include "model/ccdr.h"
#include "model/rebuild.h"
#include "unit/support/test_context.h"
#include "unit/support/trees.h"

namespace vantrel {
namespace {

using namespace test;

class HostClipboard : public testing::Test {
protected:
    HostClipboard()
    {
        host.platform = &platform;
        context.context.host = &host;
    }
    void TearDown() override
    {
        for (const std::string& complaint : clipboard.Complaints())
            ADD_FAILURE() << complaint;
    }

    ScdrPtr Read() { return ScdrPtr(ReadClipboard(context, nullptr)); }
    ScdrPtr Pair()
    {
        return Nested(context, {2}, Items(Characters(context, u"ab"), Characters(context, u"c")));
    }

    TestContext context;
    fake::Clipboard clipboard;
    HostPlatform platform{nullptr, nullptr, nullptr, nullptr, nullptr, fake::Clipboard::Table()};
    Host host;
};

TEST_F(HostClipboard, OffersTheImageAndTheText)
{
    const ScdrPtr pair = Pair();
    clipboard.SetText(u"of another program");
    EXPECT_EQ(WriteClipboard(context, nullptr, *pair, nullptr), 1);
    EXPECT_EQ(context.TakeError(), VTERROR_CODE::NoError);
    EXPECT_EQ(clipboard.Text(), u"ab\tc");
    EXPECT_EQ(clipboard.Bytes(ClipboardFormat::Ccdr).size(), static_cast<std::size_t>(CalcCcdrSize(*pair)));
    EXPECT_FALSE(clipboard.Has(ClipboardFormat::AplxArray));
    const ScdrPtr copy = Read();
    ASSERT_NE(copy, nullptr);
    EXPECT_TRUE(SameTree(*pair, *copy));
}

TEST_F(HostClipboard, OffersNoTextWhereThereIsNone)
{
    const ScdrPtr deep = Nested(context, {1}, Items(Pair()));
    clipboard.SetText(u"of another program");
    EXPECT_EQ(WriteClipboard(context, nullptr, *deep, nullptr), 1);
    EXPECT_FALSE(clipboard.Has(ClipboardFormat::UnicodeText));
    EXPECT_TRUE(clipboard.Has(ClipboardFormat::Ccdr));
}

TEST_F(HostClipboard, PrefersTheImageToTheText)
{
    ASSERT_EQ(WriteClipboard(context, nullptr, *Pair(), nullptr), 1);
    clipboard.SetText(u"other");
    const ScdrPtr copy = Read();
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->Type, TypeNested);
}

TEST_F(HostClipboard, ReadsTheTextOfOtherPrograms)
{
    clipboard.SetText(u"one\ttwo\r\nx\ty\r\n");
    EXPECT_EQ(CanPasteFromClipboard(context), 1);
    const ScdrPtr table = Read();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->Rank, 2);
    EXPECT_EQ(table->ElementCount, 4);
}

TEST_F(HostClipboard, TakesTextWithoutTerminatorToTheEndOfItsBlock)
{
    clipboard.Set(ClipboardFormat::UnicodeText, {'a', 0, 'b', 0, 'c'});
    const ScdrPtr text = Read();
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(DumpTree(*text), "Character[2]'ab'");
}

TEST_F(HostClipboard, HasNothingToPasteWhenItIsEmpty)
{
    EXPECT_EQ(CanPasteFromClipboard(context), 0);
    EXPECT_EQ(Read(), nullptr);
    EXPECT_EQ(context.TakeError(), VTERROR_CODE::NoError);
}

TEST_F(HostClipboard, SaysWhyAnImageCannotBeRead)
{
    clipboard.Set(ClipboardFormat::Ccdr, {'C', 'C', 'D', 'R', 1, 0, 0, 0});
    EXPECT_EQ(Read(), nullptr);
    EXPECT_EQ(context.TakeError(), VTERROR_CODE::DomainError);
}

TEST_F(HostClipboard, GivesUpWhileAnotherProgramHoldsIt)
{
    clipboard.SetText(u"kept");
    clipboard.heldByAnother = true;
    EXPECT_EQ(WriteClipboard(context, nullptr, *Pair(), nullptr), 0);
    EXPECT_EQ(Read(), nullptr);
    EXPECT_EQ(clipboard.Text(), u"kept");
}

TEST_F(HostClipboard, ReportsABlockThatWasNotToBeHad)
{
    for (int nth : {0, 1}) {
        clipboard.allocationsUntilFailure = nth;
        EXPECT_EQ(WriteClipboard(context, nullptr, *Pair(), nullptr), 1);
        EXPECT_EQ(context.TakeError(), VTERROR_CODE::OutOfMemory);
    }
}

bool WriteMark(EditContext*, const void* what, void* block)
{
    if (what == nullptr) return false;
    *static_cast<char*>(block) = *static_cast<const char*>(what);
    return true;
}

TEST_F(HostClipboard, AddsAFormatOfTheHost)
{
    const char mark = '!';
    const ClipboardExtra extra{ClipboardFormat::AplxArray, 3, WriteMark, &mark};
    EXPECT_EQ(WriteClipboard(context, nullptr, *Pair(), &extra), 1);
    EXPECT_EQ(context.TakeError(), VTERROR_CODE::NoError);
    EXPECT_EQ(clipboard.Bytes(ClipboardFormat::AplxArray), (std::vector<std::uint8_t>{'!', 0, 0}));
}

TEST_F(HostClipboard, SaysWhenTheHostsFormatIsMissing)
{
    const ClipboardExtra extra{ClipboardFormat::AplxArray, 3, WriteMark, nullptr};
    EXPECT_EQ(WriteClipboard(context, nullptr, *Pair(), &extra), 1);
    EXPECT_EQ(context.TakeError(), VTERROR_CODE::SystemError);
    EXPECT_FALSE(clipboard.Has(ClipboardFormat::AplxArray));
    EXPECT_TRUE(clipboard.Has(ClipboardFormat::Ccdr));
}

TEST_F(HostClipboard, LeavesNothingBehindWhenMemoryEnds)
{
    const ScdrPtr pair = Pair();
    SweepAllocationFaults([&] {
        EXPECT_EQ(WriteClipboard(context, nullptr, *pair, nullptr), 1);
        context.TakeError();
    });
    clipboard.Clear();
    clipboard.SetText(u"a\tb");
    EXPECT_GT(SweepAllocationFaults([&] {
                  if (Read() == nullptr) {
                      EXPECT_EQ(context.langEnv.ErrorCode, VTERROR_CODE::OutOfMemory);
                  }
                  context.TakeError();
              }),
              0);
}

} // namespace
} // namespace vantrel
