#include <stdexcept>

#include "hosts/fake_matlab.h"
#include "workbench/session/hosts.h"

namespace vantrel::workbench {
namespace {

bool Accept(const Options&, fake::Array& array, std::string& reason)
{
    return fake::MatlabCanHold(array, &reason);
}

// What an edit left, in terms of the array that went in.
fake::Array ResultOf(const fake::MexResult& result, const fake::Array& argument)
{
    if (!result.hasResult) return {};
    try {
        return fake::ArrayFromMatlab(result.result, &argument);
    } catch (const std::invalid_argument&) {
        throw EditorRefusal{"the result is nothing that a file holds: " + fake::Dump(result.result)};
    }
}

EditOutcome Edit(const Options&, const std::u16string&, const fake::Array& argument,
                 const EditorLibrary& library)
{
    std::string reason;
    if (library.offerMatlab != nullptr && !library.offerMatlab(reason)) throw EditorRefusal{reason};
    fake::MexFunction entry = nullptr;
    TakeEntry(library, "mexFunction", entry);
    fake::Matlab matlab;
    fake::MexResult result = matlab.Call(entry, 1, {fake::MatlabFromArray(argument)});
    const std::string error =
        result.raised ? "error " + result.error.identifier + ": " + result.error.text : std::string();
    return {result.hasResult, result.unchanged, ResultOf(result, argument), error,
            std::move(result.complaints)};
}

} // namespace

const HostRow MatlabRow = {u"matlab", Accept, Edit};

} // namespace vantrel::workbench
