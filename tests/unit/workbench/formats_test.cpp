#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>

#include "workbench/formats/align.h"
#include "workbench/formats/document.h"
#include "workbench/formats/numbers.h"
#include "workbench/formats/utf.h"

namespace vantrel::workbench {
namespace {

namespace fs = std::filesystem;

TEST(WorkbenchUtf, ConvertsBothWays)
{
    EXPECT_EQ(Utf16FromUtf8("a\xC3\xA9\xE2\x8D\xB3\xF0\x9F\x98\x80"), u"a\u00E9\u2373\U0001F600");
    EXPECT_EQ(Utf8FromUtf16(u"a\u00E9\u2373\U0001F600"), "a\xC3\xA9\xE2\x8D\xB3\xF0\x9F\x98\x80");
    const char16_t lone[] = {0xDC00, 'x'};
    EXPECT_EQ(Utf8FromUtf16({lone, 2}), "\xED\xB0\x80x");
}

TEST(WorkbenchUtf, RefusesWhatIsNotUtf8)
{
    for (const char* bytes :
         {"\x80", "\xC0\x80", "\xC3", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF5", "\xC3("}) {
        EXPECT_THROW(Utf16FromUtf8(bytes), FormatError);
    }
}

TEST(WorkbenchNumbers, TextIsTheShortestThatReadsBack)
{
    EXPECT_EQ(NumberToText(100000), "100000");
    EXPECT_EQ(NumberToText(-0.5), "-0.5");
    EXPECT_EQ(NumberToText(9007199254740992.0), "9007199254740992");
    EXPECT_EQ(NumberToText(1e300), "1e+300");
    EXPECT_EQ(NumberToText(0.1 + 0.2), "0.30000000000000004");
}

TEST(WorkbenchNumbers, RecognisesJsonNumbers)
{
    for (const char* text : {"0", "-0", "10", "1.5", "1e5", "1E-05", "-1.50e+3"})
        EXPECT_TRUE(IsJsonNumber(text)) << text;
    for (const char* text : {"", "-", "01", "1.", ".5", "+1", "1e", "1e+", "1 ", "NaN"})
        EXPECT_FALSE(IsJsonNumber(text)) << text;
}

TEST(WorkbenchNumbers, KnowsWhichDigitsADoubleHolds)
{
    EXPECT_TRUE(HoldsAllDigits("9007199254740992", 9007199254740992.0));
    EXPECT_FALSE(HoldsAllDigits("9007199254740993", 9007199254740992.0));
    EXPECT_TRUE(HoldsAllDigits("18446744073709551616", 18446744073709551616.0));
    EXPECT_TRUE(HoldsAllDigits("0.1", 0.1));
    EXPECT_FALSE(HoldsAllDigits("1.000000000000000005", 1));
}

TEST(WorkbenchNumbers, TellsEditsFromWhatTheEditorDoesByItself)
{
    EXPECT_EQ(CompareNumbers(1.5, 1.5, 10), NumberChange::None);
    EXPECT_EQ(CompareNumbers(1.0 / 3, 0.3333333333, 10), NumberChange::None);
    EXPECT_EQ(CompareNumbers(1.0 / 3, 0.3333333333, 15), NumberChange::Edited);
    EXPECT_EQ(CompareNumbers(3e9, -2147483648.0, 15), NumberChange::Shortened);
    EXPECT_EQ(CompareNumbers(-3e9, -2147483648.0, 15), NumberChange::Shortened);
    EXPECT_EQ(CompareNumbers(3e9 + 0.5, -2147483648.0, 15), NumberChange::Edited);
    EXPECT_EQ(CompareNumbers(2147483647, -2147483648.0, 15), NumberChange::Edited);
    EXPECT_EQ(CompareNumbers(std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::quiet_NaN(), 10),
              NumberChange::None);
}

std::vector<std::size_t> Aligned(const std::string& now, const std::string& then)
{
    return AlignItems(now.size(), then.size(),
                      [&](std::size_t a, std::size_t b) { return now[a] == then[b]; });
}

TEST(WorkbenchAlign, FindsWhatIsTheSameAtBothEnds)
{
    EXPECT_EQ(Aligned("abc", "abc"), (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_EQ(Aligned("axc", "abc"), (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_EQ(Aligned("abNcd", "abcd"), (std::vector<std::size_t>{0, 1, noMatch, 2, 3}));
    EXPECT_EQ(Aligned("acd", "abcd"), (std::vector<std::size_t>{0, 2, 3}));
    EXPECT_EQ(Aligned("", "ab"), (std::vector<std::size_t>{}));
    EXPECT_EQ(Aligned("ab", ""), (std::vector<std::size_t>{noMatch, noMatch}));
    EXPECT_EQ(Aligned("aaa", "aa"), (std::vector<std::size_t>{0, 1, noMatch}));
}

TEST(WorkbenchDocument, FormatIsToldByTheExtension)
{
    EXPECT_EQ(FormatOfName(u"C:\\x\\Data.JSON"), Format::Json);
    EXPECT_EQ(FormatOfName(u"a.csv"), Format::Csv);
    EXPECT_EQ(FormatOfName(u"a.Tsv"), Format::Tsv);
    EXPECT_EQ(FormatOfName(u"\u2373.npy"), Format::Npy);
    EXPECT_EQ(FormatOfName(u"a.ccdr"), Format::Ccdr);
    EXPECT_EQ(FormatOfName(u"json"), std::nullopt);
    EXPECT_EQ(FormatOfName(u"a.txt"), std::nullopt);
}

TEST(WorkbenchDocument, GoesFromOneFormatIntoAnother)
{
    const Document document = ReadDocument(Format::Json, "[[1, 2], [3, 4]]");
    WriteContext context;
    EXPECT_EQ(WriteDocument(Format::Csv, document.array, &document, context), "1,2\r\n3,4\r\n");
    const std::string npy = WriteDocument(Format::Npy, document.array, &document, context);
    EXPECT_TRUE(fake::SameValues(ReadDocument(Format::Npy, npy).array, document.array));
    const std::string ccdr = WriteDocument(Format::Ccdr, document.array, &document, context);
    EXPECT_TRUE(fake::SameValues(ReadDocument(Format::Ccdr, ccdr).array, document.array));
}

// --- real files ---

std::string Contents(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A JSON text without the white space between its tokens, which writing may lay out anew.
std::string WithoutLayout(const std::string& json)
{
    std::string out;
    bool quoted = false;
    for (std::size_t i = 0; i < json.size(); ++i) {
        if (quoted && json[i] == '\\')
            out += json[i++];
        else if (json[i] == '"')
            quoted = !quoted;
        if (quoted || std::string(" \t\r\n").find(json[i]) == std::string::npos) out += json[i];
    }
    return out;
}

// What the file is written as when nothing was edited; empty where it was refused with a reason.
std::string Rewritten(const fs::path& path, std::string* refusal)
{
    const Format format = *FormatOfName(path.u16string());
    try {
        const Document document = ReadDocument(format, Contents(path));
        WriteContext context;
        return WriteDocument(format, document.array, &document, context);
    } catch (const FormatError& error) {
        *refusal = error.what();
        return {};
    }
}

void ExpectToComeBack(const fs::path& path)
{
    std::string refusal;
    const std::string out = Rewritten(path, &refusal);
    const bool json = FormatOfName(path.u16string()) == Format::Json;
    if (!refusal.empty()) {
        // The only real files that may be refused are tests of what a reader is free to refuse.
        EXPECT_TRUE(path.filename().string().starts_with("i_") ||
                    path.filename().string().starts_with("string_"))
            << path << ": " << refusal;
        return;
    }
    if (json)
        EXPECT_EQ(WithoutLayout(out), WithoutLayout(Contents(path))) << path;
    else
        EXPECT_EQ(out, Contents(path)) << path;
}

std::size_t ExpectFolderToComeBack(const fs::path& folder)
{
    std::size_t files = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file() || !FormatOfName(entry.path().u16string())) continue;
        ExpectToComeBack(entry.path());
        ++files;
    }
    return files;
}

TEST(WorkbenchRealFiles, ExamplesComeBack)
{
    const fs::path root = VANTREL_SOURCE_DIR;
    EXPECT_GE(ExpectFolderToComeBack(root / "examples"), 4u);
}

TEST(WorkbenchRealFiles, SharedDataComeBack)
{
    const char* folder = std::getenv("VANTREL_SHARED_DATA");
    if (folder == nullptr || !fs::is_directory(folder)) return; // only where somebody offers further files
    EXPECT_GT(ExpectFolderToComeBack(folder), 0u);
}

} // namespace
} // namespace vantrel::workbench
