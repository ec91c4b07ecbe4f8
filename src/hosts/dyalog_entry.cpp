// One call of the interpreter, from its entry to its return.
#include <utility>

#include "entry/product.h"
#include "entry/trace.h"
#include "hosts/dyalog_host.h"

namespace vantrel {
namespace {

constexpr char16_t ValidNameCharacters[] = u"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                           u"ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖØÙÚÛÜÝßàáâãäåæçèéêëìíîïðñòóôõöøùúûüþ"
                                           u"_∆⍙ⒶⒷⒸⒹⒺⒻⒼⒽⒾⒿⓀⓁⓂⓃⓄⓅⓆⓇⓈⓉⓊⓋⓌⓍⓎⓏ";
constexpr char16_t Digits[] = u"0123456789";

constexpr std::int64_t TableTooSmall = 16;
constexpr std::int64_t NoLimit = 9223372036854775807;
// Bits 2, 4 and 7 included, which the environment keeps for the view.
constexpr std::uint8_t DyalogCapabilities = 0x96;
constexpr std::uint8_t DyalogViewCapabilities = 0x30;
constexpr std::uint16_t DyalogAccelerators = 104;

constexpr HostOperations DyalogOperations = {
    CallPrimitiveReturningScdr,
    CheckForInterrupt,
    ClipboardCanPaste,
    ClipboardToScdr,
    FreeObject,
    GetIntSysVar,
    GetLibraryPath,
    nullptr, // the interpreter draws its own graphics
    ObjectToScdr,
    ScdrToClipboard,
    ScdrToObject,
    SignalHostError,
    SetResult,
    NotSupported<void, HostObject, HostObject>,
    NotSupported<std::int32_t, HostObject>,
    NotSupported<std::int32_t, HostObject, char16_t*>,
    NotSupported<HostObject, HostObject>,
    UnicodeToObject,
};

bool HasAcceptableTable(const DyalogHost& host) noexcept
{
    return host.table != nullptr && host.table[0] >= SmallestDyalogTable;
}

bool AskEdition(const DyalogHost& host) noexcept
{
    InformationRecord record;
    ServiceOf(host, dyalog::Information)(&record);
    return record.unicode != 0;
}

void SetLimits(DyalogHost& host) noexcept
{
    LangEnv& environment = host.langEnv;
    environment.LongestName = 255;
    environment.LongestAxis = NoLimit;
    environment.HighestRank = 15;
    environment.MostElements = NoLimit;
    environment.AcceleratorId = DyalogAccelerators;
    environment.Capabilities =
        static_cast<std::uint8_t>(DyalogCapabilities | (host.unicode ? CapabilityUnicode : 0));
    environment.ViewCapabilities = DyalogViewCapabilities;
}

bool HasFailed(const DyalogHost& host) noexcept
{
    return host.errorBlock.errorNumber != 0;
}

bool WasCancelled(const DyalogHost& host) noexcept
{
    return (host.langEnv.Capabilities & CapabilityInterruptOrClose) != 0;
}

void EditArgument(EditContext* context, Localp* argument)
{
    DyalogHost& host = HostOf(context);
    if (!AcquireEditor(host)) {
        SetHostMessage(host, VTERROR_CODE::SystemError, MessageWindows);
        SignalHostError(context, VTERROR_CODE::SystemError);
        return;
    }
    SetLimits(host);
    context->result = host.platform->editObject(context, argument, false);
    if (!HasFailed(host) && context->failure != VTERROR_CODE::NoError)
        SignalHostError(context, context->failure);
}

void StoreArgument(const DyalogHost& host, DyalogBlock** slot, const Localp* argument) noexcept
{
    if (argument == nullptr || argument->block == nullptr) return;
    StoreResult(host, slot, argument->block, EmptySlot::Release);
}

// The interpreter gets what the edit returned, or what a save has already stored, or its own array unchanged. What was
// saved stays saved, whatever went wrong later.
void DeliverResult(EditContext* context, const Localp* argument)
{
    const DyalogHost& host = HostOf(context);
    auto* returned = static_cast<Localp*>(std::exchange(context->result, nullptr));
    if (host.resultSlot != nullptr) {
        if (returned != nullptr) {
            StoreResult(host, host.resultSlot, returned->block, EmptySlot::LeaveAlone);
        } else if (!host.resultStored && !HasFailed(host) && !WasCancelled(host)) {
            StoreArgument(host, host.resultSlot, argument);
        }
    }
    FreeObject(context, returned);
}

void RunEdit(EditContext* context, Localp* argument) noexcept
{
    TraceScope trace("dyalog_entry.cpp", "RunEdit");
    try {
        EditArgument(context, argument);
    } catch (VTERROR_CODE code) {
        SignalHostError(context, code);
    } catch (...) {
        SignalHostError(context, VTERROR_CODE::Exception);
    }
    DeliverResult(context, argument);
}

} // namespace

DyalogHost& TheDyalogHost() noexcept
{
    static DyalogHost host;
    return host;
}

std::int64_t SetInterpreterTable(DyalogHost& host, const std::int64_t* table) noexcept
{
    TraceScope trace("dyalog_entry.cpp", "SetInterpreterTable");
    if (table == nullptr) return 0;
    host.table = table;
    return HasAcceptableTable(host) ? 0 : TableTooSmall;
}

void CreateLangEnv(DyalogHost& host, const char16_t* title) noexcept
{
    TraceScope trace("dyalog_entry.cpp", "CreateLangEnv");
    host.langEnv = {};
    host.langEnv.DialectKind = Dialect::Dyalog;
    host.langEnv.Operations = DyalogOperations;
    host.langEnv.ValidNameCharacters = ValidNameCharacters;
    host.langEnv.LeadingForbiddenCharacters = Digits;
    host.langEnv.CharacterTable = host.atomicVector;
    host.langEnv.SupportAddress = host.unicode ? DyalogSupportAddress : nullptr;
    host.langEnv.Title = title;
}

void DestroyLangEnv(DyalogHost& host) noexcept
{
    TraceScope trace("dyalog_entry.cpp", "DestroyLangEnv");
    ReleaseEditor(host);
}

void ExternalFunction(DyalogHost& host, Localp* argument, DyalogBlock** resultSlot,
                      const char16_t* title) noexcept
{
    TraceScope trace("dyalog_entry.cpp", "ExternalFunction");
    // Without an interpreter there is nobody to answer to.
    if (!HasAcceptableTable(host)) return;
    if (host.running) {
        // The interpreter called again from inside an edit, whose records must not be reset: this array is not edited.
        if (resultSlot != nullptr) StoreArgument(host, resultSlot, argument);
        return;
    }
    host.running = true;
    host.platform->traceStarting(__LINE__);
    host.unicode = AskEdition(host);
    PrepareErrorBlock(host);
    BuildAtomicVector(host);
    CreateLangEnv(host, title);
    host.resultSlot = resultSlot;
    host.resultStored = false;
    EditContext context;
    context.langEnv = &host.langEnv;
    context.host = static_cast<Host*>(&host);
    RunEdit(&context, argument);
    DestroyLangEnv(host);
    if (HasFailed(host)) ServiceOf(host, dyalog::SignalError)(&host.errorBlock);
    ClearDyalogMessage(host);
    host.resultSlot = nullptr;
    host.running = false;
}

} // namespace vantrel
