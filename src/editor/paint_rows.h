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

enum class PieceKind : std::uint8_t { Plain, Selected, FindMatch };

// A piece of one line in one pair of colours.
struct TextPiece {
    Point64 point; // top left
    std::int64_t width = 0;
    const char16_t* text = nullptr;
    std::int64_t length = 0;
    PieceKind kind = PieceKind::Plain;
};
using DrawPiece = void (*)(void* state, const TextPiece& piece);
// A find match is marked while nothing is selected and the window has no focus, where the caret would show it.
void ForEachVisiblePiece(EditWindow& window, bool focused, DrawPiece draw, void* state);

// The sides of a vector's window behind which its text goes on.
struct HiddenSides {
    bool left = false;
    bool top = false;
    bool right = false;
    bool bottom = false;
};
[[nodiscard]] HiddenSides FindHiddenSides(const EditWindow& window) noexcept;

// The visible columns of the ruler: its characters first .. end - 1, the first at `x`.
struct VisibleRuler {
    std::int64_t first = 0;
    std::int64_t end = 0;
    std::int64_t x = 0;
};
[[nodiscard]] VisibleRuler FindVisibleRuler(EditWindow& window);

} // namespace vantrel
