// Finding a text, or a run of numbers, in one record.
#include <algorithm>
#include <iterator>

#include "view/find.h"

namespace vantrel {
namespace {

// --- text ---

bool IsBetween(char16_t c, char16_t first, char16_t last) noexcept
{
    return c >= first && c <= last;
}

// Capitals, each `step` behind the one before, whose small letters stand `shift` behind them.
struct Capitals {
    char16_t first;
    char16_t last;
    int step;
    int shift;
};

// Of the alphabets that arrays are written in, where one unit stays one unit; in ascending order.
constexpr Capitals AllCapitals[] = {
    {u'A', u'Z', 1, 32},     {0xC0, 0xD6, 1, 32},     {0xD8, 0xDE, 1, 32},
    {0x100, 0x12E, 2, 1}, // Latin
    {0x132, 0x136, 2, 1},    {0x139, 0x147, 2, 1},    {0x14A, 0x176, 2, 1},
    {0x178, 0x178, 1, -121}, {0x179, 0x17D, 2, 1},    {0x1CD, 0x1DB, 2, 1},
    {0x1DE, 0x1EE, 2, 1},    {0x1F8, 0x21E, 2, 1},    {0x222, 0x232, 2, 1},
    {0x386, 0x386, 1, 38},   {0x388, 0x38A, 1, 37},   {0x38C, 0x38C, 1, 64}, // Greek
    {0x38E, 0x38F, 1, 63},   {0x391, 0x3A1, 1, 32},   {0x3A3, 0x3AB, 1, 32},
    {0x400, 0x40F, 1, 80}, // Cyrillic
    {0x410, 0x42F, 1, 32},   {0x460, 0x480, 2, 1},    {0x48A, 0x4BE, 2, 1},
    {0x4C0, 0x4C0, 1, 15},   {0x4C1, 0x4CD, 2, 1},    {0x4D0, 0x52E, 2, 1},
    {0x531, 0x556, 1, 48},   {0x1E00, 0x1E94, 2, 1}, // Armenian
    {0x1EA0, 0x1EFE, 2, 1},  {0x2160, 0x216F, 1, 16}, {0x24B6, 0x24CF, 1, 26},
    {0xFF21, 0xFF3A, 1, 32},
};

char16_t LowerCase(char16_t c) noexcept
{
    if (c < 0x80) return IsBetween(c, u'A', u'Z') ? static_cast<char16_t>(c + 32) : c;
    const auto* const range =
        std::lower_bound(std::begin(AllCapitals), std::end(AllCapitals), c,
                         [](const Capitals& capitals, char16_t unit) { return capitals.last < unit; });
    if (range == std::end(AllCapitals) || c < range->first || (c - range->first) % range->step != 0) return c;
    return static_cast<char16_t>(c + range->shift);
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
