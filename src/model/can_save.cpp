#include <algorithm>
#include <cstring>
#include <limits>

#include "entry/trace.h"
#include "model/rebuild.h"
#include "model/tree_walk.h"

namespace vantrel {
namespace {

constexpr std::size_t TableSize = 256;

// Which code units a host without Unicode has, one bit each. Kept between calls and made anew only for another table.
struct Membership {
    char16_t table[TableSize];
    std::uint8_t units[0x10000 / 8];
    bool known;
};

Membership g_membership;

void UseCharacterTable(const char16_t* table) noexcept
{
    if (g_membership.known && std::memcmp(g_membership.table, table, sizeof g_membership.table) == 0) return;
    std::memcpy(g_membership.table, table, sizeof g_membership.table);
    std::memset(g_membership.units, 0, sizeof g_membership.units);
    for (std::size_t i = 0; i < TableSize; ++i)
        SetBit(g_membership.units, table[i], true);
    g_membership.known = true;
}

bool FitsLimits(const LangEnv& host, const Scdr& node) noexcept
{
    if (node.ElementCount > host.MostElements || node.Rank > host.HighestRank) return false;
    return std::all_of(node.Shape, node.Shape + node.Rank,
                       [&](std::int64_t axis) { return axis <= host.LongestAxis; });
}

bool HasCapability(const LangEnv& host, Capability capability) noexcept
{
    return (host.Capabilities & capability) != 0;
}

bool FitIn32Bits(const std::int64_t* values, std::int64_t count) noexcept
{
    constexpr std::int64_t lowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t highest = std::numeric_limits<std::int32_t>::max();
    return std::all_of(values, values + count,
                       [](std::int64_t value) { return value >= lowest && value <= highest; });
}

bool HasNoImaginaryParts(const double* pairs, std::int64_t count) noexcept
{
    for (std::int64_t i = 0; i < count; ++i) {
        if (!(pairs[2 * i + 1] == 0)) return false;
    }
    return true;
}

bool AreMembers(const LangEnv& host, const char16_t* text, std::int64_t count) noexcept
{
    if (host.CharacterTable == nullptr) return count == 0;
    return std::all_of(text, text + count, [](char16_t unit) { return GetBit(g_membership.units, unit); });
}

bool FitsType(const LangEnv& host, const Scdr& node) noexcept
{
    switch (node.Type) {
    case TypeNested:
    case TypeBoolean:
    case TypeReal: return true;
    case TypeInteger:
        return HasCapability(host, CapabilityInteger64) ||
               FitIn32Bits(static_cast<const std::int64_t*>(node.data), node.ElementCount);
    case TypeComplex:
        return HasCapability(host, CapabilityComplex) ||
               HasNoImaginaryParts(static_cast<const double*>(node.data), node.ElementCount);
    case TypeDecimal: return HasCapability(host, CapabilityDecimal);
    case TypeCharacter:
        return HasCapability(host, CapabilityUnicode) ||
               AreMembers(host, static_cast<const char16_t*>(node.data), node.ElementCount);
    default: return false;
    }
}

} // namespace

bool CanSaveScdr(EditContext* context, const Scdr& node) noexcept
{
    TraceScope trace("can_save.cpp", "CanSaveScdr");
    const LangEnv& host = *context->langEnv;
    if (!HasCapability(host, CapabilityUnicode) && host.CharacterTable != nullptr)
        UseCharacterTable(host.CharacterTable);
    for (SubtreeWalk walk(node); walk.Node() != nullptr; walk.Next()) {
        if (FitsLimits(host, *walk.Node()) && FitsType(host, *walk.Node())) continue;
        NoteFailure(context, VTERROR_CODE::DomainError);
        return false;
    }
    return true;
}

} // namespace vantrel
