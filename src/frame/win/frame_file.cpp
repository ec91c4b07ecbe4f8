// Saving, opening and reverting.
#include <algorithm>
#include <string>

#include "entry/names.h"
#include "entry/trace.h"
#include "entry/win/edit_object.h"
#include "frame/messages.h"
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

// Saying what became of a failed save is the view's: it knows what is on show.
constexpr std::int32_t NotifySaveFailed = 5;

constexpr std::int32_t NameClassUndefined = 0;
constexpr std::int32_t NameClassLabel = 1;
constexpr std::int32_t NameClassVariable = 2;
constexpr std::int32_t NameClassFunction = 3;
constexpr std::int32_t NameClassOperator = 4;

// What failed earlier in the edit says nothing about what is done now.
void ForgetError(EditContext* context) noexcept
{
    context->langEnv->ErrorCode = VTERROR_CODE::NoError;
    context->langEnv->ErrorDetail = nullptr;
}

// Saving an array as the call's result, or as the variable's value. True on success; the error is in ErrorCode otherwise.
bool HandToHost(const FrameWindow& frame, const Scdr& tree)
{
    EditContext* const context = frame.context;
    ForgetError(context);
    if (!CanSaveScdr(context, tree)) return SetErrorCode(context, VTERROR_CODE::DomainError);
    if (frame.name != nullptr) return SaveVariable(context, frame.name, tree) == 0;
    return context->langEnv->Operations.SetResult(context, &tree) == 0;
}

const Scdr* AskViewForTree(const FrameWindow& frame, bool selectedOnly)
{
    const auto* const tree =
        reinterpret_cast<const Scdr*>(SendMessageW(frame.client, ViewGetScdr, selectedOnly ? 1 : 0, 0));
    RethrowEscapedException();
    return tree;
}

// --- the dialogs that ask for a name ---

// The outcome of looking at a name to save under.
enum class NameVerdict { Good, Refused, Abandoned };

NameVerdict RefuseName(HWND owner, UINT textId)
{
    MessageBoxW(owner, LoadText(textId).c_str(), LoadText(IDS_VANTREL).c_str(), MB_OK | MB_ICONEXCLAMATION);
    return NameVerdict::Refused;
}

std::wstring ReplaceQuestion(const char16_t* name)
{
    std::wstring question = LoadText(IDS_REPLACE_VARIABLE);
    const std::size_t place = question.find(L"%s");
    if (place != std::wstring::npos) question.replace(place, 2, AsWide(name));
    return question;
}

NameVerdict AskToReplace(FrameWindow& frame, HWND owner, const char16_t* name)
{
    switch (AskYesNoCancel(frame, owner, ReplaceQuestion(name).c_str())) {
    case IDYES: return NameVerdict::Good;
    case IDNO: return NameVerdict::Refused;
    default: return NameVerdict::Abandoned;
    }
}

// A name object of the host, freed at the end.
class HostName {
public:
    HostName(EditContext* context, const char16_t* name)
        : context_(context),
          object_(context->langEnv->Operations.UnicodeToObject(
              context, name, static_cast<std::int64_t>(std::char_traits<char16_t>::length(name))))
    {
    }
    ~HostName()
    {
        if (object_ != nullptr) context_->langEnv->Operations.FreeObject(context_, object_);
    }
    HostName(const HostName&) = delete;
    HostName& operator=(const HostName&) = delete;
    [[nodiscard]] HostObject Get() const noexcept { return object_; }

private:
    EditContext* context_;
    HostObject object_;
};

// Whether an array can be saved under the name, and the user wants it where a variable has it. A host that cannot tell ends the question: what it
// said is in ErrorCode. One without variables makes no object of the name and refuses the first question about it.
NameVerdict CheckVariableNameForSaveAs(FrameWindow& frame, HWND owner, const char16_t* name)
{
    TraceScope trace("frame_file.cpp", "CheckVariableNameForSaveAs");
    EditContext* const context = frame.context;
    const HostOperations& host = context->langEnv->Operations;
    if (IsUnicodeValidName(name, *context->langEnv) == 0) return RefuseName(owner, IDS_NAME_IS_INVALID);
    ForgetError(context);
    const HostName object(context, name);
    if (HasError(context)) return NameVerdict::Abandoned;
    char16_t wideName[TitleSize] = {};
    const std::int32_t nameClass = host.GetNameClass(context, object.Get(), wideName);
    if (HasError(context)) return NameVerdict::Abandoned;
    switch (nameClass) {
    case NameClassUndefined: return NameVerdict::Good;
    case NameClassLabel: return RefuseName(owner, IDS_NAME_IS_A_LABEL);
    case NameClassVariable: break;
    case NameClassFunction: return RefuseName(owner, IDS_NAME_IS_A_FUNCTION);
    case NameClassOperator: return RefuseName(owner, IDS_NAME_IS_AN_OPERATOR);
    default: return RefuseName(owner, IDS_NAME_IS_INVALID);
    }
    if (host.GetCoupling(context, object.Get()) != 0) return RefuseName(owner, IDS_NAME_COUPLING_NOT_ZERO);
    return AskToReplace(frame, owner, name);
}

struct NameDialog {
    FrameWindow& frame;
    bool saving; // Save As, else Open
    Vector<char16_t> name;
};

// The text without blanks around it, which people paste along.
void ReadName(HWND dialog, NameDialog& state)
{
    GetDlgItemTextW(dialog, IDC_VARIABLE_NAME, AsWide(state.name.data()),
                    static_cast<int>(state.name.size()));
    std::u16string_view text(state.name.data());
    const std::size_t first = text.find_first_not_of(u' ');
    text = first == text.npos ? std::u16string_view()
                              : text.substr(first, text.find_last_not_of(u' ') - first + 1);
    const std::size_t length = text.size();
    std::copy(text.begin(), text.end(), state.name.begin());
    state.name[length] = u'\0';
}

NameVerdict CheckName(HWND dialog, NameDialog& state)
{
    ReadName(dialog, state);
    if (state.saving) {
        state.frame.saveSelected = IsDlgButtonChecked(dialog, IDC_SAVE_SELECTED) == BST_CHECKED;
        return CheckVariableNameForSaveAs(state.frame, dialog, state.name.data());
    }
    const LangEnv& environment = *state.frame.context->langEnv;
    return IsUnicodeValidName(state.name.data(), environment) != 0 ? NameVerdict::Good
                                                                   : RefuseName(dialog, IDS_NAME_IS_INVALID);
}

void OnNameDialogOk(HWND dialog, NameDialog& state)
{
    switch (CheckName(dialog, state)) {
    case NameVerdict::Good: EndDialog(dialog, IDOK); break;
    case NameVerdict::Abandoned: EndDialog(dialog, IDCANCEL); break;
    case NameVerdict::Refused:
        SendDlgItemMessageW(dialog, IDC_VARIABLE_NAME, EM_SETSEL, 0, -1);
        SetFocus(GetDlgItem(dialog, IDC_VARIABLE_NAME));
        break;
    }
}

INT_PTR OnNameDialogInit(HWND dialog, LPARAM lParam)
{
    SetWindowLongPtrW(dialog, DWLP_USER, lParam);
    const NameDialog& state = *reinterpret_cast<const NameDialog*>(lParam);
    SendDlgItemMessageW(dialog, IDC_VARIABLE_NAME, EM_LIMITTEXT, state.name.size() - 1, 0);
    if (state.saving)
        CheckDlgButton(dialog, IDC_SAVE_SELECTED, state.frame.saveSelected ? BST_CHECKED : BST_UNCHECKED);
    return TRUE;
}

INT_PTR CALLBACK NameDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept
{
    return Sealed<INT_PTR>(FALSE, [&]() -> INT_PTR {
        if (message == WM_INITDIALOG) return OnNameDialogInit(dialog, lParam);
        auto* const state = reinterpret_cast<NameDialog*>(GetWindowLongPtrW(dialog, DWLP_USER));
        if (message != WM_COMMAND || state == nullptr) return FALSE;
        if (LOWORD(wParam) == IDOK) return OnNameDialogOk(dialog, *state), TRUE;
        if (LOWORD(wParam) == IDCANCEL) return EndDialog(dialog, IDCANCEL), TRUE;
        return FALSE;
    });
}

// True when the user gave a name that can be used.
bool AskForName(NameDialog& state)
{
    const AskingScope asking(state.frame);
    const int id = state.saving ? IDD_SAVE_AS : IDD_OPEN;
    const INT_PTR answer = DialogBoxParamW(ModuleInstance(), MAKEINTRESOURCEW(id), state.frame.window,
                                           NameDialogProc, reinterpret_cast<LPARAM>(&state));
    RethrowEscapedException();
    return answer == IDOK;
}

// Room for the longest name that the host allows; false when there is no memory for it.
bool MakeRoomForName(NameDialog& state)
{
    try {
        state.name.resize(static_cast<std::size_t>(state.frame.context->langEnv->LongestName) + 1);
        return true;
    } catch (VTERROR_CODE) {
        return false;
    }
}

void SaveUnderName(FrameWindow& frame, const char16_t* name)
{
    const Scdr* const tree = AskViewForTree(frame, frame.saveSelected);
    if (tree == nullptr) return; // the view has said why
    ForgetError(frame.context);
    if (SaveVariableName(frame.context, *tree, name) != 0) {
        ReportFailedSave(frame);
    } else {
        StatusMessage(frame.window, IDS_DATA_SAVED, 0);
    }
}

} // namespace

void ReportFailedSave(const FrameWindow& frame)
{
    NMHDR header{};
    header.hwndFrom = frame.window;
    header.code = static_cast<UINT>(NotifySaveFailed);
    SendMessageW(frame.client, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&header));
    RethrowEscapedException();
}

void ShowHostError(FrameWindow& frame)
{
    LangEnv& environment = *frame.context->langEnv;
    if (environment.ErrorCode == VTERROR_CODE::NoError) return;
    const char16_t* const text =
        environment.ErrorDetail != nullptr ? environment.ErrorDetail : ErrorText(environment.ErrorCode);
    StatusMessage(frame.window, AsWide(text), MB_ICONEXCLAMATION);
    ForgetError(frame.context);
}

bool SaveTree(FrameWindow& frame)
{
    TraceScope trace("frame_file.cpp", "SaveTree");
    const Scdr* const tree = AskViewForTree(frame, false);
    if (tree == nullptr) return false; // the view has said why
    if (!HandToHost(frame, *tree)) {
        ReportFailedSave(frame);
        return false;
    }
    SendMessageW(frame.client, ViewSetModified, 0, 0);
    StatusMessage(frame.window, IDS_DATA_SAVED, 0);
    return true;
}

LRESULT OnRevert(FrameWindow& frame)
{
    TraceScope trace("frame_file.cpp", "OnRevert");
    const LRESULT refused =
        SendMessageW(frame.client, ViewSetObject, 0, reinterpret_cast<LPARAM>(frame.value));
    RethrowEscapedException();
    if (refused != 0) ShowHostError(frame);
    return refused;
}

void OnSaveAs(FrameWindow& frame)
{
    TraceScope trace("frame_file.cpp", "OnSaveAs");
    NameDialog state{frame, true, {}};
    if (!MakeRoomForName(state)) return;
    if (AskForName(state)) {
        SaveUnderName(frame, state.name.data());
    } else {
        ShowHostError(frame);
    }
}

void OnOpen(FrameWindow& frame)
{
    TraceScope trace("frame_file.cpp", "OnOpen");
    NameDialog state{frame, false, {}};
    if (!MakeRoomForName(state) || !AskForName(state)) return;
    const auto length = static_cast<std::int64_t>(std::char_traits<char16_t>::length(state.name.data()));
    ForgetError(frame.context);
    HostObject name =
        frame.context->langEnv->Operations.UnicodeToObject(frame.context, state.name.data(), length);
    if (!HasError(frame.context)) OpenVariable(frame.context, name);
    ShowHostError(frame);
}

} // namespace vantrel
