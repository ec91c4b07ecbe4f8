#include "view/busy.h"
#include "view/selection.h"

#include "view_fixture.h"

namespace vantrel {
namespace {

class Busy : public ViewTest {
protected:
    bool IsInterruptKept() const { return (environment.Capabilities & CapabilityInterruptOrClose) != 0; }
    void Interrupt()
    {
        environment.Capabilities =
            static_cast<std::uint8_t>(environment.Capabilities | CapabilityInterruptOrClose);
    }
};

TEST_F(Busy, AnActionStartsWithoutTheInterruptOfTheOneBefore)
{
    Interrupt();
    const std::uint8_t others = environment.Capabilities;
    {
        const BusyMark busy(view);
        EXPECT_NE(view.flags & ViewBusy, 0);
        EXPECT_EQ(environment.Capabilities, others & ~CapabilityInterruptOrClose);
        EXPECT_EQ(log.Count("invalidate"), 1); // painting stood still meanwhile
    }
    EXPECT_EQ(view.flags & ViewBusy, 0);
    const BusyMark again(view);
    EXPECT_EQ(log.Count("invalidate"), 1);
}

TEST_F(Busy, AnInterruptEndsAllOfTheActionThatItComesTo)
{
    const BusyMark busy(view);
    Interrupt();
    const BusyMark inner(view);
    EXPECT_TRUE(IsInterruptKept());
    EXPECT_EQ(log.Count("invalidate"), 0);
}

TEST_F(Busy, AnInterruptStaysUntilTheUserGoesOn)
{
    {
        const BusyMark busy(view);
        Interrupt();
    }
    EXPECT_TRUE(IsInterruptKept());
    Scdr& root = Show(Vec(Word(u"abc"), Word(u"d")));
    SelectScdr(view, Item(root, 0), true);
    EXPECT_FALSE(IsInterruptKept());
}

} // namespace
} // namespace vantrel
