// Numbers to text.
#pragma once

#include "model/scdr.h"

namespace vantrel {

// Room for any number text with its terminator.
inline constexpr std::int64_t NumberTextSize = 129;

// Terminated texts into buffers of NumberTextSize units; they return the length. With the environment's high
// minus every minus written is 175. FormatF8 is C's %G made compact (1E10, not 1E+010), whatever the locale;
// infinities are INF, or with a precision of 16 and more the text of the greatest double, as is that double
// itself; NAN has no sign. Precisions above 121 are cut to it, so that every text fits. FormatI8 shows only
// the low 32 bits: the columns of existing documents rely on it.
std::int64_t FormatF8(const LangEnv& environment, double value, char16_t* buffer, std::int64_t precision);
std::int64_t FormatI8(const LangEnv& environment, std::int64_t value, char16_t* buffer);

// The formatted display of a Boolean, integer, real or complex array as one block of `rows` rows of `length`
// units each: one row for scalars and vectors, else a row per item of all axes but the last, columns aligned
// on the decimal point.
struct FormattedText {
    OwnedArray<char16_t> text;
    std::int64_t rows = 0;
    std::int64_t length = 0;
};
// `poll` (may be null) is asked about every 100 ms with the rows whose text is finished; true stops the work
// with VTERROR_CODE::Interrupt. Throws NonceError for nested, character and decimal arrays, OutOfMemory,
// Interrupt. For rank 2 and above the node's recordColumnWidths / recordColumnIntegers are stored when all
// went well: the units that each column takes between its separating blanks, and those of them before the
// decimal points.
struct FormatPoll {
    bool (*interrupted)(void* state, std::int64_t rowsDone);
    void* state;
};
[[nodiscard]] FormattedText FormatNumbers(EditContext* context, Scdr& node, const FormatPoll* poll);

// Convert to character (4607): a new character array or null with ErrorCode 5, 7 (with a message: nested and
// decimal arguments) or 9. A character argument is copied. Asks the environment's CheckForInterrupt, where it
// has one.
[[nodiscard]] ScdrPtr BuiltinFormat(EditContext* context, Scdr& argument);

} // namespace vantrel
