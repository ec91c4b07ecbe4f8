#include <algorithm>
#include <string_view>
#include <utility>

#include "editor/edit_model.h"
#include "entry/trace.h"

namespace vantrel {

namespace {

bool IsTextType(const Scdr& node) noexcept
{
    return node.Type == TypeNested || node.Type == TypeCharacter;
}

bool MayStandInNumbers(const EditWindow& window, char16_t character) noexcept
{
    const std::int32_t rank = window.view->node->Rank;
    switch (character) {
    case u'-': return (window.view->context->langEnv->ViewCapabilities & ViewCapabilityHighMinus) == 0;
    case u' ': return rank > 0;
    case u'\r':
    case u'\n': return rank > 1;
    default: return std::u16string_view(u".eEjJ¯1234567890").find(character) != std::u16string_view::npos;
    }
}

// A scalar is one character and has one line.
bool FitsScalar(std::u16string_view text) noexcept
{
    return text.size() <= 1 && text != u"\n";
}

// Whether the node's type and rank allow the text; if not, the user has been told.
bool AcceptText(EditWindow& window, std::u16string_view text)
{
    const Scdr& node = *window.view->node;
    const auto fits = [&](char16_t character) { return MayStandInNumbers(window, character); };
    bool accepted =
        IsTextType(node) ? node.Rank > 0 || FitsScalar(text) : std::all_of(text.begin(), text.end(), fits);
    if (accepted && node.Rank >= 3 && text.find_first_of(u"\r\n") != std::u16string_view::npos) {
        window.effects->notify(window, EditNotifyPlaneLines);
        accepted = false;
    }
    if (!accepted) window.effects->beep(window, EditBeep::Exclamation);
    return accepted;
}

// A text with line feeds becomes records; a text of one line needs none. On failure the error is in ErrorCode.
bool SplitText(EditWindow& window, std::u16string_view text, RecordList& lines)
{
    if (text.find(u'\n') == std::u16string_view::npos) return true;
    // A line break at the very beginning would keep its carriage return, which only a text of its own may.
    if (text.size() >= 2 && text[0] == u'\r' && text[1] == u'\n') text.remove_prefix(1);
    if (StringToRecords(window.view->context, text.data(), static_cast<std::int64_t>(text.size()), lines,
                        false))
        return true;
    NotifyOutOfMemory(window);
    return false;
}

// Puts the records `lines` (at least two, left empty) between the two halves of a row. Either all of it happens or nothing.
void InsertLines(RecordList& list, std::int64_t row, std::int64_t column, RecordList& lines)
{
    const RecordText line = GetRecord(list, row);
    const std::int64_t tail = line.length - column;
    const std::int64_t last = lines.count - 1;
    SpliceRecord(lines, last, GetRecord(lines, last).length, 0, line.text + column, tail);
    const RecordText head = GetRecord(lines, 0);
    const Text first(head.text, static_cast<std::size_t>(head.length));
    EraseRecords(lines, 0, 1);
    // Growing and inserting may fail, taking units out of a row that has its own buffer does not.
    SpliceRecord(list, row, column, 0, first.data(), head.length);
    try {
        InsertRecords(list, row + 1, lines);
    } catch (VTERROR_CODE) {
        SpliceRecord(list, row, column, head.length, nullptr, 0);
        throw;
    }
    SpliceRecord(list, row, column + head.length, tail, nullptr, 0);
}

// Answers where the inserted text ends. Throws OutOfMemory; nothing has changed then.
EditCaret InsertText(EditWindow& window, EditCaret at, std::u16string_view text, RecordList& lines)
{
    RecordList& list = window.view->node->records;
    const std::int64_t row = FirstEditRow(window) + at.line;
    const auto length = static_cast<std::int64_t>(text.size());
    if (lines.count == 0) {
        if (length > 0) SpliceLine(window, at, 0, text.data(), length);
        return {at.column + length, at.line};
    }
    window.lineWidths.Forget();
    const EditCaret end{GetRecord(lines, lines.count - 1).length, at.line + lines.count - 1};
    InsertLines(list, row, at.column, lines);
    return end;
}

void SelectOnlyCharacter(EditWindow& window)
{
    MoveCaret(window, CaretHome, 0);
    SelectionStart(window);
    MoveCaret(window, 1, 0);
    SelectionEnd(window);
}

// The deletion and the insertion are one step: the deletion's record, where there is one, grows to cover both.
void RecordInsertion(EditWindow& window, EditCaret start, EditUndoRecord* deletion, EditUndoPtr step,
                     bool firstOfGroup) noexcept
{
    if (deletion == nullptr) {
        UndoAdd(window, std::move(step), Text(), start, firstOfGroup);
        return;
    }
    deletion->endColumn = StateOf(window).caretColumn;
    deletion->endLine = StateOf(window).caretLine;
}

// Puts the text at the caret, nothing being selected.
std::int32_t InsertAtCaret(EditWindow& window, std::u16string_view text, RecordList& lines,
                           EditUndoRecord* deletion, bool firstOfGroup)
{
    EditUndoPtr step = deletion == nullptr ? ReserveUndo(window) : nullptr;
    if (deletion == nullptr && step == nullptr) return 1;
    const EditCaret start = ClampToText(window, CaretOf(window));
    EditCaret end;
    try {
        end = InsertText(window, start, text, lines);
    } catch (VTERROR_CODE) {
        NotifyOutOfMemory(window);
        return 1;
    }
    PutCaret(window, end);
    // Where a deletion is all there is, it has seen to that itself.
    if (deletion == nullptr || !text.empty()) TextChanged(window);
    SelectionReset(window);
    RecordInsertion(window, start, deletion, std::move(step), firstOfGroup);
    SetModified(window);
    return 0;
}

} // namespace

std::int32_t PasteString(EditWindow& window, const char16_t* text, std::int64_t length, bool firstOfGroup)
{
    const TraceScope trace("paste.cpp", "PasteString");
    const std::u16string_view view(text, static_cast<std::size_t>(length));
    if (EditRows(window) <= 0 || !AcceptText(window, view)) return 1;
    const EditPlace before = PlaceOf(window);
    if (IsTextType(*window.view->node) && window.view->node->Rank == 0) SelectOnlyCharacter(window);
    OwnedRecords lines;
    EditUndoRecord* deletion = nullptr;
    std::int32_t result = SplitText(window, view, lines.list) ? 0 : 1;
    if (result == 0 && !IsSelectionEmpty(window)) result = DeleteMarked(window, firstOfGroup, &deletion);
    if (result == 0) result = InsertAtCaret(window, view, lines.list, deletion, firstOfGroup);
    if (result != 0 && deletion == nullptr) PutBack(window, before);
    return result;
}

} // namespace vantrel
