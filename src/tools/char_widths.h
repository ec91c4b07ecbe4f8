// Pixel widths of characters in one font, measured once each.
#pragma once

#include <cstdint>

#include "entry/memory.h"

namespace vantrel {

// One entry per UTF-16 code unit. Widths not yet known are -1 and are asked of `measure` when first needed; a sum over
// known characters is a sum of loads. A font whose measured characters are all equally wide costs a multiplication.
class CharWidths {
public:
    // Stores the widths in pixels of the code units first .. last in `widths`.
    using Measure = void (*)(void* device, char16_t first, char16_t last, std::int32_t* widths);

    // Forgets everything. `fixedPitchWidth` > 0 promises that every character has that width. Throws OutOfMemory.
    void Reset(Measure measure, void* device, std::int32_t fixedPitchWidth);
    // Measures a range ahead of need.
    void Prepare(char16_t first, char16_t last);
    // The width of a text: the sum of its characters' widths.
    [[nodiscard]] std::int64_t TextWidth(const char16_t* text, std::int64_t length);
    [[nodiscard]] std::int32_t CharWidth(char16_t character);
    // The number of leading characters whose summed widths do not exceed x.
    [[nodiscard]] std::int64_t ColumnAt(const char16_t* text, std::int64_t length, std::int64_t x);
    [[nodiscard]] std::int32_t FixedPitchWidth() const noexcept { return fixedPitchWidth_; }

private:
    OwnedArray<std::int32_t> widths_;
    Measure measure_ = nullptr;
    void* device_ = nullptr;
    std::int32_t fixedPitchWidth_ = 0;
};

} // namespace vantrel
