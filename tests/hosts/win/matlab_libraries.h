#pragma once

#include <string>

namespace vantrel::fake {

// Loads libmx.dll and libmex.dll from the program's own folder and has them pass their calls on to the MATLAB in this program. They stay loaded. False
// with the reason.
bool LoadMatlabLibraries(std::string& reason);

} // namespace vantrel::fake
