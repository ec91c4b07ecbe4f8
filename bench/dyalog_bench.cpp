// Converting big arrays from the interpreter and back, each beside the same bytes through memcpy.
//
// Results are fresh memory in both: a new tree or a new block of the interpreter on one side, a new block of malloc on the other.
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include "figures.h"
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
        context.host = static_cast<Host*>(&host);
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

struct Conversion {
    fake::Array (*make)();
    std::int64_t inBytes;
    std::int64_t outBytes;
    double target;
};

void In(benchmark::State& state, Conversion conversion)
{
    Session session;
    fake::Localp* localp = session.interpreter.MakeLocalp(conversion.make());
    const std::vector<std::uint8_t> source(static_cast<std::size_t>(conversion.inBytes), 1);
    CompareWithFloor(
        state, conversion.target,
        [&] {
            ScdrPtr tree;
            return SecondsOf([&] { tree.reset(ObjectToScdr(&session.context, localp)); });
        },
        [&] { return CopySeconds(source.data(), source.size()); });
    session.interpreter.FreeLocalp(localp);
}

void Out(benchmark::State& state, Conversion conversion)
{
    Session session;
    fake::Localp* localp = session.interpreter.MakeLocalp(conversion.make());
    const ScdrPtr tree(ObjectToScdr(&session.context, localp));
    const std::vector<std::uint8_t> source(static_cast<std::size_t>(conversion.outBytes), 1);
    CompareWithFloor(
        state, conversion.target,
        [&] {
            HostObject written = nullptr;
            const double seconds = SecondsOf([&] { written = ScdrToObject(&session.context, tree.get()); });
            FreeObject(&session.context, written);
            return seconds;
        },
        [&] { return CopySeconds(source.data(), source.size()); });
    session.interpreter.FreeLocalp(localp);
}

constexpr double CopyTarget = 1.3;
// Of a nested array the floor is the copy of its text alone; what its nodes cost has no target here.
constexpr std::int64_t ShortTextBytes = LeafCount * 8;

#define VANTREL_CONVERSION(name, ...)                                                                        \
    BENCHMARK_CAPTURE(In, name, Conversion{__VA_ARGS__})                                                     \
        ->Name("dyalog/in/" #name)                                                                           \
        ->UseManualTime()                                                                                    \
        ->Unit(benchmark::kMillisecond)                                                                      \
        ->Iterations(Times(7));                                                                              \
    BENCHMARK_CAPTURE(Out, name, Conversion{__VA_ARGS__})                                                    \
        ->Name("dyalog/out/" #name)                                                                          \
        ->UseManualTime()                                                                                    \
        ->Unit(benchmark::kMillisecond)                                                                      \
        ->Iterations(Times(7))

VANTREL_CONVERSION(floats, RandomFloats, FloatCount * 8, FloatCount * 8, CopyTarget);
VANTREL_CONVERSION(whole_floats, WholeFloats, FloatCount * 8, FloatCount * 4, 0.0);
VANTREL_CONVERSION(booleans, PackedBits, BitCount / 8, BitCount / 8, CopyTarget);
VANTREL_CONVERSION(narrow_text, NarrowText, CharacterCount * 2, CharacterCount, CopyTarget);
VANTREL_CONVERSION(wide_text, WideText, CharacterCount * 2, CharacterCount * 2, CopyTarget);
VANTREL_CONVERSION(short_texts, ShortTexts, ShortTextBytes, ShortTextBytes, 0.0);

} // namespace
} // namespace vantrel
