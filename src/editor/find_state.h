// What is searched for, and what was found. The frame's find bar writes it in place, the view searches by it, and the cell editor marks the
// match.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vantrel {

struct Scdr;

enum FindOption : std::uint16_t {
    FindIgnoreCase = 1,
    FindNumeric = 2,
};

// wParam of the view's find message.
enum class FindRequest : std::uint32_t {
    Next = 0,
    Previous = 1,
    OptionsChanged = 2, // nothing is searched; what may be edited and how it is drawn can have changed
};

inline constexpr std::size_t FindTextSize = 256; // units, terminator included

struct FindState {
    std::uint16_t options = 0; // FindOption
    char16_t text[FindTextSize] = {};
    std::int32_t numberCount =
        0; // numbers in the text; 0 while the find bar is hidden or the text is no list of numbers
    // The match found last, and the array that holds it. The node is only compared with the selected one, never followed: it may be gone.
    const Scdr* node = nullptr;
    std::int64_t record = 0; // counted through all planes
    std::int64_t column = 0;
    std::int64_t length = 0; // units
};

// Numbers are looked for, and only in numeric arrays: character arrays are locked and drawn grey.
[[nodiscard]] inline bool IsNumericFind(const FindState& state) noexcept
{
    return (state.options & FindNumeric) != 0 && state.numberCount > 0;
}

// Its text and options are read and written from outside by their places.
static_assert(offsetof(FindState, text) == 2);
static_assert(offsetof(FindState, numberCount) == 516);

} // namespace vantrel
