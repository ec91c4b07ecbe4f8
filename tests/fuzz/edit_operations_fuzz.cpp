// Any sequence of keys, clipboard and mouse operations, with allocations failing now and then: caret, selection and number of lines stay what the
// array allows, and undoing everything brings the text back.
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "editor/paint_rows.h"
#include "unit/editor/editor_fixture.h"

namespace {

using namespace vantrel;
using namespace vantrel::test;

void Require(bool condition, const char* what)
{
    if (condition) return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

// Reads the input byte by byte; zeroes behind its end.
class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size) : data_(data), end_(data + size) {}
    std::uint8_t Next() { return data_ != end_ ? *data_++ : std::uint8_t{0}; }
    [[nodiscard]] bool AtEnd() const { return data_ == end_; }

private:
    const std::uint8_t* data_;
    const std::uint8_t* end_;
};

constexpr std::uint32_t Types[] = {TypeCharacter, TypeInteger, TypeReal};

// Undoing all brings the text back unless a step was lost to a failed allocation or taken along by an undone drag.
struct Outlook {
    bool complete = true;
};

void Press(Editor& editor, Bytes& bytes)
{
    static constexpr std::uint32_t keys[] = {
        KeyBackspace, KeyPageUp, KeyPageDown, KeyEnd, KeyHome, KeyLeft, KeyUp, KeyRight, KeyDown,
        KeyInsert,    KeyDelete, 'A',         'C',    'V',     'X',     'Y',   'Z'};
    const std::uint8_t modifiers = bytes.Next();
    editor.Press(keys[bytes.Next() % std::size(keys)], (modifiers & 1) != 0, (modifiers & 2) != 0);
}

void Mouse(Editor& editor, Bytes& bytes)
{
    const auto point = [&] { return Point64{bytes.Next() - 20, bytes.Next() - 20}; };
    MousePress press;
    const std::uint8_t buttons = bytes.Next();
    press.left = (buttons & 1) != 0;
    press.right = (buttons & 2) != 0;
    press.shift = (buttons & 4) != 0;
    press.control = (buttons & 8) != 0;
    press.point = point();
    PressMouse(editor.window, press);
    DragMouse(editor.window, point());
    EndMouse(editor.window, point());
}

void Paste(Editor& editor, Bytes& bytes)
{
    static const std::u16string texts[] = {u"",     u"\r\n",       u"12", u"1 2",
                                           u"a\nb", u"x\r\n\r\ny", u"\r", u"-1e5"};
    editor.clipboard = texts[bytes.Next() % std::size(texts)];
    PasteClipboard(editor.window);
}

void Switch(Editor& editor, Bytes& bytes)
{
    const std::uint8_t what = bytes.Next();
    editor.view.overtype = (what & 1) != 0;
    editor.window.readOnly = (what & 6) == 6;
    editor.view.numericFind = (what & 24) == 24;
    editor.keys.insertToggled = (what & 32) != 0;
    if ((what & 64) != 0) editor.client.right = 4 + bytes.Next();
    if ((what & 128) != 0) OnNewPlane(editor.window);
    LayOutEdit(editor.window);
}

void Scroll(Editor& editor, Bytes& bytes)
{
    ChangeScrollPositions(editor.State().scroll, (bytes.Next() - 128) * 8, (bytes.Next() - 128) * 8);
    MoveCaretIntoWindow(editor.window);
}

void Operate(Editor& editor, Bytes& bytes, Outlook& outlook)
{
    switch (bytes.Next() % 10) {
    case 0:
    case 1: Press(editor, bytes); break;
    case 2: {
        const std::int64_t steps = editor.UndoSteps();
        Mouse(editor, bytes);
        if (editor.UndoSteps() > steps + 1) outlook.complete = false; // a drag
        break;
    }
    case 3: Paste(editor, bytes); break;
    case 4: Switch(editor, bytes); break;
    case 5: Scroll(editor, bytes); break;
    case 6:
        ArmAllocationFault(bytes.Next() % 8 + 1, false);
        outlook.complete = false;
        break;
    case 7: OnChar(editor.window, u'\r', false); break;
    default: OnChar(editor.window, static_cast<char16_t>(u'0' + bytes.Next() % 64), false); break;
    }
}

void CheckState(Editor& editor, std::int64_t rows)
{
    const EditCaret caret = editor.Caret();
    Require(caret == ClampToText(editor.window, caret), "the caret is outside of the text");
    const EditSelection selection = NormalisedSelection(editor.window);
    Require(ClampToText(editor.window, selection.end) == selection.end,
            "the selection is outside of the text");
    const Scdr& node = *editor.node;
    Require(node.records.count >= 1, "no line is left");
    Require(node.Rank < 3 || node.records.count == rows, "a plane got another number of lines");
    Require(node.Rank > 0 || node.records.count == 1, "a scalar got another line");
    Require(node.Rank != 1 || node.Type == TypeCharacter || node.records.count == 1,
            "a numeric vector got another line");
    Require(!editor.window.inUndo && !editor.window.dragText && !editor.window.selecting,
            "a mode is left over");
    Require(!editor.clipboardOpen, "the clipboard is left open");
    std::int64_t units = 0;
    ForEachVisiblePiece(
        editor.window, false,
        [](void* sum, const TextPiece& piece) {
            for (std::int64_t i = 0; i < piece.length; ++i)
                *static_cast<std::int64_t*>(sum) += piece.text[i];
        },
        &units);
    Require(units >= 0, "what is painted cannot be read");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2 || size > 4096) return 0;
    const std::int64_t live = LiveAllocations();
    {
        Bytes bytes(data, size);
        const std::uint32_t type = Types[bytes.Next() % std::size(Types)];
        const int rank = bytes.Next() % 4;
        const std::vector<std::int64_t> shape(static_cast<std::size_t>(rank), 2);
        Editor editor(type, shape, rank == 3 ? u"1\n2\n3\n4" : rank == 2 ? u"12\n34" : u"7");
        const TextLines before = editor.Lines();
        const std::int64_t rows = editor.node->records.count;
        Outlook outlook;
        while (!bytes.AtEnd()) {
            Operate(editor, bytes, outlook);
            CheckState(editor, rows);
        }
        DisarmAllocationFault();
        editor.window.readOnly = editor.view.numericFind = false;
        if (rank == 3) editor.node->extra->CurrentPlane = 0;
        while (CanUndo(editor.window))
            Undo(editor.window);
        Require(!editor.State().modified || editor.RedoSteps() == 0,
                "everything is undone and still modified");
        if (outlook.complete)
            Require(editor.Lines() == before, "undoing everything does not bring the text back");
        while (CanRedo(editor.window))
            Redo(editor.window);
        CheckState(editor, rows);
    }
    Require(LiveAllocations() == live, "memory is left behind");
    return 0;
}
