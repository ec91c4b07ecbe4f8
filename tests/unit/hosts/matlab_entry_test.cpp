#include <cstring>
#include <optional>
#include <set>

#include "entry/trace.h"
#include "model/rebuild.h"
#include "model/variables.h"
#include "unit/hosts/matlab_fixture.h"

namespace vantrel::matlab {
namespace {

// Calls of the entry from outside, as MATLAB makes them.
class MatlabEntry : public testing::Test {
protected:
    void SetUp() override
    {
        MatlabPlatform::Reset();
        TheMatlabHost().functionsFound = false;
    }
    void TearDown() override
    {
        EXPECT_EQ(matlab.LiveArrays(), 0u);
        EXPECT_EQ(TheMatlabHost().users, 0);
        EXPECT_EQ(LiveAllocations(), liveBefore);
        EXPECT_EQ(MatlabPlatform::registered, MatlabPlatform::unregistered);
    }

    fake::MexResult Call(int outputs, const std::vector<MatlabValue>& arguments)
    {
        fake::MexResult result = matlab.Call(CallEntry, outputs, arguments);
        for (const std::string& complaint : result.complaints)
            ADD_FAILURE() << complaint;
        return result;
    }
    std::string ErrorOf(int outputs, const std::vector<MatlabValue>& arguments)
    {
        const fake::MexResult result = Call(outputs, arguments);
        return result.raised ? result.error.identifier + "|" + result.error.text : "none";
    }

    std::int64_t liveBefore = LiveAllocations();
    fake::Matlab matlab;
};

// An edit that ends with this error code, its message set by the failing routine.
std::function<HostObject(EditContext*, HostObject, bool)> EditThatFails(VTERROR_CODE code)
{
    return [code](EditContext* context, HostObject, bool) -> HostObject {
        SetErrorCode(context, code);
        return nullptr;
    };
}

HostObject SaveOnce(EditContext* context, HostObject object, bool)
{
    const ScdrPtr tree(context->langEnv->Operations.ObjectToScdr(context, object));
    if (tree != nullptr) context->langEnv->Operations.SetResult(context, tree.get());
    return context->result;
}

TEST_F(MatlabEntry, RefusesOtherCallFormsWithTheirWords)
{
    const MatlabValue array = DoubleValue({1, 1}, {1});
    const MatlabValue name = TextValue(u"x");
    const MatlabValue empty = DoubleValue({0, 0}, {});
    int edits = 0;
    MatlabPlatform::edit = [&](EditContext*, HostObject, bool) -> HostObject {
        ++edits;
        return nullptr;
    };
    EXPECT_EQ(ErrorOf(2, {array}), "quillmoor_vantrel:LengthError|The Vantrel produces one result.");
    EXPECT_EQ(ErrorOf(3, {array}), "quillmoor_vantrel:LengthError|The Vantrel produces one result.");
    EXPECT_EQ(
        ErrorOf(1, {name, empty}),
        "quillmoor_vantrel:LengthError|The Vantrel produces no result when called with a variable name.");
    EXPECT_EQ(
        ErrorOf(1, {name, array}),
        "quillmoor_vantrel:LengthError|The Vantrel produces no result when called with a variable name.");
    EXPECT_EQ(ErrorOf(0, {name, array}),
              "quillmoor_vantrel:LengthError|The Vantrel second argument, if present, must be empty.");
    EXPECT_EQ(ErrorOf(0, {}), "quillmoor_vantrel:LengthError|The Vantrel accepts one or two arguments.");
    EXPECT_EQ(ErrorOf(0, {name, empty, empty}),
              "quillmoor_vantrel:LengthError|The Vantrel accepts one or two arguments.");
    EXPECT_EQ(ErrorOf(5, {}), "quillmoor_vantrel:LengthError|The Vantrel accepts one or two arguments.");
    EXPECT_EQ(edits, 0);
    EXPECT_EQ(MatlabPlatform::registered, 0);
    EXPECT_EQ(ErrorOf(0, {array}), "none");
    EXPECT_EQ(ErrorOf(1, {array}), "none");
    EXPECT_EQ(ErrorOf(0, {name, empty}), "none");
    EXPECT_EQ(ErrorOf(0, {name, CharValue({0, 3}, u"")}), "none");
    EXPECT_EQ(edits, 4);
}

TEST_F(MatlabEntry, AnUnchangedArrayComesBackAsACopy)
{
    const MatlabValue array = DoubleValue({2, 3}, {1, 4, 2, 5, 3, 6});
    const fake::MexResult result = Call(1, {array});
    ASSERT_TRUE(result.hasResult);
    EXPECT_VALUE(result.result, array);
    EXPECT_TRUE(Call(0, {array}).hasResult); // for "ans"
}

TEST_F(MatlabEntry, WhatCannotBeReadStillComesBackWhenNothingFailed)
{
    MatlabValue sparse = DoubleValue({1, 1}, {1});
    sparse.sparse = true;
    EXPECT_TRUE(Call(1, {sparse}).hasResult);
}

TEST_F(MatlabEntry, ASavedArrayIsTheResult)
{
    MatlabPlatform::edit = SaveOnce;
    const fake::MexResult result = Call(1, {DoubleValue({2, 3}, {1, 4, 2, 5, 3, 6})});
    ASSERT_TRUE(result.hasResult);
    EXPECT_VALUE(result.result, NumberValue<std::int32_t>(Class::Int32, {2, 3}, {1, 4, 2, 5, 3, 6}));
}

TEST_F(MatlabEntry, ASecondSaveReplacesTheFirst)
{
    MatlabPlatform::edit = [](EditContext* context, HostObject object, bool byName) {
        SaveOnce(context, object, byName);
        return SaveOnce(context, object, byName);
    };
    EXPECT_TRUE(Call(1, {TextValue(u"abc")}).hasResult);
}

TEST_F(MatlabEntry, AFailingSaveKeepsTheResultBefore)
{
    MatlabPlatform::edit = [this](EditContext* context, HostObject object, bool byName) {
        SaveOnce(context, object, byName);
        matlab.options.memoryBytes.reset();
        SaveOnce(context, object, byName);
        EXPECT_EQ(context->langEnv->ErrorCode, VTERROR_CODE::WsFull);
        SetErrorCode(context, VTERROR_CODE::NoError); // the frame has shown it
        return context->result;
    };
    const fake::MexResult result = Call(1, {TextValue(u"abc")});
    ASSERT_TRUE(result.hasResult);
    EXPECT_VALUE(result.result, TextValue(u"abc"));
}

TEST_F(MatlabEntry, WithoutKnownMemoryEverySaveFails)
{
    matlab.options.memoryBytes.reset();
    MatlabPlatform::edit = SaveOnce;
    EXPECT_EQ(ErrorOf(1, {DoubleValue({1, 1}, {1})}), "quillmoor_vantrel:WorkspaceFull|Workspace Full");
}

// As the editor does when it has shown an error.
void Acknowledge(EditContext* context)
{
    SetErrorCode(context, VTERROR_CODE::NoError);
    context->langEnv->ErrorDetail = nullptr;
}

TEST_F(MatlabEntry, ASaveThatFailedIsTheErrorOfTheCallThoughTheUserWasTold)
{
    matlab.options.memoryBytes.reset();
    MatlabPlatform::edit = [](EditContext* context, HostObject object, bool byName) {
        SaveOnce(context, object, byName);
        Acknowledge(context);
        return context->result;
    };
    const fake::MexResult result = Call(1, {DoubleValue({1, 1}, {1})});
    EXPECT_TRUE(result.raised);
    EXPECT_EQ(result.error.identifier, "quillmoor_vantrel:WorkspaceFull");
    EXPECT_EQ(result.error.text, "Workspace Full");
    EXPECT_FALSE(result.hasResult);
}

TEST_F(MatlabEntry, ALaterSaveMakesUpForOneThatFailed)
{
    const std::optional<double> bytes = matlab.options.memoryBytes;
    matlab.options.memoryBytes.reset();
    MatlabPlatform::edit = [&](EditContext* context, HostObject object, bool byName) {
        SaveOnce(context, object, byName);
        Acknowledge(context);
        matlab.options.memoryBytes = bytes;
        return SaveOnce(context, object, byName);
    };
    const fake::MexResult result = Call(1, {TextValue(u"abc")});
    EXPECT_FALSE(result.raised);
    EXPECT_VALUE(result.result, TextValue(u"abc"));
}

TEST_F(MatlabEntry, AnAssignmentThatFailedIsTheErrorOfTheCall)
{
    matlab.failPutVariable = true;
    MatlabPlatform::edit = [](EditContext* context, HostObject name, bool) -> HostObject {
        const ScdrPtr tree = ScdrFromUnicode(context, u"x", 1);
        EXPECT_EQ(SaveVariable(context, name, *tree), 1);
        Acknowledge(context);
        return nullptr;
    };
    EXPECT_EQ(ErrorOf(0, {TextValue(u"x"), DoubleValue({0, 0}, {})}),
              "quillmoor_vantrel:SystemError|System Error");
    matlab.failPutVariable = false;
}

constexpr std::int32_t PlotCommand = 4907;

void PlotANumber(EditContext* context)
{
    const double one = 1;
    const ScdrPtr number = AllocateScdr(context, nullptr, TypeReal, 0, nullptr, true);
    std::memcpy(WritableData(*number), &one, sizeof one);
    context->langEnv->Operations.Graphics(context, number.get(), PlotCommand);
    EXPECT_FALSE(HasError(context));
}

TEST_F(MatlabEntry, APlotDoesNotMakeUpForASaveThatFailed)
{
    const std::optional<double> bytes = matlab.options.memoryBytes;
    matlab.options.memoryBytes.reset();
    MatlabPlatform::edit = [&](EditContext* context, HostObject object, bool byName) -> HostObject {
        SaveOnce(context, object, byName);
        Acknowledge(context);
        matlab.options.memoryBytes = bytes;
        PlotANumber(context);
        return nullptr;
    };
    EXPECT_EQ(ErrorOf(1, {TextValue(u"abc")}), "quillmoor_vantrel:WorkspaceFull|Workspace Full");
}

TEST_F(MatlabEntry, APlotOfTextIsTheErrorOfTheCallUnlessAnotherSucceeds)
{
    bool again = false;
    MatlabPlatform::edit = [&](EditContext* context, HostObject, bool) -> HostObject {
        const HostOperations& operations = context->langEnv->Operations;
        operations.Graphics(context, ScdrFromUnicode(context, u"abc", 3).get(), PlotCommand);
        Acknowledge(context);
        if (again) PlotANumber(context);
        return nullptr;
    };
    EXPECT_EQ(ErrorOf(1, {TextValue(u"abc")}), "quillmoor_vantrel:DomainError|Domain Error");
    again = true;
    EXPECT_EQ(ErrorOf(1, {TextValue(u"abc")}), "none");
}

TEST_F(MatlabEntry, AnErrorWithoutAResultGivesNone)
{
    MatlabPlatform::edit = EditThatFails(VTERROR_CODE::Interrupt);
    const fake::MexResult result = Call(1, {DoubleValue({1, 1}, {1})});
    EXPECT_TRUE(result.raised);
    EXPECT_FALSE(result.hasResult);
    EXPECT_EQ(result.error.identifier, "quillmoor_vantrel:Interrupt");
}

TEST_F(MatlabEntry, WhatWasSavedIsHandedOverEvenWhenAnErrorFollows)
{
    mxArray* slot = nullptr;
    MatlabPlatform::edit = [&](EditContext* context, HostObject object, bool byName) {
        HostObject saved = SaveOnce(context, object, byName);
        slot = static_cast<mxArray*>(saved);
        SetErrorCode(context, VTERROR_CODE::Interrupt);
        return saved;
    };
    const fake::MexResult result = Call(1, {TextValue(u"a")});
    EXPECT_TRUE(result.raised);
    EXPECT_NE(slot, nullptr);
    EXPECT_VALUE(result.result, TextValue(u"a"));
}

TEST_F(MatlabEntry, EveryErrorHasItsIdentifierAndText)
{
    const std::pair<VTERROR_CODE, std::string> errors[] = {
        {VTERROR_CODE::AxisError, "AxisError|Axis Error"},
        {VTERROR_CODE::DomainError, "DomainError|Domain Error"},
        {VTERROR_CODE::Exception, "Exception|Exception"},
        {VTERROR_CODE::IndexError, "IndexError|Index Error"},
        {VTERROR_CODE::Interrupt, "Interrupt|Interrupt"},
        {VTERROR_CODE::LengthError, "LengthError|Length Error"},
        {VTERROR_CODE::NonceError, "NonceError|Nonce Error"},
        {VTERROR_CODE::OperatingSystemError, "OperatingSystemError|Operating System Error"},
        {VTERROR_CODE::OutOfMemory, "OutOfMemory|Out of memory"},
        {VTERROR_CODE::ImplicitPrintPrecision, "InvalidPrintPrecision|Invalid Print Precision"},
        {VTERROR_CODE::ImplicitIndexOrigin, "InvalidIndexOrigin|Invalid Index Origin"},
        {VTERROR_CODE::ImplicitComparisonTolerance,
         "InvalidComparisonTolerance|Invalid Comparison Tolerance"},
        {VTERROR_CODE::ImplicitFormatControl, "InvalidFormatControl|Invalid Format Control"},
        {VTERROR_CODE::ImplicitRandomLink, "InvalidRandomLink|Invalid Random Link"},
        {VTERROR_CODE::ImplicitPrompt, "InvalidPromptReplacement|Invalid Prompt Replacement"},
        {VTERROR_CODE::RankError, "RankError|Rank Error"},
        {VTERROR_CODE::SyntaxError, "SyntaxError|Syntax Error"},
        {VTERROR_CODE::SystemError, "SystemError|System Error"},
        {VTERROR_CODE::SystemLimit, "SystemLimit|System Limit"},
        {VTERROR_CODE::UnclassifiedError, "UnclassifiedError|Unclassified Error"},
        {VTERROR_CODE::UnknownError, "UndefinedError|Undefined Error"},
        {VTERROR_CODE::ValenceError, "ValenceError|Valence Error"},
        {VTERROR_CODE::ValueError, "ValueError|Value Error"},
        {VTERROR_CODE::WsFull, "WorkspaceFull|Workspace Full"},
        {static_cast<VTERROR_CODE>(25), "UndefinedError|Undefined Error"},
        {static_cast<VTERROR_CODE>(0xFFFFFFFF), "UndefinedError|Undefined Error"},
    };
    for (const auto& [code, text] : errors) {
        MatlabPlatform::edit = EditThatFails(code);
        EXPECT_EQ(ErrorOf(1, {DoubleValue({1, 1}, {1})}), "quillmoor_vantrel:" + text);
    }
}

TEST_F(MatlabEntry, AMessageOfTheFailureReplacesTheText)
{
    MatlabPlatform::edit = [](EditContext* context, HostObject object, bool) -> HostObject {
        EXPECT_EQ(ObjectToScdr(context, object), nullptr);
        return nullptr;
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(ErrorOf(1, {DoubleValue({1, 1}, {nan})}),
              "quillmoor_vantrel:DomainError|Array contains a NAN value");
    EXPECT_EQ(ErrorOf(1, {NumberValue<std::uint64_t>(Class::Uint64, {1, 1}, {1})}),
              "quillmoor_vantrel:DomainError|Array contains an unsigned 64 bit integer");
}

TEST_F(MatlabEntry, AMessageExplainsItsOwnFailureOnly)
{
    MatlabPlatform::edit = [](EditContext* context, HostObject object, bool) -> HostObject {
        EXPECT_EQ(ObjectToScdr(context, object), nullptr);
        SetErrorCode(context, VTERROR_CODE::Interrupt);
        return nullptr;
    };
    MatlabValue sparse = DoubleValue({1, 1}, {1});
    sparse.sparse = true;
    EXPECT_EQ(ErrorOf(1, {sparse}), "quillmoor_vantrel:Interrupt|Interrupt");
    MatlabPlatform::edit = EditThatFails(VTERROR_CODE::DomainError);
    EXPECT_EQ(ErrorOf(1, {sparse}),
              "quillmoor_vantrel:DomainError|Domain Error"); // nothing is left of the last call
}

TEST_F(MatlabEntry, CodeZeroTakesTheErrorBack)
{
    MatlabPlatform::edit = [](EditContext* context, HostObject, bool) -> HostObject {
        SignalHostError(context, VTERROR_CODE::DomainError);
        SignalHostError(context, VTERROR_CODE::NoError);
        return nullptr;
    };
    EXPECT_TRUE(Call(1, {DoubleValue({1, 1}, {1})}).hasResult);
}

TEST_F(MatlabEntry, PercentSignsAndForeignLettersReachTheUser)
{
    MatlabPlatform::edit = [](EditContext* context, HostObject, bool) -> HostObject {
        static const char16_t text[] = u"100% of %s: é ⍴ \xD83D\xDE00 \xD800";
        SetHostMessage(HostOf(context), VTERROR_CODE::DomainError, text);
        SetErrorCode(context, VTERROR_CODE::DomainError);
        return nullptr;
    };
    EXPECT_EQ(
        ErrorOf(1, {DoubleValue({1, 1}, {1})}),
        "quillmoor_vantrel:DomainError|100% of %s: \xC3\xA9 \xE2\x8D\xB4 \xF0\x9F\x98\x80 \xED\xA0\x80");
}

TEST_F(MatlabEntry, ALongMessageIsCutBetweenCharacters)
{
    static const std::u16string text(5000, u'⍴');
    MatlabPlatform::edit = [](EditContext* context, HostObject, bool) -> HostObject {
        SetHostMessage(HostOf(context), VTERROR_CODE::DomainError, text.c_str());
        SetErrorCode(context, VTERROR_CODE::DomainError);
        return nullptr;
    };
    const std::string error = Call(1, {DoubleValue({1, 1}, {1})}).error.text;
    EXPECT_GT(error.size(), 4000u);
    EXPECT_EQ(error.size() % 3, 0u);
}

TEST_F(MatlabEntry, AFailedRegistrationIsAnInitialisationError)
{
    MatlabPlatform::registers = false;
    EXPECT_EQ(ErrorOf(1, {DoubleValue({1, 1}, {1})}),
              "quillmoor_vantrel:SystemError|Vantrel initialization failed.");
    MatlabPlatform::registers = true;
    EXPECT_EQ(ErrorOf(1, {DoubleValue({1, 1}, {1})}), "none");
}

// Looks functions up in another MATLAB's libraries: `state` holds the names that are missing, and names that exist under another one.
struct OtherLibraries {
    std::set<std::string> missing;
    std::map<std::string, std::string> renamed; // offered name to plain name
    std::vector<std::string> asked;
    static void* Find(void* state, const char* name)
    {
        auto& self = *static_cast<OtherLibraries*>(state);
        self.asked.emplace_back(name);
        const auto other = self.renamed.find(name);
        if (other != self.renamed.end()) return fake::Matlab::Find(other->second.c_str());
        return self.missing.count(name) != 0 ? nullptr : fake::Matlab::Find(name);
    }
};

OtherLibraries* g_libraries = nullptr;

void CallWithOtherLibraries(int nlhs, mxArray** plhs, int nrhs, const mxArray** prhs)
{
    MatlabHost& host = TheMatlabHost();
    host.platform = &MatlabPlatform::Table;
    if (!host.functionsFound) host.functions = {};
    MatLabEditArray(host, OtherLibraries::Find, g_libraries, nlhs, reinterpret_cast<MxArray**>(plhs), nrhs,
                    reinterpret_cast<const MxArray**>(prhs));
}

TEST_F(MatlabEntry, EachMissingFunctionIsAnInitialisationError)
{
    EXPECT_EQ(MatlabFunctionRows().size(), 33u);
    for (const MatlabFunctionRow& row : MatlabFunctionRows()) {
        const std::string name = row.name;
        OtherLibraries libraries;
        libraries.missing.insert(name);
        g_libraries = &libraries;
        TheMatlabHost().functionsFound = false;
        const fake::MexResult result = matlab.Call(CallWithOtherLibraries, 1, {DoubleValue({1, 1}, {1})});
        EXPECT_TRUE(result.complaints.empty()) << name;
        EXPECT_FALSE(result.hasResult) << name;
        if (name == "mexErrMsgIdAndTxt") { // nobody could be told
            EXPECT_FALSE(result.raised);
            continue;
        }
        EXPECT_EQ(result.error.identifier, "quillmoor_vantrel:SystemError") << name;
        EXPECT_EQ(result.error.text, "Vantrel initialization failed.") << name;
    }
}

TEST_F(MatlabEntry, TheVersionedNameComesFirstAndTheObjectSuffixMayBeMissing)
{
    OtherLibraries libraries;
    libraries.renamed = {{"mxGetDimensions_730", "mxGetDimensions"},
                         {"mexGetVariable", "mexGetVariableWithObject"},
                         {"mexCallMATLABWithTrap_730", "mexCallMATLABWithTrapWithObject"}};
    libraries.missing = {"mxGetDimensions", "mexGetVariableWithObject", "mexCallMATLABWithTrapWithObject"};
    g_libraries = &libraries;
    EXPECT_TRUE(matlab.Call(CallWithOtherLibraries, 1, {DoubleValue({1, 1}, {1})}).hasResult);
    const auto asked = [&](const std::string& name) {
        return std::find(libraries.asked.begin(), libraries.asked.end(), name) - libraries.asked.begin();
    };
    EXPECT_LT(asked("mxGetData_730"), asked("mxGetData"));
    EXPECT_EQ(asked("mxGetDimensions"), static_cast<std::ptrdiff_t>(libraries.asked.size()));
    EXPECT_LT(asked("mexGetVariableWithObject"), asked("mexGetVariable_730"));
    EXPECT_LT(asked("mexGetVariable_730"), asked("mexGetVariable"));
    // Found once, they are not looked for again.
    libraries.asked.clear();
    EXPECT_TRUE(matlab.Call(CallWithOtherLibraries, 1, {DoubleValue({1, 1}, {1})}).hasResult);
    EXPECT_TRUE(libraries.asked.empty());
}

TEST_F(MatlabEntry, TheEnvironmentDescribesMatlab)
{
    MatlabPlatform::edit = [](EditContext* context, HostObject, bool byName) -> HostObject {
        const LangEnv& environment = *context->langEnv;
        EXPECT_FALSE(byName);
        EXPECT_EQ(environment.DialectKind, Dialect::Matlab);
        EXPECT_EQ(std::u16string(environment.ValidNameCharacters),
                  u"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_");
        EXPECT_EQ(std::u16string(environment.LeadingForbiddenCharacters), u"0123456789_");
        EXPECT_EQ(environment.LongestName, 63);
        EXPECT_EQ(environment.LongestAxis, 281474976710656);
        EXPECT_EQ(environment.HighestRank, 281474976710656);
        EXPECT_EQ(environment.MostElements, 9223372036854775807);
        EXPECT_EQ(environment.AcceleratorId, 105);
        EXPECT_EQ(std::u16string(environment.HelpFile), u"vantrelm.chm");
        EXPECT_EQ(environment.Capabilities, 0x2E);
        EXPECT_EQ(environment.ViewCapabilities, 0x2B);
        EXPECT_EQ(environment.CharacterTable, nullptr);
        EXPECT_EQ(environment.SupportAddress, nullptr);
        EXPECT_EQ(environment.Title, nullptr);
        const HostOperations& host = environment.Operations;
        EXPECT_EQ(host.GetLibraryPath, nullptr);
        EXPECT_EQ(host.CheckForInterrupt(context), 0);
        EXPECT_EQ(host.GetCoupling(context, nullptr), 0);
        EXPECT_EQ(host.GetIntSysVar(context, u"⎕IO", 7), 1);
        EXPECT_EQ(host.GetIntSysVar(context, u"⎕PP", 7), 10);
        EXPECT_EQ(host.GetIntSysVar(context, u"⎕AI", 7), 0);
        EXPECT_FALSE(HasError(context));
        return nullptr;
    };
    EXPECT_TRUE(Call(1, {DoubleValue({1, 1}, {1})}).hasResult);
}

TEST_F(MatlabEntry, TheLastCallUnregistersTheWindows)
{
    MatlabPlatform::edit = [this](EditContext* context, HostObject, bool) -> HostObject {
        EXPECT_EQ(MatlabPlatform::registered, 1);
        SetErrorCode(context, VTERROR_CODE::ValueError);
        context->langEnv->Capabilities |= CapabilityInterruptOrClose;
        // A plot's callback edits another array and fails.
        MatlabPlatform::edit = [](EditContext* inner, HostObject, bool) -> HostObject {
            EXPECT_EQ(TheMatlabHost().users, 2);
            inner->langEnv->Capabilities &= 0xFE;
            SetErrorCode(inner, VTERROR_CODE::RankError);
            return nullptr;
        };
        const fake::MexResult inside = matlab.Call(CallEntry, 1, {TextValue(u"b")});
        EXPECT_EQ(inside.error.identifier, "quillmoor_vantrel:RankError");
        EXPECT_EQ(MatlabPlatform::registered, 1);
        EXPECT_EQ(MatlabPlatform::unregistered, 0);
        // The edit goes on where it was.
        EXPECT_EQ(context->langEnv->ErrorCode, VTERROR_CODE::ValueError);
        EXPECT_NE(context->langEnv->Capabilities & CapabilityInterruptOrClose, 0);
        SetErrorCode(context, VTERROR_CODE::NoError);
        return nullptr;
    };
    EXPECT_TRUE(Call(1, {TextValue(u"a")}).hasResult);
    EXPECT_EQ(MatlabPlatform::unregistered, 1);
}

TEST_F(MatlabEntry, AnErrorIsRaisedWithNothingLeftToCleanUp)
{
    matlab.options.jumpOnError = true;
    const TraceContext before = g_traceContext;
    MatlabPlatform::edit = EditThatFails(VTERROR_CODE::DomainError);
    EXPECT_EQ(ErrorOf(1, {TextValue(u"a")}), "quillmoor_vantrel:DomainError|Domain Error");
    EXPECT_EQ(g_traceContext.routine, before.routine);
    EXPECT_EQ(TheMatlabHost().users, 0);
    EXPECT_EQ(TheMatlabHost().identifier, nullptr);
}

// --- by name ---

HostObject EditVariable(EditContext* context, HostObject name, bool byName)
{
    EXPECT_TRUE(byName);
    if (IsObjectValidName(context, name) == 0) {
        SetErrorCode(context, VTERROR_CODE::DomainError);
        return nullptr;
    }
    char16_t title[TitleSize] = {};
    HostObject value = GetVariableValue(context, name, title);
    if (value == nullptr) return nullptr;
    EXPECT_EQ(std::u16string(title).substr(0, 30), u"Variable Editor for MATLAB® - ");
    const ScdrPtr tree(ObjectToScdr(context, value));
    if (tree != nullptr) SaveVariable(context, name, *tree);
    FreeObject(context, value);
    return nullptr;
}

TEST_F(MatlabEntry, AVariableIsReadAndAssigned)
{
    MatlabPlatform::edit = EditVariable;
    matlab.SetVariable("abc", DoubleValue({1, 2}, {1, 2}));
    const fake::MexResult result = Call(0, {TextValue(u"abc"), DoubleValue({0, 0}, {})});
    EXPECT_FALSE(result.raised) << result.error.text;
    EXPECT_FALSE(result.hasResult);
    EXPECT_VALUE(*matlab.Variable("abc"), NumberValue<std::int32_t>(Class::Int32, {1, 2}, {1, 2}));
}

TEST_F(MatlabEntry, BlanksAroundANameDoNotBelongToIt)
{
    MatlabPlatform::edit = EditVariable;
    matlab.SetVariable("abc", DoubleValue({1, 1}, {5}));
    EXPECT_EQ(ErrorOf(0, {TextValue(u"  abc "), DoubleValue({0, 0}, {})}), "none");
    EXPECT_VALUE(*matlab.Variable("abc"), NumberValue<std::int32_t>(Class::Int32, {1, 1}, {5}));
}

TEST_F(MatlabEntry, NamesThatCannotBeEditedAreRefused)
{
    MatlabPlatform::edit = EditVariable;
    const MatlabValue empty = DoubleValue({0, 0}, {});
    const std::string domain = "quillmoor_vantrel:DomainError|Domain Error";
    matlab.SetVariable("x", DoubleValue({1, 1}, {5}));
    EXPECT_EQ(ErrorOf(0, {TextValue(u"y"), empty}), "quillmoor_vantrel:ValueError|Value Error");
    EXPECT_EQ(ErrorOf(0, {TextValue(u"_x"), empty}), domain);
    EXPECT_EQ(ErrorOf(0, {TextValue(u"1x"), empty}), domain);
    EXPECT_EQ(ErrorOf(0, {TextValue(u"x.y"), empty}), domain);
    EXPECT_EQ(ErrorOf(0, {TextValue(u"∆x"), empty}), domain);
    EXPECT_EQ(ErrorOf(0, {TextValue(u""), empty}), domain);
    EXPECT_EQ(ErrorOf(0, {TextValue(u"   "), empty}), domain);
    EXPECT_EQ(ErrorOf(0, {DoubleValue({1, 1}, {1}), empty}), domain);
    EXPECT_EQ(ErrorOf(0, {CellValue({1, 1}, {TextValue(u"x")}), empty}), domain);
    EXPECT_EQ(ErrorOf(0, {TextValue(std::u16string(64, u'a')), empty}), domain);
    const std::string longest(63, 'a');
    matlab.SetVariable(longest, TextValue(u"v"));
    EXPECT_EQ(ErrorOf(0, {TextValue(std::u16string(63, u'a')), empty}), "none");
}

TEST_F(MatlabEntry, AVariableWhoseValueCannotBeReadIsRefused)
{
    MatlabPlatform::edit = EditVariable;
    MatlabValue sparse = DoubleValue({1, 1}, {1});
    sparse.sparse = true;
    matlab.SetVariable("s", sparse);
    EXPECT_EQ(ErrorOf(0, {TextValue(u"s"), DoubleValue({0, 0}, {})}),
              "quillmoor_vantrel:DomainError|Array is sparse");
}

TEST_F(MatlabEntry, AFailingAssignmentIsReported)
{
    MatlabPlatform::edit = EditVariable;
    matlab.SetVariable("x", DoubleValue({1, 1}, {5}));
    matlab.failPutVariable = true;
    EXPECT_EQ(ErrorOf(0, {TextValue(u"x"), DoubleValue({0, 0}, {})}),
              "quillmoor_vantrel:SystemError|System Error");
    EXPECT_VALUE(*matlab.Variable("x"), DoubleValue({1, 1}, {5}));
}

TEST_F(MatlabEntry, EveryFailingCreationOfMatlabsEndsInAnErrorAndBalancedBooks)
{
    matlab.SetVariable("x", CellValue({1, 2}, {TextValue(u"a"), TextValue(u"b")}));
    for (const bool byName : {false, true}) {
        if (byName)
            MatlabPlatform::edit = EditVariable;
        else
            MatlabPlatform::edit = SaveOnce;
        std::vector<MatlabValue> arguments{CellValue({1, 2}, {TextValue(u"a"), TextValue(u"b")})};
        if (byName) arguments = {TextValue(u"x"), DoubleValue({0, 0}, {})};
        std::int64_t nth = 1;
        for (;; ++nth) {
            matlab.FailCreation(nth);
            const std::string error = ErrorOf(0, arguments);
            if (matlab.FailedCreations() == 0) break;
            EXPECT_TRUE(error == "quillmoor_vantrel:OutOfMemory|Out of memory" ||
                        error == "quillmoor_vantrel:ValueError|Value Error")
                << nth << error;
            ASSERT_LT(nth, 50);
        }
        EXPECT_GT(nth, 3);
        matlab.FailCreation(0);
    }
}

} // namespace
} // namespace vantrel::matlab
