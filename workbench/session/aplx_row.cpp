#include "hosts/fake_aplx.h"
#include "workbench/session/hosts.h"

namespace vantrel::workbench {
namespace {

// What an edit may add to an array before the interpreter's buffer is too short for it.
constexpr std::size_t RoomToGrow = std::size_t{1} << 26;

bool Accept(const Options&, fake::Array& array, std::string& reason)
{
    return fake::AplxCanHold(array, &reason);
}

std::string TextOf(const fake::AplxEditResult& result)
{
    switch (result.status) {
    case fake::AplxStatus::Success: return result.hasResult ? "" : "an error and gives no array back";
    case fake::AplxStatus::TooLong: return "an array that is too long for the interpreter's buffer";
    case fake::AplxStatus::NoRoom: return "that it has no memory";
    default: return "status " + std::to_string(result.status);
    }
}

EditOutcome Edit(const Options&, const std::u16string&, const fake::Array& argument,
                 const EditorLibrary& library)
{
    fake::ProcessorEntry entry = nullptr;
    TakeEntry(library, "processor", entry);
    fake::Aplx interpreter(entry);
    const std::size_t bufferBytes = 4 * fake::MakeAplxRecord(argument).size() + RoomToGrow;
    fake::AplxEditResult result = interpreter.Edit(argument, bufferBytes);
    std::string error = TextOf(result);
    return {result.hasResult, result.unchanged, std::move(result.result), std::move(error),
            std::move(result.complaints)};
}

} // namespace

const HostRow AplxRow = {u"aplx", Accept, Edit};

} // namespace vantrel::workbench
