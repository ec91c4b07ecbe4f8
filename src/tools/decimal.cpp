#include "tools/decimal.h"

#include <iterator>

namespace vantrel {

void AppendDecimal(Text& text, std::int64_t number)
{
    char16_t digits[20]; // as many as 2 to the 64th has
    std::size_t first = std::size(digits);
    auto rest = static_cast<std::uint64_t>(number);
    if (number < 0) rest = 0 - rest; // the least number has no positive counterpart
    do {
        digits[--first] = static_cast<char16_t>(u'0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (number < 0) text += u'-';
    text.append(digits + first, std::size(digits) - first);
}

} // namespace vantrel
