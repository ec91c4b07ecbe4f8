// Taking an item out of the array that holds it.
#include <utility>

#include "entry/trace.h"
#include "model/primitives.h"
#include "view/actions.h"
#include "view/item_edit.h"
#include "view/report.h"

namespace vantrel {
namespace {

ScdrPtr BuildWithout(const View& view, const Scdr& array, std::int64_t index)
{
    ScdrPtr copy = CopyScdrInner(view.context, nullptr, array);
    const std::int64_t rest = array.ElementCount - 1;
    const std::int64_t vectorShape[] = {rest};
    const std::int64_t matrixShape[] = {Columns(array) > 1 ? 1 : rest, Columns(array) > 1 ? rest : 1};
    ScdrPtr fresh = array.Rank == 2 ? AllocateLike(view, *copy, 2, matrixShape)
                                    : AllocateLike(view, *copy, 1, vectorShape);
    for (std::int64_t i = 0; i < rest; ++i)
        MoveItem(*copy, i < index ? i : i + 1, *fresh, i);
    if (rest == 0) { // the last item goes, and what it was made of stays
        MoveItem(*copy, 0, *fresh, 0);
        ZeroScdr(*Children(*fresh)[0]);
    }
    SetSimplestType(*fresh);
    return fresh;
}

} // namespace

std::int32_t DeleteArray(View& view)
{
    TraceScope trace("delete_array.cpp", "DeleteArray");
    const ItemPlace place = PlaceOfSelected(view);
    if (place.holder == nullptr) return Refuse(view, MessageCannotDeleteTopLevel);
    if (place.holder->ElementCount == 0) return Refuse(view, MessageParentIsEmpty);
    if (!CanLoseItem(*place.holder)) return Refuse(view, MessageNotSupported);
    ScdrPtr fresh = BuildSafely(view, [&] { return BuildWithout(view, *place.holder, place.index); });
    if (fresh == nullptr || ReplaceHolder(view, *place.holder, std::move(fresh)) != 0)
        return ReportFailedAction(view);
    return 0;
}

} // namespace vantrel
