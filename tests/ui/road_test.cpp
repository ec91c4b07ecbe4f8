// The whole road: an array enters through the interpreter's entry point, is edited in the window and comes back.
#include <gtest/gtest.h>

#include "ui/driver.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr int Save = 4102;
constexpr int SaveAndClose = 4104;
constexpr int Exit = 4105;
constexpr int Revert = 4101;

// A nested vector with an item of every element type that the editor takes; item 0 is the text that tests type into.
Array EveryType()
{
    return NestedArray(
        {16}, {Text(u"abc"), BooleanArray({9}, {1, 0, 1, 1, 0, 0, 1, 0, 1}),
               IntegerArray(ElementType::Int8, {3}, {-1, 0, 127}),
               IntegerArray(ElementType::Int16, {2}, {-300, 300}),
               IntegerArray(ElementType::Int32, {2, 2}, {1, -2, 70000, 4}), FloatArray({2}, {1.5, -2e10}),
               ComplexArray({2}, {{1, 2}, {3, -4.5}}), DecimalArray({2}, {"12.50", "-1"}),
               CharacterArray(ElementType::Char8, {2, 3}, U"abcdef"),
               CharacterArray(ElementType::Char16, {2}, U"⍴⍳"),
               CharacterArray(ElementType::Char32, {2}, U"⍴x"), Number(7), TextOf({}, u"z"), EmptyVector(),
               EmptyNestedArray({0}, NestedArray({2}, {Number(0), Text(u"  ")})),
               NestedArray({2, 1}, {Text(u"deep"), NestedArray({1}, {Text(u"er")})})});
}

// What the editor writes for a kept item: integers as 32 bits, Booleans where all are 0 or 1, characters by their widest.
Array WithFirstItem(Array array, Array first)
{
    array.items[0] = std::move(first);
    return array;
}

class Road : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
};

TEST_F(Road, ATypedCellComesBackAndEveryOtherItemAsItWas)
{
    const Outcome outcome = RunEdit(interpreter, EveryType(), [](User& user) {
        user.Key(VK_TAB); // from the whole array to its first item
        user.ExpectEqual(user.PickIndex(), u"1", "Tab selects the first item");
        user.Expect(user.Editor() != nullptr, "the cell editor stands over it");
        user.Type(u"X");
        user.Key(VK_END);
        user.Type(u"⍴");
        user.Command(SaveAndClose);
        user.Expect(!user.IsOpen(), "the window has closed");
    });
    ASSERT_TRUE(outcome.edit.hasResult) << "error " << outcome.edit.error.number;
    EXPECT_FALSE(outcome.edit.unchanged);
    const Array expected = WithFirstItem(EveryType(), Text(u"Xabc⍴"));
    EXPECT_TRUE(SameValues(outcome.edit.result, expected)) << Dump(outcome.edit.result) << "\n"
                                                           << Dump(expected);
    EXPECT_FALSE(outcome.edit.error.signalled);
}

TEST_F(Road, ClosingUnchangedGivesTheArgumentBack)
{
    const Outcome outcome = RunEdit(interpreter, EveryType(), [](User& user) { user.Command(Exit); });
    EXPECT_TRUE(outcome.windowCame);
    EXPECT_TRUE(outcome.edit.unchanged);
    EXPECT_FALSE(outcome.edit.error.signalled);
}

TEST_F(Road, SavingUnchangedKeepsEveryValue)
{
    const Outcome outcome = RunEdit(interpreter, EveryType(), [](User& user) { user.Command(SaveAndClose); });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_TRUE(SameValues(outcome.edit.result, EveryType())) << Dump(outcome.edit.result);
}

TEST_F(Road, SaveKeepsTheWindowOpenAndSaysSo)
{
    const Outcome outcome = RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.Type(u"1");
        user.Key('S', {VK_CONTROL});
        user.Expect(user.IsOpen(), "Save keeps the window");
        user.ExpectEqual(user.StatusText(), u"Data saved", "the status bar says that the data were saved");
        user.Type(u"2"); // goes on where the caret was
        user.Command(Save);
        user.Command(Exit);
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_EQ(TextOfArray(outcome.edit.result), u"12abc");
}

TEST_F(Road, NumbersAreEditedAsTextAndComeBackAsNumbers)
{
    const Outcome outcome =
        RunEdit(interpreter, IntegerArray(ElementType::Int32, {3}, {10, 20, 30}), [](User& user) {
            user.Key(VK_END);
            user.Type(u" ¯4.5");
            user.Command(SaveAndClose);
        });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_TRUE(SameValues(outcome.edit.result, FloatArray({4}, {10, 20, 30, -4.5})))
        << Dump(outcome.edit.result);
}

TEST_F(Road, ARowTypedIntoANumericMatrixMakesARow)
{
    const Outcome outcome =
        RunEdit(interpreter, IntegerArray(ElementType::Int32, {2, 2}, {1, 2, 3, 4}), [](User& user) {
            user.Key(VK_END, {VK_CONTROL});
            user.Key(VK_RETURN);
            user.Type(u"5 6");
            user.Command(SaveAndClose);
        });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_TRUE(SameValues(outcome.edit.result, IntegerArray(ElementType::Int32, {3, 2}, {1, 2, 3, 4, 5, 6})))
        << Dump(outcome.edit.result);
}

TEST_F(Road, BackspaceDeleteAndEnterEditAsExpected)
{
    const Outcome outcome = RunEdit(interpreter, Text(u"abcdef"), [](User& user) {
        user.Key(VK_DELETE); // bcdef
        user.Key(VK_END);
        user.Key(VK_BACK); // bcde
        user.Key(VK_LEFT);
        user.Key(VK_LEFT);
        user.Key(VK_RETURN); // bc / de
        user.Key(VK_HOME);
        user.Type(u"-"); // bc / -de
        user.Key(VK_UP);
        user.Key(VK_HOME);
        user.Type(u"+");
        user.Command(SaveAndClose);
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_EQ(TextOfArray(outcome.edit.result), u"+bc\r\n-de");
}

TEST_F(Road, TypingReplacesTheSelection)
{
    const Outcome outcome = RunEdit(interpreter, Text(u"abcdef"), [](User& user) {
        user.Key(VK_RIGHT);
        user.Key(VK_RIGHT, {VK_SHIFT});
        user.Key(VK_RIGHT, {VK_SHIFT});
        user.Type(u"X");
        user.Command(SaveAndClose);
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_EQ(TextOfArray(outcome.edit.result), u"aXdef");
}

TEST_F(Road, AScalarCharacterIsReplacedByTheNextOne)
{
    const Outcome outcome = RunEdit(interpreter, TextOf({}, u"a"), [](User& user) {
        user.Type(u"b");
        user.Command(SaveAndClose);
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_TRUE(outcome.edit.result.shape.empty());
    EXPECT_EQ(TextOfArray(outcome.edit.result), u"b");
}

TEST_F(Road, TextThatIsNoNumberIsKeptAsCharacters)
{
    const Outcome outcome =
        RunEdit(interpreter, IntegerArray(ElementType::Int32, {2}, {1, 2}), [](User& user) {
            user.Key(VK_END);
            user.Type(u"..");
            user.Command(SaveAndClose);
        });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_EQ(TextOfArray(outcome.edit.result), u"1 2..");
    EXPECT_FALSE(outcome.edit.error.signalled);
}

TEST_F(Road, ARowThatIsNoNumberKeepsTheMatrixAndTheWindow)
{
    const Outcome outcome =
        RunEdit(interpreter, IntegerArray(ElementType::Int32, {2, 2}, {1, 2, 3, 4}), [](User& user) {
            user.Type(u"..");
            user.Command(SaveAndClose);
            user.Expect(user.IsOpen(), "a failing save keeps the window open");
            user.Key(VK_BACK);
            user.Key(VK_BACK);
            user.Command(SaveAndClose);
            user.Expect(!user.IsOpen(), "the mended text is saved");
        });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_TRUE(SameValues(outcome.edit.result, IntegerArray(ElementType::Int32, {2, 2}, {1, 2, 3, 4})))
        << Dump(outcome.edit.result);
}

TEST_F(Road, RevertBringsTheArrayBackAsHandedOver)
{
    const Outcome outcome = RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.Type(u"XYZ");
        user.Command(Revert);
        user.Command(SaveAndClose);
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_EQ(TextOfArray(outcome.edit.result), u"abc");
}

TEST_F(Road, EscapeSavesAndClosesAndShiftEscapeOnlyCloses)
{
    const Outcome saved = RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.Type(u"1");
        user.Key(VK_ESCAPE);
        user.Expect(!user.IsOpen(), "Esc closes");
    });
    ASSERT_TRUE(saved.edit.hasResult);
    EXPECT_EQ(TextOfArray(saved.edit.result), u"1abc");

    const Outcome left = RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.Type(u"1");
        user.Key(VK_ESCAPE, {VK_SHIFT});
        user.Expect(!user.IsOpen(), "Shift+Esc closes without a question");
    });
    EXPECT_TRUE(left.edit.unchanged);
}

TEST_F(Road, TheClassicEditionTravelsThroughTheAtomicVector)
{
    InterpreterOptions options;
    options.unicode = false;
    Interpreter classic(options);
    Array argument = Text(u"abc⍴");
    char32_t missing = 0;
    ASSERT_TRUE(ToAtomicCharacters(argument, &missing));
    const Outcome outcome = RunEdit(classic, argument, [](User& user) {
        user.Type(u"⍳");
        user.Command(SaveAndClose);
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    Array result = outcome.edit.result;
    FromAtomicCharacters(result);
    EXPECT_EQ(TextOfArray(result), u"⍳abc⍴");
}

TEST_F(Road, ManyEditsInOneProcessLeaveNothingBehind)
{
    for (int round = 0; round < 20; ++round) {
        const Outcome outcome = RunEdit(interpreter, Text(u"abc"), [](User& user) { user.Command(Exit); });
        ASSERT_TRUE(outcome.edit.unchanged) << round;
    }
}

} // namespace
} // namespace vantrel::ui
