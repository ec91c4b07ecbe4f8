// The library's doors for the Dyalog interpreter. What happens behind them is portable; here is what it needs of Windows.
#include <windows.h>

#include "entry/win/debug_channel.h"
#include "entry/win/edit_object.h"
#include "entry/win/window_classes.h"
#include "hosts/dyalog_host.h"
#include "tools/win/wide.h"

namespace vantrel {
namespace {

constexpr char16_t ClipboardFormatName[] = u"Vantrel Clipboard Data";

std::int32_t WidenAnsi(const char* text, std::int32_t length, char16_t* buffer, std::int32_t capacity)
{
    return MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED, text, length, AsWide(buffer), capacity);
}

bool RegisterWindows()
{
    return RegisterClipboardFormatW(AsWide(ClipboardFormatName)) != 0 && RegisterEditorClasses();
}

constexpr DyalogPlatform Platform = {WidenAnsi, RegisterWindows, UnregisterEditorClasses, EditObject,
                                     TraceStarting};

void RunExternalFunction(Localp* argument, DyalogBlock** resultSlot, const char16_t* title) noexcept
{
    DyalogHost& host = TheDyalogHost();
    host.platform = &Platform;
    ExternalFunction(host, argument, resultSlot, title);
}

} // namespace
} // namespace vantrel

extern "C" {

std::int64_t DyalogGetInterpreterFunctions(const std::int64_t* table) noexcept
{
    return vantrel::SetInterpreterTable(vantrel::TheDyalogHost(), table);
}

std::int64_t DyalogEditArray(vantrel::Localp* argument, vantrel::DyalogBlock** resultSlot) noexcept
{
    vantrel::RunExternalFunction(argument, resultSlot, nullptr);
    return 0;
}

std::int64_t DyalogEditArrayTitle(vantrel::Localp* argument, vantrel::DyalogBlock** resultSlot,
                                  const char16_t* title) noexcept
{
    vantrel::RunExternalFunction(argument, resultSlot, title);
    return 0;
}

} // extern "C"
