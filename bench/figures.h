// How a benchmark states a figure, so that the table at the end can show it.
//
// A counter "ratio" is the best time against the best time of its floor, both measured one after the other in every iteration, so that
// both see the same machine. Beside any counter X a counter "X_target" is the most that X may be. Names are room/what/variant.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

namespace vantrel {

inline double Seconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

template <typename Work> double SecondsOf(Work work)
{
    const double start = Seconds();
    work();
    benchmark::ClobberMemory();
    return Seconds() - start;
}

// How often a benchmark that says so itself repeats its work: once in a run that only asks whether they work (VANTREL_BENCH_ONCE).
inline std::int64_t Times(std::int64_t iterations)
{
    return std::getenv("VANTREL_BENCH_ONCE") != nullptr ? 1 : iterations;
}

inline void SetTarget(benchmark::State& state, const std::string& counter, double target)
{
    if (target > 0) state.counters[counter + "_target"] = target;
}

// `work` and `floor` answer the seconds they took. For benchmarks with UseManualTime. A target of 0 is none.
template <typename Work, typename Floor>
void CompareWithFloor(benchmark::State& state, double target, Work work, Floor floor)
{
    double best = std::numeric_limits<double>::infinity();
    double bestFloor = best;
    for (auto _ : state) {
        bestFloor = std::min(bestFloor, floor());
        const double seconds = work();
        best = std::min(best, seconds);
        state.SetIterationTime(seconds);
    }
    state.counters["best_ms"] = best * 1000;
    state.counters["floor_ms"] = bestFloor * 1000;
    state.counters["ratio"] = best / bestFloor;
    SetTarget(state, "ratio", target);
}

// The floor of what makes a block: that many bytes of warm memory copied into a fresh one, which is freed outside the measured time.
inline double CopySeconds(const void* source, std::size_t bytes)
{
    void* copy = nullptr;
    const double seconds = SecondsOf([&] {
        copy = std::malloc(bytes);
        std::memcpy(copy, source, bytes);
        benchmark::DoNotOptimize(copy);
    });
    std::free(copy);
    return seconds;
}

} // namespace vantrel
