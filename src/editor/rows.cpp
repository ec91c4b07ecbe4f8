#include <algorithm>

#include "editor/edit_model.h"
#include "entry/trace.h"

namespace vantrel {

bool HasEditedNode(const EditWindow& window) noexcept
{
    if (window.view == nullptr || window.view->node == nullptr) return false;
    return IsSimple(*window.view->node) && window.view->node->editState != nullptr;
}

std::int64_t FirstEditRow(const EditWindow& window) noexcept
{
    const Scdr& node = *window.view->node;
    return node.Rank < 3 ? 0 : std::min(Rows(node) * CurrentPlane(node), node.records.count);
}

std::int64_t EditRows(const EditWindow& window) noexcept
{
    const Scdr& node = *window.view->node;
    if (node.Rank < 3) return node.records.count;
    return std::min(Rows(node), node.records.count - FirstEditRow(window));
}

RecordText EditLine(const EditWindow& window, std::int64_t line) noexcept
{
    if (line < 0 || line >= EditRows(window)) return {};
    return GetRecord(window.view->node->records, FirstEditRow(window) + line);
}

TextRow EditRow(const EditWindow& window, std::int64_t line) noexcept
{
    return {FirstEditRow(window) + line, EditLine(window, line)};
}

EditCaret ClampToText(const EditWindow& window, EditCaret caret) noexcept
{
    const std::int64_t last = std::max<std::int64_t>(EditRows(window) - 1, 0);
    const std::int64_t line = std::clamp<std::int64_t>(caret.line, 0, last);
    return {std::clamp<std::int64_t>(caret.column, 0, EditLine(window, line).length), line};
}

bool IsLocked(const EditWindow& window) noexcept
{
    return window.view->node->Type == TypeCharacter && IsNumericFind(window.view->find);
}

bool RefuseChange(EditWindow& window)
{
    const TraceScope trace("rows.cpp", "RefuseChange");
    if (!window.readOnly && !IsLocked(window)) return false;
    window.effects->beep(window, EditBeep::Asterisk);
    return true;
}

} // namespace vantrel
