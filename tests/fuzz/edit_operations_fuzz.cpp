// Any sequence of keys, clipboard, mouse and window operations, with allocations failing now and then: caret, selection and number of lines stay
// what the array allows, the caret stands where its line's measured width puts it, and undoing everything brings the text back.
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>

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

constexpr std::uint32_t Types[] = {TypeCharacter, TypeInteger, TypeReal,
                                   TypeBoolean,   TypeComplex, TypeDecimal};
constexpr std::int64_t LongText = 9000;
constexpr std::int64_t MostUnits = 5 * LongText;

// Undoing all brings the text back unless a step was taken along by an undone drag.
struct Outlook {
    bool complete = true;
};

void UseFont(Editor& editor, bool proportional)
{
    const auto measure = [](void*, char16_t first, char16_t last, std::int32_t* widths) {
        for (std::int32_t unit = first; unit <= last; ++unit)
            *widths++ = unit % 10;
    };
    if (proportional) {
        editor.view.widths.Reset(measure, nullptr, 0);
    } else {
        editor.view.widths.Reset(nullptr, nullptr, CharWidth);
    }
}

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
    const std::size_t which = bytes.Next() % (std::size(texts) + 1);
    const bool full = LongestRecord(editor.node->records) > MostUnits;
    if (which < std::size(texts)) {
        editor.clipboard = texts[which];
    } else {
        editor.clipboard = std::u16string(full ? 1 : LongText, u'7');
    }
    PasteClipboard(editor.window);
}

// What the view does with its editor: pages planes, gives it the node anew, another font, the caret's new place.
void Direct(Editor& editor, Bytes& bytes)
{
    static constexpr std::int64_t deltas[] = {
        0, 1, -1, 3, -3, CaretHome, CaretEnd, std::numeric_limits<std::int64_t>::min()};
    const std::uint8_t what = bytes.Next();
    switch (what % 4) {
    case 0:
        if (editor.node->Rank >= 3) editor.ShowPlane(what / 4 % PlaneCount(*editor.node));
        break;
    case 1: OnUseScdr(editor.window, (what & 4) != 0); break;
    case 2:
        UseFont(editor, (what & 4) != 0);
        OnFontChanged(editor.window);
        break;
    default:
        MoveCaret(editor.window, deltas[bytes.Next() % 8], deltas[what / 4 % 8]);
        SelectionReset(editor.window);
        break;
    }
}

void Switch(Editor& editor, Bytes& bytes)
{
    const std::uint8_t what = bytes.Next();
    editor.view.overtype = (what & 1) != 0;
    editor.window.readOnly = (what & 6) == 6;
    SearchForNumbers(editor.view, (what & 24) == 24);
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
    switch (bytes.Next() % 11) {
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
    case 6: {
        const std::uint8_t which = bytes.Next();
        ArmAllocationFault(which % 8 + 1, which >= 0x80);
        break;
    }
    case 7: OnChar(editor.window, u'\r', false); break;
    case 8: Direct(editor, bytes); break;
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
    const RecordText line = EditLine(editor.window, caret.line);
    const std::int64_t x = editor.view.widths.TextWidth(line.text, caret.column);
    Require(CaretToPosition(editor.window, caret).point.x ==
                TextArea(editor.window).left + x - editor.State().scroll.horizontal.position,
            "the caret stands beside its character");
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
        editor.window.readOnly = false;
        SearchForNumbers(editor.view, false);
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
