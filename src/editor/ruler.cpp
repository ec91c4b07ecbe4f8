#include "editor/ruler.h"

#include <charconv>

#include "entry/trace.h"

namespace vantrel {

namespace {

struct Digits {
    char text[20];
    std::int64_t length;
};

Digits DigitsOf(std::int64_t number) noexcept
{
    Digits digits;
    digits.length = std::to_chars(digits.text, digits.text + sizeof digits.text, number).ptr - digits.text;
    return digits;
}

} // namespace

std::int64_t FormatLineNumber(char16_t* out, std::int64_t number) noexcept
{
    const Digits digits = DigitsOf(number);
    *out++ = u'[';
    for (std::int64_t i = 0; i < digits.length; ++i)
        *out++ = static_cast<char16_t>(digits.text[i]);
    *out = u']';
    return digits.length + 2;
}

void FillRuler(char16_t* out, std::int64_t first, std::int64_t count) noexcept
{
    const TraceScope trace("ruler.cpp", "FillRuler");
    // The number that may reach into the first column begins at the last tenth column at or before it.
    std::int64_t numberAt = first - (first + 1) % 10;
    Digits digits = DigitsOf(numberAt + 1);
    for (std::int64_t i = first; i < first + count; ++i) {
        if (i == numberAt + 10) {
            numberAt = i;
            digits = DigitsOf(i + 1);
        }
        const std::int64_t place = i - numberAt;
        if (numberAt > 0 && place < digits.length) {
            *out++ = static_cast<char16_t>(digits.text[place]);
        } else {
            *out++ = i % 10 == 4 ? u'+' : u'-';
        }
    }
}

} // namespace vantrel
