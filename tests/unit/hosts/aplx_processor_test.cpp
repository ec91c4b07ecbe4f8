#include "aplx_fixture.h"

#include <limits>

namespace vantrel {
namespace {

using fake::Aplx;
using fake::AplxAnswer;
using fake::AplxRecord;
namespace Status = fake::AplxStatus;

std::int64_t Enter(std::int64_t operation, std::int64_t data, std::int64_t third, std::int64_t fourth,
                   std::int64_t fifth, std::int64_t sixth, std::int64_t identifier, std::int64_t eighth)
{
    aplx::AplxHost& host = aplx::TheAplxHost();
    host.platform = &PlatformDouble::Table;
    return aplx::Process(host, {operation, data, third, fourth, fifth, sixth, identifier, eighth});
}

// --- edits ---
void Save(EditContext* context, std::u16string_view text)
{
    EXPECT_EQ(context->langEnv->Operations.SetResult(context, test::Characters(context, text).get()), 0);
}
HostObject CloseUnsaved(EditContext*, HostObject)
{
    return nullptr;
}
HostObject SaveAndClose(EditContext* context, HostObject)
{
    Save(context, u"saved");
    return context->result;
}
HostObject SaveTwiceAndClose(EditContext* context, HostObject)
{
    Save(context, u"a first text that is longer");
    Save(context, u"twice");
    return context->result;
}
HostObject LoadAndSaveBack(EditContext* context, HostObject object)
{
    const HostOperations& operations = context->langEnv->Operations;
    const ScdrPtr tree(operations.ObjectToScdr(context, object));
    if (tree == nullptr) return nullptr;
    EXPECT_EQ(operations.SetResult(context, tree.get()), 0);
    return context->result;
}

class AplxProcessor : public testing::Test {
protected:
    AplxProcessor() { PlatformDouble::Reset(); }
    void TearDown() override
    {
        for (const std::string& complaint : interpreter.Complaints())
            ADD_FAILURE() << complaint;
        EXPECT_EQ(host.instances, nullptr);
        EXPECT_EQ(host.users, 0);
        EXPECT_EQ(PlatformDouble::registered, PlatformDouble::unregistered);
        EXPECT_EQ(LiveAllocations(), liveBefore_);
    }
    AplxAnswer EditOf(const AplxRecord& record, HostObject (*edit)(EditContext*, HostObject),
                      std::size_t bufferBytes = 4096)
    {
        PlatformDouble::edit = edit;
        EXPECT_EQ(interpreter.Open(1), Status::Success);
        EXPECT_EQ(interpreter.Assign(1, record), Status::Success);
        AplxAnswer answer = interpreter.Reference(1, bufferBytes);
        EXPECT_EQ(interpreter.Close(1), Status::Success);
        return answer;
    }
    fake::Array ValueOf(const AplxRecord& record)
    {
        std::vector<std::string> complaints;
        fake::Array array = fake::ArrayOfAplxRecord(record, complaints);
        for (const std::string& complaint : complaints)
            ADD_FAILURE() << complaint;
        return array;
    }
    std::u16string TextOf(const AplxRecord& record) { return fake::TextOfArray(ValueOf(record)); }

private:
    std::int64_t liveBefore_ = LiveAllocations();

protected:
    Aplx interpreter{Enter};
    aplx::AplxHost& host = aplx::TheAplxHost();
    const AplxRecord hello = fake::MakeAplxRecord(fake::Text(u"hello"));
};

TEST_F(AplxProcessor, BuildsTheEnvironmentWithTheFirstInstance)
{
    ASSERT_EQ(interpreter.Open(1), 0);
    const LangEnv& environment = host.langEnv;
    EXPECT_EQ(environment.Reserved, 0u);
    EXPECT_EQ(environment.DialectKind, Dialect::Aplx);
    EXPECT_EQ(std::u16string_view(environment.ValidNameCharacters),
              u"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz∆⍙_¯");
    EXPECT_EQ(std::u16string_view(environment.LeadingForbiddenCharacters), u"0123456789_¯");
    EXPECT_EQ(environment.LongestName, 30);
    EXPECT_EQ(environment.LongestAxis, std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(environment.HighestRank, 63);
    EXPECT_EQ(environment.MostElements, std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(environment.AcceleratorId, 103);
    EXPECT_EQ(environment.Capabilities, 0);
    EXPECT_EQ(environment.ViewCapabilities, 0x38);
    EXPECT_EQ(environment.Operations.GetLibraryPath, nullptr);
    EXPECT_EQ(environment.Operations.Graphics, nullptr);
    EXPECT_EQ(environment.Title, nullptr);
    EXPECT_EQ(environment.HelpFile, nullptr);
    EXPECT_EQ(environment.SupportAddress, nullptr);
    for (const char16_t* unit = environment.ValidNameCharacters; *unit != 0; ++unit)
        EXPECT_NE(std::u16string_view(environment.CharacterTable, 256).find(*unit),
                  std::u16string_view::npos);
    EXPECT_EQ(interpreter.Close(1), 0);
}

TEST_F(AplxProcessor, SharesTheEnvironmentUntilTheLastClose)
{
    EXPECT_EQ(interpreter.Open(1), 0);
    EXPECT_EQ(interpreter.Open(2), 0);
    EXPECT_EQ(PlatformDouble::registered, 1);
    EXPECT_EQ(host.instances->langEnv, host.instances->next->langEnv);
    EXPECT_EQ(host.instances->identifier, 1); // in opening order
    EXPECT_EQ(host.instances->next->identifier, 2);
    EXPECT_EQ(interpreter.Close(1), 0);
    EXPECT_EQ(PlatformDouble::unregistered, 0);
    PlatformDouble::edit = SaveAndClose;
    EXPECT_EQ(interpreter.Assign(2, hello), 0);
    EXPECT_EQ(TextOf(interpreter.Reference(2, 100).record), u"saved");
    EXPECT_EQ(interpreter.Close(2), 0);
    EXPECT_EQ(PlatformDouble::unregistered, 1);
    EXPECT_EQ(interpreter.Open(3), 0);
    EXPECT_EQ(PlatformDouble::registered, 2);
    EXPECT_EQ(interpreter.Close(3), 0);
}

TEST_F(AplxProcessor, KeepsTheArraysOfInstancesApart)
{
    PlatformDouble::edit = LoadAndSaveBack;
    for (const std::int64_t identifier : {7, -7, 9})
        EXPECT_EQ(interpreter.Open(identifier), 0);
    EXPECT_EQ(interpreter.Assign(7, fake::Text(u"seven")), 0);
    EXPECT_EQ(interpreter.Assign(-7, fake::Text(u"minus seven")), 0);
    EXPECT_EQ(TextOf(interpreter.Reference(7, 100).record), u"seven");
    EXPECT_EQ(TextOf(interpreter.Reference(-7, 100).record), u"minus seven");
    EXPECT_EQ(TextOf(interpreter.Reference(7, 100).record), u"seven");
    EXPECT_EQ(fake::RealAt(ValueOf(interpreter.Reference(9, 100).record), 0), 0);
    for (const std::int64_t identifier : {-7, 9, 7})
        EXPECT_EQ(interpreter.Close(identifier), 0);
}

TEST_F(AplxProcessor, ReferencesZeroWithoutAnAssignedArray)
{
    EXPECT_EQ(interpreter.Open(1), 0);
    const AplxAnswer answer = interpreter.Reference(1, 24);
    EXPECT_EQ(answer.status, Status::Success);
    AplxRecord expected(24);
    expected[4] = 24;
    expected[12] = 7;
    EXPECT_EQ(answer.record, expected);
    EXPECT_EQ(interpreter.Reference(1, 23).status, Status::TooLong);
    EXPECT_EQ(interpreter.Reference(1, 0).status, Status::TooLong);
    EXPECT_EQ(interpreter.Close(1), 0);
}

TEST_F(AplxProcessor, TellsWhenThereIsNoRoomForZero)
{
    EXPECT_EQ(interpreter.Open(1), 0);
    const int faults = test::SweepAllocationFaults([&] {
        const std::int64_t status = interpreter.Reference(1, 24).status;
        EXPECT_EQ(status, host.instances->output != nullptr ? Status::Success : Status::NoRoom);
        host.instances->output.reset();
    });
    EXPECT_GE(faults, 2);
    EXPECT_EQ(interpreter.Close(1), 0);
}

TEST_F(AplxProcessor, TellsWhenZeroCannotBeWritten)
{
    EXPECT_EQ(interpreter.Open(1), 0);
    host.langEnv.HighestRank = -1;
    EXPECT_EQ(interpreter.Reference(1, 24).status, Status::NoResult);
    EXPECT_EQ(interpreter.Close(1), 0);
}

TEST_F(AplxProcessor, GivesWhatWasSaved)
{
    EXPECT_EQ(TextOf(EditOf(hello, SaveAndClose).record), u"saved");
    EXPECT_EQ(TextOf(EditOf(hello, SaveTwiceAndClose).record), u"twice");
}

TEST_F(AplxProcessor, GivesTheAssignedArrayBackWhenNothingWasSaved)
{
    const AplxAnswer answer = EditOf(hello, CloseUnsaved);
    EXPECT_EQ(answer.status, Status::Success);
    EXPECT_EQ(answer.record, hello); // with the interpreter's own bytes
}

TEST_F(AplxProcessor, LeavesABufferAloneThatIsTooSmall)
{
    const std::size_t length = 16 + 8 + 5;
    EXPECT_EQ(EditOf(hello, SaveAndClose, length).status, Status::Success);
    EXPECT_EQ(EditOf(hello, SaveAndClose, length - 1).status, Status::TooLong);
    EXPECT_EQ(EditOf(hello, SaveAndClose, 0).status, Status::TooLong);
    EXPECT_EQ(EditOf(hello, CloseUnsaved, length - 1).status, Status::TooLong);
    PlatformDouble::edit = SaveAndClose;
    EXPECT_EQ(interpreter.Open(1), 0);
    EXPECT_EQ(interpreter.Assign(1, hello), 0);
    EXPECT_EQ(Enter(4, 0, 0, 100, 0, 0, 1, 0), Status::TooLong);
    EXPECT_EQ(interpreter.Call(4, 0, -1, 1), Status::TooLong);
    EXPECT_EQ(interpreter.Close(1), 0);
}

TEST_F(AplxProcessor, GivesNothingAfterAnErrorOrAnInterrupt)
{
    const AplxAnswer failed = EditOf(hello, [](EditContext* context, HostObject) -> HostObject {
        Save(context, u"saved");
        context->langEnv->ErrorCode = VTERROR_CODE::ValueError;
        context->langEnv->Operations.SignalHostError(context, VTERROR_CODE::ValueError);
        return context->result;
    });
    EXPECT_EQ(failed.status, Status::Success);
    EXPECT_TRUE(failed.record.empty());
    const AplxAnswer cancelled = EditOf(hello, [](EditContext* context, HostObject) -> HostObject {
        context->langEnv->Capabilities = CapabilityInterruptOrClose;
        return nullptr;
    });
    EXPECT_EQ(cancelled.status, Status::Success);
    EXPECT_TRUE(cancelled.record.empty());
}

TEST_F(AplxProcessor, ForgetsTheErrorOfTheReferenceBefore)
{
    PlatformDouble::edit = [](EditContext* context, HostObject) -> HostObject {
        EXPECT_FALSE(HasError(context));
        context->langEnv->ErrorCode = VTERROR_CODE::ValueError;
        return nullptr;
    };
    EXPECT_EQ(interpreter.Open(1), 0);
    EXPECT_EQ(interpreter.Assign(1, hello), 0);
    EXPECT_TRUE(interpreter.Reference(1, 100).record.empty());
    EXPECT_TRUE(interpreter.Reference(1, 100).record.empty());
    PlatformDouble::edit = CloseUnsaved;
    EXPECT_EQ(interpreter.Reference(1, 100).record, hello);
    EXPECT_EQ(interpreter.Close(1), 0);
}

TEST_F(AplxProcessor, DoesNotGiveAnEarlierResultAgain)
{
    EXPECT_EQ(interpreter.Open(1), 0);
    EXPECT_EQ(interpreter.Assign(1, hello), 0);
    PlatformDouble::edit = SaveAndClose;
    EXPECT_EQ(TextOf(interpreter.Reference(1, 100).record), u"saved");
    PlatformDouble::edit = CloseUnsaved;
    EXPECT_EQ(interpreter.Reference(1, 100).record, hello);
    EXPECT_EQ(interpreter.Close(1), 0);
}

TEST_F(AplxProcessor, EditsTheArrayThatWasAssignedLast)
{
    PlatformDouble::edit = LoadAndSaveBack;
    EXPECT_EQ(interpreter.Open(1), 0);
    EXPECT_EQ(interpreter.Assign(1, fake::Text(u"a longer text")), 0);
    EXPECT_EQ(interpreter.Assign(1, fake::Text(u"b")), 0);
    EXPECT_EQ(TextOf(interpreter.Reference(1, 100).record), u"b");
    EXPECT_EQ(interpreter.Close(1), 0);
}

TEST_F(AplxProcessor, RefusesARecordOfTheRefusedTypeInTheEdit)
{
    const AplxAnswer answer = EditOf(
        fake::RawAplxRecord(fake::AplxType::Refused, {}, {}), [](EditContext* context, HostObject object) {
            EXPECT_EQ(LoadAndSaveBack(context, object), nullptr);
            EXPECT_EQ(context->langEnv->ErrorCode, VTERROR_CODE::ImplicitComparisonTolerance);
            return HostObject{};
        });
    EXPECT_EQ(answer.status, Status::Success);
    EXPECT_TRUE(answer.record.empty());
}

TEST_F(AplxProcessor, TakesRecordsThatAreNoRecords)
{
    EXPECT_EQ(interpreter.Open(1), 0);
    PlatformDouble::edit = LoadAndSaveBack;
    for (const std::int64_t length : {0, 1, 11, 12, 15}) {
        EXPECT_EQ(interpreter.Assign(1, WithLength(hello, length)), Status::Success) << length;
        EXPECT_TRUE(interpreter.Reference(1, 100).record.empty()) << length;
    }
    for (const std::int64_t length : {std::int64_t{-1}, std::numeric_limits<std::int64_t>::min(),
                                      std::numeric_limits<std::int64_t>::max()})
        EXPECT_EQ(interpreter.Assign(1, WithLength(hello, length)), Status::NoRoom) << length;
    EXPECT_EQ(interpreter.Call(3, 0, 0, 1), Status::NoResult);
    EXPECT_EQ(interpreter.Close(1), 0);
}

TEST_F(AplxProcessor, KeepsTheAssignedArrayWhenThereIsNoRoomForAnother)
{
    EXPECT_EQ(interpreter.Open(1), 0);
    EXPECT_EQ(interpreter.Assign(1, hello), 0);
    ArmAllocationFault(1, true);
    EXPECT_EQ(interpreter.Assign(1, fake::Text(u"other")), Status::NoRoom);
    EXPECT_EQ(DisarmAllocationFault(), 1);
    PlatformDouble::edit = CloseUnsaved;
    EXPECT_EQ(interpreter.Reference(1, 100).record, hello);
    EXPECT_EQ(interpreter.Close(1), 0);
}

TEST_F(AplxProcessor, OpensNothingWithoutWindowClassesOrMemory)
{
    PlatformDouble::registers = false;
    EXPECT_EQ(interpreter.Open(1), Status::NoResult);
    EXPECT_EQ(host.instances, nullptr);
    EXPECT_EQ(PlatformDouble::unregistered, 1);
    PlatformDouble::registers = true;
    ArmAllocationFault(1, true);
    EXPECT_EQ(interpreter.Open(1), Status::NoRoom);
    EXPECT_EQ(DisarmAllocationFault(), 1);
    EXPECT_EQ(host.instances, nullptr);
    EXPECT_EQ(interpreter.Open(1), Status::Success);
    EXPECT_EQ(interpreter.Close(1), Status::Success);
}

TEST_F(AplxProcessor, DoesNothingForOtherOperationsAndUnknownInstances)
{
    EXPECT_EQ(interpreter.Open(1), 0);
    for (const std::int64_t operation : {std::int64_t{0}, std::int64_t{5}, std::int64_t{-1},
                                         std::int64_t{1} << 32 | 1, std::numeric_limits<std::int64_t>::max()})
        EXPECT_EQ(interpreter.Call(operation, 0, 0, 1), 0) << operation;
    EXPECT_EQ(host.instances->next, nullptr);
    EXPECT_EQ(interpreter.Assign(2, hello), Status::NoResult);
    EXPECT_EQ(interpreter.Reference(2, 100).status, Status::NoResult);
    EXPECT_EQ(interpreter.Close(2), 0);
    EXPECT_EQ(PlatformDouble::unregistered, 0);
    EXPECT_EQ(interpreter.Close(1), 0);
    EXPECT_EQ(interpreter.Close(1), 0);
    EXPECT_EQ(PlatformDouble::unregistered, 1);
}

TEST_F(AplxProcessor, LetsTheOldestOfInstancesWithOneIdentifierAnswer)
{
    PlatformDouble::edit = CloseUnsaved;
    EXPECT_EQ(interpreter.Open(1), 0);
    EXPECT_EQ(interpreter.Assign(1, hello), 0);
    EXPECT_EQ(interpreter.Open(1), 0);
    EXPECT_EQ(interpreter.Reference(1, 100).record, hello);
    EXPECT_EQ(interpreter.Close(1), 0);
    EXPECT_EQ(interpreter.Reference(1, 100).record.size(), 24u); // the younger one has no array
    EXPECT_EQ(interpreter.Close(1), 0);
}

TEST_F(AplxProcessor, StoresTheCallersWordsWithTheReference)
{
    EXPECT_EQ(interpreter.Open(1), 0);
    interpreter.Reference(1, 24);
    const aplx::Instance& instance = *host.instances;
    EXPECT_EQ(instance.bufferSize, 24);
    EXPECT_EQ(instance.status, 0);
    const std::int64_t expected[] = {3, 5, 6, 8};
    EXPECT_TRUE(std::equal(std::begin(expected), std::end(expected), instance.callerWords));
    interpreter.Reference(1, 20);
    EXPECT_EQ(instance.status, Status::TooLong);
    EXPECT_EQ(interpreter.Close(1), 0);
}

// --- an interpreter that calls from inside an edit ---

Aplx* g_nested = nullptr;

TEST_F(AplxProcessor, EditsOneArrayAtATime)
{
    g_nested = &interpreter;
    const AplxAnswer answer = EditOf(hello, [](EditContext* context, HostObject object) {
        EXPECT_EQ(g_nested->Open(2), 0);
        EXPECT_EQ(g_nested->Reference(1, 100).status, Status::NoResult);
        EXPECT_EQ(g_nested->Reference(2, 100).status, Status::NoResult);
        EXPECT_EQ(g_nested->Close(2), 0);
        return LoadAndSaveBack(context, object);
    });
    EXPECT_EQ(TextOf(answer.record), u"hello");
}

TEST_F(AplxProcessor, KeepsTheArrayUnderEditWhenAnotherIsAssignedMeanwhile)
{
    g_nested = &interpreter;
    PlatformDouble::edit = [](EditContext* context, HostObject object) {
        EXPECT_EQ(g_nested->Assign(1, fake::Text(u"next")), 0);
        return LoadAndSaveBack(context, object);
    };
    EXPECT_EQ(interpreter.Open(1), 0);
    EXPECT_EQ(interpreter.Assign(1, hello), 0);
    EXPECT_EQ(TextOf(interpreter.Reference(1, 100).record), u"hello");
    PlatformDouble::edit = LoadAndSaveBack;
    EXPECT_EQ(TextOf(interpreter.Reference(1, 100).record), u"next");
    EXPECT_EQ(interpreter.Close(1), 0);
}

TEST_F(AplxProcessor, ClosesAnInstanceUnderEditWhenTheEditHasEnded)
{
    g_nested = &interpreter;
    const AplxAnswer answer = EditOf(hello, [](EditContext* context, HostObject object) {
        EXPECT_EQ(g_nested->Close(1), 0);
        EXPECT_EQ(g_nested->Assign(1, fake::Text(u"x")), Status::NoResult); // it is no longer known
        EXPECT_EQ(PlatformDouble::unregistered, 0);
        return LoadAndSaveBack(context, object);
    });
    EXPECT_EQ(TextOf(answer.record), u"hello");
    EXPECT_EQ(PlatformDouble::unregistered, 1);
}

TEST_F(AplxProcessor, LeavesNothingBehindWhenMemoryFails)
{
    PlatformDouble::edit = [](EditContext* context, HostObject object) -> HostObject {
        const ScdrPtr tree(context->langEnv->Operations.ObjectToScdr(context, object));
        if (tree == nullptr || context->langEnv->Operations.SetResult(context, tree.get()) != 0) {
            EXPECT_EQ(context->langEnv->ErrorCode, VTERROR_CODE::OutOfMemory);
            return nullptr;
        }
        return context->result;
    };
    const AplxRecord record =
        fake::MakeAplxRecord(fake::NestedArray({2}, {fake::Text(u"hello"), fake::FloatArray({2}, {1.5, 2})}));
    const int faults = test::SweepAllocationFaults([&] {
        const std::int64_t opened = interpreter.Open(1);
        EXPECT_TRUE(opened == Status::Success || opened == Status::NoRoom);
        if (opened != Status::Success) return;
        const std::int64_t assigned = interpreter.Assign(1, record);
        EXPECT_TRUE(assigned == Status::Success || assigned == Status::NoRoom);
        if (assigned == Status::Success) {
            EXPECT_EQ(interpreter.Reference(1, 1000).status, Status::Success);
        }
        EXPECT_EQ(interpreter.Close(1), 0);
    });
    EXPECT_GT(faults, 6);
}

TEST_F(AplxProcessor, EditsThroughTheFakeInterpretersOneCall)
{
    PlatformDouble::edit = LoadAndSaveBack;
    const fake::Array nested = fake::NestedArray({2}, {fake::Text(u"ab"), fake::BooleanArray({2}, {1, 0})});
    const fake::AplxEditResult saved = interpreter.Edit(nested);
    EXPECT_TRUE(saved.hasResult);
    EXPECT_FALSE(saved.unchanged);
    EXPECT_TRUE(fake::SameValues(saved.result, nested));
    EXPECT_TRUE(saved.complaints.empty());
    PlatformDouble::edit = CloseUnsaved;
    EXPECT_TRUE(interpreter.Edit(nested).unchanged);
    PlatformDouble::edit = SaveAndClose;
    EXPECT_EQ(interpreter.Edit(nested, 10).status, Status::TooLong);
}

} // namespace
} // namespace vantrel
