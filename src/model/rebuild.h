// From edited text back to arrays, and the check whether a host can take an array.
#pragma once

#include "model/scdr.h"

namespace vantrel {

// Action codes of CallPrimitiveReturningScdr; they double as command ids.
inline constexpr std::int32_t ActionConvertToCharacter = 4607;
inline constexpr std::int32_t ActionConvertToNumeric = 4608;
inline constexpr std::int32_t ActionRavel = 4609;
inline constexpr std::int32_t ActionFirst = 4610;
inline constexpr std::int32_t ActionDisclose = 4611;
inline constexpr std::int32_t ActionEnclose = 4612;
inline constexpr std::int32_t ActionEnlist = 4613;
inline constexpr std::int32_t ActionReverse = 4614;
inline constexpr std::int32_t ActionReverseFirstAxis = 4615;
inline constexpr std::int32_t ActionTranspose = 4616;
inline constexpr std::int32_t ActionSortAscending = 4617;
inline constexpr std::int32_t ActionSortDescending = 4618;

// A character vector of a line of text, as a new node under `parent`, whose data is not touched. Throws OutOfMemory.
[[nodiscard]] ScdrPtr CharacterVector(EditContext* context, Scdr* parent, RecordText text);
// The same at the root. Sets ErrorCode and returns null on failure.
[[nodiscard]] ScdrPtr ScdrFromUnicode(EditContext* context, const char16_t* text, std::int64_t length);
// A nested vector with one character vector per record; of rank >= 3 one plane's rows, the first of the list. Sets ErrorCode and returns null
// on failure.
[[nodiscard]] ScdrPtr ScdrRecordsToScdrVectrix(EditContext* context, const Scdr& node);
// The array that the node's records say, numeric or not, all planes of it. Null on failure, with the host's ErrorCode or 9. Text of a scalar or
// vector that the host does not take for numbers stays text; ErrorCode then tells what the host said.
[[nodiscard]] ScdrPtr BuildScdrFromRecords(EditContext* context, const Scdr& node, bool numeric);
// Whether the host's limits, types and characters allow the array. A refusal is noted as the failure of the run.
[[nodiscard]] bool CanSaveScdr(EditContext* context, const Scdr& node) noexcept;

} // namespace vantrel
