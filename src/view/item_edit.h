// Taking copies of nested arrays apart and putting their items together in another shape.
#pragma once

#include "view/view.h"

namespace vantrel {

// Where the selected node stands among the items of the array that holds it; a maximised node has its place there all the while.
struct ItemPlace {
    Scdr* holder;       // null at the root
    std::int64_t index; // -1 at the root
};
[[nodiscard]] ItemPlace PlaceOfSelected(const View& view) noexcept;

// A nested array of the copy's kind without items. Throws.
[[nodiscard]] ScdrPtr AllocateLike(const View& view, const Scdr& copy, std::int32_t rank,
                                   const std::int64_t* shape);
// Gives an item of `from` to `to`, which has nothing there.
void MoveItem(Scdr& from, std::int64_t fromIndex, Scdr& to, std::int64_t toIndex) noexcept;

// Formats what was built from a copy of the selected item's array and puts it there, with undo; `holder` is selected after. An item that
// fills the window goes back to its place first. 0 on success.
std::int32_t ReplaceHolder(View& view, Scdr& holder, ScdrPtr fresh);

// Lets `build` make something. What it throws is stored in ErrorCode; the result is then null.
template <typename Build> ScdrPtr BuildSafely(const View& view, Build build)
{
    try {
        return build();
    } catch (VTERROR_CODE code) {
        SetErrorCode(view.context, code);
        return nullptr;
    }
}

// Says message 108 after a failure, unless the array is nested too deep or the work was broken off, which is told as what it is; the result
// is 1, that of every failed action.
std::int32_t ReportFailedAction(View& view);
// Says why the selected array does not take the command; the result is 1.
std::int32_t Refuse(View& view, std::int32_t stringId);

} // namespace vantrel
