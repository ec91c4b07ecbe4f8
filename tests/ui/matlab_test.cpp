// MATLAB's road: arrays go in through mexFunction, which finds MATLAB's functions in libmx.dll and libmex.dll, are edited in the window and come
// back.
#include <gtest/gtest.h>

#include <windows.h>

#include <limits>

#include "hosts/fake_matlab.h"
#include "hosts/win/matlab_libraries.h"
#include "ui/driver.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr int Save = 4102;
constexpr int SaveAndClose = 4104;
constexpr int Exit = 4105;
constexpr int Debug = 4504;

MexFunction Mex()
{
    return reinterpret_cast<MexFunction>(LibraryEntry("mexFunction"));
}

MatlabValue EmptyMatrix()
{
    return DoubleValue({0, 0}, {});
}

MatlabValue EveryClass()
{
    return CellValue(
        {1, 8},
        {TextValue(u"abc"), LogicalValue({2, 3}, {1, 0, 0, 1, 1, 0}), DoubleValue({2, 2}, {1.5, -2, 3, 4}),
         NumberValue<std::uint8_t>(MatlabClass::Uint8, {1, 3}, {0, 7, 255}),
         ComplexValue({1, 2}, {1, 3}, {2, -4.5}), CharValue({2, 3}, u"adbecf"), CellValue({0, 0}, {}),
         StructValue({1, 1}, {"name", "size"}, {TextValue(u"x"), DoubleValue({1, 2}, {2, 3})})});
}

// The numbers as the editor saves them.
MatlabValue EveryClassSaved(const char16_t* firstText)
{
    MatlabValue saved = EveryClass();
    saved.items[0] = TextValue(firstText);
    saved.items[3] = NumberValue<std::int32_t>(MatlabClass::Int32, {1, 3}, {0, 7, 255});
    saved.items[7].items[1] = NumberValue<std::int32_t>(MatlabClass::Int32, {1, 2}, {2, 3});
    return saved;
}

class MatlabRoad : public testing::Test {
protected:
    void SetUp() override
    {
        ForgetOptions();
        std::string reason;
        ASSERT_TRUE(LoadMatlabLibraries(reason)) << reason;
        ASSERT_NE(Mex(), nullptr);
    }
    MexResult Edit(int outputs, const std::vector<MatlabValue>& arguments, const Script& script)
    {
        MexResult result;
        windowCame = RunWithUser([&] { result = matlab.Call(Mex(), outputs, arguments); }, script);
        for (const std::string& complaint : result.complaints)
            ADD_FAILURE() << complaint;
        return result;
    }
    MexResult EditAndLookAtNothing(int outputs, const std::vector<MatlabValue>& arguments)
    {
        return Edit(outputs, arguments, [](User& user) { user.Expect(false, "no window comes up"); });
    }

    Matlab matlab;
    bool windowCame = false;
};

TEST_F(MatlabRoad, ATypedCellComesBackAndEveryOtherItemNarrowed)
{
    const MexResult result = Edit(1, {EveryClass()}, [](User& user) {
        user.ExpectEqual(user.Title(), L"Vantrel for MATLAB®", "the window names the interpreter");
        user.Key(VK_TAB);
        user.ExpectEqual(user.PickIndex(), u"(1 1)", "Tab selects the first cell, counted from 1");
        user.Type(u"X");
        user.Key(VK_END);
        user.Type(u"⍴");
        user.Command(SaveAndClose);
        user.Expect(!user.IsOpen(), "the window has closed");
    });
    EXPECT_FALSE(result.raised) << result.error.text;
    ASSERT_TRUE(result.hasResult);
    EXPECT_FALSE(result.unchanged);
    EXPECT_TRUE(Identical(result.result, EveryClassSaved(u"Xabc⍴"))) << Dump(result.result);
}

TEST_F(MatlabRoad, ClosingUnchangedGivesACopyOfTheArgument)
{
    const MatlabValue matrix = DoubleValue({2, 3}, {1, 4, 2, 5, 3, 6});
    const MexResult result = Edit(1, {matrix}, [](User& user) { user.Command(Exit); });
    EXPECT_TRUE(windowCame);
    ASSERT_TRUE(result.hasResult);
    EXPECT_TRUE(result.unchanged);
    EXPECT_TRUE(Identical(result.result, matrix)) << Dump(result.result);
}

TEST_F(MatlabRoad, AMatrixIsShownByRowsAndSavedAsIntegers)
{
    const MexResult result = Edit(1, {DoubleValue({2, 3}, {1, 4, 2, 5, 3, 6})}, [](User& user) {
        user.Key(VK_END);
        user.Key(VK_BACK);
        user.Type(u"-9"); // in place of the 3 that ends the first row
        user.Command(SaveAndClose);
    });
    ASSERT_TRUE(result.hasResult) << result.error.text;
    EXPECT_TRUE(
        Identical(result.result, NumberValue<std::int32_t>(MatlabClass::Int32, {2, 3}, {1, 4, 2, 5, -9, 6})))
        << Dump(result.result);
}

TEST_F(MatlabRoad, AVariableIsEditedByName)
{
    matlab.SetVariable("words", TextValue(u"abc"));
    const MexResult result = Edit(0, {TextValue(u"words"), EmptyMatrix()}, [](User& user) {
        user.ExpectEqual(user.Title(), L"Variable Editor for MATLAB® - words",
                         "the title names the variable");
        user.Type(u"1");
        user.Command(Save);
        user.Expect(user.IsOpen(), "Save keeps the window");
        user.Command(Exit);
    });
    EXPECT_FALSE(result.raised) << result.error.text;
    EXPECT_FALSE(result.hasResult);
    ASSERT_TRUE(matlab.Variable("words"));
    EXPECT_EQ(TextOf(*matlab.Variable("words")), u"1abc");
}

TEST_F(MatlabRoad, NamesThatCannotBeEditedRaiseErrors)
{
    const MexResult undefined = EditAndLookAtNothing(0, {TextValue(u"nothing"), EmptyMatrix()});
    EXPECT_EQ(undefined.error.identifier, "quillmoor_vantrel:ValueError");
    EXPECT_EQ(undefined.error.text, "Value Error");
    const MexResult invalid = EditAndLookAtNothing(0, {TextValue(u"a b"), EmptyMatrix()});
    EXPECT_EQ(invalid.error.identifier, "quillmoor_vantrel:DomainError");
    EXPECT_FALSE(windowCame);
}

TEST_F(MatlabRoad, ACallOfAnotherFormRaisesAnError)
{
    const MexResult result = EditAndLookAtNothing(2, {DoubleValue({1, 1}, {1})});
    EXPECT_TRUE(result.raised);
    EXPECT_EQ(result.error.identifier, "quillmoor_vantrel:LengthError");
    EXPECT_EQ(result.error.text, "The Vantrel produces one result.");
    EXPECT_FALSE(windowCame);
}

TEST_F(MatlabRoad, AnArrayThatCannotBeShownRaisesWhatIsWrongWithIt)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const auto nothing = [](User&) {};
    const MexResult special = Edit(1, {CellValue({1, 1}, {DoubleValue({1, 2}, {1, nan})})}, nothing);
    EXPECT_FALSE(special.hasResult);
    EXPECT_EQ(special.error.identifier, "quillmoor_vantrel:DomainError");
    EXPECT_EQ(special.error.text, "Array contains a NAN value");
    const MexResult wide = Edit(1, {NumberValue<std::uint64_t>(MatlabClass::Uint64, {1, 1}, {1})}, nothing);
    EXPECT_EQ(wide.error.text, "Array contains an unsigned 64 bit integer");
}

TEST_F(MatlabRoad, AnAccessViolationRaisesAnErrorAndMatlabLivesOn)
{
    const MexResult result = Edit(1, {TextValue(u"abc")}, [](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, Debug, 0);
        user.AnswerBox(L"Vantrel Debug Message", IDYES);
        user.AnswerBox(L"Vantrel Error Message", IDOK);
    });
    EXPECT_TRUE(result.raised);
    EXPECT_EQ(result.error.identifier, "quillmoor_vantrel:Exception");
    EXPECT_EQ(result.error.text, "Exception");
    EXPECT_TRUE(Edit(1, {TextValue(u"abc")}, [](User& user) { user.Command(Exit); }).unchanged);
}

TEST_F(MatlabRoad, WithoutKnownMemorySavingFailsAndTheWindowStaysAndTheCallFails)
{
    matlab.options.memoryBytes.reset();
    const MexResult result = Edit(1, {TextValue(u"abc")}, [](User& user) {
        user.Type(u"1");
        user.Command(Save);
        user.Expect(user.IsOpen(), "a failing save keeps the window open");
    });
    EXPECT_TRUE(result.raised);
    EXPECT_EQ(result.error.identifier, "quillmoor_vantrel:WorkspaceFull");
}

TEST_F(MatlabRoad, ManyEditsInOneProcessLeaveNothingBehind)
{
    for (int round = 0; round < 10; ++round) {
        const MexResult result = Edit(1, {TextValue(u"abc")}, [](User& user) { user.Command(Exit); });
        ASSERT_TRUE(result.unchanged) << round;
    }
}

} // namespace
} // namespace vantrel::ui
