// The text form of arrays on the clipboard: cells separated by TAB, rows by CR LF, for and from other programs.
#pragma once

#include <optional>

#include "model/scdr.h"

namespace vantrel {

// The text of an array: a simple array's records, one line each; a nested vector of one-line texts separated by TABs; a nested matrix of them,
// one line a row; the text of a nested scalar's item. Every other array has none. Throws.
[[nodiscard]] std::optional<Text> ScdrRecordsToText(EditContext* context, const Scdr& node);

// The array of a text. Without TAB and line feed: a character vector. With line feeds: a nested matrix, with TABs alone: a nested vector, of
// the cells, those that the host reads as numbers as numbers. The first row counts its cells, the later ones their TABs alone; the largest count is
// the number of columns. Cells fill the matrix one after another: what is left over is not taken, places left over are empty texts.
// Null with ErrorCode on failure: 9, or 19 for a table far larger than its text.
[[nodiscard]] ScdrPtr TextToScdr(EditContext* context, const char16_t* text, std::int64_t length);

} // namespace vantrel
