// The command log: what the user did in this edit. It is written to disk only after a crash.
#pragma once

#include "entry/edit_context.h"

namespace vantrel {

// The three header lines. A failed allocation leaves the log empty.
void BeginCommandLog(CommandLog& log) noexcept;
// The line of one command: `message` is WM_COMMAND (273) or a private number, `commandId` its id.
[[nodiscard]] const char* CommandName(std::uint32_t message, std::int32_t commandId) noexcept;
// Appends that line. Without a log (no edit runs) nothing happens; a failed allocation loses the line.
void LogCommand(EditContext* context, std::uint32_t message, std::int32_t commandId) noexcept;
void LogLine(EditContext* context, const char* line) noexcept;

} // namespace vantrel
