#include "hosts/win/host_platform.h"

#include <windows.h>

#include <cstring>

#include "entry/win/debug_channel.h"
#include "entry/win/edit_object.h"
#include "entry/win/window_classes.h"
#include "tools/win/wide.h"
#include "tools/win/window.h"

namespace vantrel {
namespace {

constexpr wchar_t CcdrFormatName[] = L"Vantrel Clipboard Data";
constexpr wchar_t AplxFormatName[] = L"APLX Array";

// Windows takes the fixed block over and other programs read it while ours goes on.
constexpr UINT ClipboardBlockFlags = GMEM_DDESHARE | GMEM_ZEROINIT;

std::int32_t WidenAnsi(const char* text, std::int32_t length, char16_t* buffer, std::int32_t capacity)
{
    return MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED, text, length, AsWide(buffer), capacity);
}

// 0 where the system has no more names. Registering a name again gives its number.
UINT NumberOf(ClipboardFormat format) noexcept
{
    switch (format) {
    case ClipboardFormat::Ccdr: return RegisterClipboardFormatW(CcdrFormatName);
    case ClipboardFormat::AplxArray: return RegisterClipboardFormatW(AplxFormatName);
    case ClipboardFormat::UnicodeText: return CF_UNICODETEXT;
    default: return 0;
    }
}

// Hosts that have the editor. Two interpreters in one process share its window classes.
int g_hosts = 0;

bool RegisterWindows()
{
    return ++g_hosts > 1 || (NumberOf(ClipboardFormat::Ccdr) != 0 &&
                             NumberOf(ClipboardFormat::AplxArray) != 0 && RegisterEditorClasses());
}

void UnregisterWindows()
{
    if (--g_hosts == 0) UnregisterEditorClasses();
}

void TraceText(long line, const char16_t* message)
{
    TraceMessage(line, AsWide(message));
}

ClipboardFormat BestFormat()
{
    UINT formats[] = {NumberOf(ClipboardFormat::Ccdr), CF_UNICODETEXT};
    const int best = GetPriorityClipboardFormat(formats, static_cast<int>(std::size(formats)));
    if (best <= 0) return ClipboardFormat::None; // -1: there are only formats that we do not read
    return static_cast<UINT>(best) == CF_UNICODETEXT ? ClipboardFormat::UnicodeText : ClipboardFormat::Ccdr;
}

bool Open(WindowHandle owner)
{
    return OpenClipboardPatiently(owner);
}

bool Empty()
{
    return EmptyClipboard() != FALSE;
}

void Close()
{
    CloseClipboard();
}

const void* Lock(ClipboardFormat format, std::int64_t* size)
{
    const HANDLE block = GetClipboardData(NumberOf(format));
    if (block == nullptr) return nullptr;
    *size = static_cast<std::int64_t>(GlobalSize(block));
    return GlobalLock(block);
}

void Unlock(ClipboardFormat format)
{
    GlobalUnlock(GetClipboardData(NumberOf(format)));
}

ClipboardBlock Allocate(std::int64_t size)
{
    const HGLOBAL handle = GlobalAlloc(ClipboardBlockFlags, static_cast<SIZE_T>(size));
    return {handle, handle != nullptr ? GlobalLock(handle) : nullptr};
}

void Release(ClipboardBlock block)
{
    GlobalUnlock(block.handle);
    GlobalFree(block.handle);
}

bool Put(ClipboardFormat format, ClipboardBlock block)
{
    GlobalUnlock(block.handle);
    if (SetClipboardData(NumberOf(format), block.handle) != nullptr) return true;
    GlobalFree(block.handle);
    return false;
}

constexpr HostPlatform Platform = {
    WidenAnsi,  RegisterWindows, UnregisterWindows,
    EditObject, TraceStarting,   {BestFormat, Open, Empty, Close, Lock, Unlock, Allocate, Put, Release},
    TraceText,
};

} // namespace

const HostPlatform& WindowsHostPlatform() noexcept
{
    return Platform;
}

} // namespace vantrel
