#include "workbench/formats/csv.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "workbench/formats/align.h"
#include "workbench/formats/numbers.h"
#include "workbench/formats/utf.h"

namespace vantrel::workbench {
namespace {

using fake::Array;

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t maxDigits = 15;

// --- reading ---

class TableReader {
public:
    TableReader(std::string_view text, char separator) : text_(text), separator_(separator) {}

    std::vector<CsvRow> ReadRows()
    {
        std::vector<CsvRow> rows;
        while (at_ < text_.size())
            rows.push_back(ReadRow());
        return rows;
    }

private:
    bool AtEnding() const { return at_ == text_.size() || text_[at_] == '\r' || text_[at_] == '\n'; }

    CsvRow ReadRow()
    {
        CsvRow row;
        row.cells.push_back(ReadCell());
        while (at_ < text_.size() && text_[at_] == separator_) {
            ++at_;
            row.cells.push_back(ReadCell());
        }
        row.ending = ReadEnding();
        ++line_;
        return row;
    }

    std::string ReadEnding()
    {
        const std::size_t from = at_;
        if (at_ < text_.size() && text_[at_] == '\r') ++at_;
        if (at_ < text_.size() && text_[at_] == '\n') ++at_;
        return std::string(text_.substr(from, at_ - from));
    }

    CsvCell ReadCell()
    {
        const std::size_t from = at_;
        const std::string value = at_ < text_.size() && text_[at_] == '"' ? ReadQuoted() : ReadBare();
        CsvCell cell;
        cell.raw = text_.substr(from, at_ - from);
        try {
            cell.text = Utf16FromUtf8(value);
        } catch (const FormatError& error) {
            throw FormatError("line " + std::to_string(line_) + ": in the cell, " + error.what());
        }
        return cell;
    }

    std::string ReadBare()
    {
        const std::size_t from = at_;
        while (!AtEnding() && text_[at_] != separator_)
            ++at_;
        return std::string(text_.substr(from, at_ - from));
    }

    std::string ReadQuoted()
    {
        const std::size_t openedIn = line_;
        std::string value;
        for (++at_; at_ < text_.size(); ++at_) {
            if (text_[at_] == '\n') ++line_;
            if (text_[at_] != '"') {
                value += text_[at_];
            } else if (at_ + 1 < text_.size() && text_[at_ + 1] == '"') {
                value += text_[at_++];
            } else {
                ++at_;
                if (!AtEnding() && text_[at_] != separator_) {
                    throw FormatError("line " + std::to_string(line_) +
                                      ": there is text behind a closing quote");
                }
                return value;
            }
        }
        throw FormatError("line " + std::to_string(openedIn) + ": the quote that opens here is never closed");
    }

    std::string_view text_;
    char separator_;
    std::size_t at_ = 0;
    std::size_t line_ = 1;
};

// A number that is safe in the editor: its digits survive, and nothing about its text means more than the number.
std::optional<double> NumberOf(std::u16string_view text)
{
    std::string plain;
    for (const char16_t unit : text) {
        if (unit >= 128) return std::nullopt;
        plain += static_cast<char>(unit);
    }
    std::string full = plain;
    const std::size_t first = full.starts_with('-') ? 1 : 0;
    if (first < full.size() && full[first] == '.') full.insert(first, "0");
    double value = 0;
    if (!IsJsonNumber(full) || !ParsePlainNumber(full, value)) return std::nullopt;
    std::size_t digits = 0;
    for (const char c : full.substr(0, full.find_first_of("eE")))
        digits += c >= '0' && c <= '9' && (digits > 0 || c != '0');
    const bool bigWhole = std::floor(value) == value && (value < -2147483648.0 || value > 2147483647.0);
    return digits > maxDigits || bigWhole ? std::nullopt : std::optional<double>(value);
}

Array CellArray(const CsvCell* cell)
{
    if (cell == nullptr) return fake::Text(u"");
    const std::optional<double> number = NumberOf(cell->text);
    // A quoted number is a text that looks like one.
    return number && !cell->raw.starts_with('"') ? fake::Number(*number) : fake::Text(cell->text);
}

const CsvCell* CellAt(const CsvSource& source, std::size_t row, std::size_t column)
{
    const std::vector<CsvCell>& cells = source.rows[row].cells;
    return column < cells.size() ? &cells[column] : nullptr;
}

Array TableArray(const CsvSource& source)
{
    const fake::Shape shape{static_cast<std::int64_t>(source.rows.size()),
                            static_cast<std::int64_t>(source.columns)};
    if (source.rows.empty()) return fake::EmptyNestedArray(shape, fake::Text(u""));
    std::vector<Array> items;
    for (std::size_t row = 0; row < source.rows.size(); ++row) {
        for (std::size_t column = 0; column < source.columns; ++column)
            items.push_back(CellArray(CellAt(source, row, column)));
    }
    return fake::NestedArray(shape, std::move(items));
}

// --- writing ---

// The array as rows and columns of items.
struct Table {
    std::size_t rows = 1;
    std::size_t columns = 1;
    std::vector<Array> cells;
};

Table CharacterRows(const Array& array)
{
    Table table;
    const std::u16string text = fake::TextOfArray(array);
    const bool matrix = array.shape.size() == 2;
    table.rows = matrix ? static_cast<std::size_t>(array.shape[0]) : 1;
    const std::size_t width = matrix ? static_cast<std::size_t>(array.shape[1]) : text.size();
    for (std::size_t row = 0; row < table.rows; ++row)
        table.cells.push_back(fake::Text(text.substr(row * width, width)));
    return table;
}

Table TableOf(const Array& array)
{
    if (array.shape.size() > 2) {
        throw FormatError("an array of rank " + std::to_string(array.shape.size()) + " does not fit a table");
    }
    if (fake::IsCharacterType(array.type)) return CharacterRows(array);
    Table table;
    if (array.shape.size() == 2) table.rows = static_cast<std::size_t>(array.shape[0]);
    if (!array.shape.empty()) table.columns = static_cast<std::size_t>(array.shape.back());
    for (std::size_t i = 0; i < table.rows * table.columns; ++i)
        table.cells.push_back(fake::ItemAt(array, i));
    return table;
}

std::string PlainNumber(double value)
{
    if (std::isnan(value)) return "NaN";
    if (std::isinf(value)) return value < 0 ? "-Infinity" : "Infinity";
    return NumberToText(value);
}

std::string NumberCell(const Array& array, std::size_t index)
{
    if (array.type == fake::ElementType::Decimal) return fake::DecimalTextAt(array, index);
    const fake::ComplexNumber value = fake::ComplexAt(array, index);
    return PlainNumber(value.real) + (value.imaginary != 0 ? "J" + PlainNumber(value.imaginary) : "");
}

std::u16string LinesOf(const Array& array)
{
    const Table rows = CharacterRows(array);
    std::u16string text;
    for (const Array& row : rows.cells)
        text += (text.empty() ? u"" : u"\n") + fake::TextOfArray(row);
    return text;
}

std::u16string CellText(const Array& cell, std::size_t row, std::size_t column)
{
    if (cell.type == fake::ElementType::Nested || cell.shape.size() > 2 ||
        (cell.shape.size() == 2 && !fake::IsCharacterType(cell.type))) {
        throw FormatError("row " + std::to_string(row + 1) + ", column " + std::to_string(column + 1) +
                          " holds an array that does not fit a cell");
    }
    if (fake::IsCharacterType(cell.type)) return LinesOf(cell);
    std::string text;
    const std::size_t count = fake::CountOf(cell);
    for (std::size_t i = 0; i < count; ++i)
        text += (i == 0 ? "" : " ") + NumberCell(cell, i);
    return {text.begin(), text.end()};
}

std::string QuotedCell(const std::string& text)
{
    std::string out = "\"";
    for (const char c : text)
        out += c == '"' ? "\"\"" : std::string(1, c);
    return out + "\"";
}

class TableWriter {
public:
    TableWriter(const Table& table, const CsvSource* source, char separator, int precision)
        : table_(table), source_(source), separator_(separator), precision_(precision)
    {
        rowMatches_.assign(table.rows, noMatch);
        columnMatches_.assign(table.columns, noMatch);
        if (source != nullptr) Align();
    }

    std::string Write()
    {
        std::string out =
            source_ != nullptr && source_->byteOrderMark ? std::string(byteOrderMark) : std::string();
        for (std::size_t row = 0; row < table_.rows; ++row) {
            WriteRow(out, row);
            out += EndingOf(row);
        }
        return out;
    }

private:
    const Array& Cell(std::size_t row, std::size_t column) const
    {
        return table_.cells[row * table_.columns + column];
    }

    bool Unedited(std::size_t row, std::size_t column, const CsvCell* cell) const
    {
        const Array& now = Cell(row, column);
        const std::optional<double> number = cell != nullptr ? NumberOf(cell->text) : std::nullopt;
        if (number && now.shape.empty() && fake::IsRealType(now.type)) {
            return CompareNumbers(*number, fake::RealAt(now, 0), precision_) == NumberChange::None;
        }
        const std::u16string before = cell != nullptr ? cell->text : u"";
        return WithLineEndsOf(CellText(now, row, column), before) == before;
    }

    void Align()
    {
        const std::size_t common = std::min(table_.columns, source_->columns);
        const auto sameRow = [&](std::size_t now, std::size_t then) {
            for (std::size_t column = 0; column < common; ++column) {
                if (!Unedited(now, column, CellAt(*source_, then, column))) return false;
            }
            return true;
        };
        rowMatches_ = AlignItems(table_.rows, source_->rows.size(), sameRow);
        const auto sameColumn = [&](std::size_t now, std::size_t then) {
            for (std::size_t row = 0; row < table_.rows; ++row) {
                if (rowMatches_[row] != noMatch &&
                    !Unedited(row, now, CellAt(*source_, rowMatches_[row], then)))
                    return false;
            }
            return true;
        };
        columnMatches_ = AlignItems(table_.columns, source_->columns, sameColumn);
    }

    const CsvCell* OriginalOf(std::size_t row, std::size_t column) const
    {
        if (rowMatches_[row] == noMatch || columnMatches_[column] == noMatch) return nullptr;
        return CellAt(*source_, rowMatches_[row], columnMatches_[column]);
    }

    std::string TextOfCell(std::size_t row, std::size_t column) const
    {
        const CsvCell* original = OriginalOf(row, column);
        if (original != nullptr && Unedited(row, column, original)) return original->raw;
        std::u16string wide = CellText(Cell(row, column), row, column);
        if (original != nullptr) wide = WithLineEndsOf(wide, original->text);
        const std::string text = Utf8FromUtf16(wide);
        const bool wasQuoted = original != nullptr && original->raw.starts_with('"');
        const bool needsQuotes = text.find_first_of(std::string("\"\r\n") + separator_) != std::string::npos;
        // A line with nothing in it would be no row at all.
        const bool alone = text.empty() && table_.columns == 1;
        return wasQuoted || needsQuotes || alone ? QuotedCell(text) : text;
    }

    // Cells that only fill a short row up are not written.
    std::size_t WidthOf(std::size_t row) const
    {
        if (rowMatches_[row] == noMatch || table_.columns != source_->columns) return table_.columns;
        std::size_t width = table_.columns;
        while (width > source_->rows[rowMatches_[row]].cells.size() && Unedited(row, width - 1, nullptr))
            --width;
        return width;
    }

    void WriteRow(std::string& out, std::size_t row) const
    {
        const std::size_t width = WidthOf(row);
        for (std::size_t column = 0; column < width; ++column) {
            if (column > 0) out += separator_;
            out += TextOfCell(row, column);
        }
    }

    std::string EndingOf(std::size_t row) const
    {
        const bool last = row + 1 == table_.rows;
        if (source_ == nullptr) return "\r\n";
        if (last) return source_->rows.empty() ? source_->ending : source_->rows.back().ending;
        const std::size_t match = rowMatches_[row];
        return match == noMatch || source_->rows[match].ending.empty() ? source_->ending
                                                                       : source_->rows[match].ending;
    }

    const Table& table_;
    const CsvSource* source_;
    char separator_;
    int precision_;
    std::vector<std::size_t> rowMatches_;
    std::vector<std::size_t> columnMatches_;
};

} // namespace

Document ReadCsv(std::string bytes, char separator)
{
    Document document;
    document.format = separator == ',' ? Format::Csv : Format::Tsv;
    document.bytes = std::move(bytes);
    auto source = std::make_shared<CsvSource>();
    std::string_view text = document.bytes;
    source->byteOrderMark = text.starts_with(byteOrderMark);
    if (source->byteOrderMark) text.remove_prefix(byteOrderMark.size());
    source->rows = TableReader(text, separator).ReadRows();
    for (const CsvRow& row : source->rows)
        source->columns = std::max(source->columns, row.cells.size());
    if (!source->rows.empty() && !source->rows.front().ending.empty())
        source->ending = source->rows.front().ending;
    document.array = TableArray(*source);
    document.csv = std::move(source);
    return document;
}

std::string WriteCsv(const Array& array, const Document* original, char separator, WriteContext& context)
{
    const Table table = TableOf(array);
    return TableWriter(table, original != nullptr ? original->csv.get() : nullptr, separator,
                       context.precision)
        .Write();
}

} // namespace vantrel::workbench
