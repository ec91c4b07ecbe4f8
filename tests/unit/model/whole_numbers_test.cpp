// The judgement of whole blocks against the plain rule, item by item.
#include "model/whole_numbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace vantrel {
namespace {

constexpr double Limit = 9223372036854775808.0;
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

// Written without any of the tricks: a whole number in range is its own floor.
NumberKind PlainKind(double value)
{
    if (value == 0 || value == 1) return NumberKind::Bits;
    if (!(std::fabs(value) <= Limit)) return NumberKind::Other;
    return std::floor(value) == value ? NumberKind::Whole : NumberKind::Other;
}

NumberKind PlainKind(const std::vector<double>& values)
{
    NumberKind kind = NumberKind::Bits;
    for (const double value : values)
        kind = std::max(kind, PlainKind(value));
    return kind;
}

NumberKind Kind(const std::vector<double>& values)
{
    return KindOfReals(values.data(), static_cast<std::int64_t>(values.size()));
}

std::vector<double> OddValues()
{
    std::vector<double> values = {0,
                                  1,
                                  2,
                                  0.5,
                                  1.5,
                                  1e300,
                                  5e-324,
                                  NotANumber,
                                  Infinity,
                                  Limit,
                                  std::numeric_limits<double>::signaling_NaN()};
    // Around every power of two a fraction more, a fraction less, and the half and the whole beside it.
    for (int exponent = -3; exponent <= 66; ++exponent) {
        const double power = std::ldexp(1.0, exponent);
        for (const double value : {power, power * 1.5, power * 2.5, power * 1.25, power + 0.5, power - 0.5,
                                   power + 1, power - 1}) {
            values.push_back(value);
            values.push_back(std::nextafter(value, Infinity));
            values.push_back(std::nextafter(value, -Infinity));
        }
    }
    const std::size_t count = values.size();
    for (std::size_t i = 0; i < count; ++i)
        values.push_back(-values[i]);
    return values;
}

TEST(WholeNumbers, JudgesEveryKindOfItem)
{
    for (const double value : OddValues())
        EXPECT_EQ(KindOfItem(value), PlainKind(value)) << std::hexfloat << value;
}

TEST(WholeNumbers, FindsTheOddItemAtEveryPlace)
{
    for (const double value : OddValues()) {
        for (const std::size_t place : {0u, 1u, 255u, 256u, 400u, 511u, 512u, 519u}) {
            for (const double others : {1.0, 7.0}) {
                std::vector<double> values(520, others);
                values[place] = value;
                EXPECT_EQ(Kind(values), PlainKind(values))
                    << std::hexfloat << value << " at " << place << " among " << others;
            }
        }
    }
}

TEST(WholeNumbers, SeesNothingBeyondTheEnd)
{
    std::vector<double> values(520, 1.0);
    values.back() = 2.5;
    for (std::int64_t count = 0; count < 520; ++count)
        EXPECT_EQ(KindOfReals(values.data(), count), NumberKind::Bits);
}

double RandomValue(std::mt19937_64& random, std::uint64_t kind)
{
    const auto whole = static_cast<double>(static_cast<std::int64_t>(random()) >> (random() % 64));
    switch (kind) {
    case 0: return static_cast<double>(random() % 2);
    case 1: return static_cast<double>(static_cast<std::int32_t>(random()));
    case 2: return whole;
    case 3: return whole / 2;
    default: return std::bit_cast<double>(random());
    }
}

TEST(WholeNumbers, AgreesWithThePlainRuleOnRandomArrays)
{
    std::mt19937_64 random(20240607);
    int kinds[3] = {};
    for (int round = 0; round < 4000; ++round) {
        const std::uint64_t usual = random() % 3;
        std::vector<double> values(random() % 800);
        for (double& value : values)
            value = RandomValue(random, usual);
        const std::uint64_t strange = values.empty() ? 0 : random() % 3;
        for (std::uint64_t i = 0; i < strange; ++i)
            values[random() % values.size()] = RandomValue(random, random() % 5);
        const NumberKind kind = Kind(values);
        ASSERT_EQ(kind, PlainKind(values)) << "round " << round;
        ++kinds[static_cast<int>(kind)];
    }
    for (const int count : kinds)
        EXPECT_GT(count, 200); // no kind was left out
}

} // namespace
} // namespace vantrel
