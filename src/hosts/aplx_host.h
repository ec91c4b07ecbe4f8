// The APLX adapter: the auxiliary processor's instances, their shared environment, and the operations of the language environment.
//
// The interpreter opens an instance, assigns a record to it, references it (that is the edit) and closes it. All of this is the
// process's and happens on the interpreter's thread. Unless a comment says otherwise an operation stores its failure in `ErrorCode` and
// returns null, false or 0.
#pragma once

#include <cstdint>

#include "hosts/aplx_record.h"
#include "hosts/host.h"
#include "model/scdr.h"

namespace vantrel::aplx {

// What `processor` answers.
enum Status : std::int32_t {
    StatusSuccess = 0,
    StatusTooLong = 4, // the result is longer than the caller's buffer, which is left alone
    StatusNoRoom = 68, // storage could not be allocated
    StatusNoResult =
        100 // no result can be written; the windows' classes cannot be registered; no such instance
};

enum Operation : std::int64_t { OperationOpen = 1, OperationClose, OperationAssign, OperationReference };

// The eight words of a call, in their order.
struct ProcessorCall {
    std::int64_t operation;
    std::int64_t data; // assign: the record's address; reference: the buffer's
    std::int64_t third;
    std::int64_t fourth; // reference: the buffer's bytes
    std::int64_t fifth;
    std::int64_t sixth;
    std::int64_t identifier;
    std::int64_t eighth;
};

using RecordBytes = OwnedArray<std::uint8_t>;

struct Instance {
    Instance* next;
    std::int64_t identifier;
    LangEnv* langEnv;     // shared by all instances
    RecordBytes assigned; // our copy of the last record assigned, or none
    RecordBytes output;   // what ScdrToObject wrote last
    RecordBytes result;   // what was saved last
    // The reference under way, or the last one.
    std::uint8_t* buffer;
    std::int64_t bufferSize;
    std::int64_t callerWords[4]; // the interpreter's own
    std::int32_t status;
    bool closed; // while it was edited; it goes when the edit ends
};

struct AplxHost : Host {
    Instance* instances = nullptr; // in opening order
    Instance* running = nullptr;   // the one whose reference is under way
};

[[nodiscard]] AplxHost& TheAplxHost() noexcept;
[[nodiscard]] inline AplxHost& HostOf(const EditContext* context) noexcept
{
    return static_cast<AplxHost&>(AnyHostOf(context));
}

// The exported entry. Lets no exception out.
std::int64_t Process(AplxHost& host, const ProcessorCall& call) noexcept;

// --- the shared environment ---
void CreateLangEnv(AplxHost& host) noexcept;
// Takes one user away; the last one leaves nothing behind.
void DestroyLangEnv(AplxHost& host) noexcept;

// --- arrays ---
// The whole record is checked before anything is made of it.
Scdr* ObjectToScdr(EditContext* context, HostObject record);

// What a tree's record will be: the type of each node in the order in which nodes are written (a node before its children), and the
// bytes of the whole. Known before there is memory for it.
struct RecordPlan {
    Vector<std::uint8_t> types;
    std::int64_t size = 0;
};
// DomainError for what APLX cannot hold, RankError for too many axes.
bool SetDialectType(EditContext* context, const Scdr& scdr, RecordPlan& plan);
// Writes to `destination`, plan.size bytes at any alignment.
void ScdrToObjectTypeSet(const Scdr& scdr, const RecordPlan& plan, std::uint8_t* destination);
// Into the running instance's output area, where the record stays until the next one.
HostObject ScdrToObject(EditContext* context, const Scdr* scdr);

// --- the other operations ---
Scdr* CallPrimitiveReturningScdr(EditContext* context, std::int32_t primitive, const Scdr* argument,
                                 const Scdr* leftArgument);
std::int32_t CheckForInterrupt(EditContext* context);
void FreeObject(EditContext* context, HostObject object);
std::int64_t GetIntSysVar(EditContext* context, const char16_t* name, std::int64_t defaultValue);
std::int32_t ScdrToClipboard(EditContext* context, WindowHandle owner, const Scdr* scdr);
std::int32_t SetResult(EditContext* context, const Scdr* scdr);
void SignalHostError(EditContext* context, VTERROR_CODE code);
void Assign(EditContext* context, HostObject name, HostObject value);
std::int32_t GetCoupling(EditContext* context, HostObject name);
std::int32_t GetNameClass(EditContext* context, HostObject name, char16_t* wideName);
HostObject GetValue(EditContext* context, HostObject name);
HostObject UnicodeToObject(EditContext* context, const char16_t* text, std::int64_t length);

} // namespace vantrel::aplx
