// One call of MATLAB, from its entry to its return.
#include <utility>

#include "entry/trace.h"
#include "hosts/clipboard.h"
#include "hosts/local_primitives.h"
#include "hosts/matlab_host.h"

namespace vantrel::matlab {
namespace {

constexpr char16_t ValidNameCharacters[] = u"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_";
constexpr char16_t LeadingForbiddenCharacters[] = u"0123456789_";
constexpr char16_t MatlabHelpFile[] = u"vantrelm.chm";
constexpr std::int64_t LongestMatlabAxis = 281474976710656; // 2 to the 48th
constexpr std::int64_t NoLimit = 9223372036854775807;
// Bit 2 included, which the environment keeps for the view.
constexpr std::uint8_t MatlabCapabilities = 0x2E;
constexpr std::uint8_t MatlabViewCapabilities = 0x2B;
constexpr std::uint16_t MatlabAccelerators = 105;

constexpr char16_t MessageInitialization[] = u"Vantrel initialization failed.";
constexpr char16_t MessageOneResult[] = u"The Vantrel produces one result.";
constexpr char16_t MessageNoResult[] = u"The Vantrel produces no result when called with a variable name.";
constexpr char16_t MessageNotEmpty[] = u"The Vantrel second argument, if present, must be empty.";
constexpr char16_t MessageArguments[] = u"The Vantrel accepts one or two arguments.";

// MATLAB has no interrupt that a running function could ask for, and shares no variables.
std::int32_t CheckForInterrupt(EditContext*)
{
    return 0;
}

std::int32_t GetCoupling(EditContext*, HostObject)
{
    return 0;
}

constexpr HostOperations MatlabOperations = {
    CallLocalPrimitive, // MATLAB computes none of them
    CheckForInterrupt,
    CanPasteFromClipboard,
    ClipboardToScdr,
    FreeObject,
    GetIntSysVar,
    nullptr, // help is beside the library
    Graphics,
    ObjectToScdr,
    ScdrToClipboard,
    ScdrToObject,
    SignalHostError,
    SetResult,
    Assign,
    GetCoupling,
    GetNameClass,
    GetValue,
    UnicodeToObject,
};

struct Arguments {
    int nlhs;
    MxArray** plhs;
    int nrhs;
    const MxArray** prhs;
    [[nodiscard]] bool ByName() const noexcept { return nrhs == 2; }
};

// What is wrong with the call, or null.
const char16_t* RefusalOf(const MatlabHost& host, const Arguments& call)
{
    if (call.nrhs == 1) return call.nlhs >= 2 ? MessageOneResult : nullptr;
    if (call.nrhs != 2) return MessageArguments;
    if (call.nlhs != 0) return MessageNoResult;
    return host.functions.mxIsEmpty(call.prhs[1]) ? nullptr : MessageNotEmpty;
}

// Keeps the environment for a call, and what an edit that this one interrupts has in it.
class EnvironmentUse {
public:
    explicit EnvironmentUse(MatlabHost& host)
        : host_(host), errorCode_(host.langEnv.ErrorCode), capabilities_(host.langEnv.Capabilities),
          ready_(CreateLangEnv(host))
    {
    }
    ~EnvironmentUse()
    {
        DestroyLangEnv(host_);
        if (host_.users == 0) return;
        host_.langEnv.ErrorCode = errorCode_;
        host_.langEnv.Capabilities = capabilities_;
    }
    EnvironmentUse(const EnvironmentUse&) = delete;
    EnvironmentUse& operator=(const EnvironmentUse&) = delete;
    [[nodiscard]] bool IsReady() const noexcept { return ready_; }

private:
    MatlabHost& host_;
    VTERROR_CODE errorCode_;
    std::uint8_t capabilities_;
    bool ready_;
};

// A plot that failed is an error of a run in which nothing was saved, as a save is, and the lesser one.
VTERROR_CODE FailureToRaise(const MatlabHost& host, const EditContext& context) noexcept
{
    return context.saved || context.failure != VTERROR_CODE::NoError ? context.failure : host.plotFailure;
}

void RunEdit(MatlabHost& host, const Arguments& call)
{
    const EnvironmentUse environment(host);
    if (!environment.IsReady()) {
        SetHostError(host, IdentifierSystem, MessageInitialization);
        return;
    }
    EditContext context;
    context.langEnv = &host.langEnv;
    context.host = static_cast<Host*>(&host);
    ClearHostMessage(host);
    host.plotFailure = VTERROR_CODE::NoError;
    // The editor only looks at its argument.
    auto* argument = const_cast<MxArray*>(call.prhs[0]);
    auto* result = static_cast<MxArray*>(host.platform->editObject(&context, argument, call.ByName()));
    if (host.identifier == nullptr) SignalHostError(&context, FailureToRaise(host, context));
    if (result != nullptr)
        call.plhs[0] = result;
    else if (!call.ByName() && host.identifier == nullptr)
        call.plhs[0] = host.functions.mxDuplicateArray(argument);
    ClearHostMessage(host);
}

void RunCall(MatlabHost& host, FindFunction find, void* state, const Arguments& call)
{
    TraceScope trace("matlab_entry.cpp", "MatLabEditArray");
    host.identifier = nullptr;
    if (!host.functionsFound) host.functionsFound = FillFunctions(host.functions, find, state);
    if (!host.functionsFound) {
        SetHostError(host, IdentifierSystem, MessageInitialization);
    } else if (const char16_t* refusal = RefusalOf(host, call)) {
        SetHostError(host, IdentifierLength, refusal);
    } else {
        RunEdit(host, call);
    }
}

} // namespace

MatlabHost& TheMatlabHost() noexcept
{
    static MatlabHost host;
    return host;
}

bool CreateLangEnv(MatlabHost& host)
{
    TraceScope trace("matlab_entry.cpp", "CreateLangEnv");
    if (host.users == 0) {
        LangEnv& environment = host.langEnv;
        environment = {};
        environment.DialectKind = Dialect::Matlab;
        environment.Operations = MatlabOperations;
        environment.ValidNameCharacters = ValidNameCharacters;
        environment.LeadingForbiddenCharacters = LeadingForbiddenCharacters;
        environment.LongestName = 63;
        environment.LongestAxis = LongestMatlabAxis;
        environment.HighestRank = LongestMatlabAxis;
        environment.MostElements = NoLimit;
        environment.AcceleratorId = MatlabAccelerators;
        environment.HelpFile = MatlabHelpFile;
        environment.Capabilities = MatlabCapabilities;
        environment.ViewCapabilities = MatlabViewCapabilities;
    }
    return AcquireEditor(host);
}

void DestroyLangEnv(MatlabHost& host) noexcept
{
    TraceScope trace("matlab_entry.cpp", "DestroyLangEnv");
    ReleaseEditor(host);
}

void MatLabEditArray(MatlabHost& host, FindFunction find, void* state, int nlhs, MxArray** plhs, int nrhs,
                     const MxArray** prhs)
{
    RunCall(host, find, state, {nlhs, plhs, nrhs, prhs});
    // From here on nothing may have to be cleaned up.
    const char* identifier = std::exchange(host.identifier, nullptr);
    if (identifier == nullptr || host.functions.mexErrMsgIdAndTxt == nullptr) return;
    host.functions.mexErrMsgIdAndTxt(identifier, host.errorText);
}

} // namespace vantrel::matlab
