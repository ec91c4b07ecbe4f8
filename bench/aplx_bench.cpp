// Converting big arrays from APLX records and back, each beside the same bytes through memcpy.
//
// Results are fresh memory in both: a new tree or a new record on one side, a new block of malloc on the other.
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include "figures.h"
#include "hosts/aplx_host.h"
#include "hosts/fake_aplx.h"

namespace vantrel {
namespace {

constexpr std::int64_t NumberCount = 10'000'000;
constexpr std::int64_t BitCount = 640'000'000; // as many bytes as the numbers
constexpr std::int64_t CharacterCount = 40'000'000;
constexpr double CopyTarget = 1.3;

struct Session {
    Session()
    {
        aplx::CreateLangEnv(host);
        host.running = &instance;
        context.langEnv = &host.langEnv;
        context.host = static_cast<Host*>(&host);
    }
    ~Session() { host.running = nullptr; }
    aplx::AplxHost& host = aplx::TheAplxHost();
    aplx::Instance instance{};
    EditContext context;
};

std::vector<std::uint8_t> RandomWords(std::int64_t count)
{
    std::mt19937_64 random(7);
    std::vector<std::uint64_t> words(static_cast<std::size_t>(count));
    for (std::uint64_t& word : words)
        word = random();
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(words.data());
    return {bytes, bytes + words.size() * 8};
}

fake::AplxRecord Integers()
{
    return fake::RawAplxRecord(fake::AplxType::Integer, {NumberCount}, RandomWords(NumberCount));
}

fake::AplxRecord Floats()
{
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> distribution(-1e6, 1e6);
    std::vector<double> values(NumberCount);
    for (double& value : values)
        value = distribution(random);
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(values.data());
    return fake::RawAplxRecord(fake::AplxType::Float, {NumberCount}, {bytes, bytes + values.size() * 8});
}

fake::AplxRecord Booleans()
{
    return fake::RawAplxRecord(fake::AplxType::Boolean, {BitCount}, RandomWords(BitCount / 64));
}

fake::AplxRecord Characters()
{
    std::vector<std::uint8_t> text(CharacterCount);
    for (std::size_t i = 0; i < text.size(); ++i)
        text[i] = static_cast<std::uint8_t>(i * 37 % 96 + 32);
    return fake::RawAplxRecord(fake::AplxType::Character, {CharacterCount}, text);
}

struct RecordKind {
    fake::AplxRecord (*make)();
    std::int64_t treeBytes;
    double target;
};

void In(benchmark::State& state, RecordKind kind)
{
    Session session;
    fake::AplxRecord record = kind.make();
    const std::vector<std::uint8_t> source(static_cast<std::size_t>(kind.treeBytes), 1);
    CompareWithFloor(
        state, kind.target,
        [&] {
            ScdrPtr tree;
            return SecondsOf([&] { tree.reset(aplx::ObjectToScdr(&session.context, record.data())); });
        },
        [&] { return CopySeconds(source.data(), source.size()); });
}

void Out(benchmark::State& state, RecordKind kind)
{
    Session session;
    fake::AplxRecord record = kind.make();
    const ScdrPtr tree(aplx::ObjectToScdr(&session.context, record.data()));
    const std::vector<std::uint8_t> source(record.size(), 1);
    record = {};
    CompareWithFloor(
        state, kind.target,
        [&] {
            const double seconds = SecondsOf([&] { aplx::ScdrToObject(&session.context, tree.get()); });
            session.instance.output.reset();
            return seconds;
        },
        [&] { return CopySeconds(source.data(), source.size()); });
}

#define VANTREL_RECORD(name, ...)                                                                            \
    BENCHMARK_CAPTURE(In, name, RecordKind{__VA_ARGS__})                                                     \
        ->Name("aplx/in/" #name)                                                                             \
        ->UseManualTime()                                                                                    \
        ->Unit(benchmark::kMillisecond)                                                                      \
        ->Iterations(Times(7));                                                                              \
    BENCHMARK_CAPTURE(Out, name, RecordKind{__VA_ARGS__})                                                    \
        ->Name("aplx/out/" #name)                                                                            \
        ->UseManualTime()                                                                                    \
        ->Unit(benchmark::kMillisecond)                                                                      \
        ->Iterations(Times(7))

VANTREL_RECORD(integers, Integers, NumberCount * 8, CopyTarget);
VANTREL_RECORD(floats, Floats, NumberCount * 8, CopyTarget);
VANTREL_RECORD(booleans, Booleans, BitCount / 8, CopyTarget);
VANTREL_RECORD(characters, Characters, CharacterCount * 2, 0.0);

} // namespace
} // namespace vantrel
