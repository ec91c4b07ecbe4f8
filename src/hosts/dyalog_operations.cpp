// Small operations of the language environment.
#include <string_view>

#include "entry/trace.h"
#include "hosts/dyalog_host.h"

namespace vantrel {
namespace {

constexpr char16_t HelpFolderSetting[] = u"DyalogHelpDir";
constexpr char HelpFolderSettingAnsi[] = "DyalogHelpDir";

void ReadLibraryPath(DyalogHost& host)
{
    const SettingService read = ServiceOf(host, dyalog::Setting);
    if (host.unicode) {
        read(HelpFolderSetting, u"", host.libraryPath, LibraryPathSize);
        return;
    }
    char narrow[LibraryPathSize + 1] = {};
    read(HelpFolderSettingAnsi, "", narrow, LibraryPathSize);
    const auto length = static_cast<std::int32_t>(std::string_view(narrow).size());
    if (length > 0) host.platform->widenAnsi(narrow, length, host.libraryPath, LibraryPathSize);
}

} // namespace

std::int32_t CheckForInterrupt(EditContext* context)
{
    TraceScope trace("dyalog_operations.cpp", "CheckForInterrupt");
    LangEnv& environment = *context->langEnv;
    const std::int32_t flag = ServiceOf(HostOf(context), dyalog::Interrupted)() & 1;
    const unsigned others = environment.Capabilities & ~unsigned{CapabilityInterruptOrClose};
    const unsigned interrupted = flag != 0 ? unsigned{CapabilityInterruptOrClose} : 0u;
    environment.Capabilities = static_cast<std::uint8_t>(others | interrupted);
    if (flag != 0) SetErrorCode(context, VTERROR_CODE::Interrupt);
    return flag;
}

std::int64_t GetIntSysVar(EditContext* context, const char16_t* name, std::int64_t defaultValue)
{
    TraceScope trace("dyalog_operations.cpp", "GetIntSysVar");
    std::int64_t indexOrigin = 0;
    std::int64_t printPrecision = 0;
    ServiceOf(HostOf(context), dyalog::SystemVariables)(&indexOrigin, &printPrecision);
    const std::u16string_view wanted(name);
    if (wanted == u"⎕IO") return indexOrigin;
    if (wanted == u"⎕PP") return printPrecision;
    return defaultValue;
}

const char16_t* GetLibraryPath(EditContext* context)
{
    TraceScope trace("dyalog_operations.cpp", "GetLibraryPath");
    DyalogHost& host = HostOf(context);
    if (!host.libraryPathKnown) ReadLibraryPath(host);
    host.libraryPathKnown = true;
    return host.libraryPath;
}

std::int32_t SetResult(EditContext* context, const Scdr* scdr)
{
    TraceScope trace("dyalog_operations.cpp", "SetResult");
    DyalogHost& host = HostOf(context);
    HostObject object = ScdrToObject(context, scdr);
    if (object == nullptr) {
        NoteFailure(context, context->langEnv->ErrorCode);
        return 1;
    }
    NoteSaved(context);
    if (host.resultSlot == nullptr) {
        FreeObject(context, context->result); // of an earlier save
        context->result = object;
        return 0;
    }
    StoreResult(host, host.resultSlot, static_cast<Localp*>(object)->block, EmptySlot::LeaveAlone);
    FreeObject(context, object);
    host.resultStored = true;
    return 0;
}

} // namespace vantrel
