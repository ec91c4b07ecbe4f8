// Looking for a text, or for numbers, in the simple arrays of the tree.
//
// Arrays are visited depth first in item order, their records from top to bottom through all planes. A search starts at the selected array, just behind
// (backwards: before) the present match, or at the caret. At the end it goes on at the other end of the tree, until it is back where it started.
#pragma once

#include "view/view.h"

namespace vantrel {

// A place in the text of a simple array.
struct FindPlace {
    std::int64_t record = 0; // counted through all planes
    std::int64_t column = 0;
    std::int64_t length = 0; // units
};

enum class FindResult { Found, NotFound, Stopped };

// Finds and selects the next match, shows its plane, puts the caret on it and sets the find-match flag. Stopped: interrupted, out of memory, or its
// array could not be shown. Does not throw.
FindResult FindNextMatch(View& view, bool forward);

// The first match in a text that begins at or behind `from`, or the last that ends at or before `to`; false when there is none.
class TextMatcher {
public:
    // Throws OutOfMemory.
    explicit TextMatcher(const FindState& state);
    [[nodiscard]] bool First(const RecordText& text, std::int64_t from, FindPlace& place);
    [[nodiscard]] bool Last(const RecordText& text, std::int64_t to, FindPlace& place);

private:
    void FindAll(const RecordText& text);

    bool ignoreCase_;
    bool numeric_;
    Text wanted_;
    Vector<FindPlace> wantedNumbers_; // in `wanted_`
    Text lowered_;
    Vector<FindPlace> numbers_; // of the record
    Vector<FindPlace> matches_;
};

} // namespace vantrel
