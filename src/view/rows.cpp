// Vectors and arrays as rows.
#include <algorithm>
#include <utility>

#include "builtin/item_copy.h"
#include "entry/trace.h"
#include "model/primitives.h"
#include "view/actions.h"
#include "view/item_edit.h"
#include "view/report.h"

namespace vantrel {
namespace {

ScdrPtr BuildColumn(const View& view, const Scdr& vector)
{
    ScdrPtr copy = CopyScdrInner(view.context, nullptr, vector);
    const std::int64_t shape[] = {vector.ElementCount, 1};
    SetShape(view.context, *copy, 2, shape);
    return copy;
}

ScdrPtr SimpleRow(const View& view, const Scdr& array, std::int64_t row, std::int64_t length)
{
    ScdrPtr made = AllocateScdr(view.context, nullptr, array.Type, 1, &length, true);
    if (array.ElementCount > 0)
        CopyItems({array.Type, made->data, 0}, {array.Type, array.data, row * length}, length);
    return made;
}

// A row without items, and every row of an empty array, is made of the prototype.
ScdrPtr NestedRow(const View& view, const Scdr& array, std::int64_t row, std::int64_t length)
{
    ScdrPtr made = AllocateScdr(view.context, nullptr, TypeNested, 1, &length, false);
    for (std::int64_t i = 0; i < ChildCount(*made); ++i) {
        const std::int64_t from = array.ElementCount > 0 ? row * length + i : 0;
        SetChild(*made, i, CopyScdrInner(view.context, made.get(), *Children(array)[from]));
    }
    return made;
}

ScdrPtr BuildRows(const View& view, const Scdr& array)
{
    const std::int64_t length = Columns(array);
    ScdrPtr rows = AllocateScdr(view.context, nullptr, TypeNested, array.Rank - 1, array.Shape, false);
    for (std::int64_t row = 0; row < ChildCount(*rows); ++row) {
        SetChild(*rows, row,
                 IsSimple(array) ? SimpleRow(view, array, row, length) : NestedRow(view, array, row, length));
    }
    SetSimplestType(*rows);
    return rows;
}

std::int32_t ReplaceBuilt(View& view, ScdrPtr fresh)
{
    if (fresh == nullptr || FormatAndReplace(view, std::move(fresh)) != 0) return ReportFailedAction(view);
    return 0;
}

} // namespace

std::int32_t MakeMatrix(View& view)
{
    TraceScope trace("rows.cpp", "MakeMatrix");
    const Scdr& node = *Selected(view);
    if (node.Rank != 1) return Refuse(view, MessageNotAVector);
    return ReplaceBuilt(view, BuildSafely(view, [&] { return BuildColumn(view, node); }));
}

std::int32_t MakeArrayOfRows(View& view)
{
    TraceScope trace("rows.cpp", "MakeArrayOfRows");
    const Scdr& node = *Selected(view);
    if (node.Rank == 0) return Refuse(view, MessageArrayIsScalar);
    if (node.Rank < 2) return Refuse(view, MessageNotSupported);
    return ReplaceBuilt(view, BuildSafely(view, [&] { return BuildRows(view, node); }));
}

} // namespace vantrel
