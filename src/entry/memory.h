// The one road to memory for arrays, records, undo and texts.
//
// Everything that grows with the user's data is allocated here, so that a failed allocation is always the same
// `VTERROR_CODE::OutOfMemory` and a test can make the n-th one fail. Blocks come from malloc and may be freed in any order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "entry/error.h"

namespace vantrel {

// At least 1 byte, aligned for any type. Throws OutOfMemory.
[[nodiscard]] void* AllocateBytes(std::size_t bytes);
// The same, all bytes zero; large blocks come untouched from the system, so zeroes that nobody reads cost nothing.
[[nodiscard]] void* AllocateZeroed(std::size_t bytes);
// Null is ignored.
void FreeBytes(void* block) noexcept;

// Throws OutOfMemory where the product or sum of two sizes does not fit into size_t or is negative.
[[nodiscard]] std::size_t CheckedMultiply(std::int64_t count, std::size_t elementBytes);
[[nodiscard]] std::size_t CheckedAdd(std::size_t a, std::size_t b);

// Fault gate for tests: from now on the `nth` allocation (1 = the next one) fails, and with `sticky` every later one
// too. `DisarmAllocationFault` switches the gate off and returns how many allocations it made fail.
void ArmAllocationFault(std::int64_t nth, bool sticky) noexcept;
std::int64_t DisarmAllocationFault() noexcept;
// For pools that hand out pieces of larger blocks: counts as one allocation for the fault gate. Throws OutOfMemory when it fires.
void PassAllocationGate();
// And keeps the count of live blocks true for them: +1 for a piece handed out, -1 for one taken back.
void CountPoolPiece(std::int64_t change) noexcept;
// Blocks now allocated, for leak tests.
[[nodiscard]] std::int64_t LiveAllocations() noexcept;

struct BytesDeleter {
    void operator()(void* block) const noexcept { FreeBytes(block); }
};
// An owned array of plain values.
template <typename T> using OwnedArray = std::unique_ptr<T[], BytesDeleter>;

template <typename T> [[nodiscard]] OwnedArray<T> AllocateArray(std::int64_t count)
{
    return OwnedArray<T>(static_cast<T*>(AllocateBytes(CheckedMultiply(count, sizeof(T)))));
}

template <typename T> [[nodiscard]] OwnedArray<T> AllocateZeroedArray(std::int64_t count)
{
    return OwnedArray<T>(static_cast<T*>(AllocateZeroed(CheckedMultiply(count, sizeof(T)))));
}

// Lets the standard containers take the same road. They throw OutOfMemory where they would throw bad_alloc.
template <typename T> struct GatedAllocator {
    using value_type = T;
    GatedAllocator() noexcept = default;
    template <typename U> GatedAllocator(const GatedAllocator<U>&) noexcept {}
    [[nodiscard]] T* allocate(std::size_t count)
    {
        // NOLINTBEGIN(bugprone-sizeof-expression): lists of pointers are meant
        if (count > std::numeric_limits<std::size_t>::max() / sizeof(T)) throw VTERROR_CODE::OutOfMemory;
        return static_cast<T*>(AllocateBytes(count * sizeof(T)));
        // NOLINTEND(bugprone-sizeof-expression)
    }
    void deallocate(T* block, std::size_t) noexcept { FreeBytes(block); }
    template <typename U> bool operator==(const GatedAllocator<U>&) const noexcept { return true; }
};

template <typename T> using Vector = std::vector<T, GatedAllocator<T>>;
using Text = std::basic_string<char16_t, std::char_traits<char16_t>, GatedAllocator<char16_t>>;

} // namespace vantrel
