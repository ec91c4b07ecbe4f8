// APLX's road: records go in through the processor's one entry, are edited in the window and come back.
#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>
#include <optional>

#include "hosts/fake_aplx.h"
#include "ui/driver.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr int Save = 4102;
constexpr int SaveAndClose = 4104;
constexpr int Exit = 4105;
constexpr int OpenObject = 4109;
constexpr int CopyArray = 4202;
constexpr std::size_t BufferBytes = 65536;

Array EveryType()
{
    return NestedArray({8}, {Text(u"abc"), BooleanArray({70}, std::vector<int>(70, 1)),
                             IntegerArray(ElementType::Int32, {2, 2}, {1, -2, 70000, 4}),
                             FloatArray({2}, {1.5, -2e10}), TextOf({2, 3}, u"abcdef"), Text(u"⍴⍳é"),
                             EmptyNestedArray({0}, NestedArray({2}, {Number(0), Text(u"  ")})),
                             NestedArray({2, 1}, {Text(u"deep"), NestedArray({1}, {Text(u"er")})})});
}

ProcessorEntry Processor()
{
    return reinterpret_cast<ProcessorEntry>(LibraryEntry("processor"));
}

class AplxRoad : public testing::Test {
protected:
    void SetUp() override
    {
        ForgetOptions();
        ASSERT_NE(Processor(), nullptr);
    }
    void TearDown() override
    {
        for (const std::string& complaint : interpreter.Complaints())
            ADD_FAILURE() << complaint;
    }
    AplxEditResult Edit(const Array& argument, const Script& script, std::size_t bufferBytes = BufferBytes)
    {
        AplxEditResult result;
        windowCame = RunWithUser([&] { result = interpreter.Edit(argument, bufferBytes); }, script);
        return result;
    }
    AplxAnswer Reference(std::int64_t identifier, const Script& script)
    {
        AplxAnswer answer;
        windowCame = RunWithUser([&] { answer = interpreter.Reference(identifier, BufferBytes); }, script);
        return answer;
    }
    Array ValueOf(const AplxRecord& record)
    {
        std::vector<std::string> complaints;
        Array array = ArrayOfAplxRecord(record, complaints);
        for (const std::string& complaint : complaints)
            ADD_FAILURE() << complaint;
        return array;
    }

    Aplx interpreter{Processor()};
    bool windowCame = false;
};

TEST_F(AplxRoad, ATypedCellComesBackAndEveryOtherItemAsItWas)
{
    const AplxEditResult result = Edit(EveryType(), [](User& user) {
        user.ExpectEqual(user.Title(), L"Vantrel for APLX", "the window names the interpreter");
        user.Key(VK_TAB);
        user.ExpectEqual(user.PickIndex(), u"1", "Tab selects the first item, counted from 1");
        user.Type(u"X");
        user.Key(VK_END);
        user.Type(u"⍴");
        user.Command(SaveAndClose);
        user.Expect(!user.IsOpen(), "the window has closed");
    });
    EXPECT_EQ(result.status, AplxStatus::Success);
    ASSERT_TRUE(result.hasResult);
    Array expected = EveryType();
    expected.items[0] = Text(u"Xabc⍴");
    EXPECT_TRUE(SameValues(result.result, expected)) << Dump(result.result);
}

TEST_F(AplxRoad, NumbersAreReadAndShownWithTheHighMinus)
{
    const AplxEditResult result = Edit(IntegerArray(ElementType::Int32, {3}, {1, 2, 3}), [](User& user) {
        user.Type(u"¯5 ");
        user.Command(SaveAndClose);
    });
    ASSERT_TRUE(result.hasResult);
    EXPECT_TRUE(SameValues(result.result, NumericArray({4}, {-5, 1, 2, 3}))) << Dump(result.result);
}

TEST_F(AplxRoad, ClosingUnchangedGivesTheAssignedRecordBack)
{
    const AplxEditResult result = Edit(EveryType(), [](User& user) { user.Command(Exit); });
    EXPECT_TRUE(windowCame);
    EXPECT_TRUE(result.unchanged);
}

TEST_F(AplxRoad, AResultTooLongForTheBufferLeavesItAlone)
{
    const std::size_t length = MakeAplxRecord(Text(u"abc")).size();
    const Script longer = [](User& user) {
        user.Type(u"X");
        user.Command(SaveAndClose);
    };
    EXPECT_EQ(Edit(Text(u"abc"), longer, length).status, AplxStatus::TooLong);
    const AplxEditResult fits = Edit(Text(u"abc"), longer, length + 1);
    EXPECT_EQ(fits.status, AplxStatus::Success);
    EXPECT_EQ(TextOfArray(fits.result), u"Xabc");
}

TEST_F(AplxRoad, OpeningAnObjectByNameIsRefused)
{
    Edit(Text(u"abc"), [](User& user) {
        user.Command(OpenObject);
        user.ExpectEqual(user.StatusText(), u"Nonce Error", "the interpreter has no names to offer");
        user.Command(Exit);
    });
}

TEST_F(AplxRoad, InstancesShareTheEditorAndKeepTheirArrays)
{
    ASSERT_EQ(interpreter.Open(1), 0);
    ASSERT_EQ(interpreter.Open(2), 0);
    ASSERT_EQ(interpreter.Assign(1, Text(u"one")), 0);
    ASSERT_EQ(interpreter.Assign(2, Text(u"two")), 0);
    const Script typeAndSave = [](User& user) {
        user.Type(u"X");
        user.Command(SaveAndClose);
    };
    EXPECT_EQ(TextOfArray(ValueOf(Reference(2, typeAndSave).record)), u"Xtwo");
    EXPECT_EQ(interpreter.Close(2), 0);
    EXPECT_EQ(TextOfArray(ValueOf(Reference(1, typeAndSave).record)), u"Xone");
    EXPECT_TRUE(windowCame);
    EXPECT_EQ(interpreter.Close(1), 0);
}

TEST_F(AplxRoad, WithoutAnAssignedArrayNoWindowComesUp)
{
    ASSERT_EQ(interpreter.Open(1), 0);
    const AplxAnswer answer = Reference(1, [](User&) {});
    EXPECT_FALSE(windowCame);
    EXPECT_EQ(answer.status, 0);
    ASSERT_EQ(answer.record.size(), 24u);
    EXPECT_EQ(answer.record[12], AplxType::Integer);
    EXPECT_TRUE(SameValues(ValueOf(answer.record), Number(0)));
    EXPECT_EQ(interpreter.Close(1), 0);
}

TEST_F(AplxRoad, ARefusedRecordClosesTheWindowAndGivesNothingBack)
{
    ASSERT_EQ(interpreter.Open(1), 0);
    const AplxRecord refused = RawAplxRecord(AplxType::Refused, {}, std::vector<std::uint8_t>(8));
    for (const AplxRecord& record : {refused, RawAplxRecord(AplxType::Nested, {0}, refused)}) {
        ASSERT_EQ(interpreter.Assign(1, record), 0);
        const AplxAnswer answer = Reference(1, [](User&) {});
        EXPECT_EQ(answer.status, 0);
        EXPECT_TRUE(answer.record.empty());
    }
    EXPECT_EQ(interpreter.Close(1), 0);
}

TEST_F(AplxRoad, CopyPutsThreeFormatsOnTheClipboard)
{
    const UINT image = RegisterClipboardFormatW(L"Vantrel Clipboard Data");
    const UINT array = RegisterClipboardFormatW(L"APLX Array");
    const AplxEditResult result = Edit(Text(u"copied"), [&](User& user) {
        user.Command(CopyArray);
        user.Expect(IsClipboardFormatAvailable(image) != 0, "the editor's own image is there");
        user.Expect(IsClipboardFormatAvailable(CF_UNICODETEXT) != 0, "text is there");
        user.Expect(IsClipboardFormatAvailable(array) != 0, "an APLX record is there");
        user.Command(Exit);
    });
    EXPECT_TRUE(result.unchanged);
    ASSERT_TRUE(OpenClipboard(nullptr));
    HANDLE const block = GetClipboardData(array);
    ASSERT_NE(block, nullptr);
    const auto* bytes = static_cast<const std::uint8_t*>(GlobalLock(block));
    std::int64_t length = 0;
    std::memcpy(&length, bytes + 4, sizeof length);
    const AplxRecord record(bytes, bytes + length);
    GlobalUnlock(block);
    EmptyClipboard();
    CloseClipboard();
    EXPECT_EQ(TextOfArray(ValueOf(record)), u"copied");
}

TEST_F(AplxRoad, TwoInterpretersShareTheEditorsWindowClasses)
{
    ASSERT_EQ(interpreter.Open(1), 0);
    ASSERT_EQ(interpreter.Assign(1, Text(u"x")), 0);
    Interpreter dyalog;
    const Outcome outcome = RunEdit(dyalog, Text(u"y"), [](User& user) { user.Command(Exit); });
    EXPECT_TRUE(outcome.windowCame);
    const AplxAnswer answer = Reference(1, [](User& user) { user.Command(Exit); });
    EXPECT_TRUE(windowCame);
    EXPECT_EQ(TextOfArray(ValueOf(answer.record)), u"x");
    EXPECT_EQ(interpreter.Close(1), 0);
}

TEST_F(AplxRoad, ARecordShorterThanItSaysIsRefusedWithoutAFault)
{
    SYSTEM_INFO system{};
    GetSystemInfo(&system);
    auto* pages =
        static_cast<std::uint8_t*>(VirtualAlloc(nullptr, 2 * system.dwPageSize, MEM_RESERVE, PAGE_NOACCESS));
    ASSERT_NE(pages, nullptr);
    ASSERT_NE(VirtualAlloc(pages, system.dwPageSize, MEM_COMMIT, PAGE_READWRITE), nullptr);
    const AplxRecord record = MakeAplxRecord(Text(u"abc"));
    std::memcpy(pages, record.data(), record.size());
    const auto lie = static_cast<std::int64_t>(system.dwPageSize) + 1;
    std::memcpy(pages + 4, &lie, sizeof lie);
    ASSERT_EQ(interpreter.Open(1), 0);
    EXPECT_EQ(interpreter.Call(3, reinterpret_cast<std::int64_t>(pages), 0, 1), AplxStatus::NoRoom);
    EXPECT_EQ(interpreter.Assign(1, record), 0);
    const AplxAnswer answer = Reference(1, [](User& user) { user.Command(Exit); });
    EXPECT_EQ(answer.record, record);
    EXPECT_EQ(interpreter.Close(1), 0);
    VirtualFree(pages, 0, MEM_RELEASE);
}

TEST_F(AplxRoad, SavingTwiceKeepsTheSecondAndWhatCannotBeSavedIsRefused)
{
    const AplxEditResult result = Edit(Text(u"a"), [](User& user) {
        user.Type(u"1");
        user.Command(Save);
        user.ExpectEqual(user.StatusText(), u"Data saved", "the save is confirmed");
        user.Type(u"2");
        user.Command(Save);
        user.Type(u"Ж");
        user.Command(Save);
        user.ExpectEqual(user.StatusText(), u"Domain Error", "a character that APLX lacks is refused");
    });
    ASSERT_TRUE(result.hasResult);
    EXPECT_EQ(TextOfArray(result.result), u"12a");
}

} // namespace
} // namespace vantrel::ui
