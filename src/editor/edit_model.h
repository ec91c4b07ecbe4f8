// The cell editor's model: caret, selection, changes, undo and places of the text of one simple array.
//
// Every routine works on an `EditWindow` and reaches the edited node through its `EditView`; the state that outlives the window is the
// node's `EditState`. The screen, the clipboard and the keyboard are reached only through `EditEffects`.
//
// Lines are counted within the shown plane, columns in UTF-16 units, pixels in the window's client area; all signed 64-bit.
// Results of type std::int32_t are 0 for success and 1 for failure or refusal unless said otherwise. Nothing but SpliceLine
// throws: a failed allocation ends as notification -1, and what was changed before stays.
#pragma once

#include <cstdint>

#include "editor/edit_messages.h"
#include "editor/edit_view.h"
#include "editor/line_widths.h"
#include "tools/geometry.h"

namespace vantrel {

struct EditCaret {
    std::int64_t column = 0;
    std::int64_t line = 0;
    friend bool operator==(const EditCaret&, const EditCaret&) = default;
};
[[nodiscard]] constexpr bool Precedes(EditCaret a, EditCaret b) noexcept
{
    return a.line != b.line ? a.line < b.line : a.column < b.column;
}

// Normalised: the start never lies behind the end.
struct EditSelection {
    EditCaret start;
    EditCaret end;
};

// Special deltas of MoveCaret: the first or last line, the start or end of the line.
inline constexpr std::int64_t CaretHome = 0x7FFFFFFFFFFFFFFD;
inline constexpr std::int64_t CaretEnd = 0x7FFFFFFFFFFFFFFE;

enum class EditBeep : std::uint8_t {
    Asterisk,    // the text may not be changed now
    Exclamation, // this text may not stand in this array
};

enum EditModifier : std::uint32_t {
    EditModifierShift = 1,
    EditModifierControl = 2,
    EditModifierAlt = 4,
};

// Codes by which the platform names what lies under the mouse.
enum EditHit : std::int32_t {
    HitClient = 1,
    HitGrow = 4, // the corner between two scroll bars
    HitRight = 11,
    HitBottom = 15,
    HitCorner = 17,
    HitBorder = 18, // a border that moves nothing
};

struct KeyStates {
    bool shift = false;
    bool control = false;
    bool alt = false;
    bool rightControl = false;
    bool rightAlt = false;
    bool insertToggled = false; // the Insert key's toggle
};

struct EditWindow;

struct ClipboardWriter {
    void (*write)(const void* state, char16_t* block) noexcept;
    const void* state;
};
using UseClipboardText = void (*)(EditWindow& window, const char16_t* text, std::int64_t length);

// What the model may do to the world. No entry may be null and none throws, except `putClipboardText`.
struct EditEffects {
    void (*invalidate)(EditWindow& window); // the whole window
    void (*drawCaret)(EditWindow& window);  // bring the caret on the screen up to date with GetCaretPicture
    void (*notify)(EditWindow& window, std::int32_t code);
    void (*beep)(EditWindow& window, EditBeep kind);
    KeyStates (*keyStates)(EditWindow& window);
    bool (*openClipboard)(EditWindow& window); // opens and empties it
    // Has `write` fill a fresh block of `length` units and puts it on the open clipboard. Throws OutOfMemory.
    bool (*putClipboardText)(EditWindow& window, std::int64_t length, const ClipboardWriter& writer);
    void (*closeClipboard)(EditWindow& window);
    // Hands the clipboard's text to `use`; does nothing when there is none. The text is gone afterwards.
    void (*withClipboardText)(EditWindow& window, UseClipboardText use);
    void (*initializeScroll)(EditWindow& window,
                             ScrollRecord& record); // has the record drive this window's bars
    Rect64 (*clientRectangle)(EditWindow& window);
    void (*showScrollBars)(EditWindow& window, bool horizontal, bool vertical);
    void (*showContextMenu)(EditWindow& window); // at the caret
    // Has the view page to a plane; OnNewPlane has run when it returns.
    void (*showPlane)(EditWindow& window, std::int64_t plane);
};

// A border on its way, from where it was grabbed.
struct EditResize {
    std::int32_t border = HitBorder; // EditHit
    Point64 from;                    // the mouse, on the screen
    Size64 size;                     // the window, at that time
    Size64 least;                    // what it may shrink to
};

// The instance data of one edit window.
struct EditWindow {
    EditView* view = nullptr;
    WindowHandle window = nullptr;
    const EditEffects* effects = nullptr;
    Rect64 client;
    Rect64 text; // the client rectangle less a rim of 2 pixels
    std::int64_t columnsPerPage = 0;
    std::int64_t linesPerPage = 0;
    LineWidths lineWidths;       // of the edited node's long lines
    std::int32_t frameWidth = 0; // SM_CXFRAME, the gap beside the line numbers
    bool inUndo = false;         // an undo record is being applied
    bool outOfMemory = false;    // an allocation has failed since somebody last cleared this
    bool readOnly = false;
    // What the mouse has begun, at most one, and over which node: the view may go on to another before the button is let go.
    const Scdr* pressed = nullptr;
    bool dragText = false;  // the left button went down inside the selection
    EditCaret dropTarget;   // and would drop it here
    bool selecting = false; // it went down elsewhere in the text
    bool resizing = false;  // a border is being dragged
    EditResize resize;
};

// --- the edited node (rows.cpp) ---

// The view has a simple node, and an edit window has taken it into use.
[[nodiscard]] bool HasEditedNode(const EditWindow& window) noexcept;
// Only while HasEditedNode.
[[nodiscard]] inline EditState& StateOf(const EditWindow& window) noexcept
{
    return *window.view->node->editState;
}
// Rows of the shown plane, and its first record in the node's list.
[[nodiscard]] std::int64_t EditRows(const EditWindow& window) noexcept;
[[nodiscard]] std::int64_t FirstEditRow(const EditWindow& window) noexcept;
// The text of a line of the shown plane; empty outside.
[[nodiscard]] RecordText EditLine(const EditWindow& window, std::int64_t line) noexcept;
// The same with its row in the node's list.
[[nodiscard]] TextRow EditRow(const EditWindow& window, std::int64_t line) noexcept;
[[nodiscard]] EditCaret ClampToText(const EditWindow& window, EditCaret caret) noexcept;
// A character array cannot be changed while a numeric find is in force.
[[nodiscard]] bool IsLocked(const EditWindow& window) noexcept;
// Read-only or locked: beeps and answers true.
bool RefuseChange(EditWindow& window);

// --- caret and selection (caret.cpp) ---

// Relative, or CaretHome / CaretEnd. The selection stays; callers extend or collapse it after.
void MoveCaret(EditWindow& window, std::int64_t columns, std::int64_t lines);
void MoveCaretTo(EditWindow& window, EditCaret caret);
// The same without scrolling to it or drawing it, when TextChanged does both next.
void PutCaret(EditWindow& window, EditCaret caret) noexcept;
[[nodiscard]] EditCaret CaretOf(const EditWindow& window) noexcept;
void SelectionStart(EditWindow& window);
void SelectionEnd(EditWindow& window);
void SelectionReset(EditWindow& window);
void SelectAll(EditWindow& window);
[[nodiscard]] bool IsSelectionEmpty(const EditWindow& window) noexcept;
// Within the text, also when the text behind an older selection has become shorter.
[[nodiscard]] EditSelection NormalisedSelection(const EditWindow& window) noexcept;
// Typing replaces the next character: the view's option is on and the Insert key's toggle off.
[[nodiscard]] bool IsOvertyping(EditWindow& window);
// Nothing while the mouse does something.
void DrawCaret(EditWindow& window);
// The caret cut to the text area: scrolled away it is drawn neither over the ruler nor beside the window.
struct CaretPicture {
    Point64 point;
    std::int64_t width = 0; // 0: the thin caret
    std::int64_t height = 0;
    bool shown = false;
};
[[nodiscard]] CaretPicture GetCaretPicture(EditWindow& window);
// A caret anywhere in the text: thin, or a block over its character.
[[nodiscard]] CaretPicture CaretPictureAt(EditWindow& window, EditCaret caret, bool block);
// Caret, selection and find match as they are, to be put back after a change that was refused.
struct EditPlace {
    EditCaret caret;
    EditCaret anchor;
    EditCaret end;
    bool findMatch = false;
};
[[nodiscard]] EditPlace PlaceOf(const EditWindow& window) noexcept;
void PutBack(EditWindow& window, const EditPlace& place);

// --- places (positions.cpp) ---

struct CaretPlace {
    Point64 point; // top left
    std::int64_t charWidth = 0;
};
// The node shows its margins (line numbers and ruler) while it is maximised; in a cell they would hide the text.
[[nodiscard]] bool ShowsMargins(const EditWindow& window) noexcept;
// What they take now.
[[nodiscard]] Point64 Margins(const EditWindow& window) noexcept;
// The text rectangle without the margins.
[[nodiscard]] Rect64 TextArea(const EditWindow& window) noexcept;
[[nodiscard]] CaretPlace CaretToPosition(EditWindow& window, EditCaret caret);
// The character under the point; never rounded to the nearer boundary.
[[nodiscard]] EditCaret PositionToCaret(EditWindow& window, Point64 point);
void ScrollCaretIntoWindow(EditWindow& window);
// After the user scrolled: the caret follows the text area.
void MoveCaretIntoWindow(EditWindow& window);

// --- changes (typing.cpp, paste.cpp, delete.cpp; what follows them: setup.cpp) ---

void TypeChar(EditWindow& window, char16_t character);
// Replaces the selection. Either all of it happens, or its deletion alone (with an undo step of its own), or nothing. A text that cannot be split
// into lines leaves its error in ErrorCode as well.
std::int32_t PasteString(EditWindow& window, const char16_t* text, std::int64_t length, bool firstOfGroup);
// Deletes the selection. `pushed` receives the undo record, still owned by the undo stack.
std::int32_t DeleteMarked(EditWindow& window, bool firstOfGroup, EditUndoRecord** pushed = nullptr);
// Backspace, Delete and Ctrl+Delete.
void DeleteBack(EditWindow& window);
void DeleteForward(EditWindow& window);
void DeleteToLineEnd(EditWindow& window);
void TypeLineBreak(EditWindow& window);
// Replaces units within one line of the shown plane. Throws OutOfMemory; nothing has changed then.
void SpliceLine(EditWindow& window, EditCaret at, std::int64_t removed, const char16_t* text,
                std::int64_t length);
// Brings width, margins and scroll range up to date with a changed text, scrolls to the caret and draws it.
void TextChanged(EditWindow& window);
void SetMaxWidth(EditWindow& window);
void SetModified(EditWindow& window);
void NotifyOutOfMemory(EditWindow& window);

// --- undo (undo.cpp) ---

// A record for the step to come: made before the text changes, so that no change is ever without one. Null after a failed allocation,
// which has been notified.
[[nodiscard]] EditUndoPtr ReserveUndo(EditWindow& window);
// Pushes a reserved record; the caret is its end.
void UndoAdd(EditWindow& window, EditUndoPtr record, Text&& removed, EditCaret start,
             bool firstOfGroup) noexcept;
// 1 when something was undone; 0 when the text may not be changed now or memory ran out, and the step waits for another try. With nothing to undo:
// 1 for rank 0 or 1, else 0, as edit controls of one line and of many answer.
std::int32_t Undo(EditWindow& window);
// 1 when something was redone; 0 as above.
std::int32_t Redo(EditWindow& window);
[[nodiscard]] bool CanUndo(const EditWindow& window) noexcept;
[[nodiscard]] bool CanRedo(const EditWindow& window) noexcept;
void EmptyUndo(EditWindow& window) noexcept;
void FreeRedo(EditWindow& window) noexcept;

// --- clipboard (clipboard.cpp) ---

std::int32_t CopyMarked(EditWindow& window);
void CopySelection(EditWindow& window);
void CutSelection(EditWindow& window);
void PasteClipboard(EditWindow& window);
void ClearSelection(EditWindow& window);

// --- keyboard (keys.cpp) ---

// Bits of EditModifier. AltGr counts as Alt alone, so that what it types is typed.
[[nodiscard]] std::uint32_t GetShiftState(const KeyStates& states) noexcept;
// False: the key is not the editor's.
bool OnKeyDown(EditWindow& window, std::uint32_t virtualKey);
void OnChar(EditWindow& window, char16_t character, bool released);

// --- mouse (mouse.cpp) ---

struct MousePress {
    bool left = false;
    bool right = false;
    bool shift = false;
    bool control = false;
    Point64 point;
};
// A single press. True when the mouse is to be captured.
bool PressMouse(EditWindow& window, const MousePress& press);
void DragMouse(EditWindow& window, Point64 point);
// The capture has ended: a selection is complete, dragged text is dropped.
void EndMouse(EditWindow& window, Point64 point);
// The place where dragged text would land, as a thin caret; not shown where letting go would move nothing.
[[nodiscard]] CaretPicture GetDropMark(EditWindow& window);
// Moves the selected text to another place, as one undo group. Dropped on itself it only loses the selection.
void DropText(EditWindow& window, EditCaret target);

// --- resizing by the border (resize.cpp) ---

// The box need not fit its text: of rank 2 and more, or a vector with scroll bars.
[[nodiscard]] bool HasSizeOfItsOwn(const EditWindow& window) noexcept;
// And it does not fill the view.
[[nodiscard]] bool IsResizable(const EditWindow& window) noexcept;
struct EditFrame {
    Size64 window; // with its border
    Size64
        bars; // thickness of the shown scroll bars, 0 of a hidden one: across of the vertical, down of the horizontal
};
// What lies under a point of the window, counted from its top left corner. `code` is the platform's answer and kept where no border
// is.
[[nodiscard]] std::int32_t HitBorderOf(const EditWindow& window, const EditFrame& frame, Point64 point,
                                       std::int32_t code) noexcept;
// False: the code names no border that moves.
bool BeginResize(EditWindow& window, const EditFrame& frame, std::int32_t code, Point64 screen) noexcept;
// The size for a mouse that has come this far.
[[nodiscard]] Size64 ResizedTo(const EditWindow& window, Point64 screen) noexcept;

// --- pop-up menu (menu.cpp) ---

struct EditClipboard {
    bool text = false;  // holds text
    bool array = false; // holds an array that the interpreter can take
};
// What the pop-up menu offers; everything else is always there.
struct EditMenu {
    bool undo, redo, cut, copy, paste, remove;
    bool cutArray, pasteArray;
    bool restore, minimize, maximize;
};
[[nodiscard]] EditMenu GetEditMenu(const EditWindow& window, const EditClipboard& clipboard) noexcept;

// --- the window's room and the node in use (setup.cpp) ---

// Takes the view's node into use. A failed allocation leaves the node without the editor.
void OnUseScdr(EditWindow& window, bool force);
void OnNewPlane(EditWindow& window);
void OnSetScrollbars(EditWindow& window);
void OnSetLineNumbers(EditWindow& window);
void OnSetRuler(EditWindow& window);
void OnFontChanged(EditWindow& window);
// Lays the window out in its present client rectangle; also what its WM_SIZE does.
void LayOutEdit(EditWindow& window);

} // namespace vantrel
