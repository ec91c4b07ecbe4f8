// A block of formatted rows: measured in a first pass, written straight into its final place in a second.
//
// Touching fresh memory costs more than forming a number's digits, so the digits are formed twice rather than
// kept.
#pragma once

#include <optional>

#include "builtin/format.h"
#include "builtin/number_text.h"

namespace vantrel {

// Asks a FormatPoll now and then; throws Interrupt.
class BlockPoll {
public:
    explicit BlockPoll(const FormatPoll* poll) noexcept : poll_(poll) {}
    void Passed(std::int64_t items, std::int64_t rowsDone)
    {
        items_ += items;
        if (items_ >= ItemsBetweenClocks) AskClock(rowsDone);
    }
    static constexpr std::int64_t ItemsBetweenClocks = 2048;

private:
    void AskClock(std::int64_t rowsDone);

    const FormatPoll* poll_;
    std::int64_t items_ = 0;
    std::optional<InterruptPacer> pacer_; // started late: most arrays are too small to need the clock
};

struct NumberBlock {
    std::int64_t rows = 0;
    std::int64_t columns = 0;
    std::int64_t length = 0;           // units of each row
    OwnedArray<std::int32_t> widths;   // rank >= 2: units of each column
    OwnedArray<std::int32_t> integers; // and those before the decimal point
};

// The shape of the text of a Boolean, integer, real or complex array. Throws OutOfMemory, Interrupt.
[[nodiscard]] NumberBlock MeasureNumbers(const EditContext& context, const Scdr& node, BlockPoll& poll);
// Fills rows * length units. Throws Interrupt.
void WriteNumbers(const EditContext& context, const Scdr& node, const NumberBlock& block, char16_t* text,
                  BlockPoll& poll);

} // namespace vantrel
