#include "workbench/formats/document.h"

#include "workbench/formats/ccdr.h"
#include "workbench/formats/csv.h"
#include "workbench/formats/json.h"
#include "workbench/formats/npy.h"

namespace vantrel::workbench {
namespace {

struct Extension {
    std::u16string_view text;
    Format format;
};

constexpr Extension extensions[] = {
    {u".json", Format::Json}, {u".csv", Format::Csv},   {u".tsv", Format::Tsv},
    {u".npy", Format::Npy},   {u".ccdr", Format::Ccdr},
};

bool EndsWithAnyCase(std::u16string_view name, std::u16string_view ending)
{
    if (name.size() < ending.size()) return false;
    name.remove_prefix(name.size() - ending.size());
    for (std::size_t i = 0; i < ending.size(); ++i) {
        const char16_t unit =
            name[i] >= u'A' && name[i] <= u'Z' ? static_cast<char16_t>(name[i] + 32) : name[i];
        if (unit != ending[i]) return false;
    }
    return true;
}

} // namespace

std::optional<Format> FormatOfName(std::u16string_view fileName)
{
    for (const Extension& extension : extensions) {
        if (EndsWithAnyCase(fileName, extension.text)) return extension.format;
    }
    return std::nullopt;
}

Document ReadDocument(Format format, std::string bytes)
{
    switch (format) {
    case Format::Json: return ReadJson(std::move(bytes));
    case Format::Csv: return ReadCsv(std::move(bytes), ',');
    case Format::Tsv: return ReadCsv(std::move(bytes), '\t');
    case Format::Npy: return ReadNpy(std::move(bytes));
    case Format::Ccdr: return ReadCcdr(std::move(bytes));
    }
    throw FormatError("unknown format");
}

std::string WriteDocument(Format format, const fake::Array& array, const Document* original,
                          WriteContext& context)
{
    const Document* same = original != nullptr && original->format == format ? original : nullptr;
    switch (format) {
    case Format::Json: return WriteJson(array, same, context);
    case Format::Csv: return WriteCsv(array, same, ',', context);
    case Format::Tsv: return WriteCsv(array, same, '\t', context);
    case Format::Npy: return WriteNpy(array, same, context);
    case Format::Ccdr: return WriteCcdr(array, same);
    }
    throw FormatError("unknown format");
}

} // namespace vantrel::workbench
