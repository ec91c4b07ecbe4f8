#include "unit/model/records_fixture.h"

namespace vantrel {
namespace {

using namespace test;

TEST_F(Records, SpliceReplacesUnitsOfOneRow)
{
    OwnedRecords records;
    Split(records, u"abc\ndef\nghi");
    SpliceRecord(records.list, 1, 1, 1, u"XYZ", 3);
    EXPECT_EQ(LinesOf(records.list), (Lines{u"abc", u"dXYZf", u"ghi"}));
    EXPECT_EQ(LongestRecord(records.list), 5);
    SpliceRecord(records.list, 1, 0, 5, u"", 0);
    EXPECT_EQ(LinesOf(records.list), (Lines{u"abc", u"", u"ghi"}));
    SpliceRecord(records.list, 1, 0, 0, u"q", 1);
    SpliceRecord(records.list, 2, 3, 0, u"!", 1);
    EXPECT_EQ(LinesOf(records.list), (Lines{u"abc", u"q", u"ghi!"}));
}

TEST_F(Records, SpliceNeverWritesIntoBorrowedText)
{
    const std::u16string text = u"abcdefghi";
    OwnedRecords records;
    SetBulkRecords(records.list, text.data(), 3, 3);
    SpliceRecord(records.list, 1, 0, 1, u"X", 1);
    SpliceRecord(records.list, 2, 1, 2, u"", 0);
    SpliceRecord(records.list, 2, 1, 0, u"Z", 1);
    EXPECT_EQ(LinesOf(records.list), (Lines{u"abc", u"Xef", u"gZ"}));
    EXPECT_EQ(text, u"abcdefghi");
}

TEST_F(Records, SpliceTakesTextFromTheListItself)
{
    OwnedRecords records;
    Split(records, u"abc\ndef");
    for (int i = 0; i < 6; ++i) {
        const RecordText own = GetRecord(records.list, 0);
        SpliceRecord(records.list, 0, 1, 0, own.text, own.length);
    }
    std::u16string expected = u"abc";
    for (int i = 0; i < 6; ++i)
        expected.insert(1, std::u16string(expected));
    EXPECT_EQ(LineOf(records.list, 0), expected);
    const RecordText other = GetRecord(records.list, 0);
    SpliceRecord(records.list, 1, 0, 0, other.text, 3);
    EXPECT_EQ(LineOf(records.list, 1), expected.substr(0, 3) + u"def");
}

TEST_F(Records, TypingAtTheEndOfALongLineDoesNotCopyItEachTime)
{
    const std::u16string text(100000, u'a');
    OwnedRecords records;
    SetBulkRecords(records.list, text.data(), 1, 100000);
    SpliceRecord(records.list, 0, 0, 0, u"x", 1);
    const char16_t* buffer = GetRecord(records.list, 0).text;
    for (int i = 0; i < 1000; ++i)
        SpliceRecord(records.list, 0, 5, 0, u"y", 1);
    EXPECT_EQ(GetRecord(records.list, 0).text, buffer);
    EXPECT_EQ(GetRecord(records.list, 0).length, 101001);
}

TEST_F(Records, AnEditTouchesOneChunk)
{
    const std::u16string text(2 * 2000, u'a');
    OwnedRecords records;
    SetBulkRecords(records.list, text.data(), 2000, 2);
    SpliceRecord(records.list, 700, 0, 0, u"b", 1);
    EXPECT_EQ(records.list.chunkCount, 4);
    EXPECT_EQ(records.list.chunks[0].records, nullptr);
    EXPECT_NE(records.list.chunks[1].records, nullptr);
    EXPECT_EQ(records.list.chunks[2].records, nullptr);
}

TEST_F(Records, FailedEditsChangeNothing)
{
    std::u16string text;
    for (int i = 0; i < 1200; ++i)
        text += u"ab";
    Lines before(1200, u"ab");
    Lines after = before;
    after[600] = u"aXb";
    after.erase(after.begin() + 100, after.begin() + 200);
    after.insert(after.begin() + 50, {u"p", u"q"});
    int complete = 0;
    SweepAllocationFaults([&] {
        OwnedRecords records;
        OwnedRecords more;
        SetBulkRecords(records.list, text.data(), 1200, 2);
        if (!StringToRecords(context, u"p\nq", 3, more.list, false)) throw context.TakeError();
        Lines expected = before;
        try {
            SpliceRecord(records.list, 600, 1, 0, u"X", 1);
            expected[600] = u"aXb";
            EraseRecords(records.list, 100, 100);
            expected.erase(expected.begin() + 100, expected.begin() + 200);
            InsertRecords(records.list, 50, more.list);
            expected = after;
            ++complete;
        } catch (VTERROR_CODE) {
            EXPECT_EQ(LinesOf(more.list), (Lines{u"p", u"q"}));
        }
        EXPECT_EQ(LinesOf(records.list), expected);
    });
    EXPECT_EQ(complete, 2);
}

TEST_F(Records, EraseInsideAcrossAndToTheEnd)
{
    OwnedRecords records;
    Split(records, u"a\nb\nc\nd\ne");
    EraseRecords(records.list, 1, 2);
    EXPECT_EQ(LinesOf(records.list), (Lines{u"a", u"d", u"e"}));
    EraseRecords(records.list, 1, 100);
    EXPECT_EQ(LinesOf(records.list), (Lines{u"a"}));
    EraseRecords(records.list, 0, 0);
    EraseRecords(records.list, 5, 1);
    EXPECT_EQ(records.list.count, 1);
    EraseRecords(records.list, 0, 1);
    EXPECT_EQ(records.list.count, 0);
    OwnedRecords more;
    Split(more, u"x\ny");
    InsertRecords(records.list, 0, more.list);
    EXPECT_EQ(LinesOf(records.list), (Lines{u"x", u"y"}));
}

TEST_F(Records, InsertMovesTextsWithoutCopyingThem)
{
    OwnedRecords records;
    Split(records, u"a\nb");
    OwnedRecords more;
    Split(more, u"x\ny");
    const char16_t* text = GetRecord(more.list, 1).text;
    InsertRecords(records.list, 1, more.list);
    EXPECT_EQ(more.list.count, 0);
    EXPECT_EQ(LinesOf(records.list), (Lines{u"a", u"x", u"y", u"b"}));
    EXPECT_EQ(GetRecord(records.list, 2).text, text);
}

TEST_F(Records, InsertKeepsTheTextsOfManyLists)
{
    const std::int64_t before = LiveAllocations();
    {
        OwnedRecords records;
        Lines expected;
        for (int i = 0; i < 20; ++i) {
            OwnedRecords pair;
            Split(pair, u"one\ntwo");
            OwnedRecords inner;
            Split(inner, u"1\n2");
            InsertRecords(pair.list, 1, inner.list);
            InsertRecords(records.list, records.list.count, pair.list);
            for (const char16_t* line : {u"one", u"1", u"2", u"two"})
                expected.emplace_back(line);
        }
        EXPECT_EQ(LinesOf(records.list), expected);
    }
    EXPECT_EQ(LiveAllocations(), before);
}

TEST_F(Records, InsertOfNothingFreesTheSource)
{
    OwnedRecords records;
    Split(records, u"a");
    OwnedRecords nothing;
    Split(nothing, u"x\ny");
    EraseRecords(nothing.list, 0, 2);
    InsertRecords(records.list, 0, nothing.list);
    EXPECT_EQ(nothing.list.ownedText, nullptr);
    EXPECT_EQ(LinesOf(records.list), (Lines{u"a"}));
}

TEST_F(Records, LineAfterLineMakesNoChunkALine)
{
    OwnedRecords records;
    Split(records, u"");
    for (int i = 0; i < 5000; ++i) {
        OwnedRecords line;
        Split(line, u"x");
        InsertRecords(records.list, records.list.count / 2, line.list);
    }
    EXPECT_EQ(records.list.count, 5001);
    EXPECT_LT(records.list.chunkCount, 100);
}

// A list of records beside the vector of strings that it stands for; whatever is done to the one is done to the other.
class RecordsBesideStrings {
public:
    RecordsBesideStrings(TestContext& context, unsigned seed) : context_(context), random_(seed)
    {
        const std::int64_t rows = Pick(3000);
        for (std::int64_t i = 0; i < rows * 3; ++i)
            bulk_ += static_cast<char16_t>(u'a' + Pick(26));
        SetBulkRecords(records_.list, bulk_.data(), rows, 3);
        for (std::int64_t i = 0; i < rows; ++i)
            lines_.push_back(bulk_.substr(static_cast<std::size_t>(3 * i), 3));
        widths_.Reset(nullptr, nullptr, seed % 2 == 0 ? 7 : 3);
    }

    void Step()
    {
        switch (Pick(6)) {
        case 0: Splice(); break;
        case 1: Erase(); break;
        case 2:
        case 3: Insert(); break;
        case 4: CompareWidths(); break;
        default: CompareLine();
        }
        ASSERT_EQ(records_.list.count, Size());
    }

    void CompareAll() const
    {
        ASSERT_EQ(LinesOf(records_.list), lines_);
        for (std::int32_t i = 0; i < records_.list.chunkCount; ++i) {
            EXPECT_GT(records_.list.chunks[i].count, 0);
            EXPECT_LE(records_.list.chunks[i].count, RecordsPerChunk);
        }
    }

private:
    std::int64_t Pick(std::int64_t limit)
    {
        return limit <= 0 ? 0 : static_cast<std::int64_t>(random_() % static_cast<unsigned>(limit));
    }
    [[nodiscard]] std::int64_t Size() const { return static_cast<std::int64_t>(lines_.size()); }

    void Splice()
    {
        if (lines_.empty()) return;
        const std::int64_t row = Pick(Size());
        std::u16string& line = lines_[static_cast<std::size_t>(row)];
        const std::int64_t column = Pick(static_cast<std::int64_t>(line.size()) + 1);
        const std::int64_t removed = Pick(static_cast<std::int64_t>(line.size()) - column + 1);
        const std::u16string text = RandomText(random_, 10);
        SpliceRecord(records_.list, row, column, removed, text.data(),
                     static_cast<std::int64_t>(text.size()));
        line.replace(static_cast<std::size_t>(column), static_cast<std::size_t>(removed), text);
    }

    void Erase()
    {
        const std::int64_t first = Pick(Size());
        const std::int64_t count = Pick(Pick(3) == 0 ? 900 : 5);
        const std::int64_t end = std::min(first + count, Size());
        EraseRecords(records_.list, first, count);
        if (first < end) lines_.erase(lines_.begin() + first, lines_.begin() + end);
    }

    void Insert()
    {
        OwnedRecords more;
        const Lines lines = Pick(2) == 0 ? MakeTextRecords(more) : MakeBulkRecords(more);
        const std::int64_t at = Pick(Size() + 1);
        InsertRecords(records_.list, at, more.list);
        lines_.insert(lines_.begin() + at, lines.begin(), lines.end());
    }

    Lines MakeTextRecords(OwnedRecords& records)
    {
        Lines lines;
        std::u16string text;
        const std::int64_t count = Pick(Pick(3) == 0 ? 1500 : 4) + 1;
        for (std::int64_t i = 0; i < count; ++i) {
            lines.push_back(RandomText(random_, 5));
            text += (i > 0 ? u"\n" : u"") + lines.back();
        }
        EXPECT_TRUE(StringToRecords(context_, text.data(), static_cast<std::int64_t>(text.size()),
                                    records.list, false));
        return lines;
    }

    Lines MakeBulkRecords(OwnedRecords& records)
    {
        const std::int64_t count = Pick(1200);
        OwnedArray<char16_t> text = AllocateArray<char16_t>(2 * count);
        for (std::int64_t i = 0; i < count; ++i) {
            text.get()[2 * i] = u'a';
            text.get()[2 * i + 1] = u'b';
        }
        SetBulkRecordsOwning(records.list, std::move(text), count, 2);
        return Lines(static_cast<std::size_t>(count), u"ab");
    }

    void CompareWidths()
    {
        std::size_t longest = 0;
        for (const auto& line : lines_)
            longest = std::max(longest, line.size());
        EXPECT_EQ(LongestRecord(records_.list), static_cast<std::int64_t>(longest));
        EXPECT_EQ(GetRecordWidths(records_.list, widths_, nullptr),
                  static_cast<std::int64_t>(longest) * widths_.FixedPitchWidth());
        EXPECT_EQ(CountUnmeasuredRecords(records_.list), 0);
    }

    void CompareLine()
    {
        if (lines_.empty()) return;
        const std::int64_t row = Pick(Size());
        EXPECT_EQ(LineOf(records_.list, row), lines_[static_cast<std::size_t>(row)]);
    }

    TestContext& context_;
    std::mt19937 random_;
    std::u16string bulk_; // whose text the first rows are
    OwnedRecords records_;
    Lines lines_;
    CharWidths widths_;
};

TEST_F(Records, ListsBehaveLikeVectorsOfStrings)
{
    for (unsigned seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RecordsBesideStrings tested(context, seed);
        for (int step = 0; step < 400 && !HasFatalFailure(); ++step)
            tested.Step();
        tested.CompareAll();
    }
}

} // namespace
} // namespace vantrel
