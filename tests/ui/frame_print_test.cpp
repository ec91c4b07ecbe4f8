// Printing through the printing system into a file.
#include <gtest/gtest.h>

#include <windows.h>

#include <winspool.h>

#include <algorithm>
#include <cwchar>
#include <iterator>
#include <memory>
#include <numeric>
#include <sstream>

#include "ui/library_imports.h"
#include "ui/menus.h"
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

BOOL CALLBACK CountVisible(HWND window, LPARAM parameter)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId() && IsWindowVisible(window)) ++*reinterpret_cast<int*>(parameter);
    return TRUE;
}

// Top-level windows of this process, dialogs and message boxes among them.
int CountWindows()
{
    int count = 0;
    EnumWindows(CountVisible, reinterpret_cast<LPARAM>(&count));
    return count;
}

// Runs before any printer is known to the process.
TEST_F(Printing, ANothingHappensWithoutAPrinter)
{
    DWORD length = 0;
    ASSERT_FALSE(GetDefaultPrinterW(nullptr, &length));
    ASSERT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND)) << "there is a printer";
    RunEdit(interpreter, Text(u"abc"), [](User& user) {
        for (const int command : {PrintArray, PageSetup}) {
            user.Command(command);
            Sleep(200); // as long as a dialog may take
            user.ExpectEqual(CountWindows(), 1, "no dialog and no message comes up");
            user.ExpectEqual(GetLastActivePopup(user.Frame()), user.Frame(), "the frame has none");
            user.Expect(IsWindowEnabled(user.Frame()) != 0, "the window goes on");
        }
        user.Type(u"x");
        user.Expect(user.Focus() == user.Editor(), "the keyboard is where it was");
    });
}

// Prints what is on show; the document.
std::string PrintIt(User& user, const TestPrinter& printer)
{
    DeleteFileW(printer.OutputFile().c_str());
    PostMessageW(user.Frame(), WM_COMMAND, PrintArray, 0);
    user.AnswerBox(L"Print", IDOK);
    return printer.Output();
}

HFONT FontOfTheArray(const User& user)
{
    return reinterpret_cast<HFONT>(SendMessageW(user.Client(), WM_GETFONT, 0, 0));
}

// The numbers in the lines between the title and the page's number.
std::vector<int> NumbersOn(const PrintedLines& page)
{
    std::vector<int> numbers;
    for (std::size_t line = 1; line + 1 < page.size(); ++line) {
        std::istringstream text(page[line]);
        numbers.insert(numbers.end(), std::istream_iterator<int>(text), {});
    }
    return numbers;
}

void ExpectTitleAndNumber(const std::vector<PrintedLines>& pages)
{
    for (std::size_t i = 0; i < pages.size(); ++i) {
        ASSERT_GT(pages[i].size(), 2u) << "page " << i + 1 << " is blank";
        EXPECT_EQ(pages[i].front(), "Vantrel for Dyalog");
        EXPECT_EQ(pages[i].back(), "Page " + std::to_string(i + 1) + " of " + std::to_string(pages.size()));
    }
}

TEST_F(Printing, BAWideAndTallArrayTakesSeveralPages)
{
    const TestPrinter& printer = Printer();
    std::vector<PrintedLines> pages;
    RunEdit(interpreter, WideAndTall(),
            [&](User& user) { pages = ReadPages(PrintIt(user, printer), FontOfTheArray(user)); });
    ASSERT_GT(pages.size(), 3u);
    ExpectTitleAndNumber(pages);
    std::vector<int> firsts;
    std::vector<int> all;
    for (const PrintedLines& page : pages) {
        const std::vector<int> numbers = NumbersOn(page);
        ASSERT_FALSE(numbers.empty());
        firsts.push_back(numbers.front());
        all.insert(all.end(), numbers.begin(), numbers.end());
    }
    EXPECT_TRUE(std::is_sorted(firsts.begin(), firsts.end())) << "from left to right, then down";
    EXPECT_LT(firsts[1] - firsts[0], 40) << "the second page goes on in the first row";
    std::sort(all.begin(), all.end());
    std::vector<int> expected(150 * 40);
    std::iota(expected.begin(), expected.end(), 1000);
    EXPECT_EQ(all, expected) << "each number is printed once and whole";
}

// What the library has asked of the printer, and what happens when it has a number of pages.
struct Document {
    int pages = 0;
    int ended = 0;
    int aborted = 0;
    int pagesBeforeClose = 0;
    HWND frame = nullptr;
};
Document g_document;

int WINAPI CountingEndPage(HDC printer)
{
    if (++g_document.pages == g_document.pagesBeforeClose) PostMessageW(g_document.frame, WM_CLOSE, 0, 0);
    return EndPage(printer);
}

int WINAPI CountingEndDoc(HDC printer)
{
    ++g_document.ended;
    return EndDoc(printer);
}

int WINAPI CountingAbortDoc(HDC printer)
{
    ++g_document.aborted;
    return AbortDoc(printer);
}

// Leads the library's calls about a document through the counters, for as long as it lives.
class CountedDocument {
public:
    CountedDocument()
    {
        g_document = {};
        Lead("EndPage", reinterpret_cast<void*>(&CountingEndPage));
        Lead("EndDoc", reinterpret_cast<void*>(&CountingEndDoc));
        Lead("AbortDoc", reinterpret_cast<void*>(&CountingAbortDoc));
    }
    ~CountedDocument()
    {
        for (const auto& [routine, before] : before_)
            SetImport(routine, before);
    }
    CountedDocument(const CountedDocument&) = delete;
    CountedDocument& operator=(const CountedDocument&) = delete;

private:
    void Lead(const char* routine, void* counter)
    {
        before_.emplace_back(routine, GetImport(routine));
        SetImport(routine, counter);
    }
    std::vector<std::pair<const char*, void*>> before_;
};

TEST_F(Printing, BClosingTheWindowGivesThePagesUp)
{
    const TestPrinter& printer = Printer();
    const CountedDocument counted;
    constexpr int Enough = 100; // of over a thousand pages
    std::vector<double> values(60000 * 20, 1234);
    std::string output;
    RunEdit(interpreter, NumericArray({60000, 20}, values), [&](User& user) {
        g_document.frame = user.Frame();
        g_document.pagesBeforeClose = 3;
        PostMessageW(user.Frame(), WM_COMMAND, PrintArray, 0);
        user.AnswerBox(L"Print", IDOK);
        for (int i = 0; i < 1500 && user.IsOpen(); ++i)
            Sleep(10);
        user.Expect(!user.IsOpen(), "the window closes");
        output = printer.OutputNow();
    });
    EXPECT_GE(g_document.pages, 3);
    EXPECT_LT(g_document.pages, Enough);
    EXPECT_EQ(g_document.aborted, 1);
    EXPECT_EQ(g_document.ended, 0) << "the document is said to be whole";
    EXPECT_LT(CountPages(output), Enough);
}

TEST_F(Printing, CASmallArrayTakesOnePageAndACancelledDialogNone)
{
    const TestPrinter& printer = Printer();
    std::vector<PrintedLines> pages;
    RunEdit(interpreter, NestedArray({2}, {Text(u"abc"), Text(u"defg")}), [&](User& user) {
        PostMessageW(user.Frame(), WM_COMMAND, PrintArray, 0);
        user.AnswerBox(L"Print", IDCANCEL);
        user.Expect(GetFileAttributesW(printer.OutputFile().c_str()) == INVALID_FILE_ATTRIBUTES,
                    "nothing was printed");
        pages = ReadPages(PrintIt(user, printer), FontOfTheArray(user));
    });
    EXPECT_EQ(pages, (std::vector<PrintedLines>{{"Vantrel for Dyalog", "abcdefg", "Page 1 of 1"}}));
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
        before = CountPages(PrintIt(user, printer));
        PostMessageW(user.Frame(), WM_COMMAND, PageSetup, 0);
        SetLeftAndRightMargin(user.WaitForBox(SetupTitle), L"2.5");
        user.AnswerBox(SetupTitle, IDOK);
    });
    RunEdit(interpreter, WideAndTall(), [&](User& user) { narrow = CountPages(PrintIt(user, printer)); });
    EXPECT_GT(before, 0);
    EXPECT_GT(narrow, before);
}

TEST_F(Printing, ETheToolPrintsToo)
{
    const TestPrinter& printer = Printer();
    std::string output;
    RunEdit(interpreter, Text(u"abc"), [&](User& user) {
        PressTool(user, PrintArray);
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
