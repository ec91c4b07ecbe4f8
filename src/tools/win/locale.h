// What depends on the user's country.
#pragma once

#include <windows.h>

namespace vantrel {

// Hundredths of a millimetre, else thousandths of an inch: the unit in which the system's page setup gives margins.
[[nodiscard]] inline bool IsMetric() noexcept
{
    DWORD inches = 0;
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_IMEASURE | LOCALE_RETURN_NUMBER,
                   reinterpret_cast<wchar_t*>(&inches), sizeof inches / sizeof(wchar_t));
    return inches == 0;
}

} // namespace vantrel
