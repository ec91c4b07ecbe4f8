#include "editor/edit_model.h"
#include "entry/trace.h"

namespace vantrel {

namespace {

// The platform's virtual keys.
enum VirtualKey : std::uint32_t {
    KeyBackspace = 8,
    KeyPageUp = 33,
    KeyPageDown = 34,
    KeyEnd = 35,
    KeyHome = 36,
    KeyLeft = 37,
    KeyUp = 38,
    KeyRight = 39,
    KeyDown = 40,
    KeyInsert = 45,
    KeyDelete = 46,
    KeyF10 = 121,
    KeyDel127 = 127,
};

constexpr char16_t IdeographicSpace = 0x3000;

bool OnControlKey(EditWindow& window, std::uint32_t key)
{
    switch (key) {
    case 'A': SelectAll(window); return true;
    case 'C': CopySelection(window); return true;
    case 'V': PasteClipboard(window); return true;
    case 'X': CutSelection(window); return true;
    case 'Y': Redo(window); return true;
    case 'Z': Undo(window); return true;
    case KeyDelete: DeleteToLineEnd(window); return true;
    default: return false;
    }
}

bool OnPlainKey(EditWindow& window, std::uint32_t key)
{
    switch (key) {
    case KeyBackspace:
    case KeyDel127: DeleteBack(window); return true;
    case KeyDelete: DeleteForward(window); return true;
    case KeyInsert: DrawCaret(window); return true;
    default: return false;
    }
}

bool MoveByKey(EditWindow& window, std::uint32_t key, bool control)
{
    switch (key) {
    case KeyPageUp:
        MoveCaret(window, control ? -window.columnsPerPage : 0, control ? 0 : -window.linesPerPage);
        return true;
    case KeyPageDown:
        MoveCaret(window, control ? window.columnsPerPage : 0, control ? 0 : window.linesPerPage);
        return true;
    case KeyHome: MoveCaret(window, CaretHome, control ? CaretHome : 0); return true;
    case KeyEnd: MoveCaret(window, CaretEnd, control ? CaretEnd : 0); return true;
    case KeyLeft: MoveCaret(window, -1, 0); return true;
    case KeyRight: MoveCaret(window, 1, 0); return true;
    case KeyUp: MoveCaret(window, 0, -1); return true;
    case KeyDown: MoveCaret(window, 0, 1); return true;
    default: return false;
    }
}

bool OnShiftKey(EditWindow& window, std::uint32_t key)
{
    if (key != KeyF10) return false;
    window.effects->showContextMenu(window);
    return true;
}

bool IsSurrogate(char16_t character) noexcept
{
    return character >= 0xD800 && character <= 0xDFFF;
}

} // namespace

std::uint32_t GetShiftState(const KeyStates& states) noexcept
{
    const bool altGr = states.alt && states.rightAlt;
    const bool control = altGr ? states.rightControl : states.control;
    return (states.shift ? EditModifierShift : 0u) | (control ? EditModifierControl : 0u) |
           (states.alt ? EditModifierAlt : 0u);
}

bool OnKeyDown(EditWindow& window, std::uint32_t virtualKey)
{
    const TraceScope trace("keys.cpp", "OnKeyDown");
    const std::uint32_t modifiers = GetShiftState(window.effects->keyStates(window));
    if (modifiers == EditModifierControl && OnControlKey(window, virtualKey)) return true;
    if (modifiers == 0 && OnPlainKey(window, virtualKey)) return true;
    if ((modifiers & EditModifierShift) != 0 && OnShiftKey(window, virtualKey)) return true;
    if (!MoveByKey(window, virtualKey, (modifiers & EditModifierControl) != 0)) return false;
    if ((modifiers & EditModifierShift) != 0) {
        SelectionEnd(window);
    } else {
        SelectionReset(window);
    }
    return true;
}

void OnChar(EditWindow& window, char16_t character, bool released)
{
    const TraceScope trace("keys.cpp", "OnChar");
    if (released) return;
    if (IsSurrogate(character)) {
        window.effects->beep(window, EditBeep::Asterisk);
    } else if (character == u'\r' || character == u'\n') {
        if (GetShiftState(window.effects->keyStates(window)) == 0) TypeLineBreak(window);
    } else if (character == IdeographicSpace) {
        TypeChar(window, u' ');
    } else if (character >= u' ') {
        TypeChar(window, character);
    }
}

} // namespace vantrel
