#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <optional>

#include "hosts/fake_aplx.h"
#include "hosts/fake_matlab.h"
#include "unit/hosts_fake/small_client.h"
#include "workbench/session/options.h"
#include "workbench/session/session.h"

namespace vantrel::workbench {
namespace {

using namespace fake;

// An auxiliary processor that hands back what was assigned, or an array of its own.
std::vector<std::uint8_t> g_assigned;
std::optional<AplxRecord> g_saved;

std::int64_t SmallProcessor(std::int64_t operation, std::int64_t data, std::int64_t, std::int64_t size,
                            std::int64_t, std::int64_t, std::int64_t, std::int64_t)
{
    if (operation == 3) {
        const auto* record = reinterpret_cast<const std::uint8_t*>(data);
        std::int64_t length = 0;
        std::memcpy(&length, record + 4, sizeof length);
        g_assigned.assign(record, record + length);
    }
    if (operation != 4) return 0;
    const AplxRecord& result = g_saved ? *g_saved : g_assigned;
    if (static_cast<std::int64_t>(result.size()) > size) return AplxStatus::TooLong;
    std::copy(result.begin(), result.end(), reinterpret_cast<std::uint8_t*>(data));
    return 0;
}

// A MEX function that gives back a duplicate of its argument, or a value of its own, or raises an error.
std::optional<MatlabValue> g_mexResult;
std::optional<MatlabError> g_mexError;
bool g_mexLeaks = false;

void SmallMex(int, mxArray** plhs, int, const mxArray** prhs)
{
    if (g_mexError) throw *g_mexError;
    if (g_mexLeaks) Matlab::Current().Make(TextValue(u"leaked"));
    using Duplicate = mxArray* (*)(const mxArray*);
    const auto duplicate = reinterpret_cast<Duplicate>(Matlab::Find("mxDuplicateArray"));
    plhs[0] = g_mexResult ? Matlab::Current().Make(*g_mexResult) : duplicate(prhs[0]);
}

// A machine of maps, and an editor that does what the test says.
struct Machine {
    std::map<std::u16string, std::string> files;
    bool canWrite = true;
    bool canLoad = true;
    bool hasEntries = true;
    std::string printed;
    std::string complained;

    static void* FindEntry(void* state, const char* name, std::string& reason)
    {
        const EntryPoints entries = SmallClient::Entries();
        const std::map<std::string, void*> known = {
            {"DyalogGetInterpreterFunctions", reinterpret_cast<void*>(entries.getInterpreterFunctions)},
            {"DyalogEditArray", reinterpret_cast<void*>(entries.editArray)},
            {"DyalogEditArrayTitle", reinterpret_cast<void*>(entries.editArrayTitle)},
            {"processor", reinterpret_cast<void*>(&SmallProcessor)},
            {"mexFunction", reinterpret_cast<void*>(&SmallMex)}};
        reason = std::string("no entry ") + name;
        const auto found = known.find(name);
        return static_cast<Machine*>(state)->hasEntries && found != known.end() ? found->second : nullptr;
    }

    int Run(const std::vector<std::u16string>& arguments)
    {
        Platform platform;
        platform.state = this;
        platform.readFile = [](void* state, const std::u16string& name, std::string& bytes,
                               std::string& reason) {
            auto& self = *static_cast<Machine*>(state);
            reason = "no such file";
            if (self.files.count(name) == 0) return false;
            bytes = self.files[name];
            return true;
        };
        platform.writeFile = [](void* state, const std::u16string& name, const std::string& bytes,
                                std::string& reason) {
            auto& self = *static_cast<Machine*>(state);
            reason = "disk full";
            if (self.canWrite) self.files[name] = bytes;
            return self.canWrite;
        };
        platform.loadLibrary = [](void* state, EditorLibrary& library, std::string& reason) {
            reason = "no editor";
            library = {state, FindEntry};
            return static_cast<Machine*>(state)->canLoad;
        };
        platform.print = [](void* state, std::string_view bytes) {
            static_cast<Machine*>(state)->printed += bytes;
        };
        platform.complain = [](void* state, std::string_view line) {
            static_cast<Machine*>(state)->complained += std::string(line) + "\n";
        };
        return RunWorkbench(arguments, platform);
    }
};

void CloseUnchanged()
{
    SmallClient::Get().body = [](Block* argument, Block** slot) { SmallClient::Get().Store(slot, argument); };
}

void SaveVector()
{
    SmallClient::Get().body = [](Block*, Block** slot) {
        SmallClient& client = SmallClient::Get();
        const auto localp = client.NewVector(7, 8);
        client.Store(slot, localp->block);
        client.FreeLocalp(localp.get());
    };
}

TEST(WorkbenchSession, PrintsWhatWasSavedAsJson)
{
    Machine machine;
    machine.files[u"a.json"] = "[1, 2]\n";
    SaveVector();
    EXPECT_EQ(machine.Run({u"a.json"}), ExitCode::Success);
    EXPECT_EQ(machine.printed, "[7, 8]\n");
    EXPECT_EQ(machine.files[u"a.json"], "[1, 2]\n");
    EXPECT_EQ(machine.complained, "");
}

TEST(WorkbenchSession, WritesWhatWasSavedInTheOutputsFormat)
{
    Machine machine;
    machine.files[u"a.json"] = "[1.0, 2]";
    SaveVector();
    EXPECT_EQ(machine.Run({u"a.json", u"-o", u"a.json"}), ExitCode::Success);
    EXPECT_EQ(machine.files[u"a.json"], "[7, 8]");
    EXPECT_EQ(machine.Run({u"-o", u"b.csv", u"a.json"}), ExitCode::Success);
    EXPECT_EQ(machine.files[u"b.csv"], "7,8\r\n");
    EXPECT_EQ(machine.printed, "");
}

TEST(WorkbenchSession, ClosedUnchangedGivesTheOriginalBytes)
{
    Machine machine;
    const std::string odd = "[ 1.0 ,2 ]  ";
    machine.files[u"a.json"] = odd;
    CloseUnchanged();
    EXPECT_EQ(machine.Run({u"a.json", u"-o", u"b.json"}), ExitCode::Success);
    EXPECT_EQ(machine.files[u"b.json"], odd);
    EXPECT_EQ(machine.complained, "a.json: unchanged\n");
    EXPECT_EQ(machine.Run({u"a.json", u"-o", u"b.csv"}), ExitCode::Success);
    EXPECT_EQ(machine.files[u"b.csv"], "1,2\r\n");
    EXPECT_EQ(machine.Run({u"a.json"}), ExitCode::Success);
    EXPECT_EQ(machine.printed, "");
}

TEST(WorkbenchSession, PassesTitleEditionAndPrecision)
{
    Machine machine;
    machine.files[u"dir\\a.json"] = "\"\\u2373\"";
    std::uint32_t typeWord = 0;
    std::int64_t precision = 0;
    SmallClient::Get().body = [&](Block* argument, Block** slot) {
        std::int64_t origin = 0;
        SmallClient::Get().Call<void>(3, 2, &origin, &precision);
        typeWord = argument->typeWord;
        SmallClient::Get().Store(slot, argument);
    };
    EXPECT_EQ(machine.Run({u"dir\\a.json", u"--classic", u"--precision", u"9", u"--host", u"dyalog"}),
              ExitCode::Success);
    EXPECT_EQ(SmallClient::Get().lastTitle, u"a.json");
    EXPECT_EQ(typeWord >> 8 & 15, static_cast<std::uint32_t>(ElementType::AtomicCharacter));
    EXPECT_EQ(precision, 9);
    EXPECT_EQ(machine.Run({u"dir\\a.json", u"--title", u"T"}), ExitCode::Success);
    EXPECT_EQ(SmallClient::Get().lastTitle, u"T");
    EXPECT_EQ(precision, 15);
}

TEST(WorkbenchSession, PlaysAplx)
{
    Machine machine;
    machine.files[u"a.json"] = "[1, 2]";
    g_saved.reset();
    EXPECT_EQ(machine.Run({u"--host", u"aplx", u"a.json"}), ExitCode::Success);
    EXPECT_EQ(machine.complained, "a.json: unchanged\n");
    EXPECT_EQ(machine.printed, "");
    g_saved = MakeAplxRecord(FloatArray({2}, {7, 8}));
    EXPECT_EQ(machine.Run({u"--host", u"aplx", u"a.json", u"-o", u"b.json"}), ExitCode::Success);
    EXPECT_EQ(machine.files[u"b.json"], "[7, 8]");
    machine.complained.clear();
    (*g_saved)[12] = 99;
    EXPECT_EQ(machine.Run({u"--host", u"aplx", u"a.json"}), ExitCode::BooksOutOfBalance);
    EXPECT_NE(machine.complained.find("books: "), std::string::npos);
    g_saved.reset();
    machine.complained.clear();
    machine.files[u"a.json"] = "\"\\u0416\"";
    EXPECT_EQ(machine.Run({u"--host", u"aplx", u"a.json"}), ExitCode::UnreadableFile);
    EXPECT_NE(machine.complained.find("character"), std::string::npos) << machine.complained;
}

TEST(WorkbenchSession, ReportsWhatAplxReports)
{
    Machine machine;
    machine.files[u"a.json"] = "[1, 2]";
    g_saved = AplxRecord();
    EXPECT_EQ(machine.Run({u"--host", u"aplx", u"a.json"}), ExitCode::EditorError);
    EXPECT_EQ(machine.complained, "the editor reports an error and gives no array back\n");
    machine.complained.clear();
    g_saved = AplxRecord(std::size_t{1} << 27);
    EXPECT_EQ(machine.Run({u"--host", u"aplx", u"a.json"}), ExitCode::EditorError);
    EXPECT_EQ(machine.complained,
              "the editor reports an array that is too long for the interpreter's buffer\n");
    g_saved.reset();
}

class WorkbenchMatlab : public testing::Test {
protected:
    void SetUp() override
    {
        g_mexResult.reset();
        g_mexError.reset();
        g_mexLeaks = false;
    }
    int Run(const std::string& json)
    {
        machine.files[u"a.json"] = json;
        machine.printed.clear();
        machine.complained.clear();
        return machine.Run({u"--host", u"matlab", u"a.json"});
    }
    Machine machine;
};

TEST_F(WorkbenchMatlab, ClosingUnchangedGivesNothing)
{
    EXPECT_EQ(Run("[[1, 2], [3, 4]]"), ExitCode::Success);
    EXPECT_EQ(machine.complained, "a.json: unchanged\n");
    EXPECT_EQ(machine.printed, "");
}

TEST_F(WorkbenchMatlab, WhatIsSavedKeepsItsShape)
{
    g_mexResult = NumberValue<std::int32_t>(MatlabClass::Int32, {2, 2}, {1, 3, 2, 4});
    EXPECT_EQ(Run("[[0, 0], [0, 0]]"), ExitCode::Success);
    EXPECT_EQ(machine.printed, "[[1, 2], [3, 4]]");
    // MATLAB makes the scalar, the vector and the matrix of one item alike.
    g_mexResult = DoubleValue({1, 1}, {7.5});
    EXPECT_EQ(Run("1"), ExitCode::Success);
    EXPECT_EQ(machine.printed, "7.5");
    EXPECT_EQ(Run("[1]"), ExitCode::Success);
    EXPECT_EQ(machine.printed, "[7.5]");
    EXPECT_EQ(Run("[[1]]"), ExitCode::Success);
    EXPECT_EQ(machine.printed, "[[7.5]]");
    g_mexResult = CellValue({1, 2}, {TextValue(u"x"), LogicalValue({1, 1}, {1})});
    EXPECT_EQ(Run("[\"a\", [1]]"), ExitCode::Success);
    EXPECT_EQ(machine.printed, "[\"x\", [1]]");
}

TEST_F(WorkbenchMatlab, ReportsErrorsAndBooks)
{
    g_mexError = MatlabError{"quillmoor_vantrel:DomainError", "Array is sparse"};
    EXPECT_EQ(Run("1"), ExitCode::EditorError);
    EXPECT_EQ(machine.complained,
              "the editor reports error quillmoor_vantrel:DomainError: Array is sparse\n");
    g_mexError.reset();
    g_mexLeaks = true;
    EXPECT_EQ(Run("1"), ExitCode::BooksOutOfBalance);
    EXPECT_EQ(machine.complained, "books: 1 arrays were never destroyed\na.json: unchanged\n");
    g_mexLeaks = false;
    g_mexResult = StructValue({1, 1}, {"f"}, {TextValue(u"v")});
    EXPECT_EQ(Run("1"), ExitCode::EditorError);
    machine.hasEntries = false;
    EXPECT_EQ(Run("1"), ExitCode::EditorError);
}

TEST(WorkbenchSession, RefusesCommandLines)
{
    const std::vector<std::vector<std::u16string>> lines = {{},
                                                            {u"a.json", u"b.json"},
                                                            {u"--nonsense", u"a.json"},
                                                            {u"a.json", u"-o"},
                                                            {u"a.txt"},
                                                            {u"a.json", u"-o", u"b.x"},
                                                            {u"--host", u"other", u"a.json"},
                                                            {u"a.json", u"--precision", u"18"},
                                                            {u"a.json", u"--precision", u"0"},
                                                            {u"a.json", u"--precision", u"x"},
                                                            {u"a.json", u"--precision", u"99999999999"}};
    for (const auto& line : lines) {
        Machine machine;
        machine.files[u"a.json"] = "1";
        EXPECT_EQ(machine.Run(line), ExitCode::Usage);
        EXPECT_NE(machine.complained, "");
    }
}

TEST(WorkbenchSession, HelpNamesEveryExitCodeAndOption)
{
    Machine machine;
    EXPECT_EQ(machine.Run({u"--help"}), ExitCode::Success);
    for (const char* word : {"--host", "--classic", "--title", "--precision", "-o OUT", "--version", "  0  ",
                             "  2  ", "  3  ", "  4  ", "  5  ", "  6  "}) {
        EXPECT_NE(machine.printed.find(word), std::string::npos) << word;
    }
    Machine second;
    EXPECT_EQ(second.Run({u"--version", u"whatever"}), ExitCode::Success);
    EXPECT_EQ(second.printed.substr(0, 17), "vantrel-workbench");
}

TEST(WorkbenchSession, TellsWhyAFileCannotBeRead)
{
    Machine machine;
    CloseUnchanged();
    EXPECT_EQ(machine.Run({u"a.json"}), ExitCode::UnreadableFile);
    EXPECT_EQ(machine.complained, "a.json: no such file\n");
    machine.complained.clear();
    machine.files[u"a.json"] = "[1,\n";
    EXPECT_EQ(machine.Run({u"a.json"}), ExitCode::UnreadableFile);
    EXPECT_EQ(machine.complained.substr(0, 8), "a.json: ");
    EXPECT_NE(machine.complained.find("line 2"), std::string::npos) << machine.complained;
    machine.complained.clear();
    machine.files[u"a.json"] = "\"\\u0416\"";
    EXPECT_EQ(machine.Run({u"--classic", u"a.json"}), ExitCode::UnreadableFile);
    EXPECT_NE(machine.complained.find("U+0416"), std::string::npos) << machine.complained;
}

TEST(WorkbenchSession, ReportsTheEditorsErrors)
{
    Machine machine;
    machine.files[u"a.json"] = "1";
    machine.canLoad = false;
    EXPECT_EQ(machine.Run({u"a.json"}), ExitCode::EditorError);
    EXPECT_EQ(machine.complained, "no editor\n");
    machine.canLoad = true;
    machine.hasEntries = false;
    machine.complained.clear();
    EXPECT_EQ(machine.Run({u"a.json"}), ExitCode::EditorError);
    EXPECT_EQ(machine.complained, "no entry DyalogGetInterpreterFunctions\n");
    machine.hasEntries = true;
    machine.complained.clear();
    SmallClient::Get().body = [](Block*, Block**) {
        struct {
            std::uint32_t kind = 7, number = 11, flag = 1;
            const void* texts[4] = {u"V", u"No good", u"P", u"S"};
        } block;
        SmallClient::Get().Call<void>(1, 18, static_cast<const void*>(&block));
    };
    EXPECT_EQ(machine.Run({u"a.json", u"-o", u"b.json"}), ExitCode::EditorError);
    EXPECT_EQ(machine.complained, "the editor reports error 11: No good\n");
    EXPECT_EQ(machine.files.count(u"b.json"), 0u);
}

TEST(WorkbenchSession, ReportsBooksOutOfBalanceAfterWriting)
{
    Machine machine;
    machine.files[u"a.json"] = "[1, 2]";
    SmallClient::Get().body = [](Block*, Block** slot) {
        SmallClient& client = SmallClient::Get();
        const auto localp = client.NewVector(7, 8);
        client.Store(slot, localp->block);
        ++localp->block->count;
        client.FreeLocalp(localp.get());
    };
    EXPECT_EQ(machine.Run({u"a.json", u"-o", u"b.json"}), ExitCode::BooksOutOfBalance);
    EXPECT_EQ(machine.files[u"b.json"], "[7, 8]");
    EXPECT_NE(machine.complained.find("books: "), std::string::npos);
}

TEST(WorkbenchSession, WhatCannotBeWrittenIsNotLost)
{
    Machine machine;
    machine.files[u"a.json"] = "[[\"x\", [1]]]";
    CloseUnchanged();
    EXPECT_EQ(machine.Run({u"a.json", u"-o", u"b.npy"}), ExitCode::CannotWrite);
    EXPECT_EQ(machine.files.count(u"b.npy"), 0u);
    EXPECT_EQ(machine.files[u"b.npy.json"], "[[\"x\", [1]]]");
    machine.canWrite = false;
    SaveVector();
    EXPECT_EQ(machine.Run({u"a.json", u"-o", u"b.json"}), ExitCode::CannotWrite);
    EXPECT_EQ(machine.printed, "[7, 8]");
    EXPECT_NE(machine.complained.find("disk full"), std::string::npos);
}

} // namespace
} // namespace vantrel::workbench
