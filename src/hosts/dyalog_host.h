// The Dyalog adapter: the record of its state and the routines that work on it.
//
// One entry runs at a time, on the interpreter's thread, so one record serves the process. Operations find it through
// the edit context's `host`. Unless a comment says otherwise a routine stores its failure in `ErrorCode` and returns null, false
// or 0; nothing here lets an exception out but the routines marked "throws".
#pragma once

#include <cstdint>

#include "hosts/dyalog_services.h"
#include "hosts/host.h"
#include "model/scdr.h"

namespace vantrel {

inline constexpr std::int64_t LibraryPathSize = 260;
inline constexpr std::int64_t OwnMessageSize = 128;

struct DyalogHost : Host {
    const std::int64_t* table = nullptr; // the interpreter's; null until it has introduced itself
    bool unicode = false;

    // The call that runs now.
    DyalogBlock** resultSlot = nullptr; // where the interpreter expects the result, or null
    bool resultStored = false;          // a save has put its array there
    bool running = false;               // a call of the interpreter is under way
    ErrorBlock errorBlock;

    // The message for a Classic edition, in its own bytes: what it gave itself, or a text of ours.
    OwnedArray<char> interpreterMessageAnsi;
    char ownMessageAnsi[OwnMessageSize] = {};

    // Position in the atomic vector to UTF-16, and which UTF-16 units occur in it (not 0).
    char16_t atomicVector[256] = {};
    std::uint32_t atomicMembers[65536] = {};

    // The folder of the help files; asked once a process.
    bool libraryPathKnown = false;
    char16_t libraryPath[LibraryPathSize + 1] = {};
};

// The process's adapter.
[[nodiscard]] DyalogHost& TheDyalogHost() noexcept;
[[nodiscard]] inline DyalogHost& HostOf(const EditContext* context) noexcept
{
    return static_cast<DyalogHost&>(AnyHostOf(context));
}
template <typename Function>
[[nodiscard]] Function ServiceOf(const DyalogHost& host, DyalogService<Function> service) noexcept
{
    return ServiceOf(host.table, service);
}

// --- entries; portable behind the exports ---
// Keeps the table, even one of refused size; 16 when it is too small, else 0. Null changes nothing.
std::int64_t SetInterpreterTable(DyalogHost& host, const std::int64_t* table) noexcept;
// One edit from the interpreter's call to its return. Result and error travel through the slot and the error block.
void ExternalFunction(DyalogHost& host, Localp* argument, DyalogBlock** resultSlot,
                      const char16_t* title) noexcept;

// --- setting up ---
// Both tables, for the edition.
void BuildAtomicVector(DyalogHost& host) noexcept;
void CreateLangEnv(DyalogHost& host, const char16_t* title) noexcept;
void DestroyLangEnv(DyalogHost& host) noexcept;

// --- failures ---
// Texts of our own; all ASCII, because a Classic edition gets them byte by byte.
inline constexpr char16_t MessageRank[] = u"Argument contains data with rank that is too high";
inline constexpr char16_t MessageClass[] = u"Argument contained data that is neither simple or nested.";
inline constexpr char16_t MessageRational[] = u"Argument contains a rational number.";
inline constexpr char16_t MessageType[] = u"Argument contained an unsupported type of data";
inline constexpr char16_t MessageCodePoint[] =
    u"Argument contains a character that cannot be represented using a single UTF-16 code unit.";
inline constexpr char16_t MessageWindows[] = u"Initialize of Windows environment failed";
inline constexpr char16_t MessageSevere[] = u"The Vantrel encountered a severe error";
inline constexpr char16_t MessageInterrupt[] = u"User signaled interrupt";
inline constexpr char16_t MessageStorage[] = u"Allocation of storage failed";

// The error block of a call that has not failed yet.
void PrepareErrorBlock(DyalogHost& host) noexcept;
// Forgets the message, the interpreter's bytes of it included.
void ClearDyalogMessage(DyalogHost& host) noexcept;
// Fills the error block; it reaches the interpreter at the end of the entry.
void SignalHostError(EditContext* context, VTERROR_CODE code);
// An interpreter's status becomes `ErrorCode`, and its text the message; true for status 0 only.
bool CheckDyalogCallbackResult(EditContext* context, std::int64_t status);

// --- arrays of the interpreter ---
// A registered localp that holds nothing; FreeObject gives it back. Throws OutOfMemory.
[[nodiscard]] Localp* LocalpAllocate(const DyalogHost& host);
void FreeObject(EditContext* context, HostObject localp);
// A localp that is given back on every path.
class OwnedLocalp {
public:
    OwnedLocalp(EditContext* context, HostObject localp)
        : context_(context), localp_(static_cast<Localp*>(localp))
    {
    }
    ~OwnedLocalp() { FreeObject(context_, localp_); }
    OwnedLocalp(const OwnedLocalp&) = delete;
    OwnedLocalp& operator=(const OwnedLocalp&) = delete;
    [[nodiscard]] Localp* get() const noexcept { return localp_; }

private:
    EditContext* context_;
    Localp* localp_;
};
// A new block held by `localp`, its items not set. Null when the interpreter refuses.
[[nodiscard]] DyalogBlock* ArraySpace(EditContext* context, std::uint32_t elementType, std::int32_t rank,
                                      const std::int64_t* shape, Localp* localp);
// Puts a block into a result slot in place of what it holds.
enum class EmptySlot { LeaveAlone, Release }; // whether the interpreter hears of a slot that holds nothing
void StoreResult(const DyalogHost& host, DyalogBlock** slot, DyalogBlock* block, EmptySlot empty) noexcept;

Scdr* ObjectToScdr(EditContext* context, HostObject localp);

// The element types that an array's nodes will be stored as, in the order in which the nodes are written (a node before
// its children). Known for the whole array before the interpreter is asked for any memory.
using DialectTypes = Vector<std::uint8_t>;
bool SetDialectType(EditContext* context, const Scdr* scdr, DialectTypes& types);
[[nodiscard]] Localp* ScdrToObjectTypeSet(EditContext* context, const Scdr* scdr, const DialectTypes& types);
// Writes a simple node's items as `dialectType` into a block's data.
bool WriteItems(EditContext* context, const Scdr& scdr, std::uint32_t dialectType, void* items);
HostObject ScdrToObject(EditContext* context, const Scdr* scdr);
HostObject UnicodeToObject(EditContext* context, const char16_t* text, std::int64_t length);

// --- the other operations ---
Scdr* CallPrimitiveReturningScdr(EditContext* context, std::int32_t primitive, const Scdr* argument,
                                 const Scdr* leftArgument);
// --- the clipboard: the interpreter's own copy buffer beside the system's ---
std::int32_t ClipboardCanPaste(EditContext* context);
Scdr* ClipboardToScdr(EditContext* context, WindowHandle owner);
std::int32_t ScdrToClipboard(EditContext* context, WindowHandle owner, const Scdr* scdr);

std::int32_t CheckForInterrupt(EditContext* context);
std::int64_t GetIntSysVar(EditContext* context, const char16_t* name, std::int64_t defaultValue);
const char16_t* GetLibraryPath(EditContext* context);
std::int32_t SetResult(EditContext* context, const Scdr* scdr);

} // namespace vantrel
