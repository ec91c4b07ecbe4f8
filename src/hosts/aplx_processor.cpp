// The auxiliary processor: its instances, and the four operations of its protocol.
#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "entry/trace.h"
#include "hosts/aplx_characters.h"
#include "hosts/aplx_host.h"
#include "hosts/clipboard.h"
#include "model/ccdr_layout.h"

namespace vantrel::aplx {
namespace {

constexpr char16_t ValidNameCharacters[] =
    u"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz∆⍙_¯";
constexpr char16_t LeadingForbiddenCharacters[] = u"0123456789_¯";
constexpr std::int32_t LongestName = 30;
constexpr std::int64_t HighestRank = 63;
constexpr std::int64_t NoLimit = 9223372036854775807;
constexpr std::uint16_t AplxAccelerators = 103;
constexpr std::uint8_t AplxViewCapabilities = 0x38;

constexpr HostOperations Operations = {
    CallPrimitiveReturningScdr,
    CheckForInterrupt,
    CanPasteFromClipboard,
    ReadClipboard,
    FreeObject,
    GetIntSysVar,
    nullptr, // no help folder of the interpreter's
    nullptr, // the interpreter draws its own graphics
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

// Of several instances with one identifier the oldest answers. One that was closed during its edit does not.
Instance** FindLink(AplxHost& host, std::int64_t identifier) noexcept
{
    Instance** link = &host.instances;
    while (*link != nullptr && ((*link)->identifier != identifier || (*link)->closed))
        link = &(*link)->next;
    return link;
}

void AddInstance(AplxHost& host, std::int64_t identifier)
{
    Instance** end = &host.instances;
    while (*end != nullptr)
        end = &(*end)->next;
    auto* instance = new (AllocateBytes(sizeof(Instance))) Instance{};
    instance->identifier = identifier;
    instance->langEnv = &host.langEnv;
    *end = instance;
}

void RemoveInstance(AplxHost& host, Instance** link) noexcept
{
    Instance* instance = std::exchange(*link, (*link)->next);
    instance->~Instance();
    FreeBytes(instance);
    DestroyLangEnv(host);
}

std::int32_t Open(AplxHost& host, std::int64_t identifier)
{
    TraceScope trace("aplx_processor.cpp", "Open");
    if (host.users == 0) CreateLangEnv(host);
    if (!AcquireEditor(host)) {
        DestroyLangEnv(host);
        return StatusNoResult;
    }
    try {
        AddInstance(host, identifier);
        return StatusSuccess;
    } catch (VTERROR_CODE) {
        DestroyLangEnv(host);
        return StatusNoRoom;
    }
}

std::int32_t Close(AplxHost& host, std::int64_t identifier) noexcept
{
    TraceScope trace("aplx_processor.cpp", "Close");
    Instance** link = FindLink(host, identifier);
    if (*link == nullptr) return StatusSuccess;
    if (*link == host.running)
        (*link)->closed = true; // its edit still works on it
    else
        RemoveInstance(host, link);
    return StatusSuccess;
}

// Reads a byte of every page. Of a record that is shorter than it says, the fault comes here, from a plain load, which the platform's guard can
// turn into an exception; a fault inside the system's copy routine it cannot.
void TouchPages(const std::uint8_t* bytes, std::int64_t count)
{
    constexpr std::int64_t PageSize = 4096;
    const volatile std::uint8_t* at = bytes;
    for (std::int64_t i = 0; i < count; i += PageSize)
        static_cast<void>(at[i]);
    static_cast<void>(at[count - 1]);
}

// A record shorter than a header gets the rest of one, so that it can be looked at and refused.
RecordBytes CopyRecord(const std::uint8_t* record)
{
    const auto length = LoadNumber<std::int64_t>(record + RecordLengthAt);
    if (length < 0) throw VTERROR_CODE::OutOfMemory;
    if (length < RecordHeaderSize) {
        RecordBytes copy = AllocateZeroedArray<std::uint8_t>(RecordHeaderSize);
        std::memcpy(copy.get(), record, static_cast<std::size_t>(length));
        return copy;
    }
    RecordBytes copy = AllocateArray<std::uint8_t>(length);
    TouchPages(record, length);
    std::memcpy(copy.get(), record, static_cast<std::size_t>(length));
    return copy;
}

std::int32_t AssignRecord(AplxHost& host, std::int64_t identifier, const std::uint8_t* record)
{
    TraceScope trace("aplx_processor.cpp", "AssignRecord");
    Instance* instance = *FindLink(host, identifier);
    if (instance == nullptr || record == nullptr) return StatusNoResult;
    try {
        instance->assigned = CopyRecord(record);
        return StatusSuccess;
    } catch (...) {
        return StatusNoRoom; // or a record that is shorter than it says
    }
}

std::int32_t Deliver(const Instance& instance, const void* record) noexcept
{
    const auto length = LoadNumber<std::int64_t>(static_cast<const std::uint8_t*>(record) + RecordLengthAt);
    if (instance.buffer == nullptr || length > instance.bufferSize) return StatusTooLong;
    std::memcpy(instance.buffer, record, static_cast<std::size_t>(length));
    return StatusSuccess;
}

// What a variable that nobody has assigned is worth.
std::int32_t DeliverZero(EditContext* context, const Instance& instance)
{
    try {
        const ScdrPtr zero = AllocateScdr(context, nullptr, TypeInteger, 0, nullptr, true);
        HostObject record = ScdrToObject(context, zero.get());
        if (record != nullptr) return Deliver(instance, record);
        return context->langEnv->ErrorCode == VTERROR_CODE::OutOfMemory ? StatusNoRoom : StatusNoResult;
    } catch (VTERROR_CODE) {
        return StatusNoRoom;
    }
}

bool WasCancelled(const EditContext* context) noexcept
{
    return HasError(context) || (context->langEnv->Capabilities & CapabilityInterruptOrClose) != 0;
}

// Closed without a save the assigned array is the result. A record assigned meanwhile waits for the next reference.
std::int32_t EditAssigned(EditContext* context, const HostPlatform& platform, Instance& instance)
{
    RecordBytes edited = std::move(instance.assigned);
    const HostObject saved = platform.editObject(context, edited.get(), false);
    std::int32_t status = StatusSuccess;
    if (!WasCancelled(context)) status = Deliver(instance, saved != nullptr ? saved : edited.get());
    if (instance.assigned == nullptr) instance.assigned = std::move(edited);
    return status;
}

void EndReference(AplxHost& host) noexcept
{
    Instance* instance = std::exchange(host.running, nullptr);
    ClearHostMessage(host);
    if (!instance->closed) return;
    Instance** link = &host.instances;
    while (*link != instance)
        link = &(*link)->next;
    RemoveInstance(host, link);
}

std::int32_t Reference(AplxHost& host, const ProcessorCall& call)
{
    TraceScope trace("aplx_processor.cpp", "Reference");
    Instance* instance = *FindLink(host, call.identifier);
    // The environment serves one edit at a time; an interpreter that calls from inside one gets nothing.
    if (instance == nullptr || host.running != nullptr) return StatusNoResult;
    instance->buffer = reinterpret_cast<std::uint8_t*>(call.data);
    instance->bufferSize = call.fourth;
    const std::int64_t words[] = {call.third, call.fifth, call.sixth, call.eighth};
    std::copy(std::begin(words), std::end(words), instance->callerWords);
    instance->status = StatusSuccess;
    instance->result.reset();
    host.running = instance;
    ClearHostMessage(host);
    host.langEnv.ErrorCode = VTERROR_CODE::NoError;
    EditContext context;
    context.langEnv = &host.langEnv;
    context.host = static_cast<Host*>(&host);
    instance->status = instance->assigned == nullptr ? DeliverZero(&context, *instance)
                                                     : EditAssigned(&context, *host.platform, *instance);
    const std::int32_t status = instance->status;
    EndReference(host);
    return status;
}

} // namespace

AplxHost& TheAplxHost() noexcept
{
    static AplxHost host;
    return host;
}

void CreateLangEnv(AplxHost& host) noexcept
{
    TraceScope trace("aplx_processor.cpp", "CreateLangEnv");
    host.langEnv = {};
    host.langEnv.DialectKind = Dialect::Aplx;
    host.langEnv.Operations = Operations;
    host.langEnv.ValidNameCharacters = ValidNameCharacters;
    host.langEnv.LeadingForbiddenCharacters = LeadingForbiddenCharacters;
    host.langEnv.CharacterTable = CharacterTable;
    host.langEnv.LongestName = LongestName;
    host.langEnv.LongestAxis = NoLimit;
    host.langEnv.HighestRank = HighestRank;
    host.langEnv.MostElements = NoLimit;
    host.langEnv.AcceleratorId = AplxAccelerators;
    host.langEnv.ViewCapabilities = AplxViewCapabilities;
}

void DestroyLangEnv(AplxHost& host) noexcept
{
    TraceScope trace("aplx_processor.cpp", "DestroyLangEnv");
    ReleaseEditor(host);
}

std::int64_t Process(AplxHost& host, const ProcessorCall& call) noexcept
{
    TraceScope trace("aplx_processor.cpp", "Process");
    switch (call.operation) {
    case OperationOpen: return Open(host, call.identifier);
    case OperationClose: return Close(host, call.identifier);
    case OperationAssign:
        return AssignRecord(host, call.identifier, reinterpret_cast<const std::uint8_t*>(call.data));
    case OperationReference: return Reference(host, call);
    default: return StatusSuccess;
    }
}

} // namespace vantrel::aplx
