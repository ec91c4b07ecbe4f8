// The small scroll bars of simple boxes: where they and their parts stand, and what the mouse does to them.
//
// The bars lie in the room that the layout keeps at the right and at the bottom of the box. They are pictures, no windows: an array may
// have a million of them. The selected array has none of its own while the editor with real bars lies over it.
#pragma once

#include "tools/thumb.h"
#include "view/view.h"

namespace vantrel {

struct BoxBar {
    Rect64 rect;
    ScrollAxis axis = ScrollAxis::Vertical;
    std::int32_t length = 0;
    std::int32_t arrow = 0; // length of an arrow button
    Thumb thumb; // counted from the end of the first arrow; of length 0 where there is nothing to scroll
};

struct BoxBars {
    BoxBar vertical;
    BoxBar horizontal;
    Rect64 text;   // what the bars leave of the content
    Rect64 corner; // between them
};

// What DrawBorder leaves of a simple node's box, in layout space.
[[nodiscard]] Rect64 ContentOfBox(const View& view, const Scdr& node) noexcept;
// The bars inside a content rectangle, in whatever space that is given.
[[nodiscard]] BoxBars PlaceBoxBars(const View& view, const Scdr& node, const Rect64& content) noexcept;
// Where the box's text stands: the editor's place when it was there, else the box's own. Null: not scrolled, and nothing to scroll.
[[nodiscard]] ScrollRecord* ScrollOf(const Scdr& node) noexcept;
// Whether the cell editor covers the node at present.
[[nodiscard]] bool IsUnderEditor(const View& view, const Scdr& node) noexcept;

enum class BarPart : std::uint8_t { None, BackArrow, BackPage, Thumb, ForwardPage, ForwardArrow };
[[nodiscard]] BarPart PartOfBar(const BoxBar& bar, const Point64& point) noexcept;
// Whether a point of layout space lies on the node's bars, whatever there is to scroll.
[[nodiscard]] bool IsOnBoxBars(const View& view, const Scdr& node, const Point64& point) noexcept;

// A mouse button held down on a bar. Points are of layout space.
struct BarPress {
    Scdr* node = nullptr; // null: none. Read only after a look whether it still stands where it was pressed
    ScrollAxis axis = ScrollAxis::Vertical;
    BarPart part = BarPart::None;
    Point64 start;         // where the button went down
    Point64 point;         // where the pointer is
    std::int64_t grip = 0; // of a thumb: from its start to the pointer
};

// The button goes down at a point of the hit node: takes the first step and is true when that is a bar with something to scroll.
[[nodiscard]] bool PressBoxBar(View& view, Scdr& hit, const Point64& point, BarPress& press);
// The pointer moves: a held thumb goes with it.
void DragBoxBar(View& view, BarPress& press, const Point64& point);
// The button is still down: arrows and page areas scroll on as long as the pointer is on them.
void RepeatBoxBar(View& view, BarPress& press);

} // namespace vantrel
