#include <cstdint>
#include <iterator>

#include "entry/trace.h"
#include "hosts/matlab_host.h"

namespace vantrel::matlab {
namespace {

struct MatlabError {
    const char* identifier;
    const char16_t* text; // when nothing more specific is known
};

constexpr MatlabError UndefinedError = {"quillmoor_vantrel:UndefinedError", u"Undefined Error"};

// In the order of VTERROR_CODE, from AxisError on.
constexpr MatlabError Errors[] = {
    {"quillmoor_vantrel:AxisError", u"Axis Error"},
    {"quillmoor_vantrel:DomainError", u"Domain Error"},
    {"quillmoor_vantrel:Exception", u"Exception"},
    {"quillmoor_vantrel:IndexError", u"Index Error"},
    {"quillmoor_vantrel:Interrupt", u"Interrupt"},
    {IdentifierLength, u"Length Error"},
    {"quillmoor_vantrel:NonceError", u"Nonce Error"},
    {"quillmoor_vantrel:OperatingSystemError", u"Operating System Error"},
    {"quillmoor_vantrel:OutOfMemory", u"Out of memory"},
    {"quillmoor_vantrel:InvalidPrintPrecision", u"Invalid Print Precision"},
    {"quillmoor_vantrel:InvalidIndexOrigin", u"Invalid Index Origin"},
    {"quillmoor_vantrel:InvalidComparisonTolerance", u"Invalid Comparison Tolerance"},
    {"quillmoor_vantrel:InvalidFormatControl", u"Invalid Format Control"},
    {"quillmoor_vantrel:InvalidRandomLink", u"Invalid Random Link"},
    {"quillmoor_vantrel:InvalidPromptReplacement", u"Invalid Prompt Replacement"},
    {"quillmoor_vantrel:RankError", u"Rank Error"},
    {"quillmoor_vantrel:SyntaxError", u"Syntax Error"},
    {IdentifierSystem, u"System Error"},
    {"quillmoor_vantrel:SystemLimit", u"System Limit"},
    {"quillmoor_vantrel:UnclassifiedError", u"Unclassified Error"},
    UndefinedError,
    {"quillmoor_vantrel:ValenceError", u"Valence Error"},
    {"quillmoor_vantrel:ValueError", u"Value Error"},
    {"quillmoor_vantrel:WorkspaceFull", u"Workspace Full"},
};

const MatlabError& ErrorOf(VTERROR_CODE code) noexcept
{
    const std::size_t index = static_cast<std::uint32_t>(code) - std::size_t{1};
    return index < std::size(Errors) ? Errors[index] : UndefinedError;
}

bool IsSurrogatePair(const char16_t* text) noexcept
{
    return (text[0] & 0xFC00) == 0xD800 && (text[1] & 0xFC00) == 0xDC00;
}

// Appends a character in UTF-8; null where there is no room for it.
char* AppendUtf8(char* to, const char* end, std::uint32_t character) noexcept
{
    const int more = character < 0x80 ? 0 : character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    if (end - to <= more) return nullptr;
    constexpr std::uint32_t marks[] = {0, 0xC0, 0xE0, 0xF0};
    *to++ = static_cast<char>(marks[more] | character >> (6 * more));
    for (int i = more; i-- > 0;)
        *to++ = static_cast<char>(0x80 | (character >> (6 * i) & 0x3F));
    return to;
}

// As much of a text as fits, as a printf format that gives it.
void WriteFormat(char (&format)[ErrorTextSize], const char16_t* text) noexcept
{
    char* to = format;
    const char* const end = format + ErrorTextSize - 1;
    while (*text != 0) {
        const bool pair = IsSurrogatePair(text);
        const std::uint32_t character =
            pair ? 0x10000u + ((text[0] & 0x3FFu) << 10) + (text[1] & 0x3FFu) : *text;
        text += pair ? 2 : 1;
        char* next = AppendUtf8(to, end, character);
        if (next != nullptr && character == u'%') next = AppendUtf8(next, end, u'%');
        if (next == nullptr) break;
        to = next;
    }
    *to = 0;
}

} // namespace

void SetHostError(MatlabHost& host, const char* identifier, const char16_t* text) noexcept
{
    TraceScope trace("matlab_errors.cpp", "SetHostError");
    host.identifier = identifier;
    WriteFormat(host.errorText, text);
}

void SignalHostError(EditContext* context, VTERROR_CODE code)
{
    TraceScope trace("matlab_errors.cpp", "SignalHostError");
    MatlabHost& host = HostOf(context);
    if (code == VTERROR_CODE::NoError) {
        host.identifier = nullptr;
        return;
    }
    const MatlabError& error = ErrorOf(code);
    const char16_t* message = HostMessageFor(host, code);
    SetHostError(host, error.identifier, message != nullptr ? message : error.text);
}

} // namespace vantrel::matlab
