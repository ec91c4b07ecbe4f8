#include "view/print_view.h"

#include "unit/support/trees.h"
#include "view_fixture.h"

namespace vantrel {
namespace {

class PrintCopy : public ViewTest {};

TEST_F(PrintCopy, ShowsTheSamePlanesAndClosedBoxes)
{
    Scdr& root = Show(Vec(Characters({3, 2, 2}, u"aaaabbbbcccc"), Word(u"closed")));
    SetCurrentPlane(Item(root, 0), 2);
    EXPECT_EQ(SelectScdr(view, Item(root, 1), false), 0);
    EXPECT_EQ(MinimizeScdr(view), 0);
    PrintView print;
    ASSERT_TRUE(CopyForPrinting(view, print));
    EXPECT_EQ(CurrentPlane(Item(*print.tree, 0)), 2);
    EXPECT_NE(Item(*print.tree, 1).Flags & FlagMinimized, 0);
    EXPECT_EQ(print.view.top, print.tree.get());
    EXPECT_NE(print.tree.get(), view.root);
    EXPECT_EQ(Selected(print.view), nullptr);
}

TEST_F(PrintCopy, NothingOnPaperIsTooLargeForTheScreen)
{
    view.metrics.workArea = {1024, 768};
    Show(Characters({500, 3}, std::u16string(1500, u'x')));
    PrintView print;
    ASSERT_TRUE(CopyForPrinting(view, print));
    print.view.edit.lineHeight = 16;
    print.view.edit.widths.Reset(MeasureForTest, nullptr, 0);
    EXPECT_EQ(FormatScdr(print.view, *print.tree), 0);
    EXPECT_EQ(CalculateScdrSizes(print.view), 0);
    EXPECT_GE(print.tree->height, 500 * 16);
}

TEST_F(PrintCopy, PrintingTellsTheFrameNothing)
{
    Show(Vec(Word(u"a")));
    PrintView print;
    ASSERT_TRUE(CopyForPrinting(view, print));
    print.view.effects.notifyFrame(print.view, 1);
    print.view.effects.invalidate(print.view);
    print.view.effects.sendSize(print.view);
    EXPECT_TRUE(log.calls.empty());
}

TEST_F(PrintCopy, AFailedCopyLeavesNothingBehind)
{
    Show(Vec(Word(u"abc"), Characters({2, 2, 2}, u"abcdefgh")));
    const int faults = test::SweepAllocationFaults([&] {
        PrintView print;
        environment.ErrorCode = VTERROR_CODE::NoError;
        const bool copied = CopyForPrinting(view, print);
        EXPECT_EQ(copied, environment.ErrorCode != VTERROR_CODE::OutOfMemory);
    });
    EXPECT_GT(faults, 0);
}

} // namespace
} // namespace vantrel
