// The structural primitives and the clipboard image of big arrays. Floors write to fresh memory as the work does: a new block each time,
// freed outside the measured time.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <random>
#include <vector>

#include "builtin/structural.h"
#include "figures.h"
#include "model/ccdr.h"
#include "model/primitives.h"

namespace vantrel {
namespace {

constexpr std::int64_t ByteCount = 80'000'000;
constexpr std::int64_t LeafCount = 1'000'000;
constexpr std::int64_t LeafLength = 3;

struct Context {
    LangEnv environment{};
    EditContext context{};
    Context() { context.langEnv = &environment; }
};

ScdrPtr MakeArray(Context& context, std::uint32_t type, const std::vector<std::int64_t>& shape)
{
    return AllocateScdr(&context.context, nullptr, type, static_cast<std::int32_t>(shape.size()),
                        shape.data(), true);
}

// Whole numbers, so that nothing may be decided before the last one was looked at.
ScdrPtr MakeFloats(Context& context, const std::vector<std::int64_t>& shape)
{
    ScdrPtr node = MakeArray(context, TypeReal, shape);
    auto* const values = static_cast<double*>(node->data);
    std::iota(values, values + node->ElementCount, 2.0);
    SetSimplestType(*node);
    return node;
}

ScdrPtr MakeBytes(Context& context, std::uint32_t type, const std::vector<std::int64_t>& shape)
{
    ScdrPtr node = MakeArray(context, type, shape);
    auto* const bytes = static_cast<std::uint8_t*>(node->data);
    std::iota(bytes, bytes + DataSize(type, node->ElementCount), std::uint8_t{0});
    return node;
}

// The result is freed outside the measured time.
template <typename Make> double MakeSeconds(Make make)
{
    decltype(make()) result;
    return SecondsOf([&] { result = make(); });
}

template <typename Make>
void CompareWithCopy(benchmark::State& state, double target, const Scdr& source, Make make)
{
    CompareWithFloor(
        state, target, [&] { return MakeSeconds(make); },
        [&] { return CopySeconds(source.data, DataSize(source.Type, source.ElementCount)); });
}

// --- simple arrays ---

void TransposeFloats(benchmark::State& state)
{
    Context context;
    const ScdrPtr source = MakeFloats(context, {state.range(0), state.range(1)});
    CompareWithCopy(state, 2.5, *source, [&] { return BuiltinTranspose(&context.context, *source); });
}
BENCHMARK(TransposeFloats)
    ->Name("builtin/transpose/floats")
    ->Args({4000, 4000})
    ->Args({4096, 4096})
    ->Args({5'000'000, 2})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(Times(8));

void ReverseFloats(benchmark::State& state)
{
    Context context;
    const ScdrPtr source = MakeFloats(context, {ByteCount / 8});
    CompareWithCopy(state, 2, *source, [&] { return BuiltinReverse(&context.context, *source); });
}
BENCHMARK(ReverseFloats)
    ->Name("builtin/reverse/floats")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(Times(8));

void ReverseCharacters(benchmark::State& state)
{
    Context context;
    const ScdrPtr source = MakeBytes(context, TypeCharacter, {ByteCount / 2});
    CompareWithCopy(state, 2, *source, [&] { return BuiltinReverse(&context.context, *source); });
}
BENCHMARK(ReverseCharacters)
    ->Name("builtin/reverse/characters")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(Times(8));

// Columns that do not fill whole bytes, so that every row starts within one.
void ReverseBits(benchmark::State& state)
{
    Context context;
    const ScdrPtr source = MakeBytes(context, TypeBoolean, {8 * ByteCount / state.range(0), state.range(0)});
    CompareWithCopy(state, 2, *source, [&] { return BuiltinReverse(&context.context, *source); });
}
BENCHMARK(ReverseBits)
    ->Name("builtin/reverse/bits")
    ->Arg(8 * ByteCount)
    ->Arg(9999)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(Times(8));

void ReverseRowsOfBits(benchmark::State& state)
{
    Context context;
    const ScdrPtr source = MakeBytes(context, TypeBoolean, {8 * ByteCount / 9999, 9999});
    CompareWithCopy(state, 2, *source, [&] { return BuiltinReverseAxis1(&context.context, *source); });
}
BENCHMARK(ReverseRowsOfBits)
    ->Name("builtin/reverse_axis1/bits")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(Times(8));

void GradeFloats(benchmark::State& state)
{
    Context context;
    const ScdrPtr source = MakeArray(context, TypeReal, {1'000'000});
    auto* const values = static_cast<double*>(source->data);
    std::mt19937_64 random(5);
    std::generate_n(values, source->ElementCount, [&] { return static_cast<double>(random()) - 1e19; });
    CompareWithFloor(
        state, 1.2, [&] { return MakeSeconds([&] { return BuiltinGradeUp(&context.context, *source); }); },
        [&] {
            return MakeSeconds([&] {
                std::vector<std::int64_t> indices(static_cast<std::size_t>(source->ElementCount));
                std::iota(indices.begin(), indices.end(), 0);
                std::stable_sort(indices.begin(), indices.end(),
                                 [values](std::int64_t a, std::int64_t b) { return values[a] < values[b]; });
                return indices;
            });
        });
}
BENCHMARK(GradeFloats)
    ->Name("builtin/grade_up/1M_floats")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(Times(8));

// --- a million short vectors ---

ScdrPtr MakeLeaves(Context& context)
{
    ScdrPtr root = MakeArray(context, TypeNested, {LeafCount});
    for (std::int64_t i = 0; i < LeafCount; ++i) {
        ScdrPtr leaf = MakeArray(context, TypeInteger, {LeafLength});
        auto* const items = static_cast<std::int64_t*>(leaf->data);
        std::iota(items, items + LeafLength, i + 2);
        SetChild(*root, i, std::move(leaf));
    }
    SetSimplestType(*root);
    return root;
}

// Counter "ns_per_leaf": the best time.
template <typename Make> void MeasureLeaves(benchmark::State& state, double target, Make make)
{
    double best = std::numeric_limits<double>::infinity();
    for (auto _ : state) {
        const double seconds = MakeSeconds(make);
        best = std::min(best, seconds);
        state.SetIterationTime(seconds);
    }
    state.counters["ns_per_leaf"] = best * 1e9 / static_cast<double>(LeafCount);
    SetTarget(state, "ns_per_leaf", target);
}

void EnlistLeaves(benchmark::State& state)
{
    Context context;
    const ScdrPtr root = MakeLeaves(context);
    MeasureLeaves(state, 40, [&] { return BuiltinEnlist(&context.context, *root); });
}
BENCHMARK(EnlistLeaves)
    ->Name("builtin/enlist/1M_vectors")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(Times(8));

void ReverseLeaves(benchmark::State& state)
{
    Context context;
    const ScdrPtr root = MakeLeaves(context);
    MeasureLeaves(state, 0, [&] { return BuiltinReverse(&context.context, *root); });
}
BENCHMARK(ReverseLeaves)
    ->Name("builtin/reverse/1M_vectors")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(Times(5));

// --- the clipboard image ---

OwnedArray<std::uint8_t> ImageOf(Context& context, const Scdr& tree)
{
    return OwnedArray<std::uint8_t>(ScdrToCcdr(&context.context, tree, nullptr));
}

void WriteSimpleImage(benchmark::State& state)
{
    Context context;
    const ScdrPtr source = MakeFloats(context, {ByteCount / 8});
    CompareWithCopy(state, 1.3, *source, [&] { return ImageOf(context, *source); });
}
BENCHMARK(WriteSimpleImage)
    ->Name("model/ccdr_out/80MB")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(Times(8));

void ReadSimpleImage(benchmark::State& state)
{
    Context context;
    const ScdrPtr source = MakeFloats(context, {ByteCount / 8});
    const auto image = ImageOf(context, *source);
    const std::int64_t size = CalcCcdrSize(*source);
    CompareWithCopy(state, 1.3, *source, [&] { return CcdrToScdr(&context.context, image.get(), size); });
}
BENCHMARK(ReadSimpleImage)
    ->Name("model/ccdr_in/80MB")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(Times(8));

void WriteLeaves(benchmark::State& state)
{
    Context context;
    const ScdrPtr root = MakeLeaves(context);
    MeasureLeaves(state, 120, [&] { return ImageOf(context, *root); });
}
BENCHMARK(WriteLeaves)
    ->Name("model/ccdr_out/1M_vectors")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(Times(8));

void ReadLeaves(benchmark::State& state)
{
    Context context;
    OwnedArray<std::uint8_t> image;
    std::int64_t size = 0;
    {
        const ScdrPtr root = MakeLeaves(context);
        image = ImageOf(context, *root);
        size = CalcCcdrSize(*root);
    }
    MeasureLeaves(state, 400, [&] { return CcdrToScdr(&context.context, image.get(), size); });
}
BENCHMARK(ReadLeaves)
    ->Name("model/ccdr_in/1M_vectors")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(Times(8));

} // namespace
} // namespace vantrel
