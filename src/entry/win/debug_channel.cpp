#include "entry/win/debug_channel.h"

#include <windows.h>

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <memory>
#include <new>

#include "entry/trace.h"
#include "entry/trace_lines.h"
#include "tools/win/wide.h"

namespace vantrel {
namespace {

constexpr wchar_t MappingName[] = L"APL Printf Shared Block";
constexpr wchar_t MutexName[] = L"APL Printf Mutex";
constexpr UINT ViewerPrint = WM_USER + 1;
constexpr UINT ViewerClear = WM_USER + 2;

// What the viewer reads. It gives its window in the first word.
struct SharedBlock {
    std::uint32_t window;
    std::uint32_t colour;
    std::int32_t length;
    char16_t text[DebugMessageLimit];
};

// The viewer's mutex; it is released but never waited for, since the synchronous message already serialises.
class ViewerMutex {
public:
    ViewerMutex() noexcept : handle_(OpenMutexW(MUTEX_ALL_ACCESS, FALSE, MutexName)) {}
    ~ViewerMutex()
    {
        if (handle_ == nullptr) return;
        ReleaseMutex(handle_);
        CloseHandle(handle_);
    }
    ViewerMutex(const ViewerMutex&) = delete;
    ViewerMutex& operator=(const ViewerMutex&) = delete;
    [[nodiscard]] bool Exists() const noexcept { return handle_ != nullptr; }

private:
    HANDLE handle_;
};

class ViewerBlock {
public:
    ViewerBlock() noexcept : mapping_(OpenFileMappingW(FILE_MAP_WRITE, FALSE, MappingName))
    {
        if (mapping_ != nullptr)
            block_ = static_cast<SharedBlock*>(MapViewOfFile(mapping_, FILE_MAP_WRITE, 0, 0, 0));
    }
    ~ViewerBlock()
    {
        if (block_ != nullptr) UnmapViewOfFile(block_);
        if (mapping_ != nullptr) CloseHandle(mapping_);
    }
    ViewerBlock(const ViewerBlock&) = delete;
    ViewerBlock& operator=(const ViewerBlock&) = delete;
    [[nodiscard]] SharedBlock* Get() const noexcept { return block_; }
    [[nodiscard]] HWND Window() const noexcept
    {
        return reinterpret_cast<HWND>(
            static_cast<std::uintptr_t>(block_->window)); // NOLINT: handles have 32 significant bits
    }

private:
    HANDLE mapping_;
    SharedBlock* block_ = nullptr;
};

// Names of the innermost routine, taken before the channel's own routine enters the trace context.
struct TracePlace {
    const char* file = FileNameOf(g_traceContext.file);
    const char* routine = g_traceContext.routine;
};

} // namespace

void SendDebugText(std::u16string_view text) noexcept
{
    TraceScope trace("debug_channel.cpp", "SendDebugText");
    const ViewerMutex mutex;
    if (!mutex.Exists()) return;
    const ViewerBlock viewer;
    SharedBlock* const block = viewer.Get();
    if (block == nullptr) return;
    const std::uint32_t colour = GetSysColor(COLOR_WINDOWTEXT);
    while (!text.empty()) {
        const DebugChunk chunk = NextDebugChunk(text);
        block->colour = colour;
        block->length = static_cast<std::int32_t>(chunk.length);
        std::memcpy(block->text, text.data(), static_cast<std::size_t>(chunk.length) * sizeof(char16_t));
        SendMessageW(viewer.Window(), ViewerPrint, 0, 0);
        text.remove_prefix(static_cast<std::size_t>(chunk.advance));
    }
}

int DebugPrintf(const wchar_t* format, ...) noexcept
{
    TraceScope trace("debug_channel.cpp", "DebugPrintf");
    constexpr auto Size = static_cast<std::size_t>(DebugMessageLimit);
    const std::unique_ptr<wchar_t[]> buffer(new (std::nothrow) wchar_t[Size]);
    if (buffer == nullptr) return 0;
    va_list arguments;
    va_start(arguments, format);
    const int written = _vsnwprintf(buffer.get(), Size, format, arguments);
    va_end(arguments);
    const int length = written < 0 ? static_cast<int>(Size) : written; // negative: cut at the buffer's end
    if (length >= 1) SendDebugText({AsUtf16(buffer.get()), static_cast<std::size_t>(length)});
    return length;
}

void DebugClear() noexcept
{
    TraceScope trace("debug_channel.cpp", "DebugClear");
    const ViewerMutex mutex;
    if (!mutex.Exists()) return;
    const ViewerBlock viewer;
    if (viewer.Get() != nullptr) SendMessageW(viewer.Window(), ViewerClear, 0, 0);
}

void TraceStarting(long line) noexcept
{
    const TracePlace place;
    DebugPrintf(L"%15hs[%05li] %25hs Starting\n", place.file, line, place.routine);
}

void TraceMessage(long line, const wchar_t* message) noexcept
{
    const TracePlace place;
    DebugPrintf(L"%15hs[%05li] %25hs    Message: %ls\n", place.file, line, place.routine, message);
}

void TraceInteger(long line, int value) noexcept
{
    const TracePlace place;
    DebugPrintf(L"%15hs[%05li] %25hs    Integer: %i\n", place.file, line, place.routine, value);
}

void TraceText(long line, const char* text) noexcept
{
    const TracePlace place;
    DebugPrintf(L"%15hs[%05li] %25hs    %hs\n", place.file, line, place.routine, text);
}

void TraceLastError(long line, const char* what, unsigned long lastError) noexcept
{
    const TracePlace place;
    DebugPrintf(L"%15hs[%05li] %25hs    %hs GetLastError(): %i\n", place.file, line, place.routine, what,
                static_cast<int>(lastError));
}

} // namespace vantrel
