// Converting big arrays from the interpreter and back, each beside the same bytes through memcpy.
//
// Results are fresh memory in both: a new tree or a new block of the interpreter on one side, a new block of malloc on the other.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <random>

#include "hosts/dyalog_host.h"
#include "hosts/fake_dyalog.h"

namespace vantrel {
namespace {

constexpr std::int64_t FloatCount = 10'000'000;
constexpr std::int64_t BitCount = 640'000'000; // as many bytes as the floats
constexpr std::int64_t CharacterCount = 40'000'000;
constexpr std::int64_t LeafCount = 1'000'000;

fake::InterpreterOptions BenchOptions()
{
    fake::InterpreterOptions options;
    // Filling and checking every block would be measured as well.
    options.books.strict = false;
    return options;
}

struct Session {
    Session()
    {
        SetInterpreterTable(host, static_cast<const std::int64_t*>(interpreter.Table()));
        host.unicode = true;
        PrepareErrorBlock(host);
        BuildAtomicVector(host);
        CreateLangEnv(host, nullptr);
        context.langEnv = &host.langEnv;
        context.host = &host;
    }
    fake::Interpreter interpreter{BenchOptions()};
    DyalogHost& host = TheDyalogHost();
    EditContext context;
};

fake::Array RandomFloats()
{
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> distribution(-1e6, 1e6);
    std::vector<double> values(FloatCount);
    for (double& value : values)
        value = distribution(random);
    return fake::FloatArray({FloatCount}, values);
}

fake::Array WholeFloats()
{
    std::vector<double> values(FloatCount);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<double>(i % 1000);
    return fake::FloatArray({FloatCount}, values);
}

fake::Array Bytes(int type, std::int64_t count, std::size_t bytes)
{
    std::vector<std::uint8_t> data(bytes);
    for (std::size_t i = 0; i < bytes; ++i)
        data[i] = static_cast<std::uint8_t>(i * 37 % 96 + 32);
    return fake::RawArray(type, {count}, std::move(data));
}

fake::Array PackedBits()
{
    return Bytes(fake::ElementType::Bit, BitCount, BitCount / 8);
}
fake::Array NarrowText()
{
    return Bytes(fake::ElementType::Char8, CharacterCount, CharacterCount);
}
fake::Array WideText()
{
    return Bytes(fake::ElementType::Char16, CharacterCount, 2 * CharacterCount);
}

fake::Array ShortTexts()
{
    std::vector<fake::Array> items;
    items.reserve(LeafCount);
    for (std::int64_t i = 0; i < LeafCount; ++i)
        items.push_back(fake::Text(u"item"));
    return fake::NestedArray({LeafCount}, std::move(items));
}

void In(benchmark::State& state, fake::Array (*make)())
{
    Session session;
    fake::Localp* localp = session.interpreter.MakeLocalp(make());
    for (auto _ : state) {
        const ScdrPtr tree(ObjectToScdr(&session.context, localp));
        benchmark::DoNotOptimize(tree->data);
    }
    session.interpreter.FreeLocalp(localp);
}

void Out(benchmark::State& state, fake::Array (*make)())
{
    Session session;
    fake::Localp* localp = session.interpreter.MakeLocalp(make());
    const ScdrPtr tree(ObjectToScdr(&session.context, localp));
    for (auto _ : state) {
        HostObject written = ScdrToObject(&session.context, tree.get());
        benchmark::DoNotOptimize(written);
        FreeObject(&session.context, written);
    }
    session.interpreter.FreeLocalp(localp);
}

// The floor: that many bytes of warm memory into a fresh block.
void Floor(benchmark::State& state)
{
    const auto bytes = static_cast<std::size_t>(state.range(0));
    std::vector<std::uint8_t> source(bytes, 1);
    for (auto _ : state) {
        void* copy = std::malloc(bytes);
        std::memcpy(copy, source.data(), bytes);
        benchmark::DoNotOptimize(copy);
        benchmark::ClobberMemory();
        std::free(copy);
    }
}

#define CONVERSION(name, make, inBytes, outBytes)                                                            \
    BENCHMARK_CAPTURE(In, name, make)->Unit(benchmark::kMillisecond);                                        \
    BENCHMARK(Floor)->Name("In/" #name "/floor")->Arg(inBytes)->Unit(benchmark::kMillisecond);               \
    BENCHMARK_CAPTURE(Out, name, make)->Unit(benchmark::kMillisecond);                                       \
    BENCHMARK(Floor)->Name("Out/" #name "/floor")->Arg(outBytes)->Unit(benchmark::kMillisecond)

CONVERSION(dyalog_floats, RandomFloats, FloatCount * 8, FloatCount * 8);
CONVERSION(dyalog_whole_floats, WholeFloats, FloatCount * 8, FloatCount * 4);
CONVERSION(dyalog_bits, PackedBits, BitCount / 8, BitCount / 8);
CONVERSION(dyalog_narrow_text, NarrowText, CharacterCount * 2, CharacterCount);
CONVERSION(dyalog_wide_text, WideText, CharacterCount * 2, CharacterCount * 2);
BENCHMARK_CAPTURE(In, dyalog_short_texts, ShortTexts)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Out, dyalog_short_texts, ShortTexts)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace vantrel
