#include "workbench/session/hosts.h"

#include <algorithm>
#include <iterator>

namespace vantrel::workbench {
namespace {

const HostRow* const rows[] = {&DyalogRow, &AplxRow, &MatlabRow};

} // namespace

const HostRow* FindHost(std::u16string_view name)
{
    const auto* const row = std::find_if(std::begin(rows), std::end(rows), [name](const HostRow* candidate) {
        return name == candidate->name;
    });
    return row == std::end(rows) ? nullptr : *row;
}

void* FindEntryOrRefuse(const EditorLibrary& library, const char* name)
{
    std::string reason;
    void* const entry = library.findEntry(library.state, name, reason);
    if (entry == nullptr) throw EditorRefusal{reason};
    return entry;
}

} // namespace vantrel::workbench
