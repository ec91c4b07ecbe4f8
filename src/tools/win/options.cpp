#include "tools/win/options.h"

#include <cwchar>

#include "entry/trace.h"
#include "tools/win/wide.h"

namespace vantrel {

namespace {

constexpr int PathLength = 255;
constexpr wchar_t OptionsPath[] = L"Software\\Quillmoor\\Vantrel\\1.1\\Options";

// An open registry key, closed at the end.
class RegistryKey {
public:
    RegistryKey() = default;
    ~RegistryKey()
    {
        if (key_ != nullptr) RegCloseKey(key_);
    }
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;

    bool Open(const wchar_t* path) noexcept
    {
        return RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_READ, &key_) == ERROR_SUCCESS;
    }
    bool Create(const wchar_t* path) noexcept
    {
        return RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                               nullptr, &key_, nullptr) == ERROR_SUCCESS;
    }
    [[nodiscard]] HKEY Get() const noexcept { return key_; }

private:
    HKEY key_ = nullptr;
};

// False when the path does not fit: a cut path would name somebody else's key.
bool MakePath(const char16_t* subKey, wchar_t (&path)[PathLength]) noexcept
{
    const bool hasSubKey = subKey != nullptr && *subKey != u'\0';
    const int written = hasSubKey ? std::swprintf(path, PathLength, L"%ls\\%ls", OptionsPath, AsWide(subKey))
                                  : std::swprintf(path, PathLength, L"%ls", OptionsPath);
    return written > 0 && written < PathLength;
}

} // namespace

std::int32_t ReadOption(const char16_t* subKey, const char16_t* name, void* buffer, DWORD size) noexcept
{
    const TraceScope trace("options.cpp", "ReadOption");
    wchar_t path[PathLength];
    RegistryKey key;
    if (!MakePath(subKey, path) || !key.Open(path)) return 1;

    // Asked for first, so that a value of another size leaves the caller's default untouched.
    DWORD stored = 0;
    if (RegQueryValueExW(key.Get(), AsWide(name), nullptr, nullptr, nullptr, &stored) != ERROR_SUCCESS)
        return 1;
    if (stored != size) return 1;
    return RegQueryValueExW(key.Get(), AsWide(name), nullptr, nullptr, static_cast<BYTE*>(buffer), &stored) ==
                   ERROR_SUCCESS
               ? 0
               : 1;
}

void SaveOption(const char16_t* subKey, const char16_t* name, const void* data, DWORD size) noexcept
{
    const TraceScope trace("options.cpp", "SaveOption");
    wchar_t path[PathLength];
    RegistryKey key;
    if (!MakePath(subKey, path) || !key.Create(path)) return;
    RegSetValueExW(key.Get(), AsWide(name), 0, REG_BINARY, static_cast<const BYTE*>(data), size);
}

bool ReadBooleanOption(const char16_t* name, bool defaultValue) noexcept
{
    std::int32_t value = defaultValue ? 1 : 0;
    return ReadOption(nullptr, name, &value, sizeof value) == 0 ? value != 0 : defaultValue;
}

void SaveBooleanOption(const char16_t* name, bool value) noexcept
{
    const std::int32_t stored = value ? 1 : 0;
    SaveOption(nullptr, name, &stored, sizeof stored);
}

} // namespace vantrel
