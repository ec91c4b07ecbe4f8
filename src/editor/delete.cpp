#include "editor/edit_model.h"
#include "entry/trace.h"

namespace vantrel {

namespace {

Text CopyTail(const RecordList& list, std::int64_t row, std::int64_t column)
{
    const RecordText record = GetRecord(list, row);
    return Text(record.text + column, static_cast<std::size_t>(record.length - column));
}

std::int64_t LengthOf(const Text& text) noexcept
{
    return static_cast<std::int64_t>(text.size());
}

// What follows the range in its last row replaces what follows its start in the first; the rows after the first go. Either all of it
// happens or nothing.
void JoinLines(RecordList& list, std::int64_t first, std::int64_t startColumn, std::int64_t last,
               std::int64_t endColumn)
{
    const Text removed = CopyTail(list, first, startColumn);
    const Text kept = CopyTail(list, last, endColumn);
    // Growing and erasing may fail, taking units out of a row that has its own buffer does not.
    SpliceRecord(list, first, startColumn, 0, kept.data(), LengthOf(kept));
    try {
        EraseRecords(list, first + 1, last - first);
    } catch (VTERROR_CODE) {
        SpliceRecord(list, first, startColumn, LengthOf(kept), nullptr, 0);
        throw;
    }
    SpliceRecord(list, first, startColumn + LengthOf(kept), LengthOf(removed), nullptr, 0);
}

void RemoveText(EditWindow& window, const EditSelection& range)
{
    if (range.start.line == range.end.line) {
        SpliceLine(window, range.start, range.end.column - range.start.column, nullptr, 0);
        return;
    }
    const std::int64_t first = FirstEditRow(window);
    window.lineWidths.Forget();
    JoinLines(window.view->node->records, first + range.start.line, range.start.column,
              first + range.end.line, range.end.column);
}

RecordRange RangeOf(const EditSelection& selection) noexcept
{
    return {selection.start.column, selection.start.line, selection.end.column, selection.end.line};
}

} // namespace

std::int32_t DeleteMarked(EditWindow& window, bool firstOfGroup, EditUndoRecord** pushed)
{
    const TraceScope trace("delete.cpp", "DeleteMarked");
    if (RefuseChange(window) || EditRows(window) <= 0 || IsSelectionEmpty(window)) return 1;
    const Scdr& node = *window.view->node;
    const EditSelection range = NormalisedSelection(window);
    if (node.Rank >= 3 && range.start.line != range.end.line) {
        window.effects->notify(window, EditNotifyPlaneLines);
        return 1;
    }
    EditUndoPtr step = ReserveUndo(window);
    if (step == nullptr) return 1;
    Text removed;
    try {
        removed = RecordsToString(node.records, FirstEditRow(window), RangeOf(range));
        RemoveText(window, range);
    } catch (VTERROR_CODE) {
        NotifyOutOfMemory(window);
        return 1;
    }
    PutCaret(window, range.start);
    SelectionReset(window);
    TextChanged(window);
    if (pushed != nullptr) *pushed = step.get();
    UndoAdd(window, std::move(step), std::move(removed), range.start, firstOfGroup);
    SetModified(window);
    return 0;
}

} // namespace vantrel
