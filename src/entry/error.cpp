#include "entry/error.h"

#include <iterator>

#include "entry/trace.h"

namespace vantrel {
namespace {

constexpr const char16_t* ErrorTexts[] = {
    u"NoError",
    u"Axis Error",
    u"Domain Error",
    u"Exception",
    u"Index Error",
    u"Interrupt",
    u"Length Error",
    u"Nonce Error",
    u"Operating System Error",
    u"Out of memory",
    u"Implicit Error - ⎕PP",
    u"Implicit Error - ⎕IO",
    u"Implicit Error - ⎕CT",
    u"Implicit Error - ⎕FC",
    u"Implicit Error - ⎕RL",
    u"Implicit Error - ⎕PR",
    u"Rank Error",
    u"Syntax Error",
    u"System Error",
    u"System Limit",
    u"Unclassified Error",
    u"Unknown Error",
    u"Valence Error",
    u"Value Error",
    u"WS Full",
};

} // namespace

const char16_t* ErrorText(VTERROR_CODE code) noexcept
{
    const auto index = static_cast<std::uint32_t>(code);
    return index < std::size(ErrorTexts) ? ErrorTexts[index] : u"Unknown error";
}

void ErrorCodeText(ErrorMessage& message) noexcept
{
    TraceScope trace("error.cpp", "ErrorCodeText");
    if (message.text == nullptr && message.detail == nullptr) message.text = ErrorText(message.code);
}

} // namespace vantrel
