// The cell editor on big arrays. What a key costs must not grow with the number of rows: the floor is the same key in a small array.

#include "editor/paint_rows.h"
#include "figures.h"
#include "unit/editor/editor_fixture.h"

namespace {

using namespace vantrel;
using vantrel::test::Editor;

constexpr std::int64_t Columns80 = 80;

struct Matrix {
    explicit Matrix(std::int64_t rows)
        : text(static_cast<std::size_t>(rows * Columns80), u'x'), editor(TypeCharacter, {1, 1}, u"")
    {
        FreeRecords(editor.node->records);
        SetBulkRecords(editor.node->records, text.data(), rows, Columns80);
        OnUseScdr(editor.window, true);
        editor.Put(Columns80 / 2, rows / 2);
    }
    std::u16string text;
    Editor editor;
};

void BM_EditorKey(benchmark::State& state)
{
    Matrix matrix(state.range(0));
    for (auto _ : state) {
        OnChar(matrix.editor.window, u'y', false);
        matrix.editor.Press(vantrel::test::KeyBackspace);
    }
    state.SetItemsProcessed(state.iterations() * 2);
}
BENCHMARK(BM_EditorKey)->Name("editor/key/10_rows_floor")->Arg(10);
BENCHMARK(BM_EditorKey)->Name("editor/key/1M_rows")->Arg(1000000);

void BM_EditorPaint(benchmark::State& state)
{
    Matrix matrix(state.range(0));
    SelectAll(matrix.editor.window);
    for (auto _ : state) {
        std::int64_t units = 0;
        ForEachVisiblePiece(
            matrix.editor.window, true,
            [](void* sum, const TextPiece& piece) { *static_cast<std::int64_t*>(sum) += piece.length; },
            &units);
        benchmark::DoNotOptimize(units);
    }
}
BENCHMARK(BM_EditorPaint)->Name("editor/paint/10_rows_floor")->Arg(10);
BENCHMARK(BM_EditorPaint)->Name("editor/paint/1M_rows")->Arg(1000000);

std::u16string ManyLines()
{
    std::u16string text;
    for (int line = 0; line < 1000000; ++line)
        text += u"a line of text\n";
    return text;
}

void BM_SplitFloor(benchmark::State& state)
{
    Editor editor(TypeCharacter, {1, 1}, u"x");
    const std::u16string text = ManyLines();
    for (auto _ : state) {
        OwnedRecords lines;
        benchmark::DoNotOptimize(StringToRecords(&editor.context, text.data(),
                                                 static_cast<std::int64_t>(text.size()), lines.list, false));
    }
}
BENCHMARK(BM_SplitFloor)->Name("editor/paste/1M_lines_floor")->Unit(benchmark::kMillisecond);

// Into an empty array, with the undo step and the new measures; taking it out again is not counted.
void BM_Paste(benchmark::State& state)
{
    Editor editor(TypeCharacter, {1, 1}, u"x");
    const std::u16string text = ManyLines();
    for (auto _ : state) {
        PasteString(editor.window, text.data(), static_cast<std::int64_t>(text.size()), true);
        state.PauseTiming();
        Undo(editor.window);
        EmptyUndo(editor.window);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_Paste)->Name("editor/paste/1M_lines")->Unit(benchmark::kMillisecond);

} // namespace
