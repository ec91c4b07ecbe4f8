#include "frame/find.h"

#include <algorithm>
#include <string>

#include "entry/trace.h"

namespace vantrel {
namespace {

// Where a reader stands inside a number. A part is a mantissa or an exponent.
struct NumberReader {
    bool point = false; // seen in this part, like the next two
    bool digits = false;
    bool highMinus = false;
    bool exponent = false;
    bool imaginary = false;
    std::int32_t count = 0;

    void StartPart() noexcept { point = digits = highMinus = false; }

    bool Digit() noexcept
    {
        if (!digits && !exponent && !imaginary) ++count;
        digits = true;
        return true;
    }
    bool Point() noexcept
    {
        if (point || exponent) return false;
        return point = true;
    }
    bool Exponent() noexcept
    {
        if (exponent || !digits) return false;
        StartPart();
        return exponent = true;
    }
    bool Imaginary() noexcept
    {
        if (imaginary || !digits) return false;
        StartPart();
        exponent = false;
        return imaginary = true;
    }
    bool HighMinus() noexcept
    {
        if (highMinus) return false;
        return highMinus = true;
    }
    bool Blank() noexcept
    {
        if (!digits && (point || exponent || highMinus || imaginary)) return false;
        StartPart();
        exponent = imaginary = false;
        return true;
    }
    bool Read(char16_t c) noexcept
    {
        if (c >= u'0' && c <= u'9') return Digit();
        switch (c) {
        case u'.': return Point();
        case u'E':
        case u'e': return Exponent();
        case u'J':
        case u'j': return Imaginary();
        case u'¯': return HighMinus();
        case u' ': return Blank();
        default: return false;
        }
    }
};

} // namespace

std::int32_t CountFindNumbers(const char16_t* text, std::int64_t length) noexcept
{
    TraceScope trace("find.cpp", "CountFindNumbers");
    NumberReader reader;
    for (std::int64_t i = 0; i < length; ++i) {
        if (!reader.Read(text[i])) return -1;
    }
    const bool complete = reader.digits || length == 0 || text[length - 1] == u' ';
    return complete ? reader.count : -1;
}

FindRules GetFindRules(const FindState& state) noexcept
{
    if (state.text[0] == u'\0') return {true, true, false};
    if (state.numberCount < 1) return {true, false, true};
    return {(state.options & FindNumeric) == 0, true, true};
}

void SetFindState(FindState& state, bool ignoreCase, bool numeric, const char16_t* text) noexcept
{
    TraceScope trace("find.cpp", "SetFindState");
    state.options =
        static_cast<std::uint16_t>((ignoreCase ? FindIgnoreCase : 0) | (numeric ? FindNumeric : 0));
    const std::size_t length = std::min<std::size_t>(std::u16string_view(text).size(), FindTextSize - 1);
    std::copy_n(text, length, state.text);
    std::fill(state.text + length, state.text + FindTextSize, u'\0');
    state.numberCount = std::max(CountFindNumbers(state.text, static_cast<std::int64_t>(length)), 0);
}

} // namespace vantrel
