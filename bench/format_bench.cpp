// Formatting a million rows of ten numbers, beside the floor: a bare loop of std::to_chars over the same
// numbers into a fresh buffer of the same size (for Booleans: filling that buffer).
//
// Each iteration measures the floor and the formatting one after the other, so that both see the same
// machine; "ratio" is the quotient of their best times. Fresh: both take their memory from AllocateBytes
// within the measured time and give it back before the other starts. Blocks of this size (26 MB and more)
// come from the system and go back to it when freed, so every page is touched for the first time. mallopt and
// its like are left alone; on a system that kept such blocks, both sides would be equally warm.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <random>

#include "builtin/format.h"
#include "figures.h"
#include "model/scdr.h"

namespace vantrel {
namespace {

constexpr std::int64_t RowCount = 1000000;
constexpr std::int64_t ColumnCount = 10;
constexpr int Precision = 10;

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

constexpr double RealTarget = 1.6;
constexpr double IntegerTarget = 2;

// `floor(bytes)` times the floor over the same numbers.
template <typename Floor>
void Compare(benchmark::State& state, Scdr& node, EditContext* context, double target, Floor floor)
{
    // The floor's buffer must be as large; also loads the numbers.
    const std::int64_t bytes = TimeFormat(context, node).bytes;
    CompareWithFloor(
        state, target, [&] { return TimeFormat(context, node).seconds; }, [&] { return floor(bytes); });
    state.counters["MB"] = static_cast<double>(bytes) / 1e6;
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
    Compare(state, *run.node, &run.context, RealTarget, [&](std::int64_t bytes) {
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
    Compare(state, *run.node, &run.context, IntegerTarget, [&](std::int64_t bytes) {
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
    Compare(state, *run.node, &run.context, 0, [](std::int64_t size) {
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

#define VANTREL_FORMAT_BENCHMARK(routine, name)                                                              \
    BENCHMARK(routine)                                                                                       \
        ->Name("format/" name)                                                                               \
        ->UseManualTime()                                                                                    \
        ->Unit(benchmark::kMillisecond)                                                                      \
        ->Iterations(Times(5))
VANTREL_FORMAT_BENCHMARK(FormatUniformReals, "reals/uniform");
VANTREL_FORMAT_BENCHMARK(FormatSignedReals, "reals/signed");
VANTREL_FORMAT_BENCHMARK(FormatRealsOfAllSizes, "reals/all_sizes");
VANTREL_FORMAT_BENCHMARK(FormatAmounts, "reals/amounts");
VANTREL_FORMAT_BENCHMARK(FormatIntegers, "integers/32_bits");
VANTREL_FORMAT_BENCHMARK(FormatSmallIntegers, "integers/small");
VANTREL_FORMAT_BENCHMARK(FormatBooleans, "booleans/random");

} // namespace
} // namespace vantrel
