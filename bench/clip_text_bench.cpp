// Text of other programs becomes an array: the time must grow with the text and no faster.
#include <string>

#include "builtin/numeric.h"
#include "figures.h"
#include "model/clip_text.h"

namespace vantrel {
namespace {

Scdr* Convert(EditContext* context, std::int32_t, const Scdr* argument, const Scdr*)
{
    return BuiltinCtn(context, *argument).release();
}

std::u16string NumberTable(std::int64_t rows, std::int64_t columns)
{
    std::u16string text;
    for (std::int64_t i = 0; i < rows * columns; ++i) {
        for (const char digit : std::to_string(i * 7919 % 100000))
            text += static_cast<char16_t>(digit);
        text += i % columns == columns - 1 ? u"\r\n" : u"\t";
    }
    return text;
}

double SecondsACell(EditContext* context, const std::u16string& text, std::int64_t cells)
{
    ScdrPtr table;
    const double seconds =
        SecondsOf([&] { table = TextToScdr(context, text.data(), static_cast<std::int64_t>(text.size())); });
    return seconds / static_cast<double>(cells);
}

// The floor is a table of a tenth of the rows, so the ratio of the times by cell is 1 where the work is proportional.
void TableOfNumbers(benchmark::State& state)
{
    constexpr std::int64_t Rows = 100000;
    constexpr std::int64_t Columns = 10;
    LangEnv environment{};
    environment.Operations.CallPrimitiveReturningScdr = Convert;
    EditContext context;
    context.langEnv = &environment;
    const std::u16string large = NumberTable(Rows, Columns);
    const std::u16string small = NumberTable(Rows / 10, Columns);
    CompareWithFloor(
        state, 1.5, [&] { return SecondsACell(&context, large, Rows * Columns); },
        [&] { return SecondsACell(&context, small, Rows / 10 * Columns); });
    state.counters["ns_a_cell"] = state.counters["best_ms"] * 1e6;
}
BENCHMARK(TableOfNumbers)
    ->Name("model/clip_text/100k_x_10_numbers")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(Times(5));

} // namespace
} // namespace vantrel
