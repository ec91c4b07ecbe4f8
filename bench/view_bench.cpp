// The array view over a nested vector of a million short character vectors: each figure beside its floor.
#include <algorithm>
#include <limits>
#include <vector>

#include "figures.h"
#include "model/node_pool.h"
#include "model/scdr.h"
#include "view/commit.h"
#include "view/hit_test.h"
#include "view/layout.h"

namespace vantrel {
namespace {

constexpr std::int64_t LeafCount = 1000000;
constexpr std::int64_t LeafLength = 8;

ViewEffects NoEffects()
{
    ViewEffects effects{};
    effects.invalidate = [](View&) {};
    effects.showStatus = [](View&, std::int32_t, std::int32_t, bool) {};
    effects.notifyFrame = [](View&, std::int32_t) {};
    effects.isInterruptOrClosePending = [](View&) { return false; };
    effects.showWindowScrollBars = [](View&, bool) {};
    effects.sendSize = [](View&) {};
    effects.beginEditor = [](View&, bool, bool) {};
    effects.placeEditor = [](View&, const Rect64*) {};
    effects.reloadEditor = [](View&) {};
    effects.showEditorPlane = [](View&) {};
    effects.moveEditorCaret = [](View&, std::int64_t, std::int64_t) {};
    effects.hideEditor = [](View&) {};
    effects.setFocus = [](View&) {};
    return effects;
}

// A view of the million leaves; formatted and laid out where `laidOut`.
struct Leaves {
    LangEnv environment{};
    EditContext context;
    View view;
    ScdrPtr root;

    explicit Leaves(bool laidOut)
    {
        context.langEnv = &environment;
        view.context = &context;
        view.effects = NoEffects();
        view.metrics.edge = {2, 2};
        view.metrics.workArea = {1024, 768};
        view.edit.lineHeight = 16;
        view.edit.widths.Reset([](void*, char16_t first, char16_t last,
                                  std::int32_t* widths) { std::fill_n(widths, last - first + 1, 8); },
                               nullptr, 0);
        root = AllocateScdr(&context, nullptr, TypeNested, 1, &LeafCount, false);
        for (std::int64_t i = 0; i < LeafCount; ++i) {
            SetChild(*root, i, AllocateScdr(&context, root.get(), TypeCharacter, 1, &LeafLength, true));
        }
        view.root = view.top = root.get();
        if (laidOut) LayOut();
    }
    bool LayOut() { return FormatScdr(view, *root) == 0 && CalculateScdrSizes(view) == 0; }
};

// What no layout can do without: every leaf is visited once, read and written.
double VisitLeaves(const Scdr& root)
{
    return SecondsOf([&] {
        std::int64_t x = 0;
        for (std::int64_t i = 0; i < LeafCount; ++i) {
            Scdr& leaf = *Children(root)[i];
            leaf.originX = x;
            x += leaf.ElementCount * 8;
        }
        benchmark::DoNotOptimize(x);
    });
}

void ReportPerLeaf(benchmark::State& state, double target)
{
    state.counters["ns_per_leaf"] = state.counters["best_ms"].value * 1e6 / static_cast<double>(LeafCount);
    SetTarget(state, "ns_per_leaf", target);
}

// Counter "bytes_per_leaf": the pool's slabs and the root's table of children, beyond the text. A layout that took memory of its own for
// the leaves would show in "blocks".
void LayOutAMillionLeaves(benchmark::State& state)
{
    std::int64_t bytes = 0;
    std::int64_t blocks = 0;
    CompareWithFloor(
        state, 0,
        [&] {
            const std::int64_t bytesBefore = NodePoolBytes();
            Leaves leaves(false);
            const std::int64_t blocksBefore = LiveAllocations();
            const double seconds = SecondsOf([&] { benchmark::DoNotOptimize(leaves.LayOut()); });
            blocks = LiveAllocations() - blocksBefore;
            bytes =
                NodePoolBytes() - bytesBefore + static_cast<std::int64_t>(DataSize(TypeNested, LeafCount));
            return seconds;
        },
        [&] {
            Leaves leaves(false);
            return VisitLeaves(*leaves.root);
        });
    ReportPerLeaf(state, 300);
    state.counters["blocks"] = static_cast<double>(blocks);
    state.counters["bytes_per_leaf"] =
        static_cast<double>(bytes) / static_cast<double>(LeafCount) - 2.0 * LeafLength;
    SetTarget(state, "bytes_per_leaf", 400);
}
BENCHMARK(LayOutAMillionLeaves)
    ->Name("view/layout/1M_leaves")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);

// One leaf has grown: every later one moves.
void LayOutAgainAfterOneChange(benchmark::State& state)
{
    Leaves leaves(true);
    CompareWithFloor(
        state, 0,
        [&] {
            Scdr& first = *Children(*leaves.root)[0];
            first.width += 8;
            return SecondsOf([&] {
                InvalidateAncestorsSizesAndLaterSiblingsOrigins(first);
                benchmark::DoNotOptimize(CalculateScdrSizes(leaves.view));
            });
        },
        [&] { return VisitLeaves(*leaves.root); });
    ReportPerLeaf(state, 0);
}
BENCHMARK(LayOutAgainAfterOneChange)
    ->Name("view/layout_again/1M_leaves")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);

// Commits one edited leaf among a million: its place in percent of the vector, and whether its text changes its length, so that all boxes
// behind it move.
void CommitOneLeaf(benchmark::State& state)
{
    Leaves leaves(true);
    const std::int64_t index = (LeafCount - 1) * state.range(0) / 100;
    const bool changesLength = state.range(1) != 0;
    bool longer = false;
    double best = std::numeric_limits<double>::infinity();
    for (auto _ : state) {
        Scdr& leaf = *Children(*leaves.root)[index];
        longer = changesLength && !longer;
        SpliceRecord(leaf.records, 0, 0, changesLength && !longer ? 2 : 1, u"xx", longer ? 2 : 1);
        leaf.records.flags |= RecordsEdited;
        leaves.view.edit.node = &leaf; // text is typed into the selected array
        const double seconds =
            SecondsOf([&] { benchmark::DoNotOptimize(CheckScdr(leaves.view, *leaves.root)); });
        best = std::min(best, seconds);
        state.SetIterationTime(seconds);
    }
    state.counters["best_ms"] = best * 1000;
    if (!changesLength) SetTarget(state, "best_ms", 2);
}
BENCHMARK(CommitOneLeaf)
    ->Name("view/commit/1M_leaves")
    ->ArgsProduct({{0, 50, 100}, {0, 1}})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// The argument is the place in percent of the vector.
std::int64_t PlaceOf(const benchmark::State& state, const Leaves& leaves)
{
    const std::int64_t item = (LeafCount - 1) * state.range(0) / 100;
    return Children(*leaves.root)[item]->originX + 10;
}

void HitTestAmongAMillion(benchmark::State& state)
{
    Leaves leaves(true);
    const std::int64_t x = PlaceOf(state, leaves);
    for (auto _ : state)
        benchmark::DoNotOptimize(HitTestScdr(leaves.view, *leaves.root, {x, 20}, 0, 0));
}
BENCHMARK(HitTestAmongAMillion)->Name("view/hit_test/1M_leaves")->Arg(0)->Arg(50)->Arg(100);

void FindVisibleAmongAMillion(benchmark::State& state)
{
    Leaves leaves(true);
    const std::int64_t x = PlaceOf(state, leaves);
    for (auto _ : state)
        benchmark::DoNotOptimize(FindVisibleItems(leaves.view, *leaves.root, {x, 0, x + 1000, 700}));
}
BENCHMARK(FindVisibleAmongAMillion)->Name("view/find_visible/1M_leaves")->Arg(0)->Arg(50)->Arg(100);

// The floor of both: two binary searches through a million numbers.
void SearchAMillionNumbers(benchmark::State& state)
{
    std::vector<std::int64_t> origins(static_cast<std::size_t>(LeafCount));
    for (std::size_t i = 0; i < origins.size(); ++i)
        origins[i] = static_cast<std::int64_t>(i) * 81;
    const std::int64_t x = origins[(origins.size() - 1) * static_cast<std::size_t>(state.range(0)) / 100];
    for (auto _ : state) {
        benchmark::DoNotOptimize(std::lower_bound(origins.begin(), origins.end(), x));
        benchmark::DoNotOptimize(std::lower_bound(origins.begin(), origins.end(), x + 1000));
    }
}
BENCHMARK(SearchAMillionNumbers)->Name("view/search_floor/1M_numbers")->Arg(0)->Arg(50)->Arg(100);

} // namespace
} // namespace vantrel
