#pragma once

#include <gtest/gtest.h>

#include <string>

#include "entry/trace.h"
#include "hosts/fake_clipboard.h"
#include "hosts/host.h"

namespace vantrel {

// Doubles for what the adapters need of the platform. The edit itself is a routine that each test supplies.
struct PlatformDouble {
    static inline bool registers = true;
    static inline int registered = 0;
    static inline int unregistered = 0;
    static inline int traces = 0;
    static inline std::string tracedRoutine;
    static inline std::u16string tracedMessage;
    static inline HostObject (*edit)(EditContext*, HostObject) = nullptr;

    static std::int32_t WidenLatin(const char* text, std::int32_t length, char16_t* buffer,
                                   std::int32_t capacity)
    {
        if (buffer == nullptr) return length;
        const std::int32_t copied = length < capacity ? length : capacity;
        for (std::int32_t i = 0; i < copied; ++i)
            buffer[i] = static_cast<unsigned char>(text[i]);
        return copied;
    }
    static bool Register()
    {
        ++registered;
        return registers;
    }
    static void Unregister() { ++unregistered; }
    static HostObject Edit(EditContext* context, HostObject object, bool byName)
    {
        EXPECT_FALSE(byName);
        return edit(context, object);
    }
    // Names the routine, as the real one does.
    static void Trace(long line)
    {
        EXPECT_GT(line, 0);
        ++traces;
        tracedRoutine = g_traceContext.routine;
    }
    static void TraceText(long, const char16_t* message) { tracedMessage = message; }

    static void Reset()
    {
        registers = true;
        registered = unregistered = traces = 0;
        tracedRoutine.clear();
        tracedMessage.clear();
        edit = nullptr;
    }
    static inline const HostPlatform Table = {
        WidenLatin, Register, Unregister, Edit, Trace, fake::Clipboard::Table(), TraceText};
};

} // namespace vantrel
