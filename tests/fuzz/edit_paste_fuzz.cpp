// Any text pasted anywhere into an array of any type and rank: what is accepted stands there as lines, what is refused changes nothing, and one undo
// brings everything back.
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "unit/editor/editor_fixture.h"

namespace {

using namespace vantrel;
using vantrel::test::Editor;
using vantrel::test::TextLines;

void Require(bool condition, const char* what)
{
    if (condition) return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

constexpr std::uint32_t Types[] = {TypeCharacter, TypeBoolean, TypeInteger,
                                   TypeReal,      TypeComplex, TypeDecimal};
constexpr std::size_t HeaderBytes = 4;

// One byte a unit reaches line ends and digits more often, two bytes a unit reach every unit.
std::u16string UnitsOf(const std::uint8_t* data, std::size_t size, bool wide)
{
    std::u16string text;
    for (std::size_t i = 0; i + (wide ? 1 : 0) < size; i += wide ? 2 : 1)
        text += static_cast<char16_t>(wide ? data[i] | data[i + 1] << 8 : data[i]);
    return text;
}

// The lines that a text makes between the halves of another line.
TextLines Between(const std::u16string& head, const std::u16string& text, const std::u16string& tail)
{
    TextLines lines{head};
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool endsLine = text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n';
        if (text[i] == u'\n') {
            lines.emplace_back();
        } else if (!endsLine) {
            lines.back() += text[i];
        }
    }
    lines.back() += tail;
    return lines;
}

bool HasSurrogate(const std::u16string& text)
{
    for (const char16_t unit : text) {
        if (unit >= 0xD800 && unit <= 0xDFFF) return true;
    }
    return false;
}

void CheckAccepted(Editor& editor, const std::u16string& text, EditCaret at)
{
    const std::u16string line = u"12345";
    const auto column = static_cast<std::size_t>(at.column);
    if (editor.node->Rank == 0 && editor.node->Type == TypeCharacter) return; // replaces its only character
    const TextLines pasted = Between(line.substr(0, column), text, line.substr(column));
    const TextLines lines = editor.Lines();
    for (std::size_t i = 0; i < pasted.size(); ++i)
        Require(lines[static_cast<std::size_t>(at.line) + i] == pasted[i], "a line is not as pasted");
    Require(editor.node->Rank < 3 || pasted.size() == 1, "a plane got another number of lines");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < HeaderBytes) return 0;
    const std::int64_t live = LiveAllocations();
    {
        const std::uint32_t type = Types[data[0] % std::size(Types)];
        const int rank = data[1] % 5;
        const std::vector<std::int64_t> shape(static_cast<std::size_t>(rank), 2);
        const std::u16string line = rank == 0 && type == TypeCharacter ? u"1" : u"12345";
        const TextLines before(rank < 2 ? 1 : rank == 2 ? 2 : std::size_t{1} << (rank - 1), line);
        std::u16string start = before[0];
        for (std::size_t i = 1; i < before.size(); ++i)
            start += u"\n12345";
        Editor editor(type, shape, start);
        const std::u16string text = UnitsOf(data + HeaderBytes, size - HeaderBytes, (data[2] & 1) != 0);
        editor.Put(data[3] % 6, data[2] / 2 % 2);
        const EditCaret at = editor.Caret();
        editor.clipboard = text;
        PasteClipboard(editor.window);
        if (editor.UndoSteps() == 0) {
            Require(editor.beeps.size() == 1, "a refusal beeps once");
            Require(editor.Caret() == at, "a refusal leaves the caret");
        } else {
            Require(!HasSurrogate(text), "a surrogate came in");
            CheckAccepted(editor, text, at);
            Undo(editor.window);
            Require(editor.UndoSteps() == 0 && !editor.State().modified, "one undo is not all");
        }
        Require(editor.Lines() == before, "the text is not as it was");
    }
    Require(LiveAllocations() == live, "memory is left behind");
    return 0;
}
