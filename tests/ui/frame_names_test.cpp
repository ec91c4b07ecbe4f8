// Variables by name, further windows and the placements of several windows, with a host that has names.
#include <windows.h>

#include <gtest/gtest.h>

#include <commctrl.h>

#include <cstdio>

#include "hosts/fake_matlab.h"
#include "hosts/win/matlab_libraries.h"
#include "ui/driver.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr wchar_t FrameClass[] = L"quillmoor vantrel frame class";
constexpr wchar_t Program[] = L"Vantrel";
constexpr int Save = 4102;
constexpr int SaveAs = 4103;
constexpr int SaveAndClose = 4104;
constexpr int Exit = 4105;
constexpr int ExitForce = 4110;
constexpr int Open = 4106;
constexpr int SelectedOnly = 107;
constexpr UINT GetBusyMessage = 32986;

class FrameNames : public testing::Test {
protected:
    void SetUp() override
    {
        ForgetOptions();
        std::string reason;
        ASSERT_TRUE(LoadMatlabLibraries(reason)) << reason;
    }
    MexResult Edit(const MatlabValue& value, const Script& script) { return Call(1, {value}, script); }
    MexResult EditByName(const char16_t* name, const Script& script)
    {
        return Call(0, {TextValue(name), DoubleValue({0, 0}, {})}, script);
    }
    MexResult Call(int outputs, const std::vector<MatlabValue>& arguments, const Script& script)
    {
        const auto mex = reinterpret_cast<MexFunction>(LibraryEntry("mexFunction"));
        MexResult result;
        RunWithUser([&] { result = matlab.Call(mex, outputs, arguments); }, script);
        for (const std::string& complaint : result.complaints)
            ADD_FAILURE() << complaint;
        return result;
    }
    [[nodiscard]] bool Holds(const char* name, const MatlabValue& value)
    {
        const std::optional<MatlabValue> held = matlab.Variable(name);
        return held.has_value() && Identical(*held, value);
    }

    Matlab matlab;
};

void AskToSaveAs(User& user, const char16_t* name)
{
    PostMessageW(user.Frame(), WM_COMMAND, SaveAs, 0);
    user.WaitForBox(L"Save As");
    user.Type(name);
    PostMessageW(user.WaitForBox(L"Save As"), WM_COMMAND, IDOK, 0);
}

HWND WaitForFrame(const wchar_t* title)
{
    for (int waited = 0; waited < 10000; waited += 20) {
        HWND const frame = FindWindowW(FrameClass, title);
        if (frame != nullptr && IsWindowVisible(frame)) return frame;
        Sleep(20);
    }
    return nullptr;
}

TEST_F(FrameNames, TheStatusBarReadsWords)
{
    Edit(TextValue(u"abc"), [](User& user) {
        wchar_t text[64] = {};
        SendMessageW(user.Status(), SB_GETTEXTW, 2, reinterpret_cast<LPARAM>(text));
        user.Expect(std::wstring(text) == L" Depth:", "a word for the depth");
        SendMessageW(user.Status(), SB_GETTEXTW, 10, reinterpret_cast<LPARAM>(text));
        user.Expect(std::wstring(text) == L" Index:", "a word for the pick index");
    });
}

TEST_F(FrameNames, TheToolBarLacksEncloseAndDisclose)
{
    Edit(TextValue(u"abc"), [](User& user) {
        HWND const bar = FindWindowExW(user.Frame(), nullptr, TOOLBARCLASSNAMEW, nullptr);
        user.Expect(SendMessageW(bar, TB_BUTTONCOUNT, 0, 0) == 38, "three buttons fewer");
        for (const int id : {4611, 4612, 4629})
            user.Expect(SendMessageW(bar, TB_COMMANDTOINDEX, static_cast<WPARAM>(id), 0) == -1, "not here");
        user.Expect(GetMenuState(GetMenu(user.Frame()), 4612, MF_BYCOMMAND) != static_cast<UINT>(-1),
                    "but in the menu");
    });
}

TEST_F(FrameNames, CtrlWClosesAndEscapeDoesNothing)
{
    const MexResult result = Edit(TextValue(u"abc"), [](User& user) {
        user.Type(u"x");
        user.Key(VK_ESCAPE);
        user.Key(VK_ESCAPE, {VK_SHIFT});
        user.Expect(user.IsOpen() && FindWindowW(L"#32770", Program) == nullptr,
                    "Escape is not this host's key");
        user.Key('W', {VK_CONTROL});
        user.Expect(user.AnswerBox(Program, IDNO) ==
                        L"The array has been modified. Do you want to save your changes?",
                    "Ctrl+W closes, with the question");
        user.Expect(!user.IsOpen(), "closed");
    });
    EXPECT_TRUE(result.unchanged);
}

TEST_F(FrameNames, TheGraphicsMenuPlots)
{
    const std::pair<int, const char*> plots[] = {{4901, "area"}, {4902, "bar"},    {4903, "contour"},
                                                 {4904, "hist"}, {4905, "mesh"},   {4906, "pie"},
                                                 {4907, "plot"}, {4908, "surface"}};
    Edit(DoubleValue({2, 2}, {1, 3, 2, 4}), [&](User& user) {
        for (const auto& [command, function] : plots) {
            matlab.ClearCalls();
            user.Command(command);
            bool called = false;
            for (const MatlabCall& call : matlab.Calls())
                called = called || call.function == function;
            user.Expect(called, function);
        }
        matlab.ClearCalls();
        user.Key('G', {VK_MENU});
        user.Key('A');
        user.Expect(!matlab.Calls().empty(), "Alt+G, A plots, too");
    });
}

TEST_F(FrameNames, SaveAsMakesAVariable)
{
    Edit(TextValue(u"abc"), [](User& user) {
        user.Type(u"x");
        AskToSaveAs(user, u"fresh");
        user.Wait();
        user.Expect(user.StatusText() == u"Data saved", "saved");
        user.Command(ExitForce);
    });
    EXPECT_TRUE(Holds("fresh", TextValue(u"xabc")));
}

TEST_F(FrameNames, SaveAsAsksBeforeItReplacesAVariable)
{
    matlab.SetVariable("taken", TextValue(u"old"));
    Edit(TextValue(u"new"), [&](User& user) {
        AskToSaveAs(user, u"taken");
        user.Expect(user.AnswerBox(Program, IDCANCEL) == L"taken already exists.  Do you want to replace it?",
                    "the question");
        user.Expect(FindWindowW(L"#32770", L"Save As") == nullptr, "Cancel ends it");
        AskToSaveAs(user, u"taken");
        user.AnswerBox(Program, IDNO);
        HWND const dialog = user.WaitForBox(L"Save As");
        user.Expect(dialog != nullptr, "No asks for another name");
        PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
        user.Wait();
        user.Expect(user.StatusText() != u"Data saved", "nothing was saved so far");
    });
    EXPECT_TRUE(Holds("taken", TextValue(u"old")));
    Edit(TextValue(u"new"), [](User& user) {
        AskToSaveAs(user, u"taken");
        user.AnswerBox(Program, IDYES);
        user.Expect(user.StatusText() == u"Data saved", "Yes replaces it");
    });
    EXPECT_TRUE(Holds("taken", TextValue(u"new")));
}

TEST_F(FrameNames, SaveAsTakesTheSelectedArrayAlone)
{
    Edit(CellValue({1, 2}, {TextValue(u"one"), TextValue(u"two")}), [](User& user) {
        user.Key(VK_TAB);
        user.Key(VK_TAB);
        PostMessageW(user.Frame(), WM_COMMAND, SaveAs, 0);
        HWND const dialog = user.WaitForBox(L"Save As");
        user.Type(u"part");
        SendMessageW(GetDlgItem(dialog, SelectedOnly), BM_CLICK, 0, 0);
        PostMessageW(dialog, WM_COMMAND, IDOK, 0);
        user.Wait();
        user.Expect(user.StatusText() == u"Data saved", "saved");
    });
    EXPECT_TRUE(Holds("part", TextValue(u"two")));
}

TEST_F(FrameNames, ASaveThatTheHostRefusesKeepsTheWindow)
{
    matlab.SetVariable("words", TextValue(u"abc"));
    EditByName(u"words", [&](User& user) {
        user.Type(u"x");
        matlab.failPutVariable = true;
        user.Command(SaveAndClose);
        user.Expect(user.IsOpen(), "the window stays");
        user.Expect(user.StatusText() != u"Data saved" && !user.StatusText().empty(), "and says why");
        matlab.failPutVariable = false;
        user.Command(SaveAndClose);
        user.Expect(!user.IsOpen(), "then it is saved and closed");
    });
    EXPECT_TRUE(Holds("words", TextValue(u"xabc")));
}

TEST_F(FrameNames, OpenShowsAVariableInAFurtherWindowOfTheSameEdit)
{
    matlab.SetVariable("other", TextValue(u"second"));
    const MexResult result = Edit(TextValue(u"first"), [](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, Open, 0);
        user.WaitForBox(L"Open");
        user.Type(u"other");
        PostMessageW(user.WaitForBox(L"Open"), WM_COMMAND, IDOK, 0);
        HWND const second = WaitForFrame(L"Variable Editor for MATLAB® - other");
        user.Expect(second != nullptr, "a second window");
        user.Wait();
        user.Type(u"2");
        SendMessageW(second, WM_COMMAND, Save, 0);
        SendMessageW(user.Frame(), WM_COMMAND, SaveAndClose, 0);
        user.Expect(!user.IsOpen() && IsWindow(second) != 0, "each closes alone");
        SendMessageW(second, WM_COMMAND, Exit, 0);
    });
    ASSERT_TRUE(result.hasResult);
    EXPECT_TRUE(Identical(result.result, TextValue(u"first")));
    EXPECT_TRUE(Holds("other", TextValue(u"2second")));
    EXPECT_EQ(StoredOption(L"Window placement", L"MATLAB Vantrel window 1").size(), 44u);
    EXPECT_EQ(StoredOption(L"Window placement", L"MATLAB Vantrel window 2").size(), 44u);
}

TEST_F(FrameNames, AFurtherWindowOnNothingIsRefused)
{
    const MexResult result = Edit(TextValue(u"first"), [](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, Open, 0);
        user.WaitForBox(L"Open");
        user.Type(u"nothing");
        PostMessageW(user.WaitForBox(L"Open"), WM_COMMAND, IDOK, 0);
        user.Wait();
        user.Expect(user.StatusText() == u"Value Error", "there is no such variable");
        user.Command(SaveAndClose);
    });
    EXPECT_FALSE(result.raised) << result.error.text;
}

TEST_F(FrameNames, FrameOptionsAreSharedAndPlacementsAreNot)
{
    Interpreter interpreter;
    Edit(TextValue(u"abc"), [](User& user) {
        MoveWindow(user.Frame(), 10, 20, 500, 300, TRUE);
        user.Command(4309);
    });
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        MoveWindow(user.Frame(), 60, 70, 400, 310, TRUE);
        user.Expect((GetMenuState(GetMenu(user.Frame()), 4309, MF_BYCOMMAND) & MF_CHECKED) != 0,
                    "the other host's option");
    });
    Edit(TextValue(u"abc"), [](User& user) {
        RECT place{};
        GetWindowRect(user.Frame(), &place);
        user.Expect(place.left == 10 && place.top == 20, "its own place");
    });
}

// --- two processes ---

struct OtherProcess {
    PROCESS_INFORMATION process{};
    HWND frame = nullptr;
};

std::wstring FileBeside(const wchar_t* name)
{
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring file = path;
    return file.substr(0, file.find_last_of(L'\\') + 1) + name;
}

std::wstring WriteExample()
{
    wchar_t folder[MAX_PATH] = {};
    GetTempPathW(MAX_PATH, folder);
    const std::wstring path = std::wstring(folder) + L"other-process.json";
    std::FILE* const file = _wfopen(path.c_str(), L"wb");
    std::fputs("[1, 2, 3]", file);
    std::fclose(file);
    return path;
}

// The editor in a process of its own, once its window is there.
OtherProcess StartWorkbench()
{
    OtherProcess other;
    STARTUPINFOW start{};
    start.cb = sizeof start;
    std::wstring line = L"\"" + FileBeside(L"vantrel-workbench.exe") + L"\" \"" + WriteExample() + L"\"";
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                        &other.process))
        return other;
    for (int waited = 0; waited < 20000 && other.frame == nullptr; waited += 50) {
        Sleep(50);
        HWND frame = nullptr;
        while ((frame = FindWindowExW(nullptr, frame, FrameClass, nullptr)) != nullptr) {
            DWORD owner = 0;
            GetWindowThreadProcessId(frame, &owner);
            if (owner == other.process.dwProcessId && IsWindowVisible(frame)) other.frame = frame;
        }
    }
    return other;
}

void EndWorkbench(const OtherProcess& other)
{
    if (other.frame != nullptr) PostMessageW(other.frame, WM_COMMAND, ExitForce, 0);
    WaitForSingleObject(other.process.hProcess, 10000);
    CloseHandle(other.process.hProcess);
    CloseHandle(other.process.hThread);
}

TEST_F(FrameNames, WindowsOfSeveralProcessesAreCountedTogether)
{
    Interpreter interpreter;
    const OtherProcess other = StartWorkbench();
    ASSERT_NE(other.frame, nullptr);
    RunEdit(interpreter, Text(u"abc"), [](User& user) { MoveWindow(user.Frame(), 30, 40, 444, 333, TRUE); });
    EXPECT_EQ(StoredOption(L"Window placement", L"Dyalog Vantrel window 2").size(), 44u);
    EndWorkbench(other);
    EXPECT_EQ(StoredOption(L"Window placement", L"Dyalog Vantrel window 1").size(), 44u);
    // The second place was the second window's; alone this one is the first.
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        RECT place{};
        GetWindowRect(user.Frame(), &place);
        user.Expect(place.right - place.left != 444, "not the second window's place");
    });
}

} // namespace
} // namespace vantrel::ui
