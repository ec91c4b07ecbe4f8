#pragma once

#include <string>
#include <vector>

// The workbench's command line.
namespace vantrel::workbench {

enum class Request { Edit, Help, Version, Refuse };

struct Options {
    Request request = Request::Edit;
    std::string refusal; // why, for Request::Refuse
    std::u16string file;
    std::u16string output;           // empty: none was given
    std::u16string title;            // empty: the file's name
    std::u16string host = u"dyalog"; // the name of a row of the host table
    bool classic = false;
    int precision = 15;
};

// The process's exit codes, as --help lists them.
namespace ExitCode {
inline constexpr int Success = 0;
inline constexpr int Usage = 2;
inline constexpr int UnreadableFile = 3;
inline constexpr int EditorError = 4;
inline constexpr int CannotWrite = 5;
inline constexpr int BooksOutOfBalance = 6;
} // namespace ExitCode

// `arguments` without the program's name.
Options ParseOptions(const std::vector<std::u16string>& arguments);
const char* HelpText();
const char* VersionText();

} // namespace vantrel::workbench
