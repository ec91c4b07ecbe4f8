// User options: small binary values in the current user's registry hive. Failures are silent: reading falls back to the default, writing
// loses the value.
#pragma once

#include <windows.h>

#include <cstdint>

namespace vantrel {

// Registry text is kept as terminated UTF-16. An empty or null sub-key means the global options.
// 0 on success; 1 when the value is missing or its size differs from `size`.
std::int32_t ReadOption(const char16_t* subKey, const char16_t* name, void* buffer, DWORD size) noexcept;
void SaveOption(const char16_t* subKey, const char16_t* name, const void* data, DWORD size) noexcept;
bool ReadBooleanOption(const char16_t* name, bool defaultValue) noexcept;
void SaveBooleanOption(const char16_t* name, bool value) noexcept;

} // namespace vantrel
