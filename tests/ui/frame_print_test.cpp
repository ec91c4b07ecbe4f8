// Printing through the printing system into a file.
#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <cwchar>
#include <memory>

#include "ui/driver.h"
#include "ui/test_printer.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr int PageSetup = 4107;
constexpr int PrintArray = 4108;
constexpr wchar_t SetupTitle[] = L"Setup Page"; // as Wine calls it

class Printing : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }
    static void TearDownTestSuite() { printer_.reset(); }

    // One for all tests: the library keeps the printer's settings as long as the process lasts.
    static const TestPrinter& Printer()
    {
        if (printer_ == nullptr) printer_ = std::make_unique<TestPrinter>();
        EXPECT_TRUE(printer_->IsThere());
        DeleteFileW(printer_->OutputFile().c_str());
        return *printer_;
    }

    Interpreter interpreter;

private:
    static inline std::unique_ptr<TestPrinter> printer_;
};

Array WideAndTall()
{
    std::vector<double> values;
    for (int i = 0; i < 150 * 40; ++i)
        values.push_back(1000 + i);
    return NumericArray({150, 40}, values);
}

// Runs before any printer is known to the process.
TEST_F(Printing, ANothingHappensWithoutAPrinter)
{
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.Command(PrintArray);
        user.Command(PageSetup);
        user.Expect(FindWindowW(L"#32770", nullptr) == nullptr ||
                        !IsWindowVisible(FindWindowW(L"#32770", L"Print")),
                    "no dialog comes up");
        user.Expect(IsWindowEnabled(user.Frame()) != 0, "the window goes on");
    });
}

TEST_F(Printing, BAWideAndTallArrayTakesSeveralPages)
{
    const TestPrinter& printer = Printer();
    std::string output;
    RunEdit(interpreter, WideAndTall(), [&](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, PrintArray, 0);
        user.AnswerBox(L"Print", IDOK);
        output = printer.Output();
    });
    EXPECT_GT(CountPages(output), 3);
}

TEST_F(Printing, BClosingTheWindowGivesThePagesUp)
{
    Printer();
    std::vector<double> values(60000 * 20, 1234);
    RunEdit(interpreter, NumericArray({60000, 20}, values), [&](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, PrintArray, 0);
        user.AnswerBox(L"Print", IDOK);
        PostMessageW(user.Frame(), WM_CLOSE, 0, 0);
        for (int i = 0; i < 1500 && user.IsOpen(); ++i)
            Sleep(10);
        user.Expect(!user.IsOpen(), "the window closes");
    });
}

TEST_F(Printing, CASmallArrayTakesOnePageAndACancelledDialogNone)
{
    const TestPrinter& printer = Printer();
    std::string output;
    RunEdit(interpreter, NestedArray({2}, {Text(u"abc"), Text(u"defg")}), [&](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, PrintArray, 0);
        user.AnswerBox(L"Print", IDCANCEL);
        user.Expect(GetFileAttributesW(printer.OutputFile().c_str()) == INVALID_FILE_ATTRIBUTES,
                    "nothing was printed");
        PostMessageW(user.Frame(), WM_COMMAND, PrintArray, 0);
        user.AnswerBox(L"Print", IDOK);
        output = printer.Output();
    });
    EXPECT_EQ(CountPages(output), 1);
}

// Wine answers no margins; Windows answers an inch, and so does the dialog then.
TEST_F(Printing, CTheMarginsAreAnInchAtFirst)
{
    Printer();
    RunEdit(interpreter, Text(u"abc"), [&](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, PageSetup, 0);
        HWND const dialog = user.WaitForBox(SetupTitle);
        for (const int margin : {1155, 1156, 1157, 1158}) {
            wchar_t text[64] = {};
            GetDlgItemTextW(dialog, margin, text, 64);
            user.Expect(std::wcstod(text, nullptr) >= 1, "an inch, or as many millimetres");
        }
        user.AnswerBox(SetupTitle, IDCANCEL);
    });
}

// The margins, in the unit in which the dialog shows them.
void SetLeftAndRightMargin(HWND dialog, const wchar_t* text)
{
    constexpr int LeftMargin = 1155;
    constexpr int RightMargin = 1157;
    SetDlgItemTextW(dialog, LeftMargin, text);
    SetDlgItemTextW(dialog, RightMargin, text);
}

TEST_F(Printing, DMarginsAreKeptForTheNextDocument)
{
    const TestPrinter& printer = Printer();
    int narrow = 0;
    int before = 0;
    RunEdit(interpreter, WideAndTall(), [&](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, PrintArray, 0);
        user.AnswerBox(L"Print", IDOK);
        before = CountPages(printer.Output());
        PostMessageW(user.Frame(), WM_COMMAND, PageSetup, 0);
        SetLeftAndRightMargin(user.WaitForBox(SetupTitle), L"2.5");
        user.AnswerBox(SetupTitle, IDOK);
    });
    DeleteFileW(printer.OutputFile().c_str());
    RunEdit(interpreter, WideAndTall(), [&](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, PrintArray, 0);
        user.AnswerBox(L"Print", IDOK);
        narrow = CountPages(printer.Output());
    });
    EXPECT_GT(before, 0);
    EXPECT_GT(narrow, before);
}

TEST_F(Printing, ETheToolPrintsToo)
{
    const TestPrinter& printer = Printer();
    std::string output;
    RunEdit(interpreter, Text(u"abc"), [&](User& user) {
        HWND const bar = FindWindowExW(user.Frame(), nullptr, TOOLBARCLASSNAMEW, nullptr);
        const LRESULT index = SendMessageW(bar, TB_COMMANDTOINDEX, PrintArray, 0);
        RECT place{};
        SendMessageW(bar, TB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&place));
        user.Click(bar, (place.left + place.right) / 2, (place.top + place.bottom) / 2);
        user.AnswerBox(L"Print", IDOK);
        output = printer.Output();
    });
    EXPECT_EQ(CountPages(output), 1);
}

TEST_F(Printing, FBothDialogsOpenByTheirLettersAndCloseByEscape)
{
    Printer();
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        user.Key('F', {VK_MENU});
        user.Key('P');
        HWND dialog = user.WaitForBox(L"Print");
        user.Key(VK_ESCAPE);
        user.Expect(!IsWindow(dialog) && user.IsOpen(), "Escape leaves Print");
        user.Key('F', {VK_MENU});
        user.Key('U');
        dialog = user.WaitForBox(SetupTitle);
        user.Key(VK_ESCAPE);
        user.Expect(!IsWindow(dialog) && user.IsOpen(), "and Page Setup");
    });
}

} // namespace
} // namespace vantrel::ui
