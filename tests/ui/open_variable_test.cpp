// A further window on the variable that the user points at.
#include <gtest/gtest.h>

#include <windows.h>

#include "hosts/fake_matlab.h"
#include "hosts/win/matlab_libraries.h"
#include "ui/driver.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr wchar_t FrameClass[] = L"quillmoor vantrel frame class";
constexpr wchar_t WordsTitle[] = L"Variable Editor for MATLAB® - words";
constexpr UINT GetBusy = 32986;
constexpr UINT GetSelected = 32978;
constexpr int Client = 0x8008;
constexpr int Save = 4102;
constexpr int Exit = 4105;
constexpr int OpenObject = 4109;
constexpr int Reverse = 4614;

class OpenVariableTest : public testing::Test {
protected:
    void SetUp() override
    {
        ForgetOptions();
        std::string reason;
        ASSERT_TRUE(LoadMatlabLibraries(reason)) << reason;
    }
    MexResult Edit(const MatlabValue& argument, const Script& script)
    {
        MexResult result;
        const auto mex = reinterpret_cast<MexFunction>(LibraryEntry("mexFunction"));
        RunWithUser([&] { result = matlab.Call(mex, 1, {argument}); }, script);
        for (const std::string& complaint : result.complaints)
            ADD_FAILURE() << complaint;
        return result;
    }

    Matlab matlab;
};

HWND WaitForFrame(const wchar_t* title)
{
    for (int i = 0; i < 500; ++i) {
        HWND const frame = FindWindowW(FrameClass, title);
        HWND const client = frame != nullptr ? GetDlgItem(frame, Client) : nullptr;
        if (client != nullptr && SendMessageW(client, GetBusy, 0, 0) == 0 &&
            SendMessageW(client, GetSelected, 0, 0) != 0)
            return frame;
        Sleep(10);
    }
    return nullptr;
}

TEST_F(OpenVariableTest, ShowsItBesideTheFirstWindowAndSavesIt)
{
    matlab.SetVariable("words", TextValue(u"abc"));
    const MexResult result = Edit(TextValue(u"words"), [](User& user) {
        user.Command(OpenObject);
        HWND const second = WaitForFrame(WordsTitle);
        user.Expect(second != nullptr, "a second window comes up");
        if (second == nullptr) return;
        user.Type(u"1");
        PostMessageW(second, WM_COMMAND, Save, 0);
        user.Wait();
        PostMessageW(second, WM_COMMAND, Exit, 0);
        user.Wait();
        user.Expect(!IsWindow(second), "it closes by itself");
        user.Expect(user.IsOpen(), "the first stays");
        user.Command(Exit);
    });
    EXPECT_FALSE(result.raised) << result.error.text;
    ASSERT_TRUE(matlab.Variable("words"));
    EXPECT_EQ(TextOf(*matlab.Variable("words")), u"1abc");
    EXPECT_TRUE(result.unchanged);
}

TEST_F(OpenVariableTest, TheEditLastsUntilTheLastWindowIsClosed)
{
    matlab.SetVariable("words", TextValue(u"abc"));
    const MexResult result = Edit(TextValue(u"words"), [](User& user) {
        user.Command(OpenObject);
        HWND const second = WaitForFrame(WordsTitle);
        user.Expect(second != nullptr, "a second window comes up");
        user.Command(Exit);
        user.Expect(!user.IsOpen(), "the first closes");
        user.Expect(IsWindow(second) != 0, "the second stays");
        PostMessageW(second, WM_COMMAND, Exit, 0);
    });
    EXPECT_FALSE(result.raised) << result.error.text;
}

TEST_F(OpenVariableTest, TheLastWindowWorksOnAfterTheFirstHasClosed)
{
    matlab.SetVariable("words", TextValue(u"abc"));
    const MexResult result = Edit(TextValue(u"words"), [](User& user) {
        user.Command(OpenObject);
        HWND const second = WaitForFrame(WordsTitle);
        user.Expect(second != nullptr, "a second window comes up");
        user.Command(Exit);
        HWND const client = GetDlgItem(second, Client);
        SendMessageW(second, WM_COMMAND, Reverse, 0);
        user.Expect(SendMessageW(client, GetBusy, 0, 0) == 0, "the command ends");
        SendMessageW(second, WM_COMMAND, Save, 0);
        PostMessageW(second, WM_COMMAND, Exit, 0);
    });
    EXPECT_FALSE(result.raised) << result.error.text;
    ASSERT_TRUE(matlab.Variable("words"));
    EXPECT_EQ(TextOf(*matlab.Variable("words")), u"cba");
}

TEST_F(OpenVariableTest, WhatIsNoVariableIsRefusedInTheWindowThatAsked)
{
    const MexResult result = Edit(TextValue(u"nothing"), [](User& user) {
        SendMessageW(user.Client(), WM_COMMAND, OpenObject, 0);
        user.ExpectEqual(user.StatusText(), u"Value Error", "the message");
        user.Command(Exit);
    });
    EXPECT_FALSE(result.raised) << result.error.text; // the user was told, MATLAB need not be
}

} // namespace
} // namespace vantrel::ui
