#include "tools/char_widths.h"

#include <algorithm>

#include "entry/trace.h"

namespace vantrel {
namespace {

constexpr std::int64_t CodeUnits = 0x10000;
constexpr std::int32_t NotMeasured = -1;

} // namespace

void CharWidths::Reset(Measure measure, void* device, std::int32_t fixedPitchWidth)
{
    TraceScope trace("char_widths.cpp", "Reset");
    if (!widths_) widths_ = AllocateArray<std::int32_t>(CodeUnits);
    std::fill_n(widths_.get(), CodeUnits, NotMeasured);
    measure_ = measure;
    device_ = device;
    fixedPitchWidth_ = fixedPitchWidth;
}

void CharWidths::Prepare(char16_t first, char16_t last)
{
    TraceScope trace("char_widths.cpp", "Prepare");
    if (!widths_ || measure_ == nullptr || last < first) return;
    measure_(device_, first, last, &widths_[first]);
}

std::int32_t CharWidths::CharWidth(char16_t character)
{
    if (fixedPitchWidth_ > 0) return fixedPitchWidth_;
    if (!widths_) return 0;
    if (widths_[character] == NotMeasured) Prepare(character, character);
    return std::max(widths_[character], 0);
}

std::int64_t CharWidths::TextWidth(const char16_t* text, std::int64_t length)
{
    TraceScope trace("char_widths.cpp", "TextWidth");
    if (fixedPitchWidth_ > 0) return length * fixedPitchWidth_;
    if (!widths_) return 0;
    std::int64_t sum = 0;
    for (std::int64_t i = 0; i < length; ++i) {
        const std::int32_t width = widths_[text[i]];
        sum += width >= 0 ? width : CharWidth(text[i]);
    }
    return sum;
}

std::int64_t CharWidths::ColumnAt(const char16_t* text, std::int64_t length, std::int64_t x)
{
    TraceScope trace("char_widths.cpp", "ColumnAt");
    if (x < 0) return 0;
    if (fixedPitchWidth_ > 0) return std::min(length, x / fixedPitchWidth_);
    std::int64_t right = 0;
    std::int64_t column = 0;
    for (; column < length; ++column) {
        right += CharWidth(text[column]);
        if (right > x) break;
    }
    return column;
}

} // namespace vantrel
