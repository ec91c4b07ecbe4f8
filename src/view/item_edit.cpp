#include "view/item_edit.h"

#include <utility>

#include "entry/trace.h"
#include "model/tree_walk.h"
#include "view/actions.h"
#include "view/edited.h"
#include "view/layout.h"
#include "view/report.h"
#include "view/selection.h"

namespace vantrel {

ItemPlace PlaceOfSelected(const View& view) noexcept
{
    const Scdr& selected = *Selected(view);
    // The tree is the view's own; only the walk looks at it as somebody else's.
    auto* const holder = const_cast<Scdr*>(HoldingNode(selected));
    return {holder, holder != nullptr ? IndexInHolder(*holder, selected, 0) : -1};
}

ScdrPtr AllocateLike(const View& view, const Scdr& copy, std::int32_t rank, const std::int64_t* shape)
{
    ScdrPtr fresh = AllocateScdr(view.context, nullptr, TypeNested, rank, shape, false);
    fresh->Flags = static_cast<std::uint8_t>(copy.Flags & (FlagStructure | FlagKeptSize));
    return fresh;
}

void MoveItem(Scdr& from, std::int64_t fromIndex, Scdr& to, std::int64_t toIndex) noexcept
{
    ScdrPtr item(std::exchange(Children(from)[fromIndex], nullptr));
    SetChild(to, toIndex, std::move(item));
}

std::int32_t ReplaceHolder(View& view, Scdr& holder, ScdrPtr fresh)
{
    TraceScope trace("item_edit.cpp", "ReplaceHolder");
    if (FormatScdr(view, *fresh) != 0) return 1;
    Scdr& item = *Selected(view);
    if ((item.Flags & FlagMaximized) != 0 && RestoreScdr(view) != 0) return 1;
    MakeSelected(view, &holder);
    if (ReplaceSelectedScdr(view, fresh, true) == 0) return 0;
    MakeSelected(view, &item);
    EditBegin(view);
    return 1;
}

std::int32_t ReportFailedAction(View& view)
{
    const bool toldAlready = view.errorShown && !HasError(view.context);
    if (view.context->langEnv->ErrorCode == VTERROR_CODE::SystemLimit) {
        ReportHostError(view);
    } else if (!toldAlready) {
        ShowError(view, MessageErrorAllocating);
    }
    return 1;
}

std::int32_t Refuse(View& view, std::int32_t stringId)
{
    ShowError(view, stringId);
    return 1;
}

} // namespace vantrel
