#include "model/edit_state.h"

#include <type_traits>

#include "entry/trace.h"

namespace vantrel {

static_assert(std::is_trivially_destructible_v<EditState>, "the state is given back without a destructor");

EditState& EditStateOf(Scdr& node)
{
    TraceScope trace("edit_state.cpp", "EditStateOf");
    if (node.editState == nullptr) node.editState = new (AllocateBytes(sizeof(EditState))) EditState{};
    return *node.editState;
}

EditUndoRecord* NewEditUndo()
{
    TraceScope trace("edit_state.cpp", "NewEditUndo");
    return new (AllocateBytes(sizeof(EditUndoRecord))) EditUndoRecord{};
}

void FreeEditUndo(EditUndoRecord** stack) noexcept
{
    TraceScope trace("edit_state.cpp", "FreeEditUndo");
    while (EditUndoRecord* record = *stack) {
        *stack = record->next;
        record->~EditUndoRecord();
        FreeBytes(record);
    }
}

void FreeEditState(EditState** state) noexcept
{
    TraceScope trace("edit_state.cpp", "FreeEditState");
    if (*state == nullptr) return;
    FreeEditUndo(&(*state)->undo);
    FreeEditUndo(&(*state)->redo);
    FreeBytes(*state);
    *state = nullptr;
}

} // namespace vantrel
