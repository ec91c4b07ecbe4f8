#include "editor/edit_model.h"
#include "entry/trace.h"
#include "model/record_widths.h"

namespace vantrel {

namespace {

constexpr char16_t LineBreak[] = u"\r\n";

// Selects what one movement of the caret passes.
void SelectByMoving(EditWindow& window, std::int64_t columns)
{
    SelectionStart(window);
    MoveCaret(window, columns, 0);
    SelectionEnd(window);
}

// Replaces what a movement of the caret passes. Where the array refuses the text, the caret has not moved either.
void ReplacePassed(EditWindow& window, std::int64_t columns, const char16_t* text, std::int64_t length)
{
    const EditPlace before = PlaceOf(window);
    const EditUndoRecord* const newest = StateOf(window).undo;
    SelectByMoving(window, columns);
    if (PasteString(window, text, length, true) != 0 && StateOf(window).undo == newest)
        PutBack(window, before);
}

void DeleteSelectedOr(EditWindow& window, std::int64_t columns)
{
    if (RefuseChange(window)) return;
    if (IsSelectionEmpty(window)) {
        ReplacePassed(window, columns, u"", 0);
    } else {
        PasteString(window, u"", 0, true);
    }
}

} // namespace

void SpliceLine(EditWindow& window, EditCaret at, std::int64_t removed, const char16_t* text,
                std::int64_t length)
{
    const TraceScope trace("typing.cpp", "SpliceLine");
    RecordList& list = window.view->node->records;
    const TextRow before = EditRow(window, at.line);
    SpliceRecord(list, before.row, at.column, removed, text, length);
    const std::int64_t width = window.lineWidths.Change(window.view->widths, before,
                                                        GetRecord(list, before.row), at.column, removed);
    if (width >= 0) SetRecordWidth(list, before.row, width);
}

void TypeChar(EditWindow& window, char16_t character)
{
    const TraceScope trace("typing.cpp", "TypeChar");
    if (RefuseChange(window) || EditRows(window) <= 0) return;
    if (IsSelectionEmpty(window) && IsOvertyping(window)) {
        // At a line's end this passes the line break: the typed character takes its place and the lines join.
        ReplacePassed(window, 1, &character, 1);
    } else {
        PasteString(window, &character, 1, true);
    }
}

void DeleteBack(EditWindow& window)
{
    const TraceScope trace("typing.cpp", "DeleteBack");
    DeleteSelectedOr(window, -1);
}

void DeleteForward(EditWindow& window)
{
    const TraceScope trace("typing.cpp", "DeleteForward");
    DeleteSelectedOr(window, 1);
}

void DeleteToLineEnd(EditWindow& window)
{
    const TraceScope trace("typing.cpp", "DeleteToLineEnd");
    if (!RefuseChange(window)) ReplacePassed(window, CaretEnd, u"", 0);
}

void TypeLineBreak(EditWindow& window)
{
    const TraceScope trace("typing.cpp", "TypeLineBreak");
    const Scdr& node = *window.view->node;
    if (RefuseChange(window)) return;
    const bool numericVector = node.Rank == 1 && node.Type != TypeCharacter && node.Type != TypeNested;
    if (numericVector || node.Rank == 0 || node.Rank >= 3) {
        window.effects->beep(window, EditBeep::Asterisk);
        return;
    }
    PasteString(window, LineBreak, 2, true);
}

} // namespace vantrel
