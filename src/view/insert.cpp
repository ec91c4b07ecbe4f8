// New items, rows and columns beside the selected item.
#include <algorithm>

#include "entry/trace.h"
#include "model/primitives.h"
#include "view/actions.h"
#include "view/commands.h"
#include "view/item_edit.h"
#include "view/report.h"
#include "view/selection.h"

namespace vantrel {
namespace {

// Puts a new prototype item into a copy of the vector. The prototype of an empty vector is replaced by its first item.
ScdrPtr BuildWithItem(const View& view, const Scdr& vector, std::int64_t at)
{
    ScdrPtr copy = CopyScdrInner(view.context, nullptr, vector);
    const std::int64_t length = vector.ElementCount + 1;
    ScdrPtr fresh = AllocateLike(view, *copy, 1, &length);
    at = std::min(at, vector.ElementCount);
    SetChild(*fresh, at, Prototype(view.context, nullptr, vector));
    for (std::int64_t i = 0; i < vector.ElementCount; ++i)
        MoveItem(*copy, i, *fresh, i < at ? i : i + 1);
    SetSimplestType(*fresh);
    return fresh;
}

// A matrix that grows by a row or a column: lines run along the one axis, the new one stands at `at`.
struct Growth {
    bool column;
    std::int64_t rows; // before
    std::int64_t columns;
    std::int64_t at;
};

std::int64_t PlaceAfter(const Growth& growth, std::int64_t index) noexcept
{
    if (growth.rows == 0 || growth.columns == 0) return 0; // the prototype has no place of its own
    std::int64_t row = index / growth.columns;
    std::int64_t column = index % growth.columns;
    std::int64_t& moved = growth.column ? column : row;
    if (moved >= growth.at) ++moved;
    return row * (growth.columns + (growth.column ? 1 : 0)) + column;
}

ScdrPtr BuildWithLine(const View& view, const Scdr& matrix, const Growth& growth)
{
    ScdrPtr copy = CopyScdrInner(view.context, nullptr, matrix);
    const std::int64_t shape[] = {growth.rows + (growth.column ? 0 : 1),
                                  growth.columns + (growth.column ? 1 : 0)};
    ScdrPtr fresh = AllocateLike(view, *copy, 2, shape);
    for (std::int64_t i = 0; i < matrix.ElementCount; ++i)
        MoveItem(*copy, i, *fresh, PlaceAfter(growth, i));
    for (std::int64_t i = 0; i < ChildCount(*fresh); ++i) {
        if (Children(*fresh)[i] == nullptr) SetChild(*fresh, i, Prototype(view.context, nullptr, matrix));
    }
    SetSimplestType(*fresh);
    return fresh;
}

Growth GrowthOf(const Scdr& matrix, std::int64_t index, std::int32_t command) noexcept
{
    const bool column = command == CommandInsertColumnLeft || command == CommandInsertColumnRight;
    const bool behind = command == CommandInsertColumnRight || command == CommandInsertRowBelow;
    const std::int64_t columns = Columns(matrix);
    const std::int64_t row = columns > 0 ? index / columns : 0;
    const std::int64_t place = column ? (columns > 0 ? index % columns : 0) : row;
    const std::int64_t length = column ? columns : Rows(matrix);
    return {column, Rows(matrix), columns, std::min(place + (behind ? 1 : 0), length)};
}

// The new array is selected; the item that the user had selected is again.
void SelectItemAgain(View& view, std::int64_t index)
{
    const Scdr& array = *Selected(view);
    SelectScdr(view, *Children(array)[std::min(index, ChildCount(array) - 1)], true);
}

std::int32_t ReplaceGrown(View& view, const ItemPlace& place, ScdrPtr fresh, std::int64_t selectAfter)
{
    if (fresh == nullptr || ReplaceHolder(view, *place.holder, std::move(fresh)) != 0)
        return ReportFailedAction(view);
    SelectItemAgain(view, selectAfter);
    return 0;
}

} // namespace

std::int32_t InsertItem(View& view, std::int32_t command)
{
    TraceScope trace("insert.cpp", "InsertItem");
    const ItemPlace place = PlaceOfSelected(view);
    if (place.holder == nullptr) return Refuse(view, MessageNotAChild);
    if (place.holder->Rank != 1) return Refuse(view, MessageParentIsNotAVector);
    const bool behind = command == CommandInsertItemRight;
    ScdrPtr fresh =
        BuildSafely(view, [&] { return BuildWithItem(view, *place.holder, place.index + (behind ? 1 : 0)); });
    return ReplaceGrown(view, place, std::move(fresh), behind ? place.index : place.index + 1);
}

std::int32_t InsertRowOrColumn(View& view, std::int32_t command)
{
    TraceScope trace("insert.cpp", "InsertRowOrColumn");
    const ItemPlace place = PlaceOfSelected(view);
    if (place.holder == nullptr) return Refuse(view, MessageNotAChild);
    if (place.holder->Rank != 2) return Refuse(view, MessageParentIsNotAMatrix);
    const Growth growth = GrowthOf(*place.holder, place.index, command);
    ScdrPtr fresh = BuildSafely(view, [&] { return BuildWithLine(view, *place.holder, growth); });
    return ReplaceGrown(view, place, std::move(fresh), PlaceAfter(growth, place.index));
}

} // namespace vantrel
