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
    const LangEnv& environment = *view.context->langEnv;
    const bool outOfMemory =
        environment.ErrorCode == VTERROR_CODE::OutOfMemory && environment.ErrorDetail == nullptr;
    view.errorShown = true;
    view.effects.notifyFrame(view, ViewNotifyError);
    if (outOfMemory) ShowError(view, MessageErrorAllocating);
}

} // namespace vantrel
