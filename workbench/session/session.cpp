#include "workbench/session/session.h"

#include <new>
#include <optional>
#include <stdexcept>

#include "workbench/formats/document.h"
#include "workbench/formats/utf.h"
#include "workbench/session/options.h"

namespace vantrel::workbench {
namespace {

// Ends a run early; the message has been given.
struct Ended {
    int exitCode;
};

std::u16string BaseName(const std::u16string& path)
{
    const std::size_t slash = path.find_last_of(u"/\\");
    return slash == std::u16string::npos ? path : path.substr(slash + 1);
}

class Session {
public:
    Session(const Options& options, const Platform& platform) : options_(options), platform_(platform) {}

    int Run()
    {
        ReadFile();
        const EditOutcome result = Edit();
        for (const std::string& complaint : result.complaints)
            Complain("books: " + complaint);
        if (!result.error.empty()) {
            Complain("the editor reports " + result.error);
            return ExitCode::EditorError;
        }
        if (result.hasResult && !result.unchanged)
            WriteSaved(result.result);
        else
            WriteUnchanged();
        return result.complaints.empty() ? ExitCode::Success : ExitCode::BooksOutOfBalance;
    }

private:
    void Complain(const std::string& line) const { platform_.complain(platform_.state, line); }
    void ComplainAbout(const std::u16string& file, const std::string& reason) const
    {
        Complain(Utf8FromUtf16(file) + ": " + reason);
    }

    [[noreturn]] void EndWith(int exitCode, const std::string& message) const
    {
        Complain(message);
        throw Ended{exitCode};
    }

    void ReadFile()
    {
        std::string bytes;
        std::string reason;
        const std::string name = Utf8FromUtf16(options_.file);
        if (!platform_.readFile(platform_.state, options_.file, bytes, reason)) {
            EndWith(ExitCode::UnreadableFile, name + ": " + reason);
        }
        try {
            document_ = ReadDocument(*FormatOfName(options_.file), std::move(bytes));
        } catch (const FormatError& error) {
            EndWith(ExitCode::UnreadableFile, name + ": " + error.what());
        }
        for (const std::string& note : document_.notes)
            ComplainAbout(options_.file, note);
    }

    fake::Array Argument(const HostRow& host) const
    {
        fake::Array argument = document_.array;
        std::string reason;
        if (!host.accept(options_, argument, reason)) {
            EndWith(ExitCode::UnreadableFile, Utf8FromUtf16(options_.file) + ": " + reason);
        }
        return argument;
    }

    EditOutcome Edit() const
    {
        const HostRow& host = *FindHost(options_.host);
        EditorLibrary library;
        std::string reason;
        if (!platform_.loadLibrary(platform_.state, library, reason)) EndWith(ExitCode::EditorError, reason);
        try {
            const std::u16string title = options_.title.empty() ? BaseName(options_.file) : options_.title;
            return host.edit(options_, title, Argument(host), library);
        } catch (const EditorRefusal& refusal) {
            EndWith(ExitCode::EditorError, refusal.reason);
        } catch (const std::length_error& error) {
            EndWith(ExitCode::UnreadableFile, Utf8FromUtf16(options_.file) + ": " + error.what());
        }
    }

    std::string AsJson(const fake::Array& array) const
    {
        WriteContext context{options_.precision, {}};
        return WriteDocument(Format::Json, array, &document_, context);
    }

    void WriteUnchanged() const
    {
        ComplainAbout(options_.file, "unchanged");
        if (options_.output.empty()) return;
        if (*FormatOfName(options_.output) == document_.format)
            WriteBytes(options_.output, document_.bytes, document_.array);
        else
            WriteArray(document_.array);
    }

    void WriteSaved(const fake::Array& array) const
    {
        if (options_.output.empty())
            platform_.print(platform_.state, AsJson(array));
        else
            WriteArray(array);
    }

    void WriteArray(const fake::Array& array) const
    {
        WriteContext context{options_.precision, {}};
        std::string bytes;
        try {
            bytes = WriteDocument(*FormatOfName(options_.output), array, &document_, context);
        } catch (const FormatError& error) {
            const std::u16string other = options_.output + u".json";
            WriteBytes(other, AsJson(array), array);
            EndWith(ExitCode::CannotWrite, Utf8FromUtf16(options_.output) + ": " + error.what() +
                                               "; written to " + Utf8FromUtf16(other) + " instead");
        }
        WriteBytes(options_.output, bytes, array);
        for (const std::string& note : context.notes)
            ComplainAbout(options_.output, note);
    }

    // What cannot be written goes to the standard output: it must not be lost.
    void WriteBytes(const std::u16string& name, const std::string& bytes, const fake::Array& array) const
    {
        std::string reason;
        if (platform_.writeFile(platform_.state, name, bytes, reason)) return;
        platform_.print(platform_.state, AsJson(array));
        EndWith(ExitCode::CannotWrite,
                Utf8FromUtf16(name) + ": " + reason + "; the array went to the standard output");
    }

    const Options& options_;
    const Platform& platform_;
    Document document_;
};

int RunSession(const Options& options, const Platform& platform)
{
    try {
        return Session(options, platform).Run();
    } catch (const Ended& ended) {
        return ended.exitCode;
    } catch (const std::bad_alloc&) {
        platform.complain(platform.state, Utf8FromUtf16(options.file) + ": not enough memory");
        return ExitCode::UnreadableFile;
    }
}

} // namespace

int RunWorkbench(const std::vector<std::u16string>& arguments, const Platform& platform)
{
    const Options options = ParseOptions(arguments);
    switch (options.request) {
    case Request::Help: platform.print(platform.state, HelpText()); return ExitCode::Success;
    case Request::Version: platform.print(platform.state, VersionText()); return ExitCode::Success;
    case Request::Refuse:
        platform.complain(platform.state, options.refusal + " (--help tells more)");
        return ExitCode::Usage;
    case Request::Edit: break;
    }
    return RunSession(options, platform);
}

} // namespace vantrel::workbench
