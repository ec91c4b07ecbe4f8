#include "hosts/fake_dyalog.h"
#include "workbench/formats/utf.h"
#include "workbench/session/hosts.h"

namespace vantrel::workbench {
namespace {

std::string HexOf(char32_t c)
{
    static const char digits[] = "0123456789ABCDEF";
    std::string text = "U+";
    for (int shift = c > 0xFFFF ? 20 : 12; shift >= 0; shift -= 4)
        text += digits[c >> shift & 15];
    return text;
}

bool Accept(const Options& options, fake::Array& array, std::string& reason)
{
    char32_t missing = 0;
    if (!options.classic || fake::ToAtomicCharacters(array, &missing)) return true;
    reason = "the Classic edition has no character " + HexOf(missing);
    return false;
}

fake::EntryPoints FindEntries(const EditorLibrary& library)
{
    fake::EntryPoints entries;
    TakeEntry(library, "DyalogGetInterpreterFunctions", entries.getInterpreterFunctions);
    TakeEntry(library, "DyalogEditArray", entries.editArray);
    TakeEntry(library, "DyalogEditArrayTitle", entries.editArrayTitle);
    return entries;
}

std::string TextOf(const fake::SignalledError& error)
{
    if (!error.signalled) return {};
    const std::string text = "error " + std::to_string(error.number);
    return error.hasMessage ? text + ": " + Utf8FromUtf16(error.message) : text;
}

EditOutcome Edit(const Options& options, const std::u16string& title, const fake::Array& argument,
                 const EditorLibrary& library)
{
    fake::InterpreterOptions interpreterOptions;
    interpreterOptions.unicode = !options.classic;
    interpreterOptions.printPrecision = options.precision;
    fake::Interpreter interpreter(interpreterOptions);
    fake::EditOptions editOptions;
    editOptions.title = title;
    fake::EditResult result = interpreter.Edit(FindEntries(library), argument, editOptions);
    if (result.handshake != 0) {
        throw EditorRefusal{"the editor refuses the interpreter (" + std::to_string(result.handshake) + ")"};
    }
    fake::FromAtomicCharacters(result.result);
    return {result.hasResult, result.unchanged, std::move(result.result), TextOf(result.error),
            std::move(result.complaints)};
}

} // namespace

const HostRow DyalogRow = {u"dyalog", Accept, Edit};

} // namespace vantrel::workbench
