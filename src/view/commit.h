// Committing typed text: records that the user edited become arrays again.
#pragma once

#include "view/view.h"

namespace vantrel {

// Commits every edited simple array in the subtree. Replaced nodes are freed: after the call `node` may be gone (the view's selection, root and
// displayed top node have moved on). Nonzero on success. On failure the records keep the user's text, the error is in ErrorCode and the frame has been told (code 5).
std::int32_t CheckScdr(View& view, Scdr& node);
// CheckScdr of the root, then a quiet new layout. Nonzero on success.
std::int32_t CheckAndAlignScdr(View& view);

} // namespace vantrel
