// Small operations of the language environment: variables, results, the clipboard.
#include <algorithm>
#include <string_view>

#include "entry/trace.h"
#include "hosts/clipboard.h"
#include "hosts/matlab_host.h"

namespace vantrel::matlab {
namespace {

constexpr char BaseWorkspace[] = "base";
constexpr std::int32_t NameClassUndefined = 0;
constexpr std::int32_t NameClassVariable = 2;

// The bytes of a variable's name, without the blanks around it that a user may have left. Null and OutOfMemory where MATLAB does not give them.
class VariableName {
public:
    VariableName(EditContext* context, HostObject name) : mx_(HostOf(context).functions)
    {
        bytes_ = mx_.mxArrayToString(static_cast<const MxArray*>(name));
        if (bytes_ == nullptr) {
            SetErrorCode(context, VTERROR_CODE::OutOfMemory);
            return;
        }
        const std::string_view text(bytes_);
        const std::size_t first = std::min(text.find_first_not_of(' '), text.size());
        const std::size_t last = text.find_last_not_of(' ');
        if (last != std::string_view::npos) bytes_[last + 1] = 0;
        start_ = bytes_ + first;
    }
    ~VariableName()
    {
        if (bytes_ != nullptr) mx_.mxFree(bytes_);
    }
    VariableName(const VariableName&) = delete;
    VariableName& operator=(const VariableName&) = delete;
    [[nodiscard]] const char* Get() const noexcept { return start_; }

private:
    const MatlabFunctions& mx_;
    char* bytes_ = nullptr;
    const char* start_ = nullptr;
};

void StartOperation(EditContext* context) noexcept
{
    ClearHostMessage(HostOf(context));
    SetErrorCode(context, VTERROR_CODE::NoError);
}

} // namespace

void FreeObject(EditContext* context, HostObject array)
{
    TraceScope trace("matlab_operations.cpp", "FreeObject");
    if (array != nullptr) HostOf(context).functions.mxDestroyArray(static_cast<MxArray*>(array));
}

std::int64_t GetIntSysVar(EditContext*, const char16_t* name, std::int64_t)
{
    TraceScope trace("matlab_operations.cpp", "GetIntSysVar");
    const std::u16string_view wanted(name);
    if (wanted == u"⎕IO") return 1;
    if (wanted == u"⎕PP") return 10;
    return 0;
}

std::int32_t SetResult(EditContext* context, const Scdr* scdr)
{
    TraceScope trace("matlab_operations.cpp", "SetResult");
    HostObject array = ScdrToObject(context, scdr);
    if (array == nullptr) {
        NoteFailure(context, context->langEnv->ErrorCode);
        return 1;
    }
    FreeObject(context, context->result); // of an earlier save
    context->result = array;
    NoteSaved(context);
    return 0;
}

void Assign(EditContext* context, HostObject name, HostObject value)
{
    TraceScope trace("matlab_operations.cpp", "Assign");
    const VariableName text(context, name);
    if (text.Get() == nullptr) return;
    const int failed = HostOf(context).functions.mexPutVariable(BaseWorkspace, text.Get(),
                                                                static_cast<const MxArray*>(value));
    if (failed != 0) SetErrorCode(context, VTERROR_CODE::SystemError);
}

std::int32_t GetNameClass(EditContext* context, HostObject name, char16_t*)
{
    TraceScope trace("matlab_operations.cpp", "GetNameClass");
    const VariableName text(context, name);
    if (text.Get() == nullptr) return NameClassUndefined;
    const MxArray* variable = HostOf(context).functions.mexGetVariablePtr(BaseWorkspace, text.Get());
    return variable != nullptr ? NameClassVariable : NameClassUndefined;
}

HostObject GetValue(EditContext* context, HostObject name)
{
    TraceScope trace("matlab_operations.cpp", "GetValue");
    const VariableName text(context, name);
    if (text.Get() == nullptr) return nullptr;
    MxArray* value = HostOf(context).functions.mexGetVariableWithObject(BaseWorkspace, text.Get());
    if (value == nullptr) SetErrorCode(context, VTERROR_CODE::ValueError);
    return value;
}

Scdr* ClipboardToScdr(EditContext* context, WindowHandle owner)
{
    TraceScope trace("matlab_operations.cpp", "ClipboardToScdr");
    StartOperation(context);
    return ReadClipboard(context, owner);
}

std::int32_t ScdrToClipboard(EditContext* context, WindowHandle owner, const Scdr* scdr)
{
    TraceScope trace("matlab_operations.cpp", "ScdrToClipboard");
    StartOperation(context);
    return WriteClipboard(context, owner, *scdr, nullptr);
}

} // namespace vantrel::matlab
