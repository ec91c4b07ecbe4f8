#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "workbench/formats/document.h"

// The editor's own flat image of an array tree, as it lies on the clipboard, versions 0 and 1. One block a node, the
// children's blocks inside their parent's. Every size, count and offset is checked against the file before it is used.
// Whole numbers of 64 bits become floats where they need more than 32; decimal items travel without their digits and
// come in as zeros. Written is version 1, with the flags and axis names that the file had.
namespace vantrel::workbench {

struct CcdrNode {
    std::uint32_t type = 0;
    std::uint8_t flags = 0;
    std::vector<std::int64_t> integers;    // the values of a whole-number node, all 64 bits
    std::vector<std::u16string> axisNames; // rank 3 and above, version 1
    std::vector<CcdrNode> children;
};

struct CcdrSource {
    CcdrNode root;
};

Document ReadCcdr(std::string bytes);
std::string WriteCcdr(const fake::Array& array, const Document* original);

} // namespace vantrel::workbench
