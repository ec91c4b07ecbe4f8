#include "entry/command_log.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace vantrel {
namespace {

constexpr std::uint32_t WmCommand = 273;

std::string NameOf(std::int32_t id)
{
    return CommandName(WmCommand, id);
}

TEST(CommandLog, BeginsWithProductVersionAndBuild)
{
    CommandLog log;
    BeginCommandLog(log);
    EXPECT_EQ(log.rfind("Vantrel Command Log\r\nVersion: 1.1.0.92\r\nBuild date: ", 0), 0u);
    EXPECT_NE(log.find(" Time: "), std::string::npos);
    EXPECT_EQ(log.substr(log.size() - 2), "\r\n");
}

// The spellings are the program's own.
TEST(CommandLog, NamesEveryCommand)
{
    const std::pair<std::int32_t, std::vector<const char*>> ranges[] = {
        {4001,
         {"Popup undo", "Popup redo", "Popup cut", "Popup copy", "Popup paste", "Popup delete",
          "Popup select all", "Popup help"}},
        {4101,
         {"Revert", "Save", "Save As", "Save and Close", "Exit", "Open", "Page setup", "Print", "Open object",
          "Exit force"}},
        {4201,
         {"Cut array", "Copy Array", "Paste Array", "Undo Array", "Redo Array", "Find", "Check and align",
          "Empty undo buffer", "Find next", "Find previous"}},
        {4301,
         {"Options toolbar", "Options status", "Options font", "Options confirm close",
          "Options size to definition", "Options top most", "Options small icons", "Options small margins",
          "Options 3d edges", "Options whole cell", "Options overtype", "Options reject bad data",
          "Options line numbers", "Options ruler", "Options scrollbar", "Options enable Undo array"}},
        {4501, {"Help general", "Help keys", "Help about", "Debug"}},
        {4601,
         {"Size to definition",
          "Reset size",
          "Reset all sizes",
          "Restore",
          "Minimize",
          "Maximize",
          "Format",
          "Convert to numeric",
          "Ravel",
          "First",
          "Disclose",
          "Enclose",
          "Enlist",
          "Reverse",
          "Reverse along first axis",
          "Transpose",
          "Grade up",
          "Grade down",
          "Matrix rows",
          "Unknown",
          "Array or rows",
          "Plane up",
          "Plane down",
          "Plane first",
          "Plane last",
          "Plane page up",
          "Plane page down",
          "Reorder axes",
          "Execute"}},
        {4701,
         {"Insert item left", "Insert item right", "Insert column left", "Insert column right",
          "Insert row above", "Insert row below"}},
        {4901,
         {"Graphics area", "Graphics bar", "Graphics contour", "Graphics histogram", "Graphics mesh",
          "Graphics pie", "Graphics plot", "Graphics surface"}}};
    for (const auto& [first, names] : ranges) {
        std::int32_t id = first;
        for (const char* const name : names)
            EXPECT_EQ(NameOf(id++), name);
        EXPECT_EQ(NameOf(id), "Unknown") << "behind the range of " << first;
    }
}

TEST(CommandLog, OtherIdsAreUnknown)
{
    for (const std::int32_t id : {0, 4000, 4009, 4620, 4801, 4909, 70000})
        EXPECT_EQ(NameOf(id), "Unknown") << id;
}

TEST(CommandLog, PrivateMessagesOfArraysAreSetArray)
{
    EXPECT_STREQ(CommandName(0x7FC4, 4101), "Set array");
    EXPECT_STREQ(CommandName(0x7FC7, 0), "Set array");
    EXPECT_STREQ(CommandName(0x7FC5, 4101), "Unknown");
}

TEST(CommandLog, ACommandIsOneLine)
{
    CommandLog log;
    EditContext context;
    context.commandLog = &log;
    LogCommand(&context, WmCommand, 4102);
    LogCommand(&context, WmCommand, 4105);
    EXPECT_EQ(log, "Save\r\nExit\r\n");
}

TEST(CommandLog, WithoutAnEditNothingIsLogged)
{
    EditContext context;
    LogCommand(&context, WmCommand, 4102);
    LogCommand(nullptr, WmCommand, 4102);
    EXPECT_EQ(context.commandLog, nullptr);
}

} // namespace
} // namespace vantrel
