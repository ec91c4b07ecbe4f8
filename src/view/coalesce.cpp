// Nested arrays whose items are all simple scalars of one kind become simple arrays.
#include <utility>

#include "builtin/item_copy.h"
#include "entry/trace.h"
#include "model/primitives.h"
#include "view/actions.h"
#include "view/edited.h"
#include "view/layout.h"
#include "view/selection.h"
#include "view/undo.h"

namespace vantrel {
namespace {

constexpr std::uint32_t NoKind = 0xFFFFFFFF;

struct Coalescing {
    View& view;
    Scdr* keep; // to be selected at the end
    bool failed;
};

// Beyond 2 to the 53rd not every whole number is a double.
bool IsExactAsReal(const Scdr& number) noexcept
{
    if (number.Type != TypeInteger) return true;
    const std::int64_t value = *static_cast<const std::int64_t*>(number.data);
    const auto real = static_cast<double>(value);
    return real < 9223372036854775808.0 && static_cast<std::int64_t>(real) == value;
}

// The type of the simple array that the item may become a part of. Typed text is no value yet, and a number must not change.
std::uint32_t KindOfItem(const Scdr& item) noexcept
{
    if (IsSimple(item) && item.Rank == 0 && (item.Flags & FlagKeptSize) == 0 && !HasTypedText(item)) {
        if (item.Type == TypeCharacter || item.Type == TypeDecimal) return item.Type;
        if (IsExactAsReal(item)) return TypeComplex;
    }
    return NoKind;
}

std::uint32_t KindOfItems(const Scdr& node) noexcept
{
    const std::uint32_t kind = KindOfItem(*Children(node)[0]);
    for (std::int64_t i = 1; kind != NoKind && i < ChildCount(node); ++i) {
        if (KindOfItem(*Children(node)[i]) != kind) return NoKind;
    }
    return kind;
}

// Throws.
ScdrPtr BuildSimple(const View& view, const Scdr& node, std::uint32_t kind)
{
    ScdrPtr simple = AllocateScdr(view.context, nullptr, kind, node.Rank, node.Shape, true);
    CopyAxesNames(view.context, node, *simple);
    for (std::int64_t i = 0; i < node.ElementCount; ++i) {
        const Scdr& item = *Children(node)[i];
        CopyItems({kind, simple->data, i}, {item.Type, item.data, 0}, 1);
    }
    SetSimplestType(*simple);
    return simple;
}

// Boxes that are closed stay closed: only a node outside what fills the window has to be brought back to its place first.
bool SelectForReplacement(View& view, Scdr& node)
{
    if (!IsBelow(*view.top, node)) return SelectScdr(view, node, false) == 0;
    MakeSelected(view, &node);
    return true;
}

bool ReplaceBySimple(Coalescing& coalescing, Scdr& node, ScdrPtr simple)
{
    View& view = coalescing.view;
    const bool keepGoes = IsBelow(node, *coalescing.keep);
    if (FormatScdr(view, *simple) != 0 || !SelectForReplacement(view, node)) return false;
    const UndoEntry* const below = view.undo;
    if (ReplaceSelectedScdr(view, simple, true) != 0) return false;
    if (view.undo != nullptr && view.undo != below) view.undo->flags |= UndoLinked;
    if (keepGoes) coalescing.keep = Selected(view);
    return true;
}

void CoalesceNode(Coalescing& coalescing, Scdr& node)
{
    if ((node.Flags & FlagStructure) != 0) return;
    const std::uint32_t kind = KindOfItems(node);
    if (kind == NoKind) return;
    View& view = coalescing.view;
    try {
        ScdrPtr simple = BuildSimple(view, node, kind);
        coalescing.failed = !ReplaceBySimple(coalescing, node, std::move(simple));
    } catch (VTERROR_CODE code) {
        SetErrorCode(view.context, code);
        coalescing.failed = true;
    }
}

// Items first: an array of arrays of scalars is looked at when its items have become what they can.
void CoalesceBelow(Coalescing& coalescing, Scdr& node)
{
    if (IsSimple(node)) return;
    for (std::int64_t i = 0; i < ChildCount(node) && !coalescing.failed; ++i)
        CoalesceBelow(coalescing, *Children(node)[i]);
    if (!coalescing.failed) CoalesceNode(coalescing, node);
}

} // namespace

std::int32_t CoalesceScdr(View& view, Scdr& node)
{
    TraceScope trace("coalesce.cpp", "CoalesceScdr");
    Coalescing coalescing{view, Selected(view), false};
    CoalesceBelow(coalescing, node);
    if (coalescing.keep != Selected(view)) SelectScdr(view, *coalescing.keep, true);
    return coalescing.failed ? 1 : 0;
}

} // namespace vantrel
