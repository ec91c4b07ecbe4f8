// The diagnostic command, which is in no menu: it exercises the crash report and the view's actions.
#include <iterator>

#include "entry/command_log.h"
#include "entry/trace.h"
#include "frame/win/frame_window.h"
#include "model/rebuild.h"
#include "resources/resource.h"
#include "tools/win/guard.h"
#include "view/messages.h"

namespace vantrel {
namespace {

constexpr char16_t TestText[] = u"This is test 1";
constexpr int TestEnclosures = 4;

bool AskYesNo(FrameWindow& frame, const wchar_t* question)
{
    const AskingScope asking(frame);
    return MessageBoxW(frame.window, question, L"Vantrel Debug Message", MB_YESNO | MB_ICONQUESTION) == IDYES;
}

// Fails on purpose, to show that a failure ends in the report and not in the host's death.
void CauseAccessViolation(EditContext* context)
{
    TraceScope trace("frame_debug.cpp", "CauseAccessViolation");
    LogLine(context, "Access violation");
    const volatile int* const nowhere = nullptr;
    static_cast<void>(*nowhere);
}

// Shows an array whose look is known, for a person to judge, and goes back to the user's own.
void RunTest(FrameWindow& frame)
{
    TraceScope trace("frame_debug.cpp", "RunTest");
    ScdrPtr tree =
        ScdrFromUnicode(frame.context, TestText, static_cast<std::int64_t>(std::size(TestText)) - 1);
    if (tree == nullptr) return ShowHostError(frame);
    SendMessageW(frame.client, ViewSetScdr, 0, reinterpret_cast<LPARAM>(tree.release()));
    RethrowEscapedException();
    for (int i = 0; i < TestEnclosures; ++i) {
        SendMessageW(frame.client, WM_COMMAND, ID_ACTION_ENCLOSE, 0);
        RethrowEscapedException();
    }
    if (!AskYesNo(frame, L"Does the result look correct?")) LogLine(frame.context, "Test 1 failed");
    OnRevert(frame);
}

} // namespace

void OnDebug(FrameWindow& frame)
{
    TraceScope trace("frame_debug.cpp", "OnDebug");
    if (AskYesNo(frame, L"Do you want to cause an exception?")) CauseAccessViolation(frame.context);
    if (AskYesNo(frame, L"Do you want to run the test?")) RunTest(frame);
}

} // namespace vantrel
