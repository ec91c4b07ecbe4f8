#pragma once

#include <cstdint>

#include "hosts/array.h"

// The language primitives that the fake interpreter computes for its clients, on array values.
namespace vantrel::fake {

namespace PrimitiveCode {
inline constexpr std::int64_t Ravel = 33;
inline constexpr std::int64_t First = 36;
inline constexpr std::int64_t GradeDown = 39;
inline constexpr std::int64_t GradeUp = 40;
inline constexpr std::int64_t Transpose = 41;
inline constexpr std::int64_t Reverse = 42;
inline constexpr std::int64_t ReverseFirst = 43;
inline constexpr std::int64_t Enlist = 44;
inline constexpr std::int64_t Format = 48;
inline constexpr std::int64_t Enclose = 50;
inline constexpr std::int64_t Mix = 51;
inline constexpr std::int64_t VerifyAndFix = 145;
} // namespace PrimitiveCode

struct LanguageSettings {
    std::int64_t indexOrigin = 1;
    std::int64_t printPrecision = 10;
};

// Computes a monadic primitive. Returns 0, or the interpreter's error number (16 for a primitive it does not have).
std::int64_t ComputePrimitive(std::int64_t code, const Array& argument, const LanguageSettings& settings,
                              Array& result);

} // namespace vantrel::fake
