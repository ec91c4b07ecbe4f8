// CCDR: the flat image of a tree, for the clipboard and for files. Little-endian, byte-packed; docs/formats.md has the layout.
#pragma once

#include "model/scdr.h"

namespace vantrel {

// Bytes of the image. Throws OutOfMemory where it does not fit.
[[nodiscard]] std::int64_t CalcCcdrSize(const Scdr& node);
// Writes the image to `destination` (CalcCcdrSize bytes, zero-filled by the caller) or, when null, to a new block that the caller
// frees with FreeBytes. Sets ErrorCode 9 and returns null on failure.
std::uint8_t* ScdrToCcdr(EditContext* context, const Scdr& node, std::uint8_t* destination);
// Reads an image of either version. `size` is the real size of the block: sizes, counts, offsets, ranks and nesting are checked against it
// before they are believed, and the tree needs no more than a small multiple of it. Null on failure (ErrorCode 9 for memory, 2 for a damaged
// image, 19 for nesting deeper than DeepestNesting or absurdly many decimal elements, whose data no image carries).
[[nodiscard]] ScdrPtr CcdrToScdr(EditContext* context, const std::uint8_t* block, std::int64_t size);

} // namespace vantrel
