// What the cell editor remembers of a node between visits: caret, selection, undo and scroll position.
// Owned by the node, made when the editor first takes the node into use.
#pragma once

#include <memory>

#include "model/scdr.h"

namespace vantrel {

// One undoable replacement of text, newest first. Undoing selects start .. end and puts `text` there.
struct EditUndoRecord {
    EditUndoRecord* next = nullptr;
    std::int64_t startColumn = 0;
    std::int64_t startLine = 0;
    std::int64_t endColumn = 0;
    std::int64_t endLine = 0;
    std::int64_t plane = 0; // the one that was shown
    Text text;              // what the change removed, lines joined by CR LF
    bool firstOfGroup = true;
};

struct EditState {
    std::int64_t caretColumn = 0; // units, 0 .. length of the caret's record
    std::int64_t caretLine = 0;   // row within the shown plane
    EditUndoRecord* undo = nullptr;
    EditUndoRecord* redo = nullptr;
    ScrollRecord scroll;
    std::int64_t maximumWidth = 0; // widest record, pixels
    std::int64_t anchorColumn = 0;
    std::int64_t anchorLine = 0;
    std::int64_t endColumn = 0;
    std::int64_t endLine = 0;
    bool modified = false;
    bool inUse = false; // an edit window has initialised it
    bool stepMissing =
        false; // a step was dropped or left out: undoing the rest does not bring the first text back
};

// The node's state, made on first use. Throws OutOfMemory.
EditState& EditStateOf(Scdr& node);
// A new undo record on no stack, empty. Throws OutOfMemory.
[[nodiscard]] EditUndoRecord* NewEditUndo();
// Frees the state with both stacks, or a stack, and clears the pointer. Null is ignored.
void FreeEditState(EditState** state) noexcept;
void FreeEditUndo(EditUndoRecord** stack) noexcept;

struct EditUndoDeleter {
    void operator()(EditUndoRecord* record) const noexcept { FreeEditUndo(&record); }
};
using EditUndoPtr = std::unique_ptr<EditUndoRecord, EditUndoDeleter>;

} // namespace vantrel
