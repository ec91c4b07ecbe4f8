#include <iterator>

#include "entry/command_log.h"
#include "entry/trace.h"
#include "frame/win/frame_window.h"
#include "model/rebuild.h"
#include "model/variables.h"
#include "resources/resource.h"
#include "tools/win/guard.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"
#include "view/messages.h"

namespace vantrel {
namespace {

constexpr wchar_t DebugTitle[] = L"Vantrel Debug Message";

// Saving an array as the call's result, or as the variable's value. True on success; the error is in ErrorCode otherwise.
bool HandToHost(const FrameWindow& frame, const Scdr& tree)
{
    EditContext* const context = frame.context;
    // What failed earlier in the edit says nothing about this save.
    context->langEnv->ErrorCode = VTERROR_CODE::NoError;
    context->langEnv->ErrorDetail = nullptr;
    if (!CanSaveScdr(context, tree)) return SetErrorCode(context, VTERROR_CODE::DomainError);
    if (frame.name != nullptr) return SaveVariable(context, frame.name, tree) == 0;
    return context->langEnv->Operations.SetResult(context, &tree) == 0;
}

LRESULT OnSave(FrameWindow& frame)
{
    return SaveTree(frame) ? 0 : 1;
}

LRESULT OnSaveAndClose(FrameWindow& frame)
{
    if (!SaveTree(frame)) return 1;
    SendMessageW(frame.window, WM_SYSCOMMAND, SC_CLOSE, 0);
    return 0;
}

LRESULT OnExit(FrameWindow& frame)
{
    SendMessageW(frame.window, WM_SYSCOMMAND, SC_CLOSE, 0);
    return 0;
}

LRESULT OnRevert(FrameWindow& frame)
{
    const LRESULT refused =
        SendMessageW(frame.client, ViewSetObject, 0, reinterpret_cast<LPARAM>(frame.value));
    RethrowEscapedException();
    if (refused != 0) ShowHostError(frame);
    return refused;
}

// Fails on purpose, to show that a failure ends in the report and not in the host's death.
void CauseAccessViolation(EditContext* context)
{
    TraceScope trace("frame_commands.cpp", "CauseAccessViolation");
    LogLine(context, "Access violation");
    const volatile int* const nowhere = nullptr;
    static_cast<void>(*nowhere);
}

bool AskDebug(const FrameWindow& frame, const wchar_t* question)
{
    return MessageBoxW(frame.window, question, DebugTitle, MB_YESNO | MB_ICONQUESTION) == IDYES;
}

// Shows an array whose look is known, for a person to judge, and goes back to the user's own.
void RunTest(FrameWindow& frame)
{
    TraceScope trace("frame_commands.cpp", "RunTest");
    constexpr char16_t text[] = u"This is test 1";
    constexpr int Depth = 4;
    ScdrPtr tree = ScdrFromUnicode(frame.context, text, static_cast<std::int64_t>(std::size(text)) - 1);
    if (tree == nullptr) {
        ShowHostError(frame);
        return;
    }
    SendMessageW(frame.client, ViewSetScdr, 0, reinterpret_cast<LPARAM>(tree.release()));
    RethrowEscapedException();
    for (int i = 0; i < Depth; ++i) {
        SendMessageW(frame.client, WM_COMMAND, ID_ACTION_ENCLOSE, 0);
        RethrowEscapedException();
    }
    if (!AskDebug(frame, L"Does the result look correct?")) LogLine(frame.context, "Test 1 failed");
    OnRevert(frame);
}

LRESULT OnDebug(FrameWindow& frame)
{
    TraceScope trace("frame_commands.cpp", "OnDebug");
    if (AskDebug(frame, L"Do you want to cause an exception?")) CauseAccessViolation(frame.context);
    if (AskDebug(frame, L"Do you want to run the test?")) RunTest(frame);
    return 0;
}

// Commands that would take the tree from under a long operation which is pumping messages.
bool NeedsWholeTree(std::int32_t id) noexcept
{
    return id == ID_FILE_REVERT || id == ID_FILE_SAVE || id == ID_FILE_SAVE_AND_CLOSE;
}

LRESULT ForwardToView(const FrameWindow& frame, WPARAM wParam, LPARAM lParam)
{
    const LRESULT result = SendMessageW(frame.client, WM_COMMAND, wParam, lParam);
    RethrowEscapedException();
    return result;
}

} // namespace

void ShowHostError(FrameWindow& frame)
{
    LangEnv& environment = *frame.context->langEnv;
    if (environment.ErrorCode == VTERROR_CODE::NoError) return;
    const char16_t* const text =
        environment.ErrorDetail != nullptr ? environment.ErrorDetail : ErrorText(environment.ErrorCode);
    StatusMessage(frame.window, AsWide(text), MB_ICONEXCLAMATION);
    environment.ErrorCode = VTERROR_CODE::NoError;
    environment.ErrorDetail = nullptr;
}

bool SaveTree(FrameWindow& frame)
{
    TraceScope trace("frame_commands.cpp", "SaveTree");
    const auto* const tree = reinterpret_cast<const Scdr*>(SendMessageW(frame.client, ViewGetScdr, 0, 0));
    RethrowEscapedException();
    if (tree == nullptr) return false; // the view has said why
    if (!HandToHost(frame, *tree)) {
        ShowHostError(frame);
        return false;
    }
    SendMessageW(frame.client, ViewSetModified, 0, 0);
    StatusMessage(frame.window, IDS_DATA_SAVED, 0);
    return true;
}

LRESULT OnCommand(FrameWindow& frame, WPARAM wParam, LPARAM lParam)
{
    TraceScope trace("frame_commands.cpp", "OnCommand");
    const auto id = static_cast<std::int32_t>(LOWORD(wParam));
    LogCommand(frame.context, WM_COMMAND, id);
    if (IsMenuItemDisabled(GetMenu(frame.window), static_cast<UINT>(id))) return 0;
    if (HIWORD(wParam) > 1) return DefWindowProcW(frame.window, WM_COMMAND, wParam, lParam);
    if (NeedsWholeTree(id) && IsBusy(frame)) {
        StatusMessage(frame.window, IDS_EDITOR_IS_BUSY, 0);
        return 0;
    }
    switch (id) {
    case ID_FILE_REVERT: return OnRevert(frame);
    case ID_FILE_SAVE: return OnSave(frame);
    case ID_FILE_SAVE_AND_CLOSE: return OnSaveAndClose(frame);
    case ID_FILE_EXIT: return OnExit(frame);
    case ID_FILE_EXIT_FORCE: return CloseWithoutQuestion(frame), 0;
    case ID_SIZE_TO_DEFINITION: return OnSizeFrameToDefinition(frame), 0;
    case ID_HELP_DEBUG: return OnDebug(frame);
    case ID_FRAME_ESCAPE: return 0;
    default: return ForwardToView(frame, wParam, lParam);
    }
}

} // namespace vantrel
