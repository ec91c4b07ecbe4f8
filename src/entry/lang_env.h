// The language environment: everything the editor knows of the interpreter that it serves.
//
// Each host adapter fills one static `LangEnv` on its first use. Nothing outside `hosts/` asks which interpreter runs;
// it calls an operation, reads a limit or tests a capability. The order of the members is part of the contract.
#pragma once

#include <cstdint>

#include "entry/error.h"

struct HWND__;

namespace vantrel {

struct EditContext;
struct Scdr;

using WindowHandle = HWND__*;
// An array of the interpreter, as its adapter holds it (Dyalog: a localp). Opaque everywhere else.
using HostObject = void*;

enum class Dialect : std::int32_t { Apl2 = 0, Aplx = 1, Dyalog = 2, Matlab = 3 };

// The host operations. Each receives the edit context first. An operation that fails sets `ErrorCode` and returns null or
// 0. `GetLibraryPath` and `Graphics` may be null entries: callers test them.
struct HostOperations {
    Scdr* (*CallPrimitiveReturningScdr)(EditContext*, std::int32_t primitive, const Scdr* argument,
                                        const Scdr* leftArgument);
    std::int32_t (*CheckForInterrupt)(EditContext*);
    std::int32_t (*ClipboardCanPaste)(EditContext*);
    Scdr* (*ClipboardToScdr)(EditContext*, WindowHandle owner);
    void (*FreeObject)(EditContext*, HostObject);
    std::int64_t (*GetIntSysVar)(EditContext*, const char16_t* name, std::int64_t defaultValue);
    const char16_t* (*GetLibraryPath)(EditContext*);
    void (*Graphics)(EditContext*, const Scdr*, std::int32_t plotKind);
    Scdr* (*ObjectToScdr)(EditContext*, HostObject);
    std::int32_t (*ScdrToClipboard)(EditContext*, WindowHandle owner, const Scdr*);
    HostObject (*ScdrToObject)(EditContext*, const Scdr*);
    void (*SignalHostError)(EditContext*, VTERROR_CODE);
    std::int32_t (*SetResult)(EditContext*, const Scdr*); // 0 = the array is now the call's result
    void (*Assign)(EditContext*, HostObject name, HostObject value);
    std::int32_t (*GetCoupling)(EditContext*, HostObject name);
    std::int32_t (*GetNameClass)(EditContext*, HostObject name, char16_t* wideName);
    HostObject (*GetValue)(EditContext*, HostObject name);
    HostObject (*UnicodeToObject)(EditContext*, const char16_t* text, std::int64_t length);
};

// Bits of `LangEnv::Capabilities`.
enum Capability : std::uint8_t {
    CapabilityInterruptOrClose =
        0x01, // not a capability: set while an interrupt or a close waits to be served
    CapabilityComplex = 0x02,
    CapabilityInteger64 = 0x08,
    CapabilityDecimal = 0x10,
    CapabilityUnicode = 0x20,
};

// Bits of `LangEnv::ViewCapabilities`.
enum ViewCapability : std::uint8_t {
    ViewCapabilityHighMinus = 0x10, // number texts use the APL high minus
};

struct LangEnv {
    std::uint32_t Reserved;
    Dialect DialectKind;
    HostOperations Operations;
    const char16_t* ValidNameCharacters;
    const char16_t* LeadingForbiddenCharacters;
    const char16_t* CharacterTable; // 256 units for a host without Unicode, else null or the host's own table
    const char16_t* SupportAddress; // null = the program's own
    VTERROR_CODE ErrorCode;
    void* PendingBuffer; // freed by DestroyLangEnv when PendingBufferInUse is set
    std::int32_t PendingBufferInUse;
    const char16_t* Title; // null = made by GetArrayTitle
    std::int32_t LongestName;
    std::int64_t LongestAxis;
    std::int64_t HighestRank;
    std::int64_t MostElements;
    std::uint16_t AcceleratorId;
    const char16_t* HelpFile; // null = the default help file
    std::uint8_t Capabilities;
    std::uint8_t ViewCapabilities;
    const char16_t*
        ErrorDetail; // a message more specific than the code's text, owned by the adapter, or null
};

} // namespace vantrel
