#include "unit/model/records_fixture.h"

namespace vantrel {
namespace {

using namespace test;

std::int64_t g_measured;

void MeasureOne(void*, char16_t first, char16_t last, std::int32_t* widths)
{
    for (std::uint32_t unit = first; unit <= last; ++unit)
        widths[unit - first] = unit == u'W' ? 20 : 5;
    ++g_measured;
}

class RecordWidths : public Records {
protected:
    RecordWidths() { widths.Reset(MeasureOne, nullptr, 0); }
    CharWidths widths;
};

TEST_F(RecordWidths, WidestOfAllRecords)
{
    OwnedRecords records;
    Split(records, u"abc\nW\nWW\na");
    EXPECT_EQ(CountUnmeasuredRecords(records.list), 4);
    EXPECT_EQ(GetRecordWidths(records.list, widths, nullptr), 40);
    EXPECT_EQ(records.list.widest, 40);
    EXPECT_EQ(CountUnmeasuredRecords(records.list), 0);
    EXPECT_EQ(GetRecordWidths(records.list, widths, nullptr), 40);
}

TEST_F(RecordWidths, OfAnEmptyListIsZero)
{
    OwnedRecords records;
    EXPECT_EQ(GetRecordWidths(records.list, widths, nullptr), 0);
}

TEST_F(RecordWidths, OnlyTheEditedRecordIsMeasuredAgain)
{
    OwnedRecords records;
    Split(records, u"abc\nW\nab");
    (void)GetRecordWidths(records.list, widths, nullptr);
    SpliceRecord(records.list, 1, 0, 1, u"b", 1);
    EXPECT_EQ(CountUnmeasuredRecords(records.list), 1);
    EXPECT_EQ(GetRecordWidths(records.list, widths, nullptr), 15);
}

TEST_F(RecordWidths, OnlyTheEditedChunkOfABulkIsMeasuredAgain)
{
    const std::u16string text(2 * 2000, u'W');
    OwnedRecords records;
    SetBulkRecords(records.list, text.data(), 2000, 2);
    EXPECT_EQ(GetRecordWidths(records.list, widths, nullptr), 40);
    SpliceRecord(records.list, 1000, 0, 0, u"W", 1);
    EXPECT_EQ(CountUnmeasuredRecords(records.list), 512);
    EXPECT_EQ(GetRecordWidths(records.list, widths, nullptr), 60);
    EraseRecords(records.list, 1000, 1);
    EXPECT_EQ(GetRecordWidths(records.list, widths, nullptr), 40);
}

TEST_F(RecordWidths, ForgottenWidthsAreMeasuredAgain)
{
    OwnedRecords records;
    Split(records, u"W\na");
    (void)GetRecordWidths(records.list, widths, nullptr);
    ForgetRecordWidths(records.list);
    EXPECT_EQ(CountUnmeasuredRecords(records.list), 2);
    widths.Reset(nullptr, nullptr, 3);
    EXPECT_EQ(GetRecordWidths(records.list, widths, nullptr), 3);
}

TEST_F(RecordWidths, FixedPitchNeedsNoCharacters)
{
    g_measured = 0;
    widths.Reset(MeasureOne, nullptr, 8);
    const std::u16string text(5 * 1000, u'W');
    OwnedRecords records;
    SetBulkRecords(records.list, text.data(), 1000, 5);
    EXPECT_EQ(GetRecordWidths(records.list, widths, nullptr), 40);
    EXPECT_EQ(g_measured, 0);
}

TEST_F(RecordWidths, WidthsBeyond32BitsAreKept)
{
    widths.Reset(nullptr, nullptr, 1 << 20);
    const std::u16string text(4096, u'W');
    OwnedRecords records;
    SetBulkRecords(records.list, text.data(), 1, 4096);
    SpliceRecord(records.list, 0, 0, 0, u"W", 1);
    EXPECT_EQ(GetRecordWidths(records.list, widths, nullptr), std::int64_t{4097} << 20);
}

TEST_F(RecordWidths, ProgressHearsOfEveryChunkAndCanStop)
{
    const std::u16string text(1200, u'a');
    OwnedRecords records;
    SetBulkRecords(records.list, text.data(), 1200, 1);
    std::vector<std::int64_t> steps;
    const MeasureProgress listen = {[](void* state, std::int64_t rows) {
                                        static_cast<std::vector<std::int64_t>*>(state)->push_back(rows);
                                        return static_cast<std::vector<std::int64_t>*>(state)->size() != 2;
                                    },
                                    &steps};
    EXPECT_EQ(GetRecordWidths(records.list, widths, &listen), -1);
    EXPECT_EQ(steps, (std::vector<std::int64_t>{512, 512}));
    EXPECT_EQ(CountUnmeasuredRecords(records.list), 176);
    EXPECT_EQ(GetRecordWidths(records.list, widths, &listen), 5);
    EXPECT_EQ(steps, (std::vector<std::int64_t>{512, 512, 176}));
}

} // namespace
} // namespace vantrel
