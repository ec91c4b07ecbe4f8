// The MATLAB adapter: the record of its state and the routines that work on it.
//
// MATLAB calls on its own thread; a call from inside an edit (by a plot's callback) shares the record, which serves the process. Operations find it
// through the edit context's `host`. Unless a comment says otherwise a routine stores its failure in `ErrorCode` and returns null, false or 0;
// none lets an exception of ours out but those marked "throws". MATLAB's own functions may leave by an exception of theirs.
#pragma once

#include <cstdint>
#include <string>

#include "hosts/host.h"
#include "hosts/matlab_functions.h"
#include "model/scdr.h"

namespace vantrel::matlab {

inline constexpr std::int64_t ClassMessageSize = 1024;
inline constexpr std::int64_t ErrorTextSize = 4096;

struct MatlabHost : Host {
    MatlabFunctions functions;
    bool functionsFound = false;
    char16_t classMessage[ClassMessageSize] = {}; // names a class that is refused

    VTERROR_CODE plotFailure = VTERROR_CODE::NoError; // of the last plot

    // The error that the call will end with; no identifier: none. The text is a printf format.
    const char* identifier = nullptr;
    char errorText[ErrorTextSize] = {};
};

// The process's adapter.
[[nodiscard]] MatlabHost& TheMatlabHost() noexcept;
[[nodiscard]] inline MatlabHost& HostOf(const EditContext* context) noexcept
{
    return static_cast<MatlabHost&>(AnyHostOf(context));
}

// --- the entry; portable behind the export ---
// One call of MATLAB's: an edit of an array, or of the variable that the first of two arguments names. Ends through mexErrMsgIdAndTxt where
// there is an error. `find` looks MATLAB's functions up when they are not known yet.
void MatLabEditArray(MatlabHost& host, FindFunction find, void* state, int nlhs, MxArray** plhs, int nrhs,
                     const MxArray** prhs);

// --- setting up ---
// The first user fills the environment and registers the windows; false where that failed. Every call needs its DestroyLangEnv.
bool CreateLangEnv(MatlabHost& host);
void DestroyLangEnv(MatlabHost& host) noexcept;

// --- failures ---
inline constexpr char16_t MessageSparse[] = u"Array is sparse";
inline constexpr char16_t MessageUnknownClass[] = u"Array contains data of an unknown class";
inline constexpr char16_t MessageReservedClass[] = u"Array contains reserved class";
inline constexpr char16_t MessageUnsigned64[] = u"Array contains an unsigned 64 bit integer";
inline constexpr char16_t MessageFunctionHandle[] = u"Array contains a function handle";
inline constexpr char16_t MessageOpaque[] = u"Array contains opaque data";
inline constexpr char16_t MessageObject[] = u"Array contains an object";
inline constexpr char16_t MessageNan[] = u"Array contains a NAN value";
inline constexpr char16_t MessageInfinite[] = u"Array contains an infinite value";

inline constexpr char IdentifierLength[] = "quillmoor_vantrel:LengthError";
inline constexpr char IdentifierSystem[] = "quillmoor_vantrel:SystemError";

// Sets the error that the call will end with.
void SetHostError(MatlabHost& host, const char* identifier, const char16_t* text) noexcept;
void SignalHostError(EditContext* context, VTERROR_CODE code);

// --- arrays of MATLAB ---
void FreeObject(EditContext* context, HostObject array);
Scdr* ObjectToScdr(EditContext* context, HostObject array);
// A field's name as a character vector, marked as such. Throws.
[[nodiscard]] ScdrPtr FieldNameToScdr(EditContext* context, Scdr* parent, const char* name);
// A structure as ObjectToScdr makes it, whatever has become of it since. What carries the mark but is none is written as cells.
[[nodiscard]] bool IsStructure(const Scdr& scdr) noexcept;
// The bytes that a field's name is written as. Throws.
using FieldName = std::basic_string<char, std::char_traits<char>, GatedAllocator<char>>;
[[nodiscard]] FieldName FieldNameOf(const Scdr& name);

// What a node is written as; greater numeric ones hold all that lesser ones do, but for doubles. Nothing: cannot be written.
enum MatlabType : std::uint8_t {
    MatlabNothing = 0,
    MatlabCells = 1,
    MatlabChar = 2,
    MatlabLogical = 3,
    MatlabDouble = 4,
    MatlabInt32 = 5,
    MatlabInt64 = 6,
    MatlabComplex = 7,
};
// The types of an array's nodes in the order in which they are written (a node before its children, those in MATLAB's order).
using DialectTypes = Vector<std::uint8_t>;
bool SetDialectType(EditContext* context, const Scdr* scdr, DialectTypes& types);
// Bytes that MATLAB says it has for an array; 0 where it does not say.
[[nodiscard]] std::uint64_t GetAvailableMemory(EditContext* context);
// Takes what the arrays need from `budget`; more than there is fails with WsFull.
[[nodiscard]] MxArray* ScdrToObjectTypeSet(EditContext* context, const Scdr* scdr, const DialectTypes& types,
                                           std::uint64_t& budget);
HostObject ScdrToObject(EditContext* context, const Scdr* scdr);
HostObject UnicodeToObject(EditContext* context, const char16_t* text, std::int64_t length);

// --- the other operations ---
std::int64_t GetIntSysVar(EditContext* context, const char16_t* name, std::int64_t defaultValue);
std::int32_t SetResult(EditContext* context, const Scdr* scdr);
void Assign(EditContext* context, HostObject name, HostObject value);
std::int32_t GetNameClass(EditContext* context, HostObject name, char16_t* wideName);
HostObject GetValue(EditContext* context, HostObject name);
Scdr* ClipboardToScdr(EditContext* context, WindowHandle owner);
std::int32_t ScdrToClipboard(EditContext* context, WindowHandle owner, const Scdr* scdr);
// Draws a numeric array, of one with planes the plane on show, with the MATLAB function of the plot's command.
void Graphics(EditContext* context, const Scdr* scdr, std::int32_t command);

} // namespace vantrel::matlab
