#include "view/open_object.h"

#include <algorithm>

#include "entry/names.h"
#include "entry/trace.h"
#include "model/edit_state.h"
#include "view/busy.h"
#include "view/layout.h"
#include "view/messages.h"
#include "view/report.h"

namespace vantrel {
namespace {

struct ColumnRange {
    std::int64_t first;
    std::int64_t end;
};

// A selection within one line counts; without one the whole line does.
ColumnRange MarkedColumns(const EditState& state, std::int64_t length) noexcept
{
    const ColumnRange all{0, length};
    if (state.anchorLine != state.endLine || state.anchorColumn == state.endColumn) return all;
    const std::int64_t first = std::min(state.anchorColumn, state.endColumn);
    const std::int64_t end = std::max(state.anchorColumn, state.endColumn);
    return first >= 0 && end <= length ? ColumnRange{first, end} : all;
}

Text Trimmed(const char16_t* text, std::int64_t length)
{
    const char16_t* end = text + length;
    while (text != end && *text == u' ')
        ++text;
    while (end != text && end[-1] == u' ')
        --end;
    return {text, end};
}

// False: the host has failed. One without variables makes no object of the name and refuses to open what has none.
bool OpenName(EditContext* context, const Text& name)
{
    HostObject const object = context->langEnv->Operations.UnicodeToObject(
        context, name.c_str(), static_cast<std::int64_t>(name.size()));
    return !HasError(context) && context->openVariable(context, object) == 0;
}

} // namespace

Text NameAtCaret(const View& view)
{
    TraceScope trace("open_object.cpp", "NameAtCaret");
    const Scdr* const node = Selected(view);
    if (node == nullptr || node->Type != TypeCharacter || node->editState == nullptr) return {};
    const EditState& state = *node->editState;
    if (state.caretLine < 0 || state.caretLine >= ShownRows(*node)) return {};
    const RecordText line = GetRecord(node->records, FirstShownRow(*node) + state.caretLine);
    const ColumnRange marked =
        state.anchorLine == state.caretLine ? MarkedColumns(state, line.length) : ColumnRange{0, line.length};
    return Trimmed(line.text + marked.first, marked.end - marked.first);
}

void OpenNamedObject(View& view)
{
    TraceScope trace("open_object.cpp", "OpenNamedObject");
    if (view.context->openVariable == nullptr || Selected(view) == nullptr) return;
    const BusyMark busy(view);
    const Text name = NameAtCaret(view);
    if (IsUnicodeValidName(name.c_str(), *view.context->langEnv) == 0) {
        ShowError(view, MessageNameIsInvalid);
    } else if (!OpenName(view.context, name)) {
        ReportHostError(view);
    }
}

} // namespace vantrel
