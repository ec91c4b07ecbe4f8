#include "builtin/format.h"

#include "builtin/number_block.h"
#include "builtin/number_text.h"
#include "entry/trace.h"
#include "model/primitives.h"

namespace vantrel {
namespace {

constexpr const char16_t* NotSupported = u"Formatting of nested arrays is not supported";

bool CanFormat(const Scdr& node) noexcept
{
    return node.Type == TypeBoolean || node.Type == TypeInteger || node.Type == TypeReal ||
           node.Type == TypeComplex;
}

std::int64_t BlockUnits(const NumberBlock& block)
{
    return static_cast<std::int64_t>(CheckedMultiply(block.rows, static_cast<std::size_t>(block.length)));
}

// Reserves what StoreColumns fills, so that nothing can fail once the text is made.
void ReserveColumns(Scdr& node)
{
    if (node.Rank >= 2) ExtraOf(node);
}

void StoreColumns(Scdr& node, NumberBlock& block) noexcept
{
    if (node.Rank < 2) return;
    FreeBytes(node.extra->recordColumnWidths);
    FreeBytes(node.extra->recordColumnIntegers);
    node.extra->recordColumnWidths = block.widths.release();
    node.extra->recordColumnIntegers = block.integers.release();
}

// The argument's shape with the text's length as its last axis; a vector for scalars and vectors.
ScdrPtr AllocateTextArray(EditContext* context, const Scdr& argument, std::int64_t length)
{
    if (argument.Rank < 2) return AllocateScdr(context, nullptr, TypeCharacter, 1, &length, false);
    const auto shape = AllocateArray<std::int64_t>(argument.Rank);
    for (std::int32_t axis = 0; axis + 1 < argument.Rank; ++axis)
        shape[static_cast<std::size_t>(axis)] = argument.Shape[axis];
    shape[static_cast<std::size_t>(argument.Rank) - 1] = length;
    ScdrPtr result = AllocateScdr(context, nullptr, TypeCharacter, argument.Rank, shape.get(), false);
    if (argument.Rank >= 3 && !CopyAxesNames(context, argument, *result)) throw VTERROR_CODE::OutOfMemory;
    return result;
}

bool HostInterrupted(void* state, std::int64_t)
{
    auto* context = static_cast<EditContext*>(state);
    return context->langEnv->Operations.CheckForInterrupt(context) != 0;
}

ScdrPtr FormatToArray(EditContext* context, Scdr& argument)
{
    const bool canInterrupt = context->langEnv->Operations.CheckForInterrupt != nullptr;
    // One that waits already is not made to wait for the clock.
    if (canInterrupt && argument.ElementCount > 1 && HostInterrupted(context, 0))
        throw VTERROR_CODE::Interrupt;
    const FormatPoll hostPoll = {HostInterrupted, context};
    BlockPoll poll(canInterrupt ? &hostPoll : nullptr);
    NumberBlock block = MeasureNumbers(*context, argument, poll);
    ScdrPtr result = AllocateTextArray(context, argument, block.length);
    ReserveColumns(argument);
    WriteNumbers(*context, argument, block, static_cast<char16_t*>(WritableData(*result)), poll);
    StoreColumns(argument, block);
    SetSimplestType(*result);
    return result;
}

} // namespace

std::int64_t FormatF8(const LangEnv& environment, double value, char16_t* buffer, std::int64_t precision)
{
    TraceScope trace("builtin.cpp", "FormatF8");
    RealText text;
    PrepareText(value, MakeNumberStyle(environment, precision), text);
    char16_t* const end = EmitText(text, buffer);
    *end = 0;
    return end - buffer;
}

std::int64_t FormatI8(const LangEnv& environment, std::int64_t value, char16_t* buffer)
{
    TraceScope trace("builtin.cpp", "FormatI8");
    const auto low = static_cast<std::int32_t>(value);
    char16_t* const end = buffer + IntegerLength(low);
    EmitIntegerBefore(end, low, MakeNumberStyle(environment, 0));
    *end = 0;
    return end - buffer;
}

FormattedText FormatNumbers(EditContext* context, Scdr& node, const FormatPoll* poll)
{
    TraceScope trace("builtin.cpp", "FormatNumbers");
    if (!CanFormat(node)) throw VTERROR_CODE::NonceError;
    BlockPoll pacedPoll(poll);
    NumberBlock block = MeasureNumbers(*context, node, pacedPoll);
    ReserveColumns(node);
    FormattedText result;
    result.text = AllocateArray<char16_t>(BlockUnits(block));
    result.rows = block.rows;
    result.length = block.length;
    WriteNumbers(*context, node, block, result.text.get(), pacedPoll);
    StoreColumns(node, block);
    return result;
}

ScdrPtr BuiltinFormat(EditContext* context, Scdr& argument)
{
    TraceScope trace("builtin.cpp", "BuiltinFormat");
    if (argument.Type == TypeCharacter) return CopyScdr(context, argument);
    if (!CanFormat(argument)) {
        context->langEnv->ErrorDetail = NotSupported;
        SetErrorCode(context, VTERROR_CODE::NonceError);
        return nullptr;
    }
    try {
        return FormatToArray(context, argument);
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

} // namespace vantrel
