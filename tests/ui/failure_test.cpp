// What goes wrong ends in a clear error, balanced books and a host that lives on.
#include <gtest/gtest.h>

#include <windows.h>

#include <shlobj.h>

#include <cstring>
#include <fstream>
#include <sstream>

#include "model/scdr.h"
#include "ui/driver.h"
#include "ui/menus.h"

namespace vantrel::ui {
namespace {

using fake::Array;
using fake::CharacterArray;
using fake::Dump;
namespace ElementType = fake::ElementType;
using fake::Interpreter;
using fake::NestedArray;
using fake::RawArray;
using fake::SameValues;
using fake::Text;
using fake::TextOf;
namespace ErrorNumber = fake::ErrorNumber;

constexpr int Exit = 4105;
constexpr int Debug = 4504;
constexpr UINT GetSelected = 32978;

class Failure : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;

    void ExpectRefusal(const Array& argument, const char16_t* message, std::uint32_t number = 11)
    {
        const Outcome outcome = RunEdit(interpreter, argument, [](User&) {});
        EXPECT_TRUE(outcome.edit.error.signalled);
        EXPECT_EQ(outcome.edit.error.number, number);
        EXPECT_EQ(outcome.edit.error.kind, 7u);
        EXPECT_EQ(outcome.edit.error.message, message);
        EXPECT_EQ(outcome.edit.error.product, u"Vantrel");
        EXPECT_FALSE(outcome.edit.hasResult);
    }
};

std::wstring DocumentsFolder()
{
    wchar_t path[MAX_PATH] = {};
    SHGetFolderPathW(nullptr, CSIDL_PERSONAL, nullptr, 0, path);
    return path;
}

// The newest command log, removed once read.
std::string TakeCommandLog()
{
    const std::wstring folder = DocumentsFolder() + L"\\";
    WIN32_FIND_DATAW found{};
    HANDLE const search = FindFirstFileW((folder + L"*Vantrel command log.txt").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return {};
    FindClose(search);
    const std::wstring path = folder + found.cFileName;
    std::FILE* const file = _wfopen(path.c_str(), L"rb");
    std::string text(65536, 0);
    text.resize(std::fread(text.data(), 1, text.size(), file));
    std::fclose(file);
    DeleteFileW(path.c_str());
    return text;
}

TEST_F(Failure, ARationalNumberIsRefusedByName)
{
    ExpectRefusal(RawArray(ElementType::Rational, {1}, std::vector<std::uint8_t>(16)),
                  u"Argument contains a rational number.");
}

TEST_F(Failure, ACharacterBeyondOneUnitIsRefused)
{
    ExpectRefusal(
        CharacterArray(ElementType::Char32, {2}, U"a\U0001F600"),
        u"Argument contains a character that cannot be represented using a single UTF-16 code unit.");
}

TEST_F(Failure, ARefusalDeepInsideReleasesWhatWasRead)
{
    ExpectRefusal(
        NestedArray({2}, {Text(u"good"), NestedArray({1}, {RawArray(ElementType::Rational, {1},
                                                                    std::vector<std::uint8_t>(16))})}),
        u"Argument contains a rational number.");
}

TEST_F(Failure, AnAccessViolationEndsTheEditAndTheHostLivesOn)
{
    TakeCommandLog();
    std::wstring report;
    const Outcome outcome = RunEdit(interpreter, Text(u"abc"), [&](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, Debug, 0);
        user.AnswerBox(L"Vantrel Debug Message", IDYES);
        report = user.AnswerBox(L"Vantrel Error Message", IDOK);
    });
    EXPECT_EQ(report.rfind(
                  L"The Vantrel has encountered a severe error and must shut down.\n\nThe current file was "
                  L"frame_debug.cpp.\nThe current routine was CauseAccessViolation.\n\n"
                  L"A command log was written to the following location:\n\n",
                  0),
              0u)
        << std::string(report.begin(), report.end());
    EXPECT_NE(report.find(L"support@dyalog.example"), std::wstring::npos);
    EXPECT_NE(report.find(L"Press Ok to dismiss this window."), std::wstring::npos);
    EXPECT_TRUE(outcome.edit.error.signalled);
    EXPECT_EQ(outcome.edit.error.number, 91u);
    EXPECT_EQ(outcome.edit.error.message, u"The Vantrel encountered a severe error");

    const std::string log = TakeCommandLog();
    EXPECT_EQ(log.rfind("Vantrel Command Log\r\nVersion: 1.1.0.92\r\nBuild date: ", 0), 0u) << log;
    EXPECT_NE(log.find("\r\nDebug\r\nAccess violation\r\nException caught at "), std::string::npos) << log;

    const Outcome next = RunEdit(interpreter, Text(u"abc"), [](User& user) { user.Command(Exit); });
    EXPECT_TRUE(next.edit.unchanged);
}

TEST_F(Failure, TheLogNamesSelectedArraysAndPlanes)
{
    TakeCommandLog();
    RunEdit(interpreter, NestedArray({2}, {Text(u"a"), TextOf({2, 1, 1}, u"bc")}), [](User& user) {
        constexpr UINT SetPickIndex = 32981;
        for (const char16_t* const index : {u"2", u"2 7"})
            SendMessageW(user.Client(), SetPickIndex, 0, reinterpret_cast<LPARAM>(index));
        user.Key(VK_DOWN, {VK_MENU});
        user.Key(VK_PRIOR, {VK_MENU});
        PostMessageW(user.Frame(), WM_COMMAND, Debug, 0);
        user.AnswerBox(L"Vantrel Debug Message", IDYES);
        user.AnswerBox(L"Vantrel Error Message", IDOK);
    });
    std::string log = TakeCommandLog();
    // What the name box tells the frame each time is no command with a name.
    const std::string notice = "Unknown\r\n";
    for (std::size_t at = 0; (at = log.find(notice)) != std::string::npos;)
        log.erase(at, notice.size());
    EXPECT_NE(log.find("\r\nSet array\r\n2\r\nSet array\r\n2 7\r\nPlane down\r\nPlane page up\r\nDebug\r\n"),
              std::string::npos)
        << log;
}

TEST_F(Failure, NoToTheDebugQuestionChangesNothing)
{
    const Outcome outcome = RunEdit(interpreter, Text(u"abc"), [](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, Debug, 0);
        const std::wstring question = user.AnswerBox(L"Vantrel Debug Message", IDNO);
        user.Expect(question == L"Do you want to cause an exception?", "the question");
        const std::wstring second = user.AnswerBox(L"Vantrel Debug Message", IDNO);
        user.Expect(second == L"Do you want to run the test?", "the second question");
        user.Expect(user.IsOpen(), "the window stays");
    });
    EXPECT_TRUE(outcome.edit.unchanged);
}

// "This is test 1" in four boxes, one in the other.
void ExpectTestOnShow(User& user)
{
    const auto* node = reinterpret_cast<const Scdr*>(SendMessageW(user.Client(), GetSelected, 0, 0));
    while (node != nullptr && node->parent != nullptr)
        node = node->parent;
    int boxes = 0;
    for (; node != nullptr && node->Type == TypeNested && node->Rank == 0; node = Children(*node)[0])
        ++boxes;
    user.ExpectEqual(boxes, 4, "four boxes");
    const std::u16string_view text = node == nullptr || node->Type != TypeCharacter
                                         ? std::u16string_view()
                                         : std::u16string_view(static_cast<const char16_t*>(node->data),
                                                               static_cast<std::size_t>(node->ElementCount));
    user.Expect(text == u"This is test 1", "and the text in them");
}

TEST_F(Failure, ATestThatLooksWrongIsLogged)
{
    TakeCommandLog();
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, Debug, 0);
        user.AnswerBox(L"Vantrel Debug Message", IDNO);
        user.AnswerBox(L"Vantrel Debug Message", IDYES);
        user.AnswerBox(L"Vantrel Debug Message", IDNO);
        PostMessageW(user.Frame(), WM_COMMAND, Debug, 0);
        user.AnswerBox(L"Vantrel Debug Message", IDYES);
        user.AnswerBox(L"Vantrel Error Message", IDOK);
    });
    const std::string log = TakeCommandLog();
    EXPECT_NE(log.find("\r\nTest 1 failed\r\n"), std::string::npos) << log;
}

TEST_F(Failure, CommandsOfTheContextMenuAreLogged)
{
    TakeCommandLog();
    RunEdit(interpreter, NestedArray({2}, {Text(u"ab"), Text(u"cd")}), [](User& user) {
        user.Key(VK_TAB);
        user.Expect(ChooseFromContextMenu(user, 4614), "the command is offered");
        user.Key('Z', {VK_CONTROL, VK_SHIFT});
        PostMessageW(user.Frame(), WM_COMMAND, Debug, 0);
        user.AnswerBox(L"Vantrel Debug Message", IDYES);
        user.AnswerBox(L"Vantrel Error Message", IDOK);
    });
    const std::string log = TakeCommandLog();
    const std::size_t command = log.find("\r\nReverse\r\n");
    ASSERT_NE(command, std::string::npos) << log;
    EXPECT_EQ(log.find("\r\nReverse\r\n", command + 1), std::string::npos) << log; // once
    const std::size_t undo = log.find("\r\nUndo Array\r\n", command);
    ASSERT_NE(undo, std::string::npos) << log;
    EXPECT_NE(log.find("\r\nSet array\r\n1\r\n", undo), std::string::npos) << log;
}

TEST_F(Failure, TheDebugTestShowsItsArrayAndGoesBackToTheUsers)
{
    const Outcome outcome = RunEdit(interpreter, Text(u"abc"), [](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, Debug, 0);
        user.AnswerBox(L"Vantrel Debug Message", IDNO);
        user.AnswerBox(L"Vantrel Debug Message", IDYES);
        user.WaitForBox(L"Vantrel Debug Message");
        ExpectTestOnShow(user);
        const std::wstring judged = user.AnswerBox(L"Vantrel Debug Message", IDYES);
        user.Expect(judged == L"Does the result look correct?", "the judgement");
        user.Command(4104);
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_TRUE(SameValues(outcome.edit.result, Text(u"abc"))) << Dump(outcome.edit.result);
}

TEST_F(Failure, AnAllocationThatFailsOnSaveKeepsTheWindowAndTheBooks)
{
    for (int nth = 1; nth <= 3; ++nth) {
        const Outcome outcome =
            RunEdit(interpreter, NestedArray({2}, {Text(u"ab"), Text(u"cd")}), [&](User& user) {
                user.Key(VK_TAB);
                user.Type(u"x");
                interpreter.FailAllocation(nth);
                user.Command(4102);
                user.Expect(user.IsOpen(), "the window stays open");
                user.ExpectEqual(user.StatusText(), interpreter.Message(ErrorNumber::WsFull),
                                 "the interpreter's message is shown");
                interpreter.FailAllocation(0);
                user.Command(4104);
            });
        ASSERT_TRUE(outcome.edit.hasResult) << nth;
        EXPECT_TRUE(SameValues(outcome.edit.result, NestedArray({2}, {Text(u"xab"), Text(u"cd")})));
    }
}

TEST_F(Failure, ATableThatIsTooSmallIsRefusedByTheHandshake)
{
    interpreter.SetTableSize(47);
    EXPECT_EQ(Library().getInterpreterFunctions(interpreter.Table()), 16);
    interpreter.SetTableSize(48);
    EXPECT_EQ(Library().getInterpreterFunctions(interpreter.Table()), 0);
    EXPECT_EQ(Library().getInterpreterFunctions(nullptr), 0);
}

} // namespace
} // namespace vantrel::ui
