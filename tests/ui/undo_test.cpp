// Array undo in the real window: what belongs together, what ends it, and what it remembers.
#include <gtest/gtest.h>

#include "ui/view_support.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr int Save = 4102;
constexpr int CopyArray = 4202;
constexpr int PasteArray = 4203;
constexpr int UndoArray = 4204;
constexpr int RedoArray = 4205;
constexpr int EmptyBuffer = 4208;
constexpr int EnableUndo = 4316;
constexpr int Reverse = 4614;

class UndoArrayTest : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Array Saved(const Array& argument, const Script& script)
    {
        const Outcome outcome = RunEdit(interpreter, argument, [&](User& user) {
            script(user);
            user.Command(Save);
        });
        EXPECT_TRUE(outcome.edit.hasResult);
        return outcome.edit.result;
    }
    static void ExpectSame(const Array& actual, const Array& expected)
    {
        EXPECT_TRUE(SameValues(actual, expected)) << Dump(actual) << " instead of " << Dump(expected);
    }

    Interpreter interpreter;
};

Array Mixed()
{
    return NestedArray({3}, {TextOf({}, u"a"), Number(1), TextOf({}, u"c")});
}

void PasteLetterOverNumber(User& user)
{
    SelectIndex(user, u"1");
    user.Command(CopyArray);
    SelectIndex(user, u"2");
    user.Command(PasteArray);
}

TEST_F(UndoArrayTest, AnActionOfTwoStepsIsUndoneAndRedoneAsOne)
{
    ExpectSame(Saved(Mixed(), PasteLetterOverNumber), Text(u"aac"));
    ExpectSame(Saved(Mixed(),
                     [](User& user) {
                         PasteLetterOverNumber(user);
                         user.Command(UndoArray);
                     }),
               Mixed());
    ExpectSame(Saved(Mixed(),
                     [](User& user) {
                         PasteLetterOverNumber(user);
                         user.Command(UndoArray);
                         user.Command(RedoArray);
                         user.Command(UndoArray);
                         user.Command(RedoArray);
                     }),
               Text(u"aac"));
}

TEST_F(UndoArrayTest, SwitchedOffItForgetsEverything)
{
    ExpectSame(Saved(Text(u"abc"),
                     [](User& user) {
                         user.Command(Reverse);
                         SendMessageW(user.Client(), SetOption, MAKEWPARAM(EnableUndo, 0), 0);
                         user.Command(UndoArray);
                         SendMessageW(user.Client(), SetOption, MAKEWPARAM(EnableUndo, 1), 0);
                         user.Command(UndoArray);
                     }),
               Text(u"cba"));
}

TEST_F(UndoArrayTest, TheBufferIsEmptiedOnRequest)
{
    ExpectSame(Saved(Text(u"abc"),
                     [](User& user) {
                         user.Command(Reverse);
                         user.Command(EmptyBuffer);
                         user.Command(UndoArray);
                     }),
               Text(u"cba"));
}

TEST_F(UndoArrayTest, ANewActionEndsWhatCouldBeRedone)
{
    ExpectSame(Saved(Text(u"abc"),
                     [](User& user) {
                         user.Command(Reverse);
                         user.Command(UndoArray);
                         user.Command(4612);
                         user.Command(RedoArray);
                     }),
               NestedArray({}, {Text(u"abc")}));
}

TEST_F(UndoArrayTest, CheckingTypedTextIsNoStep)
{
    ExpectSame(Saved(NestedArray({2}, {Text(u"ab"), Text(u"cd")}),
                     [](User& user) {
                         user.Key(VK_TAB);
                         user.Type(u"x");
                         user.Key(VK_F5);
                         user.Command(UndoArray);
                     }),
               NestedArray({2}, {Text(u"xab"), Text(u"cd")}));
}

TEST_F(UndoArrayTest, APlaceInsideAMaximisedBoxIsFoundAgain)
{
    const Array argument = NestedArray({2}, {Text(u"ab"), NestedArray({2}, {Text(u"cd"), Text(u"ef")})});
    ExpectSame(Saved(argument,
                     [](User& user) {
                         SelectIndex(user, u"2");
                         user.Command(4606);
                         user.Key(VK_TAB);
                         user.Command(Reverse);
                         SelectIndex(user, u"");
                         user.Command(4604);
                         user.Command(UndoArray);
                     }),
               argument);
}

TEST_F(UndoArrayTest, RevertingEndsIt)
{
    ExpectSame(Saved(Text(u"abc"),
                     [](User& user) {
                         user.Command(Reverse);
                         user.Command(4101);
                         user.Command(UndoArray);
                     }),
               Text(u"abc"));
}

} // namespace
} // namespace vantrel::ui
