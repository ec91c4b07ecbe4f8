#include "entry/win/crash_report.h"

#include <windows.h>

#include <shlobj.h>
#include <shlwapi.h>

#include <cwchar>
#include <string>
#include <utility>

#include "entry/command_log.h"
#include "entry/product.h"
#include "entry/trace_lines.h"
#include "frame/messages.h"
#include "tools/win/guard.h"
#include "tools/win/wide.h"

namespace vantrel {
namespace {

constexpr int ReportSize = 1024; // characters of the message, terminator included

bool IsFrameWindow(HWND window) noexcept
{
    wchar_t name[64] = {};
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    return std::wcscmp(name, AsWide(FrameClassName)) == 0;
}

BOOL CALLBACK DestroyIfFrame(HWND window, LPARAM) noexcept
{
    if (!IsFrameWindow(window)) return TRUE;
    // Its tree may be what broke; the other windows still have to go.
    TraceContext where{"", ""};
    static_cast<void>(
        RunGuardedEdit([](void* frame) { DestroyWindow(static_cast<HWND>(frame)); }, window, where));
    return TRUE;
}

void LogException(EditContext* context, const SYSTEMTIME& now) noexcept
{
    char date[260] = {};
    char time[260] = {};
    GetDateFormatA(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &now, nullptr, date,
                   static_cast<int>(std::size(date)));
    GetTimeFormatA(LOCALE_USER_DEFAULT, TIME_FORCE24HOURFORMAT, &now, nullptr, time,
                   static_cast<int>(std::size(time)));
    try {
        LogLine(context, (std::string("Exception caught at ") + date + " " + time).c_str());
    } catch (...) { // the report goes on without the line
    }
}

struct LogPath {
    wchar_t text[MAX_PATH * 2] = {};
};

LogPath MakeLogPath(const SYSTEMTIME& now) noexcept
{
    LogPath path;
    wchar_t name[MAX_PATH] = {};
    _snwprintf(name, std::size(name) - 1, L"%i %i %i %i %i %i %ls", now.wYear, now.wMonth, now.wDay,
               now.wHour, now.wMinute, now.wSecond, L"Vantrel command log.txt");
    SHGetFolderPathW(nullptr, CSIDL_PERSONAL, nullptr, 0, path.text);
    PathAppendW(path.text, name);
    return path;
}

// An invalid handle is not told from a good one: the write then fails, and the message names a file that is not there.
void WriteLog(const CommandLog& log, const LogPath& path) noexcept
{
    HANDLE file = CreateFileW(path.text, GENERIC_WRITE, FILE_SHARE_WRITE, nullptr, CREATE_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == nullptr) return;
    DWORD written = 0;
    WriteFile(file, log.data(), static_cast<DWORD>(log.size()), &written, nullptr);
    CloseHandle(file);
}

void ShowReport(const EditContext* context, const TraceContext& where, const LogPath& path) noexcept
{
    const char16_t* const address =
        context->langEnv->SupportAddress != nullptr ? context->langEnv->SupportAddress : SupportAddress;
    wchar_t text[ReportSize] = {};
    _snwprintf(text, ReportSize - 1,
               L"The Vantrel has encountered a severe error and must shut down.\n\n"
               L"The current file was %hs.\nThe current routine was %hs.\n\n"
               L"A command log was written to the following location:\n\n%ls\n\n"
               L"Please make a note of what you were doing and report the problem and send the command log "
               L"to %ls.\n\n"
               L"Press Ok to dismiss this window.",
               FileNameOf(where.file), where.routine, path.text, AsWide(address));
    MessageBeep(MB_ICONHAND);
    MessageBoxW(nullptr, text, L"Vantrel Error Message", MB_ICONHAND | MB_SYSTEMMODAL);
}

// The host's own routine may fail as well now.
void FreeResult(EditContext* context) noexcept
{
    TraceContext where{"", ""};
    static_cast<void>(RunGuardedEdit(
        [](void* argument) {
            auto* const edit = static_cast<EditContext*>(argument);
            HostObject const result = std::exchange(edit->result, nullptr);
            if (result != nullptr) edit->langEnv->Operations.FreeObject(edit, result);
        },
        context, where));
}

} // namespace

void DestroyAllFrames() noexcept
{
    TraceScope trace("crash_report.cpp", "DestroyAllFrames");
    EnumWindows(DestroyIfFrame, 0);
    ForgetEscapedException();
}

void ReportSevereError(EditContext* context, const TraceContext& where) noexcept
{
    TraceScope trace("crash_report.cpp", "ReportSevereError");
    FreeResult(context);
    DestroyAllFrames();
    SYSTEMTIME now = {};
    GetLocalTime(&now);
    LogException(context, now);
    const LogPath path = MakeLogPath(now);
    WriteLog(*context->commandLog, path);
    ShowReport(context, where, path);
    SetErrorCode(context, VTERROR_CODE::Exception);
}

} // namespace vantrel
