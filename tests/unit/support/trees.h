// Making, printing, comparing and inventing trees.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "model/scdr.h"

namespace vantrel::test {

using Shape = std::vector<std::int64_t>;

// New trees, simplest types not set. The shape must have as many places as there are items.
ScdrPtr Characters(EditContext* context, std::u16string_view text);
ScdrPtr Characters(EditContext* context, const Shape& shape, std::u16string_view text);
ScdrPtr Booleans(EditContext* context, const Shape& shape, const std::vector<int>& bits);
ScdrPtr Integers(EditContext* context, const Shape& shape, const std::vector<std::int64_t>& values);
ScdrPtr Reals(EditContext* context, const Shape& shape, const std::vector<double>& values);
ScdrPtr Complexes(EditContext* context, const Shape& shape, const std::vector<double>& pairs);
// Takes the children; an empty shape needs one child, the prototype.
ScdrPtr Nested(EditContext* context, const Shape& shape, std::vector<ScdrPtr> children);

template <typename... Pointers> std::vector<ScdrPtr> Items(Pointers... pointers)
{
    std::vector<ScdrPtr> items;
    (items.push_back(std::move(pointers)), ...);
    return items;
}

// One line: type name, shape, items; "General[2](Character[3]'abc' Integer[]5)". Characters above 126 as \u1234.
std::string DumpTree(const Scdr& node);

// Type, rank, shape, axis names, data, the adapter's flags and all children alike. Unequal simplest types are no difference.
::testing::AssertionResult SameTree(const Scdr& expected, const Scdr& actual);
// Parent links, child counts and element counts as the header of scdr.h promises.
::testing::AssertionResult IsSoundTree(const Scdr& root);

struct RandomTreeLimits {
    int deepest = 6; // of nesting
    int highestRank = 5;
    int longestAxis = 4;
    bool decimals = true;  // random bytes
    bool axisNames = true; // random ones instead of the default names
};
ScdrPtr RandomTree(EditContext* context, std::mt19937& random, const RandomTreeLimits& limits = {});
ScdrPtr RandomSimple(EditContext* context, std::mt19937& random, std::uint32_t type, const Shape& shape);
std::u16string RandomText(std::mt19937& random, int longest);

// Runs `operation` again and again, letting its 1st, 2nd, 3rd … allocation fail, once only that one and once all later ones too, until
// a run meets no fault. The operation frees all that it makes and lets OutOfMemory out or swallows it; no run may leave a block.
// Returns how many runs met a fault.
template <typename Operation> int SweepAllocationFaults(Operation operation)
{
    int faults = 0;
    for (const bool sticky : {false, true}) {
        for (std::int64_t nth = 1;; ++nth) {
            const std::int64_t before = LiveAllocations();
            ArmAllocationFault(nth, sticky);
            try {
                operation();
            } catch (VTERROR_CODE code) {
                EXPECT_EQ(code, VTERROR_CODE::OutOfMemory);
            }
            const bool fired = DisarmAllocationFault() > 0;
            EXPECT_EQ(LiveAllocations(), before)
                << "allocation " << nth << (sticky ? " and all later ones" : "") << " failed";
            if (!fired) break;
            ++faults;
        }
    }
    return faults;
}

} // namespace vantrel::test
