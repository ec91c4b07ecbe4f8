#include "model/variables.h"

#include <string>

#include "entry/trace.h"
#include "model/rebuild.h"

namespace vantrel {
namespace {

constexpr std::int32_t NameClassUndefined = 0;
constexpr std::int32_t NameClassVariable = 2;

// The text of a character array; empty and false where the object is no text.
struct NameText {
    ScdrPtr node;
    [[nodiscard]] bool IsText() const noexcept { return node != nullptr && node->Type == TypeCharacter; }
    [[nodiscard]] const char16_t* Units() const noexcept { return static_cast<const char16_t*>(node->data); }
    [[nodiscard]] std::int64_t Length() const noexcept { return node->ElementCount; }
};

NameText ReadName(EditContext* context, HostObject name) noexcept
{
    return {ScdrPtr(context->langEnv->Operations.ObjectToScdr(context, name))};
}

// Whether the name stands for a variable that may be read. Sets ErrorCode where not.
bool IsReadableVariable(EditContext* context, HostObject name) noexcept
{
    const HostOperations& host = context->langEnv->Operations;
    char16_t wideName[TitleSize] = {};
    const std::int32_t nameClass = host.GetNameClass(context, name, wideName);
    if (HasError(context)) return false;
    if (nameClass == NameClassUndefined) return SetErrorCode(context, VTERROR_CODE::ValueError);
    if (nameClass != NameClassVariable) return SetErrorCode(context, VTERROR_CODE::DomainError);
    if (host.GetCoupling(context, name) != 0) return SetErrorCode(context, VTERROR_CODE::DomainError);
    return true;
}

// 1 when the host reported an error.
std::int32_t NoteOutcome(EditContext* context) noexcept
{
    if (HasError(context)) {
        NoteFailure(context, context->langEnv->ErrorCode);
        return 1;
    }
    NoteSaved(context);
    return 0;
}

std::int32_t AssignValue(EditContext* context, HostObject name, const Scdr& value) noexcept
{
    const HostOperations& host = context->langEnv->Operations;
    HostObject object = host.ScdrToObject(context, &value);
    if (object != nullptr) {
        host.Assign(context, name, object);
        host.FreeObject(context, object);
    }
    return NoteOutcome(context);
}

} // namespace

std::int32_t IsObjectValidName(EditContext* context, HostObject name) noexcept
{
    TraceScope trace("variables.cpp", "IsObjectValidName");
    const NameText text = ReadName(context, name);
    return text.IsText() ? IsValidName(text.Units(), text.Length(), *context->langEnv) : 0;
}

HostObject GetVariableValue(EditContext* context, HostObject name, char16_t (&title)[TitleSize]) noexcept
{
    TraceScope trace("variables.cpp", "GetVariableValue");
    if (!IsReadableVariable(context, name)) return nullptr;
    HostObject value = context->langEnv->Operations.GetValue(context, name);
    if (value == nullptr) return nullptr;
    const NameText text = ReadName(context, name);
    if (text.IsText()) MakeVariableTitle(context, text.Units(), text.Length(), title);
    return value;
}

std::int32_t SaveVariable(EditContext* context, HostObject name, const Scdr& value) noexcept
{
    TraceScope trace("variables.cpp", "SaveVariable");
    if (CanSaveScdr(context, value)) return AssignValue(context, name, value);
    SetErrorCode(context, VTERROR_CODE::DomainError);
    return 1;
}

std::int32_t SaveVariableName(EditContext* context, const Scdr& value, const char16_t* name) noexcept
{
    TraceScope trace("variables.cpp", "SaveVariableName");
    if (!CanSaveScdr(context, value)) {
        SetErrorCode(context, VTERROR_CODE::DomainError);
        return 1;
    }
    const HostOperations& host = context->langEnv->Operations;
    const auto length = static_cast<std::int64_t>(std::char_traits<char16_t>::length(name));
    HostObject nameObject = host.UnicodeToObject(context, name, length);
    if (nameObject == nullptr) {
        NoteFailure(context, context->langEnv->ErrorCode);
        return 1;
    }
    const std::int32_t failed = AssignValue(context, nameObject, value);
    host.FreeObject(context, nameObject);
    return failed;
}

} // namespace vantrel
