// A printer that writes PostScript into a file, for as long as it lives.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace vantrel::ui {

class TestPrinter {
public:
    TestPrinter();
    ~TestPrinter();
    TestPrinter(const TestPrinter&) = delete;
    TestPrinter& operator=(const TestPrinter&) = delete;

    // False: the system has no printing.
    [[nodiscard]] bool IsThere() const { return printer_ != nullptr; }
    // What was printed last, complete once the printer has written its end mark; empty when nothing came in time.
    [[nodiscard]] std::string Output() const;
    // What there is of it now.
    [[nodiscard]] std::string OutputNow() const;
    [[nodiscard]] const std::wstring& OutputFile() const { return output_; }

private:
    std::wstring description_;
    std::wstring output_;
    HANDLE printer_ = nullptr;
};

// Pages of a PostScript document.
[[nodiscard]] int CountPages(const std::string& postScript);

// The lines of text on a page from top to bottom, each from left to right.
using PrintedLines = std::vector<std::string>;
// What can be read on each page of a PostScript document whose characters are all of the font's face. Characters that begin outside of what
// is clipped, and those beyond ASCII, are left out.
[[nodiscard]] std::vector<PrintedLines> ReadPages(const std::string& postScript, HFONT font);

} // namespace vantrel::ui
