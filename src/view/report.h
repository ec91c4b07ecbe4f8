// Telling the user what went wrong. A message stays in sight until the next one, so whoever clears progress texts away afterwards asks
// `View::errorShown` first.
#pragma once

#include "view/view.h"

namespace vantrel {

// Messages of the string table that refuse or report.
inline constexpr std::int32_t MessageStringIsNested = 100;
inline constexpr std::int32_t MessageArrayIsScalar = 101;
inline constexpr std::int32_t MessageNotAVector = 103;
inline constexpr std::int32_t MessageCannotConvertClipboard = 104;
inline constexpr std::int32_t MessageNotSupported = 107;
inline constexpr std::int32_t MessageErrorAllocating = 108;
inline constexpr std::int32_t MessageSystemError = 109;
inline constexpr std::int32_t MessageNameIsInvalid = 114;
inline constexpr std::int32_t MessageNotAChild = 118;
inline constexpr std::int32_t MessageParentIsEmpty = 120;
inline constexpr std::int32_t MessageParentIsNotAMatrix = 121;
inline constexpr std::int32_t MessageParentIsNotAVector = 122;
inline constexpr std::int32_t MessageCannotDeleteTopLevel = 127;
inline constexpr std::int32_t MessageInterpreterIsBusy = 136;

// Shows a message with a beep.
void ShowError(View& view, std::int32_t stringId);
// Has the frame show the language environment's error (notification 5), which may clear it. Where memory is lacking and nobody has said
// anything nearer, what to do about it follows: message 108.
void ReportHostError(View& view);

} // namespace vantrel
