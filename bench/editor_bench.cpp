// The cell editor on big arrays. What a key costs must not depend on how many rows there are and where it is pressed; what a selection of a
// million lines costs is measured against a plain copy of its text.

#include <algorithm>
#include <cstring>
#include <vector>

#include "editor/paint_rows.h"
#include "figures.h"
#include "unit/editor/editor_fixture.h"

namespace {

using namespace vantrel;
using vantrel::test::Editor;

// --- keys ---

constexpr std::int64_t MatrixRows = 1000000;
constexpr std::int64_t VectorLines = 100000;
constexpr std::int64_t MatrixColumns = 80;
constexpr double MostMicroseconds = 1000;

std::u16string LinesOfText(std::int64_t lines, const char16_t* line)
{
    std::u16string text;
    for (std::int64_t i = 0; i < lines; ++i) {
        if (i > 0) text += u"\r\n";
        text += line;
    }
    return text;
}

// Both with the font's characters measured one by one, which is the slower road.
void UseProportionalFont(Editor& editor)
{
    editor.view.widths.Reset(
        [](void*, char16_t first, char16_t last, std::int32_t* widths) {
            for (std::int32_t unit = first; unit <= last; ++unit)
                *widths++ = 6 + unit % 4;
        },
        nullptr, 0);
}

struct BigMatrix {
    explicit BigMatrix(std::int64_t rows = MatrixRows, std::int64_t columns = MatrixColumns)
        : text(static_cast<std::size_t>(rows * columns), u'x'), editor(TypeCharacter, {1, 1}, u"")
    {
        UseProportionalFont(editor);
        FreeRecords(editor.node->records);
        SetBulkRecords(editor.node->records, text.data(), rows, columns);
        OnUseScdr(editor.window, true);
    }
    std::u16string text;
    Editor editor;
};

struct BigVector {
    BigVector() : editor(TypeCharacter, {1}, LinesOfText(VectorLines, u"a line of the text of a vector"))
    {
        UseProportionalFont(editor);
        OnUseScdr(editor.window, true);
    }
    Editor editor;
};

enum Key : std::int64_t { TypeKey, EnterKey, BackspaceKey, PageDownKey, ControlEndKey };
constexpr const char* KeyNames[] = {"type", "enter", "backspace", "page_down", "ctrl_end"};

void PressKey(Editor& editor, Key key)
{
    switch (key) {
    case TypeKey: OnChar(editor.window, u'y', false); break;
    case EnterKey: OnChar(editor.window, u'\r', false); break;
    case BackspaceKey: editor.Press(vantrel::test::KeyBackspace); break;
    case PageDownKey: editor.Press(vantrel::test::KeyPageDown); break;
    case ControlEndKey: editor.Press(vantrel::test::KeyEnd, false, true); break;
    }
}

double Median(std::vector<double>& values)
{
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                     values.end());
    return values[values.size() / 2];
}

// The slowest median of the places near, middle and far.
template <typename Big> void BM_Key(benchmark::State& state)
{
    const auto key = static_cast<Key>(state.range(0));
    Big big;
    Editor& editor = big.editor;
    const std::int64_t rows = EditRows(editor.window);
    double worst = 0;
    for (auto _ : state) {
        const double start = Seconds();
        for (const std::int64_t line : {std::int64_t{0}, rows / 2, rows - 1}) {
            std::vector<double> times;
            for (int press = 0; press < 101; ++press) {
                editor.Put(press % 2 == 0 ? 0 : 10, std::min(line + press, rows - 1));
                times.push_back(SecondsOf([&] { PressKey(editor, key); }));
            }
            worst = std::max(worst, Median(times));
        }
        EmptyUndo(editor.window);
        state.SetIterationTime(Seconds() - start);
    }
    state.SetLabel(KeyNames[key]);
    state.counters["microseconds"] = worst * 1e6;
    SetTarget(state, "microseconds", MostMicroseconds);
}

void RegisterKeys()
{
    for (std::int64_t key = TypeKey; key <= ControlEndKey; ++key) {
        const std::string name = KeyNames[key];
        benchmark::RegisterBenchmark(("editor/matrix_1M_rows/" + name).c_str(), &BM_Key<BigMatrix>)
            ->Arg(key)
            ->UseManualTime()
            ->Iterations(Times(3));
        benchmark::RegisterBenchmark(("editor/vector_100K_lines/" + name).c_str(), &BM_Key<BigVector>)
            ->Arg(key)
            ->UseManualTime()
            ->Iterations(Times(3));
    }
}

const bool g_keysRegistered = (RegisterKeys(), true);

// --- painting ---

void BM_EditorPaint(benchmark::State& state)
{
    BigMatrix big;
    SelectAll(big.editor.window);
    for (auto _ : state) {
        std::int64_t units = 0;
        ForEachVisiblePiece(
            big.editor.window, true,
            [](void* sum, const TextPiece& piece) { *static_cast<std::int64_t*>(sum) += piece.length; },
            &units);
        benchmark::DoNotOptimize(units);
    }
}
BENCHMARK(BM_EditorPaint)->Name("editor/matrix_1M_rows/paint");

// One step of scrolling and the frame that follows it.
void ScrollAndPaint(Editor& editor, std::int64_t dy)
{
    ChangeScrollPositions(StateOf(editor.window).scroll, 0, dy);
    std::int64_t units = 0;
    ForEachVisiblePiece(
        editor.window, true,
        [](void* sum, const TextPiece& piece) { *static_cast<std::int64_t*>(sum) += piece.length; }, &units);
    benchmark::DoNotOptimize(units);
}

// From the start, from the middle, where a thumb goes at once, and at the end: pages and steps of the wheel.
double ScrollSeconds(Editor& editor)
{
    const std::int64_t middle = StateOf(editor.window).scroll.vertical.dataSize / 2;
    return SecondsOf([&] {
        for (const std::int64_t place : {ScrollToStart, middle, ScrollToEnd}) {
            ScrollAndPaint(editor, place);
            for (int step = 0; step < 20; ++step) {
                ScrollAndPaint(editor, ScrollPageUp);
                ScrollAndPaint(editor, ScrollPageDown);
                ScrollAndPaint(editor, 3 * editor.view.lineHeight);
            }
        }
        ScrollAndPaint(editor, ScrollToStart);
    });
}

void BM_ScrollMatrix(benchmark::State& state)
{
    constexpr std::int64_t Columns = 4;
    BigMatrix large(10000000, Columns);
    BigMatrix small(10000, Columns);
    CompareWithFloor(
        state, 2, [&] { return ScrollSeconds(large.editor); }, [&] { return ScrollSeconds(small.editor); });
}
BENCHMARK(BM_ScrollMatrix)
    ->Name("editor/scroll/10M_rows_vs_10K")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(Times(20));

// --- one endless line ---

struct EndlessLine {
    static constexpr std::int64_t Columns = 4000000;
    EndlessLine() : editor(TypeCharacter, {1}, std::u16string(Columns, u'x'))
    {
        UseProportionalFont(editor);
        OnFontChanged(editor.window);
    }
    Editor editor;
};

// The slowest median of a key and of the frame after it, near the line's start, in its middle and at its end.
void BM_EndlessLine(benchmark::State& state)
{
    EndlessLine line;
    Editor& editor = line.editor;
    double worst = 0;
    for (auto _ : state) {
        const double start = Seconds();
        for (const std::int64_t column : {std::int64_t{0}, line.Columns / 2, line.Columns}) {
            std::vector<double> times;
            editor.Put(column, 0);
            for (int press = 0; press < 101; ++press) {
                times.push_back(SecondsOf([&] {
                    PressKey(editor, press % 4 == 3 ? BackspaceKey : TypeKey);
                    ScrollAndPaint(editor, 0);
                }));
            }
            worst = std::max(worst, Median(times));
        }
        EmptyUndo(editor.window);
        state.SetIterationTime(Seconds() - start);
    }
    state.counters["microseconds"] = worst * 1e6;
    SetTarget(state, "microseconds", MostMicroseconds);
}
BENCHMARK(BM_EndlessLine)->Name("editor/line_of_4M/type_and_paint")->UseManualTime()->Iterations(Times(3));

// --- a million lines ---

constexpr std::int64_t ManyLines = 1000000;
constexpr double MostCopies = 3;
constexpr double MostNanosecondsALine = 100;

// What the clipboard holds while these run: the block that the editor wrote into.
OwnedArray<char16_t> g_clipboard;
std::int64_t g_clipboardUnits = 0;

bool WriteClipboard(EditWindow&, std::int64_t length, const ClipboardWriter& writer)
{
    g_clipboard = AllocateArray<char16_t>(length + 1);
    writer.write(writer.state, g_clipboard.get());
    g_clipboardUnits = length;
    return true;
}

// The same text from one block into another that is as fresh.
double CopyBlock()
{
    OwnedArray<char16_t> copy;
    const double seconds = SecondsOf([&] {
        copy = AllocateArray<char16_t>(g_clipboardUnits + 1);
        std::memcpy(copy.get(), g_clipboard.get(), static_cast<std::size_t>(g_clipboardUnits) * 2);
        benchmark::DoNotOptimize(copy.get());
    });
    return seconds;
}

void BM_CopyAll(benchmark::State& state)
{
    Editor editor(TypeCharacter, {1, 1}, LinesOfText(ManyLines, u"a line of text"));
    EditEffects effects = *editor.window.effects;
    effects.putClipboardText = &WriteClipboard;
    editor.window.effects = &effects;
    SelectAll(editor.window);
    CopyMarked(editor.window);
    CompareWithFloor(
        state, MostCopies,
        [&] {
            g_clipboard.reset();
            return SecondsOf([&] {
                SelectAll(editor.window);
                CopySelection(editor.window);
            });
        },
        &CopyBlock);
    g_clipboard.reset();
}
BENCHMARK(BM_CopyAll)->Name("editor/copy_1M_lines")->UseManualTime()->Unit(benchmark::kMillisecond);

void ReportLines(benchmark::State& state, double best)
{
    state.counters["ns_a_line"] = best * 1e9 / ManyLines;
    SetTarget(state, "ns_a_line", MostNanosecondsALine);
}

void BM_Paste(benchmark::State& state)
{
    Editor editor(TypeCharacter, {1, 1}, u"x");
    editor.clipboard = LinesOfText(ManyLines, u"a line of text");
    double best = 1;
    for (auto _ : state) {
        const double seconds = SecondsOf([&] { PasteClipboard(editor.window); });
        best = std::min(best, seconds);
        state.SetIterationTime(seconds);
        Undo(editor.window);
        EmptyUndo(editor.window);
    }
    ReportLines(state, best);
}
BENCHMARK(BM_Paste)->Name("editor/paste_1M_lines")->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_UndoPaste(benchmark::State& state)
{
    Editor editor(TypeCharacter, {1, 1}, u"x");
    editor.clipboard = LinesOfText(ManyLines, u"a line of text");
    double best = 1;
    for (auto _ : state) {
        PasteClipboard(editor.window);
        const double seconds = SecondsOf([&] { Undo(editor.window); });
        best = std::min(best, seconds);
        state.SetIterationTime(seconds);
        EmptyUndo(editor.window);
    }
    ReportLines(state, best);
}
BENCHMARK(BM_UndoPaste)->Name("editor/undo_paste_1M_lines")->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
