// The operations of the language environment that APLX answers in its own way.
#include <string_view>
#include <utility>

#include "entry/trace.h"
#include "hosts/aplx_host.h"
#include "hosts/clipboard.h"
#include "hosts/local_primitives.h"

namespace vantrel::aplx {
namespace {

// A processor cannot ask for the workspace's own; these are those of a clear workspace.
constexpr std::int64_t IndexOrigin = 1;
constexpr std::int64_t PrintPrecision = 10;

// An edit by name would need these; the processor's protocol has no names.
void Refuse(EditContext* context, long line)
{
    HostOf(context).platform->traceStarting(line);
    SetErrorCode(context, VTERROR_CODE::NonceError);
}

struct PlannedRecord {
    const Scdr* scdr;
    RecordPlan plan;
};

bool WritePlannedRecord(EditContext*, const void* what, void* block)
{
    const auto& planned = *static_cast<const PlannedRecord*>(what);
    ScdrToObjectTypeSet(*planned.scdr, planned.plan, static_cast<std::uint8_t*>(block));
    return true;
}

} // namespace

Scdr* CallPrimitiveReturningScdr(EditContext* context, std::int32_t primitive, const Scdr* argument,
                                 const Scdr* leftArgument)
{
    TraceScope trace("aplx_operations.cpp", "CallPrimitiveReturningScdr");
    return CallLocalPrimitive(context, primitive, argument, leftArgument);
}

std::int32_t CheckForInterrupt(EditContext* context)
{
    TraceScope trace("aplx_operations.cpp", "CheckForInterrupt");
    const auto hook = context->isInterruptOrClosePending;
    const std::int32_t answer = hook != nullptr ? hook(context) : 0;
    if (answer != 0) SetErrorCode(context, VTERROR_CODE::Interrupt);
    return answer;
}

// Records are the instance's, which frees them itself.
void FreeObject(EditContext*, HostObject) {}

std::int64_t GetIntSysVar(EditContext*, const char16_t* name, std::int64_t defaultValue)
{
    TraceScope trace("aplx_operations.cpp", "GetIntSysVar");
    const std::u16string_view wanted(name);
    if (wanted == u"⎕IO") return IndexOrigin;
    if (wanted == u"⎕PP") return PrintPrecision;
    return defaultValue;
}

std::int32_t ScdrToClipboard(EditContext* context, WindowHandle owner, const Scdr* scdr)
{
    TraceScope trace("aplx_operations.cpp", "ScdrToClipboard");
    PlannedRecord planned{scdr, {}};
    // Arrays that APLX cannot hold still go to other windows of the editor.
    const bool possible = SetDialectType(context, *scdr, planned.plan);
    SetErrorCode(context, VTERROR_CODE::NoError);
    const ClipboardExtra extra{ClipboardFormat::AplxArray, planned.plan.size, WritePlannedRecord, &planned};
    const std::int32_t opened = WriteClipboard(context, owner, *scdr, possible ? &extra : nullptr);
    if (opened != 0 && !possible) SetErrorCode(context, VTERROR_CODE::SystemError);
    return opened;
}

std::int32_t SetResult(EditContext* context, const Scdr* scdr)
{
    TraceScope trace("aplx_operations.cpp", "SetResult");
    if (ScdrToObject(context, scdr) == nullptr) return 1;
    Instance& instance = *HostOf(context).running;
    instance.result = std::move(instance.output);
    context->result = instance.result.get();
    return 0;
}

// A processor's status has no room for the editor's codes: the user has seen the text, the trace viewer gets it, too.
void SignalHostError(EditContext* context, VTERROR_CODE code)
{
    TraceScope trace("aplx_operations.cpp", "SignalHostError");
    const Host& host = HostOf(context);
    ErrorMessage message{code, nullptr, HostMessageFor(host, code)};
    ErrorCodeText(message);
    if (host.platform->traceMessage == nullptr) return;
    host.platform->traceMessage(__LINE__, message.detail != nullptr ? message.detail : message.text);
}

void Assign(EditContext* context, HostObject, HostObject)
{
    TraceScope trace("aplx_operations.cpp", "Assign");
    Refuse(context, __LINE__);
}

std::int32_t GetCoupling(EditContext* context, HostObject)
{
    TraceScope trace("aplx_operations.cpp", "GetCoupling");
    Refuse(context, __LINE__);
    return 0;
}

std::int32_t GetNameClass(EditContext* context, HostObject, char16_t*)
{
    TraceScope trace("aplx_operations.cpp", "GetNameClass");
    Refuse(context, __LINE__);
    return 0;
}

HostObject GetValue(EditContext* context, HostObject)
{
    TraceScope trace("aplx_operations.cpp", "GetValue");
    Refuse(context, __LINE__);
    return nullptr;
}

// Nothing is named here, so no name has to become an object.
HostObject UnicodeToObject(EditContext*, const char16_t*, std::int64_t)
{
    return nullptr;
}

} // namespace vantrel::aplx
