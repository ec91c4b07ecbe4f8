// Formatting a million rows of ten numbers, beside the floor: a bare loop of std::to_chars over the same
// numbers into a fresh buffer of the same size (for Booleans: filling that buffer).
//
// Each iteration measures the floor and the formatting one after the other, so that both see the same
// machine; "ratio" is the quotient of their best times. Fresh: both take their memory from AllocateBytes
// within the measured time and give it back before the other starts. Blocks of this size (26 MB and more)
// come from the system and go back to it when freed, so every page is touched for the first time. mallopt and
// its like are left alone; on a system that kept such blocks, both sides would be equally warm.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "builtin/format.h"
#include "model/scdr.h"

namespace vantrel {
namespace {

constexpr std::int64_t RowCount = 1000000;
constexpr std::int64_t ColumnCount = 10;
constexpr int Precision = 10;

double Seconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// Takes fresh memory, gives each item an equal share of it and writes the item's text there.
template <typename Item, typename Write> double TimeFloor(const Item* items, std::int64_t bytes, Write write)
{
    const double start = Seconds();
    {
        const auto buffer = AllocateArray<char>(bytes);
        const std::int64_t share = bytes / (RowCount * ColumnCount);
        char* output = buffer.get();
        for (std::int64_t i = 0; i < RowCount * ColumnCount; ++i, output += share)
            write(output, output + share, items[i]);
        benchmark::DoNotOptimize(buffer.get());
        benchmark::ClobberMemory();
    }
    return Seconds() - start;
}

struct Formatted {
    double seconds;
    std::int64_t bytes;
};

Formatted TimeFormat(EditContext* context, Scdr& node)
{
    const double start = Seconds();
    std::int64_t bytes = 0;
    {
        const FormattedText text = FormatNumbers(context, node, nullptr);
        bytes = text.rows * text.length * static_cast<std::int64_t>(sizeof(char16_t));
        benchmark::DoNotOptimize(text.text.get());
        benchmark::ClobberMemory();
    }
    return {Seconds() - start, bytes};
}

// `floor(bytes)` times the floor over the same numbers.
template <typename Floor> void Compare(benchmark::State& state, Scdr& node, EditContext* context, Floor floor)
{
    double bestFloor = std::numeric_limits<double>::infinity();
    double bestFormat = bestFloor;
    std::int64_t bytes =
        TimeFormat(context, node).bytes; // the floor's buffer must be as large; also loads the numbers
    for (auto _ : state) {
        bestFloor = std::min(bestFloor, floor(bytes));
        const Formatted formatted = TimeFormat(context, node);
        bestFormat = std::min(bestFormat, formatted.seconds);
        state.SetIterationTime(formatted.seconds);
    }
    state.counters["floor_ms"] = bestFloor * 1000;
    state.counters["format_ms"] = bestFormat * 1000;
    state.counters["MB"] = static_cast<double>(bytes) / 1e6;
    state.counters["ratio"] = bestFormat / bestFloor;
}

struct Run {
    explicit Run(std::uint32_t type)
    {
        context.langEnv = &environment;
        context.printPrecision = Precision;
        const std::int64_t shape[] = {RowCount, ColumnCount};
        node = AllocateScdr(&context, nullptr, type, 2, shape, true);
    }
    LangEnv environment = {};
    EditContext context;
    ScdrPtr node;
    std::mt19937_64 random{42};
};

template <typename Draw> void BenchReals(benchmark::State& state, Draw draw)
{
    Run run(TypeReal);
    auto* items = static_cast<double*>(WritableData(*run.node));
    std::generate_n(items, RowCount * ColumnCount, [&] { return draw(run.random); });
    Compare(state, *run.node, &run.context, [&](std::int64_t bytes) {
        return TimeFloor(items, bytes, [](char* output, char* end, double item) {
            std::to_chars(output, end, item, std::chars_format::general, Precision);
        });
    });
}

template <typename Draw> void BenchIntegers(benchmark::State& state, Draw draw)
{
    Run run(TypeInteger);
    auto* items = static_cast<std::int64_t*>(WritableData(*run.node));
    std::generate_n(items, RowCount * ColumnCount, [&] { return draw(run.random); });
    Compare(state, *run.node, &run.context, [&](std::int64_t bytes) {
        return TimeFloor(items, bytes, [](char* output, char* end, std::int64_t item) {
            std::to_chars(output, end, item);
        });
    });
}

double Uniform(std::mt19937_64& random)
{
    return std::ldexp(static_cast<double>(random() >> 11), -53);
}

void FormatUniformReals(benchmark::State& state)
{
    BenchReals(state, [](std::mt19937_64& random) { return Uniform(random); });
}

void FormatSignedReals(benchmark::State& state)
{
    BenchReals(state, [](std::mt19937_64& random) { return (Uniform(random) - 0.5) * 2e6; });
}

void FormatRealsOfAllSizes(benchmark::State& state)
{
    BenchReals(state, [](std::mt19937_64& random) { return std::pow(10.0, Uniform(random) * 600 - 300); });
}

void FormatAmounts(benchmark::State& state)
{
    BenchReals(state, [](std::mt19937_64& random) { return static_cast<double>(random() % 10000000) / 100; });
}

void FormatIntegers(benchmark::State& state)
{
    BenchIntegers(state, [](std::mt19937_64& random) {
        return static_cast<std::int64_t>(static_cast<std::int32_t>(random()));
    });
}

void FormatSmallIntegers(benchmark::State& state)
{
    BenchIntegers(state, [](std::mt19937_64& random) { return static_cast<std::int64_t>(random() % 1000); });
}

void FormatBooleans(benchmark::State& state)
{
    Run run(TypeBoolean);
    auto* bytes = static_cast<std::uint8_t*>(WritableData(*run.node));
    std::generate_n(bytes, RowCount * ColumnCount / 8,
                    [&] { return static_cast<std::uint8_t>(run.random()); });
    Compare(state, *run.node, &run.context, [](std::int64_t size) {
        const double start = Seconds();
        {
            const auto buffer = AllocateArray<char>(size);
            std::memset(buffer.get(), '0', static_cast<std::size_t>(size));
            benchmark::DoNotOptimize(buffer.get());
            benchmark::ClobberMemory();
        }
        return Seconds() - start;
    });
}

#define VANTREL_FORMAT_BENCHMARK(routine)                                                                    \
    BENCHMARK(routine)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5)
VANTREL_FORMAT_BENCHMARK(FormatUniformReals);
VANTREL_FORMAT_BENCHMARK(FormatSignedReals);
VANTREL_FORMAT_BENCHMARK(FormatRealsOfAllSizes);
VANTREL_FORMAT_BENCHMARK(FormatAmounts);
VANTREL_FORMAT_BENCHMARK(FormatIntegers);
VANTREL_FORMAT_BENCHMARK(FormatSmallIntegers);
VANTREL_FORMAT_BENCHMARK(FormatBooleans);

} // namespace
} // namespace vantrel
