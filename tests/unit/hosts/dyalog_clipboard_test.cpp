#include "dyalog_fixture.h"

#include "model/ccdr.h"

namespace vantrel {
namespace {

class DyalogClipboard : public DyalogTest {
protected:
    void TearDown() override
    {
        for (const std::string& complaint : clipboard.Complaints())
            ADD_FAILURE() << complaint;
        bench.interpreter.ClearCopyBuffer();
        DyalogTest::TearDown();
    }
    ScdrPtr Read() { return ScdrPtr(ClipboardToScdr(&bench.context, nullptr)); }

    fake::Clipboard clipboard;
};

FOR_BOTH_EDITIONS(DyalogClipboard);

TEST_P(DyalogClipboard, FillsTheCopyBufferAndTheSystemsClipboard)
{
    const ScdrPtr text = MakeText(bench, u"abc");
    EXPECT_EQ(ScdrToClipboard(&bench.context, nullptr, text.get()), 1);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
    ASSERT_TRUE(bench.interpreter.CopyBuffer().has_value());
    EXPECT_EQ(bench.interpreter.CopyBuffer()->shape, (fake::Shape{3}));
    EXPECT_EQ(clipboard.Text(), u"abc");
    EXPECT_TRUE(clipboard.Has(ClipboardFormat::Ccdr));
}

TEST_P(DyalogClipboard, OffersTheSystemsClipboardAloneForWhatTheInterpreterCannotHold)
{
    const ScdrPtr text = MakeText(bench, u"\u4e00");
    EXPECT_EQ(ScdrToClipboard(&bench.context, nullptr, text.get()), 1);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
    EXPECT_EQ(bench.interpreter.CopyBuffer().has_value(), Unicode());
    EXPECT_EQ(clipboard.Text(), u"\u4e00");
}

TEST_P(DyalogClipboard, CanPasteWhenEitherHasSomething)
{
    EXPECT_EQ(ClipboardCanPaste(&bench.context), 0);
    bench.interpreter.SetCopyBuffer(fake::IntegerArray(fake::ElementType::Int16, {2}, {1, 2}));
    EXPECT_NE(ClipboardCanPaste(&bench.context), 0);
    bench.interpreter.ClearCopyBuffer();
    clipboard.SetText(u"x");
    EXPECT_NE(ClipboardCanPaste(&bench.context), 0);
    EXPECT_EQ(bench.interpreter.Calls(fake::Service::AskCopyBuffer), 2);
}

TEST_P(DyalogClipboard, ReadsTheCopyBufferWhenTheSystemHasNothing)
{
    bench.interpreter.SetCopyBuffer(fake::IntegerArray(fake::ElementType::Int16, {2}, {1, 200}));
    const ScdrPtr numbers = Read();
    ASSERT_NE(numbers, nullptr);
    EXPECT_EQ(ItemsOf<std::int64_t>(*numbers), (std::vector<std::int64_t>{1, 200}));
    EXPECT_EQ(numbers->SimplestType, static_cast<std::int32_t>(TypeInteger));
    EXPECT_EQ(clipboard.timesOpened, 0);
}

TEST_P(DyalogClipboard, PrefersTheSystemsClipboard)
{
    bench.interpreter.SetCopyBuffer(fake::IntegerArray(fake::ElementType::Int16, {2}, {1, 200}));
    clipboard.SetText(u"newer");
    const ScdrPtr text = Read();
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(TextIn(*text), u"newer");
}

TEST_P(DyalogClipboard, ConvertsCellsThroughTheInterpreter)
{
    clipboard.SetText(u"1\t2\r\n3\t4\r\n");
    const ScdrPtr table = Read();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->ElementCount, 4);
    EXPECT_EQ(bench.interpreter.Calls(fake::Service::CallPrimitive), 4);
    for (int i = 0; i < 4; ++i)
        EXPECT_NE(Children(*table)[i]->Type, TypeCharacter);
}

TEST_P(DyalogClipboard, SaysNothingOfCellsThatAreNoNumbers)
{
    clipboard.SetText(u"1\tabc");
    const ScdrPtr cells = Read();
    ASSERT_NE(cells, nullptr);
    EXPECT_EQ(TextIn(*Children(*cells)[1]), u"abc");
    EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
    EXPECT_EQ(bench.host.langEnv.ErrorDetail, nullptr);
}

TEST_P(DyalogClipboard, PassesARefusalOfTheCopyBufferOn)
{
    bench.interpreter.SetCopyBuffer(fake::IntegerArray(fake::ElementType::Int16, {2}, {1, 2}));
    bench.interpreter.ForceStatus(fake::Service::GetCopyBuffer, 1);
    EXPECT_EQ(Read(), nullptr);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::WsFull);
    bench.interpreter.ForceStatus(fake::Service::PutCopyBuffer, 1);
    EXPECT_EQ(ScdrToClipboard(&bench.context, nullptr, MakeText(bench, u"abc").get()), 1);
    EXPECT_EQ(bench.Code(), VTERROR_CODE::WsFull);
    EXPECT_EQ(clipboard.Text(), u"abc");
}

} // namespace
} // namespace vantrel
