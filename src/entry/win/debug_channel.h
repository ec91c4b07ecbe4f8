// Debug output to an external trace viewer, through a shared memory block that the viewer creates. Without a viewer nothing happens.
#pragma once

#include <string_view>

namespace vantrel {

// Formats (wide printf rules) into at most 128000 characters and sends them; returns the formatted length.
int DebugPrintf(const wchar_t* format, ...) noexcept;
// Sends a text of any length, a message for each line.
void SendDebugText(std::u16string_view text) noexcept;
// Clears the viewer.
void DebugClear() noexcept;

// Trace lines: file and routine are those of the innermost routine, `line` is a source line.
void TraceStarting(long line) noexcept;
void TraceMessage(long line, const wchar_t* message) noexcept;
void TraceInteger(long line, int value) noexcept;
void TraceText(long line, const char* text) noexcept;
void TraceLastError(long line, const char* what, unsigned long lastError) noexcept;

} // namespace vantrel
