// What the status bar says of an array: its parts, their texts and their places.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "model/scdr.h"

namespace vantrel {

// An array's attributes as the status bar shows them. Texts are owned by whoever made them.
struct ScdrAttributes {
    std::uint32_t type = TypeNested;
    std::int32_t depth = 0;
    std::int64_t count = 0;
    std::int32_t rank = 0;
    const char16_t* shape = nullptr;     // null for a scalar
    const char16_t* pickIndex = nullptr; // null: not shown
    const char16_t* plane = nullptr;     // null below rank 3
};

// The axis lengths, separated by one blank; empty for a scalar. Throws OutOfMemory.
[[nodiscard]] Text ShapeText(const Scdr& node);
// The shown plane of a node of rank >= 3, such as "[2;;]". Throws OutOfMemory.
[[nodiscard]] Text PlaneText(const Scdr& node, std::int64_t indexOrigin);

inline constexpr std::int32_t MostStatusParts = 13;

struct StatusParts {
    std::array<Text, MostStatusParts>
        texts; // labels at even places, drawn without a border; values at odd ones
    std::int32_t count = 0;
    std::int32_t pickIndexPart = 0; // where the pick index stands, or would
};

// Throws OutOfMemory.
[[nodiscard]] StatusParts MakeStatusParts(Dialect dialect, const ScdrAttributes& attributes);

// The same in full, a line for each attribute and, from rank 3 on, for each axis with its name: the bar cuts what is long, and has no room for
// names. Lines are joined by CR LF. Throws OutOfMemory.
[[nodiscard]] Text InformationText(Dialect dialect, const ScdrAttributes& attributes, const Scdr& node);

// The right edges of parts whose texts have the given widths. Pixels.
struct StatusBorders {
    std::int32_t horizontal = 0; // of one side
    std::int32_t between = 0;    // gap between parts
};
void StatusEdges(std::span<const std::int32_t> textWidths, const StatusBorders& borders,
                 std::int32_t* edges) noexcept;

} // namespace vantrel
