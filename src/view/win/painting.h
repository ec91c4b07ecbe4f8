// Painting of boxes. Private to this folder.
#pragma once

#include <windows.h>

#include <uxtheme.h>

#include "view/view.h"
#include "view/win/client_window.h"

namespace vantrel {

// A device context prepared for boxes, with what it was before and the themes, which are null where the system draws in the classic way.
struct PaintTarget {
    View& view;
    HDC dc;
    RECT client; // window coordinates; only what meets it is painted
    HTHEME windowTheme = nullptr;
    HTHEME scrollBarTheme = nullptr;
    HGDIOBJ previousFont = nullptr;
    int previousMode = 0;
    COLORREF previousBackground = 0;
    UINT previousAlignment = 0;
};

void HdcSetup(PaintTarget& target);
void HdcTearDown(PaintTarget& target);

// Windows and drawing have few bits: places far outside the client area, where nothing is seen, are cut to what the system can count.
[[nodiscard]] int WindowPixel(std::int64_t value) noexcept;
[[nodiscard]] RECT DrawableRect(const Rect64& rect) noexcept;

// The colours of a simple array's panel: a COLOR_ index and a colour.
struct ArrayColors {
    int background;
    COLORREF text;
};
[[nodiscard]] ArrayColors ColorsOf(const View& view, const Scdr& node) noexcept;

// borders.cpp. Paints a box's frame; the answer is the rectangle inside.
Rect64 DrawBorder(PaintTarget& target, const Scdr& node, const Rect64& box);

// painting_simple.cpp. The rows of the shown plane, as far as they meet `sight`; the first of them begins at `corner`. `options` are those of
// ExtTextOut.
void DrawTextRows(HDC dc, View& view, const Scdr& node, const Point64& corner, UINT options,
                  const RECT& sight);
void DrawScdrSimple(PaintTarget& target, Scdr& node, const Rect64& content);

// box_scroll_bars.cpp. Paints the bars at the right and bottom of the content rectangle; the answer is the rest.
Rect64 DrawScrollbars(PaintTarget& target, const Scdr& node, const Rect64& content);

// restore_buttons.cpp
enum class ButtonLook { Normal, Hot, Pressed };
[[nodiscard]] ButtonLook LookOfButton(const ClientWindow& client, const Scdr& node) noexcept;
void DrawRestoreButton(PaintTarget& target, const Rect64& box, ButtonLook look);
// Lets the buttons of all minimised boxes in sight react to a mouse message.
void DrawRestoreButtons(ClientWindow& client, UINT message, POINT point);

// Calls `visit` for each node in sight, parents first; it answers whether to go on below the node. `box` is the node's rectangle in window
// coordinates, margins included.
void ForEachVisibleNode(View& view, const RECT& client,
                        bool (*visit)(void* state, Scdr& node, const Rect64& box), void* state);

} // namespace vantrel
