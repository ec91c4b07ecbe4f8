// Rows without text: an empty array may claim any number of them.
#include "records_fixture.h"

#include <algorithm>
#include <limits>

#include "model/rebuild.h"

namespace vantrel::test {
namespace {

constexpr std::int64_t Huge = std::int64_t{1} << 40;

template <typename Work> VTERROR_CODE CodeOf(Work work)
{
    try {
        work();
        return VTERROR_CODE::NoError;
    } catch (VTERROR_CODE code) {
        return code;
    }
}

class EmptyRows : public Records {
protected:
    EmptyRows()
    {
        SetBulkRecords(records.list, nullptr, Huge, 0);
        widths.Reset([](void*, char16_t first, char16_t last,
                        std::int32_t* out) { std::fill_n(out, last - first + 1, 7); },
                     nullptr, 0);
    }
    void Type(std::int64_t row, const std::u16string& text)
    {
        SpliceRecord(records.list, row, 0, 0, text.data(), static_cast<std::int64_t>(text.size()));
    }
    OwnedRecords records;
    CharWidths widths;
};

TEST_F(EmptyRows, NoneAtAllOwnNothing)
{
    const std::int64_t live = LiveAllocations();
    {
        OwnedRecords none;
        for (int i = 0; i < 2; ++i) // formatted, and formatted again
            SetBulkRecordsOwning(none.list, AllocateArray<char16_t>(0), 0, 5);
        EXPECT_EQ(none.list.count, 0);
    }
    EXPECT_EQ(LiveAllocations(), live);
}

TEST_F(EmptyRows, CostFewChunks)
{
    EXPECT_EQ(records.list.count, Huge);
    EXPECT_LE(records.list.chunkCount, 1024);
    EXPECT_EQ(GetRecord(records.list, Huge - 1).length, 0);
    EXPECT_EQ(LongestRecord(records.list), 0);
}

TEST_F(EmptyRows, AreMeasuredAtOnce)
{
    EXPECT_EQ(CountUnmeasuredRecords(records.list), Huge);
    EXPECT_EQ(GetRecordWidths(records.list, widths, nullptr), 0);
    EXPECT_EQ(CountUnmeasuredRecords(records.list), 0);
    ForgetRecordWidths(records.list);
    EXPECT_EQ(CountUnmeasuredRecords(records.list), Huge);
}

TEST_F(EmptyRows, ReportTheirNumberWhileTheyAreMeasured)
{
    std::int64_t rows = 0;
    const MeasureProgress progress{[](void* state, std::int64_t measured) {
                                       *static_cast<std::int64_t*>(state) += measured;
                                       return true;
                                   },
                                   &rows};
    EXPECT_EQ(GetRecordWidths(records.list, widths, &progress), 0);
    EXPECT_EQ(rows, Huge);
}

TEST_F(EmptyRows, BeyondCountingAreRefused)
{
    for (const std::int64_t rows : {(std::int64_t{1} << 46) + 1, std::numeric_limits<std::int64_t>::max()}) {
        OwnedRecords refused;
        const std::int64_t blocks = LiveAllocations();
        EXPECT_EQ(CodeOf([&] { SetBulkRecords(refused.list, nullptr, rows, 0); }), VTERROR_CODE::SystemLimit);
        EXPECT_EQ(LiveAllocations(), blocks);
        EXPECT_EQ(refused.list.count, 0);
    }
    OwnedRecords most;
    SetBulkRecords(most.list, nullptr, std::int64_t{1} << 46, 0);
    EXPECT_EQ(most.list.count, std::int64_t{1} << 46);
}

TEST_F(EmptyRows, TakeTextAnywhere)
{
    const std::int64_t rows[] = {
        0, 511, 512, 5000, (std::int64_t{1} << 30) - 1, std::int64_t{1} << 30, Huge / 2 + 77, Huge - 1};
    for (const std::int64_t row : rows)
        Type(row, u"ab");
    EXPECT_EQ(records.list.count, Huge);
    EXPECT_LE(records.list.chunkCount, 1024 + 24);
    for (const std::int64_t row : rows) {
        EXPECT_EQ(LineOf(records.list, row), u"ab") << row;
        EXPECT_EQ(LineOf(records.list, row > 512 ? row - 2 : row + 2), u"") << row;
    }
    EXPECT_EQ(LineOf(records.list, 5001), u"");
    EXPECT_EQ(GetRecordWidths(records.list, widths, nullptr), 14);
    EXPECT_EQ(LongestRecord(records.list), 2);
}

TEST_F(EmptyRows, AreErasedAndInserted)
{
    EraseRecords(records.list, 10, Huge - 20);
    EXPECT_EQ(records.list.count, 20);
    OwnedRecords more;
    SetBulkRecords(more.list, nullptr, Huge, 0);
    InsertRecords(records.list, 7, more.list);
    EXPECT_EQ(records.list.count, Huge + 20);
    Type(7, u"x");
    EraseRecords(records.list, 8, Huge + 5);
    EXPECT_EQ(records.list.count, 15);
    EXPECT_EQ(LinesOf(records.list)[7], u"x");
}

TEST_F(EmptyRows, KeepTheListWhenMemoryRunsOut)
{
    for (std::int64_t nth = 1;; ++nth) {
        OwnedRecords list;
        SetBulkRecords(list.list, nullptr, Huge, 0);
        ArmAllocationFault(nth, true);
        const VTERROR_CODE code = CodeOf([&] { SpliceRecord(list.list, Huge / 2 + 1000, 0, 0, u"x", 1); });
        const bool failed = DisarmAllocationFault() > 0;
        EXPECT_EQ(list.list.count, Huge);
        EXPECT_EQ(LongestRecord(list.list), failed ? 0 : 1);
        if (!failed) break;
        EXPECT_EQ(code, VTERROR_CODE::OutOfMemory);
    }
}

TEST_F(EmptyRows, HaveATextWhoseLengthIsKnownAtOnce)
{
    Type(1000, u"abc");
    EXPECT_EQ(RecordsToStringLength(records.list, 0, {0, 0, 0, Huge - 1}), 2 * (Huge - 1) + 3);
    EXPECT_EQ(RecordsToStringLength(records.list, 0, {1, 1000, 2, 1000}), 1);
    EXPECT_EQ(RecordsToStringLength(records.list, 0, {1, 1000, 0, 1003}), 8);
    EXPECT_EQ(RecordsToStringLength(records.list, 0, {0, 998, 2, 1000}), 6);
}

TEST_F(EmptyRows, MakeAnEmptyMatrixAgain)
{
    const std::int64_t shape[] = {Huge, 0};
    const ScdrPtr node = AllocateScdr(context, nullptr, TypeCharacter, 2, shape, true);
    SetBulkRecords(node->records, nullptr, Huge, 0);
    SpliceRecord(node->records, 9, 0, 0, u"x", 1);
    SpliceRecord(node->records, 9, 0, 1, u"", 0);
    const ScdrPtr built = BuildScdrFromRecords(context, *node, false);
    ASSERT_NE(built, nullptr);
    EXPECT_EQ(built->Shape[0], Huge);
    EXPECT_EQ(built->Shape[1], 0);
}

} // namespace
} // namespace vantrel::test
