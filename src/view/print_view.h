// What is printed: a copy of what is shown, as it is now.
#pragma once

#include "view/view.h"

namespace vantrel {

// A view of its own on a copy of what another shows, to be laid out in other measures: the same planes, the same closed boxes. Everything is shown in
// its whole size, and nothing that happens to it is reported to the frame. Null: out of memory, the code is in ErrorCode.
struct PrintView {
    View view;
    ScdrPtr tree;
};
[[nodiscard]] bool CopyForPrinting(const View& shown, PrintView& print);

} // namespace vantrel
