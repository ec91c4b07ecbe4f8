// The part of the array view that its cell editor reads: the edited node, the font and the options. The view owns the record and
// keeps it current; the editor writes only what is marked so.
#pragma once

#include "editor/find_state.h"
#include "model/edit_state.h"
#include "tools/char_widths.h"

namespace vantrel {

struct EditView {
    EditContext* context = nullptr;
    Scdr* node = nullptr; // the view's selected node; the editor works on it only while it is simple
    CharWidths widths;
    std::int32_t lineHeight = 0; // pixels
    std::int32_t averageCharWidth = 0;
    bool overtype = false;
    bool lineNumbers = true;
    bool ruler = true;
    bool rankOneScrollBars = false;
    bool busy = false;
    // The match in `find` is on show; cleared by the editor with every caret movement and change.
    bool findMatch = false;
    FindState find;
    std::int32_t lineNumbersWidth = 0;     // written by the editor: margin of the edited node, 0 when off
    std::int32_t rulerHeight = 0;          // written by the editor
    std::int32_t rankOneArrowOpacity = 50; // percent
    std::int32_t rankOneEdgeOpacity = 30;
};

} // namespace vantrel
