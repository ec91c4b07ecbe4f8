#include "hosts/fake_format.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <string>
#include <vector>

namespace vantrel::fake {
namespace {

constexpr char16_t highMinus = 0xAF;

using Lines = std::vector<std::u16string>;

std::u16string Widened(const std::string& text)
{
    std::u16string wide(text.begin(), text.end());
    std::replace(wide.begin(), wide.end(), u'-', highMinus);
    return wide;
}

std::u16string FormatItem(const Array& array, std::size_t index, std::int64_t precision)
{
    if (IsCharacterType(array.type)) return TextOfArray(ItemAt(array, index));
    if (array.type == ElementType::Decimal) return Widened(DecimalTextAt(array, index));
    const ComplexNumber value = ComplexAt(array, index);
    std::u16string text = FormatNumber(value.real, precision);
    if (value.imaginary != 0) text += u"J" + FormatNumber(value.imaginary, precision);
    return text;
}

std::size_t WidthOf(const Lines& lines)
{
    std::size_t width = 0;
    for (const std::u16string& line : lines)
        width = std::max(width, line.size());
    return width;
}

std::u16string PaddedTo(const std::u16string& text, std::size_t width, bool right)
{
    const std::u16string blanks(width - std::min(width, text.size()), u' ');
    return right ? blanks + text : text + blanks;
}

// Puts cells of text beside and under each other, `columns` a row.
Lines PlaceCells(const std::vector<Lines>& cells, std::size_t columns, bool alignRight)
{
    std::vector<std::size_t> widths(columns);
    for (std::size_t i = 0; i < cells.size(); ++i)
        widths[i % columns] = std::max(widths[i % columns], WidthOf(cells[i]));
    Lines out;
    for (std::size_t row = 0; row < cells.size(); row += columns) {
        std::size_t height = 1;
        for (std::size_t column = 0; column < columns; ++column)
            height = std::max(height, cells[row + column].size());
        for (std::size_t k = 0; k < height; ++k) {
            std::u16string line;
            for (std::size_t column = 0; column < columns; ++column) {
                const Lines& cell = cells[row + column];
                line += (column == 0 ? u"" : u" ") +
                        PaddedTo(k < cell.size() ? cell[k] : u"", widths[column], alignRight);
            }
            out.push_back(std::move(line));
        }
    }
    return out;
}

Lines FormatLines(const Array& array, std::int64_t precision);

Lines FormatCell(const Array& array, std::size_t index, std::int64_t precision)
{
    if (array.type == ElementType::Nested) return FormatLines(array.items[index], precision);
    return {FormatItem(array, index, precision)};
}

Lines FormatLines(const Array& array, std::int64_t precision)
{
    const std::size_t count = CountOf(array);
    if (count == 0) return {u""};
    const std::size_t columns = array.shape.empty() ? 1 : static_cast<std::size_t>(array.shape.back());
    if (IsCharacterType(array.type)) {
        const std::u16string text = TextOfArray(array);
        Lines lines;
        for (std::size_t i = 0; i < count; i += columns)
            lines.push_back(text.substr(i, columns));
        return lines;
    }
    std::vector<Lines> cells;
    for (std::size_t i = 0; i < count; ++i)
        cells.push_back(FormatCell(array, i, precision));
    return PlaceCells(cells, columns, array.type != ElementType::Nested);
}

// One real part: the text up to where a number of the language ends, with plain minus signs.
bool ParseReal(const std::string& text, double& value)
{
    const std::size_t digits = text.find_first_of("0123456789");
    if (digits == std::string::npos || text.find_first_not_of("-0123456789.E") != std::string::npos)
        return false;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

} // namespace

Array FormatArray(const Array& array, std::int64_t precision)
{
    if (IsCharacterType(array.type)) return array;
    const Lines lines = FormatLines(array, precision);
    if (lines.size() == 1 && array.shape.size() < 2) return Text(lines[0]);
    const std::size_t width = WidthOf(lines);
    std::u16string text;
    for (const std::u16string& line : lines)
        text += PaddedTo(line, width, false);
    Shape shape{static_cast<std::int64_t>(lines.size()), static_cast<std::int64_t>(width)};
    if (array.type != ElementType::Nested && array.shape.size() > 2) {
        shape.assign(array.shape.begin(), array.shape.end() - 1);
        shape.push_back(static_cast<std::int64_t>(width));
    }
    return TextOf(std::move(shape), text);
}

bool ParseNumber(std::u16string_view text, ComplexNumber& value)
{
    std::string plain;
    for (const char16_t unit : text) {
        if (unit == highMinus)
            plain += '-';
        else if (unit == u'e' || unit == u'j')
            plain += static_cast<char>(unit - 32);
        else if (unit < 128)
            plain += static_cast<char>(unit);
        else
            return false;
    }
    const std::size_t j = plain.find('J');
    value = {};
    if (!ParseReal(plain.substr(0, j), value.real)) return false;
    return j == std::string::npos || ParseReal(plain.substr(j + 1), value.imaginary);
}

std::u16string FormatNumber(double value, std::int64_t printPrecision)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*G",
                  static_cast<int>(std::clamp<std::int64_t>(printPrecision, 1, 17)), value);
    std::string text = buffer;
    const std::size_t exponent = text.find('E');
    if (exponent != std::string::npos) {
        std::size_t digits = exponent + 1;
        if (text[digits] == '+')
            text.erase(digits, 1);
        else if (text[digits] == '-')
            ++digits;
        while (digits + 1 < text.size() && text[digits] == '0')
            text.erase(digits, 1);
    }
    return Widened(text);
}

} // namespace vantrel::fake
