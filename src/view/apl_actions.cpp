// Actions that the interpreter's language knows: most are its own primitives.
#include <utility>

#include "builtin/structural.h"
#include "entry/trace.h"
#include "model/primitives.h"
#include "model/rebuild.h"
#include "view/actions.h"
#include "view/commands.h"
#include "view/item_edit.h"
#include "view/progress.h"
#include "view/report.h"

namespace vantrel {
namespace {

// No input reaches the window while the host converts.
class DisabledFrame {
public:
    explicit DisabledFrame(View& view) : view_(view) { view.effects.enableFrame(view, false); }
    ~DisabledFrame() { view_.effects.enableFrame(view_, true); }
    DisabledFrame(const DisabledFrame&) = delete;
    DisabledFrame& operator=(const DisabledFrame&) = delete;

private:
    View& view_;
};

// The conversion answers with the text itself where it is no number; that is then no result. Numbers are numbers already: read from what is
// shown they would lose the digits that are not.
ScdrPtr ReadNumbers(View& view, const Scdr& node)
{
    if (node.Type != TypeCharacter) return CopyScdr(view.context, node);
    const DisabledFrame disabled(view);
    ScdrPtr numbers = BuildScdrFromRecords(view.context, node, true);
    return HasError(view.context) ? nullptr : std::move(numbers);
}

std::int32_t ReplaceBy(View& view, ScdrPtr result)
{
    return result != nullptr ? FormatAndReplace(view, std::move(result)) : 1;
}

std::int32_t ConvertToNumeric(View& view)
{
    const Scdr& node = *Selected(view);
    if (!IsSimple(node)) return Refuse(view, MessageStringIsNested);
    return ReplaceBy(view, ReadNumbers(view, node));
}

// The user's list names the argument's axes in their new order; the primitive is told where each axis goes. Throws.
ScdrPtr AxisOrder(const EditContext* context, const std::int32_t* axes, std::int64_t rank)
{
    ScdrPtr order = AllocateScdr(nullptr, nullptr, TypeInteger, 1, &rank, false);
    auto* const places = static_cast<std::int64_t*>(order->data);
    for (std::int64_t place = 0; place < rank; ++place)
        places[axes[place]] = place + context->indexOrigin;
    return order;
}

// Null without an error: the user cancelled.
ScdrPtr BuildReordered(View& view, const Scdr& node)
{
    const OwnedArray<std::int32_t> axes = AllocateArray<std::int32_t>(node.Rank);
    for (std::int32_t axis = 0; axis < node.Rank; ++axis)
        axes[static_cast<std::size_t>(axis)] = axis;
    if (!view.effects.askAxisOrder(view, node, axes.get())) return nullptr;
    const ScdrPtr order = AxisOrder(view.context, axes.get(), node.Rank);
    return BuiltinTranspose(view.context, node, order.get());
}

std::int32_t ReorderAxes(View& view)
{
    const Scdr& node = *Selected(view);
    if (node.Rank < 3) return Refuse(view, MessageNotSupported);
    ScdrPtr reordered = BuildSafely(view, [&] { return BuildReordered(view, node); });
    if (reordered == nullptr) return HasError(view.context) ? 1 : 0;
    view.flags |= ViewFormatting;
    view.effects.showStatus(view, StatusFormatting, -1, false);
    return FormatAndReplace(view, std::move(reordered));
}

ScdrPtr CallPrimitive(View& view, std::int32_t command)
{
    view.effects.showStatus(view, MessageInterpreterIsBusy, -1, false);
    ScdrPtr result(view.context->langEnv->Operations.CallPrimitiveReturningScdr(view.context, command,
                                                                                Selected(view), nullptr));
    view.effects.showStatus(view, StatusFormatting, -1, false);
    if (result == nullptr && !HasError(view.context)) SetErrorCode(view.context, VTERROR_CODE::ValueError);
    return HasError(view.context) ? nullptr : std::move(result);
}

std::int32_t ReplaceByPrimitive(View& view, std::int32_t command)
{
    ScdrPtr result = CallPrimitive(view, command);
    const bool sorts = command == CommandSortAscending || command == CommandSortDescending;
    if (sorts && result != nullptr)
        result = Sort(view.context, *Selected(view), std::move(result), view.context->indexOrigin);
    return ReplaceBy(view, std::move(result));
}

} // namespace

std::int32_t PerformAplAction(View& view, std::int32_t command)
{
    TraceScope trace("apl_actions.cpp", "PerformAplAction");
    std::int32_t result = 1;
    switch (command) {
    case CommandConvertToNumeric: result = ConvertToNumeric(view); break;
    case CommandReorderAxes: result = ReorderAxes(view); break;
    default: result = ReplaceByPrimitive(view, command); break;
    }
    if (HasError(view.context)) ReportHostError(view);
    return result;
}

} // namespace vantrel
