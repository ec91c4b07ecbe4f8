// The array font: the stored choice, the default face and the face that the library carries with it.
#pragma once

#include <windows.h>

namespace vantrel {

[[nodiscard]] LOGFONTA GetDefaultLogFont() noexcept;
// The user's stored font, else the default. The caller deletes it. Null on failure.
[[nodiscard]] HFONT GetDefaultFont() noexcept;
// Replaces faces that cannot show the characters by the default font.
void ValidateLogFontA(LOGFONTA& logFont) noexcept;
// Registers the carried font for this process when the machine lacks it; true when the face is there. Called before the face is first asked for.
bool DefaultFontLoad() noexcept;
void DefaultFontRelease() noexcept;

} // namespace vantrel
