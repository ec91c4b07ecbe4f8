#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "hosts/array.h"
#include "workbench/session/options.h"

// The interpreters that the workbench plays: one row of a table each.
namespace vantrel::workbench {

// The editor's library, loaded. `findEntry` gives an exported entry, null with the reason where there is none.
struct EditorLibrary {
    void* state = nullptr;
    void* (*findEntry)(void* state, const char* name, std::string& reason) = nullptr;
    // Makes MATLAB's functions known to the process, where the editor will look for them; null where that is not needed.
    bool (*offerMatlab)(std::string& reason) = nullptr;
};

// Thrown where no edit could take place; the text is for the user.
struct EditorRefusal {
    std::string reason;
};

// How one edit ended, whatever interpreter was played.
struct EditOutcome {
    bool hasResult = false;
    bool unchanged = false; // the result is the argument itself
    fake::Array result;
    std::string error;                   // what the editor reported to the interpreter; empty: nothing
    std::vector<std::string> complaints; // what the interpreter's books say against the editor
};

struct HostRow {
    const char16_t* name; // as the command line gives it
    // Makes of a file's array one that the interpreter can hold; false with the reason where it cannot.
    bool (*accept)(const Options& options, fake::Array& array, std::string& reason);
    // One edit through the library's own entries. Throws EditorRefusal; std::length_error for an array too big.
    EditOutcome (*edit)(const Options& options, const std::u16string& title, const fake::Array& argument,
                        const EditorLibrary& library);
};

extern const HostRow DyalogRow;
extern const HostRow AplxRow;
extern const HostRow MatlabRow;

// The row of a host, null for a name that is none.
const HostRow* FindHost(std::u16string_view name);
// Throws EditorRefusal.
void* FindEntryOrRefuse(const EditorLibrary& library, const char* name);
template <typename Function> void TakeEntry(const EditorLibrary& library, const char* name, Function& entry)
{
    entry = reinterpret_cast<Function>(FindEntryOrRefuse(library, name));
}

} // namespace vantrel::workbench
