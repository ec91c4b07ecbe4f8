#include "unit/model/records_fixture.h"

namespace vantrel {
namespace {

using namespace test;

TEST_F(Records, EmptyTextIsOneEmptyRecord)
{
    EXPECT_EQ(LinesOfText(u""), (Lines{u""}));
}

TEST_F(Records, LineFeedsCutTheText)
{
    EXPECT_EQ(LinesOfText(u"\n"), (Lines{u"", u""}));
    EXPECT_EQ(LinesOfText(u"ab\ncd"), (Lines{u"ab", u"cd"}));
    EXPECT_EQ(LinesOfText(u"ab\n"), (Lines{u"ab", u""}));
    EXPECT_EQ(LinesOfText(u"\n\n"), (Lines{u"", u"", u""}));
    EXPECT_EQ(LinesOfText(u"abc"), (Lines{u"abc"}));
}

TEST_F(Records, CarriageReturnBeforeALineFeedIsLeftOut)
{
    EXPECT_EQ(LinesOfText(u"ab\r\ncd\r\n"), (Lines{u"ab", u"cd", u""}));
    EXPECT_EQ(LinesOfText(u"ab\r\r\ncd"), (Lines{u"ab\r", u"cd"}));
    EXPECT_EQ(LinesOfText(u"a\n\r\nb"), (Lines{u"a", u"", u"b"}));
}

TEST_F(Records, CarriageReturnElsewhereStays)
{
    EXPECT_EQ(LinesOfText(u"a\rb"), (Lines{u"a\rb"}));
    EXPECT_EQ(LinesOfText(u"ab\r"), (Lines{u"ab\r"}));
    EXPECT_EQ(LinesOfText(u"ab\rc\nd"), (Lines{u"ab\rc", u"d"}));
}

TEST_F(Records, CarriageReturnAsTheFirstCharacterStays)
{
    EXPECT_EQ(LinesOfText(u"\r\na"), (Lines{u"\r", u"a"}));
}

TEST_F(Records, BorrowedTextIsNotCopied)
{
    const std::u16string text = u"ab\ncd";
    OwnedRecords many;
    Split(many, text, true);
    EXPECT_EQ(GetRecord(many.list, 1).text, text.data() + 3);
    const std::int64_t before = LiveAllocations();
    OwnedRecords one;
    Split(one, u"a line without an end", true);
    EXPECT_EQ(LiveAllocations(), before);
}

TEST_F(Records, CopiedTextOutlivesItsSource)
{
    OwnedRecords records;
    {
        const std::u16string text = u"ab\ncd";
        Split(records, text);
    }
    EXPECT_EQ(LinesOf(records.list), (Lines{u"ab", u"cd"}));
}

TEST_F(Records, FailedSplitSetsTheErrorAndLeavesTheListEmpty)
{
    std::u16string text;
    for (int i = 0; i < 3000; ++i)
        text += u"line\n";
    int failures = 0;
    SweepAllocationFaults([&] {
        OwnedRecords records;
        if (!StringToRecords(context, text.data(), static_cast<std::int64_t>(text.size()), records.list,
                             false)) {
            ++failures;
            EXPECT_EQ(context.TakeError(), VTERROR_CODE::OutOfMemory);
            EXPECT_EQ(records.list.count, 0);
            EXPECT_EQ(records.list.chunkCount, 0);
        } else {
            EXPECT_EQ(records.list.count, 3001);
        }
    });
    EXPECT_EQ(failures, 2 * 8); // the copy, the chunks and six chunks of records
}

TEST_F(Records, BulkRowsAreFoundByNumber)
{
    constexpr std::int64_t rows = 2000;
    std::u16string text;
    for (std::int64_t row = 0; row < rows; ++row)
        text += {static_cast<char16_t>(row), u'x', u'y'};
    OwnedRecords records;
    SetBulkRecords(records.list, text.data(), rows, 3);
    EXPECT_EQ(records.list.count, rows);
    EXPECT_EQ(LongestRecord(records.list), 3);
    for (const std::int64_t row : {0, 1, 511, 512, 513, 1023, 1024, 1999}) {
        EXPECT_EQ(GetRecord(records.list, row).text, text.data() + 3 * row);
        EXPECT_EQ(GetRecord(records.list, row).length, 3);
    }
}

TEST_F(Records, AMillionRowsCostAFewThousandChunksInOneBlock)
{
    const std::int64_t before = LiveAllocations();
    const std::u16string text(1000000, u'a');
    OwnedRecords records;
    SetBulkRecords(records.list, text.data(), 1000000, 1);
    EXPECT_EQ(LiveAllocations(), before + 1);
    EXPECT_EQ(records.list.chunkCount, 1954);
    EXPECT_EQ(GetRecord(records.list, 999999).length, 1);
}

TEST_F(Records, NoRowsIsAnEmptyList)
{
    OwnedRecords records;
    SetBulkRecords(records.list, u"", 0, 5);
    EXPECT_EQ(records.list.count, 0);
    EXPECT_EQ(LongestRecord(records.list), 0);
    EXPECT_EQ(View(AllRecordsText(records.list)), u"");
}

TEST_F(Records, OwnedBlockIsFreedWithTheList)
{
    const std::int64_t before = LiveAllocations();
    {
        OwnedRecords records;
        SetBulkRecordsOwning(records.list, AllocateZeroedArray<char16_t>(6), 2, 3);
        EXPECT_EQ(LiveAllocations(), before + 1);
    }
    EXPECT_EQ(LiveAllocations(), before);
    SweepAllocationFaults([&] {
        OwnedRecords records;
        SetBulkRecordsOwning(records.list, AllocateZeroedArray<char16_t>(3000), 1000, 3);
    });
}

TEST_F(Records, AbsurdRowCountsAreRefused)
{
    OwnedRecords records;
    EXPECT_THROW(SetBulkRecords(records.list, u"", INT64_MAX, 0), VTERROR_CODE);
    EXPECT_EQ(records.list.count, 0);
}

class RecordRanges : public Records {
protected:
    RecordRanges() { Split(records, u"abc\ndefg\n\nhi"); }
    std::u16string Of(const RecordRange& range, std::int64_t firstRow = 0)
    {
        const Text text = RecordsToString(records.list, firstRow, range);
        EXPECT_EQ(RecordsToStringLength(records.list, firstRow, range),
                  static_cast<std::int64_t>(text.size()));
        return View(text);
    }
    OwnedRecords records;
};

TEST_F(RecordRanges, EmptyRangeIsEmptyText)
{
    EXPECT_EQ(Of({1, 1, 1, 1}), u"");
}

TEST_F(RecordRanges, WithinOneRecord)
{
    EXPECT_EQ(Of({1, 1, 3, 1}), u"ef");
    EXPECT_EQ(Of({0, 0, 3, 0}), u"abc");
}

TEST_F(RecordRanges, OverSeveralRecordsJoinsWithLineEnds)
{
    EXPECT_EQ(Of({1, 0, 2, 1}), u"bc\r\nde");
    EXPECT_EQ(Of({2, 0, 1, 3}), u"c\r\ndefg\r\n\r\nh");
    EXPECT_EQ(Of({3, 0, 0, 1}), u"\r\n");
}

TEST_F(RecordRanges, FirstRowShiftsTheRange)
{
    EXPECT_EQ(Of({0, 0, 2, 0}, 3), u"hi");
    EXPECT_EQ(Of({2, 0, 0, 1}, 1), u"fg\r\n");
}

TEST_F(RecordRanges, PlacesBeyondTheEndStandForTheEnd)
{
    EXPECT_EQ(Of({0, 3, 100, 3}), u"hi");
    EXPECT_EQ(Of({100, 0, 100, 1}), u"\r\ndefg");
    EXPECT_EQ(Of({0, 3, 0, 100}), u"hi");
    EXPECT_EQ(Of({0, 100, 5, 200}), u"");
    EXPECT_EQ(Of({0, 2, 5, 1}), u"");
    EXPECT_EQ(Of({3, 1, 1, 1}), u"");
}

TEST_F(RecordRanges, OfAListWithoutRecordsIsEmpty)
{
    EXPECT_EQ(View(RecordsToString(RecordList{}, 0, {0, 0, 5, 5})), u"");
}

TEST_F(RecordRanges, AllRecords)
{
    EXPECT_EQ(View(AllRecordsText(records.list)), u"abc\r\ndefg\r\n\r\nhi");
    SweepAllocationFaults([&] { (void)AllRecordsText(records.list); });
}

} // namespace
} // namespace vantrel
