// Arrays to and from the clipboard, through the language environment.
#include <utility>

#include "entry/trace.h"
#include "view/actions.h"
#include "view/messages.h"
#include "view/report.h"

namespace vantrel {
namespace {

std::int32_t ReportCopyFailure(View& view)
{
    LangEnv& environment = *view.context->langEnv;
    const bool notSupported = environment.ErrorCode == VTERROR_CODE::NonceError;
    environment.ErrorCode = VTERROR_CODE::NoError; // nothing more is to be said of it
    ShowError(view, notSupported ? MessageNotSupported : MessageSystemError);
    return 1;
}

// Data that is good but too much for the memory is nothing to be mended by copying it again.
std::int32_t ReportPasteFailure(View& view)
{
    const bool outOfMemory = view.context->langEnv->ErrorCode == VTERROR_CODE::OutOfMemory;
    ShowError(view, outOfMemory ? MessageErrorAllocating : MessageCannotConvertClipboard);
    return 1;
}

} // namespace

std::int32_t ClipboardCopy(View& view)
{
    TraceScope trace("clipboard_actions.cpp", "ClipboardCopy");
    const HostOperations& host = view.context->langEnv->Operations;
    const std::int32_t copied = host.ScdrToClipboard(view.context, view.frame, Selected(view));
    // An array that is on the clipboard in part only is not there: cutting would lose it.
    if (copied == 0 || HasError(view.context)) return ReportCopyFailure(view);
    view.effects.notifyFrame(view, ViewNotifyMenu);
    return 0;
}

std::int32_t ClipboardCut(View& view)
{
    TraceScope trace("clipboard_actions.cpp", "ClipboardCut");
    return ClipboardCopy(view) == 0 ? DeleteArray(view) : 1;
}

std::int32_t ClipboardPaste(View& view)
{
    TraceScope trace("clipboard_actions.cpp", "ClipboardPaste");
    ScdrPtr pasted(view.context->langEnv->Operations.ClipboardToScdr(view.context, view.frame));
    if (pasted == nullptr) return ReportPasteFailure(view);
    return FormatAndReplace(view, std::move(pasted));
}

} // namespace vantrel
