// The array view over a million short character vectors, in a vector and in a matrix: each figure beside its floor.
#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "figures.h"
#include "model/node_pool.h"
#include "model/scdr.h"
#include "tools/scroll.h"
#include "view/commit.h"
#include "view/hit_test.h"
#include "view/item_shift.h"
#include "view/layout.h"
#include "view/selection.h"

namespace vantrel {
namespace {

constexpr std::int64_t LeafCount = 1000000;
constexpr std::int64_t LeafLength = 8;
constexpr std::int64_t WindowWidth = 1000;
constexpr std::int64_t WindowHeight = 700;

ViewEffects NoEffects()
{
    ViewEffects effects{};
    effects.invalidate = [](View&) {};
    effects.showStatus = [](View&, std::int32_t, std::int32_t, bool) {};
    effects.notifyFrame = [](View&, std::int32_t) {};
    effects.isInterruptOrClosePending = [](View&) { return false; };
    effects.showWindowScrollBars = [](View&, bool) {};
    effects.readPlatform = [](View&) {};
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

using Shape = std::vector<std::int64_t>;

// A view of the leaves, a million where nothing else is said; formatted and laid out where `laidOut`.
struct Leaves {
    LangEnv environment{};
    EditContext context;
    View view;
    ScdrPtr root;

    explicit Leaves(bool laidOut, const Shape& shape = {LeafCount})
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
        view.metrics.client = {WindowWidth, WindowHeight};
        SetScrollBarsWindowSize(view.scroll, WindowWidth, WindowHeight);
        root = AllocateScdr(&context, nullptr, TypeNested, static_cast<std::int32_t>(shape.size()),
                            shape.data(), false);
        for (std::int64_t i = 0; i < root->ElementCount; ++i) {
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
    ->Iterations(Times(5));

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
    ->Iterations(Times(5));

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
    SetTarget(state, "best_ms", 2);
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
    return OriginOf(*Children(*leaves.root)[item]).x + 10;
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

// --- what a user does at any place costs the same everywhere, and in a large array no more than in a small one ---

// The window's rectangle at a place, in percent of the way from the start to the end.
Rect64 WindowAt(const Leaves& leaves, std::int64_t percent)
{
    const std::int64_t x = std::max<std::int64_t>(leaves.root->width - WindowWidth, 0) * percent / 100;
    const std::int64_t y = std::max<std::int64_t>(leaves.root->height - WindowHeight, 0) * percent / 100;
    return {x, y, x + WindowWidth, y + WindowHeight};
}

// What painting asks the layout for one frame: the boxes in sight, and where each of them stands.
void FrameAt(Leaves& leaves, std::int64_t percent)
{
    const Rect64 window = WindowAt(leaves, percent);
    const VisibleItems items = FindVisibleItems(leaves.view, *leaves.root, window);
    std::int64_t sum = 0;
    for (std::int64_t row = items.firstRow; row < items.endRow; ++row) {
        for (std::int64_t column = items.firstColumn; column < items.endColumn; ++column) {
            const Scdr& item = *Children(*leaves.root)[items.planeStart + row * items.columns + column];
            sum += NodeRect(item).left + GetRecord(item.records, FirstShownRow(item)).length;
        }
    }
    benchmark::DoNotOptimize(sum);
}

void HitAt(Leaves& leaves, std::int64_t percent)
{
    const Rect64 window = WindowAt(leaves, percent);
    const Point64 middle{window.left + WindowWidth / 2,
                         std::min(window.top + WindowHeight / 2, leaves.root->height / 2)};
    benchmark::DoNotOptimize(HitTestScdr(leaves.view, *leaves.root, middle, 0, 0));
}

// Tab and Shift+Tab: there and back.
void TabAt(Leaves& leaves, std::int64_t percent)
{
    constexpr std::int32_t TabKey = 9;
    constexpr std::int32_t Shift = 1;
    leaves.view.edit.node = Children(*leaves.root)[(leaves.root->ElementCount - 1) * percent / 100];
    benchmark::DoNotOptimize(MoveSelectionByKey(leaves.view, 0, TabKey));
    benchmark::DoNotOptimize(MoveSelectionByKey(leaves.view, Shift, TabKey));
    leaves.view.edit.node = nullptr;
}

using UserAction = void (*)(Leaves& leaves, std::int64_t percent);

constexpr int ActionsTimed = 200;

double SecondsAt(Leaves& leaves, UserAction action, std::int64_t percent)
{
    return SecondsOf([&] {
        for (int i = 0; i < ActionsTimed; ++i)
            action(leaves, percent);
    });
}

// Counter "ratio": the dearest of start, middle and end of the large array against the middle of the small one.
void CompareSizes(benchmark::State& state, const Shape& large, const Shape& small, UserAction action)
{
    Leaves many(true, large);
    Leaves few(true, small);
    double best[] = {1e9, 1e9, 1e9, 1e9};
    for (auto _ : state) {
        const std::int64_t places[] = {0, 50, 100};
        for (std::size_t i = 0; i < 3; ++i)
            best[i] = std::min(best[i], SecondsAt(many, action, places[i]));
        best[3] = std::min(best[3], SecondsAt(few, action, 50));
        state.SetIterationTime(best[1] / ActionsTimed);
    }
    constexpr double ToNanoseconds = 1e9 / ActionsTimed;
    state.counters["start_ns"] = best[0] * ToNanoseconds;
    state.counters["middle_ns"] = best[1] * ToNanoseconds;
    state.counters["end_ns"] = best[2] * ToNanoseconds;
    state.counters["small_ns"] = best[3] * ToNanoseconds;
    state.counters["ratio"] = std::max({best[0], best[1], best[2]}) / best[3];
    SetTarget(state, "ratio", 2);
}

int RegisterComparisons()
{
    struct Action {
        const char* name;
        UserAction run;
    };
    struct Sizes {
        const char* name;
        Shape large;
        Shape small;
    };
    for (const Action& action : {Action{"frame", &FrameAt}, Action{"hit", &HitAt}, Action{"tab", &TabAt}}) {
        for (const Sizes& sizes : {Sizes{"vector_1M_vs_10K", {LeafCount}, {10000}},
                                   Sizes{"matrix_2000x500_vs_100x100", {2000, 500}, {100, 100}}}) {
            benchmark::RegisterBenchmark((std::string("view/") + action.name + "/" + sizes.name).c_str(),
                                         [action, sizes](benchmark::State& state) {
                                             CompareSizes(state, sizes.large, sizes.small, action.run);
                                         })
                ->UseManualTime()
                ->Iterations(Times(20));
        }
    }
    return 0;
}
[[maybe_unused]] const int g_comparisons = RegisterComparisons();

} // namespace
} // namespace vantrel
