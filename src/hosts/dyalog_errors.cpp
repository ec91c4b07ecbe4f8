#include <algorithm>
#include <limits>

#include "entry/product.h"
#include "entry/trace.h"
#include "hosts/dyalog_host.h"

namespace vantrel {
namespace {

struct HostError {
    std::int32_t number;
    const char16_t* message; // when nothing more specific is known
};

HostError HostErrorOf(VTERROR_CODE code) noexcept
{
    switch (code) {
    case VTERROR_CODE::NoError: return {0, nullptr};
    case VTERROR_CODE::AxisError:
    case VTERROR_CODE::IndexError: return {3, nullptr};
    case VTERROR_CODE::DomainError: return {11, MessageType};
    case VTERROR_CODE::Exception: return {91, MessageSevere};
    case VTERROR_CODE::Interrupt: return {1003, MessageInterrupt};
    case VTERROR_CODE::LengthError: return {5, nullptr};
    case VTERROR_CODE::NonceError: return {16, nullptr};
    case VTERROR_CODE::OutOfMemory:
    case VTERROR_CODE::ImplicitPrintPrecision:
    case VTERROR_CODE::ImplicitIndexOrigin:
    case VTERROR_CODE::ImplicitComparisonTolerance:
    case VTERROR_CODE::ImplicitFormatControl:
    case VTERROR_CODE::ImplicitRandomLink:
    case VTERROR_CODE::ImplicitPrompt:
    case VTERROR_CODE::SystemLimit: return {10, MessageStorage};
    case VTERROR_CODE::RankError: return {4, nullptr};
    case VTERROR_CODE::SyntaxError:
    case VTERROR_CODE::ValenceError: return {2, nullptr};
    case VTERROR_CODE::ValueError: return {6, nullptr};
    case VTERROR_CODE::WsFull: return {1, nullptr};
    case VTERROR_CODE::OperatingSystemError:
    case VTERROR_CODE::SystemError:
    case VTERROR_CODE::UnclassifiedError:
    case VTERROR_CODE::UnknownError: break;
    }
    return {99, MessageWindows};
}

VTERROR_CODE CodeOfStatus(std::int64_t status) noexcept
{
    switch (status) {
    case 0: return VTERROR_CODE::NoError;
    case 1: return VTERROR_CODE::WsFull;
    case 2: return VTERROR_CODE::SyntaxError;
    case 3:
    case 6: return VTERROR_CODE::ValueError;
    case 4: return VTERROR_CODE::RankError;
    case 5: return VTERROR_CODE::LengthError;
    case 10: return VTERROR_CODE::SystemLimit;
    case 11: return VTERROR_CODE::DomainError;
    case 99: return VTERROR_CODE::SystemError;
    default: return VTERROR_CODE::UnknownError;
    }
}

// Our own texts are ASCII, so a Classic edition's bytes are the units themselves.
const char* NarrowOwnMessage(DyalogHost& host, const char16_t* text) noexcept
{
    std::int64_t length = 0;
    for (; text[length] != 0 && length + 1 < OwnMessageSize; ++length) {
        host.ownMessageAnsi[length] = static_cast<char>(text[length]);
    }
    host.ownMessageAnsi[length] = 0;
    return host.ownMessageAnsi;
}

const void* MessageForInterpreter(DyalogHost& host, const char16_t* text) noexcept
{
    if (text == nullptr || host.unicode) return text;
    if (text == host.ownedMessage.get()) return host.interpreterMessageAnsi.get();
    return NarrowOwnMessage(host, text);
}

// The text of an error number in characters of the edition's width, terminated.
template <typename Character>
OwnedArray<Character> FetchMessageText(const DyalogHost& host, std::int64_t number)
{
    const MessageTextService fetch = ServiceOf(host, dyalog::MessageText);
    const std::int64_t length = std::max<std::int64_t>(fetch(number, nullptr, 0), 0);
    if (length > std::numeric_limits<std::int32_t>::max() - 2) throw VTERROR_CODE::OutOfMemory;
    // One more than announced for a terminator, one that nobody writes.
    OwnedArray<Character> text = AllocateZeroedArray<Character>(length + 2);
    fetch(number, text.get(), length + 1);
    return text;
}

OwnedArray<char16_t> WidenMessage(const DyalogHost& host, const char* text)
{
    const auto length = static_cast<std::int32_t>(std::char_traits<char>::length(text));
    const std::int32_t units = length > 0 ? host.platform->widenAnsi(text, length, nullptr, 0) : 0;
    OwnedArray<char16_t> wide = AllocateZeroedArray<char16_t>(std::int64_t{units} + 1);
    if (units > 0) host.platform->widenAnsi(text, length, wide.get(), units);
    return wide;
}

OwnedArray<char16_t> FetchInterpreterMessage(DyalogHost& host, std::int64_t number)
{
    if (host.unicode) return FetchMessageText<char16_t>(host, number);
    host.interpreterMessageAnsi = FetchMessageText<char>(host, number);
    return WidenMessage(host, host.interpreterMessageAnsi.get());
}

} // namespace

void PrepareErrorBlock(DyalogHost& host) noexcept
{
    TraceScope trace("dyalog_errors.cpp", "PrepareErrorBlock");
    ClearDyalogMessage(host);
    host.errorBlock = {};
    host.errorBlock.kind = ErrorKindPlain;
    host.errorBlock.vendor = host.unicode ? static_cast<const void*>(VendorName) : VendorNameAnsi;
    host.errorBlock.product = host.unicode ? static_cast<const void*>(ProductName) : ProductNameAnsi;
    host.errorBlock.supportAddress = host.unicode ? DyalogSupportAddress : nullptr;
}

void ClearDyalogMessage(DyalogHost& host) noexcept
{
    TraceScope trace("dyalog_errors.cpp", "ClearDyalogMessage");
    ClearHostMessage(host);
    host.interpreterMessageAnsi.reset();
}

void SignalHostError(EditContext* context, VTERROR_CODE code)
{
    TraceScope trace("dyalog_errors.cpp", "SignalHostError");
    DyalogHost& host = HostOf(context);
    const HostError error = HostErrorOf(code);
    const char16_t* own = HostMessageFor(host, code);
    const char16_t* message = own != nullptr ? own : error.message;
    host.errorBlock.errorNumber = error.number;
    host.errorBlock.flag = error.number != 0 ? 1 : 0;
    host.errorBlock.message = error.number != 0 ? MessageForInterpreter(host, message) : nullptr;
    host.errorBlock.kind = host.errorBlock.message != nullptr ? ErrorKindMessage : ErrorKindPlain;
}

bool CheckDyalogCallbackResult(EditContext* context, std::int64_t status)
{
    TraceScope trace("dyalog_errors.cpp", "CheckDyalogCallbackResult");
    DyalogHost& host = HostOf(context);
    ClearDyalogMessage(host);
    const VTERROR_CODE code = CodeOfStatus(status);
    SetErrorCode(context, code);
    if (code == VTERROR_CODE::NoError) return true;
    try {
        SetOwnedHostMessage(host, code, FetchInterpreterMessage(host, status));
        return false;
    } catch (VTERROR_CODE failure) {
        ClearDyalogMessage(host);
        return SetErrorCode(context, failure);
    }
}

} // namespace vantrel
