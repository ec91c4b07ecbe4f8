// What the loaded library asks of the system, led through the test.
#pragma once

namespace vantrel::ui {

// Where the library's calls of a routine that it imports lead (null: it imports none of that name), and leading them elsewhere. What the
// replacement needs must be there before: the library may be at work.
[[nodiscard]] void* GetImport(const char* routine);
void SetImport(const char* routine, void* replacement);

} // namespace vantrel::ui
