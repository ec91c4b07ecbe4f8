#include <utility>

#include "editor/edit_model.h"
#include "entry/trace.h"

namespace vantrel {

namespace {

void Push(EditUndoRecord*& stack, EditUndoRecord* record) noexcept
{
    record->next = stack;
    stack = record;
}

EditUndoRecord* Pop(EditUndoRecord*& stack) noexcept
{
    EditUndoRecord* record = stack;
    stack = std::exchange(record->next, nullptr);
    return record;
}

// A change is taken back where it was made, whatever plane has been paged to since.
void ShowPlaneOf(EditWindow& window, const EditUndoRecord& record)
{
    if (CurrentPlane(*window.view->node) != record.plane) window.effects->showPlane(window, record.plane);
}

// Selects what the change made and puts back what it removed; the inverse goes on the undo stack.
std::int32_t ApplyEditUndo(EditWindow& window, const EditUndoRecord& record, bool firstOfGroup)
{
    const TraceScope trace("undo.cpp", "ApplyEditUndo");
    ShowPlaneOf(window, record);
    MoveCaretTo(window, {record.startColumn, record.startLine});
    SelectionStart(window);
    MoveCaretTo(window, {record.endColumn, record.endLine});
    SelectionEnd(window);
    window.inUndo = true;
    const auto length = static_cast<std::int64_t>(record.text.size());
    const std::int32_t result = PasteString(window, record.text.c_str(), length, firstOfGroup);
    window.inUndo = false;
    SelectionReset(window);
    window.effects->invalidate(window);
    return result;
}

// Moves the inverse just made to the redo stack. The first marked record ends it: after the second record of a group that is an older
// step, which goes along unapplied. Users' habits are built on that, so it stays.
void MoveInverseToRedo(EditState& state, const EditUndoRecord* older) noexcept
{
    while (state.undo != nullptr) {
        state.stepMissing = state.stepMissing || state.undo == older;
        EditUndoRecord* record = Pop(state.undo);
        Push(state.redo, record);
        if (record->firstOfGroup) return;
    }
}

// A step whose undoing ran out of memory waits for another try, below the record of what it has changed already.
void KeepForAnotherTry(EditState& state, const EditUndoRecord* older, EditUndoPtr step) noexcept
{
    Push(state.undo == older ? state.undo : state.undo->next, step.release());
}

// With every change taken back the text says again what the node's data says, and saving need not read it: a number shown in fewer
// digits than it has keeps them all.
void TextUnchanged(EditWindow& window) noexcept
{
    EditState& state = StateOf(window);
    state.modified = false;
    if (!state.stepMissing) window.view->node->records.flags &= static_cast<std::uint8_t>(~RecordsEdited);
}

} // namespace

EditUndoPtr ReserveUndo(EditWindow& window)
{
    const TraceScope trace("undo.cpp", "ReserveUndo");
    try {
        return EditUndoPtr(NewEditUndo());
    } catch (VTERROR_CODE) {
        NotifyOutOfMemory(window);
        return nullptr;
    }
}

void UndoAdd(EditWindow& window, EditUndoPtr record, Text&& removed, EditCaret start,
             bool firstOfGroup) noexcept
{
    const TraceScope trace("undo.cpp", "UndoAdd");
    EditState& state = StateOf(window);
    if (!window.inUndo) FreeEditUndo(&state.redo);
    record->startColumn = start.column;
    record->startLine = start.line;
    record->endColumn = state.caretColumn;
    record->endLine = state.caretLine;
    record->plane = CurrentPlane(*window.view->node);
    record->text = std::move(removed);
    record->firstOfGroup = firstOfGroup;
    Push(state.undo, record.release());
}

std::int32_t Undo(EditWindow& window)
{
    const TraceScope trace("undo.cpp", "Undo");
    EditState& state = StateOf(window);
    if (state.undo == nullptr) return window.view->node->Rank <= 1 ? 1 : 0;
    if (RefuseChange(window)) return 0;
    bool firstApplied = true;
    bool groupDone = false;
    while (!groupDone && state.undo != nullptr) {
        EditUndoPtr record(Pop(state.undo));
        const EditUndoRecord* const older = state.undo;
        groupDone = record->firstOfGroup;
        window.outOfMemory = false;
        if (ApplyEditUndo(window, *record, firstApplied) == 0) {
            MoveInverseToRedo(state, older);
        } else if (window.outOfMemory) {
            KeepForAnotherTry(state, older, std::move(record));
            return 0;
        } else {
            state.stepMissing = true;
        }
        firstApplied = false;
    }
    if (state.undo == nullptr) TextUnchanged(window);
    return 1;
}

std::int32_t Redo(EditWindow& window)
{
    const TraceScope trace("undo.cpp", "Redo");
    EditState& state = StateOf(window);
    if (state.redo == nullptr || RefuseChange(window)) return 0;
    bool firstApplied = true;
    bool groupDone = false;
    while (!groupDone && state.redo != nullptr) {
        EditUndoPtr record(Pop(state.redo));
        const EditUndoRecord* const newest = state.undo;
        groupDone = record->firstOfGroup;
        window.outOfMemory = false;
        const std::int32_t refused = ApplyEditUndo(window, *record, firstApplied);
        // Half done it cannot be tried again, for its range has gone; the half can be undone.
        if (refused != 0 && window.outOfMemory) {
            if (state.undo == newest) Push(state.redo, record.release());
            return 0;
        }
        firstApplied = false;
    }
    return 1;
}

bool CanUndo(const EditWindow& window) noexcept
{
    return StateOf(window).undo != nullptr;
}

bool CanRedo(const EditWindow& window) noexcept
{
    return StateOf(window).redo != nullptr;
}

void EmptyUndo(EditWindow& window) noexcept
{
    const TraceScope trace("undo.cpp", "EmptyUndo");
    EditState& state = StateOf(window);
    state.stepMissing = state.stepMissing || state.undo != nullptr;
    FreeEditUndo(&state.undo);
    FreeEditUndo(&state.redo);
}

void FreeRedo(EditWindow& window) noexcept
{
    const TraceScope trace("undo.cpp", "FreeRedo");
    FreeEditUndo(&StateOf(window).redo);
}

} // namespace vantrel
