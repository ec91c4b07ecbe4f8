// Array undo and redo: whole copies of what was replaced, each with the place that it came from.
//
// An entry names its place twice: by the pick index, which is text for people and for the command log, and by the item positions from
// the root down, which also lead into the prototypes of empty arrays, where no pick index does.
//
// Both stacks belong to the view; whoever drops the view or its tree empties them. Nothing here throws.
#pragma once

#include "view/view.h"

namespace vantrel {

enum UndoFlag : std::uint8_t {
    UndoLinked = 0x02, // made together with the entry below it on the stack
};

struct UndoEntry {
    UndoEntry* next;       // the older one
    char16_t* pickIndex;   // owned
    std::int64_t* path;    // owned: item positions from the root down
    std::int64_t pathSize; // levels
    Scdr* copy;            // owned
    std::uint8_t flags;    // UndoFlag
};

// Saves the selected node before it is replaced, and forgets what could be redone unless a redo is going on. Where memory is lacking the
// action goes on without undo; ErrorCode and a message are left.
void UndoPush(View& view);
// Saves the selected node in an entry and puts it on the redo stack. 1 on success; 0 empties both stacks and leaves the entry to the caller.
std::int32_t RedoPush(View& view, UndoEntry& entry);
void UndoPurge(View& view) noexcept;
void RedoPurge(View& view) noexcept;
// Takes the newest entry off the undo stack and drops it: the replacement that it was saved for did not take place.
void UndoDropTop(View& view) noexcept;
// The commands. With an empty stack nothing happens.
void Undo(View& view);
void Redo(View& view);

} // namespace vantrel
