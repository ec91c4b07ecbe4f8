// The tree and its records: each figure beside its floor.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "figures.h"
#include "model/node_pool.h"
#include "model/primitives.h"
#include "model/scdr.h"

namespace vantrel {
namespace {

struct Context {
    LangEnv environment{};
    EditContext context{};
    Context() { context.langEnv = &environment; }
};

// --- ten million floats ---

constexpr std::int64_t FloatCount = 10000000;

ScdrPtr MakeFloats(Context& context)
{
    ScdrPtr node = AllocateScdr(&context.context, nullptr, TypeReal, 1, &FloatCount, false);
    auto* values = static_cast<double*>(node->data);
    for (std::int64_t i = 0; i < FloatCount; ++i)
        values[i] = static_cast<double>(i);
    return node;
}

void CopyTenMillionFloats(benchmark::State& state)
{
    Context context;
    const ScdrPtr source = MakeFloats(context);
    CompareWithFloor(
        state, 0,
        [&] {
            ScdrPtr copy;
            return SecondsOf([&] { copy = CopyScdr(&context.context, *source); });
        },
        [&] { return CopySeconds(source->data, DataSize(source->Type, source->ElementCount)); });
}
BENCHMARK(CopyTenMillionFloats)
    ->Name("model/copy/10M_floats")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(Times(10));

// The numbers are whole, so every one is looked at.
void SimplestTypeOfTenMillionFloats(benchmark::State& state)
{
    Context context;
    const ScdrPtr source = MakeFloats(context);
    CompareWithFloor(
        state, 0, [&] { return SecondsOf([&] { SetSimplestType(*source); }); },
        [&] { return CopySeconds(source->data, DataSize(source->Type, source->ElementCount)); });
}
BENCHMARK(SimplestTypeOfTenMillionFloats)
    ->Name("model/simplest_type/10M_floats")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(Times(10));

// --- a million short character vectors ---

constexpr std::int64_t LeafCount = 1000000;
constexpr std::int64_t LeafLength = 12;

ScdrPtr MakeLeaves(Context& context)
{
    ScdrPtr root = AllocateScdr(&context.context, nullptr, TypeNested, 1, &LeafCount, false);
    for (std::int64_t i = 0; i < LeafCount; ++i) {
        ScdrPtr leaf = AllocateScdr(&context.context, root.get(), TypeCharacter, 1, &LeafLength, true);
        leaf->SimplestType = TypeCharacter;
        SetChild(*root, i, std::move(leaf));
    }
    return root;
}

void GiveRecords(Context& context, Scdr& root)
{
    for (std::int64_t i = 0; i < LeafCount; ++i) {
        Scdr& leaf = *Children(root)[i];
        const auto* text = static_cast<const char16_t*>(leaf.data);
        if (!StringToRecords(&context.context, text, LeafLength, leaf.records, true)) return;
    }
}

// Builds and frees the tree, records included. Counter "bytes_per_leaf": what a leaf takes beyond its text. It is made of the pool's
// slabs and the root's table of children; a block of any other kind would show in "blocks_per_leaf", which counts nodes, too.
void BuildAMillionLeaves(benchmark::State& state)
{
    Context context;
    std::int64_t blocks = 0;
    std::int64_t bytes = 0;
    for (auto _ : state) {
        const std::int64_t blocksBefore = LiveAllocations();
        const std::int64_t bytesBefore = NodePoolBytes();
        ScdrPtr root = MakeLeaves(context);
        GiveRecords(context, *root);
        blocks = LiveAllocations() - blocksBefore;
        bytes = NodePoolBytes() - bytesBefore + static_cast<std::int64_t>(DataSize(TypeNested, LeafCount));
    }
    state.counters["bytes_per_leaf"] =
        static_cast<double>(bytes) / static_cast<double>(LeafCount) - 2.0 * LeafLength;
    SetTarget(state, "bytes_per_leaf", 400);
    state.counters["blocks_per_leaf"] = static_cast<double>(blocks) / static_cast<double>(LeafCount);
    state.SetItemsProcessed(state.iterations() * LeafCount);
}
BENCHMARK(BuildAMillionLeaves)->Name("model/build/1M_leaves")->Unit(benchmark::kMillisecond);

// The floor of building: a zeroed block of a node's size for each leaf.
void AllocateAMillionZeroedBlocks(benchmark::State& state)
{
    OwnedArray<void*> blocks = AllocateArray<void*>(LeafCount);
    for (auto _ : state) {
        for (std::int64_t i = 0; i < LeafCount; ++i)
            blocks.get()[i] = std::calloc(1, sizeof(Scdr));
        for (std::int64_t i = 0; i < LeafCount; ++i)
            std::free(blocks.get()[i]);
    }
    state.SetItemsProcessed(state.iterations() * LeafCount);
}
BENCHMARK(AllocateAMillionZeroedBlocks)->Name("model/build/1M_leaves_floor")->Unit(benchmark::kMillisecond);

void CopyAMillionLeaves(benchmark::State& state)
{
    Context context;
    const ScdrPtr root = MakeLeaves(context);
    for (auto _ : state)
        benchmark::DoNotOptimize(CopyScdr(&context.context, *root));
    state.SetItemsProcessed(state.iterations() * LeafCount);
}
BENCHMARK(CopyAMillionLeaves)->Name("model/copy/1M_leaves")->Unit(benchmark::kMillisecond);

void TabThroughAMillionLeaves(benchmark::State& state)
{
    Context context;
    const ScdrPtr root = MakeLeaves(context);
    for (auto _ : state) {
        for (Scdr* node = TabToNextScdr(*root, 0, 9); node != root.get(); node = TabToNextScdr(*node, 0, 9)) {
            benchmark::DoNotOptimize(node);
        }
    }
    state.SetItemsProcessed(state.iterations() * LeafCount);
}
BENCHMARK(TabThroughAMillionLeaves)->Name("model/tab/1M_leaves")->Unit(benchmark::kMillisecond);

// --- records at the far end of a million rows ---

constexpr std::int64_t RowCount = 1000000;
constexpr std::int64_t RowLength = 20;

struct ManyRows {
    std::u16string text = std::u16string(static_cast<std::size_t>(RowCount * RowLength), u'x');
    OwnedRecords records;
    CharWidths widths;
    ManyRows()
    {
        SetBulkRecords(records.list, text.data(), RowCount, RowLength);
        widths.Reset([](void*, char16_t first, char16_t last,
                        std::int32_t* out) { std::fill_n(out, last - first + 1, 7); },
                     nullptr, 0);
    }
};

void MakeAMillionBulkRows(benchmark::State& state)
{
    const std::u16string text(static_cast<std::size_t>(RowCount * RowLength), u'x');
    for (auto _ : state) {
        OwnedRecords records;
        SetBulkRecords(records.list, text.data(), RowCount, RowLength);
        benchmark::DoNotOptimize(records.list.count);
    }
}
BENCHMARK(MakeAMillionBulkRows)->Name("model/bulk_rows/1M_rows")->Unit(benchmark::kMicrosecond);

void SplitAMillionLines(benchmark::State& state)
{
    Context context;
    std::u16string text;
    for (std::int64_t i = 0; i < RowCount; ++i)
        text += u"nineteen units long\n";
    for (auto _ : state) {
        OwnedRecords records;
        benchmark::DoNotOptimize(StringToRecords(&context.context, text.data(),
                                                 static_cast<std::int64_t>(text.size()), records.list, true));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size() * sizeof(char16_t)));
}
BENCHMARK(SplitAMillionLines)->Name("model/split/1M_lines")->Unit(benchmark::kMillisecond);

void MeasureAMillionRows(benchmark::State& state)
{
    ManyRows rows;
    for (auto _ : state) {
        ForgetRecordWidths(rows.records.list);
        benchmark::DoNotOptimize(GetRecordWidths(rows.records.list, rows.widths, nullptr));
    }
    state.SetItemsProcessed(state.iterations() * RowCount * RowLength);
}
BENCHMARK(MeasureAMillionRows)->Name("model/measure/1M_rows")->Unit(benchmark::kMillisecond);

// The floor of measuring: the same sum of loads without rows.
void SumWidthsOfTheSameText(benchmark::State& state)
{
    ManyRows rows;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            rows.widths.TextWidth(rows.text.data(), static_cast<std::int64_t>(rows.text.size())));
    }
    state.SetItemsProcessed(state.iterations() * RowCount * RowLength);
}
BENCHMARK(SumWidthsOfTheSameText)->Name("model/measure/1M_rows_floor")->Unit(benchmark::kMillisecond);

void GetTheLastOfAMillionRows(benchmark::State& state)
{
    ManyRows rows;
    for (auto _ : state)
        benchmark::DoNotOptimize(GetRecord(rows.records.list, RowCount - 1));
}
BENCHMARK(GetTheLastOfAMillionRows)->Name("model/last_row/1M_rows");

// One key: the text changes and the widest row is known again.
void TypeIntoTheLastOfAMillionRows(benchmark::State& state)
{
    ManyRows rows;
    (void)GetRecordWidths(rows.records.list, rows.widths, nullptr);
    for (auto _ : state) {
        SpliceRecord(rows.records.list, RowCount - 1, 3, 0, u"y", 1);
        benchmark::DoNotOptimize(GetRecordWidths(rows.records.list, rows.widths, nullptr));
        SpliceRecord(rows.records.list, RowCount - 1, 3, 1, u"", 0);
        benchmark::DoNotOptimize(GetRecordWidths(rows.records.list, rows.widths, nullptr));
    }
}
BENCHMARK(TypeIntoTheLastOfAMillionRows)->Name("model/type/1M_rows");

void InsertAndEraseBeforeTheLastOfAMillionRows(benchmark::State& state)
{
    Context context;
    ManyRows rows;
    for (auto _ : state) {
        OwnedRecords line;
        if (!StringToRecords(&context.context, u"line", 4, line.list, true)) break;
        InsertRecords(rows.records.list, RowCount - 1, line.list);
        EraseRecords(rows.records.list, RowCount - 1, 1);
    }
}
BENCHMARK(InsertAndEraseBeforeTheLastOfAMillionRows)->Name("model/insert_erase/1M_rows");

} // namespace
} // namespace vantrel
