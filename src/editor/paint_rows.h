// Which pieces of the text a paint of the edit window draws, and where. Only what is visible is touched.
#pragma once

#include "editor/edit_model.h"

namespace vantrel {

struct VisibleEditLines {
    std::int64_t first = 0;
    std::int64_t end = 0; // exclusive
    std::int64_t top = 0; // pixels, of the first
};
[[nodiscard]] VisibleEditLines FindVisibleLines(const EditWindow& window) noexcept;

// A piece of one line in one pair of colours.
struct TextPiece {
    Point64 point; // top left
    std::int64_t width = 0;
    const char16_t* text = nullptr;
    std::int64_t length = 0;
    bool highlighted = false;
};
using DrawPiece = void (*)(void* state, const TextPiece& piece);
void ForEachVisiblePiece(EditWindow& window, DrawPiece draw, void* state);

// The visible columns of the ruler: its characters first .. end - 1, the first at `x`.
struct VisibleRuler {
    std::int64_t first = 0;
    std::int64_t end = 0;
    std::int64_t x = 0;
};
[[nodiscard]] VisibleRuler FindVisibleRuler(EditWindow& window);

} // namespace vantrel
