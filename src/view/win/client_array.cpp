#include <limits>

#include "entry/trace.h"
#include "model/primitives.h"
#include "resources/resource.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"
#include "view/busy.h"
#include "view/commit.h"
#include "view/hit_test.h"
#include "view/layout.h"
#include "view/messages.h"
#include "view/pick_index.h"
#include "view/selection.h"
#include "view/win/client_window.h"

namespace vantrel {

namespace {

// With the option on, the edit ends and the host reports the code; without it the user stays and is told here.
void ReportUnconvertible(View& view)
{
    if (view.options.rejectBadData) {
        if (!HasError(view.context)) SetErrorCode(view.context, VTERROR_CODE::DomainError);
    } else if (HasError(view.context)) {
        NotifyFrame(view, ViewNotifyError);
    } else {
        StatusMessage(view.window, IDS_UNSUPPORTED_TYPE, MB_ICONEXCLAMATION);
        NotifyFrame(view, ViewNotifyMenu);
    }
}

ScdrPtr ConvertObject(View& view, HostObject object)
{
    StatusMessage(view.window, IDS_CONVERTING_ARRAY, 0);
    ScdrPtr tree(view.context->langEnv->Operations.ObjectToScdr(view.context, object));
    if (tree != nullptr) {
        SetSimplestType(*tree);
    } else {
        ReportUnconvertible(view);
    }
    return tree;
}

} // namespace

LRESULT OnConvertObject(ClientWindow& client, HostObject object)
{
    const TraceScope trace("client_array.cpp", "OnConvertObject");
    const BusyMark busy(client.view);
    return reinterpret_cast<LRESULT>(ConvertObject(client.view, object).release());
}

LRESULT OnSetObject(ClientWindow& client, HostObject object)
{
    const TraceScope trace("client_array.cpp", "OnSetObject");
    View& view = client.view;
    const BusyMark busy(view);
    ShowTree(view, nullptr);
    view.flags = static_cast<std::uint8_t>(view.flags & ~ViewModified);
    ScdrPtr tree = ConvertObject(view, object);
    if (tree == nullptr) return 1;
    return ShowTree(view, std::move(tree)) != 0 ? 1 : 0;
}

LRESULT OnSetScdr(ClientWindow& client, Scdr* root)
{
    const TraceScope trace("client_array.cpp", "OnSetScdr");
    const BusyMark busy(client.view);
    return ShowTree(client.view, ScdrPtr(root));
}

LRESULT OnGetScdr(ClientWindow& client, bool selectedOnly)
{
    const TraceScope trace("client_array.cpp", "OnGetScdr");
    View& view = client.view;
    // While something else works on the tree its nodes must not be replaced.
    const bool busy = (view.flags & ViewBusy) != 0;
    if (view.root == nullptr || busy || CheckAndAlignScdr(view) == 0) return 0;
    return reinterpret_cast<LRESULT>(selectedOnly ? Selected(view) : view.root);
}

LRESULT OnGetPickIndex(ClientWindow& client, bool throughMaximize, const Scdr* node)
{
    const TraceScope trace("client_array.cpp", "OnGetPickIndex");
    if (node == nullptr) return 0;
    return reinterpret_cast<LRESULT>(GetPickIndex(client.view, throughMaximize, *node));
}

LRESULT OnSetPickIndex(ClientWindow& client, const char16_t* text)
{
    const TraceScope trace("client_array.cpp", "OnSetPickIndex");
    View& view = client.view;
    if (view.root == nullptr || text == nullptr) return 1;
    const BusyMark busy(view);
    LogPickIndex(view.context, text);
    try {
        Scdr* const node = FindPickIndex(view, text);
        return SelectScdr(view, *node, true);
    } catch (VTERROR_CODE) {
        // Half-typed text names nothing; whoever sent it learns so from the answer.
        return 1;
    }
}

LRESULT OnGetPreferredSize(ClientWindow& client, SIZE& size)
{
    const TraceScope trace("client_array.cpp", "OnGetPreferredSize");
    const View& view = client.view;
    if (view.top == nullptr) return 1;
    Size64 wanted;
    if (IsSimple(*view.top) && (view.top->Flags & FlagMaximized) != 0) {
        const Rect64 area = GetEditRectangle(view.metrics.margin, *view.top);
        wanted = {area.right - area.left, area.bottom - area.top};
        if (view.edit.lineNumbers) wanted.width += view.edit.lineNumbersWidth;
        if (view.edit.ruler) wanted.height += view.edit.rulerHeight;
    } else {
        wanted = {view.top->width + view.metrics.verticalBarWidth,
                  view.top->height + view.metrics.horizontalBarHeight};
    }
    constexpr std::int64_t Most = std::numeric_limits<LONG>::max();
    size = {static_cast<LONG>(std::min(wanted.width, Most)),
            static_cast<LONG>(std::min(wanted.height, Most))};
    return 0;
}

} // namespace vantrel
