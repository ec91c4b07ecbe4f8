// Any text through Convert to numeric: it must never crash, and what it accepts must come back equal when
// formatted at precision 17.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "builtin/format.h"
#include "builtin/numeric.h"

namespace {

using namespace vantrel;

void Require(bool condition, const char* what)
{
    if (condition) return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

// The number of one item, real or imaginary part, of any numeric array.
double PartAt(const Scdr& node, std::int64_t item, bool imaginary)
{
    switch (node.Type) {
    case TypeBoolean: return imaginary ? 0 : static_cast<double>(GetBit(node.data, item));
    case TypeInteger:
        return imaginary ? 0 : static_cast<double>(static_cast<const std::int64_t*>(node.data)[item]);
    case TypeReal: return imaginary ? 0 : static_cast<const double*>(node.data)[item];
    default: return static_cast<const double*>(node.data)[2 * item + (imaginary ? 1 : 0)];
    }
}

// What formatting shows of an item: of integers only the low 32 bits.
double ShownPartAt(const Scdr& node, std::int64_t item, bool imaginary)
{
    if (node.Type != TypeInteger || imaginary) return PartAt(node, item, imaginary);
    return static_cast<double>(static_cast<std::int32_t>(static_cast<const std::int64_t*>(node.data)[item]));
}

// The greatest double has a text of its own that is not a number for the parser.
bool HasGreatestDouble(const Scdr& node)
{
    if (node.Type != TypeReal && node.Type != TypeComplex) return false;
    for (std::int64_t i = 0; i < node.ElementCount; ++i) {
        if (std::fabs(PartAt(node, i, false)) >= 1.7976931348623157e308 ||
            std::fabs(PartAt(node, i, true)) >= 1.7976931348623157e308)
            return true;
    }
    return false;
}

void CheckRoundTrip(EditContext* context, Scdr& numbers)
{
    const ScdrPtr text = BuiltinFormat(context, numbers);
    Require(text != nullptr, "numbers were not formatted");
    if (numbers.ElementCount == 0) return;
    const ScdrPtr again = BuiltinCtn(context, *text);
    Require(again != nullptr, "formatted numbers were not read back");
    Require(again->ElementCount == numbers.ElementCount, "the number of numbers changed");
    for (std::int64_t i = 0; i < numbers.ElementCount; ++i) {
        Require(PartAt(*again, i, false) == ShownPartAt(numbers, i, false), "a number changed");
        Require(PartAt(*again, i, true) == ShownPartAt(numbers, i, true), "an imaginary part changed");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    LangEnv environment = {};
    environment.ViewCapabilities = (data[0] & 1) != 0 ? ViewCapabilityHighMinus : 0;
    EditContext context;
    context.langEnv = &environment;
    context.printPrecision = 17;
    const bool wide =
        (data[0] & 2) != 0; // two bytes a unit reach every unit, one byte a unit the numbers more often
    const auto length = static_cast<std::int64_t>(wide ? (size - 1) / 2 : size - 1);
    const ScdrPtr text = AllocateScdr(&context, nullptr, TypeCharacter, 1, &length, true);
    auto* units = static_cast<char16_t*>(WritableData(*text));
    for (std::int64_t i = 0; i < length; ++i) {
        const std::uint8_t* const at = data + 1 + (wide ? 2 * i : i);
        units[i] = static_cast<char16_t>(wide ? at[0] | at[1] << 8 : at[0]);
    }
    const ScdrPtr numbers = BuiltinCtn(&context, *text);
    Require((numbers != nullptr) == (environment.ErrorCode == VTERROR_CODE::NoError),
            "result and error code disagree");
    if (numbers == nullptr || HasGreatestDouble(*numbers)) return 0;
    CheckRoundTrip(&context, *numbers);
    return 0;
}
