// The frame around the array: title, closing, options, window placement.
#include <gtest/gtest.h>

#include "ui/driver.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr int SaveAndClose = 4104;
constexpr int Exit = 4105;
constexpr int ExitForce = 4110;
constexpr wchar_t Placement[] = L"Dyalog Vantrel window 1";
constexpr wchar_t Program[] = L"Vantrel";

class Frame : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
};

void TypeSomething(User& user)
{
    user.Type(u"x");
}

TEST_F(Frame, TitleNamesTheInterpreter)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.Expect(user.Title() == L"Vantrel for Dyalog", "the title names the interpreter");
    });
}

TEST_F(Frame, TheCallersTitleIsTaken)
{
    EditOptions options;
    options.title = u"Prices ⍴ 2026";
    RunEdit(
        interpreter, Text(u"abc"),
        [](User& user) { user.Expect(user.Title() == L"Prices ⍴ 2026", "the title is the caller's"); },
        options);
}

TEST_F(Frame, HasTheViewAndTheStatusBarAsChildren)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        wchar_t name[64] = {};
        GetClassNameW(user.Client(), name, 64);
        user.Expect(std::wstring(name) == L"quillmoor vantrel client class", "the client's class");
        GetClassNameW(user.Status(), name, 64);
        user.Expect(std::wstring(name) == L"msctls_statusbar32", "the status bar's class");
    });
}

TEST_F(Frame, ClosingUnchangedAsksNothing)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        PostMessageW(user.Frame(), WM_CLOSE, 0, 0);
        user.Wait();
        user.Expect(!user.IsOpen(), "the window has closed");
    });
}

TEST_F(Frame, ClosingAModifiedArrayAsksAndCancelKeepsTheWindow)
{
    const Outcome outcome = RunEdit(interpreter, Text(u"abc"), [](User& user) {
        TypeSomething(user);
        PostMessageW(user.Frame(), WM_CLOSE, 0, 0);
        const std::wstring question = user.AnswerBox(Program, IDCANCEL);
        user.Expect(question == L"The array has been modified. Do you want to save your changes?",
                    "the question");
        user.Expect(user.IsOpen(), "Cancel keeps the window");
        PostMessageW(user.Frame(), WM_CLOSE, 0, 0);
        user.AnswerBox(Program, IDNO);
        user.Expect(!user.IsOpen(), "No closes it");
    });
    EXPECT_TRUE(outcome.edit.unchanged);
}

TEST_F(Frame, YesToTheQuestionSaves)
{
    const Outcome outcome = RunEdit(interpreter, Text(u"abc"), [](User& user) {
        TypeSomething(user);
        PostMessageW(user.Frame(), WM_COMMAND, Exit, 0);
        user.AnswerBox(Program, IDYES);
        user.Expect(!user.IsOpen(), "Yes saves and closes");
    });
    ASSERT_TRUE(outcome.edit.hasResult);
    EXPECT_EQ(TextOfArray(outcome.edit.result), u"xabc");
}

TEST_F(Frame, WithConfirmCloseOffNothingIsAsked)
{
    StoreFlag(L"Confirm close", 0);
    const Outcome outcome = RunEdit(interpreter, Text(u"abc"), [](User& user) {
        TypeSomething(user);
        user.Command(Exit);
        user.Expect(!user.IsOpen(), "the window has closed");
    });
    EXPECT_TRUE(outcome.edit.unchanged);
}

TEST_F(Frame, ClosingByForceAsksNothingAndKeepsTheOption)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        TypeSomething(user);
        user.Command(ExitForce);
        user.Expect(!user.IsOpen(), "the window has closed");
    });
    EXPECT_EQ(StoredOption(L"Confirm close"), (std::vector<std::uint8_t>{1, 0, 0, 0}));
}

TEST_F(Frame, OptionsAreStoredWithTheirDefaultsOnTheFirstClose)
{
    RunEdit(interpreter, Text(u"abc"), [](User&) {});
    const std::pair<const wchar_t*, std::uint8_t> expected[] = {{L"Confirm close", 1},
                                                                {L"Find", 0},
                                                                {L"Size to definition on open", 0},
                                                                {L"Use small icons", 1},
                                                                {L"Status bar", 1},
                                                                {L"Tool bar", 1},
                                                                {L"Always on top", 0},
                                                                {L"Use small margins", 1},
                                                                {L"Use 3D edges", 0},
                                                                {L"Show whole cell", 1},
                                                                {L"Overtype", 0},
                                                                {L"Reject unsupported data", 1},
                                                                {L"Line numbers", 1},
                                                                {L"Ruler", 1},
                                                                {L"Show rank 1 scrollbars", 0},
                                                                {L"Enable undo array", 1}};
    for (const auto& [name, value] : expected) {
        EXPECT_EQ(StoredOption(name), (std::vector<std::uint8_t>{value, 0, 0, 0}))
            << reinterpret_cast<const char*>(name);
    }
    EXPECT_EQ(StoredOption(L"Font").size(), 60u);
}

TEST_F(Frame, AStoredOptionIsKept)
{
    StoreFlag(L"Use 3D edges", 1);
    StoreFlag(L"Tool bar", 0);
    RunEdit(interpreter, Text(u"abc"), [](User&) {});
    EXPECT_EQ(StoredOption(L"Use 3D edges"), (std::vector<std::uint8_t>{1, 0, 0, 0}));
    EXPECT_EQ(StoredOption(L"Tool bar"), (std::vector<std::uint8_t>{0, 0, 0, 0}));
}

TEST_F(Frame, AnOptionOfAnotherSizeCountsAsMissing)
{
    StoreOption(L"Use 3D edges", {1});
    RunEdit(interpreter, Text(u"abc"), [](User&) {});
    EXPECT_EQ(StoredOption(L"Use 3D edges"), (std::vector<std::uint8_t>{0, 0, 0, 0}));
}

TEST_F(Frame, OpensWhereItWasClosed)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) { MoveWindow(user.Frame(), 40, 50, 400, 300, TRUE); });
    EXPECT_EQ(StoredOption(L"Window placement", Placement).size(), sizeof(WINDOWPLACEMENT));
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        RECT place{};
        GetWindowRect(user.Frame(), &place);
        user.Expect(place.left == 40 && place.top == 50 && place.right == 440 && place.bottom == 350,
                    "the window stands where it was");
    });
}

TEST_F(Frame, ClosedMinimisedItOpensRestored)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        ShowWindow(user.Frame(), SW_MINIMIZE);
        user.Wait();
    });
    RunEdit(interpreter, Text(u"abc"),
            [](User& user) { user.Expect(!IsIconic(user.Frame()), "the window is restored"); });
}

TEST_F(Frame, APlacementOfAnotherSizeIsIgnored)
{
    StoreOption(L"Window placement", std::vector<std::uint8_t>(20, 1), Placement);
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.Expect(IsWindowVisible(user.Frame()) && !IsIconic(user.Frame()), "the window opens normally");
    });
}

TEST_F(Frame, AFaceThatCannotShowTheCharactersIsReplaced)
{
    LOGFONTA font{};
    font.lfHeight = 30;
    strcpy(font.lfFaceName, "Courier APL2");
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&font);
    StoreOption(L"Font", {bytes, bytes + sizeof font});
    RunEdit(interpreter, Text(u"abc"), [](User&) {});
    const std::vector<std::uint8_t> stored = StoredOption(L"Font");
    ASSERT_EQ(stored.size(), sizeof font);
    LOGFONTA now{};
    memcpy(&now, stored.data(), sizeof now);
    EXPECT_STREQ(now.lfFaceName, "APL385 Unicode");
    EXPECT_EQ(now.lfHeight, 16); // 12 points at 96 dots an inch
}

TEST_F(Frame, ClosedMaximisedItOpensMaximised)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        ShowWindow(user.Frame(), SW_MAXIMIZE);
        user.Wait();
    });
    RunEdit(interpreter, Text(u"abc"),
            [](User& user) { user.Expect(IsZoomed(user.Frame()) != 0, "the window is maximised"); });
}

TEST_F(Frame, SizesToDefinitionOnOpenWhereTheOptionSaysSo)
{
    const Array array = NestedArray({2}, {Text(u"abc"), Text(u"defg")});
    const auto isAsWanted = [](const User& user) {
        SIZE wanted{};
        SendMessageW(user.Client(), 32976, 0, reinterpret_cast<LPARAM>(&wanted));
        RECT view{};
        GetWindowRect(user.Client(), &view);
        return view.bottom - view.top == wanted.cy && view.right - view.left >= wanted.cx;
    };
    RunEdit(interpreter, array, [&](User& user) {
        user.ExpectEqual(SendMessageW(user.Frame(), 32869, 0, 0), 0, "the option is off at first");
        user.Expect(!isAsWanted(user), "the window has its own size");
        user.Command(4305);
        user.ExpectEqual(SendMessageW(user.Frame(), 32869, 0, 0), 1, "now it is on");
        user.Expect(!isAsWanted(user), "which changes nothing yet");
    });
    RunEdit(interpreter, array, [&](User& user) { user.Expect(isAsWanted(user), "the array's size"); });
}

TEST_F(Frame, NobodyAskedItToClose)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.ExpectEqual(SendMessageW(user.Frame(), 32875, 0, 0), 0, "it is not closing");
    });
}

LOGFONTW FontOf(HWND window)
{
    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)), sizeof font, &font);
    return font;
}

LONG SystemStatusHeight()
{
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    return metrics.lfStatusFont.lfHeight;
}

TEST_F(Frame, TheStatusBarAndTheNameBoxTakeTheArraysFace)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        for (HWND const bar : {user.Status(), GetDlgItem(user.Frame(), 32789)}) {
            const LOGFONTW font = FontOf(bar);
            user.Expect(std::wstring(font.lfFaceName) == FontOf(user.Client()).lfFaceName, "the face");
            user.ExpectEqual(font.lfHeight, SystemStatusHeight(), "the system's height");
        }
    });
}

TEST_F(Frame, OnRequestTheyTakeItsHeightToo)
{
    StoreFlag(L"Use client font in statusbar", 1);
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        for (HWND const bar : {user.Status(), GetDlgItem(user.Frame(), 32789)})
            user.ExpectEqual(FontOf(bar).lfHeight, FontOf(user.Client()).lfHeight, "the height");
        const LONG before = FontOf(user.Status()).lfHeight;
        user.Mouse(user.Client(), {30, 30}, MOUSEEVENTF_MIDDLEUP); // the wheel turns where the pointer is
        SendMessageW(user.Client(), WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, 120), 0);
        user.Wait();
        user.ExpectEqual(FontOf(user.Status()).lfHeight, FontOf(user.Client()).lfHeight, "and follow it");
        user.Expect(FontOf(user.Status()).lfHeight != before, "when it changes");
    });
}

} // namespace
} // namespace vantrel::ui
