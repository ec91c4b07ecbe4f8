// The context of one edit: made by the adapter on its stack and passed first to every routine.
#pragma once

#include <cstdint>
#include <string>

#include "entry/lang_env.h"
#include "entry/memory.h"

struct HACCEL__;

namespace vantrel {

// Handlers of the four signals that the editor resets while it runs, and the floating-point control word.
struct SignalState {
    void (*interrupt)(int) = nullptr;
    void (*segmentation)(int) = nullptr;
    void (*terminate)(int) = nullptr;
    void (*breakSignal)(int) = nullptr;
    std::uint32_t floatingPointControl = 0;
};

// The user's commands of this edit, as 8-bit text with lines ended by CR LF.
using CommandLog = std::string;

enum EditContextFlag : std::uint8_t {
    EditContextLoading = 0x02, // the client is loading the array
};

struct EditContext {
    LangEnv* langEnv = nullptr;
    WindowHandle frame = nullptr;
    void* timer = nullptr; // waitable timer, fires every 100 ms; paces IsInterruptOrClosePending
    HostObject result = nullptr;
    std::int64_t accountNumber = 0; // APL2 only
    std::int64_t indexOrigin = 0;
    std::int64_t printPrecision = 10;
    std::int32_t openFrames = 0; // the message loop runs while this is not 0
    HACCEL__* accelerators = nullptr;
    SignalState signalState;
    CommandLog* commandLog = nullptr; // null outside EditObject
    std::uint8_t flags = 0;
    void* host = nullptr; // the adapter's own record of this call
    // Nonzero to abandon a long operation; set while a window may be pumped. Reached through the context because the rooms below the entry
    // poll it too. Null: nothing interrupts.
    std::int32_t (*isInterruptOrClosePending)(EditContext*) = nullptr;
    // Opens a further window on the variable that the object names and takes the object over; nonzero with ErrorCode where it could not.
    // Reached through the context because the views that ask for it lie below the entry. Null outside EditObject.
    std::int32_t (*openVariable)(EditContext*, HostObject name) = nullptr;
    Vector<HostObject> openedObjects; // names and values of the windows opened so; freed when the run ends
    // Why the last save failed. The user has read it, the host has not: an adapter that can raise errors raises it after a run in which
    // nothing was saved, so that the unchanged array does not pass for the edited one. Kept by NoteFailure and NoteSaved.
    VTERROR_CODE failure = VTERROR_CODE::NoError;
    bool saved = false;
};

inline void NoteFailure(EditContext* context, VTERROR_CODE code) noexcept
{
    if (!context->saved) context->failure = code;
}

inline void NoteSaved(EditContext* context) noexcept
{
    context->saved = true;
    context->failure = VTERROR_CODE::NoError;
}

// Bridge between the two error roads: stores the code and answers false / null, so that a catch clause is one line.
inline bool SetErrorCode(EditContext* context, VTERROR_CODE code) noexcept
{
    context->langEnv->ErrorCode = code;
    return false;
}

inline bool HasError(const EditContext* context) noexcept
{
    return context->langEnv->ErrorCode != VTERROR_CODE::NoError;
}

// True at most every 100 milliseconds: paces interrupt polls inside long loops of the logic half.
class InterruptPacer {
public:
    InterruptPacer() noexcept;
    [[nodiscard]] bool Due() noexcept;

private:
    std::int64_t last_; // milliseconds of the steady clock
};

} // namespace vantrel
