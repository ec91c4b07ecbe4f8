#include "dyalog_fixture.h"

namespace vantrel {
namespace {

class DyalogError : public DyalogTest {
protected:
    [[nodiscard]] std::u16string TextOf(const void* text) const
    {
        if (text == nullptr) return {};
        if (Unicode()) return static_cast<const char16_t*>(text);
        const std::string narrow = static_cast<const char*>(text);
        return {narrow.begin(), narrow.end()};
    }
};

FOR_BOTH_EDITIONS(DyalogError);

TEST_P(DyalogError, PairsEveryCodeWithANumberAndAMessage)
{
    struct Row {
        std::uint32_t code;
        std::int32_t number;
        const char16_t* message;
    };
    const char16_t* const storage = u"Allocation of storage failed";
    const char16_t* const windows = u"Initialize of Windows environment failed";
    const Row rows[] = {
        {1, 3, u""},
        {2, 11, u"Argument contained an unsupported type of data"},
        {3, 91, u"The Vantrel encountered a severe error"},
        {4, 3, u""},
        {5, 1003, u"User signaled interrupt"},
        {6, 5, u""},
        {7, 16, u""},
        {8, 99, windows},
        {9, 10, storage},
        {10, 10, storage},
        {11, 10, storage},
        {12, 10, storage},
        {13, 10, storage},
        {14, 10, storage},
        {15, 10, storage},
        {16, 4, u""},
        {17, 2, u""},
        {18, 99, windows},
        {19, 10, storage},
        {20, 99, windows},
        {21, 99, windows},
        {22, 2, u""},
        {23, 6, u""},
        {24, 1, u""},
        {25, 99, windows},
        {0xFFFFFFFF, 99, windows},
    };
    for (const Row& row : rows) {
        PrepareErrorBlock(bench.host);
        SignalHostError(&bench.context, static_cast<VTERROR_CODE>(row.code));
        const ErrorBlock& block = bench.host.errorBlock;
        EXPECT_EQ(block.errorNumber, row.number) << row.code;
        EXPECT_EQ(block.flag, 1u);
        EXPECT_EQ(TextOf(block.message), row.message) << row.code;
        EXPECT_EQ(block.kind, row.message[0] != 0 ? 7u : 5u) << row.code;
    }
}

TEST_P(DyalogError, SaysNothingForNoError)
{
    SignalHostError(&bench.context, VTERROR_CODE::NoError);
    EXPECT_EQ(bench.host.errorBlock.errorNumber, 0);
    EXPECT_EQ(bench.host.errorBlock.flag, 0u);
    EXPECT_EQ(bench.host.errorBlock.kind, 5u);
    EXPECT_EQ(bench.host.errorBlock.message, nullptr);
}

TEST_P(DyalogError, NamesVendorAndProduct)
{
    EXPECT_EQ(TextOf(bench.host.errorBlock.vendor), u"Quillmoor");
    EXPECT_EQ(TextOf(bench.host.errorBlock.product), u"Vantrel");
    if (Unicode()) {
        EXPECT_EQ(TextOf(bench.host.errorBlock.supportAddress), u"support@dyalog.example");
    } else {
        EXPECT_EQ(bench.host.errorBlock.supportAddress, nullptr);
    }
}

TEST_P(DyalogError, MapsEveryStatus)
{
    struct Row {
        std::int64_t status;
        std::uint32_t code;
    };
    const Row rows[] = {{1, 24}, {2, 17},  {3, 23}, {4, 16},  {5, 6},     {6, 23},
                        {7, 21}, {10, 19}, {11, 2}, {99, 18}, {1003, 21}, {-1, 21}};
    for (const Row& row : rows) {
        EXPECT_FALSE(CheckDyalogCallbackResult(&bench.context, row.status));
        EXPECT_EQ(bench.Code(), static_cast<VTERROR_CODE>(row.code)) << row.status;
        EXPECT_EQ(bench.Detail(), bench.interpreter.Message(row.status));
    }
    EXPECT_TRUE(CheckDyalogCallbackResult(&bench.context, 0));
    EXPECT_EQ(bench.Code(), VTERROR_CODE::NoError);
    EXPECT_EQ(bench.Detail(), u"");
}

TEST_P(DyalogError, HandsTheInterpretersOwnTextBack)
{
    bench.interpreter.SetMessage(11, u"not a number: é");
    EXPECT_FALSE(CheckDyalogCallbackResult(&bench.context, 11));
    EXPECT_EQ(bench.Detail(), u"not a number: é");
    SignalHostError(&bench.context, bench.Code());
    EXPECT_EQ(bench.host.errorBlock.kind, 7u);
    if (Unicode()) {
        EXPECT_EQ(static_cast<const char16_t*>(bench.host.errorBlock.message),
                  std::u16string(u"not a number: é"));
    } else {
        EXPECT_EQ(static_cast<const char*>(bench.host.errorBlock.message), std::string("not a number: \xE9"));
    }
}

TEST_P(DyalogError, TakesAnEmptyTextOfTheInterpreter)
{
    bench.interpreter.SetMessage(4, u"");
    EXPECT_FALSE(CheckDyalogCallbackResult(&bench.context, 4));
    EXPECT_EQ(bench.Code(), VTERROR_CODE::RankError);
    EXPECT_EQ(bench.Detail(), u"");
}

TEST_P(DyalogError, KeepsAMessageThatIsAlreadySet)
{
    EXPECT_EQ(bench.Read(fake::RawArray(fake::ElementType::Rational, {}, std::vector<std::uint8_t>(16))),
              nullptr);
    SignalHostError(&bench.context, bench.Code());
    EXPECT_EQ(bench.host.errorBlock.errorNumber, 11);
    EXPECT_EQ(TextOf(bench.host.errorBlock.message), u"Argument contains a rational number.");
}

// A failure that the user has long dismissed must not explain the one that ends the edit.
TEST_P(DyalogError, DoesNotExplainALaterFailureOfAnotherKind)
{
    EXPECT_FALSE(CheckDyalogCallbackResult(&bench.context, 11));
    SignalHostError(&bench.context, VTERROR_CODE::Interrupt);
    EXPECT_EQ(TextOf(bench.host.errorBlock.message), u"User signaled interrupt");
}

TEST_P(DyalogError, ReportsAMessageThatFindsNoMemory)
{
    for (std::int64_t nth = 1;; ++nth) {
        ArmAllocationFault(nth, false);
        EXPECT_FALSE(CheckDyalogCallbackResult(&bench.context, 11));
        const std::int64_t fired = DisarmAllocationFault();
        EXPECT_EQ(bench.Code(), fired > 0 ? VTERROR_CODE::OutOfMemory : VTERROR_CODE::DomainError);
        EXPECT_EQ(bench.Detail(), fired > 0 ? std::u16string() : bench.interpreter.Message(11));
        if (fired == 0) break;
    }
}

} // namespace
} // namespace vantrel
