#include "view/report.h"

#include "view/messages.h"

namespace vantrel {

void ShowError(View& view, std::int32_t stringId)
{
    view.errorShown = true;
    view.effects.showStatus(view, stringId, -1, true);
}

void ReportHostError(View& view)
{
    view.errorShown = true;
    view.effects.notifyFrame(view, ViewNotifyError);
}

} // namespace vantrel
