#include "view/undo.h"

#include <algorithm>
#include <utility>

#include "entry/trace.h"
#include "model/tree_walk.h"
#include "view/actions.h"
#include "view/layout.h"
#include "view/pick_index.h"
#include "view/selection.h"

namespace vantrel {
namespace {

constexpr char16_t ClearedMessage[] = u"Out of storage.  Undo buffer cleared";

void FreeEntry(UndoEntry* entry) noexcept
{
    if (entry == nullptr) return;
    FreeBytes(entry->pickIndex);
    FreeBytes(entry->path);
    FreeScdr(&entry->copy);
    FreeBytes(entry);
}

struct EntryDeleter {
    void operator()(UndoEntry* entry) const noexcept { FreeEntry(entry); }
};
using EntryPtr = std::unique_ptr<UndoEntry, EntryDeleter>;

EntryPtr Pop(UndoEntry*& stack) noexcept
{
    UndoEntry* const entry = stack;
    if (entry != nullptr) stack = std::exchange(entry->next, nullptr);
    return EntryPtr(entry);
}

void Push(UndoEntry*& stack, UndoEntry& entry) noexcept
{
    entry.next = stack;
    stack = &entry;
}

void FreeStack(UndoEntry*& stack) noexcept
{
    while (stack != nullptr)
        Pop(stack).reset();
}

EntryPtr AllocateEntry(EditContext* context) noexcept
{
    try {
        return EntryPtr(static_cast<UndoEntry*>(AllocateZeroed(sizeof(UndoEntry))));
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

// Throws OutOfMemory.
void StorePath(UndoEntry& entry, const Scdr& node)
{
    std::int64_t levels = 0;
    for (const Scdr* holder = HoldingNode(node); holder != nullptr; holder = HoldingNode(*holder))
        ++levels;
    OwnedArray<std::int64_t> path = AllocateArray<std::int64_t>(levels);
    const Scdr* item = &node;
    for (std::int64_t level = levels; level-- > 0; item = HoldingNode(*item))
        path[static_cast<std::size_t>(level)] = IndexInHolder(*HoldingNode(*item), *item, 0);
    entry.path = path.release();
    entry.pathSize = levels;
}

bool StorePlace(View& view, UndoEntry& entry, const Scdr& node) noexcept
{
    entry.pickIndex = GetPickIndex(view, false, node);
    if (entry.pickIndex == nullptr) return false;
    try {
        StorePath(entry, node);
        return true;
    } catch (VTERROR_CODE code) {
        return SetErrorCode(view.context, code);
    }
}

// Null where the tree has changed so that the place is no more.
Scdr* FindPlace(const View& view, const UndoEntry& entry) noexcept
{
    Scdr* node = view.root;
    for (std::int64_t level = 0; level < entry.pathSize && node != nullptr; ++level) {
        const std::int64_t index = entry.path[level];
        node = index < ChildCount(*node) ? Children(*node)[index] : nullptr;
    }
    return node;
}

bool SelectPlace(View& view, const UndoEntry& entry)
{
    LogPickIndex(view.context, entry.pickIndex);
    Scdr* const node = FindPlace(view, entry);
    if (node != nullptr) return SelectScdr(view, *node, false) == 0;
    return SetErrorCode(view.context, VTERROR_CODE::IndexError);
}

// Saving needs memory that is not there; what was saved before goes, for it may be most of what fills the memory.
void GiveUpSaving(View& view) noexcept
{
    UndoPurge(view);
    LangEnv& environment = *view.context->langEnv;
    if (environment.ErrorDetail == nullptr) environment.ErrorDetail = ClearedMessage;
}

void SaveSelected(View& view)
{
    EntryPtr entry = AllocateEntry(view.context);
    if (entry == nullptr) return;
    ScdrPtr copy = CopyScdr(view.context, *Selected(view));
    if (copy == nullptr || !StorePlace(view, *entry, *Selected(view))) {
        GiveUpSaving(view);
        return;
    }
    entry->copy = copy.release();
    Push(view.undo, *entry.release());
}

void MoveTop(UndoEntry*& from, UndoEntry*& to, ScdrPtr copy) noexcept
{
    UndoEntry& entry = *Pop(from).release();
    FreeScdr(&entry.copy);
    entry.copy = copy.release();
    Push(to, entry);
}

// Undoes one entry. True when the one below belongs to the same action.
bool UndoOne(View& view)
{
    EntryPtr entry = Pop(view.undo);
    if (entry == nullptr) return false;
    if (FormatScdr(view, *entry->copy) != 0) {
        RedoPurge(view);
        return false;
    }
    if (!SelectPlace(view, *entry)) return false;
    ScdrPtr saved(std::exchange(entry->copy, nullptr));
    if (RedoPush(view, *entry) == 0) return false;
    static_cast<void>(entry.release()); // the redo stack has it
    if (ReplaceSelectedScdr(view, saved, false) == 0) return (view.redo->flags & UndoLinked) != 0;
    MoveTop(view.redo, view.undo, std::move(saved)); // still to be undone
    return false;
}

// Redoes one entry, `linked` to the one redone before. True when the next one belongs to the same action.
bool RedoOne(View& view, bool linked)
{
    EntryPtr entry = Pop(view.redo);
    if (entry == nullptr) return false;
    if (FormatScdr(view, *entry->copy) != 0) {
        RedoPurge(view);
        return false;
    }
    if (!SelectPlace(view, *entry)) return false;
    const UndoEntry* const below = view.undo;
    ScdrPtr copy(std::exchange(entry->copy, nullptr));
    if (ReplaceSelectedScdr(view, copy, true) != 0) {
        entry->copy = copy.release();
        Push(view.redo, *entry.release());
        return false;
    }
    if (linked && view.undo != nullptr && view.undo != below) view.undo->flags |= UndoLinked;
    return view.redo != nullptr && (view.redo->flags & UndoLinked) != 0;
}

} // namespace

void UndoPush(View& view)
{
    TraceScope trace("undo.cpp", "UndoPush");
    if (view.options.enableUndo) SaveSelected(view);
    if ((view.flags & ViewRedoInProgress) == 0) RedoPurge(view);
}

std::int32_t RedoPush(View& view, UndoEntry& entry)
{
    TraceScope trace("undo.cpp", "RedoPush");
    ScdrPtr copy = CopyScdr(view.context, *Selected(view));
    if (copy == nullptr) {
        GiveUpSaving(view);
        return 0;
    }
    entry.copy = copy.release();
    Push(view.redo, entry);
    return 1;
}

void UndoPurge(View& view) noexcept
{
    TraceScope trace("undo.cpp", "UndoPurge");
    FreeStack(view.undo);
    RedoPurge(view);
}

void RedoPurge(View& view) noexcept
{
    TraceScope trace("undo.cpp", "RedoPurge");
    FreeStack(view.redo);
}

void UndoDropTop(View& view) noexcept
{
    TraceScope trace("undo.cpp", "UndoDropTop");
    Pop(view.undo).reset();
}

void Undo(View& view)
{
    TraceScope trace("undo.cpp", "Undo");
    while (UndoOne(view)) {}
}

void Redo(View& view)
{
    TraceScope trace("undo.cpp", "Redo");
    view.flags |= ViewRedoInProgress;
    bool linked = false;
    while (RedoOne(view, linked))
        linked = true;
    view.flags = static_cast<std::uint8_t>(view.flags & ~ViewRedoInProgress);
}

} // namespace vantrel
