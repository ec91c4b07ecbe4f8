// What a node owns besides its children: helpers shared by the files that make, change and free nodes.
#pragma once

#include "model/scdr.h"

namespace vantrel {

// Bits of `Scdr::storage`.
enum NodeStorage : std::uint8_t {
    StorageOwnsData = 0x01,  // `data` is a block of its own, not `shortData`
    StorageOwnsShape = 0x02, // `Shape` is a block of its own, not `shortShape`
};

// Null is ignored; entries may be null.
void FreeAxisNames(char16_t** names, std::int32_t rank) noexcept;
// A copy of a terminated string (null counts as empty). Throws OutOfMemory.
[[nodiscard]] OwnedArray<char16_t> CopyTerminated(const char16_t* text);

} // namespace vantrel
