#include "dyalog_fixture.h"

#include "entry/trace.h"
#include "model/rebuild.h"

namespace vantrel {
namespace {

std::int64_t GetFunctions(void* table)
{
    return SetInterpreterTable(TheDyalogHost(), static_cast<const std::int64_t*>(table));
}
std::int64_t EditTitled(void* argument, void* resultSlot, const char16_t* title)
{
    TheDyalogHost().platform = &PlatformDouble::Table;
    ExternalFunction(TheDyalogHost(), static_cast<Localp*>(argument), static_cast<DyalogBlock**>(resultSlot),
                     title);
    return 0;
}
std::int64_t EditPlain(void* argument, void* resultSlot)
{
    return EditTitled(argument, resultSlot, nullptr);
}
constexpr fake::EntryPoints entryPoints{GetFunctions, EditPlain, EditTitled};

// --- edits ---
void Save(EditContext* context, std::u16string_view text)
{
    const auto length = static_cast<std::int64_t>(text.size());
    const ScdrPtr tree = AllocateScdr(context, nullptr, TypeCharacter, 1, &length, true);
    std::copy(text.begin(), text.end(), static_cast<char16_t*>(WritableData(*tree)));
    EXPECT_EQ(context->langEnv->Operations.SetResult(context, tree.get()), 0);
}
HostObject Close(EditContext*, HostObject)
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
    Save(context, u"once");
    Save(context, u"twice");
    return context->result;
}
HostObject Fail(EditContext* context, HostObject)
{
    context->langEnv->ErrorCode = VTERROR_CODE::ValueError;
    context->langEnv->Operations.SignalHostError(context, VTERROR_CODE::ValueError);
    return nullptr;
}
HostObject SaveAndFail(EditContext* context, HostObject object)
{
    Save(context, u"saved");
    Fail(context, object);
    return context->result;
}
HostObject ReturnObject(EditContext* context, HostObject)
{
    const std::int64_t length = 4;
    const ScdrPtr tree = AllocateScdr(context, nullptr, TypeCharacter, 1, &length, true);
    return context->langEnv->Operations.ScdrToObject(context, tree.get());
}
HostObject LoadAndReport(EditContext* context, HostObject object)
{
    const ScdrPtr tree(context->langEnv->Operations.ObjectToScdr(context, object));
    if (tree == nullptr) context->langEnv->Operations.SignalHostError(context, context->langEnv->ErrorCode);
    return nullptr;
}
HostObject ThrowCode(EditContext*, HostObject)
{
    throw VTERROR_CODE::OutOfMemory;
}
HostObject ThrowAnything(EditContext*, HostObject)
{
    throw 5;
}

class DyalogEntry : public DyalogTest {
protected:
    fake::EditResult Run(HostObject (*edit)(EditContext*, HostObject), const fake::EditOptions& options = {})
    {
        return RunOn(fake::NumericArray({3}, {1, 2, 3}), edit, options);
    }
    fake::EditResult RunOn(const fake::Array& argument, HostObject (*edit)(EditContext*, HostObject),
                           const fake::EditOptions& options = {})
    {
        PlatformDouble::edit = edit;
        fake::EditResult result = bench.interpreter.Edit(entryPoints, argument, options);
        for (const std::string& complaint : result.complaints)
            ADD_FAILURE() << complaint;
        EXPECT_EQ(PlatformDouble::registered, PlatformDouble::unregistered);
        return result;
    }
    static fake::EditOptions WithOldResult()
    {
        fake::EditOptions options;
        options.resultBefore = fake::Number(42);
        return options;
    }
    static fake::EditOptions WithoutSlot()
    {
        fake::EditOptions options;
        options.withResultSlot = false;
        return options;
    }
};

FOR_BOTH_EDITIONS(DyalogEntry);

TEST(DyalogTable, AnswersTheSizeOfTheTable)
{
    DyalogHost& host = TheDyalogHost();
    std::int64_t small[6] = {47};
    std::int64_t enough[6] = {48};
    EXPECT_EQ(SetInterpreterTable(host, enough), 0);
    EXPECT_EQ(SetInterpreterTable(host, small), 16);
    EXPECT_EQ(host.table, small);
    EXPECT_EQ(SetInterpreterTable(host, nullptr), 0);
    EXPECT_EQ(host.table, small);
    std::int64_t negative[6] = {-1};
    EXPECT_EQ(SetInterpreterTable(host, negative), 16);
    // Nothing of a table that was refused is used.
    ExternalFunction(host, nullptr, nullptr, nullptr);
    host.table = nullptr;
    ExternalFunction(host, nullptr, nullptr, nullptr);
}

TEST_P(DyalogEntry, HandsTheArgumentBackWhenNothingWasSaved)
{
    const fake::EditResult result = Run(Close);
    EXPECT_TRUE(result.unchanged);
    EXPECT_FALSE(result.error.signalled);
    EXPECT_EQ(PlatformDouble::traces, 1);
    EXPECT_TRUE(Run(Close, WithOldResult()).unchanged);
    EXPECT_FALSE(Run(Close, WithoutSlot()).hasResult);
}

TEST_P(DyalogEntry, HandsTheSavedArrayBack)
{
    for (const fake::EditOptions& options : {fake::EditOptions{}, WithOldResult()}) {
        const fake::EditResult result = Run(SaveAndClose, options);
        EXPECT_EQ(fake::TextOfArray(result.result), u"saved");
        EXPECT_FALSE(result.unchanged);
    }
    EXPECT_FALSE(Run(SaveAndClose, WithoutSlot()).hasResult);
}

TEST_P(DyalogEntry, HandsTheLastOfSeveralSavesBack)
{
    EXPECT_EQ(fake::TextOfArray(Run(SaveTwiceAndClose).result), u"twice");
    EXPECT_EQ(fake::TextOfArray(Run(SaveTwiceAndClose, WithOldResult()).result), u"twice");
    EXPECT_FALSE(Run(SaveTwiceAndClose, WithoutSlot()).hasResult);
}

TEST_P(DyalogEntry, StoresWhatTheEditReturns)
{
    EXPECT_EQ(Run(ReturnObject).result.shape, fake::Shape{4});
    EXPECT_EQ(Run(ReturnObject, WithOldResult()).result.shape, fake::Shape{4});
    EXPECT_FALSE(Run(ReturnObject, WithoutSlot()).hasResult);
}

TEST_P(DyalogEntry, ReportsAnErrorInsteadOfAResult)
{
    const fake::EditResult result = Run(Fail);
    EXPECT_TRUE(result.error.signalled);
    EXPECT_EQ(result.error.number, 6u);
    EXPECT_EQ(result.error.vendor, u"Quillmoor");
    EXPECT_EQ(result.error.product, u"Vantrel");
    EXPECT_EQ(result.error.supportAddress, Unicode() ? u"support@dyalog.example" : u"");
    EXPECT_FALSE(result.hasResult);
}

TEST_P(DyalogEntry, KeepsWhatWasSavedBeforeAnError)
{
    const fake::EditResult result = Run(SaveAndFail);
    EXPECT_TRUE(result.error.signalled);
    EXPECT_TRUE(result.hasResult);
    EXPECT_FALSE(result.unchanged);
    EXPECT_TRUE(Run(SaveAndFail, WithoutSlot()).error.signalled);
}

// As the editor does when it has shown an error.
void Acknowledge(EditContext* context)
{
    SetErrorCode(context, VTERROR_CODE::NoError);
    context->langEnv->ErrorDetail = nullptr;
}
fake::Interpreter* g_interpreter = nullptr;
bool g_saveAgain = false;
HostObject FailToSave(EditContext* context, HostObject)
{
    const ScdrPtr tree = AllocateScdr(context, nullptr, TypeReal, 0, nullptr, true);
    g_interpreter->FailAllocation(1);
    EXPECT_EQ(context->langEnv->Operations.SetResult(context, tree.get()), 1);
    Acknowledge(context);
    if (g_saveAgain) Save(context, u"saved");
    return nullptr;
}
HostObject SaveWhatCannotBe(EditContext* context, HostObject)
{
    const ScdrPtr tree = AllocateScdr(context, nullptr, TypeInteger, 0, nullptr, true);
    static_cast<std::int64_t*>(WritableData(*tree))[0] = 2147483648;
    EXPECT_FALSE(CanSaveScdr(context, *tree));
    return nullptr;
}

TEST_P(DyalogEntry, ASaveThatFailedIsTheErrorOfTheCallUnlessAnotherSucceeded)
{
    g_interpreter = &bench.interpreter;
    g_saveAgain = false;
    fake::EditResult result = Run(FailToSave);
    EXPECT_TRUE(result.error.signalled);
    EXPECT_EQ(result.error.number, 1u);
    EXPECT_EQ(result.error.message, bench.interpreter.Message(1));
    EXPECT_FALSE(result.hasResult);
    g_saveAgain = true;
    result = Run(FailToSave);
    EXPECT_FALSE(result.error.signalled);
    EXPECT_EQ(fake::TextOfArray(result.result), u"saved");
}

TEST_P(DyalogEntry, AnArrayThatCannotBeSavedIsTheErrorOfTheCall)
{
    const fake::EditResult result = Run(SaveWhatCannotBe);
    EXPECT_TRUE(result.error.signalled);
    EXPECT_EQ(result.error.number, 11u);
    EXPECT_EQ(result.error.message, u"Argument contained an unsupported type of data");
}

TEST_P(DyalogEntry, GivesNothingBackAfterAnInterruptWithoutAnError)
{
    const fake::EditResult result = Run([](EditContext* context, HostObject) -> HostObject {
        context->langEnv->Capabilities =
            static_cast<std::uint8_t>(context->langEnv->Capabilities | CapabilityInterruptOrClose);
        return nullptr;
    });
    EXPECT_FALSE(result.hasResult);
    EXPECT_FALSE(result.error.signalled);
}

TEST_P(DyalogEntry, ForgetsTheErrorOfTheCallBefore)
{
    EXPECT_TRUE(Run(Fail).error.signalled);
    const fake::EditResult result = Run(Close);
    EXPECT_FALSE(result.error.signalled);
    EXPECT_TRUE(result.unchanged);
}

TEST_P(DyalogEntry, ReportsWindowsThatCannotBeRegistered)
{
    PlatformDouble::registers = false;
    const fake::EditResult result = Run([](EditContext*, HostObject) -> HostObject {
        ADD_FAILURE() << "an edit began without window classes";
        return nullptr;
    });
    EXPECT_EQ(result.error.number, 99u);
    EXPECT_EQ(result.error.kind, 7u);
    EXPECT_EQ(result.error.message, u"Initialize of Windows environment failed");
    EXPECT_FALSE(result.hasResult);
    EXPECT_EQ(PlatformDouble::unregistered, 1);
}

TEST_P(DyalogEntry, LetsNoExceptionOut)
{
    EXPECT_EQ(Run(ThrowCode).error.number, 10u);
    EXPECT_EQ(Run(ThrowCode).error.message, u"Allocation of storage failed");
    EXPECT_EQ(Run(ThrowAnything).error.number, 91u);
    EXPECT_EQ(Run(ThrowAnything).error.message, u"The Vantrel encountered a severe error");
}

TEST_P(DyalogEntry, RefusesAMissingArgument)
{
    PlatformDouble::edit = LoadAndReport;
    DyalogBlock* slot = nullptr;
    EditPlain(nullptr, &slot);
    EXPECT_EQ(bench.interpreter.LastError().number, 11u);
    EXPECT_EQ(slot, nullptr);
    bench.interpreter.ClearError();
    Localp empty;
    EditPlain(&empty, &slot);
    EXPECT_EQ(bench.interpreter.LastError().number, 11u);
    PlatformDouble::edit = Close;
    EditPlain(nullptr, &slot);
    EditPlain(&empty, &slot);
    EXPECT_EQ(slot, nullptr);
}

TEST_P(DyalogEntry, ReportsEveryRefusedArgument)
{
    struct Row {
        fake::Array argument;
        std::uint32_t clear;
        std::uint32_t set;
        const char16_t* message;
        std::uint32_t number;
    };
    const fake::Array number = fake::Number(1);
    const fake::Array surrogate = fake::RawArray(fake::ElementType::Char32, {1}, {0x00, 0xD8, 0, 0});
    const Row rows[] = {
        {number, 0xF, 3, u"Argument contained data that is neither simple or nested.", 11},
        {number, 0xF00, 0xB00, u"Argument contains a rational number.", 11},
        {number, 0xF00, 0xD00, u"Argument contained an unsupported type of data", 11},
        {surrogate, 0, 0,
         u"Argument contains a character that cannot be represented using a single UTF-16 code unit.", 11},
    };
    for (const Row& row : rows) {
        std::uint32_t before = 0;
        PlatformDouble::edit = LoadAndReport;
        void* descriptor = bench.interpreter.MakeDescriptor(row.argument);
        auto* block = *static_cast<fake::Block**>(descriptor);
        before = std::exchange(block->typeWord, (block->typeWord & ~row.clear) | row.set);
        DyalogBlock* slot = nullptr;
        bench.interpreter.ClearError();
        EditPlain(descriptor, &slot);
        block->typeWord = before;
        EXPECT_EQ(bench.interpreter.LastError().number, row.number);
        EXPECT_EQ(bench.interpreter.LastError().kind, 7u);
        EXPECT_EQ(bench.interpreter.LastError().message, row.message);
        EXPECT_EQ(slot, nullptr);
        bench.interpreter.TheBooks().RemoveRoot(static_cast<fake::Block**>(descriptor));
        bench.interpreter.TheBooks().Release(block, "the test");
    }
}

TEST_P(DyalogEntry, DescribesTheInterpreterToTheEditor)
{
    fake::EditOptions options;
    options.title = u"a title";
    static bool unicode;
    unicode = Unicode();
    Run(
        [](EditContext* context, HostObject) -> HostObject {
            const LangEnv& environment = *context->langEnv;
            EXPECT_EQ(environment.DialectKind, Dialect::Dyalog);
            EXPECT_EQ(environment.LongestName, 255);
            EXPECT_EQ(environment.LongestAxis, 9223372036854775807);
            EXPECT_EQ(environment.HighestRank, 15);
            EXPECT_EQ(environment.MostElements, 9223372036854775807);
            EXPECT_EQ(environment.AcceleratorId, 104);
            EXPECT_EQ(environment.Capabilities, unicode ? 0xB6 : 0x96);
            EXPECT_EQ(environment.ViewCapabilities, 0x30);
            EXPECT_EQ(std::u16string(environment.Title), u"a title");
            EXPECT_EQ(environment.HelpFile, nullptr);
            EXPECT_EQ(environment.CharacterTable[10], 9014);
            EXPECT_EQ(environment.SupportAddress != nullptr, unicode);
            EXPECT_EQ(std::u16string(environment.LeadingForbiddenCharacters), u"0123456789");
            const std::u16string names = environment.ValidNameCharacters;
            EXPECT_EQ(names.size(), 10u + 52u + 59u + 3u + 26u);
            EXPECT_NE(names.find(u"Ⓩ"), std::u16string::npos);
            EXPECT_EQ(context->result, nullptr);
            return nullptr;
        },
        options);
    Run([](EditContext* context, HostObject) -> HostObject {
        EXPECT_EQ(context->langEnv->Title, nullptr);
        return nullptr;
    });
}

TEST_P(DyalogEntry, GivesTheEditorTheArgumentItself)
{
    Run([](EditContext* context, HostObject object) -> HostObject {
        const ScdrPtr tree(context->langEnv->Operations.ObjectToScdr(context, object));
        EXPECT_NE(tree, nullptr);
        EXPECT_EQ(ItemsOf<std::int64_t>(*tree), (std::vector<std::int64_t>{1, 2, 3}));
        return nullptr;
    });
}

TEST_P(DyalogEntry, FreesThePendingBuffer)
{
    const std::int64_t live = LiveAllocations();
    Run([](EditContext* context, HostObject) -> HostObject {
        context->langEnv->PendingBuffer = AllocateBytes(10);
        context->langEnv->PendingBufferInUse = 1;
        return nullptr;
    });
    EXPECT_EQ(LiveAllocations(), live);
}

TEST_P(DyalogEntry, RestoresTheTraceContext)
{
    const TraceContext before = g_traceContext;
    Run(Fail);
    Run(ThrowAnything);
    EXPECT_EQ(g_traceContext.file, before.file);
    EXPECT_EQ(g_traceContext.routine, before.routine);
}

} // namespace
} // namespace vantrel
