// For whoever changes a row and knows its new width without measuring all of it.
#pragma once

#include "model/records.h"

namespace vantrel {

// The row must have been changed by SpliceRecord since it was last measured.
void SetRecordWidth(RecordList& list, std::int64_t row, std::int64_t width) noexcept;

} // namespace vantrel
