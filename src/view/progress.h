// Progress of formatting and sizing: percent texts in the status bar, and the poll that lets the user break off.
#pragma once

#include "view/view.h"

namespace vantrel {

// Status texts of layout (ids of the string table).
inline constexpr std::int32_t StatusUnableToFormat = 106;
inline constexpr std::int32_t StatusFormatting = 129;
inline constexpr std::int32_t StatusFormattingPercent = 130;
inline constexpr std::int32_t StatusCalculatingSizes = 131;
inline constexpr std::int32_t StatusCalculatingSizesPercent = 132;
inline constexpr std::int32_t StatusUnableToCalculateSizes = 134;
inline constexpr std::int32_t StatusCalculatingWidthsPercent = 135;

// The clock is looked at only after so much work, where one small array or one measured row is 1.
inline constexpr std::int64_t WorkPerClockLook = 64;

struct LayoutProgress {
    std::int64_t total = 0;
    std::int64_t done = 0;
    std::int32_t lastPercent = 0;
    std::int32_t stringId = 0;
    std::int64_t workUntilClock = WorkPerClockLook;
    InterruptPacer pacer;
};

// Counts `amount` done and shows the percentage when it has grown. Silent in a quiet view.
void AddProgress(View& view, LayoutProgress& progress, std::int64_t amount);
// Counts `amount` of a simple array's work done, unless the array was already formatted and measured.
void UpdateProgressReport(View& view, LayoutProgress& progress, const Scdr& node, std::int64_t amount = 1);
// Whether the user broke off. Asks at most every 100 milliseconds; `work` was done since the last call.
[[nodiscard]] bool IsInterrupted(View& view, LayoutProgress& progress, std::int64_t work);

// Rows that formatting will make: of arrays of rank >= 2 all of their rows, of others one.
[[nodiscard]] std::int64_t CountSimpleScdrRows(const Scdr& node) noexcept;
// Simple arrays, and the records among them whose width is not known.
[[nodiscard]] std::int64_t CountSimpleScdrsAndInvalidRecords(const Scdr& node) noexcept;

} // namespace vantrel
