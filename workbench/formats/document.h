#pragma once

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/array.h"

// A file as an array, with what the array does not show: how the file wrote its values. A document goes back into its
// own format so that whatever the user did not edit looks as it did before.
namespace vantrel::workbench {

enum class Format { Json, Csv, Tsv, Npy, Ccdr };

// A file that cannot be read or an array that a format cannot hold; what() names the place and the reason.
struct FormatError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct JsonSource;
struct CsvSource;
struct NpySource;
struct CcdrSource;

struct Document {
    Format format = Format::Json;
    fake::Array array;
    std::string bytes;              // the file as it was
    std::vector<std::string> notes; // what the user should know, such as digits that do not fit
    // The side description, in the one that belongs to `format`.
    std::shared_ptr<const JsonSource> json;
    std::shared_ptr<const CsvSource> csv;
    std::shared_ptr<const NpySource> npy;
    std::shared_ptr<const CcdrSource> ccdr;
};

struct WriteContext {
    // Digits at which numbers were shown: a number that only lost what was not shown is not an edited one.
    int precision = 15;
    std::vector<std::string> notes;
};

// By the name's extension, in any case.
std::optional<Format> FormatOfName(std::u16string_view fileName);

// Throws FormatError.
Document ReadDocument(Format format, std::string bytes);
// `original` is where the array came from, or null; it guides the writing when it has the same format. Throws
// FormatError where the format cannot hold the array.
std::string WriteDocument(Format format, const fake::Array& array, const Document* original,
                          WriteContext& context);

} // namespace vantrel::workbench
