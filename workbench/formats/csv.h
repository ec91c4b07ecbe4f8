#pragma once

#include <string>
#include <vector>

#include "workbench/formats/document.h"

// Comma- and tab-separated tables. A table is a nested matrix of its rows, the header being the first. A cell is a
// character vector; a cell that is a number of at most 15 digits, without leading zeros, and, being whole, of at most 32
// bits, is a numeric scalar. Shorter rows are filled up with empty texts, which are not written again.
// Back: a text, a number, numbers with blanks between them; cells that were not edited keep the very text they had.
namespace vantrel::workbench {

struct CsvCell {
    std::string raw;     // as in the file, with its quotes
    std::u16string text; // without them
};

struct CsvRow {
    std::vector<CsvCell> cells;
    std::string ending; // the line end behind the row, empty at the end of the file
};

struct CsvSource {
    std::vector<CsvRow> rows;
    std::size_t columns = 0;
    std::string ending = "\r\n"; // for new rows
    bool byteOrderMark = false;
};

Document ReadCsv(std::string bytes, char separator);
std::string WriteCsv(const fake::Array& array, const Document* original, char separator,
                     WriteContext& context);

} // namespace vantrel::workbench
