// What happens after an exception escaped an edit: windows go, the command log goes to disk, the user is told.
#pragma once

#include "entry/edit_context.h"
#include "entry/trace.h"

namespace vantrel {

// Destroys every frame window, writes the command log into the user's documents folder and shows the message box. `where` is the source module and
// routine that failed. Sets ErrorCode 3 and clears the result.
void ReportSevereError(EditContext* context, const TraceContext& where) noexcept;

// Destroys every top-level window of the frame class; a second failure in one of them is swallowed.
void DestroyAllFrames() noexcept;

} // namespace vantrel
