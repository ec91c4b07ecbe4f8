#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

#include "workbench/formats/npy.h"

// Single items of .npy files.
namespace vantrel::workbench {
namespace {

std::uint64_t ReadBits(const char* bytes, std::size_t size, bool bigEndian)
{
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < size; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[bigEndian ? i : size - 1 - i]);
        bits = bits << 8 | byte;
    }
    return bits;
}

void AppendBits(std::string& out, std::uint64_t bits, std::size_t size, bool bigEndian)
{
    for (std::size_t i = 0; i < size; ++i) {
        const std::size_t shift = 8 * (bigEndian ? size - 1 - i : i);
        out += static_cast<char>(bits >> shift & 255);
    }
}

double HalfToDouble(std::uint64_t bits)
{
    const int exponent = static_cast<int>(bits >> 10 & 31);
    const auto fraction = static_cast<double>(bits & 1023);
    double value = 0;
    if (exponent == 31)
        value = fraction == 0 ? std::numeric_limits<double>::infinity() : std::nan("");
    else if (exponent == 0)
        value = std::ldexp(fraction, -24);
    else
        value = std::ldexp(1024 + fraction, exponent - 25);
    return bits >> 15 & 1 ? -value : value;
}

std::uint64_t DoubleToHalf(double value)
{
    const std::uint64_t sign = std::signbit(value) ? 0x8000u : 0u;
    const double magnitude = std::abs(value);
    if (std::isnan(value)) return sign | 0x7E00;
    if (magnitude >= 65520) return sign | 0x7C00;
    if (magnitude == 0) return sign;
    int exponent = 0;
    std::frexp(magnitude, &exponent);
    // Below the smallest normal number the steps stay the same.
    const int step = std::max(exponent - 11, -24);
    const auto units = static_cast<std::uint64_t>(std::nearbyint(std::ldexp(magnitude, -step)));
    // A carry out of the fraction raises the exponent by itself.
    return sign | (units + static_cast<std::uint64_t>(step + 24) * 1024);
}

double BitsToFloat(std::uint64_t bits, std::size_t size)
{
    if (size == 2) return HalfToDouble(bits);
    if (size == 4) return std::bit_cast<float>(static_cast<std::uint32_t>(bits));
    return std::bit_cast<double>(bits);
}

std::uint64_t FloatToBits(double value, std::size_t size)
{
    if (size == 2) return DoubleToHalf(value);
    if (size == 4) return std::bit_cast<std::uint32_t>(static_cast<float>(value));
    return std::bit_cast<std::uint64_t>(value);
}

double SignedValue(std::uint64_t bits, std::size_t size)
{
    const std::size_t unused = 64 - 8 * size;
    return static_cast<double>(static_cast<std::int64_t>(bits << unused) >> unused);
}

} // namespace

std::size_t FortranPosition(const fake::Shape& shape, std::size_t index)
{
    std::size_t position = 0;
    std::size_t size = fake::CountOf(shape);
    for (std::size_t axis = shape.size(); axis-- > 0;) {
        const auto length = static_cast<std::size_t>(shape[axis]);
        size /= length;
        position += index % length * size;
        index /= length;
    }
    return position;
}

fake::ComplexNumber ReadNpyNumber(const NpyType& type, const char* bytes)
{
    const std::size_t part = type.kind == 'c' ? type.size / 2 : type.size;
    const std::uint64_t bits = ReadBits(bytes, part, type.bigEndian);
    switch (type.kind) {
    case 'b': return {bits != 0 ? 1.0 : 0.0, 0};
    case 'i': return {SignedValue(bits, part), 0};
    case 'u': return {static_cast<double>(bits), 0};
    case 'f': return {BitsToFloat(bits, part), 0};
    default:
        return {BitsToFloat(bits, part), BitsToFloat(ReadBits(bytes + part, part, type.bigEndian), part)};
    }
}

void AppendNpyNumber(std::string& out, const NpyType& type, fake::ComplexNumber value)
{
    switch (type.kind) {
    case 'b':
    case 'u': AppendBits(out, static_cast<std::uint64_t>(value.real), type.size, type.bigEndian); break;
    case 'i':
        AppendBits(out, static_cast<std::uint64_t>(static_cast<std::int64_t>(value.real)), type.size,
                   type.bigEndian);
        break;
    case 'f': AppendBits(out, FloatToBits(value.real, type.size), type.size, type.bigEndian); break;
    default:
        AppendBits(out, FloatToBits(value.real, type.size / 2), type.size / 2, type.bigEndian);
        AppendBits(out, FloatToBits(value.imaginary, type.size / 2), type.size / 2, type.bigEndian);
    }
}

bool NpyTypeHolds(const NpyType& type, fake::ComplexNumber value)
{
    if (type.kind == 'c') return true;
    if (value.imaginary != 0) return false;
    if (type.kind == 'f') return true;
    if (type.kind == 'b') return value.real == 0 || value.real == 1;
    if (!(std::floor(value.real) == value.real)) return false;
    const int bits = static_cast<int>(8 * type.size);
    if (type.kind == 'u') return value.real >= 0 && value.real < std::ldexp(1.0, bits);
    return value.real >= -std::ldexp(1.0, bits - 1) && value.real < std::ldexp(1.0, bits - 1);
}

} // namespace vantrel::workbench
