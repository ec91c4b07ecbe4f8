// SCDR: the tree that holds an array while it is shown, edited, copied and handed back. One node is one array.
//
// Invariants
//  - A nested node has max(ElementCount, 1) children: an empty nested array keeps its prototype as its one child. Loops over
//    children run to `ChildCount(node)`, never to ElementCount.
//  - A child's `parent` is the node whose `data` holds it; null at the root.
//  - Simple data is one packed block of `DataSize` bytes; Booleans are bits, item 0 in the most significant bit.
//  - `records` may point into `data`: data is never changed in place once records exist, only replaced with its node or through
//    `WritableData`, which drops the records first.
//
//  - Nesting is at most `DeepestNesting` deep where an array comes from outside. Nothing in this room recurses, but a drawing of boxes does.
//
// Nodes come from a pool and hold their shapes of rank 1 and 2 and short data themselves, so that a leaf of a million-item array
// stays under 300 bytes.
#pragma once

#include <cstdint>
#include <memory>

#include "entry/edit_context.h"
#include "entry/memory.h"
#include "model/records.h"
#include "tools/geometry.h"
#include "tools/scroll.h"

namespace vantrel {

struct EditState;

// Adapters and readers refuse deeper trees with SystemLimit.
inline constexpr std::int64_t DeepestNesting = 1000;

enum ScdrType : std::uint32_t {
    TypeNested = 0,
    TypeCharacter = 11, // UTF-16 units
    TypeBoolean = 21,   // bits
    TypeInteger = 22,   // int64
    TypeReal = 23,      // double
    TypeComplex = 24,   // two doubles, real then imaginary
    TypeDecimal = 25,   // 16 bytes
};

enum ScdrFlag : std::uint8_t {
    FlagRestorePressed = 0x01, // the mouse went down on the restore button
    FlagMinimized = 0x02,
    FlagMaximized = 0x04, // also closes a simple node to Tab navigation
    FlagSizeValid = 0x08,
    FlagOriginValid = 0x10,
    FlagStructure = 0x20, // set by an adapter: a structure; part of the clipboard image
    FlagKeptSize = 0x40,  // set by an adapter: a field name, whose size and text are fixed
};

// How far the items of a nested node stand from where they say: a change pushes the boxes behind it without visiting them (view/item_shift.h).
struct ItemShift {
    Point64 all;             // pixels, for every item
    std::int64_t column = 0; // this column and those behind it stand `wider` further right
    std::int64_t wider = 0;
    std::int64_t row = 0; // this row and those below it stand `taller` lower
    std::int64_t taller = 0;
};

// What only some nodes need; made when first needed. Every block that hangs here comes from AllocateBytes and is freed with the node.
struct ScdrExtra {
    char16_t** AxisNames = nullptr;     // rank >= 3: Rank owned terminated strings
    std::int64_t* PlaneIndex = nullptr; // rank >= 3: shown position along each leading axis
    std::int64_t CurrentPlane = 0;
    std::int64_t PlaneCount = 1;          // product of max(length, 1) over all axes but the last two
    std::int64_t* columnWidths = nullptr; // nested, rank >= 2: one entry per column, at least one
    std::int64_t* rowHeights = nullptr;
    ItemShift itemShift;         // nested
    std::int64_t savedWidth = 0; // size before minimising
    std::int64_t savedHeight = 0;
    struct Scdr* savedTop = nullptr; // set while maximised
    struct Scdr* savedParent = nullptr;
    ScrollRecord* boxScroll = nullptr; // the box's own small scroll bars
    // Simple, rank >= 2: widest text of each column, in characters, and its widest integer part.
    std::int32_t* recordColumnWidths = nullptr;
    std::int32_t* recordColumnIntegers = nullptr;
};

struct Scdr {
    void* data;
    Scdr* parent;
    std::int64_t* Shape;  // Rank lengths, null for a scalar; points into the node for ranks 1 and 2
    ScdrExtra* extra;     // never null for rank >= 3; below that made when first needed
    EditState* editState; // what the cell editor remembers; null until it takes the node
    std::int64_t ElementCount;
    std::int64_t originX; // pixels, in the space of the displayed top node, less what its ancestors shift it
    std::int64_t originY;
    std::int64_t width; // pixels, margins and edges included
    std::int64_t height;
    std::uint32_t Type;
    std::int32_t Rank;
    std::int32_t SimplestType; // -1 for an invalid type
    std::uint8_t Flags;
    std::uint8_t storage;       // which blocks the node owns; private to this room
    std::int64_t indexInParent; // kept by SetChild; read through IndexInParent, which repairs it
    std::int64_t shortShape[2];
    alignas(8) unsigned char shortData[32]; // data of at most 32 bytes lies here
    RecordList records;                     // simple nodes; empty until formatted
};

struct ScdrDeleter {
    void operator()(Scdr* node) const noexcept;
};
using ScdrPtr = std::unique_ptr<Scdr, ScdrDeleter>;

// Creates a node. `shape` may be null (all axes 0). With `fill`, characters are blank and other simple data zero; without, data is
// not set. A nested node's children are null until the caller stores them. Rank >= 3: axis names "Axis name %i" counted from the index
// origin (`context` may be null below rank 3). The parent's data is not touched. Throws OutOfMemory, also for shapes whose product, plane count
// or byte size overflows; negative axis lengths or ranks throw SystemLimit.
[[nodiscard]] ScdrPtr AllocateScdr(EditContext* context, Scdr* parent, std::uint32_t type, std::int32_t rank,
                                   const std::int64_t* shape, bool fill);
// A character vector of the list's records joined by CR LF, simplest type set. Throws.
[[nodiscard]] ScdrPtr AllocateScdrFromRecords(EditContext* context, const RecordList& records);
// Gives a node another rank and shape of as many elements. Ranks of 3 and above get default axis names and show plane 0. Throws OutOfMemory,
// and LengthError where the number of elements would change; the node is then as it was.
void SetShape(EditContext* context, Scdr& node, std::int32_t rank, const std::int64_t* shape);
// Frees a tree with all that its nodes own and clears the pointer. Deep trees do not overflow the stack.
void FreeScdr(Scdr** node) noexcept;

// Deep copies. Set ErrorCode and return null on failure; nothing is left behind. Simplest types and the adapter's flags (FlagStructure,
// FlagKeptSize) are copied; records are not, they are made when needed.
[[nodiscard]] ScdrPtr CopyScdr(EditContext* context, const Scdr& source);
// The same as a new node under `parent`, whose data is not touched. Throws OutOfMemory.
[[nodiscard]] ScdrPtr CopyScdrInner(EditContext* context, Scdr* parent, const Scdr& source);
// The node alone, for arrays that only place the same items anew: data is not set (bits behind the last item are 0), children are null.
// Throws OutOfMemory.
[[nodiscard]] ScdrPtr CopyScdrShell(EditContext* context, Scdr* parent, const Scdr& source);
// The plane on show as a matrix; of an array below rank 3 all of it. An array without elements gives its fill.
[[nodiscard]] ScdrPtr CopyScdrPlane(EditContext* context, const Scdr& source);
[[nodiscard]] ScdrPtr CopyScdrPlaneInner(EditContext* context, const Scdr& source); // throws OutOfMemory
// Copies axis names between nodes of one rank >= 3. Sets ErrorCode 9 and returns false on failure.
bool CopyAxesNames(EditContext* context, const Scdr& from, Scdr& to) noexcept;

void ZeroScdr(Scdr& node) noexcept;
[[nodiscard]] std::int32_t ScdrDepth(const Scdr& node) noexcept;
[[nodiscard]] bool IsScdrInsideEmptyAncestor(const Scdr& node) noexcept;

// Nested: children; max(ElementCount, 1) of them. Simple: 0.
[[nodiscard]] inline std::int64_t ChildCount(const Scdr& node) noexcept
{
    if (node.Type != TypeNested) return 0;
    return node.ElementCount > 0 ? node.ElementCount : 1;
}
[[nodiscard]] inline Scdr** Children(const Scdr& node) noexcept
{
    return static_cast<Scdr**>(node.data);
}
[[nodiscard]] inline bool IsSimple(const Scdr& node) noexcept
{
    return node.Type != TypeNested;
}
// `flags`: of ScdrFlag.
inline void ClearFlags(Scdr& node, std::uint32_t flags) noexcept
{
    node.Flags = static_cast<std::uint8_t>(node.Flags & ~flags);
}
// Stores the child and its parent link; the slot's old child is not freed.
void SetChild(Scdr& parent, std::int64_t index, ScdrPtr child) noexcept;
// The child's index in its parent, -1 at the root. Constant time for children stored by SetChild, with or without a hint; where somebody
// moved children by hand, one pass renumbers them all.
[[nodiscard]] std::int64_t IndexInParent(const Scdr& node, std::int64_t hint = 0) noexcept;

[[nodiscard]] std::int64_t Rows(const Scdr& node) noexcept;    // next-to-last axis, 1 below rank 2
[[nodiscard]] std::int64_t Columns(const Scdr& node) noexcept; // last axis, 1 for a scalar
// Product of all axes but the last, 1 below rank 2; -1 where it does not fit.
[[nodiscard]] std::int64_t RowsOfAllPlanes(const Scdr& node) noexcept;
// An item can be taken out of the array and the rest still has a shape: of vectors, scalars, and matrices of one row or one column.
[[nodiscard]] bool CanLoseItem(const Scdr& array) noexcept;
[[nodiscard]] std::int64_t PlaneCount(const Scdr& node) noexcept;   // 1 below rank 3
[[nodiscard]] std::int64_t CurrentPlane(const Scdr& node) noexcept; // 0 below rank 3

[[nodiscard]] bool IsValidType(std::uint32_t type) noexcept;
// Bytes of simple data or of child pointers; 0 for an invalid type. Throws OutOfMemory where the size does not fit.
[[nodiscard]] std::size_t DataSize(std::uint32_t type, std::int64_t elementCount);
// The only road to changing simple data: drops records that may point into it.
[[nodiscard]] void* WritableData(Scdr& node) noexcept;
// Makes room for what only some nodes have; throws OutOfMemory.
ScdrExtra& ExtraOf(Scdr& node);
// "General" ("Cells" for MATLAB), "Character", "Boolean", "Integer", "Real", "Complex", "Decimal"; "" when invalid.
[[nodiscard]] const char16_t* TypeName(Dialect dialect, std::uint32_t type) noexcept;

[[nodiscard]] inline bool GetBit(const void* data, std::int64_t index) noexcept
{
    return ((static_cast<const std::uint8_t*>(data)[index >> 3] >> (7 - (index & 7))) & 1) != 0;
}
void SetBit(void* data, std::int64_t index, bool value) noexcept;
// Copies `count` bits between blocks that do not overlap; bits of the target around them are kept.
void CopyBits(void* to, std::int64_t toIndex, const void* from, std::int64_t fromIndex,
              std::int64_t count) noexcept;
// The same, last bit first.
void ReverseBits(void* to, std::int64_t toIndex, const void* from, std::int64_t fromIndex,
                 std::int64_t count) noexcept;

// Walking (Tab, Shift+Tab, Ctrl+Tab, Ctrl+Up). Modifier bits: 1 Shift, 2 Ctrl; key: 9 Tab, 38 Up. Null: the selection stays.
[[nodiscard]] Scdr* TabToNextScdr(Scdr& node, std::int32_t modifiers, std::int32_t key) noexcept;

// Layout invalidation; see view/layout.h for when each must run.
void InvalidateAncestorsSizesAndLaterSiblingsOrigins(Scdr& node) noexcept;
void InvalidateDescendentsOriginsAndSizes(Scdr& node) noexcept;
void InvalidateRecordLengths(Scdr& node) noexcept;
void InvalidateScdrAndChildrensOrigins(Scdr& node) noexcept;

} // namespace vantrel
