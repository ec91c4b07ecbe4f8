// A printer that writes PostScript into a file, for as long as it lives.
#pragma once

#include <windows.h>

#include <string>

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
    [[nodiscard]] const std::wstring& OutputFile() const { return output_; }

private:
    std::wstring description_;
    std::wstring output_;
    HANDLE printer_ = nullptr;
};

// Pages of a PostScript document.
[[nodiscard]] int CountPages(const std::string& postScript);

} // namespace vantrel::ui
