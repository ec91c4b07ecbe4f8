#include "workbench/win/files.h"

#include <windows.h>

#include <algorithm>

#include "workbench/formats/utf.h"

namespace vantrel::workbench {
namespace {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

constexpr std::size_t chunkBytes = std::size_t{1} << 24;

const wchar_t* AsWide(const std::u16string& text)
{
    return reinterpret_cast<const wchar_t*>(text.c_str());
}

class FileHandle {
public:
    explicit FileHandle(HANDLE handle) : handle_(handle) {}
    ~FileHandle() { Close(); }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    HANDLE Get() const { return handle_; }
    bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
    void Close()
    {
        if (IsOpen()) CloseHandle(handle_);
        handle_ = INVALID_HANDLE_VALUE;
    }

private:
    HANDLE handle_;
};

bool ReadAll(HANDLE file, std::string& bytes)
{
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(file, &size)) return false;
    bytes.resize(static_cast<std::size_t>(size.QuadPart));
    std::size_t done = 0;
    while (done < bytes.size()) {
        DWORD read = 0;
        const auto wanted = static_cast<DWORD>(std::min(chunkBytes, bytes.size() - done));
        if (!::ReadFile(file, bytes.data() + done, wanted, &read, nullptr)) return false;
        if (read == 0) break;
        done += read;
    }
    bytes.resize(done);
    return true;
}

bool WriteAll(HANDLE file, const std::string& bytes)
{
    for (std::size_t done = 0; done < bytes.size();) {
        DWORD written = 0;
        const auto wanted = static_cast<DWORD>(std::min(chunkBytes, bytes.size() - done));
        if (!WriteFile(file, bytes.data() + done, wanted, &written, nullptr)) return false;
        done += written;
    }
    return FlushFileBuffers(file) != FALSE;
}

std::u16string TemporaryName(const std::u16string& name)
{
    std::u16string made = name + u".";
    for (const char digit : std::to_string(GetCurrentProcessId()))
        made += static_cast<char16_t>(digit);
    return made + u".tmp";
}

} // namespace

std::string LastErrorText()
{
    const DWORD code = GetLastError();
    wchar_t buffer[512];
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        code, 0, buffer, static_cast<DWORD>(std::size(buffer)), nullptr);
    std::string text = Utf8FromUtf16({reinterpret_cast<const char16_t*>(buffer), length});
    while (!text.empty() && (text.back() == '\r' || text.back() == '\n' || text.back() == '.'))
        text.pop_back();
    return text.empty() ? "Windows error " + std::to_string(code) : text;
}

bool ReadWholeFile(const std::u16string& name, std::string& bytes, std::string& reason)
{
    const FileHandle file(CreateFileW(AsWide(name), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file.IsOpen() && ReadAll(file.Get(), bytes)) return true;
    reason = LastErrorText();
    return false;
}

bool ReplaceFileContents(const std::u16string& name, const std::string& bytes, std::string& reason)
{
    const std::u16string temporary = TemporaryName(name);
    FileHandle file(CreateFileW(AsWide(temporary), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.IsOpen()) {
        reason = LastErrorText();
        return false;
    }
    bool written = WriteAll(file.Get(), bytes);
    if (!written) reason = LastErrorText();
    file.Close();
    if (written &&
        !MoveFileExW(AsWide(temporary), AsWide(name), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        reason = LastErrorText();
        written = false;
    }
    if (!written) DeleteFileW(AsWide(temporary));
    return written;
}

} // namespace vantrel::workbench
