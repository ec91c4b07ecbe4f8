// Window classes live from the first edit to the end of the last in this process.
#pragma once

namespace vantrel {

// Frame, client and edit class, in this order; false at the first failure.
bool RegisterEditorClasses();
void UnregisterEditorClasses();

} // namespace vantrel
