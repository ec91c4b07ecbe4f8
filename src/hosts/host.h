// What every host adapter has: its language environment, its message slot, and the table of what it needs of the platform.
//
// An adapter's own record derives from `Host`; the edit context of a call points at it through `EditContext::host`, always as a `Host*`.
#pragma once

#include <cstdint>

#include "entry/edit_context.h"
#include "entry/memory.h"

namespace vantrel {

enum class ClipboardFormat : std::int32_t { None, Ccdr, UnicodeText, AplxArray };

// A block of global memory on its way to the clipboard.
struct ClipboardBlock {
    void* handle = nullptr;
    void* data = nullptr; // null: there was no memory
};

// The system's clipboard. Portable code asks it; hosts/win answers, and tests have a double.
struct ClipboardPlatform {
    // The best of Ccdr and Text on the clipboard, in this order. Needs no open clipboard.
    ClipboardFormat (*bestFormat)();
    bool (*open)(WindowHandle owner); // false while another program has it
    bool (*empty)();
    void (*close)();
    // The data of a format while the clipboard is open, and the real size of its block; null when there is none.
    const void* (*lock)(ClipboardFormat format, std::int64_t* size);
    void (*unlock)(ClipboardFormat format);
    // A zero-filled block. It is handed over with `put` (which frees it where the clipboard refuses it) or given back.
    ClipboardBlock (*allocate)(std::int64_t size);
    bool (*put)(ClipboardFormat format, ClipboardBlock block);
    void (*release)(ClipboardBlock block);
};

// What adapters need of the platform and of the editor itself. Tests fill it with doubles.
struct HostPlatform {
    // 8-bit text of the system's code page to UTF-16; returns the units. With a null buffer it only counts them.
    std::int32_t (*widenAnsi)(const char* text, std::int32_t length, char16_t* buffer, std::int32_t capacity);
    // The clipboard formats and the window classes; false at the first failure.
    bool (*registerWindows)();
    void (*unregisterWindows)();
    HostObject (*editObject)(EditContext* context, HostObject object, bool byName);
    void (*traceStarting)(long line);
    ClipboardPlatform clipboard;
    // The trace viewer's line for a message; null where nobody reads it.
    void (*traceMessage)(long line, const char16_t* message) = nullptr;
};

struct Host {
    const HostPlatform* platform = nullptr;
    LangEnv langEnv = {};
    std::int32_t users = 0; // calls or instances between AcquireEditor and ReleaseEditor

    // The message of the last failure, with the code that it explains. Private to the routines below.
    VTERROR_CODE messageCode = VTERROR_CODE::NoError;
    const char16_t* message = nullptr; // null: none
    OwnedArray<char16_t> ownedMessage; // where `message` is not a static text
};

[[nodiscard]] inline Host& AnyHostOf(const EditContext* context) noexcept
{
    return *static_cast<Host*>(context->host);
}

// Registers formats and window classes for the first user; counts the others. False where a registration failed: the caller
// counts as a user all the same.
[[nodiscard]] bool AcquireEditor(Host& host);
// The last user unregisters the classes and frees the environment's pending buffer.
void ReleaseEditor(Host& host) noexcept;

// Sets the message that explains `code`: a static text, or one that the slot owns from now on.
void SetHostMessage(Host& host, VTERROR_CODE code, const char16_t* text) noexcept;
void SetOwnedHostMessage(Host& host, VTERROR_CODE code, OwnedArray<char16_t> text) noexcept;
void ClearHostMessage(Host& host) noexcept;
// The message set for this code, else null: it explains the failure that it was set for, not a later one of another kind.
[[nodiscard]] const char16_t* HostMessageFor(const Host& host, VTERROR_CODE code) noexcept;

// What an interpreter does not offer: sets NonceError.
template <typename Result, typename... Arguments> Result NotSupported(EditContext* context, Arguments...)
{
    SetErrorCode(context, VTERROR_CODE::NonceError);
    return Result();
}

} // namespace vantrel
