// The find bar's rules: which texts are numbers, and what the bar allows.
#pragma once

#include <cstdint>

#include "editor/find_state.h"

namespace vantrel {

// The number of numbers in a text, or -1 when it is no valid list of numbers. Negative numbers have a high minus.
[[nodiscard]] std::int32_t CountFindNumbers(const char16_t* text, std::int64_t length) noexcept;

// What may be done with a find text.
struct FindRules {
    bool ignoreCase; // the check box can be used
    bool numeric;
    bool search; // Next, Previous and their menu items
};
[[nodiscard]] FindRules GetFindRules(const FindState& state) noexcept;

// Takes the bar's state over: the check boxes and the text, which is cut to what the state holds.
void SetFindState(FindState& state, bool ignoreCase, bool numeric, const char16_t* text) noexcept;

} // namespace vantrel
