// Finding a text, or a run of numbers, in one record.
#include <algorithm>

#include "view/find.h"

namespace vantrel {
namespace {

// --- text ---

bool IsBetween(char16_t c, char16_t first, char16_t last) noexcept
{
    return c >= first && c <= last;
}

// The small letter of a capital in the alphabets that arrays are written in; one unit stays one unit.
char16_t LowerCase(char16_t c) noexcept
{
    const auto shifted = [c](int by) { return static_cast<char16_t>(c + by); };
    const auto paired = [c](bool capitalIsEven) {
        const bool even = c % 2 == 0;
        return static_cast<char16_t>(even == capitalIsEven ? c + 1 : c);
    };
    if (c < 0x80) return IsBetween(c, u'A', u'Z') ? shifted(32) : c;
    if (c < 0x100) return IsBetween(c, 0xC0, 0xDE) && c != 0xD7 ? shifted(32) : c;
    if (c == 0x178) return 0xFF;
    if (IsBetween(c, 0x139, 0x148) || IsBetween(c, 0x179, 0x17E)) return paired(false);
    if (IsBetween(c, 0x100, 0x177) && !IsBetween(c, 0x130, 0x131) && c != 0x138) return paired(true);
    if (IsBetween(c, 0x391, 0x3AB) && c != 0x3A2) return shifted(32); // Greek
    if (IsBetween(c, 0x400, 0x40F)) return shifted(80);               // Cyrillic
    if (IsBetween(c, 0x410, 0x42F)) return shifted(32);
    if (IsBetween(c, 0x24B6, 0x24CF)) return shifted(26); // circled letters
    if (IsBetween(c, 0xFF21, 0xFF3A)) return shifted(32); // full-width letters
    return c;
}

void LowerCase(const char16_t* text, std::int64_t length, Text& lowered)
{
    lowered.resize(static_cast<std::size_t>(length));
    std::transform(text, text + length, lowered.begin(), [](char16_t c) { return LowerCase(c); });
}

// --- numbers ---

bool IsDigit(char16_t c) noexcept
{
    return IsBetween(c, u'0', u'9');
}

bool IsMinus(char16_t c) noexcept
{
    return c == u'¯' || c == u'-';
}

bool IsExponentMark(char16_t c) noexcept
{
    return c == u'E' || c == u'e';
}

bool IsImaginaryMark(char16_t c) noexcept
{
    return c == u'J' || c == u'j';
}

// A real number as written, brought to the form 0.ddd x 10^scale with a first digit that is not 0. So any two spellings of a value compare
// equal, however many digits they have.
struct DecimalValue {
    std::u16string_view digits; // from the first digit that counts; a point may be among them
    std::int64_t scale = 0;
    bool negative = false;
    bool isZero = true;
};

constexpr std::int64_t GreatestExponent = 1'000'000'000; // beyond any number there is

bool ReadExponent(std::u16string_view text, std::int64_t& exponent) noexcept
{
    bool negative = false;
    bool any = false;
    exponent = 0;
    for (const char16_t c : text) {
        if (IsMinus(c)) {
            negative = true;
        } else if (IsDigit(c)) {
            any = true;
            exponent = std::min(exponent * 10 + (c - u'0'), GreatestExponent);
        } else if (c != u'+') {
            return false;
        }
    }
    if (negative) exponent = -exponent;
    return any;
}

bool ReadMantissa(std::u16string_view text, DecimalValue& value) noexcept
{
    std::int64_t digitsBeforePoint =
        0; // counted from the first digit that counts; negative for zeroes behind the point
    bool point = false;
    bool any = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (IsMinus(c)) {
            value.negative = true;
            continue;
        }
        if (c == u'.' && !point) {
            point = true;
            continue;
        }
        if (!IsDigit(c)) return false;
        any = true;
        if (value.isZero && c != u'0') {
            value.isZero = false;
            value.digits = text.substr(i);
        }
        if (value.isZero) {
            if (point) --digitsBeforePoint;
        } else if (!point) {
            ++digitsBeforePoint;
        }
    }
    value.scale = digitsBeforePoint;
    return any;
}

bool ReadReal(std::u16string_view text, DecimalValue& value) noexcept
{
    const auto mark = std::find_if(text.begin(), text.end(), IsExponentMark);
    const auto mantissaLength = static_cast<std::size_t>(mark - text.begin());
    std::int64_t exponent = 0;
    if (mark != text.end() && !ReadExponent(text.substr(mantissaLength + 1), exponent)) return false;
    if (!ReadMantissa(text.substr(0, mantissaLength), value)) return false;
    value.scale += exponent;
    return true;
}

char16_t NextDigit(std::u16string_view text, std::size_t& at) noexcept
{
    while (at < text.size() && !IsDigit(text[at]))
        ++at;
    return at < text.size() ? text[at++] : u'0';
}

bool IsEqual(const DecimalValue& a, const DecimalValue& b) noexcept
{
    if (a.isZero || b.isZero) return a.isZero == b.isZero;
    if (a.negative != b.negative || a.scale != b.scale) return false;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.digits.size() || j < b.digits.size()) {
        if (NextDigit(a.digits, i) != NextDigit(b.digits, j)) return false;
    }
    return true;
}

struct ComplexValue {
    DecimalValue real;
    DecimalValue imaginary;
};

bool ReadValue(std::u16string_view text, ComplexValue& value) noexcept
{
    const auto mark = std::find_if(text.begin(), text.end(), IsImaginaryMark);
    const auto realLength = static_cast<std::size_t>(mark - text.begin());
    if (mark != text.end() && !ReadReal(text.substr(realLength + 1), value.imaginary)) return false;
    return ReadReal(text.substr(0, realLength), value.real);
}

// What is no number, such as the sign of infinity, is equal to nothing.
bool IsSameValue(std::u16string_view a, std::u16string_view b) noexcept
{
    ComplexValue first;
    ComplexValue second;
    return ReadValue(a, first) && ReadValue(b, second) && IsEqual(first.real, second.real) &&
           IsEqual(first.imaginary, second.imaginary);
}

// Everything between blanks.
void SplitAtBlanks(std::u16string_view text, Vector<FindPlace>& pieces)
{
    pieces.clear();
    std::size_t at = 0;
    while ((at = text.find_first_not_of(u' ', at)) != std::u16string_view::npos) {
        const std::size_t end = std::min(text.find(u' ', at), text.size());
        pieces.push_back({0, static_cast<std::int64_t>(at), static_cast<std::int64_t>(end - at)});
        at = end;
    }
}

std::u16string_view PieceOf(std::u16string_view text, const FindPlace& piece) noexcept
{
    return text.substr(static_cast<std::size_t>(piece.column), static_cast<std::size_t>(piece.length));
}

} // namespace

TextMatcher::TextMatcher(const FindState& state)
    : ignoreCase_((state.options & FindIgnoreCase) != 0), numeric_(IsNumericFind(state)), wanted_(state.text)
{
    if (numeric_) {
        SplitAtBlanks(wanted_, wantedNumbers_);
    } else if (ignoreCase_) {
        const Text text = wanted_;
        LowerCase(text.data(), static_cast<std::int64_t>(text.size()), wanted_);
    }
}

// All places where the wanted numbers stand one behind the other.
void TextMatcher::FindAll(const RecordText& text)
{
    const std::u16string_view row(text.text, static_cast<std::size_t>(text.length));
    SplitAtBlanks(row, numbers_);
    matches_.clear();
    const std::size_t count = wantedNumbers_.size();
    for (std::size_t first = 0; first + count <= numbers_.size(); ++first) {
        std::size_t same = 0;
        while (same < count &&
               IsSameValue(PieceOf(row, numbers_[first + same]), PieceOf(wanted_, wantedNumbers_[same])))
            ++same;
        if (same < count) continue;
        const FindPlace& last = numbers_[first + count - 1];
        const std::int64_t column = numbers_[first].column;
        matches_.push_back({0, column, last.column + last.length - column});
    }
}

bool TextMatcher::First(const RecordText& text, std::int64_t from, FindPlace& place)
{
    if (from > text.length) return false;
    if (numeric_) {
        FindAll(text);
        const auto match = std::find_if(matches_.begin(), matches_.end(), [from](const FindPlace& candidate) {
            return candidate.column >= from;
        });
        if (match == matches_.end()) return false;
        place = *match;
        return true;
    }
    if (text.length < static_cast<std::int64_t>(wanted_.size())) return false;
    std::u16string_view row(text.text, static_cast<std::size_t>(text.length));
    if (ignoreCase_) {
        LowerCase(text.text, text.length, lowered_);
        row = lowered_;
    }
    const std::size_t at = row.find(wanted_, static_cast<std::size_t>(std::max<std::int64_t>(from, 0)));
    if (at == std::u16string_view::npos) return false;
    place = {0, static_cast<std::int64_t>(at), static_cast<std::int64_t>(wanted_.size())};
    return true;
}

bool TextMatcher::Last(const RecordText& text, std::int64_t to, FindPlace& place)
{
    const std::int64_t end = std::min(to, text.length);
    if (numeric_) {
        FindAll(text);
        const auto match =
            std::find_if(matches_.rbegin(), matches_.rend(), [end](const FindPlace& candidate) {
                return candidate.column + candidate.length <= end;
            });
        if (match == matches_.rend()) return false;
        place = *match;
        return true;
    }
    const auto wantedLength = static_cast<std::int64_t>(wanted_.size());
    if (end < wantedLength) return false;
    std::u16string_view row(text.text, static_cast<std::size_t>(text.length));
    if (ignoreCase_) {
        LowerCase(text.text, text.length, lowered_);
        row = lowered_;
    }
    const std::size_t at = row.rfind(wanted_, static_cast<std::size_t>(end - wantedLength));
    if (at == std::u16string_view::npos) return false;
    place = {0, static_cast<std::int64_t>(at), wantedLength};
    return true;
}

} // namespace vantrel
