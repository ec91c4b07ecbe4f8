// Converting a big matrix from MATLAB and back. The floor is one blocked transposition of the same doubles into fresh memory: less cannot be
// done, since the two sides keep their items in different orders.
#include <algorithm>
#include <cstdlib>
#include <random>
#include <vector>

#include "figures.h"
#include "hosts/fake_matlab.h"
#include "hosts/matlab_host.h"

namespace vantrel::matlab {
namespace {

constexpr std::size_t Side = 4000;
constexpr double Target = 1.2;

struct Session {
    Session()
    {
        if (!FillFunctions(
                host.functions, [](void*, const char* name) { return fake::Matlab::Find(name); }, nullptr)) {
            std::abort();
        }
        host.platform = &Platform;
        if (!CreateLangEnv(host)) std::abort();
        context.langEnv = &host.langEnv;
        context.host = static_cast<Host*>(&host);
    }
    ~Session() { DestroyLangEnv(host); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    static constexpr HostPlatform Platform = {nullptr, [] { return true; }, [] {}, nullptr, nullptr, {}};
    fake::Matlab matlab;
    MatlabHost& host = TheMatlabHost();
    EditContext context;
};

std::vector<double> Fractions()
{
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> distribution(-1e6, 1e6);
    std::vector<double> values(Side * Side);
    for (double& value : values)
        value = distribution(random);
    return values;
}

std::vector<double> Wholes()
{
    std::vector<double> values(Side * Side);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<double>(i % 1000);
    return values;
}

// Tiles of a cache line a side, the tiles in squares whose pages the processor keeps at hand.
void Transpose(const double* __restrict from, double* __restrict to)
{
    constexpr std::size_t tile = 8;
    constexpr std::size_t square = 64;
    for (std::size_t row = 0; row < Side; row += square) {
        for (std::size_t column = 0; column < Side; column += square) {
            for (std::size_t r = row; r < std::min(row + square, Side); r += tile) {
                for (std::size_t c = column; c < std::min(column + square, Side); c += tile) {
                    for (std::size_t i = 0; i < tile; ++i) {
                        for (std::size_t k = 0; k < tile; ++k)
                            to[(r + i) * Side + c + k] = from[(c + k) * Side + r + i];
                    }
                }
            }
        }
    }
}
static_assert(Side % 8 == 0);

double TransposeSeconds(const std::vector<double>& source)
{
    double* copy = nullptr;
    const double seconds = SecondsOf([&] {
        copy = static_cast<double*>(std::malloc(source.size() * sizeof(double)));
        Transpose(source.data(), copy);
        benchmark::DoNotOptimize(copy);
    });
    std::free(copy);
    return seconds;
}

void In(benchmark::State& state, std::vector<double> (*make)(), double target)
{
    Session session;
    const std::vector<double> values = make();
    mxArray* array = session.matlab.Make(fake::DoubleValue({Side, Side}, values));
    CompareWithFloor(
        state, target,
        [&] {
            ScdrPtr tree;
            return SecondsOf([&] { tree.reset(ObjectToScdr(&session.context, array)); });
        },
        [&] { return TransposeSeconds(values); });
    session.matlab.Destroy(array);
}

void Out(benchmark::State& state, std::vector<double> (*make)(), double target)
{
    Session session;
    const std::vector<double> values = make();
    mxArray* array = session.matlab.Make(fake::DoubleValue({Side, Side}, values));
    const ScdrPtr tree(ObjectToScdr(&session.context, array));
    session.matlab.Destroy(array);
    CompareWithFloor(
        state, target,
        [&] {
            HostObject written = nullptr;
            const double seconds = SecondsOf([&] { written = ScdrToObject(&session.context, tree.get()); });
            FreeObject(&session.context, written);
            return seconds;
        },
        [&] { return TransposeSeconds(values); });
}

#define VANTREL_MATRIX(name, make, target)                                                                   \
    BENCHMARK_CAPTURE(In, name, make, target)                                                                \
        ->Name("matlab/in/" #name)                                                                           \
        ->UseManualTime()                                                                                    \
        ->Unit(benchmark::kMillisecond)                                                                      \
        ->Iterations(Times(7));                                                                              \
    BENCHMARK_CAPTURE(Out, name, make, target)                                                               \
        ->Name("matlab/out/" #name)                                                                          \
        ->UseManualTime()                                                                                    \
        ->Unit(benchmark::kMillisecond)                                                                      \
        ->Iterations(Times(7))

VANTREL_MATRIX(fractions, Fractions, Target);
// Whole doubles go out as 32-bit integers: half the memory, but a second look at every value.
VANTREL_MATRIX(wholes, Wholes, Target);

} // namespace
} // namespace vantrel::matlab
