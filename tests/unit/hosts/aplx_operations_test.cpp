#include "aplx_fixture.h"

#include "model/ccdr.h"
#include "model/rebuild.h"

namespace vantrel {
namespace {

class AplxOperations : public AplxTest {
protected:
    const HostOperations& Operations() { return bench.host.langEnv.Operations; }
    EditContext* Context() { return &bench.context; }
};

TEST_F(AplxOperations, RefusesNamesAndTracesWhoAsked)
{
    char16_t name[8] = {};
    Operations().Assign(Context(), nullptr, nullptr);
    EXPECT_EQ(PlatformDouble::tracedRoutine, "Assign");
    EXPECT_EQ(bench.TakeError(), VTERROR_CODE::NonceError);
    EXPECT_EQ(Operations().GetCoupling(Context(), nullptr), 0);
    EXPECT_EQ(PlatformDouble::tracedRoutine, "GetCoupling");
    EXPECT_EQ(bench.TakeError(), VTERROR_CODE::NonceError);
    EXPECT_EQ(Operations().GetNameClass(Context(), nullptr, name), 0);
    EXPECT_EQ(PlatformDouble::tracedRoutine, "GetNameClass");
    EXPECT_EQ(bench.TakeError(), VTERROR_CODE::NonceError);
    EXPECT_EQ(Operations().GetValue(Context(), nullptr), nullptr);
    EXPECT_EQ(PlatformDouble::tracedRoutine, "GetValue");
    EXPECT_EQ(bench.TakeError(), VTERROR_CODE::NonceError);
    EXPECT_EQ(PlatformDouble::traces, 4);
}

TEST_F(AplxOperations, HasNothingToFreeAndNoNameObjects)
{
    Operations().FreeObject(Context(), nullptr);
    EXPECT_EQ(Operations().UnicodeToObject(Context(), u"x", 1), nullptr);
    EXPECT_EQ(bench.TakeError(), VTERROR_CODE::NoError);
}

TEST_F(AplxOperations, AsksTheEnvironmentForInterrupts)
{
    EXPECT_EQ(Operations().CheckForInterrupt(Context()), 0);
    bench.context.isInterruptOrClosePending = [](EditContext*) { return 0; };
    EXPECT_EQ(Operations().CheckForInterrupt(Context()), 0);
    EXPECT_EQ(bench.TakeError(), VTERROR_CODE::NoError);
    bench.context.isInterruptOrClosePending = [](EditContext*) { return 3; };
    EXPECT_EQ(Operations().CheckForInterrupt(Context()), 3);
    EXPECT_EQ(bench.TakeError(), VTERROR_CODE::Interrupt);
}

TEST_F(AplxOperations, AnswersSystemVariables)
{
    EXPECT_EQ(Operations().GetIntSysVar(Context(), u"⎕IO", 0), 1);
    EXPECT_EQ(Operations().GetIntSysVar(Context(), u"⎕PP", 0), 10);
    EXPECT_EQ(Operations().GetIntSysVar(Context(), u"⎕AI", 1001), 1001);
    EXPECT_EQ(Operations().GetIntSysVar(Context(), u"⎕IOX", 5), 5);
}

TEST_F(AplxOperations, TellsTheTraceViewerOfErrors)
{
    Operations().SignalHostError(Context(), VTERROR_CODE::ValueError);
    EXPECT_EQ(PlatformDouble::tracedMessage, u"Value Error");
    SetHostMessage(bench.host, VTERROR_CODE::DomainError, u"Sorting nested arrays is not supported");
    Operations().SignalHostError(Context(), VTERROR_CODE::DomainError);
    EXPECT_EQ(PlatformDouble::tracedMessage, u"Sorting nested arrays is not supported");
    Operations().SignalHostError(Context(), VTERROR_CODE::ValueError);
    EXPECT_EQ(PlatformDouble::tracedMessage, u"Value Error");
    ClearHostMessage(bench.host);
}

TEST_F(AplxOperations, ComputesPrimitivesItself)
{
    const ScdrPtr text = test::Characters(Context(), u"1 2 3");
    const ScdrPtr numbers(
        Operations().CallPrimitiveReturningScdr(Context(), ActionConvertToNumeric, text.get(), nullptr));
    ASSERT_NE(numbers, nullptr);
    EXPECT_EQ(test::DumpTree(*numbers), "Integer[3]1 2 3");
    EXPECT_EQ(Operations().CallPrimitiveReturningScdr(Context(), 4629, text.get(), nullptr), nullptr);
    EXPECT_EQ(bench.TakeError(), VTERROR_CODE::SystemError);
}

TEST_F(AplxOperations, PutsThreeFormatsOnTheClipboard)
{
    fake::Clipboard clipboard;
    const ScdrPtr tree = test::Nested(
        Context(), {2}, test::Items(test::Characters(Context(), u"ab"), test::Characters(Context(), u"c")));
    EXPECT_EQ(Operations().ScdrToClipboard(Context(), nullptr, tree.get()), 1);
    EXPECT_EQ(bench.TakeError(), VTERROR_CODE::NoError);
    const auto& image = clipboard.Bytes(ClipboardFormat::Ccdr);
    const ScdrPtr back = CcdrToScdr(Context(), image.data(), static_cast<std::int64_t>(image.size()));
    ASSERT_NE(back, nullptr);
    EXPECT_TRUE(test::SameTree(*tree, *back));
    EXPECT_TRUE(clipboard.Has(ClipboardFormat::UnicodeText));
    EXPECT_EQ(clipboard.Bytes(ClipboardFormat::AplxArray), bench.WriteRecord(*tree));
    EXPECT_EQ(Operations().ClipboardCanPaste(Context()), 1);
    const ScdrPtr pasted(Operations().ClipboardToScdr(Context(), nullptr));
    ASSERT_NE(pasted, nullptr);
    EXPECT_TRUE(test::SameTree(*tree, *pasted));
    EXPECT_TRUE(clipboard.Complaints().empty());
}

TEST_F(AplxOperations, PutsTheOtherFormatsThereWhenAplxCannotHoldTheArray)
{
    fake::Clipboard clipboard;
    const ScdrPtr tree = test::Complexes(Context(), {1}, {1, 2});
    EXPECT_EQ(Operations().ScdrToClipboard(Context(), nullptr, tree.get()), 1);
    EXPECT_EQ(bench.TakeError(), VTERROR_CODE::SystemError);
    EXPECT_TRUE(clipboard.Has(ClipboardFormat::Ccdr));
    EXPECT_FALSE(clipboard.Has(ClipboardFormat::AplxArray));
    clipboard.heldByAnother = true;
    EXPECT_EQ(Operations().ScdrToClipboard(Context(), nullptr, tree.get()), 0);
    EXPECT_EQ(bench.TakeError(), VTERROR_CODE::NoError);
    EXPECT_TRUE(clipboard.Complaints().empty());
}

TEST_F(AplxOperations, ReportsTheMissingArrayFormat)
{
    fake::Clipboard clipboard;
    clipboard.allocationsUntilFailure = 2;
    const ScdrPtr tree = test::Characters(Context(), u"abc");
    EXPECT_EQ(Operations().ScdrToClipboard(Context(), nullptr, tree.get()), 1);
    EXPECT_EQ(bench.TakeError(), VTERROR_CODE::SystemError);
    EXPECT_TRUE(clipboard.Has(ClipboardFormat::UnicodeText));
    EXPECT_FALSE(clipboard.Has(ClipboardFormat::AplxArray));
    EXPECT_TRUE(clipboard.Complaints().empty());
}

TEST_F(AplxOperations, ClipboardLeavesTheOutputAreaAlone)
{
    fake::Clipboard clipboard;
    ASSERT_EQ(Operations().SetResult(Context(), test::Characters(Context(), u"kept").get()), 0);
    const std::uint8_t* result = bench.host.running->result.get();
    EXPECT_EQ(bench.context.result, result);
    EXPECT_EQ(Operations().ScdrToClipboard(Context(), nullptr, test::Characters(Context(), u"x").get()), 1);
    EXPECT_EQ(bench.host.running->result.get(), result);
    EXPECT_EQ(bench.host.running->output, nullptr);
}

TEST_F(AplxOperations, KeepsTheSavedResultWhenALaterSaveFails)
{
    ASSERT_EQ(Operations().SetResult(Context(), test::Characters(Context(), u"kept").get()), 0);
    EXPECT_EQ(Operations().SetResult(Context(), test::Characters(Context(), u"Ж").get()), 1);
    EXPECT_EQ(bench.TakeError(), VTERROR_CODE::DomainError);
    EXPECT_EQ(bench.context.result, bench.host.running->result.get());
    EXPECT_EQ(bench.host.running->result[24], 'k');
}

TEST_F(AplxOperations, SaysWhatCanBeSaved)
{
    EXPECT_TRUE(CanSaveScdr(Context(), *test::Integers(Context(), {1}, {-2147483648})));
    EXPECT_FALSE(CanSaveScdr(Context(), *test::Integers(Context(), {1}, {2147483648})));
    EXPECT_TRUE(CanSaveScdr(Context(), *test::Complexes(Context(), {1}, {2, 0})));
    EXPECT_FALSE(CanSaveScdr(Context(), *test::Complexes(Context(), {1}, {2, 1})));
    EXPECT_TRUE(CanSaveScdr(Context(), *test::Characters(Context(), u"⍺é¯")));
    EXPECT_FALSE(CanSaveScdr(Context(), *test::Characters(Context(), u"Ж")));
    EXPECT_FALSE(CanSaveScdr(Context(), *test::Integers(Context(), test::Shape(64, 1), {1})));
    const std::int64_t one = 1;
    EXPECT_FALSE(CanSaveScdr(Context(), *AllocateScdr(Context(), nullptr, TypeDecimal, 1, &one, true)));
}

} // namespace
} // namespace vantrel
