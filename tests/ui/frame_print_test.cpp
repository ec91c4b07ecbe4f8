// Printing through the printing system into a file.
#include <gtest/gtest.h>

#include "ui/driver.h"
#include "ui/test_printer.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr int PageSetup = 4107;
constexpr int PrintArray = 4108;

class Printing : public testing::Test {
protected:
    void SetUp() override { ForgetOptions(); }

    Interpreter interpreter;
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
    const TestPrinter printer;
    ASSERT_TRUE(printer.IsThere());
    std::string output;
    RunEdit(interpreter, WideAndTall(), [&](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, PrintArray, 0);
        user.AnswerBox(L"Print", IDOK);
        output = printer.Output();
    });
    EXPECT_GT(CountPages(output), 3);
}

TEST_F(Printing, CASmallArrayTakesOnePageAndACancelledDialogNone)
{
    const TestPrinter printer;
    ASSERT_TRUE(printer.IsThere());
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
    const TestPrinter printer;
    ASSERT_TRUE(printer.IsThere());
    int narrow = 0;
    int before = 0;
    RunEdit(interpreter, WideAndTall(), [&](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, PrintArray, 0);
        user.AnswerBox(L"Print", IDOK);
        before = CountPages(printer.Output());
        PostMessageW(user.Frame(), WM_COMMAND, PageSetup, 0);
        SetLeftAndRightMargin(user.WaitForBox(L"Page Setup"), L"2.5");
        user.AnswerBox(L"Page Setup", IDOK);
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

} // namespace
} // namespace vantrel::ui
