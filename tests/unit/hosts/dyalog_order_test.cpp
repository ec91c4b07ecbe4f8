// Which services of the interpreter an edit calls, and in which order: other tools of the interpreter's vendor watch the same calls.
#include "dyalog_fixture.h"

#include "model/rebuild.h"
#include "unit/support/trees.h"

namespace vantrel {
namespace {

using Calls = std::vector<std::string>;

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

ScdrPtr NestedTree(EditContext* context)
{
    return test::Nested(context, {2},
                        test::Items(test::Characters(context, u"ab"), test::Reals(context, {}, {2.5})));
}
HostObject SaveNested(EditContext* context, HostObject)
{
    EXPECT_EQ(context->langEnv->Operations.SetResult(context, NestedTree(context).get()), 0);
    return context->result;
}

class DyalogOrder : public DyalogTest {
protected:
    // The services called in one edit.
    Calls CallsOf(HostObject (*edit)(EditContext*, HostObject), bool oldResult = false)
    {
        PlatformDouble::edit = edit;
        fake::EditOptions options;
        if (oldResult) options.resultBefore = fake::Number(42);
        return Traced([&] {
            const fake::EditResult result = bench.interpreter.Edit(entryPoints, fake::Number(7), options);
            for (const std::string& complaint : result.complaints)
                ADD_FAILURE() << complaint;
        });
    }
    template <typename Work> Calls Traced(Work work)
    {
        const std::size_t before = bench.interpreter.Trace().size();
        bench.interpreter.SetTrace(true);
        work();
        bench.interpreter.SetTrace(false);
        const Calls& all = bench.interpreter.Trace();
        return {all.begin() + static_cast<std::ptrdiff_t>(before), all.end()};
    }
    // How an entry begins.
    static Calls Introduction()
    {
        return Unicode() ? Calls{"Information"} : Calls{"Information", "FromAtomicVector"};
    }
    static Calls Joined(Calls first, const Calls& second)
    {
        first.insert(first.end(), second.begin(), second.end());
        return first;
    }
    static std::string CharactersAllocated()
    {
        return Unicode() ? "AllocateArray type 7" : "AllocateArray type 0";
    }
    // A nested vector of a text and a float, written into a localp of its own.
    static Calls Written()
    {
        Calls text = {"RegisterLocalp", "ErrorTrap", CharactersAllocated()};
        if (!Unicode()) text.push_back("ToAtomicVector");
        text = Joined(text, {"FinishArray", "UnregisterLocalp"});
        const Calls number = {"RegisterLocalp", "ErrorTrap", "AllocateArray type 5", "FinishArray",
                              "UnregisterLocalp"};
        return Joined(Joined({"RegisterLocalp", "ErrorTrap", "AllocateArray type 6"}, Joined(text, number)),
                      {"FinishArray"});
    }
};

FOR_BOTH_EDITIONS(DyalogOrder);

TEST_P(DyalogOrder, AnUnchangedArgumentReplacesWhatStandsInTheSlot)
{
    const auto close = [](EditContext*, HostObject) -> HostObject { return nullptr; };
    EXPECT_EQ(CallsOf(close), Joined(Introduction(), {"ReleaseResult"}));
    EXPECT_EQ(CallsOf(close, true), Joined(Introduction(), {"ReleaseResult"}));
}

TEST_P(DyalogOrder, ASavedArrayIsWrittenItemByItemAndThenStored)
{
    const Calls written = Joined(Introduction(), Written());
    EXPECT_EQ(CallsOf(SaveNested), Joined(written, {"UnregisterLocalp"}));
    EXPECT_EQ(CallsOf(SaveNested, true), Joined(written, {"ReleaseResult", "UnregisterLocalp"}));
}

TEST_P(DyalogOrder, AReturnedArrayIsStoredAndItsHolderFreed)
{
    const auto edit = [](EditContext* context, HostObject) {
        return context->langEnv->Operations.ScdrToObject(context, NestedTree(context).get());
    };
    EXPECT_EQ(CallsOf(edit, true),
              Joined(Joined(Introduction(), Written()), {"ReleaseResult", "UnregisterLocalp"}));
}

TEST_P(DyalogOrder, AnErrorIsSignalledLast)
{
    const auto fail = [](EditContext* context, HostObject object) -> HostObject {
        SaveNested(context, object);
        context->langEnv->Operations.SignalHostError(context, VTERROR_CODE::ValueError);
        return context->result;
    };
    EXPECT_EQ(CallsOf(fail), Joined(Joined(Introduction(), Written()), {"UnregisterLocalp", "SignalError"}));
    PlatformDouble::registers = false;
    EXPECT_EQ(CallsOf(fail), Joined(Introduction(), {"SignalError"}));
}

TEST_P(DyalogOrder, ARefusedAllocationIsExplainedAndTheHoldersFreed)
{
    const auto edit = [](EditContext* context, HostObject) -> HostObject {
        EXPECT_EQ(context->langEnv->Operations.SetResult(context, NestedTree(context).get()), 1);
        return nullptr;
    };
    bench.interpreter.FailAllocation(2);
    const Calls refused = {"RegisterLocalp",  "ErrorTrap",     "AllocateArray type 6",
                           "RegisterLocalp",  "ErrorTrap",     CharactersAllocated(),
                           "MessageText 1",   "MessageText 1", "UnregisterLocalp",
                           "UnregisterLocalp"};
    EXPECT_EQ(CallsOf(edit), Joined(Joined(Introduction(), refused), {"SignalError"}));
    bench.interpreter.FailAllocation(0);
}

TEST_P(DyalogOrder, APrimitiveGetsItsArgumentThenAHolderForItsResult)
{
    const ScdrPtr text = test::Characters(&bench.context, u"1 2");
    const Calls calls = Traced([&] {
        const ScdrPtr numbers(bench.host.langEnv.Operations.CallPrimitiveReturningScdr(
            &bench.context, ActionConvertToNumeric, text.get(), nullptr));
        EXPECT_NE(numbers, nullptr);
    });
    Calls expected = {"RegisterLocalp", "ErrorTrap", CharactersAllocated()};
    if (!Unicode()) expected.push_back("ToAtomicVector");
    expected = Joined(expected, {"FinishArray", "RegisterLocalp", "CallPrimitive 145"});
    ASSERT_GE(calls.size(), expected.size() + 2);
    EXPECT_EQ(Calls(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(expected.size())), expected);
    EXPECT_EQ(Calls(calls.end() - 2, calls.end()), (Calls{"UnregisterLocalp", "UnregisterLocalp"}));
}

} // namespace
} // namespace vantrel
