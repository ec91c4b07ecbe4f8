// The clipboard: the interpreter's own copy buffer keeps what no other program has replaced.
#include "entry/trace.h"
#include "hosts/clipboard.h"
#include "hosts/dyalog_host.h"
#include "model/primitives.h"

namespace vantrel {
namespace {

void ForgetError(EditContext* context) noexcept
{
    SetErrorCode(context, VTERROR_CODE::NoError);
    ClearDyalogMessage(HostOf(context));
}

ScdrPtr ReadCopyBuffer(EditContext* context)
{
    const DyalogHost& host = HostOf(context);
    const OwnedLocalp localp(context, LocalpAllocate(host));
    const std::int64_t status = ServiceOf(host, dyalog::GetCopyBuffer)(localp.get());
    if (!CheckDyalogCallbackResult(context, status)) return nullptr;
    ScdrPtr scdr(ObjectToScdr(context, localp.get()));
    if (scdr != nullptr) SetSimplestType(*scdr);
    return scdr;
}

// An array that the interpreter cannot hold goes to the system's clipboard alone.
void FillCopyBuffer(EditContext* context, const Scdr& scdr)
{
    const OwnedLocalp localp(context, ScdrToObject(context, &scdr));
    if (localp.get() == nullptr) {
        if (context->langEnv->ErrorCode == VTERROR_CODE::DomainError) ForgetError(context);
        return;
    }
    CheckDyalogCallbackResult(context, ServiceOf(HostOf(context), dyalog::PutCopyBuffer)(localp.get()));
}

} // namespace

std::int32_t ClipboardCanPaste(EditContext* context)
{
    TraceScope trace("dyalog_clipboard.cpp", "ClipboardCanPaste");
    if (CanPasteFromClipboard(context) != 0) return 1;
    return ServiceOf(HostOf(context), dyalog::AskCopyBuffer)() != 0 ? 1 : 0;
}

Scdr* ClipboardToScdr(EditContext* context, WindowHandle owner)
{
    TraceScope trace("dyalog_clipboard.cpp", "ClipboardToScdr");
    ForgetError(context);
    if (CanPasteFromClipboard(context) != 0) return ReadClipboard(context, owner);
    try {
        return ReadCopyBuffer(context).release();
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

std::int32_t ScdrToClipboard(EditContext* context, WindowHandle owner, const Scdr* scdr)
{
    TraceScope trace("dyalog_clipboard.cpp", "ScdrToClipboard");
    ForgetError(context);
    FillCopyBuffer(context, *scdr);
    return WriteClipboard(context, owner, *scdr, nullptr);
}

} // namespace vantrel
