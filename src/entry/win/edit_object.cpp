#include "entry/win/edit_object.h"

#include <utility>

#include "entry/command_log.h"
#include "entry/names.h"
#include "entry/trace.h"
#include "entry/win/crash_report.h"
#include "entry/win/message_loop.h"
#include "entry/win/resolution_scope.h"
#include "entry/win/signals.h"
#include "frame/messages.h"
#include "model/variables.h"
#include "resources/resource.h"
#include "tools/win/guard.h"
#include "tools/win/options.h"
#include "tools/win/placement.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"
#include "view/messages.h"

namespace vantrel {
namespace {

constexpr std::int64_t DefaultPrintPrecision = 10;
constexpr std::int64_t DefaultAccountNumber = 1001;
constexpr LONG TimerPeriodMilliseconds = 100;
constexpr LONGLONG TimerFirstDue = -1000000; // relative, in 100-nanosecond units

// One run of EditObject; what its guarded body works on.
struct EditRun {
    EditContext* context;
    HostObject object; // the value, or the name by name
    bool byName;
    HostObject value = nullptr;
    char16_t title[TitleSize] = {};
};

void StartTimer(EditContext* context) noexcept
{
    context->timer = CreateWaitableTimerW(nullptr, FALSE, nullptr);
    LARGE_INTEGER due = {};
    due.QuadPart = TimerFirstDue;
    if (context->timer != nullptr)
        SetWaitableTimer(context->timer, &due, TimerPeriodMilliseconds, nullptr, nullptr, FALSE);
}

void ReadSystemVariables(EditContext* context)
{
    const auto getVariable = context->langEnv->Operations.GetIntSysVar;
    context->indexOrigin = getVariable(context, u"⎕IO", 0) != 0 ? 1 : 0;
    const std::int64_t precision = getVariable(context, u"⎕PP", 0);
    context->printPrecision = precision == 0 ? DefaultPrintPrecision : precision;
    if (context->langEnv->DialectKind == Dialect::Apl2) {
        context->accountNumber = getVariable(context, u"⎕AI", DefaultAccountNumber);
    }
}

void FindValue(EditRun& run)
{
    EditContext* const context = run.context;
    if (!run.byName) {
        GetArrayTitle(context, run.title);
        run.value = run.object;
    } else if (IsObjectValidName(context, run.object) != 0) {
        run.value = GetVariableValue(context, run.object, run.title);
    } else {
        SetErrorCode(context, VTERROR_CODE::DomainError);
    }
}

// Keys by which the frame is used without a mouse: round its bars, and what Windows shows of anything by Alt+Enter.
constexpr ACCEL FrameKeys[] = {{FVIRTKEY, VK_F6, ID_FRAME_NEXT_PART},
                               {FVIRTKEY | FSHIFT, VK_F6, ID_FRAME_PREVIOUS_PART},
                               {FVIRTKEY | FALT, VK_RETURN, ID_FRAME_INFORMATION}};

// Tables one after the other; of two entries with the same key the first wins.
class AcceleratorEntries {
public:
    void AddTable(std::int32_t id) noexcept
    {
        HACCEL const table = id != 0 ? LoadAcceleratorsW(ModuleInstance(), MAKEINTRESOURCEW(id)) : nullptr;
        if (table == nullptr) return;
        count_ +=
            CopyAcceleratorTableW(table, entries_ + count_, static_cast<int>(std::size(entries_)) - count_);
        DestroyAcceleratorTable(table);
    }
    void Add(const ACCEL& entry) noexcept
    {
        if (count_ < static_cast<int>(std::size(entries_))) entries_[count_++] = entry;
    }
    [[nodiscard]] HACCEL MakeTable() noexcept { return CreateAcceleratorTableW(entries_, count_); }

private:
    ACCEL entries_[256] = {};
    int count_ = 0;
};

// The host's own keys in front of the common ones, so that they win.
HACCEL LoadAccelerators(const LangEnv& environment) noexcept
{
    AcceleratorEntries entries;
    entries.AddTable(environment.AcceleratorId);
    entries.AddTable(IDA_MAIN);
    for (const ACCEL& key : FrameKeys)
        entries.Add(key);
    return entries.MakeTable();
}

LRESULT Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const LRESULT answer = SendMessageW(window, message, wParam, lParam);
    RethrowEscapedException();
    return answer;
}

// Has the client take the value. False when the frame has gone, because the array was refused or the user closed it.
bool LoadValue(EditContext* context, HWND frame, HostObject value)
{
    HWND const client = GetDlgItem(frame, ClientId);
    context->flags |= EditContextLoading;
    const LRESULT refused = Ask(client, ViewSetObject, 0, reinterpret_cast<LPARAM>(value));
    context->flags = static_cast<std::uint8_t>(context->flags & ~EditContextLoading);
    if (!IsWindow(frame)) return false;
    if (refused != 0) {
        if (Ask(client, ViewGetOption, OptionRejectBadData, 0) == 0) return true;
        DestroyWindow(frame);
        RethrowEscapedException();
        return false;
    }
    if (Ask(frame, FrameGetSizeOnOpen, 0, 0) != 0) Ask(frame, FrameSizeToDefinition, 0, 0);
    return true;
}

// Windows obeys a process's first show command instead of the program's; a throw-away window uses it up.
class FirstShowWindow {
public:
    FirstShowWindow() noexcept
        : window_(CreateWindowExW(0, L"Edit", nullptr, 0, 0, 0, 0, 0, nullptr, nullptr, ModuleInstance(),
                                  nullptr))
    {
        ShowWindow(window_, SW_SHOWNORMAL);
        ShowWindow(window_, SW_HIDE);
    }
    ~FirstShowWindow() { DestroyWindow(window_); }
    FirstShowWindow(const FirstShowWindow&) = delete;
    FirstShowWindow& operator=(const FirstShowWindow&) = delete;

private:
    HWND window_;
};

// A frame that shows the value. False when there is none: it did not come up, or the array was refused.
bool ShowInFrame(EditContext* context, const char16_t* title, HostObject name, HostObject value)
{
    const DWORD style = ReadBooleanOption(u"Always on top", false) ? WS_EX_TOPMOST : 0;
    HWND const frame = CreateFrame(context, title, name, value, style);
    return frame != nullptr && LoadValue(context, frame, value);
}

void EditValue(EditRun& run)
{
    EditContext* const context = run.context;
    if (ShowInFrame(context, run.title, run.byName ? run.object : nullptr, run.value)) RunModalLoop(context);
}

void RunEdit(EditRun& run)
{
    EditContext* const context = run.context;
    StartTimer(context);
    ReadSystemVariables(context);
    FindValue(run);
    if (HasError(context)) return;
    context->accelerators = LoadAccelerators(*context->langEnv);
    EditValue(run);
}

// Also after an exception: the windows are gone by then, the rest still has to go.
void EndRun(EditRun& run) noexcept
{
    EditContext* const context = run.context;
    if (context->accelerators != nullptr) DestroyAcceleratorTable(context->accelerators);
    context->accelerators = nullptr;
    if (run.byName && run.value != nullptr) context->langEnv->Operations.FreeObject(context, run.value);
    for (HostObject object : context->openedObjects)
        context->langEnv->Operations.FreeObject(context, object);
    context->openedObjects.clear();
}

void NoteInterrupt(EditContext* context) noexcept
{
    const bool interrupted = (context->langEnv->Capabilities & CapabilityInterruptOrClose) != 0;
    if (!HasError(context) && interrupted) SetErrorCode(context, VTERROR_CODE::Interrupt);
}

void ClearRun(EditContext* context) noexcept
{
    context->result = nullptr;
    context->frame = nullptr;
    context->openFrames = 0;
    context->langEnv->ErrorCode = VTERROR_CODE::NoError;
    context->langEnv->Capabilities =
        static_cast<std::uint8_t>(context->langEnv->Capabilities & ~CapabilityInterruptOrClose);
    context->isInterruptOrClosePending = IsInterruptOrClosePending;
    context->openVariable = OpenVariable;
}

// A host object that goes back to the host unless somebody keeps it.
class HeldObject {
public:
    HeldObject(EditContext* context, HostObject object) noexcept : context_(context), object_(object) {}
    ~HeldObject()
    {
        if (object_ != nullptr) context_->langEnv->Operations.FreeObject(context_, object_);
    }
    HeldObject(const HeldObject&) = delete;
    HeldObject& operator=(const HeldObject&) = delete;
    [[nodiscard]] HostObject Get() const noexcept { return object_; }
    [[nodiscard]] HostObject Keep() noexcept { return std::exchange(object_, nullptr); }

private:
    EditContext* context_;
    HostObject object_;
};

void RunGuarded(EditRun& run) noexcept
{
    TraceContext where{"", ""};
    const bool failed =
        RunGuardedEdit([](void* argument) { RunEdit(*static_cast<EditRun*>(argument)); }, &run, where);
    if (failed) ReportSevereError(run.context, where);
    // A host that faults here must not take the process with it, now that the user's work is safe.
    const bool ended =
        RunGuardedEdit([](void* argument) { EndRun(*static_cast<EditRun*>(argument)); }, &run, where);
    static_cast<void>(ended);
    if (!failed) NoteInterrupt(run.context);
}

} // namespace

HWND CreateFrame(EditContext* context, const char16_t* title, HostObject name, HostObject value,
                 DWORD extendedStyle)
{
    TraceScope trace("edit_object.cpp", "CreateFrame");
    const FirstShowWindow firstShow;
    HWND const frame =
        CreateWindowExW(extendedStyle, AsWide(FrameClassName), AsWide(title),
                        WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                        CW_USEDEFAULT, nullptr, nullptr, ModuleInstance(), context);
    RethrowEscapedException();
    if (frame == nullptr) {
        SetErrorCode(context, VTERROR_CODE::OperatingSystemError);
        return nullptr;
    }
    Ask(frame, FrameSetName, FrameNameValue, reinterpret_cast<LPARAM>(value));
    if (name != nullptr) Ask(frame, FrameSetName, FrameNameVariable, reinterpret_cast<LPARAM>(name));
    WindowPlacementRestore(context, frame);
    SetForegroundWindowForce(frame);
    SetFocus(frame);
    RethrowEscapedException();
    return frame;
}

std::int32_t OpenVariable(EditContext* context, HostObject name)
{
    TraceScope trace("edit_object.cpp", "OpenVariable");
    HeldObject heldName(context, name);
    context->openedObjects.reserve(context->openedObjects.size() + 2);
    // A host without variables makes no object of a name; it refuses the question for the value.
    if (name != nullptr && IsObjectValidName(context, name) == 0) {
        if (!HasError(context)) SetErrorCode(context, VTERROR_CODE::DomainError);
        return 1;
    }
    char16_t title[TitleSize] = {};
    HeldObject value(context, GetVariableValue(context, name, title));
    if (value.Get() == nullptr) {
        if (!HasError(context)) SetErrorCode(context, VTERROR_CODE::ValueError);
        return 1;
    }
    if (!ShowInFrame(context, title, name, value.Get())) return 1;
    context->openedObjects.push_back(heldName.Keep());
    context->openedObjects.push_back(value.Keep());
    return 0;
}

HostObject EditObject(EditContext* context, HostObject object, bool byName) noexcept
{
    TraceScope trace("edit_object.cpp", "EditObject");
    SignalHandlersSave(context->signalState);
    CommandLog log;
    BeginCommandLog(log);
    context->commandLog = &log;
    ClearRun(context);

    EditRun run{context, object, byName};
    {
        const ResolutionScope sharp;
        RunGuarded(run);
    }

    SignalHandlersRestore(context->signalState);
    if (HasError(context)) context->langEnv->Operations.SignalHostError(context, context->langEnv->ErrorCode);
    if (context->timer != nullptr) CloseHandle(context->timer);
    context->timer = nullptr;
    context->commandLog = nullptr;
    context->isInterruptOrClosePending = nullptr;
    context->openVariable = nullptr;
    PassQuitToHost();
    return context->result;
}

} // namespace vantrel
