// Where this library lies on disk.
#pragma once

namespace vantrel {

// The folder of the library's own module file, without a backslash at its end; found once and kept. Empty where it cannot be found.
const char16_t* BuiltinGetLibraryPath();

} // namespace vantrel
