// The one error code of the editor and its texts.
//
// An error travels either as a thrown `VTERROR_CODE` or as `LangEnv::ErrorCode`; the host learns of it once, when
// the edit ends. Nothing else is ever thrown on purpose.
#pragma once

#include <cstdint>

namespace vantrel {

enum class VTERROR_CODE : std::uint32_t {
    NoError = 0,
    AxisError = 1,
    DomainError = 2,
    Exception = 3,
    IndexError = 4,
    Interrupt = 5,
    LengthError = 6,
    NonceError = 7,
    OperatingSystemError = 8,
    OutOfMemory = 9,
    ImplicitPrintPrecision = 10,
    ImplicitIndexOrigin = 11,
    ImplicitComparisonTolerance = 12,
    ImplicitFormatControl = 13,
    ImplicitRandomLink = 14,
    ImplicitPrompt = 15,
    RankError = 16,
    SyntaxError = 17,
    SystemError = 18,
    SystemLimit = 19,
    UnclassifiedError = 20,
    UnknownError = 21,
    ValenceError = 22,
    ValueError = 23,
    WsFull = 24,
};

// The text of a code. Static storage; "Unknown error" for a value outside the enumeration.
const char16_t* ErrorText(VTERROR_CODE code) noexcept;

// What an adapter reports to its host. A text set before `ErrorCodeText` runs is more specific and wins.
struct ErrorMessage {
    VTERROR_CODE code = VTERROR_CODE::NoError;
    const char16_t* text = nullptr;
    const char16_t* detail = nullptr;
};

// Fills `text` from the code when neither text is set yet.
void ErrorCodeText(ErrorMessage& message) noexcept;

} // namespace vantrel
