#include "workbench/session/options.h"

#include <optional>

#include "workbench/formats/document.h"
#include "workbench/formats/utf.h"
#include "workbench/session/hosts.h"

namespace vantrel::workbench {
namespace {

constexpr char helpText[] =
    R"(Opens the array in a file in the Vantrel editor, as an interpreter would, and writes what was saved.

usage: vantrel-workbench [options] FILE

  --host NAME     the interpreter to play: dyalog (the default); aplx, which has no complex or decimal numbers; or matlab,
                  which has no decimal ones. The last two show 10 digits and name the window themselves
  --classic       play Dyalog's Classic edition, whose characters are those of its 256-character atomic vector
  --title T       Dyalog: the window's title (default: the file's name)
  --precision N   Dyalog: digits of the numbers shown, 1 to 17 (default 15, which shows every decimal fraction as it is
                  written; more shows how it is stored)
  -o OUT          write what was saved to OUT, replacing it; OUT may be FILE and may have another format
  --help          this text
  --version       the version

FILE and OUT are .json, .csv, .tsv, .npy or .ccdr (the editor's own image of an array).

Saved without -o, the array is written to the standard output as JSON and no file is touched. Closed without saving,
OUT gets FILE's own bytes (or FILE's array, if OUT has another format), nothing goes to the standard output, and the
message "unchanged" to the standard error. Files are written under a temporary name beside OUT and then renamed. What
OUT's format cannot hold goes to OUT.json instead; what cannot be written at all goes to the standard output as JSON.

Values that were not edited are written as they stood in FILE: numbers with all their digits, texts with their quotes
or escapes, objects with the order of their names.

  JSON   rectangular arrays of numbers (or of true and false) are vectors, matrices and so on; strings character
         vectors; null the empty numeric vector; [] an empty nested vector; other arrays nested vectors; objects
         two-column nested matrices of name and value
  CSV    a nested matrix, the header its first row; a cell is a number if it is written like one (not quoted, no
         leading zeros, at most 15 digits), else a character vector
  NPY    numbers and strings of any size, in either byte and axis order
  CCDR   versions 0 and 1; decimal elements come without their digits

Whole numbers that need more than 32 bits are floating-point numbers in the array. The editor saves such numbers as
32-bit ones: left alone they are written as they stood in FILE (a message says so), but a new one that is typed in
arrives as -2147483648.

exit codes
  0  saved, or closed unchanged
  2  the command line is wrong
  3  FILE cannot be read or understood
  4  the editor cannot be loaded or reported an error
  5  the result cannot be written, or not in OUT's format
  6  the editor did not leave the interpreter's arrays in order (a bug; the result was written)
)";

class Parser {
public:
    explicit Parser(const std::vector<std::u16string>& arguments) : arguments_(arguments) {}

    Options Parse()
    {
        while (at_ < arguments_.size() && options_.request == Request::Edit)
            TakeOne(arguments_[at_++]);
        if (options_.request == Request::Edit) Complete();
        return options_;
    }

private:
    void Refuse(const std::string& reason)
    {
        options_.request = Request::Refuse;
        options_.refusal = reason;
    }

    std::u16string TakeValue(const std::u16string& name)
    {
        if (at_ < arguments_.size()) return arguments_[at_++];
        Refuse(Utf8FromUtf16(name) + " needs a value");
        return {};
    }

    void TakeOne(const std::u16string& argument)
    {
        if (argument == u"--help")
            options_.request = Request::Help;
        else if (argument == u"--version")
            options_.request = Request::Version;
        else if (argument == u"--classic")
            options_.classic = true;
        else if (argument == u"--title")
            options_.title = TakeValue(argument);
        else if (argument == u"-o")
            options_.output = TakeValue(argument);
        else if (argument == u"--host")
            TakeHost(TakeValue(argument));
        else if (argument == u"--precision")
            TakePrecision(TakeValue(argument));
        else if (argument.size() > 1 && argument[0] == u'-')
            Refuse("unknown option " + Utf8FromUtf16(argument));
        else if (!options_.file.empty())
            Refuse("more than one file is given");
        else
            options_.file = argument;
    }

    void TakeHost(const std::u16string& name)
    {
        if (options_.request != Request::Edit) return;
        options_.host = name;
        if (FindHost(name) == nullptr) Refuse("unknown host " + Utf8FromUtf16(name));
    }

    void TakePrecision(const std::u16string& text)
    {
        if (options_.request != Request::Edit) return;
        int value = 0;
        for (const char16_t unit : text)
            value = unit >= u'0' && unit <= u'9' && value < 100 ? value * 10 + (unit - u'0') : 100;
        if (value < 1 || value > 17)
            Refuse("the precision is a number from 1 to 17");
        else
            options_.precision = value;
    }

    void Complete()
    {
        if (options_.file.empty())
            Refuse("no file is given");
        else if (!FormatOfName(options_.file))
            RefuseFormat(options_.file);
        else if (!options_.output.empty() && !FormatOfName(options_.output))
            RefuseFormat(options_.output);
    }

    void RefuseFormat(const std::u16string& name)
    {
        Refuse(Utf8FromUtf16(name) + ": the format is told by the extension, .json .csv .tsv .npy or .ccdr");
    }

    const std::vector<std::u16string>& arguments_;
    std::size_t at_ = 0;
    Options options_;
};

} // namespace

Options ParseOptions(const std::vector<std::u16string>& arguments)
{
    return Parser(arguments).Parse();
}

const char* HelpText()
{
    return helpText;
}

const char* VersionText()
{
    return "vantrel-workbench 1.1.0.92\n";
}

} // namespace vantrel::workbench
