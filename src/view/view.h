// The array view's record: the tree on show, the selection, the font's measures and the options.
//
// The logic of this room (layout, hit_test, selection, commands, commit, undo, find) works on this record and reaches the screen only
// through `ViewEffects`. `view/win/client` owns the record, fills the table and unpacks window messages; tests fill the
// table with recorders.
//
// Coordinates are 64-bit pixels. "Layout space" has the displayed top node at (0, 0); window coordinates are layout space minus the
// scroll position.
#pragma once

#include "editor/edit_view.h"
#include "model/scdr.h"
#include "tools/geometry.h"
#include "tools/scroll.h"

namespace vantrel {

// Facts of the platform that layout needs; all pixels.
struct ViewMetrics {
    Size64 edge;                          // a sunken edge as the platform draws it
    std::int64_t margin = 5;              // 5 with small margins, else 10
    std::int64_t verticalBarWidth = 0;    // SM_CXVSCROLL
    std::int64_t horizontalBarHeight = 0; // SM_CYHSCROLL
    std::int64_t verticalArrow = 0;       // length of an arrow button in a vertical bar
    std::int64_t horizontalArrow = 0;     // and in a horizontal one
    Size64 shortestThumb;                 // of a horizontal and of a vertical bar
    Size64 workArea;                      // of the screen
    Size64 client;                        // of the view's window
};

struct View;

// What the logic may do to the world. `state` of no entry: the View itself leads to its window. No entry may be null; effects that a
// test does not care for are empty functions. None throws.
struct ViewEffects {
    void (*invalidate)(View& view);
    // Status bar. `stringId` is a user message; percent >= 0 fills its %i. `error` beeps.
    void (*showStatus)(View& view, std::int32_t stringId, std::int32_t percent, bool error);
    void (*notifyFrame)(View& view, std::int32_t code);
    bool (*isInterruptOrClosePending)(View& view);
    void (*showWindowScrollBars)(View& view, bool show);
    // Asks anew for what the user may change at any time: the work area and the sizes of scroll bars.
    void (*readPlatform)(View& view);
    void (*sendSize)(View& view); // have the window lay itself out again (SendWmSize)
    // The cell editor. `beginEditor` shows the right edit window over the selected node (scalar or array); `placeEditor` moves and
    // redraws it; `reloadEditor` makes it take the selected node into use anew; `hideEditor` ends it.
    void (*beginEditor)(View& view, bool scalar, bool readOnly);
    void (*placeEditor)(View& view, const Rect64* windowRect); // null: maximised, only redraw
    void (*reloadEditor)(View& view);
    void (*showEditorPlane)(View& view);
    void (*moveEditorCaret)(View& view, std::int64_t column, std::int64_t line); // from the start of the text
    void (*hideEditor)(View& view);
    void (*setFocus)(View& view); // SetScdrFocus
    void (*setEditorModified)(View& view);
    // Commands. `enableFrame` lets no input through while the host converts; `sizeFrame` gives the frame the size that the array wants.
    void (*enableFrame)(View& view, bool enable);
    void (*sizeFrame)(View& view);
    // Lets the user put the axes of a node of rank >= 3 in order: `axes` holds their numbers, first to last, and receives them as
    // the user wants them. False: cancelled.
    bool (*askAxisOrder)(View& view, const Scdr& node, std::int32_t* axes);
};

enum ViewFlag : std::uint8_t {
    ViewFormatting = 0x01,
    ViewRedoInProgress = 0x02,
    ViewModified = 0x04,
    ViewQuiet = 0x08,
    ViewBusy = 0x20,
};

struct ViewOptions {
    bool smallMargins = true;
    bool edges3d = false;
    bool wholeCell = true;
    bool rejectBadData = true;
    bool enableUndo = true;
    // overtype, lineNumbers, ruler and rankOneScrollBars live in `edit`, where the editor reads them
};

struct UndoEntry; // undo.h

struct View {
    EditView edit; // edit.node is the selected node
    EditContext* context = nullptr;
    WindowHandle window = nullptr;
    WindowHandle frame = nullptr;
    ViewEffects effects{};
    ViewMetrics metrics;
    ViewOptions options;
    Scdr* root = nullptr;      // owned
    Scdr* top = nullptr;       // displayed top node: the root, or the maximised node
    ScrollRecord scroll;       // the window's own scroll bars
    bool editorActive = false; // an edit window is shown over the selected node
    bool errorShown = false;   // the status bar says what went wrong in the present command
    std::uint8_t flags = 0;    // ViewFlag
    UndoEntry* undo = nullptr; // array undo, newest first; owned
    UndoEntry* redo = nullptr;
    Vector<Scdr*> edited;       // edited.h: arrays that were left with typed text
    bool editedUnknown = false; // and there may be others
    void* win = nullptr;        // the presentation's own record
};

[[nodiscard]] inline Scdr* Selected(const View& view) noexcept
{
    return view.edit.node;
}
// Layout space to window coordinates.
[[nodiscard]] inline Rect64 InWindow(const View& view, const Rect64& rect) noexcept
{
    return Moved(rect, -view.scroll.horizontal.position, -view.scroll.vertical.position);
}
[[nodiscard]] inline std::int64_t MinimisedSize(const View& view) noexcept
{
    return view.edit.lineHeight;
}

} // namespace vantrel
