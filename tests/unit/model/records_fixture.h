// Record lists for the tests of this room.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "model/records.h"
#include "unit/support/test_context.h"
#include "unit/support/trees.h"

namespace vantrel::test {

using Lines = std::vector<std::u16string>;

inline std::u16string LineOf(const RecordList& list, std::int64_t row)
{
    const RecordText text = GetRecord(list, row);
    return {text.text, static_cast<std::size_t>(text.length)};
}

inline Lines LinesOf(const RecordList& list)
{
    Lines lines;
    for (std::int64_t row = 0; row < list.count; ++row)
        lines.push_back(LineOf(list, row));
    return lines;
}

inline std::u16string View(const Text& text)
{
    return {text.data(), text.size()};
}

class Records : public ::testing::Test {
protected:
    void Split(OwnedRecords& records, std::u16string_view text, bool borrow = false)
    {
        ASSERT_TRUE(StringToRecords(context, text.data(), static_cast<std::int64_t>(text.size()),
                                    records.list, borrow));
    }
    Lines LinesOfText(std::u16string_view text)
    {
        OwnedRecords records;
        Split(records, text);
        return LinesOf(records.list);
    }
    TestContext context;
};

} // namespace vantrel::test
